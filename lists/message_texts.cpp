#include "lists/message_texts.h"

#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "settings/validity_choices.h"
#include "util/date_time_text.h"

namespace tessaly::sms {

namespace {

const QChar kBullet(0x2022);

} // namespace

QString oneLineText(QString text) {
    text.replace(QStringLiteral("\r\n"), kBullet);
    text.replace(QLatin1Char('\r'), kBullet);
    text.replace(QLatin1Char('\n'), kBullet);
    return text;
}

int statusImageIndex(int status) {
    switch (status) {
    case GSM::Message::Incomplete:
        return 2;
    case GSM::Message::Read:
    case GSM::Message::Sent:
        return 1;
    case GSM::Message::Failed:
        return 3;
    default:
        return 0;
    }
}

QString contactColumnText(const GSM::Contact* contact) {
    if (!contact)
        return QString();
    const WCHAR* fileAs = contact->getText(GSM::Contact::FieldFileAs, 0);
    if (fileAs && *fileAs)
        return fromWide(contact->getText(GSM::Contact::FieldFileAs, 3));
    return fromWide(contact->getText(GSM::Contact::FieldNumber, 1));
}

GSM::Contact* firstContact(GSM::Message& message) {
    GSM::Folder* contacts = message.getContacts();
    return contacts ? contacts->get(0) : nullptr;
}

QString contactNumber(const GSM::Contact* contact) {
    return contact ? fromWide(contact->getText(GSM::Contact::FieldNumber, 1)) : QString();
}

QString contactName(const GSM::Contact* contact) {
    return contact ? fromWide(contact->getText(GSM::Contact::FieldFullName)) : QString();
}

RecipientsText recipientsText(const GSM::Folder* contacts) {
    RecipientsText result;
    if (!contacts)
        return result;
    for (int position = 0;; ++position) {
        const GSM::Contact* contact = contacts->get(position);
        if (!contact)
            break;
        const QString name = contactName(contact);
        const QString number = contactNumber(contact);
        if (position > 0)
            result.text += name.isEmpty() ? QStringLiteral(", ") : QStringLiteral(",\r\n");
        result.text += name.isEmpty() ? number : QStringLiteral("%1 (%2)").arg(name, number);
        ++result.count;
    }
    return result;
}

int statusTextId(int status) {
    switch (status) {
    case GSM::Message::Deleted:
        return IDS_STATUS_DELETED;
    case GSM::Message::Incomplete:
        return IDS_STATUS_INCOMPLETE;
    case GSM::Message::Unread:
        return IDS_STATUS_UNREAD;
    case GSM::Message::Read:
        return IDS_STATUS_READ;
    case GSM::Message::Forwarded:
        return IDS_STATUS_FORWARDED;
    case GSM::Message::Replied:
        return IDS_STATUS_REPLIED;
    case GSM::Message::NotSent:
        return IDS_STATUS_NOT_SENT;
    case GSM::Message::SendNow:
        return IDS_STATUS_SEND_NOW;
    case GSM::Message::Sent:
        return IDS_STATUS_SENT;
    case GSM::Message::Failed:
        return IDS_STATUS_FAILED;
    default:
        return IDS_STATUS_UNKNOWN;
    }
}

int validityTextId(int validityPeriod) {
    for (const ValidityChoice& choice : kValidityChoices)
        if (choice.code == validityPeriod)
            return choice.textId;
    return IDS_VALIDITY_UNKNOWN;
}

int folderNameId(int folder) {
    switch (folder) {
    case kOutboxFolder:
        return IDS_OUTBOX;
    case kCellBroadcastFolder:
        return IDS_CELLBROADCAST;
    default:
        return IDS_INBOX;
    }
}

int sortKeyNameId(int sortKey) {
    switch (sortKey) {
    case GSM::Sms::SortByContact:
        return IDS_SORT_CONTACT;
    case GSM::Sms::SortByStatus:
        return IDS_STATUS;
    default:
        return IDS_DATE;
    }
}

QString labelText(int wordId) {
    return loadString(wordId) + loadString(IDS_COLON);
}

QString notSentText(const GSM::Message& message, const GSM::Folder* contacts) {
    if (!contacts || message.getStatus() != GSM::Message::Failed || contacts->size() < 2)
        return {};
    QStringList names;
    for (int position = 0; position < contacts->size(); ++position) {
        const GSM::Contact* contact = contacts->get(position);
        if (!contact || message.wasSentTo(position))
            continue;
        const QString name = contactName(contact);
        names.append(name.isEmpty() ? contactNumber(contact) : name);
    }
    return names.join(QStringLiteral(", "));
}

QString deliveredText(const GSM::Message& message, const GSM::Folder* contacts) {
    if (!contacts || contacts->size() == 0)
        return {};
    int delivered = 0;
    std::uint64_t latest = 0;
    for (int position = 0; position < contacts->size(); ++position) {
        const std::uint64_t ticks = fileTimeToUInt64(message.deliveredTo(position));
        if (ticks == 0)
            continue;
        ++delivered;
        latest = std::max(latest, ticks);
    }
    if (delivered == 0)
        return {};
    const QString time = FormatTimestamp(fileTimeFromUInt64(latest));
    if (delivered == contacts->size())
        return time;
    return QStringLiteral("%1/%2, %3").arg(delivered).arg(contacts->size()).arg(time);
}

QString sizeWarningText(int folder) {
    QString text = loadString(IDS_FOLDER_TOO_LARGE);
    if (folder == kOutboxFolder)
        text.replace(loadString(IDS_INBOX), loadString(IDS_OUTBOX));
    return text;
}

} // namespace tessaly::sms
