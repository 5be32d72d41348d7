// Tests for mx::mxGizmoNode's state: defaults, modes and axis masks with what they show,
// reference objects and their centre, the dirty marking, and the host operations it
// overrides.

#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxNode.h"

#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using mx::mxGizmoNode;
using mx::mxLine;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::csHidden;
using mx::test::csShown;
using mx::test::mxExposedGizmoNode;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// Coordinates in these tests stay below 10: a few ulps of that.
constexpr float csTolerance = 1e-5f;

// Child slots of the 19 lines, in the order the node attaches them.
int TranslateAxisSlot(int axis) {
    return 2 * axis;
}
int ArrowHeadSlot(int axis) {
    return 2 * axis + 1;
}
int CircleSlot(int axis) {
    return 6 + axis;
}
int ScaleAxisSlot(int axis) {
    return 9 + 2 * axis;
}
int EndSquareSlot(int axis) {
    return 10 + 2 * axis;
}
int ActiveFrameSlot(int axis) {
    return 15 + axis;
}
constexpr int csCentreTrianglesSlot = 18;

mxSpatial::CullingMode CullingOf(const mxGizmoNode& node, int slot) {
    return node.getChild(slot)->getCullingMode();
}

bool AxisBit(unsigned char mask, int axis) {
    return (mask & (1u << axis)) != 0;
}

// A node placed at a world position, with no children: its bound has radius 0 there.
mxPointer<mxNode> MakePoint(const Vec3& position) {
    mxPointer<mxNode> point = new mxNode();
    point->editLocalTransform(true).SetTranslate(position);
    point->UpdateGS();
    return point;
}

// A segment from below to above centre along Y: its bound is centred at centre with
// radius 1.
mxPointer<mxLine> MakeBoundedSegment(const Vec3& centre) {
    mxPointer<mxLine> line = new mxLine(2u);
    line->setVertexPosition(0, centre - Vec3::UNIT_Y);
    line->setVertexPosition(1, centre + Vec3::UNIT_Y);
    line->UpdateMS(true, false, -2);
    line->UpdateGS();
    return line;
}

// What the rules say a line shows once mode has been set with every sub-gizmo's mask as
// given, starting from a new node: the lines of the mode's enabled axes are shown, all others
// hidden; the active frames are always hidden; the centre triangles are hidden by every
// mode unless scale shows them, but when the scale mask has no axis bit they keep what
// they had (hidden, on a new node).
mxSpatial::CullingMode ExpectedAfterSetMode(int slot, mxGizmoNode::GizmoMode mode,
                                            unsigned char mask) {
    for (int axis = 0; axis < 3; ++axis) {
        const bool enabled = AxisBit(mask, axis);
        if (slot == TranslateAxisSlot(axis) || slot == ArrowHeadSlot(axis)) {
            return mode == mxGizmoNode::GIZMO_TRANSLATE && enabled ? csShown : csHidden;
        }
        if (slot == CircleSlot(axis)) {
            return mode == mxGizmoNode::GIZMO_ROTATE && enabled ? csShown : csHidden;
        }
        if (slot == ScaleAxisSlot(axis) || slot == EndSquareSlot(axis)) {
            return mode == mxGizmoNode::GIZMO_SCALE && enabled ? csShown : csHidden;
        }
        if (slot == ActiveFrameSlot(axis)) {
            return csHidden;
        }
    }
    return mode == mxGizmoNode::GIZMO_SCALE && (mask & 0x07) != 0 ? csShown : csHidden;
}

const char* ModeName(mxGizmoNode::GizmoMode mode) {
    static const char* const names[] = {"translate", "rotate", "scale"};
    return names[mode];
}

} // namespace

// --- Defaults ----------------------------------------------------------------------------

TEST(mxGizmoNodeTest, NewNodeAnswersTheDefaults) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    EXPECT_EQ(mxGizmoNode::GIZMO_NONE, node->getMode());
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE));
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_ROTATE));
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_SCALE));
    EXPECT_EQ(0, node->getEnabledAxis(mxGizmoNode::GIZMO_NONE));
    EXPECT_EQ(60.0f, node->getExpectedPixelSize());
    EXPECT_EQ(Vec3(1.0f, 1.0f, 1.0f), node->getScaleReference());
    EXPECT_FALSE(node->shouldUseUniformScale());
    EXPECT_FALSE(node->shouldSnapRotationToAxis());
    EXPECT_FALSE(node->shouldRestrictPositionBetweenNearFar());
    EXPECT_EQ(Vec3::ZERO, node->getCenterReferences());
    EXPECT_TRUE(node->getReferenceObjects().empty());
}

TEST(mxGizmoNodeTest, NewNodeIsHiddenWithNineteenLines) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    ASSERT_EQ(19, node->getChildCount());
    EXPECT_EQ(mxGizmoNode::GIZMO_NONE, node->getMode());
    EXPECT_EQ(csHidden, node->getCullingMode());
    for (int slot = 0; slot < 19; ++slot) {
        SCOPED_TRACE(slot);
        ASSERT_NE(nullptr, node->getChild(slot));
        EXPECT_TRUE(node->getChild(slot)->IsExactly(mxLine::TYPE));
        EXPECT_EQ(node.get(), node->getChild(slot)->getParent());
        EXPECT_EQ(csHidden, CullingOf(*node, slot));
    }
}

TEST(mxGizmoNodeTest, EnabledAxisOfAModeWithoutSubGizmoIsZero) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    EXPECT_EQ(0, node->getEnabledAxis(mxGizmoNode::GIZMO_UNSET));
    EXPECT_EQ(0, node->getEnabledAxis(static_cast<mxGizmoNode::GizmoMode>(-1)));
    EXPECT_EQ(0, node->getEnabledAxis(static_cast<mxGizmoNode::GizmoMode>(99)));
}

// --- Options and stored values -----------------------------------------------------------

TEST(mxGizmoNodeTest, EachOptionIsStoredApartFromTheOthers) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setUseUniformScale(true);
    EXPECT_TRUE(node->shouldUseUniformScale());
    EXPECT_FALSE(node->shouldSnapRotationToAxis());
    EXPECT_FALSE(node->shouldRestrictPositionBetweenNearFar());
    node->setSnapRotationToAxis(true);
    node->restrictPositionBetweenNearFar(true);
    node->setUseUniformScale(false);
    EXPECT_FALSE(node->shouldUseUniformScale());
    EXPECT_TRUE(node->shouldSnapRotationToAxis());
    EXPECT_TRUE(node->shouldRestrictPositionBetweenNearFar());
    node->setSnapRotationToAxis(false);
    EXPECT_FALSE(node->shouldSnapRotationToAxis());
    EXPECT_TRUE(node->shouldRestrictPositionBetweenNearFar());
}

TEST(mxGizmoNodeTest, ExpectedPixelSizeIsStoredUnchecked) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setExpectedPixelSize(-3.5f);
    EXPECT_EQ(-3.5f, node->getExpectedPixelSize());
    node->setExpectedPixelSize(120.0f);
    EXPECT_EQ(120.0f, node->getExpectedPixelSize());
}

TEST(mxGizmoNodeTest, ScaleReferenceIsStoredAndNeverUsedByTheNode) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setScaleReference(Vec3(2.0f, 0.5f, -1.0f));
    EXPECT_EQ(Vec3(2.0f, 0.5f, -1.0f), node->getScaleReference());
    EXPECT_EQ(Vec3::ZERO, node->getCenterReferences());
    EXPECT_TRUE(node->getLocalTransform().IsIdentity());
}

TEST(mxGizmoNodeTest, LoadGPUResourcesSucceedsWithoutRenderer) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    EXPECT_TRUE(node->loadGPUResources());
}

TEST(mxGizmoNodeTest, ChildrenGeometriesLeaveANonEmptyVectorUnchanged) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mx::mxGeometry> geometry = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS);
    std::vector<mxPointer<mx::mxGeometry>> geometries{geometry};
    node->getChildrenMxGeometries(geometries);
    ASSERT_EQ(1u, geometries.size());
    EXPECT_EQ(geometry, geometries[0]);

    std::vector<mxPointer<mx::mxGeometry>> empty;
    node->getChildrenMxGeometries(empty);
    EXPECT_TRUE(empty.empty());
}

TEST(mxGizmoNodeTest, GizmoPositionIsTheLocalTranslationNotTheWorldOne) {
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    parent->attachChild(node.get());
    parent->editLocalTransform(true).SetTranslate(Vec3(10.0f, 0.0f, 0.0f));
    node->editLocalTransform(true).SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    parent->UpdateGS();
    EXPECT_EQ(Vec3(1.0f, 2.0f, 3.0f), node->getGizmoPosition());
    EXPECT_TRUE(
        VectorNear(node->getWorldTransform().GetTranslate(), Vec3(11.0f, 2.0f, 3.0f), csTolerance));
}

// --- Modes and masks ---------------------------------------------------------------------

TEST(mxGizmoNodeTest, SetModeStoresAnyValueAndShowsNothingForValuesWithoutSubGizmo) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    for (mxGizmoNode::GizmoMode mode :
         {mxGizmoNode::GIZMO_NONE, mxGizmoNode::GIZMO_UNSET, static_cast<mxGizmoNode::GizmoMode>(7),
          static_cast<mxGizmoNode::GizmoMode>(-2)}) {
        node->setMode(mode);
        EXPECT_EQ(mode, node->getMode());
        for (int slot = 0; slot < 19; ++slot) {
            EXPECT_EQ(csHidden, CullingOf(*node, slot)) << "mode " << mode << " slot " << slot;
        }
    }
}

TEST(mxGizmoNodeTest, SetModeLeavesTheNodesOwnCullingModeAlone) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    EXPECT_EQ(csHidden, node->getCullingMode());
    node->setCullingMode(csShown);
    node->setMode(mxGizmoNode::GIZMO_NONE);
    EXPECT_EQ(csShown, node->getCullingMode());
}

TEST(mxGizmoNodeTest, SetModeShowsExactlyTheEnabledAxesOfThatModeForEveryMask) {
    const mxGizmoNode::GizmoMode modes[] = {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE,
                                            mxGizmoNode::GIZMO_SCALE};
    for (mxGizmoNode::GizmoMode mode : modes) {
        for (unsigned int mask = 0; mask < 8; ++mask) {
            mxPointer<mxGizmoNode> node = new mxGizmoNode();
            // Store the mask in every sub-gizmo without showing anything, then set the mode.
            node->editTranslateGizmo().setEnabledAxis(static_cast<unsigned char>(mask));
            node->editRotateGizmo().setEnabledAxis(static_cast<unsigned char>(mask));
            node->editScaleGizmo().setEnabledAxis(static_cast<unsigned char>(mask));
            node->setMode(mode);
            EXPECT_EQ(mode, node->getMode());
            for (int slot = 0; slot < 19; ++slot) {
                EXPECT_EQ(ExpectedAfterSetMode(slot, mode, static_cast<unsigned char>(mask)),
                          CullingOf(*node, slot))
                    << ModeName(mode) << " mask " << mask << " slot " << slot;
            }
        }
    }
}

TEST(mxGizmoNodeTest, SetEnabledAxisShowsThatModesSubGizmoForEveryMaskWhateverTheMode) {
    const mxGizmoNode::GizmoMode modes[] = {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE,
                                            mxGizmoNode::GIZMO_SCALE};
    for (mxGizmoNode::GizmoMode mode : modes) {
        for (unsigned int mask = 0; mask < 8; ++mask) {
            mxPointer<mxGizmoNode> node = new mxGizmoNode();
            node->setEnabledAxis(mode, static_cast<unsigned char>(mask));
            EXPECT_EQ(mask, node->getEnabledAxis(mode));
            EXPECT_EQ(mxGizmoNode::GIZMO_NONE, node->getMode());
            for (int slot = 0; slot < 19; ++slot) {
                // Only the sub-gizmo of mode has the mask; the other two keep 0xFF, but are
                // hidden anyway, so the same rule applies.
                EXPECT_EQ(ExpectedAfterSetMode(slot, mode, static_cast<unsigned char>(mask)),
                          CullingOf(*node, slot))
                    << ModeName(mode) << " mask " << mask << " slot " << slot;
            }
        }
    }
}

TEST(mxGizmoNodeTest, EnablingRotateAxesInTranslateModeShowsCirclesButKeepsTranslateMode) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 0x05);
    EXPECT_EQ(mxGizmoNode::GIZMO_TRANSLATE, node->getMode());
    EXPECT_EQ(csShown, CullingOf(*node, CircleSlot(0)));
    EXPECT_EQ(csHidden, CullingOf(*node, CircleSlot(1)));
    EXPECT_EQ(csShown, CullingOf(*node, CircleSlot(2)));
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(csHidden, CullingOf(*node, TranslateAxisSlot(axis)));
        EXPECT_EQ(csHidden, CullingOf(*node, ArrowHeadSlot(axis)));
    }
    EXPECT_EQ(0x05, node->getEnabledAxis(mxGizmoNode::GIZMO_ROTATE));
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE));
}

TEST(mxGizmoNodeTest, TranslateModeWithMaskTwoShowsOnlyTheYArrow) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0x02);
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    for (int slot = 0; slot < 19; ++slot) {
        const bool yArrow = slot == TranslateAxisSlot(1) || slot == ArrowHeadSlot(1);
        EXPECT_EQ(yArrow ? csShown : csHidden, CullingOf(*node, slot)) << "slot " << slot;
    }
}

TEST(mxGizmoNodeTest, ScaleModeWithoutAxisBitsShowsNoAxisAndTheTrianglesKeepTheirCulling) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    ASSERT_EQ(csShown, CullingOf(*node, csCentreTrianglesSlot));

    node->setEnabledAxis(mxGizmoNode::GIZMO_SCALE, 0xF8);
    EXPECT_EQ(0xF8, node->getEnabledAxis(mxGizmoNode::GIZMO_SCALE));
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(csHidden, CullingOf(*node, ScaleAxisSlot(axis)));
        EXPECT_EQ(csHidden, CullingOf(*node, EndSquareSlot(axis)));
        EXPECT_EQ(csHidden, CullingOf(*node, ActiveFrameSlot(axis)));
    }
    EXPECT_EQ(csShown, CullingOf(*node, csCentreTrianglesSlot));

    // Even leaving scale mode does not hide them while the mask has no axis bit.
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    EXPECT_EQ(csShown, CullingOf(*node, csCentreTrianglesSlot));
}

TEST(mxGizmoNodeTest, SetEnabledAxisOfAModeWithoutSubGizmoStoresNothingAndHidesAll) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->setEnabledAxis(mxGizmoNode::GIZMO_NONE, 0x01);
    EXPECT_EQ(mxGizmoNode::GIZMO_ROTATE, node->getMode());
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE));
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_ROTATE));
    EXPECT_EQ(0xFF, node->getEnabledAxis(mxGizmoNode::GIZMO_SCALE));
    for (int slot = 0; slot < 19; ++slot) {
        EXPECT_EQ(csHidden, CullingOf(*node, slot)) << "slot " << slot;
    }
}

TEST(mxGizmoNodeTest, MaskBitsAboveTheAxesAreStoredAsGiven) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0xA9);
    EXPECT_EQ(0xA9, node->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE));
}

// --- Reference objects and their centre --------------------------------------------------

TEST(mxGizmoNodeTest, CentreAveragesWorldPositionsOfPointsAndBoundCentresOfTheOthers) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    mxPointer<mxNode> point = MakePoint(Vec3(2.0f, 0.0f, 0.0f));
    mxPointer<mxLine> bounded = MakeBoundedSegment(Vec3(0.0f, 4.0f, 0.0f));
    ASSERT_EQ(0.0f, point->getWorldBound().getRadius());
    ASSERT_GT(bounded->getWorldBound().getRadius(), 0.0f);

    node->setReferenceObjects({point.get(), bounded.get()});
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(1.0f, 2.0f, 0.0f), csTolerance));

    node->setCenterOffset(Vec3(0.5f, -1.0f, 3.0f));
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(1.5f, 1.0f, 3.0f), csTolerance));
}

TEST(mxGizmoNodeTest, NullReferenceAloneGivesTheOffset) {
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    node->setCenterOffset(Vec3(0.0f, 0.0f, 7.0f));
    node->setReferenceObject(nullptr);
    ASSERT_EQ(1u, node->getReferenceObjects().size());
    EXPECT_EQ(Vec3(0.0f, 0.0f, 7.0f), node->getCenterReferences());
}

TEST(mxGizmoNodeTest, NullReferenceCountsInTheAverage) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mxLine> bounded = MakeBoundedSegment(Vec3(2.0f, 4.0f, -6.0f));
    node->setReferenceObjects({bounded.get(), nullptr});
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(1.0f, 2.0f, -3.0f), csTolerance));
}

TEST(mxGizmoNodeTest, CentreFollowsTheReferenceObjectsWorldPlacement) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mxNode> parent = new mxNode();
    mxPointer<mxNode> point = new mxNode();
    parent->attachChild(point.get());
    parent->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, 5.0f));
    point->editLocalTransform(true).SetTranslate(Vec3(1.0f, 0.0f, 0.0f));
    parent->UpdateGS();
    node->setReferenceObject(point.get());
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(1.0f, 0.0f, 5.0f), csTolerance));
}

TEST(mxGizmoNodeTest, SetReferenceObjectAfterThreeLeavesExactlyOne) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mxNode> a = MakePoint(Vec3(1.0f, 0.0f, 0.0f));
    mxPointer<mxNode> b = MakePoint(Vec3(2.0f, 0.0f, 0.0f));
    mxPointer<mxNode> c = MakePoint(Vec3(3.0f, 0.0f, 0.0f));
    node->setReferenceObjects({a.get(), b.get(), c.get()});
    ASSERT_EQ(3u, node->getReferenceObjects().size());
    node->setReferenceObject(b.get());
    ASSERT_EQ(1u, node->getReferenceObjects().size());
    EXPECT_EQ(b.get(), node->getReferenceObjects()[0]);
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(2.0f, 0.0f, 0.0f), csTolerance));
}

TEST(mxGizmoNodeTest, SetReferenceObjectsWithItsOwnListKeepsTheList) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mxNode> a = MakePoint(Vec3(1.0f, 0.0f, 0.0f));
    mxPointer<mxNode> b = MakePoint(Vec3(3.0f, 0.0f, 0.0f));
    node->setReferenceObjects({a.get(), nullptr, b.get()});
    node->setReferenceObjects(node->getReferenceObjects());
    const std::vector<mxSpatial*> expected{a.get(), nullptr, b.get()};
    EXPECT_EQ(expected, node->getReferenceObjects());
}

TEST(mxGizmoNodeTest, EditedReferenceObjectsAreUsedForTheCentre) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    mxPointer<mxNode> a = MakePoint(Vec3(4.0f, 0.0f, 0.0f));
    node->editReferenceObjects().push_back(a.get());
    EXPECT_TRUE(VectorNear(node->getCenterReferences(), Vec3(4.0f, 0.0f, 0.0f), csTolerance));
}

TEST(mxGizmoNodeTest, NodeNeverOwnsItsReferenceObjects) {
    mxPointer<mxNode> object = MakePoint(Vec3::ZERO);
    const int references = object->GetReferences();
    {
        mxPointer<mxGizmoNode> node = new mxGizmoNode();
        node->setReferenceObject(object.get());
        EXPECT_EQ(references, object->GetReferences());
    }
    EXPECT_EQ(references, object->GetReferences());
}

// --- Dirty marking and the host's update -------------------------------------------------

TEST(mxGizmoNodeTest, SetDirtyDownWithAncestorsSetsBitsZeroAndThirteenInBothWords) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->Clean_Flags();
    const unsigned int first = node->setDirtyDown(true);
    EXPECT_EQ(node->getDirtyFlags(), first);
    EXPECT_EQ(0x2001u, node->getDirtyFlags() & 0x2001u);
    EXPECT_EQ(0x2001u, node->getDirtyFlagsDown() & 0x2001u);
    // The host's own marking (world and bound) is kept too.
    EXPECT_EQ(0x2003u, first);
    EXPECT_EQ(0x2003u, node->getDirtyFlagsDown());
}

TEST(mxGizmoNodeTest, SetDirtyDownWithoutAncestorsSetsOnlyBitZeroBesidesTheHosts) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->Clean_Flags();
    const unsigned int first = node->setDirtyDown(false);
    EXPECT_EQ(0x0003u, first);
    EXPECT_EQ(0x0003u, node->getDirtyFlags());
    EXPECT_EQ(0x0003u, node->getDirtyFlagsDown());
}

TEST(mxGizmoNodeTest, SetDirtyDownKeepsFlagsThatWereAlreadySet) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->Clean_Flags();
    node->setDirty(mxSpatial::DIRTY_MODEL, false, false);
    const unsigned int first = node->setDirtyDown(false);
    EXPECT_EQ(0x0007u, first);
    EXPECT_EQ(0x0003u, node->getDirtyFlagsDown());
}

TEST(mxGizmoNodeTest, SetDirtyDownWithAncestorsReachesTheRootsFlaggedUpdate) {
    mxPointer<mxNode> root = new mxNode();
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    root->attachChild(node.get());
    root->UpdateGS();
    root->editLocalTransform(false).SetTranslate(Vec3(0.0f, 3.0f, 0.0f));
    root->UpdateGS();
    node->editLocalTransform(false).SetTranslate(Vec3(1.0f, 0.0f, 0.0f));
    node->setDirtyDown(true);
    root->UpdateGS_Flags();
    EXPECT_TRUE(
        VectorNear(node->getWorldTransform().GetTranslate(), Vec3(1.0f, 3.0f, 0.0f), csTolerance));
    EXPECT_EQ(0u, node->getDirtyFlags());
}

TEST(mxGizmoNodeTest, WorldUpdatesReachTheLinesThroughTheNode) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode();
    node->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, -2.0f));
    node->UpdateGS();
    // The X arrowhead sits at the tip of its axis, carried by the node.
    EXPECT_TRUE(VectorNear(node->getChild(ArrowHeadSlot(0))->getWorldTransform().GetTranslate(),
                           Vec3(1.0f, 0.0f, -2.0f), csTolerance));

    node->editLocalTransform(true).SetTranslate(Vec3(5.0f, 0.0f, 0.0f));
    node->UpdateGS_Flags();
    EXPECT_TRUE(VectorNear(node->getChild(ArrowHeadSlot(0))->getWorldTransform().GetTranslate(),
                           Vec3(6.0f, 0.0f, 0.0f), csTolerance));
}
