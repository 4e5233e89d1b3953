#include "suite/telephony/length_info.h"

#include "fuzz/plain_length.h"
#include "gsm/sms.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tessaly::telephony::measureText;

std::u16string times(std::u16string_view piece, int count) {
    std::u16string result;
    for (int i = 0; i < count; ++i)
        result += piece;
    return result;
}

struct Case {
    const char* name;
    std::u16string text;
    int characters;
    int messages;
    bool ucs2;
};

class LengthInfo : public ::testing::TestWithParam<Case> {};

TEST_P(LengthInfo, CountsCharactersAndMessages) {
    const Case& c = GetParam();
    const auto info = measureText(c.text.c_str());
    EXPECT_EQ(info.characters, c.characters);
    EXPECT_EQ(info.messages, c.messages);
    EXPECT_EQ(info.ucs2, c.ucs2);
}

const std::u16string kEmoji = u"\U0001F600";

INSTANTIATE_TEST_SUITE_P(
    Boundaries, LengthInfo,
    ::testing::Values(Case{"empty", u"", 0, 0, false}, Case{"one", u"a", 1, 1, false},
                      Case{"single_full", times(u"a", 160), 160, 1, false},
                      Case{"single_over", times(u"a", 161), 161, 2, false},
                      Case{"two_parts_full", times(u"a", 306), 306, 2, false},
                      Case{"two_parts_over", times(u"a", 307), 307, 3, false},
                      Case{"three_parts_full", times(u"a", 459), 459, 3, false},
                      Case{"three_parts_over", times(u"a", 460), 460, 4, false},
                      Case{"ucs2_single_full", times(u"á", 70), 70, 1, true},
                      Case{"ucs2_single_over", times(u"á", 71), 71, 2, true},
                      Case{"ucs2_two_parts_full", times(u"á", 134), 134, 2, true},
                      Case{"ucs2_two_parts_over", times(u"á", 135), 135, 3, true},
                      Case{"ucs2_three_parts_full", times(u"á", 201), 201, 3, true},
                      Case{"ucs2_three_parts_over", times(u"á", 202), 202, 4, true}),
    [](const auto& info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Alphabet, LengthInfo,
    ::testing::Values(
        Case{"line_breaks", u"a\r\nb", 4, 1, false},
        Case{"national_letters", u"ÄÖÜäöüßÇÉèéùìòÑñ§¿¡£¥¤ØøÅåÆæà", 29, 1, false},
        Case{"greek_capitals", u"ΔΦΓΛΩΠΨΣΘΞ", 10, 1, false},
        Case{"extension_chars_count_two", u"^{}\\[~]|€", 18, 1, false},
        Case{"form_feed_is_extension", u"\f", 2, 1, false},
        Case{"euro_fills_one", times(u"€", 80), 160, 1, false},
        Case{"euro_spills", times(u"€", 81), 162, 2, false},
        // 152 septets then an escape pair that must not straddle: the first part holds 152.
        Case{"escape_pair_not_split", times(u"a", 152) + u"€" + times(u"a", 152), 306, 3, false},
        Case{"escape_pair_fits_exactly", times(u"a", 151) + u"€" + times(u"a", 153), 306, 2, false},
        Case{"raw_escape_forces_ucs2", u"a\x1b", 2, 1, true},
        Case{"accent_lookalike", u"á", 1, 1, true},
        Case{"typographic_apostrophe", u"it’s", 4, 1, true},
        Case{"non_breaking_space", u"a\u00a0b", 3, 1, true}, Case{"tab", u"a\tb", 3, 1, true},
        Case{"backtick", u"`", 1, 1, true}, Case{"emoji_counts_two_units", kEmoji, 2, 1, true},
        Case{"emoji_single_full", times(u"á", 68) + kEmoji, 70, 1, true},
        Case{"emoji_single_over", times(u"á", 69) + kEmoji, 71, 2, true},
        // The surrogate pair would straddle units 67 and 68: the first part holds 66.
        Case{"surrogate_pair_not_split", times(u"á", 66) + kEmoji + times(u"á", 66), 134, 3, true},
        Case{"surrogate_pair_fits_exactly", times(u"á", 65) + kEmoji + times(u"á", 67), 134, 2,
             true},
        Case{"lone_surrogate_counts_one",
             u"\xd83d"
             u"a",
             2, 1, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LengthInfoQuery, NullTextAndNullOutputsAreSafe) {
    int characters = -1;
    int messages = -1;
    GSM::sms.getLengthInfo(nullptr, &characters, &messages);
    EXPECT_EQ(characters, 0);
    EXPECT_EQ(messages, 0);
    GSM::sms.getLengthInfo(u"abc", nullptr, nullptr);
    GSM::sms.getLengthInfo(u"abc", &characters, nullptr);
    EXPECT_EQ(characters, 3);
}

} // namespace

// The counter reads sixteen units at a time from 32-byte boundaries. Every kind of character at
// every offset of that step, at every alignment of the text, in texts reaching across part
// boundaries, must be counted as one character at a time counts it.
TEST(LengthInfoBlocks, EveryKindAtEveryOffsetCountsAsOneCharacterAtATime) {
    const std::u16string kinds[] = {u"_", u"`", u"{",   u"~",      u"\\",     u"€",  u"\n", u"\r",
                                    u"á", u"Δ", kEmoji, u"\xd83d", u"\xdc00", u"\f", u"@",  u"z"};
    for (const std::u16string filler : {u"a", u"á"}) {
        for (const std::u16string& kind : kinds) {
            for (const int length :
                 {40, 66, 67, 68, 70, 71, 134, 135, 152, 153, 154, 160, 161, 306}) {
                for (int offset = 0; offset < 34 && offset < length; ++offset) {
                    std::u16string text = times(filler, length);
                    text.replace(std::size_t(offset), kind.size(), kind);
                    text.resize(std::size_t(length));
                    const auto [characters, messages] = tessaly::fuzz::plainLength(text);
                    for (int shift = 0; shift < 16; ++shift) {
                        const std::u16string shifted =
                            std::u16string(std::size_t(shift), u'a') + text;
                        const auto info = measureText(shifted.c_str() + shift);
                        ASSERT_EQ(info.characters, characters)
                            << "offset " << offset << ", length " << length << ", shift " << shift;
                        ASSERT_EQ(info.messages, messages)
                            << "offset " << offset << ", length " << length << ", shift " << shift;
                    }
                }
            }
        }
    }
}
