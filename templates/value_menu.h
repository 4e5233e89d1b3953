#pragma once

// The tap-and-hold value menu of the composer's and the template editor's edit control: the
// marked value under the caret offers the other values of its variable, and the chosen one
// replaces it. Building the menu and computing the replacement are pure (text and caret in,
// menu out; choice in, text and caret out); runValueMenu() joins them through the UserAgent.

#include "framework/resources/resource_model.h"
#include "templates/person_info.h"

#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QWidget;

namespace tessaly::sms {

enum class ValueMenuContext {
    Composer,       // offers "Choose..." and "Choose from Phonebook"; computes time and date
    TemplateEditor, // keeps the chosen time or date word as it is
};

// A marked value in the text: "<...>" or "[...]", marks included in [start, end).
struct MarkedValue {
    qsizetype start = 0;
    qsizetype end = 0;
    QChar openMark;
    bool hasName = false;
    QString name; // before the first colon, when there is one
    QString value;

    bool operator==(const MarkedValue&) const = default;
};

struct ValueMenu {
    // Command ids: value i (from 0) is kFirstValueCommand + i.
    static constexpr int kFirstValueCommand = 1;
    static constexpr int kChooseFromPhonebookCommand = 10301; // its text's string id
    static constexpr int kChooseDateTimeCommand = 10318;

    MarkedValue target;
    QString variable; // the variable the marked value belongs to
    QStringList values;
    MenuItem popup; // "Variable Names" with one item per value and the extras

    // The value text of a value command; null for any other command.
    QString valueOfCommand(int command) const;
};

struct EditText {
    QString text;
    int caret = 0;

    bool operator==(const EditText&) const = default;
};

// The marked value around `caret`: the nearest mark on each side on the same line, an opening
// one ("<" or "[") before and a closing one (">" or "]") after. A caret right after a closing
// mark or right before an opening mark counts as inside that value.
std::optional<MarkedValue> markedValueAt(const QString& text, int caret);

// The menu for the marked value under the caret; nullopt when there is none or its variable is
// not found (the menu is then not shown).
std::optional<ValueMenu> buildValueMenu(const QString& text, int caret, ValueMenuContext context);

// What replaces the marked value when `choice` (a value text) is picked. `pickedContact` is the
// contact chosen earlier from the phone book for this edit control: Contact values then name one
// of its fields.
QString valueMenuReplacement(const ValueMenu& menu, const QString& choice, ValueMenuContext context,
                             const std::optional<RecipientInfo>& pickedContact);

// The text with the marked value replaced, the caret right after the replacement.
EditText replaceMarkedValue(const QString& text, const MarkedValue& target,
                            const QString& replacement);

// Runs the "DateTime Picker" titled with the variable's name; its text, or nullopt when the
// person cancelled.
using DateTimePickerRun = std::function<std::optional<QString>(const QString& variable)>;

// What a tap and hold came to. The phone book answers "Choose from Phonebook" only after the
// menu is gone, so that choice leaves the menu waiting for the contact.
struct ValueMenuOutcome {
    std::optional<EditText> edit; // the new text and caret; empty when nothing changes now
    std::optional<ValueMenu> awaitingContact;
};

// The whole tap-and-hold up to the phone book: builds the menu, tracks it at `tapPoint` through
// the UserAgent, runs the date or time picker when asked (a missing picker counts as
// cancelled) and returns the new text and caret. `pickedContact` is the contact chosen earlier
// for this edit control.
ValueMenuOutcome runValueMenu(QWidget* owner, QPoint tapPoint, const QString& text, int caret,
                              ValueMenuContext context, const DateTimePickerRun& pickDateTime,
                              const std::optional<RecipientInfo>& pickedContact);

// The text once the contact asked for by `menu` has been picked: the tapped placeholder holds
// the field it names, the caret right after it.
EditText fillPickedContact(const QString& text, const ValueMenu& menu, ValueMenuContext context,
                           const RecipientInfo& contact);

} // namespace tessaly::sms
