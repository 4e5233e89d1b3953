#pragma once

// Small helpers of window tests that run against a telephony store: calendar times as the
// store's FILETIMEs, and delivering the library's queued events together with the windows'
// posted messages until both are quiet (and, given the virtual clock, its timers too).

#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "suite/telephony/events.h"
#include "suite/telephony/host_hooks.h"
#include "suite/telephony/telephony.h"
#include "tests/testkit/system_time.h"
#include "tests/testkit/virtual_clock.h"
#include "tests/testkit/window_driver.h"

#include <cstdint>
#include <optional>

namespace telephony_test {

using tessaly::testkit::at;
using tessaly::testkit::fileTime;

inline void settle() {
    auto& queue = tessaly::telephony::EventQueue::instance();
    for (int round = 0; round < 100; ++round) {
        tessaly::testkit::pumpMessages();
        queue.deliverAll();
        if (!queue.hasPending())
            return;
    }
}

// As settle(), and moves `clock` on one millisecond at a time while a timer falls due within
// the next one, so that the radio (one segment per millisecond) finishes what it started.
inline void settle(tessaly::testkit::VirtualClock& clock) {
    auto& queue = tessaly::telephony::EventQueue::instance();
    for (int round = 0; round < 2000; ++round) {
        tessaly::testkit::pumpMessages();
        queue.deliverAll();
        const std::optional<std::int64_t> due = clock.nextDueInMs();
        if (!queue.hasPending() && (!due || *due > 1))
            return;
        clock.advance(1);
    }
}

// Opens the library on a store in memory whose radio and SIM moves take no time; false when it
// did not open.
inline bool openInstantStore() {
    tessaly::telephony::Options options;
    options.databasePath = QStringLiteral(":memory:");
    options.segmentDelayMs = 0;
    options.simTransferDelayMs = 0;
    return tessaly::telephony::open(options).isOk();
}

// The end of a window test against the store: what is still queued or posted is delivered, then
// the library closes and the host hooks and the module's resources are taken away.
inline void closeStore() {
    settle();
    tessaly::telephony::close();
    tessaly::telephony::installHostHooks({});
    tessaly::setCurrentResources(nullptr);
}

} // namespace telephony_test
