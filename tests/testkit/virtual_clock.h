#pragma once

// A clock that stands still until the test moves it. Installed as the Clock while it lives;
// advance(ms) fires every timer that falls due, in order of due time (then of starting), with
// "now" set to each due time while its callback runs.

#include "framework/time/clock.h"

#include <QDateTime>

#include <map>
#include <memory>
#include <optional>

namespace tessaly::testkit {

class VirtualClock final : public Clock {
public:
    // Starts at 2024-05-17 10:00:00.000 local time unless told otherwise.
    VirtualClock();
    explicit VirtualClock(const SYSTEMTIME& start);
    ~VirtualClock() override;
    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    SYSTEMTIME localNow() const override;
    // An interval below 1 ms counts as 1 ms.
    TimerHandle startTimer(int intervalMs, std::function<void()> callback) override;
    void stopTimer(TimerHandle handle) override;

    void advance(std::int64_t ms);
    // Moves the wall clock without firing timers.
    void setLocalNow(const SYSTEMTIME& now);
    std::int64_t elapsedMs() const { return elapsedMs_; }
    size_t activeTimers() const { return timers_.size(); }
    // Milliseconds until the next timer is due, if any runs.
    std::optional<std::int64_t> nextDueInMs() const;

private:
    struct Timer {
        std::int64_t intervalMs;
        std::int64_t dueMs;
        std::shared_ptr<std::function<void()>> callback;
    };

    Clock* previous_ = nullptr;
    QDateTime start_;
    std::int64_t elapsedMs_ = 0;
    TimerHandle lastHandle_ = 0;
    std::map<TimerHandle, Timer> timers_;
};

} // namespace tessaly::testkit
