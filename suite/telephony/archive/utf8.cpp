#include "suite/telephony/archive/utf8.h"

namespace tessaly::telephony::archive {

void appendUtf8(QByteArray& out, char32_t value) {
    if (value < 0x80) {
        out.append(char(value));
    } else if (value < 0x800) {
        out.append(char(0xC0 | (value >> 6)));
        out.append(char(0x80 | (value & 0x3F)));
    } else if (value < 0x10000) {
        out.append(char(0xE0 | (value >> 12)));
        out.append(char(0x80 | ((value >> 6) & 0x3F)));
        out.append(char(0x80 | (value & 0x3F)));
    } else {
        out.append(char(0xF0 | (value >> 18)));
        out.append(char(0x80 | ((value >> 12) & 0x3F)));
        out.append(char(0x80 | ((value >> 6) & 0x3F)));
        out.append(char(0x80 | (value & 0x3F)));
    }
}

void appendWtf8(QByteArray& out, std::u16string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((char32_t(c) - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            appendUtf8(out, c);
        }
    }
}

std::u16string fromWtf8(QByteArrayView bytes) {
    std::u16string out;
    out.reserve(size_t(bytes.size()));
    qsizetype i = 0;
    while (i < bytes.size()) {
        const uchar lead = uchar(bytes[i]);
        int length = 0;
        char32_t value = 0;
        char32_t least = 0;
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2, value = lead & 0x1F, least = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3, value = lead & 0x0F, least = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4, value = lead & 0x07, least = 0x10000;
        }
        bool valid = length > 0 && i + length <= bytes.size();
        for (int k = 1; valid && k < length; ++k) {
            const uchar next = uchar(bytes[i + k]);
            valid = (next & 0xC0) == 0x80;
            value = value << 6 | (next & 0x3F);
        }
        if (!valid || value < least || value > 0x10FFFF) {
            out.push_back(u'\uFFFD');
            ++i;
            continue;
        }
        if (value >= 0x10000) {
            out.push_back(char16_t(0xD800 + ((value - 0x10000) >> 10)));
            out.push_back(char16_t(0xDC00 + ((value - 0x10000) & 0x3FF)));
        } else {
            out.push_back(char16_t(value));
        }
        i += length;
    }
    return out;
}

} // namespace tessaly::telephony::archive
