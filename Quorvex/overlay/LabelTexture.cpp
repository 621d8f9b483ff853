#include <Quorvex/overlay/LabelTexture.h>

#include <algorithm>
#include <bit>
#include <cstddef>

namespace KOVA::Quorvex {

namespace {

int PowerOfTwo(int size) {
    return static_cast<int>(std::bit_ceil(static_cast<unsigned int>(size)));
}

std::size_t PixelAt(const LabelImage& image, int x, int y) {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) + static_cast<std::size_t>(x)) * 4;
}

LabelImage Transparent(int width, int height) {
    return {width, height,
            std::vector<unsigned char>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4)};
}

// The pixels that the i-th of `count` pixels covers when there were `before` of them: begin and end.
struct Range {
    int begin, end;
};
Range Covered(int i, int count, int before) {
    return {i * before / count, ((i + 1) * before + count - 1) / count};
}

} // namespace

LabelTexture MakeLabelTexture(const platform::LabelPicture& picture, bool anySize) {
    const int width = anySize ? picture.width : PowerOfTwo(picture.width);
    const int height = anySize ? picture.height : PowerOfTwo(picture.height);
    const int left = (width - picture.width) / 2;
    const int bottom = (height - picture.height) / 2;
    LabelImage image = Transparent(width, height);
    for (int row = 0; row < picture.height; ++row) {
        const unsigned char* in =
            picture.pixels.data() + static_cast<std::ptrdiff_t>(picture.height - 1 - row) * picture.width;
        unsigned char* out = image.rgba.data() + PixelAt(image, left, bottom + row);
        for (int x = 0; x < picture.width; ++x, out += 4) {
            std::fill_n(out, 4, in[x]);
        }
    }
    return {std::move(image), static_cast<float>(width), static_cast<float>(height)};
}

LabelImage HalfSize(const LabelImage& image) {
    LabelImage half = Transparent(std::max(image.width / 2, 1), std::max(image.height / 2, 1));
    for (int y = 0; y < half.height; ++y) {
        const Range rows = Covered(y, half.height, image.height);
        for (int x = 0; x < half.width; ++x) {
            const Range columns = Covered(x, half.width, image.width);
            for (std::size_t channel = 0; channel < 4; ++channel) {
                int sum = 0;
                for (int row = rows.begin; row < rows.end; ++row) {
                    for (int column = columns.begin; column < columns.end; ++column) {
                        sum += image.rgba[PixelAt(image, column, row) + channel];
                    }
                }
                const int count = (rows.end - rows.begin) * (columns.end - columns.begin);
                half.rgba[PixelAt(half, x, y) + channel] = static_cast<unsigned char>((sum + count / 2) / count);
            }
        }
    }
    return half;
}

} // namespace KOVA::Quorvex
