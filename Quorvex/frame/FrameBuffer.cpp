#include <Quorvex/frame/FrameBuffer.h>

#include <cassert>

#include <Quorvex/core/EntryPoints.h>
#include <Quorvex/core/ExtensionTokens.h>
#include <Quorvex/core/GlThread.h>

namespace KOVA::Quorvex {

bool FrameBuffer::m_bInitialized = false;
void (*FrameBuffer::glGenFramebuffersEXT)(int, unsigned int*) = nullptr;
void (*FrameBuffer::glBindFramebufferEXT)(unsigned int, unsigned int) = nullptr;
void (*FrameBuffer::glGenRenderbuffersEXT)(int, unsigned int*) = nullptr;
void (*FrameBuffer::glBindRenderbufferEXT)(unsigned int, unsigned int) = nullptr;
void (*FrameBuffer::glDeleteFramebuffersEXT)(int, const unsigned int*) = nullptr;
void (*FrameBuffer::glDeleteRenderbuffersEXT)(int, const unsigned int*) = nullptr;
void (*FrameBuffer::glRenderbufferStorageEXT)(unsigned int, unsigned int, int, int) = nullptr;
void (*FrameBuffer::glFramebufferTexture2DEXT)(unsigned int, unsigned int, unsigned int, unsigned int, int) = nullptr;
void (*FrameBuffer::glFramebufferRenderbufferEXT)(unsigned int, unsigned int, unsigned int, unsigned int) = nullptr;
unsigned int (*FrameBuffer::glCheckFramebufferStatusEXT)(unsigned int) = nullptr;

// The GL objects, shared by the copies of a frame buffer.
struct FrameBuffer::Names {
    unsigned int frameBuffer = 0;
    unsigned int texture = 0;
    unsigned int renderBuffer = 0;
    bool freed = false; // the names are still to be asked for, but belong to nobody

    Names() = default;
    Names(const Names&) = delete;
    Names& operator=(const Names&) = delete;
    ~Names() { Free(); }

    void Free() {
        if (freed || !m_bInitialized) {
            return;
        }
        assert(IsGlThread());
        freed = true;
        if (frameBuffer != 0) {
            glDeleteFramebuffersEXT(1, &frameBuffer);
        }
        if (renderBuffer != 0) {
            glDeleteRenderbuffersEXT(1, &renderBuffer);
        }
        if (texture != 0) {
            glDeleteTextures(1, &texture);
        }
    }
};

bool FrameBuffer::Init() {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (extensions == nullptr || !AreExtensionTokens(extensions, GetGLExtensionString())) {
        return false;
    }
    LoadEntryPoint(glGenFramebuffersEXT, "glGenFramebuffersEXT");
    LoadEntryPoint(glBindFramebufferEXT, "glBindFramebufferEXT");
    LoadEntryPoint(glGenRenderbuffersEXT, "glGenRenderbuffersEXT");
    LoadEntryPoint(glBindRenderbufferEXT, "glBindRenderbufferEXT");
    LoadEntryPoint(glDeleteFramebuffersEXT, "glDeleteFramebuffersEXT");
    LoadEntryPoint(glDeleteRenderbuffersEXT, "glDeleteRenderbuffersEXT");
    LoadEntryPoint(glRenderbufferStorageEXT, "glRenderbufferStorageEXT");
    LoadEntryPoint(glFramebufferTexture2DEXT, "glFramebufferTexture2DEXT");
    LoadEntryPoint(glFramebufferRenderbufferEXT, "glFramebufferRenderbufferEXT");
    LoadEntryPoint(glCheckFramebufferStatusEXT, "glCheckFramebufferStatusEXT");
    if (glGenFramebuffersEXT == nullptr || glBindFramebufferEXT == nullptr || glGenRenderbuffersEXT == nullptr ||
        glBindRenderbufferEXT == nullptr || glDeleteFramebuffersEXT == nullptr || glDeleteRenderbuffersEXT == nullptr ||
        glRenderbufferStorageEXT == nullptr || glFramebufferTexture2DEXT == nullptr ||
        glFramebufferRenderbufferEXT == nullptr) {
        return false;
    }
    m_bInitialized = true;
    return true;
}

void FrameBuffer::Release() {
    m_bInitialized = false;
}

bool FrameBuffer::InitBuffer(unsigned int width, unsigned int height, bool floatColor) {
    if (!m_bInitialized) {
        return false;
    }
    assert(IsGlThread());
    ReleaseBuffer();
    m_width = width;
    m_height = height;
    m_floatColor = floatColor;
    m_names = std::make_shared<Names>();

    glGenFramebuffersEXT(1, &m_names->frameBuffer);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_names->frameBuffer);
    glGenRenderbuffersEXT(1, &m_names->renderBuffer);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, m_names->renderBuffer);
    AttachColorTexture();
    m_stencil = AttachDepth(GL_DEPTH24_STENCIL8_EXT, true);
    const bool complete = m_stencil || AttachDepth(GL_DEPTH_COMPONENT24, false);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    return complete;
}

void FrameBuffer::AttachColorTexture() {
    glGenTextures(1, &m_names->texture);
    glBindTexture(GL_TEXTURE_2D, m_names->texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, m_floatColor ? GL_RGBA32F_ARB : GL_RGBA, static_cast<GLsizei>(m_width),
                 static_cast<GLsizei>(m_height), 0, GL_RGBA, m_floatColor ? GL_FLOAT : GL_UNSIGNED_INT, nullptr);
    glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D, m_names->texture, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

// Gives the bound render buffer its storage and attaches it; true when the frame buffer can be drawn to then.
bool FrameBuffer::AttachDepth(unsigned int format, bool stencil) {
    const GLuint name = m_names->renderBuffer;
    glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, format, static_cast<GLsizei>(m_width),
                             static_cast<GLsizei>(m_height));
    glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT, name);
    glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_STENCIL_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT,
                                 stencil ? name : 0);
    // Not every driver of the extension's first days exports the query; there the attachments are trusted.
    const bool complete = glCheckFramebufferStatusEXT == nullptr ||
                          glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
    if (!complete) {
        static_cast<void>(glGetError());
    }
    return complete;
}

void FrameBuffer::ReleaseBuffer() {
    if (m_names != nullptr) {
        m_names->Free();
    }
}

void FrameBuffer::SetInternalResolution(unsigned int width, unsigned int height, bool floatColor) {
    if (m_bInitialized && (width != m_width || height != m_height || floatColor != m_floatColor)) {
        InitBuffer(width, height, floatColor);
    }
}

void FrameBuffer::Begin() const {
    if (m_bInitialized) {
        glBindTexture(GL_TEXTURE_2D, GetTexture());
    }
}

void FrameBuffer::End() {
    if (m_bInitialized) {
        glBindTexture(GL_TEXTURE_2D, 0);
    }
}

void FrameBuffer::BeginCapture() {
    BindName(m_names != nullptr ? m_names->frameBuffer : 0);
}

void FrameBuffer::EndCapture() {
    BindName(0);
}

unsigned int FrameBuffer::GetBoundName() {
    GLint name = 0;
    if (m_bInitialized) {
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &name);
    }
    return static_cast<unsigned int>(name);
}

void FrameBuffer::BindName(unsigned int frameBuffer) {
    if (m_bInitialized) {
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, frameBuffer);
    }
}

bool FrameBuffer::BufferInit() const {
    return GetTexture() != 0;
}

bool FrameBuffer::IsInit() const {
    return m_names != nullptr && m_names->frameBuffer != 0;
}

unsigned int FrameBuffer::GetTexture() const {
    return m_names != nullptr ? m_names->texture : 0;
}

} // namespace KOVA::Quorvex
