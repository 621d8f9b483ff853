#include "Measurements.h"

#include <algorithm>
#include <utility>

#include <Quorvex/frame/RenderFrame.h>

#include "NumberText.h"
#include "ScenePart.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr ColorRGB c_color{1.0F, 0.9F, 0.2F};
constexpr ColorRGBA c_lineColor{1.0F, 0.9F, 0.2F, 1.0F};

QString LabelOf(const Measurements::End& from, const Measurements::End& to, double unit) {
    const double size = 2.0 * std::max(from.part->GetBox().Radius(), to.part->GetBox().Radius());
    return NumberText(Length(to.InScene() - from.InScene()) * unit, size * unit);
}

} // namespace

Vector3d Measurements::End::InScene() const {
    return part->InScene(place);
}

bool Measurements::End::IsSeen() const {
    return part->Attribute().IsVisible();
}

void Measurements::Take(const End& end, double unit) {
    if (!m_open) {
        m_open = end;
        return;
    }
    m_distances.push_back({*m_open, end, LabelOf(*m_open, end, unit)});
    m_open.reset();
}

void Measurements::ChangeUnit(double unit) {
    for (Distance& distance : m_distances) {
        distance.label = LabelOf(distance.from, distance.to, unit);
    }
}

void Measurements::Clear() {
    m_distances.clear();
    m_open.reset();
}

void Measurements::Forget(const ScenePart* part) {
    const auto ends = [part](const Distance& distance) {
        return distance.from.part == part || distance.to.part == part;
    };
    m_distances.erase(std::remove_if(m_distances.begin(), m_distances.end(), ends), m_distances.end());
    if (m_open && m_open->part == part) {
        m_open.reset();
    }
}

MeasurementMarks::MeasurementMarks(RenderFrame& frame) : m_overlay(&frame.Add(Overlay())->GetData()) {}

void MeasurementMarks::Place(const Measurements& measurements, const CameraRig& rig, double pixelRatio) {
    std::vector<std::pair<CameraRig::Foreground, CameraRig::Foreground>> places;
    std::vector<QString> labels;
    for (const Measurements::Distance& distance : measurements.GetDistances()) {
        const auto from = rig.InFront(distance.from.InScene());
        const auto to = rig.InFront(distance.to.InScene());
        if (from && to && distance.IsSeen()) {
            places.emplace_back(*from, *to);
            labels.push_back(distance.label);
        }
    }
    const auto& open = measurements.GetOpenEnd();
    const auto openPlace = open && open->IsSeen() ? rig.InFront(open->InScene()) : std::nullopt;
    // Making a label draws its letters and uploads them: what is there is moved.
    const bool same = std::equal(m_marks.begin(), m_marks.end(), labels.begin(), labels.end(),
                                 [](const Mark& mark, const QString& label) { return mark.label == label; });
    if (!same || (m_openEnd != nullptr) != openPlace.has_value()) {
        Build(labels, openPlace.has_value());
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        Mark& mark = m_marks[i];
        mark.from->SetPosition(places[i].first.place);
        mark.to->SetPosition(places[i].second.place);
        const float factor = places[i].first.labelFactor * static_cast<float>(pixelRatio);
        mark.line->TextRef().AdjustSize(factor / std::exchange(mark.factor, factor));
    }
    if (openPlace) {
        m_openEnd->SetPosition(openPlace->place);
    }
}

void MeasurementMarks::Build(const std::vector<QString>& labels, bool openEnd) {
    m_overlay->Clear();
    m_marks.clear();
    const auto addPoint = [this] { return &m_overlay->AddPoint({0.0F, 0.0F, 0.0F}, c_color, ""); };
    for (const QString& label : labels) {
        Point* const from = addPoint();
        Point* const to = addPoint();
        // The label's middle is on the line: a blank line below brings the number above it.
        Line& line = m_overlay->AddLine(*from, *to, c_lineColor, label.toStdString() + "\n ");
        m_marks.push_back({label, from, to, &line, 1.0F});
    }
    m_openEnd = openEnd ? addPoint() : nullptr;
}

} // namespace KOVA::Quorvex::viewer
