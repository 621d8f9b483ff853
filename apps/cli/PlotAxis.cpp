#include "PlotAxis.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace KOVA::Quorvex::cli {

CountAxis::CountAxis(double largest, bool logarithmic) : m_logarithmic(logarithmic) {
    if (logarithmic) {
        MakeLogarithmic(largest);
    } else {
        MakeLinear(largest);
    }
}

void CountAxis::MakeLinear(double largest) {
    constexpr double wanted = 5.0; // steps
    const double power = std::pow(10.0, std::floor(std::log10(largest / wanted)));
    double step = 10.0 * power;
    for (const double factor : {5.0, 2.0, 1.0}) {
        step = factor * power * wanted >= largest ? factor * power : step;
    }
    step = std::max(step, 1.0);
    m_top = largest * 1.06;
    for (int i = 0; i * step <= m_top; ++i) {
        m_ticks.push_back({i * step, true});
    }
}

// One voxel is to be seen, and so stands a little above the foot.
void CountAxis::MakeLogarithmic(double largest) {
    m_foot = std::log10(0.5);
    m_top = std::max(std::log10(largest * 1.6), 1.0);
    const double decades = m_top - m_foot;
    for (int exponent = 0; exponent <= m_top; ++exponent) {
        const double power = std::pow(10.0, exponent);
        m_ticks.push_back({power, decades < 8.0 || exponent % 2 == 0});
        for (int i = 2; i < 10 && std::log10(i * power) <= m_top; ++i) {
            m_ticks.push_back({i * power, false});
        }
    }
}

double CountAxis::At(double count) const {
    if (m_logarithmic) {
        return count > 0.0 ? (std::log10(count) - m_foot) / (m_top - m_foot) : -1.0;
    }
    return (count - m_foot) / (m_top - m_foot);
}

std::string ShortCount(double count) {
    for (const auto& [unit, name] :
         {std::pair(1e12, "T"), std::pair(1e9, "G"), std::pair(1e6, "M"), std::pair(1e3, "k")}) {
        if (count >= unit) {
            return fmt::format("{:.4g} {}", count / unit, name);
        }
    }
    return fmt::format("{:.4g}", count);
}

std::string LongCount(std::uint64_t count) {
    std::string text = fmt::format("{}", count);
    for (std::size_t i = text.size(); i > 3; i -= 3) {
        text.insert(i - 3, " ");
    }
    return text;
}

} // namespace KOVA::Quorvex::cli
