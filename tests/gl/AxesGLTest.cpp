// Grid, axes and text over and under the scene.

#include <array>
#include <cmath>
#include <utility>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Text.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class AxesGLTest : public GlTest {};

struct Spot {
    double x = 0, y = 0; // middle of the pixels, from the bottom left
    int count = 0;
};

template <class Predicate> Spot FindSpot(const Picture& picture, Predicate predicate) {
    Spot spot;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (predicate(picture.At(x, y))) {
                spot.x += x + 0.5;
                spot.y += picture.height - y - 0.5;
                ++spot.count;
            }
        }
    }
    spot.x /= std::max(1, spot.count);
    spot.y /= std::max(1, spot.count);
    return spot;
}

TEST_F(AxesGLTest, AxesPointWhereTheWorldsDo) {
    // The axes begin 54 pixels from the corner's sides and are 38 long.
    for (const auto& [leftHand, ratio] : {std::pair(false, 1), std::pair(true, 1), std::pair(false, 2)}) {
        for (const Vector3f& eye : {Vector3f(3, 1, 4), Vector3f(-2, 2, -5), Vector3f(1, -4, 2), Vector3f(-3, -1, 1)}) {
            FrameFixture f(300 * ratio, 280 * ratio);
            f.frame.SetCoordAxesEnabled(true);
            f.frame.SetPixelRatio(static_cast<float>(ratio));
            f.view.SetProjectionPerspective(0.8F, 1, 20, leftHand);
            f.view.SetModelviewViewer(eye, {0, 0, 0}, {0, 1, 0});
            const Picture picture = f.Draw();
            const Spot spots[] = {
                FindSpot(picture, [](const Pixel& p) { return p.r > 150 && p.g < 90 && p.b < 90; }),
                FindSpot(picture, [](const Pixel& p) { return p.g > 120 && p.r < 90 && p.b < 90; }),
                FindSpot(picture, [](const Pixel& p) { return p.b > 200 && p.r < 120; }),
            };
            const double* m = f.view.GetModelviewMatrix();
            for (std::size_t axis = 0; axis < 3; ++axis) {
                ASSERT_GT(spots[axis].count, 30);
                const double length = std::hypot(m[axis * 4], m[axis * 4 + 1]);
                const double x = spots[axis].x / ratio - 54;
                const double y = spots[axis].y / ratio - 54;
                const double along = (x * m[axis * 4] + y * m[axis * 4 + 1]) / length;
                const double beside = (x * m[axis * 4 + 1] - y * m[axis * 4]) / length;
                EXPECT_GT(along, 38 * length / 3) << axis;
                EXPECT_LT(along, 38 * length) << axis;
                EXPECT_NEAR(beside, 0.0, 2.5) << axis;
            }
        }
    }
}

// In a plane view, where every pixel of the lines is known.
TEST_F(AxesGLTest, TheGridIsWhereItsNumbersSay) {
    FrameFixture f(400, 300);
    f.frame.ShowGrid(true);
    f.frame.SetGridUnit(10.0, 3.0, 5.0, 0.0); // 0 is at x = -0.3, y = -0.5; 40 units wide: a line every 10
    f.view.SetProjectionOrthogonalRH(-2, 2, -2, 2, 1, 9);
    const auto level = [](const Picture& picture, double x, double y) {
        return picture.At(static_cast<int>(x), 299 - static_cast<int>(y)).r;
    };
    for (const bool fromBehind : {false, true}) {
        f.view.SetModelviewViewer({0, 0, fromBehind ? -5.0F : 5.0F}, {0, 0, 0}, {0, 1, 0});
        const Picture picture = f.Draw();
        int majors = 0;
        for (int count = -8; count <= 12; ++count) { // every 2 units: 20 pixels
            const double x = 200 + (fromBehind ? -1 : 1) * (2.0 * count - 3.0) * 10;
            const double y = 150 + (2.0 * count - 5.0) * 10;
            const int expected = count == 0 ? 153 : count % 5 == 0 ? 64 : 23;
            majors += count % 5 == 0 ? 1 : 0;
            if (x > 0 && x < 400) {
                EXPECT_NEAR(level(picture, x, 267), expected, 1) << count;
            }
            if (y > 30 && y < 270) {
                EXPECT_NEAR(level(picture, 147, y), expected, 1) << count;
            }
        }
        EXPECT_EQ(majors, 4);
        EXPECT_EQ(level(picture, 133, 267), 0) << "between the lines";
    }
    // A part hides it; on a bright background it is dark; in views that are turned by however little it is not there.
    f.frame.SetBackgroundColor(ColorRGBA(1, 1, 1));
    f.frame.Add(MakeRectangle(-0.4F, -2, -0.2F, 2, 0, {1, 0, 0}));
    const Picture dark = f.Draw();
    EXPECT_EQ(dark.At(230, 100), RED);
    EXPECT_NEAR(level(dark, 100, 100), 102, 1) << "y = 0, over the whole width";
    for (const Vector4f& turn : {Vector4f(0, 1, 0, 1e-6F), Vector4f(0, 0, 1, 0.5F)}) {
        f.view.SetModelviewViewer({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        f.view.RotateWorld(turn);
        EXPECT_EQ(f.Draw().Count([](const Pixel& p) { return p != WHITE && p.g == p.r; }), 0);
    }
}

TEST_F(AxesGLTest, TheRotationAxisRunsThroughTheScene) {
    FrameFixture f(200, 200);
    f.frame.SetRotationsAxisEnabled(true);
    f.frame.SetRotationAxis({1, 0, 0}, {0, 3, 0});
    f.frame.Add(MakeRectangle(-1.5F, -1, 1.5F, 1, -1, {0, 1, 0}));
    const auto isAxis = [](const Pixel& p) { return p.r > 200 && p.b > 150; };
    Spot spot = FindSpot(f.Draw(), isAxis);
    EXPECT_NEAR(spot.x, 150, 2) << "x = 1";
    EXPECT_NEAR(spot.y, 100, 8);
    EXPECT_GT(spot.count, 80) << "dashes of a line of 130 pixels";
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0}); // behind the rectangle: only the ends are bright
    spot = FindSpot(f.Draw(), isAxis);
    EXPECT_NEAR(spot.x, 50, 2);
    EXPECT_LT(spot.count, 60);
}

// Everything that is drawn beside the scene leaves the state as it was, and depths too.
TEST_F(AxesGLTest, NothingElseIsChanged) {
    FrameFixture f(160, 120);
    f.frame.Add(MakeRectangle(-1, -1, 1, 1, 0, {0, 1, 0}));
    f.Draw();
    f.frame.ShowGrid(true);
    glViewport(0, 0, 160, 120);
    glEnable(GL_LIGHTING);
    glColor4f(0.25F, 0.5F, 0.75F, 1);
    glMatrixMode(GL_PROJECTION);
    glDepthFunc(GL_NOTEQUAL);
    std::array<GLdouble, 16> before{};
    glGetDoublev(GL_PROJECTION_MATRIX, before.data());
    std::vector<float> depths(160 * 120);
    glReadPixels(0, 0, 160, 120, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
    f.frame.DrawBackgroundUserView();
    f.frame.RenderCoordAxes();
    f.frame.RenderRotationAxis();
    f.frame.glTextOut("text", -2.0F, 0.9F, {1, 1, 0});
    f.frame.glTextOut(nullptr, 0, 0, {1, 1, 0});
    std::array<GLdouble, 16> after{};
    glGetDoublev(GL_PROJECTION_MATRIX, after.data());
    EXPECT_EQ(after, before);
    GLint values[4] = {};
    glGetIntegerv(GL_DEPTH_FUNC, &values[0]);
    glGetIntegerv(GL_MATRIX_MODE, &values[1]);
    glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &values[2]);
    EXPECT_EQ(values[0], GL_NOTEQUAL);
    EXPECT_EQ(values[1], GL_PROJECTION);
    EXPECT_EQ(values[2], 0);
    float color[4];
    glGetFloatv(GL_CURRENT_COLOR, color);
    EXPECT_EQ(color[1], 0.5F);
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING) && glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_BLEND) || glIsEnabled(GL_LINE_STIPPLE));
    std::vector<float> depthsAfter(160 * 120);
    glReadPixels(0, 0, 160, 120, GL_DEPTH_COMPONENT, GL_FLOAT, depthsAfter.data());
    EXPECT_EQ(depthsAfter, depths);
    glDisable(GL_LIGHTING);
    glDepthFunc(GL_LESS);
}

TEST_F(AxesGLTest, TextStandsOnItsBaseLine) {
    if (platform::RasterizeLabel("H").pixels.empty()) {
        GTEST_SKIP() << "no font";
    }
    FrameFixture f(100, 60);
    f.Draw();
    glViewport(0, 0, 100, 60);
    for (const auto& [x, y] : {std::pair(10, 20), std::pair(-3, 40), std::pair(95, -4)}) {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        f.frame.glTextOut("HHHHH", static_cast<float>(x) / 50 - 1, static_cast<float>(y) / 30 - 1, {1, 0, 0});
        const Picture picture = f.Shown();
        const auto lit = [](const Pixel& p) { return p.r > 60 && p.g == 0 && p.b == 0; };
        EXPECT_GT(picture.Count(lit), 10) << x;
        int lowest = 99;
        for (int i = 0; i < 100 * 60; ++i) {
            lowest = lit(picture.At(i % 100, i / 100)) ? 59 - i / 100 : lowest;
        }
        EXPECT_NEAR(lowest, std::max(y, 0), 1);
    }
}

TEST_F(AxesGLTest, AnInterruptedPassHasNoAxesButTheRotationAxis) {
    if (!Has(CAPABILITY_VOLUME) || !Has(CAPABILITY_FRAME_BUFFER)) {
        GTEST_SKIP();
    }
    FrameFixture f(120, 120);
    auto* const data = new VolumeData(40, 40, 40);
    std::fill_n(data->getDataPtr(), 64000, static_cast<unsigned char>(10));
    data->Update(STORAGE_VBO);
    f.frame.Add(Volume(*data));
    f.frame.SetCoordAxesEnabled(true);
    f.frame.SetRotationsAxisEnabled(true);
    f.frame.SetRotationAxis({1.5F, 0, 0}, {0, 1, 0});
    {
        const DuringPass input([&f] { f.frame.Render(); });
        EXPECT_FALSE(f.frame.Render(true, 120, 120));
    }
    f.frame.Display();
    const Picture picture = f.Shown();
    EXPECT_GT(picture.Count([](const Pixel& p) { return p.r > 200 && p.b > 150; }), 5);
    EXPECT_EQ(picture.Count([](const Pixel& p) { return p.g > 100 && p.r < 90; }), 0);
}

} // namespace
} // namespace KOVA::Quorvex::test
