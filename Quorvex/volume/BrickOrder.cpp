#include <Quorvex/volume/BrickOrder.h>

#include <algorithm>
#include <numeric>

#include <Quorvex/view/View.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

namespace {

// Of the box's centre, times two.
double DepthOf(const Brick& brick, const double* modelview) {
    const Vector3f sum = brick.GetBB0() + brick.GetBB1();
    return modelview[2] * sum.x + modelview[6] * sum.y + modelview[10] * sum.z;
}

} // namespace

std::vector<unsigned int> OrderBackToFront(VolumeData& data, const View& view) {
    data.sortBricks(&view);
    std::vector<unsigned int> order(static_cast<std::size_t>(data.getNumBricks()));
    std::iota(order.begin(), order.end(), 0U);
    if (!view.IsProjectionOrthogonal()) {
        return order;
    }
    // Parallel lines of sight do not meet in the eye: beside it the distance would be wrong about who hides whom.
    const double sign = view.IsLeftHand() ? 1.0 : -1.0;
    std::vector<double> depths(order.size());
    for (const unsigned int i : order) {
        depths[i] = sign * DepthOf(data.GetBrick(i), view.GetModelviewMatrix());
    }
    std::sort(order.begin(), order.end(), [&depths](unsigned int a, unsigned int b) { return depths[a] > depths[b]; });
    return order;
}

} // namespace KOVA::Quorvex
