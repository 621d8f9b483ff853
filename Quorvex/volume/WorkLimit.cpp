#include <Quorvex/volume/WorkLimit.h>

#include <algorithm>

namespace KOVA::Quorvex {

namespace {

// No piece changes the limit by more than this factor: one that was disturbed says little about the next.
constexpr double s_largestChange = 2.0;
constexpr double s_least = 1e4;
constexpr double s_most = 1e12;

} // namespace

void WorkLimit::Begin(double now) {
    m_begin = now;
    m_work = 0.0;
}

bool WorkLimit::Add(double work, double now) {
    m_work += work;
    return m_work >= m_limit || now - m_begin >= m_seconds;
}

void WorkLimit::Finished(double now) {
    const double elapsed = now - m_begin;
    if (m_work > 0.0 && elapsed > 0.0) {
        const double fitting = m_work * m_seconds / elapsed;
        const double next = std::clamp(fitting, m_limit / s_largestChange, m_limit * s_largestChange);
        // Small pieces (the end of a pass) are mostly overhead: they do not lower the limit.
        if (m_work >= m_limit * 0.5 || fitting > m_limit) {
            m_limit = std::clamp(0.5 * (m_limit + next), s_least, s_most);
        }
    }
    Begin(now);
}

} // namespace KOVA::Quorvex
