// Overlays without drawing: who shares what, and what goes into a label's texture.

#include <array>
#include <random>

#include <gtest/gtest.h>

#include <Quorvex/overlay/LabelTexture.h>
#include <Quorvex/overlay/Overlay.h>
#include <Quorvex/scene/ObjectTypes.h>

namespace KOVA::Quorvex {
namespace {

constexpr ColorRGB RED{1, 0, 0};
constexpr ColorRGB BLUE{0, 0, 1};

TEST(OverlayTest, OverlaysShareTheirDataAndTheLastOneFreesIt) {
    OverlayData own; // the maker's share keeps it alive
    {
        const Overlay first(own);
        Overlay second(first);
        EXPECT_EQ(own.GetInstanceCounter(), 3);
        EXPECT_TRUE(second == first);
        second = Overlay(); // whose data dies with it
        EXPECT_TRUE(second != first);
        const Overlay& itself = second;
        second = itself;
        EXPECT_EQ(own.GetInstanceCounter(), 2);

        ObjectTypes scene;
        unsigned long id = 0;
        unsigned long next = 0;
        Overlay* const stored = scene.Add(first, &id);
        scene.Add(second, &next);
        EXPECT_EQ(next, id + 1);
        EXPECT_NE(stored, &first);
        EXPECT_EQ(&stored->GetData(), &own);
        const ObjectTypes copy(scene);
        EXPECT_EQ(own.GetInstanceCounter(), 4);
        scene.Clear();
        EXPECT_EQ(own.GetInstanceCounter(), 4) << "overlays stay";
        EXPECT_EQ(scene.GetObjectByID(id), nullptr);
        EXPECT_EQ(scene.GetNumObjects(), 0U);
        scene.Remove(first); // any overlay on the same data stands for the stored one
        EXPECT_EQ(own.GetInstanceCounter(), 3);
        scene.Remove(first);
        EXPECT_EQ(own.GetInstanceCounter(), 3);
    }
    EXPECT_EQ(own.GetInstanceCounter(), 1);
}

TEST(OverlayTest, LinesKeepToPointsOfTheirData) {
    OverlayData data;
    Point& first = data.AddPoint({1, 2, 3}, RED, "first");
    Point& second = data.AddPoint({4, 5, 6}, BLUE, "");
    const Line& inner = data.AddLine(first, second, ColorRGBA(0, 1, 0, 0.5F), "inner");
    EXPECT_EQ(data.GetPoints().size(), 2U);
    EXPECT_EQ(inner.GetPoint0Ptr(), &first);
    EXPECT_EQ(inner.GetPoint1Ptr(), &second);
    EXPECT_EQ(inner.TextRef().GetText(), "inner");

    // The same values do not make an outside point one of the data.
    Point outside(first);
    outside.SetColor(BLUE);
    const Line& mixed = data.AddLine(outside, first, ColorRGBA(0, 1, 0), "");
    ASSERT_EQ(data.GetPoints().size(), 3U);
    outside.SetPosition({9, 9, 9});
    EXPECT_EQ(mixed.GetPoint0Ptr(), &data.GetPoints().back());
    EXPECT_EQ(mixed.GetPoint0Ptr()->GetPosition(), Vector3f(1, 2, 3));
    EXPECT_EQ(mixed.GetPoint0Ptr()->GetColor(), BLUE);
    EXPECT_EQ(mixed.GetPoint0Ptr()->TextRef().GetText(), "first");
    EXPECT_EQ(mixed.GetPoint1Ptr(), &first);

    data.AddLine(outside, outside, ColorRGBA(0, 1, 0), "");
    EXPECT_EQ(data.GetPoints().size(), 5U) << "a copy for each end";
    EXPECT_EQ(&data.GetPoints().front(), &first) << "elements stay where they are";
    data.Clear();
    EXPECT_TRUE(data.GetPoints().empty());
    EXPECT_TRUE(data.GetLines().empty());
}

TEST(TextTest, CopiesAndAssignmentsTakeTheTextOnly) {
    Text text("label");
    text.AdjustSize(4);
    text.AdjustSize(0.5F);
    const Text copy(text);
    EXPECT_EQ(text.GetSizeX(), 2.0F);
    EXPECT_EQ(text.GetSizeY(), 2.0F);
    EXPECT_EQ(copy.GetText(), "label");
    EXPECT_EQ(copy.GetSizeX(), 1.0F);
    EXPECT_EQ(copy.GetTexture(), 0U);
    text = Text("other");
    EXPECT_EQ(text.GetText(), "other");
    EXPECT_EQ(text.GetSizeY(), 1.0F);
}

platform::LabelPicture RandomPicture(int width, int height, std::mt19937& random) {
    platform::LabelPicture picture{width, height, {}};
    for (int i = 0; i < width * height; ++i) {
        picture.pixels.push_back((random() & 1U) != 0 ? 255 : 0);
    }
    return picture;
}

// The image of the label, looked up by a rule of its own.
void ExpectCentred(const LabelTexture& label, const platform::LabelPicture& picture, int left, int bottom) {
    const LabelImage& image = label.image;
    ASSERT_EQ(image.rgba.size(), static_cast<std::size_t>(image.width * image.height) * 4);
    EXPECT_EQ(label.sizeX, static_cast<float>(image.width));
    EXPECT_EQ(label.sizeY, static_cast<float>(image.height));
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const int column = x - left;
            const int row = picture.height - 1 - (y - bottom);
            const bool inside = column >= 0 && column < picture.width && row >= 0 && row < picture.height;
            const int expected = inside ? picture.pixels[static_cast<std::size_t>(row * picture.width + column)] : 0;
            for (int channel = 0; channel < 4; ++channel) {
                ASSERT_EQ(image.rgba[static_cast<std::size_t>((y * image.width + x) * 4 + channel)], expected)
                    << x << ", " << y;
            }
        }
    }
}

TEST(LabelTextureTest, IsTheWholePictureUpsideDownAndPaddedWhereThatIsNeeded) {
    struct Case {
        int width, height, paddedWidth, paddedHeight;
    };
    std::mt19937 random(7);
    for (const Case& c : {Case{100, 40, 128, 64}, Case{64, 80, 64, 128}, Case{1, 40, 1, 64}, Case{129, 32, 256, 32}}) {
        const platform::LabelPicture picture = RandomPicture(c.width, c.height, random);
        const LabelTexture exact = MakeLabelTexture(picture, true);
        EXPECT_EQ(exact.image.width, c.width);
        ExpectCentred(exact, picture, 0, 0);
        const LabelTexture padded = MakeLabelTexture(picture, false);
        EXPECT_EQ(padded.image.width, c.paddedWidth);
        EXPECT_EQ(padded.image.height, c.paddedHeight);
        ExpectCentred(padded, picture, (c.paddedWidth - c.width) / 2, (c.paddedHeight - c.height) / 2);
    }
}

TEST(LabelTextureTest, SmallerImagesCoverTheWholeLargerOne) {
    // Every pixel of the larger image counts: one that is lit alone is seen in the smaller one, where it belongs.
    for (const auto& [width, height] : {std::array{6, 4}, std::array{7, 5}, std::array{1, 9}, std::array{3, 1}}) {
        for (int lit = 0; lit < width * height; ++lit) {
            platform::LabelPicture picture{width, height, {}};
            picture.pixels.assign(static_cast<std::size_t>(width * height), 0);
            picture.pixels[static_cast<std::size_t>(lit)] = 255;
            const LabelImage half = HalfSize(MakeLabelTexture(picture, true).image);
            ASSERT_EQ(half.width, std::max(width / 2, 1));
            ASSERT_EQ(half.height, std::max(height / 2, 1));
            const int x = std::min(lit % width * half.width / width, half.width - 1);
            const int y = std::min((height - 1 - lit / width) * half.height / height, half.height - 1);
            const unsigned char level = half.rgba[static_cast<std::size_t>((y * half.width + x) * 4 + 3)];
            EXPECT_GE(level, 255 / 9) << width << " x " << height << ": " << lit;
            EXPECT_LT(level, 255);
        }
        platform::LabelPicture white{width, height, {}};
        white.pixels.assign(static_cast<std::size_t>(width * height), 255);
        for (const unsigned char value : HalfSize(MakeLabelTexture(white, true).image).rgba) {
            ASSERT_EQ(value, 255);
        }
    }
}

} // namespace
} // namespace KOVA::Quorvex
