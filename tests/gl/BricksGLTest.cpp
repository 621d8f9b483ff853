#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <Quorvex/core/OpenGL.h>

#include "GlTest.h"

namespace KOVA::Quorvex::test {
namespace {

using Voxels = std::vector<unsigned char>;

class BricksGLTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        if (!VolumeData::InitExtensions()) {
            GTEST_SKIP() << "no 3D textures";
        }
    }

    static void FillWithNoise(VolumeData& data, std::mt19937& random) {
        for (std::size_t i = 0; i < data.getDimX() * data.getDimY() * data.getDimZ(); ++i) {
            data.getDataPtr()[i] = static_cast<unsigned char>(random() >> 8U);
        }
    }
};

Voxels ReadTexture(const Brick& brick, const Vector3i& size) {
    Voxels texels(static_cast<std::size_t>(size.x * size.y * size.z));
    glBindTexture(GL_TEXTURE_3D, brick.GetTextureID());
    GLint value = 0;
    for (const GLenum extent : {GLenum{GL_TEXTURE_WIDTH}, GLenum{GL_TEXTURE_HEIGHT}, GLenum{GL_TEXTURE_DEPTH}}) {
        glGetTexLevelParameteriv(GL_TEXTURE_3D, 0, extent, &value);
        EXPECT_EQ(value, extent == GL_TEXTURE_WIDTH ? size.x : extent == GL_TEXTURE_HEIGHT ? size.y : size.z);
    }
    for (const GLenum parameter : {GLenum{GL_TEXTURE_WRAP_S}, GLenum{GL_TEXTURE_WRAP_T}, GLenum{GL_TEXTURE_WRAP_R},
                                   GLenum{GL_TEXTURE_MAG_FILTER}, GLenum{GL_TEXTURE_MIN_FILTER}}) {
        glGetTexParameteriv(GL_TEXTURE_3D, parameter, &value);
        EXPECT_TRUE(value == GL_CLAMP || value == GL_LINEAR) << parameter;
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glFinish();
    glGetTexImage(GL_TEXTURE_3D, 0, GL_RED, GL_UNSIGNED_BYTE, texels.data());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glBindTexture(GL_TEXTURE_3D, 0);
    return texels;
}

TEST_F(BricksGLTest, TexturesHoldTheVoxelsAroundTheirBoxes) {
    std::mt19937 random(1);
    for (int run = 0; run < 12; ++run) {
        const Vector3i dims(1 + static_cast<int>(random() % 70), 1 + static_cast<int>(random() % 40),
                            1 + static_cast<int>(random() % 40));
        const Vector3i size = run == 0
                                  ? Vector3i(32, 32, 32)
                                  : Vector3i(5 + static_cast<int>(random() % 20), 4 + static_cast<int>(random() % 20),
                                             7 + static_cast<int>(random() % 20));
        VolumeData source(static_cast<std::size_t>(dims.x), static_cast<std::size_t>(dims.y),
                          static_cast<std::size_t>(dims.z));
        FillWithNoise(source, random);
        VolumeData receiver;
        VolumeData& data = run % 2 == 0 ? source : receiver; // bricks of another one's voxels
        glPointSize(3.0F);                                   // a mark in the main context
        if (run == 0) {
            ASSERT_TRUE(data.Update(STORAGE_VBO));
            ASSERT_TRUE(data.Update(STORAGE_VBO)); // replaces
            ASSERT_FALSE(data.Update(static_cast<STORAGE>(2)));
        } else {
            ASSERT_TRUE(data.createBricksOfSize(&source, size.x, size.y, size.z, 2));
        }
        GLfloat mark = 0.0F;
        glGetFloatv(GL_POINT_SIZE, &mark);
        EXPECT_EQ(mark, 3.0F) << "the main context is current again";
        glPointSize(1.0F);

        const auto counted = [](int dimension, int edge) { return (dimension + edge - 3) / (edge - 2); };
        const Vector3i count(counted(dims.x, size.x), counted(dims.y, size.y), counted(dims.z, size.z));
        ASSERT_EQ(data.getNumBricks(), count.x * count.y * count.z);
        const Vector3f scale = data.GetTex1();
        const Vector3f offset = data.GetTex2();
        for (int i = 0; i < data.getNumBricks(); ++i) {
            const Brick& brick = data.GetBrick(static_cast<unsigned int>(i));
            const Voxels texels = ReadTexture(brick, size);
            const Vector3i first(i % count.x * (size.x - 2) - 1, i / count.x % count.y * (size.y - 2) - 1,
                                 i / count.x / count.y * (size.z - 2) - 1);
            for (int k = 0; k < static_cast<int>(texels.size()); ++k) {
                const Vector3i at(k % size.x, k / size.x % size.y, k / size.x / size.y);
                ASSERT_EQ(texels[static_cast<std::size_t>(k)],
                          source.get(first.x + at.x, first.y + at.y, first.z + at.z))
                    << run << " " << i << " " << k;
                // The centre of that voxel in the world is the centre of the texel.
                const Vector3f p = source.VoxelToWorld({0, 0, 0}) + Vector3f(static_cast<float>(first.x + at.x),
                                                                             static_cast<float>(first.y + at.y),
                                                                             static_cast<float>(first.z + at.z)) *
                                                                        (2.0F * source.getVoxelSize());
                const Vector3f t = p - brick.GetBB0() + offset;
                ASSERT_NEAR(t.x * scale.x * static_cast<float>(size.x), static_cast<float>(at.x) + 0.5F, 1e-3);
                ASSERT_NEAR(t.y * scale.y * static_cast<float>(size.y), static_cast<float>(at.y) + 0.5F, 1e-3);
                ASSERT_NEAR(t.z * scale.z * static_cast<float>(size.z), static_cast<float>(at.z) + 0.5F, 1e-3);
            }
            EXPECT_EQ(brick.GetMinIntensity(), *std::min_element(texels.begin(), texels.end()));
            EXPECT_EQ(brick.GetMaxIntensity(), *std::max_element(texels.begin(), texels.end()));
        }
        const unsigned int texture = data.GetBrick(0).GetTextureID();
        data.destroyBricks();
        EXPECT_EQ(data.getNumBricks(), 0);
        EXPECT_FALSE(glIsTexture(texture));
    }
}

TEST_F(BricksGLTest, NothingIsMadeOfNothing) {
    VolumeData data;
    EXPECT_TRUE(data.Update(STORAGE_VBO));
    data.createData(3, 3, 0);
    EXPECT_TRUE(data.Update(STORAGE_VBO));
    data.createData(3, 3, 3);
    EXPECT_TRUE(data.createBricksOfSize(&data, 2, 32, 32, 2));
    EXPECT_TRUE(data.createBricksOfSize(&data, -32, 32, 32, -40));
    EXPECT_EQ(data.getNumBricks(), 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// Sorted by a pass between the pieces, as when the volume is shown meanwhile.
TEST_F(BricksGLTest, PiecesOfAnUpdateMakeTheSameBricks) {
    VolumeData whole(100, 64, 40);
    VolumeData inPieces(100, 64, 40);
    for (std::size_t z = 0; z < 40; ++z) {
        for (std::size_t i = 0; i < 100U * 64U; ++i) {
            whole.Slice(z)[i] = inPieces.Slice(z)[i] = static_cast<unsigned char>(i * 7 + z * 31);
        }
    }
    whole.Update(STORAGE_VBO);
    View view;
    view.SetModelviewViewer({0.3F, 1.0F, -2.0F}, {0.1F, 0.2F, 0.3F}, {0.0F, 1.0F, 0.0F});
    EXPECT_EQ(inPieces.UpdateBricks(0), 4U * 3U * 2U);
    for (const std::size_t missing : {19U, 14U, 9U, 4U, 0U, 0U}) {
        EXPECT_EQ(inPieces.UpdateBricks(5), missing);
        inPieces.sortBricks(&view);
    }
    whole.sortBricks(&view);
    ASSERT_EQ(inPieces.getNumBricks(), 24);
    const auto texels = [](const Brick& brick) {
        std::vector<unsigned char> read(32U * 32U * 32U);
        glBindTexture(GL_TEXTURE_3D, brick.GetTextureID());
        glGetTexImage(GL_TEXTURE_3D, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE, read.data());
        return read;
    };
    for (unsigned int i = 0; i < 24; ++i) {
        EXPECT_EQ(inPieces.GetBrick(i).GetBB0(), whole.GetBrick(i).GetBB0());
        EXPECT_EQ(texels(inPieces.GetBrick(i)), texels(whole.GetBrick(i)));
    }
    EXPECT_EQ(inPieces.GetTex1(), whole.GetTex1());
    EXPECT_EQ(inPieces.GetTex2(), whole.GetTex2());
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

decltype(VolumeData::glTexImage3DEXT) s_texImage3D = nullptr;
int s_uploads = 0;

// From the tenth brick on there is no room.
void FullCard(unsigned int target, int level, unsigned int internalFormat, int width, int height, int depth, int border,
              unsigned int format, unsigned int type, const void* pixels) {
    if (++s_uploads < 10) {
        s_texImage3D(target, level, internalFormat, width, height, depth, border, format, type, pixels);
        return;
    }
    GLint largest = 0;
    glGetIntegerv(GL_MAX_3D_TEXTURE_SIZE, &largest);
    s_texImage3D(target, level, GL_RGBA32F, largest, largest, largest, border, format, type, nullptr);
}

TEST_F(BricksGLTest, AFullCardIsToldAndLeavesTheBricksOfBefore) {
    VolumeData data(100, 64, 40);
    data.clearData();
    s_uploads = 0;
    s_texImage3D = std::exchange(VolumeData::glTexImage3DEXT, &FullCard);
    EXPECT_EQ(data.UpdateBricks(5), 19U);
    EXPECT_THROW(data.UpdateBricks(5), std::bad_alloc);
    VolumeData::glTexImage3DEXT = s_texImage3D;
    EXPECT_EQ(data.getNumBricks(), 5);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(data.UpdateBricks(100), 0U);
}

TEST_F(BricksGLTest, SortingPutsTheFarthestFirst) {
    VolumeData data(100, 130, 70);
    data.Update(STORAGE_VBO);
    View view;
    std::mt19937 random(2);
    const auto coordinate = [&random] { return static_cast<float>(random() % 2000) / 300.0F - 3.0F; };
    for (int run = 0; run < 20; ++run) {
        const Vector3f eye(coordinate(), coordinate(), coordinate());
        view.SetModelviewViewer(eye, {0.1F, 0.2F, 0.3F}, {0.0F, 1.0F, 0.0F});
        data.sortBricks(&view);
        float last = 1e30F;
        for (unsigned int i = 0; i < static_cast<unsigned int>(data.getNumBricks()); ++i) {
            const Brick& brick = data.GetBrick(i);
            const float distance = Length((brick.GetBB0() + brick.GetBB1()) * 0.5F - eye);
            ASSERT_LE(distance, last + 1e-5F);
            last = distance;
        }
    }
    for (int i = 0; i < 16; ++i) { // numbers and no numbers mixed
        view.GetModelviewMatrix()[i] = i % 3 == 0 ? NAN : 1e300;
    }
    data.sortBricks(&view);
    EXPECT_EQ(data.getNumBricks(), 4 * 5 * 3);
    EXPECT_EQ(data.CountBricksOfUpdate(), 4U * 5U * 3U);
}

TEST_F(BricksGLTest, OutlinesAreTheEdgesOfTheBoxTwice) {
    VolumeData data(30, 30, 30);
    data.Update(STORAGE_VBO);
    std::vector<GLfloat> feedback(1000);
    glViewport(0, 0, 100, 100);
    for (const GLenum mode : {GLenum{GL_PROJECTION}, GLenum{GL_MODELVIEW}}) {
        glMatrixMode(mode);
        glLoadIdentity();
        glScalef(0.9F, 0.9F, 0.9F);
    }
    glFeedbackBuffer(static_cast<GLsizei>(feedback.size()), GL_3D_COLOR, feedback.data());
    glRenderMode(GL_FEEDBACK);
    data.drawBrickBoxes();
    const int values = glRenderMode(GL_RENDER);
    constexpr std::size_t vertex = 7; // place and colour
    ASSERT_EQ(values, 24 * (1 + 2 * static_cast<int>(vertex)));

    using Place = std::tuple<long, long, long>;
    std::map<std::pair<Place, Place>, int> edges;
    for (std::size_t i = 0; i < static_cast<std::size_t>(values); i += 1 + 2 * vertex) {
        const auto place = [&feedback](std::size_t k) {
            EXPECT_EQ(feedback[k + 3], 1.0F);
            EXPECT_EQ(feedback[k + 4] + feedback[k + 5], 0.0F);
            return Place(std::lround(feedback[k]), std::lround(feedback[k + 1]), std::lround(feedback[k + 2] * 100.0F));
        };
        const Place a = place(i + 1);
        const Place b = place(i + 1 + vertex);
        const int differences = (std::get<0>(a) != std::get<0>(b) ? 1 : 0) +
                                (std::get<1>(a) != std::get<1>(b) ? 1 : 0) + (std::get<2>(a) != std::get<2>(b) ? 1 : 0);
        EXPECT_EQ(differences, 1);
        ++edges[std::minmax(a, b)];
    }
    EXPECT_EQ(edges.size(), 12U);
    for (const auto& [edge, count] : edges) {
        EXPECT_EQ(count, 2);
    }
}

} // namespace
} // namespace KOVA::Quorvex::test
