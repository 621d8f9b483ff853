#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/mesh/Mesh.h>

namespace KOVA::Quorvex {

// Makes primitives as plain lists in the vertex array, without indices or colours. The mesh owns its data. Triangles
// run counter-clockwise seen from outside (in right-handed coordinates), normals point outwards. No GL context needed.
class QUORVEX_API MeshBuilder {
public:
    // Axis-aligned box: 36 vertices, one normal a face.
    static Mesh BuildBox(const Vector3f& min, const Vector3f& max);

    // Three lines (GL_LINES) of length 2 size along the axes that meet at the centre. No normals; box, centre and
    // radius stay 0.
    static Mesh BuildCross(const Vector3f& centre, float size);

    // 48 x 24 facets of 7.5 degrees with the poles on the y axis: 6624 vertices, exact normals. The ellipsoid's radius
    // is the length of its radii.
    static Mesh BuildSphere(const Vector3f& centre, float radius);
    static Mesh BuildEllipsoid(const Vector3f& centre, const Vector3f& radii);

    // Along z, from base.z to base.z + length, with caps; the radii are along x and y. Unequal radii give a truncated
    // cone. 48 segments of 12 vertices.
    static Mesh BuildEllipticCylinder(const Vector3f& base, const Vector2f& radiiBase, const Vector2f& radiiTop,
                                      float length);
};

} // namespace KOVA::Quorvex
