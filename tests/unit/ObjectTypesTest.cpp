// The scene container, without drawing.

#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshBuilder.h>
#include <Quorvex/scene/ObjectTypes.h>

namespace KOVA::Quorvex {
namespace {

Mesh Box(float low, float high) {
    return MeshBuilder::BuildBox({low, low, low}, {high, high, high});
}

// Lets the tests resolve selection records as a frame does.
class Scene : public ObjectTypes {
public:
    using ObjectTypes::RenderWithNamesGetResult;
};

TEST(ObjectTypesTest, AddStoresACopyThatSharesTheData) {
    ObjectTypes scene;
    Mesh box = Box(0, 1);
    unsigned long first = 0;
    unsigned long second = 0;
    Mesh* const stored = scene.Add(box, &first);
    Mesh* const again = scene.Add(box, &second);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(&stored->GetData(), &box.GetData());
    EXPECT_NE(&stored->GetAttribute(), &box.GetAttribute());
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 4U);
    EXPECT_EQ(scene.GetObjectByID(first), stored);
    EXPECT_EQ(scene.GetObjectByID(second), again);
    EXPECT_EQ(scene.GetObjectByID(second + 1), nullptr);
    EXPECT_EQ(scene.GetNumObjects(), 0U) << "meshes do not count";

    // Ids are counted over all groups, and not given twice.
    ObjectTypes other;
    scene.Remove(*again);
    unsigned long third = 0;
    other.Add(box, &third);
    EXPECT_EQ(third, second + 1);
}

TEST(ObjectTypesTest, RemoveFindsTheStoredElementOnly) {
    ObjectTypes scene;
    Mesh box = Box(0, 1);
    unsigned long id = 0;
    Mesh* const stored = scene.Add(box, &id);
    scene.Remove(box); // the same data, but another attribute
    EXPECT_EQ(scene.GetObjectByID(id), stored);
    scene.Remove(*stored);
    EXPECT_EQ(scene.GetObjectByID(id), nullptr);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 2U);

    ObjectTypes group;
    group.Add(box);
    ObjectTypes* const nested = scene.Add(group);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 4U);
    scene.Remove(group);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 4U) << "the original is not the stored group";
    scene.Remove(*nested);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 3U);
}

TEST(ObjectTypesTest, ClearByKindAndAltogether) {
    ObjectTypes scene;
    Mesh box = Box(0, 1);
    ObjectTypes group;
    scene.Add(group)->Add(box);
    scene.Add(box);
    scene.Clear(ObjectTypes::VOLUME);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 4U);
    scene.Clear(ObjectTypes::MESH);
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 3U) << "the one in the group stays";
    scene.Clear();
    EXPECT_EQ(box.GetData().GetInstanceCounter(), 2U);
}

TEST(ObjectTypesTest, CopiesAreIndependentAssignmentsShare) {
    Mesh box = Box(0, 1);
    ObjectTypes scene;
    unsigned long id = 0;
    scene.Add(box, &id);
    {
        ObjectTypes copy(scene);
        EXPECT_EQ(box.GetData().GetInstanceCounter(), 4U);
        EXPECT_EQ(copy.GetObjectByID(id), nullptr) << "its elements have new ids";
        EXPECT_NE(copy.GetObjectByID(id + 1), nullptr);
        copy.Clear();
        EXPECT_NE(scene.GetObjectByID(id), nullptr);
    }
    {
        ObjectTypes assigned;
        assigned.Add(box);
        assigned = scene;
        EXPECT_EQ(box.GetData().GetInstanceCounter(), 3U) << "what it had before is gone";
        EXPECT_EQ(assigned.GetObjectByID(id), scene.GetObjectByID(id)) << "the same element";
        EXPECT_FALSE(assigned == scene);
        EXPECT_TRUE(assigned == assigned);
    }
    EXPECT_NE(scene.GetObjectByID(id), nullptr) << "freed by the last one only";
}

TEST(ObjectTypesTest, TheMaximumGrowsOnlyByObjectsWhollyBeyondIt) {
    ObjectTypes scene;
    EXPECT_EQ(scene.GetRadius(), 0.0F);
    scene.Add(Box(0, 1));
    Mesh* const larger = scene.Add(Box(0.5F, 5));
    EXPECT_EQ(scene.GetBB0(), Vector3f(0, 0, 0));
    EXPECT_EQ(scene.GetBB1(), Vector3f(1, 1, 1));
    scene.Remove(*larger);
    scene.Add(Box(2, 3));
    EXPECT_EQ(scene.GetBB1(), Vector3f(3, 3, 3));
    scene.Add(Box(-4, -3));
    EXPECT_EQ(scene.GetBB0(), Vector3f(-4, -4, -4));
    EXPECT_EQ(scene.GetCenter(), Vector3f(-0.5F, -0.5F, -0.5F));
    EXPECT_FLOAT_EQ(scene.GetRadius(), 0.5F * Length(Vector3f(7, 7, 7)));
    scene.Clear();
    EXPECT_EQ(scene.GetBB1(), Vector3f(3, 3, 3)) << "an empty scene keeps its box";
}

TEST(ObjectTypesTest, VolumesHaveAListAndIdsOfTheirOwn) {
    ObjectTypes scene;
    auto* const data = new VolumeData(4, 2, 2);
    data->clearData();
    Volume volume(*data);
    unsigned long first = 0;
    unsigned long second = 0;
    Volume* const stored = scene.Add(volume, &first);
    scene.Add(volume, &second);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(&stored->GetData(), data);
    EXPECT_EQ(scene.GetNumObjects(), 2U);
    EXPECT_EQ(scene.GetObjectByID(first), stored);
    EXPECT_EQ(scene.GetBB0(), Vector3f(-1, -0.5F, -0.5F));
    scene.Remove(volume); // another attribute
    EXPECT_EQ(scene.GetNumObjects(), 2U);
    scene.Remove(*stored);
    EXPECT_EQ(scene.GetNumObjects(), 1U);

    // Of a mesh and a volume with one id the mesh is found.
    Mesh box = Box(-2, 0);
    unsigned long meshId = 0;
    do {
        scene.Add(box, &meshId);
    } while (meshId < second);
    while (second < meshId) {
        scene.Add(volume, &second);
    }
    EXPECT_NE(dynamic_cast<Mesh*>(scene.GetObjectByID(second)), nullptr);
    scene.Clear(ObjectTypes::MESH);
    EXPECT_NE(dynamic_cast<Volume*>(scene.GetObjectByID(second)), nullptr);

    ObjectTypes outer;
    outer.Add(scene);
    EXPECT_EQ(outer.GetNumObjects(), 0U) << "those of nested groups do not count";
    EXPECT_TRUE(outer.HoldsVolumes());
    outer.Clear();
    EXPECT_FALSE(outer.HoldsVolumes());
    scene.Clear(ObjectTypes::VOLUME);
    EXPECT_EQ(scene.GetNumObjects(), 0U);
    EXPECT_EQ(data->GetInstanceCounter(), 2U) << "the caller's is left";
}

TEST(ObjectTypesTest, SelectionTakesTheNearestRecordAndTheFirstOfEquals) {
    Scene scene;
    Mesh* const first = scene.Add(Box(0, 1));
    Mesh* const second = scene.Add(Box(2, 3));
    second->GetAttribute().Hide(); // keeps its name
    Mesh* const third = scene.Add(Box(4, 5));
    const auto pick = [&scene](int hits, const std::vector<unsigned int>& buffer) {
        return scene.RenderWithNamesGetResult(hits, buffer.data());
    };
    // A record: number of names, smallest and largest depth, names.
    EXPECT_EQ(pick(1, {1, 500, 600, 3}), third);
    EXPECT_EQ(pick(2, {1, 500, 600, 1, 1, 400, 700, 3}), third);
    EXPECT_EQ(pick(2, {1, 400, 600, 1, 1, 400, 500, 3}), first);
    EXPECT_EQ(pick(2, {0, 900, 900, 1, 0x80000000, 0x80000000, 2}), nullptr) << "the nearest record has no name";
    EXPECT_EQ(pick(2, {2, 0xF0000000, 0xF0000001, 3, 9, 1, 0x90000000, 0x90000001, 2}), second) << "unsigned depths";
    EXPECT_EQ(pick(1, {1, 0xFFFFFFFF, 0xFFFFFFFF, 1}), nullptr) << "only a smaller depth is kept";
    EXPECT_EQ(pick(1, {1, 5, 5, 4}), nullptr) << "no such name";
    EXPECT_EQ(pick(0, {1, 5, 5, 1}), nullptr);
    EXPECT_EQ(pick(-1, {1, 5, 5, 1}), nullptr) << "the buffer was too small";
}

} // namespace
} // namespace KOVA::Quorvex
