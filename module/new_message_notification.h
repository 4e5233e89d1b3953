#pragma once

// The new-message notification ("Message"): sender, date and text of the message that arrived,
// the count of further unread messages, and "Call Back", "Reply" and "Read All". One window for
// any number of arrivals: it keeps its first message and only recounts the unread ones. It
// closes itself five minutes after the last growth of that count, leaving the message unread;
// closed by the person, it marks the message read (destroyed when the module stops, it changes
// nothing). Modeless; it deletes itself when destroyed
// and hands control back to the host when it was the module's last window.

#include "framework/ui/dialog.h"
#include "module/notification_texts.h"
#include "gsm/gsm.h"

namespace tessaly::sms {

class NewMessageNotification : public Dialog, public GSM::SmsEventHandler {
public:
    static constexpr UINT_PTR kCloseTimer = 1;
    static constexpr UINT kCloseAfterMs = 300000;

    explicit NewMessageNotification(long messageId);

    // Creates the window for the message and shows it; null when it cannot be created.
    static NewMessageNotification* open(long messageId);

    long messageId() const { return messageId_; }
    // The unread count last seen (-1 before the first count).
    int unreadCount() const { return lastUnread_; }

    // The store changed: the unread messages are counted again.
    void eventMessagesChanged() override;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onTimer(UINT_PTR id) override;
    void onPostDestroy() override;

private:
    void fillFields();
    void countUnread();
    void layoutLines();
    void callBack();
    // Closed by a button or the keyboard: the message is read. Not when the module stops.
    void closeByThePerson();

    long messageId_;
    int lastUnread_ = -1;
    bool timedOut_ = false;
    PersonLines sender_;
};

} // namespace tessaly::sms
