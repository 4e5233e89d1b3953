#include "cellbroadcast/subscription.h"

#include "resources/resource.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tessaly::sms {

std::vector<Utilities::Range> buildRanges(std::vector<int> values) {
    // The largest int has no end that a half-open range could name.
    std::erase_if(values,
                  [](int value) { return value < 0 || value == std::numeric_limits<int>::max(); });
    std::sort(values.begin(), values.end());
    std::vector<Utilities::Range> ranges;
    for (int value : values) {
        if (ranges.empty() || value != ranges.back().last)
            ranges.push_back({value, value + 1});
        else
            ++ranges.back().last;
    }
    return ranges;
}

int channelNumber(const QString& text) {
    constexpr long long kLargest = std::numeric_limits<int>::max();
    long long number = 0;
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            break;
        number = std::min(kLargest, number * 10 + (c.unicode() - u'0'));
    }
    return int(number);
}

bool inRanges(int value, std::span<const Utilities::Range> ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [value](const Utilities::Range& range) {
        return range.first <= value && value < range.last;
    });
}

std::span<const CbLanguage> offeredLanguages() {
    static constexpr std::array<CbLanguage, 15> kLanguages = {{
        {IDS_LANG_ENGLISH, 1},
        {IDS_LANG_GERMAN, 0},
        {IDS_LANG_ITALIAN, 2},
        {IDS_LANG_FRENCH, 3},
        {IDS_LANG_SPANISH, 4},
        {IDS_LANG_DUTCH, 5},
        {IDS_LANG_DANISH, 7},
        {IDS_LANG_PORTUGUESE, 8},
        {IDS_LANG_SWEDISH, 6},
        {IDS_LANG_FINNISH, 9},
        {IDS_LANG_NORWEGIAN, 10},
        {IDS_LANG_GREEK, 11},
        {IDS_LANG_TURKISH, 12},
        {IDS_LANG_HUNGARIAN, 13},
        {IDS_LANG_POLISH, 14},
    }};
    return kLanguages;
}

} // namespace tessaly::sms
