#include "Capabilities.h"

#include <cstddef>

#include <GL/gl.h>

#include <Quorvex/core/Facade.h>
#include <Quorvex/overlay/Text.h>

namespace KOVA::Quorvex::apps {

namespace {

constexpr std::array<Capabilities::Bit, 4> c_bits{{{1, "frame-buffer objects", false},
                                                   {2, "OpenGL initialised", false},
                                                   {4, "volume rendering", false},
                                                   {8, "shaders", false}}};

// What the library asks the driver for.
constexpr std::array<const char*, 7> c_extensions{
    "GL_EXT_framebuffer_object", "GL_ARB_vertex_buffer_object", "GL_EXT_texture3D",           "GL_ARB_shader_objects",
    "GL_ARB_vertex_shader",      "GL_ARB_fragment_shader",      "GL_ARB_shading_language_100"};

std::string DriverString(GLenum name) {
    const auto* text = reinterpret_cast<const char*>(glGetString(name));
    return text != nullptr ? text : "";
}

bool DrawsLabels() {
    Text label("0");
    return label.HasTexture();
}

} // namespace

Capabilities DescribeCapabilities() {
    Capabilities found{
        DriverString(GL_VENDOR), DriverString(GL_RENDERER), DriverString(GL_VERSION), 0, c_bits, DrawsLabels(), {}};
    GLint size = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    found.maxTextureSize = size;
    for (Capabilities::Bit& bit : found.bits) {
        bit.available = Quorvex::CheckQXExtension(bit.bit);
    }
    for (std::size_t i = 0; i < c_extensions.size(); ++i) {
        found.extensions[i] = {c_extensions[i], Quorvex::CheckGLExtension(c_extensions[i])};
    }
    return found;
}

} // namespace KOVA::Quorvex::apps
