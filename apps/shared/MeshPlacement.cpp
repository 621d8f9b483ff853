#include "MeshPlacement.h"

#include <Quorvex/mesh/MeshData.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex::apps {

namespace {

constexpr std::array<ColorRGBA, 6> c_palette{{{0.80F, 0.82F, 0.85F},
                                              {0.90F, 0.55F, 0.20F},
                                              {0.30F, 0.60F, 0.85F},
                                              {0.45F, 0.75F, 0.40F},
                                              {0.80F, 0.35F, 0.40F},
                                              {0.85F, 0.80F, 0.35F}}};

} // namespace

Box BoxOf(const MeshData& data) {
    Box box = Box::Empty();
    const Vector3f* vertices = data.GetVertexArray();
    for (unsigned int i = 0; i < data.GetNumVertices(); ++i) {
        const Vector3f& v = vertices[i];
        const std::array<double, 3> p{double{v.x}, double{v.y}, double{v.z}};
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

SceneUnit UnitOf(const Box& box) {
    const double radius = box.Radius();
    return {radius > 0.0 ? radius : 1.0, box.Center()};
}

SceneUnit UnitOf(const VolumeData& data) {
    const auto middle = [](std::size_t voxels) { return (static_cast<double>(voxels) - 1.0) / 2.0; };
    return {0.5 / static_cast<double>(data.getVoxelSize()),
            {middle(data.getDimX()), middle(data.getDimY()), middle(data.getDimZ())}};
}

ColorRGBA PartColor(std::size_t number) {
    return c_palette[number % c_palette.size()];
}

} // namespace KOVA::Quorvex::apps
