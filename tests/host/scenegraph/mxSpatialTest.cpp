// Tests for mx::mxSpatial: world transformations and bounds computed by full and flagged
// updates, the dirty-flag words, the change stamp, culling, state and update flags, and
// forceIgnore.

#include "scenegraph/mxLine.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxSpatial.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

using mx::mxBoundingVolume;
using mx::mxLine;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSpatial;
using Transformation = mx::mxGenericTransformation<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using mx::test::Encloses;
using mx::test::Rotation;
using mx::test::VectorNear;

namespace {

// World coordinates in these scenes stay below about 100: a few ulps of that.
constexpr float csTolerance = 1e-4f;

// mxSpatial's constructor is for subclasses; this one adds nothing.
class PlainSpatial : public mxSpatial {
public:
    PlainSpatial() = default;
};

// A two-vertex line that counts how often its world data and bound are recomputed.
class CountingLine : public mxLine {
public:
    CountingLine() : mxLine(2u) {}
    void UpdateWorldBound() override {
        ++boundUpdates;
        mxLine::UpdateWorldBound();
    }
    void UpdateWorldData_Flags() override {
        ++flaggedDataUpdates;
        mxLine::UpdateWorldData_Flags();
    }
    int boundUpdates = 0;
    int flaggedDataUpdates = 0;
};

// A node that counts how often its bound is recomputed.
class CountingNode : public mxNode {
public:
    void UpdateWorldBound() override {
        ++boundUpdates;
        mxNode::UpdateWorldBound();
    }
    int boundUpdates = 0;
};

// Whether bound contains every vertex of line, carried to world space.
::testing::AssertionResult EnclosesVertices(const mxBoundingVolume& bound, const mxLine& line) {
    for (const Vec3& vertex : line.getVertices()) {
        const Vec3 world = line.getWorldTransform().ApplyForward(vertex);
        if (!bound.contains(world, csTolerance)) {
            return ::testing::AssertionFailure()
                   << "vertex at (" << world[0] << ", " << world[1] << ", " << world[2]
                   << ") lies outside the bound";
        }
    }
    return ::testing::AssertionSuccess();
}

// A three-level chain root -> mid -> leaf whose transformations rotate and scale
// non-uniformly, so that the world transformations below the root are general matrices.
struct Chain {
    Chain() : root(new mxNode()), mid(new mxNode()), leaf(new mxLine(4u)) {
        Transformation& rootLocal = root->editLocalTransform(false);
        rootLocal.SetRotate(Rotation(0, 0, 1, static_cast<float>(M_PI / 2)));
        rootLocal.SetScale(Vec3(2, 1, 3));
        rootLocal.SetTranslate(Vec3(10, 0, 0));
        Transformation& midLocal = mid->editLocalTransform(false);
        midLocal.SetRotate(Rotation(1, 0, 0, 0.5f));
        midLocal.SetScale(Vec3(1, 2, 0.5f));
        midLocal.SetTranslate(Vec3(0, 3, 0));
        Transformation& leafLocal = leaf->editLocalTransform(false);
        leafLocal.SetRotate(Rotation(0, 1, 0, 0.3f));
        leafLocal.SetUniformScale(2.0f);
        leafLocal.SetTranslate(Vec3(1, 1, 1));
        leaf->setVertexPosition(0, Vec3(0, 0, 0));
        leaf->setVertexPosition(1, Vec3(1, 0, 0));
        leaf->setVertexPosition(2, Vec3(0, 2, 0));
        leaf->setVertexPosition(3, Vec3(-1, 1, 3));
        root->attachChild(mid.get());
        mid->attachChild(leaf.get());
    }

    // Where a point given in the leaf's model space lands, mapped level by level through the
    // local transformations (no world transformation involved).
    Vec3 leafToWorld(const Vec3& point) const {
        return root->getLocalTransform().ApplyForward(
            mid->getLocalTransform().ApplyForward(leaf->getLocalTransform().ApplyForward(point)));
    }

    mxPointer<mxNode> root;
    mxPointer<mxNode> mid;
    mxPointer<mxLine> leaf;
};

const std::vector<Vec3> csProbePoints = {Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0),
                                         Vec3(0, 0, 1), Vec3(1, -2, 3)};

} // namespace

TEST(mxSpatialTest, TypeIsSpatialDerivedFromObject) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    EXPECT_STREQ("mxCore.mxSpatial", mxSpatial::TYPE.getName());
    EXPECT_EQ(&mx::mxObject::TYPE, mxSpatial::TYPE.getParent());
    EXPECT_TRUE(spatial->IsExactly(mxSpatial::TYPE));
    EXPECT_TRUE(spatial->IsDerived(mx::mxObject::TYPE));
}

TEST(mxSpatialTest, NewSpatialIsAnIdentityRootWithNoFlags) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    EXPECT_EQ(nullptr, spatial->getParent());
    EXPECT_TRUE(spatial->getLocalTransform().IsIdentity());
    EXPECT_TRUE(spatial->getWorldTransform().IsIdentity());
    EXPECT_EQ(mxBoundingVolume(), spatial->getWorldBound());
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
    EXPECT_EQ(0u, spatial->getStateFlags());
    EXPECT_EQ(0u, spatial->getUpdateFlags());
    EXPECT_EQ(mxSpatial::CULL_DYNAMIC, spatial->getCullingMode());
    EXPECT_FALSE(spatial->isIgnored());
    EXPECT_FALSE(spatial->isOverlay());
}

TEST(mxSpatialTest, OverlayMarkIsSetAndClearedWithoutTouchingFlags) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    const std::uint64_t stamp = spatial->getChangeStamp();
    spatial->setOverlay(true);
    EXPECT_TRUE(spatial->isOverlay());
    spatial->setOverlay(false);
    EXPECT_FALSE(spatial->isOverlay());
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(stamp, spatial->getChangeStamp());
}

TEST(mxSpatialTest, CullingModeTakesEachOfTheThreeModes) {
    EXPECT_EQ(0, mxSpatial::CULL_DYNAMIC);
    EXPECT_EQ(1, mxSpatial::CULL_ALWAYS);
    EXPECT_EQ(2, mxSpatial::CULL_NEVER);
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setCullingMode(mxSpatial::CULL_ALWAYS);
    EXPECT_EQ(mxSpatial::CULL_ALWAYS, spatial->getCullingMode());
    spatial->setCullingMode(mxSpatial::CULL_NEVER);
    EXPECT_EQ(mxSpatial::CULL_NEVER, spatial->getCullingMode());
    spatial->setCullingMode(mxSpatial::CULL_DYNAMIC);
    EXPECT_EQ(mxSpatial::CULL_DYNAMIC, spatial->getCullingMode());
}

TEST(mxSpatialTest, StateFlagsAreSettableAndExcludedIsBit0x4) {
    EXPECT_EQ(0x4u, static_cast<unsigned int>(mxSpatial::STATE_EXCLUDED));
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setStateFlags(mxSpatial::STATE_EXCLUDED);
    EXPECT_EQ(0x4u, spatial->getStateFlags());
    spatial->setStateFlags(0x4u | 0x10u);
    EXPECT_EQ(0x14u, spatial->getStateFlags());
    spatial->setStateFlags(0u);
    EXPECT_EQ(0u, spatial->getStateFlags());
}

TEST(mxSpatialTest, UpdateFlagsAreSettableAndSubtreeChangedIsBit0x40) {
    EXPECT_EQ(0x40u, static_cast<unsigned int>(mxSpatial::UPDATE_SUBTREE_CHANGED));
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setUpdateFlags(0x41u);
    EXPECT_EQ(0x41u, spatial->getUpdateFlags());
    spatial->setUpdateFlags(0u);
    EXPECT_EQ(0u, spatial->getUpdateFlags());
}

TEST(mxSpatialTest, UpdateGSMakesTheWorldOfARootItsLocalTransformation) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->editLocalTransform(false).SetTranslate(Vec3(1, 2, 3));
    spatial->editLocalTransform(false).SetScale(Vec3(1, 2, 4));
    spatial->UpdateGS();
    EXPECT_EQ(spatial->getLocalTransform(), spatial->getWorldTransform());
}

TEST(mxSpatialTest, UpdateGSComposesParentWorldTimesLocalThroughSeveralLevels) {
    Chain chain;
    chain.root->UpdateGS();
    EXPECT_EQ(chain.root->getLocalTransform(), chain.root->getWorldTransform());
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
        EXPECT_TRUE(VectorNear(chain.mid->getWorldTransform().ApplyForward(point),
                               chain.root->getLocalTransform().ApplyForward(
                                   chain.mid->getLocalTransform().ApplyForward(point)),
                               csTolerance));
    }
}

TEST(mxSpatialTest, UpdateGSGivesAPlainSpatialAPointBoundAtItsWorldTranslation) {
    mxPointer<mxNode> parent = new mxNode();
    parent->editLocalTransform(false).SetTranslate(Vec3(10, 0, 0));
    parent->editLocalTransform(false).SetUniformScale(2.0f);
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->editLocalTransform(false).SetTranslate(Vec3(1, 2, 3));
    parent->attachChild(spatial);
    parent->UpdateGS();
    EXPECT_TRUE(VectorNear(spatial->getWorldBound().getCenter(), Vec3(12, 4, 6), csTolerance));
    EXPECT_EQ(0.0f, spatial->getWorldBound().getRadius());
}

TEST(mxSpatialTest, UpdateGSGivesAGeometryABoundEnclosingEveryVertexInWorldSpace) {
    Chain chain;
    chain.root->UpdateGS();
    EXPECT_TRUE(EnclosesVertices(chain.leaf->getWorldBound(), *chain.leaf));
    // Checked against the level-by-level mapping too, independent of the world transformation.
    for (const Vec3& vertex : chain.leaf->getVertices()) {
        EXPECT_TRUE(chain.leaf->getWorldBound().contains(chain.leafToWorld(vertex), csTolerance));
    }
}

TEST(mxSpatialTest, UpdateGSOnADeepChildLeavesTheRootBoundUpToDate) {
    Chain chain;
    chain.root->UpdateGS();
    const mxBoundingVolume before = chain.root->getWorldBound();
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(40, -30, 20));
    chain.leaf->UpdateGS();
    ASSERT_NE(before, chain.root->getWorldBound());
    EXPECT_TRUE(Encloses(chain.root->getWorldBound(), chain.leaf->getWorldBound(), csTolerance));
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
    EXPECT_TRUE(Encloses(chain.mid->getWorldBound(), chain.leaf->getWorldBound(), csTolerance));
}

TEST(mxSpatialTest, UpdateGSFlagsOnADeepChildLeavesTheRootBoundUpToDate) {
    Chain chain;
    chain.root->UpdateGS();
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(40, -30, 20));
    chain.leaf->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
    EXPECT_TRUE(Encloses(chain.root->getWorldBound(), chain.mid->getWorldBound(), csTolerance));
}

TEST(mxSpatialTest, RootBoundFollowsADeepChildWhileAnIntermediateNodeIsStillMarked) {
    // mid waits for its own update (setDirtyDown) while the leaf below it is updated on its
    // own: the root's bound must still pick up where the leaf went.
    Chain chain;
    chain.root->UpdateGS();
    chain.mid->setDirtyDown(true);
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(40, -30, 20));
    chain.leaf->UpdateGS_Flags();
    EXPECT_TRUE(Encloses(chain.mid->getWorldBound(), chain.leaf->getWorldBound(), csTolerance));
    EXPECT_TRUE(Encloses(chain.root->getWorldBound(), chain.mid->getWorldBound(), csTolerance));
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, RootBoundFollowsADeepChildWhileAnIntermediateNodeBoundIsMarked) {
    Chain chain;
    chain.root->UpdateGS();
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(40, -30, 20));
    chain.mid->setDirty(mxSpatial::DIRTY_BOUND, true, false);
    chain.leaf->UpdateGS_Flags();
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, EditLocalTransformWithoutMarkingChangesNoFlagAndNoStamp) {
    Chain chain;
    chain.root->UpdateGS();
    const std::uint64_t stamp = chain.leaf->getChangeStamp();
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(5, 5, 5));
    EXPECT_EQ(0u, chain.leaf->getDirtyFlags());
    EXPECT_EQ(0u, chain.mid->getDirtyFlags());
    EXPECT_EQ(stamp, chain.leaf->getChangeStamp());
    EXPECT_EQ(Vec3(5, 5, 5), chain.leaf->getLocalTransform().GetTranslate());
}

TEST(mxSpatialTest, EditLocalTransformWithMarkingMarksTheWorldAndTheAncestors) {
    Chain chain;
    chain.root->UpdateGS();
    const std::uint64_t stamp = chain.leaf->getChangeStamp();
    chain.leaf->editLocalTransform(true);
    EXPECT_NE(0u, chain.leaf->getDirtyFlags() & mxSpatial::DIRTY_WORLD);
    EXPECT_GT(chain.leaf->getChangeStamp(), stamp);
    EXPECT_NE(0u, chain.mid->getDirtyFlags() & mxSpatial::DIRTY_DESCENDANT);
    EXPECT_NE(0u, chain.root->getDirtyFlags() & mxSpatial::DIRTY_DESCENDANT);
}

TEST(mxSpatialTest, EditWorldTransformMarksTheWorldOnlyWhenAsked) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    const std::uint64_t stamp = spatial->getChangeStamp();
    spatial->editWorldTransform(false);
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(stamp, spatial->getChangeStamp());
    spatial->editWorldTransform(true);
    EXPECT_EQ(static_cast<unsigned int>(mxSpatial::DIRTY_WORLD), spatial->getDirtyFlags());
    EXPECT_GT(spatial->getChangeStamp(), stamp);
}

TEST(mxSpatialTest, UpdateGSFlagsIgnoresALocalEditThatWasNotMarked) {
    Chain chain;
    chain.root->UpdateGS();
    const Transformation world = chain.leaf->getWorldTransform();
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(7, 8, 9));
    chain.leaf->UpdateGS_Flags();
    EXPECT_EQ(world, chain.leaf->getWorldTransform());
    chain.root->UpdateGS_Flags();
    EXPECT_EQ(world, chain.leaf->getWorldTransform());
}

TEST(mxSpatialTest, UpdateGSFlagsPicksUpALocalEditMarkedByEditLocalTransform) {
    Chain chain;
    chain.root->UpdateGS();
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(7, 8, 9));
    chain.leaf->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.leaf->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, UpdateGSFlagsOnAMovedParentCarriesItsChildren) {
    Chain chain;
    chain.root->UpdateGS();
    chain.mid->editLocalTransform(true).SetTranslate(Vec3(-6, 2, 8));
    chain.mid->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.leaf->getWorldBound(), *chain.leaf));
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, FlaggedUpdateFromTheRootCarriesTheChildrenOfAMovedNode) {
    Chain chain;
    chain.root->UpdateGS();
    chain.mid->editLocalTransform(true).SetRotate(Rotation(0, 1, 1, 1.2f));
    chain.root->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, FlaggedUpdateOfTheRootReachesAllMarkedObjectsAndClearsTheirFlags) {
    Chain chain;
    chain.root->UpdateGS();
    chain.root->editLocalTransform(true).SetTranslate(Vec3(0, 0, -10));
    chain.leaf->editLocalTransform(true).SetUniformScale(0.5f);
    chain.root->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    for (mxSpatial* spatial : {static_cast<mxSpatial*>(chain.root.get()),
                               static_cast<mxSpatial*>(chain.mid.get()),
                               static_cast<mxSpatial*>(chain.leaf.get())}) {
        EXPECT_EQ(0u, spatial->getDirtyFlags());
        EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
    }
}

TEST(mxSpatialTest, UpdateGSFlagsClearsBothFlagWordsIncludingUnnamedBits) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setDirty(mxSpatial::DIRTY_WORLD | 0x100u, false, true);
    ASSERT_EQ(0x101u, spatial->getDirtyFlags());
    ASSERT_EQ(0x101u, spatial->getDirtyFlagsDown());
    spatial->UpdateGS_Flags();
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
}

TEST(mxSpatialTest, UpdateGSClearsBothFlagWords) {
    Chain chain;
    chain.mid->setDirty(0x100u | mxSpatial::DIRTY_BOUND, true, true);
    chain.root->UpdateGS();
    for (mxSpatial* spatial : {static_cast<mxSpatial*>(chain.root.get()),
                               static_cast<mxSpatial*>(chain.mid.get()),
                               static_cast<mxSpatial*>(chain.leaf.get())}) {
        EXPECT_EQ(0u, spatial->getDirtyFlags());
        EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
    }
}

TEST(mxSpatialTest, CleanFlagsClearsBothFlagWords) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setDirty(0x107u, false, true);
    spatial->Clean_Flags();
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
}

TEST(mxSpatialTest, SetDirtyOrsFlagsIntoTheDirtyFlags) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setDirty(mxSpatial::DIRTY_WORLD, false, false);
    spatial->setDirty(mxSpatial::DIRTY_MODEL, false, false);
    spatial->setDirty(0x200u, false, false);
    EXPECT_EQ(0x205u, spatial->getDirtyFlags());
    EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
}

TEST(mxSpatialTest, SetDirtyWithMarkSubtreeOrsIntoTheFlagsHandedDown) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    spatial->setDirty(mxSpatial::DIRTY_WORLD, false, true);
    spatial->setDirty(mxSpatial::DIRTY_BOUND, false, false);
    spatial->setDirty(0x100u, false, true);
    EXPECT_EQ(0x101u, spatial->getDirtyFlagsDown());
    EXPECT_EQ(0x103u, spatial->getDirtyFlags());
}

TEST(mxSpatialTest, SetDirtyAdvancesTheChangeStampEvenWithoutFlags) {
    mxPointer<mxSpatial> spatial = new PlainSpatial();
    const std::uint64_t first = spatial->getChangeStamp();
    spatial->setDirty(0u, true, false);
    const std::uint64_t second = spatial->getChangeStamp();
    EXPECT_GT(second, first);
    EXPECT_EQ(0u, spatial->getDirtyFlags());
    EXPECT_EQ(0u, spatial->getDirtyFlagsDown());
    spatial->setDirty(mxSpatial::DIRTY_WORLD, false, false);
    spatial->setDirty(mxSpatial::DIRTY_WORLD, false, false); // already set: still observable
    EXPECT_GT(spatial->getChangeStamp(), second + 1);
}

TEST(mxSpatialTest, SetDirtyWithMarkAncestorsLetsAFlaggedUpdateOfTheRootReachIt) {
    Chain chain;
    chain.root->UpdateGS();
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(3, -4, 5));
    chain.leaf->setDirty(mxSpatial::DIRTY_WORLD, true, false);
    chain.root->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, SetDirtyWithoutMarkAncestorsIsNotReachedByAFlaggedUpdateOfTheRoot) {
    Chain chain;
    chain.root->UpdateGS();
    const Transformation world = chain.leaf->getWorldTransform();
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(3, -4, 5));
    chain.leaf->setDirty(mxSpatial::DIRTY_WORLD, false, false);
    chain.root->UpdateGS_Flags();
    EXPECT_EQ(world, chain.leaf->getWorldTransform());
    // The mark is still there for an update of the leaf itself.
    chain.leaf->UpdateGS_Flags();
    EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().GetTranslate(),
                           chain.leafToWorld(Vec3(0, 0, 0)), csTolerance));
}

TEST(mxSpatialTest, SetDirtyDownReturnsTheFlagsItSetAndSetsThemInBothWords) {
    mxPointer<mxNode> node = new mxNode();
    const unsigned int flags = node->setDirtyDown(false);
    EXPECT_NE(0u, flags & mxSpatial::DIRTY_WORLD);
    EXPECT_EQ(flags, node->getDirtyFlags() & flags);
    EXPECT_EQ(flags, node->getDirtyFlagsDown() & flags);
}

TEST(mxSpatialTest, SetDirtyDownMarksTheWholeSubtreeForTheNextFlaggedUpdate) {
    Chain chain;
    chain.root->UpdateGS();
    // Local edits nobody marked: only the subtree marking can make them count.
    chain.mid->editLocalTransform(false).SetTranslate(Vec3(0, -5, 2));
    chain.leaf->editLocalTransform(false).SetTranslate(Vec3(4, 0, -1));
    chain.mid->setDirtyDown(false);
    chain.mid->UpdateGS_Flags();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
    EXPECT_EQ(0u, chain.leaf->getDirtyFlags());
    EXPECT_EQ(0u, chain.leaf->getDirtyFlagsDown());
}

TEST(mxSpatialTest, SetDirtyDownReachesEveryLevelBelow) {
    // root -> a -> b -> c -> d: marking a must reach d, three levels down.
    mxPointer<mxNode> root = new mxNode();
    std::vector<mxPointer<mxNode>> levels = {new mxNode(), new mxNode(), new mxNode(),
                                             new mxNode()};
    root->attachChild(levels[0].get());
    for (std::size_t i = 1; i < levels.size(); ++i) {
        levels[i - 1]->attachChild(levels[i].get());
    }
    root->UpdateGS();
    for (mxPointer<mxNode>& level : levels) {
        level->editLocalTransform(false).SetTranslate(Vec3(1, 0, 0));
    }
    levels[0]->setDirtyDown(true);
    root->UpdateGS_Flags();
    for (std::size_t i = 0; i < levels.size(); ++i) {
        EXPECT_TRUE(VectorNear(levels[i]->getWorldTransform().GetTranslate(),
                               Vec3(static_cast<float>(i + 1), 0, 0), csTolerance))
            << "level " << i;
    }
}

TEST(mxSpatialTest, ForceIgnoreWorldKeepsAWrittenWorldThroughFlaggedUpdates) {
    Chain chain;
    chain.root->UpdateGS();
    chain.mid->forceIgnore(true, false, false);
    EXPECT_TRUE(chain.mid->isIgnored());
    Transformation written;
    written.SetTranslate(Vec3(100, 0, 0));
    written.SetUniformScale(3.0f);
    chain.mid->editWorldTransform(true) = written;
    chain.mid->UpdateGS_Flags();
    EXPECT_EQ(written, chain.mid->getWorldTransform());
    // The children follow the written world, not the local chain.
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(
            VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                       written.ApplyForward(chain.leaf->getLocalTransform().ApplyForward(point)),
                       csTolerance));
    }
    // A flagged update from the root that reaches mid keeps the written world too.
    chain.root->editLocalTransform(true).SetTranslate(Vec3(0, 50, 0));
    chain.root->UpdateGS_Flags();
    EXPECT_EQ(written, chain.mid->getWorldTransform());
    EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().GetTranslate(),
                           written.ApplyForward(chain.leaf->getLocalTransform().GetTranslate()),
                           csTolerance));
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, ForceIgnoreWorldKeepsAWrittenWorldThroughFullUpdates) {
    Chain chain;
    chain.mid->forceIgnore(true, false, false);
    Transformation written;
    written.SetRotate(Rotation(1, 1, 1, 0.8f));
    written.SetTranslate(Vec3(-20, 5, 0));
    chain.mid->editWorldTransform(false) = written;
    chain.root->UpdateGS();
    EXPECT_EQ(written, chain.mid->getWorldTransform());
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(
            VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                       written.ApplyForward(chain.leaf->getLocalTransform().ApplyForward(point)),
                       csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, ForceIgnoreFalseRestoresTheWorldComputedFromTheLocal) {
    Chain chain;
    chain.mid->forceIgnore(true, false, false);
    Transformation written;
    written.SetTranslate(Vec3(100, 0, 0));
    chain.mid->editWorldTransform(false) = written;
    chain.root->UpdateGS();
    ASSERT_EQ(written, chain.mid->getWorldTransform());

    chain.mid->forceIgnore(false, false, false);
    EXPECT_FALSE(chain.mid->isIgnored());
    chain.root->UpdateGS();
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
}

TEST(mxSpatialTest, ForceIgnoreBoundKeepsTheWorldBound) {
    Chain chain;
    chain.root->UpdateGS();
    const mxBoundingVolume kept = chain.leaf->getWorldBound();
    chain.leaf->forceIgnore(false, true, false);
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(60, 60, 60));
    chain.leaf->UpdateGS_Flags();
    EXPECT_EQ(kept, chain.leaf->getWorldBound());
    // The world transformation itself still moved.
    EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().GetTranslate(),
                           chain.leafToWorld(Vec3(0, 0, 0)), csTolerance));
}

TEST(mxSpatialTest, ForceIgnoreChildrenLeavesTheSubtreeAlone) {
    Chain chain;
    chain.root->UpdateGS();
    const Transformation leafWorld = chain.leaf->getWorldTransform();
    chain.mid->forceIgnore(false, false, true);
    chain.mid->editLocalTransform(true).SetTranslate(Vec3(0, 0, 30));
    chain.root->UpdateGS();
    EXPECT_EQ(leafWorld, chain.leaf->getWorldTransform());
    // mid itself moved.
    EXPECT_TRUE(VectorNear(chain.mid->getWorldTransform().GetTranslate(),
                           chain.root->getLocalTransform().ApplyForward(Vec3(0, 0, 30)),
                           csTolerance));
}

TEST(mxSpatialTest, FlaggedUpdatesReachTheSubtreeAgainOnceChildrenAreNoLongerIgnored) {
    // root -> mid -> inner -> leaf; mid leaves its subtree alone for one flagged update.
    Chain chain;
    mxPointer<mxNode> inner = new mxNode();
    chain.mid->detachChild(chain.leaf.get());
    chain.mid->attachChild(inner.get());
    inner->attachChild(chain.leaf.get());
    chain.root->UpdateGS();
    chain.mid->forceIgnore(false, false, true);
    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(5, 0, 0));
    chain.root->UpdateGS_Flags();
    chain.mid->forceIgnore(false, false, false);

    chain.leaf->editLocalTransform(true).SetTranslate(Vec3(-5, 2, 0));
    chain.root->UpdateGS_Flags();
    // inner's local transformation is the identity, so the chain's mapping still holds.
    for (const Vec3& point : csProbePoints) {
        EXPECT_TRUE(VectorNear(chain.leaf->getWorldTransform().ApplyForward(point),
                               chain.leafToWorld(point), csTolerance));
    }
    EXPECT_TRUE(EnclosesVertices(chain.root->getWorldBound(), *chain.leaf));
}

TEST(mxSpatialTest, FlaggedUpdateOfOneOfManySiblingsRecomputesNoOtherSibling) {
    // 1,000 siblings: enough that per-sibling work in an update would be unmistakable.
    constexpr int csSiblings = 1000;
    mxPointer<mxNode> root = new mxNode();
    mxPointer<CountingNode> parent = new CountingNode();
    root->attachChild(parent.get());
    std::vector<mxPointer<CountingLine>> siblings;
    for (int i = 0; i < csSiblings; ++i) {
        siblings.push_back(new CountingLine());
        siblings.back()->setVertexPosition(1, Vec3(1, 0, 0));
        siblings.back()->editLocalTransform(false).SetTranslate(
            Vec3(static_cast<float>(i), 0, 0));
        parent->attachChild(siblings.back().get());
    }
    root->UpdateGS();
    parent->boundUpdates = 0;
    for (mxPointer<CountingLine>& sibling : siblings) {
        sibling->boundUpdates = 0;
        sibling->flaggedDataUpdates = 0;
    }

    CountingLine& moved = *siblings[500];
    moved.editLocalTransform(true).SetTranslate(Vec3(0, 2000, 0));
    moved.UpdateGS_Flags();

    EXPECT_EQ(1, moved.boundUpdates);
    for (int i = 0; i < csSiblings; ++i) {
        if (i == 500) {
            continue;
        }
        ASSERT_EQ(0, siblings[i]->boundUpdates) << "sibling " << i;
        ASSERT_EQ(0, siblings[i]->flaggedDataUpdates) << "sibling " << i;
    }
    // The parent's bound waits until it is read, then is recomputed once.
    EXPECT_EQ(0, parent->boundUpdates);
    EXPECT_TRUE(EnclosesVertices(parent->getWorldBound(), moved));
    EXPECT_EQ(1, parent->boundUpdates);
    EXPECT_TRUE(EnclosesVertices(root->getWorldBound(), moved));
    EXPECT_EQ(1, parent->boundUpdates);
}

TEST(mxSpatialTest, FlaggedUpdatesOfEverySiblingRecomputeTheParentBoundOnceWhenRead) {
    constexpr int csSiblings = 1000;
    mxPointer<mxNode> root = new mxNode();
    mxPointer<CountingNode> parent = new CountingNode();
    root->attachChild(parent.get());
    std::vector<mxPointer<CountingLine>> siblings;
    for (int i = 0; i < csSiblings; ++i) {
        siblings.push_back(new CountingLine());
        siblings.back()->setVertexPosition(1, Vec3(1, 0, 0));
        parent->attachChild(siblings.back().get());
    }
    root->UpdateGS();
    parent->boundUpdates = 0;
    for (mxPointer<CountingLine>& sibling : siblings) {
        sibling->boundUpdates = 0;
    }

    // Spread the siblings along a circle of radius 100 in the xy plane, one update each.
    for (int i = 0; i < csSiblings; ++i) {
        const float angle = static_cast<float>(2.0 * M_PI * i / csSiblings);
        siblings[i]->editLocalTransform(true).SetTranslate(
            Vec3(100.0f * std::cos(angle), 100.0f * std::sin(angle), 0));
        siblings[i]->UpdateGS_Flags();
    }
    EXPECT_EQ(0, parent->boundUpdates);
    for (int i = 0; i < csSiblings; ++i) {
        ASSERT_EQ(1, siblings[i]->boundUpdates) << "sibling " << i;
    }

    const mxBoundingVolume bound = parent->getWorldBound();
    EXPECT_EQ(1, parent->boundUpdates);
    for (const mxPointer<CountingLine>& sibling : siblings) {
        ASSERT_TRUE(EnclosesVertices(bound, *sibling));
    }
    // Every sibling was recomputed by its own update only, not again by the parent.
    for (int i = 0; i < csSiblings; ++i) {
        ASSERT_EQ(1, siblings[i]->boundUpdates) << "sibling " << i;
    }
    // Reading again, also through the root, recomputes nothing more.
    parent->getWorldBound();
    EXPECT_TRUE(Encloses(root->getWorldBound(), bound, csTolerance));
    EXPECT_EQ(1, parent->boundUpdates);
}

TEST(mxSpatialTest, UpdateGSRecomputesEveryBoundOfTheSubtreeOnce) {
    mxPointer<CountingNode> parent = new CountingNode();
    std::vector<mxPointer<CountingLine>> children = {new CountingLine(), new CountingLine(),
                                                     new CountingLine()};
    for (mxPointer<CountingLine>& child : children) {
        parent->attachChild(child.get());
    }
    parent->UpdateGS();
    EXPECT_EQ(1, parent->boundUpdates);
    for (const mxPointer<CountingLine>& child : children) {
        EXPECT_EQ(1, child->boundUpdates);
    }
    parent->getWorldBound();
    EXPECT_EQ(1, parent->boundUpdates);
}
