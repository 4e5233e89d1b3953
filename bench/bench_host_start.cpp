// Cold start of the phone to its home screen: open the data directory's telephony store, load
// Sms.tsm (its application object runs), resolve the nine entry points, install the hooks, call
// initModule and build the home screen with its unread count. Once on an empty data directory,
// once on one holding 10,000 messages.

#include "framework/datadir.h"
#include "framework/time/clock.h"
#include "suite/host/host_session.h"
#include "suite/host/phone_window.h"
#include "suite/host/system_language.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

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

void BM_ColdStartToHomeScreen(benchmark::State& state) {
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
        benchmark::DoNotOptimize(phone->homeScreen()->unreadText());

        state.PauseTiming();
        session.reset();
        phone.reset();
        tessaly::telephony::close();
        state.ResumeTiming();
    }
    tessaly::setDataDirectory(QString());
}
BENCHMARK(BM_ColdStartToHomeScreen)->Arg(0)->Arg(10000)->Unit(benchmark::kMillisecond);

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
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
