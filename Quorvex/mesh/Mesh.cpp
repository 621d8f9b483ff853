#include <Quorvex/mesh/Mesh.h>

#include <deque>

#include <Quorvex/mesh/MeshRenderer.h>

namespace KOVA::Quorvex {

namespace {

// Keeps sight of the data that meshes made for themselves: no mesh deletes it, since other objects may hold it, and it
// is not lost either.
void KeepUntilProcessEnds(MeshData* data) {
    static auto* const s_kept = new std::deque<MeshData*>();
    s_kept->push_back(data);
}

} // namespace

Mesh::Mesh() : Mesh(MeshAttribute()) {}

Mesh::Mesh(const MeshAttribute& attribute)
    : RenderObject(attribute), m_data(new MeshData()), m_attribute(new MeshAttribute(attribute)) {
    m_data->m_madeByMesh = true;
    KeepUntilProcessEnds(m_data);
}

Mesh::Mesh(MeshData& data) : RenderObject(data), m_data(&data), m_attribute(new MeshAttribute()) {
    CopyDataMetrics();
}

Mesh::Mesh(MeshData& data, const MeshAttribute& attribute)
    : RenderObject(data, attribute), m_data(&data), m_attribute(new MeshAttribute(attribute)) {
    UpdateMetrics();
}

Mesh::Mesh(const Mesh& other)
    : RenderObject(*other.m_data, *other.m_attribute), m_data(other.m_data),
      m_attribute(new MeshAttribute(*other.m_attribute)), m_BB0(other.m_BB0), m_BB1(other.m_BB1),
      m_center(other.m_center), m_radius(other.m_radius) {}

Mesh& Mesh::operator=(const Mesh& other) {
    if (this != &other) {
        other.m_data->IncInstanceCounter(); // first, in case both share the data
        ReleaseData();
        m_data = other.m_data;
        *m_attribute = *other.m_attribute;
        m_BB0 = other.m_BB0;
        m_BB1 = other.m_BB1;
        m_center = other.m_center;
        m_radius = other.m_radius;
    }
    return *this;
}

Mesh::~Mesh() {
    ReleaseData();
    delete m_attribute;
}

void Mesh::ReleaseData() {
    // The mesh that made the data is not counted on it, so its copies count above 1 and the mesh itself at 1.
    if (m_data->m_madeByMesh) {
        if (m_data->GetInstanceCounter() > 1) {
            m_data->DecInstanceCounter();
        }
        return;
    }
    if (m_data->DecInstanceCounter() == 1) {
        delete m_data;
    }
}

void Mesh::CopyDataMetrics() {
    m_BB0 = m_data->GetBB0();
    m_BB1 = m_data->GetBB1();
    m_center = m_data->GetCenter();
    m_radius = m_data->GetRadius();
}

bool Mesh::operator==(const Mesh& other) const {
    return m_data == other.m_data && m_attribute == other.m_attribute;
}

bool Mesh::Render(RenderFrame& frame, bool quality) const {
    MeshRenderer::Render(frame, quality, this, false);
    return true;
}

bool Mesh::UpdateMetrics() {
    const unsigned int count = m_data->GetNumVertices();
    if (m_data->GetVertexArray() == nullptr || count == 0) {
        return false;
    }
    Matrix44d& transform = m_attribute->GetTransformRef();
    Vector3f low = transform * m_data->GetVertex(0);
    Vector3f high = low;
    for (unsigned int i = 1; i < count; ++i) {
        const Vector3f v = transform * m_data->GetVertex(i);
        low = Vector3f(v.x < low.x ? v.x : low.x, v.y < low.y ? v.y : low.y, v.z < low.z ? v.z : low.z);
        high = Vector3f(v.x > high.x ? v.x : high.x, v.y > high.y ? v.y : high.y, v.z > high.z ? v.z : high.z);
    }
    m_BB0 = low;
    m_BB1 = high;
    m_center = (low + high) * 0.5F;
    m_radius = 0.5F * Length(high - low);
    return true;
}

RenderObjectData& Mesh::data_ref() const {
    return *m_data;
}

RenderObjectAttribute& Mesh::attribute_ref() const {
    return *m_attribute;
}

} // namespace KOVA::Quorvex
