#pragma once

#include <functional>
#include <memory>

#include <Quorvex/analysis/LunkerRuns.h>
#include <Quorvex/mesh/MeshData.h>

namespace KOVA::Quorvex::lunker {

// The triangles around the groups, see VolumeData::TriangulateLunker, and where those of each group are, entered there.
// data is the volume that the runs are from. Told the share that is done. Throws std::bad_alloc, also when a mesh
// cannot count the vertices.
std::unique_ptr<MeshData> MakeSurface(GroupedRuns& grouped, const VolumeData& data, const Work& work,
                                      const std::function<void(double)>& progress);

} // namespace KOVA::Quorvex::lunker
