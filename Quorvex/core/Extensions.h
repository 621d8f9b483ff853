#pragma once

#include <Quorvex/core/Export.h>

// What the OpenGL driver offers. All functions need a current context.

namespace KOVA::Quorvex {

// True when name is a whole token of the driver's extension string. A name with a blank, or none, is not supported.
QUORVEX_API bool isExtensionSupported(const char* name);

// True when the driver's major version is at least major; minor takes no part.
QUORVEX_API bool isVersionNewerThan(int major, int minor = 0);

// Look up the entry points beyond OpenGL 1.1 that the renderers use; one that the driver lacks stays null.
QUORVEX_API void initOpenGL1_3Extensions();
QUORVEX_API void init3DTextureExtension();
QUORVEX_API void initShader();

// Takes one error off the driver's queue. Drawing code calls it between its steps; debug builds can report here.
QUORVEX_API void CHECK_GL_ERROR();

} // namespace KOVA::Quorvex
