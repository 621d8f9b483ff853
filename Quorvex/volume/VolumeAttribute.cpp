#include <Quorvex/volume/VolumeAttribute.h>

#include <algorithm>
#include <stdexcept>

#include <Quorvex/volume/VolumeRenderer.h>

namespace KOVA::Quorvex {

namespace {

// Programs that are built without optimisation look for these constants in the library, which must not leave them out.
[[gnu::used]] const unsigned int* const s_constants[] = {&VolumeAttribute::transferEntries,
                                                         &VolumeAttribute::userPlanes};

} // namespace

VolumeAttribute::VolumeAttribute() {
    for (unsigned int i = 0; i < transferEntries; ++i) {
        const float level = static_cast<float>(i) / 255.0F;
        m_transferFunction[i] = ColorRGBA(level, level, level, level);
        for (auto& table : m_userSliceTransferFunctions) {
            table[i] = m_transferFunction[i];
        }
    }
    std::fill_n(m_userClipPlanes, userPlanes, Vector4d(0.0, 0.0, 0.0, 0.0));
    std::fill_n(m_userSlices, userPlanes, Vector4d(0.0, 0.0, 0.0, 0.0));
}

VolumeAttribute::VolumeAttribute(const VolumeAttribute& other) = default;
VolumeAttribute& VolumeAttribute::operator=(const VolumeAttribute& other) = default;
VolumeAttribute::~VolumeAttribute() = default;

void VolumeAttribute::SetRenderMode(RenderMode mode) {
    if ((mode == MinimumIntensity || mode == MaximumIntensity) && !VolumeRenderer::SupportsIntensityMinMax()) {
        throw std::runtime_error("GL_EXT_blend_minmax is not supported");
    }
    m_renderMode = mode;
}

} // namespace KOVA::Quorvex
