#pragma once

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Matrix44d.h>
#include <Quorvex/core/Vectors.h>

namespace KOVA::Quorvex {

// How one render object is shown; every object owns a copy.
class QUORVEX_API RenderObjectAttribute {
public:
    RenderObjectAttribute();
    RenderObjectAttribute(const RenderObjectAttribute& other);
    RenderObjectAttribute& operator=(const RenderObjectAttribute& other);
    virtual ~RenderObjectAttribute();

    ColorRGBA GetColor() const { return m_color; }
    void SetColor(const ColorRGBA& color) { m_color = color; }

    void Show() { m_visible = true; }
    void Hide() { m_visible = false; }
    bool IsVisible() const { return m_visible; }

    ColorRGBA GetBoundingBoxColor() const { return m_boundingBoxColor; }
    void SetBoundingBoxColor(const ColorRGBA& color) { m_boundingBoxColor = color; }
    void ShowBoundingBox() { m_boundingBoxVisible = true; }
    void HideBoundingBox() { m_boundingBoxVisible = false; }
    bool BoundingBoxIsVisible() const { return m_boundingBoxVisible; }

    // Object to world; the translation below is applied before it. Change it through the reference.
    Matrix44d& GetTransformRef() { return m_transform; }
    const Matrix44d& GetTransformRef() const { return m_transform; }
    void SetGlobalTranslation(const Vector3f& translation) { m_globalTranslation = translation; }
    Vector3f GetGlobalTranslation() const { return m_globalTranslation; }

    // The fraction of its extent by which a drawn bounding box is enlarged on every side, so that it stands clear of
    // the object's surface. For all objects; any value is taken.
    static float GetBoundingBoxRescale() { return s_fBoundingBoxRescale; }
    static void SetBoundingBoxRescale(float rescale) { s_fBoundingBoxRescale = rescale; }

    // Exact, without the transform: two objects that look alike in different places have equal attributes.
    bool operator==(const RenderObjectAttribute& other) const;
    bool operator!=(const RenderObjectAttribute& other) const { return !(*this == other); }

    static float s_fBoundingBoxRescale;

private:
    ColorRGBA m_color{1.0F, 1.0F, 1.0F, 1.0F};
    bool m_visible = true;
    ColorRGBA m_boundingBoxColor{1.0F, 1.0F, 1.0F, 1.0F};
    bool m_boundingBoxVisible = false;
    Matrix44d m_transform;
    Vector3f m_globalTranslation{0.0F, 0.0F, 0.0F};
};

} // namespace KOVA::Quorvex
