#pragma once

// The Delete Messages window: deletes a whole folder, or its messages older than a number of
// days (at most 100, 30 by default), in one request to the message service. Modeless and
// without a parent; it deletes itself when it closes.

#include "framework/ui/dialog.h"

namespace tessaly::sms {

class DeleteMessagesWindow : public Dialog {
public:
    static constexpr int kDefaultAgeDays = 30;
    static constexpr int kLargestAgeDays = 100;

    // folder: 0 Inbox, 1 Outbox.
    explicit DeleteMessagesWindow(int folder);
    int folder() const { return folder_; }

    // Creates and shows a window for the folder; null when it could not be created.
    static DeleteMessagesWindow* open(int folder);

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override;
    void onCancel() override;
    void onPostDestroy() override;

private:
    void enableAge(bool enable);

    int folder_;
};

// The days typed into the age field, read as the platform's decimal conversion does: leading
// blanks, an optional sign, then digits up to the first other character; no digits give 0.
// Values beyond the int range saturate, so that they count as too large.
int parseDays(const QString& text);

} // namespace tessaly::sms
