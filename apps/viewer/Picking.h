#pragma once

#include <optional>

#include <QPoint>

#include "CameraRig.h"

namespace KOVA::Quorvex::viewer {

class FrameWidget;
class SceneModel;
class ScenePart;

// What is seen at a pixel of a frame. The library says which mesh it is; its triangles, and the transfer functions of
// the volumes, say where.
struct Picked {
    ScenePart* part;
    Vector3d point; // of the scene
};

std::optional<Picked> Pick(FrameWidget& frame, const SceneModel& scene, QPoint pixel);

} // namespace KOVA::Quorvex::viewer
