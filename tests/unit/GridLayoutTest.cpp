// Lines and numbers of the measurement grid.

#include <cmath>
#include <random>

#include <Quorvex/frame/GridLayout.h>

#include <gtest/gtest.h>

namespace KOVA::Quorvex::test {
namespace {

TEST(GridLayoutTest, SpacingsAreTheNextOneTwoOrFive) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponents(-20, 20);
    for (int i = 0; i < 2000; ++i) {
        const double distance = std::pow(10.0, exponents(random));
        const GridSpacing spacing = SpacingFrom(distance);
        EXPECT_GE(spacing.Value(), distance);
        EXPECT_LE(spacing.Value(), distance * 2.5 * (1 + 1e-12)) << distance;
    }
    for (const double exact : {1e-7, 2e-3, 0.5, 1.0, 2.0, 5.0, 1000.0, 5e22}) {
        EXPECT_EQ(SpacingFrom(exact).Value(), exact);
    }
}

TEST(GridLayoutTest, NumbersHaveTheDigitsOfTheirSpacing) {
    struct Case {
        long long count;
        GridSpacing spacing;
        const char* text;
    };
    for (const Case& c :
         {Case{0, {5, -3}, "0"}, Case{-3, {5, -1}, "-1.5"}, Case{2, {5, -1}, "1.0"}, Case{3, {2, -2}, "0.06"},
          Case{-7, {2, 1}, "-140"}, Case{123456, {1, -6}, "0.123456"}, Case{3, {1, -9}, "3e-09"},
          Case{1234, {1, -9}, "1.234e-06"}, Case{7, {2, 8}, "1.4e+09"}, Case{3, {5, 6}, "15000000"}}) {
        EXPECT_EQ(GridLabel(c.count, c.spacing), c.text);
    }
}

TEST(GridLayoutTest, LinesAreThoseOfThePicture) {
    // The picture shows 10.3 (left) to 14.3.
    const GridScale scale{-6.15, 0.5};
    for (const double direction : {1.0, -1.0}) {
        const auto lines = LayGrid({scale.offset * direction, scale.slope * direction}, {2, 0});
        ASSERT_EQ(lines.size(), 8U) << "10.5, 11, ... 14";
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const double coordinate = 10.5 + 0.5 * static_cast<double>(i);
            EXPECT_NEAR(lines[i].position, direction * (coordinate - 12.3) / 2, 1e-12);
            EXPECT_EQ(lines[i].isMajor, coordinate == 12 || coordinate == 14);
            EXPECT_EQ(lines[i].label, coordinate == 12 ? "12" : coordinate == 14 ? "14" : "");
        }
    }
    EXPECT_TRUE(LayGrid({0, 1}, {5, 0})[1].isZero);
    for (const GridScale& bad :
         {GridScale{0, 0}, GridScale{NAN, 1}, GridScale{0, INFINITY}, GridScale{1e20, 1}, GridScale{0, 1e-9}}) {
        EXPECT_LE(LayGrid(bad, {1, 0}).size(), 1U);
    }
}

TEST(GridLayoutTest, OnlyExactAxesCount) {
    double m[16] = {0, 1, 0, 0, 0, 0, -1, 0, 1, 0, 0, 0, 3, 4, 5, 1}; // right is z, up is x, depth is -y
    int axes[3];
    EXPECT_TRUE(FindAlignedAxes(m, axes));
    EXPECT_EQ(std::vector<int>(axes, axes + 3), (std::vector<int>{2, 0, 1}));
    m[6] = -std::nextafter(1.0, 0.0);
    EXPECT_FALSE(FindAlignedAxes(m, axes));
}

} // namespace
} // namespace KOVA::Quorvex::test
