#include "suite/telephony/length_info.h"

#include "suite/telephony/pdu/gsm_alphabet.h"

#include <array>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tessaly::telephony {

namespace {

// Septets per code point below U+0100, read from the codec's alphabet once at compile time so
// that the loop below pays one load per character.
constexpr std::array<std::uint8_t, 256> makeLatinTable() {
    std::array<std::uint8_t, 256> table{};
    for (char16_t c = 0; c < table.size(); ++c)
        table[c] = std::uint8_t(pdu::septetWidth(c));
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
    return c < 0x100 ? kLatin[c] : pdu::septetWidth(c);
}

#if defined(__SSE2__)
// Sixteen UTF-16 units at a time while the text is plain: two aligned 16-byte loads, a few
// compares, and the part arithmetic for all sixteen. Units holding anything else (the NUL, a
// character outside the fast classes, a part boundary) go through the scalar step until the
// next 32-byte boundary. A 32-byte aligned pair of loads never reaches into the next page, so
// reading past the NUL inside it is safe; only the address sanitizer would object, hence its
// attribute.
constexpr int kBlockUnits = 8;
constexpr int kPairUnits = 16;
constexpr std::uintptr_t kPairBytes = 32;

inline bool isPairAligned(const char16_t* p) {
    return (reinterpret_cast<std::uintptr_t>(p) & (kPairBytes - 1)) == 0;
}

// Lanes whose value lies in [low, low + span].
inline __m128i inRange(__m128i v, short low, short span) {
    const __m128i shifted = _mm_sub_epi16(v, _mm_set1_epi16(low));
    return _mm_cmpeq_epi16(_mm_subs_epu16(shifted, _mm_set1_epi16(span)), _mm_setzero_si128());
}

__attribute__((no_sanitize_address)) inline __m128i loadBlock(const char16_t* p) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(p));
}

inline __m128i euroLanes(__m128i v) {
    return _mm_cmpeq_epi16(v, _mm_set1_epi16(short(u'€')));
}

// Lanes holding printable ASCII other than the backtick, a line break or the euro sign. Signed
// compares: units from 0x8000 up read as negative and fall outside.
inline __m128i fastGsmLanes(__m128i v) {
    const __m128i printable =
        _mm_andnot_si128(_mm_cmpeq_epi16(v, _mm_set1_epi16(u'`')),
                         _mm_and_si128(_mm_cmpgt_epi16(v, _mm_set1_epi16(0x1f)),
                                       _mm_cmplt_epi16(v, _mm_set1_epi16(0x7f))));
    const __m128i lineBreak = _mm_or_si128(_mm_cmpeq_epi16(v, _mm_set1_epi16(u'\n')),
                                           _mm_cmpeq_epi16(v, _mm_set1_epi16(u'\r')));
    return _mm_or_si128(_mm_or_si128(printable, euroLanes(v)), lineBreak);
}

// Of those, the lanes in the extension table: with bit 0x20 set, [ \ ] ^ and { | } ~ are the
// ones above 'z' besides the underscore (7F then) and the euro sign, which is in it too.
inline __m128i extensionLanes(__m128i v) {
    return _mm_andnot_si128(
        _mm_cmpeq_epi16(v, _mm_set1_epi16(u'_')),
        _mm_cmpgt_epi16(_mm_or_si128(v, _mm_set1_epi16(0x20)), _mm_set1_epi16(u'z')));
}

// Septets of the 16 units at a 32-byte boundary (both loads stay within one page) when all
// are in the fast classes, -1 otherwise (the NUL included).
inline int pairSeptets(const char16_t* p) {
    const __m128i first = loadBlock(p);
    const __m128i second = loadBlock(p + kBlockUnits);
    // Most steps are printable ASCII alone: lane-wise minimum and maximum of the two blocks
    // test all sixteen at once. The line breaks and the euro sign take the longer test.
    const __m128i backtick = _mm_set1_epi16(u'`');
    const __m128i ascii = _mm_andnot_si128(
        _mm_or_si128(_mm_cmpeq_epi16(first, backtick), _mm_cmpeq_epi16(second, backtick)),
        _mm_and_si128(_mm_cmpgt_epi16(_mm_min_epi16(first, second), _mm_set1_epi16(0x1f)),
                      _mm_cmplt_epi16(_mm_max_epi16(first, second), _mm_set1_epi16(0x7f))));
    if (_mm_movemask_epi8(ascii) != 0xffff) {
        const __m128i known = _mm_packs_epi16(fastGsmLanes(first), fastGsmLanes(second));
        if (_mm_movemask_epi8(known) != 0xffff)
            return -1;
    }
    const __m128i extension = _mm_packs_epi16(extensionLanes(first), extensionLanes(second));
    return kPairUnits + __builtin_popcount(unsigned(_mm_movemask_epi8(extension)));
}

// What the 16 units at a 32-byte boundary hold, for the UCS-2 count.
enum class Ucs2Pair { Plain, WithSurrogates, Special };

// Special: the NUL, or a high surrogate last, whose pair would be split between two steps.
inline Ucs2Pair ucs2Pair(const char16_t* p) {
    const __m128i first = loadBlock(p);
    const __m128i second = loadBlock(p + kBlockUnits);
    const __m128i zero = _mm_setzero_si128();
    const __m128i nul =
        _mm_packs_epi16(_mm_cmpeq_epi16(first, zero), _mm_cmpeq_epi16(second, zero));
    if (_mm_movemask_epi8(nul) != 0 || isHighSurrogate(p[kPairUnits - 1]))
        return Ucs2Pair::Special;
    const __m128i surrogates = _mm_packs_epi16(inRange(first, short(0xd800), 0x7ff),
                                               inRange(second, short(0xd800), 0x7ff));
    return _mm_movemask_epi8(surrogates) == 0 ? Ucs2Pair::Plain : Ucs2Pair::WithSurrogates;
}
#endif

LengthInfo measureUcs2(const char16_t* text) {
    int units = 0;
    int parts = 1;
    int fill = 0;
    for (const char16_t* p = text;;) {
#if defined(__SSE2__)
        // Every unit counts one, a surrogate pair two; a pair only matters where it would
        // straddle two parts, so sixteen units with surrogates go whole unless they reach the
        // next part.
        while (isPairAligned(p)) {
            const Ucs2Pair pair = ucs2Pair(p);
            if (pair == Ucs2Pair::Special ||
                (pair == Ucs2Pair::WithSurrogates && fill + kPairUnits > kPartUnits))
                break;
            units += kPairUnits;
            fill += kPairUnits;
            if (fill > kPartUnits) {
                ++parts;
                fill -= kPartUnits;
            }
            p += kPairUnits;
        }
#endif
        if (*p == 0)
            break;
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
    for (const char16_t* p = text;; ++p) {
#if defined(__SSE2__)
        // Whole blocks while they are plain. A block of single septets may cross into the next
        // part; one with an extension character there is left to the scalar step, which keeps
        // the pair whole.
        while (isPairAligned(p)) {
            const int pair = pairSeptets(p);
            if (pair < 0 || (fill + pair > kPartSeptets && pair != kPairUnits))
                break;
            septets += pair;
            fill += pair;
            if (fill > kPartSeptets) {
                ++parts;
                fill -= kPartSeptets;
            }
            p += kPairUnits;
        }
#endif
        if (*p == 0)
            break;
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
