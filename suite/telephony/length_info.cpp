#include "suite/telephony/length_info.h"

#include <array>
#include <cstdint>

namespace tessaly::telephony {

namespace {

// Septets per code point below U+0100; characters above are handled by gsmSeptets' switch.
constexpr std::array<std::uint8_t, 256> makeLatinTable() {
    std::array<std::uint8_t, 256> table{};
    for (int c = 0x20; c <= 0x7e; ++c)
        table[c] = 1;
    table[u'`'] = 0; // the only printable ASCII character missing from the alphabet
    for (char16_t c : {u'^', u'{', u'}', u'\\', u'[', u']', u'~', u'|'})
        table[c] = 2;
    table[u'\n'] = 1;
    table[u'\r'] = 1;
    table[0x0c] = 2; // form feed lives in the extension table
    for (char16_t c :
         {u'£', u'¥', u'è', u'é', u'ù', u'ì', u'ò', u'Ç', u'Ø', u'ø', u'Å', u'å', u'Æ', u'æ', u'ß',
          u'É', u'¤', u'¡', u'Ä', u'Ö', u'Ñ', u'Ü', u'§', u'¿', u'ä', u'ö', u'ñ', u'ü', u'à'})
        table[c] = 1;
    return table;
}

constexpr std::array<std::uint8_t, 256> kLatin = makeLatinTable();

inline bool isHighSurrogate(char16_t c) {
    return c >= 0xd800 && c <= 0xdbff;
}

inline bool isLowSurrogate(char16_t c) {
    return c >= 0xdc00 && c <= 0xdfff;
}

LengthInfo measureUcs2(const char16_t* text) {
    int units = 0;
    int parts = 1;
    int fill = 0;
    for (const char16_t* p = text; *p;) {
        const int width = (isHighSurrogate(p[0]) && isLowSurrogate(p[1])) ? 2 : 1;
        units += width;
        fill += width;
        if (fill > kPartUnits) {
            ++parts;
            fill = width;
        }
        p += width;
    }
    return {units, units <= kSingleUnits ? 1 : parts, true};
}

// Inlined into the loop: an exported function of a shared library would be called through
// its PLT entry for every character.
inline int septetsOf(char16_t c) {
    if (c < 0x100)
        return kLatin[c];
    switch (c) {
    case u'Δ':
    case u'Φ':
    case u'Γ':
    case u'Λ':
    case u'Ω':
    case u'Π':
    case u'Ψ':
    case u'Σ':
    case u'Θ':
    case u'Ξ':
        return 1;
    case u'€':
        return 2;
    default:
        return 0;
    }
}

} // namespace

int gsmSeptets(char16_t c) {
    return septetsOf(c);
}

LengthInfo measureText(const char16_t* text) {
    if (!text || !*text)
        return {};
    int septets = 0;
    int parts = 1;
    int fill = 0;
    for (const char16_t* p = text; *p; ++p) {
        const int width = septetsOf(*p);
        if (width == 0)
            return measureUcs2(text);
        septets += width;
        fill += width;
        // An extension character that does not fit whole opens the next part.
        if (fill > kPartSeptets) {
            ++parts;
            fill = width;
        }
    }
    return {septets, septets <= kSingleSeptets ? 1 : parts, false};
}

} // namespace tessaly::telephony
