#include "framework/datadir.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace tessaly {

namespace {

QString& overridePath() {
    static QString path;
    return path;
}

QString defaultDirectory() {
    const QByteArray fromEnvironment = qgetenv("TESSALY_DATA_DIR");
    if (!fromEnvironment.isEmpty())
        return QString::fromLocal8Bit(fromEnvironment);
    QString base = QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME"));
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return base + QStringLiteral("/tessaly");
}

} // namespace

QString dataDirectory() {
    const QString path = overridePath().isEmpty() ? defaultDirectory() : overridePath();
    QDir dir(path);
    if (!dir.exists()) {
        dir.mkpath(QStringLiteral("."));
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                        QFileDevice::ExeOwner);
    }
    return path;
}

void setDataDirectory(const QString& path) {
    overridePath() = path;
}

} // namespace tessaly
