#pragma once

// The sending notification ("Sending"): the message being sent, its recipient, the segment line
// and a gauge of the run, with "Dismiss", which hides progress until the person sends from the
// Outbox again. At the end of a run it is hidden and shows the completion box, which closes
// itself after twenty seconds when nobody answers; then the window goes. Modeless; it deletes
// itself when destroyed.

#include "framework/ui/dialog.h"
#include "module/notification_texts.h"
#include "gsm/gsm.h"

#include <optional>

namespace tessaly::sms {

class SendingNotification : public Dialog {
public:
    static constexpr UINT kCompletionBoxMs = 20000;

    SendingNotification();
    ~SendingNotification() override;

    // Creates the window, hidden; null when it cannot be created.
    static SendingNotification* createHidden();

    // A segment is on its way: message id, index of the recipient in the message's recipient
    // list, segment number, segment count, and two values that are kept and never read.
    void showProgress(long messageId, int recipient, int segment, int segments, int reserved1,
                      int reserved2);
    // The run ended; the completion box comes with WM_APP.
    void setCompletion(const GSM::Result& result, bool plural);

    long messageId() const { return messageId_; }
    bool hasCompletion() const { return completion_; }

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onPostDestroy() override;

private:
    void loadRecipient();
    void layoutLines();
    double runProgress() const;
    void showCompletionBox();
    void stopBoxTimer();

    long messageId_ = 0;
    int recipient_ = 0;
    int segment_ = 0;
    int segments_ = 0;
    int reserved_[2] = {0, 0};
    // Which message and recipient the lines show (none before the first progress).
    std::optional<std::pair<long, int>> shown_;
    int recipientCount_ = 0;
    PersonLines recipientLines_;
    bool completion_ = false;
    bool plural_ = false;
    GSM::Result result_;
    UINT_PTR boxTimer_ = 0;
    bool boxShown_ = false;
    bool completionWhileBoxShown_ = false;
};

} // namespace tessaly::sms
