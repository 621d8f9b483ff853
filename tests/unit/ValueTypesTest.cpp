#include <cmath>
#include <numbers>
#include <type_traits>

#include <gtest/gtest.h>

#include <Quorvex/core/Colors.h>
#include <Quorvex/core/Matrix44d.h>
#include <Quorvex/core/Vectors.h>

#include "ExpectNear.h"

namespace KOVA::Quorvex {
namespace {

const float s_nan = std::nanf("");

Matrix44d Identity() {
    Matrix44d m;
    m.SetIdentity();
    return m;
}

// Something without symmetries: a projective row, a shear, a translation.
Matrix44d Arbitrary() {
    Matrix44d m;
    for (int i = 0; i < 16; ++i) {
        m[i] = 0.3 * (i + 1) - 0.07 * i * i + (i % 5 == 0 ? 2.0 : 0.0);
    }
    return m;
}

// Arrays of these types are handed to OpenGL, so nothing but the components may be in them, in their order.
template <class Type, class Component, int Count> void ExpectPlainComponents() {
    static_assert(sizeof(Type) == Count * sizeof(Component));
    static_assert(std::is_standard_layout_v<Type> && std::is_trivially_copyable_v<Type>);
    static_assert(std::is_trivially_default_constructible_v<Type>);
}

TEST(ValueTypes, ArePlainComponents) {
    ExpectPlainComponents<Vector2f, float, 2>();
    ExpectPlainComponents<Vector3f, float, 3>();
    ExpectPlainComponents<Vector4f, float, 4>();
    ExpectPlainComponents<Vector3i, int, 3>();
    ExpectPlainComponents<Vector4d, double, 4>();
    ExpectPlainComponents<ColorRGB, float, 3>();
    ExpectPlainComponents<ColorRGBA, float, 4>();
    ExpectPlainComponents<Matrix44d, double, 16>();

    ColorRGBA color(1.0F, 2.0F, 3.0F, 4.0F);
    float* components = color;
    components[3] = 9.0F;
    EXPECT_EQ(color.a, 9.0F);
    const double quadruple[] = {1.0, 2.0, 3.0, 4.0};
    EXPECT_EQ(Vector4d(quadruple), Vector4d(1.0, 2.0, 3.0, 4.0));
    const Vector4f copied(Vector4f(5.0F, 6.0F, 7.0F, 8.0F));
    EXPECT_EQ(Vector3f(static_cast<const float*>(copied) + 1), Vector3f(6.0F, 7.0F, 8.0F));
}

TEST(ValueTypes, BinaryOperatorsLeaveTheirOperandsAndCompoundOnesReturnTheLeft) {
    const Vector3f a(1.0F, 2.0F, 3.0F);
    const Vector3f b(10.0F, 20.0F, 40.0F);
    EXPECT_EQ(a + b, Vector3f(11.0F, 22.0F, 43.0F));
    EXPECT_EQ(b - a, Vector3f(9.0F, 18.0F, 37.0F));
    EXPECT_EQ(a * 2.0F, Vector3f(2.0F, 4.0F, 6.0F));
    EXPECT_EQ(b / 10.0F, Vector3f(1.0F, 2.0F, 4.0F));
    EXPECT_EQ(a, Vector3f(1.0F, 2.0F, 3.0F));

    Vector3f c = a;
    EXPECT_EQ(&(c += b), &c);
    EXPECT_EQ(&(c -= a), &c);
    EXPECT_EQ(&((c *= 4.0F) /= 2.0F), &c);
    EXPECT_EQ(c, b * 2.0F);
    c *= c.x; // the factor is a component of the vector itself
    EXPECT_EQ(c, Vector3f(400.0F, 800.0F, 1600.0F));

    EXPECT_EQ(Vector4f(1, 2, 3, 4) * 2.0F - Vector4f(1, 1, 1, 1), Vector4f(1, 3, 5, 7));
    EXPECT_EQ(-(Vector3i(1, 2, 3) + Vector3i(10, 20, 30)), Vector3i(-11, -22, -33));
    EXPECT_EQ(Vector4d(1, 2, 3, 4) - Vector4d(4, 3, 2, 1), Vector4d(-3, -1, 1, 3));
    EXPECT_TRUE(std::signbit((-Vector3f(0.0F, 1.0F, 2.0F)).x));
    EXPECT_TRUE(std::isinf((a / 0.0F).x));
}

TEST(ValueTypes, EqualityIsExact) {
    const Vector3f v(1.0F, 2.0F, 3.0F);
    EXPECT_TRUE(v != Vector3f(1.0F, 2.0F, std::nextafter(3.0F, 4.0F)));
    const Vector3f withNan(1.0F, s_nan, 3.0F);
    EXPECT_FALSE(withNan == withNan);
    EXPECT_TRUE(withNan != withNan);
    EXPECT_TRUE(ColorRGBA(1, 2, 3, 0.5F) != ColorRGBA(1, 2, 3));
}

TEST(ValueTypes, AmpersandFindsOneEqualComponent) {
    const Vector3f v(1.0F, 2.0F, 3.0F);
    EXPECT_TRUE(v & Vector3f(1.0F, 5.0F, 6.0F));
    EXPECT_TRUE(v & Vector3f(4.0F, 2.0F, 6.0F));
    EXPECT_TRUE(v & Vector3f(4.0F, 5.0F, 3.0F));
    EXPECT_FALSE(v & Vector3f(4.0F, 5.0F, 6.0F));
    EXPECT_FALSE(v & Vector3f(2.0F, 3.0F, 1.0F));
}

TEST(ValueTypes, ColorArithmeticNeverChangesTheOpacity) {
    const ColorRGBA half(0.2F, 0.4F, 0.6F, 0.5F);
    const ColorRGBA opaque(0.1F, 0.1F, 0.1F);
    EXPECT_EQ(opaque.a, 1.0F);
    EXPECT_EQ(half * 2.0F, ColorRGBA(0.4F, 0.8F, 1.2F, 0.5F));
    EXPECT_EQ((half + opaque).a, 0.5F);
    EXPECT_EQ((opaque - half).a, 1.0F);
    EXPECT_EQ((half / 0.0F).a, 0.5F);
    ColorRGBA changed = half;
    (((changed *= 3.0F) += opaque) -= opaque) /= 3.0F;
    EXPECT_EQ(changed.a, 0.5F);
    EXPECT_NEAR(changed.g, 0.4F, 1e-6F);
    EXPECT_EQ(ColorRGB(1, 2, 3) * 2.0F - ColorRGB(1, 1, 1), ColorRGB(1, 3, 5));
}

TEST(ValueTypes, LengthsAndProducts) {
    EXPECT_EQ(Length(Vector3f(3.0F, 4.0F, 0.0F)), 5.0F);
    EXPECT_EQ(Length(Normalize(Vector3f(0.0F, -8.0F, 0.0F))), 1.0F);
    Vector2f flat(3.0F, -4.0F);
    EXPECT_EQ(&flat.Normalize(), &flat);
    EXPECT_FLOAT_EQ(flat.y, -0.8F);
    Vector3f zero(0.0F, 0.0F, 0.0F);
    zero.Normalize();
    EXPECT_TRUE(std::isnan(zero.x) && std::isnan(zero.y) && std::isnan(zero.z));

    const Vector3f a(1.5F, -2.0F, 0.25F);
    const Vector3f b(0.5F, 3.0F, -4.0F);
    const Vector3f c = CrossProduct(a, b);
    EXPECT_NEAR(DotProduct(a, c), 0.0F, 1e-6F);
    EXPECT_NEAR(DotProduct(b, c), 0.0F, 1e-6F);
    const float dot = DotProduct(a, b);
    EXPECT_NEAR(DotProduct(c, c), DotProduct(a, a) * DotProduct(b, b) - dot * dot, 1e-4F);
    EXPECT_EQ(CrossProduct(Vector3f(1, 0, 0), Vector3f(0, 1, 0)), Vector3f(0, 0, 1));
}

TEST(Rotate, TurnsAboutYThenXThenZByDegrees) {
    ExpectNear(Rotate(Vector3f(1, 0, 0), 0, 0, 90), Vector3f(0, 1, 0), 1e-5F);
    ExpectNear(Rotate(Vector3f(0, 0, 1), 90, 0, 0), Vector3f(1, 0, 0), 1e-5F);
    ExpectNear(Rotate(Vector3f(0, 1, 0), 0, 90, 0), Vector3f(0, 0, 1), 1e-5F);

    // The matrix knows the true pi, hence the tolerance.
    const Vector3f v(0.3F, -1.0F, 2.0F);
    const float radians = std::numbers::pi_v<float> / 180.0F;
    Matrix44d m = Identity();
    m.Rotate(Vector3f(0, 1, 0), 25.0F * radians);
    m.Rotate(Vector3f(1, 0, 0), -70.0F * radians);
    m.Rotate(Vector3f(0, 0, 1), 130.0F * radians);
    ExpectNear(Rotate(v, 25.0F, -70.0F, 130.0F), m * v, 2e-5F);

    // The truncated pi shows: half a turn falls short by 1.27e-5.
    EXPECT_NEAR(Rotate(Vector3f(1, 0, 0), 0, 0, 180).y, 1.27e-5F, 2e-7F);
}

TEST(Matrix, RotationFollowsTheRightHandAndKeepsTheAxis) {
    Matrix44d quarter = Identity();
    quarter.Rotate(Vector3f(0, 0, 1), std::numbers::pi_v<float> / 2.0F);
    ExpectNear(quarter * Vector3f(1, 0, 0), Vector3f(0, 1, 0), 1e-6F);
    EXPECT_NEAR(quarter[1], 1.0, 1e-7);

    const Vector3f axis = Normalize(Vector3f(1.0F, -2.0F, 0.5F));
    Matrix44d m = Identity();
    m.Rotate(axis, 0.7F);
    ExpectNear(m * axis, axis, 1e-6F);
    EXPECT_NEAR(m[0] + m[5] + m[10], 1.0 + 2.0 * std::cos(0.7), 1e-6);
    m.Rotate(axis, -0.7F);
    ExpectNear(m, Identity(), 1e-6);

    // An axis of length 2 is taken as it is: along it the rotation stretches by 4 (1 - cos) + cos.
    Matrix44d stretched = Identity();
    stretched.Rotate(Vector3f(2, 0, 0), 0.5F);
    EXPECT_NEAR(stretched[0], 4.0 * (1.0 - std::cos(0.5)) + std::cos(0.5), 1e-12);
}

TEST(Matrix, TransformsApplyAfterWhatIsThereAndProductsBeforeIt) {
    Matrix44d m = Identity();
    m.Translate(Vector3f(1, 2, 3));
    m.Scale(Vector3f(2, 3, 4));
    ExpectNear(m * Vector3f(0, 0, 0), Vector3f(2, 6, 12), 0.0F);

    Matrix44d translation = Identity();
    translation.Translate(Vector3f(10, 0, 0));
    m *= translation;
    ExpectNear(m * Vector3f(0, 0, 0), Vector3f(22, 6, 12), 0.0F);

    // On a projective matrix too, the operations are products from the left.
    const auto expectLeftProduct = [](const auto& operation) {
        Matrix44d changed = Arbitrary();
        operation(changed);
        Matrix44d product = Identity();
        operation(product);
        product *= Arbitrary();
        ExpectNear(changed, product, 1e-12);
    };
    expectLeftProduct([](Matrix44d& matrix) { matrix.Translate(Vector3f(0.5F, -3.0F, 2.0F)); });
    expectLeftProduct([](Matrix44d& matrix) { matrix.Scale(Vector3f(0.5F, -3.0F, 2.0F)); });
    expectLeftProduct([](Matrix44d& matrix) { matrix.Rotate(Vector3f(0.6F, 0.0F, 0.8F), 1.1F); });
}

TEST(Matrix, ProductsAndPoints) {
    Matrix44d m = Arbitrary();
    m *= Identity();
    ExpectNear(m, Arbitrary(), 0.0);
    m *= m;
    const Vector3f p(0.2F, -0.4F, 0.1F);
    ExpectNear(m * p, Arbitrary() * (Arbitrary() * p), 1e-4F);

    Matrix44d projective = Identity();
    projective[11] = 1.0;
    projective[15] = 0.0;
    EXPECT_EQ(projective * Vector3f(2, 4, 2), Vector3f(1, 2, 1));
    const Vector3f infinite = projective * Vector3f(1, 0, 0);
    EXPECT_TRUE(std::isinf(infinite.x));
    EXPECT_TRUE(std::isnan(infinite.y));

    // Large translations keep the digits that a float product would lose.
    Matrix44d distant = Identity();
    distant[12] = 1e8 + 0.25;
    Matrix44d back = Identity();
    back[12] = -1e8;
    back *= distant;
    EXPECT_EQ((back * Vector3f(0, 0, 0)).x, 0.25F);
}

} // namespace
} // namespace KOVA::Quorvex
