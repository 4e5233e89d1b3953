// Parsing the module's resource script, as the module does once at start.

#include "resources/sms_resources.h"

#include "framework/resources/language.h"
#include "framework/resources/resource_parser.h"

#include <QFile>

#include <benchmark/benchmark.h>

namespace {

void parseSmsScript(benchmark::State& state) {
    const QString directory = tessaly::sms::embeddedScriptDirectory();
    QFile file(tessaly::findLanguageScript(directory, QStringLiteral("sms"), QStringLiteral("en")));
    if (!file.open(QIODevice::ReadOnly)) {
        state.SkipWithError("sms.rc is not embedded");
        return;
    }
    const QString text = tessaly::decodeScriptText(file.readAll()).value_or(QString());
    const tessaly::IncludeResolver includes = tessaly::includeSearchPath({directory});
    size_t strings = 0;
    for (auto _ : state) {
        const tessaly::ResourceParseResult result =
            tessaly::parseResourceScript(text, QStringLiteral("sms.rc"), includes);
        if (!result.ok()) {
            state.SkipWithError(qPrintable(result.error->toString()));
            return;
        }
        strings = result.script.strings.size();
        benchmark::DoNotOptimize(strings);
    }
    state.counters["strings"] = double(strings);
    state.SetBytesProcessed(int64_t(state.iterations()) * text.size() * 2);
}
BENCHMARK(parseSmsScript)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

// Reading the file from the embedded resources as well, as the first start does.
void parseEmbeddedSmsScript(benchmark::State& state) {
    for (auto _ : state) {
        const tessaly::ResourceParseResult result = tessaly::sms::parseEmbeddedScript("en");
        benchmark::DoNotOptimize(result.script.strings.size());
    }
}
BENCHMARK(parseEmbeddedSmsScript)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

} // namespace

BENCHMARK_MAIN();
