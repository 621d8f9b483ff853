#include "Programs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <numbers>
#include <sstream>

#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace testing_cli {

namespace {

Point Normal(const Triangle& t) {
    const auto edge = [&t](std::size_t corner, std::size_t axis) { return t[corner][axis] - t[0][axis]; };
    Point n{edge(1, 1) * edge(2, 2) - edge(1, 2) * edge(2, 1), edge(1, 2) * edge(2, 0) - edge(1, 0) * edge(2, 2),
            edge(1, 0) * edge(2, 1) - edge(1, 1) * edge(2, 0)};
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    for (float& component : n) {
        component = length > 0.0F ? component / length : 0.0F;
    }
    return n;
}

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string Contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::uint32_t LittleEndian(const std::string& bytes, std::size_t offset, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes.at(offset + i))) << (8 * i);
    }
    return value;
}

// 24-bit bitmaps, bottom row first, with rows of whole 4 bytes: what the format says, not what the library writes.
Picture ReadBmp(const std::string& path) {
    const std::string bytes = Contents(path);
    if (bytes.size() < 54 || bytes.compare(0, 2, "BM") != 0 || LittleEndian(bytes, 28, 2) != 24 ||
        LittleEndian(bytes, 2, 4) != bytes.size()) {
        return {};
    }
    const std::size_t start = LittleEndian(bytes, 10, 4);
    const std::size_t width = LittleEndian(bytes, 18, 4);
    const std::size_t height = LittleEndian(bytes, 22, 4);
    const std::size_t stride = (width * 3 + 3) / 4 * 4;
    if (bytes.size() < start + stride * height) {
        return {};
    }
    Picture picture{static_cast<int>(width), static_cast<int>(height), {}};
    for (std::size_t row = height; row-- > 0;) {
        for (std::size_t x = 0; x < width; ++x) {
            const auto at = [&](std::size_t i) {
                return static_cast<int>(static_cast<unsigned char>(bytes[start + row * stride + 3 * x + i]));
            };
            picture.pixels.push_back({at(2), at(1), at(0)});
        }
    }
    return picture;
}

Picture ReadPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        return {};
    }
    image.format = PNG_FORMAT_RGB;
    std::vector<unsigned char> bytes(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) == 0) {
        return {};
    }
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        picture.pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2]});
    }
    return picture;
}

} // namespace

Folder::Folder() {
    std::string pattern = (fs::temp_directory_path() / "quorvex-cli-XXXXXX").string();
    const char* made = ::mkdtemp(pattern.data());
    EXPECT_NE(made, nullptr);
    m_path = pattern;
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

std::vector<std::string> Folder::Names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<Triangle> BoxSurface(const Point& low, const Point& high) {
    const auto corner = [&](unsigned int i) {
        return Point{(i & 1U) != 0 ? high[0] : low[0], (i & 2U) != 0 ? high[1] : low[1],
                     (i & 4U) != 0 ? high[2] : low[2]};
    };
    constexpr std::array<std::array<unsigned int, 4>, 6> faces{
        {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}}};
    std::vector<Triangle> triangles;
    for (const auto& face : faces) {
        triangles.push_back({corner(face[0]), corner(face[1]), corner(face[2])});
        triangles.push_back({corner(face[0]), corner(face[2]), corner(face[3])});
    }
    return triangles;
}

std::vector<Triangle> SphereSurface(const Point& center, float radius) {
    constexpr int around = 72;
    constexpr int rings = 36;
    const auto point = [&](int ring, int step) {
        const double latitude = std::numbers::pi * (static_cast<double>(ring) / rings - 0.5);
        const double longitude = 2.0 * std::numbers::pi * (step % around) / around;
        return Point{center[0] + radius * static_cast<float>(std::cos(latitude) * std::sin(longitude)),
                     center[1] + radius * static_cast<float>(std::sin(latitude)),
                     center[2] + radius * static_cast<float>(std::cos(latitude) * std::cos(longitude))};
    };
    std::vector<Triangle> triangles;
    for (int ring = 0; ring < rings; ++ring) {
        for (int step = 0; step < around; ++step) {
            triangles.push_back({point(ring, step), point(ring, step + 1), point(ring + 1, step + 1)});
            triangles.push_back({point(ring, step), point(ring + 1, step + 1), point(ring + 1, step)});
        }
    }
    return triangles;
}

std::string WriteBinary(const std::string& path, const std::vector<Triangle>& triangles) {
    std::ofstream file(path, std::ios::binary);
    file << std::string(80, '\0');
    const auto put = [&file](const void* bytes, std::size_t count) {
        file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    };
    constexpr std::array<char, 2> attribute{};
    const auto count = static_cast<std::uint32_t>(triangles.size());
    put(&count, sizeof count);
    for (const Triangle& triangle : triangles) {
        const Point normal = Normal(triangle);
        put(normal.data(), sizeof normal);
        put(triangle.data(), sizeof triangle);
        put(attribute.data(), sizeof attribute);
    }
    return path;
}

std::string WriteAscii(const std::string& path, const std::vector<Triangle>& triangles) {
    std::ofstream file(path);
    file << "solid made by a test\n";
    for (const Triangle& triangle : triangles) {
        const Point n = Normal(triangle);
        file << "facet normal " << n[0] << ' ' << n[1] << ' ' << n[2] << "\nouter loop\n";
        for (const Point& p : triangle) {
            file << "vertex " << p[0] << ' ' << p[1] << ' ' << p[2] << '\n';
        }
        file << "endloop\nendfacet\n";
    }
    file << "endsolid\n";
    return path;
}

std::string WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& outTo) {
    const Folder folder;
    const std::string out = outTo.empty() ? folder.Path("out") : outTo;
    const std::string err = folder.Path("err");
    std::string command = "unset DISPLAY; exec " + Quoted(program);
    for (const std::string& argument : arguments) {
        command += ' ' + Quoted(argument);
    }
    command += " </dev/null >" + Quoted(out) + " 2>" + Quoted(err);
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, outTo.empty() ? Contents(out) : "", Contents(err)};
}

Outcome Quorvex(const std::vector<std::string>& arguments) {
    return RunProgram(QUORVEX_TOOL, arguments);
}

int Pixel::Brightest() const {
    return std::max({r, g, b});
}
int Pixel::Darkest() const {
    return std::min({r, g, b});
}

const Pixel& Picture::At(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
}

Picture ReadPicture(const std::string& path) {
    Picture picture = path.ends_with(".bmp") ? ReadBmp(path) : ReadPng(path);
    EXPECT_GT(picture.width, 0) << path << " is no picture";
    return picture;
}

Picture Draw(const Folder& folder, std::vector<std::string> arguments) {
    const std::string path = folder.Path("drawn.png");
    arguments.insert(arguments.begin(), {"render", "-o", path});
    const Outcome outcome = Quorvex(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.out + outcome.err, "");
    return ReadPicture(path);
}

} // namespace testing_cli
