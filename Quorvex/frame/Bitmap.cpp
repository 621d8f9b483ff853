#include <Quorvex/frame/Bitmap.h>

#include <cstddef>
#include <cstdint>
#include <limits>

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

std::vector<unsigned char> EncodeBitmap(const unsigned char* rgba, unsigned int width, unsigned int height) {
    const std::uint64_t rowSize = (static_cast<std::uint64_t>(width) * 3 + 3) / 4 * 4;
    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max() - s_headerSize;
    if (width == 0 || height == 0 || rowSize > largest / height) {
        return {};
    }

    const std::uint64_t imageSize = rowSize * height;
    std::vector<unsigned char> file(static_cast<std::size_t>(s_headerSize + imageSize));
    WriteHeaders(file.data(), width, height, static_cast<std::uint32_t>(imageSize));
    for (std::size_t row = 0; row < height; ++row) {
        unsigned char* out = file.data() + s_headerSize + row * static_cast<std::size_t>(rowSize);
        const unsigned char* in = rgba + row * width * 4;
        for (std::size_t column = 0; column < width; ++column) {
            out[column * 3] = in[column * 4 + 2];
            out[column * 3 + 1] = in[column * 4 + 1];
            out[column * 3 + 2] = in[column * 4];
        }
    }
    return file;
}

} // namespace KOVA::Quorvex
