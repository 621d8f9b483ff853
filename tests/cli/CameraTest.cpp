#include <shared/Camera.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include <Quorvex/view/View.h>

namespace KOVA::Quorvex::cli {
namespace {

struct Projected {
    double x, y, z; // normalised device coordinates
};

using Corner = std::array<double, 3>;

// The way the frame draws: the view's matrices, with the second diagonal element times the picture's aspect.
Projected Project(const View& view, double aspect, const Corner& p) {
    const auto multiply = [](const double* m, const std::array<double, 4>& v) {
        std::array<double, 4> result{};
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column) {
                result[row] += m[column * 4 + row] * v[column];
            }
        }
        return result;
    };
    const std::array<double, 4> eye = multiply(view.GetModelviewMatrix(), {p[0], p[1], p[2], 1.0});
    const std::array<double, 4> clip = multiply(view.GetProjectionMatrix(), eye);
    return {clip[0] / clip[3], aspect * clip[1] / clip[3], clip[2] / clip[3]};
}

std::array<Corner, 8> CornersOf(const Box& box) {
    std::array<Corner, 8> corners;
    for (unsigned int i = 0; i < 8; ++i) {
        for (unsigned int axis = 0; axis < 3; ++axis) {
            corners[i][axis] = ((i >> axis) & 1U) != 0 ? box.high[axis] : box.low[axis];
        }
    }
    return corners;
}

struct Extent {
    double left = 9, right = -9, bottom = 9, top = -9, nearest = 9, farthest = -9;
};

Extent ExtentIn(const View& view, double aspect, const Box& box) {
    Extent e;
    for (const Corner& corner : CornersOf(box)) {
        const Projected p = Project(view, aspect, corner);
        e.left = std::min(e.left, p.x);
        e.right = std::max(e.right, p.x);
        e.bottom = std::min(e.bottom, p.y);
        e.top = std::max(e.top, p.y);
        e.nearest = std::min(e.nearest, p.z);
        e.farthest = std::max(e.farthest, p.z);
    }
    return e;
}

constexpr std::array c_sides{Side::Front, Side::Back, Side::Left, Side::Right, Side::Top, Side::Bottom, Side::Iso};

// Calls a check for every view, projection and shape of the picture.
template <class Check> void ForEveryView(Check check) {
    for (const Side side : c_sides) {
        for (const Projection projection : {Projection::Perspective, Projection::Orthogonal}) {
            for (const double aspect : {1.0, 2.0, 0.5, 1.37}) {
                SCOPED_TRACE(testing::Message() << "side " << static_cast<int>(side) << ", projection "
                                                << static_cast<int>(projection) << ", aspect " << aspect);
                check(side, projection, aspect);
            }
        }
    }
}

void ExpectCornersTouchTheMargin(Side side, Projection projection, double aspect) {
    const std::array boxes{Box{{-1, -2, -3}, {4, 5, 6}}, Box{{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}},
                           Box{{0, 0, 0}, {3, 2, 0}}, Box{{-1, 0, 0}, {1, 0.1, 0.2}}};
    for (const Box& box : boxes) {
        View view;
        Load(FitCamera(box, {side, projection, 40.0, aspect}), view);
        EXPECT_TRUE(view.IsRightHand());
        const Extent e = ExtentIn(view, aspect, box);
        const double margin = 1.0 / 1.05;
        const double reach = std::max({-e.left, e.right, -e.bottom, e.top});
        EXPECT_NEAR(reach, margin, 1e-5);
        const bool across = std::max(-e.left, e.right) > margin - 1e-5;
        const bool upright = std::max(-e.bottom, e.top) > margin - 1e-5;
        EXPECT_TRUE(!across || std::abs(e.left + e.right) < 1e-5) << e.left << ' ' << e.right;
        EXPECT_TRUE(!upright || std::abs(e.bottom + e.top) < 1e-5) << e.bottom << ' ' << e.top;
        EXPECT_GT(e.nearest, -1.0);
        EXPECT_LT(e.farthest, 1.0);
    }
}

void ExpectTurningBoxesStayInside(Side side, Projection projection, double aspect) {
    const Corner axis{0.36, 0.48, 0.8};
    for (const Box& box : {Box{{-1, -2, -3}, {4, 5, 6}}, Box{{-0.1, -2, -0.1}, {0.1, 2, 0.1}}}) {
        View view;
        Load(FitCamera(box, {side, projection, 40.0, aspect, axis}), view);
        double reach = 0.0;
        constexpr int steps = 100;
        for (int i = 0; i < steps; ++i) {
            view.RotateWorld({static_cast<float>(axis[0]), static_cast<float>(axis[1]), static_cast<float>(axis[2]),
                              static_cast<float>(2.0 * std::numbers::pi / steps)});
            const Extent e = ExtentIn(view, aspect, box);
            reach = std::max({reach, -e.left, e.right, -e.bottom, e.top});
            ASSERT_GT(e.nearest, -1.0);
            ASSERT_LT(e.farthest, 1.0);
        }
        EXPECT_LE(reach, 1.0 / 1.05 + 1e-5);
        EXPECT_GE(reach, 0.94);
    }
}

TEST(CameraTest, CornersTouchTheMarginOnBothSidesOfTheDecidingDirection) {
    ForEveryView(ExpectCornersTouchTheMargin);
}

// Whatever turns about the axis stays inside, and comes near the margin.
TEST(CameraTest, TurningBoxesStayInThePicture) {
    ForEveryView(ExpectTurningBoxesStayInside);
}

// A box of 8 x 2 x 2 seen from the front is as wide as a picture of 2 : 1, and a box of 2 x 8 x 2 as high.
TEST(CameraTest, ThePicturesProportionsDecideWhichDirectionFits) {
    View view;
    const Box wide{{-4, -1, -1}, {4, 1, 1}};
    Load(FitCamera(wide, {Side::Front, Projection::Orthogonal, 30.0, 2.0}), view);
    EXPECT_DOUBLE_EQ(view.GetProjectionOrthogonalRight(), 4 * 1.05);
    EXPECT_DOUBLE_EQ(view.GetProjectionOrthogonalTop(), 2 * 1.05);
    const Box high{{-1, -4, -1}, {1, 4, 1}};
    Load(FitCamera(high, {Side::Front, Projection::Orthogonal, 30.0, 2.0}), view);
    EXPECT_DOUBLE_EQ(view.GetProjectionOrthogonalRight(), 8 * 1.05);
    EXPECT_DOUBLE_EQ(view.GetProjectionOrthogonalBottom(), -4 * 1.05);
}

TEST(CameraTest, TheOpeningAngleSpansTheWidth) {
    View view;
    Load(FitCamera({{-1, -1, -1}, {1, 1, 1}}, {Side::Front, Projection::Perspective, 90.0, 2.0}), view);
    EXPECT_FLOAT_EQ(view.getFieldOfView(), 90.0F);
    // The front face's upper edge, 1 above the middle, is the highest: at 45 degrees half of the width is as far away
    // as the eye, and half of the height is half of that.
    EXPECT_NEAR(view.getPosition().z, 1.0 + 2 * 1.05, 1e-5);
}

// Every view's axes in the world, written down from what the views mean.
TEST(CameraTest, ViewsLookFromTheirSideAndMirrorNothing) {
    struct Case {
        Side side;
        Vector3f right, up, toViewer;
    };
    const float a = 1.0F / std::sqrt(2.0F);
    const float b = 1.0F / std::sqrt(6.0F);
    const float c = 1.0F / std::sqrt(3.0F);
    const std::array cases{
        Case{Side::Front, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},     Case{Side::Back, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
        Case{Side::Right, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}},    Case{Side::Left, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0}},
        Case{Side::Top, {1, 0, 0}, {0, 0, -1}, {0, 1, 0}},      Case{Side::Bottom, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
        Case{Side::Iso, {a, 0, -a}, {-b, 2 * b, -b}, {c, c, c}}};
    for (const Case& expected : cases) {
        View view;
        Load(FitCamera({{-1, -1, -1}, {1, 1, 1}}, {expected.side, Projection::Perspective, 30.0, 1.0}), view);
        EXPECT_LT((view.getXVector() - expected.right).Length(), 1e-6F);
        EXPECT_LT((view.getYVector() - expected.up).Length(), 1e-6F);
        EXPECT_LT((view.getZVector() - expected.toViewer).Length(), 1e-6F);
    }
}

TEST(CameraTest, ScenesWithoutExtentStillHaveACamera) {
    for (const Side side : c_sides) {
        for (const Projection projection : {Projection::Perspective, Projection::Orthogonal}) {
            for (const Box& box : {Box{{2, 3, 4}, {2, 3, 4}}, Box{{0, 0, -1}, {0, 0, 1}}, Box{{-1, 0, 0}, {1, 0, 0}}}) {
                View view;
                Load(FitCamera(box, {side, projection, 30.0, 1.5}), view);
                const Extent e = ExtentIn(view, 1.5, box);
                EXPECT_GT(e.nearest, -1.0);
                EXPECT_LT(e.farthest, 1.0);
                EXPECT_LE(std::max({-e.left, e.right, -e.bottom, e.top}), 1.0);
            }
        }
    }
}

TEST(BoxTest, UnionAndEnlargement) {
    Box box = Box::Empty();
    EXPECT_FALSE(box.IsFinite());
    box.Include({{0, 0, 0}, {1, 1, 1}});
    box.Include({{0.5, 0.5, -2}, {5, 0.6, 0.7}});
    EXPECT_EQ(box.low, (Corner{0, 0, -2}));
    EXPECT_EQ(box.high, (Corner{5, 1, 1}));
    const Box larger = box.Enlarged(0.1);
    EXPECT_EQ(larger.low, (Corner{-0.5, -0.1, -2.3}));
    EXPECT_EQ(larger.high, (Corner{5.5, 1.1, 1.3}));
}

} // namespace
} // namespace KOVA::Quorvex::cli
