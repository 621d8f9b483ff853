#include "Compare.h"

#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>

#include "Stage.h"

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Compare(benchmark::State& state, const std::function<void()>& subject, const std::function<void()>& limit,
             const std::function<void()>& before) {
    std::vector<double> subjectTimes;
    std::vector<double> limitTimes;
    const auto measure = [&before](const std::function<void()>& work) {
        if (before) {
            before();
        }
        return Seconds(work);
    };
    for ([[maybe_unused]] auto iteration : state) {
        limitTimes.push_back(measure(limit));
        subjectTimes.push_back(measure(subject));
        state.SetIterationTime(subjectTimes.back());
    }
    state.counters["subject_ms"] = Median(subjectTimes) * 1000.0;
    state.counters["limit_ms"] = Median(limitTimes) * 1000.0;
    state.counters["ratio"] = Median(subjectTimes) / Median(limitTimes);
}
