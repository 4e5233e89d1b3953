#include "host/sms_link.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>

namespace tessaly::host {

namespace {

constexpr QLatin1StringView kScheme("sms:");

bool fail(QString* error, const QString& message) {
    if (error)
        *error = message;
    return false;
}

bool isAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// RFC 3986 2.1: every '%' starts two hex digits, and the octets are UTF-8 (RFC 5724 2.2).
// QByteArray::fromPercentEncoding lets a broken escape through as it stands, so it is checked
// first.
bool percentDecoded(QStringView encoded, QString* decoded, QString* error) {
    const QByteArray bytes = encoded.toUtf8();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '%' &&
            (i + 2 >= bytes.size() || !isHexDigit(bytes[i + 1]) || !isHexDigit(bytes[i + 2])))
            return fail(error, QStringLiteral("The link has a broken %-escape: %1")
                                   .arg(QString::fromUtf8(bytes.mid(i, 3))));
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    *decoded = utf8.decode(QByteArray::fromPercentEncoding(bytes));
    if (utf8.hasError())
        return fail(error, QStringLiteral("The link's text is not UTF-8."));
    return true;
}

// RFC 3966 5.1: a telephone-subscriber is a number with visual separators ("-", ".", "(", ")")
// and parameters after ';' (phone-context and the like), which the phone does not use.
bool recipientNumber(QStringView recipient, QString* number, QString* error) {
    QString decoded;
    if (!percentDecoded(recipient, &decoded, error))
        return false;
    const QStringView subscriber = QStringView(decoded).left(decoded.indexOf(u';'));
    number->clear();
    for (const QChar c : subscriber) {
        if (c == u'-' || c == u'.' || c == u'(' || c == u')' || c == u' ')
            continue;
        const bool leadingPlus = c == u'+' && number->isEmpty();
        if (!leadingPlus && !isAsciiDigit(c) && c != u'*' && c != u'#')
            return fail(error, QStringLiteral("\"%1\" is not a phone number.").arg(subscriber));
        *number += c;
    }
    if (std::none_of(number->cbegin(), number->cend(), isAsciiDigit))
        return fail(error, QStringLiteral("The link names a recipient without a number."));
    return true;
}

} // namespace

bool looksLikeSmsLink(const QString& argument) {
    return argument.startsWith(kScheme, Qt::CaseInsensitive);
}

std::optional<SmsLink> parseSmsLink(const QString& link, QString* error) {
    if (!looksLikeSmsLink(link)) {
        fail(error, QStringLiteral("\"%1\" is not an sms: link.").arg(link));
        return std::nullopt;
    }
    // A fragment is not part of the message (RFC 3986 3.5).
    const QStringView withoutFragment = QStringView(link).left(link.indexOf(u'#'));
    const QStringView rest = withoutFragment.mid(kScheme.size());
    const qsizetype queryStart = rest.indexOf(u'?');
    const QStringView recipients = rest.left(queryStart);
    const QStringView query = queryStart < 0 ? QStringView() : rest.mid(queryStart + 1);

    SmsLink parsed;
    if (!recipients.isEmpty()) {
        for (const QStringView recipient : recipients.split(u',')) {
            QString number;
            if (!recipientNumber(recipient, &number, error))
                return std::nullopt;
            parsed.numbers << number;
        }
    }
    bool haveBody = false;
    for (const QStringView field : query.split(u'&', Qt::SkipEmptyParts)) {
        const qsizetype equals = field.indexOf(u'=');
        const QStringView name = field.left(equals);
        // Unknown fields are ignored (RFC 5724 2.2); the first body counts.
        if (name.compare(u"body", Qt::CaseInsensitive) != 0 || haveBody)
            continue;
        if (!percentDecoded(equals < 0 ? QStringView() : field.mid(equals + 1), &parsed.body,
                            error))
            return std::nullopt;
        haveBody = true;
    }
    return parsed;
}

QString toSmsLink(const SmsLink& link) {
    const auto encoded = [](const QString& text) {
        return QString::fromLatin1(text.toUtf8().toPercentEncoding());
    };
    QStringList numbers;
    for (const QString& number : link.numbers)
        numbers << encoded(number);
    QString written = kScheme + numbers.join(u',');
    if (!link.body.isEmpty())
        written += QStringLiteral("?body=") + encoded(link.body);
    return written;
}

} // namespace tessaly::host
