#pragma once

// Small helpers of window tests that run against a telephony store: calendar times as the
// store's FILETIMEs, and delivering the library's queued events together with the windows'
// posted messages until both are quiet.

#include "framework/time/clock.h"
#include "suite/telephony/events.h"
#include "tests/testkit/window_driver.h"

namespace telephony_test {

inline SYSTEMTIME at(int year, int month, int day, int hour = 0, int minute = 0) {
    SYSTEMTIME time{};
    time.wYear = WORD(year);
    time.wMonth = WORD(month);
    time.wDay = WORD(day);
    time.wHour = WORD(hour);
    time.wMinute = WORD(minute);
    return time;
}

inline FILETIME fileTime(const SYSTEMTIME& time) {
    FILETIME result{};
    SystemTimeToFileTime(&time, &result);
    return result;
}

inline void settle() {
    auto& queue = tessaly::telephony::EventQueue::instance();
    for (int round = 0; round < 100; ++round) {
        tessaly::testkit::pumpMessages();
        queue.deliverAll();
        if (!queue.hasPending())
            return;
    }
}

} // namespace telephony_test
