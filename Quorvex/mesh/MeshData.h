#pragma once

#include <cstddef>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/scene/RenderObjectData.h>
#include <Quorvex/scene/Storage.h>

namespace KOVA::Quorvex {

// The geometry of a mesh: colours, normals and positions (one per vertex, parallel arrays) and a list of indices, each
// with an optional vertex buffer object that holds a copy on the graphics card.
//
// Ownership: an array that MeshData allocated is its own; one handed in by the caller stays the caller's, who keeps it
// alive and frees it. New arrays are not filled. Counts are numbers of vertices and of indices. Colours are 3 (RGB) or
// 4 (RGBA) floats a vertex. Positions are in object coordinates, in the unit of the scene.
//
// Copying, assigning, destroying and the Update operations touch buffer objects: call them on the thread of
// Quorvex::Init with its context current. Without buffers any thread that has the object to itself may.
class QUORVEX_API MeshData : public RenderObjectData {
public:
    // mode is the OpenGL primitive mode (4 is GL_TRIANGLES). The counts are stored; Create...Array allocates.
    MeshData();
    MeshData(unsigned int vertexCount, unsigned int mode);
    MeshData(unsigned int vertexCount, unsigned int indexCount, unsigned int mode);

    // Adopt the caller's arrays; null for an array that is not there.
    MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGB* colors, unsigned int mode);
    MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGBA* colors, unsigned int mode);
    MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGB* colors, unsigned int indexCount,
             unsigned int* indices, unsigned int mode);
    MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGBA* colors,
             unsigned int indexCount, unsigned int* indices, unsigned int mode);

    // Deep copies: the arrays become the copy's own, buffers are duplicated on the card. The index buffer's duplicate
    // holds as many entries as there are vertices; drawing notices and takes the array instead. Assignment keeps the
    // target's instance counter when objects share it.
    MeshData(const MeshData& other);
    MeshData& operator=(const MeshData& other);

    // Frees arrays and buffers unless other objects still count on this data.
    ~MeshData() override;

    // Content is not compared: both are true for any two meshes.
    bool operator==(const MeshData& /*other*/) const { return true; }
    bool operator!=(const MeshData& /*other*/) const { return true; }

    unsigned int GetMode() const { return m_mode; }
    void SetMode(unsigned int mode) { m_mode = mode; }

    // 0 while there is neither an array nor a buffer, else the number of vertices.
    unsigned int GetNumColors() const;
    unsigned int GetNumNormals() const;
    unsigned int GetNumVertices() const;
    unsigned int GetNumIndices() const { return m_numIndices; }

    // Elements of the client arrays, unchecked.
    Vector3f GetVertex(unsigned int i) const { return m_vertexArray[i]; }
    void SetVertex(unsigned int i, const Vector3f& v) { m_vertexArray[i] = v; }
    Vector3f GetNormal(unsigned int i) const { return m_normalArray[i]; }
    void SetNormal(unsigned int i, const Vector3f& n) { m_normalArray[i] = n; }
    unsigned int GetIndex(unsigned int i) const { return m_indexArray[i]; }
    void SetIndex(unsigned int i, unsigned int index) { m_indexArray[i] = index; }

    // The client arrays as a whole; null when there is none. They stay MeshData's (or the caller's who handed them in).
    Vector3f* GetVertexArray() { return m_vertexArray; }
    const Vector3f* GetVertexArray() const { return m_vertexArray; }
    Vector3f* GetNormalArray() { return m_normalArray; }
    const Vector3f* GetNormalArray() const { return m_normalArray; }
    const float* GetColorArray() const { return m_colorArray; }
    unsigned int* GetIndexArray() { return m_indexArray; }
    const unsigned int* GetIndexArray() const { return m_indexArray; }

    // Colours act only when the array exists with as many components as the argument has.
    void SetColor(unsigned int i, const ColorRGB& color);
    void SetColor(unsigned int i, const ColorRGBA& color);
    bool GetColor(unsigned int i, ColorRGB* color) const;
    bool GetColor(unsigned int i, ColorRGBA* color) const;

    // Make an array that does not exist yet: adopt p, or allocate for the counts given to the constructor when p is
    // null. An array that exists is kept. CreateColorArray is false when colours exist with other components or in
    // another array than p; the others are always true.
    bool CreateVertexArray(Vector3f* p);
    bool CreateNormalArray(Vector3f* p);
    bool CreateIndexArray(unsigned int* p);
    bool CreateColorArray(unsigned int components, float* p);

    // Moves vertices, box and centre by d. Call Update afterwards to refresh the buffers.
    void Move(const Vector3f& d);

    // Smooth normals of an indexed triangle list: every face counts alike. Needs vertices and indices, else nothing
    // happens; degenerate triangles and vertices without a triangle give non-finite normals. The argument is not used.
    bool ComputeNormals(bool unused);

    // Box, centre and radius (half the box's diagonal) from the vertices. False without a vertex array.
    bool UpdateMetrics();

    // Uploads the arrays that exist. False, and nothing done, for a storage other than STORAGE_VBO.
    bool Update(STORAGE storage);

    // Uploads one array; that of the vertices refreshes the metrics first. True also when the driver has no buffers.
    // False when there is no array, the storage is unknown, or the upload failed and the buffer was given up (the mesh
    // is then drawn from the array).
    bool UpdateColorArray(STORAGE storage);
    bool UpdateNormalArray(STORAGE storage);
    bool UpdateVertexArray(STORAGE storage);
    bool UpdateIndexArray(STORAGE storage);

    // Looks up the buffer entry points. Called while the library initialises OpenGL.
    static bool InitExtensions();

private:
    friend class Mesh;
    friend class MeshRenderer;

    void init(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, float* colors,
              unsigned int colorComponents, unsigned int indexCount, unsigned int* indices, unsigned int mode);
    void CopyArrays(const MeshData& other);
    void CopyBuffers(const MeshData& other);
    void FreeArrays();
    void MeasureVertices();

    // True unless the index buffer is a duplicate with fewer indices than there are.
    bool IndexBufferIsComplete() const { return m_indexBuffer == 0 || m_indexBufferCount >= m_numIndices; }

    static void DeleteBuffer(unsigned int& buffer);
    static bool Upload(unsigned int target, unsigned int& buffer, const void* data, std::size_t bytes);
    static unsigned int DuplicateBuffer(unsigned int target, unsigned int source, std::size_t newBytes,
                                        std::size_t copiedBytes);

    unsigned int m_mode = 4;
    float* m_colorArray = nullptr;
    unsigned int m_colorBuffer = 0;
    bool m_colorArrayExternal = false;
    unsigned int m_colorComponents = 0;
    Vector3f* m_normalArray = nullptr;
    unsigned int m_normalBuffer = 0;
    bool m_normalArrayExternal = false;
    Vector3f* m_vertexArray = nullptr;
    unsigned int m_vertexBuffer = 0;
    bool m_vertexArrayExternal = false;
    unsigned int m_numVertices = 0;
    unsigned int* m_indexArray = nullptr;
    unsigned int m_indexBuffer = 0;
    bool m_indexArrayExternal = false;
    unsigned int m_numIndices = 0;
    unsigned int m_indexBufferCount = 0; // indices that the buffer holds
    bool m_madeByMesh = false;           // a mesh made this data for itself; meshes never delete it

    static bool s_bExtensions;
    static void (*glGenBuffersARB)(int n, unsigned int* buffers);
    static void (*glBindBufferARB)(unsigned int target, unsigned int buffer);
    static void (*glBufferDataARB)(unsigned int target, std::ptrdiff_t size, const void* data, unsigned int usage);
    static void (*glDeleteBuffersARB)(int n, const unsigned int* buffers);
    static void (*glBufferSubDataARB)(unsigned int target, std::ptrdiff_t offset, std::ptrdiff_t size,
                                      const void* data);
    static void (*glGetBufferSubDataARB)(unsigned int target, std::ptrdiff_t offset, std::ptrdiff_t size, void* data);
    static void* (*glMapBufferARB)(unsigned int target, unsigned int access);
    static unsigned char (*glUnMapBufferARB)(unsigned int target);
};

} // namespace KOVA::Quorvex
