// Pictures for two eyes, against those that a frame for one eye draws with the camera where the eye is.

#include <algorithm>
#include <cmath>

#include <Quorvex/core/OpenGL.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

class StereoGLTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        if (!Has(CAPABILITY_FRAME_BUFFER)) {
            GTEST_SKIP() << "no pictures for two eyes on this driver";
        }
    }
};

// What one eye sees: the scene shifted by shift, and the projection sheared.
Picture DrawEye(FrameFixture& f, double shift) {
    const View before = f.view;
    const Vector3f position = f.view.getPosition();
    const double factor = 1.0 / std::max(1.0, static_cast<double>(Length(position)));
    f.view.GetProjectionMatrix()[8] -= factor * shift * f.view.GetProjectionMatrix()[0];
    f.view.GetModelviewMatrix()[12] += shift;
    f.frame.SetStereoMode(STEREO_NONE);
    Picture picture = f.Draw();
    f.view = before;
    return picture;
}

bool IsUniform(const Picture& picture, int x, int y) {
    for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) {
            const int px = x + dx;
            const int py = y + dy;
            if (px < 0 || py < 0 || px >= picture.width || py >= picture.height ||
                !Near(picture.At(px, py), picture.At(x, y), 2)) {
                return false;
            }
        }
    }
    return true;
}

Pixel Anaglyph(const Pixel& right, const Pixel& left, bool grey) {
    const auto level = [](const Pixel& p) { return (p.r + p.g + p.b) / 3; };
    return grey ? Pixel{level(right), level(left), level(left)} : Pixel{right.r, left.g, left.b};
}

// Row and column of a picture with its origin at the top left.
bool IsRightEyes(StereoMode mode, int height, int x, int y) {
    switch (mode) {
    case STEREO_ROWS:
    case STEREO_ROWS_ALTERNATE:
        return (height - 1 - y) % 2 == 0;
    case STEREO_COLUMNS:
        return x % 2 == 1;
    default:
        return x % 2 == 0;
    }
}

// Pixels at edges, where the eyes' smaller buffers are filtered, are left out for interleaved pictures.
void ExpectComposed(const Picture& composed, StereoMode mode, const Picture& right, const Picture& left, bool grey) {
    int compared = 0;
    int different = 0;
    for (int y = 0; y < composed.height; ++y) {
        for (int x = 0; x < composed.width; ++x) {
            Pixel expected = Anaglyph(right.At(x, y), left.At(x, y), grey);
            if (mode != STEREO_ANAGLYPH) {
                const Picture& eye = IsRightEyes(mode, composed.height, x, y) ? right : left;
                if (!IsUniform(eye, x, y)) {
                    continue;
                }
                expected = eye.At(x, y);
            }
            ASSERT_TRUE(Near(composed.At(x, y), expected, 3))
                << x << ", " << y << ": " << testing::PrintToString(composed.At(x, y)) << " is not "
                << testing::PrintToString(expected);
            ++compared;
            different += Near(right.At(x, y), left.At(x, y), 20) ? 0 : 1;
        }
    }
    EXPECT_GT(compared, composed.width * composed.height / 2);
    EXPECT_GT(different, compared / 20) << "the eyes see the same";
}

void AddBlocks(RenderFrame& frame) {
    frame.Add(MakeRectangle(-1.2F, -0.9F, -0.4F, 0.2F, 1.0F, {1, 0.2F, 0}));
    frame.Add(MakeRectangle(-0.2F, -0.5F, 0.6F, 0.6F, -1.5F, {0.1F, 1, 0.3F}));
    frame.Add(MakeRectangle(0.8F, -0.1F, 1.5F, 0.5F, 0.0F, {0.2F, 0.3F, 1}));
}

TEST_F(StereoGLTest, EveryModeShowsBothEyes) {
    for (int variant = 0; variant < 16; ++variant) {
        const bool leftHand = variant % 2 == 0;
        const bool perspective = variant / 2 % 2 == 0;
        const bool antiAliased = variant / 4 % 2 == 1;
        const bool isOdd = variant / 8 == 1;
        SCOPED_TRACE("variant " + std::to_string(variant));
        FrameFixture f(isOdd ? 121 : 140, isOdd ? 91 : 100);
        f.frame.SetBackgroundColor(ColorRGBA(0.4F, 0, 0.1F), ColorRGBA(0.1F, 0.2F, 0.3F));
        f.frame.SetStereoEffect(variant % 3 == 0 ? 0.4F : -0.3F);
        if (perspective) {
            f.view.SetProjectionPerspective(0.9F, 0.5F, 20, leftHand);
        } else {
            f.view.SetProjectionOrthogonal(-1.7, 1.7, -1.7, 1.7, 0.5, 20, leftHand);
        }
        f.view.SetModelviewViewer({0.4F, 0.2F, leftHand ? -3.0F : 3.0F}, {0, 0, 0}, {0, 1, 0});
        AddBlocks(f.frame);
        const auto effect = static_cast<double>(f.frame.GetStereoEffect());
        const Picture right = DrawEye(f, effect);
        const Picture left = DrawEye(f, -effect);
        if (antiAliased) {
            f.frame.SetAntiAliasing(2.0F);
        }
        for (const StereoMode mode :
             {STEREO_ANAGLYPH, STEREO_ROWS, STEREO_ROWS_ALTERNATE, STEREO_COLUMNS, STEREO_COLUMNS_SWAPPED}) {
            if (antiAliased && mode == STEREO_ANAGLYPH) {
                continue; // its edges are softer
            }
            SCOPED_TRACE("mode " + std::to_string(mode));
            ASSERT_TRUE(f.frame.SetStereoMode(mode));
            ExpectComposed(f.Draw(), mode, right, left, Has(CAPABILITY_SHADER));
        }
        EXPECT_EQ(f.Draw(false).pixels, f.Shown().pixels);
    }
}

TEST_F(StereoGLTest, VolumesAreSeenByBothEyes) {
    if (!Has(CAPABILITY_VOLUME)) {
        GTEST_SKIP();
    }
    auto* const data = new VolumeData(80, 64, 72);
    for (int i = 0; i < 80 * 64 * 72; ++i) {
        data->getDataPtr()[i] = static_cast<unsigned char>(i * 7 % 80 + i / 40 % 90);
    }
    data->Update(STORAGE_VBO);
    FrameFixture f(100, 80);
    f.frame.SetStereoEffect(0.3F);
    f.view.SetProjectionPerspectiveLH(0.9F, 0.3F, 9);
    f.view.SetModelviewViewer({0.3F, 0.4F, -0.9F}, {0, 0, 0}, {0, 1, 0}); // nearer than 1
    f.frame.Add(Volume(*data))->GetAttribute().SetRenderMode(VolumeAttribute::Unshaded);
    const Picture right = DrawEye(f, static_cast<double>(0.3F));
    const Picture left = DrawEye(f, -static_cast<double>(0.3F));
    ASSERT_TRUE(f.frame.SetStereoMode(STEREO_ANAGLYPH));
    ExpectComposed(f.Draw(), STEREO_ANAGLYPH, right, left, true);
}

// What is nearer than the origin has to be farther right for the eye that looks from the left, and what lies in the
// origin's distance is seen at one place by both.
TEST_F(StereoGLTest, EyesMeetAtTheOriginAndAreMirrorImages) {
    FrameFixture f(200, 100);
    f.view.SetProjectionPerspectiveLH(0.9F, 0.5F, 20);
    f.view.SetModelviewViewer({0, 0, -4}, {0, 0, 0}, {0, 1, 0});
    f.frame.SetStereoEffect(0.3F);
    f.frame.SetStereoMode(STEREO_ANAGLYPH);
    const auto place = [](const Picture& picture, int Pixel::*channel) {
        double sum = 0;
        double count = 0;
        for (int i = 0; i < picture.width * picture.height; ++i) {
            const int level = picture.At(i % picture.width, i / picture.width).*channel;
            sum += level * (i % picture.width + 0.5);
            count += level;
        }
        return sum / count - picture.width / 2.0;
    };
    for (const float z : {-1.5F, 0.0F, 3.0F}) {
        Mesh* const mesh = f.frame.Add(MakeRectangle(-0.3F, -0.5F, 0.3F, 0.5F, z, {1, 1, 1}));
        const Picture picture = f.Draw();
        const double depth = 4.0 + static_cast<double>(z);
        const double expected = 0.3 * (1 / depth - 1 / 4.0) / std::tan(0.45) * 100;
        EXPECT_NEAR(place(picture, &Pixel::r), expected, 0.6) << z;
        EXPECT_NEAR(place(picture, &Pixel::g), -expected, 0.6) << z;
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(picture.At(i, 50).r, picture.At(199 - i, 50).b) << z << ' ' << i;
        }
        f.frame.Remove(*mesh);
    }
}

TEST_F(GlTest, StereoModesThatCannotBeHadChangeNothing) {
    FrameFixture f(20, 20);
    const bool possible = Has(CAPABILITY_FRAME_BUFFER);
    for (unsigned int mode = 0; mode < 6; ++mode) {
        EXPECT_EQ(f.frame.SetStereoMode(static_cast<StereoMode>(mode)), possible || mode == 0) << mode;
        EXPECT_EQ(f.frame.GetStereoMode(), possible ? mode : 0U);
    }
    const StereoMode before = f.frame.GetStereoMode();
    for (const unsigned int mode : {6U, 255U, ~0U}) {
        EXPECT_FALSE(f.frame.SetStereoMode(static_cast<StereoMode>(mode)));
        EXPECT_EQ(f.frame.GetStereoMode(), before);
    }
    EXPECT_TRUE(f.frame.SetStereoMode(STEREO_NONE));
    f.Draw();
}

int CountTextures(int width, int height) {
    int count = 0;
    for (GLuint name = 1; name < 2000; ++name) {
        if (glIsTexture(name) == GL_TRUE) {
            GLint size[2] = {};
            glBindTexture(GL_TEXTURE_2D, name); // another kind of texture is refused and its size stays 0
            if (glGetError() == GL_NO_ERROR) {
                glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &size[0]);
                glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &size[1]);
            }
            count += size[0] == width && size[1] == height ? 1 : 0;
        }
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    return count;
}

TEST_F(StereoGLTest, EyesHaveTheBuffersThatThePictureNeeds) {
    FrameFixture f(403, 501);
    f.frame.SetStereoMode(STEREO_ROWS);
    EXPECT_EQ(CountTextures(403, 251), 2);
    f.frame.SetStereoMode(STEREO_COLUMNS);
    EXPECT_EQ(CountTextures(403, 251), 0);
    EXPECT_EQ(CountTextures(202, 501), 2);
    f.Draw();
    EXPECT_EQ(CountTextures(202, 501), 2);
    f.frame.SetAntiAliasing(1.5F);
    f.Draw();
    EXPECT_EQ(CountTextures(302, 751), 2) << "half of 604";
    std::vector<unsigned char> pixels;
    EXPECT_TRUE(f.frame.RenderToPixels(pixels, 77, 31));
    EXPECT_EQ(CountTextures(58, 46), 2) << "half of 115";
    f.frame.SetStereoMode(STEREO_ANAGLYPH);
    f.Draw();
    EXPECT_EQ(CountTextures(604, 751), 3);
    f.frame.SetStereoMode(STEREO_NONE);
    EXPECT_EQ(CountTextures(604, 751), 1) << "the composed picture";
}

// Rows of a stipple that was last used in a window must not get their order from there.
TEST_F(StereoGLTest, RowsDoNotDependOnStipplesThatTheHostUsed) {
    FrameFixture f(64, 40);
    f.frame.SetStereoEffect(2.0F);
    f.view.SetProjectionOrthogonalLH(-2, 2, -2, 2, 1, 30);
    f.view.SetModelviewViewer({0, 0, -5}, {0, 0, 0}, {0, 1, 0});
    // At twice the distance of the origin each eye sees it shifted by 2 to its own side.
    f.frame.Add(MakeRectangle(-2, -2, 0, 2, 5, {1, 0, 0}));
    f.frame.Add(MakeRectangle(0, -2, 2, 2, 5, {0, 1, 0}));
    ASSERT_TRUE(f.frame.SetStereoMode(STEREO_ROWS));
    const Picture expected = f.Draw();
    EXPECT_EQ(expected.At(16, 39), GREEN) << "lowest row, right eye";
    EXPECT_EQ(expected.At(48, 38), RED) << "next row, left eye";
    for (const int first : {0xFF, 0x00}) {
        unsigned char pattern[128];
        for (int i = 0; i < 128; ++i) {
            pattern[i] = static_cast<unsigned char>(i / 4 % 2 == 0 ? first : ~first);
        }
        f.frame.SetStereoMode(STEREO_NONE);
        f.Draw(); // so that rows that are left out are no longer those of before
        f.frame.SetStereoMode(STEREO_ROWS);
        glEnable(GL_POLYGON_STIPPLE);
        glPolygonStipple(pattern);
        glRectf(-1, -1, 1, 1);
        glDisable(GL_POLYGON_STIPPLE);
        EXPECT_EQ(f.Draw().pixels, expected.pixels) << first;
    }
}

TEST_F(StereoGLTest, HostsMayInterruptAndChangeThePassOfAnEye) {
    if (!Has(CAPABILITY_VOLUME)) {
        GTEST_SKIP();
    }
    auto* const data = new VolumeData(64, 64, 64);
    std::fill_n(data->getDataPtr(), 64 * 64 * 64, static_cast<unsigned char>(200));
    data->Update(STORAGE_VBO);
    FrameFixture f(64, 64);
    f.frame.Add(Volume(*data));
    ASSERT_TRUE(f.frame.SetStereoMode(STEREO_ANAGLYPH));
    const Picture complete = f.Draw();
    {
        const DuringPass other([&f] { EXPECT_TRUE(f.frame.SetStereoMode(STEREO_ROWS)); });
        EXPECT_EQ(f.Draw().pixels, complete.pixels) << "a pass keeps the mode that it began with";
    }
    ASSERT_TRUE(f.frame.SetStereoMode(STEREO_ANAGLYPH));
    {
        f.frame.SetBackgroundColor(ColorRGBA(1, 1, 1));
        const DuringPass input([&f] { f.frame.Render(); });
        EXPECT_FALSE(f.frame.Render(true, 64, 64));
        EXPECT_EQ(FrameBuffer::GetBoundName(), 0U);
    }
    f.frame.Display();
    EXPECT_EQ(f.Shown().pixels, complete.pixels) << "of an interrupted pass nothing is composed";
}

} // namespace
} // namespace KOVA::Quorvex::test
