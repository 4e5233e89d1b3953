#include "module/sending_notification.h"

#include "framework/resources/resources.h"
#include "framework/time/thread_timer.h"
#include "framework/ui/modeless.h"
#include "framework/ui/useragent.h"
#include "lists/message_texts.h"
#include "module/module_context.h"
#include "module/notification_header.h"
#include "module/notification_layout.h"
#include "resources/resource.h"

namespace tessaly::sms {

SendingNotification::SendingNotification()
    : Dialog(IDD_SENDING_NOTIFICATION) {
    setPresentation(Presentation::PopUp);
}

SendingNotification::~SendingNotification() {
    stopBoxTimer();
}

SendingNotification* SendingNotification::createHidden() {
    return createModeless(new SendingNotification);
}

bool SendingNotification::onInitDialog() {
    const ModuleScope scope;
    for (int id : {IDC_SENDING_NAME, IDC_SENDING_NUMBER, IDC_SENDING_SEGMENT, IDC_SENDING_TEXT})
        setItemText(id, QString());
    layoutLines();
    return true;
}

void SendingNotification::showProgress(long messageId, int recipient, int segment, int segments,
                                       int reserved1, int reserved2) {
    const ModuleScope scope;
    segment_ = segment;
    segments_ = segments;
    reserved_[0] = reserved1;
    reserved_[1] = reserved2;
    completion_ = false;
    setItemText(IDC_SENDING_SEGMENT, segmentText(segment, segments));
    const std::pair<long, int> now{messageId, recipient};
    if (shown_ != now) {
        messageId_ = messageId;
        recipient_ = recipient;
        loadRecipient();
    }
    layoutLines();
}

void SendingNotification::loadRecipient() {
    GSM::Message* message = GSM::sms.getMessage(messageId_);
    if (!message)
        return; // an id the library no longer knows leaves the lines as they are
    shown_ = std::pair{messageId_, recipient_};
    GSM::Folder* recipients = message->getContacts();
    recipientCount_ = recipients ? recipients->size() : 0;
    const GSM::Contact* contact =
        recipients && recipient_ >= 0 ? recipients->get(recipient_) : nullptr;
    recipientLines_ = personLines(contact);
    setItemText(IDC_SENDING_NAME, recipientLines_.name);
    setItemText(IDC_SENDING_NUMBER, recipientLines_.number);
    setItemText(IDC_SENDING_TEXT, fromWide(message->getText()));
}

double SendingNotification::runProgress() const {
    if (segments_ <= 0)
        return -1.0;
    const int recipients = std::max(1, recipientCount_);
    const int done = std::clamp(recipient_, 0, recipients - 1) * segments_ + segment_;
    return double(done) / double(recipients * segments_);
}

void SendingNotification::layoutLines() {
    NotificationLayout layout(*this);
    layout.addLine(IDC_SENDING_TO_LABEL, IDC_SENDING_NAME);
    const bool numberShown = !recipientLines_.number.isEmpty();
    if (numberShown)
        layout.addLine(0, IDC_SENDING_NUMBER);
    showItem(IDC_SENDING_NUMBER, numberShown);
    const bool segmentsShown = segments_ > 1;
    if (segmentsShown)
        layout.addLine(IDC_SENDING_SEGMENT_LABEL, IDC_SENDING_SEGMENT);
    showItem(IDC_SENDING_SEGMENT_LABEL, segmentsShown);
    showItem(IDC_SENDING_SEGMENT, segmentsShown);
    layout.place(IDC_SENDING_HEADER, IDC_SENDING_TEXT, 0, IDC_SENDING_DISMISS);
    paintHeader(*this, IDC_SENDING_HEADER, HeaderPicture::Sending, loadString(IDS_HEADER_SENDING),
                0, runProgress());
}

void SendingNotification::setCompletion(const GSM::Result& result, bool plural) {
    result_ = result;
    plural_ = plural;
    completion_ = true;
    completionWhileBoxShown_ = boxShown_;
}

void SendingNotification::onCommand(int id) {
    const ModuleScope scope;
    switch (id) {
    case IDC_SENDING_DISMISS:
        moduleContext().sendingNotificationSuppressed = true;
        destroyWindow();
        break;
    case IDOK:
    case IDCANCEL: // Escape hides this run's window; the next segment brings it back
        destroyWindow();
        break;
    default:
        Dialog::onCommand(id);
    }
}

void SendingNotification::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_APP)
        return;
    const ModuleScope scope;
    showCompletionBox();
}

void SendingNotification::showCompletionBox() {
    QWidget* owner = window();
    // A run that ends while the box is up (a quick second send) gets its own box after it.
    do {
        completionWhileBoxShown_ = false;
        const CompletionMessage completion = completionMessage(result_, plural_);
        // Nobody may be looking: the box answers itself with OK after twenty seconds.
        stopBoxTimer();
        boxTimer_ = setThreadTimer(kCompletionBoxMs, [owner](UINT_PTR) {
            UserAgent::current().endMessageBox(owner, IDOK);
        });
        boxShown_ = true;
        UserAgent::current().messageBox(owner, completion.text, boxCaption(),
                                        MB_OK | completion.icon | MB_SETFOREGROUND | MB_TOPMOST);
        boxShown_ = false;
        stopBoxTimer();
    } while (completionWhileBoxShown_ && isWindow());
    destroyWindow();
}

void SendingNotification::stopBoxTimer() {
    if (boxTimer_ != 0)
        killThreadTimer(boxTimer_);
    boxTimer_ = 0;
}

void SendingNotification::onPostDestroy() {
    const ModuleScope scope;
    forgetWindow(moduleContext().sendingNotification, this);
    delete this;
}

} // namespace tessaly::sms
