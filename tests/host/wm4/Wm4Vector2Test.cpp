#include "wm4/Wm4Vector2.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vector2f = Wm4::Vector2<float>;
using Vector2d = Wm4::Vector2<double>;

TEST(Wm4Vector2Test, IsWildMagicsVector2) {
    EXPECT_TRUE((std::is_same<Vector2f, Wm5::Vector2<float>>::value));
    EXPECT_TRUE((std::is_same<Vector2d, Wm5::Vector2<double>>::value));
}

TEST(Wm4Vector2Test, ConstantsHoldTheirComponents) {
    EXPECT_EQ(Vector2f::ZERO, Vector2f(0.0f, 0.0f));
    EXPECT_EQ(Vector2f::UNIT_X, Vector2f(1.0f, 0.0f));
    EXPECT_EQ(Vector2f::UNIT_Y, Vector2f(0.0f, 1.0f));
    EXPECT_EQ(Vector2f::ONE, Vector2f(1.0f, 1.0f));
    EXPECT_EQ(Vector2d::UNIT_X, Vector2d(1.0, 0.0));
    EXPECT_EQ(Vector2d::UNIT_Y, Vector2d(0.0, 1.0));
}

TEST(Wm4Vector2Test, AccessorsReadAndWriteTheComponents) {
    Vector2f v(3.0f, -4.0f);
    EXPECT_EQ(v.X(), 3.0f);
    EXPECT_EQ(v.Y(), -4.0f);
    EXPECT_EQ(v[0], 3.0f);
    EXPECT_EQ(v[1], -4.0f);
    v.X() = 7.0f;
    v[1] = 8.0f;
    EXPECT_EQ(v, Vector2f(7.0f, 8.0f));
}

TEST(Wm4Vector2Test, ArithmeticWorksComponentWise) {
    const Vector2f a(1.0f, 2.0f);
    const Vector2f b(3.0f, -5.0f);
    EXPECT_EQ(a + b, Vector2f(4.0f, -3.0f));
    EXPECT_EQ(a - b, Vector2f(-2.0f, 7.0f));
    EXPECT_EQ(a * 2.0f, Vector2f(2.0f, 4.0f));
    EXPECT_EQ(2.0f * a, Vector2f(2.0f, 4.0f));
    EXPECT_EQ(b / 2.0f, Vector2f(1.5f, -2.5f));
    EXPECT_EQ(-a, Vector2f(-1.0f, -2.0f));
    Vector2f c = a;
    c += b;
    EXPECT_EQ(c, Vector2f(4.0f, -3.0f));
    c -= a;
    EXPECT_EQ(c, b);
}

TEST(Wm4Vector2Test, DotLengthAndNormalizeGiveTheEuclideanValues) {
    Vector2f v(3.0f, 4.0f);
    EXPECT_FLOAT_EQ(v.Dot(Vector2f(2.0f, -1.0f)), 2.0f);
    EXPECT_FLOAT_EQ(v.SquaredLength(), 25.0f);
    EXPECT_FLOAT_EQ(v.Length(), 5.0f);
    const float length = v.Normalize();
    EXPECT_FLOAT_EQ(length, 5.0f);
    EXPECT_NEAR(v.X(), 0.6f, 1e-6f);
    EXPECT_NEAR(v.Y(), 0.8f, 1e-6f);
    EXPECT_NEAR(v.Length(), 1.0f, 1e-6f);
}

TEST(Wm4Vector2Test, PerpTurnsClockwiseAndDotPerpIsTheCrossProduct) {
    const Vector2f v(2.0f, 3.0f);
    EXPECT_EQ(v.Perp(), Vector2f(3.0f, -2.0f));
    EXPECT_FLOAT_EQ(v.Dot(v.Perp()), 0.0f);
    EXPECT_FLOAT_EQ(Vector2f::UNIT_X.DotPerp(Vector2f::UNIT_Y), 1.0f);
    EXPECT_FLOAT_EQ(Vector2f::UNIT_Y.DotPerp(Vector2f::UNIT_X), -1.0f);
}

} // namespace
