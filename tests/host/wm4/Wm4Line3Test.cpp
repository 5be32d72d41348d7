#include "wm4/Wm4Line3.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Line3f = Wm4::Line3<float>;
using Vector3f = Wm4::Vector3<float>;

TEST(Wm4Line3Test, IsWildMagicsLine3) {
    EXPECT_TRUE((std::is_same<Line3f, Wm5::Line3<float>>::value));
    EXPECT_TRUE((std::is_same<Wm4::Line3<double>, Wm5::Line3<double>>::value));
}

TEST(Wm4Line3Test, KeepsTheOriginAndDirectionItIsGiven) {
    const Line3f line(Vector3f(1.0f, 2.0f, 3.0f), Vector3f::UNIT_Y);
    EXPECT_EQ(line.Origin, Vector3f(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(line.Direction, Vector3f::UNIT_Y);
}

TEST(Wm4Line3Test, OriginPlusTTimesDirectionWalksAlongTheLine) {
    const Line3f line(Vector3f(1.0f, 2.0f, 3.0f), Vector3f(0.0f, 0.6f, 0.8f));
    const Vector3f point = line.Origin + 5.0f * line.Direction;
    EXPECT_NEAR(point.X(), 1.0f, 1e-6f);
    EXPECT_NEAR(point.Y(), 5.0f, 1e-5f);
    EXPECT_NEAR(point.Z(), 7.0f, 1e-5f);
}

TEST(Wm4Line3Test, MembersCanBeReassigned) {
    Line3f line(Vector3f::ZERO, Vector3f::UNIT_X);
    line.Origin = Vector3f(4.0f, 5.0f, 6.0f);
    line.Direction = Vector3f::UNIT_Z;
    EXPECT_EQ(line.Origin, Vector3f(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(line.Direction, Vector3f::UNIT_Z);
}

} // namespace
