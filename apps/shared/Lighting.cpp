#include "Lighting.h"

#include <cmath>

#include <Quorvex/mesh/MeshData.h>
#include <Quorvex/view/View.h>

#include "Camera.h"

namespace KOVA::Quorvex::apps {

namespace {

// In the direction that the order of the corners gives, of any length; not finite or zero for a triangle without area.
Vector3f Outside(const Vector3f* corners) {
    // Brought to a length near 1 first: products of very short edges would vanish.
    Vector3f a = corners[1] - corners[0];
    Vector3f b = corners[2] - corners[0];
    a.Normalize();
    b.Normalize();
    return CrossProduct(a, b);
}

bool HasDirection(const Vector3f& v) {
    const float length = v.Length();
    return std::isfinite(length) && length > 0.0F;
}

// What each corner's normal becomes: calls change(normal, outside, corner) for the triangles that have an area.
template <class Change> void ForEachCorner(MeshData& data, Change change) {
    const Vector3f* corners = data.GetVertexArray();
    Vector3f* normals = data.GetNormalArray();
    if (corners == nullptr || normals == nullptr) {
        return;
    }
    for (unsigned int i = 0; i + 2 < data.GetNumVertices(); i += 3) {
        const Vector3f outside = Outside(corners + i);
        if (!HasDirection(outside)) {
            continue;
        }
        for (unsigned int k = i; k < i + 3; ++k) {
            normals[k] = change(normals[k], outside, corners[k]);
        }
    }
}

} // namespace

void OrientNormals(MeshData& data) {
    ForEachCorner(data, [](const Vector3f& normal, const Vector3f& outside, const Vector3f& /*corner*/) {
        if (!HasDirection(normal)) {
            return outside;
        }
        return DotProduct(normal, outside) < 0.0F ? -normal : normal;
    });
}

void LightLines(MeshData& data, const View& view) {
    constexpr float turn = 1.0F; // edges that are seen end-on get about two thirds of the light
    const Vector3f towardsViewer = TowardsViewer(view);
    const Vector3f eye = view.getPosition();
    const bool perspective = view.IsProjectionPerspective();
    ForEachCorner(data, [&](Vector3f normal, const Vector3f& outside, const Vector3f& corner) {
        const Vector3f lineOfSight = perspective ? eye - corner : towardsViewer;
        // On back sides the lighting turns the normal round.
        const float side = DotProduct(outside, lineOfSight) < 0.0F ? -1.0F : 1.0F;
        return (normal.Normalize() + towardsViewer * (turn * side)).Normalize();
    });
}

} // namespace KOVA::Quorvex::apps
