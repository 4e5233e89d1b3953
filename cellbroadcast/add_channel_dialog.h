#pragma once

// "Cell Broadcast" add-channel dialog: one digits-only field for a channel number, with the
// input panel up and an Edit menu. Modeless, over the Cell Broadcast page that opened it; OK
// hides it and posts kChannelEnteredMessage to that page, which reads the number and destroys
// the dialog. It deletes itself when its window goes.

#include "framework/ui/dialog.h"

namespace tessaly::sms {

// The first application-private message: "the add-channel dialog was confirmed".
constexpr UINT kChannelEnteredMessage = 0x8000;

class AddChannelDialog final : public Dialog {
public:
    explicit AddChannelDialog(Dialog* page);

    // Creates and shows a new dialog over the page; null when it could not be created.
    static AddChannelDialog* open(Dialog* page);
    QString channelText() const;

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    void onOK() override;
    void onCancel() override;
    void onPostDestroy() override;

private:
    Dialog* page_;
};

} // namespace tessaly::sms
