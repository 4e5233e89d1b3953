#pragma once

// The "New Message" composer (template 10005): To: field with its favourites and phone-book
// picking, the templates list, the details rows (service centre, validity, reply path), the
// message text with the value menu, the status line and SEND. It always works on the one
// GSM::Message it was opened for; SEND hands it (or one copy per recipient) to the library, and
// closing without sending discards it. Any number of composers may be open; each owns itself.

#include "framework/ui/dialog.h"
#include "gsm/contacts.h"
#include "templates/edit_value_menu.h"
#include "util/edit_commands.h"

#include <QString>
#include <QStringList>

namespace GSM {
class Message;
}

namespace tessaly::sms {

class ComposerEnvironment;

class ComposerWindow final : public Dialog, public GSM::PhoneBook {
public:
    // Creates the composer for `message` (may be null) and shows it; nullptr when the window
    // cannot be created.
    static ComposerWindow* open(GSM::Message* message, ComposerEnvironment& environment);

    ComposerWindow(GSM::Message* message, ComposerEnvironment& environment);
    ~ComposerWindow() override;

    GSM::Message* message() const { return message_; }
    int recipientCount() const { return recipientCount_; }
    bool detailsShown() const { return detailsShown_; }
    EditValueMenu& valueMenu() { return valueMenu_; }

    // The handlers of the person's actions, named as the composer has always named them.
    void onSend();
    void onRecipientButton();
    void pickFromPhoneBook();

    void eventContactPicked(GSM::Contact* contact) override;
    void eventFolderChanged(GSM::Folder* folder) override;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override { onCancel(); }
    void onCancel() override;
    void onEditUpdate(int id) override;
    void onEditChange(int id) override;
    void onEditSetFocus(int id) override;
    void onEditKillFocus(int id) override;
    void onComboDropDown(int id) override;
    void onComboCloseUp(int id) override;
    void onComboSelChange(int id) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onSize(int clientWidth, int clientHeight) override;
    bool onDrawItem(int id, QPainter& painter, const DrawItemState& state) override;
    void onDestroy() override;
    void onPostDestroy() override;

private:
    void fillStartText();
    void fillTemplateList();
    void fillDetails();
    void showDetails(bool show);
    void layoutControls();
    void updateStatusLine();
    void onToFieldUpdate();
    void onToFieldChange();
    void onToFieldLeave();
    void onTemplateSelect();
    void onValidityChange();
    void appendPickedNumbers();
    void setToText(const QString& text);
    QString toText() const;
    QString messageText() const;

    GSM::Message* message_ = nullptr;
    ComposerEnvironment& environment_;
    EditValueMenu valueMenu_;
    QString startToText_;
    QString startMessageText_;
    int recipientCount_ = 0;
    bool detailsShown_ = false;
    EditCommands editCommands_; // the To: field or the message text
    // Numbers that follow a phone-book pick in the To: field: what the field held before it.
    QStringList pickedNumbers_;
    // Only the composer that opened the phone book takes its answer.
    bool awaitingPick_ = false;
    bool filteringTo_ = false;
};

} // namespace tessaly::sms
