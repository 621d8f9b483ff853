#pragma once

#include <atomic>
#include <cstdint>

namespace KOVA::Quorvex {

// How far the reading of a file has come, and the wish to end it. The thread that reads is handed one; any other thread
// may look and ask at any time meanwhile. One object serves one reading.
class ReadProgress {
public:
    // The share of the reading that is done, 0..1.
    float GetFraction() const {
        const std::int64_t all = m_bytes.load(std::memory_order_relaxed);
        const std::int64_t done = m_done.load(std::memory_order_relaxed);
        return all <= 0 ? 0.0F : done >= all ? 1.0F : static_cast<float>(done) / static_cast<float>(all);
    }

    // The reader gives up at its next look at the file, within a few milliseconds, as if the file ended there.
    void Cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    bool IsCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

    // For readers: how many bytes will be read in all, counting those again that are read twice, and that some were.
    void Begin(std::int64_t bytes) { m_bytes.store(bytes, std::memory_order_relaxed); }
    void Advance(std::int64_t bytes) { m_done.fetch_add(bytes, std::memory_order_relaxed); }
    void Finish() {
        m_bytes.store(1, std::memory_order_relaxed);
        m_done.store(1, std::memory_order_relaxed);
    }

private:
    std::atomic<std::int64_t> m_bytes{0};
    std::atomic<std::int64_t> m_done{0};
    std::atomic<bool> m_cancelled{false};
};

} // namespace KOVA::Quorvex
