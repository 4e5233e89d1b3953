#pragma once

// The cell-broadcast subscription as the phone takes it: channel and language numbers folded
// into half-open ranges, and the languages the options offer. Pure, without windows.

#include "gsm/cellbroadcast.h"

#include <QString>

#include <span>
#include <vector>

namespace tessaly::sms {

// Folds numbers into ranges: negative values (and the largest int, which no half-open range can
// hold) are dropped, the rest sorted; a number equal to
// the open range's end grows it, any other opens a new range. Consecutive numbers thus share
// one range, and a repeated number opens a range of its own (7, 7 gives [7,8) [7,8)).
std::vector<Utilities::Range> buildRanges(std::vector<int> values);

// A channel list entry as a number: its leading decimal digits, 0 when there are none
// (a pasted "abc"), the largest int when they do not fit.
int channelNumber(const QString& text);

// Whether value lies in any range (first <= value < last).
bool inRanges(int value, std::span<const Utilities::Range> ranges);

struct CbLanguage {
    int nameId; // string-table text
    int code;   // GSM 03.38 cell-broadcast language code
};
// The fifteen languages the Cell Broadcast page offers.
std::span<const CbLanguage> offeredLanguages();

} // namespace tessaly::sms
