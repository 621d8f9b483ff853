#pragma once

#include <QWidget>

class QDoubleSpinBox;
class QSlider;

namespace KOVA::Quorvex::viewer {

// A slider with its value beside it, where it can be typed, too.
class ValueSlider : public QWidget {
    Q_OBJECT

public:
    ValueSlider(const QString& name, const QString& tip, int decimals);

    void SetRange(double low, double high);
    void SetValue(double value); // without telling
    double GetValue() const;

signals:
    void Changed(double value);

private:
    int StepOf(double value) const;

    QSlider* m_slider;
    QDoubleSpinBox* m_box;
    double m_steps; // of the slider in one
};

} // namespace KOVA::Quorvex::viewer
