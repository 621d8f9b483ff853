#include <Quorvex/volume/VisibleIntensities.h>

#include <algorithm>
#include <cmath>

namespace KOVA::Quorvex {

namespace {

constexpr int LAST = 255;

// The table is a texture of 256 texels under a linear filter: intensity i, looked up at i / 255, lies between the two
// texels around this place. A little is added to either side for what the hardware rounds.
constexpr double s_rounding = 1.0 / 64.0;

double TexelPosition(int intensity) {
    return intensity * 256.0 / 255.0 - 0.5;
}

} // namespace

VisibleIntensities::VisibleIntensities(const ColorRGBA* table) {
    for (int i = 0; i <= LAST; ++i) {
        const bool opaque = table[i].a != 0.0F;
        const auto entry = static_cast<std::size_t>(i);
        m_opaqueBefore[entry + 1] = m_opaqueBefore[entry] + (opaque ? 1 : 0);
        if (opaque) {
            m_low = std::min(m_low, i);
            m_high = i;
        }
    }
}

bool VisibleIntensities::CanShow(int least, int greatest) const {
    if (!MeetsWindow(least, greatest)) {
        return false;
    }
    const int first = static_cast<int>(std::floor(TexelPosition(least) - s_rounding));
    const int last = static_cast<int>(std::floor(TexelPosition(greatest) + s_rounding)) + 1;
    const auto begin = static_cast<std::size_t>(std::max(first, 0));
    const auto end = static_cast<std::size_t>(std::min(last, LAST)) + 1;
    return m_opaqueBefore[end] > m_opaqueBefore[begin];
}

} // namespace KOVA::Quorvex
