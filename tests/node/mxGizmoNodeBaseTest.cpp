// What the three sub-gizmos share (mxGizmoNodeBase), and the 19 lines a gizmo node builds:
// their order among the node's children, their state right after construction, and how long
// they live.
#include "node/mxGizmoNodeBase.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"

#include "rendering/mxRendererInterface.h"
#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxLine.h"
#include "support/mxRecordingRenderer.h"
#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <vector>

using mx::mxGeometry;
using mx::mxGizmoNode;
using mx::mxLine;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::ColorIs;
using mx::test::MarkCounter;
using mx::test::mxRecordingRenderer;
using mx::test::NormalColor;

namespace {

// Opens the protected helpers of the base to the tests.
struct Exposed : mx::mxGizmoNodeBase {
    using mx::mxGizmoNodeBase::attachLines;
    using mx::mxGizmoNodeBase::finishLines;
    using mx::mxGizmoNodeBase::PrepareGeneratedPrimitives;
    using mx::mxGizmoNodeBase::resetLines;
    void setOwner(mxGizmoNode* newOwner) { owner = newOwner; }
};

using GeometryList = std::vector<mxPointer<mxGeometry>>;

// The 19 lines of a node, in the order the node attaches them.
std::vector<mxLine*> linesInAttachmentOrder(const mxGizmoNode& node) {
    std::vector<mxLine*> lines;
    const mx::mxGizmoNodeTranslate& translate = node.getTranslateGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        lines.push_back(translate.getAxis(axis));
        lines.push_back(translate.getArrowHead(axis));
    }
    const mx::mxGizmoNodeRotate& rotate = node.getRotateGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        lines.push_back(rotate.getCircle(axis));
    }
    const mx::mxGizmoNodeScale& scale = node.getScaleGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        lines.push_back(scale.getAxis(axis));
        lines.push_back(scale.getEndSquare(axis));
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        lines.push_back(scale.getActiveFrame(axis));
    }
    lines.push_back(scale.getCentreTriangles());
    return lines;
}

// The generated geometries of the three translate shafts.
GeometryList shaftGeometries(mxGizmoNode& node) {
    GeometryList geometries;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        geometries.push_back(node.editTranslateGizmo().getAxis(axis)->getGeneratedGeometry());
    }
    return geometries;
}

// The hardware renderer is process-wide: every test leaves none installed.
class mxGizmoNodeBaseTest : public ::testing::Test {
protected:
    void TearDown() override { mx::mxRendererInterface::SetHardwareRenderer(nullptr); }

    void install() { mx::mxRendererInterface::SetHardwareRenderer(&renderer); }

    mxRecordingRenderer renderer;
};

// --- the base on its own ---------------------------------------------------------------------

TEST_F(mxGizmoNodeBaseTest, NewBaseHasAWhiteHighlightEveryAxisEnabledAndNoOwner) {
    const mx::mxGizmoNodeBase base;
    EXPECT_TRUE(ColorIs(base.getHighlightColor(), Wm4::ColorRGBA::WHITE));
    EXPECT_EQ(0xFF, base.getEnabledAxis());
    EXPECT_EQ(nullptr, base.getOwner());
}

TEST_F(mxGizmoNodeBaseTest, CopyConstructorCopiesHighlightColourMaskAndOwner) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    Exposed original;
    original.setOwner(node.get());
    original.setEnabledAxis(0xA5);
    original.setHighlightColor(Wm4::ColorRGBA(0.25f, 0.5f, 0.75f, 0.125f));

    const mx::mxGizmoNodeBase& source = original;
    const mx::mxGizmoNodeBase copy(source);
    EXPECT_TRUE(ColorIs(copy.getHighlightColor(), Wm4::ColorRGBA(0.25f, 0.5f, 0.75f, 0.125f)));
    EXPECT_EQ(0xA5, copy.getEnabledAxis());
    EXPECT_EQ(node.get(), copy.getOwner());
}

TEST_F(mxGizmoNodeBaseTest, AssignmentCopiesHighlightColourMaskAndOwner) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    Exposed original;
    original.setOwner(node.get());
    original.setEnabledAxis(0x06);
    original.setHighlightColor(Wm4::ColorRGBA(1.0f, 0.0f, 0.5f, 1.0f));

    mx::mxGizmoNodeBase target;
    target = original;
    EXPECT_TRUE(ColorIs(target.getHighlightColor(), Wm4::ColorRGBA(1.0f, 0.0f, 0.5f, 1.0f)));
    EXPECT_EQ(0x06, target.getEnabledAxis());
    EXPECT_EQ(node.get(), target.getOwner());

    // And back to a base without owner.
    const mx::mxGizmoNodeBase fresh;
    target = fresh;
    EXPECT_TRUE(ColorIs(target.getHighlightColor(), Wm4::ColorRGBA::WHITE));
    EXPECT_EQ(0xFF, target.getEnabledAxis());
    EXPECT_EQ(nullptr, target.getOwner());
}

TEST_F(mxGizmoNodeBaseTest, ColourTablesHoldTheNormalAndTheDarkerHoveredShades) {
    const Wm4::ColorRGB normal[3] = {Wm4::ColorRGB(0.977f, 0.325f, 0.409f),
                                     Wm4::ColorRGB(0.339f, 0.781f, 0.324f),
                                     Wm4::ColorRGB(0.355f, 0.511f, 0.955f)};
    const Wm4::ColorRGB hovered[3] = {Wm4::ColorRGB(0.732f, 0.0f, 0.227f),
                                      Wm4::ColorRGB(0.016f, 0.565f, 0.111f),
                                      Wm4::ColorRGB(0.030f, 0.321f, 0.731f)};
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        EXPECT_TRUE(mxGizmoNode::csColors[axis] == normal[axis]);
        EXPECT_TRUE(mxGizmoNode::csColorsHighlight[axis] == hovered[axis]);
    }
}

// --- the lines of a new node ----------------------------------------------------------------

TEST_F(mxGizmoNodeBaseTest, NodeChildrenAreTheNineteenSubGizmoLinesInAttachmentOrder) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const std::vector<mxLine*> lines = linesInAttachmentOrder(*node);
    ASSERT_EQ(19u, lines.size());
    ASSERT_EQ(19, node->getChildCount());
    const std::set<mxLine*> distinct(lines.begin(), lines.end());
    EXPECT_EQ(19u, distinct.size());
    for (int index = 0; index < 19; ++index) {
        SCOPED_TRACE(index);
        mxLine* line = lines[static_cast<std::size_t>(index)];
        ASSERT_NE(nullptr, line);
        EXPECT_EQ(static_cast<mxSpatial*>(line), node->getChild(index));
        EXPECT_EQ(node.get(), line->getParent());
        EXPECT_TRUE(line->IsExactly(mxLine::TYPE));
    }
}

TEST_F(mxGizmoNodeBaseTest, EditAndGetAccessorsReachTheSameSubGizmos) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mxGizmoNode& constNode = *node;
    EXPECT_EQ(&constNode.getTranslateGizmo(), &node->editTranslateGizmo());
    EXPECT_EQ(&constNode.getRotateGizmo(), &node->editRotateGizmo());
    EXPECT_EQ(&constNode.getScaleGizmo(), &node->editScaleGizmo());
}

TEST_F(mxGizmoNodeBaseTest, BuiltSubGizmosBelongToTheNodeWithWhiteHighlightAndEveryAxisEnabled) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mx::mxGizmoNodeBase* subGizmos[3] = {&node->getTranslateGizmo(), &node->getRotateGizmo(),
                                               &node->getScaleGizmo()};
    for (const mx::mxGizmoNodeBase* subGizmo : subGizmos) {
        EXPECT_EQ(node.get(), subGizmo->getOwner());
        EXPECT_EQ(0xFF, subGizmo->getEnabledAxis());
        EXPECT_TRUE(ColorIs(subGizmo->getHighlightColor(), Wm4::ColorRGBA::WHITE));
    }
}

TEST_F(mxGizmoNodeBaseTest, NewNodeIsInModeNoneHiddenItselfAndEveryLineHidden) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    EXPECT_EQ(mxGizmoNode::GIZMO_NONE, node->getMode());
    EXPECT_EQ(3, static_cast<int>(node->getMode()));
    EXPECT_EQ(mxSpatial::CULL_ALWAYS, node->getCullingMode());
    for (mxLine* line : linesInAttachmentOrder(*node)) {
        ASSERT_NE(nullptr, line);
        EXPECT_EQ(mxSpatial::CULL_ALWAYS, line->getCullingMode());
    }
}

TEST_F(mxGizmoNodeBaseTest, EveryLineHasAnUpToDateModelBound) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    for (mxLine* line : linesInAttachmentOrder(*node)) {
        ASSERT_NE(nullptr, line);
        EXPECT_GT(line->getModelBound().getRadius(), 0.0f);
        EXPECT_EQ(0u, line->getDirtyFlags() & mxSpatial::DIRTY_MODEL);
    }
}

TEST_F(mxGizmoNodeBaseTest, NewNodeHasEveryLineInItsNormalColourAndTheScaleExtrasWhite) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const mx::mxGizmoNodeTranslate& translate = node->getTranslateGizmo();
    const mx::mxGizmoNodeRotate& rotate = node->getRotateGizmo();
    const mx::mxGizmoNodeScale& scale = node->getScaleGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        EXPECT_TRUE(ColorIs(translate.getAxis(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(ColorIs(translate.getArrowHead(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(ColorIs(rotate.getCircle(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(ColorIs(scale.getAxis(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(ColorIs(scale.getEndSquare(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(ColorIs(scale.getActiveFrame(axis)->getColor(), Wm4::ColorRGBA::WHITE));
    }
    EXPECT_TRUE(ColorIs(scale.getCentreTriangles()->getColor(), Wm4::ColorRGBA::WHITE));
}

// --- stored-only settings -------------------------------------------------------------------

TEST_F(mxGizmoNodeBaseTest, SetEnabledAxisStoresTheWholeMaskAndChangesNoCulling) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    mx::mxGizmoNodeTranslate& translate = node->editTranslateGizmo();

    translate.setEnabledAxis(0x02);
    EXPECT_EQ(0x02, translate.getEnabledAxis());
    EXPECT_EQ(0x02, node->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE));
    // Still as the mode left them: all shown, although X and Z are now disabled.
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(mxSpatial::CULL_DYNAMIC, translate.getAxis(axis)->getCullingMode());
        EXPECT_EQ(mxSpatial::CULL_DYNAMIC, translate.getArrowHead(axis)->getCullingMode());
    }

    // Bits 3 to 7 are kept as given.
    node->editRotateGizmo().setEnabledAxis(0xF8);
    node->editScaleGizmo().setEnabledAxis(0x00);
    EXPECT_EQ(0xF8, node->getRotateGizmo().getEnabledAxis());
    EXPECT_EQ(0x00, node->getScaleGizmo().getEnabledAxis());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(mxSpatial::CULL_ALWAYS, node->getRotateGizmo().getCircle(axis)->getCullingMode());
        EXPECT_EQ(mxSpatial::CULL_ALWAYS, node->getScaleGizmo().getAxis(axis)->getCullingMode());
    }
}

TEST_F(mxGizmoNodeBaseTest, SetHighlightColorIsReadBackAndRecoloursNoLine) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const Wm4::ColorRGBA red(1.0f, 0.0f, 0.0f, 1.0f);
    MarkCounter counter(*node);

    node->editTranslateGizmo().setHighlightColor(red);
    node->editScaleGizmo().setHighlightColor(red);

    EXPECT_TRUE(ColorIs(node->getTranslateGizmo().getHighlightColor(), red));
    EXPECT_TRUE(ColorIs(node->getScaleGizmo().getHighlightColor(), red));
    EXPECT_TRUE(ColorIs(node->getRotateGizmo().getHighlightColor(), Wm4::ColorRGBA::WHITE));
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        EXPECT_TRUE(
            ColorIs(node->getTranslateGizmo().getAxis(axis)->getColor(), NormalColor(axis)));
        EXPECT_TRUE(
            ColorIs(node->getTranslateGizmo().getArrowHead(axis)->getColor(), NormalColor(axis)));
        // The frames took their colour when they were built.
        EXPECT_TRUE(
            ColorIs(node->getScaleGizmo().getActiveFrame(axis)->getColor(), Wm4::ColorRGBA::WHITE));
    }
    EXPECT_EQ(0u, counter.marks());
}

// --- lifetime of the lines --------------------------------------------------------------------

TEST_F(mxGizmoNodeBaseTest, LinesAreHeldByNodeAndSubGizmoAndReleasedOnceWithTheNode) {
    bool nodeDeleted = false;
    std::vector<mxPointer<mxLine>> held;
    {
        mxPointer<mxGizmoNode> node = new mx::test::DeletionFlagged<mxGizmoNode>(nodeDeleted);
        const std::vector<mxLine*> lines = linesInAttachmentOrder(*node);
        ASSERT_EQ(19u, lines.size());
        for (mxLine* line : lines) {
            ASSERT_NE(nullptr, line);
            // A child slot of the node and an entry of a sub-gizmo's list.
            EXPECT_EQ(2, line->GetReferences());
            held.push_back(line);
            EXPECT_EQ(3, line->GetReferences());
        }
        EXPECT_EQ(1, node->GetReferences());
    }
    EXPECT_TRUE(nodeDeleted);
    for (const mxPointer<mxLine>& line : held) {
        // Only this test's reference is left, and no line points back at the gone node.
        EXPECT_EQ(1, line->GetReferences());
        EXPECT_EQ(nullptr, line->getParent());
    }
}

TEST_F(mxGizmoNodeBaseTest, DetachedLineLivesOnInItsSubGizmo) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    mxLine* circle = node->getRotateGizmo().getCircle(1);
    ASSERT_EQ(circle, node->getChild(7));
    EXPECT_EQ(7, node->detachChild(circle));
    EXPECT_EQ(1, circle->GetReferences());
    EXPECT_EQ(circle, node->getRotateGizmo().getCircle(1));
    EXPECT_EQ(nullptr, circle->getParent());
}

// --- line building helpers, as a derived sub-gizmo uses them ---------------------------------

TEST_F(mxGizmoNodeBaseTest, LinesOfABaseWithoutOwnerAreAttachedNowhereUntilItHasOne) {
    Exposed base;
    Exposed::LineList shafts;
    Exposed::LineList heads;
    Exposed::resetLines(shafts);
    Exposed::resetLines(heads);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        shafts[axis] = new mxLine(2u);
        heads[axis] = new mxLine(3u);
    }

    base.attachLines(shafts, &heads);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(nullptr, shafts[axis]->getParent());
        EXPECT_EQ(nullptr, heads[axis]->getParent());
    }

    mxPointer<mx::mxNode> owner = new mxGizmoNode;
    base.setOwner(static_cast<mxGizmoNode*>(owner.get()));
    const int before = owner->getChildCount();
    base.attachLines(shafts, &heads);
    ASSERT_EQ(before + 6, owner->getChildCount());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(shafts[axis].get(), owner->getChild(before + 2 * static_cast<int>(axis)));
        EXPECT_EQ(heads[axis].get(), owner->getChild(before + 2 * static_cast<int>(axis) + 1));
    }
}

TEST_F(mxGizmoNodeBaseTest, FinishingLinesWidensEachLineAndPassesOverEmptyEntries) {
    Exposed::LineList lines;
    Exposed::resetLines(lines);
    lines[0] = new mxLine(2u);
    lines[2] = new mxLine(2u);

    Exposed::finishLines(lines, 3.5f);
    EXPECT_EQ(3.5f, lines[0]->getWidth());
    EXPECT_EQ(nullptr, lines[1].get());
    EXPECT_EQ(3.5f, lines[2]->getWidth());
}

// --- PrepareGeneratedPrimitives --------------------------------------------------------------

TEST_F(mxGizmoNodeBaseTest, PreparingAnEmptyListSucceedsAndAsksNothing) {
    install();
    EXPECT_TRUE(Exposed::PrepareGeneratedPrimitives(GeometryList()));
    EXPECT_TRUE(renderer.getCalls().empty());
}

TEST_F(mxGizmoNodeBaseTest, PreparingWithoutRendererSucceeds) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_EQ(nullptr, mx::mxRendererInterface::GetHardwareRenderer());
    renderer.refusePrepareBufferFrom(1);
    EXPECT_TRUE(Exposed::PrepareGeneratedPrimitives(shaftGeometries(*node)));
    EXPECT_TRUE(renderer.getCalls().empty());
}

TEST_F(mxGizmoNodeBaseTest, PreparingSendsVertexThenIndexBufferOfEachGeometryForced) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const GeometryList geometries = shaftGeometries(*node);
    install();
    EXPECT_TRUE(Exposed::PrepareGeneratedPrimitives(geometries));

    const std::vector<mxRecordingRenderer::Call>& calls = renderer.getCalls();
    ASSERT_EQ(6u, calls.size());
    for (std::size_t g = 0; g < 3; ++g) {
        SCOPED_TRACE(g);
        const mxRecordingRenderer::Call& vertices = calls[2 * g];
        const mxRecordingRenderer::Call& indices = calls[2 * g + 1];
        EXPECT_EQ(mxRecordingRenderer::PREPARE_BUFFER, vertices.kind);
        EXPECT_EQ(mxRecordingRenderer::PREPARE_BUFFER, indices.kind);
        EXPECT_EQ(geometries[g]->getGeneratedBuffer(0), vertices.buffer);
        EXPECT_EQ(geometries[g]->getGeneratedBuffer(1), indices.buffer);
        EXPECT_NE(nullptr, vertices.buffer);
        EXPECT_NE(nullptr, indices.buffer);
        EXPECT_TRUE(vertices.force);
        EXPECT_TRUE(indices.force);
    }
}

TEST_F(mxGizmoNodeBaseTest, RefusedVertexBufferStillOffersTheIndexBufferThenStops) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const GeometryList geometries = shaftGeometries(*node);
    install();
    renderer.refusePrepareBufferFrom(1);
    EXPECT_FALSE(Exposed::PrepareGeneratedPrimitives(geometries));

    const std::vector<mxRecordingRenderer::Call>& calls = renderer.getCalls();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ(geometries[0]->getGeneratedBuffer(0), calls[0].buffer);
    EXPECT_EQ(geometries[0]->getGeneratedBuffer(1), calls[1].buffer);
    EXPECT_FALSE(calls[0].accepted);
}

TEST_F(mxGizmoNodeBaseTest, RefusedIndexBufferOfTheFirstGeometryStopsBeforeTheSecond) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const GeometryList geometries = shaftGeometries(*node);
    install();
    renderer.refusePrepareBufferFrom(2);
    EXPECT_FALSE(Exposed::PrepareGeneratedPrimitives(geometries));

    const std::vector<mxRecordingRenderer::Call>& calls = renderer.getCalls();
    ASSERT_EQ(2u, calls.size());
    EXPECT_TRUE(calls[0].accepted);
    EXPECT_FALSE(calls[1].accepted);
    EXPECT_EQ(geometries[0]->getGeneratedBuffer(1), calls[1].buffer);
}

TEST_F(mxGizmoNodeBaseTest, RefusalOnTheSecondGeometryKeepsTheThirdFromTheRenderer) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const GeometryList geometries = shaftGeometries(*node);
    install();
    renderer.refusePrepareBufferFrom(3);
    EXPECT_FALSE(Exposed::PrepareGeneratedPrimitives(geometries));

    const std::vector<mxRecordingRenderer::Call>& calls = renderer.getCalls();
    ASSERT_EQ(4u, calls.size());
    EXPECT_EQ(geometries[1]->getGeneratedBuffer(0), calls[2].buffer);
    EXPECT_EQ(geometries[1]->getGeneratedBuffer(1), calls[3].buffer);
    for (const mxRecordingRenderer::Call& call : calls) {
        EXPECT_NE(geometries[2]->getGeneratedBuffer(0), call.buffer);
        EXPECT_NE(geometries[2]->getGeneratedBuffer(1), call.buffer);
    }
}

TEST_F(mxGizmoNodeBaseTest, NullGeometriesAreSkipped) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const GeometryList shafts = shaftGeometries(*node);
    const GeometryList geometries = {nullptr, shafts[0], nullptr, shafts[2], nullptr};
    install();
    EXPECT_TRUE(Exposed::PrepareGeneratedPrimitives(geometries));

    const std::vector<mxRecordingRenderer::Call>& calls = renderer.getCalls();
    ASSERT_EQ(4u, calls.size());
    EXPECT_EQ(shafts[0]->getGeneratedBuffer(0), calls[0].buffer);
    EXPECT_EQ(shafts[0]->getGeneratedBuffer(1), calls[1].buffer);
    EXPECT_EQ(shafts[2]->getGeneratedBuffer(0), calls[2].buffer);
    EXPECT_EQ(shafts[2]->getGeneratedBuffer(1), calls[3].buffer);

    renderer.clear();
    EXPECT_TRUE(Exposed::PrepareGeneratedPrimitives(GeometryList{nullptr, nullptr}));
    EXPECT_TRUE(renderer.getCalls().empty());
}

} // namespace
