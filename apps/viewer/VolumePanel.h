#pragma once

#include <array>

#include <QList>
#include <QWidget>

#include "VolumePart.h"

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QSlider;

namespace KOVA::Quorvex::viewer {

class CutControls;
class SceneModel;
class TransferEditor;

// How the selected volume is shown; every change is seen in the frames at once.
class VolumePanel : public QWidget {
    Q_OBJECT

public:
    VolumePanel(SceneModel& scene, QWidget* parent);

    // The first volume of the selection; while there is none, the one that was shown before, or any.
    void Show(const QList<ScenePart*>& selection);
    VolumePart* GetVolume() const { return m_volume; }

    TransferEditor& GetEditor() { return *m_editor; }
    void UsePreset(int index);

private:
    QWidget* MakeLook();
    QWidget* MakeCuts();
    void Forget(ScenePart* part);
    void ShowVolume(VolumePart* volume);
    void ShowLook();
    void ShowWindow();
    void TakeMode();
    void TakeWindow();
    void LoadTable();
    template <class Change> void ChangeLook(Change change);

    SceneModel& m_scene;
    VolumePart* m_volume = nullptr;
    QLabel* m_name;
    TransferEditor* m_editor;
    QComboBox* m_preset;
    QComboBox* m_mode;
    QSlider* m_level;
    QSlider* m_window;
    QDoubleSpinBox* m_samples;
    std::array<CutControls*, 3> m_cuts{};
    QWidget* m_controls;
    bool m_edited = false; // the curve is not a preset's any more
};

} // namespace KOVA::Quorvex::viewer
