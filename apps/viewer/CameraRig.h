#pragma once

#include <optional>

#include <Quorvex/core/Vectors.h>
#include <Quorvex/view/View.h>

#include <shared/Camera.h>
#include <shared/MeetMesh.h>
#include <shared/MeshPlacement.h>

namespace KOVA::Quorvex::viewer {

// The camera of one frame, as mouse and menus move it: it looks at a pivot, the middle of the picture, about which it
// turns. The view is right-handed. Positions in the frame are in its pixels from the upper left corner; lengths are
// those of the scene. No GL here, but the view is the frame's: on the thread that draws.
class CameraRig {
public:
    CameraRig();

    View& GetView() { return m_view; }
    const View& GetView() const { return m_view; }

    // What the near and far planes enclose, and what Fit shows. An empty box stands for a cube about the origin.
    void SetScene(const Box& box);

    // What was seen stays seen, and as large as it can be: another size begins from what Fit or Look showed.
    void SetSize(int width, int height);
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }

    // Shows the whole scene: from where it is seen now, or from a side.
    void Fit();
    void Look(Side side);

    // What is seen at the pivot keeps its size.
    void SetProjection(Projection projection);
    Projection GetProjection() const { return m_projection; }

    // A drag of the trackball; a drag of the scene under the mouse; a factor by which the picture is enlarged about a
    // position.
    void Turn(int x0, int y0, int x1, int y1);
    void Pan(double dx, double dy);
    void Zoom(double factor, double x, double y);

    // Looks at the same from the same direction; the frames may differ in size.
    void Follow(const CameraRig& other);

    // Shows the same when the scene's coordinates become those of another unit. SetScene comes next.
    void ChangeUnit(const SceneUnit& before, const SceneUnit& after);

    Ray RayAt(double x, double y) const;
    Beam BeamAt(int x, int y) const; // all of the pixel

    // Where a point is seen; nothing for points behind the camera.
    struct Pixel {
        double x, y;
    };
    std::optional<Pixel> PixelOf(const Vector3d& point) const;

    // A place just behind the near plane that is seen where the point is, so that nothing hides it, and the factor by
    // which a label there has to be enlarged to have its nominal size. Nothing for points in front of that place.
    struct Foreground {
        Vector3f place;
        float labelFactor;
    };
    std::optional<Foreground> InFront(const Vector3d& point) const;

private:
    struct Extent {
        double width, height; // halves, at the pivot
    };

    Axes CurrentAxes() const;
    double Aspect() const { return static_cast<double>(m_width) / m_height; }
    void Take(const Camera& camera);
    void Fit(const Box& box, const Axes& axes);
    Extent ExtentOf(const Box& box) const; // infinite when some of it is behind the eye
    void Want(const Extent& extent);
    void WantWhatIsSeen();
    void ShowWanted(const Axes& axes);
    void Load(const Axes& axes);
    Vector3d PlaceAt(double x, double y, const Axes& axes) const; // in the plane through the pivot

    View m_view;
    Box m_box;
    Projection m_projection = Projection::Perspective;
    Vector3d m_pivot{0.0, 0.0, 0.0};
    double m_halfWidth = 1.0;    // of what is seen at the pivot
    Extent m_wanted{1.0, 1.0};   // what has to be seen, in frames of all sizes
    std::optional<Box> m_fitted; // is shown as a whole, and nobody moved the camera since
    double m_nearPlane = 1.0;
    double m_farPlane = 2.0;
    int m_width = 100;
    int m_height = 100;
};

} // namespace KOVA::Quorvex::viewer
