#include "Measurements.h"

#include <cmath>

#include <QLocale>

#include <Quorvex/frame/RenderFrame.h>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr ColorRGB c_color{1.0F, 0.9F, 0.2F};
constexpr ColorRGBA c_lineColor{1.0F, 0.9F, 0.2F, 1.0F};
constexpr int c_digits = 5;

} // namespace

void Measurements::Take(const Vector3d& point, double unit) {
    if (!m_open) {
        m_open = point;
        return;
    }
    const double distance = Length(point - *m_open) * unit;
    m_distances.push_back({*m_open, point, QLocale().toString(distance, 'g', c_digits)});
    m_open.reset();
}

void Measurements::Clear() {
    m_distances.clear();
    m_open.reset();
}

MeasurementMarks::MeasurementMarks(RenderFrame& frame) : m_overlay(&frame.Add(Overlay())->GetData()) {}

void MeasurementMarks::Place(const Measurements& measurements, const CameraRig& rig) {
    m_overlay->Clear();
    const auto addPoint = [this](const CameraRig::Foreground& where) -> Point& {
        return m_overlay->AddPoint(where.place, c_color, "");
    };
    for (const Measurements::Distance& distance : measurements.GetDistances()) {
        const auto from = rig.InFront(distance.from);
        const auto to = rig.InFront(distance.to);
        if (from && to) {
            Point& first = addPoint(*from);
            Point& second = addPoint(*to);
            // The label's middle is on the line: a blank line below brings the number above it.
            Line& line = m_overlay->AddLine(first, second, c_lineColor, distance.label.toStdString() + "\n ");
            line.TextRef().AdjustSize(from->labelFactor);
        }
    }
    if (const auto& open = measurements.GetOpenPoint()) {
        if (const auto where = rig.InFront(*open)) {
            addPoint(*where);
        }
    }
}

} // namespace KOVA::Quorvex::viewer
