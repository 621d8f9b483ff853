#pragma once

#include <cstdio>
#include <filesystem>
#include <vector>

#include "Paths.h"

// What the tool needs of the operating system beside the library. One source of this folder implements it for each.

namespace KOVA::Quorvex::cli {

bool StandardErrorIsTerminal();

// Opens a file for binary writing that this call makes. Null, with the reason in errno, when there is something of that
// name already (EEXIST) or no file can be made.
std::FILE* CreateNewFile(const std::filesystem::path& path);

// Writes a PNG picture. pixels: rows from the top, 3 bytes (R, G, B) a pixel, no padding. False when it cannot be
// encoded or written.
bool EncodePng(std::FILE* file, unsigned int width, unsigned int height, const std::vector<unsigned char>& pixels);

} // namespace KOVA::Quorvex::cli
