#pragma once

#include <QPoint>
#include <QWidget>

#include <Quorvex/frame/RenderFrame.h>

#include "CameraRig.h"

namespace KOVA::Quorvex::viewer {

// One picture of the scene: a child window of its own that the library draws to, and the mouse in it. The left button
// turns, the middle or right one (or the left with Shift) moves, the wheel zooms to the cursor, a click is told. Other
// buttons, and those that are pressed during a drag, do nothing. Qt counts in its own pixels, this class's signals in
// the screen's.
//
// Deleting one belongs into EventBridge::WhenIdle.
class FrameWidget : public QWidget {
    Q_OBJECT

public:
    explicit FrameWidget(QWidget* parent);
    FrameWidget(const FrameWidget&) = delete;
    FrameWidget& operator=(const FrameWidget&) = delete;
    ~FrameWidget() override;

    RenderFrame& Frame() { return m_frame; }
    CameraRig& Rig() { return m_rig; }

    // Asks for a new picture.
    void Refresh();

    // How many bricks of volumes the passes from now on draw.
    void ExpectBricks(std::size_t count);

    // Quality passes are drawn with more pixels than fast ones, and fast ones with as many slices of volumes as they
    // have time for: see EventBridge::AboutToDraw and FastPassDrawn.
    void PreparePass(bool quality);
    void AdaptFastPass();

    QPaintEngine* paintEngine() const override { return nullptr; }
    QSize sizeHint() const override { return {480, 360}; }

signals:
    void CameraMoved(KOVA::Quorvex::viewer::FrameWidget* frame);
    void Touched(KOVA::Quorvex::viewer::FrameWidget* frame); // by the mouse, or got the keys
    void Clicked(KOVA::Quorvex::viewer::FrameWidget* frame, QPoint pixel);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Drag { None, Turn, Pan };

    void AttachFrame();
    void DetachFrame();
    void Moved();
    QPoint PixelAt(const QPointF& position) const;

    RenderFrame m_frame;
    CameraRig m_rig;
    HWND m_window = nullptr;
    std::size_t m_bricks = 0;
    Drag m_drag = Drag::None;
    Qt::MouseButton m_button = Qt::NoButton; // that began it
    bool m_dragged = false;                  // farther than a click may
    QPoint m_start;
    QPoint m_last;
};

} // namespace KOVA::Quorvex::viewer
