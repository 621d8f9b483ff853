#include "Scene.h"

#include <array>
#include <functional>

#include <fmt/format.h>

#include "Failure.h"
#include "ModelFile.h"
#include "ProgressBar.h"
#include "VolumeFile.h"

namespace KOVA::Quorvex::cli {

namespace {

// The first is that of bare metal; the others are told apart from it and from each other, also on grey prints.
constexpr std::array<ColorRGBA, 6> c_palette{{{0.80F, 0.82F, 0.85F},
                                              {0.90F, 0.55F, 0.20F},
                                              {0.30F, 0.60F, 0.85F},
                                              {0.45F, 0.75F, 0.40F},
                                              {0.80F, 0.35F, 0.40F},
                                              {0.85F, 0.80F, 0.35F}}};

std::array<double, 3> Widen(const Vector3f& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

Box BoxOf(const MeshData& data) {
    Box box = Box::Empty();
    const Vector3f* vertices = data.GetVertexArray();
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        const std::array<double, 3> p = Widen(vertices[i]);
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

Mesh LoadMesh(const std::string& file, std::size_t number, Box& all) {
    Mesh mesh = ReadModel(file);
    if (mesh.GetData().GetNumVertices() == 0) {
        throw Failure(fmt::format("'{}' has no triangles to draw", file));
    }
    const Box box = BoxOf(mesh.GetData());
    if (!box.IsFinite()) {
        throw Failure(fmt::format("'{}' has coordinates that are not finite", file));
    }
    all.Include(box);
    mesh.GetAttribute().SetColor(c_palette[number % c_palette.size()]);
    return mesh;
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

// The scene's unit and middle are those of the common box, or of the first volume's voxels.
void ChooseUnit(Scene& scene) {
    if (scene.volumes.empty()) {
        const double radius = scene.box.Radius();
        scene.unit = radius > 0.0 ? radius : 1.0;
        scene.middle = scene.box.Center();
        return;
    }
    const VolumeData& data = scene.volumes.front().GetData();
    const auto middle = [](std::size_t voxels) { return (static_cast<double>(voxels) - 1.0) / 2.0; };
    scene.unit = 0.5 / static_cast<double>(data.getVoxelSize());
    scene.middle = {middle(data.getDimX()), middle(data.getDimY()), middle(data.getDimZ())};
}

// From the coordinates of the files to those of the scene.
void Convert(Scene& scene) {
    const double factor = 1.0 / scene.unit;
    scene.box = Box::Empty();
    for (const Mesh& mesh : scene.meshes) {
        CenterAndScale(mesh.GetData(), scene.middle, factor);
        scene.box.Include(BoxOf(mesh.GetData()));
    }
    for (Position& position : PositionsOf(scene.marks)) {
        for (std::size_t i = 0; i < 3; ++i) {
            position[i] = (position[i] - scene.middle[i]) * factor;
        }
        scene.box.Include({position, position});
    }
    for (const Volume& volume : scene.volumes) {
        scene.box.Include({Widen(volume.GetData().GetBB0()), Widen(volume.GetData().GetBB1())});
    }
}

} // namespace

Scene LoadScene(const std::vector<std::string>& files, const Marks& marks, ProgressBar& progress) {
    Scene scene{{}, {}, marks, 1.0, {}, Box::Empty()};
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.Show(static_cast<double>(i) / static_cast<double>(files.size() + 1), files[i]);
        if (IsVolumeFile(files[i])) {
            scene.volumes.push_back(ReadVolume(files[i]));
        } else {
            scene.meshes.push_back(LoadMesh(files[i], i, scene.box));
        }
    }
    for (const Position& position : PositionsOf(scene.marks)) {
        scene.box.Include({position, position});
    }
    ChooseUnit(scene);
    Convert(scene);
    return scene;
}

} // namespace KOVA::Quorvex::cli
