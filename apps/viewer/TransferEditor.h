#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QWidget>

#include "TransferCurve.h"

class QPainter;

namespace KOVA::Quorvex::viewer {

// A histogram, with the peaks of background and material marked, and the transfer function over it. Drag points to move
// them, double-click beside them for a new one and on one for its colour, click with the right button to remove it; the
// keys do the same for the selected point. Small opacities, of which volumes are made that one looks into, have as much
// room as large ones: the height is the cube root.
class TransferEditor : public QWidget {
    Q_OBJECT

public:
    explicit TransferEditor(QWidget* parent);

    void SetHistogram(const std::array<std::uint64_t, 256>& counts);
    void SetCurve(const TransferCurve& curve); // ends a drag; a point stays selected
    void Select(std::optional<std::size_t> index);
    const TransferCurve& GetCurve() const { return m_curve; }

    // Where a point stands, in the widget's coordinates.
    QPointF PlaceOf(const TransferCurve::Point& point) const;

    QSize sizeHint() const override { return {280, 180}; }
    QSize minimumSizeHint() const override { return {160, 120}; }

signals:
    void Edited();
    void ColorWanted(std::size_t point);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    QRectF Plot() const;
    QRectF ColorStrip() const;
    double IntensityAt(double x) const;
    double OpacityAt(double y) const;
    std::optional<std::size_t> PointAt(const QPointF& position) const;
    void PaintHistogram(QPainter& painter) const;
    void PaintCurve(QPainter& painter) const;
    void AddAt(double intensity);
    void RemoveSelected();
    void MoveSelected(double intensities, double height);
    void Changed();

    TransferCurve m_curve;
    std::array<double, 256> m_bars{};   // 0..1
    std::array<int, 2> m_peaks{-1, -1}; // of background and material
    std::optional<std::size_t> m_selected;
    bool m_dragging = false; // the selected point
};

} // namespace KOVA::Quorvex::viewer
