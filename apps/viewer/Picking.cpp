#include "Picking.h"

#include "FrameWidget.h"
#include "SceneModel.h"
#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

std::optional<Picked> Pick(FrameWidget& frame, const SceneModel& scene, QPoint pixel) {
    const CameraRig& rig = frame.Rig();
    if (pixel.x() < 0 || pixel.y() < 0 || pixel.x() >= rig.GetWidth() || pixel.y() >= rig.GetHeight()) {
        return std::nullopt;
    }
    const Beam beam = rig.BeamAt(pixel.x(), pixel.y());
    ScenePart* nearest = nullptr;
    double distance = 0.0;
    const auto take = [&](ScenePart* part) {
        const std::optional<double> met = part->Meet(beam);
        if (met && *met > 0.0 && (nearest == nullptr || *met < distance)) {
            nearest = part;
            distance = *met;
        }
    };
    const Mesh* const mesh =
        frame.Frame().HitTest(static_cast<unsigned int>(pixel.x()), static_cast<unsigned int>(pixel.y()));
    if (ScenePart* const part = mesh != nullptr ? scene.Find(mesh) : nullptr) {
        take(part);
    }
    for (VolumePart* volume : scene.GetVolumes()) {
        if (volume->Attribute().IsVisible()) {
            take(volume);
        }
    }
    return nearest != nullptr ? std::optional(Picked{nearest, beam.ray.At(distance)}) : std::nullopt;
}

} // namespace KOVA::Quorvex::viewer
