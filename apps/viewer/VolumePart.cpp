#include "VolumePart.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include <QLocale>

#include <shared/PartLook.h>
#include <shared/RekFile.h>
#include <shared/VolumeMaterial.h>

#include "MeetVolume.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr std::size_t c_bricksAtOnce = 64; // some milliseconds

std::array<double, 3> Extents(const VolumeData& data) {
    const Vector3f high = data.GetBB1();
    return {high.x, high.y, high.z};
}

Vector4d Plane(std::size_t axis, double direction, double offset) {
    Vector4d plane(0.0, 0.0, 0.0, offset);
    plane[axis] = direction;
    return plane;
}

} // namespace

VolumePart::VolumePart(const std::string& path, ReadProgress& progress)
    : ScenePart(path), m_volume(ReadRek(path, &progress)), m_summary(Summarize(m_volume.GetData())) {
    VolumeAttribute& attribute = m_volume.GetAttribute();
    attribute.SetColor(c_boxColor);
    SetMaterial(attribute);
    m_look.curve = TransferCurve::FromTable(DefaultTable(m_look.mode));
    for (std::size_t axis = 0; axis < 3; ++axis) { // through the middle of a voxel
        const auto voxels = static_cast<double>(CountVoxels(axis));
        m_look.cuts[axis].slice = (std::floor(voxels / 2.0) + 0.5) / voxels;
    }
    Apply();
}

TransferTable VolumePart::DefaultTable(VolumeAttribute::RenderMode mode) const {
    const VolumeData& data = GetData();
    return DefaultTransferFunction(m_summary, mode, std::max({data.getDimX(), data.getDimY(), data.getDimZ()}));
}

std::size_t VolumePart::CountVoxels(std::size_t axis) const {
    return std::array{GetData().getDimX(), GetData().getDimY(), GetData().getDimZ()}[axis];
}

double VolumePart::UploadFurther() {
    VolumeData& data = m_volume.GetData();
    const std::size_t missing = data.UpdateBricks(c_bricksAtOnce);
    return missing > 0 ? 1.0 - static_cast<double>(missing) / static_cast<double>(data.CountBricksOfUpdate()) : 1.0;
}

void VolumePart::AddTo(RenderFrame& frame) {
    m_copies[&frame] = frame.Add(m_volume);
}

void VolumePart::RemoveFrom(RenderFrame& frame) {
    const auto found = m_copies.find(&frame);
    if (found != m_copies.end()) {
        frame.Remove(*found->second);
        m_copies.erase(found);
    }
}

void VolumePart::Apply() {
    VolumeAttribute& attribute = m_volume.GetAttribute();
    try {
        attribute.SetRenderMode(m_look.mode);
    } catch (const std::exception&) {
        m_look.mode = attribute.GetRenderMode();
    }
    attribute.SetSampleFactor(static_cast<float>(m_look.samples));
    SetTables(attribute, m_look.curve.MakeTable(), SliceTransferFunction(m_summary));
    const std::array<double, 3> extents = Extents(GetData());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const AxisCut& cut = m_look.cuts[axis];
        const auto place = [e = extents[axis]](double share) { return (2.0 * share - 1.0) * e; };
        const Vector4d none(0.0, 0.0, 0.0, 0.0);
        attribute.SetUserClipPlane(2 * axis, cut.low > 0.0 ? Plane(axis, 1.0, -place(cut.low)) : none);
        attribute.SetUserClipPlane(2 * axis + 1, cut.high < 1.0 ? Plane(axis, -1.0, place(cut.high)) : none);
        attribute.SetUserSlice(axis, cut.showSlice ? Plane(axis, 1.0, -place(cut.slice)) : none);
    }
    for (auto& [frame, copy] : m_copies) {
        copy->GetAttribute() = attribute;
    }
}

void VolumePart::SetLook(const Look& look) {
    m_look = look;
    Apply();
}

Box VolumePart::GetBox() const {
    const std::array<double, 3> high = Extents(GetData());
    return {{-high[0], -high[1], -high[2]}, high};
}

std::optional<double> VolumePart::Meet(const Beam& beam) const {
    return MeetVolume(GetData(), m_volume.GetAttribute(), beam.ray);
}

std::vector<ScenePart::Fact> VolumePart::Describe() const {
    const QLocale locale;
    const VolumeData& data = GetData();
    std::vector<Fact> facts{
        {QStringLiteral("Voxels"),
         QStringLiteral("%1 × %2 × %3").arg(data.getDimX()).arg(data.getDimY()).arg(data.getDimZ())},
        {QStringLiteral("Levels"), QStringLiteral("%1 to %2").arg(m_summary.low).arg(m_summary.high)},
        {QStringLiteral("Mean level"), locale.toString(m_summary.mean, 'f', 1)}};
    if (m_summary.parts) {
        facts.push_back({QStringLiteral("Material above"), locale.toString(m_summary.parts->threshold)});
        facts.push_back({QStringLiteral("Share of material"),
                         locale.toString(100.0 * m_summary.parts->materialShare, 'f', 1) + QStringLiteral(" %")});
    }
    return facts;
}

} // namespace KOVA::Quorvex::viewer
