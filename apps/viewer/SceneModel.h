#pragma once

#include <memory>
#include <vector>

#include <QObject>

#include "ScenePart.h"

namespace KOVA::Quorvex::viewer {

class MeshPart;
class VolumePart;

// The parts that are shown, and the frames that show them, each all of them. Scene coordinates are brought to a unit in
// which OpenGL is comfortable: taken from the first mesh while there are meshes only, else from the first volume.
class SceneModel : public QObject {
    Q_OBJECT

public:
    SceneModel() = default;
    SceneModel(const SceneModel&) = delete;
    SceneModel& operator=(const SceneModel&) = delete;
    ~SceneModel() override;

    // Frames outlive their time here. Outside passes: see EventBridge::WhenIdle.
    void AddFrame(RenderFrame& frame);
    void RemoveFrame(RenderFrame& frame);

    // Outside passes, too.
    ScenePart* Add(std::unique_ptr<ScenePart> part);
    void Remove(ScenePart* part);
    void Clear();

    // After its attribute or look was changed: brings the frames to it and has them drawn again.
    void Apply(ScenePart* part);
    void Refresh();

    const std::vector<std::unique_ptr<ScenePart>>& GetParts() const { return m_parts; }
    std::vector<VolumePart*> GetVolumes() const;
    std::size_t CountVisibleBricks() const;
    ScenePart* Find(const Mesh* mesh) const; // of one of the frames
    Box GetBox() const;                      // of the parts that are seen, of all when none is; empty without any
    ScenePart::Modes GetModes() const;       // of the parts that are seen
    const SceneUnit& GetUnit() const { return m_unit; }

signals:
    void PartAdded(KOVA::Quorvex::viewer::ScenePart* part);
    void PartAboutToBeRemoved(KOVA::Quorvex::viewer::ScenePart* part);
    void PartsChanged();                                      // one more or one less
    void PartChanged(KOVA::Quorvex::viewer::ScenePart* part); // its look
    void BoxChanged();

    // Coordinates of before are no longer what they were. moved: parts were brought along; volumes never are.
    void UnitChanged(const KOVA::Quorvex::apps::SceneUnit& before, bool moved);

private:
    void ChooseUnit();
    void TellOfBox();

    std::vector<std::unique_ptr<ScenePart>> m_parts;
    std::vector<RenderFrame*> m_frames;
    SceneUnit m_unit{1.0, {0.0, 0.0, 0.0}};
    Box m_box = Box::Empty(); // that was told last
    std::size_t m_colorsSoFar = 0;
};

} // namespace KOVA::Quorvex::viewer
