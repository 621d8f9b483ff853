#pragma once

namespace KOVA::Quorvex {

// How much may be asked of the driver before waiting for it, so that a stop never has to wait for more than a piece of
// the picture: drivers queue without end otherwise. Work is counted in any unit that time roughly goes with, such as
// fragments; how much fits into the wanted time is learned from the pieces before, also across passes.
class WorkLimit {
public:
    // seconds: how long one piece should take. work: the size of the first.
    WorkLimit(double seconds, double work) : m_seconds(seconds), m_limit(work) {}

    // A piece begins at this time (seconds of any clock).
    void Begin(double now);

    // Counts work given to the driver; true when the piece is large enough, by work or by time, and should be finished.
    bool Add(double work, double now);

    // The driver has finished all that it was given.
    void Finished(double now);

    // How much more the piece may hold; never less than nothing.
    double Room() const { return m_work < m_limit ? m_limit - m_work : 0.0; }

private:
    double m_seconds;
    double m_limit;
    double m_begin = 0.0;
    double m_work = 0.0;
};

} // namespace KOVA::Quorvex
