// The smallest host: draws an STL file to a bitmap without a window or a display.
// Usage: headless IN.stl OUT.bmp. Exit code 0 done, 1 failed, 2 wrong usage.

#include <cstdio>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

using namespace KOVA::Quorvex;

// Draws the mesh from the direction (1, 1, 1) at a distance at which all of it is in the picture.
static bool DrawToBitmap(HWND window, const Mesh& mesh, const char* path) {
    const float radius = mesh.GetRadius() > 0.0F ? mesh.GetRadius() : 1.0F;
    View view;
    view.SetProjectionR(0.8F, radius, 5.0F * radius); // right-handed, so that the part is not mirrored
    view.SetModelviewViewer(mesh.GetCenter() + Vector3f(1.0F, 1.0F, 1.0F) * (1.75F * radius), mesh.GetCenter(),
                            {0.0F, 1.0F, 0.0F});

    RenderFrame frame;
    if (!frame.Init(window, &view)) {
        return false;
    }
    frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer
    frame.SetAntiAliasing(2.0F);
    frame.Add(mesh)->GetData().Update(STORAGE_VBO);
    return frame.RenderToBitmap(path, 800, 800);
}

static int Fail(const char* what, const char* name) {
    std::fprintf(stderr, "headless: %s %s\n", what, name);
    return 1;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: headless IN.stl OUT.bmp\n", stderr);
        return 2;
    }
    const HWND window = CreateOffscreenWindow(64, 64); // carries the context; pictures have a size of their own
    if (window == nullptr || !Quorvex::Init(window)) {
        return Fail("cannot start", "OpenGL");
    }
    bool drawn = false;
    bool read = false;
    { // everything that holds GL objects goes before the context
        const Mesh mesh = MeshReader::ReadSTLTolerant(argv[1]);
        read = MeshReader::GetError() == MR_NO_ERROR && mesh.GetData().GetNumVertices() != 0;
        drawn = read && DrawToBitmap(window, mesh, argv[2]);
    }
    Quorvex::Release();
    ReleaseWindow(window);
    return drawn ? 0 : read ? Fail("cannot write", argv[2]) : Fail("cannot read", argv[1]);
}
