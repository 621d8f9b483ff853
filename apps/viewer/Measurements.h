#pragma once

#include <optional>
#include <vector>

#include <QString>

#include "CameraRig.h"

namespace KOVA::Quorvex {
class RenderFrame;
class OverlayData;
} // namespace KOVA::Quorvex

namespace KOVA::Quorvex::viewer {

// Distances between points of the scene, in the order in which they were taken.
class Measurements {
public:
    struct Distance {
        Vector3d from;
        Vector3d to;
        QString label;
    };

    // Every second point completes a distance; unit: of the files for 1 of the scene.
    void Take(const Vector3d& point, double unit);
    void Clear();
    void ForgetOpenPoint() { m_open.reset(); }

    const std::vector<Distance>& GetDistances() const { return m_distances; }
    const std::optional<Vector3d>& GetOpenPoint() const { return m_open; }

private:
    std::vector<Distance> m_distances;
    std::optional<Vector3d> m_open; // waits for its second
};

// The distances in the picture of one frame: lines with labels in front of everything, so that they are seen from all
// sides. They have to be placed anew whenever the camera moves.
class MeasurementMarks {
public:
    explicit MeasurementMarks(RenderFrame& frame);

    // In the foreground of the camera. Changing the list and moving the camera both go through here.
    void Place(const Measurements& measurements, const CameraRig& rig);

private:
    OverlayData* m_overlay; // the frame's
};

} // namespace KOVA::Quorvex::viewer
