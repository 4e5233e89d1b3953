#include "suite/telephony/phone_number.h"
#include "suite/telephony/ranges.h"

#include "telephony_fixture.h"

#include "gsm/gsm.h"

namespace {

using tessaly::telephony::normalizeNumber;
using tessaly::telephony::numbersMatch;

TEST(PhoneNumbers, NormalFormDropsSeparatorsAndTrunkZero) {
    EXPECT_EQ(normalizeNumber(u"+49 (0)171 / 123-45.67"), u"+491711234567");
    EXPECT_EQ(normalizeNumber(u"0049 171 1234567"), u"+491711234567");
    EXPECT_EQ(normalizeNumber(u"(030) 123 45"), u"03012345");
    EXPECT_EQ(normalizeNumber(u"*100#"), u"*100#");
    EXPECT_EQ(normalizeNumber(u"12+34"), u"1234");
}

struct MatchCase {
    const char16_t* a;
    const char16_t* b;
    bool match;
};

class NumberMatching : public ::testing::TestWithParam<MatchCase> {};

TEST_P(NumberMatching, MatchesAsPhonesDo) {
    const MatchCase& c = GetParam();
    EXPECT_EQ(numbersMatch(c.a, c.b), c.match)
        << QString::fromUtf16(c.a).toStdString() << " vs " << QString::fromUtf16(c.b).toStdString();
    EXPECT_EQ(numbersMatch(c.b, c.a), c.match) << "not symmetric";
}

INSTANTIATE_TEST_SUITE_P(
    Table, NumberMatching,
    ::testing::Values(MatchCase{u"+49 171 1234567", u"+491711234567", true},
                      MatchCase{u"+49 171 1234567", u"0171 1234567", true},
                      MatchCase{u"+49 171 1234567", u"0049-171-1234567", true},
                      MatchCase{u"+49 (0)171 1234567", u"01711234567", true},
                      MatchCase{u"+1 555 010 9999", u"05550109999", true},
                      MatchCase{u"+49 171 1234567", u"+44 171 1234567", false},
                      MatchCase{u"+49 171 1234567", u"171 1234567", false},
                      MatchCase{u"+49 171 1234567", u"00171 1234567", false},
                      MatchCase{u"+4912345", u"012345", false}, // too short to cross forms
                      MatchCase{u"+1234 171 1234567", u"0171 1234567", false},
                      MatchCase{u"112", u"112", true}, MatchCase{u"", u"", false},
                      MatchCase{u"-", u"-", false}, MatchCase{u"+", u"+", false}));

class PhoneBookLookup : public telephony_test::TelephonyTest {};

TEST_F(PhoneBookLookup, FindsTheContactHoldingANumberInAnyForm) {
    namespace sim = tessaly::telephony::simulator;
    ASSERT_TRUE(sim::addContact(u"Anna", u"Berg", {u"+49 171 1234567", u"030 9876543"}).isOk());
    ASSERT_TRUE(sim::addContact(u"Carl", u"Dahl", {u"+1 (555) 010-9999"}).isOk());
    const struct {
        const char16_t* number;
        const char16_t* name; // null: no contact
        const char16_t* held;
    } cases[] = {
        {u"+491711234567", u"Anna Berg", u"+49 171 1234567"},
        {u"0171-1234567", u"Anna Berg", u"+49 171 1234567"},
        {u"+49 30 9876543", u"Anna Berg", u"030 9876543"},
        {u"+15550109999", u"Carl Dahl", u"+1 (555) 010-9999"},
        {u"1711234567", nullptr, nullptr},
        {u"+44 171 1234567", nullptr, nullptr},
        {u"", nullptr, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.number).toStdString());
        GSM::Contact* contact = GSM::PhoneBook::lookup(c.number);
        if (!c.name) {
            EXPECT_EQ(contact, nullptr);
            continue;
        }
        ASSERT_NE(contact, nullptr);
        EXPECT_EQ(telephony_test::text(contact->getText(GSM::Contact::FieldFullName)), c.name);
        // The contact is reached at the number that matched, not at its first one.
        EXPECT_EQ(telephony_test::text(contact->getText(GSM::Contact::FieldNumber, 1)), c.held);
    }
    EXPECT_EQ(GSM::PhoneBook::lookup(nullptr), nullptr);
}

TEST_F(PhoneBookLookup, FollowsThePhoneBookAsItChanges) {
    namespace sim = tessaly::telephony::simulator;
    ASSERT_TRUE(sim::receiveMessage(u"+491701111111", u"hi").isOk());
    GSM::Message* message = GSM::sms.getMessages(0, 0)->get(0);
    GSM::Contact* sender = message->getContacts()->get(0);
    EXPECT_EQ(telephony_test::text(sender->getText(GSM::Contact::FieldDisplayName)), u"");
    EXPECT_EQ(telephony_test::text(sender->getText(GSM::Contact::FieldNumber, 1)),
              u"+491701111111");
    ASSERT_TRUE(sim::addContact(u"Eva", u"Falk", {u"0170 1111111"}).isOk());
    EXPECT_EQ(telephony_test::text(sender->getText(GSM::Contact::FieldDisplayName)), u"Eva Falk");
    EXPECT_EQ(telephony_test::text(sender->getText(GSM::Contact::FieldFileAs, 0)), u"Falk, Eva");
    GSM::Folder* contacts = GSM::PhoneBook::getFolder(GSM::PhoneBook::FolderContacts);
    ASSERT_TRUE(contacts->remove(0).isOk());
    EXPECT_EQ(telephony_test::text(sender->getText(GSM::Contact::FieldDisplayName)), u"");
}

struct RangeCase {
    const char* name;
    std::vector<Utilities::Range> input;
    int count; // passed count (may differ from input size)
    bool valid;
    std::vector<std::pair<int, int>> expected;
};

class RangeNormalizing : public ::testing::TestWithParam<RangeCase> {};

TEST_P(RangeNormalizing, SortsMergesAndRejects) {
    const RangeCase& c = GetParam();
    const auto result = tessaly::telephony::normalizeRanges(
        c.input.empty() ? nullptr : c.input.data(), c.count, tessaly::telephony::kChannelLimit);
    ASSERT_EQ(result.has_value(), c.valid);
    if (!result)
        return;
    std::vector<std::pair<int, int>> pairs;
    for (const Utilities::Range& range : *result)
        pairs.emplace_back(range.first, range.last);
    EXPECT_EQ(pairs, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RangeNormalizing,
    ::testing::Values(
        RangeCase{"none", {}, 0, true, {}}, RangeCase{"one", {{50, 51}}, 1, true, {{50, 51}}},
        RangeCase{"unsorted_touching", {{5, 6}, {1, 3}, {3, 4}}, 3, true, {{1, 4}, {5, 6}}},
        RangeCase{"repeated", {{7, 8}, {7, 8}}, 2, true, {{7, 8}}},
        RangeCase{"overlapping", {{10, 20}, {15, 30}, {0, 2}}, 3, true, {{0, 2}, {10, 30}}},
        RangeCase{"whole_space", {{0, 65536}}, 1, true, {{0, 65536}}},
        RangeCase{"empty_range", {{5, 5}}, 1, false, {}},
        RangeCase{"reversed", {{6, 5}}, 1, false, {}},
        RangeCase{"negative", {{-1, 2}}, 1, false, {}},
        RangeCase{"beyond_limit", {{0, 65537}}, 1, false, {}},
        RangeCase{"missing_array", {}, 2, false, {}},
        RangeCase{"negative_count", {{1, 2}}, -1, false, {}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(RangeLookup, ContainsHonoursHalfOpenEnds) {
    const std::vector<Utilities::Range> ranges = {{1, 3}, {10, 11}};
    const std::pair<int, bool> cases[] = {{0, false}, {1, true},  {2, true},  {3, false},
                                          {9, false}, {10, true}, {11, false}};
    for (const auto& [value, inside] : cases)
        EXPECT_EQ(tessaly::telephony::rangesContain(ranges, value), inside) << value;
}

} // namespace
