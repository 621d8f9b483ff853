#pragma once

#include <cstdint>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/scene/RenderObjectAttribute.h>

namespace KOVA::Quorvex {

// How a volume is shown. Six clip planes and six slices at most; indices are not checked: entries of transfer functions
// are 0..255, planes and slices 0..5. About 29 KB, so keep it on the heap.
class QUORVEX_API VolumeAttribute : public RenderObjectAttribute {
public:
    enum RenderMode : std::uint32_t {
        Shaded = 0,           // composed back to front, classified by the transfer function, lit by the gradient
        Unshaded = 1,         // the same without light
        MinimumIntensity = 2, // the smallest colour along the line of sight
        MaximumIntensity = 3  // the largest
    };

    static constexpr unsigned int transferEntries = 256;
    static constexpr unsigned int userPlanes = 6;

    VolumeAttribute();
    VolumeAttribute(const VolumeAttribute& other);
    VolumeAttribute& operator=(const VolumeAttribute& other);
    ~VolumeAttribute() override;

    // By what all objects have; nothing of this class takes part.
    bool operator==(const VolumeAttribute& other) const { return RenderObjectAttribute::operator==(other); }
    bool operator!=(const VolumeAttribute& other) const { return !(*this == other); }

    // Values beyond the enumeration are stored; nothing is drawn then. The minimum and maximum modes throw an exception
    // derived from std::exception, and change nothing, while the driver is not known to have GL_EXT_blend_minmax (see
    // VolumeRenderer::SupportsIntensityMinMax).
    RenderMode GetRenderMode() const { return m_renderMode; }
    void SetRenderMode(RenderMode mode);

    // Slices stand voxel size / factor apart (see VolumeData::getVoxelSize). Opacities are corrected for it.
    float GetSampleFactor() const { return m_sampleFactor; }
    void SetSampleFactor(float factor) { m_sampleFactor = factor; }

    // The distance, in voxels, over which the shaded mode takes its gradient.
    float GetSmoothFactor() const { return m_smoothFactor; }
    void SetSmoothFactor(float factor) { m_smoothFactor = factor; }

    bool ShowBrickBoxes() const { return m_bShowBrickBoxes; }
    void ShowBrickBoxes(bool show) { m_bShowBrickBoxes = show; }

    // The shaded mode: exponent of the diffuse light, and what is added to it.
    float GetMaterialShininess() const { return m_materialShininess; }
    void SetMaterialShininess(float shininess) { m_materialShininess = shininess; }
    ColorRGBA GetMaterialAmbientColor() const { return m_materialAmbientColor; }
    void SetMaterialAmbientColor(const ColorRGBA& color) { m_materialAmbientColor = color; }

    // Colour and opacity of intensity i. The table as a whole has transferEntries entries.
    ColorRGBA GetTransferFunction(unsigned int i) const { return m_transferFunction[i]; }
    void SetTransferFunction(unsigned int i, const ColorRGBA& color) { m_transferFunction[i] = color; }
    const ColorRGBA* GetTransferFunctionTable() const { return m_transferFunction; }

    // Plane equations a x + b y + c z + d in world coordinates: what lies where it is negative is cut away. A plane of
    // zeros does nothing.
    Vector4d GetUserClipPlane(unsigned int i) const { return m_userClipPlanes[i]; }
    void SetUserClipPlane(unsigned int i, const Vector4d& plane) { m_userClipPlanes[i] = plane; }
    void SetUserClipPlane(unsigned int i, const Vector4f& plane) { m_userClipPlanes[i] = Widened(plane); }

    // Planes on which the volume is shown through a transfer function of their own.
    Vector4d GetUserSlice(unsigned int i) const { return m_userSlices[i]; }
    void SetUserSlice(unsigned int i, const Vector4d& plane) { m_userSlices[i] = plane; }
    void SetUserSlice(unsigned int i, const Vector4f& plane) { m_userSlices[i] = Widened(plane); }
    ColorRGBA GetUserSliceTransferFunction(unsigned int slice, unsigned int i) const {
        return m_userSliceTransferFunctions[slice][i];
    }
    void SetUserSliceTransferFunction(unsigned int slice, unsigned int i, const ColorRGBA& color) {
        m_userSliceTransferFunctions[slice][i] = color;
    }
    const ColorRGBA* GetUserSliceTransferFunctionTable(unsigned int slice) const {
        return m_userSliceTransferFunctions[slice];
    }

private:
    static Vector4d Widened(const Vector4f& v) {
        return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z), static_cast<double>(v.w)};
    }

    RenderMode m_renderMode = Shaded;
    float m_sampleFactor = 2.0F;
    float m_smoothFactor = 0.2F;
    bool m_bShowBrickBoxes = false;
    float m_materialShininess = 1.0F;
    ColorRGBA m_materialAmbientColor{0.3F, 0.3F, 0.3F, 1.0F};
    ColorRGBA m_transferFunction[transferEntries];
    Vector4d m_userClipPlanes[userPlanes];
    Vector4d m_userSlices[userPlanes];
    ColorRGBA m_userSliceTransferFunctions[userPlanes][transferEntries];
};

} // namespace KOVA::Quorvex
