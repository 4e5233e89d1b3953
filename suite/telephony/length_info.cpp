#include "suite/telephony/length_info.h"

#include <array>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

#if defined(__SSE2__)
// Eight UTF-16 units at a time while the text is plain: one aligned 16-byte load, a few
// compares, and the part arithmetic for the whole block. A block holding anything else (the
// NUL, a character outside the fast classes, a part boundary) goes through the scalar step. An
// aligned load never reaches into the next page, so reading past the NUL inside the block is
// safe; only the address sanitizer would object, hence its attribute.
constexpr std::uintptr_t kBlockBytes = 16;
constexpr int kBlockUnits = 8;

inline bool isBlockAligned(const char16_t* p) {
    return (reinterpret_cast<std::uintptr_t>(p) & (kBlockBytes - 1)) == 0;
}

// Lanes whose value lies in [low, low + span].
inline __m128i inRange(__m128i v, short low, short span) {
    const __m128i shifted = _mm_sub_epi16(v, _mm_set1_epi16(low));
    return _mm_cmpeq_epi16(_mm_subs_epu16(shifted, _mm_set1_epi16(span)), _mm_setzero_si128());
}

__attribute__((no_sanitize_address)) inline __m128i loadBlock(const char16_t* p) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(p));
}

// Septets of a block in the default alphabet when every character is printable ASCII other
// than the backtick, a line break or the euro sign (extension characters count 2) and none is
// the NUL; -1 otherwise.
inline int blockSeptets(const char16_t* p) {
    const __m128i v = loadBlock(p);
    const __m128i printable =
        _mm_andnot_si128(_mm_cmpeq_epi16(v, _mm_set1_epi16(u'`')), inRange(v, 0x20, 0x7e - 0x20));
    const __m128i euro = _mm_cmpeq_epi16(v, _mm_set1_epi16(short(u'€')));
    const __m128i lineBreak = _mm_or_si128(_mm_cmpeq_epi16(v, _mm_set1_epi16(u'\n')),
                                           _mm_cmpeq_epi16(v, _mm_set1_epi16(u'\r')));
    const __m128i known = _mm_or_si128(_mm_or_si128(printable, euro), lineBreak);
    if (_mm_movemask_epi8(known) != 0xffff)
        return -1;
    // [ \ ] ^ and { | } ~ live in the extension table.
    const __m128i extension = _mm_or_si128(
        _mm_or_si128(inRange(v, u'[', u'^' - u'['), inRange(v, u'{', u'~' - u'{')), euro);
    return kBlockUnits + __builtin_popcount(unsigned(_mm_movemask_epi8(extension))) / 2;
}

// True when the block holds neither the NUL nor a surrogate: eight units of one each.
inline bool isPlainUcs2Block(const char16_t* p) {
    const __m128i v = loadBlock(p);
    const __m128i special =
        _mm_or_si128(_mm_cmpeq_epi16(v, _mm_setzero_si128()), inRange(v, short(0xd800), 0x7ff));
    return _mm_movemask_epi8(special) == 0;
}
#endif

LengthInfo measureUcs2(const char16_t* text) {
    int units = 0;
    int parts = 1;
    int fill = 0;
    for (const char16_t* p = text; *p;) {
#if defined(__SSE2__)
        if (isBlockAligned(p) && isPlainUcs2Block(p)) {
            units += kBlockUnits;
            fill += kBlockUnits;
            if (fill > kPartUnits) {
                ++parts;
                fill -= kPartUnits;
            }
            p += kBlockUnits;
            continue;
        }
#endif
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
#if defined(__SSE2__)
        // A block of single septets may cross into the next part; one with an extension
        // character there is left to the scalar step, which keeps the pair whole.
        if (isBlockAligned(p)) {
            const int block = blockSeptets(p);
            if (block > 0 && (fill + block <= kPartSeptets || block == kBlockUnits)) {
                septets += block;
                fill += block;
                if (fill > kPartSeptets) {
                    ++parts;
                    fill -= kPartSeptets;
                }
                p += kBlockUnits - 1;
                continue;
            }
        }
#endif
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
