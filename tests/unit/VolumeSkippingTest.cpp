// What is left out when a volume is drawn, and how its work is cut into pieces.

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include <Quorvex/core/Matrix44d.h>
#include <Quorvex/view/View.h>
#include <Quorvex/volume/HalfSpaces.h>
#include <Quorvex/volume/VisibleIntensities.h>
#include <Quorvex/volume/WorkLimit.h>

namespace KOVA::Quorvex {
namespace {

// The opacity that a sample gets: the table as a texture of 256 texels with a linear filter.
double FilteredAlpha(const std::vector<ColorRGBA>& table, double intensity) {
    const double position = intensity / 255.0 * 256.0 - 0.5;
    const double below = std::floor(position);
    const auto texel = [&table](double i) {
        return i < 0 || i > 255 ? 0.0 : static_cast<double>(table[static_cast<std::size_t>(i)].a);
    };
    return (below + 1 - position) * texel(below) + (position - below) * texel(below + 1);
}

TEST(VisibleIntensities, LeavesOutOnlyWhatIsTransparentThroughout) {
    std::minstd_rand engine(3);
    const auto random = [&engine] { return static_cast<unsigned int>(engine() >> 4U); };
    int left = 0;
    for (int run = 0; run < 400; ++run) {
        std::vector<ColorRGBA> table(256, ColorRGBA(1, 1, 1, 0));
        for (unsigned int i = random() % 6; i > 0; --i) {
            const unsigned int first = random() % 256;
            for (unsigned int k = first; k < std::min(256U, first + 1 + random() % 12); ++k) {
                table[k].a = 0.5F;
            }
        }
        const VisibleIntensities visible(table.data());
        const auto opaque = [](const ColorRGBA& color) { return color.a != 0.0F; };
        ASSERT_EQ(visible.Any(), std::any_of(table.begin(), table.end(), opaque));
        for (int pair = 0; pair < 200; ++pair) {
            const int a = static_cast<int>(random() % 256);
            const int b = std::min(255, a + static_cast<int>(random() % 20));
            double most = 0.0;
            for (int step = 0; step <= 16 * (b - a); ++step) {
                most = std::max(most, FilteredAlpha(table, a + step / 16.0));
            }
            const bool window = visible.Any() && b >= visible.Low() && a <= visible.High();
            ASSERT_EQ(visible.MeetsWindow(a, b), window);
            if (visible.CanShow(a, b)) {
                ASSERT_TRUE(window);
            } else {
                ASSERT_TRUE(most == 0.0 || !window) << a << ".." << b;
                ++left;
            }
        }
    }
    EXPECT_GT(left, 10000);

    // Not more careful than it has to be: one texel reaches less than two intensities to either side.
    std::vector<ColorRGBA> single(256, ColorRGBA(0, 0, 0, 0));
    single[10].a = single[100].a = single[200].a = 1.0F;
    const VisibleIntensities visible(single.data());
    EXPECT_FALSE(visible.CanShow(20, 98));
    EXPECT_TRUE(visible.CanShow(20, 100));
    EXPECT_FALSE(visible.CanShow(102, 190));
    EXPECT_FALSE(visible.CanShow(0, 8));
    EXPECT_FALSE(visible.CanShow(202, 255));
}

TEST(HalfSpaces, KeepsEveryBoxThatHasAPointInside) {
    std::mt19937 random(5);
    const auto uniform = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    int excluded = 0;
    int kept = 0;
    for (int run = 0; run < 40; ++run) {
        View view;
        if (run % 2 == 0) {
            view.SetProjectionPerspective(0.7F, 0.5F, 4, run % 4 == 0);
        } else {
            view.SetProjectionOrthogonal(-1, 0.5, -0.7, 1, 0.5, 4, run % 4 == 1);
        }
        view.SetModelviewViewer({static_cast<float>(uniform(1, 2)), static_cast<float>(uniform(-2, 2)), 1}, {0, 0, 0},
                                {0, 1, 0});
        HalfSpaces seen;
        seen.AddViewVolume(view.GetProjectionMatrix(), view.GetModelviewMatrix());
        const Vector4d plane(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1), uniform(0, 1));
        seen.Add(plane);
        Matrix44d modelview;
        Matrix44d projection;
        std::copy_n(view.GetModelviewMatrix(), 16, static_cast<double*>(modelview));
        std::copy_n(view.GetProjectionMatrix(), 16, static_cast<double*>(projection));
        for (int i = 0; i < 200; ++i) {
            const auto x = static_cast<float>(uniform(-3, 3));
            const auto y = static_cast<float>(uniform(-3, 3));
            const auto z = static_cast<float>(uniform(-3, 3));
            const bool out = seen.Exclude({x, y, z}, {x + 0.4F, y + 0.4F, z + 0.4F});
            (out ? excluded : kept) += 1;
            for (int point = 0; out && point < 64; ++point) {
                const Vector3f p(x + static_cast<float>(uniform(0, 0.4)), y + static_cast<float>(uniform(0, 0.4)),
                                 z + static_cast<float>(uniform(0, 0.4)));
                const Vector3f eye = modelview * p;
                const Vector3f clip = projection * eye;
                const bool inFront = view.IsProjectionOrthogonal() || (view.IsLeftHand() ? eye.z > 0 : eye.z < 0);
                const bool inside = inFront && std::abs(clip.x) <= 1 && std::abs(clip.y) <= 1 && std::abs(clip.z) <= 1;
                const bool above = plane.x * p.x + plane.y * p.y + plane.z * p.z + plane.w >= 0;
                ASSERT_FALSE(inside && above);
            }
        }
    }
    EXPECT_GT(excluded, 1000);
    EXPECT_GT(kept, 200);
}

// A device of which only the pace is known: each piece is finished and timed as the renderer does it.
TEST(WorkLimit, PiecesComeToTakeTheWantedTime) {
    WorkLimit limit(0.012, 0.3e6);
    double now = 100.0;
    double longest = 0.0;
    const auto run = [&](double perSecond, int pieces) {
        for (int i = 0; i < pieces; ++i) {
            limit.Begin(now);
            double work = 0.0;
            const double slice = std::max(1e3, limit.Room() / 50.0);
            while (!limit.Add(slice, now)) {
                work += slice;
            }
            longest = (work + slice) / perSecond;
            now += longest;
            limit.Finished(now);
        }
    };
    for (const double pace : {2e7, 1.2e8, 4e7, 5e9, 1e8}) {
        run(pace, 24);
        EXPECT_GT(longest, 0.008) << pace;
        EXPECT_LT(longest, 0.018) << pace;
    }
    // Where giving work out is what takes the time, the clock ends the piece.
    limit.Begin(now);
    EXPECT_FALSE(limit.Add(1, now + 0.001));
    EXPECT_TRUE(limit.Add(1, now + 0.013));
}

} // namespace
} // namespace KOVA::Quorvex
