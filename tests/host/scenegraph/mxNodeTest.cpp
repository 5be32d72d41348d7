// Tests for mx::mxNode: child slots, attach and detach rules, ownership by counted reference,
// searches over the subtree, the subtree-changed update flag, and node bounds.

#include "scenegraph/mxLine.h"
#include "scenegraph/mxNode.h"

#include "support/mxLogCapture.h"
#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using mx::mxBoundingVolume;
using mx::mxLine;
using mx::mxNode;
using mx::mxObject;
using mx::mxPointer;
using mx::mxSpatial;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using mx::test::Encloses;
using mx::test::Rotation;

namespace {

// World coordinates in these scenes stay below about 50: a few ulps of that.
constexpr float csTolerance = 1e-4f;
constexpr unsigned int csSubtreeChanged = mxSpatial::UPDATE_SUBTREE_CHANGED;

// A spatial that reports its own deletion, to watch the node's references at work.
using WatchedSpatial = mx::test::DeletionFlagged<mxSpatial>;

// A node that reports its own deletion.
using WatchedNode = mx::test::DeletionFlagged<mxNode>;

// A line segment from from to to in model space, placed by translation.
mxLine* MakeSegment(const Vec3& from, const Vec3& to, const Vec3& translation) {
    mxLine* line = new mxLine(2u);
    line->setVertexPosition(0, from);
    line->setVertexPosition(1, to);
    line->editLocalTransform(false).SetTranslate(translation);
    return line;
}

} // namespace

TEST(mxNodeTest, TypeIsNodeDerivedFromSpatial) {
    mxPointer<mxNode> node = new mxNode();
    EXPECT_STREQ("mxCore.mxNode", mxNode::TYPE.getName());
    EXPECT_EQ(&mxSpatial::TYPE, mxNode::TYPE.getParent());
    EXPECT_TRUE(node->IsExactly(mxNode::TYPE));
    EXPECT_TRUE(node->IsDerived(mxSpatial::TYPE));
}

TEST(mxNodeTest, NewNodeHasNoChildSlots) {
    mxPointer<mxNode> node = new mxNode();
    EXPECT_EQ(0, node->getChildCount());
    EXPECT_EQ(nullptr, node->getChild(0));
    EXPECT_EQ(nullptr, node->getParent());
}

TEST(mxNodeTest, AttachAppendsTheChildAndReturnsItsSlotIndex) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> a = new mxNode();
    mxPointer<mxSpatial> b = new mxLine(2u);
    mxPointer<mxSpatial> c = new mxNode();
    EXPECT_EQ(0, node->attachChild(a));
    EXPECT_EQ(1, node->attachChild(b.get()));
    EXPECT_EQ(2, node->attachChild(c));
    EXPECT_EQ(3, node->getChildCount());
    EXPECT_EQ(a.get(), node->getChild(0));
    EXPECT_EQ(b.get(), node->getChild(1));
    EXPECT_EQ(c.get(), node->getChild(2));
    EXPECT_EQ(node.get(), a->getParent());
    EXPECT_EQ(node.get(), b->getParent());
    EXPECT_EQ(node.get(), c->getParent());
}

TEST(mxNodeTest, AttachRefusesANullChild) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> none;
    EXPECT_EQ(-1, node->attachChild(none));
    EXPECT_EQ(-1, node->attachChild(static_cast<mxSpatial*>(nullptr)));
    EXPECT_EQ(0, node->getChildCount());
    EXPECT_EQ(0u, node->getUpdateFlags());
}

TEST(mxNodeTest, AttachRefusesAChildThatAlreadyHasAParent) {
    mxPointer<mxNode> first = new mxNode();
    mxPointer<mxNode> second = new mxNode();
    mxPointer<mxSpatial> child = new mxNode();
    ASSERT_EQ(0, first->attachChild(child));
    first->setUpdateFlags(0u);

    EXPECT_EQ(-1, first->attachChild(child));
    EXPECT_EQ(-1, second->attachChild(child));
    EXPECT_EQ(1, first->getChildCount());
    EXPECT_EQ(0, second->getChildCount());
    EXPECT_EQ(first.get(), child->getParent());
    EXPECT_EQ(0u, first->getUpdateFlags());
    EXPECT_EQ(0u, second->getUpdateFlags());
}

TEST(mxNodeTest, AttachRefusesTheNodeItself) {
    mxPointer<mxNode> node = new mxNode();
    EXPECT_EQ(-1, node->attachChild(node.get()));
    EXPECT_EQ(0, node->getChildCount());
    EXPECT_EQ(nullptr, node->getParent());
}

TEST(mxNodeTest, AttachRefusesAnAncestorSoNoCycleForms) {
    mxPointer<mxNode> root = new mxNode();
    mxPointer<mxNode> mid = new mxNode();
    mxPointer<mxNode> leaf = new mxNode();
    root->attachChild(mid.get());
    mid->attachChild(leaf.get());
    EXPECT_EQ(-1, leaf->attachChild(root.get()));
    EXPECT_EQ(0, leaf->getChildCount());
    EXPECT_EQ(nullptr, root->getParent());
    // mid has a parent already, but refused either way.
    EXPECT_EQ(-1, leaf->attachChild(mid.get()));
    EXPECT_EQ(0, leaf->getChildCount());
}

TEST(mxNodeTest, NodeHoldsOneCountedReferenceToEachChild) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> child = new mxNode();
    EXPECT_EQ(1, child->GetReferences());
    node->attachChild(child);
    EXPECT_EQ(2, child->GetReferences());
    node->detachChild(child.get());
    EXPECT_EQ(1, child->GetReferences());
}

TEST(mxNodeTest, DetachLeavesAnEmptySlotAndKeepsOtherIndices) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> a = new mxNode();
    mxPointer<mxSpatial> b = new mxNode();
    mxPointer<mxSpatial> c = new mxNode();
    node->attachChild(a);
    node->attachChild(b);
    node->attachChild(c);
    EXPECT_EQ(1, node->detachChild(b.get()));
    EXPECT_EQ(3, node->getChildCount());
    EXPECT_EQ(a.get(), node->getChild(0));
    EXPECT_EQ(nullptr, node->getChild(1));
    EXPECT_EQ(c.get(), node->getChild(2));
    EXPECT_EQ(nullptr, b->getParent());
    EXPECT_EQ(node.get(), a->getParent());
}

TEST(mxNodeTest, DetachReturnsMinusOneForWhatIsNotAChild) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxNode> child = new mxNode();
    mxPointer<mxSpatial> grandchild = new mxNode();
    mxPointer<mxSpatial> stranger = new mxNode();
    node->attachChild(child.get());
    child->attachChild(grandchild);
    node->setUpdateFlags(0u);

    EXPECT_EQ(-1, node->detachChild(stranger.get()));
    EXPECT_EQ(-1, node->detachChild(grandchild.get()));
    EXPECT_EQ(-1, node->detachChild(nullptr));
    EXPECT_EQ(1, node->getChildCount());
    EXPECT_EQ(child.get(), node->getChild(0));
    EXPECT_EQ(child.get(), grandchild->getParent());
    EXPECT_EQ(0u, node->getUpdateFlags());
}

TEST(mxNodeTest, DetachingTheSameChildTwiceFindsItOnlyOnce) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> child = new mxNode();
    node->attachChild(child);
    EXPECT_EQ(0, node->detachChild(child.get()));
    EXPECT_EQ(-1, node->detachChild(child.get()));
    EXPECT_EQ(1, node->getChildCount());
}

TEST(mxNodeTest, DetachChildAtReturnsTheChildAndKeepsItAlive) {
    bool deleted = false;
    mxPointer<mxNode> node = new mxNode();
    node->attachChild(new mxNode());
    mxSpatial* watched = new WatchedSpatial(deleted);
    ASSERT_EQ(1, node->attachChild(watched));

    mxPointer<mxSpatial> detached = node->detachChildAt(1);
    EXPECT_EQ(watched, detached.get());
    EXPECT_FALSE(deleted);
    EXPECT_EQ(1, detached->GetReferences());
    EXPECT_EQ(nullptr, detached->getParent());
    EXPECT_EQ(nullptr, node->getChild(1));
    EXPECT_EQ(2, node->getChildCount());

    detached.reset();
    EXPECT_TRUE(deleted);
}

TEST(mxNodeTest, DetachChildAtOfAnEmptyOrInvalidSlotReturnsNull) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> child = new mxNode();
    node->attachChild(child);
    node->detachChildAt(0);
    EXPECT_EQ(nullptr, node->detachChildAt(0));
    EXPECT_EQ(nullptr, node->detachChildAt(-1));
    EXPECT_EQ(nullptr, node->detachChildAt(1));
    EXPECT_EQ(1, node->getChildCount());
}

TEST(mxNodeTest, AttachAfterDetachAppendsANewSlot) {
    mxPointer<mxNode> node = new mxNode();
    mxPointer<mxSpatial> a = new mxNode();
    mxPointer<mxSpatial> b = new mxNode();
    node->attachChild(a);
    node->attachChild(b);
    node->detachChild(a.get());
    EXPECT_EQ(2, node->attachChild(a));
    EXPECT_EQ(3, node->getChildCount());
    EXPECT_EQ(nullptr, node->getChild(0));
    EXPECT_EQ(a.get(), node->getChild(2));
}

TEST(mxNodeTest, DetachedChildCanBeAttachedToAnotherNode) {
    mxPointer<mxNode> first = new mxNode();
    mxPointer<mxNode> second = new mxNode();
    mxPointer<mxSpatial> child = new mxNode();
    first->attachChild(child);
    first->detachChild(child.get());
    EXPECT_EQ(0, second->attachChild(child));
    EXPECT_EQ(second.get(), child->getParent());
}

TEST(mxNodeTest, GetChildOutOfRangeIsNull) {
    mxPointer<mxNode> node = new mxNode();
    node->attachChild(new mxNode());
    node->attachChild(new mxNode());
    EXPECT_EQ(nullptr, node->getChild(-1));
    EXPECT_EQ(nullptr, node->getChild(-1000));
    EXPECT_EQ(nullptr, node->getChild(2));
    EXPECT_EQ(nullptr, node->getChild(1000));
    EXPECT_NE(nullptr, node->getChild(1));
}

TEST(mxNodeTest, ChildAttachedWithNewIsDeletedWithItsNode) {
    bool childDeleted = false;
    bool grandchildDeleted = false;
    {
        mxPointer<mxNode> node = new mxNode();
        mxNode* child = new WatchedNode(childDeleted);
        node->attachChild(child);
        child->attachChild(new WatchedSpatial(grandchildDeleted));
        EXPECT_FALSE(childDeleted);
    }
    EXPECT_TRUE(childDeleted);
    EXPECT_TRUE(grandchildDeleted);
}

TEST(mxNodeTest, DetachedChildHeldNowhereElseIsDeleted) {
    bool deleted = false;
    mxPointer<mxNode> node = new mxNode();
    mxSpatial* child = new WatchedSpatial(deleted);
    node->attachChild(child);
    EXPECT_EQ(0, node->detachChild(child));
    EXPECT_TRUE(deleted);
    EXPECT_EQ(nullptr, node->getChild(0));
}

TEST(mxNodeTest, ChildHeldElsewhereOutlivesItsNodeWithItsParentCleared) {
    bool nodeDeleted = false;
    bool childDeleted = false;
    mxPointer<mxSpatial> child = new WatchedSpatial(childDeleted);
    {
        mxPointer<mxNode> node = new WatchedNode(nodeDeleted);
        node->attachChild(child);
        ASSERT_EQ(node.get(), child->getParent());
    }
    EXPECT_TRUE(nodeDeleted);
    EXPECT_FALSE(childDeleted);
    EXPECT_EQ(nullptr, child->getParent());
    EXPECT_EQ(1, child->GetReferences());
    // Free again: another node can take it.
    mxPointer<mxNode> other = new mxNode();
    EXPECT_EQ(0, other->attachChild(child));
}

TEST(mxNodeTest, GetObjectByNameSearchesTheSubtreeDepthFirst) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxNode* b = new mxNode();
    mxSpatial* deep = new mxLine(2u);
    mxSpatial* later = new mxLine(2u);
    root->SetName("root");
    a->SetName("a");
    b->SetName("b");
    deep->SetName("target");
    later->SetName("target");
    root->attachChild(a);
    root->attachChild(b);
    a->attachChild(deep);
    b->attachChild(later);

    EXPECT_EQ(root.get(), root->GetObjectByName("root"));
    EXPECT_EQ(b, root->GetObjectByName("b"));
    EXPECT_EQ(deep, root->GetObjectByName("target"));
    EXPECT_EQ(later, b->GetObjectByName("target"));
    EXPECT_EQ(nullptr, root->GetObjectByName("missing"));
    EXPECT_EQ(nullptr, a->GetObjectByName("b"));
}

TEST(mxNodeTest, GetAllObjectsByNameCollectsEveryMatchOfTheSubtree) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxSpatial* first = new mxLine(2u);
    mxSpatial* second = new mxLine(2u);
    mxSpatial* gone = new mxLine(2u);
    root->SetName("part");
    first->SetName("part");
    second->SetName("part");
    gone->SetName("part");
    a->SetName("other");
    root->attachChild(a);
    a->attachChild(first);
    root->attachChild(gone);
    root->attachChild(second);
    root->detachChild(gone); // an empty slot is skipped

    std::vector<mxObject*> found;
    root->GetAllObjectsByName("part", found);
    EXPECT_EQ((std::vector<mxObject*>{root.get(), first, second}), found);

    // Appends to what the list already holds.
    a->GetAllObjectsByName("part", found);
    EXPECT_EQ(4u, found.size());
    EXPECT_EQ(first, found.back());

    std::vector<mxObject*> none;
    root->GetAllObjectsByName("missing", none);
    EXPECT_TRUE(none.empty());
}

TEST(mxNodeTest, GetObjectByIDSearchesTheSubtree) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxSpatial* deep = new mxLine(2u);
    root->attachChild(a);
    a->attachChild(deep);
    mxPointer<mxNode> outside = new mxNode();

    EXPECT_EQ(root.get(), root->GetObjectByID(root->GetID()));
    EXPECT_EQ(a, root->GetObjectByID(a->GetID()));
    EXPECT_EQ(deep, root->GetObjectByID(deep->GetID()));
    EXPECT_EQ(nullptr, root->GetObjectByID(outside->GetID()));
    EXPECT_EQ(nullptr, a->GetObjectByID(root->GetID()));
}

TEST(mxNodeTest, AttachSetsSubtreeChangedInTheNodeAndEveryAncestorButNotInSiblings) {
    // root -> {a -> {b, c}, s}
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxNode* b = new mxNode();
    mxNode* c = new mxNode();
    mxNode* s = new mxNode();
    root->attachChild(a);
    root->attachChild(s);
    a->attachChild(b);
    a->attachChild(c);
    for (mxSpatial* spatial : {static_cast<mxSpatial*>(root.get()), static_cast<mxSpatial*>(a),
                               static_cast<mxSpatial*>(b), static_cast<mxSpatial*>(c),
                               static_cast<mxSpatial*>(s)}) {
        spatial->setUpdateFlags(0u);
    }

    b->attachChild(new mxNode());
    EXPECT_EQ(csSubtreeChanged, b->getUpdateFlags());
    EXPECT_EQ(csSubtreeChanged, a->getUpdateFlags());
    EXPECT_EQ(csSubtreeChanged, root->getUpdateFlags());
    EXPECT_EQ(0u, c->getUpdateFlags());
    EXPECT_EQ(0u, s->getUpdateFlags());
}

TEST(mxNodeTest, DetachSetsSubtreeChangedInTheNodeAndEveryAncestorButNotInSiblings) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxNode* b = new mxNode();
    mxNode* s = new mxNode();
    mxNode* leaf = new mxNode();
    root->attachChild(a);
    root->attachChild(s);
    a->attachChild(b);
    b->attachChild(leaf);
    root->setUpdateFlags(0x1u);
    a->setUpdateFlags(0u);
    b->setUpdateFlags(0u);
    s->setUpdateFlags(0u);

    EXPECT_EQ(0, b->detachChild(leaf));
    EXPECT_EQ(csSubtreeChanged, b->getUpdateFlags());
    EXPECT_EQ(csSubtreeChanged, a->getUpdateFlags());
    // Other bits stay.
    EXPECT_EQ(csSubtreeChanged | 0x1u, root->getUpdateFlags());
    EXPECT_EQ(0u, s->getUpdateFlags());
}

TEST(mxNodeTest, DetachChildAtSetsSubtreeChangedUpToTheRoot) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    root->attachChild(a);
    a->attachChild(new mxNode());
    root->setUpdateFlags(0u);
    a->setUpdateFlags(0u);
    a->detachChildAt(0);
    EXPECT_EQ(csSubtreeChanged, a->getUpdateFlags());
    EXPECT_EQ(csSubtreeChanged, root->getUpdateFlags());
}

TEST(mxNodeTest, ClearUpdateFlagsDownClearsTheBitWhereSetAndKeepsOtherBits) {
    // root -> {a -> {b}, leaf}
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxNode* b = new mxNode();
    mxSpatial* leaf = new mxLine(2u);
    root->attachChild(a);
    root->attachChild(leaf);
    a->attachChild(b);
    root->setUpdateFlags(csSubtreeChanged | 0x1u);
    a->setUpdateFlags(csSubtreeChanged);
    b->setUpdateFlags(csSubtreeChanged | 0x2u);
    leaf->setUpdateFlags(csSubtreeChanged | 0x4u);

    root->clearUpdateFlagsDown(csSubtreeChanged);
    EXPECT_EQ(0x1u, root->getUpdateFlags());
    EXPECT_EQ(0u, a->getUpdateFlags());
    EXPECT_EQ(0x2u, b->getUpdateFlags());
    EXPECT_EQ(0x4u, leaf->getUpdateFlags());
}

TEST(mxNodeTest, ClearUpdateFlagsDownAfterAttachClearsTheWholePath) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* a = new mxNode();
    mxNode* b = new mxNode();
    root->attachChild(a);
    a->attachChild(b);
    b->attachChild(new mxNode());
    ASSERT_EQ(csSubtreeChanged, b->getUpdateFlags());
    root->clearUpdateFlagsDown(csSubtreeChanged);
    EXPECT_EQ(0u, root->getUpdateFlags());
    EXPECT_EQ(0u, a->getUpdateFlags());
    EXPECT_EQ(0u, b->getUpdateFlags());
}

TEST(mxNodeTest, EmptyNodeBoundIsAPointAtItsWorldTranslation) {
    mxPointer<mxNode> parent = new mxNode();
    parent->editLocalTransform(false).SetTranslate(Vec3(10, 20, 30));
    parent->editLocalTransform(false).SetRotate(Rotation(0, 0, 1, static_cast<float>(M_PI / 2)));
    mxPointer<mxNode> empty = new mxNode();
    empty->editLocalTransform(false).SetTranslate(Vec3(1, 0, 0));
    parent->attachChild(empty.get());
    parent->UpdateGS();
    // The quarter turn about z takes (1, 0, 0) to (0, 1, 0).
    const mxBoundingVolume& bound = empty->getWorldBound();
    EXPECT_NEAR(10.0f, bound.getCenter().X(), csTolerance);
    EXPECT_NEAR(21.0f, bound.getCenter().Y(), csTolerance);
    EXPECT_NEAR(30.0f, bound.getCenter().Z(), csTolerance);
    EXPECT_EQ(0.0f, bound.getRadius());
}

TEST(mxNodeTest, NodeBoundEnclosesTheBoundOfEveryChild) {
    // root (rotated, stretched) -> {segment, segment, inner -> {segment, empty node}}
    mxPointer<mxNode> root = new mxNode();
    root->editLocalTransform(false).SetRotate(Rotation(1, 2, 0, 0.4f));
    root->editLocalTransform(false).SetScale(Vec3(1, 3, 2));
    mxSpatial* first = MakeSegment(Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(-5, 0, 0));
    mxSpatial* second = MakeSegment(Vec3(0, -2, 0), Vec3(0, 2, 0), Vec3(8, 1, 1));
    mxNode* inner = new mxNode();
    inner->editLocalTransform(false).SetTranslate(Vec3(0, 0, 6));
    mxSpatial* third = MakeSegment(Vec3(0, 0, 0), Vec3(0, 0, 3), Vec3(2, 2, 0));
    mxNode* empty = new mxNode();
    empty->editLocalTransform(false).SetTranslate(Vec3(0, -7, 0));
    root->attachChild(first);
    root->attachChild(second);
    root->attachChild(inner);
    inner->attachChild(third);
    inner->attachChild(empty);
    root->UpdateGS();

    EXPECT_TRUE(Encloses(inner->getWorldBound(), third->getWorldBound(), csTolerance));
    EXPECT_TRUE(Encloses(inner->getWorldBound(), empty->getWorldBound(), csTolerance));
    for (mxSpatial* child : {first, second, static_cast<mxSpatial*>(inner), third,
                             static_cast<mxSpatial*>(empty)}) {
        EXPECT_TRUE(Encloses(root->getWorldBound(), child->getWorldBound(), csTolerance));
    }
    EXPECT_GT(root->getWorldBound().getRadius(), 0.0f);
}

TEST(mxNodeTest, EmptySlotsDoNotCountInTheBound) {
    mxPointer<mxNode> node = new mxNode();
    mxSpatial* far = MakeSegment(Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(100, 0, 0));
    mxSpatial* near = MakeSegment(Vec3(0, 0, 0), Vec3(2, 0, 0), Vec3(0, 0, 0));
    node->attachChild(far);
    node->attachChild(near);
    node->UpdateGS();
    ASSERT_GT(node->getWorldBound().getRadius(), 50.0f);
    node->detachChild(far);
    // The bound follows at once: the detach marked it stale.
    EXPECT_NEAR(1.0f, node->getWorldBound().getRadius(), csTolerance);
    EXPECT_NEAR(1.0f, node->getWorldBound().getCenter().X(), csTolerance);
}

TEST(mxNodeTest, DetachingTheOnlyChildShrinksTheBoundToThePointAtTheNode) {
    mxPointer<mxNode> node = new mxNode();
    node->editLocalTransform(false).SetTranslate(Vec3(3, 4, 5));
    mxSpatial* child = MakeSegment(Vec3(0, 0, 0), Vec3(10, 0, 0), Vec3(0, 0, 0));
    node->attachChild(child);
    node->UpdateGS();
    ASSERT_GT(node->getWorldBound().getRadius(), 1.0f);
    node->detachChildAt(0);
    EXPECT_EQ(mxBoundingVolume(Vec3(3, 4, 5), 0.0f), node->getWorldBound());
}

TEST(mxNodeTest, AttachedChildIsPlacedByTheNextFlaggedUpdateOfTheRoot) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* mid = new mxNode();
    root->attachChild(mid);
    root->editLocalTransform(false).SetTranslate(Vec3(10, 0, 0));
    mid->editLocalTransform(false).SetUniformScale(2.0f);
    root->UpdateGS();

    mxSpatial* child = MakeSegment(Vec3(0, 0, 0), Vec3(0, 1, 0), Vec3(1, 1, 1));
    mid->attachChild(child);
    root->UpdateGS_Flags();
    const Vec3 translation = child->getWorldTransform().GetTranslate();
    EXPECT_NEAR(12.0f, translation.X(), csTolerance);
    EXPECT_NEAR(2.0f, translation.Y(), csTolerance);
    EXPECT_NEAR(2.0f, translation.Z(), csTolerance);
    EXPECT_TRUE(Encloses(root->getWorldBound(), child->getWorldBound(), csTolerance));
    EXPECT_TRUE(root->getWorldBound().contains(Vec3(12, 4, 2), csTolerance));
}

TEST(mxNodeTest, DebugObjectListsTheSubtreeWithChildrenIndented) {
    mxPointer<mxNode> root = new mxNode();
    mxNode* child = new mxNode();
    root->SetName("top");
    child->SetName("inner");
    root->attachChild(child);
    root->attachChild(new mxLine(2u));
    root->detachChildAt(1);
    child->attachChild(new mxNode());
    mx::test::mxLogCapture capture;
    root->debugObject(0);
    const std::vector<std::string> lines = capture.lines();
    ASSERT_EQ(3u, lines.size());
    EXPECT_EQ(0u, lines[0].rfind("info: mxCore.mxNode 'top'", 0)) << lines[0];
    EXPECT_EQ(0u, lines[1].rfind("info:   mxCore.mxNode 'inner'", 0)) << lines[1];
    EXPECT_EQ(0u, lines[2].rfind("info:     mxCore.mxNode", 0)) << lines[2];
}
