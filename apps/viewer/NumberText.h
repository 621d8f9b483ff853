#pragma once

#include <QString>

#include <shared/Vector3d.h>

namespace KOVA::Quorvex::viewer {

using namespace apps;

// A coordinate or length of a part of this size, for people: a millionth of the size shows (micrometres on one of a
// metre), however far from the origin it is. Without a size: of its own.
QString NumberText(double value, double size);

// The shortest decimal number that the float stands for: 0.1 for 0.1F.
double DecimalOf(float value);

// The three coordinates.
QString PlaceText(const Vector3d& place, double size);

} // namespace KOVA::Quorvex::viewer
