// MeshData's buffer objects on the graphics card.

#include <algorithm>
#include <cassert>
#include <vector>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/ExtensionTokens.h>
#include <Quorvex/core/GlThread.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/mesh/MeshData.h>

namespace KOVA::Quorvex {

bool MeshData::s_bExtensions = false;
void (*MeshData::glGenBuffersARB)(int, unsigned int*) = nullptr;
void (*MeshData::glBindBufferARB)(unsigned int, unsigned int) = nullptr;
void (*MeshData::glBufferDataARB)(unsigned int, std::ptrdiff_t, const void*, unsigned int) = nullptr;
void (*MeshData::glDeleteBuffersARB)(int, const unsigned int*) = nullptr;
void (*MeshData::glBufferSubDataARB)(unsigned int, std::ptrdiff_t, std::ptrdiff_t, const void*) = nullptr;
void (*MeshData::glGetBufferSubDataARB)(unsigned int, std::ptrdiff_t, std::ptrdiff_t, void*) = nullptr;
void* (*MeshData::glMapBufferARB)(unsigned int, unsigned int) = nullptr;
unsigned char (*MeshData::glUnMapBufferARB)(unsigned int) = nullptr;

bool MeshData::InitExtensions() {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (extensions == nullptr || !AreExtensionTokens(extensions, "GL_ARB_vertex_buffer_object")) {
        return false;
    }
    LoadEntryPoint(glGenBuffersARB, "glGenBuffersARB");
    LoadEntryPoint(glBindBufferARB, "glBindBufferARB");
    LoadEntryPoint(glBufferDataARB, "glBufferDataARB");
    LoadEntryPoint(glDeleteBuffersARB, "glDeleteBuffersARB");
    LoadEntryPoint(glBufferSubDataARB, "glBufferSubDataARB");
    LoadEntryPoint(glGetBufferSubDataARB, "glGetBufferSubDataARB");
    LoadEntryPoint(glMapBufferARB, "glMapBufferARB");
    LoadEntryPoint(glUnMapBufferARB, "glUnMapBufferARB"); // spelt so on purpose; drivers hardly export it
    s_bExtensions = s_bExtensions || (glGenBuffersARB != nullptr && glBindBufferARB != nullptr &&
                                      glBufferDataARB != nullptr && glDeleteBuffersARB != nullptr &&
                                      glBufferSubDataARB != nullptr && glGetBufferSubDataARB != nullptr);
    return s_bExtensions;
}

bool MeshData::Update(STORAGE storage) {
    if (storage != STORAGE_VBO) {
        return false;
    }
    UpdateColorArray(storage);
    UpdateNormalArray(storage);
    UpdateVertexArray(storage);
    UpdateIndexArray(storage);
    return true;
}

bool MeshData::UpdateColorArray(STORAGE storage) {
    return storage == STORAGE_VBO &&
           Upload(GL_ARRAY_BUFFER_ARB, m_colorBuffer, m_colorArray, sizeof(float) * m_numVertices * m_colorComponents);
}

bool MeshData::UpdateNormalArray(STORAGE storage) {
    return storage == STORAGE_VBO &&
           Upload(GL_ARRAY_BUFFER_ARB, m_normalBuffer, m_normalArray, sizeof(Vector3f) * m_numVertices);
}

bool MeshData::UpdateVertexArray(STORAGE storage) {
    if (storage != STORAGE_VBO || m_vertexArray == nullptr) {
        return false;
    }
    UpdateMetrics();
    return Upload(GL_ARRAY_BUFFER_ARB, m_vertexBuffer, m_vertexArray, sizeof(Vector3f) * m_numVertices);
}

bool MeshData::UpdateIndexArray(STORAGE storage) {
    if (storage != STORAGE_VBO || m_indexArray == nullptr) {
        return false;
    }
    if (!IndexBufferIsComplete()) {
        DeleteBuffer(m_indexBuffer); // a duplicate that is too short to be filled in place
    }
    const bool uploaded = Upload(GL_ELEMENT_ARRAY_BUFFER_ARB, m_indexBuffer, m_indexArray,
                                 sizeof(unsigned int) * std::size_t{m_numIndices});
    m_indexBufferCount = m_indexBuffer != 0 ? m_numIndices : 0;
    return uploaded;
}

bool MeshData::Upload(unsigned int target, unsigned int& buffer, const void* data, std::size_t bytes) {
    if (data == nullptr) {
        return false;
    }
    if (!s_bExtensions) {
        return true;
    }
    assert(IsGlThread());
    const auto size = static_cast<std::ptrdiff_t>(bytes);
    if (buffer != 0) {
        glBindBufferARB(target, buffer);
        glBufferSubDataARB(target, 0, size, data);
    } else {
        glGenBuffersARB(1, &buffer);
        glBindBufferARB(target, buffer);
        glBufferDataARB(target, size, data, GL_STATIC_DRAW_ARB);
    }
    glBindBufferARB(target, 0);
    if (glGetError() != GL_NO_ERROR) {
        DeleteBuffer(buffer);
        return false;
    }
    return true;
}

void MeshData::DeleteBuffer(unsigned int& buffer) {
    if (buffer != 0 && glDeleteBuffersARB != nullptr) {
        assert(IsGlThread());
        glDeleteBuffersARB(1, &buffer);
    }
    buffer = 0;
}

void MeshData::CopyBuffers(const MeshData& other) {
    const std::size_t vertices = m_numVertices;
    const std::size_t colorBytes = vertices * other.m_colorComponents * sizeof(float);
    m_colorBuffer = DuplicateBuffer(GL_ARRAY_BUFFER_ARB, other.m_colorBuffer, colorBytes, colorBytes);
    m_normalBuffer = DuplicateBuffer(GL_ARRAY_BUFFER_ARB, other.m_normalBuffer, vertices * sizeof(Vector3f),
                                     vertices * sizeof(Vector3f));
    m_vertexBuffer = DuplicateBuffer(GL_ARRAY_BUFFER_ARB, other.m_vertexBuffer, vertices * sizeof(Vector3f),
                                     vertices * sizeof(Vector3f));

    // The duplicate has one index for every vertex, whatever the number of indices: what of it holds indices is
    // remembered, so that drawing does not read past them.
    const std::size_t filled = std::min(m_numVertices, other.m_indexBufferCount);
    m_indexBuffer = DuplicateBuffer(GL_ELEMENT_ARRAY_BUFFER_ARB, other.m_indexBuffer, vertices * sizeof(unsigned int),
                                    filled * sizeof(unsigned int));
    m_indexBufferCount = m_indexBuffer != 0 ? static_cast<unsigned int>(filled) : 0;
}

// A new buffer of newBytes bytes, of which the first copiedBytes are those of the source; 0 when there is no source.
unsigned int MeshData::DuplicateBuffer(unsigned int target, unsigned int source, std::size_t newBytes,
                                       std::size_t copiedBytes) {
    if (source == 0) {
        return 0;
    }
    assert(IsGlThread());
    // Without a way to unmap a buffer it must not be mapped: it could not be drawn from any more.
    const bool canMap = glMapBufferARB != nullptr && glUnMapBufferARB != nullptr;
    std::vector<unsigned char> contents;
    glBindBufferARB(target, source);
    const void* data = canMap ? glMapBufferARB(target, GL_READ_ONLY_ARB) : nullptr;
    const bool mapped = data != nullptr;
    if (!mapped) {
        contents.resize(copiedBytes);
        glGetBufferSubDataARB(target, 0, static_cast<std::ptrdiff_t>(copiedBytes), contents.data());
        data = contents.data();
    }

    unsigned int copy = 0;
    glGenBuffersARB(1, &copy);
    glBindBufferARB(target, copy);
    glBufferDataARB(target, static_cast<std::ptrdiff_t>(newBytes), nullptr, GL_STATIC_DRAW_ARB);
    glBufferSubDataARB(target, 0, static_cast<std::ptrdiff_t>(copiedBytes), data);
    if (mapped) {
        glBindBufferARB(target, source);
        glUnMapBufferARB(target);
    }
    glBindBufferARB(target, 0);
    return copy;
}

} // namespace KOVA::Quorvex
