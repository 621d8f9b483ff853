#pragma once

#include "Programs.h"
#include "TransferFunction.h"

namespace KOVA::Quorvex::apps {

// How shaded volumes take the light.
void SetMaterial(VolumeAttribute& attribute);

// The transfer function, and that of all user slices.
void SetTables(VolumeAttribute& attribute, const TransferTable& table, const TransferTable& sliceTable);

} // namespace KOVA::Quorvex::apps
