// The suite's own sounds: valid, short WAV files, written once at the first start.

#include "host/factory_sounds.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using tessaly::host::factorySoundNames;
using tessaly::host::factorySoundWave;
using tessaly::host::installFactorySounds;

struct WaveHeader {
    QByteArray riff, wave, fmt, data;
    quint32 riffSize = 0, fmtSize = 0, sampleRate = 0, byteRate = 0, dataSize = 0;
    quint16 format = 0, channels = 0, blockAlign = 0, bits = 0;
};

WaveHeader readHeader(const QByteArray& file) {
    WaveHeader header;
    QDataStream in(file);
    in.setByteOrder(QDataStream::LittleEndian);
    const auto tag = [&in] {
        QByteArray bytes(4, '\0');
        in.readRawData(bytes.data(), 4);
        return bytes;
    };
    header.riff = tag();
    in >> header.riffSize;
    header.wave = tag();
    header.fmt = tag();
    in >> header.fmtSize >> header.format >> header.channels >> header.sampleRate >>
        header.byteRate >> header.blockAlign >> header.bits;
    header.data = tag();
    in >> header.dataSize;
    return header;
}

TEST(FactorySounds, AreShortMonoPcmWaveFiles) {
    ASSERT_TRUE(factorySoundNames().contains(QStringLiteral("Notify")));
    for (const QString& name : factorySoundNames()) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray file = factorySoundWave(name);
        const WaveHeader header = readHeader(file);
        EXPECT_EQ(header.riff, "RIFF");
        EXPECT_EQ(header.wave, "WAVE");
        EXPECT_EQ(header.fmt, "fmt ");
        EXPECT_EQ(header.data, "data");
        EXPECT_EQ(header.format, 1);
        EXPECT_EQ(header.channels, 1);
        EXPECT_EQ(header.bits, 16);
        EXPECT_EQ(header.byteRate, header.sampleRate * 2);
        EXPECT_EQ(header.riffSize, quint32(file.size() - 8));
        EXPECT_EQ(header.dataSize, quint32(file.size() - 44));
        const double seconds = double(header.dataSize) / header.byteRate;
        EXPECT_GT(seconds, 0.1);
        EXPECT_LT(seconds, 1.0);
    }
    EXPECT_TRUE(factorySoundWave(QStringLiteral("Nope")).isEmpty());
}

TEST(FactorySounds, AreWrittenOnlyIntoAFolderThatDidNotExist) {
    QTemporaryDir data;
    const QString folder = QDir(data.path()).filePath(QStringLiteral("sounds"));
    EXPECT_EQ(installFactorySounds(folder), factorySoundNames());
    for (const QString& name : factorySoundNames())
        EXPECT_TRUE(QFile::exists(QDir(folder).filePath(name + QStringLiteral(".wav"))));

    // A sound the person removed stays removed at the next start.
    ASSERT_TRUE(QFile::remove(QDir(folder).filePath(QStringLiteral("Beep.wav"))));
    EXPECT_TRUE(installFactorySounds(folder).isEmpty());
    EXPECT_FALSE(QFile::exists(QDir(folder).filePath(QStringLiteral("Beep.wav"))));

    // A folder that cannot be made: nothing, quietly.
    QFile blocker(QDir(data.path()).filePath(QStringLiteral("file")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    EXPECT_TRUE(installFactorySounds(QDir(blocker.fileName()).filePath(QStringLiteral("sounds")))
                    .isEmpty());
}

} // namespace
