#include "SceneModel.h"

#include <algorithm>
#include <utility>

#include "MeshPart.h"
#include "VolumePart.h"

namespace KOVA::Quorvex::viewer {

namespace {

// Of the first mesh where there are no volumes. In X-ray pictures every surface adds a quarter of its distance to the
// grey level: a dozen of them should be seen behind each other.
constexpr double c_radius = 0.15;

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
    if (dynamic_cast<MeshPart*>(added) != nullptr) {
        added->Attribute().SetColor(PartColor(m_meshesSoFar++));
    }
    m_parts.push_back(std::move(part));
    ChooseUnit();
    added->Place(m_unit);
    for (RenderFrame* frame : m_frames) {
        added->AddTo(*frame);
    }
    emit PartAdded(added);
    emit BoxChanged();
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
    m_meshesSoFar = m_parts.empty() ? 0 : m_meshesSoFar;
    emit BoxChanged();
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
    emit BoxChanged();
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
    const auto found = std::find_if(m_parts.begin(), m_parts.end(), [mesh](const auto& part) {
        const auto* const own = dynamic_cast<const MeshPart*>(part.get());
        return own != nullptr && own->IsShownAs(mesh);
    });
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

// It stays while the parts that it was taken from allow it, so that the camera need not be moved.
void SceneModel::ChooseUnit() {
    SceneUnit unit = m_unit;
    const std::vector<VolumePart*> volumes = GetVolumes();
    if (!volumes.empty()) {
        unit = UnitOf(volumes.front()->GetData());
    } else if (!m_parts.empty()) {
        unit = UnitOf(dynamic_cast<MeshPart&>(*m_parts.front()).GetFileBox());
        unit.unit /= c_radius;
    }
    if (unit.unit == m_unit.unit && unit.middle == m_unit.middle) {
        return;
    }
    m_unit = unit;
    for (const auto& part : m_parts) {
        part->Place(unit);
    }
    emit UnitChanged();
}

} // namespace KOVA::Quorvex::viewer
