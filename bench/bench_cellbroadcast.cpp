// One frame of the cell-broadcast ticker: the 240 x 15 line repainted as a timer tick does it
// (off-screen image filled, the items in view drawn in their fonts, one block to the screen),
// with three channels running, the newest in the emphasis font. Horizontal (arg 0) and
// vertical (arg 1). Goal: under 1 ms, far below the 50 / 45 ms period.

#include "bench/offscreen_benchmarks.h"
#include "cellbroadcast/cb_ticker.h"
#include "framework/ui/controls.h"
#include "suite/telephony/events.h"
#include "suite/telephony/simulator.h"
#include "suite/telephony/telephony.h"

#include <QApplication>
#include <QEvent>

#include <benchmark/benchmark.h>

namespace {

namespace telephony = tessaly::telephony;

// Counts the paint events the line receives, so the benchmark shows it painted every time.
class PaintCounter final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
    std::int64_t paints = 0;
};

void tickerFrame(benchmark::State& state) {
    const bool horizontal = state.range(0) == 0;
    telephony::Options options;
    options.databasePath = QStringLiteral(":memory:");
    telephony::open(options);
    const Utilities::Range channels[] = {{50, 51}, {221, 222}, {4370, 4371}};
    GSM::CellBroadcast::setMessageTypes(3, channels, 0, nullptr);
    GSM::MainPreferences* preferences = GSM::Preferences::getMainPreferences();
    preferences->setTickerScrolls(true);
    preferences->setTickerHorizontal(horizontal);

    tessaly::StaticLabel line;
    line.resize(240, 15);
    line.show();
    tessaly::sms::CbTicker ticker(&line);
    telephony::simulator::receiveCellBroadcast(50, u"Halvern Centre");
    telephony::simulator::receiveCellBroadcast(
        221, u"Sunny spells, 18\u00b0C, light wind from the west; showers later in the evening.");
    telephony::simulator::receiveCellBroadcast(4370, u"Road works on the ring road until Friday.");
    telephony::EventQueue::instance().deliverAll();
    ticker.refresh();
    QApplication::processEvents();
    if (!ticker.isShown()) {
        state.SkipWithError("the ticker shows nothing");
        return;
    }
    PaintCounter counter;
    line.installEventFilter(&counter);
    for (auto _ : state)
        line.repaint();
    line.removeEventFilter(&counter);
    state.counters["paints"] =
        benchmark::Counter(double(counter.paints) / double(state.iterations()));
    state.SetLabel(horizontal ? "horizontal" : "vertical");
    telephony::close();
}
BENCHMARK(tickerFrame)->Name("BM_TickerFrame")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    benchmarks.run();
    return 0;
}
