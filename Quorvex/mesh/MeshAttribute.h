#pragma once

#include <cstdint>

#include <Quorvex/core/Export.h>
#include <Quorvex/scene/RenderObjectAttribute.h>

namespace KOVA::Quorvex {

// How a mesh is shown.
class QUORVEX_API MeshAttribute : public RenderObjectAttribute {
public:
    enum RenderMode : std::uint32_t {
        RENDER_SURFACE = 0,           // filled polygons
        RENDER_WIREFRAME = 1,         // polygon outlines
        RENDER_SURFACE_WIREFRAME = 2, // filled polygons with their outlines on top
        RENDER_HIDDEN_LINE = 3,       // the outlines that the surface does not hide
        RENDER_XRAY = 4,              // sums of depths along the lines of sight; filled without shader support
        RENDER_POINTS = 5             // the vertices
    };

    MeshAttribute() = default;
    MeshAttribute(const MeshAttribute& other) = default;
    MeshAttribute& operator=(const MeshAttribute& other) = default;
    ~MeshAttribute() override;

    // Values beyond the enumeration are stored; nothing is drawn then.
    RenderMode GetRenderMode() const { return m_renderMode; }
    void SetRenderMode(RenderMode mode) { m_renderMode = mode; }

    // Width of lines, and size of points, in pixels.
    float GetLineWidth() const { return m_lineWidth; }
    void SetLineWidth(float width) { m_lineWidth = width; }

    // Exponent of the specular highlight, 0..128.
    float GetShininess() const { return m_shininess; }
    void SetShininess(float shininess) { m_shininess = shininess; }

    // Grey level of the specular colour, 0..1.
    float GetSpecularity() const { return m_specularity; }
    void SetSpecularity(float specularity) { m_specularity = specularity; }

    bool operator==(const MeshAttribute& other) const;
    bool operator!=(const MeshAttribute& other) const { return !(*this == other); }

private:
    RenderMode m_renderMode = RENDER_SURFACE;
    float m_lineWidth = 1.0F;
    float m_shininess = 4.0F;
    float m_specularity = 0.3F;
};

} // namespace KOVA::Quorvex
