#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "Programs.h"

namespace KOVA::Quorvex::apps {

// The path that fopen would take this name for: the C++ library alone may read other characters from the same bytes.
std::filesystem::path PathOf(const std::string& name);

// fopen for a path.
std::FILE* OpenFile(const std::filesystem::path& path, const char* mode);

} // namespace KOVA::Quorvex::apps
