#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/Vectors.h>
#include <Quorvex/mesh/Mesh.h>
#include <Quorvex/overlay/Overlay.h>
#include <Quorvex/scene/ObjectList.h>
#include <Quorvex/volume/Volume.h>

namespace KOVA::Quorvex {

class RenderFrame;
class RenderObject;

// A group of scene objects: copies of what the host added, by kind and in insertion order, with nested groups. Every
// render frame is one. Objects share their data with the originals and have attributes of their own; the pointer that
// Add returns is the stored copy, through which the host changes and removes it, and is valid until then.
//
// Ids are unique within a kind for the whole process, never reused, and start at 0. All calls come from the thread that
// draws, with the library's context current when objects have GL buffers.
class QUORVEX_API ObjectTypes {
public:
    enum OBJECTTYPE : int { MESH = 0, VOLUME = 1 };

    ObjectTypes();

    // The copy has elements of its own (with new ids) that share the data; the assignment makes both groups share the
    // elements themselves, until one of them is destroyed or assigned again.
    ObjectTypes(const ObjectTypes& other);
    ObjectTypes& operator=(const ObjectTypes& other);
    ~ObjectTypes();

    Mesh* Add(const Mesh& mesh, unsigned long* id = nullptr);
    Volume* Add(const Volume& volume, unsigned long* id = nullptr);
    ObjectTypes* Add(const ObjectTypes& group, unsigned long* id = nullptr);
    Overlay* Add(const Overlay& overlay, unsigned long* id = nullptr);

    // The first mesh or volume with the argument's data and attribute; the first overlay with its data; the group that
    // is the argument. Nothing for others. The argument may be the stored element itself, which is gone afterwards.
    void Remove(const Mesh& mesh);
    void Remove(const Volume& volume);
    void Remove(const ObjectTypes& group);
    void Remove(const Overlay& overlay);

    void Clear(); // all but overlays
    void Clear(OBJECTTYPE type);

    // Searches meshes, then volumes; null when there is none.
    RenderObject* GetObjectByID(unsigned long id);

    // The number of volumes: the objects that report progress. Those of nested groups do not count.
    unsigned int GetNumObjects() const;

    // Whether there is a volume here or in a nested group.
    bool HoldsVolumes() const;

    // Measure first (see UpdateMetrics), then answer. In the coordinates of the objects' data: transforms of their
    // attributes take no part.
    Vector3f GetBB0();
    Vector3f GetBB1();
    Vector3f GetCenter();
    float GetRadius();

    // The first object sets the box. Every further one lowers the minimum to its own, and raises the maximum to its own
    // along the axes on which it lies wholly beyond the maximum so far. The centre is the middle, the radius half the
    // diagonal. An empty scene keeps the box that it had.
    void UpdateMetrics();

    bool operator==(const ObjectTypes& other) const { return this == &other; }
    bool operator!=(const ObjectTypes& other) const { return this != &other; }

protected:
    // Draws all kinds in their order, volumes last: they are seen through and do not hide what comes later. quality is
    // handed to every object. False: the pass has to stop.
    bool Render(RenderFrame& frame, bool quality);

    // Draws the meshes; false at the first that stops.
    bool RenderMeshes(RenderFrame& frame, bool quality);

    // Draws the points and lines of the overlays with their labels.
    void RenderOverlays(RenderFrame& frame);

    // Draws every pickable object under its selection name: meshes are 1, 2, 3, ..., hidden ones too.
    void RenderWithNames(RenderFrame& frame);

    // The mesh of the nearest of a selection buffer's records (the first of equals); null when there is none.
    Mesh* RenderWithNamesGetResult(int hits, const unsigned int* buffer);

private:
    bool RenderVolumes(RenderFrame& frame, bool quality);

    ObjectList<Mesh> m_meshes;
    ObjectList<ObjectTypes> m_groups;
    ObjectList<Volume> m_volumes;
    ObjectList<Overlay> m_overlays;
    Vector3f m_BB0{0.0F, 0.0F, 0.0F};
    Vector3f m_BB1{0.0F, 0.0F, 0.0F};
    Vector3f m_center{0.0F, 0.0F, 0.0F};
    float m_radius = 0.0F;
};

} // namespace KOVA::Quorvex
