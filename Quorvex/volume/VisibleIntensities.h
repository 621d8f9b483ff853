#pragma once

#include <array>

#include <Quorvex/core/Colors.h>

namespace KOVA::Quorvex {

// Which voxel intensities a transfer function lets show. What has no opacity anywhere is not drawn in any mode: its
// fragments fail the alpha test.
class VisibleIntensities {
public:
    // table: the colours of the 256 intensities.
    explicit VisibleIntensities(const ColorRGBA* table);

    // The window from the first to the last intensity with opacity; Low() is above High() when there is none.
    bool Any() const { return m_low <= m_high; }
    int Low() const { return m_low; }
    int High() const { return m_high; }

    // True when intensities from least to greatest meet the window.
    bool MeetsWindow(int least, int greatest) const { return greatest >= m_low && least <= m_high; }

    // True when something with intensities from least to greatest, or any in between, can leave a trace in the picture.
    // Narrower than the window where that has gaps.
    bool CanShow(int least, int greatest) const;

private:
    int m_low = 256;
    int m_high = -1;
    std::array<int, 257> m_opaqueBefore{}; // how many entries before this one have opacity
};

} // namespace KOVA::Quorvex
