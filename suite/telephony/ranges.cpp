#include "suite/telephony/ranges.h"

#include <algorithm>

namespace tessaly::telephony {

std::optional<std::vector<Utilities::Range>> normalizeRanges(const Utilities::Range* ranges,
                                                             int count, int limit) {
    if (count < 0 || (count > 0 && !ranges))
        return std::nullopt;
    std::vector<Utilities::Range> sorted(ranges, ranges + count);
    for (const Utilities::Range& range : sorted) {
        if (range.first < 0 || range.first >= range.last || range.last > limit)
            return std::nullopt;
    }
    std::sort(
        sorted.begin(), sorted.end(),
        [](const Utilities::Range& a, const Utilities::Range& b) { return a.first < b.first; });
    std::vector<Utilities::Range> merged;
    for (const Utilities::Range& range : sorted) {
        if (!merged.empty() && range.first <= merged.back().last)
            merged.back().last = std::max(merged.back().last, range.last);
        else
            merged.push_back(range);
    }
    return merged;
}

bool rangesContain(const std::vector<Utilities::Range>& ranges, int value) {
    const auto after =
        std::upper_bound(ranges.begin(), ranges.end(), value,
                         [](int v, const Utilities::Range& range) { return v < range.first; });
    return after != ranges.begin() && value < std::prev(after)->last;
}

} // namespace tessaly::telephony
