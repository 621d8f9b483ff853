// Points, lines and labels as they come out in pictures.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

#include <Quorvex/core/OpenGL.h>
#include <Quorvex/platform/Text.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

using platform::LabelPicture;

class OverlayGLTest : public GlTest {};

constexpr ColorRGB LABEL_COLOR{0, 1, 0};

// In pixels from the top left: the first of each and the one behind the last.
struct Bounds {
    double left, top, right, bottom;
};

Bounds BoundsOf(const Picture& picture, const Pixel& color) {
    Bounds bounds{1e9, 1e9, -1, -1};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const Pixel& p = picture.At(x, y);
            if (p.r * 2 >= color.r && p.g * 2 >= color.g && p.b * 2 >= color.b) {
                bounds = {std::min<double>(bounds.left, x), std::min<double>(bounds.top, y),
                          std::max<double>(bounds.right, x + 1), std::max<double>(bounds.bottom, y + 1)};
            }
        }
    }
    return bounds;
}

Bounds InkOf(const LabelPicture& label) {
    Picture picture{label.width, label.height, {}};
    for (const unsigned char value : label.pixels) {
        picture.pixels.push_back({value, value, value});
    }
    return BoundsOf(picture, WHITE);
}

// The height of a label's texture: a driver without shaders is one of OpenGL 1 and wants powers of two.
float TextureRows(const LabelPicture& label) {
    const auto rows = static_cast<unsigned int>(label.height);
    return static_cast<float>(isVersionNewerThan(2) ? rows : std::bit_ceil(rows));
}

// Of even width, so that its middle lies between two pixels.
std::string EvenText() {
    std::string text = "HE";
    while (text.size() < 9 && platform::RasterizeLabel(text).width % 2 != 0) {
        text += text.size() % 2 == 0 ? 'L' : 'T';
    }
    return text;
}

TEST_F(OverlayGLTest, ALabelIsThePictureOfItsText) {
    const std::string text = EvenText() + "\nF";
    const LabelPicture expected = platform::RasterizeLabel(text);
    ASSERT_EQ(expected.width % 2, 0);
    FrameFixture f(256, 256);
    const float pixel = 4.0F / 256.0F;
    OverlayData data;
    // The label stands on the point: with one pixel for one of its own, half its height above.
    const float half = TextureRows(expected) / 2.0F;
    data.AddPoint({0, -half * pixel, 0}, LABEL_COLOR, text).TextRef().AdjustSize(2);
    f.frame.Add(Overlay(data));
    const Picture first = f.Draw(false);
    EXPECT_EQ(f.Draw(true).pixels, first.pixels) << "the first pass is right already";
    const int left = 128 - expected.width / 2;
    const int top = 128 - expected.height / 2;
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            if (std::abs(x - 128) <= 3 && std::abs(y - 128 - static_cast<int>(half)) <= 3) {
                continue; // the point itself
            }
            const int column = x - left;
            const int row = y - top;
            const bool inside = column >= 0 && column < expected.width && row >= 0 && row < expected.height;
            const bool lit = inside && expected.pixels[static_cast<std::size_t>(row * expected.width + column)] != 0;
            ASSERT_EQ(first.At(x, y), lit ? GREEN : BLACK) << x << ", " << y;
        }
    }
}

// Where the frame shows a point of the world, in pixels from the top left.
std::array<double, 2> Project(const View& view, double width, double height, const Vector3f& p) {
    const auto multiply = [](const double* m, const std::array<double, 4>& v) {
        std::array<double, 4> result{};
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column) {
                result[row] += m[column * 4 + row] * v[column];
            }
        }
        return result;
    };
    const auto eye = multiply(view.GetModelviewMatrix(), {double{p.x}, double{p.y}, double{p.z}, 1.0});
    const auto clip = multiply(view.GetProjectionMatrix(), eye);
    return {(clip[0] / clip[3] + 1) / 2 * width, (1 - clip[1] / clip[3] * width / height) / 2 * height};
}

TEST_F(OverlayGLTest, LabelsHaveTheirSizeOnScreenAndFaceTheCamera) {
    struct Case {
        const char* what;
        int width, height;
        bool perspective, leftHand;
        float antiAliasing;
        Vector3f eye, position;
        double halfPerPixel; // half extent in shown pixels for a pixel of the text's picture; across
    };
    // Half the size of the picture; in perspective as much more as the label is nearer than the middle of 1 and 9.
    const Case cases[] = {
        {"orthogonal", 240, 240, false, false, 1, {0, 0, 5}, {0.3F, 0.2F, 0}, 0.25},
        {"orthogonal, seen from the side", 240, 240, false, false, 1, {3, 3, 3}, {0.3F, 0.2F, 1}, 0.25},
        {"orthogonal, anti-aliased", 240, 240, false, true, 2, {0, 0, 5}, {0.3F, 0.2F, 0}, 0.25},
        {"perspective, in the middle", 300, 200, true, false, 1, {0, 0, 5}, {0.2F, 0.1F, 0}, 0.25},
        {"perspective, in the middle, anti-aliased", 300, 200, true, false, 3, {0, 0, 5}, {0.2F, 0.1F, 0}, 0.25},
        {"perspective, nearer", 300, 200, true, false, 1, {0, 0, 5}, {0.1F, -0.6F, 2.5F}, 0.5},
        {"perspective, left-handed, further", 200, 300, true, true, 1, {0, -5, 0}, {0.2F, 1.25F, 0.1F}, 0.2},
    };
    const std::string text = "HH\nL";
    const LabelPicture label = platform::RasterizeLabel(text);
    const Bounds ink = InkOf(label);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FrameFixture f(c.width, c.height);
        if (c.perspective) {
            f.view.SetProjectionPerspective(1.0F, 1, 9, c.leftHand);
        } else {
            f.view.SetProjectionOrthogonal(-2, 2, -2, 2, 1, 9, c.leftHand);
        }
        f.view.SetModelviewViewer(c.eye, {0, 0, 0}, c.eye.y == -5 ? Vector3f(0, 0, 1) : Vector3f(0, 1, 0));
        f.frame.SetAntiAliasing(c.antiAliasing);
        OverlayData data;
        Text& drawn = data.AddPoint(c.position, LABEL_COLOR, text).TextRef();
        const double scale = 1.6;
        drawn.AdjustSize(static_cast<float>(scale));
        f.frame.Add(Overlay(data));
        const Bounds shown = BoundsOf(f.Draw(), GREEN);
        const auto point = Project(f.view, c.width, c.height, c.position);
        const double pixel = 2 * c.halfPerPixel * scale;
        const double left = point[0] - label.width * pixel / 2;
        const double top = point[1] - (TextureRows(label) + static_cast<float>(label.height)) / 2 * pixel;
        EXPECT_NEAR(shown.left, left + ink.left * pixel, 1.1);
        EXPECT_NEAR(shown.right, left + ink.right * pixel, 1.1);
        EXPECT_NEAR(shown.top, top + ink.top * pixel, 1.1);
        EXPECT_NEAR(shown.bottom, point[1] + 2, 1.1) << "the point's own lower edge";

        if (Has(CAPABILITY_FRAME_BUFFER)) { // a capture of twice the size shows it twice as large
            Picture capture{c.width * 2, c.height * 2, {}};
            std::vector<unsigned char> bytes;
            ASSERT_TRUE(f.frame.RenderToPixels(bytes, static_cast<unsigned int>(capture.width),
                                               static_cast<unsigned int>(capture.height)));
            for (std::size_t i = 0; i < bytes.size(); i += 3) {
                capture.pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2]});
            }
            const Bounds large = BoundsOf(capture, GREEN);
            EXPECT_NEAR(large.right - large.left, (ink.right - ink.left) * 2 * pixel, 1.1);
            EXPECT_NEAR(large.top, 2 * (top + ink.top * pixel), 1.1);
        }
    }
}

// The heights that orthogonal views with sides of their own give: what the view says it shows fills the screen.
TEST_F(OverlayGLTest, RenderingSizesFollowTheViewsNumbers) {
    FrameFixture f(200, 100);
    Text text("label");
    text.AdjustSize(3);
    f.view.SetProjectionOrthogonalRH(-7, 1, 6, 2, 1, 9); // bottom above top: sizes stay positive
    EXPECT_FLOAT_EQ(text.GetRenderingSizeX(f.frame), 3 * 0.25F * 8 / 200);
    EXPECT_FLOAT_EQ(text.GetRenderingSizeY(f.frame), 3 * 0.25F * 4 / 100);
    f.view.SetProjectionPerspectiveLH(0.9F, 2, 30);
    const float extent = std::tan(0.45F) * 32;
    EXPECT_FLOAT_EQ(text.GetRenderingSizeX(f.frame), 3 * 0.25F * extent / 200);
    EXPECT_FLOAT_EQ(text.GetRenderingSizeY(f.frame), 3 * 0.25F * (extent / 2) / 100);
}

TEST_F(OverlayGLTest, LinesMixTheirColourWithThoseOfTheirPoints) {
    FrameFixture f(256, 256);
    for (const float weight : {0.0F, 0.25F, 1.0F}) {
        OverlayData data;
        Point from({-1.5F, 0.01F, 0}, ColorRGB(1, 0, 0), "");
        Point to({1.5F, 0.01F, 0}, ColorRGB(0, 0, 1), "");
        data.AddLine(from, to, ColorRGBA(0, 1, 0, weight), "H\nH").TextRef().AdjustSize(2);
        Overlay* const stored = f.frame.Add(Overlay(data));
        const Picture picture = f.Draw();
        const auto at = [weight](double t) {
            return Pixel{static_cast<int>(std::lround(255 * (1 - t) * (1 - weight))), static_cast<int>(255 * weight),
                         static_cast<int>(std::lround(255 * t * (1 - weight)))};
        };
        const int row = 127; // of y = 0.01
        for (const int x : {40, 80, 170, 210}) {
            EXPECT_TRUE(Near(picture.At(x, row), at((x + 0.5 - 32) / 192), 3)) << weight << ", " << x;
        }
        const Pixel middle = at(0.5);
        const int ofLabel = picture.Count([&middle](const Pixel& p) { return Near(p, middle, 2); });
        EXPECT_GT(ofLabel, 200) << "the label has the colour of the line's middle";
        f.frame.Remove(*stored);
    }
}

TEST_F(OverlayGLTest, PointsHaveTheirSizeWhateverWasDrawnBefore) {
    FrameFixture f(64, 64);
    Mesh points = MakeRectangle(-1.5F, -1.5F, -1, -1, 0, ColorRGBA(1, 0, 0));
    points.GetAttribute().SetRenderMode(MeshAttribute::RENDER_POINTS);
    points.GetAttribute().SetLineWidth(20);
    f.frame.Add(points);
    OverlayData data;
    data.AddPoint({1, 1, 0}, LABEL_COLOR, "");
    f.frame.Add(Overlay(data));
    for (const auto& [antiAliasing, ratio] : {std::pair(1.0F, 1.0F), std::pair(2.0F, 1.0F), std::pair(2.0F, 3.0F)}) {
        f.frame.SetAntiAliasing(antiAliasing);
        f.frame.SetPixelRatio(ratio);
        const Bounds shown = BoundsOf(f.Draw(), GREEN);
        EXPECT_NEAR(shown.right - shown.left, 3.5 * ratio, 0.6) << antiAliasing;
        EXPECT_NEAR(shown.bottom - shown.top, 3.5 * ratio, 0.6) << antiAliasing;
        EXPECT_NEAR(shown.left, 48 - 1.75 * ratio, 1.0) << antiAliasing;
    }
}

TEST_F(OverlayGLTest, OverlaysAreInTheSceneAndStayWhenItIsCleared) {
    FrameFixture f(128, 128);
    f.frame.Add(MakeRectangle(-2, -2, 2, 2, 0, ColorRGBA(1, 0, 0)));
    OverlayData data;
    Point& point = data.AddPoint({0, 0, 1}, LABEL_COLOR, "HHH");
    Overlay* stored = f.frame.Add(Overlay(data));
    const int before = f.Draw().Count(GREEN);
    EXPECT_GT(before, 50);
    point.SetPosition({0, 0, -1});
    EXPECT_EQ(f.Draw().Count(GREEN), 0) << "behind the rectangle";
    point.SetPosition({0, 0, 1});
    f.frame.Clear();
    EXPECT_EQ(f.Draw().Count(GREEN), before);
    f.frame.Remove(*stored);
    EXPECT_EQ(f.Draw().Count(GREEN), 0);

    ObjectTypes group;
    group.Add(Overlay(data));
    f.frame.Add(group);
    EXPECT_EQ(f.Draw().Count(GREEN), before) << "in a nested group";
    f.frame.Clear();
}

TEST_F(OverlayGLTest, TexturesBelongToOneLabelEach) {
    FrameFixture f(128, 128);
    OverlayData data;
    Point& point = data.AddPoint({0, 0, 0}, LABEL_COLOR, "HH");
    Point& empty = data.AddPoint({0, 1, 0}, LABEL_COLOR, "");
    Point& nothing = data.AddPoint({1, 1, 0}, LABEL_COLOR, "\n");
    f.frame.Add(Overlay(data));
    const Picture first = f.Draw();
    Text& label = point.TextRef();
    const GLuint texture = label.GetTexture();
    EXPECT_EQ(glIsTexture(texture), GL_TRUE);
    EXPECT_EQ(empty.TextRef().GetTexture(), 0U);
    EXPECT_EQ(nothing.TextRef().GetTexture(), 0U);
    EXPECT_EQ(Text(label).GetTexture(), 0U);
    EXPECT_GT(label.GetSizeX(), 20.0F);

    label.ReleaseTexture();
    EXPECT_EQ(glIsTexture(texture), GL_FALSE);
    EXPECT_EQ(label.GetSizeX(), 1.0F);
    EXPECT_EQ(f.Draw().pixels, first.pixels) << "rasterised again, at the same size";

    const GLuint abandoned = label.GetTexture();
    label = Text("I");
    EXPECT_EQ(label.GetTexture(), 0U);
    EXPECT_EQ(glIsTexture(abandoned), GL_TRUE);
    glDeleteTextures(1, &abandoned);
    EXPECT_LT(f.Draw().Count(GREEN), first.Count(GREEN));

    const GLuint last = label.GetTexture();
    EXPECT_EQ(glIsTexture(last), GL_TRUE);
    data.Clear();
    EXPECT_EQ(glIsTexture(last), GL_FALSE);
}

} // namespace
} // namespace KOVA::Quorvex::test
