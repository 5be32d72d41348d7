#include "rendering/mx2DPrimitivesPass.h"

#include "scenegraph/mxNode.h"

#include <gtest/gtest.h>

namespace {

using mx::mx2DPrimitivesPass;

int callsOfFirst = 0;
int callsOfSecond = 0;
mx::mxSpatial* lastRoot = nullptr;

void firstFunction(mx2DPrimitivesPass*, mx::mxSpatial* root) {
    ++callsOfFirst;
    lastRoot = root;
}

void secondFunction(mx2DPrimitivesPass*, mx::mxSpatial*) { ++callsOfSecond; }

class mx2DPrimitivesPassTest : public ::testing::Test {
protected:
    void SetUp() override {
        callsOfFirst = callsOfSecond = 0;
        lastRoot = nullptr;
    }
    void TearDown() override {
        mx2DPrimitivesPass::UnregisterAnalyseFunction(&firstFunction);
        mx2DPrimitivesPass::UnregisterAnalyseFunction(&secondFunction);
    }
};

TEST_F(mx2DPrimitivesPassTest, RegisteringTwiceRefusesTheSecond) {
    EXPECT_TRUE(mx2DPrimitivesPass::RegisterAnalyseFunction(&firstFunction));
    EXPECT_FALSE(mx2DPrimitivesPass::RegisterAnalyseFunction(&firstFunction));
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    EXPECT_EQ(callsOfFirst, 1);
}

TEST_F(mx2DPrimitivesPassTest, UnregisteringAnUnknownFunctionRefuses) {
    EXPECT_FALSE(mx2DPrimitivesPass::UnregisterAnalyseFunction(&secondFunction));
    EXPECT_FALSE(mx2DPrimitivesPass::UnregisterAnalyseFunction(nullptr));
    EXPECT_FALSE(mx2DPrimitivesPass::RegisterAnalyseFunction(nullptr));
}

TEST_F(mx2DPrimitivesPassTest, RunCallsEveryRegisteredFunctionWithTheRoot) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&firstFunction);
    mx2DPrimitivesPass::RegisterAnalyseFunction(&secondFunction);
    mx::mxNode root;
    mx2DPrimitivesPass pass;
    pass.run(&root);
    EXPECT_EQ(callsOfFirst, 1);
    EXPECT_EQ(callsOfSecond, 1);
    EXPECT_EQ(lastRoot, &root);
    EXPECT_TRUE(mx2DPrimitivesPass::UnregisterAnalyseFunction(&firstFunction));
    pass.run(&root);
    EXPECT_EQ(callsOfFirst, 1);
    EXPECT_EQ(callsOfSecond, 2);
}

TEST_F(mx2DPrimitivesPassTest, AddingToTheBatchGivesThePassAnExtraReference) {
    mx::mxPointer<mx::mxGeometry> geometry = new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS);
    {
        mx2DPrimitivesPass pass;
        pass.addToGeometryRenderBatch(geometry.get());
        pass.addToGeometryRenderBatch(nullptr);
        ASSERT_EQ(pass.editGeometryRenderBatch().size(), 1u);
        EXPECT_EQ(geometry->GetReferences(), 3);
    }
    // The pass gives back both of its references when it goes away with a full batch.
    EXPECT_EQ(geometry->GetReferences(), 1);
}

} // namespace
