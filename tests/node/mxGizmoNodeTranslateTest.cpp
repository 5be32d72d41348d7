// The translate sub-gizmo: a shaft and an arrowhead per axis, their shapes, colours,
// visibility and hovering.
#include "node/mxGizmoNodeTranslate.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"

#include "scenegraph/mxLine.h"
#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using mx::mxGizmoNode;
using mx::mxGizmoNodeTranslate;
using mx::mxLine;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::ColorIs;
using mx::test::HoveredColor;
using mx::test::MarkCounter;
using mx::test::MatrixNear;
using mx::test::NormalColor;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// Shaft and arrowhead of axis both in colour.
void expectPairColor(const mxGizmoNodeTranslate& translate, unsigned int axis,
                     const Wm4::ColorRGBA& color) {
    SCOPED_TRACE(axis);
    EXPECT_TRUE(ColorIs(translate.getAxis(axis)->getColor(), color));
    EXPECT_TRUE(ColorIs(translate.getArrowHead(axis)->getColor(), color));
}

void expectPairCulling(const mxGizmoNodeTranslate& translate, unsigned int axis,
                       mxSpatial::CullingMode mode) {
    SCOPED_TRACE(axis);
    EXPECT_EQ(mode, translate.getAxis(axis)->getCullingMode());
    EXPECT_EQ(mode, translate.getArrowHead(axis)->getCullingMode());
}

TEST(mxGizmoNodeTranslateTest, ShaftAndArrowheadPerAxisAreTheNodesFirstSixChildren) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxGizmoNodeTranslate& translate = node->getTranslateGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        ASSERT_NE(nullptr, translate.getAxis(axis));
        ASSERT_NE(nullptr, translate.getArrowHead(axis));
        EXPECT_EQ(static_cast<mxSpatial*>(translate.getAxis(axis)),
                  node->getChild(static_cast<int>(2 * axis)));
        EXPECT_EQ(static_cast<mxSpatial*>(translate.getArrowHead(axis)),
                  node->getChild(static_cast<int>(2 * axis + 1)));
    }
}

TEST(mxGizmoNodeTranslateTest, GettersAboveZGiveNull) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    EXPECT_EQ(nullptr, node->getTranslateGizmo().getAxis(3));
    EXPECT_EQ(nullptr, node->getTranslateGizmo().getArrowHead(3));
}

TEST(mxGizmoNodeTranslateTest, ShaftRunsFromTheOriginToTheUnitAxisAsATwoPointPolyline) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* shaft = node->getTranslateGizmo().getAxis(axis);
        ASSERT_EQ(2u, shaft->getVertexCount());
        ASSERT_EQ(2u, shaft->getIndexCount());
        EXPECT_TRUE(VectorNear(shaft->getVertexPosition(0), Vec3(0.0f, 0.0f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(shaft->getVertexPosition(1), UnitAxis(axis), 0.0));
        EXPECT_EQ(0u, shaft->getIndex(0));
        EXPECT_EQ(1u, shaft->getIndex(1));
        EXPECT_EQ(mxLine::DRAW_POLYLINE, shaft->getDrawMethod());
        EXPECT_TRUE(shaft->isStrip());
    }
}

TEST(mxGizmoNodeTranslateTest, ShaftIsTwoAndAHalfPixelsWideAtTheNodeOrigin) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* shaft = node->getTranslateGizmo().getAxis(axis);
        EXPECT_EQ(2.5f, shaft->getWidth());
        EXPECT_TRUE(shaft->getLocalTransform().IsIdentity());
    }
}

TEST(mxGizmoNodeTranslateTest, ArrowheadHasTwoWingsMeetingAtItsOriginPointingAlongX) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    // Each wing at pi/8 from the shaft, 0.2 back from the tip.
    const float h = 0.2f * static_cast<float>(std::tan(3.14159265358979323846 / 8.0));
    EXPECT_NEAR(0.0828427f, h, 1e-6f);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mxLine* head = node->getTranslateGizmo().getArrowHead(axis);
        ASSERT_EQ(3u, head->getVertexCount());
        ASSERT_EQ(3u, head->getIndexCount());
        EXPECT_TRUE(VectorNear(head->getVertexPosition(0), Vec3(-0.2f, h, 0.0f), 1e-6));
        EXPECT_TRUE(VectorNear(head->getVertexPosition(1), Vec3(0.0f, 0.0f, 0.0f), 0.0));
        EXPECT_TRUE(VectorNear(head->getVertexPosition(2), Vec3(-0.2f, -h, 0.0f), 1e-6));
        // The wings are mirror images across the local x axis.
        EXPECT_EQ(head->getVertexPosition(0).Y(), -head->getVertexPosition(2).Y());
        EXPECT_EQ(0u, head->getIndex(0));
        EXPECT_EQ(1u, head->getIndex(1));
        EXPECT_EQ(2u, head->getIndex(2));
        EXPECT_EQ(mxLine::DRAW_POLYLINE, head->getDrawMethod());
        EXPECT_EQ(1.8f, head->getWidth());
    }
}

TEST(mxGizmoNodeTranslateTest, ArrowheadSitsUnrotatedAtTheTipOfItsShaft) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const mx::mxGenericTransformation<float>& local =
            node->getTranslateGizmo().getArrowHead(axis)->getLocalTransform();
        EXPECT_TRUE(local.IsRSMatrix());
        EXPECT_TRUE(MatrixNear(local.GetRotate(), Wm4::Matrix3<float>::IDENTITY, 0.0));
        EXPECT_TRUE(VectorNear(local.GetScale(), Vec3(1.0f, 1.0f, 1.0f), 0.0));
        EXPECT_TRUE(VectorNear(local.GetTranslate(), UnitAxis(axis), 0.0));
    }
}

TEST(mxGizmoNodeTranslateTest, NewNodeShowsEachAxisInItsNormalColourOpaque) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairColor(node->getTranslateGizmo(), axis, NormalColor(axis));
    }
}

// --- visibility -----------------------------------------------------------------------------

TEST(mxGizmoNodeTranslateTest, ShowingWithMaskFiveShowsXAndZAndHidesY) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.setEnabledAxis(0x05);
    translate.applyEnabledAxis(true);
    expectPairCulling(translate, 0, mxSpatial::CULL_DYNAMIC);
    expectPairCulling(translate, 1, mxSpatial::CULL_ALWAYS);
    expectPairCulling(translate, 2, mxSpatial::CULL_DYNAMIC);

    translate.applyEnabledAxis(false);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(translate, axis, mxSpatial::CULL_ALWAYS);
    }
}

TEST(mxGizmoNodeTranslateTest, ShowingWithEveryBitShowsAllAndBitsAboveTwoShowNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.applyEnabledAxis(true);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(translate, axis, mxSpatial::CULL_DYNAMIC);
    }
    translate.setEnabledAxis(0xF8);
    translate.applyEnabledAxis(true);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairCulling(translate, axis, mxSpatial::CULL_ALWAYS);
    }
}

TEST(mxGizmoNodeTranslateTest, ShowingTranslateLeavesTheOtherSubGizmosAlone) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editTranslateGizmo().applyEnabledAxis(true);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(mxSpatial::CULL_ALWAYS, node->getRotateGizmo().getCircle(axis)->getCullingMode());
    }
    EXPECT_EQ(mxSpatial::CULL_ALWAYS, node->getCullingMode());
}

// --- colours --------------------------------------------------------------------------------

TEST(mxGizmoNodeTranslateTest, SetDefaultColorsMarksTheOwnerOncePerAxisEvenWhenAlreadyNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    MarkCounter counter(*node);
    translate.setDefaultColors(true);
    EXPECT_EQ(3u, counter.marks());
    translate.setDefaultColors(true);
    EXPECT_EQ(6u, counter.marks());
    translate.setDefaultColors(false);
    EXPECT_EQ(6u, counter.marks());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        expectPairColor(translate, axis, NormalColor(axis));
    }
}

TEST(mxGizmoNodeTranslateTest, SetDefaultColorsPutsBackTheNormalRgbAndKeepsEachLinesAlpha) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.highlightAxis(0);
    translate.getAxis(1)->setColor(Wm4::ColorRGBA(0.1f, 0.2f, 0.3f, 0.5f));
    translate.getArrowHead(2)->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 0.25f));

    MarkCounter counter(*node);
    translate.setDefaultColors(false);
    EXPECT_EQ(0u, counter.marks());

    expectPairColor(translate, 0, NormalColor(0));
    const Wm4::ColorRGB& y = mxGizmoNode::csColors[1];
    const Wm4::ColorRGB& z = mxGizmoNode::csColors[2];
    EXPECT_TRUE(
        ColorIs(translate.getAxis(1)->getColor(), Wm4::ColorRGBA(y.R(), y.G(), y.B(), 0.5f)));
    EXPECT_TRUE(ColorIs(translate.getArrowHead(1)->getColor(), NormalColor(1)));
    EXPECT_TRUE(ColorIs(translate.getAxis(2)->getColor(), NormalColor(2)));
    EXPECT_TRUE(
        ColorIs(translate.getArrowHead(2)->getColor(), Wm4::ColorRGBA(z.R(), z.G(), z.B(), 0.25f)));
}

TEST(mxGizmoNodeTranslateTest, HighlightingYRecoloursItsShaftAndArrowheadAndMarksTheOwnerOnce) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    MarkCounter counter(*node);
    translate.highlightAxis(1);
    EXPECT_EQ(1u, counter.marks());
    expectPairColor(translate, 0, NormalColor(0));
    expectPairColor(translate, 1, HoveredColor(1));
    expectPairColor(translate, 2, NormalColor(2));
}

TEST(mxGizmoNodeTranslateTest, HighlightingTheHoveredAxisAgainLeavesTheOwnerUnmarked) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.highlightAxis(1);
    MarkCounter counter(*node);
    translate.highlightAxis(1);
    EXPECT_EQ(0u, counter.marks());
    expectPairColor(translate, 1, HoveredColor(1));
}

TEST(mxGizmoNodeTranslateTest, HighlightingAnotherAxisPutsTheFirstBackToNormal) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.highlightAxis(1);
    MarkCounter counter(*node);
    translate.highlightAxis(2);
    EXPECT_EQ(1u, counter.marks());
    expectPairColor(translate, 0, NormalColor(0));
    expectPairColor(translate, 1, NormalColor(1));
    expectPairColor(translate, 2, HoveredColor(2));
}

TEST(mxGizmoNodeTranslateTest, HighlightMakesTheHoveredPairOpaque) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.getAxis(0)->setColor(Wm4::ColorRGBA(0.5f, 0.5f, 0.5f, 0.5f));
    translate.getArrowHead(0)->setColor(Wm4::ColorRGBA(0.5f, 0.5f, 0.5f, 0.5f));
    translate.highlightAxis(0);
    expectPairColor(translate, 0, HoveredColor(0));
}

TEST(mxGizmoNodeTranslateTest, HighlightingAShaftAlreadyInItsHoveredShadeMarksNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    // Only the hovered shaft's colour decides the marking, whatever else is put back.
    translate.getAxis(2)->setColor(HoveredColor(2));
    translate.getAxis(0)->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f));
    MarkCounter counter(*node);
    translate.highlightAxis(2);
    EXPECT_EQ(0u, counter.marks());
    expectPairColor(translate, 0, NormalColor(0));
    expectPairColor(translate, 2, HoveredColor(2));
}

TEST(mxGizmoNodeTranslateTest, HighlightingAnAxisAboveZChangesNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxGizmoNodeTranslate& translate = node->editTranslateGizmo();
    translate.highlightAxis(1);
    translate.getAxis(0)->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f));
    MarkCounter counter(*node);
    translate.highlightAxis(3);
    translate.highlightAxis(0xFFFFFFFFu);
    EXPECT_EQ(0u, counter.marks());
    EXPECT_TRUE(ColorIs(translate.getAxis(0)->getColor(), Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f)));
    expectPairColor(translate, 1, HoveredColor(1));
}

// --- without a node -------------------------------------------------------------------------

TEST(mxGizmoNodeTranslateTest, BuildWithoutOwnerBuildsNothing) {
    mxGizmoNodeTranslate translate;
    translate.build(nullptr);
    EXPECT_EQ(nullptr, translate.getOwner());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(nullptr, translate.getAxis(axis));
        EXPECT_EQ(nullptr, translate.getArrowHead(axis));
    }
}

TEST(mxGizmoNodeTranslateTest, UnbuiltSubGizmoSkipsItsMissingLines) {
    mxGizmoNodeTranslate translate;
    translate.applyEnabledAxis(true);
    translate.applyEnabledAxis(false);
    translate.setDefaultColors(true);
    translate.highlightAxis(0);
    translate.highlightAxis(3);
    EXPECT_EQ(nullptr, translate.getOwner());
    EXPECT_EQ(nullptr, translate.getAxis(0));
    EXPECT_EQ(0xFF, translate.getEnabledAxis());
}

TEST(mxGizmoNodeTranslateTest, BuildAxesAndArrowHeadsAloneMakeLinesThatNoNodeHolds) {
    // buildAxes and buildArrowHeads make lines that belong to nobody until build attaches them.
    mxGizmoNodeTranslate translate;
    translate.buildAxes();
    translate.buildArrowHeads();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        ASSERT_NE(nullptr, translate.getAxis(axis));
        ASSERT_NE(nullptr, translate.getArrowHead(axis));
        EXPECT_EQ(nullptr, translate.getAxis(axis)->getParent());
        EXPECT_EQ(1, translate.getAxis(axis)->GetReferences());
        EXPECT_EQ(2.5f, translate.getAxis(axis)->getWidth());
        EXPECT_EQ(1.8f, translate.getArrowHead(axis)->getWidth());
    }
    // Without owner, nothing to mark: the colours still change.
    translate.setDefaultColors(true);
    expectPairColor(translate, 1, NormalColor(1));
}

} // namespace
