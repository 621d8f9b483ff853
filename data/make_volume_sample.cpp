// Makes data/casting.rek, the volume that is shown when no other is named: a cast foot with a bored boss and two ribs,
// as a scanner sees it, whose pores an inspection has marked with 255. Usage: make_volume_sample OUT.rek
//
// The same numbers come out everywhere: the noise is made of integers, and of the operations on floating-point numbers
// only those are used that are exact to the last bit.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <Quorvex/volume/VolumeData.h>
#include <Quorvex/volume/VolumeWriter.h>

using KOVA::Quorvex::VolumeData;
using KOVA::Quorvex::VolumeWriter;

namespace {

constexpr std::size_t c_edge = 96;
constexpr double c_air = 14.5; // the fractions of levels are cut off
constexpr double c_material = 138.5;
constexpr unsigned char c_poreLevel = 255;
constexpr std::size_t c_pores = 24;

// In voxels from the middle of the volume; y is up.
struct Point {
    double x, y, z;
};

struct Pore {
    Point center;
    double radius;
};

double Length(double a, double b) {
    return std::sqrt(a * a + b * b);
}

// Distances to surfaces, negative inside. Shapes are joined by the minimum and cut out by the maximum of distances.

double Cylinder(const Point& p, double x, double z, double radius, double bottom, double top) {
    return std::max({Length(p.x - x, p.z - z) - radius, bottom - p.y, p.y - top});
}

double RoundedPlate(const Point& p, double halfX, double halfZ, double radius, double bottom, double top) {
    const double x = std::max(std::abs(p.x) - halfX + radius, 0.0);
    const double z = std::max(std::abs(p.z) - halfZ + radius, 0.0);
    return std::max({Length(x, z) - radius, bottom - p.y, p.y - top});
}

// A wall whose upper edge falls from the boss to the rim of the plate.
double Rib(const Point& p, double halfThickness) {
    const double slope = (1.3 * std::abs(p.x) + p.y - 34.0) / Length(1.3, 1.0);
    return std::max({std::abs(p.z) - halfThickness, slope, std::abs(p.x) - 40.0, -30.0 - p.y});
}

double Casting(const Point& p) {
    double distance = std::min(
        {RoundedPlate(p, 43.0, 29.0, 9.0, -34.0, -23.0), Rib(p, 4.0), Cylinder(p, 0.0, 0.0, 21.0, -34.0, 34.0)});
    for (const double x : {-33.0, 33.0}) {
        for (const double z : {-19.0, 19.0}) {
            distance = std::max(distance, -Cylinder(p, x, z, 4.5, -50.0, 50.0));
        }
    }
    distance = std::max(distance, -Cylinder(p, 0.0, 0.0, 10.5, -50.0, 50.0));
    return std::max(distance, -Cylinder(p, 0.0, 0.0, 14.0, 26.0, 50.0));
}

// A generator of which every bit is defined.
class Random {
public:
    std::uint32_t Next() {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(m_state >> 33U);
    }
    double Between(double low, double high) { return low + (high - low) * (Next() & 0xFFFFU) / 65536.0; }

private:
    std::uint64_t m_state = 20;
};

// Pores lie inside the material, apart from each other, and are smaller more often than large.
std::vector<Pore> PlacePores(Random& random) {
    std::vector<Pore> pores;
    while (pores.size() < c_pores) {
        const double size = random.Between(0.0, 1.0);
        const Pore pore{{random.Between(-42.0, 42.0), random.Between(-34.0, 34.0), random.Between(-29.0, 29.0)},
                        1.3 + 3.4 * size * size};
        const auto meets = [&pore](const Pore& other) {
            const double across = Length(pore.center.x - other.center.x, pore.center.z - other.center.z);
            return Length(across, pore.center.y - other.center.y) < pore.radius + other.radius + 3.0;
        };
        if (Casting(pore.center) < -pore.radius - 2.5 && std::none_of(pores.begin(), pores.end(), meets)) {
            pores.push_back(pore);
        }
    }
    return pores;
}

bool IsInside(const Pore& pore, const Point& p) {
    return Length(Length(p.x - pore.center.x, p.z - pore.center.z), p.y - pore.center.y) < pore.radius;
}

// Voxels that the surface cuts have a share of both levels.
unsigned char Level(const Point& p, const std::vector<Pore>& pores, Random& random) {
    const double noise = random.Between(-1.0, 1.0) + random.Between(-1.0, 1.0);
    for (const Pore& pore : pores) {
        if (IsInside(pore, p)) {
            return c_poreLevel;
        }
    }
    const double share = std::clamp(0.5 - Casting(p) / 1.5, 0.0, 1.0);
    return static_cast<unsigned char>(c_air + (c_material - c_air) * share + 2.0 * noise);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_volume_sample OUT.rek\n", stderr);
        return 2;
    }
    Random random;
    const std::vector<Pore> pores = PlacePores(random);
    VolumeData data(c_edge, c_edge, c_edge);
    const auto coordinate = [](std::size_t voxel) { return static_cast<double>(voxel) + 0.5 - c_edge / 2.0; };
    for (std::size_t z = 0; z < c_edge; ++z) {
        for (std::size_t y = 0; y < c_edge; ++y) {
            for (std::size_t x = 0; x < c_edge; ++x) {
                data.set(x, y, z, Level({coordinate(x), coordinate(y), coordinate(z)}, pores, random));
            }
        }
    }
    if (!VolumeWriter::WriteREK(argv[1], data)) {
        std::fprintf(stderr, "make_volume_sample: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
