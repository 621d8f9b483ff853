#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// Writes the inputs that fuzzing starts from into the directory named.

namespace {

std::string Facet(const char* number) {
    const std::string triple = std::string(" ") + number + " 0 1.5\n";
    return "facet normal" + triple + "outer loop\nvertex" + triple + "vertex" + triple + "vertex" + triple +
           "endloop\nendfacet\n";
}

std::string Binary(const char* header, std::uint32_t announced, unsigned int records) {
    std::string bytes(header);
    bytes.resize(84 + std::size_t{50} * records, '\0');
    std::memcpy(bytes.data() + 80, &announced, sizeof(announced));
    for (std::size_t i = 0; i < records; ++i) {
        bytes[84 + i * 50 + 3] = '\x3f'; // 0.5
        bytes[84 + i * 50 + 14] = '\x40';
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
        return 2;
    }
    std::vector<std::string> seeds = {"solid\nendsolid\n", "\xEF\xBB\xBF SOLID a\n" + Facet("1") + "ENDSOLID\n",
                                      Binary("", 3, 3),    Binary("solid", 2, 2),
                                      Binary("x", 9, 2),   Binary("x", 0, 2)};
    for (const char* const number :
         {"1.25", "-3.5e-02", "nan", "inf", "0x1.8p3", "1.#QNAN", "1,5", "1e99", "123456789.125"}) {
        seeds.push_back("solid a\n" + Facet(number) + Facet("2") + "endsolid a\nsolid b\n" + Facet(number) +
                        "endsolid\n");
        seeds.push_back("solid\n" + Facet(number) + Facet("1.000000e+01"));
    }
    const std::filesystem::path directory(argv[1]);
    std::filesystem::create_directories(directory);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream(directory / ("stl-" + std::to_string(i)), std::ios::binary) << seeds[i];
    }
    return 0;
}
