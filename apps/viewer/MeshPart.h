#pragma once

#include <array>
#include <map>
#include <optional>

#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/mesh/Mesh.h>

#include <shared/MeshSummary.h>

#include "CameraRig.h"
#include "ScenePart.h"

namespace KOVA::Quorvex::viewer {

// A mesh: its vertices are kept centred, with the corners of their box at distance 1, and brought to their place in the
// scene by the attribute's transform.
class MeshPart : public ScenePart {
public:
    // Reads the file. Throws Failure.
    MeshPart(const std::string& path, ReadProgress& progress);

    double UploadFurther() override;
    void AddTo(RenderFrame& frame) override;
    void RemoveFrom(RenderFrame& frame) override;
    void Apply() override;
    MeshAttribute& Attribute() override { return m_lit.GetAttribute(); }
    Box GetBox() const override;
    void Place(const SceneUnit& unit) override;
    std::vector<Fact> Describe() const override;

    const Box& GetFileBox() const { return m_fileBox; }
    bool IsShownAs(const Mesh* mesh) const; // in one of the frames

    // Where the line of sight meets the surface first; where there are lines or points only, the vertex that is nearest
    // to it. In the scene, as a multiple of the ray's direction.
    std::optional<double> Meet(const Ray& ray) const;

private:
    const Mesh& Shown() const;

    Mesh m_lit;
    // The same vertices without normals, for lines and points: lit, those that are seen edge-on would be black. It uses
    // the other's array.
    Mesh m_flat;
    bool m_flatUploaded = false; // when it is first wanted
    std::size_t m_uploadedArrays = 0;
    std::map<RenderFrame*, Mesh*> m_copies;
    Box m_fileBox;
    double m_fileRadius; // 1 of the vertices' coordinates
    MeshSummary m_summary;
    SceneUnit m_unit;
};

} // namespace KOVA::Quorvex::viewer
