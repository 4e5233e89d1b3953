// Message archives: importing an SMS Backup & Restore file of 100,000 messages (goal ≤ 3 s) and
// exporting as many (goal ≤ 2 s); a round trip of 1,000,000 (import, export, import into a new
// store; goal ≤ 60 s with peak memory ≤ 100 MB, progress at least every 0.5 s). Run the round
// trip alone (--benchmark_filter=roundTrip) for its peak memory: the process's peak counts.

#include "suite/telephony/archive/message_archive.h"
#include "suite/telephony/telephony.h"

#include "bench/offscreen_benchmarks.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <algorithm>

namespace {

namespace archive = tessaly::telephony::archive;
namespace telephony = tessaly::telephony;

// A backup file as the app writes it: fifty people, replies both ways, now and then an emoji
// as two references and a line break; made once per size and kept in the temporary folder.
QString backupFile(int count) {
    const QString path =
        QDir::temp().filePath(QStringLiteral("tessaly-bench-backup-%1.xml").arg(count));
    if (QFile::exists(path))
        return path;
    QFile file(path + QStringLiteral(".part"));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("<?xml version='1.0' encoding='UTF-8' standalone='yes' ?>\n");
    file.write("<smses count=\"" + QByteArray::number(count) + "\">\n");
    const qint64 start = 1262304000000; // 2010-01-01
    QByteArray line;
    for (int i = 0; i < count; ++i) {
        line = "  <sms protocol=\"0\" address=\"+4917" + QByteArray::number(1000000 + i % 50) +
               "\" date=\"" + QByteArray::number(start + qint64(i) * 317000) + "\" type=\"" +
               (i % 3 == 0 ? "2" : "1") + "\" subject=\"null\" body=\"Message " +
               QByteArray::number(i) + ": see you at the station at half past seven" +
               (i % 7 == 0 ? " &#55357;&#56832;" : "") + (i % 11 == 0 ? "&#10;Anna" : "") +
               "\" toa=\"null\" sc_toa=\"null\" service_center=\"+491760000443\" read=\"" +
               (i % 5 == 0 ? "0" : "1") +
               "\" status=\"-1\" locked=\"0\" date_sent=\"0\" sub_id=\"1\" readable_date=\"Jan "
               "1, 2010 1:00:00 AM\" contact_name=\"(Unknown)\" />\n";
        file.write(line);
    }
    file.write("</smses>\n");
    file.close();
    QFile::rename(path + QStringLiteral(".part"), path);
    return path;
}

bool openStore(const QString& folder) {
    telephony::Options options;
    options.databasePath = QDir(folder).filePath(QStringLiteral("telephony.db"));
    return telephony::open(options).isOk();
}

double peakMemoryMb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

// Imports `file` into the open store; the longest wait between two progress reports in `gap`.
bool importFile(const QString& file, qint64* gapMs) {
    archive::MessageImport import(file);
    QElapsedTimer sinceReport;
    sinceReport.start();
    qint64 longest = 0;
    const auto report = [&](qint64, qint64) { longest = std::max(longest, sinceReport.restart()); };
    const bool ok = import.read(report) && import.commit(report).isOk();
    longest = std::max(longest, sinceReport.elapsed());
    if (gapMs)
        *gapMs = std::max(*gapMs, longest);
    return ok;
}

void importBackup(benchmark::State& state) {
    const QString file = backupFile(int(state.range(0)));
    qint64 gap = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir store;
        openStore(store.path());
        state.ResumeTiming();
        if (!importFile(file, &gap))
            state.SkipWithError("the import failed");
        state.PauseTiming();
        telephony::close();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["progress_gap_ms"] = double(gap);
}
BENCHMARK(importBackup)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);

void exportBackup(benchmark::State& state) {
    QTemporaryDir store;
    openStore(store.path());
    importFile(backupFile(int(state.range(0))), nullptr);
    const QString output = store.filePath(QStringLiteral("out.xml"));
    for (auto _ : state) {
        if (!archive::exportMessages(archive::storeDatabasePath(), output).isOk())
            state.SkipWithError("the export failed");
    }
    telephony::close();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(exportBackup)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);

void roundTrip(benchmark::State& state) {
    const QString file = backupFile(int(state.range(0)));
    qint64 gap = 0;
    for (auto _ : state) {
        QTemporaryDir first;
        QTemporaryDir second;
        const QString exported = first.filePath(QStringLiteral("export.xml"));
        bool ok = openStore(first.path()) && importFile(file, &gap) &&
                  archive::exportMessages(archive::storeDatabasePath(), exported).isOk();
        telephony::close();
        ok = ok && openStore(second.path()) && importFile(exported, &gap);
        telephony::close();
        if (!ok)
            state.SkipWithError("the round trip failed");
    }
    state.counters["peak_rss_mb"] = peakMemoryMb();
    state.counters["progress_gap_ms"] = double(gap);
}
BENCHMARK(roundTrip)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(1);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    benchmarks.run();
    return 0;
}
