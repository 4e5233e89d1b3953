#pragma once

// The checks that decide a message's outcome before the radio sends anything: pure functions
// of what the message holds and what the network offers.

#include "gsm/result.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaly::telephony {

// A concatenated message counts its parts in one octet (TS 23.040 9.2.3.24.1).
constexpr int kMostSegments = 255;

// Why the message cannot go out at all: no recipient, a recipient without a number, more
// parts than a concatenated message can count. Nothing when it can.
std::optional<GSM::Result> refusalBeforeSending(const std::vector<std::u16string>& numbers,
                                                int segments);
// Why the radio cannot send now: no network, or roaming while sending while roaming is off.
std::optional<GSM::Result> refusalOfTheNetwork(int deviceState, bool sendWhileRoaming);

// Whether a failed send may go through a little later: no network service, or the network or
// the modem did not answer in time or was busy. Anything else (an unknown or barred number, a
// message the network refuses, sending while roaming switched off) is final.
bool isTemporaryFailure(const GSM::Result& result);
// A temporary failure is tried again this many times, each after a longer wait.
constexpr int kSendRetries = 3;
// The wait before retry `retry` (1 for the first): 30 s, 2 min, 8 min; -1 past the last.
int retryDelayMs(int retry);

} // namespace tessaly::telephony
