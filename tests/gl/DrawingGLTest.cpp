// What a pass puts into the picture: orientation, proportions, light, background, anti-aliasing.

#include <cmath>
#include <numbers>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class DrawingGLTest : public GlTest {};

TEST_F(DrawingGLTest, RightAndUpAreWhereAPersonExpectsThem) {
    FrameFixture f(200, 100);
    f.frame.Add(MakeRectangle(1.0F, 0.5F, 1.5F, 0.8F, 0.0F, {1, 0, 0}));      // right, top
    f.frame.Add(MakeRectangle(-1.5F, -0.75F, -1.0F, -0.5F, 0.0F, {0, 1, 0})); // left, bottom
    Picture picture = f.Draw();
    // 50 pixels a unit: x = 1.25 is 162 from the left, y = 0.6 is 50 - 30 from the top.
    EXPECT_EQ(picture.At(162, 20), RED);
    EXPECT_EQ(picture.At(37, 80), GREEN);
    EXPECT_EQ(picture.At(37, 20), BLACK);
    EXPECT_EQ(picture.Count(RED), 25 * 15) << "50 pixels a unit";

    // From behind left and right change places.
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    picture = f.Draw();
    EXPECT_EQ(picture.At(37, 20), RED);
    EXPECT_EQ(picture.At(162, 80), GREEN);

    // A left-handed view looks along +z: from the same place it shows the mirror image.
    f.view.SetProjectionOrthogonalLH(-2, 2, -2, 2, 1, 9);
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    picture = f.Draw();
    EXPECT_EQ(picture.At(162, 20), RED);
}

TEST_F(DrawingGLTest, NearerHidesFartherInBothHandednesses) {
    FrameFixture f(64, 64);
    f.frame.Add(MakeRectangle(-1, -1, 1, 1, 1.0F, {1, 0, 0}));
    f.frame.Add(MakeRectangle(-1, -1, 1, 1, -1.0F, {0, 1, 0}));
    EXPECT_EQ(f.Draw().At(32, 32), RED);
    f.view.SetProjectionOrthogonalLH(-2, 2, -2, 2, 1, 9);
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    EXPECT_EQ(f.Draw().At(32, 32), GREEN);
    f.view.SetProjectionPerspectiveRH(0.8F, 1, 20);
    f.view.SetModelviewViewer({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
    EXPECT_EQ(f.Draw().At(32, 32), RED);
}

struct Extents {
    int columns = 0;
    int rows = 0;
    int area = 0;
};

Extents MeasureSilhouette(const Picture& picture) {
    Extents extents;
    const auto covered = [&picture](int x, int y) { return picture.At(x, y) != BLACK; };
    for (int x = 0; x < picture.width; ++x) {
        extents.columns += covered(x, picture.height / 2) ? 1 : 0;
    }
    for (int y = 0; y < picture.height; ++y) {
        extents.rows += covered(picture.width / 2, y) ? 1 : 0;
    }
    extents.area = picture.Count([](const Pixel& pixel) { return pixel != BLACK; });
    return extents;
}

TEST_F(DrawingGLTest, SpheresAreRoundInWideAndTallWindows) {
    // The facets' chords cut away at most 1 - cos(3.75 degrees) = 0.2 % of the radius.
    for (const auto& [width, height] : {std::pair(400, 200), std::pair(200, 400), std::pair(300, 300)}) {
        FrameFixture f(width, height);
        f.frame.Add(MeshBuilder::BuildSphere({0, 0, 0}, 0.9F));
        const float radius = 0.9F * static_cast<float>(width) / 4.0F;
        const Extents orthogonal = MeasureSilhouette(f.Draw());
        EXPECT_NEAR(orthogonal.columns, 2 * radius, 2) << width << " x " << height;
        EXPECT_NEAR(orthogonal.rows, 2 * radius, 2) << width << " x " << height;
        EXPECT_NEAR(orthogonal.area, std::numbers::pi_v<float> * radius * radius, 0.01F * radius * radius * 3.2F);

        // In perspective the silhouette is the cone that touches the sphere: its opening angle has the sine r / d.
        f.view.SetProjectionPerspectiveRH(0.8F, 1, 20);
        const float tangent = std::tan(std::asin(0.9F / 5.0F)) / std::tan(0.4F);
        const Extents perspective = MeasureSilhouette(f.Draw());
        EXPECT_NEAR(perspective.columns, tangent * static_cast<float>(width), 2) << width << " x " << height;
        EXPECT_NEAR(perspective.rows, tangent * static_cast<float>(width), 2) << width << " x " << height;
    }
}

TEST_F(DrawingGLTest, LightComesFromWhereItWasSet) {
    FrameFixture f(100, 100);
    Mesh sphere = MeshBuilder::BuildSphere({0, 0, 0}, 1.6F);
    sphere.GetAttribute().SetSpecularity(0.0F);
    f.frame.Add(sphere);
    // Facing the light: ambient 0.2 x 0.2 and diffuse 0.8; turned away: ambient alone.
    Picture picture = f.Draw();
    EXPECT_TRUE(Near(picture.At(50, 50), {214, 214, 214}, 2));
    EXPECT_LT(picture.At(50, 11).r, 80) << "the rim faces sideways";

    f.frame.SetLight({1, 0, 0});
    picture = f.Draw();
    EXPECT_GT(picture.At(87, 50).r, 190) << "lit from the right";
    EXPECT_TRUE(Near(picture.At(15, 50), {10, 10, 10}, 1));

    f.frame.SetLight({0, 0, -1});
    EXPECT_TRUE(Near(f.Draw().At(50, 50), {10, 10, 10}, 1)) << "light from behind the scene";

    // The light is fixed to the eye; in world coordinates it turns with the camera.
    f.frame.SetLight({0, 0, 1});
    f.view.SetModelviewViewer({5, 0, 0}, {0, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(Near(f.Draw().At(50, 50), {214, 214, 214}, 2));
    EXPECT_NEAR(Length(f.frame.GetLightTransformed() - Vector3f(1, 0, 0)), 0.0F, 1e-6F);
}

TEST_F(DrawingGLTest, ScaledObjectsAreLitAsBrightly) {
    FrameFixture f(100, 100);
    Mesh sphere = MeshBuilder::BuildSphere({0, 0, 0}, 0.016F);
    sphere.GetAttribute().SetSpecularity(0.0F);
    sphere.GetAttribute().GetTransformRef().Scale({100, 100, 100});
    f.frame.Add(sphere);
    EXPECT_TRUE(Near(f.Draw().At(50, 50), {214, 214, 214}, 2));
}

TEST_F(DrawingGLTest, TranslationIsAppliedBeforeTheTransform) {
    FrameFixture f(200, 200);
    Mesh rectangle = MakeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0.0F, {1, 0, 0});
    rectangle.GetAttribute().SetGlobalTranslation({0.5F, 0, 0});
    rectangle.GetAttribute().GetTransformRef().Scale({2, 2, 1});
    f.frame.Add(rectangle);
    const Picture picture = f.Draw();
    EXPECT_EQ(picture.At(150, 100), RED) << "x = (0 + 0.5) x 2";
    EXPECT_EQ(picture.At(125, 100), BLACK);
}

TEST_F(DrawingGLTest, HiddenMeshesAndGroups) {
    FrameFixture f(64, 64);
    ObjectTypes group;
    group.Add(MakeRectangle(-2, -2, 0, 2, 0.0F, {1, 0, 0}));
    f.frame.Add(group);
    Mesh* const right = f.frame.Add(MakeRectangle(0, -2, 2, 2, 0.0F, {0, 1, 0}));
    Picture picture = f.Draw();
    EXPECT_EQ(picture.At(10, 32), RED);
    EXPECT_EQ(picture.At(50, 32), GREEN);
    right->GetAttribute().Hide();
    EXPECT_EQ(f.Draw().At(50, 32), BLACK);
}

TEST_F(DrawingGLTest, BackgroundRunsFromTopToBottom) {
    FrameFixture f(10, 256);
    f.frame.SetBackgroundColor(ColorRGBA(1, 0, 0), ColorRGBA(0, 0, 1));
    const Picture picture = f.Draw();
    EXPECT_TRUE(Near(picture.At(5, 0), RED, 2));
    EXPECT_TRUE(Near(picture.At(5, 255), BLUE, 2));
    for (int y = 0; y < 256; ++y) {
        EXPECT_TRUE(Near(picture.At(5, y), {255 - y, 0, y}, 2)) << y;
    }
    EXPECT_EQ(f.frame.GetBackgroundColor(), ColorRGBA(0.5F, 0.0F, 0.5F));
}

TEST_F(DrawingGLTest, AntiAliasingAveragesAndKeepsTheGeometry) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        // Straight into the window there is one pixel for each, whatever the factor.
        FrameFixture f(100, 100);
        f.frame.SetAntiAliasing(2.0F);
        f.frame.Add(MakeRectangle(-1, -1, 1, 1, 0.0F, {1, 0, 0}));
        EXPECT_EQ(f.Draw().Count(RED), 50 * 50);
        return;
    }
    FrameFixture f(100, 100);
    f.frame.Add(MakeRectangle(-1.02F, -1, 1.02F, 1, 0.0F, {1, 0, 0})); // left and right edges in the middle of a pixel
    EXPECT_EQ(f.Draw().Count([](const Pixel& p) { return p != RED && p != BLACK; }), 0);
    f.frame.SetAntiAliasing(2.0F);
    const Picture picture = f.Draw();
    EXPECT_TRUE(Near(picture.At(24, 50), {128, 0, 0}, 2));
    EXPECT_TRUE(Near(picture.At(75, 50), {128, 0, 0}, 2));
    EXPECT_EQ(picture.At(50, 50), RED);
    EXPECT_EQ(picture.At(23, 50), BLACK);
}

TEST_F(DrawingGLTest, LimitsTheInternalSizeOnEachSide) {
    if (!Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SUCCEED() << "no off-screen target, no internal size";
        return;
    }
    // 3000 x 10 at factor 2 is drawn at 4096 x 20; the picture keeps its proportions, so it fills the height and is
    // 4096 / 6000 of the width.
    FrameFixture f(3000, 10);
    f.frame.SetAntiAliasing(2.0F);
    f.frame.SetBackgroundColor(ColorRGBA(1, 1, 1));
    const Picture picture = f.Draw();
    int lit = 0;
    for (int x = 0; x < 3000; ++x) {
        lit += picture.At(x, 5) == WHITE ? 1 : 0;
    }
    EXPECT_NEAR(lit, 2048, 2);
    EXPECT_EQ(picture.At(10, 5), BLACK);
}

TEST_F(DrawingGLTest, SurvivesOddFactorsAndNoView) {
    FrameFixture f(16, 16);
    for (const float factor : {0.0F, -1.0F, 1e-9F, std::nanf("")}) {
        f.frame.SetAntiAliasing(factor);
        f.Draw();
    }
    f.frame.SetView(nullptr);
    EXPECT_TRUE(f.frame.DrawGL(16, 16, true));
    EXPECT_FALSE(f.frame.IsBusy());
}

} // namespace
} // namespace KOVA::Quorvex::test
