#include "framework/time/clock.h"
#include "framework/time/thread_timer.h"
#include "tests/testkit/virtual_clock.h"

#include <gtest/gtest.h>

#include <cstring>

using tessaly::testkit::VirtualClock;

namespace {

TEST(VirtualClock, FiresDueTimersInOrderWithNowAtTheirDueTime) {
    VirtualClock clock;
    std::vector<std::pair<char, std::int64_t>> fired;
    const auto record = [&](char name) {
        return [&, name] { fired.emplace_back(name, clock.elapsedMs()); };
    };
    clock.startTimer(50, record('a'));
    clock.startTimer(45, record('b'));
    clock.startTimer(2000, record('c'));
    clock.startTimer(50, record('d')); // same due time as a: started later, fires later
    clock.advance(100);
    EXPECT_EQ(fired, (std::vector<std::pair<char, std::int64_t>>{
                         {'b', 45}, {'a', 50}, {'d', 50}, {'b', 90}, {'a', 100}, {'d', 100}}));
    EXPECT_EQ(clock.elapsedMs(), 100);
    EXPECT_EQ(clock.nextDueInMs(), 35);
}

TEST(VirtualClock, StoppingAndRestartingFromCallbacks) {
    VirtualClock clock;
    int ticks = 0;
    tessaly::TimerHandle self = 0;
    self = clock.startTimer(10, [&] {
        if (++ticks == 3)
            clock.stopTimer(self);
    });
    tessaly::TimerHandle other = clock.startTimer(25, [] {});
    int restarted = 0;
    clock.startTimer(15, [&] {
        clock.stopTimer(other);
        if (restarted++ == 0)
            other = clock.startTimer(25, [&] { ++restarted; });
    });
    clock.advance(1000);
    EXPECT_EQ(ticks, 3);
    EXPECT_GT(restarted, 1);
    EXPECT_EQ(clock.activeTimers(), 1u);
    clock.advance(-5); // never backwards
    EXPECT_EQ(clock.elapsedMs(), 1000);
}

TEST(VirtualClock, LocalNowFollowsTheClockAndIsInstalled) {
    SYSTEMTIME start;
    start.wYear = 2023;
    start.wMonth = 12;
    start.wDay = 31;
    start.wHour = 23;
    start.wMinute = 59;
    start.wSecond = 59;
    {
        VirtualClock clock(start);
        EXPECT_EQ(&tessaly::Clock::current(), &clock);
        clock.advance(1500);
        SYSTEMTIME now;
        GetLocalTime(&now);
        EXPECT_EQ(now.wYear, 2024);
        EXPECT_EQ(now.wMonth, 1);
        EXPECT_EQ(now.wDay, 1);
        EXPECT_EQ(now.wSecond, 0);
        EXPECT_EQ(now.wMilliseconds, 500);
        EXPECT_EQ(now.wDayOfWeek, 1); // a Monday
        clock.setLocalNow(start);
        EXPECT_EQ(clock.localNow().wYear, 2023);
    }
    EXPECT_EQ(dynamic_cast<VirtualClock*>(&tessaly::Clock::current()), nullptr);
}

TEST(ThreadTimers, RunOnTheClockInForceAndStopByIdOnly) {
    VirtualClock clock;
    std::vector<UINT_PTR> ticks;
    const UINT_PTR first =
        tessaly::setThreadTimer(20000, [&](UINT_PTR id) { ticks.push_back(id); });
    const UINT_PTR second =
        tessaly::setThreadTimer(30000, [&](UINT_PTR id) { ticks.push_back(id); });
    EXPECT_NE(first, second);
    clock.advance(60000);
    EXPECT_EQ(ticks, (std::vector<UINT_PTR>{first, second, first, first, second}));
    EXPECT_TRUE(tessaly::killThreadTimer(first));
    EXPECT_FALSE(tessaly::killThreadTimer(first));
    EXPECT_FALSE(tessaly::killThreadTimer(0));
    clock.advance(30000);
    EXPECT_EQ(ticks.back(), second);
    EXPECT_EQ(ticks.size(), 6u);
    EXPECT_TRUE(tessaly::killThreadTimer(second));
}

TEST(FileTime, ConvertsBothWaysWithoutTimeZoneShift) {
    struct Case {
        std::uint64_t ticks;
        SYSTEMTIME time;
    } const cases[] = {
        {0, {1601, 1, 1, 1, 0, 0, 0, 0}},
        {116444736000000000ULL, {1970, 1, 4, 1, 0, 0, 0, 0}},
        {133582176000000000ULL, {2024, 4, 1, 22, 0, 0, 0, 0}},
        {133589465001230000ULL, {2024, 4, 2, 30, 10, 28, 20, 123}},
    };
    for (const Case& c : cases) {
        SYSTEMTIME time;
        const FILETIME fileTime = fileTimeFromUInt64(c.ticks);
        ASSERT_TRUE(FileTimeToSystemTime(&fileTime, &time)) << c.ticks;
        EXPECT_EQ(time.wYear, c.time.wYear);
        EXPECT_EQ(time.wMonth, c.time.wMonth);
        EXPECT_EQ(time.wDayOfWeek, c.time.wDayOfWeek) << c.ticks;
        EXPECT_EQ(time.wDay, c.time.wDay);
        EXPECT_EQ(time.wHour, c.time.wHour);
        EXPECT_EQ(time.wMinute, c.time.wMinute);
        EXPECT_EQ(time.wMilliseconds, c.time.wMilliseconds);
        FILETIME back;
        ASSERT_TRUE(SystemTimeToFileTime(&c.time, &back));
        EXPECT_EQ(fileTimeToUInt64(back), c.ticks);
    }
}

TEST(FileTime, RefusesWhatIsNoTime) {
    const FILETIME negative = fileTimeFromUInt64(0x8000000000000000ULL);
    SYSTEMTIME time;
    EXPECT_FALSE(FileTimeToSystemTime(&negative, &time));
    EXPECT_FALSE(FileTimeToSystemTime(nullptr, &time));
    FILETIME fileTime;
    for (const SYSTEMTIME& bad :
         {SYSTEMTIME{2023, 2, 0, 29, 0, 0, 0, 0}, SYSTEMTIME{1600, 12, 0, 31, 0, 0, 0, 0},
          SYSTEMTIME{2024, 13, 0, 1, 0, 0, 0, 0}, SYSTEMTIME{2024, 1, 0, 1, 24, 0, 0, 0}})
        EXPECT_FALSE(SystemTimeToFileTime(&bad, &fileTime)) << bad.wYear << "-" << bad.wMonth;
    EXPECT_FALSE(SystemTimeToFileTime(nullptr, &fileTime));
}

TEST(SystemTimeFields, ReadAsADateTimeAndBackUnchanged) {
    const SYSTEMTIME leapDay{2024, 2, 4, 29, 23, 59, 58, 999};
    const QDateTime local = dateTimeFromSystemTime(leapDay);
    EXPECT_EQ(local, QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 999)));
    EXPECT_EQ(dateTimeFromSystemTime(leapDay, Qt::UTC).timeSpec(), Qt::UTC);
    const SYSTEMTIME back = systemTimeFromDateTime(local);
    EXPECT_EQ(std::memcmp(&back, &leapDay, sizeof back), 0);
    // An impossible time of day is no time at all, not midnight.
    for (const SYSTEMTIME& bad :
         {SYSTEMTIME{2024, 1, 0, 1, 24, 0, 0, 0}, SYSTEMTIME{2024, 1, 0, 1, 0, 60, 0, 0},
          SYSTEMTIME{2023, 2, 0, 29, 0, 0, 0, 0}})
        EXPECT_FALSE(dateTimeFromSystemTime(bad).isValid()) << bad.wHour << ":" << bad.wMinute;
}

} // namespace
