#pragma once

#include <string>
#include <vector>

#include "RenderOptions.h"

namespace KOVA::Quorvex::cli {

// Makes sure, before any work is done, that a file can be written under this name. Throws Failure with the reason when
// not. Nothing is left behind or changed.
void CheckWritable(const std::string& path);

// pixels: rows from the top, 3 bytes (R, G, B) a pixel, no padding. The file appears under its name when it is
// complete; on failure (thrown as Failure) what stood there before is untouched.
void WritePng(const std::string& path, PictureSize size, const std::vector<unsigned char>& pixels);

} // namespace KOVA::Quorvex::cli
