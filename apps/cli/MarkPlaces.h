#pragma once

#include <vector>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/view/View.h>

#include "Marks.h"

namespace KOVA::Quorvex::cli {

// Where marks are drawn so that they are seen: nearer to the viewer than they are, on the same line of sight. No GL
// here.
class MarkPlaces {
public:
    // The view and the meshes, which are opaque and drawn enlarged by the scale, are referred to. A scene of which the
    // picture has a depth of its own (stereo) shows marks at theirs.
    MarkPlaces(const View& view, const std::vector<Mesh*>& opaque, double scale, bool keepDepth);

    // A little above the surface that the mark may lie on; what lies in front hides it.
    Vector3f OnSurface(const Position& mark) const;

    // Whether nothing hides a mark that is drawn there.
    bool IsSeen(const Position& mark) const;

    // For labels: in front of the whole scene, so that no part runs through the text.
    Vector3f InFront(const Position& mark) const;

    // Labels are made for the middle of what the camera sees; nearer ones would come out larger, farther ones smaller.
    float LabelFactor(const Vector3f& place) const;

private:
    Vector3f ToViewer(const Vector3f& place) const; // any length; in perspective views it ends at the eye
    float Depth(const Vector3f& place) const;

    const View& m_view;
    const std::vector<Mesh*>& m_opaque;
    double m_scale;
    bool m_keepDepth;
};

} // namespace KOVA::Quorvex::cli
