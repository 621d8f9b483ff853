// A host as small as one can be: draws a sphere of radius 1 into a picture that shows the square from -2 to 2.

#include <cstdio>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

using namespace KOVA::Quorvex;

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const HWND window = CreateOffscreenWindow(64, 64);
    if (window == nullptr || !Quorvex::Init(window)) {
        std::fprintf(stderr, "The library could not be started.\n");
        return 1;
    }

    View view;
    view.SetProjectionOrthogonalRH(-2.0, 2.0, -2.0, 2.0, 1.0, 10.0);
    view.SetModelviewViewer({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F});

    bool written = false;
    {
        RenderFrame frame;
        frame.SetLight({0.0F, 0.0F, 1.0F});
        frame.SetBackgroundColor(ColorRGBA(0.0F, 0.0F, 0.0F));
        if (frame.Init(window, &view)) {
            frame.Add(MeshBuilder::BuildSphere({0.0F, 0.0F, 0.0F}, 1.0F));
            written = frame.RenderToBitmap(argv[1], 400, 400);
            frame.Release();
        }
    }
    Quorvex::Release();
    ReleaseWindow(window);
    return written ? 0 : 1;
}
