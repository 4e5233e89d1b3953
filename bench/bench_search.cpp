// Search in a store of 1,000,000 messages: the first screenful of results for a rare word
// (goal ≤ 5 ms), a word in 10 % of the messages (≤ 20 ms) and a two-letter prefix (≤ 30 ms);
// building the index of an existing store of that size (≤ 60 s); storing a message with the
// index against without it (≤ 2×). The stores are made once and kept in the temporary folder.

#include "suite/telephony/schema_sql.h" // generated
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include "bench/offscreen_benchmarks.h"

#include "gsm/gsm.h"
#include "gsm/search.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sqlite3.h>

#include <random>
#include <string>

namespace {

namespace telephony = tessaly::telephony;
constexpr int kMessages = 1000000;

const char* const kWords[] = {"station", "train", "dinner", "tomorrow", "meeting", "call",
                              "late",    "home",  "office", "weekend",  "coffee",  "thanks"};

// Message i: a few common words, "parcel" in every tenth, "zeppelin" in ten messages in all.
std::string messageText(int i, std::mt19937& random) {
    std::string text = "Message " + std::to_string(i) + ":";
    for (int w = 0; w < 6; ++w)
        text += std::string(" ") + kWords[random() % std::size(kWords)];
    if (i % 10 == 3)
        text += " parcel";
    if (i % (kMessages / 10) == 7)
        text += " zeppelin";
    return text;
}

// Fills `path` (created with the first schema only when `firstSchemaOnly`) with a million
// messages in one transaction, straight through SQLite.
bool fillStore(const QString& path, bool firstSchemaOnly) {
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8(), &db) != SQLITE_OK)
        return false;
    if (firstSchemaOnly) {
        sqlite3_exec(db, telephony::kSchemaMigrations[0], nullptr, nullptr, nullptr);
        sqlite3_exec(db, "PRAGMA user_version=1", nullptr, nullptr, nullptr);
    }
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* message = nullptr;
    sqlite3_stmt* address = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO messages(id, folder, status, text, date) VALUES(?,?,3,?,?)",
                       -1, &message, nullptr);
    sqlite3_prepare_v2(db, "INSERT INTO addresses VALUES(?, 0, ?)", -1, &address, nullptr);
    std::mt19937 random(11);
    const std::int64_t first = 130000000000000000LL;
    for (int i = 1; i <= kMessages; ++i) {
        const std::string text = messageText(i, random);
        sqlite3_bind_int64(message, 1, i);
        sqlite3_bind_int(message, 2, i % 3 == 0 ? 1 : 0);
        sqlite3_bind_text(message, 3, text.c_str(), int(text.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int64(message, 4, first + std::int64_t(i) * 3000000000LL);
        sqlite3_step(message);
        sqlite3_reset(message);
        const std::string number = "+4917" + std::to_string(1000000 + i % 500);
        sqlite3_bind_int64(address, 1, i);
        sqlite3_bind_text(address, 2, number.c_str(), int(number.size()), SQLITE_TRANSIENT);
        sqlite3_step(address);
        sqlite3_reset(address);
    }
    sqlite3_finalize(message);
    sqlite3_finalize(address);
    const bool ok = sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

QString searchStore() {
    const QString path = QDir::temp().filePath(QStringLiteral("tessaly-bench-search-1m.db"));
    if (QFile::exists(path))
        return path;
    const QString part = path + QStringLiteral(".part");
    QFile::remove(part);
    telephony::Options options;
    options.databasePath = part;
    if (!telephony::open(options).isOk())
        return {};
    telephony::close();
    if (!fillStore(part, false))
        return {};
    QFile::rename(part, path);
    return path;
}

void openSearchStore(benchmark::State& state) {
    telephony::Options options;
    options.databasePath = searchStore();
    if (telephony::isOpen())
        return;
    if (options.databasePath.isEmpty() || !telephony::open(options).isOk())
        state.SkipWithError("no store");
}

// The first screenful: how many were found, and the first twenty.
void firstScreen(benchmark::State& state, const char16_t* query) {
    openSearchStore(state);
    int found = 0;
    for (auto _ : state) {
        const auto search = GSM::searchMessages(query);
        found = search ? search->count() : 0;
        benchmark::DoNotOptimize(search ? search->next(20) : std::vector<GSM::SearchHit>());
    }
    state.counters["found"] = found;
}
BENCHMARK_CAPTURE(firstScreen, rareWord, u"zeppelin")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstScreen, tenPercentWord, u"parcel")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstScreen, twoLetterPrefix, u"pa")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstScreen, twoWords, u"parcel stat")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstScreen, number, u"0171 000 12")->Unit(benchmark::kMillisecond);

// An existing store of a million messages from before the index: opening it builds the index.
void indexExistingStore(benchmark::State& state) {
    telephony::close();
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("telephony.db"));
        fillStore(path, true);
        telephony::Options options;
        options.databasePath = path;
        state.ResumeTiming();
        if (!telephony::open(options).isOk())
            state.SkipWithError("the store did not open");
        state.PauseTiming();
        telephony::close();
        state.ResumeTiming();
    }
}
BENCHMARK(indexExistingStore)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(1);

// Storing 1,000 arriving messages, with the index kept by its triggers and with the triggers
// dropped.
void storeMessages(benchmark::State& state) {
    telephony::close();
    QTemporaryDir directory;
    telephony::Options options;
    options.databasePath = directory.filePath(QStringLiteral("telephony.db"));
    options.segmentDelayMs = 0;
    telephony::open(options);
    telephony::close();
    if (state.range(0) == 0) {
        sqlite3* db = nullptr;
        sqlite3_open(options.databasePath.toUtf8(), &db);
        sqlite3_exec(db,
                     "DROP TRIGGER message_search_insert; DROP TRIGGER message_search_delete; "
                     "DROP TRIGGER message_search_update",
                     nullptr, nullptr, nullptr);
        sqlite3_close(db);
    }
    telephony::open(options);
    std::mt19937 random(5);
    int i = 0;
    for (auto _ : state) {
        const std::string text = messageText(++i, random);
        telephony::simulator::receiveMessage(u"+4917012345",
                                             QString::fromStdString(text).toStdU16String());
    }
    telephony::close();
    state.SetLabel(state.range(0) ? "with the index" : "without");
}
BENCHMARK(storeMessages)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->Iterations(1000);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    benchmarks.run();
    telephony::close();
    return 0;
}
