// Videos of a turn, decoded by another program.

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Programs.h"

using namespace testing_cli;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// All pictures of a video.
std::vector<Picture> Decode(const Folder& folder, const std::string& video) {
    const Outcome decoded = RunProgram("/usr/bin/env", {"ffmpeg", "-v", "error", "-i", video, folder.Path("%03d.png")});
    EXPECT_EQ(decoded.code, 0) << decoded.err;
    std::vector<Picture> pictures;
    for (const std::string& name : folder.Names()) {
        if (name.ends_with(".png")) {
            pictures.push_back(ReadPicture(folder.Path(name)));
        }
    }
    return pictures;
}

// A ball that goes round the middle of the scene; small ones make the scene's box symmetric.
TEST(TurntableTest, ThePartTurnsOnceAboutTheAxis) {
    const Folder folder;
    std::vector<Triangle> balls = SphereSurface({4, 0, 0}, 0.5F);
    const std::vector<Triangle> others[] = {SphereSurface({-4.49F, 0, 0}, 0.01F), SphereSurface({0, 3, 0}, 0.01F),
                                            SphereSurface({0, -3, 0}, 0.01F), SphereSurface({0, 0, 4}, 0.01F),
                                            SphereSurface({0, 0, -4}, 0.01F)};
    for (const std::vector<Triangle>& ball : others) {
        balls.insert(balls.end(), ball.begin(), ball.end());
    }
    const std::string stl = WriteBinary(folder.Path("balls.stl"), balls);
    const std::string video = folder.Path("turn.avi");
    const Outcome outcome =
        Quorvex({"turntable", stl, "-o", video, "--frames", "12", "--codec", "DIB", "--size", "400x300", "--view",
                 "front", "--projection", "orthogonal", "--background", "000000"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.out + outcome.err, "");
    const Folder decoded;
    const std::vector<Picture> pictures = Decode(decoded, video);
    ASSERT_EQ(pictures.size(), 12U);
    // The small ones are hardly seen.
    const auto place = [](const Picture& picture) {
        return Find(picture, [](const Pixel& p) { return p.Brightest() > 60; });
    };
    const double radius = place(pictures.back()).x;
    EXPECT_GT(radius, 0.3) << "back at the start, on the right";
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const Spot spot = place(pictures[i]);
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(i + 1) / 12.0;
        EXPECT_NEAR(spot.x, radius * std::cos(angle), 0.02) << "picture " << i;
        EXPECT_NEAR(spot.y, 0.0, 0.02);
    }
}

TEST(TurntableTest, LinesAndMarksFollowTheCamera) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("box.stl"), BoxSurface({-1, -1, -1}, {1, 1, 1}));
    const Outcome outcome = Quorvex({"turntable", stl, "-o", folder.Path("turn.avi"), "--frames", "4", "--codec", "DIB",
                                     "--size", "200x200", "--view", "front", "--mesh-mode", "hidden-line", "--point",
                                     "1,0,0,label", "--background", "000000"});
    ASSERT_EQ(outcome.code, 0) << outcome.err;
    const Folder decoded;
    const std::vector<Picture> pictures = Decode(decoded, folder.Path("turn.avi"));
    ASSERT_EQ(pictures.size(), 4U);
    const auto yellow = [](const Pixel& p) { return p.r > 150 && p.b < p.r / 2; };
    const auto lines = [](const Pixel& p) { return p.Darkest() > 60; };
    const int expected = Find(pictures[3], lines).count;
    EXPECT_GT(expected, 200);
    for (const Picture& picture : pictures) {
        EXPECT_NEAR(Find(picture, lines).count, expected, 0.2 * expected) << "as bright from every side";
    }
    // The mark is on the side that is turned towards the viewer in one picture and away in the opposite one.
    std::vector<int> marks;
    for (const Picture& picture : pictures) {
        marks.push_back(Find(picture, yellow).count);
    }
    EXPECT_GT(*std::max_element(marks.begin(), marks.end()), 100) << "a label";
    EXPECT_EQ(*std::min_element(marks.begin(), marks.end()), 0) << "hidden by the box";
}

TEST(TurntableTest, FailuresAreOneLineAndLeaveNothing) {
    const Folder folder;
    const std::string stl = WriteBinary(folder.Path("a.stl"), BoxSurface({0, 0, 0}, {1, 1, 1}));
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"-o", folder.Path("a.avi"), "--codec", "NONE"}, "this codec"},
        {{"-o", folder.Path("missing/a.avi")}, "No such file"},
    };
    for (const auto& [arguments, about] : cases) {
        std::vector<std::string> all{"turntable", stl, "--frames", "3", "--size", "64x64"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Outcome outcome = Quorvex(all);
        EXPECT_EQ(outcome.code, 1);
        EXPECT_THAT(outcome.err, HasSubstr(about));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_THAT(folder.Names(), ElementsAre("a.stl"));
}

TEST(CodecsTest, ListsWhatTurntableTakes) {
    const Outcome json = Quorvex({"codecs", "--json"});
    EXPECT_EQ(json.err, "");
    const nlohmann::json codecs = nlohmann::json::parse(json.out);
    const auto uncompressed =
        std::find_if(codecs.begin(), codecs.end(), [](const auto& c) { return c["code"] == "DIB "; });
    ASSERT_NE(uncompressed, codecs.end());
    EXPECT_EQ((*uncompressed)["available"], true);
    const Outcome text = Quorvex({"codecs"});
    EXPECT_EQ(std::count(text.out.begin(), text.out.end(), '\n'), static_cast<std::ptrdiff_t>(codecs.size()));
}

} // namespace
