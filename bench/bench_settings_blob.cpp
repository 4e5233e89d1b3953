// The settings record is decoded once per module load and encoded on every save (each column
// drag, each list switch): both should stay far below a millisecond.

#include "settings/sms_settings.h"

#include <benchmark/benchmark.h>

namespace {

SmsSettings typicalRecord() {
    SmsSettings s;
    s.firstName = QStringLiteral("Anna Maria");
    s.lastName = QStringLiteral("Lee-Whitfield");
    s.phone = QStringLiteral("+44 20 7946 0000");
    s.currentList = SmsSettings::OutboxList;
    return s;
}

void BM_EncodeSettings(benchmark::State& state) {
    const SmsSettings s = typicalRecord();
    for (auto _ : state)
        benchmark::DoNotOptimize(s.encode());
}
BENCHMARK(BM_EncodeSettings);

void BM_DecodeSettings(benchmark::State& state) {
    const QByteArray blob = typicalRecord().encode();
    for (auto _ : state) {
        SmsSettings s;
        s.decode(blob);
        benchmark::DoNotOptimize(s);
    }
}
BENCHMARK(BM_DecodeSettings);

} // namespace

BENCHMARK_MAIN();
