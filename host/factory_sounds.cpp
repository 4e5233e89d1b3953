#include "host/factory_sounds.h"

#include <QDataStream>
#include <QDir>
#include <QSaveFile>

#include <cmath>
#include <numbers>
#include <span>

namespace tessaly::host {

namespace {

constexpr int kSampleRate = 22050;
constexpr double kAmplitude = 0.45 * 32767;
constexpr double kAttackSeconds = 0.005;
constexpr double kReleaseSeconds = 0.04;

struct Note {
    double frequency; // Hz; 0 is a rest
    int milliseconds;
    bool ringing; // decays like a struck bell instead of holding its level
};

struct Sound {
    const char* name;
    std::span<const Note> notes;
};

constexpr Note kNotify[] = {{880, 110, false}, {1320, 190, true}};
constexpr Note kChime[] = {{1047, 220, true}, {784, 220, true}, {523, 380, true}};
constexpr Note kBeep[] = {{1000, 150, false}};
constexpr Note kAlert[] = {{660, 90, false}, {990, 90, false}, {660, 90, false}, {990, 90, false}};
constexpr Note kPing[] = {{1568, 260, true}};

constexpr Sound kSounds[] = {
    {"Notify", kNotify}, {"Chime", kChime}, {"Beep", kBeep}, {"Alert", kAlert}, {"Ping", kPing},
};

// A soft start and end keep the tones free of clicks.
double envelope(double t, double length, bool ringing) {
    const double attack = std::min(1.0, t / kAttackSeconds);
    const double release = std::min(1.0, (length - t) / kReleaseSeconds);
    const double decay = ringing ? std::exp(-5.0 * t / length) : 1.0;
    return std::max(0.0, attack * release * decay);
}

QByteArray pcm(std::span<const Note> notes) {
    QByteArray samples;
    QDataStream out(&samples, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    for (const Note& note : notes) {
        const int count = kSampleRate * note.milliseconds / 1000;
        const double length = double(count) / kSampleRate;
        for (int i = 0; i < count; ++i) {
            const double t = double(i) / kSampleRate;
            const double value = note.frequency > 0
                                     ? std::sin(2 * std::numbers::pi * note.frequency * t) *
                                           envelope(t, length, note.ringing)
                                     : 0.0;
            out << qint16(std::lround(value * kAmplitude));
        }
    }
    return samples;
}

QByteArray wave(const QByteArray& samples) {
    constexpr quint16 kChannels = 1;
    constexpr quint16 kBitsPerSample = 16;
    constexpr quint16 kBlockAlign = kChannels * kBitsPerSample / 8;
    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + samples.size());
    out.writeRawData("WAVEfmt ", 8);
    out << quint32(16) << quint16(1) << kChannels << quint32(kSampleRate)
        << quint32(kSampleRate * kBlockAlign) << kBlockAlign << kBitsPerSample;
    out.writeRawData("data", 4);
    out << quint32(samples.size());
    out.writeRawData(samples.constData(), int(samples.size()));
    return file;
}

} // namespace

QStringList factorySoundNames() {
    QStringList names;
    for (const Sound& sound : kSounds)
        names.append(QString::fromLatin1(sound.name));
    return names;
}

QByteArray factorySoundWave(const QString& name) {
    for (const Sound& sound : kSounds)
        if (name == QLatin1StringView(sound.name))
            return wave(pcm(sound.notes));
    return QByteArray();
}

QStringList installFactorySounds(const QString& folder) {
    QDir directory(folder);
    if (directory.exists() || !QDir().mkpath(folder))
        return {};
    QStringList written;
    for (const QString& name : factorySoundNames()) {
        QSaveFile file(directory.filePath(name + QStringLiteral(".wav")));
        if (file.open(QIODevice::WriteOnly) && file.write(factorySoundWave(name)) >= 0 &&
            file.commit())
            written.append(name);
    }
    return written;
}

} // namespace tessaly::host
