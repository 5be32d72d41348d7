#include "wm4/Wm4Math.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <type_traits>

namespace {

using Mathf = Wm4::Math<float>;
using Mathd = Wm4::Math<double>;

TEST(Wm4MathTest, DerivesFromWildMagicsMath) {
    EXPECT_TRUE((std::is_base_of<Wm5::Math<float>, Mathf>::value));
    EXPECT_TRUE((std::is_base_of<Wm5::Math<double>, Mathd>::value));
}

TEST(Wm4MathTest, Wm4PiEqualsWildMagicsPi) {
    EXPECT_EQ(Mathf::WM4_PI, Wm5::Math<float>::PI);
    EXPECT_EQ(Mathd::WM4_PI, Wm5::Math<double>::PI);
    EXPECT_NEAR(Mathf::WM4_PI, 3.14159265f, 1e-6f);
    EXPECT_NEAR(Mathd::WM4_PI, 3.14159265358979323846, 1e-15);
}

TEST(Wm4MathTest, Wm4PiIsTheSameObjectAsWildMagicsPi) {
    EXPECT_EQ(&Mathf::WM4_PI, &Wm5::Math<float>::PI);
    EXPECT_EQ(&Mathd::WM4_PI, &Wm5::Math<double>::PI);
}

TEST(Wm4MathTest, Wm4PiIsAConstantReference) {
    EXPECT_TRUE((std::is_same<decltype(Mathf::WM4_PI), const float&>::value));
    EXPECT_TRUE((std::is_same<decltype(Mathd::WM4_PI), const double&>::value));
}

TEST(Wm4MathTest, MaxRealIsTheLargestFiniteValue) {
    EXPECT_EQ(Mathf::MAX_REAL, FLT_MAX);
    EXPECT_EQ(Mathd::MAX_REAL, DBL_MAX);
}

TEST(Wm4MathTest, ZeroToleranceIsOneMillionthForFloatAndOneHundredMillionthForDouble) {
    EXPECT_EQ(Mathf::ZERO_TOLERANCE, 1e-06f);
    EXPECT_EQ(Mathd::ZERO_TOLERANCE, 1e-08);
}

TEST(Wm4MathTest, InheritedAngleConstantsFollowFromPi) {
    EXPECT_FLOAT_EQ(Mathf::HALF_PI, Mathf::WM4_PI / 2.0f);
    EXPECT_FLOAT_EQ(Mathf::TWO_PI, Mathf::WM4_PI * 2.0f);
    EXPECT_DOUBLE_EQ(Mathd::DEG_TO_RAD * 180.0, Mathd::WM4_PI);
    EXPECT_DOUBLE_EQ(Mathd::RAD_TO_DEG * Mathd::WM4_PI, 180.0);
}

TEST(Wm4MathTest, InheritedHelpersComputeTheUsualFunctions) {
    EXPECT_FLOAT_EQ(Mathf::Sqrt(16.0f), 4.0f);
    EXPECT_FLOAT_EQ(Mathf::InvSqrt(4.0f), 0.5f);
    EXPECT_FLOAT_EQ(Mathf::FAbs(-2.5f), 2.5f);
    EXPECT_NEAR(Mathf::Cos(Mathf::WM4_PI), -1.0f, 1e-6f);
    EXPECT_NEAR(Mathf::Sin(Mathf::HALF_PI), 1.0f, 1e-6f);
    EXPECT_NEAR(Mathd::ATan2(1.0, 1.0), Mathd::WM4_PI / 4.0, 1e-15);
    EXPECT_FLOAT_EQ(Mathf::Clamp(3.0f, -1.0f, 2.0f), 2.0f);
    EXPECT_FLOAT_EQ(Mathf::Clamp(-3.0f, -1.0f, 2.0f), -1.0f);
    EXPECT_FLOAT_EQ(Mathf::Clamp(0.5f, -1.0f, 2.0f), 0.5f);
    EXPECT_EQ(Mathf::Sign(-0.25f), -1.0f);
    EXPECT_EQ(Mathf::Sign(0.0f), 0.0f);
    EXPECT_EQ(Mathf::Sign(7), 1);
}

TEST(Wm4MathTest, InheritedACosAndASinClampArgumentsOutsideMinusOneToOne) {
    EXPECT_EQ(Mathf::ACos(1.5f), 0.0f);
    EXPECT_FLOAT_EQ(Mathf::ACos(-1.5f), Mathf::WM4_PI);
    EXPECT_FLOAT_EQ(Mathd::ASin(2.0), Mathd::HALF_PI);
    EXPECT_NEAR(Mathd::ACos(0.5), Mathd::WM4_PI / 3.0, 1e-15);
}

} // namespace
