#pragma once

// "Now" and every timer of the module and the suite. Production: the system clock and QTimer.
// Tests install a virtual clock whose advance(ms) fires due timers in order.

#include "framework/win32types.h"

#include <QtCore/qnamespace.h>

#include <functional>

class QDateTime;

namespace tessaly {

using TimerHandle = std::uint64_t;

class Clock {
public:
    virtual ~Clock() = default;

    // Local wall-clock time.
    virtual SYSTEMTIME localNow() const = 0;
    // Starts a repeating timer whose callback runs on the UI thread; returns a handle, never 0.
    virtual TimerHandle startTimer(int intervalMs, std::function<void()> callback) = 0;
    virtual void stopTimer(TimerHandle handle) = 0;

    static Clock& current();
    // Installs a clock (not owned); nullptr restores the system clock.
    static void install(Clock* clock);
};

} // namespace tessaly

void GetLocalTime(SYSTEMTIME* time);
// The fields of a date and time as they read, with no time-zone shift (milliseconds kept).
SYSTEMTIME systemTimeFromDateTime(const QDateTime& dateTime);
// The fields read as a date and time in the given zone (milliseconds kept); invalid when the
// date or the time of day is not one.
QDateTime dateTimeFromSystemTime(const SYSTEMTIME& time, Qt::TimeSpec spec = Qt::LocalTime);
BOOL FileTimeToSystemTime(const FILETIME* fileTime, SYSTEMTIME* systemTime);
BOOL SystemTimeToFileTime(const SYSTEMTIME* systemTime, FILETIME* fileTime);
