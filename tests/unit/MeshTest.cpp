#include <Quorvex/mesh/Mesh.h>

#include <memory>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

namespace KOVA::Quorvex {
namespace {

// Tells when it is deleted.
class WatchedData : public MeshData {
public:
    explicit WatchedData(bool& deleted) : MeshData(3, 4), m_deleted(deleted) {
        CreateVertexArray(nullptr);
        SetVertex(0, Vector3f(-1, 0, 0));
        SetVertex(1, Vector3f(3, 0, 0));
        SetVertex(2, Vector3f(0, 2, 4));
        MeshData::UpdateMetrics();
    }
    WatchedData(const WatchedData&) = delete;
    WatchedData& operator=(const WatchedData&) = delete;
    ~WatchedData() override { m_deleted = true; }

private:
    bool& m_deleted;
};

MeshAttribute Red() {
    MeshAttribute attribute;
    attribute.SetColor(ColorRGBA(1, 0, 0));
    return attribute;
}

TEST(Mesh, TheLastMeshDeletesTheData) {
    bool deleted = false;
    auto* data = new WatchedData(deleted);
    auto first = std::make_unique<Mesh>(*data);
    auto second = std::make_unique<Mesh>(*data, Red());
    auto copy = std::make_unique<Mesh>(*first);
    EXPECT_EQ(data->GetInstanceCounter(), 4U);
    EXPECT_EQ(&copy->data_ref(), data);
    first.reset();
    copy.reset();
    EXPECT_EQ(data->GetInstanceCounter(), 2U);
    EXPECT_FALSE(deleted);
    EXPECT_EQ(second->GetData().GetVertex(1), Vector3f(3, 0, 0));
    second.reset();
    EXPECT_TRUE(deleted);
}

TEST(Mesh, DataThatAHostCountsOnIsTheHostsToDelete) {
    bool deleted = false;
    auto* data = new WatchedData(deleted);
    data->IncInstanceCounter();
    { const Mesh mesh(*data); }
    EXPECT_FALSE(deleted);
    EXPECT_EQ(data->DecInstanceCounter(), 1U);
    delete data;
    EXPECT_TRUE(deleted);
}

TEST(Mesh, AssignmentMovesTheCountFromOneDataToTheOther) {
    bool oldDeleted = false;
    bool newDeleted = false;
    auto* newData = new WatchedData(newDeleted);
    {
        Mesh source(*newData, Red());
        Mesh target(*new WatchedData(oldDeleted));
        const RenderObjectAttribute* own = &target.attribute_ref();
        target = source;
        EXPECT_TRUE(oldDeleted);
        EXPECT_EQ(newData->GetInstanceCounter(), 3U);
        EXPECT_EQ(&target.attribute_ref(), own);
        EXPECT_EQ(target.GetAttribute().GetColor(), ColorRGBA(1, 0, 0));
        EXPECT_EQ(target.GetBB1(), Vector3f(3, 2, 4));

        target = std::as_const(target);
        target = source; // both on the same data already
        EXPECT_EQ(newData->GetInstanceCounter(), 3U);
        EXPECT_FALSE(newDeleted);
    }
    EXPECT_TRUE(newDeleted);
}

TEST(Mesh, DataThatAMeshMadeForItselfReadsOneAndSurvives) {
    auto original = std::make_unique<Mesh>(Red());
    MeshData& data = original->GetData();
    EXPECT_EQ(data.GetInstanceCounter(), 1U);
    EXPECT_EQ(original->GetAttribute().GetColor(), ColorRGBA(1, 0, 0));
    EXPECT_EQ(original->GetRadius(), 0.0F);

    auto copy = std::make_unique<Mesh>(*original);
    EXPECT_EQ(data.GetInstanceCounter(), 2U);
    copy.reset();
    EXPECT_EQ(data.GetInstanceCounter(), 1U); // and is still there for the original
    EXPECT_EQ(original->GetData().GetNumVertices(), 0U);

    copy = std::make_unique<Mesh>(*original);
    original.reset();
    EXPECT_EQ(copy->GetData().GetMode(), 4U);
    Mesh assigned;
    assigned = *copy;
    copy.reset();
    EXPECT_EQ(&assigned.GetData(), &data);
    EXPECT_EQ(data.GetMode(), 4U);
}

TEST(Mesh, EqualityIsIdentity) {
    bool deleted = false;
    auto* data = new WatchedData(deleted);
    const Mesh first(*data);
    const Mesh second(*data);
    const Mesh copy(first);
    EXPECT_TRUE(first == first);
    EXPECT_FALSE(first != first);
    EXPECT_TRUE(first != second);
    EXPECT_TRUE(first != copy);
}

TEST(Mesh, CopiesHaveAttributesOfTheirOwn) {
    bool deleted = false;
    Mesh mesh(*new WatchedData(deleted), Red());
    const Mesh copy(mesh);
    mesh.attribute_ref().SetColor(ColorRGBA(0, 1, 0));
    EXPECT_EQ(copy.GetAttribute().GetColor(), ColorRGBA(1, 0, 0));
    EXPECT_EQ(copy.GetBB0(), mesh.GetBB0());
    EXPECT_EQ(copy.GetRadius(), mesh.GetRadius());
}

TEST(Mesh, TakesTheDatasMetricsOrMeasuresUnderItsTransform) {
    bool deleted = false;
    auto* data = new WatchedData(deleted);
    data->SetBB0(Vector3f(-7, -7, -7)); // as they stand, right or not
    const Mesh plain(*data);
    EXPECT_EQ(plain.GetBB0(), Vector3f(-7, -7, -7));
    EXPECT_EQ(plain.GetCenter(), data->GetCenter());
    EXPECT_EQ(plain.GetRadius(), data->GetRadius());

    MeshAttribute attribute;
    attribute.GetTransformRef().Rotate(Vector3f(0, 0, 1), std::numbers::pi_v<float> / 2.0F);
    attribute.GetTransformRef().Translate(Vector3f(10, 20, 30));
    attribute.SetGlobalTranslation(Vector3f(1000, 0, 0)); // plays no part
    Mesh turned(*data, attribute);
    // (x, y, z) has become (10 - y, 20 + x, 30 + z)
    EXPECT_NEAR(Length(turned.GetBB0() - Vector3f(8, 19, 30)), 0.0F, 1e-5F);
    EXPECT_NEAR(Length(turned.GetBB1() - Vector3f(10, 23, 34)), 0.0F, 1e-5F);
    EXPECT_NEAR(Length(turned.GetCenter() - Vector3f(9, 21, 32)), 0.0F, 1e-5F);
    EXPECT_NEAR(turned.GetRadius(), 3.0F, 1e-5F); // half of (2, 4, 4)
    EXPECT_EQ(data->GetBB0(), Vector3f(-7, -7, -7));

    turned.attribute_ref().GetTransformRef()[15] = 2.0; // w divides
    EXPECT_TRUE(turned.UpdateMetrics());
    EXPECT_NEAR(turned.GetRadius(), 1.5F, 1e-5F);

    Mesh empty;
    EXPECT_FALSE(empty.UpdateMetrics());
    Mesh noArray(*new MeshData(4, 4));
    EXPECT_FALSE(noArray.UpdateMetrics());
    MeshData& noVertices = *new MeshData(0, 4);
    noVertices.CreateVertexArray(nullptr);
    Mesh none(noVertices);
    EXPECT_FALSE(none.UpdateMetrics());
}

} // namespace
} // namespace KOVA::Quorvex
