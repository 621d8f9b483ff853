// A host in Qt 6: a widget in a window of Qt's, which the library draws to. docs/EMBEDDING.md explains each step.
// Usage: qt [FILE.stl]. Drag to turn, turn the wheel to zoom. Exit code 0 done, 1 failed.

#include <cstdio>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMainWindow>
#include <QMouseEvent>
#include <QSocketNotifier>

#include <Quorvex/Quorvex.h>
#include <Quorvex/platform/NativeWindow.h>

#include <X11/Xlib.h> // after Qt: its macros take names from everyone

using namespace KOVA::Quorvex;

namespace {

class Viewport : public QWidget {
public:
    explicit Viewport(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_DontCreateNativeAncestors);
        setAttribute(Qt::WA_NativeWindow);
        setAttribute(Qt::WA_PaintOnScreen); // by the library; Qt keeps its hands off
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_NoSystemBackground);
    }

    QPaintEngine* paintEngine() const override { return nullptr; }

    // The library's connection sees the window when the server has heard of it on Qt's.
    bool Start() {
        const WId id = winId();
        XSync(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->display(), False);
        m_window = AttachX11Window(static_cast<unsigned long>(id), nullptr);
        return m_window != nullptr && Quorvex::Init(m_window) && m_frame.Init(m_window, &m_view);
    }

    void Stop() {
        m_frame.Clear();
        m_frame.Release();
        Quorvex::Release();
        ReleaseWindow(m_window);
    }

    void Show(const Mesh& mesh) {
        mesh.GetData().Update(STORAGE_VBO);
        m_frame.Add(mesh);
        m_frame.SetLight({0.0F, 0.0F, 1.0F}); // from the viewer of a right-handed view
        const float radius = m_frame.GetRadius();
        m_view.SetProjectionR(0.8F, 0.01F * radius, 100.0F * radius); // radians, near and far plane
        m_view.SetModelviewViewer(m_frame.GetCenter() + Vector3f(1.0F, 0.7F, 2.0F) * (1.25F * radius),
                                  m_frame.GetCenter(), {0.0F, 1.0F, 0.0F});
        m_view.Render();
    }

    void Abort() { m_frame.AbortRendering(); }

protected:
    void resizeEvent(QResizeEvent* /*event*/) override { m_view.Render(); }
    void mousePressEvent(QMouseEvent* event) override { m_last = Pixel(event->position()); }

    void mouseMoveEvent(QMouseEvent* event) override {
        const QPoint pixel = Pixel(event->position());
        const QPoint size = Pixel({double(width()), double(height())});
        m_view.ApplyTrackball(m_last.x(), m_last.y(), pixel.x(), pixel.y(), size.x(), size.y(), m_frame.GetCenter());
        m_last = pixel;
        m_view.Render(); // ends a quality pass that is under way
    }

    void wheelEvent(QWheelEvent* event) override {
        const float distance = (m_view.getPosition() - m_frame.GetCenter()).Length();
        m_view.TranslateViewer({0.0F, 0.0F, -distance * 0.001F * static_cast<float>(event->angleDelta().y())});
        m_view.Render();
    }

private:
    QPoint Pixel(QPointF position) const { return (position * devicePixelRatioF()).toPoint(); }

    HWND m_window = nullptr;
    View m_view;
    RenderFrame m_frame;
    QPoint m_last;
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "xcb"); // the library draws to X11 windows
    QApplication application(argc, argv);
    QMainWindow window;
    auto* const viewport = new Viewport(&window);
    window.setCentralWidget(viewport);
    window.resize(640, 480);
    if (!viewport->Start()) {
        std::fputs("qt: cannot start OpenGL\n", stderr);
        return 1;
    }
    const Mesh mesh = argc > 1 ? MeshReader::ReadSTLTolerant(argv[1])
                               : MeshBuilder::BuildBox({-1.0F, -0.6F, -0.8F}, {1.0F, 0.6F, 0.8F});
    viewport->Show(mesh);

    QSocketNotifier notifier(EventDescriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [] { ProcessEvents(); });
    SetMessagePump([](void*) { return QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents); },
                   nullptr);
    QObject::connect(&application, &QGuiApplication::lastWindowClosed, [viewport] { viewport->Abort(); });
    window.show();
    const int status = QApplication::exec();
    SetMessagePump(nullptr, nullptr);
    viewport->Stop();
    return status;
}
