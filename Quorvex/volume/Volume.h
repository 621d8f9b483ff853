#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/scene/RenderObject.h>
#include <Quorvex/volume/VolumeAttribute.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

// A volume in a scene: shared voxels (VolumeData) with an attribute of its own. Copies share the voxels; see
// RenderObject for who deletes them. Data that a volume made for itself (the constructors without data) is never
// deleted by volumes and lives until the process ends: a host that wants it freed creates the VolumeData and hands it
// in. Destroying the last volume on data with bricks deletes textures: with the library's context current.
class QUORVEX_API Volume : public RenderObject {
public:
    Volume();
    explicit Volume(const VolumeAttribute& attribute);
    explicit Volume(VolumeData& data);
    Volume(VolumeData& data, const VolumeAttribute& attribute);
    Volume(const Volume& other);
    Volume& operator=(const Volume& other); // shares the other's data, copies its attribute
    ~Volume() override;

    // Identity: the same data object and the same attribute object.
    bool operator==(const Volume& other) const;
    bool operator!=(const Volume& other) const { return !(*this == other); }

    // Draws the bricks (see VolumeData::Update) into the current context of the frame; false when the pass has to stop.
    bool Render(RenderFrame& frame, bool quality) const override;

    RenderObjectData& data_ref() const;
    RenderObjectAttribute& attribute_ref() const;
    VolumeData& GetData() const { return *m_data; }
    VolumeAttribute& GetAttribute() const { return *m_attribute; }

private:
    void ReleaseData();

    VolumeData* m_data;
    VolumeAttribute* m_attribute;
};

} // namespace KOVA::Quorvex
