#include <Quorvex/mesh/MeshData.h>

#include <algorithm>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Memory.h>

namespace KOVA::Quorvex {

namespace {

template <class T> T* AllocateArray(std::size_t count) {
    T* array = new T[count];
    platform::AdviseLargeBlock(array, count * sizeof(T));
    return array;
}

template <class T> T* CopyArray(const T* source, std::size_t count) {
    if (source == nullptr) {
        return nullptr;
    }
    T* copy = AllocateArray<T>(count);
    std::copy_n(source, count, copy);
    return copy;
}

template <class T> bool CreateArray(T*& array, bool& external, T* adopted, std::size_t count) {
    if (array == nullptr) {
        external = adopted != nullptr;
        array = external ? adopted : AllocateArray<T>(count);
    }
    return true;
}

template <class T> void FreeArray(T*& array, bool external) {
    if (!external) {
        delete[] array;
    }
    array = nullptr;
}

} // namespace

MeshData::MeshData() = default;

MeshData::MeshData(unsigned int vertexCount, unsigned int mode) : m_mode(mode), m_numVertices(vertexCount) {}

MeshData::MeshData(unsigned int vertexCount, unsigned int indexCount, unsigned int mode)
    : m_mode(mode), m_numVertices(vertexCount), m_numIndices(indexCount) {}

MeshData::MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGB* colors,
                   unsigned int mode) {
    init(vertexCount, vertices, normals, reinterpret_cast<float*>(colors), 3, 0, nullptr, mode);
}

MeshData::MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGBA* colors,
                   unsigned int mode) {
    init(vertexCount, vertices, normals, reinterpret_cast<float*>(colors), 4, 0, nullptr, mode);
}

MeshData::MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGB* colors,
                   unsigned int indexCount, unsigned int* indices, unsigned int mode) {
    init(vertexCount, vertices, normals, reinterpret_cast<float*>(colors), 3, indexCount, indices, mode);
}

MeshData::MeshData(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, ColorRGBA* colors,
                   unsigned int indexCount, unsigned int* indices, unsigned int mode) {
    init(vertexCount, vertices, normals, reinterpret_cast<float*>(colors), 4, indexCount, indices, mode);
}

void MeshData::init(unsigned int vertexCount, Vector3f* vertices, Vector3f* normals, float* colors,
                    unsigned int colorComponents, unsigned int indexCount, unsigned int* indices, unsigned int mode) {
    m_mode = mode;
    m_numVertices = vertexCount;
    m_numIndices = indexCount;
    m_vertexArray = vertices;
    m_vertexArrayExternal = vertices != nullptr;
    m_normalArray = normals;
    m_normalArrayExternal = normals != nullptr;
    m_colorArray = colors;
    m_colorArrayExternal = colors != nullptr;
    m_colorComponents = colors != nullptr ? colorComponents : 0;
    m_indexArray = indices;
    m_indexArrayExternal = indices != nullptr;
}

// The delegation lets the destructor free what was copied when memory runs out half-way.
MeshData::MeshData(const MeshData& other) : MeshData() {
    m_mode = other.m_mode; // NOLINT(cppcoreguidelines-prefer-member-initializer): a delegating constructor has none
    CopyGeometry(other);
    CopyArrays(other);
}

MeshData& MeshData::operator=(const MeshData& other) {
    if (this != &other) {
        FreeArrays();
        m_mode = other.m_mode;
        CopyGeometry(other);
        CopyArrays(other);
    }
    return *this;
}

MeshData::~MeshData() {
    if (GetInstanceCounter() == 1) {
        FreeArrays();
    }
    DecInstanceCounter();
}

void MeshData::CopyArrays(const MeshData& other) {
    m_colorArrayExternal = m_normalArrayExternal = m_vertexArrayExternal = m_indexArrayExternal = false;
    m_numVertices = other.m_numVertices;
    m_numIndices = other.m_numIndices;
    m_colorComponents = other.m_colorArray != nullptr ? other.m_colorComponents : 0;
    const std::size_t vertices = m_numVertices;
    m_colorArray = CopyArray(other.m_colorArray, vertices * m_colorComponents);
    m_normalArray = CopyArray(other.m_normalArray, vertices);
    m_vertexArray = CopyArray(other.m_vertexArray, vertices);
    m_indexArray = CopyArray(other.m_indexArray, m_numIndices);
    CopyBuffers(other);
}

void MeshData::FreeArrays() {
    FreeArray(m_colorArray, m_colorArrayExternal);
    FreeArray(m_normalArray, m_normalArrayExternal);
    FreeArray(m_vertexArray, m_vertexArrayExternal);
    FreeArray(m_indexArray, m_indexArrayExternal);
    DeleteBuffer(m_colorBuffer);
    DeleteBuffer(m_normalBuffer);
    DeleteBuffer(m_vertexBuffer);
    DeleteBuffer(m_indexBuffer);
}

unsigned int MeshData::GetNumColors() const {
    return m_colorArray != nullptr || m_colorBuffer != 0 ? m_numVertices : 0;
}

unsigned int MeshData::GetNumNormals() const {
    return m_normalArray != nullptr || m_normalBuffer != 0 ? m_numVertices : 0;
}

unsigned int MeshData::GetNumVertices() const {
    return m_vertexArray != nullptr || m_vertexBuffer != 0 ? m_numVertices : 0;
}

bool MeshData::CreateVertexArray(Vector3f* p) {
    return CreateArray(m_vertexArray, m_vertexArrayExternal, p, m_numVertices);
}

bool MeshData::CreateNormalArray(Vector3f* p) {
    return CreateArray(m_normalArray, m_normalArrayExternal, p, m_numVertices);
}

bool MeshData::CreateIndexArray(unsigned int* p) {
    return CreateArray(m_indexArray, m_indexArrayExternal, p, m_numIndices);
}

bool MeshData::CreateColorArray(unsigned int components, float* p) {
    if (m_colorArray != nullptr) {
        return components == m_colorComponents && (p == nullptr || p == m_colorArray);
    }
    m_colorComponents = components;
    return CreateArray(m_colorArray, m_colorArrayExternal, p, static_cast<std::size_t>(m_numVertices) * components);
}

void MeshData::SetColor(unsigned int i, const ColorRGB& color) {
    if (m_colorArray != nullptr && m_colorComponents == 3) {
        std::copy_n(&color.r, 3, m_colorArray + static_cast<std::size_t>(i) * 3);
    }
}

void MeshData::SetColor(unsigned int i, const ColorRGBA& color) {
    if (m_colorArray != nullptr && m_colorComponents == 4) {
        std::copy_n(&color.r, 4, m_colorArray + static_cast<std::size_t>(i) * 4);
    }
}

bool MeshData::GetColor(unsigned int i, ColorRGB* color) const {
    if (m_colorArray == nullptr || m_colorComponents != 3) {
        return false;
    }
    const float* c = m_colorArray + static_cast<std::size_t>(i) * 3;
    *color = ColorRGB(c[0], c[1], c[2]);
    return true;
}

bool MeshData::GetColor(unsigned int i, ColorRGBA* color) const {
    if (m_colorArray == nullptr || m_colorComponents != 4) {
        return false;
    }
    const float* c = m_colorArray + static_cast<std::size_t>(i) * 4;
    *color = ColorRGBA(c[0], c[1], c[2], c[3]);
    return true;
}

void MeshData::Move(const Vector3f& d) {
    if (m_vertexArray == nullptr) {
        return;
    }
    for (unsigned int i = 0; i < m_numVertices; ++i) {
        m_vertexArray[i] += d;
    }
    SetBB0(GetBB0() + d);
    SetBB1(GetBB1() + d);
    SetCenter(GetCenter() + d);
}

bool MeshData::ComputeNormals(bool /*unused*/) {
    if (m_vertexArray == nullptr || m_indexArray == nullptr) {
        return true;
    }
    CreateNormalArray(nullptr);
    std::fill_n(m_normalArray, m_numVertices, Vector3f(0.0F, 0.0F, 0.0F));
    for (std::size_t i = 0; i + 2 < m_numIndices; i += 3) {
        const unsigned int* corner = m_indexArray + i;
        const Vector3f& origin = m_vertexArray[corner[0]];
        const Vector3f normal =
            Normalize(CrossProduct(m_vertexArray[corner[1]] - origin, m_vertexArray[corner[2]] - origin));
        for (int k = 0; k < 3; ++k) {
            m_normalArray[corner[k]] += normal;
        }
    }
    for (unsigned int i = 0; i < m_numVertices; ++i) {
        m_normalArray[i].Normalize();
    }
    return true;
}

bool MeshData::UpdateMetrics() {
    if (m_vertexArray == nullptr) {
        return false;
    }
    if (m_numVertices > 0) {
        MeasureVertices();
    }
    return true;
}

void MeshData::MeasureVertices() {
    Vector3f low = m_vertexArray[0];
    Vector3f high = m_vertexArray[0];
    for (unsigned int i = 1; i < m_numVertices; ++i) {
        const Vector3f& v = m_vertexArray[i];
        low = Vector3f(v.x < low.x ? v.x : low.x, v.y < low.y ? v.y : low.y, v.z < low.z ? v.z : low.z);
        high = Vector3f(v.x > high.x ? v.x : high.x, v.y > high.y ? v.y : high.y, v.z > high.z ? v.z : high.z);
    }
    SetBB0(low);
    SetBB1(high);
    SetCenter((low + high) * 0.5F);
    SetRadius(0.5F * Length(low - high));
}

} // namespace KOVA::Quorvex
