#pragma once

#include <string>

#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/mesh/Mesh.h>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// Reads an STL file of any kind. Throws Failure with the reason when that cannot be done, or
// was cancelled.
Mesh ReadModel(const std::string& path, ReadProgress* progress = nullptr);

// Whether a file that ReadModel could read holds text or binary records.
bool IsBinaryModel(const std::string& path);

} // namespace KOVA::Quorvex::apps
