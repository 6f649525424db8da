#pragma once

#include <QApplication>
#include <benchmark/benchmark.h>

#include <cstdlib>

// The main of every desktop-program benchmark: an offscreen QApplication with
// the program's images, then Google Benchmark.
inline int runGuiBenchmarks(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    Q_INIT_RESOURCE(saldo);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
