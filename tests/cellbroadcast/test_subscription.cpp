#include "cellbroadcast/subscription.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using tessaly::sms::buildRanges;
using tessaly::sms::channelNumber;
using Ranges = std::vector<std::pair<int, int>>;

Ranges pairs(const std::vector<Utilities::Range>& ranges) {
    Ranges result;
    for (const Utilities::Range& range : ranges)
        result.emplace_back(range.first, range.last);
    return result;
}

TEST(BuildRanges, MergesRunsAndKeepsRepeatsApart) {
    constexpr int kLargest = std::numeric_limits<int>::max();
    const struct {
        const char* what;
        std::vector<int> values;
        Ranges ranges;
    } cases[] = {
        {"nothing", {}, {}},
        {"a run and a single", {53, 50, 100, 52, 51}, {{50, 54}, {100, 101}}},
        {"German and English", {1, 0}, {{0, 2}}},
        {"7 and 007", {7, 7}, {{7, 8}, {7, 8}}},
        // The repeat opens a range, and the next number grows that one.
        {"a repeat inside a run", {7, 8, 7}, {{7, 8}, {7, 9}}},
        {"unselected languages", {-1, 3, -1, -1}, {{3, 4}}},
        {"all unselected", {-1, -1}, {}},
        {"no end for the largest int", {kLargest, 0}, {{0, 1}}},
        {"one below the largest", {kLargest - 1}, {{kLargest - 1, kLargest}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(pairs(buildRanges(c.values)), c.ranges) << c.what;
}

TEST(ChannelNumber, ReadsLeadingDigitsOnly) {
    const struct {
        const char16_t* text;
        int number;
    } cases[] = {
        {u"50", 50},
        {u"007", 7},
        {u"12abc", 12},
        {u"abc", 0},
        {u"", 0},
        {u"-5", 0},
        {u" 5", 0},
        {u"4294967296", 2147483647},
        {u"2147483647", 2147483647},
    };
    for (const auto& c : cases)
        EXPECT_EQ(channelNumber(QString::fromUtf16(c.text)), c.number)
            << QString::fromUtf16(c.text).toStdString();
}

} // namespace
