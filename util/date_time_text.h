#pragma once

// Short numeric date and time texts: ISO order (year, month, day), 24-hour clock, no seconds,
// never the device's locale. Timestamps are FILETIMEs that already hold local wall-clock time,
// so they are broken down as they are, without any time-zone shift. A FILETIME too large to
// be a date gives empty texts.

#include "framework/win32types.h"

#include <QString>

#include <cstdint>

// The local time now, from the installed clock.
FILETIME CurrentLocalFileTime();

// "14:05" for a time on today's calendar date (past or future), otherwise "05-17"
// (month-day), or "2003-05-17" when longDate is set. Days are compared by calendar date, so
// 23:59 yesterday is a date, not a time, at 00:01.
QString FormatListDate(const FILETIME& time, bool longDate);

// "2003-05-17, 14:05".
QString FormatTimestamp(const FILETIME& time);

// The two halves apart: "2003-05-17" and "14:05". Either pointer may be null.
void FormatDateAndTime(const FILETIME& time, QString* date, QString* timeOfDay);

// A count of minutes as hours:minutes, "02:15"; a negative count keeps the sign on both halves
// ("-1:-15" for -75) because both are truncated toward zero.
QString FormatMinutes(std::int32_t minutes);
