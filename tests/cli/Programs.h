#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

// What the tests of the programs share: a folder of their own, STL files, running a program, and reading its pictures.

namespace testing_cli {

// A new folder for each test, removed with its contents at the end.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string Path(const std::string& name) const { return (m_path / name).string(); }
    std::vector<std::string> Names() const; // what is in it, sorted

private:
    std::filesystem::path m_path;
};

using Point = std::array<float, 3>;
using Triangle = std::array<Point, 3>; // counter-clockwise from outside

std::vector<Triangle> BoxSurface(const Point& low, const Point& high);
std::vector<Triangle> SphereSurface(const Point& center, float radius);

// Both store normals that fit the corners. They return the path.
std::string WriteBinary(const std::string& path, const std::vector<Triangle>& triangles);
std::string WriteAscii(const std::string& path, const std::vector<Triangle>& triangles);
std::string WriteText(const std::string& path, const std::string& text);

struct Outcome {
    int code; // exit code, -1 when the program did not end by itself
    std::string out;
    std::string err;
};

// Runs a program without a display. Standard output goes to outTo when it is given.
Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& outTo = {});

// The tool.
Outcome Quorvex(const std::vector<std::string>& arguments);

struct Pixel {
    int r, g, b;
    int Brightest() const;
    int Darkest() const;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels; // rows from the top

    const Pixel& At(int x, int y) const;
};

// Decode by the ending of the name; an empty picture, and a failure of the test, for what is none.
Picture ReadPicture(const std::string& path);

// Draws with the tool, expects that it works, and reads the picture.
Picture Draw(const Folder& folder, std::vector<std::string> arguments);

// The pixels for which a condition holds: how many, where, and from where to where.
struct Spot {
    int count = 0;
    double x = 0.0, y = 0.0; // the middle of them, as fractions of the picture from its centre: right and up positive
    int left = 0, right = -1, top = 0, bottom = -1;

    int Width() const { return right - left + 1; }
    int Height() const { return bottom - top + 1; }
};

template <class Condition> Spot Find(const Picture& picture, Condition condition) {
    Spot spot;
    double sumX = 0.0;
    double sumY = 0.0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (!condition(picture.At(x, y))) {
                continue;
            }
            spot.left = spot.count == 0 || x < spot.left ? x : spot.left;
            spot.right = x > spot.right ? x : spot.right;
            spot.top = spot.count == 0 ? y : spot.top;
            spot.bottom = y;
            sumX += x + 0.5;
            sumY += y + 0.5;
            ++spot.count;
        }
    }
    if (spot.count > 0) {
        spot.x = 2.0 * sumX / spot.count / picture.width - 1.0;
        spot.y = 1.0 - 2.0 * sumY / spot.count / picture.height;
    }
    return spot;
}

// Anything but a black background.
inline bool IsLit(const Pixel& p) {
    return p.Brightest() > 20;
}

} // namespace testing_cli
