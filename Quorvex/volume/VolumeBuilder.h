#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/volume/Volume.h>

namespace KOVA::Quorvex {

// Makes volumes.
class QUORVEX_API VolumeBuilder {
public:
    // x * y * z voxels of 0, in data of the volume's own, with a default attribute and without bricks: fill it, then
    // call VolumeData::Update. Throws std::bad_alloc.
    static Volume BuildBox(unsigned int x, unsigned int y, unsigned int z);
};

} // namespace KOVA::Quorvex
