#include "util/date_time_text.h"

#include "framework/time/clock.h"

#include <optional>

namespace {

std::optional<SYSTEMTIME> calendarFields(const FILETIME& time) {
    SYSTEMTIME fields;
    if (!FileTimeToSystemTime(&time, &fields))
        return std::nullopt;
    return fields;
}

QString dateText(const SYSTEMTIME& t) {
    return QString::asprintf("%d-%02d-%02d", t.wYear, t.wMonth, t.wDay);
}

QString timeText(const SYSTEMTIME& t) {
    return QString::asprintf("%02d:%02d", t.wHour, t.wMinute);
}

} // namespace

FILETIME CurrentLocalFileTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    FILETIME result;
    if (!SystemTimeToFileTime(&now, &result))
        return FILETIME{};
    return result;
}

QString FormatListDate(const FILETIME& time, bool longDate) {
    const std::optional<SYSTEMTIME> stamp = calendarFields(time);
    if (!stamp)
        return QString();
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (stamp->wYear == now.wYear && stamp->wMonth == now.wMonth && stamp->wDay == now.wDay)
        return timeText(*stamp);
    if (longDate)
        return dateText(*stamp);
    return QString::asprintf("%02d-%02d", stamp->wMonth, stamp->wDay);
}

QString FormatTimestamp(const FILETIME& time) {
    const std::optional<SYSTEMTIME> stamp = calendarFields(time);
    if (!stamp)
        return QString();
    return dateText(*stamp) + QStringLiteral(", ") + timeText(*stamp);
}

void FormatDateAndTime(const FILETIME& time, QString* date, QString* timeOfDay) {
    const std::optional<SYSTEMTIME> stamp = calendarFields(time);
    if (date)
        *date = stamp ? dateText(*stamp) : QString();
    if (timeOfDay)
        *timeOfDay = stamp ? timeText(*stamp) : QString();
}

QString FormatMinutes(std::int32_t minutes) {
    return QString::asprintf("%02d:%02d", int(minutes / 60), int(minutes % 60));
}
