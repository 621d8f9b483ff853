#include "PanelInput.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QSlider>

namespace KOVA::Quorvex::viewer {

namespace {

bool IsTyped(const QKeyEvent& key) {
    const Qt::KeyboardModifiers others = key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return others == Qt::NoModifier && !key.text().isEmpty() && key.text().front().isPrint();
}

} // namespace

PanelInput::PanelInput(QWidget* panel) : QObject(panel) {
    for (auto* widget : panel->findChildren<QWidget*>()) {
        auto* const choice = qobject_cast<QComboBox*>(widget);
        auto* const number = qobject_cast<QAbstractSpinBox*>(widget);
        if (choice != nullptr || number != nullptr || qobject_cast<QSlider*>(widget) != nullptr) {
            widget->setFocusPolicy(Qt::StrongFocus); // the wheel does not bring it
            widget->installEventFilter(this);
        }
        if (choice != nullptr) {
            choice->view()->installEventFilter(this);
        }
        if (number != nullptr) {
            number->setContextMenuPolicy(Qt::NoContextMenu); // it would run a loop, perhaps inside a pass
        }
        if (qobject_cast<QAbstractItemView*>(widget) != nullptr) {
            widget->installEventFilter(this);
        }
    }
}

bool PanelInput::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && qobject_cast<QSlider*>(watched) == nullptr &&
        IsTyped(dynamic_cast<QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Wheel && qobject_cast<QAbstractItemView*>(watched) == nullptr &&
        !qobject_cast<QWidget*>(watched)->hasFocus()) {
        event->ignore(); // so that the panel gets it
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace KOVA::Quorvex::viewer
