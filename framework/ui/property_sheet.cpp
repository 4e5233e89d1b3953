#include "framework/ui/property_sheet.h"

#include "framework/resources/module_state.h"
#include "framework/ui/menu.h"
#include "framework/ui/screen.h"

#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tessaly {

PropertyPage::PropertyPage(int templateId)
    : Dialog(templateId) {
    setPresentation(Presentation::Child);
}

PropertyPage::PropertyPage(const DialogTemplate& pageTemplate)
    : Dialog(pageTemplate) {
    setPresentation(Presentation::Child);
}

DialogTemplate PropertySheet::sheetTemplate(const QString& caption) {
    DialogTemplate sheet;
    sheet.id = 0;
    sheet.caption = caption;
    sheet.width = 145;
    sheet.height = 156;
    return sheet;
}

PropertySheet::PropertySheet(const QString& caption, Dialog* parent)
    : Dialog(sheetTemplate(caption), parent)
    , caption_(caption) {}

PropertySheet::~PropertySheet() {
    // The pages' windows live inside the sheet's: take them down first, in order.
    for (PropertyPage* page : pages_)
        if (Dialog::exists(page))
            page->destroyWindow();
}

void PropertySheet::addPage(PropertyPage* page) {
    if (!page)
        return;
    page->sheet_ = this;
    pages_.push_back(page);
}

PropertyPage* PropertySheet::page(int index) const {
    return index >= 0 && index < pageCount() ? pages_[size_t(index)] : nullptr;
}

bool PropertySheet::onInitDialog() {
    QString title = caption_;
    onSheetCallback(PSCB_INITIALIZED, title);
    onSheetCallback(PSCB_GETTITLE, title);
    setTitle(title);

    tabs_ = new QTabWidget(clientArea());
    tabs_->setTabPosition(QTabWidget::South);
    tabs_->setDocumentMode(true);
    tabs_->setFont(smallFont());
    tabs_->setGeometry(0, 0, kClientWidth, kClientHeight);
    for (PropertyPage* page : pages_) {
        auto* holder = new QWidget;
        tabs_->addTab(holder, page->tabText());
    }
    createCommandBar();
    setActivePage(0);
    QObject::connect(tabs_, &QTabWidget::currentChanged, tabs_, [this](int index) {
        if (switching_ || index == active_)
            return;
        if (!setActivePage(index)) {
            // The page refused to be left: the tab goes back.
            switching_ = true;
            tabs_->setCurrentIndex(active_);
            switching_ = false;
        }
    });
    return false;
}

bool PropertySheet::ensurePageCreated(int index) {
    PropertyPage* target = page(index);
    if (!target)
        return false;
    if (target->isWindow())
        return true;
    QWidget* holder = tabs_->widget(index);
    if (!target->create(holder))
        return false;
    auto* layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(target->window());
    target->showWindow(SW_SHOW);
    return true;
}

bool PropertySheet::setActivePage(int index) {
    if (!page(index) || !tabs_)
        return false;
    if (PropertyPage* current = activePage(); current && index != active_ && current->isWindow())
        if (!leavePage(*current))
            return false;
    if (!ensurePageCreated(index))
        return false;
    active_ = index;
    if (tabs_->currentIndex() != index) {
        switching_ = true;
        tabs_->setCurrentIndex(index);
        switching_ = false;
    }
    if (CommandBar* bar = commandBar())
        bar->clearMenu();
    PropertyPage& entered = *page(index);
    const ModuleStateGuard guard(entered.createdIn_);
    entered.onSetActive();
    return true;
}

bool PropertySheet::leavePage(PropertyPage& page) {
    // A page hears it is left or entered in its own module state, as it hears its other events.
    const ModuleStateGuard guard(page.createdIn_);
    return page.onKillActive();
}

void PropertySheet::onCommand(int id) {
    if (id == IDOK) {
        if (PropertyPage* current = activePage(); current && current->isWindow())
            if (!leavePage(*current))
                return;
        for (PropertyPage* page : pages_)
            if (page->isWindow())
                page->onOK();
        endDialog(IDOK);
        return;
    }
    if (id == IDCANCEL) {
        for (PropertyPage* page : pages_)
            if (page->isWindow())
                page->onCancel();
        endDialog(IDCANCEL);
        return;
    }
    // Commands of the command bar reach the page that put its menu there.
    Dialog::onCommand(id);
}

void PropertySheet::onDestroy() {
    for (PropertyPage* page : pages_)
        if (Dialog::exists(page))
            page->destroyWindow();
    tabs_ = nullptr;
    active_ = -1;
}

} // namespace tessaly
