#include "wm4/Wm4Vector3.h"

#include "host/wm4/mxUnitAxisProbe.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vector3f = Wm4::Vector3<float>;
using Vector3d = Wm4::Vector3<double>;

TEST(Wm4Vector3Test, UnitAxesAreTheThreeBasisVectors) {
    EXPECT_EQ(Wm4::Vector3<float>::UNIT_X, Wm4::Vector3<float>(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(Wm4::Vector3<float>::UNIT_Y, Wm4::Vector3<float>(0.0f, 1.0f, 0.0f));
    EXPECT_EQ(Wm4::Vector3<float>::UNIT_Z, Wm4::Vector3<float>(0.0f, 0.0f, 1.0f));
    EXPECT_EQ(Wm4::Vector3<float>::ZERO, Wm4::Vector3<float>(0.0f, 0.0f, 0.0f));
}

TEST(Wm4Vector3Test, UnitXCopiedByAnotherLibrarysLoadTimeInitialiserHoldsOneZeroZero) {
    EXPECT_EQ(mx::test::unitXCopiedAtLoad(), Wm4::Vector3<float>(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(mx::test::unitZCopiedAtLoad(), Wm4::Vector3<float>(0.0f, 0.0f, 1.0f));
}

TEST(Wm4Vector3Test, IsWildMagicsVector3) {
    EXPECT_TRUE((std::is_same<Vector3f, Wm5::Vector3<float>>::value));
    EXPECT_TRUE((std::is_same<Vector3d, Wm5::Vector3<double>>::value));
}

TEST(Wm4Vector3Test, OneAndTheDoubleConstantsHoldTheirComponents) {
    EXPECT_EQ(Vector3f::ONE, Vector3f(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(Vector3d::ZERO, Vector3d(0.0, 0.0, 0.0));
    EXPECT_EQ(Vector3d::UNIT_X, Vector3d(1.0, 0.0, 0.0));
    EXPECT_EQ(Vector3d::UNIT_Y, Vector3d(0.0, 1.0, 0.0));
    EXPECT_EQ(Vector3d::UNIT_Z, Vector3d(0.0, 0.0, 1.0));
    EXPECT_EQ(Vector3d::ONE, Vector3d(1.0, 1.0, 1.0));
}

TEST(Wm4Vector3Test, AccessorsReadAndWriteTheComponents) {
    Vector3f v(1.0f, -2.0f, 3.0f);
    EXPECT_EQ(v.X(), 1.0f);
    EXPECT_EQ(v.Y(), -2.0f);
    EXPECT_EQ(v.Z(), 3.0f);
    EXPECT_EQ(v[2], 3.0f);
    v.Y() = 5.0f;
    v[2] = 6.0f;
    EXPECT_EQ(v, Vector3f(1.0f, 5.0f, 6.0f));
    EXPECT_NE(v, Vector3f(1.0f, 5.0f, 7.0f));
}

TEST(Wm4Vector3Test, ArithmeticWorksComponentWise) {
    const Vector3f a(1.0f, 2.0f, 3.0f);
    const Vector3f b(4.0f, -1.0f, 0.5f);
    EXPECT_EQ(a + b, Vector3f(5.0f, 1.0f, 3.5f));
    EXPECT_EQ(a - b, Vector3f(-3.0f, 3.0f, 2.5f));
    EXPECT_EQ(a * 2.0f, Vector3f(2.0f, 4.0f, 6.0f));
    EXPECT_EQ(2.0f * a, Vector3f(2.0f, 4.0f, 6.0f));
    EXPECT_EQ(a / 2.0f, Vector3f(0.5f, 1.0f, 1.5f));
    EXPECT_EQ(-a, Vector3f(-1.0f, -2.0f, -3.0f));
    Vector3f c = a;
    c += b;
    c *= 2.0f;
    EXPECT_EQ(c, Vector3f(10.0f, 2.0f, 7.0f));
}

TEST(Wm4Vector3Test, CrossFollowsTheRightHandRule) {
    EXPECT_EQ(Vector3f::UNIT_X.Cross(Vector3f::UNIT_Y), Vector3f::UNIT_Z);
    EXPECT_EQ(Vector3f::UNIT_Y.Cross(Vector3f::UNIT_Z), Vector3f::UNIT_X);
    EXPECT_EQ(Vector3f::UNIT_Z.Cross(Vector3f::UNIT_X), Vector3f::UNIT_Y);
    EXPECT_EQ(Vector3f::UNIT_Y.Cross(Vector3f::UNIT_X), -Vector3f::UNIT_Z);
    const Vector3f a(1.0f, 2.0f, 3.0f);
    const Vector3f b(-2.0f, 0.5f, 4.0f);
    const Vector3f c = a.Cross(b);
    EXPECT_NEAR(c.Dot(a), 0.0f, 1e-5f);
    EXPECT_NEAR(c.Dot(b), 0.0f, 1e-5f);
}

TEST(Wm4Vector3Test, DotLengthAndNormalizeGiveTheEuclideanValues) {
    Vector3f v(2.0f, 3.0f, 6.0f);
    EXPECT_FLOAT_EQ(v.Dot(Vector3f(1.0f, -1.0f, 0.5f)), 2.0f);
    EXPECT_FLOAT_EQ(v.SquaredLength(), 49.0f);
    EXPECT_FLOAT_EQ(v.Length(), 7.0f);
    EXPECT_FLOAT_EQ(v.Normalize(), 7.0f);
    EXPECT_NEAR(v.X(), 2.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(v.Y(), 3.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(v.Z(), 6.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(v.Length(), 1.0f, 1e-6f);
}

} // namespace
