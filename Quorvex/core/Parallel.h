#pragma once

#include <cstddef>
#include <functional>

namespace KOVA::Quorvex {

// Number of threads that ParallelFor uses at most, the calling one included.
unsigned int ParallelThreads();

// Calls body(0) ... body(count - 1), each once, in any order, on several threads, and returns when all are done. The
// calling thread takes part, and does everything when no more threads can be had. Threads live for the call only: a
// unit of work should take 100 microseconds or more. The first exception that a body throws ends the loop early and
// is thrown again here. threads: how many at most, the calling one included.
void ParallelFor(std::size_t count, const std::function<void(std::size_t index)>& body,
                 unsigned int threads = ParallelThreads());

} // namespace KOVA::Quorvex
