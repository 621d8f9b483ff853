#include "ModelFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>

#include <fmt/format.h>

#include <Quorvex/mesh/MeshReader.h>

#include "Failure.h"
#include "FileReason.h"
#include "Paths.h"

namespace KOVA::Quorvex::apps {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File OpenForReading(const std::string& path) {
    return {OpenFile(PathOf(path), "rb"), &std::fclose};
}

std::string ReasonOfReader(const std::string& path, MRError error) {
    std::string reason = ReasonOfSystem(path);
    if (!reason.empty()) {
        return reason;
    }
    std::error_code failed;
    if (std::filesystem::file_size(PathOf(path), failed) == 0 && !failed) {
        return "the file is empty";
    }
    switch (error) {
    case MR_OPEN_FAILED:
        return "it cannot be opened";
    case MR_CANCELLED:
        return "cancelled";
    case MR_UNSUPPORTED_FORMAT:
        return "this kind of file is not supported";
    default:
        return "there are no triangles of an STL file in it";
    }
}

} // namespace

Mesh ReadModel(const std::string& path, ReadProgress* progress) {
    try {
        Mesh mesh = progress != nullptr ? MeshReader::ReadSTLWatched(path.c_str(), *progress)
                                        : MeshReader::ReadSTLTolerant(path.c_str());
        if (MeshReader::GetError() == MR_NO_ERROR) {
            return mesh;
        }
    } catch (const std::bad_alloc&) {
        throw Failure(fmt::format("cannot read '{}': there is not enough memory for it", path));
    }
    throw Failure(fmt::format("cannot read '{}': {}", path, ReasonOfReader(path, MeshReader::GetError())));
}

bool IsBinaryModel(const std::string& path) {
    // Binary records hold zero bytes within the first triangle (its attribute) at the latest; no text does, whatever
    // its encoding and whether or not a binary file's header begins with "solid".
    std::array<char, 1024> start{};
    const File file = OpenForReading(path);
    const std::size_t count = file != nullptr ? std::fread(start.data(), 1, start.size(), file.get()) : 0;
    return std::find(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(count), '\0') !=
           start.begin() + static_cast<std::ptrdiff_t>(count);
}

} // namespace KOVA::Quorvex::apps
