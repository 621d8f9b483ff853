#pragma once

#include <memory>

#include <QMainWindow>

#include "Settings.h"

class QActionGroup;
class QDockWidget;
class QLabel;
class QMenu;
class QMessageBox;
class QProgressBar;
class QPushButton;

namespace KOVA::Quorvex::viewer {

class Engine;
class FrameGrid;
class FrameWidget;
class Loader;
class SceneModel;
class ScenePart;
class SceneTree;
class VolumePanel;

// The window with everything in it. Nothing here waits: dialogs are opened, not run, as any handler may be called from
// inside a pass.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(Engine& engine);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow() override;

    void Open(const QStringList& files);
    void CloseAll();

    // Takes a picture of all frames when nobody moves anything any more, and writes it. The status bar tells.
    void SaveScreenshot(const QString& path);

    SceneModel& GetScene() { return *m_scene; }
    FrameGrid& GetFrames() { return *m_frames; }
    Loader& GetLoader() { return *m_loader; }
    VolumePanel& GetVolumePanel() { return *m_volumePanel; }
    SceneTree& GetSceneTree() { return *m_tree; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakePanels();
    void MakeStatusBar();
    void MakeFileMenu();
    void MakeViewMenu();
    void MakeSideActions(QMenu* menu);
    void MakeFramesMenu();
    void MakeAppearanceMenu();
    void MakeMeasureMenu();
    void MakeHelpMenu();
    QAction* AddAction(QMenu* menu, const QString& text, const QKeySequence& shortcut, const QString& tip);
    void FillRecentMenu();

    void AskForFiles();
    void AskForScreenshot();
    void ShowControls();
    void ShowAbout();

    void TakePart(std::unique_ptr<ScenePart> part);
    void ShowBriefly(const QString& text);
    void ReportFailure(const QString& path, const QString& reason);
    void ShowProgress(const QString& name, double fraction);
    void LoadingFinished();
    void RemoveSelected();
    void HandleClick(FrameWidget* frame, QPoint pixel);
    void ChooseBackground();
    void UpdateTitle();
    void UpdateCameraActions();

    Engine& m_engine;
    Settings m_settings;
    std::unique_ptr<SceneModel> m_scene;
    FrameGrid* m_frames;
    SceneTree* m_tree;
    VolumePanel* m_volumePanel;
    QDockWidget* m_treeDock = nullptr;
    QDockWidget* m_volumeDock = nullptr;
    QMenu* m_recentMenu = nullptr;
    QAction* m_orthogonal = nullptr;
    QAction* m_measure = nullptr;
    QLabel* m_message = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QMessageBox* m_failures = nullptr; // while it is open
    QStringList m_failureReasons;      // in it
    bool m_fitWhenLoaded = false;
    std::unique_ptr<Loader> m_loader; // last: it hands parts to the others
};

} // namespace KOVA::Quorvex::viewer
