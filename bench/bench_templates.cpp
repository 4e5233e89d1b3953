// Placeholder expansion for a long template-rich text sent to many recipients, the factory
// restore of all variables (about 90 x 90 string loads and one synced write per entry), and the
// template editor's marks back to placeholders on hostile text.

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

// Hostile text: many placeholders of each kind the walk handles differently and an unclosed
// bracket after each, about 27 characters a repeat (20,000 repeats are about 540 KB).
void expandHostileText(benchmark::State& state) {
    const StoreFixture fixture;
    const QString text = QStringLiteral("[Sender:First Name] [x:y] [").repeated(state.range(0));
    tessaly::sms::PlaceholderExpander expander(
        {QStringLiteral("Ann"), QStringLiteral("Lee"), QStringLiteral("+4912")});
    for (auto _ : state)
        benchmark::DoNotOptimize(expander.expandForSending(text, {}));
    state.SetItemsProcessed(state.iterations() * text.size());
}
BENCHMARK(expandHostileText)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

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

// Hostile editor text of range(0) characters: "<a " marks that never close, "<Hello> " marks
// that each name a factory value, or marks nested as deep as the text allows.
QString hostileEditorText(qsizetype size, int shape) {
    switch (shape) {
    case 0:
        return QStringLiteral("<a ").repeated(size / 3);
    case 1:
        return QStringLiteral("<Hello> ").repeated(size / 8);
    default:
        return QString(size / 2, u'<') + QString(size / 2, u'>');
    }
}

void markersToPlaceholdersHostile(benchmark::State& state) {
    const StoreFixture fixture;
    tessaly::sms::restoreFactoryVariables(true);
    const QString text = hostileEditorText(state.range(0), int(state.range(1)));
    for (auto _ : state)
        benchmark::DoNotOptimize(tessaly::sms::PlaceholderExpander::markersToPlaceholders(text));
    state.SetItemsProcessed(state.iterations() * text.size());
}
BENCHMARK(markersToPlaceholdersHostile)
    ->ArgNames({"characters", "shape"})
    ->ArgsProduct({{10'000, 100'000, 1'000'000}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
