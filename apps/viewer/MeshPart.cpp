#include "MeshPart.h"

#include <algorithm>
#include <utility>

#include <QLocale>

#include <shared/Background.h>
#include <shared/Failure.h>
#include <shared/Lighting.h>
#include <shared/MeetMesh.h>
#include <shared/ModelFile.h>
#include <shared/PartLook.h>

#include "NumberText.h"

namespace KOVA::Quorvex::viewer {

namespace {

// Of a mesh in a scene that begins with it. In X-ray pictures every surface adds a quarter of its distance to the grey
// level: a dozen of them should be seen behind each other.
constexpr double c_radius = 0.15;

// The vertices without normals; they stay the other's.
Mesh Unlit(MeshData& data) {
    return Mesh(*new MeshData(data.GetNumVertices(), data.GetVertexArray(), nullptr, static_cast<ColorRGB*>(nullptr),
                              data.GetMode()));
}

Mesh ReadUsable(const std::string& path, ReadProgress& progress) {
    Mesh mesh = ReadModel(path, &progress);
    if (mesh.GetData().GetNumVertices() == 0) {
        throw Failure("'" + path + "' has no triangles to draw");
    }
    return mesh;
}

} // namespace

MeshPart::MeshPart(const std::string& path, ReadProgress& progress)
    : ScenePart(path), m_lit(ReadUsable(path, progress)), m_flat(Unlit(m_lit.GetData())),
      m_fileBox(BoxOf(m_lit.GetData())), m_fileRadius(UnitOf(m_fileBox).unit), m_summary(Summarize(m_lit.GetData())),
      m_unit(UnitOf(m_fileBox)) {
    if (!m_fileBox.IsFinite()) {
        throw Failure("'" + path + "' has coordinates that are not finite");
    }
    MeshData& data = m_lit.GetData();
    CenterAndScale(data, m_fileBox.Center(), 1.0 / m_fileRadius);
    OrientNormals(data);
    m_flat.GetData().UpdateMetrics();
    MeshAttribute& attribute = m_lit.GetAttribute();
    attribute.SetShininess(c_shininess);
    attribute.SetSpecularity(c_specularity);
    attribute.SetBoundingBoxColor(c_boxColor);
    Place(m_unit);
}

double MeshPart::UploadFurther() {
    static constexpr std::array arrays{&MeshData::UpdateNormalArray, &MeshData::UpdateVertexArray,
                                       &MeshData::UpdateIndexArray, &MeshData::UpdateColorArray};
    (m_lit.GetData().*arrays[m_uploadedArrays])(STORAGE_VBO);
    return static_cast<double>(++m_uploadedArrays) / static_cast<double>(arrays.size());
}

const Mesh& MeshPart::Shown() const {
    return ShowsLines(m_lit.GetAttribute().GetRenderMode()) ? m_flat : m_lit;
}

void MeshPart::AddTo(RenderFrame& frame) {
    Mesh* const copy = frame.Add(Shown());
    copy->GetAttribute() = m_lit.GetAttribute();
    m_copies[&frame] = copy;
}

void MeshPart::RemoveFrom(RenderFrame& frame) {
    const auto found = m_copies.find(&frame);
    if (found != m_copies.end()) {
        frame.Remove(*found->second);
        m_copies.erase(found);
    }
}

void MeshPart::Apply() {
    MeshData& data = Shown().GetData();
    if (&data == &m_flat.GetData() && !std::exchange(m_flatUploaded, true)) {
        data.Update(STORAGE_VBO);
    }
    for (auto& [frame, copy] : m_copies) {
        if (&copy->GetData() != &data) {
            Mesh* const replaced = std::exchange(copy, frame->Add(Shown()));
            frame->Remove(*replaced);
        }
        copy->GetAttribute() = m_lit.GetAttribute();
    }
}

Box MeshPart::GetBox() const {
    const Vector3d low = InScene(Vector3d(m_fileBox.low));
    const Vector3d high = InScene(Vector3d(m_fileBox.high));
    return {{low.x, low.y, low.z}, {high.x, high.y, high.z}};
}

void MeshPart::Place(const SceneUnit& unit) {
    m_unit = unit;
    const auto scale = static_cast<float>(m_fileRadius / unit.unit);
    Matrix44d& transform = m_lit.GetAttribute().GetTransformRef();
    transform.SetIdentity();
    transform.Scale({scale, scale, scale});
    transform.Translate(InScene(Vector3d(m_fileBox.Center())).ToFloat());
    Apply();
}

bool MeshPart::IsShownAs(const Mesh* mesh) const {
    return std::any_of(m_copies.begin(), m_copies.end(), [mesh](const auto& copy) { return copy.second == mesh; });
}

SceneUnit MeshPart::SuitableUnit() const {
    SceneUnit unit = UnitOf(m_fileBox);
    unit.unit /= c_radius;
    return unit;
}

// X-ray pictures ask for the darkest background: one of several decides.
void MeshPart::AddModes(Modes& modes) const {
    modes.mesh = modes.mesh == MeshAttribute::RENDER_XRAY ? modes.mesh : m_lit.GetAttribute().GetRenderMode();
}

std::optional<double> MeshPart::Meet(const Beam& beam) const {
    const double scale = m_unit.unit / m_fileRadius;
    const Vector3d middle = InScene(Vector3d(m_fileBox.Center()));
    const Ray ray{(beam.ray.origin - middle) * scale, beam.ray.direction * scale};
    const Beam own{ray, beam.radius * scale, beam.growth * scale};
    const MeshData& data = m_lit.GetData();
    switch (m_lit.GetAttribute().GetRenderMode()) {
    case MeshAttribute::RENDER_POINTS:
        return NearestVertex(data, own);
    case MeshAttribute::RENDER_WIREFRAME:
        return NearestEdge(data, own);
    default:
        const std::optional<double> met = MeetTriangles(data, own.ray);
        return met ? met : NearestEdge(data, own);
    }
}

std::vector<ScenePart::Fact> MeshPart::Describe() const {
    const QLocale locale;
    const auto place = [](const std::array<float, 3>& v) {
        return Vector3d(DecimalOf(v[0]), DecimalOf(v[1]), DecimalOf(v[2]));
    };
    const Vector3d low = place(m_summary.low);
    const Vector3d high = place(m_summary.high);
    const auto text = [this](const Vector3d& v) { return PlaceText(v, 2.0 * double{m_summary.radius}); };
    return {{QStringLiteral("Triangles"), locale.toString(qulonglong{m_summary.triangles})},
            {QStringLiteral("Size"), text(high - low)},
            {QStringLiteral("From"), text(low)},
            {QStringLiteral("To"), text(high)},
            {QStringLiteral("Without area"), locale.toString(qulonglong{m_summary.degenerateTriangles})},
            {QStringLiteral("Inverted normals"), locale.toString(qulonglong{m_summary.invertedNormals})}};
}

} // namespace KOVA::Quorvex::viewer
