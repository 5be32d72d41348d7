#include "wm4/Wm4IntrLine3Plane3.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using IntrLine3Plane3f = Wm4::IntrLine3Plane3<float>;
using Line3f = Wm4::Line3<float>;
using Plane3f = Wm4::Plane3<float>;
using Vector3f = Wm4::Vector3<float>;
// The intersection kinds, public in the intersector base class.
using Intersector3f = Wm5::Intersector<float, Vector3f>;

TEST(Wm4IntrLine3Plane3Test, IsAWildMagicIntersectionQuery) {
    EXPECT_TRUE((std::is_base_of<Wm5::IntrLine3Plane3<float>, IntrLine3Plane3f>::value));
    EXPECT_TRUE(
        (std::is_base_of<Wm5::IntrLine3Plane3<double>, Wm4::IntrLine3Plane3<double>>::value));
}

TEST(Wm4IntrLine3Plane3Test, FindOnACrossingLineGivesTheLineTOfTheHit) {
    const Line3f line(Vector3f(1.0f, 2.0f, 0.0f), Vector3f::UNIT_Z);
    const Plane3f plane(Vector3f::UNIT_Z, 5.0f);
    IntrLine3Plane3f query(line, plane);
    ASSERT_TRUE(query.Find());
    EXPECT_EQ(query.GetIntersectionType(), Intersector3f::IT_POINT);
    EXPECT_NEAR(query.GetLineT(), 5.0f, 1e-5f);
}

TEST(Wm4IntrLine3Plane3Test, LineTIsNegativeWhenThePlaneIsBehindTheOrigin) {
    const Line3f line(Vector3f(0.0f, 0.0f, 2.0f), Vector3f(0.0f, 0.0f, 1.0f));
    const Plane3f plane(Vector3f::UNIT_Z, -1.0f);
    IntrLine3Plane3f query(line, plane);
    ASSERT_TRUE(query.Find());
    EXPECT_NEAR(query.GetLineT(), -3.0f, 1e-5f);
}

TEST(Wm4IntrLine3Plane3Test, LineTEqualsWildMagicsLineParameter) {
    const Line3f line(Vector3f(0.5f, -1.0f, 2.0f), Vector3f(0.0f, 0.6f, -0.8f));
    const Plane3f plane(Vector3f(0.0f, 0.0f, 1.0f), -2.0f);
    IntrLine3Plane3f query(line, plane);
    ASSERT_TRUE(query.Find());
    EXPECT_EQ(query.GetLineT(), query.GetLineParameter());
    EXPECT_NEAR(query.GetLineT(), 5.0f, 1e-5f);
}

TEST(Wm4IntrLine3Plane3Test, HitPointAtLineTLiesOnThePlane) {
    const Line3f line(Vector3f(3.0f, -2.0f, 1.0f), Vector3f(0.48f, 0.6f, 0.64f));
    const Plane3f plane(Vector3f(0.0f, 0.6f, 0.8f), 4.0f);
    IntrLine3Plane3f query(line, plane);
    ASSERT_TRUE(query.Find());
    const Vector3f hit = line.Origin + query.GetLineT() * line.Direction;
    EXPECT_NEAR(plane.DistanceTo(hit), 0.0f, 1e-5f);
}

TEST(Wm4IntrLine3Plane3Test, FindOnALineParallelToThePlaneAndOffItReturnsFalse) {
    const Line3f line(Vector3f(0.0f, 0.0f, 1.0f), Vector3f::UNIT_X);
    const Plane3f plane(Vector3f::UNIT_Z, 0.0f);
    IntrLine3Plane3f query(line, plane);
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(query.GetIntersectionType(), Intersector3f::IT_EMPTY);
}

TEST(Wm4IntrLine3Plane3Test, LineTIsZeroBeforeTheFirstFind) {
    const Line3f line(Vector3f::ZERO, Vector3f::UNIT_Z);
    const Plane3f plane(Vector3f::UNIT_Z, 5.0f);
    const IntrLine3Plane3f query(line, plane);
    EXPECT_EQ(query.GetLineT(), 0.0f);
}

TEST(Wm4IntrLine3Plane3Test, LineTIsZeroAfterAFindThatFindsNothing) {
    Line3f line(Vector3f::ZERO, Vector3f::UNIT_Z);
    const Plane3f plane(Vector3f::UNIT_Z, 5.0f);
    IntrLine3Plane3f query(line, plane);
    ASSERT_TRUE(query.Find());
    ASSERT_NEAR(query.GetLineT(), 5.0f, 1e-6f);
    // Now parallel to the plane and off it: the earlier hit is not reported again.
    line.Direction = Vector3f::UNIT_X;
    EXPECT_FALSE(query.Find());
    EXPECT_EQ(query.GetLineT(), 0.0f);
}

TEST(Wm4IntrLine3Plane3Test, FindOnALineLyingInThePlaneReportsTheWholeLine) {
    const Line3f line(Vector3f(4.0f, 5.0f, 2.0f), Vector3f::UNIT_Y);
    const Plane3f plane(Vector3f::UNIT_Z, 2.0f);
    IntrLine3Plane3f query(line, plane);
    EXPECT_TRUE(query.Find());
    EXPECT_EQ(query.GetIntersectionType(), Intersector3f::IT_LINE);
}

TEST(Wm4IntrLine3Plane3Test, QueryRefersToTheLineAndPlaneItWasGiven) {
    Line3f line(Vector3f::ZERO, Vector3f::UNIT_X);
    Plane3f plane(Vector3f::UNIT_Z, 1.0f);
    IntrLine3Plane3f query(line, plane);
    EXPECT_EQ(&query.GetLine(), &line);
    EXPECT_EQ(&query.GetPlane(), &plane);
    EXPECT_FALSE(query.Find());
    // Changes to the objects are seen by the next query.
    line.Direction = Vector3f::UNIT_Z;
    plane.Constant = 2.0f;
    ASSERT_TRUE(query.Find());
    EXPECT_NEAR(query.GetLineT(), 2.0f, 1e-6f);
}

TEST(Wm4IntrLine3Plane3Test, NamedLineAndPlaneCanBeBound) {
    EXPECT_TRUE((std::is_constructible<IntrLine3Plane3f, const Line3f&, const Plane3f&>::value));
    EXPECT_TRUE((std::is_constructible<IntrLine3Plane3f, Line3f&, Plane3f&>::value));
}

TEST(Wm4IntrLine3Plane3Test, TemporaryLineOrPlaneCannotBeBound) {
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, Line3f, const Plane3f&>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, Line3f&&, const Plane3f&>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, const Line3f&, Plane3f>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, const Line3f&, Plane3f&&>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, Line3f, Plane3f>::value));
    EXPECT_FALSE((std::is_constructible<Wm4::IntrLine3Plane3<double>, Wm4::Line3<double>,
                                        const Wm4::Plane3<double>&>::value));
}

TEST(Wm4IntrLine3Plane3Test, ConstTemporaryLineOrPlaneCannotBeBound) {
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, const Line3f, const Plane3f&>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, const Line3f&, const Plane3f>::value));
    EXPECT_FALSE((std::is_constructible<IntrLine3Plane3f, const Line3f, const Plane3f>::value));
}

} // namespace
