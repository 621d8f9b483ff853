#include "VolumeLook.h"

#include <algorithm>

#include <fmt/format.h>

#include "Failure.h"

namespace KOVA::Quorvex::cli {

namespace {

TransferTable TableFor(const VolumeOptions& options, const VolumeData& data, const VolumeSummary& summary) {
    const std::size_t longest = std::max({data.getDimX(), data.getDimY(), data.getDimZ()});
    if (options.window) {
        return WindowTransferFunction(*options.window, options.mode, longest);
    }
    return options.transferFile.empty() ? DefaultTransferFunction(summary, options.mode, longest)
                                        : ReadTransferFunction(options.transferFile);
}

} // namespace

void SetLook(const VolumeOptions& options, const Volume& volume) {
    VolumeAttribute& attribute = volume.GetAttribute();
    try {
        attribute.SetRenderMode(options.mode);
    } catch (const std::exception& error) {
        throw Failure(fmt::format("this OpenGL driver cannot draw that volume mode: {}", error.what()));
    }
    attribute.SetSampleFactor(static_cast<float>(options.samples));
    attribute.SetMaterialAmbientColor({0.25F, 0.25F, 0.25F, 1.0F});
    // Half a voxel: on a shorter way the eight bits of the voxels leave steps in the shading, a longer one leaves the
    // texture of the brick.
    attribute.SetSmoothFactor(0.5F);

    const VolumeSummary summary = Summarize(volume.GetData());
    const TransferTable table = TableFor(options, volume.GetData(), summary);
    const TransferTable sliceTable = SliceTransferFunction(summary);
    for (unsigned int i = 0; i < VolumeAttribute::transferEntries; ++i) {
        attribute.SetTransferFunction(i, table[i]);
        for (unsigned int slice = 0; slice < VolumeAttribute::userPlanes; ++slice) {
            attribute.SetUserSliceTransferFunction(slice, i, sliceTable[i]);
        }
    }
    for (unsigned int i = 0; i < options.clipPlanes.size(); ++i) {
        attribute.SetUserClipPlane(i, options.clipPlanes[i]);
    }
    for (unsigned int i = 0; i < options.slices.size(); ++i) {
        attribute.SetUserSlice(i, options.slices[i]);
    }
}

} // namespace KOVA::Quorvex::cli
