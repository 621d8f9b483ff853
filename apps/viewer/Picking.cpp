#include "Picking.h"

#include "FrameWidget.h"
#include "MeshPart.h"
#include "SceneModel.h"
#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

std::optional<Picked> Pick(FrameWidget& frame, const SceneModel& scene, QPoint pixel) {
    const CameraRig& rig = frame.Rig();
    if (pixel.x() < 0 || pixel.y() < 0 || pixel.x() >= rig.GetWidth() || pixel.y() >= rig.GetHeight()) {
        return std::nullopt;
    }
    const Ray ray = rig.RayAt(pixel.x() + 0.5, pixel.y() + 0.5);
    ScenePart* nearest = nullptr;
    double distance = 0.0;
    const auto take = [&](ScenePart* part, std::optional<double> met) {
        if (met && *met > 0.0 && (nearest == nullptr || *met < distance)) {
            nearest = part;
            distance = *met;
        }
    };
    const Mesh* const mesh =
        frame.Frame().HitTest(static_cast<unsigned int>(pixel.x()), static_cast<unsigned int>(pixel.y()));
    if (ScenePart* const part = mesh != nullptr ? scene.Find(mesh) : nullptr) {
        take(part, dynamic_cast<MeshPart&>(*part).Meet(ray));
    }
    for (VolumePart* volume : scene.GetVolumes()) {
        if (volume->Attribute().IsVisible()) {
            take(volume, volume->Meet(ray));
        }
    }
    return nearest != nullptr ? std::optional(Picked{nearest, ray.At(distance)}) : std::nullopt;
}

} // namespace KOVA::Quorvex::viewer
