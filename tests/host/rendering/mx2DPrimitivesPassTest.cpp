#include "rendering/mx2DPrimitivesPass.h"

#include "scenegraph/mxNode.h"

#include <gtest/gtest.h>

#include <vector>

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

mx2DPrimitivesPass* lastPass = nullptr;
std::vector<int> callOrder;

void recordPass(mx2DPrimitivesPass* pass, mx::mxSpatial*) { lastPass = pass; }

void orderFirst(mx2DPrimitivesPass*, mx::mxSpatial*) { callOrder.push_back(1); }
void orderSecond(mx2DPrimitivesPass*, mx::mxSpatial*) { callOrder.push_back(2); }
void orderThird(mx2DPrimitivesPass*, mx::mxSpatial*) { callOrder.push_back(3); }

// Runs once: unregisters itself on its first call.
void unregisterSelf(mx2DPrimitivesPass*, mx::mxSpatial*) {
    callOrder.push_back(10);
    mx2DPrimitivesPass::UnregisterAnalyseFunction(&unregisterSelf);
}

// Registers secondFunction while the pass runs.
void registerSecond(mx2DPrimitivesPass*, mx::mxSpatial*) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&secondFunction);
}

// Fills the batch with one segment geometry per call, first emptying it as the batch protocol
// asks (the pass's extra references go back first).
void refillBatch(mx2DPrimitivesPass* pass, mx::mxSpatial*) {
    std::vector<mx::mxPointer<mx::mxGeometry>>& batch = pass->editGeometryRenderBatch();
    for (mx::mxPointer<mx::mxGeometry>& geometry : batch) {
        geometry->DecrementReferences();
    }
    batch.clear();
    pass->addToGeometryRenderBatch(new mx::mxGeometry(mx::mxGeometry::PRIMITIVE_SEGMENTS));
}

class mx2DPrimitivesPassTest : public ::testing::Test {
protected:
    void SetUp() override {
        callsOfFirst = callsOfSecond = 0;
        lastRoot = nullptr;
        lastPass = nullptr;
        callOrder.clear();
    }
    void TearDown() override {
        for (mx2DPrimitivesPass::AnalyseFunction function :
             {&firstFunction, &secondFunction, &recordPass, &orderFirst, &orderSecond,
              &orderThird, &unregisterSelf, &registerSecond, &refillBatch}) {
            mx2DPrimitivesPass::UnregisterAnalyseFunction(function);
        }
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

TEST_F(mx2DPrimitivesPassTest, RunHandsFunctionsTheRunningPass) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&recordPass);
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    EXPECT_EQ(&pass, lastPass);
}

TEST_F(mx2DPrimitivesPassTest, RunCallsFunctionsInRegistrationOrder) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&orderThird);
    mx2DPrimitivesPass::RegisterAnalyseFunction(&orderFirst);
    mx2DPrimitivesPass::RegisterAnalyseFunction(&orderSecond);
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    EXPECT_EQ((std::vector<int>{3, 1, 2}), callOrder);
}

TEST_F(mx2DPrimitivesPassTest, RegistryCountsAndKnowsItsFunctions) {
    const int before = mx2DPrimitivesPass::GetAnalyseFunctionCount();
    EXPECT_FALSE(mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&firstFunction));
    mx2DPrimitivesPass::RegisterAnalyseFunction(&firstFunction);
    EXPECT_TRUE(mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&firstFunction));
    EXPECT_EQ(before + 1, mx2DPrimitivesPass::GetAnalyseFunctionCount());
    mx2DPrimitivesPass::UnregisterAnalyseFunction(&firstFunction);
    EXPECT_FALSE(mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&firstFunction));
    EXPECT_EQ(before, mx2DPrimitivesPass::GetAnalyseFunctionCount());
}

TEST_F(mx2DPrimitivesPassTest, FunctionUnregisteringItselfLetsTheOthersRun) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&orderFirst);
    mx2DPrimitivesPass::RegisterAnalyseFunction(&unregisterSelf);
    mx2DPrimitivesPass::RegisterAnalyseFunction(&orderSecond);
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    EXPECT_EQ((std::vector<int>{1, 10, 2}), callOrder);
    EXPECT_FALSE(mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&unregisterSelf));
    callOrder.clear();
    pass.run(nullptr);
    EXPECT_EQ((std::vector<int>{1, 2}), callOrder);
}

TEST_F(mx2DPrimitivesPassTest, FunctionRegisteredDuringARunIsCalledFromTheNextRun) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&registerSecond);
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    EXPECT_TRUE(mx2DPrimitivesPass::IsAnalyseFunctionRegistered(&secondFunction));
    EXPECT_EQ(0, callsOfSecond);
    pass.run(nullptr);
    EXPECT_EQ(1, callsOfSecond);
}

TEST_F(mx2DPrimitivesPassTest, BatchRefilledEachRunHoldsOnlyTheLatestGeometry) {
    mx2DPrimitivesPass::RegisterAnalyseFunction(&refillBatch);
    mx2DPrimitivesPass pass;
    pass.run(nullptr);
    ASSERT_EQ(1u, pass.editGeometryRenderBatch().size());
    mx::mxPointer<mx::mxGeometry> firstBatched = pass.editGeometryRenderBatch()[0];
    EXPECT_EQ(3, firstBatched->GetReferences());
    pass.run(nullptr);
    ASSERT_EQ(1u, pass.editGeometryRenderBatch().size());
    EXPECT_NE(firstBatched.get(), pass.editGeometryRenderBatch()[0].get());
    // The pass let go of the first geometry entirely: only this test holds it now.
    EXPECT_EQ(1, firstBatched->GetReferences());
}

} // namespace
