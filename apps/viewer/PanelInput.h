#pragma once

#include <QObject>

class QWidget;

namespace KOVA::Quorvex::viewer {

// How the controls of a panel share keys and the wheel with the window. Lists and boxes that have the focus get what is
// typed, whatever shortcuts the window has; the wheel changes what has the focus only, else it scrolls the panel.
class PanelInput : public QObject {
    Q_OBJECT

public:
    explicit PanelInput(QWidget* panel); // becomes its child; for the controls that are in it by now

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace KOVA::Quorvex::viewer
