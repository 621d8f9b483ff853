#include <Quorvex/volume/VolumeRenderer.h>

namespace KOVA::Quorvex {

bool VolumeRenderer::m_bInit = false;
unsigned int VolumeRenderer::m_handleProgram = 0;
unsigned int VolumeRenderer::m_handleVertexProgram = 0;
int VolumeRenderer::m_loadedProgram = 0;
unsigned int VolumeRenderer::m_transferTexture = 0;
bool VolumeRenderer::s_bSupportsIntensityMinMax = false;

bool VolumeRenderer::Render(RenderFrame& /*frame*/, bool /*quality*/, const Volume* /*volume*/) {
    return true;
}

} // namespace KOVA::Quorvex
