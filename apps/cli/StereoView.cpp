#include "StereoView.h"

#include <algorithm>
#include <cmath>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/view/View.h>

namespace KOVA::Quorvex::cli {

namespace {

// Of the picture's width, which is 2 in normalised device coordinates and is shared by two eyes.
constexpr double c_largestParallax = 0.04;

} // namespace

void CountDepthsAway(View& view) {
    if (view.IsProjectionOrthogonal()) {
        view.SetProjectionOrthogonalLH(view.GetProjectionOrthogonalLeft(), view.GetProjectionOrthogonalRight(),
                                       view.GetProjectionOrthogonalBottom(), view.GetProjectionOrthogonalTop(),
                                       view.GetProjectionOrthogonalNear(), view.GetProjectionOrthogonalFar());
    } else {
        view.SetProjectionPerspectiveLH(view.getFOV(), view.getNear(), view.getFar());
    }
    double* depths = view.GetModelviewMatrix() + 2;
    for (int i = 0; i < 16; i += 4) {
        depths[i] = -depths[i];
    }
}

float ComfortableEffect(const View& view) {
    const double together = std::max(1.0, static_cast<double>(Length(view.getPosition())));
    const bool parallel = view.IsProjectionOrthogonal();
    const double ends[] = {parallel ? view.GetProjectionOrthogonalNear() : static_cast<double>(view.getNear()),
                           parallel ? view.GetProjectionOrthogonalFar() : static_cast<double>(view.getFar())};
    double largest = 0.0; // shift in the picture for a shift of 1 of the scene
    for (const double depth : ends) {
        const double shift = parallel ? 1.0 - depth / together : 1.0 / depth - 1.0 / together;
        largest = std::max(largest, std::abs(shift) * view.GetProjectionMatrix()[0]);
    }
    return largest > 0.0 ? static_cast<float>(c_largestParallax / largest) : 0.0F;
}

} // namespace KOVA::Quorvex::cli
