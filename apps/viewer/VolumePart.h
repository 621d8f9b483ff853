#pragma once

#include <array>
#include <map>
#include <optional>

#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/volume/Volume.h>

#include <shared/VolumeSummary.h>

#include "CameraRig.h"
#include "ScenePart.h"
#include "TransferCurve.h"

namespace KOVA::Quorvex::viewer {

// A volume and how it is shown. Its place in the scene is the library's: centred, the longest axis from -1 to 1.
class VolumePart : public ScenePart {
public:
    // Along one axis: what lies outside the two limits is cut away, and a slice is shown; in shares of the extent.
    struct AxisCut {
        double low = 0.0;
        double high = 1.0;
        bool showSlice = false;
        double slice = 0.5;
    };

    struct Look {
        VolumeAttribute::RenderMode mode = VolumeAttribute::Shaded;
        double samples = 1.0;
        TransferCurve curve;
        int preset = 0;      // -1 when the curve is none
        bool edited = false; // by hand: the mode leaves it alone
        std::array<AxisCut, 3> cuts;
    };

    // Reads the file. Throws Failure.
    VolumePart(const std::string& path, ReadProgress& progress);

    double UploadFurther() override;
    void AddTo(RenderFrame& frame) override;
    void RemoveFrom(RenderFrame& frame) override;
    void Apply() override;
    VolumeAttribute& Attribute() override { return m_volume.GetAttribute(); }
    bool HasColor() const override { return false; }
    void AddModes(Modes& modes) const override { modes.volume = m_look.mode; }
    Box GetBox() const override;
    void Place(const SceneUnit& /*unit*/) override {}
    SceneUnit GetUnit() const override { return UnitOf(GetData()); }
    SceneUnit SuitableUnit() const override { return GetUnit(); }
    std::optional<double> Meet(const Beam& beam) const override; // see MeetVolume
    bool IsShownAs(const Mesh* /*mesh*/) const override { return false; }
    std::vector<Fact> Describe() const override;

    const VolumeData& GetData() const { return m_volume.GetData(); }
    std::size_t CountVoxels(std::size_t axis) const;
    const VolumeSummary& GetSummary() const { return m_summary; }
    TransferTable DefaultTable(VolumeAttribute::RenderMode mode) const;

    const Look& GetLook() const { return m_look; }
    void SetLook(const Look& look); // a mode that the driver lacks leaves the mode as it is

private:
    Volume m_volume;
    VolumeSummary m_summary;
    Look m_look;
    std::map<RenderFrame*, Volume*> m_copies;
};

} // namespace KOVA::Quorvex::viewer
