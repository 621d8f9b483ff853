// Recording at 800 x 600 beside the drawing of the same pictures: a turn that is recorded and one that is only drawn
// take turns. The counters are medians in milliseconds a picture; ratio is the one over the other.

#include <cmath>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/OpenGL.h>

#include "Stage.h"

namespace {

using namespace KOVA::Quorvex;
using Library = KOVA::Quorvex::Quorvex;

enum Subject : std::int64_t { PART, MANY_TRIANGLES, SCAN };

// A rounded part of 10,000 triangles, the same of 160,000, and a volume.
void Show(Subject subject, RenderFrame& frame) {
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
    frame.Add(BuildWavySphere(subject == PART ? 100 : 400));
}

void RecordTurn(benchmark::State& state) {
    Stage& stage = TheStage();
    const auto subject = static_cast<Subject>(state.range(0));
    stage.view.SetProjectionPerspectiveRH(0.7F, 0.1F, 20);
    stage.view.SetModelviewViewer({0, 1.3F, 3.3F}, {0, 0, 0}, {0, 1, 0});
    Show(subject, stage.frame);
    const unsigned int pictures = subject == PART ? 50 : 10;
    const std::string path = (std::filesystem::temp_directory_path() / "quorvex-bench.avi").string();
    const Vector4f step(0, 1, 0, 2.0F * std::numbers::pi_v<float> / static_cast<float>(pictures));
    stage.frame.AVISetCodec('M' | 'J' << 8 | 'P' << 16 | 'G' << 24);
    std::vector<double> recorded;
    std::vector<double> drawn;
    stage.frame.Render(true, Stage::WIDTH, Stage::HEIGHT);
    for ([[maybe_unused]] auto _ : state) {
        drawn.push_back(Milliseconds([&] {
                            for (unsigned int i = 0; i < pictures; ++i) {
                                stage.view.RotateWorld(step);
                                stage.frame.Render(true, Stage::WIDTH, Stage::HEIGHT);
                                glFinish();
                            }
                        }) /
                        pictures);
        recorded.push_back(Milliseconds([&] {
                               if (!stage.frame.AVIRotate(path, Stage::WIDTH, Stage::HEIGHT, {0, 1, 0}, pictures)) {
                                   state.SkipWithError("cannot record Motion JPEG");
                               }
                           }) /
                           pictures);
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
