#include "ValueSlider.h"

#include <algorithm>
#include <cmath>

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>

namespace KOVA::Quorvex::viewer {

namespace {

constexpr int c_pages = 25; // over the whole range

} // namespace

ValueSlider::ValueSlider(const QString& name, const QString& tip, int decimals)
    : m_slider(new QSlider(Qt::Horizontal)), m_box(new QDoubleSpinBox), m_steps(std::pow(10.0, decimals)) {
    for (QWidget* widget : {static_cast<QWidget*>(m_slider), static_cast<QWidget*>(m_box)}) {
        widget->setAccessibleName(name);
        widget->setToolTip(tip);
    }
    m_box->setDecimals(decimals);
    m_box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_box->setAlignment(Qt::AlignRight);
    m_box->setKeyboardTracking(false); // half of a number is none
    m_box->setRange(0.0, 9999.9);
    m_box->setFixedWidth(m_box->sizeHint().width()); // one below the other
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_slider, 1);
    layout->addWidget(m_box);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_box);
    connect(m_slider, &QSlider::valueChanged, this, [this](int step) {
        const QSignalBlocker blocker(m_box);
        m_box->setValue(step / m_steps);
        emit Changed(m_box->value());
    });
    connect(m_box, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        const QSignalBlocker blocker(m_slider);
        m_slider->setValue(StepOf(value));
        emit Changed(value);
    });
}

int ValueSlider::StepOf(double value) const {
    return static_cast<int>(std::lround(value * m_steps));
}

void ValueSlider::SetRange(double low, double high) {
    const QSignalBlocker noSlider(m_slider);
    const QSignalBlocker noBox(m_box);
    m_slider->setRange(StepOf(low), StepOf(high));
    m_slider->setPageStep(std::max(1, StepOf(high - low) / c_pages));
    m_box->setRange(low, high);
}

void ValueSlider::SetValue(double value) {
    const QSignalBlocker noSlider(m_slider);
    const QSignalBlocker noBox(m_box);
    m_box->setValue(value);
    m_slider->setValue(StepOf(m_box->value()));
}

double ValueSlider::GetValue() const {
    return m_box->value();
}

} // namespace KOVA::Quorvex::viewer
