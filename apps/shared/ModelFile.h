#pragma once

#include <string>

#include <Quorvex/mesh/Mesh.h>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// Reads an STL file of any kind. Throws Failure with the reason when that cannot be done.
Mesh ReadModel(const std::string& path);

// Whether a file that ReadModel could read holds text or binary records.
bool IsBinaryModel(const std::string& path);

} // namespace KOVA::Quorvex::apps
