#pragma once

#include <functional>

namespace benchmark {
class State;
}

double Seconds(const std::function<void()>& work);

// A subject and what it is held against take turns, so that both see the same machine. The counters are medians:
// subject_ms, limit_ms, and ratio, the subject's time over the limit's. before runs ahead of each of them, unmeasured.
void Compare(benchmark::State& state, const std::function<void()>& subject, const std::function<void()>& limit,
             const std::function<void()>& before = nullptr);
