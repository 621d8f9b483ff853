#include <Quorvex/analysis/Lunkers.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <Quorvex/analysis/LunkerRuns.h>
#include <Quorvex/analysis/LunkerSurface.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

namespace {

void CheckDimension(std::size_t value) {
    if (value > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw std::overflow_error("Couldn't cast " + std::to_string(value) +
                                  " (64 bit unsigned integer) to 32 bit signed integer without loss of data!");
    }
}

void CheckVolume(const VolumeData& data) {
    if (data.getNumBlocks() != 1) {
        throw "KOVA::Quorvex::Volume_Data::TriangulizeLunker"; // NOLINT(misc-throw-by-value-catch-by-reference): as
                                                               // hosts expect it
    }
    CheckDimension(data.getDimZ());
    CheckDimension(data.getDimY());
    CheckDimension(data.getDimX());
}

// Tells a share of the whole.
Lunkers::Progress Between(double from, double to, const Lunkers::Progress& progress) {
    if (!progress) {
        return nullptr;
    }
    return [=, &progress](double done) { progress(from + (to - from) * done); };
}

lunker::GroupedRuns FindGroups(const VolumeData& data, const lunker::Work& work, const Lunkers::Progress& progress) {
    CheckVolume(data);
    return lunker::GroupRuns(lunker::FindRuns(data, work, progress));
}

} // namespace

std::vector<LunkerGroup> Lunkers::Find(const VolumeData& data, const Progress& progress) {
    return FindGroups(data, {}, progress).groups;
}

Mesh Lunkers::Triangulate(const VolumeData& data, std::vector<LunkerGroup>& groups, const Progress& progress) {
    const lunker::Work work;
    lunker::GroupedRuns grouped = FindGroups(data, work, Between(0.0, 0.3, progress));
    std::unique_ptr<MeshData> surface = lunker::MakeSurface(grouped, data, work, Between(0.3, 1.0, progress));
    Mesh mesh(*surface);
    (void)surface.release(); // the mesh and its copies delete it now
    groups = std::move(grouped.groups);
    return mesh;
}

Mesh VolumeData::TriangulateLunker() const {
    std::vector<LunkerGroup> groups;
    return Lunkers::Triangulate(*this, groups);
}

} // namespace KOVA::Quorvex
