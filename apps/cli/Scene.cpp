#include "Scene.h"

#include <array>
#include <functional>

#include <fmt/format.h>

#include "Failure.h"
#include "ModelFile.h"
#include "ProgressBar.h"

namespace KOVA::Quorvex::cli {

namespace {

// The first is that of bare metal; the others are told apart from it and from each other, also on grey prints.
constexpr std::array<ColorRGBA, 6> c_palette{{{0.80F, 0.82F, 0.85F},
                                              {0.90F, 0.55F, 0.20F},
                                              {0.30F, 0.60F, 0.85F},
                                              {0.45F, 0.75F, 0.40F},
                                              {0.80F, 0.35F, 0.40F},
                                              {0.85F, 0.80F, 0.35F}}};

Box BoxOf(const MeshData& data) {
    Box box = Box::Empty();
    const Vector3f* vertices = data.GetVertexArray();
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        const std::array<double, 3> p{static_cast<double>(vertices[i].x), static_cast<double>(vertices[i].y),
                                      static_cast<double>(vertices[i].z)};
        box.Include({p, p});
    }
    return box;
}

void CenterAndScale(MeshData& data, const std::array<double, 3>& center, double factor) {
    const auto moved = [factor](float value, double middle) {
        return static_cast<float>((static_cast<double>(value) - middle) * factor);
    };
    Vector3f* vertices = data.GetVertexArray();
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        Vector3f& v = vertices[i];
        v = {moved(v.x, center[0]), moved(v.y, center[1]), moved(v.z, center[2])};
    }
    data.UpdateMetrics();
}

// All positions of the marks, to be changed in place.
std::vector<std::reference_wrapper<Position>> PositionsOf(Marks& marks) {
    std::vector<std::reference_wrapper<Position>> positions;
    for (PointMark& point : marks.points) {
        positions.emplace_back(point.position);
    }
    for (LineMark& line : marks.lines) {
        positions.insert(positions.end(), {line.ends[0], line.ends[1]});
    }
    return positions;
}

} // namespace

Scene LoadScene(const std::vector<std::string>& files, const Marks& marks, ProgressBar& progress) {
    Scene scene{{}, marks, 1.0, {}, Box::Empty()};
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.Show(static_cast<double>(i) / static_cast<double>(files.size() + 1), files[i]);
        Mesh mesh = ReadModel(files[i]);
        if (mesh.GetData().GetNumVertices() == 0) {
            throw Failure(fmt::format("'{}' has no triangles to draw", files[i]));
        }
        const Box box = BoxOf(mesh.GetData());
        if (!box.IsFinite()) {
            throw Failure(fmt::format("'{}' has coordinates that are not finite", files[i]));
        }
        scene.box.Include(box);
        mesh.GetAttribute().SetColor(c_palette[i % c_palette.size()]);
        scene.meshes.push_back(mesh);
    }

    for (const Position& position : PositionsOf(scene.marks)) {
        scene.box.Include({position, position});
    }

    const std::array<double, 3> center = scene.box.Center();
    const double radius = scene.box.Radius();
    const double factor = radius > 0.0 ? 1.0 / radius : 1.0;
    scene.unit = 1.0 / factor;
    scene.middle = center;
    for (std::size_t i = 0; i < 3; ++i) {
        scene.box.low[i] = (scene.box.low[i] - center[i]) * factor;
        scene.box.high[i] = (scene.box.high[i] - center[i]) * factor;
    }
    for (const Mesh& mesh : scene.meshes) {
        CenterAndScale(mesh.GetData(), center, factor);
    }
    for (Position& position : PositionsOf(scene.marks)) {
        for (std::size_t i = 0; i < 3; ++i) {
            position[i] = (position[i] - center[i]) * factor;
        }
    }
    return scene;
}

} // namespace KOVA::Quorvex::cli
