#include "framework/time/thread_timer.h"

#include "framework/time/clock.h"

#include <map>

namespace tessaly {

namespace {

struct ThreadTimer {
    TimerHandle handle = 0;
    const Clock* clock = nullptr;
};

std::map<UINT_PTR, ThreadTimer>& threadTimers() {
    static std::map<UINT_PTR, ThreadTimer> timers;
    return timers;
}

UINT_PTR lastThreadTimerId = 0;

} // namespace

UINT_PTR setThreadTimer(UINT elapseMs, std::function<void(UINT_PTR id)> callback) {
    const UINT_PTR id = ++lastThreadTimerId;
    Clock& clock = Clock::current();
    const TimerHandle handle =
        clock.startTimer(int(elapseMs), [id, callback = std::move(callback)] {
            if (threadTimers().count(id))
                callback(id);
        });
    threadTimers()[id] = ThreadTimer{handle, &clock};
    return id;
}

bool killThreadTimer(UINT_PTR id) {
    const auto found = threadTimers().find(id);
    if (found == threadTimers().end())
        return false;
    // A timer started under a clock that is no longer in force has died with it.
    if (found->second.clock == &Clock::current())
        Clock::current().stopTimer(found->second.handle);
    threadTimers().erase(found);
    return true;
}

} // namespace tessaly
