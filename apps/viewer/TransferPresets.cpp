#include "TransferPresets.h"

#include <algorithm>

namespace KOVA::Quorvex::viewer {

namespace {

template <VolumeAttribute::RenderMode mode> TransferCurve Default(const VolumePart& volume) {
    return TransferCurve::FromTable(volume.DefaultTable(mode));
}

// Between air and the densest material; voxels that are all alike are material.
struct Range {
    double low;
    double high;

    double At(double share) const { return low + (high - low) * share; }
};

Range MaterialOf(const VolumePart& volume) {
    const VolumeSummary& summary = volume.GetSummary();
    const double high = std::max(summary.high, 1);
    return {summary.parts ? summary.parts->threshold : high - 1.0, high};
}

TransferCurve Densest(const VolumePart& volume) {
    const Range material = MaterialOf(volume);
    return TransferCurve({{material.At(0.0), {0.5F, 0.6F, 0.75F, 0.0F}},
                          {material.At(0.1), {0.5F, 0.6F, 0.75F, 0.004F}},
                          {material.At(0.55), {0.6F, 0.65F, 0.75F, 0.004F}},
                          {material.At(0.75), {1.0F, 0.75F, 0.3F, 0.6F}},
                          {material.At(1.0), {1.0F, 0.9F, 0.6F, 1.0F}}});
}

// With the most frequent material in the middle.
TransferCurve Temperature(const VolumePart& volume) {
    Range material = MaterialOf(volume);
    if (const auto& parts = volume.GetSummary().parts) {
        material.high = std::min(material.high, 2.0 * parts->material - parts->threshold + 2.0);
    }
    return TransferCurve({{material.At(0.0), {0.1F, 0.1F, 0.6F, 0.0F}},
                          {material.At(0.1), {0.1F, 0.2F, 0.8F, 0.3F}},
                          {material.At(0.35), {0.1F, 0.8F, 0.8F, 0.6F}},
                          {material.At(0.6), {0.3F, 0.85F, 0.2F, 0.8F}},
                          {material.At(0.8), {1.0F, 0.85F, 0.1F, 1.0F}},
                          {material.At(1.0), {0.9F, 0.1F, 0.1F, 1.0F}}});
}

} // namespace

const std::vector<TransferPreset>& TransferPresets() {
    static const std::vector<TransferPreset> presets{
        {"Solid", "The surface of the material, lit", VolumeAttribute::Shaded, &Default<VolumeAttribute::Shaded>},
        {"Glass", "One looks into the material", VolumeAttribute::Unshaded, &Default<VolumeAttribute::Unshaded>},
        {"Densest parts", "What is denser than the rest, in a haze of it", VolumeAttribute::Shaded, &Densest},
        {"Temperature", "Colours from blue to red", VolumeAttribute::Shaded, &Temperature},
        {"X-ray", "The largest intensity along each line of sight", VolumeAttribute::MaximumIntensity,
         &Default<VolumeAttribute::MaximumIntensity>}};
    return presets;
}

} // namespace KOVA::Quorvex::viewer
