#include <Quorvex/scene/ObjectTypes.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include <Quorvex/core/Facade.h>
#include <Quorvex/core/OpenGL.h>
#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/platform/Messages.h>

namespace KOVA::Quorvex {

template <class T> unsigned int ObjectList<T>::s_nextId = 0;

namespace {

template <class T> T* AddTo(ObjectList<T>& list, const T& object, unsigned long* id) {
    auto& element = list.Add(object);
    if (id != nullptr) {
        *id = element.id;
    }
    return &element.object;
}

template <class T> RenderObject* FindIn(const ObjectList<T>& list, unsigned long id) {
    for (const auto& element : list.All()) {
        if (element->id == id) {
            return &element->object;
        }
    }
    return nullptr;
}

// Draws a visible mesh in its place; false when it could not be drawn to its end.
bool DrawMesh(RenderFrame& frame, const Mesh& mesh, bool quality) {
    const MeshAttribute& attribute = mesh.GetAttribute();
    if (!attribute.IsVisible()) {
        return true;
    }
    const Vector3f translation = attribute.GetGlobalTranslation();
    glPushMatrix();
    glMultMatrixd(attribute.GetTransformRef());
    glTranslatef(translation.x, translation.y, translation.z);
    const bool drawn = mesh.Render(frame, quality);
    glPopMatrix();
    return drawn;
}

// Lets input through between the meshes of a quality pass, but not for every small one: looking costs system calls.
class InputPoll {
public:
    InputPoll(RenderFrame& frame, bool quality)
        : m_frame(frame), m_quality(quality), m_interval(platform::CounterFrequency() * 0.005),
          m_last(platform::CounterNow()) {}

    bool StopRequested() {
        if (!m_quality || static_cast<double>(platform::CounterNow() - m_last) < m_interval) {
            return false;
        }
        const bool stop = m_frame.Progress(0.0F);
        m_last = platform::CounterNow();
        return stop;
    }

private:
    RenderFrame& m_frame;
    bool m_quality;
    double m_interval; // ticks
    std::int64_t m_last;
};

// The first name of the nearest record of a selection buffer, the earlier one on a tie; 0 when there is none. A record
// is the number of names, the smallest and the largest depth, and the names.
unsigned int NearestName(int hits, const unsigned int* record) {
    unsigned int nearestDepth = std::numeric_limits<std::uint32_t>::max();
    unsigned int name = 0;
    for (int i = 0; i < hits; ++i) {
        const unsigned int nameCount = record[0];
        if (record[1] < nearestDepth) {
            nearestDepth = record[1];
            name = nameCount > 0 ? record[3] : 0;
        }
        record += 3 + std::size_t{nameCount};
    }
    return name;
}

// Grows one axis of the scene's box by an object that is not the first. An object raises the maximum only when it lies
// beyond it as a whole: that is how hosts know this box, and cameras are set up by it.
void WidenAxis(float& low, float& high, float objectLow, float objectHigh) {
    low = low > objectLow ? objectLow : low;
    high = objectLow > high ? objectHigh : high;
}

} // namespace

ObjectTypes::ObjectTypes() = default;
ObjectTypes::ObjectTypes(const ObjectTypes& other) = default;
ObjectTypes& ObjectTypes::operator=(const ObjectTypes& other) = default;
ObjectTypes::~ObjectTypes() = default;

Mesh* ObjectTypes::Add(const Mesh& mesh, unsigned long* id) {
    return AddTo(m_meshes, mesh, id);
}

Volume* ObjectTypes::Add(const Volume& volume, unsigned long* id) {
    return AddTo(m_volumes, volume, id);
}

ObjectTypes* ObjectTypes::Add(const ObjectTypes& group, unsigned long* id) {
    return AddTo(m_groups, group, id);
}

Overlay* ObjectTypes::Add(const Overlay& overlay, unsigned long* id) {
    return AddTo(m_overlays, overlay, id);
}

void ObjectTypes::Remove(const Mesh& mesh) {
    m_meshes.RemoveFirst([&mesh](const Mesh& element) { return element == mesh; });
}

void ObjectTypes::Remove(const Volume& volume) {
    m_volumes.RemoveFirst([&volume](const Volume& element) { return element == volume; });
}

void ObjectTypes::Remove(const ObjectTypes& group) {
    m_groups.RemoveFirst([&group](const ObjectTypes& element) { return element == group; });
}

void ObjectTypes::Remove(const Overlay& overlay) {
    m_overlays.RemoveFirst([&overlay](const Overlay& element) { return element == overlay; });
}

void ObjectTypes::Clear() {
    m_meshes.Clear();
    m_groups.Clear();
    m_volumes.Clear();
}

void ObjectTypes::Clear(OBJECTTYPE type) {
    if (type == MESH) {
        m_meshes.Clear();
    } else if (type == VOLUME) {
        m_volumes.Clear();
    }
}

RenderObject* ObjectTypes::GetObjectByID(unsigned long id) {
    RenderObject* const mesh = FindIn(m_meshes, id);
    return mesh != nullptr ? mesh : FindIn(m_volumes, id);
}

unsigned int ObjectTypes::GetNumObjects() const {
    return m_volumes.Count();
}

bool ObjectTypes::HoldsVolumes() const {
    const auto& groups = m_groups.All();
    return m_volumes.Count() > 0 || std::any_of(groups.begin(), groups.end(),
                                                [](const auto& element) { return element->object.HoldsVolumes(); });
}

Vector3f ObjectTypes::GetBB0() {
    UpdateMetrics();
    return m_BB0;
}

Vector3f ObjectTypes::GetBB1() {
    UpdateMetrics();
    return m_BB1;
}

Vector3f ObjectTypes::GetCenter() {
    UpdateMetrics();
    return m_center;
}

float ObjectTypes::GetRadius() {
    UpdateMetrics();
    return m_radius;
}

void ObjectTypes::UpdateMetrics() {
    bool first = true;
    const auto widenBy = [this, &first](const RenderObjectData& data) {
        const Vector3f low = data.GetBB0();
        if (first) {
            m_BB0 = low;
            m_BB1 = data.GetBB1();
            first = false;
            return;
        }
        const Vector3f high = data.GetBB1();
        WidenAxis(m_BB0.x, m_BB1.x, low.x, high.x);
        WidenAxis(m_BB0.y, m_BB1.y, low.y, high.y);
        WidenAxis(m_BB0.z, m_BB1.z, low.z, high.z);
    };
    for (const auto& element : m_meshes.All()) {
        widenBy(element->object.data_ref());
    }
    for (const auto& element : m_volumes.All()) {
        widenBy(element->object.data_ref());
    }
    m_center = (m_BB0 + m_BB1) * 0.5F;
    m_radius = 0.5F * Length(m_BB1 - m_BB0);
}

bool ObjectTypes::Render(RenderFrame& frame, bool quality) {
    glEnable(GL_NORMALIZE);
    InputPoll input(frame, quality);
    for (const auto& element : m_meshes.Snapshot()) {
        // A mesh that cannot be drawn to its end is the last one, but does not end the pass.
        if (!DrawMesh(frame, element->object, quality)) {
            break;
        }
        if (input.StopRequested()) {
            return false;
        }
    }
    glDisable(GL_NORMALIZE);
    RenderOverlays(frame);
    for (const auto& element : m_groups.Snapshot()) {
        if (!element->object.Render(frame, quality) && frame.IsStopRequested()) {
            return false;
        }
    }
    return RenderVolumes(frame, quality);
}

bool ObjectTypes::RenderVolumes(RenderFrame& frame, bool quality) {
    if (!Quorvex::CheckQXExtension(CAPABILITY_VOLUME)) {
        return true;
    }
    for (const auto& element : m_volumes.Snapshot()) {
        const Volume& volume = element->object;
        if (!volume.GetAttribute().IsVisible()) {
            continue;
        }
        if (!volume.Render(frame, quality) || (quality && frame.ProgressObject())) {
            return false;
        }
    }
    return true;
}

bool ObjectTypes::RenderMeshes(RenderFrame& frame, bool quality) {
    glEnable(GL_NORMALIZE);
    for (const auto& element : m_meshes.Snapshot()) {
        if (!DrawMesh(frame, element->object, quality)) {
            return false;
        }
    }
    glDisable(GL_NORMALIZE);
    return true;
}

void ObjectTypes::RenderOverlays(RenderFrame& frame) {
    for (const auto& element : m_overlays.Snapshot()) {
        element->object.Render(frame);
    }
}

void ObjectTypes::RenderWithNames(RenderFrame& frame) {
    glInitNames();
    glPushName(0);
    GLuint name = 0;
    for (const auto& element : m_meshes.All()) {
        glLoadName(++name); // hidden ones too, so that the names of the others do not shift
        DrawMesh(frame, element->object, false);
    }
}

Mesh* ObjectTypes::RenderWithNamesGetResult(int hits, const unsigned int* buffer) {
    const unsigned int name = NearestName(hits, buffer);
    if (name == 0 || name > m_meshes.Count()) {
        return nullptr;
    }
    return &m_meshes.All()[name - 1]->object;
}

} // namespace KOVA::Quorvex
