#include "RekFile.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <filesystem>
#include <new>

#include <fmt/format.h>

#include <Quorvex/volume/VolumeReader.h>

#include "Failure.h"
#include "FileReason.h"
#include "Paths.h"

namespace KOVA::Quorvex::apps {

namespace {

std::string ReasonOfReader(const std::string& path) {
    std::string reason = ReasonOfSystem(path);
    if (!reason.empty()) {
        return reason;
    }
    std::error_code failed;
    const std::uintmax_t bytes = std::filesystem::file_size(PathOf(path), failed);
    if (bytes == 0 && !failed) {
        return "the file is empty";
    }
    try {
        const RekHeader header = VolumeReader::ReadREKHeader(path.c_str());
        if (header.SampleBytes() == 0) {
            return fmt::format("it says it has {} bits a voxel; a REK file has 8, 16 or 24 (floats)", header.bits);
        }
        return fmt::format("it says it holds {} x {} x {} samples of {} bytes, but is {} bytes long", header.width,
                           header.height, header.depth, header.SampleBytes(), bytes);
    } catch (const std::exception&) {
        return "it is too short for the header of a REK file";
    }
}

} // namespace

bool IsVolumeFile(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".rek";
}

Volume ReadRek(const std::string& path, ReadProgress* progress) {
    try {
        Volume volume = progress != nullptr ? VolumeReader::ReadREKWatched(path.c_str(), *progress)
                                            : VolumeReader::ReadREK(path.c_str());
        const VolumeData& data = volume.GetData();
        if (data.getDimX() == 0 || data.getDimY() == 0 || data.getDimZ() == 0) {
            throw Failure(fmt::format("cannot read '{}': there are no voxels in it", path));
        }
        return volume;
    } catch (const Failure&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw Failure(fmt::format("cannot read '{}': there is not enough memory for it", path));
    } catch (const std::exception&) {
        throw Failure(fmt::format("cannot read '{}': {}", path, ReasonOfReader(path)));
    }
}

} // namespace KOVA::Quorvex::apps
