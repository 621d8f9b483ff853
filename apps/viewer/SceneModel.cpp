#include "SceneModel.h"

#include <algorithm>
#include <utility>

#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

namespace {

bool AreEqual(const SceneUnit& a, const SceneUnit& b) {
    return a.unit == b.unit && a.middle == b.middle;
}

} // namespace

SceneModel::~SceneModel() {
    for (const auto& part : m_parts) {
        for (RenderFrame* frame : m_frames) {
            part->RemoveFrom(*frame);
        }
    }
}

void SceneModel::AddFrame(RenderFrame& frame) {
    m_frames.push_back(&frame);
    for (const auto& part : m_parts) {
        part->AddTo(frame);
    }
}

void SceneModel::RemoveFrame(RenderFrame& frame) {
    for (const auto& part : m_parts) {
        part->RemoveFrom(frame);
    }
    m_frames.erase(std::remove(m_frames.begin(), m_frames.end(), &frame), m_frames.end());
}

ScenePart* SceneModel::Add(std::unique_ptr<ScenePart> part) {
    ScenePart* const added = part.get();
    if (added->HasColor()) {
        added->Attribute().SetColor(PartColor(m_colorsSoFar++));
    }
    m_parts.push_back(std::move(part));
    ChooseUnit();
    added->Place(m_unit);
    for (RenderFrame* frame : m_frames) {
        added->AddTo(*frame);
    }
    emit PartAdded(added);
    emit PartsChanged();
    TellOfBox();
    Refresh();
    return added;
}

void SceneModel::Remove(ScenePart* part) {
    const auto found =
        std::find_if(m_parts.begin(), m_parts.end(), [part](const auto& own) { return own.get() == part; });
    if (found == m_parts.end()) {
        return;
    }
    emit PartAboutToBeRemoved(part);
    for (RenderFrame* frame : m_frames) {
        part->RemoveFrom(*frame);
    }
    m_parts.erase(found);
    ChooseUnit();
    m_colorsSoFar = m_parts.empty() ? 0 : m_colorsSoFar;
    emit PartsChanged();
    TellOfBox();
    Refresh();
}

void SceneModel::Clear() {
    while (!m_parts.empty()) {
        Remove(m_parts.back().get());
    }
}

void SceneModel::Apply(ScenePart* part) {
    part->Apply();
    emit PartChanged(part);
    TellOfBox();
    Refresh();
}

void SceneModel::Refresh() {
    for (RenderFrame* frame : m_frames) {
        frame->Render();
    }
}

std::vector<VolumePart*> SceneModel::GetVolumes() const {
    std::vector<VolumePart*> volumes;
    for (const auto& part : m_parts) {
        if (auto* const volume = dynamic_cast<VolumePart*>(part.get())) {
            volumes.push_back(volume);
        }
    }
    return volumes;
}

std::size_t SceneModel::CountVisibleBricks() const {
    std::size_t count = 0;
    for (VolumePart* volume : GetVolumes()) {
        count += volume->Attribute().IsVisible() ? static_cast<std::size_t>(volume->GetData().getNumBricks()) : 0;
    }
    return count;
}

ScenePart* SceneModel::Find(const Mesh* mesh) const {
    const auto found =
        std::find_if(m_parts.begin(), m_parts.end(), [mesh](const auto& part) { return part->IsShownAs(mesh); });
    return found != m_parts.end() ? found->get() : nullptr;
}

Box SceneModel::GetBox() const {
    Box seen = Box::Empty();
    Box all = Box::Empty();
    for (const auto& part : m_parts) {
        all.Include(part->GetBox());
        if (part->Attribute().IsVisible()) {
            seen.Include(part->GetBox());
        }
    }
    return seen.IsFinite() ? seen : all;
}

ScenePart::Modes SceneModel::GetModes() const {
    ScenePart::Modes modes;
    for (const auto& part : m_parts) {
        if (part->Attribute().IsVisible()) {
            part->AddModes(modes);
        }
    }
    return modes;
}

void SceneModel::TellOfBox() {
    const Box box = GetBox();
    if (box.low != m_box.low || box.high != m_box.high) {
        m_box = box;
        emit BoxChanged();
    }
}

// It stays while the parts that it was taken from allow it, so that the camera need not be moved.
void SceneModel::ChooseUnit() {
    if (m_parts.empty()) {
        return;
    }
    const std::vector<VolumePart*> volumes = GetVolumes();
    const ScenePart& first = volumes.empty() ? *m_parts.front() : *volumes.front();
    const SceneUnit before = std::exchange(m_unit, first.SuitableUnit());
    if (AreEqual(before, m_unit)) {
        return;
    }
    bool moved = false;
    for (const auto& part : m_parts) {
        const SceneUnit own = part->GetUnit();
        part->Place(m_unit);
        moved = moved || !AreEqual(own, part->GetUnit());
    }
    emit UnitChanged(before, moved);
}

} // namespace KOVA::Quorvex::viewer
