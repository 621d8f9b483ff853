#include <benchmark/benchmark.h>

#include "FreshProcess.h"

int main(int argc, char** argv) {
    if (ReadInFreshProcess()) {
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
