#include "settings/sms_settings.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <initializer_list>
#include <ostream>

namespace {

using Widths = SmsSettings::ColumnWidths;

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray out;
    for (const int value : values)
        out.append(char(value));
    return out;
}

QByteArray text(const char16_t* units) {
    QByteArray out;
    for (; *units; ++units)
        out += bytes({*units & 0xff, *units >> 8});
    return out + bytes({0, 0});
}

QByteArray int32(std::int32_t value) {
    const auto v = std::uint32_t(value);
    return bytes({int(v & 0xff), int((v >> 8) & 0xff), int((v >> 16) & 0xff), int(v >> 24)});
}

QByteArray defaultWidthBytes() {
    QByteArray out;
    for (const int width : {20, 80, 100, 40, 20, 80, 100, 40, 20, 60, 160, 0})
        out += int32(width);
    return out;
}

// A record whose every field differs from its default and from anything the blobs below
// contain, so that a field the decoder should leave alone shows up when it is touched.
SmsSettings sentinel() {
    SmsSettings s;
    s.firstName = QStringLiteral("keep-first");
    s.lastName = QStringLiteral("keep-last");
    s.phone = QStringLiteral("keep-phone");
    s.showProgress = false;
    s.insertSignature = false;
    s.insertGreeting = false;
    s.currentList = 9;
    for (int list = 0; list < SmsSettings::kListCount; ++list)
        s.setColumnWidths(list, {7, 7, 7, 7});
    return s;
}

TEST(SmsSettingsCodec, DefaultRecordIsSixtyOneBytes) {
    const QByteArray expected = bytes({0, 0, 0, 0, 0, 0, 1, 1, 1}) + int32(0) + defaultWidthBytes();
    const SmsSettings defaults;
    EXPECT_EQ(defaults.encode(), expected);
    EXPECT_EQ(defaults.encode().size(), 61);
    EXPECT_EQ(defaults.encodedSize(), 61);
}

TEST(SmsSettingsCodec, EncodesEachFieldInOrderLittleEndian) {
    SmsSettings s;
    s.firstName = QString::fromUtf16(u"Jörg");
    s.lastName = QString::fromUtf16(u"\U0001F600"); // a surrogate pair stays two units
    s.phone = QStringLiteral("+4930");
    s.showProgress = false;
    s.insertSignature = true;
    s.insertGreeting = false;
    s.currentList = 2;
    s.setColumnWidths(1, {-1, 0x12345678, 0, 300});

    QByteArray expected = bytes({'J', 0, 0xf6, 0, 'r', 0, 'g', 0, 0, 0});
    expected += bytes({0x3d, 0xd8, 0x00, 0xde, 0, 0});
    expected += text(u"+4930");
    expected += bytes({0, 1, 0}) + int32(2);
    expected += int32(20) + int32(80) + int32(100) + int32(40);
    expected += bytes({0xff, 0xff, 0xff, 0xff, 0x78, 0x56, 0x34, 0x12}) + int32(0) + int32(300);
    expected += int32(20) + int32(60) + int32(160) + int32(0);
    EXPECT_EQ(s.encode(), expected);
    EXPECT_EQ(s.encodedSize(), expected.size());
}

TEST(SmsSettingsCodec, TextIsStoredUpToAnEmbeddedZero) {
    SmsSettings s;
    s.firstName = QString::fromUtf16(u"Ann\0Bob", 7);
    s.lastName = QStringLiteral("Lee");
    SmsSettings decoded;
    decoded.decode(s.encode());
    EXPECT_EQ(decoded.firstName, QStringLiteral("Ann"));
    EXPECT_EQ(decoded.lastName, QStringLiteral("Lee"));
    EXPECT_EQ(s.encodedSize(), s.encode().size());
}

TEST(SmsSettingsCodec, RoundTripsEveryField) {
    SmsSettings s;
    s.firstName = QStringLiteral("Anna Maria");
    s.lastName = QString(300, QChar(u'ß'));
    s.phone = QStringLiteral("+44 (0)20 7946 0000");
    s.showProgress = false;
    s.insertSignature = false;
    s.insertGreeting = true;
    s.currentList = SmsSettings::CellBroadcastList;
    s.setColumnWidths(0, {1, 2, 3, 4});
    s.setColumnWidths(2, {INT_MIN, INT_MAX, -7, 0});

    SmsSettings decoded = sentinel();
    decoded.decode(s.encode());
    EXPECT_EQ(decoded, s);
}

struct DecodeCase {
    const char* name;
    QByteArray blob;
    std::function<void(SmsSettings&)> expectedChange; // applied to the sentinel
};

void PrintTo(const DecodeCase& c, std::ostream* out) {
    *out << c.name;
}

class SmsSettingsDecode : public ::testing::TestWithParam<DecodeCase> {};

TEST_P(SmsSettingsDecode, ReadsWhatTheBlobHolds) {
    SmsSettings expected = sentinel();
    GetParam().expectedChange(expected);
    SmsSettings decoded = sentinel();
    decoded.decode(GetParam().blob);
    EXPECT_EQ(decoded.firstName, expected.firstName);
    EXPECT_EQ(decoded.lastName, expected.lastName);
    EXPECT_EQ(decoded.phone, expected.phone);
    EXPECT_EQ(decoded.showProgress, expected.showProgress);
    EXPECT_EQ(decoded.insertSignature, expected.insertSignature);
    EXPECT_EQ(decoded.insertGreeting, expected.insertGreeting);
    EXPECT_EQ(decoded.currentList, expected.currentList);
    for (int list = 0; list < SmsSettings::kListCount; ++list)
        EXPECT_EQ(decoded.columnWidths(list), expected.columnWidths(list)) << "list " << list;
}

const QByteArray kThreeNames = text(u"Ann") + text(u"Lee") + text(u"123");

void setNames(SmsSettings& s) {
    s.firstName = QStringLiteral("Ann");
    s.lastName = QStringLiteral("Lee");
    s.phone = QStringLiteral("123");
}

INSTANTIATE_TEST_SUITE_P(
    Blobs, SmsSettingsDecode,
    ::testing::Values(
        DecodeCase{"EmptyBlobChangesNothing", QByteArray(), [](SmsSettings&) {}},
        DecodeCase{"ZeroAtTheCursorEmptiesTheText", bytes({0, 0, 0, 0, 0, 0}),
                   [](SmsSettings& s) {
                       s.firstName.clear();
                       s.lastName.clear();
                       s.phone.clear();
                   }},
        // No terminator: the cursor stays, so the flags come from the blob's first bytes.
        DecodeCase{"UnterminatedFirstTextKeepsAllTexts", bytes({'A', 0, 'B', 0, 'C'}),
                   [](SmsSettings& s) {
                       s.showProgress = true;
                       s.insertSignature = false;
                       s.insertGreeting = true;
                   }},
        // The zero bytes straddle two code units, so none of them is a terminator.
        DecodeCase{"ZeroBytesAcrossUnitsAreNoTerminator", bytes({'A', 0, 0, 'B', 1}),
                   [](SmsSettings& s) { s.showProgress = true; }},
        DecodeCase{"UnterminatedSecondText", text(u"Ann") + bytes({'B', 0, 'o'}),
                   [](SmsSettings& s) {
                       s.firstName = QStringLiteral("Ann");
                       s.showProgress = true;
                       s.insertGreeting = true;
                   }},
        // A lone byte cannot hold a terminator; it is then read as the first flag.
        DecodeCase{"OddByteAfterFirstText", text(u"A") + bytes({0}),
                   [](SmsSettings& s) { s.firstName = QStringLiteral("A"); }},
        DecodeCase{"EndsAfterTheFlags", kThreeNames + bytes({1, 0, 2}),
                   [](SmsSettings& s) {
                       setNames(s);
                       s.showProgress = true;
                       s.insertGreeting = true;
                   }},
        DecodeCase{"ThreeBytesAreNoInteger", kThreeNames + bytes({0, 0, 0, 1, 2, 3}),
                   [](SmsSettings& s) { setNames(s); }},
        DecodeCase{"EndsInsideTheWidths",
                   kThreeNames + bytes({1, 1, 1}) + int32(-1) + int32(11) + int32(12) + int32(13) +
                       int32(14) + int32(15) + bytes({0xff, 0xff}),
                   [](SmsSettings& s) {
                       setNames(s);
                       s.showProgress = s.insertSignature = s.insertGreeting = true;
                       s.currentList = -1;
                       s.setColumnWidths(0, {11, 12, 13, 14});
                       s.setColumnWidths(1, {15, 7, 7, 7});
                   }},
        DecodeCase{"TailAfterTheLastWidthIsIgnored",
                   kThreeNames + bytes({0, 0, 0}) + int32(1) + defaultWidthBytes() +
                       bytes({0xde, 0xad, 0xbe, 0xef, 0}),
                   [](SmsSettings& s) {
                       setNames(s);
                       s.currentList = 1;
                       for (int list = 0; list < SmsSettings::kListCount; ++list)
                           s.setColumnWidths(list, SmsSettings::defaultColumnWidths(list));
                   }}),
    [](const ::testing::TestParamInfo<DecodeCase>& info) { return info.param.name; });

TEST(SmsSettingsColumns, ListIndexBounds) {
    SmsSettings s;
    s.setColumnWidths(0, {1, 1, 1, 1});
    s.setColumnWidths(1, {2, 2, 2, 2});
    s.setColumnWidths(2, {3, 3, 3, 3});
    const SmsSettings before = s;
    for (const int outside : {-1, 3, 7, INT_MIN, INT_MAX}) {
        EXPECT_EQ(s.columnWidths(outside), (Widths{1, 1, 1, 1})) << outside;
        s.setColumnWidths(outside, {9, 9, 9, 9});
        EXPECT_EQ(s, before) << outside;
    }
}

TEST(SmsSettingsLoad, ReadsOnceAndKeepsDefaultsWhenNothingIsStored) {
    SmsSettings s;
    s.phone = QStringLiteral("left over");
    int reads = 0;
    s.load([&] {
        ++reads;
        return QByteArray();
    });
    EXPECT_TRUE(s.loaded);
    EXPECT_EQ(reads, 1);
    SmsSettings defaults;
    defaults.loaded = true;
    EXPECT_EQ(s, defaults);

    SmsSettings stored;
    stored.firstName = QStringLiteral("Ann");
    s.load([&] {
        ++reads;
        return stored.encode();
    });
    EXPECT_EQ(reads, 1) << "a failed or empty read is not retried";
    EXPECT_TRUE(s.firstName.isEmpty());
}

TEST(SmsSettingsSave, HandsTheEncodedBlobOverAndReportsTheOutcome) {
    SmsSettings s;
    s.lastName = QStringLiteral("Lee");
    for (const bool accepted : {true, false}) {
        QByteArray written;
        EXPECT_EQ(s.save([&](const QByteArray& blob) {
            written = blob;
            return accepted;
        }),
                  accepted);
        EXPECT_EQ(written, s.encode());
    }
    EXPECT_FALSE(s.save(nullptr));
}

} // namespace
