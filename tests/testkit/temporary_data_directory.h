#pragma once

// A data directory of its own for one test: set while the object lives, removed afterwards.

#include "framework/datadir.h"

#include <QString>
#include <QTemporaryDir>

namespace tessaly::testkit {

class TemporaryDataDirectory {
public:
    TemporaryDataDirectory() { setDataDirectory(directory_.path()); }
    ~TemporaryDataDirectory() { setDataDirectory(QString()); }
    TemporaryDataDirectory(const TemporaryDataDirectory&) = delete;
    TemporaryDataDirectory& operator=(const TemporaryDataDirectory&) = delete;

    QString path() const { return directory_.path(); }
    QString filePath(const QString& name) const { return directory_.filePath(name); }

private:
    QTemporaryDir directory_;
};

} // namespace tessaly::testkit
