// The menus of the main window, with the shortcuts of everything.

#include "MainWindow.h"

#include <array>
#include <utility>

#include <QActionGroup>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>

#include "About.h"
#include "Dialogs.h"
#include "Engine.h"
#include "FrameGrid.h"

namespace KOVA::Quorvex::viewer {

namespace {

struct SideAction {
    Side side;
    const char* name;
    Qt::Key key;
};

constexpr std::array<SideAction, 7> c_sides{{{Side::Front, "&Front", Qt::Key_1},
                                             {Side::Back, "&Back", Qt::Key_2},
                                             {Side::Left, "&Left", Qt::Key_3},
                                             {Side::Right, "&Right", Qt::Key_4},
                                             {Side::Top, "&Top", Qt::Key_5},
                                             {Side::Bottom, "Botto&m", Qt::Key_6},
                                             {Side::Iso, "&Corner", Qt::Key_7}}};

// One of several that exclude each other.
QAction* AddChoice(QMenu* menu, QActionGroup* group, const QString& text, bool checked) {
    QAction* const action = menu->addAction(text);
    action->setCheckable(true);
    action->setChecked(checked);
    group->addAction(action);
    return action;
}

} // namespace

QAction* MainWindow::AddAction(QMenu* menu, const QString& text, const QKeySequence& shortcut, const QString& tip) {
    QAction* const action = menu->addAction(text);
    action->setShortcut(shortcut);
    action->setToolTip(tip);
    action->setStatusTip(tip);
    return action;
}

void MainWindow::MakeFileMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    connect(AddAction(menu, tr("&Open…"), QKeySequence::Open, tr("Adds files to the scene")), &QAction::triggered, this,
            &MainWindow::AskForFiles);
    m_recentMenu = menu->addMenu(tr("Open &recent"));
    FillRecentMenu();
    menu->addSeparator();
    connect(AddAction(menu, tr("Save &picture…"), QKeySequence::Save, tr("Writes what the frames show to a file")),
            &QAction::triggered, this, &MainWindow::AskForScreenshot);
    menu->addSeparator();
    connect(AddAction(menu, tr("Re&move selected"), {}, tr("Takes the selected parts out of the scene")),
            &QAction::triggered, this, &MainWindow::RemoveSelected);
    connect(AddAction(menu, tr("&Close all"), QKeySequence::Close, tr("Empties the scene")), &QAction::triggered, this,
            &MainWindow::CloseAll);
    menu->addSeparator();
    connect(AddAction(menu, tr("&Quit"), QKeySequence::Quit, tr("Ends the program")), &QAction::triggered, this,
            &QWidget::close);
}

void MainWindow::FillRecentMenu() {
    m_recentMenu->clear();
    m_recentMenu->setEnabled(!m_settings.recentFiles.isEmpty());
    for (const QString& file : m_settings.recentFiles) {
        const QString name = QDir::toNativeSeparators(file).replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* const action = m_recentMenu->addAction(name);
        connect(action, &QAction::triggered, this, [this, file] { Open({file}); });
    }
}

void MainWindow::AskForFiles() {
    auto* const dialog =
        new FileDialog(this, tr("Open"), m_settings.folder, tr("Parts (*.stl *.STL *.rek *.REK);;All files (*)"),
                       FileDialog::ExistingFiles);
    connect(dialog, &FileDialog::filesSelected, this, &MainWindow::Open);
    OpenDialog(dialog);
}

void MainWindow::AskForScreenshot() {
    auto* const dialog = new FileDialog(this, tr("Save picture"), m_settings.folder, tr("Pictures (*.png *.bmp *.jpg)"),
                                        FileDialog::AnyFile);
    dialog->setDefaultSuffix(QStringLiteral("png"));
    connect(dialog, &FileDialog::fileSelected, this, &MainWindow::SaveScreenshot);
    OpenDialog(dialog);
}

void MainWindow::MakeViewMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&View"));
    connect(AddAction(menu, tr("&Fit"), Qt::Key_F, tr("Shows the whole scene")), &QAction::triggered, this,
            [this] { m_frames->ChangeCamera([](CameraRig& rig) { rig.Fit(); }); });
    MakeSideActions(menu->addMenu(tr("&Look from")));
    m_orthogonal = AddAction(menu, tr("&Orthogonal"), Qt::Key_P, tr("Parallel lines stay parallel"));
    m_orthogonal->setCheckable(true);
    connect(m_orthogonal, &QAction::triggered, this, [this](bool orthogonal) {
        m_settings.orthogonal = orthogonal;
        m_frames->ChangeCamera([orthogonal](CameraRig& rig) {
            rig.SetProjection(orthogonal ? Projection::Orthogonal : Projection::Perspective);
        });
    });
    if (m_settings.orthogonal) {
        m_orthogonal->trigger();
    }
    menu->addSeparator();
    MakeFramesMenu();
    QAction* const axes = AddAction(menu, tr("&Axes"), Qt::Key_A, tr("Shows the directions of x, y and z"));
    axes->setCheckable(true);
    axes->setChecked(m_settings.axes);
    m_frames->ShowAxes(m_settings.axes);
    connect(axes, &QAction::toggled, this, [this](bool show) {
        m_settings.axes = show;
        m_frames->ShowAxes(show);
    });
    MakeAppearanceMenu();
    menu->addSeparator();
    menu->addAction(m_treeDock->toggleViewAction());
    menu->addAction(m_volumeDock->toggleViewAction());
}

void MainWindow::MakeSideActions(QMenu* menu) {
    for (const SideAction& entry : c_sides) {
        QAction* const action = AddAction(menu, tr(entry.name), entry.key, tr("Turns the camera and shows everything"));
        connect(action, &QAction::triggered, this,
                [this, side = entry.side] { m_frames->ChangeCamera([side](CameraRig& rig) { rig.Look(side); }); });
    }
}

void MainWindow::MakeFramesMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("F&rames"));
    auto* const group = new QActionGroup(this);
    const std::pair<int, QString> counts[] = {{1, tr("&One")}, {2, tr("&Two")}, {4, tr("&Four")}};
    for (const auto& [count, text] : counts) {
        QAction* const action = AddChoice(menu, group, text, count == m_settings.frames);
        action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + count)));
        action->setStatusTip(tr("Shows the scene from several sides"));
        connect(action, &QAction::triggered, this, [this, frames = count] { m_frames->SetCount(frames); });
    }
    menu->addSeparator();
    QAction* const linked =
        AddAction(menu, tr("&Linked cameras"), Qt::Key_L, tr("All frames look from where the current one does"));
    linked->setCheckable(true);
    linked->setChecked(m_settings.linked);
    connect(linked, &QAction::toggled, this, [this](bool link) { m_frames->SetLinked(link); });
}

void MainWindow::MakeAppearanceMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&Appearance"));
    auto* const group = new QActionGroup(this);
    const auto add = [&](const QString& text, Theme theme) {
        connect(AddChoice(menu, group, text, theme == m_settings.theme), &QAction::triggered, this, [this, theme] {
            m_settings.theme = theme;
            ApplyTheme(theme);
        });
    };
    add(tr("As the &system"), Theme::System);
    add(tr("&Light"), Theme::Light);
    add(tr("&Dark"), Theme::Dark);
}

void MainWindow::MakeMeasureMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&Measure"));
    m_measure = AddAction(menu, tr("&Distances"), Qt::Key_M, tr("Click two points of parts for their distance"));
    m_measure->setCheckable(true);
    connect(m_measure, &QAction::toggled, this, [this](bool on) {
        m_frames->GetMeasurements().ForgetOpenEnd();
        m_frames->ShowMeasurements();
        m_message->setText(on ? tr("Click the first point") : QString());
    });
    connect(AddAction(menu, tr("&Clear"), QKeySequence(Qt::CTRL | Qt::Key_M), tr("Forgets all distances")),
            &QAction::triggered, this, [this] {
                m_frames->GetMeasurements().Clear();
                m_frames->ShowMeasurements();
            });
}

void MainWindow::UpdateCameraActions() {
    m_orthogonal->setChecked(m_frames->Current().Rig().GetProjection() == Projection::Orthogonal);
}

void MainWindow::MakeHelpMenu() {
    QMenu* const menu = menuBar()->addMenu(tr("&Help"));
    connect(AddAction(menu, tr("&Controls"), QKeySequence::HelpContents, tr("What mouse and keys do")),
            &QAction::triggered, this, &MainWindow::ShowControls);
    connect(AddAction(menu, tr("&About"), {}, tr("Version and what the driver can do")), &QAction::triggered, this,
            &MainWindow::ShowAbout);
}

void MainWindow::ShowControls() {
    OpenDialog(new QMessageBox(QMessageBox::NoIcon, tr("Controls"), ControlsText(), QMessageBox::Ok, this));
}

void MainWindow::ShowAbout() {
    OpenDialog(new QMessageBox(QMessageBox::NoIcon, tr("About Quorvex"), AboutText(), QMessageBox::Ok, this));
}

} // namespace KOVA::Quorvex::viewer
