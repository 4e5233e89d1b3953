#pragma once

// The tap-and-hold value menu on a real edit control: the composer's and the template editor's
// multi-line edit. A tap and hold on the edit reads its text and caret, runs the value menu
// with the "DateTime Picker" behind "Choose..." and the phone book's picker behind "Choose
// from Phonebook", then sets the new text and puts the caret right after the result.
//
// The phone book answers its picker after the call that opened it has returned (through
// eventContactPicked), so a "Choose from Phonebook" choice leaves the tapped placeholder
// waiting; the answer fills it if the edit still holds the text it was chosen in.

#include "framework/ui/dialog.h"
#include "gsm/contacts.h"
#include "templates/person_info.h"
#include "templates/value_menu.h"

#include <QMetaObject>
#include <QPoint>

#include <optional>

namespace tessaly::sms {

// The fields of a phone-book contact that placeholders name: first, last and full name,
// initials (first letters of first and last name, each only if present) and the selected
// number.
RecipientInfo recipientInfoOf(const GSM::Contact& contact);

class EditValueMenu final : public GSM::PhoneBook {
public:
    // The edit `editId` of `dialog`; the object must not outlive the dialog object. Call
    // attach() once the dialog's controls exist (in its onInitDialog).
    EditValueMenu(Dialog& dialog, int editId, ValueMenuContext context);
    ~EditValueMenu() override;

    // Listens to the edit's tap and hold; false when the dialog has no such edit.
    bool attach();

    // The whole tap and hold for the edit's current text and caret, the menu tracked at
    // `screenPos`.
    void showMenu(QPoint screenPos);

    // The contact picked from the phone book for this edit (the composer keeps it with the
    // message: its number is the chosen contact number). Later Contact choices name its fields.
    const std::optional<RecipientInfo>& pickedContact() const { return pickedContact_; }
    void clearPickedContact() { pickedContact_.reset(); }
    // Whether a "Choose from Phonebook" choice still waits for the phone book's answer.
    bool isWaitingForContact() const { return waiting_.has_value(); }

    // By default "Choose..." runs the "DateTime Picker" over the dialog; another runner may be
    // set (an empty one counts as cancelled).
    void setDateTimePicker(DateTimePickerRun pickDateTime) {
        pickDateTime_ = std::move(pickDateTime);
    }

    void eventContactPicked(GSM::Contact* contact) override;

private:
    Edit* liveEdit() const;
    void setEditText(const EditText& edited);

    struct WaitingPlaceholder {
        ValueMenu menu;
        QString text; // the edit's text when the menu was chosen from
    };

    Dialog& dialog_;
    int editId_;
    ValueMenuContext context_;
    DateTimePickerRun pickDateTime_;
    std::optional<RecipientInfo> pickedContact_;
    std::optional<WaitingPlaceholder> waiting_;
    QMetaObject::Connection tapAndHold_;
};

} // namespace tessaly::sms
