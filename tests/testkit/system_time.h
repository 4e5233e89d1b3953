#pragma once

// Calendar times for tests: a SYSTEMTIME from its parts (the rest zero) and its FILETIME.

#include "framework/time/clock.h"

#include <gtest/gtest.h>

namespace tessaly::testkit {

inline SYSTEMTIME at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    SYSTEMTIME time{};
    time.wYear = WORD(year);
    time.wMonth = WORD(month);
    time.wDay = WORD(day);
    time.wHour = WORD(hour);
    time.wMinute = WORD(minute);
    time.wSecond = WORD(second);
    return time;
}

inline FILETIME fileTime(const SYSTEMTIME& time) {
    FILETIME result{};
    EXPECT_TRUE(SystemTimeToFileTime(&time, &result));
    return result;
}

} // namespace tessaly::testkit
