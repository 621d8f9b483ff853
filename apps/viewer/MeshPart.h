#pragma once

#include <array>
#include <map>

#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/mesh/Mesh.h>

#include <shared/MeshSummary.h>

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
    bool HasColor() const override { return true; }
    void AddModes(Modes& modes) const override;
    Box GetBox() const override;
    void Place(const SceneUnit& unit) override;
    SceneUnit GetUnit() const override { return m_unit; }
    SceneUnit SuitableUnit() const override;

    // The surface, or its nearest edge where it is narrower than the beam; the vertex or the point of an edge where
    // there are only these.
    std::optional<double> Meet(const Beam& beam) const override;
    bool IsShownAs(const Mesh* mesh) const override;
    std::vector<Fact> Describe() const override;

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
