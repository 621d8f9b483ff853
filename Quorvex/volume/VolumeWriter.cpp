#include <Quorvex/volume/VolumeWriter.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

#include <Quorvex/core/OutputFile.h>
#include <Quorvex/platform/File.h>
#include <Quorvex/volume/RekFormat.h>

namespace KOVA::Quorvex {

namespace {

// What of a raw file is read at once.
constexpr std::size_t copiedBytes = std::size_t{1} << 20;

bool WriteHeader(OutputFile& file, const RekHeader& header) {
    unsigned char bytes[rek::headerBytes];
    rek::ComposeHeader(header, bytes);
    return file.Write(bytes, sizeof(bytes));
}

std::string Quoted(const char* path) {
    return "'" + std::string(path != nullptr ? path : "") + "'";
}

// A raw file that was opened and has the length that the header asks for.
class RawFile {
public:
    RawFile(const char* path, const RekHeader& header)
        : m_name(Quoted(path)), m_bytes(header.BodyBytes()), m_buffer(new unsigned char[copiedBytes]) {
        if (m_bytes <= 0) {
            throw std::runtime_error("there is no volume of that size and kind");
        }
        if (!m_file.Open(path)) {
            throw std::runtime_error("cannot open " + m_name);
        }
        if (m_file.Size() < 0) {
            throw std::runtime_error(m_name + " is not a regular file");
        }
        if (m_file.Size() != m_bytes) {
            throw std::runtime_error(m_name + " holds " + std::to_string(m_file.Size()) +
                                     " bytes, but the samples take " + std::to_string(m_bytes));
        }
    }

    std::int64_t Bytes() const { return m_bytes; }

    // Hands the bytes from first to end over in pieces, each of them a whole number of samples when first is one.
    template <class Take> void Read(std::int64_t first, std::int64_t end, Take take) const {
        while (first < end) {
            const auto count = static_cast<std::size_t>(std::min(end - first, static_cast<std::int64_t>(copiedBytes)));
            if (m_file.ReadAt(first, m_buffer.get(), count) < count) {
                throw std::runtime_error("cannot read " + m_name);
            }
            take(m_buffer.get(), count);
            first += static_cast<std::int64_t>(count);
        }
    }

private:
    std::string m_name;
    std::int64_t m_bytes;
    std::unique_ptr<unsigned char[]> m_buffer;
    platform::InputFile m_file;
};

struct Limits {
    static constexpr float above = std::numeric_limits<float>::max();
    static constexpr float below = std::numeric_limits<float>::lowest();

    float low = above;
    float high = below;

    // The loop has no branches, so that several samples are looked at together.
    void Add(const unsigned char* samples, std::size_t count) {
        float lowest = low;
        float highest = high;
        for (std::size_t i = 0; i < count; ++i) {
            float value = 0.0F;
            std::memcpy(&value, samples + i * sizeof(value), sizeof(value));
            const bool finite = std::abs(value) <= above; // not so what is no number
            const float lower = finite ? value : above;
            const float higher = finite ? value : below;
            lowest = lower < lowest ? lower : lowest;
            highest = higher > highest ? higher : highest;
        }
        low = lowest;
        high = highest;
    }
};

// Stretches 16-bit samples so that low becomes 0 and high 65535, and cuts off what lies beyond. Detectors seldom use
// all 16 bits, and the high byte alone counts when the volume is read.
void Stretch(unsigned char* samples, std::size_t count, double low, double high) {
    const double factor = 65535.0 / (high - low);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t value = 0;
        std::memcpy(&value, samples + i * sizeof(value), sizeof(value));
        const double level = (static_cast<double>(value) - low) * factor + 0.5;
        value = static_cast<std::uint16_t>(std::clamp(level, 0.0, 65535.0));
        std::memcpy(samples + i * sizeof(value), &value, sizeof(value));
    }
}

// Reports a stream's progress, when anybody listens, at every whole percent.
class Meter {
public:
    Meter(const VolumeWriter::Progress& progress, std::int64_t total) : m_progress(progress), m_total(total) {}

    void Advance(std::size_t bytes) {
        m_done += static_cast<std::int64_t>(bytes);
        const auto percent = static_cast<int>(m_done * 100 / m_total);
        if (m_progress && percent != m_percent) {
            m_percent = percent;
            m_progress(static_cast<double>(percent) / 100.0);
        }
    }

private:
    const VolumeWriter::Progress& m_progress;
    std::int64_t m_total;
    std::int64_t m_done = 0;
    int m_percent = -1;
};

} // namespace

bool VolumeWriter::WriteREK(const char* path, const VolumeData& data) {
    constexpr std::size_t largest = std::numeric_limits<std::int16_t>::max();
    if (std::max({data.getDimX(), data.getDimY(), data.getDimZ()}) > largest || data.getNumBlocks() == 0) {
        return false;
    }
    RekHeader header;
    header.width = static_cast<std::int16_t>(data.getDimX());
    header.height = static_cast<std::int16_t>(data.getDimY());
    header.depth = static_cast<std::int16_t>(data.getDimZ());
    OutputFile file;
    if (!file.Open(path) || !WriteHeader(file, header)) {
        return false;
    }
    for (std::size_t z = data.getDimZ(); z-- > 0;) {
        if (!file.Write(data.Slice(z), data.getDimX() * data.getDimY())) {
            return false;
        }
    }
    return file.Commit();
}

std::pair<float, float> VolumeWriter::MeasureRaw(const char* rawPath, const RekHeader& header,
                                                 const Progress& progress) {
    if (header.bits != REK_FLOAT) {
        throw std::runtime_error("only float samples have a range to be measured");
    }
    const RawFile raw(rawPath, header);
    Limits limits;
    Meter meter(progress, raw.Bytes());
    raw.Read(0, raw.Bytes(), [&](const unsigned char* samples, std::size_t bytes) {
        limits.Add(samples, bytes / sizeof(float));
        meter.Advance(bytes);
    });
    return limits.low > limits.high ? std::pair(0.0F, 0.0F) : std::pair(limits.low, limits.high);
}

void VolumeWriter::ConvertRaw(const char* rawPath, const RekHeader& header, const char* rekPath,
                              const Progress& progress) {
    const RawFile raw(rawPath, header);
    OutputFile file;
    if (!file.Open(rekPath)) {
        throw std::runtime_error("cannot write " + Quoted(rekPath));
    }
    bool written = WriteHeader(file, header);
    Meter meter(progress, raw.Bytes());
    const bool stretched = header.bits == REK_UINT16 && header.recVolMin < header.recVolMax;
    const std::int64_t sliceBytes = raw.Bytes() / header.depth;
    for (std::int64_t end = raw.Bytes(); end > 0 && written; end -= sliceBytes) {
        raw.Read(end - sliceBytes, end, [&](unsigned char* samples, std::size_t bytes) {
            if (stretched) {
                Stretch(samples, bytes / 2, static_cast<double>(header.recVolMin),
                        static_cast<double>(header.recVolMax));
            }
            written = written && file.Write(samples, bytes);
            meter.Advance(bytes);
        });
    }
    if (!written || !file.Commit()) {
        throw std::runtime_error("cannot write " + Quoted(rekPath) + " to its end");
    }
}

} // namespace KOVA::Quorvex
