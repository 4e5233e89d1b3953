// Fuzz target for sms: links as the desktop hands them over: any bytes (read as UTF-8, with
// "sms:" in front half of the time) end in a link or an error; the numbers of a link hold only
// a leading "+", ASCII digits, "*" and "#"; and the link written out again from what was read
// reads back the same. libFuzzer entry point; the test replay_sms_link replays it.

#include "host/sms_link.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void fail(const char* what, const QString& link) {
    std::fprintf(stderr, "fuzz_sms_link: %s: %s\n", what, link.toUtf8().toPercentEncoding().data());
    std::abort();
}

bool isNumber(const QString& number) {
    bool hasDigit = false;
    for (qsizetype i = 0; i < number.size(); ++i) {
        const QChar c = number[i];
        hasDigit = hasDigit || (c >= u'0' && c <= u'9');
        if (!((c >= u'0' && c <= u'9') || c == u'*' || c == u'#' || (c == u'+' && i == 0)))
            return false;
    }
    return hasDigit;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const bool prefixed = size > 0 && (data[0] & 1);
    QString link = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    if (prefixed)
        link.prepend(QStringLiteral("sms:"));
    QString error;
    const std::optional<tessaly::host::SmsLink> parsed = tessaly::host::parseSmsLink(link, &error);
    if (!parsed) {
        if (error.isEmpty())
            fail("refused without a reason", link);
        return 0;
    }
    for (const QString& number : parsed->numbers)
        if (!isNumber(number))
            fail("a number that is not one", link);

    const QString written = tessaly::host::toSmsLink(*parsed);
    const std::optional<tessaly::host::SmsLink> again =
        tessaly::host::parseSmsLink(written, &error);
    if (!again || again->numbers != parsed->numbers || again->body != parsed->body)
        fail("written out again, the link reads differently", link);
    return 0;
}
