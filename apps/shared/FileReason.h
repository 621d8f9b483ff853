#pragma once

#include <string>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// Why the system does not let the file be read; empty when it does.
std::string ReasonOfSystem(const std::string& path);

} // namespace KOVA::Quorvex::apps
