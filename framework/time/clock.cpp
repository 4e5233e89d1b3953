#include "framework/time/clock.h"

#include <QDateTime>
#include <QTimer>

#include <map>
#include <memory>

namespace tessaly {

namespace {

// 100-ns ticks between 1601-01-01 and 1970-01-01.
constexpr std::int64_t kUnixEpochTicks = 116444736000000000LL;
constexpr std::int64_t kTicksPerMs = 10000;

class SystemClock final : public Clock {
public:
    SYSTEMTIME localNow() const override {
        return systemTimeFromDateTime(QDateTime::currentDateTime());
    }

    TimerHandle startTimer(int intervalMs, std::function<void()> callback) override {
        const TimerHandle handle = ++lastHandle_;
        auto timer = std::make_unique<QTimer>();
        timer->setInterval(std::max(0, intervalMs));
        QObject::connect(timer.get(), &QTimer::timeout,
                         [callback = std::move(callback)] { callback(); });
        timer->start();
        timers_[handle] = std::move(timer);
        return handle;
    }

    void stopTimer(TimerHandle handle) override {
        const auto found = timers_.find(handle);
        if (found == timers_.end())
            return;
        // The timer may be the one whose callback is running: delete it on the next loop turn.
        QTimer* timer = found->second.release();
        timers_.erase(found);
        timer->stop();
        timer->deleteLater();
    }

private:
    TimerHandle lastHandle_ = 0;
    std::map<TimerHandle, std::unique_ptr<QTimer>> timers_;
};

Clock* installedClock = nullptr;

} // namespace

Clock& Clock::current() {
    static SystemClock systemClock;
    return installedClock ? *installedClock : systemClock;
}

void Clock::install(Clock* clock) {
    installedClock = clock;
}

} // namespace tessaly

void GetLocalTime(SYSTEMTIME* time) {
    if (time)
        *time = tessaly::Clock::current().localNow();
}

BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* systemTime) {
    if (!fileTime || !systemTime)
        return FALSE;
    const std::uint64_t ticks = fileTimeToUInt64(*fileTime);
    if (ticks >= 0x8000000000000000ULL)
        return FALSE;
    const std::int64_t msSinceUnix =
        (std::int64_t(ticks) - tessaly::kUnixEpochTicks) / tessaly::kTicksPerMs;
    // The file time already holds wall-clock time: break it down without any time-zone shift.
    const QDateTime dt = QDateTime::fromMSecsSinceEpoch(msSinceUnix, Qt::UTC);
    if (!dt.date().isValid() || dt.date().year() > 30827)
        return FALSE;
    *systemTime = systemTimeFromDateTime(dt);
    return TRUE;
}

SYSTEMTIME systemTimeFromDateTime(const QDateTime& dateTime) {
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    SYSTEMTIME result;
    result.wYear = WORD(date.year());
    result.wMonth = WORD(date.month());
    result.wDayOfWeek = WORD(date.dayOfWeek() % 7);
    result.wDay = WORD(date.day());
    result.wHour = WORD(time.hour());
    result.wMinute = WORD(time.minute());
    result.wSecond = WORD(time.second());
    result.wMilliseconds = WORD(time.msec());
    return result;
}

QDateTime dateTimeFromSystemTime(const SYSTEMTIME& time, Qt::TimeSpec spec) {
    const QDate date(time.wYear, time.wMonth, time.wDay);
    const QTime timeOfDay(time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
    // QDateTime would take an invalid time of day as midnight.
    if (!date.isValid() || !timeOfDay.isValid())
        return {};
    return QDateTime(date, timeOfDay, spec);
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* systemTime, FILETIME* fileTime) {
    if (!systemTime || !fileTime)
        return FALSE;
    const QDateTime dt = dateTimeFromSystemTime(*systemTime, Qt::UTC);
    if (systemTime->wYear < 1601 || !dt.isValid())
        return FALSE;
    const std::int64_t ticks =
        dt.toMSecsSinceEpoch() * tessaly::kTicksPerMs + tessaly::kUnixEpochTicks;
    *fileTime = fileTimeFromUInt64(std::uint64_t(ticks));
    return TRUE;
}
