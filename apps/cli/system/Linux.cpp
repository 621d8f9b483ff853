#include "System.h"

#include <png.h>
#include <unistd.h>

namespace KOVA::Quorvex::cli {

bool StandardErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

std::FILE* CreateNewFile(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "wbx");
}

bool EncodePng(std::FILE* file, unsigned int width, unsigned int height, const std::vector<unsigned char>& pixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGB;
    return png_image_write_to_stdio(&image, file, 0, pixels.data(), 0, nullptr) != 0;
}

} // namespace KOVA::Quorvex::cli
