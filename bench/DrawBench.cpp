// Drawing and capturing beside what bounds them: the same triangles by bare OpenGL calls, and the read-back of the same
// pixels. A subject and its limit take turns, so that both see the same machine; the counters are medians in
// milliseconds, and ratio is the subject's time over the limit's.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Gl.h>

#include "Stage.h"

namespace {

using namespace KOVA::Quorvex;

constexpr unsigned int WIDTH = Stage::WIDTH;
constexpr unsigned int HEIGHT = Stage::HEIGHT;
constexpr unsigned int MILLION_TRIANGLES = 1000; // columns of the sphere

Stage& LookAtTheSphere() {
    Stage& stage = TheStage();
    stage.view.SetProjectionPerspectiveRH(0.6F, 1, 10);
    stage.view.SetModelviewViewer({0, 1, 4}, {0, 0, 0}, {0, 1, 0});
    return stage;
}

// The same arrays by the shortest way that gives the same light: one clear, one draw call into an off-screen target.
class BareDraw {
public:
    BareDraw(const MeshData& data, const View& view) : m_data(data) {
        m_target.InitBuffer(WIDTH, HEIGHT, false);
        Upload(m_vertices, data.GetVertexArray());
        Upload(m_normals, data.GetNormalArray());
        std::copy_n(view.GetProjectionMatrix(), 16, m_projection);
        m_projection[5] *= static_cast<double>(WIDTH) / HEIGHT;
        std::copy_n(view.GetModelviewMatrix(), 16, m_modelview);
    }

    void operator()() {
        m_target.BeginCapture();
        glViewport(0, 0, WIDTH, HEIGHT);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(m_projection);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(m_modelview);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_LIGHTING);
        glEnable(GL_NORMALIZE);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_NORMAL_ARRAY);
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, m_vertices);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, m_normals);
        glNormalPointer(GL_FLOAT, 0, nullptr);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_data.GetNumVertices()));
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, 0);
        glDisable(GL_LIGHTING);
        m_target.EndCapture();
        glFinish();
    }

    // Positions alone, in selection mode, with the projection on one pixel.
    void Select(double x, double y) {
        GLuint hits[64];
        glViewport(0, 0, WIDTH, HEIGHT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glTranslated(WIDTH - 2.0 * x, HEIGHT - 2.0 * y, 0.0);
        glScaled(WIDTH, HEIGHT, 1.0);
        glMultMatrixd(m_projection);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(m_modelview);
        glSelectBuffer(64, hits);
        glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(1);
        glEnableClientState(GL_VERTEX_ARRAY);
        glDisableClientState(GL_NORMAL_ARRAY);
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, m_vertices);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_data.GetNumVertices()));
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, 0);
        if (glRenderMode(GL_RENDER) != 1) {
            std::fprintf(stderr, "nothing was selected\n");
            std::exit(1);
        }
    }

private:
    void Upload(GLuint& buffer, const Vector3f* array) {
        const auto bytes = static_cast<std::ptrdiff_t>(sizeof(Vector3f) * m_data.GetNumVertices());
        m_genBuffers(1, &buffer);
        m_bindBuffer(GL_ARRAY_BUFFER_ARB, buffer);
        m_bufferData(GL_ARRAY_BUFFER_ARB, bytes, array, GL_STATIC_DRAW_ARB);
    }

    template <class Function> static Function Get(const char* name) {
        return reinterpret_cast<Function>(platform::GetGlProcedure(name));
    }

    const MeshData& m_data;
    FrameBuffer m_target;
    GLuint m_vertices = 0;
    GLuint m_normals = 0;
    double m_projection[16];
    double m_modelview[16];
    PFNGLGENBUFFERSARBPROC m_genBuffers = Get<PFNGLGENBUFFERSARBPROC>("glGenBuffersARB");
    PFNGLBINDBUFFERARBPROC m_bindBuffer = Get<PFNGLBINDBUFFERARBPROC>("glBindBufferARB");
    PFNGLBUFFERDATAARBPROC m_bufferData = Get<PFNGLBUFFERDATAARBPROC>("glBufferDataARB");
};

// A lit frame of a million triangles, shown in the window, beside the bare draw call.
void LitFrame(benchmark::State& state) {
    Stage& stage = LookAtTheSphere();
    Mesh mesh = BuildWavySphere(MILLION_TRIANGLES);
    stage.frame.Clear();
    stage.frame.Add(mesh);
    BareDraw bare(mesh.GetData(), stage.view);
    std::vector<double> limits;
    std::vector<double> subjects;
    stage.frame.Render(true, WIDTH, HEIGHT);
    bare();
    for ([[maybe_unused]] auto _ : state) {
        limits.push_back(Milliseconds(bare));
        subjects.push_back(Milliseconds([&stage] {
            stage.frame.Render(true, WIDTH, HEIGHT);
            glFinish();
        }));
        state.SetIterationTime(subjects.back() / 1000.0);
    }
    state.counters["frame_ms"] = Median(subjects);
    state.counters["bare_ms"] = Median(limits);
    state.counters["ratio"] = Median(subjects) / Median(limits);
    stage.frame.Clear();
}
BENCHMARK(LitFrame)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(31);

// Asking for the mesh under a pixel of a million triangles, beside a bare draw call of its buffer in selection mode.
void HitTest(benchmark::State& state) {
    Stage& stage = LookAtTheSphere();
    Mesh mesh = BuildWavySphere(MILLION_TRIANGLES);
    stage.frame.Clear();
    Mesh* const stored = stage.frame.Add(mesh);
    BareDraw bare(mesh.GetData(), stage.view);
    std::vector<double> limits;
    std::vector<double> subjects;
    stage.frame.Render(true, WIDTH, HEIGHT);
    glFinish();
    for ([[maybe_unused]] auto _ : state) {
        limits.push_back(Milliseconds([&bare] { bare.Select(0.5 * WIDTH, 0.5 * HEIGHT); }));
        Mesh* hit = nullptr;
        subjects.push_back(Milliseconds([&] { hit = stage.frame.HitTest(WIDTH / 2, HEIGHT / 2); }));
        if (hit != stored) {
            state.SkipWithError("the mesh was not hit");
            break;
        }
        state.SetIterationTime(subjects.back() / 1000.0);
    }
    state.counters["pick_ms"] = Median(subjects);
    state.counters["bare_ms"] = Median(limits);
    state.counters["ratio"] = Median(subjects) / Median(limits);
    stage.frame.Clear();
}
BENCHMARK(HitTest)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(31);

// A picture of 1920 x 1080 written as a bitmap, beside drawing it, reading its texture back and writing as many bytes
// in one call.
void BitmapCapture(benchmark::State& state) {
    constexpr unsigned int width = 1920;
    constexpr unsigned int height = 1080;
    Stage& stage = LookAtTheSphere();
    stage.frame.Clear();
    stage.frame.Add(MeshBuilder::BuildSphere({0, 0, 0}, 1.0F))->GetData().Update(STORAGE_VBO);
    const std::string path =
        (std::filesystem::temp_directory_path() / ("quorvex-bench-" + std::to_string(getpid()) + ".bmp")).string();
    std::vector<unsigned char> pixels(std::size_t{width} * height * 4);
    std::vector<double> limits;
    std::vector<double> subjects;
    stage.frame.RenderToBitmap(path, width, height);
    for ([[maybe_unused]] auto _ : state) {
        subjects.push_back(Milliseconds([&] { stage.frame.RenderToBitmap(path, width, height); }));
        limits.push_back(Milliseconds([&] {
            stage.frame.Render(true, width, height);
            glFinish();
            glReadPixels(0, 0, WIDTH, HEIGHT, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
            std::FILE* const file = std::fopen(path.c_str(), "wb");
            std::setvbuf(file, nullptr, _IONBF, 0);
            std::fwrite(pixels.data(), 1, std::size_t{width} * height * 3, file);
            std::fclose(file);
        }));
        state.SetIterationTime(subjects.back() / 1000.0);
    }
    std::filesystem::remove(path);
    state.counters["capture_ms"] = Median(subjects);
    state.counters["limit_ms"] = Median(limits);
    state.counters["ratio"] = Median(subjects) / Median(limits);
    stage.frame.Clear();
}
BENCHMARK(BitmapCapture)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(31);

} // namespace
