#include "ViewerHost.h"

#include <cstdlib>

#include <QApplication>
#include <QElapsedTimer>
#include <QScreen>
#include <QSettings>
#include <QTest>

#include <gtest/gtest.h>

#include <Quorvex/core/Facade.h>

// After Qt: its macros take names from everyone.
#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace KOVA::Quorvex::viewer {

namespace {

int s_glErrors = 0;

void CountError(GLenum /*source*/, GLenum type, GLuint /*id*/, GLenum /*severity*/, GLsizei /*length*/,
                const GLchar* message, const void* /*user*/) {
    if (type == GL_DEBUG_TYPE_ERROR) {
        ++s_glErrors;
        ADD_FAILURE() << message;
    }
}

void WatchGlErrors() {
    const auto watch = reinterpret_cast<PFNGLDEBUGMESSAGECALLBACKPROC>(eglGetProcAddress("glDebugMessageCallback"));
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    watch(&CountError, nullptr);
}

} // namespace

std::unique_ptr<Engine> ViewerHost::s_engine;

ViewerHost::ViewerHost() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    if (s_engine == nullptr) {
        s_engine = std::make_unique<Engine>();
        WatchGlErrors();
    }
    OpenWindow();
}

ViewerHost::~ViewerHost() = default;

void ViewerHost::OpenWindow() {
    m_window = std::make_unique<MainWindow>(*s_engine);
    m_window->show();
    m_window->activateWindow(); // there is no window manager to do it
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    Settle();
}

bool ViewerHost::WaitUntil(const std::function<bool()>& condition, int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    return condition();
}

bool ViewerHost::Settle() {
    QCoreApplication::processEvents();
    const bool settled = WaitUntil([this] {
        return !m_window->GetLoader().IsBusy() && !s_engine->Bridge().HasTasks() && Quorvex::s_jobFast.empty() &&
               Quorvex::s_jobQuality.empty() && Quorvex::GetBusyFrame() == nullptr;
    });
    QTest::qWait(30); // for the server
    return settled;
}

bool ViewerHost::Open(const QStringList& files) {
    m_window->Open(files);
    return Settle();
}

QImage ViewerHost::Picture(QWidget& widget) {
    return QGuiApplication::primaryScreen()->grabWindow(widget.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

namespace {

int Difference(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
}

} // namespace

// The background is the same along a row.
int ViewerHost::CountForeground(const QImage& picture) {
    QImage background = picture;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            background.setPixel(x, y, picture.pixel(picture.width() - 1, y));
        }
    }
    return CountDifferent(picture, background, 12);
}

int ViewerHost::CountDifferent(const QImage& a, const QImage& b, int tolerance) {
    if (a.size() != b.size()) {
        return a.width() * a.height();
    }
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            count += Difference(a.pixel(x, y), b.pixel(x, y)) > tolerance ? 1 : 0;
        }
    }
    return count;
}

int ViewerHost::GlErrors() {
    return s_glErrors;
}

void ViewerHost::Keep(const QImage& picture, const char* name) {
    if (const char* const folder = std::getenv("QUORVEX_KEEP_PICTURES")) {
        picture.save(QString::fromLocal8Bit(folder) + QLatin1Char('/') + QString::fromLatin1(name));
    }
}

} // namespace KOVA::Quorvex::viewer

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("LIBGL_ALWAYS_SOFTWARE", "1"); // every machine draws the same
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("QuorvexTest"));
    QApplication::setApplicationName(QStringLiteral("viewer"));
    const int failed = RUN_ALL_TESTS();
    KOVA::Quorvex::viewer::ViewerHost::StopEngine();
    return failed;
}
