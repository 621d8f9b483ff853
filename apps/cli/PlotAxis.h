#pragma once

#include <cstdint>
#include <string>
#include <vector>

// How counts become heights, and which of them are written beside an axis.

namespace KOVA::Quorvex::cli {

struct Tick {
    double value;
    bool labelled;
};

class CountAxis {
public:
    // largest: the highest count to be shown, at least 1.
    CountAxis(double largest, bool logarithmic);

    // Where a count is, from 0 at the foot of the axis to 1 at its top; below 0 when it is not on it.
    double At(double count) const;

    const std::vector<Tick>& Ticks() const { return m_ticks; }

private:
    void MakeLinear(double largest);
    void MakeLogarithmic(double largest);

    bool m_logarithmic;
    double m_foot = 0.0; // of the scale that is even: counts, or their logarithms
    double m_top = 1.0;
    std::vector<Tick> m_ticks;
};

// A round count in few characters: 0, 250, 20 k, 1.5 M.
std::string ShortCount(double count);

// All its digits in groups of three.
std::string LongCount(std::uint64_t count);

} // namespace KOVA::Quorvex::cli
