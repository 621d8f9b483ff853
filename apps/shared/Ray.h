#pragma once

#include "Vector3d.h"

namespace KOVA::Quorvex::apps {

// A line of sight: from origin in a direction of any length.
struct Ray {
    Vector3d origin;
    Vector3d direction;

    Vector3d At(double t) const { return origin + direction * t; }
};

} // namespace KOVA::Quorvex::apps
