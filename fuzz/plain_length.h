#pragma once

// The SMS length rule counted one character at a time, as plainly as it can be written: the
// oracle for the telephony library's counter, which reads many units at a time.

#include <string>
#include <utility>

namespace tessaly::fuzz {

inline bool isHigh(char16_t c) {
    return c >= 0xd800 && c <= 0xdbff;
}

inline bool isLow(char16_t c) {
    return c >= 0xdc00 && c <= 0xdfff;
}

// Characters (septets or UTF-16 units) and messages.
inline std::pair<int, int> plainLength(const std::u16string& text) {
    static const std::u16string single =
        u"@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?"
        u"¡ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§¿abcdefghijklmnopqrstuvwxyzäöñüà";
    static const std::u16string extension = u"\f^{}\\[~]|€";
    if (text.empty())
        return {0, 0};
    bool gsm = true;
    int septets = 0, parts = 1, fill = 0;
    for (const char16_t c : text) {
        const int width = single.find(c) != std::u16string::npos      ? 1
                          : extension.find(c) != std::u16string::npos ? 2
                                                                      : 0;
        if (width == 0) {
            gsm = false;
            break;
        }
        septets += width;
        fill += width;
        if (fill > 153) {
            ++parts;
            fill = width;
        }
    }
    if (gsm)
        return {septets, septets <= 160 ? 1 : parts};
    int units = 0;
    parts = 1;
    fill = 0;
    for (std::size_t i = 0; i < text.size();) {
        const int width = isHigh(text[i]) && i + 1 < text.size() && isLow(text[i + 1]) ? 2 : 1;
        units += width;
        fill += width;
        if (fill > 67) {
            ++parts;
            fill = width;
        }
        i += std::size_t(width);
    }
    return {units, units <= 70 ? 1 : parts};
}

} // namespace tessaly::fuzz
