#pragma once

#include <array>

#include <QList>
#include <QWidget>

#include "VolumePart.h"

class QComboBox;
class QDialog;
class QDoubleSpinBox;
class QFormLayout;
class QLabel;

namespace KOVA::Quorvex::viewer {

class CutControls;
class SceneModel;
class TransferEditor;
class ValueSlider;

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
    void MakePresets(QFormLayout* form);
    QWidget* MakeCuts();
    void Forget(ScenePart* part);
    void ShowVolume(VolumePart* volume);
    void ShowLook();
    void ShowOrigin();
    void TakeMode();
    void TakeCurve(VolumePart* volume, const TransferCurve& curve);
    void TakeWindow(double level, double window);
    void AskForTable();
    void LoadTable(VolumePart* volume, const QString& file);
    void AskForColor(std::size_t point);
    void RejectWithout(const VolumePart* volume, QDialog* dialog);
    template <class Change> void ChangeLook(VolumePart* volume, Change change);

    SceneModel& m_scene;
    VolumePart* m_volume = nullptr;
    QLabel* m_name;
    TransferEditor* m_editor;
    QComboBox* m_preset;
    QComboBox* m_mode;
    ValueSlider* m_level;
    ValueSlider* m_window;
    QDoubleSpinBox* m_samples;
    std::array<CutControls*, 3> m_cuts{};
    QWidget* m_controls;
};

} // namespace KOVA::Quorvex::viewer
