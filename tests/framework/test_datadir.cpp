#include "framework/datadir.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(DataDirectory, OverrideIsCreatedPrivate) {
    QTemporaryDir parent;
    const QString path = parent.path() + QStringLiteral("/nested/data");
    tessaly::setDataDirectory(path);
    EXPECT_EQ(tessaly::dataDirectory(), path);
    const QFileInfo info(path);
    EXPECT_TRUE(info.isDir());
    EXPECT_EQ(info.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
              QFileDevice::Permissions());
    tessaly::setDataDirectory(QString());
}
