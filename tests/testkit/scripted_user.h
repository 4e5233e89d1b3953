#pragma once

// A person who answers from a script. Installed as the UserAgent while it lives, it records
// every message box, tracked menu, modal run and contact-picker run, answers them from one
// queue in the order the test wrote, and fails the test on a question it was not told about
// or on answers that were never asked for.

#include "framework/ui/useragent.h"

#include <QPoint>
#include <QString>

#include <deque>
#include <functional>
#include <variant>
#include <vector>

namespace tessaly::testkit {

struct ShownBox {
    QWidget* owner = nullptr;
    QString text;
    QString caption;
    UINT flags = 0;
    UINT buttons() const { return flags & 0xf; }
    UINT icon() const { return flags & 0xf0; }
};

struct ShownMenuItem {
    int id = 0;
    QString text;
    bool checked = false;
    bool enabled = true;
    bool separator = false;
    bool popup = false;
    int depth = 0; // 0 for the entries of the tracked menu, 1 for those of its sub-menus, ...
};

struct ShownMenu {
    QWidget* owner = nullptr;
    QPoint position;
    UINT flags = 0;
    std::vector<ShownMenuItem> items;

    const ShownMenuItem* find(int id) const;
    bool isChecked(int id) const;
    // The ids of the checked entries, in menu order.
    std::vector<int> checkedIds() const;
};

struct ShownModal {
    int templateId = 0;
    QString title;
};

class ScriptedUser final : public UserAgent {
public:
    ScriptedUser();
    ~ScriptedUser() override;
    ScriptedUser(const ScriptedUser&) = delete;
    ScriptedUser& operator=(const ScriptedUser&) = delete;

    // ---- the script, in the order the questions will come ----
    // The next message box is answered with result (IDOK, IDYES, ...). whileShown runs while
    // the box is up (for example to advance the clock); endMessageBox inside it wins.
    ScriptedUser& answerBox(int result, std::function<void(const ShownBox&)> whileShown = {});
    // The next tracked menu: the command chosen (0 dismisses it). A command that the menu does
    // not hold or that is disabled fails the test.
    ScriptedUser& chooseMenu(int commandId);
    // The next modal run: the script gets the live dialog and ends it (endDialog, or a click
    // on OK/Cancel); a run the script leaves open ends with IDCANCEL.
    ScriptedUser& runModal(std::function<void(Dialog&)> script);
    // The next contact-picker run: entry -1 cancels.
    ScriptedUser& pickContact(int entry, int number = 0);
    // The next file chooser: the path chosen (empty cancels).
    ScriptedUser& chooseFile(const QString& path);

    // ---- what was shown ----
    const std::vector<ShownBox>& boxes() const { return boxes_; }
    const std::vector<ShownMenu>& menus() const { return menus_; }
    const std::vector<ShownModal>& modals() const { return modals_; }
    int contactPickerRuns() const { return contactPickerRuns_; }
    size_t pendingAnswers() const { return script_.size(); }
    // Clears the record (not the script).
    void forget();

    // ---- UserAgent ----
    int messageBox(QWidget* owner, const QString& text, const QString& caption,
                   UINT flags) override;
    bool endMessageBox(QWidget* owner, int result) override;
    int trackPopupMenu(QWidget* owner, const MenuItem& popup, QPoint screenPos) override;
    int trackPopupMenuEx(QWidget* owner, const MenuItem& popup, QPoint screenPos,
                         UINT flags) override;
    int runModal(Dialog& dialog) override;
    ContactPickerChoice pickContact(QWidget* owner, const QString& title,
                                    const std::vector<ContactPickerEntry>& entries) override;
    QString chooseFile(QWidget* owner, const QString& caption, FileChoice kind,
                       const QString& filter) override;

private:
    struct BoxAnswer {
        int result;
        std::function<void(const ShownBox&)> whileShown;
    };
    struct MenuAnswer {
        int commandId;
    };
    struct ModalAnswer {
        std::function<void(Dialog&)> script;
    };
    struct ContactAnswer {
        int entry;
        int number;
    };
    struct FileAnswer {
        QString path;
    };
    using Answer = std::variant<BoxAnswer, MenuAnswer, ModalAnswer, ContactAnswer, FileAnswer>;

    template <typename Wanted> bool nextIs() const {
        return !script_.empty() && std::holds_alternative<Wanted>(script_.front());
    }
    QString describeNext() const;

    UserAgent* previous_ = nullptr;
    std::deque<Answer> script_;
    std::vector<ShownBox> boxes_;
    std::vector<ShownMenu> menus_;
    std::vector<ShownModal> modals_;
    int contactPickerRuns_ = 0;
    struct OpenBox {
        QWidget* owner;
        int forcedResult;
    };
    std::vector<OpenBox> openBoxes_;
};

} // namespace tessaly::testkit
