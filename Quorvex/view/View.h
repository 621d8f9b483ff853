#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

// The camera of a render frame: a modelview matrix (world to eye) and a projection matrix (eye to clip), the numbers
// from which the projection was built, and the handedness of the coordinate system.
//
// Both matrices are 16 doubles in OpenGL's element order (row r, column c at index c * 4 + r). A left-handed view looks
// along the positive z axis of eye space, a right-handed one along the negative. Opening angles are in radians unless a
// name says degrees. There is no aspect ratio here: the frame multiplies it in when it draws, so an opening angle spans
// the width of the picture. A new view is left-handed, has no projection yet and its matrices are not initialised.
// Any thread may use a view that no other thread uses.
class QUORVEX_API View {
public:
    View() = default;

    void SetProjectionPerspective(float fov, float nearPlane, float farPlane, bool leftHand);
    void SetProjectionPerspectiveLH(float fov, float nearPlane, float farPlane);
    void SetProjectionPerspectiveRH(float fov, float nearPlane, float farPlane);
    void SetProjection(float fov, float nearPlane, float farPlane);  // left-handed
    void SetProjectionR(float fov, float nearPlane, float farPlane); // right-handed

    void SetProjectionOrthogonal(double left, double right, double bottom, double top, double nearPlane,
                                 double farPlane, bool leftHand);
    void SetProjectionOrthogonalLH(double left, double right, double bottom, double top, double nearPlane,
                                   double farPlane);
    void SetProjectionOrthogonalRH(double left, double right, double bottom, double top, double nearPlane,
                                   double farPlane);

    // Copies 16 doubles; flags and parameters stay.
    void SetProjectionMatrix(const double* m);

    double* GetProjectionMatrix() { return m_projection; }
    const double* GetProjectionMatrix() const { return m_projection; }
    double* GetModelviewMatrix() { return m_modelview; }
    const double* GetModelviewMatrix() const { return m_modelview; }

    bool IsProjectionOrthogonal() const { return m_orthogonal; }
    bool IsProjectionPerspective() const { return m_perspective; }
    bool IsLeftHand() const { return m_leftHand; }
    bool IsRightHand() const { return !m_leftHand; }

    double GetProjectionOrthogonalLeft() const { return m_orthoLeft; }
    double GetProjectionOrthogonalRight() const { return m_orthoRight; }
    double GetProjectionOrthogonalBottom() const { return m_orthoBottom; }
    double GetProjectionOrthogonalTop() const { return m_orthoTop; }
    double GetProjectionOrthogonalNear() const { return m_orthoNear; }
    double GetProjectionOrthogonalFar() const { return m_orthoFar; }

    float getFOV() const { return m_fov; } // radians
    float getNear() const { return m_nearPlane; }
    float getFar() const { return m_farPlane; }

    // These switch to a perspective projection, also from an orthogonal one. Nothing is clamped.
    void setCamPlanes(float nearPlane, float farPlane);
    void getCamPlanes(float* nearPlane, float* farPlane) const;
    void setFieldOfView(float degrees);
    float getFieldOfView() const; // degrees

    // Look-at: the eye's position, the point it looks at and the direction that is up, in world coordinates. An eye at
    // the centre, or an up direction along the line of sight, gives NaN elements.
    void SetModelviewViewer(const Vector3f& eye, const Vector3f& centre, const Vector3f& up);

    // Spherical look: the eye stands at eye and looks along the direction that the two angles (radians) give. At 0, 0
    // it looks along the world's z axis, towards -z in a right-handed view and +z in a left-handed one, with y up, so
    // that the rotation is the identity. azimuth turns the head about the world's y axis to the viewer's right,
    // elevation raises it; straight up and straight down are directions like any other.
    void SetModelviewViewer(const Vector3f& eye, float azimuth, float elevation);

    // The object's counterpart: the world's origin stands at position in eye coordinates, and the world is turned by
    // azimuth (radians) about its own y axis and then by elevation about the viewer's x axis. In the picture a positive
    // azimuth carries the near side to the right and a positive elevation tips the top towards the viewer, whatever the
    // handedness: the rotations are counter-clockwise in right-handed coordinates, their inverses in left-handed ones.
    void SetModelviewObject(const Vector3f& position, float azimuth, float elevation);

    // The camera's right, up and depth axes in world coordinates: the rows of the modelview's rotation.
    Vector3f getXVector() const;
    Vector3f getYVector() const;
    Vector3f getZVector() const;

    // The camera's position in world coordinates.
    Vector3f getPosition() const;

    // Turns the scene as a mouse drag from (x0, y0) to (x1, y1) asks, in window pixels of a client area of width x
    // height, about the world's origin or about a point of the world. Equal positions change nothing at all.
    void ApplyTrackball(int x0, int y0, int x1, int y1, int width, int height);
    void ApplyTrackball(int x0, int y0, int x1, int y1, int width, int height, Vector3f centre);

    // Move the camera by t: along the world's axes, or along its own.
    void TranslateWorld(const Vector3f& t);
    void TranslateViewer(const Vector3f& t);

    // Turn the world about an axis through its origin: axis in x, y, z (any length), angle in radians in w,
    // counter-clockwise seen from the axis' end in right-handed coordinates (the matrix is the same for both kinds of
    // view). Full circles bring the view back. An axis of length 0 does not turn anything.
    void RotateWorld(const Vector4f& axisAngle);

    // Turns the camera about an axis of its own coordinate system (same convention) that runs through the point centre
    // of the world; the centre keeps its place in the picture. With the camera's position as the centre it looks
    // around, with a point of the scene it orbits.
    void RotateViewer(const Vector4f& axisAngle, const Vector3f& centre);

    // Takes the drift of many small rotations off the modelview: the columns, then the rows of its rotation are brought
    // back to unit length. They are not made orthogonal, and zero lengths give NaN.
    void Stabilize();

    // Requests a redraw of every frame that looks through this view. On the thread of Quorvex::Init.
    void Render();

private:
    bool m_orthogonal = false;
    bool m_perspective = false;
    double m_orthoLeft = 0.0;
    double m_orthoRight = 0.0;
    double m_orthoBottom = 0.0;
    double m_orthoTop = 0.0;
    double m_orthoNear = 0.0;
    double m_orthoFar = 0.0;
    bool m_leftHand = true;
    float m_fov = 1.0F;
    float m_farPlane = 100.0F;
    float m_nearPlane = 0.01F;
    double m_modelview[16];
    double m_projection[16];
};

} // namespace KOVA::Quorvex
