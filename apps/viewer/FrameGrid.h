#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include <shared/Background.h>

#include "FrameWidget.h"
#include "Measurements.h"

class QGridLayout;

namespace KOVA::Quorvex::viewer {

class EventBridge;
class SceneModel;

// One, two or four frames on one scene, with cameras that follow one another or do not. One of them is the current one,
// which the menus act on: the one that was touched last. Beside others it has a border.
class FrameGrid : public QWidget {
    Q_OBJECT

public:
    FrameGrid(EventBridge& bridge, SceneModel& scene, QWidget* parent);
    FrameGrid(const FrameGrid&) = delete;
    FrameGrid& operator=(const FrameGrid&) = delete;
    ~FrameGrid() override;

    int GetCount() const { return static_cast<int>(m_frames.size()); }
    FrameWidget& GetFrame(int index) { return *m_frames[static_cast<std::size_t>(index)].widget; }
    FrameWidget& Current() { return *m_current; }

    // 1, 2 or 4, as soon as no pass is under way. New frames show standard views, or the same view when linked.
    void SetCount(int count);

    void SetLinked(bool linked);
    bool IsLinked() const { return m_linked; }

    // Calls change(rig) for the current frame, and lets the others follow when they are linked.
    template <class Change> void ChangeCamera(Change change) {
        change(m_current->Rig());
        m_current->Refresh();
        Follow(m_current);
    }

    // For all frames, each in its own direction.
    void FitAll();

    void SetBackground(const Background& background);
    void ShowAxes(bool show);

    Measurements& GetMeasurements() { return m_measurements; }
    void ShowMeasurements(); // after they were changed

signals:
    void Clicked(KOVA::Quorvex::viewer::FrameWidget* frame, QPoint pixel);
    void CountChanged(int count);
    void CurrentChanged();
    void OpenEndLost(); // of the measurements: its part was hidden or removed

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Cell {
        FrameWidget* widget; // Qt's child of the grid
        std::unique_ptr<MeasurementMarks> marks;
    };

    FrameWidget* Find(const RenderFrame* frame) const;
    void Arrange(int count);
    void AddFrame();
    void RemoveLastFrame();
    void Follow(FrameWidget* leader);
    void MakeCurrent(FrameWidget* frame);
    void TakeBox();
    void ChangeUnit(const SceneUnit& before, bool moved);
    void Forget(const ScenePart* part);
    void ShowOrHideMeasurements();
    void PlaceMarks(const Cell& cell);

    EventBridge& m_bridge;
    SceneModel& m_scene;
    Measurements m_measurements;
    std::vector<Cell> m_frames;
    FrameWidget* m_current = nullptr;
    QGridLayout* m_layout;
    bool m_linked = false;
    bool m_axes = true;
    Background m_background;
};

} // namespace KOVA::Quorvex::viewer
