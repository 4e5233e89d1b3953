#pragma once

// What SEND does, up to the hand-over to the telephony library: the To: text is checked, the
// message's recipients are rebuilt from it, the Contact-placeholder question is asked, the text
// is expanded for each recipient (one message per recipient when it addresses the recipient),
// each message is completed and handed over with endEdit(false), and the first recipient becomes
// the newest favourite. No window is needed: the questions go through the UserAgent over `owner`.

#include "templates/placeholder_expander.h"

#include <QString>

#include <functional>

class QWidget;

namespace GSM {
class Message;
}

namespace tessaly::sms {

// The composer's fields as SEND reads them.
struct SendForm {
    QString toText;
    QString messageText;
    QString serviceCentre;
    bool sameServiceCentre = false;
    int recipientCount = 0;
    // The number of the contact picked for Contact placeholders; only its emptiness matters.
    QString chosenContactNumber;
};

class MessageSubmitter {
public:
    // `message` is the composer's current message: set to null once it is handed over.
    MessageSubmitter(GSM::Message*& message, const SenderInfo& sender, QWidget* owner);

    // The whole SEND. True when the composer may close (everything handed over, or the rest of
    // the recipients given up); false when it stays open as typed (invalid recipients, a
    // question answered No).
    bool send(const SendForm& form);

    // Whether the text addresses each recipient: it holds "[Recipient:".
    static bool addressesEachRecipient(const QString& text);

    // How copies for further recipients are made; GSM::Message::make unless a test says else.
    void setMessageFactory(std::function<GSM::Message*()> make) { make_ = std::move(make); }

private:
    void rebuildRecipients(const QString& toText);
    bool submitMessage(bool askSender, bool updateFavourites);
    bool submitPerRecipient();
    bool ask(int textId);

    GSM::Message*& current_;
    QWidget* owner_;
    PlaceholderExpander expander_;
    SendForm form_;
    std::function<GSM::Message*()> make_;
};

} // namespace tessaly::sms
