// What the seam answers to formats that the system does not have. (On Windows the system picks the nearest one
// instead.)

#include <Quorvex/platform/Gl.h>
#include <Quorvex/platform/WindowSystem.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class FormatsGLTest : public GlTest {};

// Formats that no driver has, and one that the surfaces of the process cannot be given any more.
TEST_F(FormatsGLTest, ImpossibleFormatsAreRefused) {
    HWND window = CreateOffscreenWindow(8, 8);
    const HDC deviceContext = platform::AcquireDeviceContext(window);
    platform::PixelFormat format;
    format.depthBits = 100;
    EXPECT_FALSE(platform::SetPixelFormat(deviceContext, format));
    EXPECT_EQ(platform::CreateContext(deviceContext, nullptr), nullptr);
    EXPECT_FALSE(platform::MakeCurrent(deviceContext, Library::GetRenderContext()));
    EXPECT_TRUE(platform::SetPixelFormat(deviceContext, {}));
    EXPECT_TRUE(platform::SetPixelFormat(deviceContext, format)) << "set once, it stays";
    platform::ReleaseDeviceContext(window, deviceContext);
    ReleaseWindow(window);
}

} // namespace
} // namespace KOVA::Quorvex::test
