#include "VolumeLook.h"

#include <algorithm>

#include <fmt/format.h>

#include "Failure.h"
#include "VolumeMaterial.h"

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
    SetMaterial(attribute);

    const VolumeSummary summary = Summarize(volume.GetData());
    SetTables(attribute, TableFor(options, volume.GetData(), summary), SliceTransferFunction(summary));
    for (unsigned int i = 0; i < options.clipPlanes.size(); ++i) {
        attribute.SetUserClipPlane(i, options.clipPlanes[i]);
    }
    for (unsigned int i = 0; i < options.slices.size(); ++i) {
        attribute.SetUserSlice(i, options.slices[i]);
    }
}

} // namespace KOVA::Quorvex::cli
