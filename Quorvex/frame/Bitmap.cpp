#include <Quorvex/frame/Bitmap.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include <Quorvex/core/PixelOrder.h>

namespace KOVA::Quorvex {

namespace {

constexpr std::uint32_t s_fileHeaderSize = 14;
constexpr std::uint32_t s_infoHeaderSize = 40;
constexpr std::uint32_t s_headerSize = s_fileHeaderSize + s_infoHeaderSize;

// Little-endian whatever the machine is.
class Writer {
public:
    explicit Writer(unsigned char* target) : m_target(target) {}

    void Put16(std::uint32_t value) { Put(value, 2); }
    void Put32(std::uint32_t value) { Put(value, 4); }

private:
    void Put(std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            *m_target++ = static_cast<unsigned char>(value >> (8 * i) & 0xFFU);
        }
    }

    unsigned char* m_target;
};

void WriteHeaders(unsigned char* file, std::uint32_t width, std::uint32_t height, std::uint32_t imageSize) {
    Writer writer(file);
    writer.Put16('B' | 'M' << 8);
    writer.Put32(s_headerSize + imageSize);
    writer.Put32(0); // reserved
    writer.Put32(s_headerSize);

    writer.Put32(s_infoHeaderSize);
    writer.Put32(width);
    writer.Put32(height); // positive: the bottom row comes first
    writer.Put16(1);      // planes
    writer.Put16(24);     // bits per pixel
    writer.Put32(0);      // not compressed
    writer.Put32(imageSize);
    for (int i = 0; i < 4; ++i) {
        writer.Put32(0); // resolutions and colour counts
    }
}

} // namespace

bool EncodeBitmap(const unsigned char* rgba, unsigned int width, unsigned int height, const BitmapSink& sink) {
    const std::uint64_t rowSize = (static_cast<std::uint64_t>(width) * 3 + 3) / 4 * 4;
    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max() - s_headerSize;
    if (width == 0 || height == 0 || rowSize > largest / height) {
        return false;
    }
    unsigned char headers[s_headerSize];
    WriteHeaders(headers, width, height, static_cast<std::uint32_t>(rowSize * height));
    if (!sink(headers, sizeof headers)) {
        return false;
    }

    // A block stays in the cache between its conversion and its writing.
    constexpr std::size_t blockSize = std::size_t{256} * 1024;
    const auto rowBytes = static_cast<std::size_t>(rowSize);
    const std::size_t rowsPerBlock = std::max<std::size_t>(1, blockSize / rowBytes);
    std::vector<unsigned char> block(std::min<std::size_t>(rowsPerBlock, height) * rowBytes);
    for (std::size_t first = 0; first < height; first += rowsPerBlock) {
        const std::size_t rows = std::min<std::size_t>(rowsPerBlock, height - first);
        for (std::size_t row = 0; row < rows; ++row) {
            ConvertToBgr(rgba + (first + row) * width * 4, width, block.data() + row * rowBytes);
        }
        if (!sink(block.data(), rows * rowBytes)) {
            return false;
        }
    }
    return true;
}

} // namespace KOVA::Quorvex
