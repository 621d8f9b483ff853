#include "TransferEditor.h"

#include <algorithm>
#include <cmath>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <Quorvex/analysis/VolumeHistogram.h>

#include "QtColor.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr double c_margin = 7.0;   // points on the border are whole
constexpr double c_strip = 10.0;   // height of the colours below the plot
constexpr double c_radius = 5.0;   // of a point
constexpr double c_reach = 9.0;    // within which a point is hit
constexpr double c_keyStep = 0.02; // of the height

double HeightOf(double opacity) {
    return std::cbrt(opacity);
}

double OpacityOf(double height) {
    return height * height * height;
}

} // namespace

TransferEditor::TransferEditor(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(tr("Transfer function"));
    setAccessibleDescription(tr("Keys: Page Up and Page Down choose a point, arrows move it, Insert adds one, Delete "
                                "removes it, Enter asks for its colour"));
}

void TransferEditor::SetHistogram(const std::array<std::uint64_t, 256>& counts) {
    const auto largest = static_cast<double>(*std::max_element(counts.begin(), counts.end()));
    for (std::size_t i = 0; i < counts.size(); ++i) {
        // By logarithm: air is most of a scan.
        m_bars[i] = largest > 0.0 ? std::log1p(static_cast<double>(counts[i])) / std::log1p(largest) : 0.0;
    }
    HistogramOf(counts).binarize(m_peaks.data(), m_peaks.data() + 1);
    update();
}

void TransferEditor::SetCurve(const TransferCurve& curve) {
    m_curve = curve;
    Select(m_selected < curve.GetPoints().size() ? m_selected : std::nullopt);
}

QRectF TransferEditor::Plot() const {
    return QRectF(rect()).adjusted(c_margin, c_margin, -c_margin, -2.0 * c_margin - c_strip);
}

QRectF TransferEditor::ColorStrip() const {
    const QRectF plot = Plot();
    return {plot.left(), plot.bottom() + c_margin, plot.width(), c_strip};
}

QPointF TransferEditor::PlaceOf(const TransferCurve::Point& point) const {
    const QRectF plot = Plot();
    return {plot.left() + plot.width() * point.intensity / TransferCurve::lastIntensity,
            plot.bottom() - plot.height() * HeightOf(double{point.color.a})};
}

double TransferEditor::IntensityAt(double x) const {
    return (x - Plot().left()) / Plot().width() * TransferCurve::lastIntensity;
}

double TransferEditor::OpacityAt(double y) const {
    return OpacityOf(std::clamp((Plot().bottom() - y) / Plot().height(), 0.0, 1.0));
}

std::optional<std::size_t> TransferEditor::PointAt(const QPointF& position) const {
    std::optional<std::size_t> found;
    double nearest = c_reach;
    for (std::size_t i = 0; i < m_curve.GetPoints().size(); ++i) {
        const QPointF way = PlaceOf(m_curve.GetPoints()[i]) - position;
        const double distance = std::hypot(way.x(), way.y());
        if (distance <= nearest) {
            nearest = distance;
            found = i;
        }
    }
    return found;
}

void TransferEditor::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(Plot(), palette().base());
    PaintHistogram(painter);
    PaintCurve(painter);
    painter.setPen(QPen(hasFocus() ? palette().highlight().color() : palette().mid().color(), hasFocus() ? 2.0 : 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(Plot());
}

void TransferEditor::PaintHistogram(QPainter& painter) const {
    const QRectF plot = Plot();
    const double width = plot.width() / static_cast<double>(m_bars.size());
    QColor color = palette().text().color();
    color.setAlphaF(0.25F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (std::size_t i = 0; i < m_bars.size(); ++i) {
        const double height = plot.height() * m_bars[i];
        painter.fillRect(
            QRectF(plot.left() + width * static_cast<double>(i), plot.bottom() - height, std::max(width, 1.0), height),
            color);
    }
    painter.restore();
    painter.setPen(QPen(palette().mid().color(), 1.0, Qt::DashLine));
    for (const int peak : m_peaks) {
        if (peak >= 0) {
            const double x = plot.left() + plot.width() * peak / TransferCurve::lastIntensity;
            painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        }
    }
}

void TransferEditor::PaintCurve(QPainter& painter) const {
    const QRectF strip = ColorStrip();
    const QRectF plot = Plot();
    QPainterPath path;
    for (int i = 0; i <= static_cast<int>(plot.width()); ++i) {
        const double intensity = i / plot.width() * TransferCurve::lastIntensity;
        const ColorRGBA color = m_curve.At(intensity);
        const QPointF place = PlaceOf({intensity, color});
        if (i == 0) {
            path.moveTo(place);
        } else {
            path.lineTo(place);
        }
        painter.fillRect(QRectF(place.x(), strip.top(), 1.5, strip.height()), ToQColor(color));
    }
    painter.setClipRect(plot.adjusted(-c_margin, -c_margin, c_margin, c_margin));
    painter.setPen(QPen(palette().highlight().color(), 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    for (std::size_t i = 0; i < m_curve.GetPoints().size(); ++i) {
        const bool selected = m_selected == i;
        const TransferCurve::Point& point = m_curve.GetPoints()[i];
        painter.setPen(QPen(selected ? palette().highlight().color() : palette().text().color(), selected ? 2.5 : 1.2));
        painter.setBrush(ToQColor(point.color));
        painter.drawEllipse(PlaceOf(point), c_radius, c_radius);
    }
    painter.setClipping(false);
}

void TransferEditor::Select(std::optional<std::size_t> index) {
    m_selected = index;
    m_dragging = false;
    update();
}

void TransferEditor::Changed() {
    update();
    emit Edited();
}

void TransferEditor::mousePressEvent(QMouseEvent* event) {
    Select(PointAt(event->position()));
    if (event->button() == Qt::RightButton) {
        RemoveSelected();
    }
    m_dragging = m_selected && event->button() == Qt::LeftButton;
}

// The release may have gone to a dialog that was opened meanwhile.
void TransferEditor::mouseMoveEvent(QMouseEvent* event) {
    m_dragging = m_dragging && event->buttons().testFlag(Qt::LeftButton);
    if (!m_dragging) {
        setCursor(PointAt(event->position()) ? Qt::SizeAllCursor : Qt::CrossCursor);
        return;
    }
    m_curve.Move(*m_selected, IntensityAt(event->position().x()), OpacityAt(event->position().y()));
    Changed();
}

void TransferEditor::mouseReleaseEvent(QMouseEvent* event) {
    m_dragging = m_dragging && event->button() != Qt::LeftButton;
}

void TransferEditor::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (PointAt(event->position())) {
        Select(PointAt(event->position()));
        emit ColorWanted(*m_selected);
        return;
    }
    Select(m_curve.Insert(IntensityAt(event->position().x())));
    m_curve.Move(*m_selected, IntensityAt(event->position().x()), OpacityAt(event->position().y()));
    m_dragging = true;
    Changed();
}

void TransferEditor::AddAt(double intensity) {
    Select(m_curve.Insert(intensity));
    Changed();
}

void TransferEditor::RemoveSelected() {
    if (m_selected) {
        m_curve.Remove(*m_selected);
        Select(std::nullopt);
        Changed();
    }
}

void TransferEditor::MoveSelected(double intensities, double height) {
    if (m_selected) {
        const TransferCurve::Point& point = m_curve.GetPoints()[*m_selected];
        const double raised = std::clamp(HeightOf(double{point.color.a}) + height, 0.0, 1.0);
        m_curve.Move(*m_selected, point.intensity + intensities, OpacityOf(raised));
        Changed();
    }
}

void TransferEditor::keyPressEvent(QKeyEvent* event) {
    const std::size_t count = m_curve.GetPoints().size();
    switch (event->key()) {
    case Qt::Key_PageDown:
        Select(m_selected ? (*m_selected + 1) % count : 0);
        break;
    case Qt::Key_PageUp:
        Select(m_selected ? (*m_selected + count - 1) % count : count - 1);
        break;
    case Qt::Key_Left:
        MoveSelected(-1.0, 0.0);
        break;
    case Qt::Key_Right:
        MoveSelected(1.0, 0.0);
        break;
    case Qt::Key_Up:
        MoveSelected(0.0, c_keyStep);
        break;
    case Qt::Key_Down:
        MoveSelected(0.0, -c_keyStep);
        break;
    case Qt::Key_Insert:
        AddAt(m_selected && *m_selected + 1 < count
                  ? (m_curve.GetPoints()[*m_selected].intensity + m_curve.GetPoints()[*m_selected + 1].intensity) / 2.0
                  : TransferCurve::lastIntensity / 2.0);
        break;
    case Qt::Key_Delete:
        RemoveSelected();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_selected) {
            emit ColorWanted(*m_selected);
        }
        break;
    default:
        QWidget::keyPressEvent(event);
        break;
    }
}

bool TransferEditor::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto& help = dynamic_cast<QHelpEvent&>(*event);
        const auto index = PointAt(help.pos());
        const QString text = index ? tr("Intensity %1, opacity %2")
                                         .arg(m_curve.GetPoints()[*index].intensity, 0, 'f', 1)
                                         .arg(double{m_curve.GetPoints()[*index].color.a}, 0, 'g', 3)
                                   : tr("Drag points to move them. Double-click for a new point, on a point for its "
                                        "colour; right-click removes it.");
        QToolTip::showText(help.globalPos(), text, this);
        return true;
    }
    return QWidget::event(event);
}

} // namespace KOVA::Quorvex::viewer
