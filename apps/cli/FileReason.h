#pragma once

#include <string>

namespace KOVA::Quorvex::cli {

// Why the system does not let the file be read; empty when it does.
std::string ReasonOfSystem(const std::string& path);

} // namespace KOVA::Quorvex::cli
