// Profile string read and write through the whole stack: key path lookup, SQLite, and for the
// write a synced commit.

#include "framework/datadir.h"
#include "framework/registry/profile.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace profile = tessaly::profile;

namespace {

// A private data directory with the profile set as the module sets it.
class ProfileFixture {
public:
    ProfileFixture() {
        tessaly::setDataDirectory(dir.path());
        profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        profile::setProfileName(QStringLiteral("SMS"));
        for (int i = 0; i < 20; ++i)
            profile::writeProfileString(QStringLiteral("Templates"),
                                        QStringLiteral("Template %1").arg(i),
                                        QStringLiteral("Body of template %1 with [Sender:] and "
                                                       "[Date:] placeholders")
                                            .arg(i));
    }
    ~ProfileFixture() {
        tessaly::releaseRegistryHives();
        tessaly::setDataDirectory(QString());
    }

private:
    QTemporaryDir dir;
};

void profileStringRead(benchmark::State& state) {
    const ProfileFixture fixture;
    const QString section = QStringLiteral("Templates");
    const QString entry = QStringLiteral("Template 10");
    for (auto _ : state)
        benchmark::DoNotOptimize(profile::getProfileString(section, entry));
}
BENCHMARK(profileStringRead);

void profileStringReadMissing(benchmark::State& state) {
    const ProfileFixture fixture;
    const QString section = QStringLiteral("Templates");
    const QString entry = QStringLiteral("No such template");
    for (auto _ : state)
        benchmark::DoNotOptimize(profile::getProfileString(section, entry));
}
BENCHMARK(profileStringReadMissing);

void profileStringWrite(benchmark::State& state) {
    const ProfileFixture fixture;
    const QString section = QStringLiteral("Templates");
    const QString entry = QStringLiteral("Template 10");
    const QString texts[] = {QStringLiteral("First text of the entry"),
                             QStringLiteral("Second text of the entry")};
    int turn = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(profile::writeProfileString(section, entry, texts[turn++ & 1]));
}
BENCHMARK(profileStringWrite)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
