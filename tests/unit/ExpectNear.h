#pragma once

#include <gtest/gtest.h>

#include <Quorvex/core/Matrix44d.h>
#include <Quorvex/core/Vectors.h>

inline void ExpectNear(const KOVA::Quorvex::Vector3f& actual, const KOVA::Quorvex::Vector3f& expected,
                       float tolerance) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

inline void ExpectNear(const KOVA::Quorvex::Matrix44d& actual, const KOVA::Quorvex::Matrix44d& expected,
                       double tolerance) {
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "element " << i;
    }
}
