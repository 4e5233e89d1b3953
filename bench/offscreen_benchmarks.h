#pragma once

// The main of a benchmark that needs widgets: an offscreen application (no display is asked
// for), then the benchmarks chosen on the command line.

#include <QApplication>

#include <benchmark/benchmark.h>

class OffscreenBenchmarks {
public:
    OffscreenBenchmarks(int& argc, char** argv)
        : argc_(argc)
        , argv_(argv)
        , app_(offscreen(argc), argv) {}

    void run() {
        benchmark::Initialize(&argc_, argv_);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    }

private:
    static int& offscreen(int& argc) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return argc;
    }

    int& argc_;
    char** argv_;
    QApplication app_;
};
