// The scale sub-gizmo: per axis a shaft, an end square and an active frame, plus the centre
// triangles; their shapes, colours, visibility, the frame shown while an axis is dragged, and
// hovering.
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNode.h"

#include "scenegraph/mxLine.h"
#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

using mx::mxGizmoNode;
using mx::mxGizmoNodeScale;
using mx::mxLine;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::ColorIs;
using mx::test::csHidden;
using mx::test::csShown;
using mx::test::HoveredColor;
using mx::test::MarkCounter;
using mx::test::MatrixNear;
using mx::test::mxExposedGizmoNode;
using mx::test::NormalColor;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// The point with component axis equal to along and components axis + 1 and axis + 2 equal to
// first and second.
Vec3 about(unsigned int axis, float along, float first, float second) {
    Vec3 v(0.0f, 0.0f, 0.0f);
    v[static_cast<int>(axis)] = along;
    v[static_cast<int>((axis + 1) % 3)] = first;
    v[static_cast<int>((axis + 2) % 3)] = second;
    return v;
}

void expectIndices(const mxLine& line, const std::vector<unsigned int>& expected) {
    EXPECT_EQ(expected, line.getIndices());
}

void expectFrameCulling(const mxGizmoNodeScale& scale, mxSpatial::CullingMode x,
                        mxSpatial::CullingMode y, mxSpatial::CullingMode z) {
    EXPECT_EQ(x, scale.getActiveFrame(0)->getCullingMode());
    EXPECT_EQ(y, scale.getActiveFrame(1)->getCullingMode());
    EXPECT_EQ(z, scale.getActiveFrame(2)->getCullingMode());
}

void expectPairCulling(const mxGizmoNodeScale& scale, unsigned int axis,
                       mxSpatial::CullingMode mode) {
    SCOPED_TRACE(axis);
    EXPECT_EQ(mode, scale.getAxis(axis)->getCullingMode());
    EXPECT_EQ(mode, scale.getEndSquare(axis)->getCullingMode());
}

void expectPairColor(const mxGizmoNodeScale& scale, unsigned int axis,
                     const Wm4::ColorRGBA& color) {
    SCOPED_TRACE(axis);
    EXPECT_TRUE(ColorIs(scale.getAxis(axis)->getColor(), color));
    EXPECT_TRUE(ColorIs(scale.getEndSquare(axis)->getColor(), color));
}

// --- layout and shapes ----------------------------------------------------------------------

TEST(mxGizmoNodeScaleTest, LinesAreChildrenNineToEighteenInBuildOrder) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxGizmoNodeScale& scale = node->getScaleGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const int pair = static_cast<int>(9 + 2 * axis);
        ASSERT_NE(nullptr, scale.getAxis(axis));
        ASSERT_NE(nullptr, scale.getEndSquare(axis));
        ASSERT_NE(nullptr, scale.getActiveFrame(axis));
        EXPECT_EQ(static_cast<mxSpatial*>(scale.getAxis(axis)), node->getChild(pair));
        EXPECT_EQ(static_cast<mxSpatial*>(scale.getEndSquare(axis)), node->getChild(pair + 1));
        EXPECT_EQ(static_cast<mxSpatial*>(scale.getActiveFrame(axis)),
                  node->getChild(static_cast<int>(15 + axis)));
    }
    ASSERT_NE(nullptr, scale.getCentreTriangles());
    EXPECT_EQ(static_cast<mxSpatial*>(scale.getCentreTriangles()), node->getChild(18));
    EXPECT_EQ(nullptr, scale.getAxis(3));
    EXPECT_EQ(nullptr, scale.getEndSquare(3));
    EXPECT_EQ(nullptr, scale.getActiveFrame(3));
}

TEST(mxGizmoNodeScaleTest, ShaftRunsFromTheOriginToTheUnitAxisTwoPixelsWide) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* shaft = node->getScaleGizmo().getAxis(axis);
        ASSERT_EQ(2u, shaft->getVertexCount());
        EXPECT_TRUE(VectorNear(shaft->getVertexPosition(0), Vec3(0.0f, 0.0f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(shaft->getVertexPosition(1), UnitAxis(axis), 0.0));
        expectIndices(*shaft, {0, 1});
        EXPECT_TRUE(shaft->getLocalTransform().IsIdentity());
        // Thinner than the translate shafts.
        EXPECT_EQ(2.0f, shaft->getWidth());
        EXPECT_EQ(mxLine::DRAW_POLYLINE, shaft->getDrawMethod());
    }
}

TEST(mxGizmoNodeScaleTest, EndSquareIsAClosedSquareOfSideZeroPointTwo) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* square = node->getScaleGizmo().getEndSquare(axis);
        ASSERT_EQ(4u, square->getVertexCount());
        EXPECT_TRUE(VectorNear(square->getVertexPosition(0), Vec3(-0.1f, 0.1f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(square->getVertexPosition(1), Vec3(0.1f, 0.1f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(square->getVertexPosition(2), Vec3(0.1f, -0.1f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(square->getVertexPosition(3), Vec3(-0.1f, -0.1f, 0.0f), 0.0));
        expectIndices(*square, {0, 1, 2, 3, 0});
        EXPECT_TRUE(square->isStrip());
        EXPECT_EQ(mxLine::DRAW_POLYLINE, square->getDrawMethod());
        EXPECT_EQ(1.8f, square->getWidth());
    }
}

TEST(mxGizmoNodeScaleTest, EndSquareFacesAlongItsAxisAtTheTip) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mx::mxGenericTransformation<float>& local =
            node->getScaleGizmo().getEndSquare(axis)->getLocalTransform();
        // Columns: local x to axis + 1, local y to axis + 2, the normal (local z) to the axis.
        const Vec3 columns[3] = {UnitAxis(axis + 1), UnitAxis(axis + 2), UnitAxis(axis)};
        Wm4::Matrix3<float> expected;
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                expected[r][c] = columns[c][r];
            }
        }
        EXPECT_TRUE(local.IsRSMatrix());
        EXPECT_TRUE(MatrixNear(local.GetRotate(), expected, 0.0));
        EXPECT_TRUE(VectorNear(local.GetScale(), Vec3(1.0f, 1.0f, 1.0f), 0.0));
        EXPECT_TRUE(VectorNear(local.GetTranslate(), UnitAxis(axis), 0.0));
        // A proper rotation: the square is not mirrored.
        EXPECT_EQ(1.0f, local.GetRotate().Determinant());
        // Its corner (0.1, 0.1, 0) lands at the tip, 0.1 along each of the two other axes.
        EXPECT_TRUE(VectorNear(local.ApplyForward(Vec3(0.1f, 0.1f, 0.0f)),
                               about(axis, 1.0f, 0.1f, 0.1f), 1e-7));
    }
}

TEST(mxGizmoNodeScaleTest, ActiveFrameIsAUnitSquareWithACrossAtDistanceOneDrawnAsSegments) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* frame = node->getScaleGizmo().getActiveFrame(axis);
        ASSERT_EQ(8u, frame->getVertexCount());
        const Vec3 expected[8] = {about(axis, 1.0f, -0.5f, -0.5f), about(axis, 1.0f, -0.5f, 0.5f),
                                  about(axis, 1.0f, 0.5f, 0.5f),   about(axis, 1.0f, 0.5f, -0.5f),
                                  about(axis, 1.0f, -0.5f, 0.0f),  about(axis, 1.0f, 0.5f, 0.0f),
                                  about(axis, 1.0f, 0.0f, -0.5f),  about(axis, 1.0f, 0.0f, 0.5f)};
        for (unsigned int v = 0; v < 8; ++v) {
            SCOPED_TRACE(v);
            EXPECT_TRUE(VectorNear(frame->getVertexPosition(v), expected[v], 0.0));
        }
        expectIndices(*frame, {0, 1, 1, 2, 2, 3, 3, 0, 4, 5, 6, 7});
        EXPECT_FALSE(frame->isStrip());
        EXPECT_EQ(mxLine::DRAW_SEGMENTS, frame->getDrawMethod());
        EXPECT_TRUE(frame->getLocalTransform().IsIdentity());
        // Never given a width: the host's default.
        EXPECT_EQ(1.0f, frame->getWidth());
    }
}

TEST(mxGizmoNodeScaleTest, CentreTrianglesJoinTheAxesAtHalfAndAtSevenTenths) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxLine* triangles = node->getScaleGizmo().getCentreTriangles();
    ASSERT_EQ(6u, triangles->getVertexCount());
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(0), Vec3(0.5f, 0.0f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(1), Vec3(0.0f, 0.5f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(2), Vec3(0.0f, 0.0f, 0.5f), 0.0));
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(3), Vec3(0.7f, 0.0f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(4), Vec3(0.0f, 0.7f, 0.0f), 0.0));
    EXPECT_TRUE(VectorNear(triangles->getVertexPosition(5), Vec3(0.0f, 0.0f, 0.7f), 0.0));
    expectIndices(*triangles, {0, 1, 1, 2, 2, 0, 3, 4, 4, 5, 5, 3});
    EXPECT_TRUE(triangles->isStrip());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, triangles->getDrawMethod());
    EXPECT_EQ(2.0f, triangles->getWidth());
    EXPECT_TRUE(triangles->getLocalTransform().IsIdentity());
}

TEST(mxGizmoNodeScaleTest, NewNodeColoursAxesNormallyAndFramesAndTrianglesWhite) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxGizmoNodeScale& scale = node->getScaleGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairColor(scale, axis, NormalColor(axis));
        EXPECT_TRUE(ColorIs(scale.getActiveFrame(axis)->getColor(), Wm4::ColorRGBA::WHITE));
    }
    EXPECT_TRUE(ColorIs(scale.getCentreTriangles()->getColor(), Wm4::ColorRGBA::WHITE));
}

// --- visibility -----------------------------------------------------------------------------

TEST(mxGizmoNodeScaleTest, MaskFiveShowsXAndZWithTrianglesAndMaskZeroKeepsTheTrianglesCulling) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.getActiveFrame(0)->setCullingMode(csShown);
    scale.setEnabledAxis(0x05);
    scale.applyEnabledAxis(true);
    expectPairCulling(scale, 0, csShown);
    expectPairCulling(scale, 1, csHidden);
    expectPairCulling(scale, 2, csShown);
    expectFrameCulling(scale, csHidden, csHidden, csHidden);
    EXPECT_EQ(csShown, scale.getCentreTriangles()->getCullingMode());

    // No axis bit: everything else is hidden, the triangles stay as they were.
    scale.setEnabledAxis(0x00);
    scale.applyEnabledAxis(false);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(scale, axis, csHidden);
    }
    EXPECT_EQ(csShown, scale.getCentreTriangles()->getCullingMode());
}

TEST(mxGizmoNodeScaleTest, WithoutAnAxisBitHiddenTrianglesStayHiddenWhenShown) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    ASSERT_EQ(csHidden, scale.getCentreTriangles()->getCullingMode());
    scale.setEnabledAxis(0x00);
    scale.applyEnabledAxis(true);
    EXPECT_EQ(csHidden, scale.getCentreTriangles()->getCullingMode());
    // Bits 3 to 7 count as no axis.
    scale.setEnabledAxis(0xF8);
    scale.applyEnabledAxis(true);
    EXPECT_EQ(csHidden, scale.getCentreTriangles()->getCullingMode());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(scale, axis, csHidden);
    }
}

TEST(mxGizmoNodeScaleTest, WithOnlyBitsAboveTwoShownTrianglesStayShownWhenHidden) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.applyEnabledAxis(true);
    ASSERT_EQ(csShown, scale.getCentreTriangles()->getCullingMode());
    scale.setEnabledAxis(0xF8);
    scale.applyEnabledAxis(false);
    EXPECT_EQ(csShown, scale.getCentreTriangles()->getCullingMode());
}

TEST(mxGizmoNodeScaleTest, HidingWithAnAxisBitHidesEverythingIncludingTheTriangles) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.applyEnabledAxis(true);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(scale, axis, csShown);
    }
    scale.setActiveState(2, true);
    scale.setEnabledAxis(0x02);
    scale.applyEnabledAxis(false);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(scale, axis, csHidden);
    }
    expectFrameCulling(scale, csHidden, csHidden, csHidden);
    EXPECT_EQ(csHidden, scale.getCentreTriangles()->getCullingMode());
}

// --- the frame of the dragged axis ------------------------------------------------------------

TEST(mxGizmoNodeScaleTest, SetActiveStateOfYInScaleModeShowsOnlyTheYFrameAndHidesItAgain) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    const mxGizmoNodeScale& scale = node->getScaleGizmo();
    expectFrameCulling(scale, csHidden, csHidden, csHidden);

    node->setActiveState(1, true);
    expectFrameCulling(scale, csHidden, csShown, csHidden);
    node->setActiveState(1, false);
    expectFrameCulling(scale, csHidden, csHidden, csHidden);
    // Shafts and squares are left as the mode put them.
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(scale, axis, csShown);
    }
}

TEST(mxGizmoNodeScaleTest, SubGizmoSetActiveStateOfYShowsOnlyTheYFrameAndHidesItAgain) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.setActiveState(1, true);
    expectFrameCulling(scale, csHidden, csShown, csHidden);
    scale.setActiveState(1, false);
    expectFrameCulling(scale, csHidden, csHidden, csHidden);
}

TEST(mxGizmoNodeScaleTest, ActivatingAnotherAxisHidesTheFrameShownBefore) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.setActiveState(0, true);
    expectFrameCulling(scale, csShown, csHidden, csHidden);
    scale.setActiveState(2, true);
    expectFrameCulling(scale, csHidden, csHidden, csShown);
    // Ending the drag of X hides every frame, Z's included.
    scale.setActiveState(0, false);
    expectFrameCulling(scale, csHidden, csHidden, csHidden);
}

TEST(mxGizmoNodeScaleTest, SetActiveStateOfADisabledOrMissingAxisChangesNoFrame) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.setActiveState(0, true);
    scale.setEnabledAxis(0x05);
    scale.setActiveState(1, true);
    expectFrameCulling(scale, csShown, csHidden, csHidden);
    scale.setActiveState(3, true);
    scale.setActiveState(3, false);
    expectFrameCulling(scale, csShown, csHidden, csHidden);
    // A mask with bit 3 does not enable a fourth axis.
    scale.setEnabledAxis(0xFF);
    scale.setActiveState(3, false);
    expectFrameCulling(scale, csShown, csHidden, csHidden);
}

TEST(mxGizmoNodeScaleTest, NodeSetActiveStateOutsideScaleModeLeavesTheFramesAlone) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->setActiveState(1, true);
    expectFrameCulling(node->getScaleGizmo(), csHidden, csHidden, csHidden);
}

// --- colours --------------------------------------------------------------------------------

TEST(mxGizmoNodeScaleTest, SetDefaultColorsMarksTheOwnerOncePerAxisEvenWhenAlreadyNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    MarkCounter counter(*node);
    scale.setDefaultColors(true);
    EXPECT_EQ(3u, counter.marks());
    scale.setDefaultColors(false);
    EXPECT_EQ(3u, counter.marks());
}

TEST(mxGizmoNodeScaleTest, SetDefaultColorsPutsTheTrianglesBackToWhiteAndLeavesTheFrames) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.highlightAxis(0);
    scale.getCentreTriangles()->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 0.5f));
    scale.getActiveFrame(1)->setColor(Wm4::ColorRGBA(0.2f, 0.2f, 0.2f, 1.0f));
    scale.setDefaultColors(false);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairColor(scale, axis, NormalColor(axis));
    }
    // White, alpha kept.
    EXPECT_TRUE(
        ColorIs(scale.getCentreTriangles()->getColor(), Wm4::ColorRGBA(1.0f, 1.0f, 1.0f, 0.5f)));
    EXPECT_TRUE(
        ColorIs(scale.getActiveFrame(1)->getColor(), Wm4::ColorRGBA(0.2f, 0.2f, 0.2f, 1.0f)));
}

TEST(mxGizmoNodeScaleTest, HighlightingYRecoloursItsShaftAndSquareAndMarksTheOwnerOnce) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.getCentreTriangles()->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f));
    MarkCounter counter(*node);
    scale.highlightAxis(1);
    EXPECT_EQ(1u, counter.marks());
    expectPairColor(scale, 0, NormalColor(0));
    expectPairColor(scale, 1, HoveredColor(1));
    expectPairColor(scale, 2, NormalColor(2));
    EXPECT_TRUE(ColorIs(scale.getCentreTriangles()->getColor(), Wm4::ColorRGBA::WHITE));
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(ColorIs(scale.getActiveFrame(axis)->getColor(), Wm4::ColorRGBA::WHITE));
    }

    MarkCounter again(*node);
    scale.highlightAxis(1);
    EXPECT_EQ(0u, again.marks());
    expectPairColor(scale, 1, HoveredColor(1));
}

TEST(mxGizmoNodeScaleTest, HighlightingAnotherAxisPutsTheFirstBackToNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.highlightAxis(1);
    MarkCounter counter(*node);
    scale.highlightAxis(0);
    EXPECT_EQ(1u, counter.marks());
    expectPairColor(scale, 0, HoveredColor(0));
    expectPairColor(scale, 1, NormalColor(1));
    expectPairColor(scale, 2, NormalColor(2));
}

TEST(mxGizmoNodeScaleTest, HighlightingAnAxisAboveZLeavesEvenTheTrianglesAlone) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeScale& scale = node->editScaleGizmo();
    scale.highlightAxis(2);
    scale.getCentreTriangles()->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f));
    MarkCounter counter(*node);
    scale.highlightAxis(3);
    EXPECT_EQ(0u, counter.marks());
    expectPairColor(scale, 2, HoveredColor(2));
    EXPECT_TRUE(
        ColorIs(scale.getCentreTriangles()->getColor(), Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f)));
}

// --- without a node -------------------------------------------------------------------------

TEST(mxGizmoNodeScaleTest, BuildWithoutOwnerBuildsNothing) {
    mxGizmoNodeScale scale;
    scale.build(nullptr);
    EXPECT_EQ(nullptr, scale.getOwner());
    EXPECT_EQ(nullptr, scale.getAxis(0));
    EXPECT_EQ(nullptr, scale.getEndSquare(0));
    EXPECT_EQ(nullptr, scale.getActiveFrame(0));
    EXPECT_EQ(nullptr, scale.getCentreTriangles());
}

TEST(mxGizmoNodeScaleTest, UnbuiltSubGizmoSkipsItsMissingLines) {
    mxGizmoNodeScale scale;
    scale.applyEnabledAxis(true);
    scale.applyEnabledAxis(false);
    scale.setActiveState(0, true);
    scale.setActiveState(2, false);
    scale.setDefaultColors(true);
    scale.highlightAxis(1);
    EXPECT_EQ(nullptr, scale.getOwner());
    EXPECT_EQ(nullptr, scale.getCentreTriangles());
    EXPECT_EQ(nullptr, scale.getActiveFrame(0));
}

TEST(mxGizmoNodeScaleTest, FramesBuiltAloneTakeTheCurrentHighlightColour) {
    mxGizmoNodeScale scale;
    scale.setHighlightColor(Wm4::ColorRGBA(1.0f, 0.5f, 0.0f, 0.25f));
    scale.buildActiveFrames();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        ASSERT_NE(nullptr, scale.getActiveFrame(axis));
        // Red, green and blue only: the frame keeps its own opaque alpha.
        EXPECT_TRUE(ColorIs(scale.getActiveFrame(axis)->getColor(),
                            Wm4::ColorRGBA(1.0f, 0.5f, 0.0f, 1.0f)));
        EXPECT_EQ(nullptr, scale.getActiveFrame(axis)->getParent());
    }
}

} // namespace
