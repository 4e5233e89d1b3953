#include "suite/telephony/archive/character_references.h"
#include "suite/telephony/archive/utf8.h"

#include <optional>

namespace tessaly::telephony::archive {
namespace {

// U+FDD0 opens an escape; U+FDE0..U+FDEF carry its four hexadecimal digits.
constexpr char16_t kEscapeStart = 0xFDD0;
constexpr char16_t kDigitBase = 0xFDE0;

bool isXmlCharacter(char32_t value) {
    if (value < 0x20)
        return value == 0x09 || value == 0x0A || value == 0x0D;
    if (value >= 0xD800 && value <= 0xDFFF)
        return false;
    return value != 0xFFFE && value != 0xFFFF && value <= 0x10FFFF;
}

bool isEscapeRange(char32_t value) {
    return value >= 0xFDD0 && value <= 0xFDEF;
}

struct Reference {
    char32_t value = 0;
    qsizetype length = 0; // bytes from '&' to ';' inclusive
};

enum class Scan { Found, NotAReference, Incomplete };

// A numeric character reference at `at` (&#123; or &#x7B;). Longer digit runs than any real
// reference are not references of ours: the XML reader judges them.
Scan scanReference(const QByteArray& data, qsizetype at, Reference* reference) {
    constexpr qsizetype kLongest = 12;
    qsizetype i = at + 2;
    if (i > data.size())
        return Scan::Incomplete;
    bool hex = false;
    if (i < data.size() && (data[i] == 'x' || data[i] == 'X')) {
        hex = true;
        ++i;
    }
    const qsizetype digitsStart = i;
    char32_t value = 0;
    while (i < data.size() && i - at < kLongest) {
        const char c = data[i];
        int digit = -1;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (hex && c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (hex && c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        if (digit < 0)
            break;
        value = value * (hex ? 16 : 10) + char32_t(digit);
        ++i;
    }
    if (i == data.size() && i - at < kLongest)
        return Scan::Incomplete;
    if (i == digitsStart || i >= data.size() || data[i] != ';' || value > 0x10FFFF)
        return Scan::NotAReference;
    reference->value = value;
    reference->length = i + 1 - at;
    return Scan::Found;
}

} // namespace

void appendCodeUnitEscape(QByteArray& out, char16_t unit) {
    appendUtf8(out, kEscapeStart);
    for (int shift = 12; shift >= 0; shift -= 4)
        appendUtf8(out, char16_t(kDigitBase + ((unit >> shift) & 0xF)));
}

QByteArray CharacterReferenceFilter::filter(const QByteArray& chunk, bool last) {
    const QByteArray data = held_.isEmpty() ? chunk : held_ + chunk;
    held_.clear();
    QByteArray out;
    out.reserve(data.size());
    qsizetype i = 0;
    qsizetype copiedUpTo = 0;
    const auto holdFrom = [&](qsizetype from) {
        out.append(data.constData() + copiedUpTo, from - copiedUpTo);
        held_ = data.mid(from);
        return out;
    };
    while (i < data.size()) {
        const char c = data[i];
        if (c == '&' && (i + 1 >= data.size() || data[i + 1] == '#')) {
            Reference first;
            const Scan scan = scanReference(data, i, &first);
            if (scan == Scan::Incomplete && !last)
                return holdFrom(i);
            if (scan != Scan::Found ||
                (isXmlCharacter(first.value) && !isEscapeRange(first.value))) {
                i += scan == Scan::Found ? first.length : 1;
                continue;
            }
            qsizetype consumed = first.length;
            if (first.value >= 0xD800 && first.value <= 0xDBFF) {
                const qsizetype next = i + first.length;
                Reference second;
                Scan pair = Scan::NotAReference;
                if (next >= data.size())
                    pair = Scan::Incomplete;
                else if (data[next] == '&')
                    pair = scanReference(data, next, &second);
                if (pair == Scan::Incomplete && !last)
                    return holdFrom(i);
                out.append(data.constData() + copiedUpTo, i - copiedUpTo);
                if (pair == Scan::Found && second.value >= 0xDC00 && second.value <= 0xDFFF) {
                    appendUtf8(out,
                               0x10000 + ((first.value - 0xD800) << 10) + (second.value - 0xDC00));
                    consumed += second.length;
                } else {
                    appendCodeUnitEscape(out, char16_t(first.value));
                }
            } else {
                out.append(data.constData() + copiedUpTo, i - copiedUpTo);
                appendCodeUnitEscape(out, char16_t(first.value));
            }
            i += consumed;
            copiedUpTo = i;
            continue;
        }
        // U+FDD0..U+FDEF written out in UTF-8: EF B7 90..AF.
        if (uchar(c) == 0xEF) {
            if (i + 2 >= data.size() && !last)
                return holdFrom(i);
            if (i + 2 < data.size() && uchar(data[i + 1]) == 0xB7 && uchar(data[i + 2]) >= 0x90 &&
                uchar(data[i + 2]) <= 0xAF) {
                out.append(data.constData() + copiedUpTo, i - copiedUpTo);
                appendCodeUnitEscape(out, char16_t(0xFDC0 + (uchar(data[i + 2]) - 0x80)));
                i += 3;
                copiedUpTo = i;
                continue;
            }
        }
        ++i;
    }
    out.append(data.constData() + copiedUpTo, data.size() - copiedUpTo);
    return out;
}

std::u16string unescapeCodeUnits(QStringView text) {
    std::u16string out;
    out.reserve(size_t(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c == kEscapeStart && i + 4 < text.size()) {
            char16_t unit = 0;
            bool escape = true;
            for (int d = 1; d <= 4; ++d) {
                const char16_t digit = text[i + d].unicode();
                if (digit < kDigitBase || digit > kDigitBase + 15) {
                    escape = false;
                    break;
                }
                unit = char16_t(unit << 4 | (digit - kDigitBase));
            }
            if (escape) {
                out.push_back(unit);
                i += 4;
                continue;
            }
        }
        out.push_back(c);
    }
    return out;
}

} // namespace tessaly::telephony::archive
