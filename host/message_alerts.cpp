#include "host/message_alerts.h"

#include <QRegularExpression>
#include <QTimer>

namespace tessaly::host {

namespace {

// The name the phone book gives the party at this position, else the number.
QString party(GSM::Message& message, int position) {
    GSM::Folder* contacts = message.getContacts();
    const GSM::Contact* contact = contacts ? contacts->get(position) : nullptr;
    if (!contact)
        return {};
    const QString name =
        QString::fromUtf16(contact->getText(GSM::Contact::FieldDisplayName)).trimmed();
    return name.isEmpty() ? QString::fromUtf16(contact->getText(GSM::Contact::FieldNumber)) : name;
}

QString firstLine(const QString& text) {
    static const QRegularExpression lineBreak(QStringLiteral("[\r\n\u2028\u2029]"));
    const QStringList lines = text.split(lineBreak);
    for (const QString& line : lines) {
        const QString trimmed = line.simplified();
        if (trimmed.isEmpty())
            continue;
        if (trimmed.size() <= kAlertBodyLength)
            return trimmed;
        QString cut = trimmed.left(kAlertBodyLength - 1);
        if (cut.back().isHighSurrogate())
            cut.chop(1);
        return cut.trimmed() + QChar(0x2026);
    }
    return {};
}

} // namespace

MessageAlert alertFor(GSM::Message& message) {
    return {party(message, 0), firstLine(QString::fromUtf16(message.getText()))};
}

MessageAlert deliveryAlertFor(GSM::Message& message, int recipient, bool delivered) {
    const QString to = party(message, recipient);
    return {(delivered ? QStringLiteral("Delivered to ") : QStringLiteral("Not delivered to ")) +
                to,
            firstLine(QString::fromUtf16(message.getText()))};
}

MessageAlerts::MessageAlerts(DesktopNotifications& desktop, std::function<bool()> phoneIsActive,
                             std::function<void(long id)> open, QObject* parent)
    : QObject(parent)
    , desktop_(desktop)
    , phoneIsActive_(std::move(phoneIsActive))
    , open_(std::move(open)) {
    connect(&desktop_, &DesktopNotifications::opened, this, [this](qint64 key) {
        // openMessage runs the view modally: from the loop, not inside the bus's delivery.
        QTimer::singleShot(0, this, [this, id = long(key)] { open_(id); });
    });
}

void MessageAlerts::messageArrived(long id) {
    if (phoneIsActive_())
        return;
    GSM::Message* message = GSM::sms.getMessage(id);
    if (!message || message->getStatus() != GSM::Message::Unread)
        return;
    const MessageAlert alert = alertFor(*message);
    desktop_.post(id, alert.summary, alert.body);
    posted_.insert(id);
}

void MessageAlerts::messageDelivered(long id, int recipient, bool delivered) {
    GSM::Message* message = GSM::sms.getMessage(id);
    if (!message)
        return;
    const MessageAlert alert = deliveryAlertFor(*message, recipient, delivered);
    desktop_.post(id, alert.summary, alert.body);
}

void MessageAlerts::eventMessagesChanged() {
    // Read (or deleted) in the phone: the desktop need not tell of it any longer.
    for (auto it = posted_.begin(); it != posted_.end();) {
        GSM::Message* message = GSM::sms.getMessage(*it);
        if (message && message->getStatus() == GSM::Message::Unread) {
            ++it;
            continue;
        }
        desktop_.withdraw(*it);
        it = posted_.erase(it);
    }
}

} // namespace tessaly::host
