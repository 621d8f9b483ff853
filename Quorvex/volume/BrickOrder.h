#pragma once

#include <vector>

namespace KOVA::Quorvex {

class View;
class VolumeData;

// The bricks back to front as the view sees them, as places in the volume's list, which is sorted by distance from the
// eye on the way.
std::vector<unsigned int> OrderBackToFront(VolumeData& data, const View& view);

} // namespace KOVA::Quorvex
