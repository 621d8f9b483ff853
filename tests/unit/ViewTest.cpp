#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include <Quorvex/view/View.h>

#include "ExpectNear.h"

namespace KOVA::Quorvex {
namespace {

constexpr float s_pi = std::numbers::pi_v<float>;

using Elements = std::array<double, 16>;

Elements Modelview(const View& view) {
    Elements m;
    std::copy_n(view.GetModelviewMatrix(), 16, m.begin());
    return m;
}

Vector4d Transform(const double* m, const Vector3f& p) {
    double out[4];
    for (int row = 0; row < 4; ++row) {
        out[row] = m[row] * p.x + m[4 + row] * p.y + m[8 + row] * p.z + m[12 + row];
    }
    return Vector4d(out);
}

Vector3f ToEye(const View& view, const Vector3f& p) {
    const Vector4d v = Transform(view.GetModelviewMatrix(), p);
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

Vector3f ToDevice(const View& view, const Vector3f& p) {
    const Vector4d v = Transform(view.GetProjectionMatrix(), p);
    return {static_cast<float>(v.x / v.w), static_cast<float>(v.y / v.w), static_cast<float>(v.z / v.w)};
}

void ExpectSameModelview(const View& view, const Elements& expected, double tolerance) {
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(view.GetModelviewMatrix()[i], expected[i], tolerance) << "element " << i;
    }
}

void ExpectRigid(const View& view, float tolerance) {
    const Vector3f x = view.getXVector();
    const Vector3f y = view.getYVector();
    EXPECT_NEAR(Length(x), 1.0F, tolerance);
    EXPECT_NEAR(Length(y), 1.0F, tolerance);
    EXPECT_NEAR(DotProduct(x, y), 0.0F, tolerance);
    ExpectNear(CrossProduct(x, y), view.getZVector(), tolerance);
    const double* m = view.GetModelviewMatrix();
    EXPECT_TRUE(m[3] == 0.0 && m[7] == 0.0 && m[11] == 0.0 && m[15] == 1.0);
}

View Handed(bool leftHand) {
    View view;
    view.SetProjectionPerspective(1.0F, 0.1F, 100.0F, leftHand);
    return view;
}

View Identity(bool leftHand) {
    View view = Handed(leftHand);
    view.SetModelviewObject(Vector3f(0, 0, 0), 0.0F, 0.0F);
    return view;
}

// Somewhere, looking somewhere: no symmetry hides a wrong sign.
View Askew(bool leftHand) {
    View view = Handed(leftHand);
    view.SetModelviewViewer(Vector3f(3, -2, 5), Vector3f(-1, 0.5F, 1), Vector3f(0.2F, 1, 0.1F));
    return view;
}

// The angle by which a turned view differs from the one before.
double AngleBetween(const Elements& a, const View& b) {
    double trace = 0.0;
    for (const std::size_t i : {0U, 1U, 2U, 4U, 5U, 6U, 8U, 9U, 10U}) {
        trace += a[i] * b.GetModelviewMatrix()[i];
    }
    return std::acos(std::clamp((trace - 1.0) / 2.0, -1.0, 1.0));
}

class BothHands : public testing::TestWithParam<bool> {
protected:
    // Eye space z of what lies before the camera.
    float Forward() const { return GetParam() ? 1.0F : -1.0F; }
};
INSTANTIATE_TEST_SUITE_P(View, BothHands, testing::Bool(),
                         [](const auto& info) { return info.param ? "LeftHanded" : "RightHanded"; });

TEST(View, StartsLeftHandedWithoutAProjection) {
    View view;
    EXPECT_TRUE(view.IsLeftHand());
    EXPECT_FALSE(view.IsRightHand() || view.IsProjectionPerspective() || view.IsProjectionOrthogonal());
    EXPECT_EQ(view.getFOV(), 1.0F);
    EXPECT_EQ(view.getNear(), 0.01F);
    EXPECT_EQ(view.getFar(), 100.0F);
    EXPECT_EQ(view.GetProjectionOrthogonalLeft(), 0.0);
    EXPECT_EQ(view.GetProjectionOrthogonalFar(), 0.0);
}

TEST_P(BothHands, PerspectiveMapsTheFrustumToTheCube) {
    View view;
    const float fov = 0.8F;
    view.SetProjectionPerspective(fov, 0.5F, 40.0F, GetParam());
    EXPECT_TRUE(view.IsProjectionPerspective() && !view.IsProjectionOrthogonal());
    EXPECT_EQ(view.IsLeftHand(), GetParam());

    const float tangent = std::tan(fov / 2.0F);
    for (const float distance : {0.5F, 40.0F}) {
        const Vector3f corner(tangent * distance, -tangent * distance, Forward() * distance);
        ExpectNear(ToDevice(view, corner), Vector3f(1, -1, distance < 1.0F ? -1.0F : 1.0F), 1e-5F);
        EXPECT_NEAR(Transform(view.GetProjectionMatrix(), corner).w, distance, 1e-5);
    }
    for (int i = 0; i < 16; ++i) {
        const double element = view.GetProjectionMatrix()[i];
        EXPECT_EQ(element, static_cast<double>(static_cast<float>(element))) << "computed in single precision";
    }
}

TEST_P(BothHands, OrthogonalMapsTheBoxToTheCube) {
    View view;
    view.SetProjectionOrthogonal(-3.0, 5.0, 1.0, 2.0, -4.0, 12.0, GetParam());
    EXPECT_TRUE(view.IsProjectionOrthogonal() && !view.IsProjectionPerspective());
    EXPECT_EQ(view.IsRightHand(), !GetParam());
    ExpectNear(ToDevice(view, Vector3f(-3, 1, Forward() * -4.0F)), Vector3f(-1, -1, -1), 1e-6F);
    ExpectNear(ToDevice(view, Vector3f(5, 2, Forward() * 12.0F)), Vector3f(1, 1, 1), 1e-6F);
    EXPECT_EQ(view.GetProjectionOrthogonalLeft(), -3.0);
    EXPECT_EQ(view.GetProjectionOrthogonalRight(), 5.0);
    EXPECT_EQ(view.GetProjectionOrthogonalBottom(), 1.0);
    EXPECT_EQ(view.GetProjectionOrthogonalTop(), 2.0);
    EXPECT_EQ(view.GetProjectionOrthogonalNear(), -4.0);
    EXPECT_EQ(view.GetProjectionOrthogonalFar(), 12.0);
}

TEST(View, NamedSettersChooseTheHand) {
    const auto isLeft = [](auto set) {
        View view;
        view.SetProjectionOrthogonal(0, 1, 0, 1, 0, 1, false);
        set(view);
        return view.IsLeftHand();
    };
    EXPECT_TRUE(isLeft([](View& view) { view.SetProjection(1, 1, 2); }));
    EXPECT_TRUE(isLeft([](View& view) { view.SetProjectionPerspectiveLH(1, 1, 2); }));
    EXPECT_TRUE(isLeft([](View& view) { view.SetProjectionOrthogonalLH(0, 1, 0, 1, 0, 1); }));
    View view;
    view.SetProjectionR(std::numbers::pi_v<float> / 2.0F, 1.0F, 3.0F);
    EXPECT_TRUE(view.IsRightHand());
    EXPECT_NEAR(view.GetProjectionMatrix()[10], -2.0, 1e-6);
    EXPECT_NEAR(view.GetProjectionMatrix()[14], -3.0, 1e-6);
    view.SetProjection(1, 1, 2);
    view.SetProjectionPerspectiveRH(1, 1, 2);
    EXPECT_TRUE(view.IsRightHand());
    view.SetProjection(1, 1, 2);
    view.SetProjectionOrthogonalRH(0, 1, 0, 1, 0, 1);
    EXPECT_TRUE(view.IsRightHand());
}

TEST_P(BothHands, FieldOfViewAndPlanesSwitchToPerspectiveAndKeepTheRest) {
    View view;
    view.SetProjectionOrthogonal(-1, 1, -1, 1, 0, 1, GetParam());
    view.setFieldOfView(90.0F);
    EXPECT_TRUE(view.IsProjectionPerspective() && !view.IsProjectionOrthogonal());
    EXPECT_EQ(view.getFOV(), 1.5707964F);
    EXPECT_EQ(view.getFieldOfView(), 90.0F);
    EXPECT_EQ(view.getFar(), 100.0F);
    EXPECT_EQ(view.GetProjectionMatrix()[11], Forward());

    view.setCamPlanes(2.0F, 7.0F);
    EXPECT_EQ(view.getFOV(), 1.5707964F);
    EXPECT_EQ(view.IsLeftHand(), GetParam());
    float nearPlane = 0.0F;
    float farPlane = 0.0F;
    view.getCamPlanes(&nearPlane, &farPlane);
    EXPECT_EQ(nearPlane, 2.0F);
    EXPECT_EQ(farPlane, 7.0F);
    ExpectNear(ToDevice(view, Vector3f(0, 0, Forward() * 2.0F)), Vector3f(0, 0, -1), 1e-6F);
}

TEST(View, AProjectionMatrixIsTakenAsItStands) {
    View view;
    view.SetProjectionOrthogonal(-1, 1, -1, 1, 0, 1, false);
    double m[16];
    for (int i = 0; i < 16; ++i) {
        m[i] = i * 0.1;
    }
    view.SetProjectionMatrix(m);
    EXPECT_TRUE(std::equal(m, m + 16, view.GetProjectionMatrix()));
    EXPECT_TRUE(view.IsProjectionOrthogonal() && view.IsRightHand());

    view.SetModelviewObject(Vector3f(1, 2, 3), 0.3F, 0.1F);
    View copy;
    copy = view;
    EXPECT_TRUE(std::equal(m, m + 16, copy.GetProjectionMatrix()));
    EXPECT_EQ(Modelview(copy), Modelview(view));
    EXPECT_TRUE(copy.IsProjectionOrthogonal() && copy.IsRightHand());
}

TEST_P(BothHands, LookAtPutsTheEyeAtTheOriginAndTheCentreAhead) {
    const View view = Askew(GetParam());
    ExpectRigid(view, 1e-6F);
    const Vector3f eye(3, -2, 5);
    const Vector3f centre(-1, 0.5F, 1);
    ExpectNear(ToEye(view, eye), Vector3f(0, 0, 0), 1e-5F);
    ExpectNear(ToEye(view, centre), Vector3f(0, 0, Forward() * Length(centre - eye)), 1e-5F);
    ExpectNear(view.getPosition(), eye, 1e-5F);
    EXPECT_GT(DotProduct(view.getYVector(), Vector3f(0.2F, 1, 0.1F)), 0.0F);
    EXPECT_NEAR(DotProduct(view.getXVector(), Vector3f(0.2F, 1, 0.1F)), 0.0F, 1e-6F);
}

TEST(View, LookAtFlipsTwoAxesBetweenTheHands) {
    View view = Handed(false);
    view.SetModelviewViewer(Vector3f(0, 0, 5), Vector3f(0, 0, 0), Vector3f(0, 1, 0));
    ExpectSameModelview(view, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -5, 1}, 0.0);
    view = Handed(true);
    view.SetModelviewViewer(Vector3f(0, 0, 5), Vector3f(0, 0, 0), Vector3f(0, 1, 0));
    ExpectSameModelview(view, {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 5, 1}, 0.0);

    view.SetModelviewViewer(Vector3f(0, 0, 5), Vector3f(0, 0, 5), Vector3f(0, 1, 0));
    EXPECT_TRUE(std::isnan(view.GetModelviewMatrix()[0]));
}

TEST_P(BothHands, SphericalLookAgreesWithLookAt) {
    const Vector3f eye(1, -2, 3);
    View look = Handed(GetParam());
    look.SetModelviewViewer(eye, 0.0F, 0.0F);
    ExpectNear(look.getZVector(), Vector3f(0, 0, 1), 0.0F);

    for (const float azimuth : {-2.5F, -0.4F, 0.0F, 0.9F, 3.0F}) {
        for (const float elevation : {-1.4F, 0.0F, 0.6F}) {
            // To the right of a viewer who looks along the z axis with y up is +x, in both kinds of view.
            const Vector3f direction(std::sin(azimuth) * std::cos(elevation), std::sin(elevation),
                                     Forward() * std::cos(azimuth) * std::cos(elevation));
            View lookAt = Handed(GetParam());
            lookAt.SetModelviewViewer(eye, eye + direction, Vector3f(0, 1, 0));
            look.SetModelviewViewer(eye, azimuth, elevation);
            ExpectSameModelview(look, Modelview(lookAt), 2e-5);
        }
    }
    look.SetModelviewViewer(eye, 0.7F, s_pi / 2.0F);
    ExpectRigid(look, 1e-6F);
    ExpectNear(ToEye(look, eye + Vector3f(0, 1, 0)), Vector3f(0, 0, Forward()), 1e-5F);
}

TEST_P(BothHands, ObjectTurnsItsNearSideToTheRightAndTipsItsTopForward) {
    View view = Handed(GetParam());
    const Vector3f position(0.5F, 1.0F, Forward() * 10.0F);
    const float towardsViewer = -Forward();
    view.SetModelviewObject(position, 0.3F, 0.0F);
    ExpectNear(ToEye(view, Vector3f(0, 0, 0)), position, 0.0F);
    EXPECT_NEAR(ToEye(view, Vector3f(0, 0, towardsViewer)).x - position.x, std::sin(0.3F), 1e-6F);

    view.SetModelviewObject(position, 1.1F, 0.4F);
    ExpectRigid(view, 1e-6F);
    const Vector3f top = ToEye(view, Vector3f(0, 1, 0)) - position;
    ExpectNear(top, Vector3f(0, std::cos(0.4F), towardsViewer * std::sin(0.4F)), 1e-6F);
}

TEST_P(BothHands, TrackballCarriesTheNearSideWithTheMouse) {
    const Vector3f nearSide(0, 0, -Forward());
    View view = Identity(GetParam());
    view.ApplyTrackball(100, 100, 110, 100, 400, 400);
    EXPECT_GT(ToEye(view, nearSide).x, 0.01F);
    ExpectNear(ToEye(view, Vector3f(0, 1, 0)), Vector3f(0, 1, 0), 1e-7F);

    view = Identity(GetParam());
    view.ApplyTrackball(100, 100, 100, 110, 400, 400);
    EXPECT_LT(ToEye(view, nearSide).y, -0.01F); // pixels count downwards
    ExpectNear(ToEye(view, Vector3f(1, 0, 0)), Vector3f(1, 0, 0), 1e-7F);
}

TEST_P(BothHands, TrackballAngleIsMeasuredInTheWindow) {
    View view = Askew(GetParam());
    Elements before = Modelview(view);
    view.ApplyTrackball(0, 50, 200, 50, 400, 300);
    EXPECT_NEAR(AngleBetween(before, view), 3.14F, 1e-4);

    before = Modelview(view);
    view.ApplyTrackball(10, 10, 50, 40, 400, 300);
    EXPECT_NEAR(AngleBetween(before, view), 3.14 * std::sqrt(0.2 * 0.2 + 0.2 * 0.2), 1e-5);

    // The axis lies across the drag in pixels, whatever the shape of the window, and the way back undoes the drag.
    view.ApplyTrackball(50, 40, 10, 10, 400, 300);
    ExpectSameModelview(view, before, 1e-5);
}

TEST_P(BothHands, TrackballTurnsAboutTheOriginOrTheCentre) {
    View view = Askew(GetParam());
    const Vector3f origin = ToEye(view, Vector3f(0, 0, 0));
    view.ApplyTrackball(5, 300, 77, 240, 640, 480);
    ExpectNear(ToEye(view, Vector3f(0, 0, 0)), origin, 1e-5F);

    const Vector3f centre(40, -7, 12);
    const Vector3f place = ToEye(view, centre);
    View aboutOrigin = view;
    aboutOrigin.ApplyTrackball(5, 300, 177, 240, 640, 480);
    view.ApplyTrackball(5, 300, 177, 240, 640, 480, centre);
    ExpectNear(ToEye(view, centre), place, 1e-4F);
    ExpectNear(view.getXVector(), aboutOrigin.getXVector(), 1e-6F);
    ExpectNear(view.getZVector(), aboutOrigin.getZVector(), 1e-6F);

    for (int i = 0; i < 2000; ++i) {
        view.ApplyTrackball(i % 31, i % 17, i % 13, i % 23, 64, 48, centre);
    }
    ExpectRigid(view, 1e-4F);
    ExpectNear(ToEye(view, centre), place, 2e-2F);
}

TEST(View, ADragToTheSamePlaceChangesNothingAtAll) {
    View view;
    for (int i = 0; i < 16; ++i) {
        view.GetModelviewMatrix()[i] = 0.1 * i + 0.3; // not even normalised
    }
    const Elements before = Modelview(view);
    view.ApplyTrackball(7, 9, 7, 9, 100, 100);
    view.ApplyTrackball(7, 9, 7, 9, 100, 100, Vector3f(1, 2, 3));
    EXPECT_EQ(Modelview(view), before);

    view = Identity(true); // differences beyond an int are no undefined behaviour
    view.ApplyTrackball(std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max(), 0, 100, 100);
    EXPECT_TRUE(std::isfinite(view.GetModelviewMatrix()[0]));
}

TEST_P(BothHands, TranslationsMoveTheCamera) {
    View view = Askew(GetParam());
    const Vector3f eye = view.getPosition();
    const Vector3f step(0.5F, -4.0F, 2.0F);
    view.TranslateWorld(step);
    ExpectNear(view.getPosition(), eye + step, 1e-5F);

    view = Askew(GetParam());
    view.TranslateViewer(step);
    const Vector3f along = view.getXVector() * step.x + view.getYVector() * step.y + view.getZVector() * step.z;
    ExpectNear(view.getPosition(), eye + along, 1e-5F);

    // Only the move in the world renormalises.
    for (int i = 0; i < 16; ++i) {
        view.GetModelviewMatrix()[i] *= i < 11 ? 2.0 : 1.0;
    }
    view.TranslateViewer(step);
    EXPECT_NEAR(Length(view.getXVector()), 2.0F, 1e-5F);
    view.TranslateWorld(Vector3f(0, 0, 0));
    ExpectRigid(view, 1e-6F);
}

TEST_P(BothHands, FullCirclesOfRotateWorldBringTheViewBack) {
    View view = Askew(GetParam());
    const Elements before = Modelview(view);
    const Vector4f step(2.0F, -1.0F, 0.5F, 2.0F * s_pi / 360.0F);
    const Vector3f onAxis(4, -2, 1);
    const Vector3f place = ToEye(view, onAxis);
    for (int i = 0; i < 90; ++i) {
        view.RotateWorld(step);
    }
    EXPECT_NEAR(AngleBetween(before, view), s_pi / 2.0F, 1e-5);
    ExpectNear(ToEye(view, onAxis), place, 1e-5F);
    for (int i = 90; i < 3600; ++i) {
        view.RotateWorld(step);
    }
    ExpectSameModelview(view, before, 2e-5);
    ExpectRigid(view, 1e-6F);

    view.RotateWorld(Vector4f(0, 0, 0, 1));
    ExpectSameModelview(view, before, 2e-5);
    view.RotateWorld(Vector4f(1e-30F, 0, 0, 0.1F)); // too short for a float's square
    EXPECT_NEAR(AngleBetween(before, view), 0.1, 1e-5);
}

TEST(View, RotateWorldIsCounterClockwiseInRightHandedCoordinates) {
    View view = Identity(false);
    view.RotateWorld(Vector4f(0, 0, 3, s_pi / 2.0F));
    ExpectNear(ToEye(view, Vector3f(1, 0, 0)), Vector3f(0, 1, 0), 1e-6F);
    view.RotateWorld(Vector4f(1, 0, 0, s_pi / 2.0F)); // the new rotation comes first: it turns about the world's axis
    ExpectNear(ToEye(view, Vector3f(0, 1, 0)), Vector3f(0, 0, 1), 1e-6F);
    ExpectNear(ToEye(view, Vector3f(1, 0, 0)), Vector3f(0, 1, 0), 1e-6F);
}

TEST_P(BothHands, RotateViewerKeepsTheCentreAndTurnsTheCamera) {
    View view = Askew(GetParam());
    const Elements before = Modelview(view);
    const Vector3f centre(2, 3, -1);
    const Vector3f place = ToEye(view, centre);
    const Vector3f x = view.getXVector();
    const Vector3f z = view.getZVector();
    view.RotateViewer(Vector4f(0, 5, 0, 0.2F), centre);
    ExpectNear(ToEye(view, centre), place, 1e-5F);
    ExpectNear(view.getXVector(), x * std::cos(0.2F) - z * std::sin(0.2F), 1e-6F);
    for (int i = 0; i < 9; ++i) {
        view.RotateViewer(Vector4f(0, 5, 0, (2.0F * s_pi - 0.2F) / 9.0F), centre);
    }
    ExpectSameModelview(view, before, 2e-5);

    // About its own position the camera only looks around.
    view.RotateViewer(Vector4f(1, -2, 0.5F, 0.7F), view.getPosition());
    ExpectNear(view.getPosition(), Vector3f(3, -2, 5), 1e-5F);
    EXPECT_NEAR(AngleBetween(before, view), 0.7, 1e-5);

    // About the world's origin it is the opposite turn of the world about the same axis.
    View world = Askew(GetParam());
    world.RotateWorld(Vector4f(x.x, x.y, x.z, -0.4F));
    view = Askew(GetParam());
    view.RotateViewer(Vector4f(1, 0, 0, 0.4F), Vector3f(0, 0, 0));
    ExpectSameModelview(view, Modelview(world), 1e-5);
}

TEST(View, StabilizeCorrectsLengthsColumnsFirst) {
    View view = Askew(false);
    const Elements before = Modelview(view);
    view.Stabilize();
    ExpectSameModelview(view, before, 1e-6);

    const Elements scaled = {2, 0, 0, 5, 0, 2, 0, 6, 0, 0, 2, 7, 8, 9, 10, 11};
    std::copy(scaled.begin(), scaled.end(), view.GetModelviewMatrix());
    view.Stabilize();
    ExpectSameModelview(view, {1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 8, 9, 10, 11}, 0.0);

    // A shear stays one; the rows, done last, are the ones that end with unit length.
    const Elements sheared = {1, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::copy(sheared.begin(), sheared.end(), view.GetModelviewMatrix());
    view.Stabilize();
    EXPECT_NEAR(Length(view.getXVector()), 1.0F, 1e-6F);
    EXPECT_NEAR(view.getXVector().x, std::sqrt(2.0F / 3.0F), 1e-6F);
    EXPECT_EQ(view.getYVector(), Vector3f(0, 1, 0));
}

} // namespace
} // namespace KOVA::Quorvex
