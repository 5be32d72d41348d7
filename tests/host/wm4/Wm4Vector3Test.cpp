#include "wm4/Wm4Vector3.h"

#include "host/wm4/mxUnitAxisProbe.h"

#include <gtest/gtest.h>

namespace {

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

} // namespace
