// Tests for mx::mxGizmoNode's colours and drag look: the colour tables, highlighting the
// hovered axis, putting the normal colours back (and how often each marks the node dirty),
// the stored-only highlight colour, and the active state of a dragged axis.

#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxNode.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

using mx::mxGizmoNode;
using mx::mxLine;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::ColorsOf;
using mx::test::csHidden;
using mx::test::csShown;
using mx::test::HoveredColor;
using mx::test::MarkCounter;
using mx::test::mxExposedGizmoNode;
using mx::test::NormalColor;
using Vec3 = Wm4::Vector3<float>;

namespace {

const Wm4::ColorRGBA csWhite(1.0f, 1.0f, 1.0f, 1.0f);

} // namespace

// --- Colour tables -------------------------------------------------------------------------

TEST(mxGizmoNodeHighlightTest, NormalColoursAreTheNearestFloatsOfTheTable) {
    EXPECT_EQ(Wm4::ColorRGB(0.977f, 0.325f, 0.409f), mxGizmoNode::csColors[0]);
    EXPECT_EQ(Wm4::ColorRGB(0.339f, 0.781f, 0.324f), mxGizmoNode::csColors[1]);
    EXPECT_EQ(Wm4::ColorRGB(0.355f, 0.511f, 0.955f), mxGizmoNode::csColors[2]);
}

TEST(mxGizmoNodeHighlightTest, HoveredShadesAreTheNearestFloatsOfTheTable) {
    EXPECT_EQ(Wm4::ColorRGB(0.732f, 0.0f, 0.227f), mxGizmoNode::csColorsHighlight[0]);
    EXPECT_EQ(Wm4::ColorRGB(0.016f, 0.565f, 0.111f), mxGizmoNode::csColorsHighlight[1]);
    EXPECT_EQ(Wm4::ColorRGB(0.030f, 0.321f, 0.731f), mxGizmoNode::csColorsHighlight[2]);
}

TEST(mxGizmoNodeHighlightTest, HoveredShadeIsDarkerThanTheNormalColourOnEveryChannel) {
    for (int axis = 0; axis < 3; ++axis) {
        for (int channel = 0; channel < 3; ++channel) {
            EXPECT_LT(mxGizmoNode::csColorsHighlight[axis][channel],
                      mxGizmoNode::csColors[axis][channel])
                << "axis " << axis << " channel " << channel;
        }
    }
}

// --- highlight -------------------------------------------------------------------------------

TEST(mxGizmoNodeHighlightTest, HighlightYInTranslateModeDarkensOnlyYAndMarksOnce) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    const mx::mxGizmoNodeTranslate& translate = node->getTranslateGizmo();

    MarkCounter counter(*node);
    node->highlight(1);
    EXPECT_EQ(1u, counter.marks());
    for (int axis : {0, 2}) {
        EXPECT_EQ(NormalColor(axis), translate.getAxis(axis)->getColor()) << axis;
        EXPECT_EQ(NormalColor(axis), translate.getArrowHead(axis)->getColor()) << axis;
    }
    const Wm4::ColorRGBA expected(0.016f, 0.565f, 0.111f, 1.0f);
    EXPECT_EQ(expected, translate.getAxis(1)->getColor());
    EXPECT_EQ(expected, translate.getArrowHead(1)->getColor());

    // The same axis again changes nothing, so the node is not marked again.
    node->highlight(1);
    EXPECT_EQ(1u, counter.marks());
    EXPECT_EQ(expected, translate.getAxis(1)->getColor());
}

TEST(mxGizmoNodeHighlightTest, HighlightingAnotherAxisMarksTheNodeAgain) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    node->highlight(0);
    MarkCounter counter(*node);
    node->highlight(2);
    EXPECT_EQ(1u, counter.marks());
    const mx::mxGizmoNodeScale& scale = node->getScaleGizmo();
    EXPECT_EQ(NormalColor(0), scale.getAxis(0)->getColor());
    EXPECT_EQ(NormalColor(0), scale.getEndSquare(0)->getColor());
    EXPECT_EQ(HoveredColor(2), scale.getAxis(2)->getColor());
    EXPECT_EQ(HoveredColor(2), scale.getEndSquare(2)->getColor());
    EXPECT_EQ(csWhite, scale.getCentreTriangles()->getColor());
}

TEST(mxGizmoNodeHighlightTest, HighlightXThenZInRotateModePutsCircleXBackInItsColour) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    const mx::mxGizmoNodeRotate& rotate = node->getRotateGizmo();
    node->highlight(0);
    EXPECT_EQ(HoveredColor(0), rotate.getCircle(0)->getColor());
    node->highlight(2);
    EXPECT_EQ(Wm4::ColorRGBA(0.977f, 0.325f, 0.409f, 1.0f), rotate.getCircle(0)->getColor());
    EXPECT_EQ(NormalColor(1), rotate.getCircle(1)->getColor());
    EXPECT_EQ(HoveredColor(2), rotate.getCircle(2)->getColor());
}

TEST(mxGizmoNodeHighlightTest, HighlightRecoloursOnlyTheCurrentModesSubGizmo) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->highlight(0);
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->highlight(1);
    // The translate sub-gizmo that was left keeps its hovered X.
    EXPECT_EQ(HoveredColor(0), node->getTranslateGizmo().getAxis(0)->getColor());
    EXPECT_EQ(HoveredColor(1), node->getRotateGizmo().getCircle(1)->getColor());
    EXPECT_EQ(NormalColor(1), node->getScaleGizmo().getAxis(1)->getColor());
}

TEST(mxGizmoNodeHighlightTest, HighlightAndDefaultColoursDoNothingWithoutMode) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(*node);
    MarkCounter counter(*node);
    node->highlight(0);
    node->highlight(2);
    node->applyDefaultColors();
    EXPECT_EQ(0u, counter.marks());
    EXPECT_EQ(before, ColorsOf(*node));

    node->setMode(mxGizmoNode::GIZMO_UNSET);
    node->highlight(1);
    node->applyDefaultColors();
    EXPECT_EQ(0u, counter.marks());
    EXPECT_EQ(before, ColorsOf(*node));
}

TEST(mxGizmoNodeHighlightTest, HighlightOfAnAxisAboveTwoChangesNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->highlight(1);
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(*node);
    MarkCounter counter(*node);
    node->highlight(3);
    node->highlight(static_cast<unsigned int>(-1));
    EXPECT_EQ(0u, counter.marks());
    EXPECT_EQ(before, ColorsOf(*node));
}

// --- Normal colours and their dirty marking ------------------------------------------------

TEST(mxGizmoNodeHighlightTest, ApplyDefaultColoursMarksTheNodeOncePerAxisEvenWhenNothingChanges) {
    for (mxGizmoNode::GizmoMode mode :
         {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE, mxGizmoNode::GIZMO_SCALE}) {
        mxPointer<mxGizmoNode> node = new mxGizmoNode();
        node->setMode(mode);
        const std::vector<Wm4::ColorRGBA> before = ColorsOf(*node);
        MarkCounter counter(*node);
        node->applyDefaultColors();
        EXPECT_EQ(3u, counter.marks()) << "mode " << mode;
        EXPECT_EQ(before, ColorsOf(*node)) << "mode " << mode;
    }
}

TEST(mxGizmoNodeHighlightTest, ApplyDefaultColoursUndoesAHighlight) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    const std::vector<Wm4::ColorRGBA> normal = ColorsOf(*node);
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    node->highlight(1);
    ASSERT_NE(normal, ColorsOf(*node));
    node->applyDefaultColors();
    EXPECT_EQ(normal, ColorsOf(*node));
}

TEST(mxGizmoNodeHighlightTest, SubGizmoDefaultColoursMarkTheOwnerOncePerAxisOnlyWhenAsked) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    MarkCounter counter(*node);
    node->editTranslateGizmo().setDefaultColors(false);
    node->editRotateGizmo().setDefaultColors(false);
    node->editScaleGizmo().setDefaultColors(false);
    EXPECT_EQ(0u, counter.marks());
    node->editTranslateGizmo().setDefaultColors(true);
    EXPECT_EQ(3u, counter.marks());
    node->editRotateGizmo().setDefaultColors(true);
    EXPECT_EQ(6u, counter.marks());
    node->editScaleGizmo().setDefaultColors(true);
    EXPECT_EQ(9u, counter.marks());
}

TEST(mxGizmoNodeHighlightTest, ChangingTheReferenceSetPutsTheCurrentModesColoursBack) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    const std::vector<Wm4::ColorRGBA> normal = ColorsOf(*node);
    mxPointer<mxNode> object = new mxNode();
    node->setMode(mxGizmoNode::GIZMO_ROTATE);

    node->highlight(2);
    MarkCounter single(*node);
    node->setReferenceObject(object.get());
    EXPECT_EQ(3u, single.marks());
    EXPECT_EQ(normal, ColorsOf(*node));

    node->highlight(0);
    MarkCounter list(*node);
    node->setReferenceObjects({object.get(), nullptr});
    EXPECT_EQ(3u, list.marks());
    EXPECT_EQ(normal, ColorsOf(*node));
}

TEST(mxGizmoNodeHighlightTest, ChangingTheReferenceSetWithoutModeLeavesColoursAndFlags) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->highlight(0);
    node->setMode(mxGizmoNode::GIZMO_NONE);
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(*node);
    mxPointer<mxNode> object = new mxNode();
    MarkCounter counter(*node);
    node->setReferenceObject(object.get());
    node->setReferenceObjects({object.get()});
    EXPECT_EQ(0u, counter.marks());
    EXPECT_EQ(before, ColorsOf(*node));
}

TEST(mxGizmoNodeHighlightTest, EditingTheReferenceListLeavesTheHighlight) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->highlight(2);
    mxPointer<mxNode> object = new mxNode();
    MarkCounter counter(*node);
    node->editReferenceObjects().push_back(object.get());
    EXPECT_EQ(0u, counter.marks());
    EXPECT_EQ(HoveredColor(2), node->getTranslateGizmo().getAxis(2)->getColor());
}

// --- Highlight colour ------------------------------------------------------------------------

TEST(mxGizmoNodeHighlightTest, HighlightColourIsStoredButChangesNoLine) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(*node);
    const Wm4::ColorRGBA red(1.0f, 0.0f, 0.0f, 1.0f);
    MarkCounter counter(*node);
    node->setHighlightColor(mxGizmoNode::GIZMO_TRANSLATE, red);
    node->setHighlightColor(mxGizmoNode::GIZMO_SCALE, red);
    EXPECT_EQ(red, node->getTranslateGizmo().getHighlightColor());
    EXPECT_EQ(red, node->getScaleGizmo().getHighlightColor());
    EXPECT_EQ(csWhite, node->getRotateGizmo().getHighlightColor());
    EXPECT_EQ(before, ColorsOf(*node));
    EXPECT_EQ(0u, counter.marks());

    // The scale frames took their white when they were built, and keep it while dragged.
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    node->setActiveState(0, true);
    EXPECT_EQ(csWhite, node->getScaleGizmo().getActiveFrame(0)->getColor());
}

TEST(mxGizmoNodeHighlightTest, HighlightColourOfAModeWithoutSubGizmoIsIgnored) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setHighlightColor(mxGizmoNode::GIZMO_NONE, Wm4::ColorRGBA(0.0f, 0.0f, 1.0f, 1.0f));
    node->setHighlightColor(static_cast<mxGizmoNode::GizmoMode>(12),
                            Wm4::ColorRGBA(0.0f, 0.0f, 1.0f, 1.0f));
    EXPECT_EQ(csWhite, node->getTranslateGizmo().getHighlightColor());
    EXPECT_EQ(csWhite, node->getRotateGizmo().getHighlightColor());
    EXPECT_EQ(csWhite, node->getScaleGizmo().getHighlightColor());
}

// --- Active state ------------------------------------------------------------------------------

TEST(mxGizmoNodeHighlightTest, ActiveStateInTranslateModeChangesNothing) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    const std::vector<Wm4::ColorRGBA> colors = ColorsOf(*node);
    std::vector<mxSpatial::CullingMode> culling;
    std::vector<mxLine::DrawMethod> methods;
    for (int slot = 0; slot < 19; ++slot) {
        culling.push_back(node->getChild(slot)->getCullingMode());
        methods.push_back(static_cast<const mxLine*>(node->getChild(slot))->getDrawMethod());
    }
    node->setActiveState(2, true);
    EXPECT_EQ(colors, ColorsOf(*node));
    for (int slot = 0; slot < 19; ++slot) {
        EXPECT_EQ(culling[slot], node->getChild(slot)->getCullingMode()) << slot;
        EXPECT_EQ(methods[slot], static_cast<const mxLine*>(node->getChild(slot))->getDrawMethod())
            << slot;
    }
}

TEST(mxGizmoNodeHighlightTest, ActiveStateDrawsTheDraggedCircleAsSegmentsAndBack) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    const mx::mxGizmoNodeRotate& rotate = node->getRotateGizmo();
    node->setActiveState(1, true);
    EXPECT_EQ(mxLine::DRAW_POLYLINE, rotate.getCircle(0)->getDrawMethod());
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, rotate.getCircle(1)->getDrawMethod());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, rotate.getCircle(2)->getDrawMethod());
    EXPECT_EQ(NormalColor(1), rotate.getCircle(1)->getColor());
    node->setActiveState(1, false);
    EXPECT_EQ(mxLine::DRAW_POLYLINE, rotate.getCircle(1)->getDrawMethod());
}

TEST(mxGizmoNodeHighlightTest, ActiveStateOfADisabledCircleChangesNothing) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 0x03);
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->setActiveState(2, true);
    EXPECT_EQ(mxLine::DRAW_POLYLINE, node->getRotateGizmo().getCircle(2)->getDrawMethod());
    EXPECT_EQ(csHidden, node->getRotateGizmo().getCircle(2)->getCullingMode());
}

TEST(mxGizmoNodeHighlightTest, ActiveStateInScaleModeShowsOnlyTheDraggedAxisFrame) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    const mx::mxGizmoNodeScale& scale = node->getScaleGizmo();
    node->setActiveState(1, true);
    EXPECT_EQ(csHidden, scale.getActiveFrame(0)->getCullingMode());
    EXPECT_EQ(csShown, scale.getActiveFrame(1)->getCullingMode());
    EXPECT_EQ(csHidden, scale.getActiveFrame(2)->getCullingMode());
    node->setActiveState(1, false);
    EXPECT_EQ(csHidden, scale.getActiveFrame(1)->getCullingMode());
}

TEST(mxGizmoNodeHighlightTest, ActiveStateOfAnotherAxisHidesTheFrameShownBefore) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    node->setActiveState(0, true);
    node->setActiveState(2, true);
    const mx::mxGizmoNodeScale& scale = node->getScaleGizmo();
    EXPECT_EQ(csHidden, scale.getActiveFrame(0)->getCullingMode());
    EXPECT_EQ(csShown, scale.getActiveFrame(2)->getCullingMode());
}

TEST(mxGizmoNodeHighlightTest, ActiveStateWithoutModeOrForAnAxisAboveTwoChangesNothing) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setActiveState(1, true);
    EXPECT_EQ(csHidden, node->getScaleGizmo().getActiveFrame(1)->getCullingMode());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, node->getRotateGizmo().getCircle(1)->getDrawMethod());

    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->setActiveState(5, true);
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    node->setActiveState(5, true);
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(mxLine::DRAW_POLYLINE, node->getRotateGizmo().getCircle(axis)->getDrawMethod());
        EXPECT_EQ(csHidden, node->getScaleGizmo().getActiveFrame(axis)->getCullingMode());
    }
}
