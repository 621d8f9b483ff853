#include "MainWindow.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>

#include <Quorvex/core/Facade.h>

#include "Background.h"
#include "Dialogs.h"
#include "Engine.h"
#include "FrameGrid.h"
#include "Loader.h"
#include "NumberText.h"
#include "Picking.h"
#include "SceneModel.h"
#include "SceneTree.h"
#include "Screenshot.h"
#include "VolumePanel.h"
#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr QSize c_firstSize{1200, 760};
constexpr int c_progressSteps = 1000;
constexpr int c_progressWidth = 220;
constexpr int c_briefMilliseconds = 8000;
constexpr int c_failuresAtOnce = 8;

} // namespace

MainWindow::MainWindow(Engine& engine)
    : m_engine(engine), m_settings(Settings::Load()), m_scene(std::make_unique<SceneModel>()),
      m_frames(new FrameGrid(engine.Bridge(), *m_scene, this)), m_tree(new SceneTree(*m_scene, this)),
      m_volumePanel(new VolumePanel(*m_scene, this)),
      m_loader(std::make_unique<Loader>(engine.Bridge(),
                                        [this](std::unique_ptr<ScenePart> part) { TakePart(std::move(part)); })) {
    ApplyTheme(m_settings.theme);
    setAcceptDrops(true);
    setCentralWidget(m_frames);
    MakePanels();
    MakeStatusBar();
    MakeFileMenu();
    MakeViewMenu();
    MakeMeasureMenu();
    MakeHelpMenu();

    connect(&m_engine, &Engine::Warned, this, &MainWindow::ShowBriefly);
    connect(&m_engine.Bridge(), &EventBridge::Failed, this, &MainWindow::ShowBriefly);
    connect(m_loader.get(), &Loader::Progress, this, &MainWindow::ShowProgress);
    connect(m_loader.get(), &Loader::Failed, this, &MainWindow::ReportFailure);
    connect(m_loader.get(), &Loader::Finished, this, &MainWindow::LoadingFinished);
    connect(m_frames, &FrameGrid::Clicked, this, &MainWindow::HandleClick);
    connect(m_frames, &FrameGrid::CurrentChanged, this, &MainWindow::UpdateCameraActions);
    connect(m_tree, &SceneTree::RemovalRequested, this, &MainWindow::RemoveSelected);
    connect(m_tree, &SceneTree::SelectionChanged, this, [this] { m_volumePanel->Show(m_tree->GetSelected()); });
    connect(m_frames, &FrameGrid::OpenEndLost, this, [this] { m_message->setText(tr("Click the first point")); });
    connect(m_scene.get(), &SceneModel::PartsChanged, this, &MainWindow::UpdateTitle);
    connect(m_scene.get(), &SceneModel::PartsChanged, this, &MainWindow::ChooseBackground);
    connect(m_scene.get(), &SceneModel::PartChanged, this, &MainWindow::ChooseBackground);

    resize(c_firstSize);
    restoreGeometry(m_settings.geometry);
    restoreState(m_settings.panels);
    m_frames->SetCount(m_settings.frames);
    m_frames->SetLinked(m_settings.linked);
    UpdateTitle();
}

// The widgets with the frames go before the scene does.
MainWindow::~MainWindow() {
    m_loader.reset();
    delete m_tree;
    delete m_volumePanel;
    delete m_frames;
}

void MainWindow::MakePanels() {
    setDockNestingEnabled(true);
    const auto dock = [this](const QString& title, const char* name, QWidget* widget, Qt::DockWidgetArea area) {
        auto* const made = new QDockWidget(title, this);
        made->setObjectName(QString::fromLatin1(name)); // by which its place is remembered
        made->setWidget(widget);
        addDockWidget(area, made);
        return made;
    };
    m_treeDock = dock(tr("Scene"), "scene", m_tree, Qt::LeftDockWidgetArea);
    m_volumeDock = dock(tr("Volume"), "volume", m_volumePanel, Qt::RightDockWidgetArea);
}

void MainWindow::MakeStatusBar() {
    m_message = new QLabel(this);
    m_message->setTextFormat(Qt::PlainText); // names of files may be in it
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, c_progressSteps);
    m_progress->setMaximumWidth(c_progressWidth);
    m_cancel = new QPushButton(tr("&Cancel"), this);
    m_cancel->setToolTip(tr("Stops loading; what was shown before stays"));
    m_cancel->setObjectName(QStringLiteral("cancelLoading"));
    statusBar()->addWidget(m_message, 1);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_cancel);
    m_progress->hide();
    m_cancel->hide();
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_loader->Cancel(); });
}

void MainWindow::Open(const QStringList& files) {
    if (files.isEmpty()) {
        return;
    }
    m_loader->Load(files);
}

void MainWindow::ShowProgress(const QString& name, double fraction) {
    m_message->setText(tr("Loading %1").arg(name));
    m_progress->setValue(static_cast<int>(fraction * c_progressSteps));
    m_progress->show();
    m_cancel->show();
}

void MainWindow::TakePart(std::unique_ptr<ScenePart> part) {
    m_settings.Remember(QString::fromLocal8Bit(part->GetPath()));
    m_fitWhenLoaded = m_fitWhenLoaded || m_scene->GetParts().empty();
    ScenePart* const added = m_scene->Add(std::move(part));
    if (dynamic_cast<VolumePart*>(added) != nullptr && !Quorvex::CheckQXExtension(CAPABILITY_VOLUME)) {
        ReportFailure({}, tr("This OpenGL driver cannot draw volumes: 3D textures or shaders are missing."));
    }
    if (m_fitWhenLoaded) {
        m_frames->FitAll();
    }
}

void MainWindow::LoadingFinished() {
    m_progress->hide();
    m_cancel->hide();
    m_message->clear();
    m_fitWhenLoaded = false;
    FillRecentMenu();
}

// The status bar's own messages hide the label, so they go again by themselves.
void MainWindow::ShowBriefly(const QString& text) {
    statusBar()->showMessage(text, c_briefMilliseconds);
}

// Failures of one loading come in one box: the first ones at once, all of them as its details.
void MainWindow::ReportFailure(const QString& path, const QString& reason) {
    if (m_failures == nullptr) {
        m_failures = OpenBox(this, QMessageBox::Warning, tr("Not everything could be opened"), reason);
        connect(m_failures, &QObject::destroyed, this, [this] { m_failures = nullptr; });
        m_failureReasons = {reason};
    } else {
        m_failureReasons.append(reason);
        const auto more = m_failureReasons.size() - c_failuresAtOnce;
        QStringList first = m_failureReasons.mid(0, c_failuresAtOnce);
        if (more > 0) {
            first.append(tr("and %n more", nullptr, static_cast<int>(more)));
            m_failures->setDetailedText(m_failureReasons.join(QLatin1Char('\n')));
        }
        m_failures->setText(first.join(QLatin1Char('\n')));
    }
    m_settings.recentFiles.removeAll(path);
}

void MainWindow::RemoveSelected() {
    m_engine.Bridge().WhenIdle(this, [this] {
        for (ScenePart* part : m_tree->GetSelected()) {
            m_scene->Remove(part);
        }
    });
}

void MainWindow::CloseAll() {
    m_loader->Cancel();
    m_engine.Bridge().WhenIdle(this, [this] { m_scene->Clear(); });
}

void MainWindow::SaveScreenshot(const QString& path) {
    m_message->setText(tr("Drawing the picture for %1").arg(path));
    m_engine.Bridge().WhenStill(this, [this, path] {
        const std::optional<QImage> picture = TakeScreenshot(*m_frames);
        if (picture) {
            WritePicture(*picture, path, this, [this](const QString& outcome) { m_message->setText(outcome); });
        } else if (!Quorvex::BreakRendering()) {
            m_message->setText(tr("The picture cannot be drawn"));
        }
        return picture || !Quorvex::BreakRendering();
    });
}

void MainWindow::HandleClick(FrameWidget* frame, QPoint pixel) {
    const std::optional<Picked> picked = Pick(*frame, *m_scene, pixel);
    if (!picked) {
        m_message->setText(m_measure->isChecked() ? tr("There is nothing to measure") : QString());
        return;
    }
    m_tree->Select(picked->part);
    const Vector3d place = picked->part->InFile(picked->point);
    const double unit = m_scene->GetUnit().unit;
    if (m_measure->isChecked()) {
        Measurements& measurements = m_frames->GetMeasurements();
        measurements.Take({picked->part, place}, unit);
        m_frames->ShowMeasurements();
        m_message->setText(measurements.GetOpenEnd()
                               ? tr("Click the second point")
                               : tr("Distance: %1").arg(measurements.GetDistances().back().label));
        return;
    }
    const double size = 2.0 * picked->part->GetBox().Radius() * unit;
    m_message->setText(tr("%1 at %2").arg(picked->part->GetName(), PlaceText(place, size)));
}

void MainWindow::ChooseBackground() {
    const ScenePart::Modes modes = m_scene->GetModes();
    m_frames->SetBackground(SuitableBackground(modes.mesh, modes.volume));
}

void MainWindow::UpdateTitle() {
    const auto& parts = m_scene->GetParts();
    setWindowTitle(
        parts.empty() ? QString()
        : parts.size() == 1
            ? parts.front()->GetName()
            : tr("%1 and %n more", nullptr, static_cast<int>(parts.size()) - 1).arg(parts.front()->GetName()));
}

// A pass may be under way further up the stack: it ends at its next report.
void MainWindow::closeEvent(QCloseEvent* event) {
    m_settings.geometry = saveGeometry();
    m_settings.panels = saveState();
    m_settings.frames = m_frames->GetCount();
    m_settings.linked = m_frames->IsLinked();
    m_settings.Save();
    m_loader->Cancel();
    for (int i = 0; i < m_frames->GetCount(); ++i) {
        m_frames->GetFrame(i).Frame().AbortRendering();
    }
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); })) {
        event->setDropAction(Qt::CopyAction); // never a move: the files stay where they are
        event->accept();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            files.append(url.toLocalFile());
        }
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Open(files);
}

} // namespace KOVA::Quorvex::viewer
