// What can be seen in the tool's pictures, against what geometry says.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "Programs.h"

namespace testing_cli {
namespace {

const std::vector<std::string> c_black{"--background", "000000"};

std::vector<std::string> operator+(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The tool's first three colours.
bool IsGrey(const Pixel& p) {
    return IsLit(p) && p.Brightest() - p.Darkest() < p.Brightest() / 4;
}
bool IsOrange(const Pixel& p) {
    return IsLit(p) && !IsGrey(p) && p.r > p.b;
}
bool IsBlue(const Pixel& p) {
    return IsLit(p) && !IsGrey(p) && p.b > p.r;
}

TEST(PicturesTest, HaveTheSizeAskedForInBothFormats) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({0, 0, 0}, 1));
    for (const auto& [size, width, height] : {std::tuple{"801x3", 801, 3}, {"1x1", 1, 1}, {"333x500", 333, 500}}) {
        const Picture picture = Draw(folder, {stl, "--size", size});
        EXPECT_EQ(picture.width, width);
        EXPECT_EQ(picture.height, height);
    }
    const std::string bmp = folder.Path("a.bmp");
    ASSERT_EQ(Quorvex({"render", stl, "-o", bmp}).code, 0);
    const Picture asBmp = ReadPicture(bmp);
    const Picture asPng = Draw(folder, {stl});
    ASSERT_EQ(asBmp.width, 800);
    ASSERT_EQ(asBmp.height, 600);
    const bool same = std::equal(asBmp.pixels.begin(), asBmp.pixels.end(), asPng.pixels.begin(), asPng.pixels.end(),
                                 [](const Pixel& a, const Pixel& b) { return a.r == b.r && a.g == b.g && a.b == b.b; });
    EXPECT_TRUE(same);
}

// Three cubes out on the axes, each in a colour of its own. From the middle of the scene each stands in another
// direction, so where they appear tells both of the picture's axes.
TEST(PicturesTest, EveryViewShowsTheAxesWhereTheyBelong) {
    const Folder folder;
    const std::vector<std::string> files{WriteBinary(folder.Path("x.stl"), BoxSurface({9, -1, -1}, {11, 1, 1})),
                                         WriteBinary(folder.Path("y.stl"), BoxSurface({-1, 9, -1}, {1, 11, 1})),
                                         WriteBinary(folder.Path("z.stl"), BoxSurface({-1, -1, 9}, {1, 1, 11}))};
    struct View {
        const char* name;
        Point right, up;
    };
    for (const View& view : {View{"front", {1, 0, 0}, {0, 1, 0}}, View{"back", {-1, 0, 0}, {0, 1, 0}},
                             View{"right", {0, 0, -1}, {0, 1, 0}}, View{"left", {0, 0, 1}, {0, 1, 0}},
                             View{"top", {1, 0, 0}, {0, 0, -1}}, View{"bottom", {1, 0, 0}, {0, 0, 1}},
                             View{"iso", {0.70711F, 0, -0.70711F}, {-0.40825F, 0.8165F, -0.40825F}}}) {
        for (const char* projection : {"orthogonal", "perspective"}) {
            const Picture picture = Draw(folder, files +
                                                     std::vector<std::string>{"--view", view.name, "--size", "200x200",
                                                                              "--projection", projection} +
                                                     c_black);
            const std::array<Spot, 3> spots{Find(picture, IsGrey), Find(picture, IsOrange), Find(picture, IsBlue)};
            for (std::size_t i = 0; i < 3; ++i) {
                ASSERT_GT(spots[i].count, 20) << view.name << " axis " << i;
                Point place{-5, -5, -5};
                place[i] = 5;
                // The box of the scene reaches 6 from its middle each way; the picture 5 % farther.
                const auto sum = [](const Point& a) { return std::abs(a[0]) + std::abs(a[1]) + std::abs(a[2]); };
                const double reach = 1.05 * 6.0 * static_cast<double>(std::max(sum(view.right), sum(view.up)));
                const auto along = [&](const Point& axis) {
                    return static_cast<double>(place[0] * axis[0] + place[1] * axis[1] + place[2] * axis[2]) / reach;
                };
                const double tolerance = projection[0] == 'o' ? 0.02 : 0.25;
                EXPECT_NEAR(spots[i].x, along(view.right), tolerance) << view.name << " axis " << i;
                EXPECT_NEAR(spots[i].y, along(view.up), tolerance) << view.name << " axis " << i;
            }
        }
    }
}

// Seen from above, a cube that stands on another one hides it, and from below the other way round.
TEST(PicturesTest, WhatIsNearerHidesWhatIsFarther) {
    const Folder folder;
    const std::vector<std::string> files{WriteBinary(folder.Path("a.stl"), BoxSurface({-1, -1, -1}, {1, 1, 1})),
                                         WriteBinary(folder.Path("b.stl"), BoxSurface({-1, 1, -1}, {1, 3, 1}))};
    for (const auto& [view, greySeen] : {std::pair{"top", false}, std::pair{"bottom", true}}) {
        const Picture picture =
            Draw(folder,
                 files + std::vector<std::string>{"--view", view, "--size", "100x100", "--projection", "orthogonal"} +
                     c_black);
        EXPECT_EQ(Find(picture, IsGrey).count > 1000, greySeen) << view;
        EXPECT_EQ(Find(picture, IsOrange).count > 1000, !greySeen) << view;
    }
}

TEST(PicturesTest, ASphereIsRoundInWideAndTallPicturesWithAndWithoutAntiAliasing) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({100, -50, 20}, 7));
    for (const char* size : {"800x400", "400x800", "600x600"}) {
        for (const char* projection : {"orthogonal", "perspective"}) {
            for (const char* factor : {"1", "2.5"}) {
                const Picture picture = Draw(folder, {stl, "--size", size, "--projection", projection, "--antialias",
                                                      factor, "--view", "front", "--background", "000000"});
                const Spot ball = Find(picture, IsLit);
                EXPECT_NEAR(ball.Width(), ball.Height(), 2) << size << ' ' << projection << ' ' << factor;
                EXPECT_NEAR(ball.x, 0.0, 0.01);
                EXPECT_NEAR(ball.y, 0.0, 0.01);
                const double shorter = std::min(picture.width, picture.height);
                if (projection[0] == 'o') {
                    EXPECT_NEAR(ball.Width(), shorter / 1.05, 3) << size << ' ' << factor;
                }
                // The light comes from the viewer.
                const int middle = picture.At(picture.width / 2, picture.height / 2).Brightest();
                const int rim = picture.At(picture.width / 2, ball.top + ball.Height() / 20).Brightest();
                EXPECT_GT(middle, rim + 50);
            }
        }
    }
}

// Beyond the size that the library draws, pictures are resampled; both directions must be reduced alike.
TEST(PicturesTest, ProportionsHoldBeyondTheLargestSizeThatIsDrawn) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({0, 0, 0}, 1));
    const Picture picture = Draw(folder, {stl, "--size", "5000x1000", "--view", "front", "--projection", "orthogonal",
                                          "--background", "000000"});
    const Spot ball = Find(picture, IsLit);
    EXPECT_NEAR(ball.Width(), 1000 / 1.05, 8);
    EXPECT_NEAR(ball.Height(), 1000 / 1.05, 8);
}

TEST(PicturesTest, BackgroundsAreUniformOrGradients) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({0, 0, 0}, 1));
    const Picture one = Draw(folder, {stl, "--size", "100x60", "--background", "204060"});
    for (const Pixel& p : {one.At(0, 0), one.At(99, 59)}) {
        EXPECT_NEAR(p.r, 0x20, 1);
        EXPECT_NEAR(p.g, 0x40, 1);
        EXPECT_NEAR(p.b, 0x60, 1);
    }
    const Picture two = Draw(folder, {stl, "--size", "100x60", "--background", "ff0000,0000ff"});
    EXPECT_GT(two.At(0, 0).r, 245);
    EXPECT_GT(two.At(0, 59).b, 245);
    EXPECT_NEAR(two.At(0, 30).r, 128, 6);
}

TEST(PicturesTest, MeshModesShowWhatTheirNamesSay) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({-1, -1, -1}, {1, 1, 1}));
    const auto draw = [&](const char* mode) {
        return Draw(folder,
                    {stl, "--size", "200x200", "--view", "front", "--mesh-mode", mode, "--background", "000000"});
    };
    const auto lit = [](const Picture& picture) { return Find(picture, IsLit).count; };
    const Picture surface = draw("surface");
    const Picture wireframe = draw("wireframe");
    const Picture hidden = draw("hidden-line");
    const Picture points = draw("points");
    EXPECT_GT(lit(surface), 30000);
    EXPECT_LT(lit(wireframe), 6000);
    EXPECT_GT(lit(hidden), 4 * 180) << "the outline of the face";
    EXPECT_GT(lit(wireframe), lit(hidden) + 4 * 100) << "the farther face is smaller and lies inside the nearer one";
    EXPECT_LT(lit(points), 200);
    EXPECT_GE(lit(points), 8 * 2) << "both faces' corners";

    // The diagonal of the face is drawn over the surface, and only then.
    const Picture both = draw("surface-wireframe");
    EXPECT_GT(lit(both), 30000);
    const auto differs = [&](int x, int y) { return std::abs(both.At(x, y).r - both.At(100, 40).r) > 20; };
    const auto onDiagonal = [&](int x) { return differs(x, x) || differs(x, 199 - x); };
    EXPECT_TRUE(onDiagonal(70) && onDiagonal(120)) << "no edge is to be seen on the face";
}

// Files with normals that look inwards, or none, are lit like others.
TEST(PicturesTest, SurfacesAreLitWhateverNormalsTheFileHas) {
    const Folder folder;
    std::string file = "solid a\n";
    for (const Triangle& t : BoxSurface({-1, -1, -1}, {1, 1, 1})) {
        const bool front = t[0][2] + t[1][2] + t[2][2] > 2.5F;
        file += front ? "facet normal 0 0 -1 outer loop" : "facet normal 0 0 0 outer loop";
        for (const Point& p : t) {
            file += " vertex " + std::to_string(p[0]) + ' ' + std::to_string(p[1]) + ' ' + std::to_string(p[2]);
        }
        file += " endloop endfacet\n";
    }
    const std::string stl = WriteText(folder.Path("a.stl"), file + "endsolid\n");
    for (const char* view : {"front", "back"}) {
        const Picture picture = Draw(folder, {stl, "--size", "60x60", "--view", view});
        EXPECT_GT(picture.At(30, 30).Brightest(), 180) << view;
    }
}

TEST(PicturesTest, BoundingBoxesAreMarkedAndInThePicture) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({0, 0, 0}, 1));
    const std::vector<std::string> arguments{stl, "--size", "300x300", "--view", "front", "--background", "000000"};
    EXPECT_EQ(Find(Draw(folder, arguments), IsOrange).count, 0);
    const Spot marks = Find(Draw(folder, arguments + std::vector<std::string>{"--bounding-box"}), IsOrange);
    EXPECT_GT(marks.count, 300);
    EXPECT_NEAR(marks.x, 0.0, 0.02);
    EXPECT_NEAR(marks.Width(), 300 / 1.05, 4);
    EXPECT_NEAR(marks.Height(), 300 / 1.05, 4);
}

// Marks are yellow. Beside a unit sphere, on it, and behind it, where they are not seen.
TEST(PicturesTest, PointsAndLinesAreWhereTheyWereAskedFor) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), SphereSurface({0, 0, 0}, 1));
    const auto isMark = [](const Pixel& p) { return p.r > 150 && p.g > 100 && p.b < 90; };
    for (const char* projection : {"orthogonal", "perspective"}) {
        const auto draw = [&](const std::vector<std::string>& marks) {
            const std::vector<std::string> common{stl,       "--view",       "front",   "--size",
                                                  "600x300", "--projection", projection};
            return Find(Draw(folder, common + c_black + marks), isMark);
        };
        // The box of the scene reaches from -1 to 3 and from -1 to 1: the width of the picture decides.
        const Spot out = draw({"--point", "3,0.5,0"});
        EXPECT_NEAR(out.Width(), 3.5, 1) << projection;
        const double foreshortened = std::string(projection) == "perspective" ? 0.12 : 0.01;
        EXPECT_NEAR(out.x, 1 / 1.05, foreshortened);
        EXPECT_NEAR(out.y, 0.5 / 1.05, foreshortened);
        EXPECT_GT(draw({"--point=0,0,1"}).count, 4) << "on the surface";
        EXPECT_EQ(draw({"--point=0,0,-1"}).count, 0) << "behind";

        const Spot labelled = draw({"--point", "3,0.5,0,HHH"});
        EXPECT_NEAR(labelled.Height(), 24 - 5, 3) << "the point and a label whose letters end 20 pixels above it";
        EXPECT_GT(labelled.Width(), 20);
        EXPECT_NEAR(draw({"--point", "3,0.5,0,HHH\\nHHH"}).Height(), labelled.Height() + 20, 2);

        const Spot line = draw({"--line=-1,-1,1,1,-1,1", "--line", "-1,1,1,1,1,1"});
        EXPECT_NEAR(line.Height(), 300 / 1.05, 6) << projection;
        EXPECT_NEAR(line.Width(), line.Height(), 4);
        EXPECT_NEAR(line.x, 0, 0.02);
    }
}

// Beside a block that rises towards the viewer: the text runs on in front of it.
TEST(PicturesTest, NoPartRunsThroughTheLabelOfWhatIsSeen) {
    const Folder folder;
    const std::string plate = WriteBinary(folder.Path("a.stl"), BoxSurface({-1, -1, -0.1F}, {1, 1, 0}));
    const std::string block = WriteBinary(folder.Path("b.stl"), BoxSurface({0.05F, -1, 0}, {1, 1, 1}));
    const auto isMark = [](const Pixel& p) { return p.r > 150 && p.g > 100 && p.b < 90; };
    const auto draw = [&](const std::vector<std::string>& arguments) {
        return Find(
            Draw(folder, arguments + std::vector<std::string>{"--view", "front", "--size", "300x300"} + c_black),
            isMark);
    };
    const std::string point = "--point=0,0,0,HHHHHHHH";
    const Spot alone = draw({plate, point, "--projection", "orthogonal"});
    EXPECT_GT(alone.Width(), 60);
    EXPECT_NEAR(draw({plate, block, point, "--projection", "orthogonal"}).Width(), alone.Width(), 1);
    EXPECT_NEAR(draw({plate, block, point}).Width(), alone.Width(), 2) << "as large, although it is nearer";

    const Spot line = draw({plate, block, "--line=-0.5,0,0,0.5,0,0,HHHHHHHH", "--projection", "orthogonal"});
    const Spot hidden = draw({plate, block, "--line=-0.5,0,0,0.5,0,0", "--projection", "orthogonal"});
    EXPECT_GT(line.Width(), hidden.Width() + 20) << "the label reaches farther than what is seen of the line";
}

// Through red glass on the left, what is near has to be farther right than through cyan glass on the right; in
// interleaved pictures each eye has its own rows or columns.
TEST(PicturesTest, StereoPicturesHaveDepthTheRightWayRound) {
    const Folder folder;
    const std::vector<std::string> nearest{
        WriteBinary(folder.Path("a.stl"), BoxSurface({-1, -1, 3}, {1, 1, 5})),
        WriteBinary(folder.Path("b.stl"), BoxSurface({-5, -5, -5}, {-4.9F, -4.9F, -4.9F}))};
    for (const char* projection : {"orthogonal", "perspective"}) {
        const auto shift = [&](const char* mode, const auto& isSeenByLeft, const auto& isSeenByRight) {
            const Picture picture =
                Draw(folder, nearest +
                                 std::vector<std::string>{"--view", "front", "--size", "400x300", "--projection",
                                                          projection, "--stereo", mode} +
                                 c_black);
            double sums[2] = {};
            double counts[2] = {};
            for (int y = 0; y < 200; ++y) { // without the small box in the corner
                for (int x = 0; x < 400; ++x) {
                    const Pixel& p = picture.At(x, y);
                    const int levels[2] = {isSeenByLeft(p, x, 299 - y), isSeenByRight(p, x, 299 - y)};
                    for (int eye = 0; eye < 2; ++eye) {
                        sums[eye] += levels[eye] * x;
                        counts[eye] += levels[eye];
                    }
                }
            }
            return sums[0] / counts[0] - sums[1] / counts[1];
        };
        const double anaglyph = shift(
            "1", [](const Pixel& p, int, int) { return p.r; }, [](const Pixel& p, int, int) { return p.b; });
        EXPECT_GT(anaglyph, 4) << projection;
        EXPECT_LT(anaglyph, 20) << projection;
        EXPECT_NEAR(shift(
                        "2", [](const Pixel& p, int, int y) { return y % 2 == 1 ? p.g : 0; },
                        [](const Pixel& p, int, int y) { return y % 2 == 0 ? p.g : 0; }),
                    anaglyph, 1.5);
        EXPECT_NEAR(shift(
                        "4", [](const Pixel& p, int x, int) { return x % 2 == 0 ? p.g : 0; },
                        [](const Pixel& p, int x, int) { return x % 2 == 1 ? p.g : 0; }),
                    anaglyph, 2.5);
    }
}

TEST(PicturesTest, AxesAndGridAreInTheCoordinatesOfTheFile) {
    const Folder folder;
    // 1000 to 1004 in x, so that the line at 1002 is in the middle.
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({1000, -1, -1}, {1004, 1, 1}));
    const std::vector<std::string> arguments{stl, "--view", "front", "--size", "400x400", "--projection", "orthogonal"};
    const Picture grid = Draw(folder, arguments + std::vector<std::string>{"--grid"} + c_black);
    // The box and room for the numbers fill 400 pixels: a unit is 400 / (4 x 1.1 x 1.05) = 86.6 pixels.
    for (const int unit : {-2, -1, 0, 1, 2}) {
        const int x = 200 + static_cast<int>(std::floor(86.58 * unit));
        const auto brightest = std::max({grid.At(x - 1, 60).g, grid.At(x, 60).g, grid.At(x + 1, 60).g});
        EXPECT_GT(brightest, 45) << unit;
        EXPECT_LT(grid.At(x + 8, 60).g, 40) << unit;
    }
    const Picture axes = Draw(folder, arguments + std::vector<std::string>{"--axes"} + c_black);
    EXPECT_GT(axes.At(75, 346).r, 150) << "x to the right";
    EXPECT_GT(axes.At(54, 325).g, 120) << "y upwards";
}

// Shells within each other: the more of them a line of sight meets, the brighter; never all white, whatever the size.
TEST(PicturesTest, XRayPicturesAreExposedForPartsOfAnySize) {
    const Folder folder;
    for (const char* projection : {"orthogonal", "perspective"}) {
        for (const float size : {1e-3F, 1.0F, 1e4F}) {
            std::vector<Triangle> shells;
            for (const float radius : {1.0F, 0.8F, 0.6F, 0.4F}) {
                const std::vector<Triangle> shell = SphereSurface({0, 0, 0}, radius * size);
                shells.insert(shells.end(), shell.begin(), shell.end());
            }
            const std::string stl = WriteBinary(folder.Path("a.stl"), shells);
            const Picture picture = Draw(folder, {stl, "--size", "400x300", "--view", "front", "--mesh-mode", "xray",
                                                  "--projection", projection});
            const Spot lit = Find(picture, IsLit);
            const int reach = lit.Width() / 2; // the outer shell's radius in pixels
            const auto level = [&](double r) { return picture.At(200 + static_cast<int>(r * reach), 150).Brightest(); };
            EXPECT_GT(level(0.2), 190) << projection << ' ' << size;
            EXPECT_LT(level(0.2), 254) << projection << ' ' << size;
            EXPECT_GT(level(0.2), level(0.5) + 20);
            EXPECT_GT(level(0.5), level(0.7) + 20);
            EXPECT_GT(level(0.7), level(0.9) + 20);
            EXPECT_GT(level(0.9), 20);
            EXPECT_EQ(picture.At(5, 5).Brightest(), 0);
        }
    }
}

} // namespace
} // namespace testing_cli
