#include "compose/recipients.h"

namespace tessaly::sms {

bool isRecipientCharacter(QChar character) {
    return kRecipientCharacters.contains(character);
}

bool isValidRecipientText(QStringView text) {
    for (QChar character : text)
        if (!isRecipientCharacter(character))
            return false;
    return true;
}

int countRecipients(QStringView toText) {
    int count = 0;
    QChar previous = u',';
    for (QChar character : toText) {
        if (character == u' ')
            continue;
        if (character == u',' && previous != u',')
            ++count;
        previous = character;
    }
    if (previous != u',')
        ++count;
    return count;
}

QStringList recipientTokensLastFirst(QStringView toText) {
    QStringList tokens;
    qsizetype end = toText.size();
    for (qsizetype i = toText.size(); i >= 0; --i) {
        if (i > 0 && toText[i - 1] != u',')
            continue;
        QString token = toText.mid(i, end - i).toString();
        token.remove(u' ');
        if (!token.isEmpty())
            tokens.append(token);
        end = i - 1;
    }
    return tokens;
}

QStringList provisionalRecipients(const QString& toText) {
    QStringList numbers;
    QString remaining = toText;
    for (qsizetype comma = remaining.indexOf(u','); comma >= 0; comma = remaining.indexOf(u',')) {
        remaining = remaining.mid(comma + 1);
        numbers.append(remaining);
    }
    numbers.append(remaining);
    return numbers;
}

QString firstRecipient(const QString& toText) {
    const qsizetype comma = toText.indexOf(u',');
    return comma < 0 ? toText : toText.left(comma);
}

} // namespace tessaly::sms
