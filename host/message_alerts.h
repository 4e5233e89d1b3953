#pragma once

// New messages told to the desktop: while the phone is not the window the person works in, a
// message that arrives is also posted as a desktop notification; choosing it brings the phone
// forward with the message open, and reading the message in the phone takes it away.

#include "gsm/sms.h"
#include "host/desktop_notifications.h"

#include <QObject>
#include <QSet>

#include <functional>

namespace tessaly::host {

class HostSession;

struct MessageAlert {
    QString summary; // the sender's name from the phone book, else the number
    QString body;    // the first line of the text, trimmed and shortened
};

// The longest body posted, in characters; a longer first line ends in "…".
constexpr int kAlertBodyLength = 120;

MessageAlert alertFor(GSM::Message& message);
MessageAlert deliveryAlertFor(GSM::Message& message, int recipient, bool delivered);

class MessageAlerts final : public QObject, private GSM::SmsEventHandler {
    Q_OBJECT
public:
    // `phoneIsActive` answers whether the person works in the phone right now; `open` brings
    // the phone forward with one message open.
    MessageAlerts(DesktopNotifications& desktop, std::function<bool()> phoneIsActive,
                  std::function<void(long id)> open, QObject* parent = nullptr);

    // A message arrived.
    void messageArrived(long id);
    // The network reported a sent message delivered to the recipient at this position (posted
    // as "Delivered to" the name or number), or given up on ("Not delivered to", with the
    // network's reason in the message view). Posted whether the phone is in front or not: the
    // phone shows it only in the message view.
    void messageDelivered(long id, int recipient, bool delivered);

private:
    void eventMessagesChanged() override;

    DesktopNotifications& desktop_;
    std::function<bool()> phoneIsActive_;
    std::function<void(long)> open_;
    QSet<long> posted_;
};

} // namespace tessaly::host
