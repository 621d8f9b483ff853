// Drawing volumes. A part of 256^3 or 512^3 voxels at 800 x 600 with four slices a voxel. Passes stand beside what
// bounds them: as many fragments as their polygons cover, drawn in full-screen quads through the same program, from one
// brick. The counters are medians in milliseconds; ratio is the pass's time over the bound's, submit the share of a
// pass whose triangles are all thrown away before they are filled.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include <Quorvex/Quorvex.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/volume/FragmentEstimate.h>
#include <Quorvex/volume/SlicePolygons.h>
#include <Quorvex/volume/VisibleIntensities.h>

#include "Stage.h"

namespace {

using namespace KOVA::Quorvex;
using Library = KOVA::Quorvex::Quorvex;
using Clock = std::chrono::steady_clock;

constexpr unsigned int WIDTH = Stage::WIDTH;
constexpr unsigned int HEIGHT = Stage::HEIGHT;

double Now() {
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
}

// A plate with a boss, a bore and pores in noisy air.
unsigned char PartAt(float x, float y, float z, float voxels) {
    const float r = std::sqrt(x * x + y * y);
    const float plate = std::max({std::abs(x) - 0.85F, std::abs(y) - 0.85F, std::abs(z + 0.5F) - 0.25F});
    float outside = std::min(plate, std::max(r - 0.5F, std::abs(z) - 0.7F));
    outside = std::max(outside, 0.3F - r);
    const float u = x * 4.0F - std::floor(x * 4.0F) - 0.5F;
    const float v = y * 4.0F - std::floor(y * 4.0F) - 0.5F;
    const float w = z * 4.0F - std::floor(z * 4.0F) - 0.5F;
    outside = std::max(outside, (0.15F - std::sqrt(u * u + v * v + w * w)) / 4.0F);
    const float noise = 8.0F * std::abs(std::sin(x * 311.0F + y * 173.0F + z * 97.0F));
    return static_cast<unsigned char>(12.0F + noise + 150.0F / (1.0F + std::exp(outside * voxels)));
}

Volume MakePart(unsigned int n) {
    auto* const data = new VolumeData(n, n, n);
    const auto at = [n](unsigned int i) {
        return (2.0F * static_cast<float>(i) + 1.0F) / static_cast<float>(n) - 1.0F;
    };
    const auto fill = [&](unsigned int first) {
        for (unsigned int z = first; z < n; z += 2) {
            for (unsigned int y = 0; y < n; ++y) {
                for (unsigned int x = 0; x < n; ++x) {
                    data->set(x, y, z, PartAt(at(x), at(y), at(z), static_cast<float>(n)));
                }
            }
        }
    };
    std::thread other(fill, 1);
    fill(0);
    other.join();
    data->Update(STORAGE_VBO);
    return Volume(*data);
}

Stage& LookAtThePart() {
    Stage& stage = TheStage();
    if (!Library::CheckQXExtension(CAPABILITY_VOLUME)) {
        std::fprintf(stderr, "no volumes\n");
        std::exit(1);
    }
    stage.view.SetProjectionPerspectiveRH(0.7F, 0.1F, 20);
    stage.view.SetModelviewViewer({3.6F, 2.6F, 3.7F}, {0, 0, 0}, {0, 1, 0});
    return stage;
}

// Alone in the frame. Made once.
Volume& Show(unsigned int n, RenderFrame& frame) {
    static auto& parts = *new std::map<unsigned int, Volume>;
    auto found = parts.find(n);
    if (found == parts.end()) {
        found = parts.emplace(n, MakePart(n)).first;
    }
    frame.Clear();
    return *frame.Add(found->second);
}

enum Look : std::int64_t { SOLID, CLOUDY };

void SetLook(VolumeAttribute& attribute, Look look) {
    for (unsigned int i = 0; i < VolumeAttribute::transferEntries; ++i) {
        const float grey = static_cast<float>(i) / 255.0F;
        const float above = std::clamp((static_cast<float>(i) - 60.0F) / 30.0F, 0.0F, 1.0F);
        attribute.SetTransferFunction(i, {grey, grey, 1.0F - grey, look == SOLID ? above : 0.02F * above});
    }
}

// The fragments of the slices that a quality pass has to draw.
double CountFragments(const Volume& volume, const View& view) {
    double projection[16];
    std::copy_n(view.GetProjectionMatrix(), 16, projection);
    projection[5] *= static_cast<double>(WIDTH) / HEIGHT;
    const FragmentEstimate estimate(projection, WIDTH, HEIGHT);
    const VolumeData& data = volume.GetData();
    const VolumeAttribute& attribute = volume.GetAttribute();
    const double spacing = static_cast<double>(data.getVoxelSize()) / static_cast<double>(attribute.GetSampleFactor());
    const PlaneStack planes = SlicesAcross(view.GetModelviewMatrix(), spacing);
    const VisibleIntensities visible(attribute.GetTransferFunctionTable());
    double fragments = 0.0;
    for (int i = 0; i < data.getNumBricks(); ++i) {
        const Brick& brick = data.GetBrick(static_cast<unsigned int>(i));
        const BoxSlicer box(planes, brick.GetBB0(), brick.GetBB1());
        for (auto k = box.First(); visible.CanShow(brick.GetMinIntensity(), brick.GetMaxIntensity()) && k <= box.Last();
             ++k) {
            Vector3f points[MAX_SLICE_POINTS];
            const int corners = box.Cut(k, points);
            fragments += estimate.Count(PolygonArea(points, corners), static_cast<double>(k) * spacing);
        }
    }
    return fragments;
}

// A volume that is one brick, filling the picture: its slices are full-screen quads.
class Bound {
public:
    explicit Bound(const VolumeAttribute& attribute) : m_window(CreateOffscreenWindow(WIDTH, HEIGHT)) {
        m_view.SetProjectionOrthogonalRH(-0.5, 0.5, -0.5, 0.5, 0, 4);
        m_view.SetModelviewViewer({0, 0, 2}, {0, 0, 0}, {0, 1, 0});
        m_frame.Init(m_window, &m_view);
        auto* const data = new VolumeData(30, 30, 30);
        for (unsigned int i = 0; i < 27000; ++i) {
            data->getDataPtr()[i] = PartAt(static_cast<float>(i % 30) / 40.0F, static_cast<float>(i / 30 % 30) / 40.0F,
                                           static_cast<float>(i) / 36000.0F, 60);
        }
        data->Update(STORAGE_VBO);
        m_volume = m_frame.Add(Volume(*data, attribute));
    }
    Bound(const Bound&) = delete;
    Bound& operator=(const Bound&) = delete;
    ~Bound() {
        m_frame.Release();
        ReleaseWindow(m_window);
    }

    double Draw(double fragments) {
        const double slices = fragments / (static_cast<double>(WIDTH) * HEIGHT);
        m_volume->GetAttribute().SetSampleFactor(static_cast<float>(slices / 60.0)); // the box is 60 voxel sizes deep
        const double start = Now();
        m_frame.Render(true, WIDTH, HEIGHT);
        glFinish();
        return Now() - start;
    }

private:
    HWND m_window;
    View m_view;
    RenderFrame m_frame;
    Volume* m_volume;
};

double DrawPass(RenderFrame& frame, bool quality) {
    const double start = Now();
    frame.Render(quality, WIDTH, HEIGHT);
    glFinish();
    return Now() - start;
}

double DrawUnfilled(RenderFrame& frame) {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT_AND_BACK);
    const double time = DrawPass(frame, true);
    glDisable(GL_CULL_FACE);
    return time;
}

void VolumePass(benchmark::State& state) {
    Stage& stage = LookAtThePart();
    Volume& volume = Show(256, stage.frame);
    VolumeAttribute& attribute = volume.GetAttribute();
    attribute.SetRenderMode(static_cast<VolumeAttribute::RenderMode>(state.range(0)));
    SetLook(attribute, static_cast<Look>(state.range(1)));
    const double fragments = CountFragments(volume, stage.view);
    Bound bound(attribute);
    std::vector<double> subjects;
    std::vector<double> limits;
    std::vector<double> submissions;
    std::vector<double> fast;
    DrawPass(stage.frame, true);
    for ([[maybe_unused]] auto _ : state) {
        limits.push_back(bound.Draw(fragments));
        subjects.push_back(DrawPass(stage.frame, true));
        submissions.push_back(DrawUnfilled(stage.frame));
        fast.push_back(DrawPass(stage.frame, false));
        state.SetIterationTime(subjects.back() / 1000.0);
    }
    state.counters["Mfragments"] = fragments / 1e6;
    state.counters["pass_ms"] = Quantile(subjects, 0.5);
    state.counters["bound_ms"] = Quantile(limits, 0.5);
    state.counters["ratio"] = Quantile(subjects, 0.5) / Quantile(limits, 0.5);
    state.counters["submit"] = Quantile(submissions, 0.5) / Quantile(subjects, 0.5);
    state.counters["fast_ms"] = Quantile(fast, 0.5);
    stage.frame.Clear();
}
BENCHMARK(VolumePass)
    ->ArgNames({"mode", "cloudy"})
    ->ArgsProduct({{VolumeAttribute::Shaded, VolumeAttribute::Unshaded}, {SOLID, CLOUDY}})
    ->Args({VolumeAttribute::MaximumIntensity, SOLID})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// A request of the host that arrives at a set time.
struct Request {
    double due = 0.0;
    RenderFrame* frame = nullptr;

    static bool Pump(void* user) {
        auto* const request = static_cast<Request*>(user);
        if (request->frame == nullptr || Now() < request->due) {
            return false;
        }
        request->frame->Render();
        request->frame = nullptr;
        return true;
    }
};

// From a request that arrives during a quality pass to the fast picture that answers it.
void InterruptLatency(benchmark::State& state) {
    Stage& stage = LookAtThePart();
    VolumeAttribute& attribute = Show(static_cast<unsigned int>(state.range(0)), stage.frame).GetAttribute();
    SetLook(attribute, CLOUDY);
    attribute.SetRenderMode(static_cast<VolumeAttribute::RenderMode>(state.range(1)));
    const double whole = DrawPass(stage.frame, true);
    DrawPass(stage.frame, false);
    std::vector<double> latencies;
    std::vector<double> fast;
    unsigned int seed = 1;
    for ([[maybe_unused]] auto _ : state) {
        fast.push_back(DrawPass(stage.frame, false));
        Library::s_jobQuality.push_back(&stage.frame);
        Request request;
        SetMessagePump(Request::Pump, &request);
        seed = seed * 1664525U + 1013904223U;
        const double latest = std::min(0.8 * whole, 400.0);
        request.due = Now() + 25.0 + (latest - 25.0) * static_cast<double>(seed >> 8U) / 16777216.0;
        request.frame = &stage.frame;
        while (request.frame != nullptr || !Library::s_jobFast.empty()) {
            ProcessEvents();
        }
        glFinish();
        latencies.push_back(Now() - request.due);
        SetMessagePump(nullptr, nullptr);
        Library::s_jobQuality.clear();
        state.SetIterationTime(latencies.back() / 1000.0);
    }
    state.counters["p50_ms"] = Quantile(latencies, 0.5);
    state.counters["p99_ms"] = Quantile(latencies, 0.99);
    state.counters["fast_ms"] = Quantile(fast, 0.5);
    state.counters["whole_ms"] = whole;
    stage.frame.Clear();
}
BENCHMARK(InterruptLatency)
    ->ArgNames({"n", "mode"})
    ->ArgsProduct({{256, 512}, {VolumeAttribute::Shaded, VolumeAttribute::Unshaded}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(100);

// One call that changes nothing.
void ProgressCall(benchmark::State& state) {
    Stage& stage = LookAtThePart();
    Show(256, stage.frame);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(stage.frame.Progress(0.25F));
    }
    stage.frame.Clear();
}
BENCHMARK(ProgressCall);

} // namespace
