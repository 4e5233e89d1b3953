#include "compose/composer_text.h"

namespace tessaly::sms {

namespace {

constexpr QChar kBullet = QChar(0x2022);

QString withoutTrailingBlanks(QString text) {
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    text.truncate(end);
    return text;
}

QString withoutLeadingBlanks(const QString& text) {
    qsizetype start = 0;
    while (start < text.size() && text.at(start).isSpace())
        ++start;
    return text.mid(start);
}

} // namespace

QString forwardedText(const QString& original) {
    QString text = QStringLiteral("\r\n") + original;
    text.replace(QStringLiteral("\r\n"), QString(kBullet));
    text.replace(u'\r', kBullet);
    text.replace(u'\n', kBullet);
    text.replace(kBullet, QStringLiteral("\r\n"));
    return text;
}

QString withCrLfBreaks(const QString& text) {
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(u'\r', u'\n');
    result.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return result;
}

StartText greetingAndSignature(const QString& greeting, const QString& signature) {
    const QString head = withoutTrailingBlanks(greeting);
    if (signature.isNull())
        return {head, int(head.size())};
    const int caret = head.isEmpty() ? 0 : int(head.size()) + 2;
    return {head + QStringLiteral("\r\n\r\n") + withoutLeadingBlanks(signature), caret};
}

} // namespace tessaly::sms
