#include <Quorvex/core/Parallel.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace KOVA::Quorvex {

namespace {

class Loop {
public:
    Loop(std::size_t count, const std::function<void(std::size_t)>& body) : m_count(count), m_body(body) {}

    void Work() noexcept {
        try {
            for (std::size_t i = m_next.fetch_add(1); i < m_count; i = m_next.fetch_add(1)) {
                m_body(i);
            }
        } catch (...) {
            m_next = m_count;
            const std::lock_guard lock(m_mutex);
            if (!m_exception) {
                m_exception = std::current_exception();
            }
        }
    }

    void Rethrow() const {
        if (m_exception) {
            std::rethrow_exception(m_exception);
        }
    }

private:
    std::size_t m_count;
    const std::function<void(std::size_t)>& m_body;
    std::atomic<std::size_t> m_next = 0;
    std::mutex m_mutex;
    std::exception_ptr m_exception;
};

// Starts what can be started; a system that is out of threads or memory gets the work done on fewer.
void StartHelpers(std::vector<std::thread>& helpers, std::size_t wanted, Loop& loop) {
    try {
        helpers.reserve(wanted);
        while (helpers.size() < wanted) {
            helpers.emplace_back([&loop] { loop.Work(); });
        }
    } catch (const std::system_error&) {
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

unsigned int ParallelThreads() {
    // Reading and decoding are bound by memory well before this many.
    constexpr unsigned int limit = 16;
    return std::clamp(std::thread::hardware_concurrency(), 1U, limit);
}

void ParallelFor(std::size_t count, const std::function<void(std::size_t)>& body, unsigned int threads) {
    Loop loop(count, body);
    std::vector<std::thread> helpers;
    if (count > 1 && threads > 1) {
        StartHelpers(helpers, std::min<std::size_t>(count, threads) - 1, loop);
    }
    loop.Work();
    for (std::thread& helper : helpers) {
        helper.join();
    }
    loop.Rethrow();
}

} // namespace KOVA::Quorvex
