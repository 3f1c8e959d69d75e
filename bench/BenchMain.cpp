#include "BenchMain.h"

#include <QApplication>

// LUMETRA_BENCH_ITERATIONS=N runs every benchmark exactly N times (for callgrind).
int main(int argc, char** argv) {
    // The dashboard's benchmarks draw widgets; they need no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const char* fixed = std::getenv("LUMETRA_BENCH_ITERATIONS");
    const long iterations = fixed ? std::strtol(fixed, nullptr, 10) : 0;
    for (const auto& entry : lumetra::bench::registry()) {
        auto* benchmark = benchmark::RegisterBenchmark(entry.name, entry.function);
        if (iterations > 0)
            benchmark->Iterations(iterations);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
