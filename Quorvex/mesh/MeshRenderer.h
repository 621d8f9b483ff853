#pragma once

#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

class Mesh;
class MeshAttribute;
class MeshData;
class RenderFrame;

// Draws meshes with the fixed-function pipeline, from buffer objects when a mesh has them and from its arrays
// otherwise. Needs the library's context current.
class QUORVEX_API MeshRenderer {
public:
    static bool Init(); // looks up what buffers need; always true
    static void Release();
    static const char* GetGLExtensionString() { return nullptr; } // asks for no extension of its own

    // frame and quality are not used. inverseNormals chooses the X-ray program in which front and back change places.
    //
    // Left behind for the next: blending, lighting and polygon mode off or at their defaults, line width 1; client
    // states, colour material, and light 0's colours as this mesh needed them.
    static void Render(RenderFrame& frame, bool quality, const Mesh* mesh, bool inverseNormals);

    static bool s_bExtensions;
    static unsigned int s_XRayShader; // program objects, 0 until the first mesh is drawn so
    static unsigned int s_XRayShaderInverseNormals;

private:
    static void BindBuffer(unsigned int target, unsigned int buffer);
    static const void* BindArray(unsigned int buffer, const void* array);
    static bool SetUpColors(const MeshData& data, bool wanted);
    static void SetUpArrays(const MeshData& data, bool lit);
    static void Select(const MeshData& data, unsigned int polygonMode);
    static void DrawElements(const MeshData& data);
    static void DrawInMode(const MeshData& data, const MeshAttribute& attribute, bool inverseNormals);

    static void (*glBindBufferARB)(unsigned int target, unsigned int buffer);
};

} // namespace KOVA::Quorvex
