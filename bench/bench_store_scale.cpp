// The message store at 10,000, 100,000 and 1,000,000 messages. One data directory per size is
// made once in the build folder (bench-stores/) and reused. Measured: the phone started as a
// process of its own to its home screen and to the Inbox with first paint, with its peak
// memory; and in this process, on the open store: re-sorting the Inbox by each key (a new
// container and the rows of its first screen), opening the last page, the unread count, a
// message arriving into the open Inbox, scrolling the whole Inbox end to end, and deleting half
// of the store by age (on a copy).

#include "bench/child_process.h"
#include "framework/datadir.h"
#include "framework/time/clock.h"
#include "gsm/gsm.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/store.h"
#include "suite/telephony/telephony.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstring>

namespace {

namespace telephony = tessaly::telephony;
namespace sim = tessaly::telephony::simulator;

constexpr int kScreenRows = 20;
constexpr int kSenders = 500;
constexpr int kNamedSenders = 100;

QString storeDirectory(int messages) {
    return QDir(QStringLiteral(TESSALY_BENCH_STORES)).filePath(QString::number(messages));
}

QString databasePath(int messages) {
    return QDir(storeDirectory(messages)).filePath(QStringLiteral("telephony.db"));
}

std::uint64_t nowTicks() {
    const SYSTEMTIME local = tessaly::Clock::current().localNow();
    FILETIME now{};
    SystemTimeToFileTime(&local, &now);
    return fileTimeToUInt64(now);
}

// Ten years of messages, one in ten in the Outbox, one in fifty unread, from 500 numbers of
// which 100 are named in the phone book. Rows are written with SQL: the library's own writes
// would take minutes at a million.
bool makeStore(int messages) {
    if (QFile::exists(databasePath(messages)))
        return true;
    std::fprintf(stderr, "making a store of %d messages in %s\n", messages,
                 qPrintable(storeDirectory(messages)));
    QDir().mkpath(storeDirectory(messages));
    telephony::Options options;
    options.databasePath = databasePath(messages);
    if (!telephony::open(options).isOk())
        return false;
    for (int i = 0; i < kNamedSenders; ++i) {
        const std::u16string suffix = QString::number(1000000 + i).toStdU16String();
        sim::addContact(u"Person", suffix, {u"+4917" + suffix});
    }
    telephony::close();
    sqlite3* db = nullptr;
    if (sqlite3_open(databasePath(messages).toUtf8().constData(), &db) != SQLITE_OK)
        return false;
    const long long tenYears = 10LL * 365 * 864000000000LL;
    const std::string sql =
        "BEGIN;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(messages) +
        ") INSERT INTO messages(id, folder, status, text, date, first_number) SELECT i, "
        "i % 10 = 0, CASE WHEN i % 10 = 0 THEN 8 WHEN i % 50 = 1 THEN 2 ELSE 3 END, "
        "'Message number ' || i || ' about the weekend, the train and dinner', " +
        std::to_string(nowTicks()) + " - (" + std::to_string(messages) + " - i) * " +
        std::to_string(tenYears / messages) + ", '+4917' || (1000000 + i % " +
        std::to_string(kSenders) +
        ") FROM n;"
        "INSERT INTO addresses(message_id, position, number, outcome) "
        "SELECT id, 0, first_number, folder FROM messages;"
        "INSERT OR IGNORE INTO sort_names SELECT DISTINCT first_number, '' FROM messages;"
        "INSERT OR REPLACE INTO settings(name, value) VALUES ('sort_names_pending', 1);"
        "COMMIT;";
    const bool ok = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    // The first open gives every number its sort name.
    return ok && telephony::open(options).isOk() && (telephony::close(), true);
}

const std::vector<std::int64_t> kSizes = {10000, 100000, 1000000};

void BM_PhoneStart(benchmark::State& state) {
    const int messages = int(state.range(0));
    if (!makeStore(messages)) {
        state.SkipWithError("the store cannot be made");
        return;
    }
    const std::string picture = QDir(storeDirectory(messages)).filePath("run.png").toStdString();
    std::vector<std::string> arguments{TESSALY_PHONE_PATH, "--data-dir",
                                       storeDirectory(messages).toStdString(), "--screenshot",
                                       picture};
    if (state.range(1) != 0)
        arguments.emplace_back("--open-messages");
    long peakKiB = 0;
    runProcess(arguments, &peakKiB); // the first run writes the module's factory templates
    for (auto _ : state) {
        if (!runProcess(arguments, &peakKiB)) {
            state.SkipWithError("tessaly-phone failed");
            break;
        }
    }
    state.counters["peak_MiB"] = double(peakKiB) / 1024.0;
}
BENCHMARK(BM_PhoneStart)
    ->ArgsProduct({kSizes, {0, 1}})
    ->ArgNames({"messages", "inbox"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

// The store of this size, open in this process.
telephony::Store* openStore(benchmark::State& state) {
    const int messages = int(state.range(0));
    if (!makeStore(messages)) {
        state.SkipWithError("the store cannot be made");
        return nullptr;
    }
    telephony::Options options;
    options.databasePath = databasePath(messages);
    if (!telephony::open(options).isOk()) {
        state.SkipWithError("the store cannot be opened");
        return nullptr;
    }
    return telephony::Store::current();
}

// The rows of one screen, read as the list reads them.
void readRows(GSM::MessageContainer& container, int first) {
    for (int position = first; position < std::min(container.size(), first + kScreenRows);
         ++position) {
        if (GSM::Message* message = container.get(position)) {
            benchmark::DoNotOptimize(message->getText());
            benchmark::DoNotOptimize(message->getContacts()->get(0));
        }
    }
}

void BM_Resort(benchmark::State& state) {
    telephony::Store* store = openStore(state);
    if (!store)
        return;
    for (auto _ : state) {
        const std::unique_ptr<telephony::MessageWindow> window =
            store->makeWindow(GSM::Sms::FolderInbox, int(state.range(1)));
        readRows(*window, 0);
    }
    telephony::close();
}
BENCHMARK(BM_Resort)
    ->ArgsProduct({kSizes, {GSM::Sms::SortByDate, GSM::Sms::SortByContact, GSM::Sms::SortByStatus}})
    ->ArgNames({"messages", "key"})
    ->Unit(benchmark::kMillisecond);

void BM_LastPage(benchmark::State& state) {
    telephony::Store* store = openStore(state);
    if (!store)
        return;
    for (auto _ : state) {
        const std::unique_ptr<telephony::MessageWindow> window =
            store->makeWindow(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
        readRows(*window, window->size() - kScreenRows);
    }
    telephony::close();
}
BENCHMARK(BM_LastPage)
    ->ArgsProduct({kSizes})
    ->ArgNames({"messages"})
    ->Unit(benchmark::kMillisecond);

void BM_UnreadCount(benchmark::State& state) {
    telephony::Store* store = openStore(state);
    if (!store)
        return;
    for (auto _ : state) {
        store->touchMessages(); // whatever was counted before is stale
        benchmark::DoNotOptimize(GSM::sms.unreadCount());
    }
    telephony::EventQueue::instance().clear();
    telephony::close();
}
BENCHMARK(BM_UnreadCount)
    ->ArgsProduct({kSizes})
    ->ArgNames({"messages"})
    ->Unit(benchmark::kMicrosecond);

// A message is stored and the open Inbox (newest first) shows it: a new container, its top rows.
void BM_MessageArrives(benchmark::State& state) {
    const int messages = int(state.range(0));
    if (!makeStore(messages)) {
        state.SkipWithError("the store cannot be made");
        return;
    }
    QTemporaryDir copy;
    const QString path = copy.filePath(QStringLiteral("telephony.db"));
    QFile::copy(databasePath(messages), path);
    telephony::Options options;
    options.databasePath = path;
    telephony::open(options);
    int arrived = 0;
    for (auto _ : state) {
        sim::receiveMessage(u"+4917100000" + QString::number(arrived++ % 10).toStdU16String(),
                            u"Are we still on for tonight?");
        GSM::MessageContainer* inbox =
            GSM::sms.getMessages(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
        readRows(*inbox, inbox->size() - kScreenRows);
        state.PauseTiming();
        telephony::EventQueue::instance().clear();
        state.ResumeTiming();
    }
    telephony::close();
}
BENCHMARK(BM_MessageArrives)
    ->ArgsProduct({kSizes})
    ->ArgNames({"messages"})
    ->Unit(benchmark::kMillisecond);

long residentKiB(const char* field) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(int(std::strlen(field))).trimmed().split(' ').front().toLong();
    }
    return 0;
}

void BM_ScrollWholeInbox(benchmark::State& state) {
    telephony::Store* store = openStore(state);
    if (!store)
        return;
    const long before = residentKiB("VmRSS:");
    long grown = 0;
    for (auto _ : state) {
        const std::unique_ptr<telephony::MessageWindow> window =
            store->makeWindow(GSM::Sms::FolderInbox, GSM::Sms::SortByDate);
        for (int first = 0; first < window->size(); first += kScreenRows)
            readRows(*window, first);
        grown = std::max(grown, residentKiB("VmRSS:") - before);
    }
    state.counters["grown_MiB"] = double(grown) / 1024.0;
    telephony::close();
}
BENCHMARK(BM_ScrollWholeInbox)
    ->ArgsProduct({kSizes})
    ->ArgNames({"messages"})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

void BM_DeleteHalfByAge(benchmark::State& state) {
    const int messages = int(state.range(0));
    if (!makeStore(messages)) {
        state.SkipWithError("the store cannot be made");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir copy;
        const QString path = copy.filePath(QStringLiteral("telephony.db"));
        QFile::copy(databasePath(messages), path);
        telephony::Options options;
        options.databasePath = path;
        telephony::open(options);
        state.ResumeTiming();
        GSM::sms.deleteMessages(GSM::Sms::FolderInbox, 5 * 365);
        state.PauseTiming();
        telephony::close();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DeleteHalfByAge)
    ->ArgsProduct({kSizes})
    ->ArgNames({"messages"})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
