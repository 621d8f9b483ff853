#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>

namespace KOVA::Quorvex {

// How far several threads are with a number of pieces, told from 0 to 1 at whole percents, and only on the thread that
// made the object.
class SharedProgress {
public:
    SharedProgress(const std::function<void(double)>& tell, std::size_t pieces) : m_tell(tell), m_pieces(pieces) {}

    // One more is done.
    void Advance() {
        const std::size_t done = m_done.fetch_add(1, std::memory_order_relaxed) + 1;
        if (!m_tell || std::this_thread::get_id() != m_thread) {
            return;
        }
        const std::size_t percent = done * 100 / m_pieces;
        if (percent != m_percent) {
            m_percent = percent;
            m_tell(static_cast<double>(percent) / 100.0);
        }
    }

private:
    const std::function<void(double)>& m_tell;
    std::size_t m_pieces;
    std::thread::id m_thread = std::this_thread::get_id();
    std::atomic<std::size_t> m_done = 0;
    std::size_t m_percent = 0;
};

} // namespace KOVA::Quorvex
