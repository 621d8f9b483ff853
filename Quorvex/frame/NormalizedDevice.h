#pragma once

namespace KOVA::Quorvex {

// Loads matrices under which vertex coordinates are normalised device coordinates, at depth 0.
void LoadNormalizedDeviceMatrices();

} // namespace KOVA::Quorvex
