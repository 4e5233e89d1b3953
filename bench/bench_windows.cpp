// Windows from templates: building and tearing down a dialog of twenty controls, and filling a
// list view with 10,000 rows of four columns.

#include "bench/offscreen_benchmarks.h"
#include "framework/resources/resources.h"
#include "framework/ui/dialog.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

tessaly::ResourceScript makeScript() {
    const char* kinds[][3] = {
        {"LTEXT", "", "Label"},
        {"EDITTEXT", "", ""},
        {"PUSHBUTTON", "", "Push"},
        {"AUTOCHECKBOX", "", "Check"},
        {"COMBOBOX", "", ""},
        {"LISTBOX", "", ""},
        {"CONTROL", "SysListView32", ""},
        {"CONTROL", "msctls_progress32", ""},
        {"AUTORADIOBUTTON", "", "Radio"},
        {"CONTROL", "SysDateTimePick32", ""},
    };
    tessaly::DialogTemplate dialog;
    dialog.id = 100;
    dialog.caption = QStringLiteral("Twenty");
    dialog.width = 145;
    dialog.height = 156;
    for (int i = 0; i < 20; ++i) {
        tessaly::ControlTemplate control;
        control.statement = QString::fromLatin1(kinds[i % 10][0]);
        control.className = QString::fromLatin1(kinds[i % 10][1]);
        control.text = QString::fromLatin1(kinds[i % 10][2]);
        control.id = 1000 + i;
        control.x = (i % 2) * 72;
        control.y = (i / 2) * 15;
        control.width = 70;
        control.height = 13;
        dialog.controls.push_back(control);
    }
    tessaly::DialogTemplate list;
    list.id = 200;
    list.caption = QStringLiteral("List");
    tessaly::ControlTemplate view;
    view.statement = QStringLiteral("CONTROL");
    view.className = QStringLiteral("SysListView32");
    view.id = 2000;
    view.width = 145;
    view.height = 140;
    view.styles = {QStringLiteral("LVS_REPORT"), QStringLiteral("LVS_SINGLESEL")};
    list.controls.push_back(view);

    tessaly::ResourceScript script;
    script.dialogs[dialog.id] = dialog;
    script.dialogs[list.id] = list;
    return script;
}

void BM_CreateAndDestroyDialogOfTwentyControls(benchmark::State& state) {
    for (auto _ : state) {
        tessaly::Dialog dialog(100);
        dialog.create();
        benchmark::DoNotOptimize(dialog.item(1019));
        dialog.destroyWindow();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
BENCHMARK(BM_CreateAndDestroyDialogOfTwentyControls)->Unit(benchmark::kMicrosecond);

void BM_FillListViewWithTenThousandRows(benchmark::State& state) {
    tessaly::Dialog dialog(200);
    dialog.create();
    tessaly::ListView* list = dialog.listView(2000);
    const int widths[] = {20, 80, 100, 40};
    for (int column = 0; column < 4; ++column)
        list->insertColumn(column, QStringLiteral("Column %1").arg(column), widths[column]);
    const QString contact = QStringLiteral("+491701234567");
    const QString text = QStringLiteral("See you at eight \u2022 bring the tickets");
    const QString date = QStringLiteral("17.05.24");
    for (auto _ : state) {
        list->deleteAllItems();
        for (int row = 0; row < 10000; ++row) {
            const int at = list->insertItem(row, QString(), row % 4, row);
            list->setItemText(at, 1, contact);
            list->setItemText(at, 2, text);
            list->setItemText(at, 3, date);
        }
        benchmark::DoNotOptimize(list->itemCount());
    }
    dialog.destroyWindow();
}
BENCHMARK(BM_FillListViewWithTenThousandRows)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    OffscreenBenchmarks benchmarks(argc, argv);
    const tessaly::ResourceScript script = makeScript();
    tessaly::setCurrentResources(&script);
    benchmarks.run();
    tessaly::setCurrentResources(nullptr);
    return 0;
}
