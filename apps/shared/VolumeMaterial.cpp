#include "VolumeMaterial.h"

namespace KOVA::Quorvex::apps {

void SetMaterial(VolumeAttribute& attribute) {
    attribute.SetMaterialAmbientColor({0.25F, 0.25F, 0.25F, 1.0F});
    // Half a voxel: on a shorter way the eight bits of the voxels leave steps in the shading, a longer one leaves the
    // texture of the brick.
    attribute.SetSmoothFactor(0.5F);
}

void SetTables(VolumeAttribute& attribute, const TransferTable& table, const TransferTable& sliceTable) {
    for (unsigned int i = 0; i < VolumeAttribute::transferEntries; ++i) {
        attribute.SetTransferFunction(i, table[i]);
        for (unsigned int slice = 0; slice < VolumeAttribute::userPlanes; ++slice) {
            attribute.SetUserSliceTransferFunction(slice, i, sliceTable[i]);
        }
    }
}

} // namespace KOVA::Quorvex::apps
