#include "compose/status_line.h"

#include "framework/resources/resources.h"
#include "gsm/sms.h"
#include "resources/resource.h"
#include "util/wide_text.h"

namespace tessaly::sms {

QString counterText(int characters, int messages) {
    return QString::asprintf(
        "%d %ls, %d %ls", characters,
        qUtf16Printable(loadString(characters == 1 ? IDS_CHARACTER : IDS_CHARACTERS)), messages,
        qUtf16Printable(loadString(messages == 1 ? IDS_MESSAGE : IDS_MESSAGES)));
}

QString counterTextFor(const QString& messageText) {
    int characters = 0;
    int messages = 0;
    GSM::sms.getLengthInfo(toWide(messageText), &characters, &messages);
    return counterText(characters, messages);
}

QString recipientText(int recipientCount) {
    if (recipientCount <= 1)
        return QString();
    return QString::asprintf("%d %ls", recipientCount, qUtf16Printable(loadString(IDS_RECIPIENTS)));
}

bool sendAllowed(const QString& messageText, int recipientCount) {
    return !messageText.isEmpty() && recipientCount != 0;
}

} // namespace tessaly::sms
