#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "CameraRig.h"

namespace KOVA::Quorvex {
class RenderFrame;
class Line;
class OverlayData;
class Point;
} // namespace KOVA::Quorvex

namespace KOVA::Quorvex::viewer {

class ScenePart;

// Distances between points of parts, in the order in which they were taken. They go with their parts.
class Measurements {
public:
    // A point of a part, in the coordinates of its file: those of the scene may change.
    struct End {
        ScenePart* part;
        Vector3d place;

        Vector3d InScene() const;
        bool IsSeen() const; // with its part
    };

    struct Distance {
        End from;
        End to;
        QString label;

        bool IsSeen() const { return from.IsSeen() && to.IsSeen(); }
    };

    // Every second end completes a distance; unit: of the files for 1 of the scene.
    void Take(const End& end, double unit);
    void ChangeUnit(double unit);
    void Clear();
    void ForgetOpenEnd() { m_open.reset(); }
    void Forget(const ScenePart* part);

    const std::vector<Distance>& GetDistances() const { return m_distances; }
    const std::optional<End>& GetOpenEnd() const { return m_open; }

private:
    std::vector<Distance> m_distances;
    std::optional<End> m_open; // waits for its second
};

// The distances in the picture of one frame: lines with labels in front of everything, so that they are seen from all
// sides. They have to be placed anew whenever the camera moves.
class MeasurementMarks {
public:
    explicit MeasurementMarks(RenderFrame& frame);

    // In the foreground of the camera. Changing the list and moving the camera both go through here. pixelRatio: pixels
    // of the screen for one of the interface.
    void Place(const Measurements& measurements, const CameraRig& rig, double pixelRatio);

    OverlayData& GetOverlay() { return *m_overlay; }

private:
    struct Mark {
        QString label;
        Point* from; // these three: the overlay's
        Point* to;
        Line* line;
        float factor; // of the label's size
    };

    void Build(const std::vector<QString>& labels, bool openEnd);

    OverlayData* m_overlay; // the frame's
    std::vector<Mark> m_marks;
    Point* m_openEnd = nullptr;
};

} // namespace KOVA::Quorvex::viewer
