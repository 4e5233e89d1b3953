#include "lists/message_commands.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "lists/message_texts.h"
#include "resources/resource.h"

namespace tessaly::sms {

void reportFailure(const GSM::Result& result) {
    if (!result.isOk())
        GSM::Io::showErrorMessage(result);
}

bool confirmAndDeleteMessage(QWidget* owner, long messageId, int questionId) {
    const int answer = UserAgent::current().messageBox(owner, loadString(questionId), boxCaption(),
                                                       MB_YESNO | MB_ICONQUESTION);
    if (answer != IDYES)
        return false;
    const GSM::Result result = GSM::sms.setMessageStatus(messageId, GSM::Message::Deleted);
    reportFailure(result);
    return result.isOk();
}

void callNumber(const QString& number) {
    if (number.isEmpty() || !GSM::isServiceAvailable(GSM::ServiceVoice))
        return;
    reportFailure(GSM::Phone::makeCall(toWide(number)));
}

void copyToPhonebook(QWidget* owner, const QString& number) {
    if (number.isEmpty())
        return;
    GSM::Folder* phoneBook = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts);
    if (!phoneBook)
        return;
    const WCHAR* wideNumber = toWide(number);
    UserAgent& user = UserAgent::current();
    if (GSM::PhoneBook::lookup(wideNumber) &&
        user.messageBox(owner, loadString(IDS_NUMBER_ALREADY_STORED), boxCaption(),
                        MB_YESNO | MB_ICONEXCLAMATION) != IDYES)
        return;
    const GSM::Result result = phoneBook->add(wideNumber);
    if (!result.isOk()) {
        reportFailure(result);
        return;
    }
    user.messageBox(owner, loadString(IDS_CONTACT_ADDED), boxCaption(), MB_OK | MB_ICONINFORMATION);
}

} // namespace tessaly::sms
