// The main of a benchmark whose code needs a Qt Core application (the serial ports' event
// handling), in the place of the library's own.
#pragma once

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#define ZORVEL_BENCHMARK_MAIN_WITH_QT_CORE()  \
  int main(int argc, char** argv) {           \
    QCoreApplication application(argc, argv); \
    benchmark::Initialize(&argc, argv);       \
    benchmark::RunSpecifiedBenchmarks();      \
    benchmark::Shutdown();                    \
    return 0;                                 \
  }
