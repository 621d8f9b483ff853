#include "FrameGrid.h"

#include <algorithm>
#include <array>

#include <QGridLayout>
#include <QPainter>

#include "EventBridge.h"
#include "SceneModel.h"

namespace KOVA::Quorvex::viewer {

namespace {

constexpr std::array<Side, 4> c_firstSides{Side::Iso, Side::Front, Side::Top, Side::Right};
constexpr int c_gap = 2; // pixels between frames, and around them where there are several

} // namespace

FrameGrid::FrameGrid(EventBridge& bridge, SceneModel& scene, QWidget* parent)
    : QWidget(parent), m_bridge(bridge), m_scene(scene), m_layout(new QGridLayout(this)),
      m_background(SuitableBackground(std::nullopt, std::nullopt)) {
    m_layout->setSpacing(c_gap);
    Arrange(1);
    connect(&m_scene, &SceneModel::BoxChanged, this, &FrameGrid::TakeBox);
    connect(&m_scene, &SceneModel::UnitChanged, this, &FrameGrid::ChangeUnit);
    connect(&m_scene, &SceneModel::PartAboutToBeRemoved, this, &FrameGrid::Forget);
    connect(&m_scene, &SceneModel::PartChanged, this, &FrameGrid::ShowOrHideMeasurements);
    connect(&m_bridge, &EventBridge::AboutToDraw, this, [this](RenderFrame* frame, bool quality) {
        if (FrameWidget* const widget = Find(frame)) {
            widget->ExpectBricks(m_scene.CountVisibleBricks());
            widget->PreparePass(quality);
        }
    });
    connect(&m_bridge, &EventBridge::FastPassDrawn, this, [this](RenderFrame* frame) {
        if (FrameWidget* const widget = Find(frame)) {
            widget->AdaptFastPass();
        }
    });
}

FrameWidget* FrameGrid::Find(const RenderFrame* frame) const {
    const auto found = std::find_if(m_frames.begin(), m_frames.end(),
                                    [frame](const Cell& cell) { return &cell.widget->Frame() == frame; });
    return found != m_frames.end() ? found->widget : nullptr;
}

FrameGrid::~FrameGrid() {
    blockSignals(true); // nobody is to ask for the current frame any more
    while (!m_frames.empty()) {
        RemoveLastFrame();
    }
}

void FrameGrid::SetCount(int count) {
    m_bridge.WhenIdle(this, [this, count] { Arrange(count); });
}

void FrameGrid::Arrange(int count) {
    while (GetCount() > count) {
        RemoveLastFrame();
    }
    while (GetCount() < count) {
        AddFrame();
    }
    for (std::size_t i = 0; i < m_frames.size(); ++i) {
        m_layout->addWidget(m_frames[i].widget, static_cast<int>(i / 2), static_cast<int>(i % 2));
    }
    const int margin = count > 1 ? c_gap : 0;
    m_layout->setContentsMargins(margin, margin, margin, margin);
    update();
    emit CountChanged(count);
}

void FrameGrid::AddFrame() {
    auto* const widget = new FrameWidget(this);
    widget->setObjectName(QStringLiteral("frame%1").arg(GetCount()));
    widget->setAccessibleName(tr("Frame %1").arg(GetCount() + 1));
    widget->setToolTip(tr("Drag to turn, with Shift or the right button to move; turn the wheel to zoom"));
    RenderFrame& frame = widget->Frame();
    frame.SetBackgroundColor(m_background.top, m_background.bottom);
    frame.SetCoordAxesEnabled(m_axes);
    m_scene.AddFrame(frame);
    CameraRig& rig = widget->Rig();
    rig.SetScene(m_scene.GetBox());
    if (m_linked && m_current != nullptr) {
        rig.Follow(m_current->Rig());
    } else {
        rig.SetProjection(m_current != nullptr ? m_current->Rig().GetProjection() : Projection::Perspective);
        rig.Look(c_firstSides[m_frames.size() % c_firstSides.size()]);
    }
    connect(widget, &FrameWidget::CameraMoved, this, &FrameGrid::Follow);
    connect(widget, &FrameWidget::Touched, this, &FrameGrid::MakeCurrent);
    connect(widget, &FrameWidget::Clicked, this, &FrameGrid::Clicked);
    m_frames.push_back({widget, std::make_unique<MeasurementMarks>(frame)});
    m_current = m_current == nullptr ? widget : m_current;
    widget->show();
    PlaceMarks(m_frames.back());
}

void FrameGrid::RemoveLastFrame() {
    FrameWidget* const widget = m_frames.back().widget;
    m_frames.pop_back();
    m_scene.RemoveFrame(widget->Frame());
    if (m_current == widget) {
        MakeCurrent(m_frames.empty() ? nullptr : m_frames.front().widget);
    }
    delete widget;
}

void FrameGrid::MakeCurrent(FrameWidget* frame) {
    if (m_current != frame) {
        m_current = frame;
        update();
        emit CurrentChanged();
    }
}

void FrameGrid::Follow(FrameWidget* leader) {
    for (const Cell& cell : m_frames) {
        if (cell.widget != leader && m_linked) {
            cell.widget->Rig().Follow(leader->Rig());
            cell.widget->Refresh();
        }
        if (cell.widget == leader || m_linked) {
            PlaceMarks(cell);
        }
    }
}

void FrameGrid::SetLinked(bool linked) {
    m_linked = linked;
    Follow(m_current);
}

void FrameGrid::TakeBox() {
    const Box box = m_scene.GetBox();
    for (const Cell& cell : m_frames) {
        cell.widget->Rig().SetScene(box);
    }
    ShowMeasurements();
}

// What was seen stays seen. Where nothing was moved, volumes took the unit over from one another.
void FrameGrid::ChangeUnit(const SceneUnit& before, bool moved) {
    for (const Cell& cell : m_frames) {
        if (moved) {
            cell.widget->Rig().ChangeUnit(before, m_scene.GetUnit());
        }
    }
    m_measurements.ChangeUnit(m_scene.GetUnit().unit);
    TakeBox();
}

void FrameGrid::Forget(const ScenePart* part) {
    const bool open = m_measurements.GetOpenEnd().has_value();
    m_measurements.Forget(part);
    ShowMeasurements();
    if (open && !m_measurements.GetOpenEnd()) {
        emit OpenEndLost();
    }
}

// Nobody can tell what a second end would be measured from when the first one is hidden.
void FrameGrid::ShowOrHideMeasurements() {
    const auto& open = m_measurements.GetOpenEnd();
    const bool lost = open && !open->IsSeen();
    if (lost) {
        m_measurements.ForgetOpenEnd();
    }
    ShowMeasurements();
    if (lost) {
        emit OpenEndLost();
    }
}

void FrameGrid::FitAll() {
    for (const Cell& cell : m_frames) {
        cell.widget->Rig().Fit();
    }
    ShowMeasurements();
}

void FrameGrid::SetBackground(const Background& background) {
    m_background = background;
    for (const Cell& cell : m_frames) {
        cell.widget->Frame().SetBackgroundColor(background.top, background.bottom);
        cell.widget->Refresh();
    }
}

void FrameGrid::ShowAxes(bool show) {
    m_axes = show;
    for (const Cell& cell : m_frames) {
        cell.widget->Frame().SetCoordAxesEnabled(show);
        cell.widget->Refresh();
    }
}

void FrameGrid::ShowMeasurements() {
    for (const Cell& cell : m_frames) {
        PlaceMarks(cell);
        cell.widget->Refresh();
    }
}

void FrameGrid::PlaceMarks(const Cell& cell) {
    cell.marks->Place(m_measurements, cell.widget->Rig(), cell.widget->devicePixelRatioF());
}

void FrameGrid::paintEvent(QPaintEvent* /*event*/) {
    if (GetCount() > 1) {
        QPainter(this).fillRect(m_current->geometry().adjusted(-c_gap, -c_gap, c_gap, c_gap),
                                palette().color(QPalette::Highlight));
    }
}

} // namespace KOVA::Quorvex::viewer
