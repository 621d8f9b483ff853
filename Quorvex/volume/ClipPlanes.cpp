#include <Quorvex/volume/ClipPlanes.h>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/volume/VolumeAttribute.h>

namespace KOVA::Quorvex {

ClipPlanes::ClipPlanes(const VolumeAttribute& attribute) {
    for (unsigned int i = 0; i < VolumeAttribute::userPlanes; ++i) {
        const Vector4d plane = attribute.GetUserClipPlane(i);
        if (plane != Vector4d(0.0, 0.0, 0.0, 0.0)) {
            m_planes.push_back({i, plane});
        }
    }
}

void ClipPlanes::Enable() const {
    for (const Plane& plane : m_planes) {
        glEnable(GLenum{GL_CLIP_PLANE0} + plane.index);
        glClipPlane(GLenum{GL_CLIP_PLANE0} + plane.index, plane.equation);
    }
}

void ClipPlanes::Disable() const {
    for (const Plane& plane : m_planes) {
        glDisable(GLenum{GL_CLIP_PLANE0} + plane.index);
    }
}

void ClipPlanes::AddTo(HalfSpaces& halfSpaces) const {
    for (const Plane& plane : m_planes) {
        halfSpaces.Add(plane.equation);
    }
}

} // namespace KOVA::Quorvex
