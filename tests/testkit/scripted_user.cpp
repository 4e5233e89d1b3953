#include "tests/testkit/scripted_user.h"

#include "framework/ui/dialog.h"

#include <gtest/gtest.h>

namespace tessaly::testkit {

namespace {

void flatten(const MenuItem& menu, int depth, std::vector<ShownMenuItem>& into) {
    for (const MenuItem& child : menu.children) {
        const bool popup = child.isPopup || !child.children.empty();
        into.push_back(
            {child.id, child.text, child.checked, child.enabled, child.separator, popup, depth});
        if (popup)
            flatten(child, depth + 1, into);
    }
}

QString boxButtonsName(UINT buttons) {
    switch (buttons) {
    case MB_OKCANCEL:
        return QStringLiteral("OK/Cancel");
    case MB_YESNOCANCEL:
        return QStringLiteral("Yes/No/Cancel");
    case MB_YESNO:
        return QStringLiteral("Yes/No");
    default:
        return QStringLiteral("OK");
    }
}

// What a person who was not expected to be asked would do: the harmless answer.
int defaultBoxAnswer(UINT flags) {
    switch (flags & 0xf) {
    case MB_YESNO:
        return IDNO;
    case MB_OK:
        return IDOK;
    default:
        return IDCANCEL;
    }
}

} // namespace

const ShownMenuItem* ShownMenu::find(int id) const {
    for (const ShownMenuItem& item : items)
        if (!item.popup && !item.separator && item.id == id)
            return &item;
    return nullptr;
}

bool ShownMenu::isChecked(int id) const {
    const ShownMenuItem* item = find(id);
    return item && item->checked;
}

std::vector<int> ShownMenu::checkedIds() const {
    std::vector<int> ids;
    for (const ShownMenuItem& item : items)
        if (item.checked)
            ids.push_back(item.id);
    return ids;
}

ScriptedUser::ScriptedUser()
    : previous_(&UserAgent::current()) {
    UserAgent::install(this);
}

ScriptedUser::~ScriptedUser() {
    if (&UserAgent::current() == this)
        UserAgent::install(previous_ == this ? nullptr : previous_);
    if (!script_.empty())
        ADD_FAILURE() << "the scripted user still holds " << script_.size()
                      << " answer(s) nobody asked for; next: " << describeNext().toStdString();
}

ScriptedUser& ScriptedUser::answerBox(int result, std::function<void(const ShownBox&)> whileShown) {
    script_.push_back(BoxAnswer{result, std::move(whileShown)});
    return *this;
}

ScriptedUser& ScriptedUser::chooseMenu(int commandId) {
    script_.push_back(MenuAnswer{commandId});
    return *this;
}

ScriptedUser& ScriptedUser::runModal(std::function<void(Dialog&)> script) {
    script_.push_back(ModalAnswer{std::move(script)});
    return *this;
}

ScriptedUser& ScriptedUser::pickContact(int entry, int number) {
    script_.push_back(ContactAnswer{entry, number});
    return *this;
}

void ScriptedUser::forget() {
    boxes_.clear();
    menus_.clear();
    modals_.clear();
    contactPickerRuns_ = 0;
}

ScriptedUser& ScriptedUser::chooseFile(const QString& path) {
    script_.push_back(FileAnswer{path});
    return *this;
}

QString ScriptedUser::describeNext() const {
    if (script_.empty())
        return QStringLiteral("nothing");
    return std::visit(
        [](const auto& answer) -> QString {
            using Kind = std::decay_t<decltype(answer)>;
            if constexpr (std::is_same_v<Kind, BoxAnswer>)
                return QStringLiteral("a message box answered %1").arg(answer.result);
            else if constexpr (std::is_same_v<Kind, MenuAnswer>)
                return QStringLiteral("a menu answered with command %1").arg(answer.commandId);
            else if constexpr (std::is_same_v<Kind, ModalAnswer>)
                return QStringLiteral("a modal run");
            else if constexpr (std::is_same_v<Kind, ContactAnswer>)
                return QStringLiteral("a contact-picker run");
            else
                return QStringLiteral("a file chooser answered \"%1\"").arg(answer.path);
        },
        script_.front());
}

int ScriptedUser::messageBox(QWidget* owner, const QString& text, const QString& caption,
                             UINT flags) {
    const ShownBox shown{owner, text, caption, flags};
    boxes_.push_back(shown);
    if (!nextIs<BoxAnswer>()) {
        ADD_FAILURE() << "unexpected message box \"" << text.toStdString() << "\" (caption \""
                      << caption.toStdString() << "\", "
                      << boxButtonsName(shown.buttons()).toStdString() << "); the script expected "
                      << describeNext().toStdString();
        return defaultBoxAnswer(flags);
    }
    BoxAnswer answer = std::get<BoxAnswer>(std::move(script_.front()));
    script_.pop_front();
    openBoxes_.push_back({owner, 0});
    if (answer.whileShown)
        answer.whileShown(shown);
    const int forced = openBoxes_.back().forcedResult;
    openBoxes_.pop_back();
    return forced != 0 ? forced : answer.result;
}

bool ScriptedUser::endMessageBox(QWidget* owner, int result) {
    for (auto it = openBoxes_.rbegin(); it != openBoxes_.rend(); ++it) {
        if (it->owner == owner) {
            it->forcedResult = result;
            return true;
        }
    }
    return false;
}

int ScriptedUser::trackPopupMenu(QWidget* owner, const MenuItem& popup, QPoint screenPos) {
    return trackPopupMenuEx(owner, popup, screenPos, 0);
}

int ScriptedUser::trackPopupMenuEx(QWidget* owner, const MenuItem& popup, QPoint screenPos,
                                   UINT flags) {
    ShownMenu shown{owner, screenPos, flags, {}};
    flatten(popup, 0, shown.items);
    menus_.push_back(shown);
    if (!nextIs<MenuAnswer>()) {
        ADD_FAILURE() << "unexpected popup menu with " << shown.items.size()
                      << " entries; the script expected " << describeNext().toStdString();
        return 0;
    }
    const int chosen = std::get<MenuAnswer>(script_.front()).commandId;
    script_.pop_front();
    if (chosen == 0)
        return 0;
    const ShownMenuItem* item = shown.find(chosen);
    if (!item) {
        ADD_FAILURE() << "the script chose command " << chosen << ", which the menu does not hold";
        return 0;
    }
    if (!item->enabled) {
        ADD_FAILURE() << "the script chose command " << chosen << " (\"" << item->text.toStdString()
                      << "\"), which is disabled";
        return 0;
    }
    return chosen;
}

int ScriptedUser::runModal(Dialog& dialog) {
    modals_.push_back({dialog.templateId(), dialog.title()});
    const std::weak_ptr<int> alive = dialog.aliveToken();
    if (!dialog.beginModal())
        return -1;
    dialog.showWindow(SW_SHOW);
    if (!nextIs<ModalAnswer>()) {
        ADD_FAILURE() << "unexpected modal run of template " << dialog.templateId() << " (\""
                      << dialog.title().toStdString() << "\"); the script expected "
                      << describeNext().toStdString();
    } else {
        ModalAnswer answer = std::get<ModalAnswer>(std::move(script_.front()));
        script_.pop_front();
        if (!dialog.hasEnded() && answer.script)
            answer.script(dialog);
    }
    if (alive.expired())
        return IDCANCEL;
    return dialog.finishModal();
}

ContactPickerChoice ScriptedUser::pickContact(QWidget*, const QString& title,
                                              const std::vector<ContactPickerEntry>& entries) {
    ++contactPickerRuns_;
    if (!nextIs<ContactAnswer>()) {
        ADD_FAILURE() << "unexpected contact picker \"" << title.toStdString()
                      << "\"; the script expected " << describeNext().toStdString();
        return {};
    }
    const ContactAnswer answer = std::get<ContactAnswer>(script_.front());
    script_.pop_front();
    if (answer.entry < 0)
        return {};
    if (answer.entry >= int(entries.size()) || answer.number < 0 ||
        answer.number >= entries[size_t(answer.entry)].numbers.size()) {
        ADD_FAILURE() << "the script picked contact " << answer.entry << " number " << answer.number
                      << ", which the picker does not offer";
        return {};
    }
    return {answer.entry, answer.number};
}

QString ScriptedUser::chooseFile(QWidget*, const QString& caption, FileChoice, const QString&) {
    if (!nextIs<FileAnswer>()) {
        ADD_FAILURE() << "unexpected file chooser \"" << caption.toStdString()
                      << "\"; the script expected " << describeNext().toStdString();
        return {};
    }
    const QString path = std::get<FileAnswer>(script_.front()).path;
    script_.pop_front();
    return path;
}

} // namespace tessaly::testkit
