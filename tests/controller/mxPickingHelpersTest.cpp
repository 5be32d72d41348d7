// Tests for the screen-space arithmetic under the controllers' hovering and picking: the
// projection of gizmo points to pixels, the pixel distance from the mouse to a projected
// polyline or segment, the foot of a perpendicular on a line, and the safe normalisation.

#include "controller/mxPickingHelpers.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using mx::mxCamera;
using mx::impl::closestPointOnLine;
using mx::impl::distanceToPolyline;
using mx::impl::distanceToSegment;
using mx::impl::intersectLineAndPlane;
using mx::impl::isInsideView;
using mx::impl::normalizeVector;
using mx::impl::projectToScreen;
using mx::test::Rotation;
using mx::test::VectorNear;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Transform = mx::mxGenericTransformation<float>;
using Polyline = std::vector<Vec2>;

namespace {

// Projected coordinates are a few hundred pixels: a thousandth of a pixel is far below
// anything a pick threshold could notice, and well above float rounding at that size.
constexpr float csPixelTolerance = 1e-3f;

// Distances in the 2-D tests stay below 20 units: a few ulps of that.
constexpr float csDistanceTolerance = 1e-5f;

// The round-number camera: eye at (0, 0, 10) looking along -Z with up +Y and right +X, so a
// world point (x, y, z) has view coordinates (x, y) and depth 10 - z. A 90 degree vertical
// field of view at near 1 makes the near plane [-aspect, aspect] x [-1, 1], so under
// perspective the normalised device coordinates are (x / (aspect * depth), y / depth).
bool PlaceRoundNumberCamera(mxCamera& camera, float aspect) {
    camera.setFrame(Vec3(0.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, -1.0f), Vec3(0.0f, 1.0f, 0.0f),
                    Vec3(1.0f, 0.0f, 0.0f));
    return camera.setFrustum(90.0f, aspect, 1.0f, 1000.0f);
}

// The pixel position of local through gizmoWorld and the camera, over a width x height view.
Vec2 Project(const mxCamera& camera, const Transform& gizmoWorld, const Vec3& local, int width,
             int height) {
    Vec2 out(-12345.0f, -12345.0f);
    projectToScreen(camera.getViewProjectionMatrix(), gizmoWorld, local, out, width, height);
    return out;
}

::testing::AssertionResult PixelNear(const Vec2& actual, float x, float y) {
    if (std::fabs(actual.X() - x) <= csPixelTolerance &&
        std::fabs(actual.Y() - y) <= csPixelTolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "pixel (" << actual.X() << ", " << actual.Y()
                                         << ") is not near (" << x << ", " << y << ")";
}

::testing::AssertionResult PointNear(const Vec2& actual, float x, float y, float tolerance) {
    if (std::fabs(actual.X() - x) <= tolerance && std::fabs(actual.Y() - y) <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "point (" << actual.X() << ", " << actual.Y()
                                         << ") is not near (" << x << ", " << y << ")";
}

// ---- projectToScreen ----

TEST(mxPickingHelpersTest, OriginProjectsToViewportCentre) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // The centre ray is exactly -Z: the origin is at NDC (0, 0), pixel (100, 100).
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.0f, 0.0f, 0.0f), 200, 200), 100.0f, 100.0f));
}

TEST(mxPickingHelpersTest, PointOneUnitRightAtDepthTenProjectsTenPixelsRightOfCentre) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // Depth 10, x = 1: NDC x = 1/10, a tenth of the half-width 100: pixel x = 110.
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(1.0f, 0.0f, 0.0f), 200, 200), 110.0f, 100.0f));
    // And to the left: 90.
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(-1.0f, 0.0f, 0.0f), 200, 200), 90.0f, 100.0f));
}

TEST(mxPickingHelpersTest, PointAboveAxisGetsLargerPixelYWithoutFlip) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // y = 1 at depth 10: NDC y = 0.1, pixel y = (0.1 + 1) / 2 * 200 = 110, counted from the
    // bottom of the view; y = -1 gives 90.
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.0f, 1.0f, 0.0f), 200, 200), 100.0f, 110.0f));
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.0f, -1.0f, 0.0f), 200, 200), 100.0f, 90.0f));
}

TEST(mxPickingHelpersTest, PointAtHalfTheDepthProjectsTwiceAsFarOffCentre) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // (1, 1, 5) is at depth 5: NDC (0.2, 0.2), pixels (120, 120).
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(1.0f, 1.0f, 5.0f), 200, 200), 120.0f, 120.0f));
}

TEST(mxPickingHelpersTest, GizmoWorldTransformationCarriesLocalPointIntoWorldSpace) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // Quarter turn about Z, scale 2, then a shift by (1, 2, 0): local (1, 0, 0) becomes
    // (0, 2, 0) + (1, 2, 0) = (1, 4, 0), depth 10: NDC (0.1, 0.4), pixels (110, 140).
    Transform gizmoWorld;
    gizmoWorld.SetRotate(Rotation(0.0f, 0.0f, 1.0f, Wm4::Math<float>::HALF_PI));
    gizmoWorld.SetUniformScale(2.0f);
    gizmoWorld.SetTranslate(Vec3(1.0f, 2.0f, 0.0f));
    EXPECT_TRUE(
        PixelNear(Project(camera, gizmoWorld, Vec3(1.0f, 0.0f, 0.0f), 200, 200), 110.0f, 140.0f));
    // Without the transformation the same local point would be at (110, 100).
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(1.0f, 0.0f, 0.0f), 200, 200), 110.0f, 100.0f));
}

TEST(mxPickingHelpersTest, GizmoWorldTransformationMovingPointInDepthChangesItsShrink) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // Quarter turn about Y (X goes to -Z), scale 2, shift by (1, 2, 7).
    Transform gizmoWorld;
    gizmoWorld.SetRotate(Rotation(0.0f, 1.0f, 0.0f, Wm4::Math<float>::HALF_PI));
    gizmoWorld.SetUniformScale(2.0f);
    gizmoWorld.SetTranslate(Vec3(1.0f, 2.0f, 7.0f));
    // The local origin is the shift (1, 2, 7), depth 3: NDC (1/3, 2/3), pixels
    // (100 + 100/3, 100 + 200/3) = (133.333, 166.667).
    EXPECT_TRUE(PixelNear(Project(camera, gizmoWorld, Vec3(0.0f, 0.0f, 0.0f), 200, 200),
                          100.0f + 100.0f / 3.0f, 100.0f + 200.0f / 3.0f));
    // Local (1, 0, 0) goes to (0, 0, -2) + (1, 2, 7) = (1, 2, 5), depth 5: NDC (0.2, 0.4),
    // pixels (120, 140).
    EXPECT_TRUE(
        PixelNear(Project(camera, gizmoWorld, Vec3(1.0f, 0.0f, 0.0f), 200, 200), 120.0f, 140.0f));
}

TEST(mxPickingHelpersTest, WideViewportWithMatchingAspectGivesTenPixelsPerUnitOnBothAxes) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 2.0f));
    // Aspect 2 over 400 x 200: the near plane is [-2, 2] x [-1, 1]. (3, -2, 0) at depth 10:
    // NDC (3 / 20, -2 / 10) = (0.15, -0.2), pixels (1.15 * 200, 0.8 * 100) = (230, 80),
    // 30 pixels right of and 20 below the centre (200, 100).
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(3.0f, -2.0f, 0.0f), 400, 200), 230.0f, 80.0f));
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.0f, 0.0f, 0.0f), 400, 200), 200.0f, 100.0f));
}

TEST(mxPickingHelpersTest, OrthographicProjectionMapsViewBoxToPixelsWhateverTheDepth) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    camera.setPerspective(false);
    // The view box is [-1, 1] x [-1, 1] at every depth: (0.5, -0.25) gives pixels
    // ((0.5 + 1) / 2 * 200, (-0.25 + 1) / 2 * 200) = (150, 75).
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.5f, -0.25f, 0.0f), 200, 200), 150.0f, 75.0f));
    // At depth 50 instead of 10: the same pixels.
    EXPECT_TRUE(PixelNear(Project(camera, Transform(), Vec3(0.5f, -0.25f, -40.0f), 200, 200),
                          150.0f, 75.0f));
    // At depth 5: still the same.
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(0.5f, -0.25f, 5.0f), 200, 200), 150.0f, 75.0f));
}

TEST(mxPickingHelpersTest, PointBehindCameraIsNotClippedButMirroredThroughCentre) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // (1, 1, 20) is at depth 10 - 20 = -10, and the perspective clip w is the depth: NDC
    // (1 / -10, 1 / -10) = (-0.1, -0.1), pixels (90, 90): left of and below the centre
    // although the point is right of and above the axis.
    EXPECT_TRUE(
        PixelNear(Project(camera, Transform(), Vec3(1.0f, 1.0f, 20.0f), 200, 200), 90.0f, 90.0f));
}

TEST(mxPickingHelpersTest, PointInTheEyePlaneProjectsToInfinity) {
    mxCamera camera;
    ASSERT_TRUE(PlaceRoundNumberCamera(camera, 1.0f));
    // (1, 1, 10) is at depth 0: clip w is 0 and the division gives +infinity on both axes;
    // nothing is tested beforehand.
    const Vec2 pixel = Project(camera, Transform(), Vec3(1.0f, 1.0f, 10.0f), 200, 200);
    EXPECT_EQ(std::numeric_limits<float>::infinity(), pixel.X());
    EXPECT_EQ(std::numeric_limits<float>::infinity(), pixel.Y());
}

// ---- distanceToPolyline ----

TEST(mxPickingHelpersTest, EmptyPolylineGivesMinusOne) {
    EXPECT_EQ(-1.0f, distanceToPolyline(Polyline(), Vec2(0.0f, 0.0f)));
}

TEST(mxPickingHelpersTest, SinglePointPolylineGivesMinusOne) {
    // Even with the mouse right on the point.
    EXPECT_EQ(-1.0f, distanceToPolyline(Polyline{Vec2(3.0f, 4.0f)}, Vec2(3.0f, 4.0f)));
    EXPECT_EQ(-1.0f, distanceToPolyline(Polyline{Vec2(3.0f, 4.0f)}, Vec2(0.0f, 0.0f)));
}

TEST(mxPickingHelpersTest, DegenerateSegmentGivesDistanceToItsPoint) {
    // a = b = (2, 3); p - a = (3, 4): distance 5, computed without dividing by |b - a|.
    const Vec2 a(2.0f, 3.0f);
    const float dist = distanceToPolyline(Polyline{a, a}, Vec2(5.0f, 7.0f));
    EXPECT_TRUE(std::isfinite(dist));
    EXPECT_EQ(5.0f, dist);
    EXPECT_EQ(5.0f, distanceToSegment(a, a, Vec2(5.0f, 7.0f)));
    // On the point itself: 0.
    EXPECT_EQ(0.0f, distanceToPolyline(Polyline{a, a}, a));
    EXPECT_EQ(0.0f, distanceToSegment(a, a, a));
}

// A slanted segment from (1, 2) to (4, 6): direction (3, 4), length 5, so its unit direction
// (0.6, 0.8) is not exact in float, while the perpendicular offsets 2 * (-4, 3) and
// 2 * (4, -3) from its ends give dot products of exactly 0 and distances of exactly 10.
const Vec2 csSlantA(1.0f, 2.0f);
const Vec2 csSlantB(4.0f, 6.0f);

TEST(mxPickingHelpersTest, MouseOnPerpendicularThroughFirstEndGivesDistanceToFirstEnd) {
    // (-7, 8) - (1, 2) = (-8, 6), perpendicular to (3, 4): distance |(-8, 6)| = 10.
    EXPECT_EQ(10.0f, distanceToPolyline(Polyline{csSlantA, csSlantB}, Vec2(-7.0f, 8.0f)));
    EXPECT_EQ(10.0f, distanceToSegment(csSlantA, csSlantB, Vec2(-7.0f, 8.0f)));
}

TEST(mxPickingHelpersTest, MouseOnPerpendicularThroughLastEndGivesDistanceToLastEnd) {
    // (12, 0) - (4, 6) = (8, -6), perpendicular to (3, 4): distance 10.
    EXPECT_EQ(10.0f, distanceToPolyline(Polyline{csSlantA, csSlantB}, Vec2(12.0f, 0.0f)));
    EXPECT_EQ(10.0f, distanceToSegment(csSlantA, csSlantB, Vec2(12.0f, 0.0f)));
    // A segment of length 5e-7, too short to have a direction: (5e-7, 5e-7) is above its far
    // end b = (5e-7, 0), so it measures 5e-7 to b, not sqrt(2) * 5e-7 to a.
    const Vec2 a(0.0f, 0.0f);
    const Vec2 b(5e-7f, 0.0f);
    const Vec2 p(5e-7f, 5e-7f);
    EXPECT_NEAR(5e-7f, distanceToPolyline(Polyline{a, b}, p), 1e-12f);
    EXPECT_NEAR(5e-7f, distanceToSegment(a, b, p), 1e-12f);
}

// A horizontal segment from (0, 0) to (10, 0): distances are easy to see.
const Polyline csHorizontal{Vec2(0.0f, 0.0f), Vec2(10.0f, 0.0f)};

TEST(mxPickingHelpersTest, PointBeforeFirstPointMeasuresToFirstPoint) {
    // (-3, 4) is 5 from (0, 0), 4 from the line.
    EXPECT_EQ(5.0f, distanceToPolyline(csHorizontal, Vec2(-3.0f, 4.0f)));
}

TEST(mxPickingHelpersTest, PointBeyondLastPointMeasuresToLastPoint) {
    // (13, -4) is 5 from (10, 0), 4 from the line.
    EXPECT_EQ(5.0f, distanceToPolyline(csHorizontal, Vec2(13.0f, -4.0f)));
}

TEST(mxPickingHelpersTest, PointBesideMiddleOfSegmentMeasuresPerpendicularly) {
    EXPECT_EQ(3.0f, distanceToPolyline(csHorizontal, Vec2(4.0f, 3.0f)));
    // Slanted: (1, 2) + 0.5 * (3, 4) + (-4, 3) = (-1.5, 7), 5 from the segment's middle.
    EXPECT_NEAR(5.0f, distanceToPolyline(Polyline{csSlantA, csSlantB}, Vec2(-1.5f, 7.0f)),
                csDistanceTolerance);
    // On the segment: 0.
    EXPECT_EQ(0.0f, distanceToPolyline(csHorizontal, Vec2(7.0f, 0.0f)));
}

TEST(mxPickingHelpersTest, PolylineGivesSmallestDistanceOverItsSegments) {
    // Three sides of the square [0, 10]^2, open on the left.
    const Polyline threeSides{Vec2(0.0f, 0.0f), Vec2(10.0f, 0.0f), Vec2(10.0f, 10.0f),
                              Vec2(0.0f, 10.0f)};
    // (8, 5): 5 from the bottom, 2 from the right side, 5 from the top: the middle segment wins.
    EXPECT_EQ(2.0f, distanceToPolyline(threeSides, Vec2(8.0f, 5.0f)));
    // (3, 9): 9 from the bottom, 7 from the right side, 1 from the top: the last one wins.
    EXPECT_EQ(1.0f, distanceToPolyline(threeSides, Vec2(3.0f, 9.0f)));
    // (4, 1): the first one wins.
    EXPECT_EQ(1.0f, distanceToPolyline(threeSides, Vec2(4.0f, 1.0f)));
    // (-3, 5): sqrt(9 + 25) from the left ends of the bottom and top, 13 from the right side.
    EXPECT_NEAR(std::sqrt(34.0f), distanceToPolyline(threeSides, Vec2(-3.0f, 5.0f)),
                csDistanceTolerance);
}

TEST(mxPickingHelpersTest, RepeatedPointInPolylineIsHarmless) {
    // (10, 0) twice: the segment between the copies is degenerate.
    const Polyline repeated{Vec2(0.0f, 0.0f), Vec2(10.0f, 0.0f), Vec2(10.0f, 0.0f),
                            Vec2(10.0f, 10.0f)};
    // (5, 3): 3 from the first segment, sqrt(34) from the repeated point, 5 from the last.
    const float beside = distanceToPolyline(repeated, Vec2(5.0f, 3.0f));
    EXPECT_TRUE(std::isfinite(beside));
    EXPECT_EQ(3.0f, beside);
    // (12, 0): 2 from the repeated point, which all three segments reach.
    EXPECT_EQ(2.0f, distanceToPolyline(repeated, Vec2(12.0f, 0.0f)));
    // (13, 6): 3 from the last segment.
    EXPECT_EQ(3.0f, distanceToPolyline(repeated, Vec2(13.0f, 6.0f)));
}

TEST(mxPickingHelpersTest, PolylineDistanceIsInTheUnitsOfItsPoints) {
    // The same picture at three scales: segment along x of length 10 s, point 3 s above its
    // middle; the distance is 3 s, no conversion.
    for (const float s : {0.001f, 1.0f, 1000.0f}) {
        const Polyline segment{Vec2(0.0f, 0.0f), Vec2(10.0f * s, 0.0f)};
        EXPECT_NEAR(3.0f * s, distanceToPolyline(segment, Vec2(5.0f * s, 3.0f * s)), 1e-5f * s)
            << "scale " << s;
    }
}

// ---- closestPointOnLine ----

TEST(mxPickingHelpersTest, ClosestPointOnLineIsFootOfPerpendicular) {
    Vec2 foot(-99.0f, -99.0f);
    EXPECT_EQ(3.0f,
              closestPointOnLine(Vec2(0.0f, 0.0f), Vec2(10.0f, 0.0f), Vec2(4.0f, 3.0f), foot));
    EXPECT_TRUE(PointNear(foot, 4.0f, 0.0f, 0.0f));
    // Slanted: (1, 2) + 0.5 * (3, 4) + (-4, 3) = (-1.5, 7) has its foot at (2.5, 4), 5 away.
    Vec2 slantFoot(-99.0f, -99.0f);
    EXPECT_NEAR(5.0f, closestPointOnLine(csSlantA, csSlantB, Vec2(-1.5f, 7.0f), slantFoot),
                csDistanceTolerance);
    EXPECT_TRUE(PointNear(slantFoot, 2.5f, 4.0f, csDistanceTolerance));
}

TEST(mxPickingHelpersTest, ClosestPointOnLineReachesBeyondTheSegmentEnds) {
    // A line, not a segment. (3, 13) = (1, 2) + 2 * (3, 4) + (-4, 3): its foot (7, 10) lies
    // past b = (4, 6), 5 away, while the segment itself is |(3, 13) - (4, 6)| = sqrt(50) away.
    Vec2 beyond(-99.0f, -99.0f);
    EXPECT_NEAR(5.0f, closestPointOnLine(csSlantA, csSlantB, Vec2(3.0f, 13.0f), beyond),
                csDistanceTolerance);
    EXPECT_TRUE(PointNear(beyond, 7.0f, 10.0f, csDistanceTolerance));
    EXPECT_NEAR(std::sqrt(50.0f), distanceToSegment(csSlantA, csSlantB, Vec2(3.0f, 13.0f)),
                csDistanceTolerance);
    // (2, -5) = (1, 2) - (3, 4) + (4, -3): foot (-2, -2) before a, 5 away.
    Vec2 before(-99.0f, -99.0f);
    EXPECT_NEAR(5.0f, closestPointOnLine(csSlantA, csSlantB, Vec2(2.0f, -5.0f), before),
                csDistanceTolerance);
    EXPECT_TRUE(PointNear(before, -2.0f, -2.0f, csDistanceTolerance));
}

TEST(mxPickingHelpersTest, ClosestPointOnDegenerateLineIsItsPointAtDistanceToIt) {
    const Vec2 a(2.0f, 3.0f);
    Vec2 foot(-99.0f, -99.0f);
    // (5, 7) - (2, 3) = (3, 4): 5.
    const float dist = closestPointOnLine(a, a, Vec2(5.0f, 7.0f), foot);
    EXPECT_EQ(5.0f, dist);
    EXPECT_EQ(2.0f, foot.X());
    EXPECT_EQ(3.0f, foot.Y());
}

TEST(mxPickingHelpersTest, ClosestPointOnLineShorterThanZeroToleranceIsItsFirstPoint) {
    // |b - a| = 5e-7, below the 1e-6 zero tolerance: the line has no direction, so the foot
    // is a and the distance |p - a| = 5, where the line along x would have given (3, 0) and 4.
    Vec2 foot(-99.0f, -99.0f);
    EXPECT_EQ(5.0f,
              closestPointOnLine(Vec2(0.0f, 0.0f), Vec2(5e-7f, 0.0f), Vec2(3.0f, 4.0f), foot));
    EXPECT_EQ(0.0f, foot.X());
    EXPECT_EQ(0.0f, foot.Y());
}

// ---- distanceToSegment ----

TEST(mxPickingHelpersTest, DistanceToSegmentEqualsTwoPointPolylineBitForBit) {
    const Vec2 segments[][2] = {{Vec2(0.0f, 0.0f), Vec2(10.0f, 0.0f)},
                                {csSlantA, csSlantB},
                                {Vec2(7.5f, -2.0f), Vec2(-3.0f, 4.25f)},
                                {Vec2(2.0f, 3.0f), Vec2(2.0f, 3.0f)},
                                {Vec2(0.0f, 0.0f), Vec2(5e-7f, 0.0f)}};
    int compared = 0;
    for (const auto& segment : segments) {
        const Polyline polyline{segment[0], segment[1]};
        // A grid over [-10, 15]^2 in steps of 1.25: points before, beside and beyond.
        for (int i = 0; i <= 20; ++i) {
            for (int j = 0; j <= 20; ++j) {
                const Vec2 p(-10.0f + 1.25f * static_cast<float>(i),
                             -10.0f + 1.25f * static_cast<float>(j));
                const float fromSegment = distanceToSegment(segment[0], segment[1], p);
                const float fromPolyline = distanceToPolyline(polyline, p);
                ASSERT_EQ(fromPolyline, fromSegment)
                    << "segment (" << segment[0].X() << ", " << segment[0].Y() << ") - ("
                    << segment[1].X() << ", " << segment[1].Y() << "), point (" << p.X() << ", "
                    << p.Y() << ")";
                ++compared;
            }
        }
    }
    EXPECT_EQ(5 * 21 * 21, compared);
}

TEST(mxPickingHelpersTest, DistanceToSegmentMeasuresToNearerEndOutsideAndPerpendicularlyInside) {
    const Vec2 a(0.0f, 0.0f);
    const Vec2 b(10.0f, 0.0f);
    // Before a: |(-3, 4)| = 5. Beyond b: |(3, -4)| = 5. Inside: 3 above (4, 0).
    EXPECT_EQ(5.0f, distanceToSegment(a, b, Vec2(-3.0f, 4.0f)));
    EXPECT_EQ(5.0f, distanceToSegment(a, b, Vec2(13.0f, -4.0f)));
    EXPECT_EQ(3.0f, distanceToSegment(a, b, Vec2(4.0f, 3.0f)));
    // The ends themselves: 0.
    EXPECT_EQ(0.0f, distanceToSegment(a, b, a));
    EXPECT_EQ(0.0f, distanceToSegment(a, b, b));
}

// ---- normalizeVector ----

TEST(mxPickingHelpersTest, NormalizingZeroVectorLeavesZeroAndReturnsZero) {
    Vec3 v(0.0f, 0.0f, 0.0f);
    EXPECT_EQ(0.0f, normalizeVector(v));
    EXPECT_EQ(0.0f, v.X());
    EXPECT_EQ(0.0f, v.Y());
    EXPECT_EQ(0.0f, v.Z());
}

TEST(mxPickingHelpersTest, NormalizingThreeZeroFourGivesSixTenthsZeroEightTenthsAndReturnsFive) {
    Vec3 v(3.0f, 0.0f, 4.0f);
    EXPECT_EQ(5.0f, normalizeVector(v));
    EXPECT_TRUE(VectorNear(v, Vec3(0.6f, 0.0f, 0.8f), 1e-6));
}

TEST(mxPickingHelpersTest, NormalizingNegativeVectorKeepsItsDirection) {
    // |(-2, -4, 4)| = sqrt(4 + 16 + 16) = 6.
    Vec3 v(-2.0f, -4.0f, 4.0f);
    EXPECT_EQ(6.0f, normalizeVector(v));
    EXPECT_TRUE(VectorNear(v, Vec3(-1.0f / 3.0f, -2.0f / 3.0f, 2.0f / 3.0f), 1e-6));
}

TEST(mxPickingHelpersTest, VeryShortVectorIsStillNormalised) {
    // Far below any zero tolerance, but its square 1e-20 is an ordinary float.
    Vec3 v(1e-10f, 0.0f, 0.0f);
    EXPECT_NEAR(1e-10f, normalizeVector(v), 1e-16f);
    EXPECT_TRUE(VectorNear(v, Vec3(1.0f, 0.0f, 0.0f), 1e-6));
}

TEST(mxPickingHelpersTest, VectorWhoseSquareIsSubnormalIsStillNormalised) {
    // 1e-20 squared is 1e-40, below the smallest normal float (about 1.2e-38) but not 0: the
    // length keeps about five digits and the vector is still normalised.
    Vec3 v(0.0f, -1e-20f, 0.0f);
    const float length = normalizeVector(v);
    EXPECT_NEAR(1e-20f, length, 1e-24f);
    EXPECT_TRUE(VectorNear(v, Vec3(0.0f, -1.0f, 0.0f), 1e-4));
}

TEST(mxPickingHelpersTest, VectorWhoseSquaresUnderflowToZeroBecomesZeroAndReturnsZero) {
    // 1e-30 squared is 1e-60, below the smallest subnormal float (about 1.4e-45): the sum of
    // squares is exactly 0, the length too, and the vector counts as zero.
    Vec3 v(1e-30f, -1e-30f, 1e-30f);
    EXPECT_EQ(0.0f, normalizeVector(v));
    EXPECT_EQ(0.0f, v.X());
    EXPECT_EQ(0.0f, v.Y());
    EXPECT_EQ(0.0f, v.Z());
}

TEST(mxPickingHelpersTest, VectorWithNaNComponentBecomesZeroAndReturnsZero) {
    // The length is NaN, so is its reciprocal, which is not finite.
    Vec3 v(std::numeric_limits<float>::quiet_NaN(), 1.0f, 2.0f);
    EXPECT_EQ(0.0f, normalizeVector(v));
    EXPECT_EQ(0.0f, v.X());
    EXPECT_EQ(0.0f, v.Y());
    EXPECT_EQ(0.0f, v.Z());
}

// ---------------------------------------------------------------------------------------------
// isInsideView

TEST(mxPickingHelpersTest, MousePositionsOnTheViewsEdgesAndCornersAreInside) {
    EXPECT_TRUE(isInsideView(Vec2(0.0f, 0.0f)));
    EXPECT_TRUE(isInsideView(Vec2(1.0f, 1.0f)));
    EXPECT_TRUE(isInsideView(Vec2(1.0f, 0.5f)));
    EXPECT_TRUE(isInsideView(Vec2(0.5f, 0.0f)));
}

TEST(mxPickingHelpersTest, MousePositionsJustBeyondTheViewOnEitherAxisAreOutside) {
    const float justAboveOne = std::nextafter(1.0f, 2.0f);
    const float justBelowZero = -std::numeric_limits<float>::denorm_min();
    EXPECT_FALSE(isInsideView(Vec2(justAboveOne, 0.5f)));
    EXPECT_FALSE(isInsideView(Vec2(0.5f, justAboveOne)));
    EXPECT_FALSE(isInsideView(Vec2(justBelowZero, 0.5f)));
    EXPECT_FALSE(isInsideView(Vec2(0.5f, justBelowZero)));
}

TEST(mxPickingHelpersTest, MousePositionWithNaNCoordinateIsOutside) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(isInsideView(Vec2(nan, 0.5f)));
    EXPECT_FALSE(isInsideView(Vec2(0.5f, nan)));
}

// ---------------------------------------------------------------------------------------------
// intersectLineAndPlane: the plane z = 2 (normal +Z through (5, 5, 2)) keeps the arithmetic
// exact.

TEST(mxPickingHelpersTest, LineMeetsPlaneAtTheParameterOfTheMeetingPoint) {
    float t = -1.0f;
    ASSERT_TRUE(intersectLineAndPlane(Vec3(1.0f, 2.0f, 10.0f), Vec3(0.0f, 0.0f, -2.0f),
                                      Vec3(0.0f, 0.0f, 1.0f), Vec3(5.0f, 5.0f, 2.0f), t));
    EXPECT_EQ(4.0f, t);
}

TEST(mxPickingHelpersTest, PlaneBehindTheLinesOriginGivesANegativeParameter) {
    float t = 0.0f;
    ASSERT_TRUE(intersectLineAndPlane(Vec3(0.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, 1.0f),
                                      Vec3(0.0f, 0.0f, 1.0f), Vec3(5.0f, 5.0f, 2.0f), t));
    EXPECT_EQ(-8.0f, t);
}

TEST(mxPickingHelpersTest, LineParallelToThePlaneAndOffItMeetsNothingAndLeavesTheParameter) {
    float t = 7.0f;
    EXPECT_FALSE(intersectLineAndPlane(Vec3(0.0f, 0.0f, 10.0f), Vec3(1.0f, 0.0f, 0.0f),
                                       Vec3(0.0f, 0.0f, 1.0f), Vec3(5.0f, 5.0f, 2.0f), t));
    EXPECT_EQ(7.0f, t);
}

TEST(mxPickingHelpersTest, LineLyingInThePlaneMeetsItAtParameterZero) {
    float t = 7.0f;
    EXPECT_TRUE(intersectLineAndPlane(Vec3(3.0f, -1.0f, 2.0f), Vec3(1.0f, 0.0f, 0.0f),
                                      Vec3(0.0f, 0.0f, 1.0f), Vec3(5.0f, 5.0f, 2.0f), t));
    EXPECT_EQ(0.0f, t);
}

TEST(mxPickingHelpersTest, LineWithZeroDirectionOffThePlaneMeetsNothing) {
    float t = 7.0f;
    EXPECT_FALSE(intersectLineAndPlane(Vec3(0.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, 0.0f),
                                       Vec3(0.0f, 0.0f, 1.0f), Vec3(5.0f, 5.0f, 2.0f), t));
    EXPECT_EQ(7.0f, t);
}

TEST(mxPickingHelpersTest, PlaneWithZeroNormalIsMetByNoLine) {
    // Even a line through the plane's point, which Wild Magic's query would take as lying in
    // the plane.
    float t = 7.0f;
    EXPECT_FALSE(intersectLineAndPlane(Vec3(0.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, -1.0f),
                                       Vec3(0.0f, 0.0f, 0.0f), Vec3(0.0f, 0.0f, 0.0f), t));
    EXPECT_EQ(7.0f, t);
}

} // namespace
