#pragma once

// The message view: one stored message in full (sender or recipients, date, text, and on
// request status, validity, service centre and reply path), with the commands of its menu bar.
// Run modally; all message data are read once, when it is created. The caller reads
// wasDeleted() afterwards, so that a message deleted here is not marked read.

#include "framework/ui/dialog.h"
#include "gsm/gsm.h"
#include "lists/message_texts.h"

#include <QFont>

namespace tessaly::sms {

class MessageView : public Dialog {
public:
    // folder: 0 Inbox, 1 Outbox. An unknown id leaves every field at its template text.
    MessageView(long messageId, int folder, Dialog* parent = nullptr);

    bool wasDeleted() const { return deleted_; }
    bool detailsShown() const;
    int recipientCount() const { return recipients_.count; }

protected:
    bool onInitDialog() override;
    void onCommand(int id) override;
    bool onDrawItem(int id, QPainter& painter, const DrawItemState& state) override;
    void onSize(int clientWidth, int clientHeight) override;

private:
    void fillFields();
    void showDetails(bool show);
    void layoutControls();
    // Lines the text takes in the item at this width, wrapped at words.
    int wrappedLines(int id, const QString& text, int width) const;
    void deleteMessage();

    long messageId_;
    int folder_;
    GSM::Message* message_ = nullptr;
    QString serviceCentre_;
    QString text_;
    int validity_ = 0;
    int status_ = 0;
    bool deleted_ = false;
    QString name_;
    QString number_;
    bool hasName_ = false;
    bool replyPath_ = false;
    QString dateText_;
    RecipientsText recipients_;
    QString notSent_;
    QString delivered_;
    QFont titleFont_;
};

} // namespace tessaly::sms
