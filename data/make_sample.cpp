// Makes data/flange.stl, the part that is shown when no other is named: a pipe flange with a hub and counterbored bolt
// holes, in millimetres, lying in the xz plane with its axis along y. Usage: make_sample OUT.stl
//
// The surface is closed: neighbouring pieces share their corners exactly, because each corner is computed once per
// place by the same expression.

#include <cmath>
#include <cstdio>
#include <numbers>
#include <vector>

#include <Quorvex/mesh/MeshData.h>
#include <Quorvex/mesh/MeshWriter.h>

using KOVA::Quorvex::ColorRGB;
using KOVA::Quorvex::Mesh;
using KOVA::Quorvex::MeshData;
using KOVA::Quorvex::MeshWriter;
using KOVA::Quorvex::Vector3f;

namespace {

constexpr int c_bolts = 6;
constexpr int c_stepsPerSector = 12; // along the circles of a sector, which holds one bolt hole
constexpr int c_stepsAcross = 4;     // along the straight sides of a sector
constexpr int c_steps = c_bolts * c_stepsPerSector;

constexpr double c_bore = 17.0;
constexpr double c_hub = 26.0; // where the hub's fillet meets the plate
constexpr double c_rim = 60.0;
constexpr double c_plateTop = 10.0;
constexpr double c_bevel = 1.5;
constexpr double c_boltCircle = 44.5;
constexpr double c_boltHole = 4.5;
constexpr double c_counterbore = 7.5;
constexpr double c_counterboreFloor = 5.5;

// A point of the half plane that turns about the axis, or of the plate seen from above.
struct Point {
    double u, v;
};

std::vector<Vector3f> s_corners; // three a triangle, counter-clockwise from outside

// Cylinder coordinates to the scene's: the axis is y.
Vector3f At(double radius, double height, int step) {
    const double angle = 2.0 * std::numbers::pi * (step % c_steps) / c_steps;
    return {static_cast<float>(radius * std::cos(angle)), static_cast<float>(height),
            static_cast<float>(-radius * std::sin(angle))};
}

void Triangle(const Vector3f& a, const Vector3f& b, const Vector3f& c) {
    s_corners.insert(s_corners.end(), {a, b, c});
}

void Quad(const Vector3f& a, const Vector3f& b, const Vector3f& c, const Vector3f& d) {
    Triangle(a, b, c);
    Triangle(a, c, d);
}

// Turns a line of (radius, height) about the axis. The outside is to the right of the line's direction, with the radius
// to the right and the height upwards.
void Turn(const std::vector<Point>& line) {
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        for (int s = 0; s < c_steps; ++s) {
            Quad(At(line[i].u, line[i].v, s), At(line[i].u, line[i].v, s + 1), At(line[i + 1].u, line[i + 1].v, s + 1),
                 At(line[i + 1].u, line[i + 1].v, s));
        }
    }
}

// The outline of a sector of the plate between the hub and outerRadius, counter-clockwise from above, starting where
// the inner circle begins. The straight sides are shared with the neighbours, the arcs with the turned surfaces.
std::vector<Vector3f> Outline(int sector, double outerRadius, double height) {
    const int first = sector * c_stepsPerSector;
    std::vector<Vector3f> outline;
    outline.reserve(std::size_t{2} * (c_stepsAcross + c_stepsPerSector));
    const auto side = [&](int step, int i) {
        return At(c_hub + (outerRadius - c_hub) * i / c_stepsAcross, height, step);
    };
    for (int i = 0; i < c_stepsAcross; ++i) {
        outline.push_back(side(first, i));
    }
    for (int i = 0; i < c_stepsPerSector; ++i) {
        outline.push_back(At(outerRadius, height, first + i));
    }
    for (int i = c_stepsAcross; i > 0; --i) {
        outline.push_back(side(first + c_stepsPerSector, i));
    }
    for (int i = c_stepsPerSector; i > 0; --i) {
        outline.push_back(At(c_hub, height, first + i));
    }
    return outline;
}

// A circle about the sector's bolt with one point in the direction of each point of the outline.
std::vector<Vector3f> Circle(int sector, const std::vector<Vector3f>& outline, double radius, double height) {
    const double angle = 2.0 * std::numbers::pi * (sector + 0.5) / c_bolts;
    const double x = c_boltCircle * std::cos(angle);
    const double z = -c_boltCircle * std::sin(angle);
    std::vector<Vector3f> circle;
    circle.reserve(outline.size());
    for (const Vector3f& p : outline) {
        const double dx = static_cast<double>(p.x) - x;
        const double dz = static_cast<double>(p.z) - z;
        const double scale = radius / std::hypot(dx, dz);
        circle.emplace_back(static_cast<float>(x + dx * scale), static_cast<float>(height),
                            static_cast<float>(z + dz * scale));
    }
    return circle;
}

// The strip between two closed lines of as many points; its outside is above when outer runs counter-clockwise around
// inner, seen from there.
void Strip(const std::vector<Vector3f>& outer, const std::vector<Vector3f>& inner) {
    for (std::size_t i = 0; i < outer.size(); ++i) {
        const std::size_t next = (i + 1) % outer.size();
        Quad(outer[i], outer[next], inner[next], inner[i]);
    }
}

void PlateSector(int sector) {
    // The directions of all the circle's points come from the top outline, so that the wall of the hole is straight.
    const std::vector<Vector3f> top = Outline(sector, c_rim - c_bevel, c_plateTop);
    const std::vector<Vector3f> bottom = Outline(sector, c_rim - c_bevel, 0.0);
    const std::vector<std::vector<Vector3f>> lines{top,
                                                   Circle(sector, top, c_counterbore, c_plateTop),
                                                   Circle(sector, top, c_counterbore, c_counterboreFloor),
                                                   Circle(sector, top, c_boltHole, c_counterboreFloor),
                                                   Circle(sector, top, c_boltHole, 0.0),
                                                   bottom};
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        Strip(lines[i], lines[i + 1]);
    }
}

// The hub from the plate up, over its bevelled top, down the bore and out over the bottom to where the plate begins.
std::vector<Point> HubProfile() {
    constexpr double fillet = 4.0;
    constexpr int filletSteps = 4;
    std::vector<Point> line;
    line.reserve(filletSteps + 8);
    for (int i = 0; i <= filletSteps; ++i) {
        const double angle = std::numbers::pi / 2 * i / filletSteps;
        line.push_back({c_hub - fillet * std::sin(angle), c_plateTop + fillet * (1.0 - std::cos(angle))});
    }
    const double wall = c_hub - fillet;
    for (const Point p : {Point{wall, 34.0}, Point{wall - c_bevel, 35.5}, Point{c_bore + 1.0, 35.5},
                          Point{c_bore, 34.5}, Point{c_bore, 1.0}, Point{c_bore + 1.0, 0.0}, Point{c_hub, 0.0}}) {
        line.push_back(p);
    }
    return line;
}

Vector3f Normal(const Vector3f& a, const Vector3f& b, const Vector3f& c) {
    const Vector3f e = b - a;
    const Vector3f f = c - a;
    return Vector3f(e.y * f.z - e.z * f.y, e.z * f.x - e.x * f.z, e.x * f.y - e.y * f.x).Normalize();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_sample OUT.stl\n", stderr);
        return 2;
    }
    Turn(HubProfile());
    Turn({{c_rim - c_bevel, 0.0}, {c_rim, c_bevel}, {c_rim, c_plateTop - c_bevel}, {c_rim - c_bevel, c_plateTop}});
    for (int sector = 0; sector < c_bolts; ++sector) {
        PlateSector(sector);
    }

    std::vector<Vector3f> normals;
    for (std::size_t i = 0; i < s_corners.size(); i += 3) {
        normals.insert(normals.end(), 3, Normal(s_corners[i], s_corners[i + 1], s_corners[i + 2]));
    }
    // The mesh owns the data, the arrays stay ours.
    const Mesh mesh(*new MeshData(static_cast<unsigned int>(s_corners.size()), s_corners.data(), normals.data(),
                                  static_cast<ColorRGB*>(nullptr), 4));
    if (!MeshWriter::WriteSTLBinary(argv[1], mesh)) {
        std::fprintf(stderr, "make_sample: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
