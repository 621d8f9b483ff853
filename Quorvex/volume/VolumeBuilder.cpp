#include <Quorvex/volume/VolumeBuilder.h>

#include <memory>

namespace KOVA::Quorvex {

Volume VolumeBuilder::BuildBox(unsigned int x, unsigned int y, unsigned int z) {
    auto data = std::make_unique<VolumeData>();
    data->createData(x, y, z);
    Volume volume(*data);
    (void)data.release(); // the volume and its copies delete it now
    return volume;
}

} // namespace KOVA::Quorvex
