#include "Scene.h"

#include <functional>

#include <fmt/format.h>

#include "Failure.h"
#include "MeshPlacement.h"
#include "ModelFile.h"
#include "ProgressBar.h"
#include "VolumeFile.h"

namespace KOVA::Quorvex::cli {

namespace {

std::array<double, 3> Widen(const Vector3f& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
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
    mesh.GetAttribute().SetColor(PartColor(number));
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
    const SceneUnit unit = scene.volumes.empty() ? UnitOf(scene.box) : UnitOf(scene.volumes.front().GetData());
    scene.unit = unit.unit;
    scene.middle = unit.middle;
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
