#include "suite/telephony/archive/archive_format.h"

#include "suite/telephony/archive/backup_xml.h"
#include "suite/telephony/archive/message_csv.h"

#include "framework/win32types.h"

#include <QDateTime>
#include <QFileInfo>

namespace tessaly::telephony::archive {
namespace {

// Milliseconds from 1601-01-01 (FILETIME's epoch) to 1970-01-01.
constexpr qint64 kEpochDifferenceMs = 11644473600000;
constexpr qint64 kTicksPerMs = 10000;

} // namespace

QString ReadError::describe() const {
    return QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(reason);
}

std::uint64_t localTicksFromUtcMilliseconds(qint64 milliseconds) {
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime);
    const qint64 wallClock = QDateTime(local.date(), local.time(), Qt::UTC).toMSecsSinceEpoch();
    const qint64 sinceFileTimeEpoch = wallClock + kEpochDifferenceMs;
    return sinceFileTimeEpoch < 0 ? 0 : std::uint64_t(sinceFileTimeEpoch) * kTicksPerMs;
}

qint64 utcMillisecondsFromLocalTicks(std::uint64_t ticks) {
    const qint64 wallClock = qint64(ticks / kTicksPerMs) - kEpochDifferenceMs;
    const QDateTime fields = QDateTime::fromMSecsSinceEpoch(wallClock, Qt::UTC);
    return QDateTime(fields.date(), fields.time(), Qt::LocalTime).toMSecsSinceEpoch();
}

bool formatFromFileName(const QString& fileName, Format* format) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == u"xml")
        *format = Format::Xml;
    else if (suffix == u"csv")
        *format = Format::Csv;
    else
        return false;
    return true;
}

std::unique_ptr<MessageReader> makeReader(Format format, QIODevice& device) {
    return format == Format::Xml ? makeBackupXmlReader(device) : makeCsvReader(device);
}

std::unique_ptr<MessageWriter> makeWriter(Format format, QIODevice& device) {
    return format == Format::Xml ? makeBackupXmlWriter(device) : makeCsvWriter(device);
}

} // namespace tessaly::telephony::archive
