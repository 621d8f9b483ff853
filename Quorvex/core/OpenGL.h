#pragma once

// The OpenGL interface for the library's sources; public headers do without it.

#include <GL/gl.h>

#include <GL/glext.h>
