#include "module/notification_texts.h"

#include "framework/resources/resources.h"
#include "framework/ui/useragent.h"
#include "lists/message_texts.h"
#include "resources/resource.h"
#include "util/text_format.h"

#include <algorithm>

namespace tessaly::sms {

int unreadInInbox(const GSM::MessageContainer* inboxByStatus) {
    if (!inboxByStatus)
        return 0;
    const int firstRead = inboxByStatus->getFirst(GSM::Message::Read);
    const int firstUnread = inboxByStatus->getFirst(GSM::Message::Unread);
    return firstRead - std::min(firstRead, firstUnread);
}

QString otherNewMessagesText(int unread) {
    if (unread < 2)
        return QString();
    const int others = unread - 1;
    if (others == 1)
        return loadString(IDS_ANOTHER_NEW_MESSAGE);
    return formatText(loadString(IDS_OTHER_NEW_MESSAGES), {QString::number(others)});
}

QString segmentText(int segment, int segments) {
    if (segments <= 1)
        return QString();
    return formatText(loadString(IDS_SEGMENT_OF),
                      {QString::number(segment), QString::number(segments)});
}

CompletionMessage completionMessage(const GSM::Result& result, bool plural) {
    if (result.isOk())
        return {loadString(plural ? IDS_MESSAGES_SENT : IDS_MESSAGE_SENT), MB_ICONINFORMATION};
    if (result.errorCode() == GSM::ErrorNetworkRejected)
        return {fromWide(result.getErrorMessage()), MB_ICONSTOP};
    return {loadString(plural ? IDS_MESSAGES_SEND_ERROR : IDS_MESSAGE_SEND_ERROR), MB_ICONSTOP};
}

PersonLines personLines(const QString& name, const QString& number) {
    PersonLines lines;
    lines.hasNumber = !number.isEmpty();
    lines.known = !name.isEmpty() || lines.hasNumber;
    if (!name.isEmpty()) {
        lines.name = name;
        lines.number = number;
    } else if (lines.hasNumber) {
        lines.name = number;
    } else {
        lines.name = loadString(IDS_UNKNOWN_SENDER);
    }
    return lines;
}

PersonLines personLines(const GSM::Contact* contact) {
    return personLines(contactName(contact), contactNumber(contact));
}

} // namespace tessaly::sms
