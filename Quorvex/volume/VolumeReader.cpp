#include <Quorvex/volume/VolumeReader.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include <Quorvex/core/Parallel.h>
#include <Quorvex/platform/File.h>
#include <Quorvex/platform/Messages.h>
#include <Quorvex/volume/RekFormat.h>

namespace KOVA::Quorvex {

namespace {

constexpr const char* c_caption = "Quorvex";

// What is read at once: small enough to be converted out of the second-level cache.
constexpr std::size_t pieceBytes = std::size_t{64} << 10;

// What one thread takes at a time.
constexpr std::size_t blockBytes = std::size_t{4} << 20;

[[noreturn]] void Fail(const char* reason) {
    throw std::runtime_error(std::string("Quorvex::VolumeReader::ReadREK -> ") + reason);
}

void Open(platform::InputFile& file, const char* path) {
    if (!file.Open(path)) {
        Fail("open failed");
    }
}

RekHeader ReadHeader(const platform::InputFile& file) {
    unsigned char bytes[rek::headerBytes];
    if (file.ReadAt(0, bytes, sizeof(bytes)) < sizeof(bytes)) {
        Fail("Reading of header failed");
    }
    return rek::ParseHeader(bytes);
}

const char* ReadFailure(const RekHeader& header) {
    switch (header.bits) {
    case REK_UINT8:
        return "Reading of 8-bit volume failed";
    case REK_UINT16:
        return "Reading of 16-bit volume failed";
    default:
        return "Reading of float volume failed";
    }
}

// The samples of a file on their way to the voxels of a volume. Samples are counted in the order of the file.
class Body {
public:
    Body(const platform::InputFile& file, const RekHeader& header, float range, unsigned char* voxels)
        : m_file(file), m_header(header), m_range(range), m_voxels(voxels), m_sampleBytes(header.SampleBytes()),
          m_sliceSamples(static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height)),
          m_depth(static_cast<std::size_t>(header.depth)) {}

    bool Read() const {
        const std::size_t count = m_sliceSamples * m_depth;
        const std::size_t blockSamples = blockBytes / m_sampleBytes;
        std::atomic<bool> complete = true;
        ParallelFor((count + blockSamples - 1) / blockSamples, [&](std::size_t block) {
            const std::size_t first = block * blockSamples;
            const std::size_t end = std::min(first + blockSamples, count);
            // Bytes of large slices can go where they belong at once.
            const bool direct = m_header.bits == REK_UINT8 && m_sliceSamples >= pieceBytes;
            if (!(direct ? ReadDirectly(first, end) : ReadConverted(first, end))) {
                complete = false;
            }
        });
        return complete;
    }

private:
    std::int64_t Offset(std::size_t sample) const {
        return static_cast<std::int64_t>(rek::headerBytes + sample * m_sampleBytes);
    }

    // The samples from first that lie in one slice, and the place of their voxels.
    std::size_t Run(std::size_t first, std::size_t end, unsigned char** target) const {
        const std::size_t slice = first / m_sliceSamples;
        const std::size_t place = first % m_sliceSamples;
        *target = m_voxels + (m_depth - 1 - slice) * m_sliceSamples + place;
        return std::min(end - first, m_sliceSamples - place);
    }

    bool ReadDirectly(std::size_t first, std::size_t end) const {
        while (first < end) {
            unsigned char* target = nullptr;
            const std::size_t run = Run(first, end, &target);
            if (m_file.ReadAt(Offset(first), target, run) < run) {
                return false;
            }
            first += run;
        }
        return true;
    }

    bool ReadConverted(std::size_t first, std::size_t end) const {
        unsigned char piece[pieceBytes];
        while (first < end) {
            const std::size_t count = std::min(end - first, pieceBytes / m_sampleBytes);
            if (m_file.ReadAt(Offset(first), piece, count * m_sampleBytes) < count * m_sampleBytes) {
                return false;
            }
            Spread(piece, first, first + count);
            first += count;
        }
        return true;
    }

    void Spread(const unsigned char* samples, std::size_t first, std::size_t end) const {
        while (first < end) {
            unsigned char* target = nullptr;
            const std::size_t run = Run(first, end, &target);
            Convert(samples, run, target);
            samples += run * m_sampleBytes;
            first += run;
        }
    }

    void Convert(const unsigned char* samples, std::size_t count, unsigned char* target) const {
        switch (m_header.bits) {
        case REK_UINT8:
            std::memcpy(target, samples, count);
            break;
        case REK_UINT16:
            rek::ConvertUint16(samples, count, target);
            break;
        default:
            rek::ConvertFloat(samples, count, m_header.recVolMin, m_range, target);
            break;
        }
    }

    const platform::InputFile& m_file;
    RekHeader m_header;
    float m_range;
    unsigned char* m_voxels;
    std::size_t m_sampleBytes;
    std::size_t m_sliceSamples;
    std::size_t m_depth;
};

float RangeOf(const RekHeader& header) {
    const float range = header.recVolMax - header.recVolMin;
    if (header.bits == REK_FLOAT && range == 0.0F) {
        platform::ShowWarning(c_caption, "RecVolMin and RecVolMax should be set properly at volumes of type float!");
        return 1.0F;
    }
    return range;
}

Volume ReadFile(const char* path, ReadProgress* progress) {
    platform::InputFile file;
    Open(file, path);
    file.Report(progress);
    const RekHeader header = ReadHeader(file);
    if (header.SampleBytes() == 0) {
        platform::ShowWarning(c_caption, "Volume must be of type unsigned 8-bit, unsigned 16-bit or float!");
        Fail("Volume must be of type unsigned 8-bit, unsigned 16-bit oder float!");
    }
    const float range = RangeOf(header);
    const std::int64_t bodyBytes = header.BodyBytes();
    if (bodyBytes < 0 || file.Size() < static_cast<std::int64_t>(rek::headerBytes) + bodyBytes) {
        Fail(ReadFailure(header));
    }
    auto data =
        std::make_unique<VolumeData>(static_cast<std::size_t>(header.width), static_cast<std::size_t>(header.height),
                                     static_cast<std::size_t>(header.depth));
    if (bodyBytes > 0 && !Body(file, header, range, data->getDataPtr()).Read()) {
        Fail(ReadFailure(header));
    }
    Volume volume(*data);
    (void)data.release(); // the volume and its copies delete it now
    return volume;
}

} // namespace

Volume VolumeReader::ReadREK(const char* path) {
    return ReadFile(path, nullptr);
}

Volume VolumeReader::ReadREKWatched(const char* path, ReadProgress& progress) {
    try {
        Volume volume = ReadFile(path, &progress);
        progress.Finish();
        return volume;
    } catch (const std::runtime_error&) {
        if (progress.IsCancelled()) {
            Fail("cancelled");
        }
        throw;
    }
}

RekHeader VolumeReader::ReadREKHeader(const char* path) {
    platform::InputFile file;
    Open(file, path);
    return ReadHeader(file);
}

} // namespace KOVA::Quorvex
