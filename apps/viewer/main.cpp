#include <cstdio>
#include <exception>

#include <QApplication>
#include <QCommandLineParser>

#include "Engine.h"
#include "MainWindow.h"

// After Qt: its macros take names from everyone.
#include <X11/Xlib.h>

namespace {

constexpr int c_failed = 1;
constexpr int c_noDisplay = 3;

// Qt ends the process with a crash when there is none.
bool HasDisplay() {
    Display* const display = XOpenDisplay(nullptr);
    if (display != nullptr) {
        XCloseDisplay(display);
    }
    return display != nullptr;
}

// Names the program and returns the files; asked for its help or version, it ends here.
QStringList ReadCommandLine(QCoreApplication& application) {
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvex"));
    QCoreApplication::setApplicationName(QStringLiteral("quorvex-viewer"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVEX_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows measured parts: meshes (STL) and volumes (REK).\n"
                       "Exit status: 1 when OpenGL cannot be started, 3 without a display."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("files"), QStringLiteral("STL and REK files, shown together"),
                                 QStringLiteral("[FILE...]"));
    parser.process(application);
    return parser.positionalArguments();
}

} // namespace

int main(int argc, char** argv) {
    using namespace KOVA::Quorvex::viewer;
    qputenv("QT_QPA_PLATFORM", "xcb"); // the library draws to X11 windows
    if (!HasDisplay()) {
        QCoreApplication application(argc, argv);
        ReadCommandLine(application);
        std::fputs("quorvex-viewer: there is no X11 display to show a window on\n", stderr);
        return c_noDisplay;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Quorvex"));
    const QStringList files = ReadCommandLine(application);
    try {
        Engine engine;
        MainWindow window(engine);
        window.show();
        window.Open(files);
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quorvex-viewer: %s\n", error.what());
        return c_failed;
    }
}
