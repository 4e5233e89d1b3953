// The length query runs on every keystroke (goal: 0.4 ns per character for 7-bit and UCS-2 text);
// opening the store is what a restart of the suite costs. Containers at scale: bench_store_scale.

#include "suite/telephony/events.h"
#include "suite/telephony/length_info.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/store.h"
#include "suite/telephony/telephony.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <random>
#include <string>

namespace {

namespace telephony = tessaly::telephony;

std::u16string sampleText(int length, bool ucs2) {
    const std::u16string gsm = u"Meet you at 7, {bring} the €5 & don't be late! ";
    const std::u16string wide = u"Встретимся в 7, не опаздывай 😀 ";
    const std::u16string& piece = ucs2 ? wide : gsm;
    std::u16string text;
    while (int(text.size()) < length)
        text += piece;
    text.resize(std::size_t(length));
    return text;
}

void lengthInfo(benchmark::State& state) {
    const std::u16string text = sampleText(int(state.range(0)), state.range(1) != 0);
    for (auto _ : state) {
        const telephony::LengthInfo info = telephony::measureText(text.c_str());
        benchmark::DoNotOptimize(info);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetLabel(state.range(1) ? "UCS-2" : "GSM 7-bit");
}
BENCHMARK(lengthInfo)->ArgsProduct({{160, 1600}, {0, 1}})->ArgNames({"chars", "ucs2"});

// Opening telephony.db with 10,000 messages: what a restart of the suite costs.
void openStore(benchmark::State& state) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("telephony.db"));
    telephony::Options options;
    options.databasePath = path;
    telephony::open(options);
    std::vector<telephony::simulator::StoredMessage> messages(
        std::size_t(state.range(0)),
        {0, GSM::Message::Read, {u"+491701234567"}, u"A message of moderate length.", {}});
    telephony::simulator::addStoredMessages(messages);
    telephony::close();
    for (auto _ : state) {
        telephony::open(options);
        telephony::close();
    }
}
BENCHMARK(openStore)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
