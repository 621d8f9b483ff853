#include "Scene.h"

#include <array>

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

// Brings the meshes from the first volume's voxels to its place in the world.
void JoinVolumes(Scene& scene) {
    const VolumeData& data = scene.volumes.front().GetData();
    const double voxel = 2.0 * static_cast<double>(data.getVoxelSize());
    const std::array<double, 3> middle{(static_cast<double>(data.getDimX()) - 1.0) / 2.0,
                                       (static_cast<double>(data.getDimY()) - 1.0) / 2.0,
                                       (static_cast<double>(data.getDimZ()) - 1.0) / 2.0};
    scene.box = Box::Empty();
    for (const Mesh& mesh : scene.meshes) {
        CenterAndScale(mesh.GetData(), middle, voxel);
        scene.box.Include(BoxOf(mesh.GetData()));
    }
    for (const Volume& volume : scene.volumes) {
        scene.box.Include({Widen(volume.GetData().GetBB0()), Widen(volume.GetData().GetBB1())});
    }
}

} // namespace

Scene LoadScene(const std::vector<std::string>& files, ProgressBar& progress) {
    Scene scene{{}, {}, Box::Empty()};
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.Show(static_cast<double>(i) / static_cast<double>(files.size() + 1), files[i]);
        if (IsVolumeFile(files[i])) {
            scene.volumes.push_back(ReadVolume(files[i]));
        } else {
            scene.meshes.push_back(LoadMesh(files[i], i, scene.box));
        }
    }
    if (!scene.volumes.empty()) {
        JoinVolumes(scene);
        return scene;
    }

    const std::array<double, 3> center = scene.box.Center();
    const double radius = scene.box.Radius();
    const double factor = radius > 0.0 ? 1.0 / radius : 1.0;
    for (std::size_t i = 0; i < 3; ++i) {
        scene.box.low[i] = (scene.box.low[i] - center[i]) * factor;
        scene.box.high[i] = (scene.box.high[i] - center[i]) * factor;
    }
    for (const Mesh& mesh : scene.meshes) {
        CenterAndScale(mesh.GetData(), center, factor);
    }
    return scene;
}

} // namespace KOVA::Quorvex::cli
