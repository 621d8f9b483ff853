#pragma once

#include <array>
#include <optional>
#include <string_view>

#include <Quorvex/core/Vectors.h>

#include "Programs.h"

namespace KOVA::Quorvex {
class View;
}

// Where the camera stands so that a box fills the picture. No GL here.

namespace KOVA::Quorvex::apps {

// Axis-aligned, in scene units. An empty box has low above high.
struct Box {
    std::array<double, 3> low;
    std::array<double, 3> high;

    static Box Empty();
    void Include(const Box& other);
    bool IsFinite() const;
    std::array<double, 3> Center() const;
    double Radius() const; // half the diagonal
    Box Scaled(double factor) const;
    // Larger on every side by the fraction of its own extent.
    Box Enlarged(double fraction) const;
};

// The side from which the scene is seen, right-handed so that nothing is mirrored. The eye of Front is on the +z side
// with x to the right and y up, Right is +x and Left -x with y up; Top is +y with z down in the picture, Bottom -y with
// z up. Iso looks from the corner (1, 1, 1).
enum class Side { Front, Back, Left, Right, Top, Bottom, Iso };

enum class Projection { Perspective, Orthogonal };

struct Shot {
    Side side = Side::Iso;
    Projection projection = Projection::Perspective;
    double fovDegrees = 30.0; // opening angle across the width of the picture; perspective only
    double aspect = 1.0;      // width / height of the picture
    // The box turns about this axis through the origin (of length 1), and all of it stays in the picture: the camera
    // looks at the axis, and takes the body that the box sweeps for the box.
    std::optional<std::array<double, 3>> turnAxis = std::nullopt;
};

struct Camera {
    Projection projection;
    Vector3f eye, target, up;
    double fov;        // radians, across the width
    double halfExtent; // of the visible square before the frame's aspect factor; orthogonal only
    double aspect;     // width / height of the picture
    double nearPlane, farPlane;
};

// The camera's axes in the world, of unit length: right, up, and back (from the scene towards the eye).
struct Axes {
    std::array<double, 3> right, up, back;
};

Axes AxesOf(Side side);

// How much of the picture stays free around the box: its projection is this factor smaller than the picture in the
// direction that decides.
constexpr double c_margin = 1.05;

// The camera from which the box's eight projected corners fill the picture up to the margin: in the direction that
// decides exactly and on both sides; in the other direction there is room left on both sides. A box without any extent
// is seen from some distance.
Camera FitCamera(const Box& box, const Shot& shot);

// The same from any direction; the shot's side takes no part.
Camera FitCamera(const Box& box, const Shot& shot, const Axes& axes);

// The direction in the world from the middle of the picture to the viewer, for views of both kinds.
Vector3f TowardsViewer(const View& view);

// Makes the view right-handed and loads the camera's projection into it: angle or extent, aspect and planes.
void LoadProjection(const Camera& camera, View& view);

// The same with the camera's place.
void Load(const Camera& camera, View& view);

} // namespace KOVA::Quorvex::apps
