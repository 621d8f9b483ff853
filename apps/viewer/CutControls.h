#pragma once

#include <QWidget>

#include "VolumePart.h"

class QCheckBox;
class QSlider;

namespace KOVA::Quorvex::viewer {

// Sliders for what is cut away of a volume along one axis, and for the slice across it.
class CutControls : public QWidget {
    Q_OBJECT

public:
    CutControls(const QString& axis, QWidget* parent);

    void Show(const VolumePart::AxisCut& cut);
    VolumePart::AxisCut GetCut() const;

signals:
    void Changed();

private:
    QSlider* MakeSlider(const QString& name, const QString& tip);
    void KeepOrder(const QSlider* moved);

    QSlider* m_low;
    QSlider* m_high;
    QCheckBox* m_showSlice;
    QSlider* m_slice;
};

} // namespace KOVA::Quorvex::viewer
