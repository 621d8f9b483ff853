#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QString>

#include <Quorvex/frame/RenderFrame.h>
#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/scene/RenderObjectAttribute.h>
#include <Quorvex/volume/VolumeAttribute.h>

#include <shared/Camera.h>
#include <shared/MeetMesh.h>
#include <shared/MeshPlacement.h>

namespace KOVA::Quorvex::viewer {

// What was loaded from one file. It is made by the loader's thread; from UploadFurther on it belongs to the thread that
// draws. Every frame has a copy of the object, which shares the data and has an attribute of its own; Apply brings them
// to what the part's own attribute says. Frames are let go before the part goes.
class ScenePart {
public:
    explicit ScenePart(std::string path);
    ScenePart(const ScenePart&) = delete;
    ScenePart& operator=(const ScenePart&) = delete;
    virtual ~ScenePart() = default;

    const std::string& GetPath() const { return m_path; }
    QString GetName() const;

    // Brings a piece of it to the graphics card: some bricks of a volume, one of a mesh's arrays. The share that is
    // there then; 1 before it comes to a frame. Throws std::bad_alloc when there is no room.
    virtual double UploadFurther() = 0;

    virtual void AddTo(RenderFrame& frame) = 0;
    virtual void RemoveFrom(RenderFrame& frame) = 0;
    virtual void Apply() = 0;
    virtual RenderObjectAttribute& Attribute() = 0;

    virtual bool HasColor() const = 0; // one for all of it: its attribute's

    // How meshes and volumes are drawn; nothing for what there is none of.
    struct Modes {
        std::optional<MeshAttribute::RenderMode> mesh;
        std::optional<VolumeAttribute::RenderMode> volume;
    };
    virtual void AddModes(Modes& modes) const = 0;

    // In the scene's coordinates, see Place. A volume has its place and stays there.
    virtual Box GetBox() const = 0;
    virtual void Place(const SceneUnit& unit) = 0;
    virtual SceneUnit GetUnit() const = 0;      // by which it is placed
    virtual SceneUnit SuitableUnit() const = 0; // for a scene that begins with it

    Vector3d InScene(const Vector3d& pointOfFile) const;
    Vector3d InFile(const Vector3d& pointOfScene) const;

    // Where a line of sight ends at it, as a multiple of the ray's direction. A mesh has to be asked only when it is
    // seen there.
    virtual std::optional<double> Meet(const Beam& beam) const = 0;
    virtual bool IsShownAs(const Mesh* mesh) const = 0; // in one of the frames

    // For people: rows of a name and a value.
    struct Fact {
        QString name;
        QString value;
    };
    virtual std::vector<Fact> Describe() const = 0;

private:
    std::string m_path;
};

} // namespace KOVA::Quorvex::viewer
