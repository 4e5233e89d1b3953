#include "compose/submit.h"
#include "util/box_caption.h"

#include "compose/favourites.h"
#include "compose/recipients.h"
#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "gsm/message.h"
#include "gsm/sms.h"
#include "resources/resource.h"
#include "templates/edit_value_menu.h"
#include "util/wide_text.h"

namespace tessaly::sms {

namespace {

// A failing make() is tried again at once; a store that keeps refusing ends the loop here.
constexpr int kMakeAttempts = 3;

// The copies for every recipient reach the library together: a crash while they are handed
// over leaves all of them or none, never a part the person cannot tell from the rest.
class HandOver {
public:
    HandOver()
        : open_(GSM::sms.beginHandOver().isOk()) {}
    ~HandOver() {
        if (open_)
            GSM::sms.endHandOver();
    }
    HandOver(const HandOver&) = delete;
    HandOver& operator=(const HandOver&) = delete;

private:
    bool open_;
};

} // namespace

MessageSubmitter::MessageSubmitter(GSM::Message*& message, const SenderInfo& sender, QWidget* owner)
    : current_(message)
    , owner_(owner)
    , expander_(sender)
    , make_(&GSM::Message::make) {}

bool MessageSubmitter::addressesEachRecipient(const QString& text) {
    return text.contains(u'[' + loadString(IDS_VAR_RECIPIENT) + loadString(IDS_COLON));
}

bool MessageSubmitter::ask(int textId) {
    return UserAgent::current().messageBox(owner_, loadString(textId), boxCaption(),
                                           MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool MessageSubmitter::send(const SendForm& form) {
    form_ = form;
    if (!isValidRecipientText(form_.toText)) {
        UserAgent::current().messageBox(owner_, loadString(IDS_INVALID_RECIPIENT), boxCaption(),
                                        MB_OK | MB_ICONSTOP);
        return false;
    }
    const QString contactPattern = loadString(IDS_VAR_CONTACT) + loadString(IDS_COLON);
    if (form_.messageText.contains(contactPattern) && form_.chosenContactNumber.isEmpty() &&
        !ask(IDS_VARIABLES_NOT_REPLACED))
        return false;
    if (!form_.toText.isEmpty())
        rebuildRecipients(form_.toText);
    if (form_.recipientCount < 2 || !addressesEachRecipient(form_.messageText))
        return submitMessage(true, true);
    return submitPerRecipient();
}

void MessageSubmitter::rebuildRecipients(const QString& toText) {
    GSM::Folder* recipients = current_ ? current_->getContacts() : nullptr;
    if (!recipients)
        return;
    recipients->removeAll();
    for (const QString& number : recipientTokensLastFirst(toText)) {
        const WCHAR* text = toWide(number);
        if (GSM::Contact* contact = GSM::PhoneBook::lookup(text))
            recipients->add(contact);
        else
            recipients->add(text, 0);
    }
}

bool MessageSubmitter::submitMessage(bool askSender, bool updateFavourites) {
    if (!current_)
        return true;
    GSM::Folder* recipients = current_->getContacts();
    const GSM::Contact* first = recipients ? recipients->get(0) : nullptr;
    const RecipientInfo recipient = first ? recipientInfoOf(*first) : RecipientInfo();
    expander_.clearSenderInformationMissing();
    const QString text = expander_.expandForSending(form_.messageText, recipient);
    if (askSender && expander_.senderInformationMissing() && !ask(IDS_SENDER_INFO_EMPTY))
        return false;
    if (updateFavourites)
        Favourites::remember(Favourites::favouriteTextFor(firstRecipient(form_.toText)));
    // The library's results are not examined: the composer closes whatever they say, and the
    // Outbox shows what became of the message.
    current_->setServiceCentre(toWide(form_.serviceCentre));
    current_->setText(toWide(text));
    current_->setUseSameServiceCentre(form_.sameServiceCentre);
    current_->endEdit(false);
    current_ = nullptr;
    return true;
}

bool MessageSubmitter::submitPerRecipient() {
    const HandOver handOver;
    GSM::Message* const first = current_;
    GSM::Folder* all = first ? first->getContacts() : nullptr;
    if (!all)
        return true;
    bool askSender = true;
    while (all->size() > 1) {
        GSM::Message* copy = nullptr;
        for (int attempt = 0; !copy && attempt < kMakeAttempts; ++attempt)
            copy = make_();
        if (!copy)
            return false;
        if (GSM::Folder* recipients = copy->getContacts()) {
            if (!recipients->add(all->get(1)).isOk()) {
                copy->endEdit(true);
                return true;
            }
            all->remove(1);
        }
        current_ = copy;
        const bool handedOver = submitMessage(askSender, false);
        if (!handedOver) {
            copy->endEdit(true);
            current_ = first;
            return false;
        }
        askSender = false;
    }
    current_ = first;
    return submitMessage(false, true);
}

} // namespace tessaly::sms
