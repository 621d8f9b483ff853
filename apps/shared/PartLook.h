#pragma once

#include <Quorvex/core/Colors.h>

#include "Programs.h"

// What all parts look like until the user wants something else.

namespace KOVA::Quorvex::apps {

// Smooth metal: highlights that are small enough to show the shape.
constexpr float c_shininess = 30.0F;
constexpr float c_specularity = 0.25F;

constexpr ColorRGBA c_boxColor{1.0F, 0.55F, 0.1F};

} // namespace KOVA::Quorvex::apps
