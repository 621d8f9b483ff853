#pragma once

#include <Quorvex/platform/Gl.h>

namespace KOVA::Quorvex::platform {

// What the system is asked for.
PIXELFORMATDESCRIPTOR DescribeFormat(const PixelFormat& format);

} // namespace KOVA::Quorvex::platform
