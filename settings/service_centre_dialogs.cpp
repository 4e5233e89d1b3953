#include "settings/service_centre_dialogs.h"
#include "util/box_caption.h"

#include "framework/resources/resources.h"
#include "framework/ui/menu.h"
#include "framework/ui/shell.h"
#include "gsm/preferences.h"
#include "resources/resource.h"
#include "settings/service_centres.h"
#include "util/context_menu.h"
#include "util/wide_text.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyle>

namespace tessaly::sms {

namespace {

constexpr UINT kEmptySpaceTapped = WM_APP + 1;
constexpr int kNumberColumnWidth = 120;
// Room the name column leaves for the number column and the row's margins.
constexpr int kNameColumnReserve = 124;

bool askDeletePreferred(QWidget* owner) {
    return UserAgent::current().messageBox(owner, loadString(IDS_DELETE_SERVICE_CENTRE_QUESTION),
                                           boxCaption(), MB_OKCANCEL | MB_ICONEXCLAMATION) == IDOK;
}

// Taps on the list's empty space below the entries: the list view reports only taps on rows.
class EmptySpaceTaps final : public QObject {
public:
    EmptySpaceTaps(ListView& view, std::function<void()> tapped)
        : view_(view)
        , viewport_(view.viewport())
        , tapped_(std::move(tapped)) {
        viewport_->installEventFilter(this);
    }

protected:
    // Compares with the viewport kept at the start: the viewport still sends events while the
    // list view around it is being destroyed, when the view may no longer be asked for it.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == viewport_ && event->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton &&
                view_.rowAt(mouse->position().toPoint().y()) < 0)
                tapped_();
        }
        return false;
    }

private:
    ListView& view_;
    QObject* viewport_;
    std::function<void()> tapped_;
};

} // namespace

// ---- directory ----

ServiceCentreDirectoryDialog::ServiceCentreDirectoryDialog(Dialog* parent)
    : Dialog(IDD_SERVICE_CENTRE_DIRECTORY, parent) {}

ServiceCentreDirectoryDialog::~ServiceCentreDirectoryDialog() = default;

bool ServiceCentreDirectoryDialog::onInitDialog() {
    ListView* view = listView(IDC_SC_DIRECTORY_LIST);
    if (!view)
        return true;
    const int scrollBarWidth = view->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    view->insertColumn(0, QString(), clientSize().width() - scrollBarWidth - kNameColumnReserve);
    view->insertColumn(1, QString(), kNumberColumnWidth);
    view->setExtendedStyle(LVS_EX_FULLROWSELECT);
    // Handled as a posted message, outside the list's own mouse handling.
    emptySpaceTaps_ =
        std::make_unique<EmptySpaceTaps>(*view, [this] { postMessage(kEmptySpaceTapped, 0, 0); });
    fillList();
    return true;
}

void ServiceCentreDirectoryDialog::fillList() {
    ListView* view = listView(IDC_SC_DIRECTORY_LIST);
    if (!view)
        return;
    view->setUpdatesEnabled(false);
    view->deleteAllItems();
    if (GSM::ServiceCentreList* list = serviceCentreList()) {
        for (int index = 0; index < list->count(); ++index) {
            const GSM::ServiceCentreEntry* entry = list->get(index);
            if (!entry)
                continue;
            const int row = view->insertItem(index, fromWide(entry->name()));
            if (row >= 0)
                view->setItemText(row, 1, fromWide(entry->number()));
        }
    }
    view->setUpdatesEnabled(true);
    view->viewport()->update();
}

bool ServiceCentreDirectoryDialog::refuseSimEntry(int index) {
    if (index != 0)
        return false;
    UserAgent::current().messageBox(window(), loadString(IDS_SIM_ADDRESS_PROTECTED), boxCaption(),
                                    MB_OK | MB_ICONINFORMATION);
    return true;
}

void ServiceCentreDirectoryDialog::tapped(int row) {
    const ModuleStateGuard guard(moduleState());
    chosen_ = row;
    if (refuseSimEntry(row))
        return;
    // A tap below the entries (-1) opens an empty dialog for a new entry.
    editEntry(row);
}

void ServiceCentreDirectoryDialog::editEntry(int index) {
    ServiceCentreEditDialog(this, index).doModal();
    fillList();
}

void ServiceCentreDirectoryDialog::onMessage(UINT message, WPARAM, LPARAM) {
    if (message == kEmptySpaceTapped)
        tapped(-1);
}

void ServiceCentreDirectoryDialog::onListClick(int id, int row, int) {
    if (id == IDC_SC_DIRECTORY_LIST)
        tapped(row);
}

void ServiceCentreDirectoryDialog::onListTapAndHold(int id, int row, QPoint screenPos) {
    ListView* view = listView(IDC_SC_DIRECTORY_LIST);
    if (id != IDC_SC_DIRECTORY_LIST || !view)
        return;
    const int selected = view->selectedRow();
    if (selected < 0 || refuseSimEntry(selected))
        return;
    switch (trackContextMenu(*this, screenPos)) {
    case IDM_CONTEXT_NEW:
        editEntry(-1);
        break;
    case IDM_CONTEXT_EDIT:
        editEntry(selected);
        break;
    case IDM_CONTEXT_DELETE:
        // The same question for every entry, the preferred one or not.
        if (askDeletePreferred(window()))
            if (GSM::ServiceCentreList* list = serviceCentreList())
                list->remove(selected);
        fillList();
        break;
    default:
        break;
    }
}

void ServiceCentreDirectoryDialog::onCommand(int id) {
    switch (id) {
    case IDC_SC_DIRECTORY_NEW:
        editEntry(-1);
        break;
    case IDC_FACTORY_SETTINGS:
        if (GSM::ServiceCentreList* list = serviceCentreList())
            restoreFactoryServiceCentres(*list);
        fillList();
        break;
    default:
        Dialog::onCommand(id);
    }
}

void ServiceCentreDirectoryDialog::onOK() {
    // The index tapped then, even if that entry has moved to the end since.
    if (chosen_ >= 0)
        if (GSM::ServiceCentreList* list = serviceCentreList())
            list->setPreferred(chosen_);
    Dialog::onOK();
}

// ---- one entry ----

ServiceCentreEditDialog::ServiceCentreEditDialog(Dialog* parent, int index)
    : Dialog(IDD_SERVICE_CENTRE_EDIT, parent)
    , index_(index) {}

bool ServiceCentreEditDialog::onInitDialog() {
    createCommandBar(IDR_MENU_EDIT);
    if (GSM::ServiceCentreList* list = serviceCentreList(); list && index_ >= 0) {
        if (const GSM::ServiceCentreEntry* entry = list->get(index_)) {
            setItemText(IDC_SC_EDIT_NAME, fromWide(entry->name()));
            setItemText(IDC_SC_EDIT_NUMBER, fromWide(entry->number()));
        }
    }
    Shell::current().sipPreference(window(), SIP_UP);
    initialName_ = itemText(IDC_SC_EDIT_NAME);
    initialNumber_ = itemText(IDC_SC_EDIT_NUMBER);
    return true;
}

void ServiceCentreEditDialog::onCommand(int id) {
    if (id == IDM_EDIT_DELETE) {
        deleteEntry();
        return;
    }
    if (!editCommands_.run(*this, id))
        Dialog::onCommand(id);
}

void ServiceCentreEditDialog::deleteEntry() {
    GSM::ServiceCentreList* list = serviceCentreList();
    // A new entry has nothing to delete; the SIM's entry is never deleted.
    if (list && index_ > 0) {
        if (index_ != list->preferred()) {
            list->remove(index_);
        } else if (!askDeletePreferred(window())) {
            // Deliberately inverted for this menu: Cancel deletes the preferred entry, OK keeps
            // it.
            list->remove(index_);
        }
    }
    endDialog(IDCANCEL);
}

void ServiceCentreEditDialog::onOK() {
    const QString name = itemText(IDC_SC_EDIT_NAME);
    const QString number = itemText(IDC_SC_EDIT_NUMBER);
    const bool changed = name != initialName_ || number != initialNumber_;
    if (!name.isEmpty() && !number.isEmpty() && changed) {
        if (index_ == 0) {
            UserAgent::current().messageBox(window(), loadString(IDS_SIM_ADDRESS_READ_ONLY),
                                            boxCaption(), MB_OK);
        } else if (UserAgent::current().messageBox(window(), loadString(IDS_SAVE_CHANGES_QUESTION),
                                                   boxCaption(), MB_YESNO) == IDYES) {
            Shell::current().sipPreference(window(), SIP_FORCEDOWN);
            if (GSM::ServiceCentreList* list = serviceCentreList()) {
                // A changed entry goes to the end of the list.
                if (index_ > 0)
                    list->remove(index_);
                list->add(toWide(name), toWide(number));
            }
        }
    }
    Dialog::onOK();
}

} // namespace tessaly::sms
