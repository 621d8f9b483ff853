#include <utility>

#include <gtest/gtest.h>

#include <Quorvex/mesh/MeshAttribute.h>
#include <Quorvex/scene/RenderObject.h>
#include <Quorvex/scene/RenderObjectAttribute.h>
#include <Quorvex/scene/RenderObjectData.h>

namespace KOVA::Quorvex {
namespace {

class Object : public RenderObject {
public:
    explicit Object(const RenderObjectAttribute& attribute) : RenderObject(attribute) {}
    explicit Object(RenderObjectData& data) : RenderObject(data) {}
    Object(RenderObjectData& data, const RenderObjectAttribute& attribute) : RenderObject(data, attribute) {}
    bool Render(RenderFrame& /*frame*/, bool quality) const override { return quality; }
};

RenderObjectData Box() {
    RenderObjectData data;
    data.SetBB0(Vector3f(-1, -2, -3));
    data.SetBB1(Vector3f(1, 2, 3));
    data.SetCenter(Vector3f(0.5F, 0, 0));
    data.SetRadius(4.0F);
    return data;
}

TEST(RenderObject, CountsItselfOnItsData) {
    RenderObjectData data;
    const RenderObjectAttribute attribute;
    EXPECT_EQ(data.GetInstanceCounter(), 1U);
    const Object first(data);
    const Object second(data, attribute);
    const Object other(attribute);
    EXPECT_EQ(data.GetInstanceCounter(), 3U);

    // What a copy shares is the derived class's business: the base touches nothing.
    const Object copy(first);
    Object assigned(attribute);
    assigned = second;
    EXPECT_EQ(data.GetInstanceCounter(), 3U);
}

TEST(RenderObjectData, CounterHasNoLowerBound) {
    RenderObjectData data;
    EXPECT_EQ(data.IncInstanceCounter(), 2U);
    EXPECT_EQ(data.DecInstanceCounter(), 1U);
    EXPECT_EQ(data.DecInstanceCounter(), 0U);
    EXPECT_EQ(data.IncInstanceCounter(), 1U);
}

TEST(RenderObjectData, ACopyIsNewDataThatNobodyShares) {
    RenderObjectData source = Box();
    source.IncInstanceCounter();
    const RenderObjectData copy(source);
    EXPECT_EQ(copy.GetInstanceCounter(), 1U);
    EXPECT_EQ(copy.GetBB0(), source.GetBB0());
    EXPECT_EQ(copy.GetBB1(), source.GetBB1());
    EXPECT_EQ(copy.GetCenter(), source.GetCenter());
    EXPECT_EQ(copy.GetRadius(), source.GetRadius());
    EXPECT_TRUE(copy != source); // the counter counts too
    source.DecInstanceCounter();
    EXPECT_TRUE(copy == source);

    RenderObjectData assigned;
    assigned.IncInstanceCounter();
    assigned = source;
    EXPECT_TRUE(assigned == source);
    source.IncInstanceCounter();
    source = std::as_const(source);
    EXPECT_EQ(source.GetInstanceCounter(), 2U);
}

TEST(RenderObjectData, EveryFieldTakesPartInEquality) {
    const auto differs = [](auto change) {
        RenderObjectData changed = Box();
        change(changed);
        return changed != Box() && !(changed == Box());
    };
    EXPECT_FALSE(differs([](RenderObjectData&) {}));
    EXPECT_TRUE(differs([](RenderObjectData& data) { data.SetBB0(Vector3f(0, 0, 0)); }));
    EXPECT_TRUE(differs([](RenderObjectData& data) { data.SetBB1(Vector3f(0, 0, 0)); }));
    EXPECT_TRUE(differs([](RenderObjectData& data) { data.SetCenter(Vector3f(0, 0, 0)); }));
    EXPECT_TRUE(differs([](RenderObjectData& data) { data.SetRadius(0.0F); }));
    EXPECT_TRUE(differs([](RenderObjectData& data) { data.IncInstanceCounter(); }));
}

TEST(RenderObjectAttribute, StartsWhiteVisibleAndWhereItIs) {
    const RenderObjectAttribute attribute;
    EXPECT_EQ(attribute.GetColor(), ColorRGBA(1, 1, 1, 1));
    EXPECT_TRUE(attribute.IsVisible());
    EXPECT_EQ(attribute.GetBoundingBoxColor(), ColorRGBA(1, 1, 1, 1));
    EXPECT_FALSE(attribute.BoundingBoxIsVisible());
    EXPECT_EQ(attribute.GetTransformRef() * Vector3f(1, 2, 3), Vector3f(1, 2, 3));
    EXPECT_EQ(attribute.GetGlobalTranslation(), Vector3f(0, 0, 0));
}

TEST(RenderObjectAttribute, CopiesCarryTheTransformThatEqualityIgnores) {
    RenderObjectAttribute attribute;
    attribute.GetTransformRef().Translate(Vector3f(1, 2, 3));
    EXPECT_TRUE(attribute == RenderObjectAttribute());
    const RenderObjectAttribute copy(attribute);
    RenderObjectAttribute assigned;
    assigned = attribute;
    EXPECT_EQ(copy.GetTransformRef() * Vector3f(0, 0, 0), Vector3f(1, 2, 3));
    EXPECT_EQ(assigned.GetTransformRef() * Vector3f(0, 0, 0), Vector3f(1, 2, 3));
}

template <class Attribute, class Change> void ExpectChangeIsCopiedAndSeen(Change change) {
    Attribute changed;
    change(changed);
    const Attribute copy(changed);
    Attribute assigned;
    EXPECT_TRUE(changed != assigned);
    assigned = changed;
    EXPECT_TRUE(changed == copy && changed == assigned);
    EXPECT_FALSE(changed == Attribute());
}

TEST(RenderObjectAttribute, EveryOtherFieldIsCopiedAndCompared) {
    using Attribute = RenderObjectAttribute;
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetColor(ColorRGBA(1, 1, 1, 0.5F)); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.Hide(); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetBoundingBoxColor(ColorRGBA(0, 1, 1)); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.ShowBoundingBox(); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetGlobalTranslation(Vector3f(0, 0, 1)); });

    Attribute attribute;
    attribute.Hide();
    attribute.Show();
    attribute.ShowBoundingBox();
    attribute.HideBoundingBox();
    EXPECT_TRUE(attribute == Attribute());
}

TEST(RenderObjectAttribute, BoundingBoxRescaleIsOneSettingForAll) {
    EXPECT_EQ(RenderObjectAttribute::GetBoundingBoxRescale(), 0.02F);
    RenderObjectAttribute::SetBoundingBoxRescale(-3.0F);
    EXPECT_EQ(MeshAttribute::GetBoundingBoxRescale(), -3.0F);
    RenderObjectAttribute::SetBoundingBoxRescale(0.02F);
}

TEST(MeshAttribute, DefaultsCopiesAndEquality) {
    const MeshAttribute attribute;
    EXPECT_EQ(attribute.GetRenderMode(), MeshAttribute::RENDER_SURFACE);
    EXPECT_EQ(attribute.GetLineWidth(), 1.0F);
    EXPECT_EQ(attribute.GetShininess(), 4.0F);
    EXPECT_EQ(attribute.GetSpecularity(), 0.3F);

    using Attribute = MeshAttribute;
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetRenderMode(MeshAttribute::RENDER_XRAY); });
    ExpectChangeIsCopiedAndSeen<Attribute>(
        [](Attribute& a) { a.SetRenderMode(static_cast<MeshAttribute::RenderMode>(0x80000000U)); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetLineWidth(2.0F); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetShininess(2.0F); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.SetSpecularity(2.0F); });
    ExpectChangeIsCopiedAndSeen<Attribute>([](Attribute& a) { a.Hide(); }); // of the base
}

} // namespace
} // namespace KOVA::Quorvex
