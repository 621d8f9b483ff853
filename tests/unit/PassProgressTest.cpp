#include <Quorvex/frame/PassProgress.h>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace KOVA::Quorvex {
namespace {

TEST(PassProgress, CountsObjectsAndTheCurrentFraction) {
    EXPECT_EQ(PassProgress(2.0F, 1.0F, 4, false), 0.5F);
    EXPECT_EQ(PassProgress(2.0F, 1.0F, 4, true), 0.25F);
    EXPECT_EQ(PassProgress(0.5F, 2.0F, 4, false), 0.625F);
    EXPECT_EQ(PassProgress(-1.0F, 0.0F, 2, false), -0.5F);
    EXPECT_EQ(PassProgress(1.0F, 5.0F, 3, true), 1.0F); // the last of twice three
    EXPECT_EQ(PassProgress(0.5F, 3.0F, 0, false), 0.0F);
}

TEST(PassProgress, LineStaysInsideTheWindow) {
    EXPECT_EQ(ProgressLineEnd(801, 0.5F), 400);
    EXPECT_EQ(ProgressLineEnd(800, 1.0F), 800);
    EXPECT_EQ(ProgressLineEnd(800, 1.7F), 800);
    EXPECT_EQ(ProgressLineEnd(800, -0.5F), 0);
    EXPECT_EQ(ProgressLineEnd(0, 0.5F), 0);
    EXPECT_EQ(ProgressLineEnd(800, std::numeric_limits<float>::infinity()), 800);
    EXPECT_EQ(ProgressLineEnd(800, std::nanf("")), 0);
    EXPECT_EQ(ProgressLineEnd(std::numeric_limits<unsigned int>::max(), 1.0F), std::numeric_limits<int>::max());
}

} // namespace
} // namespace KOVA::Quorvex
