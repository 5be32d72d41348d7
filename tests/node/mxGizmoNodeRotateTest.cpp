// The rotate sub-gizmo: one 64-point unit circle per axis, its shape, colours, visibility
// and hovering.
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNode.h"

#include "scenegraph/mxLine.h"
#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using mx::mxGizmoNode;
using mx::mxGizmoNodeRotate;
using mx::mxLine;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::ColorIs;
using mx::test::HoveredColor;
using mx::test::MarkCounter;
using mx::test::NormalColor;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

constexpr double csPi = 3.14159265358979323846;

// Point k of circle axis: X turns from +Y towards +Z, Y from +Z towards +X, Z from +X towards
// +Y.
Vec3 circlePoint(unsigned int axis, unsigned int k) {
    const double angle = 2.0 * csPi * static_cast<double>(k) / 64.0;
    const float c = static_cast<float>(std::cos(angle));
    const float s = static_cast<float>(std::sin(angle));
    switch (axis) {
    case 0:
        return Vec3(0.0f, c, s);
    case 1:
        return Vec3(s, 0.0f, c);
    default:
        return Vec3(c, s, 0.0f);
    }
}

void expectCircleColors(const mxGizmoNodeRotate& rotate, const Wm4::ColorRGBA& x,
                        const Wm4::ColorRGBA& y, const Wm4::ColorRGBA& z) {
    EXPECT_TRUE(ColorIs(rotate.getCircle(0)->getColor(), x));
    EXPECT_TRUE(ColorIs(rotate.getCircle(1)->getColor(), y));
    EXPECT_TRUE(ColorIs(rotate.getCircle(2)->getColor(), z));
}

void expectCircleCulling(const mxGizmoNodeRotate& rotate, mxSpatial::CullingMode x,
                         mxSpatial::CullingMode y, mxSpatial::CullingMode z) {
    EXPECT_EQ(x, rotate.getCircle(0)->getCullingMode());
    EXPECT_EQ(y, rotate.getCircle(1)->getCullingMode());
    EXPECT_EQ(z, rotate.getCircle(2)->getCullingMode());
}

TEST(mxGizmoNodeRotateTest, CirclesAreChildrenSixToEightInAxisOrder) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        ASSERT_NE(nullptr, node->getRotateGizmo().getCircle(axis));
        EXPECT_EQ(static_cast<mxSpatial*>(node->getRotateGizmo().getCircle(axis)),
                  node->getChild(static_cast<int>(6 + axis)));
    }
    EXPECT_EQ(nullptr, node->getRotateGizmo().getCircle(3));
}

TEST(mxGizmoNodeRotateTest, CircleXStartsAtUnitYAndReachesUnitZAtAQuarterTurn) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxLine* circle = node->getRotateGizmo().getCircle(0);
    EXPECT_TRUE(VectorNear(circle->getVertexPosition(0), Vec3(0.0f, 1.0f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(circle->getVertexPosition(16), Vec3(0.0f, 0.0f, 1.0f), 1e-7));
    EXPECT_TRUE(VectorNear(circle->getVertexPosition(32), Vec3(0.0f, -1.0f, 0.0f), 1e-7));
    EXPECT_TRUE(VectorNear(circle->getVertexPosition(48), Vec3(0.0f, 0.0f, -1.0f), 1e-7));
}

TEST(mxGizmoNodeRotateTest, CircleYStartsAtUnitZAndCircleZAtUnitX) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxLine* y = node->getRotateGizmo().getCircle(1);
    const mxLine* z = node->getRotateGizmo().getCircle(2);
    EXPECT_TRUE(VectorNear(y->getVertexPosition(0), Vec3(0.0f, 0.0f, 1.0f), 0.0));
    EXPECT_TRUE(VectorNear(y->getVertexPosition(16), Vec3(1.0f, 0.0f, 0.0f), 1e-7));
    EXPECT_TRUE(VectorNear(z->getVertexPosition(0), Vec3(1.0f, 0.0f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(z->getVertexPosition(16), Vec3(0.0f, 1.0f, 0.0f), 1e-7));
}

TEST(mxGizmoNodeRotateTest, EveryCirclePointLiesOnTheUnitCircleAboutItsAxisInEqualSteps) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_EQ(64u, mxGizmoNodeRotate::csCirclePoints);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* circle = node->getRotateGizmo().getCircle(axis);
        ASSERT_EQ(64u, circle->getVertexCount());
        for (unsigned int k = 0; k < 64u; ++k) {
            SCOPED_TRACE(k);
            const Vec3& point = circle->getVertexPosition(k);
            EXPECT_TRUE(VectorNear(point, circlePoint(axis, k), 1e-7));
            EXPECT_EQ(0.0f, point[static_cast<int>(axis)]);
            EXPECT_NEAR(1.0, point.Length(), 1e-6);
        }
    }
}

TEST(mxGizmoNodeRotateTest, IndicesRunThroughPointSixtyTwoThenBackToZeroLeavingPointSixtyThree) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* circle = node->getRotateGizmo().getCircle(axis);
        // 64 indices, not 65: the closing segment spans two steps.
        ASSERT_EQ(64u, circle->getIndexCount());
        for (unsigned int k = 0; k < 63u; ++k) {
            EXPECT_EQ(k, circle->getIndex(k));
        }
        EXPECT_EQ(0u, circle->getIndex(63));
        // Point 63 is never drawn, on purpose.
        const std::set<unsigned int> used(circle->getIndices().begin(), circle->getIndices().end());
        EXPECT_EQ(0u, used.count(63u));
        EXPECT_EQ(63u, used.size());
        EXPECT_TRUE(circle->checkRenderable(false));
    }
}

TEST(mxGizmoNodeRotateTest, CircleIsATwoPixelPolylineAtTheNodeOrigin) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* circle = node->getRotateGizmo().getCircle(axis);
        EXPECT_EQ(mxLine::DRAW_POLYLINE, circle->getDrawMethod());
        EXPECT_TRUE(circle->isStrip());
        EXPECT_EQ(2.0f, circle->getWidth());
        EXPECT_TRUE(circle->getLocalTransform().IsIdentity());
        EXPECT_NEAR(1.0f, circle->getModelBound().getRadius(), 1e-3f);
    }
}

TEST(mxGizmoNodeRotateTest, NewNodeShowsEachCircleInItsNormalColourOpaque) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    expectCircleColors(node->getRotateGizmo(), NormalColor(0), NormalColor(1), NormalColor(2));
}

// --- visibility -----------------------------------------------------------------------------

TEST(mxGizmoNodeRotateTest, ShowingWithMaskSixShowsYAndZOnlyAndHidingHidesAll) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.setEnabledAxis(0x06);
    rotate.applyEnabledAxis(true);
    expectCircleCulling(rotate, mxSpatial::CULL_ALWAYS, mxSpatial::CULL_DYNAMIC,
                        mxSpatial::CULL_DYNAMIC);
    rotate.applyEnabledAxis(false);
    expectCircleCulling(rotate, mxSpatial::CULL_ALWAYS, mxSpatial::CULL_ALWAYS,
                        mxSpatial::CULL_ALWAYS);
}

TEST(mxGizmoNodeRotateTest, ShowingWithOnlyBitsAboveTwoShowsNoCircle) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.applyEnabledAxis(true);
    expectCircleCulling(rotate, mxSpatial::CULL_DYNAMIC, mxSpatial::CULL_DYNAMIC,
                        mxSpatial::CULL_DYNAMIC);
    rotate.setEnabledAxis(0xF8);
    rotate.applyEnabledAxis(true);
    expectCircleCulling(rotate, mxSpatial::CULL_ALWAYS, mxSpatial::CULL_ALWAYS,
                        mxSpatial::CULL_ALWAYS);
}

// --- colours --------------------------------------------------------------------------------

TEST(mxGizmoNodeRotateTest, SetDefaultColorsMarksTheOwnerOncePerAxisEvenWhenAlreadyNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    MarkCounter counter(*node);
    rotate.setDefaultColors(true);
    EXPECT_EQ(3u, counter.marks());
    rotate.setDefaultColors(false);
    EXPECT_EQ(3u, counter.marks());
    expectCircleColors(rotate, NormalColor(0), NormalColor(1), NormalColor(2));
}

TEST(mxGizmoNodeRotateTest, SetDefaultColorsPutsBackTheNormalRgbAndKeepsAlpha) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.highlightAxis(2);
    rotate.getCircle(0)->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 0.5f));
    rotate.setDefaultColors(false);
    const Wm4::ColorRGB& x = mxGizmoNode::csColors[0];
    expectCircleColors(rotate, Wm4::ColorRGBA(x.R(), x.G(), x.B(), 0.5f), NormalColor(1),
                       NormalColor(2));
}

TEST(mxGizmoNodeRotateTest, HighlightingYRecoloursItsCircleOnlyAndMarksTheOwnerOnce) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    MarkCounter counter(*node);
    rotate.highlightAxis(1);
    EXPECT_EQ(1u, counter.marks());
    expectCircleColors(rotate, NormalColor(0), HoveredColor(1), NormalColor(2));

    MarkCounter again(*node);
    rotate.highlightAxis(1);
    EXPECT_EQ(0u, again.marks());
    expectCircleColors(rotate, NormalColor(0), HoveredColor(1), NormalColor(2));
}

TEST(mxGizmoNodeRotateTest, HighlightingAnotherCirclePutsTheFirstBackToNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.highlightAxis(1);
    MarkCounter counter(*node);
    rotate.highlightAxis(0);
    EXPECT_EQ(1u, counter.marks());
    expectCircleColors(rotate, HoveredColor(0), NormalColor(1), NormalColor(2));
}

TEST(mxGizmoNodeRotateTest, HighlightingACircleAboveZChangesNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.highlightAxis(2);
    MarkCounter counter(*node);
    rotate.highlightAxis(3);
    EXPECT_EQ(0u, counter.marks());
    expectCircleColors(rotate, NormalColor(0), NormalColor(1), HoveredColor(2));
}

TEST(mxGizmoNodeRotateTest, HighlightLeavesTheDrawMethodAndCullingAlone) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeRotate& rotate = node->editRotateGizmo();
    rotate.getCircle(1)->setDrawMethod(mxLine::DRAW_SEGMENTS);
    rotate.highlightAxis(1);
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, rotate.getCircle(1)->getDrawMethod());
    EXPECT_EQ(mxSpatial::CULL_ALWAYS, rotate.getCircle(1)->getCullingMode());
}

// --- without a node -------------------------------------------------------------------------

TEST(mxGizmoNodeRotateTest, BuildWithoutOwnerBuildsNothing) {
    mxGizmoNodeRotate rotate;
    rotate.build(nullptr);
    EXPECT_EQ(nullptr, rotate.getOwner());
    EXPECT_EQ(nullptr, rotate.getCircle(0));
}

TEST(mxGizmoNodeRotateTest, UnbuiltSubGizmoSkipsItsMissingCircles) {
    mxGizmoNodeRotate rotate;
    rotate.applyEnabledAxis(true);
    rotate.setDefaultColors(true);
    rotate.highlightAxis(1);
    EXPECT_EQ(nullptr, rotate.getOwner());
    EXPECT_EQ(nullptr, rotate.getCircle(1));
}

} // namespace
