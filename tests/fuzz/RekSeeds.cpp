#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// Writes the inputs that fuzzing starts from into the directory named.

namespace {

std::string File(int width, int height, int depth, int bits, float low, float high, std::size_t body) {
    std::string bytes(2048, '\0');
    bytes[0] = static_cast<char>(width);
    bytes[2] = static_cast<char>(height);
    bytes[4] = static_cast<char>(bits);
    bytes[6] = static_cast<char>(depth);
    std::memcpy(&bytes[688], &low, sizeof(low));
    std::memcpy(&bytes[692], &high, sizeof(high));
    for (std::size_t i = 0; i < body; ++i) {
        bytes += static_cast<char>(i * 37 + 63);
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> seeds = {File(3, 2, 4, 8, 0, 0, 24),   File(3, 2, 4, 16, 0, 0, 48),
                                            File(3, 2, 4, 24, -1, 1, 96), File(3, 2, 4, 24, 5, 5, 96),
                                            File(3, 2, 4, 24, 0, 1, 95),  File(3, 2, 4, 32, 0, 1, 96),
                                            File(0, 2, 4, 8, 0, 0, 0),    File(1, 1, 127, 16, 0, 0, 300)};
    const std::filesystem::path directory(argv[1]);
    std::filesystem::create_directories(directory);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream(directory / ("rek-" + std::to_string(i)), std::ios::binary) << seeds[i];
    }
    return 0;
}
