#include "wm4/Wm4Plane3.h"
#include "wm4/Wm4Vector3.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Plane3f = Wm4::Plane3<float>;
using Vector3f = Wm4::Vector3<float>;
using mx::test::expectVectorNear;

TEST(Wm4Plane3Test, IsWildMagicsPlane3) {
    EXPECT_TRUE((std::is_same<Plane3f, Wm5::Plane3<float>>::value));
    EXPECT_TRUE((std::is_same<Wm4::Plane3<double>, Wm5::Plane3<double>>::value));
}

TEST(Wm4Plane3Test, KeepsTheNormalAndConstantItIsGiven) {
    const Plane3f plane(Vector3f::UNIT_Z, 2.5f);
    EXPECT_EQ(plane.Normal, Vector3f::UNIT_Z);
    EXPECT_EQ(plane.Constant, 2.5f);
}

TEST(Wm4Plane3Test, NormalAndPointGiveTheConstantDotNormalPoint) {
    const Plane3f plane(Vector3f(0.0f, 0.6f, 0.8f), Vector3f(7.0f, 5.0f, 10.0f));
    EXPECT_NEAR(plane.Constant, 11.0f, 1e-5f);
}

TEST(Wm4Plane3Test, ThreePointsGiveTheUnitNormalOfTheirCounterclockwiseOrder) {
    const Plane3f plane(Vector3f(0.0f, 0.0f, 3.0f), Vector3f(2.0f, 0.0f, 3.0f),
                        Vector3f(0.0f, 2.0f, 3.0f));
    expectVectorNear(Vector3f::UNIT_Z, plane.Normal, 1e-6f);
    EXPECT_NEAR(plane.Constant, 3.0f, 1e-6f);
}

TEST(Wm4Plane3Test, DistanceToIsSignedAlongTheNormal) {
    const Plane3f plane(Vector3f::UNIT_Y, 1.0f);
    EXPECT_NEAR(plane.DistanceTo(Vector3f(5.0f, 4.0f, -2.0f)), 3.0f, 1e-6f);
    EXPECT_NEAR(plane.DistanceTo(Vector3f(5.0f, -1.0f, -2.0f)), -2.0f, 1e-6f);
    EXPECT_NEAR(plane.DistanceTo(Vector3f(9.0f, 1.0f, 9.0f)), 0.0f, 1e-6f);
}

TEST(Wm4Plane3Test, WhichSideTellsTheHalfSpaceOfAPoint) {
    const Plane3f plane(Vector3f::UNIT_Y, 1.0f);
    EXPECT_EQ(plane.WhichSide(Vector3f(0.0f, 2.0f, 0.0f)), 1);
    EXPECT_EQ(plane.WhichSide(Vector3f(0.0f, 0.0f, 0.0f)), -1);
    EXPECT_EQ(plane.WhichSide(Vector3f(3.0f, 1.0f, 3.0f)), 0);
}

} // namespace
