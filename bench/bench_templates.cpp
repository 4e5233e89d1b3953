// Placeholder expansion for a long template-rich text sent to many recipients, and the factory
// restore of all variables (about 90 x 90 string loads and one synced write per entry).

#include "bench/template_rich_text.h"
#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "resources/sms_resources.h"
#include "templates/factory_defaults.h"
#include "templates/placeholder_expander.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

class StoreFixture {
public:
    StoreFixture() {
        tessaly::setDataDirectory(dir.path());
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
        tessaly::setCurrentResources(&tessaly::sms::resources());
    }
    ~StoreFixture() {
        tessaly::releaseRegistryHives();
        tessaly::setDataDirectory(QString());
    }

private:
    QTemporaryDir dir;
};

void expandForThousandRecipients(benchmark::State& state) {
    const StoreFixture fixture;
    const QString text = templateRichText();
    std::vector<tessaly::sms::RecipientInfo> recipients;
    for (int i = 0; i < 1000; ++i) {
        const QString first = QStringLiteral("First%1").arg(i);
        const QString last = QStringLiteral("Last%1").arg(i);
        recipients.push_back({first, last, first + u' ' + last, QStringLiteral("FL"),
                              QStringLiteral("+49%1").arg(100000 + i)});
    }
    tessaly::sms::PlaceholderExpander expander(
        {QStringLiteral("Ann"), QStringLiteral("Lee"), QStringLiteral("+4912")});
    for (auto _ : state) {
        for (const auto& recipient : recipients)
            benchmark::DoNotOptimize(expander.expandForSending(text, recipient));
    }
    state.counters["characters"] = double(text.size());
}
BENCHMARK(expandForThousandRecipients)->Unit(benchmark::kMillisecond);

void restoreFactoryVariables(benchmark::State& state) {
    const StoreFixture fixture;
    for (auto _ : state)
        tessaly::sms::restoreFactoryVariables(true);
}
BENCHMARK(restoreFactoryVariables)->Unit(benchmark::kMillisecond)->Iterations(3);

void markersToPlaceholders(benchmark::State& state) {
    const StoreFixture fixture;
    tessaly::sms::restoreFactoryVariables(true);
    const QString text =
        QStringLiteral("<Hello> Bob, thanks for <the meeting>. <Regards>, Ann <nothing known>");
    for (auto _ : state)
        benchmark::DoNotOptimize(tessaly::sms::PlaceholderExpander::markersToPlaceholders(text));
}
BENCHMARK(markersToPlaceholders)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
