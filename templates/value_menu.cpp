#include "templates/value_menu.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "resources/resource.h"
#include "templates/placeholder_expander.h"
#include "templates/placeholder_texts.h"
#include "templates/template_store.h"

#include <algorithm>

namespace tessaly::sms {

static_assert(ValueMenu::kChooseFromPhonebookCommand == IDS_CHOOSE_FROM_PHONEBOOK);
static_assert(ValueMenu::kChooseDateTimeCommand == IDS_CHOOSE);

namespace {

bool isOpeningMark(QChar c) {
    return c == u'<' || c == u'[';
}
bool isClosingMark(QChar c) {
    return c == u'>' || c == u']';
}
bool endsSearch(QChar c) {
    return isOpeningMark(c) || isClosingMark(c) || c == u'\n' || c == u'\r';
}

std::optional<MarkedValue> markedValueInside(const QString& text, qsizetype caret) {
    qsizetype open = caret - 1;
    while (open >= 0 && !endsSearch(text[open]))
        --open;
    qsizetype close = caret;
    while (close < text.size() && !endsSearch(text[close]))
        ++close;
    if (open < 0 || close >= text.size() || !isOpeningMark(text[open]) ||
        !isClosingMark(text[close]))
        return std::nullopt;
    MarkedValue marked;
    marked.start = open;
    marked.end = close + 1;
    marked.openMark = text[open];
    const QString inner = text.mid(open + 1, close - open - 1);
    const QString colon = placeholderColon();
    const qsizetype split = inner.indexOf(colon);
    marked.hasName = split >= 0;
    marked.name = marked.hasName ? inner.left(split) : QString();
    marked.value = marked.hasName ? inner.mid(split + colon.size()) : inner;
    return marked;
}

bool isVariable(const QString& name, int id) {
    const QString builtIn = loadString(id);
    return !builtIn.isEmpty() && name == builtIn;
}

MenuItem valueNamesPopup() {
    if (const MenuTemplate* menu = findMenuTemplate(IDR_MENU_VARIABLE_VALUES);
        menu != nullptr && !menu->items.empty() && menu->items.front().isPopup) {
        MenuItem popup = menu->items.front();
        popup.children.clear();
        return popup;
    }
    MenuItem popup;
    popup.isPopup = true;
    popup.text = QStringLiteral("Variable Names");
    return popup;
}

MenuItem commandItem(int id, const QString& text) {
    MenuItem item;
    item.id = id;
    item.text = text;
    return item;
}

} // namespace

QString ValueMenu::valueOfCommand(int command) const {
    const int index = command - kFirstValueCommand;
    if (index < 0 || index >= values.size())
        return QString();
    return values[index];
}

std::optional<MarkedValue> markedValueAt(const QString& text, int caret) {
    const qsizetype at = std::clamp<qsizetype>(caret, 0, text.size());
    if (auto marked = markedValueInside(text, at))
        return marked;
    if (at > 0 && isClosingMark(text[at - 1]))
        return markedValueInside(text, at - 1);
    if (at < text.size() && isOpeningMark(text[at]))
        return markedValueInside(text, at + 1);
    return std::nullopt;
}

std::optional<ValueMenu> buildValueMenu(const QString& text, int caret, ValueMenuContext context) {
    const std::optional<MarkedValue> marked = markedValueAt(text, caret);
    if (!marked)
        return std::nullopt;
    const std::optional<VariableMatch> match =
        TemplateStore::findVariableOfValue(marked->hasName ? marked->name : marked->value);
    if (!match)
        return std::nullopt;

    ValueMenu menu;
    menu.target = *marked;
    menu.variable = match->name;
    menu.values = TemplateStore::readVariable(match->name).values;
    menu.popup = valueNamesPopup();
    for (int i = 0; i < menu.values.size(); ++i)
        menu.popup.children.push_back(
            commandItem(ValueMenu::kFirstValueCommand + i, menu.values[i]));
    if (context == ValueMenuContext::Composer) {
        if (isVariable(menu.variable, IDS_VAR_CONTACT)) {
            MenuItem separator;
            separator.separator = true;
            menu.popup.children.push_back(separator);
            menu.popup.children.push_back(commandItem(ValueMenu::kChooseFromPhonebookCommand,
                                                      loadString(IDS_CHOOSE_FROM_PHONEBOOK)));
        } else if (isVariable(menu.variable, IDS_VAR_TIME) ||
                   isVariable(menu.variable, IDS_VAR_DATE)) {
            menu.popup.children.push_back(
                commandItem(ValueMenu::kChooseDateTimeCommand, loadString(IDS_CHOOSE)));
        }
    }
    return menu;
}

QString valueMenuReplacement(const ValueMenu& menu, const QString& choice, ValueMenuContext context,
                             const std::optional<RecipientInfo>& pickedContact) {
    const QString colon = placeholderColon();
    if (isVariable(menu.variable, IDS_VAR_TIME) || isVariable(menu.variable, IDS_VAR_DATE)) {
        const QString value = context == ValueMenuContext::Composer
                                  ? PlaceholderExpander::computeValue(menu.variable, choice)
                                  : choice;
        return u'[' + menu.variable + colon + value + u']';
    }
    if (isVariable(menu.variable, IDS_VAR_CONTACT)) {
        QString value = choice;
        if (pickedContact) {
            // A choice that names no field of the contact stays as it was chosen.
            value = PlaceholderExpander::contactField(*pickedContact, choice).value_or(choice);
        }
        return u'[' + menu.variable + colon + value + u']';
    }
    if (!menu.target.hasName)
        return u'<' + choice + u'>';
    return u'[' + menu.target.name + colon + choice + u']';
}

EditText replaceMarkedValue(const QString& text, const MarkedValue& target,
                            const QString& replacement) {
    const qsizetype start = std::clamp<qsizetype>(target.start, 0, text.size());
    const qsizetype end = std::clamp<qsizetype>(target.end, start, text.size());
    EditText result;
    result.text = text.left(start) + replacement + text.mid(end);
    result.caret = int(start + replacement.size());
    return result;
}

ValueMenuOutcome runValueMenu(QWidget* owner, QPoint tapPoint, const QString& text, int caret,
                              ValueMenuContext context, const DateTimePickerRun& pickDateTime,
                              const std::optional<RecipientInfo>& pickedContact) {
    ValueMenuOutcome outcome;
    const std::optional<ValueMenu> menu = buildValueMenu(text, caret, context);
    if (!menu)
        return outcome;
    const int command = UserAgent::current().trackPopupMenu(owner, menu->popup, tapPoint);
    if (command == 0)
        return outcome;

    if (command == ValueMenu::kChooseFromPhonebookCommand) {
        outcome.awaitingContact = menu;
        return outcome;
    }
    QString replacement;
    if (command == ValueMenu::kChooseDateTimeCommand) {
        const std::optional<QString> picked =
            pickDateTime ? pickDateTime(menu->variable) : std::nullopt;
        if (!picked)
            return outcome;
        replacement = u'[' + menu->variable + placeholderColon() + *picked + u']';
    } else {
        const QString choice = menu->valueOfCommand(command);
        if (choice.isNull())
            return outcome;
        replacement = valueMenuReplacement(*menu, choice, context, pickedContact);
    }
    outcome.edit = replaceMarkedValue(text, menu->target, replacement);
    return outcome;
}

EditText fillPickedContact(const QString& text, const ValueMenu& menu, ValueMenuContext context,
                           const RecipientInfo& contact) {
    // The contact fills the field the placeholder already names.
    return replaceMarkedValue(text, menu.target,
                              valueMenuReplacement(menu, menu.target.value, context, contact));
}

} // namespace tessaly::sms
