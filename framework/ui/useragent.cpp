#include "framework/ui/useragent.h"

#include "framework/ui/dialog.h"
#include "framework/ui/menu.h"
#include "framework/ui/phone_message_box.h"
#include "framework/ui/screen.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

namespace tessaly {

namespace {

// The answers of the person, with Qt widgets.
class QtUserAgent final : public UserAgent {
public:
    int messageBox(QWidget* owner, const QString& text, const QString& caption,
                   UINT flags) override {
        PhoneMessageBox box(owner, text, caption, flags);
        openBoxes_.push_back({owner, &box});
        const int result = box.run();
        openBoxes_.erase(std::find_if(openBoxes_.begin(), openBoxes_.end(),
                                      [&](const OpenBox& open) { return open.box == &box; }));
        return result;
    }

    bool endMessageBox(QWidget* owner, int result) override {
        for (auto it = openBoxes_.rbegin(); it != openBoxes_.rend(); ++it) {
            if (it->owner == owner && it->box) {
                it->box->finish(result);
                return true;
            }
        }
        return false;
    }

    int trackPopupMenu(QWidget* owner, const MenuItem& popup, QPoint screenPos) override {
        return trackPopupMenuEx(owner, popup, screenPos, TPM_LEFTALIGN);
    }

    int trackPopupMenuEx(QWidget* owner, const MenuItem& popup, QPoint screenPos,
                         UINT flags) override {
        QMenu menu(owner);
        fillQtMenu(menu, popup);
        const QSize size = menu.sizeHint();
        QPoint at = screenPos;
        if (flags & TPM_RIGHTALIGN)
            at.rx() -= size.width();
        else if (flags & TPM_CENTERALIGN)
            at.rx() -= size.width() / 2;
        if (flags & TPM_BOTTOMALIGN)
            at.ry() -= size.height();
        const QAction* chosen = menu.exec(at);
        return chosen ? chosen->data().toInt() : 0;
    }

    int runModal(Dialog& dialog) override {
        const std::weak_ptr<int> alive = dialog.aliveToken();
        if (!dialog.beginModal())
            return -1;
        if (!dialog.hasEnded()) {
            auto* window = qobject_cast<QDialog*>(dialog.window());
            if (window)
                runOverOwner(*window);
        }
        if (alive.expired())
            return IDCANCEL;
        return dialog.finishModal();
    }

    QString chooseFile(QWidget* owner, const QString& caption, FileChoice kind,
                       const QString& filter) override {
        QFileDialog chooser(owner, caption, QString(), filter);
        chooser.setAcceptMode(kind == FileChoice::Open ? QFileDialog::AcceptOpen
                                                       : QFileDialog::AcceptSave);
        chooser.setFileMode(kind == FileChoice::Open ? QFileDialog::ExistingFile
                                                     : QFileDialog::AnyFile);
        if (runOverOwner(chooser) != QDialog::Accepted || chooser.selectedFiles().isEmpty())
            return {};
        return chooser.selectedFiles().constFirst();
    }

    ContactPickerChoice pickContact(QWidget* owner, const QString& title,
                                    const std::vector<ContactPickerEntry>& entries) override {
        QDialog picker(owner);
        picker.setWindowTitle(title);
        picker.setFont(smallFont());
        picker.resize(kScreenWidth, kScreenHeight);
        auto* layout = new QVBoxLayout(&picker);
        auto* list = new QListWidget(&picker);
        layout->addWidget(list);
        for (size_t entry = 0; entry < entries.size(); ++entry) {
            const ContactPickerEntry& contact = entries[entry];
            for (int number = 0; number < contact.numbers.size(); ++number) {
                auto* row = new QListWidgetItem(
                    contact.name + QStringLiteral("  ") + contact.numbers.at(number), list);
                row->setData(Qt::UserRole, int(entry));
                row->setData(Qt::UserRole + 1, number);
            }
        }
        auto* buttons =
            new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &picker);
        layout->addWidget(buttons);
        QObject::connect(buttons, &QDialogButtonBox::accepted, &picker, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, &picker, &QDialog::reject);
        QObject::connect(list, &QListWidget::itemDoubleClicked, &picker, &QDialog::accept);
        if (runOverOwner(picker) != QDialog::Accepted || !list->currentItem())
            return {};
        return {list->currentItem()->data(Qt::UserRole).toInt(),
                list->currentItem()->data(Qt::UserRole + 1).toInt()};
    }

private:
    struct OpenBox {
        QWidget* owner;
        QPointer<PhoneMessageBox> box;
    };
    std::vector<OpenBox> openBoxes_;
};

UserAgent* installedAgent = nullptr;

} // namespace

int runOverOwner(QDialog& dialog) {
    dialog.setWindowModality(Qt::WindowModal);
    return dialog.exec();
}

UserAgent& UserAgent::current() {
    static QtUserAgent qtAgent;
    return installedAgent ? *installedAgent : qtAgent;
}

void UserAgent::install(UserAgent* agent) {
    installedAgent = agent;
}

} // namespace tessaly
