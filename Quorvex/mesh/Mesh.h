#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/mesh/MeshData.h>
#include <Quorvex/scene/RenderObject.h>

namespace KOVA::Quorvex {

// A mesh in a scene: shared geometry (MeshData) with an attribute of its own. Copies share the geometry; see
// RenderObject for who deletes it. Data that a mesh made for itself (the constructors without data) is never deleted
// by meshes and lives until the process ends, so that whoever else refers to it can rely on it: a host that wants it
// freed creates the MeshData and hands it in.
class QUORVEX_API Mesh : public RenderObject {
public:
    Mesh();
    explicit Mesh(const MeshAttribute& attribute);
    explicit Mesh(MeshData& data);                        // takes over the data's box, centre and radius as they stand
    Mesh(MeshData& data, const MeshAttribute& attribute); // measures the transformed box, see UpdateMetrics
    Mesh(const Mesh& other);
    Mesh& operator=(const Mesh& other); // shares the other's data, copies its attribute
    ~Mesh() override;

    // Identity: the same data object and the same attribute object.
    bool operator==(const Mesh& other) const;
    bool operator!=(const Mesh& other) const { return !(*this == other); }

    bool Render(RenderFrame& frame, bool quality) const override;

    // Box, centre and radius in world coordinates: of all vertices under the attribute's transform. False, and nothing
    // changed, without vertices.
    bool UpdateMetrics();

    Vector3f GetBB0() const { return m_BB0; }
    Vector3f GetBB1() const { return m_BB1; }
    Vector3f GetCenter() const { return m_center; }
    float GetRadius() const { return m_radius; }

    RenderObjectData& data_ref() const;
    RenderObjectAttribute& attribute_ref() const;
    MeshData& GetData() const { return *m_data; }
    MeshAttribute& GetAttribute() const { return *m_attribute; }

private:
    void ReleaseData();
    void CopyDataMetrics();

    MeshData* m_data;
    MeshAttribute* m_attribute;
    Vector3f m_BB0{0.0F, 0.0F, 0.0F};
    Vector3f m_BB1{0.0F, 0.0F, 0.0F};
    Vector3f m_center{0.0F, 0.0F, 0.0F};
    float m_radius = 0.0F;
};

} // namespace KOVA::Quorvex
