#include "suite/telephony/pdu/pdu.h"

#include "suite/telephony/length_info.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

namespace pdu = tessaly::pdu;

std::u16string times(std::u16string_view piece, int count) {
    std::u16string result;
    for (int i = 0; i < count; ++i)
        result += piece;
    return result;
}

pdu::Bytes hex(std::string_view text) {
    const auto bytes = pdu::fromHex(text);
    EXPECT_TRUE(bytes) << text;
    return bytes.value_or(pdu::Bytes{});
}

std::string encodedHex(const pdu::Tpdu& tpdu) {
    const auto bytes = pdu::encode(tpdu);
    EXPECT_TRUE(bytes) << bytes.error;
    return bytes ? pdu::toHex(*bytes) : std::string();
}

const std::u16string kEmoji = u"\U0001F600";

// ---- published examples

TEST(PduExamples, SubmitHelloHello) {
    const auto decoded =
        pdu::decodeWithServiceCentre(hex("0011000B916407281553F80000AA0AE8329BFD4697D9EC37"));
    ASSERT_TRUE(decoded) << decoded.error;
    EXPECT_FALSE(decoded->serviceCentre);
    const auto& submit = std::get<pdu::Submit>(decoded->tpdu);
    EXPECT_EQ(submit.destination.text(), u"+46708251358");
    EXPECT_EQ(submit.validity, pdu::Validity::relativeCode(0xaa));
    EXPECT_EQ(pdu::relativeValidityMinutes(0xaa), 4 * 24 * 60);
    EXPECT_EQ(submit.userData.text, u"hellohello");
    EXPECT_FALSE(submit.userData.concatenation);
    EXPECT_EQ(encodedHex(submit), "11000B916407281553F80000AA0AE8329BFD4697D9EC37");
}

TEST(PduExamples, DeliverHelloHello) {
    const auto decoded = pdu::decodeWithServiceCentre(
        hex("07917283010010F5040BC87238880900F10000993092516195800AE8329BFD4697D9EC37"));
    ASSERT_TRUE(decoded) << decoded.error;
    EXPECT_EQ(decoded->serviceCentre->text(), u"+27381000015");
    const auto& deliver = std::get<pdu::Deliver>(decoded->tpdu);
    EXPECT_EQ(deliver.originator.value, u"27838890001");
    EXPECT_EQ(deliver.originator.type, pdu::NumberType::Subscriber);
    EXPECT_EQ(deliver.originator.numberingPlan, 8);
    EXPECT_FALSE(deliver.moreMessagesToSend);
    // Two-digit years read as 20yy.
    EXPECT_EQ(deliver.serviceCentreTime, (pdu::Timestamp{2099, 3, 29, 15, 16, 59, 8}));
    EXPECT_EQ(deliver.userData.text, u"hellohello");
    const auto again = pdu::encodeWithServiceCentre(*decoded);
    ASSERT_TRUE(again);
    EXPECT_EQ(pdu::toHex(*again),
              "07917283010010F5040BC87238880900F10000993092516195800AE8329BFD4697D9EC37");
}

// ---- the alphabet

TEST(GsmAlphabet, EveryCharacterRoundTrips) {
    std::u16string all;
    for (char16_t c = 0; c < 0x3000; ++c) {
        // The length count and the codec agree on every character.
        EXPECT_EQ(pdu::septetWidth(c), tessaly::telephony::gsmSeptets(c)) << int(c);
        if (pdu::septetWidth(c) > 0)
            all.push_back(c);
    }
    // 127 default characters (the escape has none) and 10 of the extension table.
    EXPECT_EQ(all.size(), 137u);
    const auto septets = pdu::toSeptets(all);
    ASSERT_TRUE(septets);
    EXPECT_EQ(pdu::fromSeptets(*septets), all);
}

TEST(GsmAlphabet, ExtensionAndOddEscapes) {
    EXPECT_EQ(pdu::toSeptets(u"€"), (pdu::Bytes{0x1b, 0x65}));
    pdu::Bytes packed;
    pdu::packSeptets(pdu::Bytes{0x1b, 0x65}, 0, packed);
    EXPECT_EQ(pdu::toHex(packed), "9B32");
    EXPECT_FALSE(pdu::toSeptets(u"`"));
    EXPECT_FALSE(pdu::toSeptets(u"\x1b"));
    // An escape to an undefined code reads as the default character; a trailing one as a space.
    EXPECT_EQ(pdu::fromSeptets(pdu::Bytes{0x1b, 0x41, 0x41, 0x1b}), u"AA ");
}

TEST(GsmAlphabet, PackingRoundTripsAtEveryFill) {
    for (int fill = 0; fill < 7; ++fill) {
        for (std::size_t count = 0; count < 20; ++count) {
            pdu::Bytes septets;
            for (std::size_t i = 0; i < count; ++i)
                septets.push_back(std::uint8_t((i * 37 + 5) & 0x7f));
            pdu::Bytes packed;
            pdu::packSeptets(septets, fill, packed);
            EXPECT_EQ(packed.size(), (count * 7 + std::size_t(fill) + 7) / 8);
            EXPECT_EQ(pdu::unpackSeptets(packed, count, std::size_t(fill)), septets);
        }
    }
}

// ---- addresses

struct AddressCase {
    const char* name;
    std::u16string text;
    pdu::NumberType type;
    std::u16string value;
    const char* encoded; // length, type and value as in a SUBMIT
};

class Addresses : public ::testing::TestWithParam<AddressCase> {};

TEST_P(Addresses, EncodeAndDecode) {
    const AddressCase& c = GetParam();
    const pdu::Address address = pdu::Address::fromText(c.text);
    EXPECT_EQ(address.type, c.type);
    EXPECT_EQ(address.value, c.value);
    pdu::Submit submit;
    submit.destination = address;
    const std::string full = encodedHex(submit);
    // First octet and message reference, then the address.
    EXPECT_EQ(full.substr(4, std::string_view(c.encoded).size()), c.encoded);
    const auto decoded = pdu::decode(hex(full));
    ASSERT_TRUE(decoded) << decoded.error;
    EXPECT_EQ(std::get<pdu::Submit>(*decoded).destination, address);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Addresses,
    ::testing::Values(
        AddressCase{"international", u"+46 708-251358", pdu::NumberType::International,
                    u"46708251358", "0B916407281553F8"},
        AddressCase{"unknown_even", u"01712345", pdu::NumberType::Unknown, u"01712345",
                    "088110173254"},
        AddressCase{"star_hash", u"*100#", pdu::NumberType::Unknown, u"*100#", "05811A00FB"},
        AddressCase{"alphanumeric", u"Hello", pdu::NumberType::Alphanumeric, u"Hello",
                    "09D0C8329BFD06"},
        AddressCase{"alphanumeric_extension", u"A{", pdu::NumberType::Alphanumeric, u"A{",
                    "06D0C10D0A"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Addresses, NationalTypeIsKept) {
    pdu::Submit submit;
    submit.destination = {pdu::NumberType::National, 1, u"0301234567"};
    const auto decoded = pdu::decode(hex(encodedHex(submit)));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(std::get<pdu::Submit>(*decoded).destination, submit.destination);
    EXPECT_EQ(encodedHex(submit).substr(4, 4), "0AA1");
}

// ---- time and validity

TEST(Timestamps, ZonesOfBothSignsRoundTrip) {
    for (int zone : {0, 4, -20, 79, -79, 23}) {
        pdu::Deliver deliver;
        deliver.originator = pdu::Address::fromText(u"+1");
        deliver.serviceCentreTime = {2026, 11, 23, 18, 5, 9, zone};
        const std::string encoded = encodedHex(deliver);
        const auto decoded = pdu::decode(hex(encoded));
        ASSERT_TRUE(decoded) << encoded;
        EXPECT_EQ(std::get<pdu::Deliver>(*decoded).serviceCentreTime, deliver.serviceCentreTime);
    }
    pdu::Deliver minusFive;
    minusFive.originator = pdu::Address::fromText(u"+1");
    minusFive.serviceCentreTime = {2026, 1, 2, 3, 4, 5, -20};
    EXPECT_NE(encodedHex(minusFive).find("6210203040500A"), std::string::npos);
}

TEST(Validity, RelativeCodes) {
    const std::pair<int, int> table[] = {{0, 5},       {11, 60},         {143, 720},
                                         {144, 750},   {167, 1440},      {168, 2880},
                                         {196, 43200}, {197, 5 * 10080}, {255, 63 * 10080}};
    for (const auto& [code, minutes] : table) {
        EXPECT_EQ(pdu::relativeValidityMinutes(std::uint8_t(code)), minutes) << code;
        EXPECT_EQ(pdu::relativeValidityCode(minutes), code) << minutes;
    }
    EXPECT_EQ(pdu::relativeValidityCode(61), 12);
    EXPECT_EQ(pdu::relativeValidityCode(1'000'000), 255);
}

TEST(Validity, EveryFormatRoundTrips) {
    for (const pdu::Validity& validity :
         {pdu::Validity{}, pdu::Validity::relativeCode(167),
          pdu::Validity{pdu::Validity::Format::Absolute, 0, {2027, 2, 3, 4, 5, 6, -8}, {}},
          pdu::Validity{pdu::Validity::Format::Enhanced, 0, {}, {1, 2, 3, 4, 5, 6, 7}}}) {
        pdu::Submit submit;
        submit.destination = pdu::Address::fromText(u"+4917012345");
        submit.validity = validity;
        submit.userData.text = u"x";
        const auto decoded = pdu::decode(hex(encodedHex(submit)));
        ASSERT_TRUE(decoded) << decoded.error;
        EXPECT_EQ(std::get<pdu::Submit>(*decoded), submit);
    }
}

// ---- splitting and round trips

struct SplitCase {
    const char* name;
    std::u16string text;
    std::size_t parts;
    pdu::Alphabet alphabet;
};

class Splitting : public ::testing::TestWithParam<SplitCase> {};

TEST_P(Splitting, PartsAgreeWithTheLengthCountAndRoundTrip) {
    const SplitCase& c = GetParam();
    const auto submits = pdu::makeSubmits(c.text, pdu::Address::fromText(u"+4917012345"), 0x42, 7,
                                          pdu::Validity::relativeCode(167));
    ASSERT_TRUE(submits) << submits.error;
    ASSERT_EQ(submits->size(), c.parts);
    if (!c.text.empty()) {
        EXPECT_EQ(int(c.parts), tessaly::telephony::measureText(c.text.c_str()).messages);
    }
    std::u16string joined;
    for (std::size_t i = 0; i < submits->size(); ++i) {
        const pdu::Submit& submit = (*submits)[i];
        EXPECT_EQ(submit.userData.alphabet, c.alphabet);
        EXPECT_EQ(submit.messageReference, 7 + i);
        const auto bytes = pdu::encode(submit);
        ASSERT_TRUE(bytes) << bytes.error;
        const auto decoded = pdu::decode(*bytes);
        ASSERT_TRUE(decoded) << decoded.error;
        const auto& back = std::get<pdu::Submit>(*decoded);
        EXPECT_EQ(back, submit);
        if (c.parts > 1) {
            EXPECT_EQ(back.userData.concatenation,
                      (pdu::Concatenation{0x42, int(c.parts), int(i + 1), false}));
        }
        joined += back.userData.text;
    }
    EXPECT_EQ(joined, c.text);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Splitting,
    ::testing::Values(SplitCase{"empty", u"", 1, pdu::Alphabet::Gsm7},
                      SplitCase{"single_full", times(u"a", 160), 1, pdu::Alphabet::Gsm7},
                      SplitCase{"single_over", times(u"a", 161), 2, pdu::Alphabet::Gsm7},
                      SplitCase{"two_full", times(u"a", 306), 2, pdu::Alphabet::Gsm7},
                      SplitCase{"two_over", times(u"a", 307), 3, pdu::Alphabet::Gsm7},
                      SplitCase{"escape_on_the_edge", times(u"a", 152) + u"€" + times(u"a", 10), 2,
                                pdu::Alphabet::Gsm7},
                      SplitCase{"extension_full", times(u"{", 80), 1, pdu::Alphabet::Gsm7},
                      SplitCase{"ucs2_full", times(u"á", 70), 1, pdu::Alphabet::Ucs2},
                      SplitCase{"ucs2_over", times(u"á", 71), 2, pdu::Alphabet::Ucs2},
                      SplitCase{"surrogate_on_the_edge", times(u"á", 66) + kEmoji + u"bbb", 2,
                                pdu::Alphabet::Ucs2},
                      SplitCase{"long_gsm", times(u"0123456789", 160), 11, pdu::Alphabet::Gsm7},
                      SplitCase{"long_ucs2", times(u"Привет 😀 ", 100), 15, pdu::Alphabet::Ucs2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Splitting, SixteenBitReferencesLeaveOneUnitLess) {
    const auto gsm = pdu::splitText(times(u"a", 305), 0x1234, true);
    ASSERT_TRUE(gsm);
    ASSERT_EQ(gsm->size(), 3u);
    EXPECT_EQ((*gsm)[0].text.size(), 152u);
    EXPECT_EQ((*gsm)[0].concatenation, (pdu::Concatenation{0x1234, 3, 1, true}));
    const auto wide = pdu::splitText(times(u"á", 133), 1, true);
    ASSERT_TRUE(wide);
    EXPECT_EQ((*wide)[0].text.size(), 66u);
}

TEST(Splitting, RefusesMoreThan255Parts) {
    EXPECT_FALSE(pdu::splitText(times(u"a", 153 * 255 + 1), 1));
    EXPECT_TRUE(pdu::splitText(times(u"a", 153 * 255), 1));
}

TEST(UserData, DeliverWithSixteenBitReferenceAndOtherElementsRoundTrips) {
    for (pdu::Alphabet alphabet : {pdu::Alphabet::Gsm7, pdu::Alphabet::Ucs2}) {
        pdu::Deliver deliver;
        deliver.originator = pdu::Address::fromText(u"Bank");
        deliver.serviceCentreTime = {2026, 11, 23, 18, 30, 0, 4};
        deliver.userData.alphabet = alphabet;
        deliver.userData.text = alphabet == pdu::Alphabet::Gsm7 ? u"Saldo: 12€" : u"Saldo ‰";
        deliver.userData.concatenation = pdu::Concatenation{0xbeef, 2, 2, true};
        deliver.userData.otherElements = {{0x70, {1, 2, 3}}};
        const auto decoded = pdu::decode(hex(encodedHex(deliver)));
        ASSERT_TRUE(decoded) << decoded.error;
        auto back = std::get<pdu::Deliver>(*decoded);
        EXPECT_EQ(back.userData, deliver.userData);
        EXPECT_EQ(back.originator.text(), u"Bank");
    }
}

TEST(UserData, EightBitConcatenationHeaderAndFillBits) {
    pdu::Submit submit;
    submit.destination = pdu::Address::fromText(u"+1");
    submit.userData.text = u"hello";
    submit.userData.concatenation = pdu::Concatenation{0xcc, 2, 1, false};
    // UDHI set; UDL 12 septets (7 for the header); the text starts after one fill bit.
    EXPECT_EQ(encodedHex(submit), "41000191F100000C050003CC0201D06536FB0D");
}

TEST(UserData, EightBitDataAndStatusReportRoundTrip) {
    pdu::Deliver deliver;
    deliver.originator = pdu::Address::fromText(u"+491");
    deliver.dataCoding = 0xf4; // class 0, 8-bit
    deliver.userData.alphabet = pdu::Alphabet::Data8;
    deliver.userData.data = {0, 1, 0xfe, 0xff};
    auto decoded = pdu::decode(hex(encodedHex(deliver)));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(std::get<pdu::Deliver>(*decoded), deliver);

    pdu::StatusReport report;
    report.messageReference = 9;
    report.recipient = pdu::Address::fromText(u"+4917012345");
    report.serviceCentreTime = {2026, 11, 23, 18, 0, 0, 4};
    report.dischargeTime = {2026, 11, 23, 18, 0, 5, 4};
    decoded = pdu::decode(hex(encodedHex(report)));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(std::get<pdu::StatusReport>(*decoded), report);
}

// ---- what real networks send

struct HeaderCase {
    const char* name;
    const char* header; // the user data header, its length octet first
    std::optional<pdu::Concatenation> concatenation;
    std::size_t otherElements;
};

class OddHeaders : public ::testing::TestWithParam<HeaderCase> {};

// An 8-bit DELIVER carrying the header and one data octet.
TEST_P(OddHeaders, DefinedOutcomeAndTextKept) {
    const std::string header = GetParam().header;
    const std::size_t length = header.size() / 2 + 1;
    const char digits[] = "0123456789ABCDEF";
    const std::string udl{digits[length >> 4], digits[length & 15]};
    const auto decoded = pdu::decode(hex("440191F10004"
                                         "62116232540000" +
                                         udl + header + "2A"));
    ASSERT_TRUE(decoded) << decoded.error;
    const auto& userData = std::get<pdu::Deliver>(*decoded).userData;
    EXPECT_EQ(userData.concatenation, GetParam().concatenation);
    EXPECT_EQ(userData.otherElements.size(), GetParam().otherElements);
    EXPECT_EQ(userData.data, pdu::Bytes{0x2a});
}

INSTANTIATE_TEST_SUITE_P(
    Table, OddHeaders,
    ::testing::Values(
        HeaderCase{"one_valid", "050003CC0201", pdu::Concatenation{0xcc, 2, 1, false}, 0},
        HeaderCase{"sequence_zero", "050003CC0200", std::nullopt, 1},
        HeaderCase{"sequence_above_total", "050003CC0203", std::nullopt, 1},
        HeaderCase{"total_zero", "050003CC0000", std::nullopt, 1},
        HeaderCase{"two_valid_read_as_single", "0B0003CC0201080400070201", std::nullopt, 2},
        HeaderCase{"valid_beside_void", "0B0003CC0200080400070201",
                   pdu::Concatenation{7, 2, 1, true}, 1},
        HeaderCase{"element_past_header_dropped", "070003CC02010005",
                   pdu::Concatenation{0xcc, 2, 1, false}, 0},
        HeaderCase{"lone_identifier_dropped", "0100", std::nullopt, 0}),
    [](const auto& info) { return std::string(info.param.name); });

struct ZoneCase {
    const char* name;
    const char* zoneOctet;
    int quarterHours;
};

class TimeZones : public ::testing::TestWithParam<ZoneCase> {};

// A status report from a live network: its zone octet is not always decimal.
TEST_P(TimeZones, StatusReportKept) {
    const std::string zone = GetParam().zoneOctet;
    const auto decoded = pdu::decode(hex("0609"
                                         "0B914406917050F8"
                                         "621122910000" +
                                         zone + "621122910005" + zone + "00"));
    ASSERT_TRUE(decoded) << decoded.error;
    const auto& report = std::get<pdu::StatusReport>(*decoded);
    EXPECT_EQ(report.serviceCentreTime.zoneQuarterHours, GetParam().quarterHours);
    EXPECT_EQ(report.dischargeTime.second, 50);
    EXPECT_EQ(report.status, 0);
}

INSTANTIATE_TEST_SUITE_P(Table, TimeZones,
                         ::testing::Values(ZoneCase{"decimal", "40", 4},
                                           ZoneCase{"negative", "2A", -22},
                                           ZoneCase{"non_decimal_units", "A0", 10},
                                           ZoneCase{"non_decimal_negative", "F8", -15},
                                           ZoneCase{"largest_clamped", "F7", 79}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(StatusReportOptionalFields, ReadWholeAndRoundTrip) {
    const std::string base = "0609"
                             "0B914406917050F8"
                             "62112291000040"
                             "62112291000540"
                             "00";
    struct Case {
        const char* tail;
        std::optional<std::uint8_t> protocolId, dataCoding;
        std::u16string text;
    };
    for (const Case& c : {Case{"", {}, {}, u""},
                          Case{"01"
                               "00",
                               0,
                               {},
                               u""},
                          Case{"03"
                               "0000",
                               0, 0, u""},
                          Case{"07"
                               "0000"
                               "05E8329BFD06",
                               0, 0, u"hello"},
                          Case{"04"
                               "02C834",
                               {},
                               {},
                               u"Hi"},
                          Case{"8100"
                               "41",
                               0x41,
                               {},
                               u""},
                          Case{"06"
                               "24"
                               "01",
                               {},
                               0x24,
                               u""}}) {
        const auto decoded = pdu::decode(hex(base + c.tail));
        ASSERT_TRUE(decoded) << c.tail << ": " << decoded.error;
        const auto& report = std::get<pdu::StatusReport>(*decoded);
        EXPECT_EQ(report.status, 0) << c.tail;
        EXPECT_EQ(report.protocolId, c.protocolId) << c.tail;
        EXPECT_EQ(report.dataCoding, c.dataCoding) << c.tail;
        EXPECT_EQ(report.userData ? report.userData->text : u"", c.text) << c.tail;
        const auto again = pdu::decode(hex(encodedHex(report)));
        ASSERT_TRUE(again) << c.tail;
        EXPECT_EQ(std::get<pdu::StatusReport>(*again), report) << c.tail;
    }
}

// ---- what is refused

struct BadCase {
    const char* name;
    const char* hex;
};

class RefusedOnDecode : public ::testing::TestWithParam<BadCase> {};

TEST_P(RefusedOnDecode, SaysWhy) {
    const auto decoded = pdu::decode(hex(GetParam().hex));
    EXPECT_FALSE(decoded);
    EXPECT_FALSE(decoded.error.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedOnDecode,
    ::testing::Values(BadCase{"empty", ""}, BadCase{"reserved_type", "03"},
                      BadCase{"udl_over_160", "01000191F10000A1E8"},
                      BadCase{"user_data_short", "01000191F100000AE8329B"},
                      BadCase{"compressed", "01000191F1002001E8"},
                      BadCase{"header_longer_than_data", "41000191F100040206FF"},
                      BadCase{"timestamp_not_bcd", "000191F100009F309251619580"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(RefusedOnDecode, EveryPrefixOfAValidPdu) {
    const pdu::Bytes whole = hex("07917283010010F5040BC87238880900F10000993092516195800AE8329BFD"
                                 "4697D9EC37");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(pdu::decodeWithServiceCentre(std::span(whole).first(size))) << size;
    }
}

TEST(RefusedOnEncode, WhatDoesNotFit) {
    pdu::Submit submit;
    submit.destination = pdu::Address::fromText(u"+123456789012345678901");
    EXPECT_FALSE(pdu::encode(submit));
    submit.destination = pdu::Address::fromText(u"+49");
    submit.userData.text = u"`";
    EXPECT_FALSE(pdu::encode(submit));
    submit.userData.text = times(u"a", 161);
    EXPECT_FALSE(pdu::encode(submit));
    submit.userData.alphabet = pdu::Alphabet::Ucs2;
    submit.userData.text = times(u"a", 71);
    EXPECT_FALSE(pdu::encode(submit));
    submit.destination = pdu::Address::fromText(u"TooLongSender");
    submit.userData.text = u"a";
    EXPECT_FALSE(pdu::encode(submit));
}

TEST(Hex, RefusesOddLengthsAndOtherCharacters) {
    EXPECT_EQ(pdu::fromHex("00aF"), (pdu::Bytes{0x00, 0xaf}));
    EXPECT_FALSE(pdu::fromHex("0"));
    EXPECT_FALSE(pdu::fromHex("0G"));
    EXPECT_EQ(pdu::toHex(pdu::Bytes{0x0a, 0xff}), "0AFF");
}

} // namespace
