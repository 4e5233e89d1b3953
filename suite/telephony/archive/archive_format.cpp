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

bool localTicksFromUtcMilliseconds(qint64 milliseconds, std::uint64_t* ticks) {
    // Beyond a few hundred thousand years QDateTime's own arithmetic overflows.
    constexpr qint64 kFarBeyond = qint64(1) << 50;
    if (milliseconds < -kFarBeyond || milliseconds > kFarBeyond)
        return false;
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime);
    if (!local.isValid() || local.date().year() < 1601 || local.date().year() > 9999)
        return false;
    const qint64 wallClock = QDateTime(local.date(), local.time(), Qt::UTC).toMSecsSinceEpoch();
    *ticks = std::uint64_t(wallClock + kEpochDifferenceMs) * kTicksPerMs;
    return true;
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
