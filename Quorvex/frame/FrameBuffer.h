#pragma once

#include <memory>

#include <Quorvex/core/Export.h>

namespace KOVA::Quorvex {

// An off-screen target: a frame-buffer object with a colour texture and a depth (where the driver can: and stencil)
// render buffer. Copies share the names; they are freed once, by ReleaseBuffer or when the last sharer goes. All calls
// need the library's context current; without Init nothing happens and results are false.
class QUORVEX_API FrameBuffer {
public:
    FrameBuffer() = default;
    FrameBuffer(const FrameBuffer& other) = default;
    FrameBuffer& operator=(const FrameBuffer& other) = default;
    ~FrameBuffer() = default;

    // Probes the extension and looks up its entry points; true when frame-buffer objects can be used.
    static bool Init();
    static const char* GetGLExtensionString() { return "GL_EXT_framebuffer_object"; }

    // Forgets that frame-buffer objects can be used. For the end of the process.
    static void Release();

    // Makes the buffers, of width x height pixels, with 8 bits or (floatColor) 32-bit floats a channel. False when no
    // combination of attachments works. Frees what this buffer had before.
    bool InitBuffer(unsigned int width, unsigned int height, bool floatColor);

    // Frees the buffers. The names are still there to be asked for until the next InitBuffer.
    void ReleaseBuffer();

    // Makes the buffers anew when size or kind differ from the last call's, successful or not.
    void SetInternalResolution(unsigned int width, unsigned int height, bool floatColor);

    void Begin() const; // binds the colour texture to GL_TEXTURE_2D
    void End();         // binds texture 0
    void BeginCapture();
    void EndCapture(); // binds the window

    // The frame-buffer object that is drawn to now (0 is the window), and drawing to one that was asked for before.
    static unsigned int GetBoundName();
    static void BindName(unsigned int frameBuffer);

    bool BufferInit() const;
    bool IsInit() const;
    bool SupportsStencil() const { return m_stencil; }
    bool SupportsDepth() const { return true; }

    unsigned int GetWidth() const { return m_width; }
    unsigned int GetHeight() const { return m_height; }
    unsigned int GetTexture() const;

    static bool m_bInitialized;

private:
    struct Names;
    bool AttachDepth(unsigned int format, bool stencil);
    void AttachColorTexture();

    unsigned int m_width = 0;
    unsigned int m_height = 0;
    std::shared_ptr<Names> m_names;
    bool m_stencil = false;
    bool m_floatColor = false;

    static void (*glGenFramebuffersEXT)(int n, unsigned int* names);
    static void (*glBindFramebufferEXT)(unsigned int target, unsigned int name);
    static void (*glGenRenderbuffersEXT)(int n, unsigned int* names);
    static void (*glBindRenderbufferEXT)(unsigned int target, unsigned int name);
    static void (*glDeleteFramebuffersEXT)(int n, const unsigned int* names);
    static void (*glDeleteRenderbuffersEXT)(int n, const unsigned int* names);
    static void (*glRenderbufferStorageEXT)(unsigned int target, unsigned int format, int width, int height);
    static void (*glFramebufferTexture2DEXT)(unsigned int target, unsigned int attachment, unsigned int textureTarget,
                                             unsigned int texture, int level);
    static void (*glFramebufferRenderbufferEXT)(unsigned int target, unsigned int attachment,
                                                unsigned int renderbufferTarget, unsigned int renderbuffer);
    static unsigned int (*glCheckFramebufferStatusEXT)(unsigned int target);
};

} // namespace KOVA::Quorvex
