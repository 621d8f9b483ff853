// The slices of a volume: those that the user put into it, and the stack across the line of sight.

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/core/Shader.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/ClipPlanes.h>
#include <Quorvex/volume/FragmentEstimate.h>
#include <Quorvex/volume/SliceBatch.h>
#include <Quorvex/volume/VisibleIntensities.h>
#include <Quorvex/volume/Volume.h>
#include <Quorvex/volume/VolumePrograms.h>
#include <Quorvex/volume/VolumeRenderer.h>
#include <Quorvex/volume/WorkLimit.h>

namespace KOVA::Quorvex {

namespace {

struct UserSlice {
    PlaneStack plane;
    unsigned int transferTexture;
};

double Seconds() {
    return static_cast<double>(platform::CounterNow()) / platform::CounterFrequency();
}

// A piece is what a stop may have to wait for. Lit fragments take several times as long: their limit is another.
constexpr double s_pieceSeconds = 0.012;
constexpr double s_firstPiece = 0.3e6; // fragments
WorkLimit s_limits[2] = {{s_pieceSeconds, s_firstPiece}, {s_pieceSeconds, s_firstPiece / 3.0}};

// What the driver's matrices and viewport leave to see.
struct Target {
    Target() {
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        glGetIntegerv(GL_VIEWPORT, viewport);
    }
    double projection[16];
    double modelview[16];
    GLint viewport[4];
};

// Gives the slices of bricks to the driver, in pieces when the pass may be stopped.
class SliceQueue {
public:
    SliceQueue(RenderFrame& frame, bool stoppable, WorkLimit& limit, const FragmentEstimate& estimate)
        : m_frame(frame), m_stoppable(stoppable), m_limit(limit), m_estimate(estimate) {
        m_limit.Begin(Seconds());
    }

    // Tells the frame how far the volume is done, and learns whether to stop.
    bool StopAt(float fraction) {
        m_fraction = fraction;
        return m_stoppable && m_frame.Progress(fraction);
    }

    // The slices of a box from the far side to the near one. False when the pass has to stop.
    bool Draw(const BoxSlicer& box, double spacing, bool farthestIsLast) {
        const std::int64_t count = box.Last() - box.First() + 1;
        for (std::int64_t i = 0; i < count; ++i) {
            const std::int64_t k = farthestIsLast ? box.Last() - i : box.First() + i;
            Vector3f points[MAX_SLICE_POINTS];
            const int corners = box.Cut(k, points);
            m_batch.Add(points, corners);
            m_pending += m_estimate.Count(PolygonArea(points, corners), static_cast<double>(k) * spacing);
            if ((m_batch.IsFull() || m_pending >= m_limit.Room()) && !Submit()) {
                return false;
            }
        }
        return Submit();
    }

private:
    bool Submit() {
        m_batch.Draw();
        const double work = m_pending;
        m_pending = 0.0;
        if (!m_stoppable || !m_limit.Add(work, Seconds())) {
            return true;
        }
        glFinish();
        m_limit.Finished(Seconds());
        return !StopAt(m_fraction);
    }

    RenderFrame& m_frame;
    bool m_stoppable;
    WorkLimit& m_limit;
    const FragmentEstimate& m_estimate;
    float m_fraction = 0.0F;
    double m_pending = 0.0; // fragments in the batch
    SliceBatch m_batch;
};

} // namespace

void VolumeRenderer::RenderUserSlices(const VolumeData& data, const VolumeAttribute& attribute,
                                      const std::vector<unsigned int>& order) {
    std::vector<UserSlice> slices;
    SelectTextureUnit(1);
    for (unsigned int i = 0; i < VolumeAttribute::userPlanes; ++i) {
        const Vector4d p = attribute.GetUserSlice(i);
        if (p != Vector4d(0.0, 0.0, 0.0, 0.0)) {
            // A texture for each, as they are used in turns, brick by brick.
            SetTransferFunction(s_sliceTextures[i], attribute.GetUserSliceTransferFunctionTable(i), 1.0F);
            slices.push_back({{p.x, p.y, p.z, p.w}, s_sliceTextures[i]});
        }
    }
    SelectTextureUnit(0);
    if (slices.empty()) {
        return;
    }
    setMode(VolumeAttribute::Unshaded, {}, 0.0F, 0.0F, {});
    const VolumeProgram& program = GetVolumeProgram(false);
    program.UseTextureScale(data);
    for (const unsigned int i : order) {
        const Brick& brick = data.GetBrick(i);
        for (const UserSlice& slice : slices) {
            Vector3f points[MAX_SLICE_POINTS];
            const int corners = BoxSlicer(slice.plane, brick.GetBB0(), brick.GetBB1()).Cut(0, points);
            if (corners != 0) {
                SelectTextureUnit(1);
                glBindTexture(GL_TEXTURE_1D, slice.transferTexture);
                SelectTextureUnit(0);
                program.UseBrick(data, brick);
                glVertexPointer(3, GL_FLOAT, 0, points);
                glDrawArrays(GL_POLYGON, 0, corners);
            }
        }
    }
}

bool VolumeRenderer::RenderBackToFront(RenderFrame& frame, const VolumeData& data, const VolumeAttribute& attribute,
                                       const std::vector<unsigned int>& order, double sliceDistance, bool quality) {
    const View& view = *frame.GetView();
    const bool farthestIsLast = view.IsLeftHand();
    const PlaneStack planes = SlicesAcross(view.GetModelviewMatrix(), sliceDistance);
    const bool lit = attribute.GetRenderMode() == VolumeAttribute::Shaded;
    const VolumeProgram& program = GetVolumeProgram(lit);
    const VisibleIntensities visible(attribute.GetTransferFunctionTable());
    const Target target;
    HalfSpaces seen;
    seen.AddViewVolume(target.projection, target.modelview);
    ClipPlanes(attribute).AddTo(seen);
    const FragmentEstimate estimate(target.projection, target.viewport[2], target.viewport[3]);
    SliceQueue queue(frame, quality, s_limits[lit ? 1 : 0], estimate);

    program.UseTextureScale(data);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (queue.StopAt(static_cast<float>(i) / static_cast<float>(order.size()))) {
            return false;
        }
        // The host was let in: it may have made other bricks meanwhile.
        if (order[i] >= static_cast<unsigned int>(data.getNumBricks())) {
            continue;
        }
        const Brick brick = data.GetBrick(order[i]);
        if (!visible.CanShow(brick.GetMinIntensity(), brick.GetMaxIntensity()) ||
            seen.Exclude(brick.GetBB0(), brick.GetBB1())) {
            continue;
        }
        program.UseBrick(data, brick);
        if (!queue.Draw(BoxSlicer(planes, brick.GetBB0(), brick.GetBB1()), sliceDistance, farthestIsLast)) {
            return false;
        }
    }
    return true;
}

} // namespace KOVA::Quorvex
