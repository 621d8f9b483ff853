#include "CutControls.h"

#include <cmath>

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr int c_steps = 500;
constexpr int c_page = 25;

double Share(const QSlider* slider) {
    return static_cast<double>(slider->value()) / c_steps;
}

void Set(QSlider* slider, double share) {
    const QSignalBlocker blocker(slider);
    slider->setValue(static_cast<int>(std::lround(share * c_steps)));
}

} // namespace

CutControls::CutControls(const QString& axis, QWidget* parent)
    : QWidget(parent), m_low(MakeSlider(tr("%1 from").arg(axis), tr("Cuts away what is below"))),
      m_high(MakeSlider(tr("%1 to").arg(axis), tr("Cuts away what is above"))), m_showSlice(new QCheckBox(tr("Slice"))),
      m_slice(MakeSlider(tr("%1 slice").arg(axis), tr("The plane that is shown in grey levels"))) {
    m_showSlice->setAccessibleName(tr("Show the %1 slice").arg(axis));
    m_showSlice->setToolTip(tr("Shows a plane across the axis in grey levels"));
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setVerticalSpacing(2);
    layout->addWidget(new QLabel(QStringLiteral("<b>%1</b>").arg(axis)), 0, 0);
    layout->addWidget(m_low, 0, 1);
    layout->addWidget(m_high, 0, 2);
    layout->addWidget(m_showSlice, 1, 0);
    layout->addWidget(m_slice, 1, 1, 1, 2);
    connect(m_showSlice, &QCheckBox::toggled, this, [this](bool show) {
        m_slice->setEnabled(show);
        emit Changed();
    });
    m_slice->setEnabled(false);
}

QSlider* CutControls::MakeSlider(const QString& name, const QString& tip) {
    auto* const slider = new QSlider(Qt::Horizontal, this);
    slider->setRange(0, c_steps);
    slider->setPageStep(c_page);
    slider->setAccessibleName(name);
    slider->setToolTip(tip);
    connect(slider, &QSlider::valueChanged, this, [this, slider] {
        KeepOrder(slider);
        emit Changed();
    });
    return slider;
}

// The limits push each other.
void CutControls::KeepOrder(const QSlider* moved) {
    if (m_low->value() > m_high->value() && moved != m_slice) {
        Set(moved == m_low ? m_high : m_low, Share(moved));
    }
}

void CutControls::Show(const VolumePart::AxisCut& cut) {
    const QSignalBlocker blocker(this);
    Set(m_low, cut.low);
    Set(m_high, cut.high);
    Set(m_slice, cut.slice);
    m_showSlice->setChecked(cut.showSlice);
}

VolumePart::AxisCut CutControls::GetCut() const {
    return {Share(m_low), Share(m_high), m_showSlice->isChecked(), Share(m_slice)};
}

} // namespace KOVA::Quorvex::viewer
