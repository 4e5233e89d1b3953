#include "module/new_message_notification.h"

#include "framework/resources/resources.h"
#include "framework/ui/modeless.h"
#include "framework/ui/useragent.h"
#include "lists/message_texts.h"
#include "module/module_context.h"
#include "module/notification_header.h"
#include "module/notification_layout.h"
#include "resources/resource.h"
#include "util/text_format.h"

namespace tessaly::sms {

NewMessageNotification::NewMessageNotification(long messageId)
    : Dialog(IDD_NEW_MESSAGE_NOTIFICATION)
    , messageId_(messageId) {
    setPresentation(Presentation::PopUp);
}

NewMessageNotification* NewMessageNotification::open(long messageId) {
    return showModeless(new NewMessageNotification(messageId));
}

bool NewMessageNotification::onInitDialog() {
    const ModuleScope scope;
    enableItem(IDC_NOTIFY_CALL_BACK, false);
    enableItem(IDC_NOTIFY_REPLY, false);
    fillFields();
    layoutLines();
    countUnread();
    return true;
}

void NewMessageNotification::fillFields() {
    GSM::Message* message = GSM::sms.getMessage(messageId_);
    if (!message) {
        for (int id : {IDC_NOTIFY_NAME, IDC_NOTIFY_NUMBER, IDC_NOTIFY_DATE, IDC_NOTIFY_TEXT})
            setItemText(id, QString());
        return;
    }
    setItemText(IDC_NOTIFY_DATE, fromWide(message->getDate()));
    sender_ = personLines(firstContact(*message));
    setItemText(IDC_NOTIFY_NAME, sender_.name);
    setItemText(IDC_NOTIFY_NUMBER, sender_.number);
    if (sender_.known && sender_.hasNumber) {
        enableItem(IDC_NOTIFY_REPLY, true);
        enableItem(IDC_NOTIFY_CALL_BACK, GSM::isServiceAvailable(GSM::ServiceVoice));
    }
    setItemText(IDC_NOTIFY_TEXT, fromWide(message->getText()));
}

void NewMessageNotification::layoutLines() {
    NotificationLayout layout(*this);
    layout.addLine(IDC_NOTIFY_FROM_LABEL, IDC_NOTIFY_NAME);
    if (!sender_.number.isEmpty())
        layout.addLine(0, IDC_NOTIFY_NUMBER);
    else
        showItem(IDC_NOTIFY_NUMBER, false);
    layout.addLine(IDC_NOTIFY_DATE_LABEL, IDC_NOTIFY_DATE);
    layout.place(IDC_NOTIFY_HEADER, IDC_NOTIFY_TEXT, IDC_NOTIFY_OTHERS, IDC_NOTIFY_CALL_BACK);
    paintHeader(*this, IDC_NOTIFY_HEADER, HeaderPicture::Message, loadString(IDS_HEADER_MESSAGE));
}

void NewMessageNotification::countUnread() {
    const GSM::MessageContainer* inbox =
        GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByStatus);
    if (!inbox)
        return;
    const int unread = unreadInInbox(inbox);
    showItem(IDC_NOTIFY_OTHERS, unread >= 2);
    if (unread != lastUnread_) {
        if (restartsCloseTimer(lastUnread_, unread))
            setTimer(kCloseTimer, kCloseAfterMs);
        lastUnread_ = unread;
    }
    setItemText(IDC_NOTIFY_OTHERS, otherNewMessagesText(unread));
}

void NewMessageNotification::eventMessagesChanged() {
    const ModuleScope scope;
    if (isWindow())
        countUnread();
}

void NewMessageNotification::callBack() {
    GSM::Message* message = GSM::sms.getMessage(messageId_);
    GSM::Contact* contact = message ? firstContact(*message) : nullptr;
    closeByThePerson();
    if (!contact || !GSM::isServiceAvailable(GSM::ServiceVoice))
        return;
    if (!GSM::Phone::makeCall(contact).isOk())
        UserAgent::current().messageBox(
            nullptr, formatText(loadString(IDS_CALL_FAILED), {personLines(contact).name}),
            boxCaption(), MB_OK | MB_ICONSTOP);
}

void NewMessageNotification::onCommand(int id) {
    const ModuleScope scope;
    switch (id) {
    case IDC_NOTIFY_CALL_BACK:
        callBack();
        break;
    case IDC_NOTIFY_REPLY: {
        const GSM::Result result = GSM::sms.replyMessage(messageId_);
        closeByThePerson();
        if (!result.isOk())
            GSM::Io::showErrorMessage(result);
        break;
    }
    case IDC_NOTIFY_READ_ALL:
        closeByThePerson();
        GSM::executeService(GSM::ServiceSms);
        break;
    case IDOK:
    case IDCANCEL: // Escape: the person has seen it
        closeByThePerson();
        break;
    default:
        Dialog::onCommand(id);
    }
}

void NewMessageNotification::onTimer(UINT_PTR id) {
    if (id != kCloseTimer)
        return;
    const ModuleScope scope;
    killTimer(kCloseTimer);
    timedOut_ = true;
    destroyWindow();
}

void NewMessageNotification::closeByThePerson() {
    // Only an unread message becomes read: one replied to meanwhile keeps its status.
    const GSM::Message* message = GSM::sms.getMessage(messageId_);
    if (!timedOut_ && message && message->getStatus() == GSM::Message::Unread)
        GSM::sms.setMessageStatus(messageId_, GSM::Message::Read);
    killTimer(kCloseTimer);
    destroyWindow();
}

void NewMessageNotification::onPostDestroy() {
    const ModuleScope scope;
    if (forgetWindow(moduleContext().messageNotification, this))
        handBackControlIfIdle();
    delete this;
}

} // namespace tessaly::sms
