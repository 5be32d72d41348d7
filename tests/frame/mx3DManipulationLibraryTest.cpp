#include "frame/mx3DManipulationLibrary.h"
#include "frame/mxLibraryStatics.h"

#include "node/mxGizmoNode.h"
#include "rendering/mx2DPrimitivesPass.h"
#include "scenegraph/mxLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using mx::mx2DPrimitivesPass;
using mx::impl::analyse3DManipulationPrimitives;

bool analyseRegistered() {
    return mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&analyse3DManipulationPrimitives);
}

// Every test leaves the library terminated, as it found it.
class mx3DManipulationLibraryTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(mx::impl::msLibraryInitCounter.getCount(), 0); }
    void TearDown() override {
        while (mx::impl::msLibraryInitCounter.getCount() > 0) {
            mx::terminate3DManipulationLibrary();
        }
        mx2DPrimitivesPass::UnregisterAnalyseFunction(&analyse3DManipulationPrimitives);
    }
};

// A node that records which child slots the walk asks for and which of its type checks ran.
class RecordingNode : public mx::mxNode {
public:
    mutable std::vector<int> askedSlots;
    mutable int typeQueries = 0;
    std::vector<int> emptySlots;

    const mx::mxRtti& GetType() const override {
        ++typeQueries;
        return mx::mxNode::GetType();
    }
    mx::mxSpatial* getChild(int index) const override {
        askedSlots.push_back(index);
        for (int empty : emptySlots) {
            if (empty == index) {
                return nullptr;
            }
        }
        return mx::mxNode::getChild(index);
    }
};

// A spatial that is no node but still counts the walk's type checks.
class RecordingLeaf : public mx::mxLine {
public:
    RecordingLeaf() : mx::mxLine(2u) {}
    mutable int typeQueries = 0;
    const mx::mxRtti& GetType() const override {
        ++typeQueries;
        return mx::mxLine::GetType();
    }
};

TEST_F(mx3DManipulationLibraryTest, InitializeRegistersTheAnalyseFunctionOnce) {
    EXPECT_FALSE(analyseRegistered());
    mx::initialize3DManipulationLibrary();
    EXPECT_TRUE(analyseRegistered());
    EXPECT_EQ(mx::impl::msLibraryInitCounter.getCount(), 1);
}

TEST_F(mx3DManipulationLibraryTest, InitializeTwiceThenTerminateOnceKeepsTheFunctionRegistered) {
    mx::initialize3DManipulationLibrary();
    const int registered = mx2DPrimitivesPass::GetAnalyseFunctionCount();
    mx::initialize3DManipulationLibrary();
    EXPECT_EQ(mx2DPrimitivesPass::GetAnalyseFunctionCount(), registered);
    mx::terminate3DManipulationLibrary();
    EXPECT_TRUE(analyseRegistered());
    mx::terminate3DManipulationLibrary();
    EXPECT_FALSE(analyseRegistered());
}

TEST_F(mx3DManipulationLibraryTest, TerminateWithoutInitializeUnregistersNothing) {
    // Registered by someone else: a terminate the counter refuses must leave it alone.
    ASSERT_TRUE(mx2DPrimitivesPass::RegisterAnalyseFunction(&analyse3DManipulationPrimitives));
    mx::terminate3DManipulationLibrary();
    EXPECT_TRUE(analyseRegistered());
    EXPECT_EQ(mx::impl::msLibraryInitCounter.getCount(), 0);
}

TEST_F(mx3DManipulationLibraryTest, RegisteredFunctionRunsWithEveryPass) {
    mx::initialize3DManipulationLibrary();
    mx2DPrimitivesPass pass;
    mx::mxPointer<mx::mxGeometry> geometry = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS);
    pass.addToGeometryRenderBatch(geometry.get());
    mx::mxNode root;
    pass.run(&root);
    EXPECT_TRUE(pass.editGeometryRenderBatch().empty());
    EXPECT_EQ(geometry->GetReferences(), 1);
}

TEST_F(mx3DManipulationLibraryTest, AnalyseWithNullRootStillEmptiesTheBatch) {
    mx2DPrimitivesPass pass;
    mx::mxPointer<mx::mxGeometry> first = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS);
    mx::mxPointer<mx::mxGeometry> second = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_POLYLINE);
    pass.addToGeometryRenderBatch(first.get());
    pass.addToGeometryRenderBatch(second.get());
    ASSERT_EQ(first->GetReferences(), 3);
    const std::size_t capacity = pass.editGeometryRenderBatch().capacity();

    analyse3DManipulationPrimitives(&pass, nullptr);

    EXPECT_TRUE(pass.editGeometryRenderBatch().empty());
    EXPECT_EQ(pass.editGeometryRenderBatch().capacity(), capacity);
    // Both the pass's extra reference and the batch's own were given back, once each.
    EXPECT_EQ(first->GetReferences(), 1);
    EXPECT_EQ(second->GetReferences(), 1);
}

TEST_F(mx3DManipulationLibraryTest, AnalyseSkipsNullBatchEntries) {
    mx2DPrimitivesPass pass;
    mx::mxPointer<mx::mxGeometry> geometry = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS);
    pass.editGeometryRenderBatch().push_back(nullptr);
    pass.addToGeometryRenderBatch(geometry.get());
    analyse3DManipulationPrimitives(&pass, nullptr);
    EXPECT_TRUE(pass.editGeometryRenderBatch().empty());
    EXPECT_EQ(geometry->GetReferences(), 1);
}

TEST_F(mx3DManipulationLibraryTest, AnalyseAddsNothingToTheBatchEvenWithGizmosInTheScene) {
    mx2DPrimitivesPass pass;
    mx::mxNode root;
    root.attachChild(new mx::mxGizmoNode());
    mx::mxNode* group = new mx::mxNode();
    root.attachChild(group);
    group->attachChild(new mx::mxGizmoNode());
    analyse3DManipulationPrimitives(&pass, &root);
    EXPECT_TRUE(pass.editGeometryRenderBatch().empty());
}

TEST_F(mx3DManipulationLibraryTest, RootThatIsNoNodeIsNotDescendedInto) {
    mx2DPrimitivesPass pass;
    mx::mxPointer<RecordingLeaf> leaf = new RecordingLeaf();
    analyse3DManipulationPrimitives(&pass, leaf.get());
    // Asked whether it is a gizmo and whether it is a node; nothing more.
    EXPECT_EQ(leaf->typeQueries, 2);
}

TEST_F(mx3DManipulationLibraryTest, NullChildSlotIsSkippedAndTheWalkGoesOn) {
    mx2DPrimitivesPass pass;
    RecordingNode root;
    RecordingNode* first = new RecordingNode();
    RecordingNode* second = new RecordingNode();
    RecordingNode* third = new RecordingNode();
    root.attachChild(first);
    root.attachChild(second);
    root.attachChild(third);
    root.emptySlots = {1}; // slot 1 answers null
    analyse3DManipulationPrimitives(&pass, &root);
    EXPECT_EQ(root.askedSlots, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(first->typeQueries, 2);
    EXPECT_EQ(second->typeQueries, 0);
    EXPECT_EQ(third->typeQueries, 2);
}

TEST_F(mx3DManipulationLibraryTest, WalkVisitsTheSceneDepthFirstInSlotOrder) {
    mx2DPrimitivesPass pass;
    RecordingNode root;
    RecordingNode* group = new RecordingNode();
    RecordingLeaf* leaf = new RecordingLeaf();
    root.attachChild(group);
    group->attachChild(leaf);
    mx::mxPointer<mx::mxSpatial> detached = root.attachChild(new RecordingNode()) >= 0
                                                ? root.detachChildAt(1)
                                                : nullptr;
    analyse3DManipulationPrimitives(&pass, &root);
    EXPECT_EQ(root.askedSlots, (std::vector<int>{0, 1}));
    EXPECT_EQ(group->askedSlots, (std::vector<int>{0}));
    EXPECT_EQ(leaf->typeQueries, 2);
}

TEST(mxLibraryStaticsTest, UnitAxisTableHoldsXYZInOrder) {
    EXPECT_EQ(mx::impl::csUnitAxes[0], Wm4::Vector3<float>(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(mx::impl::csUnitAxes[1], Wm4::Vector3<float>(0.0f, 1.0f, 0.0f));
    EXPECT_EQ(mx::impl::csUnitAxes[2], Wm4::Vector3<float>(0.0f, 0.0f, 1.0f));
}

TEST(mxLibraryStaticsTest, InitCounterIsNamed3dmanip) {
    EXPECT_EQ(mx::impl::msLibraryInitCounter.getName(), "3dmanip");
    EXPECT_TRUE(mx::impl::msLibraryInitCounter.isThreadSafe());
}

} // namespace
