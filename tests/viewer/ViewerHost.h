#pragma once

#include <functional>

#include <QImage>
#include <QString>
#include <QTemporaryDir>

#include <viewer/Engine.h>
#include <viewer/FrameGrid.h>
#include <viewer/Loader.h>
#include <viewer/MainWindow.h>
#include <viewer/SceneModel.h>

namespace KOVA::Quorvex::viewer {

// The samples.
inline const QString c_flange = QStringLiteral(QUORVEX_SAMPLE);
inline const QString c_casting = QStringLiteral(QUORVEX_VOLUME_SAMPLE);

// The viewer as a user has it: the engine (one for all tests, as the library is started once in a process), a window on
// the screen, settings of its own. Errors of OpenGL are counted.
class ViewerHost {
public:
    ViewerHost();
    ViewerHost(const ViewerHost&) = delete;
    ViewerHost& operator=(const ViewerHost&) = delete;
    ~ViewerHost();

    EventBridge& Bridge() { return s_engine->Bridge(); }
    static void StopEngine() { s_engine.reset(); }
    MainWindow& Window() { return *m_window; }
    FrameWidget& Frame(int index = 0) { return m_window->GetFrames().GetFrame(index); }
    void CloseWindow() { m_window.reset(); }
    void OpenWindow();

    // Runs the event loop until the condition holds; false when it does not within the time.
    static bool WaitUntil(const std::function<bool()>& condition, int milliseconds = 30000);

    // Until nothing is drawn or loaded any more.
    bool Settle();
    bool Open(const QStringList& files);

    // What the screen shows of the widget, and how many of its pixels differ clearly from a frame's background.
    static QImage Picture(QWidget& widget);
    static int CountForeground(const QImage& picture);
    static int CountDifferent(const QImage& a, const QImage& b, int tolerance = 0); // sum of red, green and blue

    static int GlErrors();

    // Kept under this name when the environment says where: for people to look at.
    static void Keep(const QImage& picture, const char* name);

private:
    static std::unique_ptr<Engine> s_engine;

    QTemporaryDir m_settings;
    std::unique_ptr<MainWindow> m_window;
};

} // namespace KOVA::Quorvex::viewer
