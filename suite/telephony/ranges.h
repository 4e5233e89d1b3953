#pragma once

// Cell-broadcast subscriptions as sorted, merged half-open ranges.

#include "gsm/cellbroadcast.h"

#include <optional>
#include <vector>

namespace tessaly::telephony {

constexpr int kChannelLimit = 65536; // message identifiers 0 .. 65535
constexpr int kLanguageLimit = 128;  // language codes of the data coding scheme

// Sorted and merged (overlapping or touching ranges join); nothing when a range is empty or
// reversed, lies outside [0, limit), or the array is missing while the count is not 0.
std::optional<std::vector<Utilities::Range>> normalizeRanges(const Utilities::Range* ranges,
                                                             int count, int limit);
bool rangesContain(const std::vector<Utilities::Range>& ranges, int value);

} // namespace tessaly::telephony
