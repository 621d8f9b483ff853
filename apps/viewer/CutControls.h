#pragma once

#include <QWidget>

#include "VolumePart.h"

class QCheckBox;

namespace KOVA::Quorvex::viewer {

class ValueSlider;

// What is cut away of a volume along one axis, and the slice across it, by the numbers of the voxels: the first and the
// last that are kept, and the one through whose middle the slice runs; that of the outermost voxels lies on the cut,
// where nothing covers it.
class CutControls : public QWidget {
    Q_OBJECT

public:
    CutControls(const QString& axis, QWidget* parent);

    void Show(const VolumePart::AxisCut& cut, std::size_t voxels);
    VolumePart::AxisCut GetCut() const;

signals:
    void Changed();

private:
    void KeepOrder(const ValueSlider* moved);

    ValueSlider* m_first;
    ValueSlider* m_last;
    QCheckBox* m_showSlice;
    ValueSlider* m_slice;
    double m_voxels = 1.0;
};

} // namespace KOVA::Quorvex::viewer
