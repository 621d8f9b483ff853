#include "CutControls.h"

#include <algorithm>
#include <cmath>

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>

#include "ValueSlider.h"

namespace KOVA::Quorvex::viewer {

CutControls::CutControls(const QString& axis, QWidget* parent)
    : QWidget(parent), m_first(new ValueSlider(tr("%1 from").arg(axis), tr("Cuts away the voxels before this one"), 0)),
      m_last(new ValueSlider(tr("%1 to").arg(axis), tr("Cuts away the voxels after this one"), 0)),
      m_showSlice(new QCheckBox(tr("Slice"))),
      m_slice(new ValueSlider(tr("%1 slice").arg(axis), tr("The voxels that are shown in grey levels"), 0)) {
    m_showSlice->setAccessibleName(tr("Show the %1 slice").arg(axis));
    m_showSlice->setToolTip(tr("Shows a plane across the axis in grey levels"));
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setVerticalSpacing(2);
    layout->setColumnStretch(1, 1);
    layout->addWidget(new QLabel(tr("%1 from").arg(axis)), 0, 0);
    layout->addWidget(m_first, 0, 1);
    layout->addWidget(new QLabel(tr("%1 to").arg(axis)), 1, 0);
    layout->addWidget(m_last, 1, 1);
    layout->addWidget(m_showSlice, 2, 0);
    layout->addWidget(m_slice, 2, 1);
    for (ValueSlider* slider : {m_first, m_last, m_slice}) {
        connect(slider, &ValueSlider::Changed, this, [this, slider] {
            KeepOrder(slider);
            emit Changed();
        });
    }
    connect(m_showSlice, &QCheckBox::toggled, this, [this](bool show) {
        m_slice->setEnabled(show);
        emit Changed();
    });
    m_slice->setEnabled(false);
}

// The limits push each other.
void CutControls::KeepOrder(const ValueSlider* moved) {
    if (moved != m_slice && m_first->GetValue() > m_last->GetValue()) {
        (moved == m_first ? m_last : m_first)->SetValue(moved->GetValue());
    }
}

void CutControls::Show(const VolumePart::AxisCut& cut, std::size_t voxels) {
    const QSignalBlocker blocker(this);
    m_voxels = static_cast<double>(std::max<std::size_t>(voxels, 1));
    for (ValueSlider* slider : {m_first, m_last, m_slice}) {
        slider->SetRange(0.0, m_voxels - 1.0);
    }
    m_first->SetValue(std::round(cut.low * m_voxels));
    m_last->SetValue(std::round(cut.high * m_voxels) - 1.0);
    m_slice->SetValue(
        std::min(std::floor(cut.slice * m_voxels), cut.slice == cut.high ? m_last->GetValue() : m_voxels));
    m_showSlice->setChecked(cut.showSlice);
}

VolumePart::AxisCut CutControls::GetCut() const {
    const double low = m_first->GetValue() / m_voxels;
    const double high = (m_last->GetValue() + 1.0) / m_voxels;
    double slice = (m_slice->GetValue() + 0.5) / m_voxels;
    if (high < 1.0 && m_slice->GetValue() == m_last->GetValue()) {
        slice = high;
    } else if (low > 0.0 && m_slice->GetValue() == m_first->GetValue()) {
        slice = low;
    }
    return {low, high, m_showSlice->isChecked(), slice};
}

} // namespace KOVA::Quorvex::viewer
