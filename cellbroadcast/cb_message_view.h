#pragma once

// The cell-broadcast message view: the latest message of one channel with its channel number,
// receive time, how often it was received, and its text on one line, selected. Opened modally
// from the cell-broadcast list of the main window; the message is read once, when it is
// created, and a channel without a message leaves the fields empty.

#include "framework/ui/dialog.h"

#include <QFont>
#include <QString>

namespace tessaly::sms {

class CbMessageView : public Dialog {
public:
    explicit CbMessageView(int channel, Dialog* parent = nullptr);

    bool hasMessage() const { return hasMessage_; }

protected:
    bool onInitDialog() override;
    void onSize(int clientWidth, int clientHeight) override;

private:
    void layoutControls();

    bool hasMessage_ = false;
    QString channelText_;
    QString dateText_;
    QString countText_;
    QString text_;
    QFont captionFont_;
};

} // namespace tessaly::sms
