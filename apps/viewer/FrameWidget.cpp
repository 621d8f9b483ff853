#include "FrameWidget.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QApplication>
#include <QMouseEvent>
#include <QPlatformSurfaceEvent>

#include <Quorvex/platform/NativeWindow.h>

#include "X11Window.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr double c_wheelFactor = 1.2; // a notch
constexpr double c_wheelNotch = 120.0;
constexpr double c_keyStep = 0.05; // of the frame's width
constexpr int c_keyTurn = 24;      // pixels of a drag

// A fast pass may take this long. The divisor of samples follows the time that passes take, from a guess that goes with
// the number of bricks, as each costs its time however few slices it has.
constexpr double c_fastSeconds = 0.04;
constexpr float c_leastGuess = 20.0F;
constexpr float c_guessPerBrick = 1.0F / 15.0F;
constexpr float c_mostSamples = 2.0F; // divisors
constexpr float c_fewestSamples = 400.0F;

} // namespace

FrameWidget::FrameWidget(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_DontCreateNativeAncestors);
    setAttribute(Qt::WA_NativeWindow);
    setAttribute(Qt::WA_PaintOnScreen); // by the library; Qt keeps its hands off
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::WheelFocus);
    setMinimumSize(80, 60);
    setCursor(Qt::ArrowCursor);
    m_frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer, in right-handed views
    AttachFrame();
}

FrameWidget::~FrameWidget() {
    DetachFrame();
}

void FrameWidget::AttachFrame() {
    const WId id = winId(); // making it is an event that comes here
    if (m_window == nullptr) {
        m_window = Attach(id);
        m_frame.Init(m_window, &m_rig.GetView());
    }
}

void FrameWidget::DetachFrame() {
    if (m_window != nullptr) {
        m_frame.Release();
        ReleaseWindow(m_window);
        m_window = nullptr;
    }
}

void FrameWidget::Refresh() {
    m_frame.Render();
}

void FrameWidget::ExpectBricks(std::size_t count) {
    if (std::exchange(m_bricks, count) != count) {
        const float guess = std::max(c_leastGuess, c_guessPerBrick * static_cast<float>(count));
        m_frame.SetFastPassSampleDivisor(std::min(guess, c_fewestSamples));
    }
}

void FrameWidget::PreparePass(bool quality) {
    // Surfaces of volumes are smooth by themselves, and what they cost goes with the pixels.
    const float wanted = m_frame.HoldsVolumes() ? 1.0F : 2.0F;
    const int longer = std::max(m_rig.GetWidth(), m_rig.GetHeight());
    const float largest = static_cast<float>(MAX_PASS_SIZE) / static_cast<float>(longer);
    const float full = std::min(wanted, largest);
    m_frame.SetAntiAliasing(quality ? full : full / 2.0F);
}

void FrameWidget::AdaptFastPass() {
    if (!m_frame.HoldsVolumes()) {
        return;
    }
    // Half of the way each time: single passes vary.
    const double wanted = m_frame.GetFastPassSampleDivisor() * std::sqrt(m_frame.GetPassDuration() / c_fastSeconds);
    m_frame.SetFastPassSampleDivisor(std::clamp(static_cast<float>(wanted), c_mostSamples, c_fewestSamples));
}

// Qt may give the widget another native window, for instance when it gets another parent.
bool FrameWidget::event(QEvent* event) {
    if (event->type() == QEvent::PlatformSurface) {
        const auto kind = dynamic_cast<QPlatformSurfaceEvent&>(*event).surfaceEventType();
        if (kind == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
            DetachFrame();
        }
    } else if (event->type() == QEvent::WinIdChange && m_window == nullptr && internalWinId() != 0) {
        AttachFrame();
        Refresh();
    }
    return QWidget::event(event);
}

void FrameWidget::resizeEvent(QResizeEvent* /*event*/) {
    const double ratio = devicePixelRatioF();
    m_rig.SetSize(static_cast<int>(std::lround(width() * ratio)), static_cast<int>(std::lround(height() * ratio)));
    m_frame.SetPixelRatio(static_cast<float>(ratio));
    SyncWithServer(); // so that the library learns of the size before it draws the picture that suits it
    Moved();
}

void FrameWidget::focusInEvent(QFocusEvent* event) {
    emit Touched(this);
    QWidget::focusInEvent(event);
}

// Who takes the keys may take the mouse, too, and with it the button's release.
void FrameWidget::focusOutEvent(QFocusEvent* event) {
    m_drag = Drag::None;
    QWidget::focusOutEvent(event);
}

QPoint FrameWidget::PixelAt(const QPointF& position) const {
    return (position * devicePixelRatioF()).toPoint();
}

void FrameWidget::mousePressEvent(QMouseEvent* event) {
    const Qt::MouseButton button = event->button();
    if (button != Qt::LeftButton && button != Qt::MiddleButton && button != Qt::RightButton) {
        event->ignore();
        return;
    }
    if (m_drag != Drag::None && button != m_button) {
        return;
    }
    emit Touched(this);
    m_button = button;
    m_start = m_last = PixelAt(event->position());
    m_dragged = false;
    const bool turn = button == Qt::LeftButton && !event->modifiers().testFlag(Qt::ShiftModifier);
    m_drag = turn ? Drag::Turn : Drag::Pan;
}

void FrameWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint pixel = PixelAt(event->position());
    const double distance = (pixel - m_start).manhattanLength() / devicePixelRatioF();
    m_dragged = m_dragged || distance >= QApplication::startDragDistance();
    if (m_drag == Drag::None || !m_dragged || pixel == m_last) {
        return;
    }
    if (m_drag == Drag::Turn) {
        m_rig.Turn(m_last.x(), m_last.y(), pixel.x(), pixel.y());
    } else {
        m_rig.Pan(pixel.x() - m_last.x(), pixel.y() - m_last.y());
    }
    m_last = pixel;
    Moved();
}

void FrameWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (m_drag == Drag::None || event->button() != m_button) {
        return;
    }
    m_drag = Drag::None;
    if (!m_dragged && m_button == Qt::LeftButton) {
        emit Clicked(this, PixelAt(event->position()));
    }
}

void FrameWidget::wheelEvent(QWheelEvent* event) {
    emit Touched(this);
    const QPoint pixel = PixelAt(event->position());
    m_rig.Zoom(std::pow(c_wheelFactor, event->angleDelta().y() / c_wheelNotch), pixel.x(), pixel.y());
    Moved();
    event->accept();
}

void FrameWidget::keyPressEvent(QKeyEvent* event) {
    const bool pan = event->modifiers().testFlag(Qt::ShiftModifier);
    const QPoint middle(m_rig.GetWidth() / 2, m_rig.GetHeight() / 2);
    const double step = c_keyStep * m_rig.GetWidth();
    const auto move = [&](int x, int y) {
        if (pan) {
            m_rig.Pan(x * step, y * step);
        } else {
            m_rig.Turn(middle.x(), middle.y(), middle.x() + x * c_keyTurn, middle.y() + y * c_keyTurn);
        }
    };
    switch (event->key()) {
    case Qt::Key_Left:
        move(-1, 0);
        break;
    case Qt::Key_Right:
        move(1, 0);
        break;
    case Qt::Key_Up:
        move(0, -1);
        break;
    case Qt::Key_Down:
        move(0, 1);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        m_rig.Zoom(c_wheelFactor, middle.x(), middle.y());
        break;
    case Qt::Key_Minus:
        m_rig.Zoom(1.0 / c_wheelFactor, middle.x(), middle.y());
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    Moved();
}

void FrameWidget::Moved() {
    Refresh();
    emit CameraMoved(this);
}

} // namespace KOVA::Quorvex::viewer
