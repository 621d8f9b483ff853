#pragma once

#include <cstdint>

#include <Quorvex/platform/File.h>

namespace KOVA::Quorvex::stl {

// What a file holds, judged by all that can be seen of it and not by its first word alone.
struct Contents {
    enum class Kind { Unknown, Text, Binary };
    Kind kind = Kind::Unknown;
    std::int64_t textStart = 0;       // of text: behind a byte-order mark
    std::int64_t binaryTriangles = 0; // of binary: those that are there and meant to be
};

Contents Sniff(const platform::InputFile& file);

} // namespace KOVA::Quorvex::stl
