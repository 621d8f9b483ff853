#include "Background.h"

namespace KOVA::Quorvex::apps {

bool ShowsLines(MeshAttribute::RenderMode mode) {
    return mode == MeshAttribute::RENDER_WIREFRAME || mode == MeshAttribute::RENDER_HIDDEN_LINE ||
           mode == MeshAttribute::RENDER_POINTS;
}

Background SuitableBackground(std::optional<MeshAttribute::RenderMode> mesh,
                              std::optional<VolumeAttribute::RenderMode> volume) {
    // The largest intensity is seen where it is brighter than the background, the smallest where it is darker.
    if (volume == VolumeAttribute::MaximumIntensity) {
        return {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F}};
    }
    if (volume == VolumeAttribute::MinimumIntensity) {
        return {{1.0F, 1.0F, 1.0F}, {1.0F, 1.0F, 1.0F}};
    }
    // X-ray pictures add light to the background: the darker it is, the more they can show.
    if (mesh == MeshAttribute::RENDER_XRAY) {
        return {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F}};
    }
    if (mesh && ShowsLines(*mesh)) {
        return {{0.06F, 0.08F, 0.12F}, {0.22F, 0.26F, 0.33F}};
    }
    return {{0.16F, 0.20F, 0.30F}, {0.62F, 0.67F, 0.75F}};
}

} // namespace KOVA::Quorvex::apps
