#include "tests/testkit/virtual_clock.h"

#include <algorithm>

namespace tessaly::testkit {

namespace {

SYSTEMTIME defaultStart() {
    SYSTEMTIME start;
    start.wYear = 2024;
    start.wMonth = 5;
    start.wDay = 17;
    start.wDayOfWeek = 5;
    start.wHour = 10;
    return start;
}

} // namespace

VirtualClock::VirtualClock()
    : VirtualClock(defaultStart()) {}

VirtualClock::VirtualClock(const SYSTEMTIME& start)
    : previous_(&Clock::current())
    , start_(dateTimeFromSystemTime(start)) {
    Clock::install(this);
}

VirtualClock::~VirtualClock() {
    if (&Clock::current() == this)
        Clock::install(previous_ == this ? nullptr : previous_);
}

SYSTEMTIME VirtualClock::localNow() const {
    return systemTimeFromDateTime(start_.addMSecs(elapsedMs_));
}

void VirtualClock::setLocalNow(const SYSTEMTIME& now) {
    start_ = dateTimeFromSystemTime(now).addMSecs(-elapsedMs_);
}

TimerHandle VirtualClock::startTimer(int intervalMs, std::function<void()> callback) {
    const std::int64_t interval = std::max(1, intervalMs);
    const TimerHandle handle = ++lastHandle_;
    timers_[handle] = Timer{interval, elapsedMs_ + interval,
                            std::make_shared<std::function<void()>>(std::move(callback))};
    return handle;
}

void VirtualClock::stopTimer(TimerHandle handle) {
    timers_.erase(handle);
}

std::optional<std::int64_t> VirtualClock::nextDueInMs() const {
    if (timers_.empty())
        return std::nullopt;
    std::int64_t due = timers_.begin()->second.dueMs;
    for (const auto& [handle, timer] : timers_)
        due = std::min(due, timer.dueMs);
    return due - elapsedMs_;
}

void VirtualClock::advance(std::int64_t ms) {
    const std::int64_t target = elapsedMs_ + std::max<std::int64_t>(0, ms);
    for (;;) {
        auto next = timers_.end();
        for (auto it = timers_.begin(); it != timers_.end(); ++it)
            if (it->second.dueMs <= target &&
                (next == timers_.end() || it->second.dueMs < next->second.dueMs))
                next = it;
        if (next == timers_.end())
            break;
        elapsedMs_ = next->second.dueMs;
        next->second.dueMs += next->second.intervalMs;
        // The callback may stop its own timer (or any other): keep it alive while it runs.
        const std::shared_ptr<std::function<void()>> callback = next->second.callback;
        (*callback)();
    }
    elapsedMs_ = target;
}

} // namespace tessaly::testkit
