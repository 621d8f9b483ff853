// Recording at 800 x 600 beside the drawing of the same pictures: a turn that is recorded and one that is only drawn
// take turns. The counters are medians in milliseconds a picture; ratio is the one over the other.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/NativeWindow.h>

namespace {

using namespace KOVA::Quorvex;
using Library = KOVA::Quorvex::Quorvex;
using Clock = std::chrono::steady_clock;

constexpr unsigned int WIDTH = 800;
constexpr unsigned int HEIGHT = 600;

template <class Action> double MillisecondsFor(unsigned int pictures, Action&& action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count() / pictures;
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

struct Stage {
    Stage() : window(CreateOffscreenWindow(WIDTH, HEIGHT)) {
        if (!Library::Init(window) || !frame.Init(window, &view)) {
            std::fprintf(stderr, "no OpenGL\n");
            std::exit(1);
        }
        view.SetProjectionPerspectiveRH(0.7F, 0.1F, 20);
        view.SetModelviewViewer({0, 2, 5}, {0, 0, 0}, {0, 1, 0});
        frame.SetLight({0, 0, 1});
    }
    HWND window;
    View view;
    RenderFrame frame;
};

Stage& TheStage() {
    static auto* const s_stage = new Stage();
    return *s_stage;
}

enum Subject : std::int64_t { PART, MANY_TRIANGLES, SCAN };

// A rounded part of 10,000 triangles, the same of 160,000, and a volume.
void Show(Subject subject) {
    RenderFrame& frame = TheStage().frame;
    frame.Clear();
    if (subject == SCAN) {
        constexpr unsigned int n = 64;
        auto* const data = new VolumeData(n, n, n);
        for (unsigned int i = 0; i < n * n * n; ++i) {
            const auto at = [](unsigned int k) { return (static_cast<float>(k % n) - 32.0F) / 32.0F; };
            const float x = at(i);
            const float y = at(i / n);
            const float z = at(i / n / n);
            const float r = std::sqrt(x * x + y * y + z * z);
            data->getDataPtr()[i] = static_cast<unsigned char>(r < 0.9F ? 150.0F + 60.0F * std::sin(x * 20.0F) : 10.0F);
        }
        data->Update(STORAGE_VBO);
        frame.Add(Volume(*data));
        return;
    }
    const unsigned int columns = subject == PART ? 100 : 400;
    const unsigned int rows = columns / 2;
    auto* const data = new MeshData(columns * rows * 6, GL_TRIANGLES);
    data->CreateVertexArray(nullptr);
    data->CreateNormalArray(nullptr);
    const auto point = [&](unsigned int i, unsigned int j) {
        const float theta = 6.2831853F * static_cast<float>(i) / static_cast<float>(columns);
        const float phi = 3.1415927F * (static_cast<float>(j) / static_cast<float>(rows) - 0.5F);
        const float r = 1.5F + 0.1F * std::sin(8.0F * theta) * std::cos(5.0F * phi);
        return Vector3f(r * std::sin(theta) * std::cos(phi), r * std::sin(phi), r * std::cos(theta) * std::cos(phi));
    };
    unsigned int vertex = 0;
    for (unsigned int quad = 0; quad < columns * rows; ++quad) {
        for (const unsigned int k : {0U, 1U, 2U, 0U, 2U, 3U}) {
            const Vector3f corner =
                point(quad % columns + (k == 1 || k == 2 ? 1 : 0), quad / columns + (k >= 2 ? 1 : 0));
            data->SetVertex(vertex, corner);
            data->SetNormal(vertex++, Normalize(corner));
        }
    }
    data->UpdateMetrics();
    data->Update(STORAGE_VBO);
    frame.Add(Mesh(*data));
}

void RecordTurn(benchmark::State& state) {
    Stage& stage = TheStage();
    const auto subject = static_cast<Subject>(state.range(0));
    Show(subject);
    const unsigned int pictures = subject == PART ? 50 : 10;
    const std::string path = (std::filesystem::temp_directory_path() / "quorvex-bench.avi").string();
    const Vector4f step(0, 1, 0, 2.0F * std::numbers::pi_v<float> / static_cast<float>(pictures));
    stage.frame.AVISetCodec('M' | 'J' << 8 | 'P' << 16 | 'G' << 24);
    std::vector<double> recorded;
    std::vector<double> drawn;
    stage.frame.Render(true, WIDTH, HEIGHT);
    for ([[maybe_unused]] auto _ : state) {
        drawn.push_back(MillisecondsFor(pictures, [&] {
            for (unsigned int i = 0; i < pictures; ++i) {
                stage.view.RotateWorld(step);
                stage.frame.Render(true, WIDTH, HEIGHT);
                glFinish();
            }
        }));
        recorded.push_back(MillisecondsFor(pictures, [&] {
            if (!stage.frame.AVIRotate(path, WIDTH, HEIGHT, {0, 1, 0}, pictures)) {
                state.SkipWithError("cannot record Motion JPEG");
            }
        }));
        state.SetIterationTime(recorded.back() * pictures / 1000.0);
    }
    state.counters["recorded_ms"] = Median(recorded);
    state.counters["drawn_ms"] = Median(drawn);
    state.counters["ratio"] = Median(recorded) / Median(drawn);
    Library::s_jobFast.clear();
    stage.frame.Clear();
    std::filesystem::remove(path);
}
BENCHMARK(RecordTurn)
    ->ArgNames({"scene"})
    ->DenseRange(PART, SCAN)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

} // namespace
