#include "util/date_time_text.h"

#include "framework/time/clock.h"
#include "tests/testkit/system_time.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

class FixedClock final : public tessaly::Clock {
public:
    SYSTEMTIME now;

    SYSTEMTIME localNow() const override { return now; }
    tessaly::TimerHandle startTimer(int, std::function<void()>) override { return 1; }
    void stopTimer(tessaly::TimerHandle) override {}
};

using tessaly::testkit::at;
using tessaly::testkit::fileTime;

const FILETIME kNotADate = fileTimeFromUInt64(0x8000000000000000ULL);

class DateTimeText : public ::testing::Test {
protected:
    void SetUp() override { tessaly::Clock::install(&clock_); }
    void TearDown() override { tessaly::Clock::install(nullptr); }
    void setNow(const SYSTEMTIME& now) { clock_.now = now; }

private:
    FixedClock clock_;
};

struct ListDateCase {
    SYSTEMTIME now;
    SYSTEMTIME stamp;
    const char* shortText;
    const char* longText;
};

TEST_F(DateTimeText, ListDateShowsTheTimeOnlyOnTodaysCalendarDate) {
    const SYSTEMTIME afternoon = at(2003, 5, 17, 14, 5);
    const SYSTEMTIME justAfterMidnight = at(2003, 5, 17, 0, 1);
    const ListDateCase cases[] = {
        {afternoon, at(2003, 5, 17, 14, 5, 59), "14:05", "14:05"},
        {afternoon, at(2003, 5, 17, 0, 0), "00:00", "00:00"},
        {afternoon, at(2003, 5, 17, 23, 59), "23:59", "23:59"}, // later today
        {justAfterMidnight, at(2003, 5, 16, 23, 59), "05-16", "2003-05-16"},
        {afternoon, at(2003, 1, 1, 9, 0), "01-01", "2003-01-01"},
        {afternoon, at(2002, 5, 17, 14, 5), "05-17", "2002-05-17"},
        {afternoon, at(2004, 5, 17, 14, 5), "05-17", "2004-05-17"},
        {afternoon, at(2003, 4, 17, 14, 5), "04-17", "2003-04-17"},
        {at(2004, 1, 1, 0, 0), at(2003, 12, 31, 23, 59), "12-31", "2003-12-31"},
        {afternoon, at(1601, 1, 1), "01-01", "1601-01-01"},
        {afternoon, at(12345, 10, 9, 8, 7), "10-09", "12345-10-09"},
    };
    for (const ListDateCase& c : cases) {
        setNow(c.now);
        const FILETIME stamp = fileTime(c.stamp);
        EXPECT_EQ(FormatListDate(stamp, false), QLatin1String(c.shortText)) << c.longText;
        EXPECT_EQ(FormatListDate(stamp, true), QLatin1String(c.longText)) << c.longText;
    }
}

TEST_F(DateTimeText, StampsAreFullDateAndTimeWithoutSeconds) {
    setNow(at(2003, 5, 17, 14, 5));
    const struct {
        SYSTEMTIME stamp;
        const char* full;
        const char* date;
        const char* time;
    } cases[] = {
        {at(2003, 5, 17, 14, 5, 42), "2003-05-17, 14:05", "2003-05-17", "14:05"},
        {at(1999, 12, 31, 23, 59, 59), "1999-12-31, 23:59", "1999-12-31", "23:59"},
        {at(2010, 1, 2, 3, 4), "2010-01-02, 03:04", "2010-01-02", "03:04"},
        {at(1601, 1, 1), "1601-01-01, 00:00", "1601-01-01", "00:00"},
    };
    for (const auto& c : cases) {
        const FILETIME stamp = fileTime(c.stamp);
        EXPECT_EQ(FormatTimestamp(stamp), QLatin1String(c.full));
        QString date;
        QString time;
        FormatDateAndTime(stamp, &date, &time);
        EXPECT_EQ(date, QLatin1String(c.date));
        EXPECT_EQ(time, QLatin1String(c.time));
    }
}

TEST_F(DateTimeText, AFileTimeBeyondTheCalendarGivesEmptyTexts) {
    setNow(at(2003, 5, 17));
    EXPECT_TRUE(FormatListDate(kNotADate, false).isEmpty());
    EXPECT_TRUE(FormatListDate(kNotADate, true).isEmpty());
    EXPECT_TRUE(FormatTimestamp(kNotADate).isEmpty());
    QString date = QStringLiteral("old");
    QString time = QStringLiteral("old");
    FormatDateAndTime(kNotADate, &date, &time);
    EXPECT_TRUE(date.isEmpty());
    EXPECT_TRUE(time.isEmpty());
}

TEST_F(DateTimeText, CurrentLocalFileTimeComesFromTheInstalledClock) {
    setNow(at(2003, 5, 17, 14, 5, 30));
    const FILETIME now = CurrentLocalFileTime();
    EXPECT_EQ(fileTimeToUInt64(now), fileTimeToUInt64(fileTime(at(2003, 5, 17, 14, 5, 30))));
    EXPECT_EQ(FormatListDate(now, false), QStringLiteral("14:05"));

    setNow(at(2003, 13, 40)); // a clock that cannot be converted
    EXPECT_EQ(fileTimeToUInt64(CurrentLocalFileTime()), 0u);
}

TEST(FormatMinutes, HoursAndMinutesTruncatedTowardZero) {
    const struct {
        std::int32_t minutes;
        const char* text;
    } cases[] = {
        {0, "00:00"},
        {5, "00:05"},
        {59, "00:59"},
        {60, "01:00"},
        {135, "02:15"},
        {6000, "100:00"},
        {-5, "00:-5"},
        {-60, "-1:00"},
        {-75, "-1:-15"},
        {-600, "-10:00"},
        {-659, "-10:-59"},
        {INT_MAX, "35791394:07"},
        {INT_MIN, "-35791394:-8"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FormatMinutes(c.minutes), QLatin1String(c.text)) << c.minutes;
}

} // namespace
