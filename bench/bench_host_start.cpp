// What a person waits for when the phone starts. Cold start to the home screen: open the data
// directory's telephony store, load Sms.tsm (its application object runs), resolve the nine entry
// points, install the hooks, call initModule and build the home screen with its unread count.
// Start to the SMS main window: the same, then the Messages button (openSms) and the first
// paint of everything on the screen. The screenshot run: a new tessaly-phone process from exec
// to its saved picture, with the process's peak memory. On 0, 10,000 and 100,000 messages.

#include "bench/answering_user.h"
#include "bench/child_process.h"
#include "bench/offscreen_benchmarks.h"
#include "framework/datadir.h"
#include "framework/time/clock.h"
#include "host/host_session.h"
#include "host/phone_window.h"
#include "host/screenshot.h"
#include "host/system_language.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

#include <algorithm>

namespace {

namespace sim = tessaly::telephony::simulator;

// A data directory with `messages` stored messages, made once per size.
QString dataDirectory(int messages) {
    static std::map<int, std::unique_ptr<QTemporaryDir>> directories;
    auto& directory = directories[messages];
    if (!directory) {
        directory = std::make_unique<QTemporaryDir>();
        tessaly::setDataDirectory(directory->path());
        tessaly::host::recordSystemLanguage(QStringLiteral("en"));
        tessaly::telephony::open();
        FILETIME now{};
        const SYSTEMTIME local = tessaly::Clock::current().localNow();
        SystemTimeToFileTime(&local, &now);
        std::vector<sim::StoredMessage> stored;
        for (int i = 0; i < messages; ++i) {
            sim::StoredMessage message;
            message.folder = i % 3 == 0 ? 1 : 0;
            message.status = message.folder == 0 ? GSM::Message::Read : GSM::Message::Sent;
            message.addresses = {u"+4477009" + std::u16string(1, u'0' + i % 10) + u"0101"};
            message.text = u"Message number " + QString::number(i).toStdU16String();
            message.date =
                fileTimeFromUInt64(fileTimeToUInt64(now) - std::uint64_t(i) * 600000000ULL);
            stored.push_back(std::move(message));
        }
        if (!stored.empty())
            sim::addStoredMessages(stored);
        tessaly::telephony::close();
    }
    return directory->path();
}

// Cold start to the home screen; with `openMessages`, then Messages and the first paint.
void startPhone(benchmark::State& state, bool openMessages) {
    const QString directory = dataDirectory(int(state.range(0)));
    tessaly::setDataDirectory(directory);
    for (auto _ : state) {
        tessaly::telephony::open();
        auto phone = std::make_unique<tessaly::host::PhoneWindow>();
        auto session = std::make_unique<tessaly::host::HostSession>(phone.get());
        QString error;
        if (!session->start(QStringLiteral(TESSALY_SMS_MODULE_PATH), &error)) {
            state.SkipWithError(qPrintable(error));
            break;
        }
        if (openMessages) {
            phone->show();
            phone->homeScreen()->messagesButton()->click();
            benchmark::DoNotOptimize(tessaly::host::grabPhone(*phone).constBits());
        } else {
            benchmark::DoNotOptimize(phone->homeScreen()->unreadText());
        }

        state.PauseTiming();
        session.reset();
        phone.reset();
        tessaly::telephony::close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
    tessaly::setDataDirectory(QString());
}

void BM_ColdStartToHomeScreen(benchmark::State& state) {
    startPhone(state, false);
}
BENCHMARK(BM_ColdStartToHomeScreen)->Arg(0)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_StartToMessages(benchmark::State& state) {
    AnsweringUser user;
    tessaly::UserAgent::install(&user);
    startPhone(state, true);
    tessaly::UserAgent::install(nullptr);
}
BENCHMARK(BM_StartToMessages)->Arg(0)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_ScreenshotRun(benchmark::State& state) {
    const QString directory = dataDirectory(int(state.range(0)));
    const std::string picture = QDir(directory).filePath(QStringLiteral("run.png")).toStdString();
    // TESSALY_PHONE times another build of the program, for a before-and-after comparison.
    const QByteArray phone = qEnvironmentVariableIsSet("TESSALY_PHONE")
                                 ? qgetenv("TESSALY_PHONE")
                                 : QByteArray(TESSALY_PHONE_PATH);
    std::vector<std::string> arguments{phone.toStdString(), "--data-dir", directory.toStdString(),
                                       "--screenshot", picture};
    if (state.range(1) != 0)
        arguments.emplace_back("--open-messages");
    long peakKiB = 0;
    // The first run writes the module's factory templates; every later start finds them.
    if (!runProcess(arguments, &peakKiB)) {
        state.SkipWithError("tessaly-phone failed");
        return;
    }
    for (auto _ : state) {
        if (!runProcess(arguments, &peakKiB)) {
            state.SkipWithError("tessaly-phone failed");
            break;
        }
    }
    state.counters["peak_MiB"] = double(peakKiB) / 1024.0;
}
BENCHMARK(BM_ScreenshotRun)
    ->ArgsProduct({{0, 10000, 100000}, {0, 1}})
    ->ArgNames({"messages", "open"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The module's share alone: the store is already open, no screen is built.
void BM_LoadResolveInit(benchmark::State& state) {
    tessaly::setDataDirectory(dataDirectory(int(state.range(0))));
    tessaly::telephony::open();
    for (auto _ : state) {
        tessaly::host::HostSession session;
        QString error;
        if (!session.start(QStringLiteral(TESSALY_SMS_MODULE_PATH), &error)) {
            state.SkipWithError(qPrintable(error));
            break;
        }
        state.PauseTiming();
        session.stop();
        state.ResumeTiming();
    }
    tessaly::telephony::close();
    tessaly::setDataDirectory(QString());
}
BENCHMARK(BM_LoadResolveInit)->Arg(0)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    benchmarks.run();
    return 0;
}
