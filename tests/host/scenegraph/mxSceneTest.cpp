// Tests for mx::mxScene: the root node of a scene behaves as a node.

#include "scenegraph/mxLine.h"
#include "scenegraph/mxScene.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>

using mx::mxLine;
using mx::mxNode;
using mx::mxPointer;
using mx::mxScene;
using mx::mxSpatial;
using Vec3 = Wm4::Vector3<float>;

namespace {

// Coordinates of order 10: a few ulps of that.
constexpr float csTolerance = 1e-5f;

// A spatial that reports its own deletion.
using WatchedSpatial = mx::test::DeletionFlagged<mxSpatial>;

} // namespace

TEST(mxSceneTest, TypeIsSceneDerivedFromNode) {
    mxPointer<mxScene> scene = new mxScene();
    EXPECT_STREQ("mxCore.mxScene", mxScene::TYPE.getName());
    EXPECT_EQ(&mxNode::TYPE, mxScene::TYPE.getParent());
    EXPECT_TRUE(scene->IsExactly(mxScene::TYPE));
    EXPECT_TRUE(scene->IsDerived(mxNode::TYPE));
    EXPECT_TRUE(scene->IsDerived(mxSpatial::TYPE));
    EXPECT_FALSE(scene->IsExactly(mxNode::TYPE));
}

TEST(mxSceneTest, NewSceneIsAnEmptyRootAtTheOrigin) {
    mxPointer<mxScene> scene = new mxScene();
    EXPECT_EQ(nullptr, scene->getParent());
    EXPECT_EQ(0, scene->getChildCount());
    EXPECT_TRUE(scene->getWorldTransform().IsIdentity());
    scene->UpdateGS();
    EXPECT_EQ(mx::mxBoundingVolume(Vec3(0, 0, 0), 0.0f), scene->getWorldBound());
}

TEST(mxSceneTest, SceneHoldsItsChildrenAndReleasesThemWhenItGoes) {
    bool deleted = false;
    {
        mxPointer<mxScene> scene = new mxScene();
        EXPECT_EQ(0, scene->attachChild(new WatchedSpatial(deleted)));
        EXPECT_EQ(scene.get(), scene->getChild(0)->getParent());
    }
    EXPECT_TRUE(deleted);
}

TEST(mxSceneTest, UpdateGSOfTheScenePlacesItsSubtree) {
    mxPointer<mxScene> scene = new mxScene();
    scene->editLocalTransform(false).SetTranslate(Vec3(0, 0, -10));
    mxNode* group = new mxNode();
    group->editLocalTransform(false).SetUniformScale(2.0f);
    mxLine* line = new mxLine(2u);
    line->setVertexPosition(1, Vec3(1, 0, 0));
    line->editLocalTransform(false).SetTranslate(Vec3(3, 0, 0));
    scene->attachChild(group);
    group->attachChild(line);
    scene->UpdateGS();

    // (3, 0, 0) scaled by 2, then moved 10 back: the line runs from (6, 0, -10) to (8, 0, -10).
    const Vec3 start = line->getWorldTransform().ApplyForward(line->getVertexPosition(0));
    const Vec3 end = line->getWorldTransform().ApplyForward(line->getVertexPosition(1));
    EXPECT_NEAR(6.0f, start.X(), csTolerance);
    EXPECT_NEAR(-10.0f, start.Z(), csTolerance);
    EXPECT_NEAR(8.0f, end.X(), csTolerance);
    EXPECT_TRUE(scene->getWorldBound().contains(start, csTolerance));
    EXPECT_TRUE(scene->getWorldBound().contains(end, csTolerance));
}

TEST(mxSceneTest, SceneCannotBeAttachedBelowItself) {
    mxPointer<mxScene> scene = new mxScene();
    mxNode* group = new mxNode();
    scene->attachChild(group);
    EXPECT_EQ(-1, group->attachChild(scene.get()));
    EXPECT_EQ(nullptr, scene->getParent());
}

TEST(mxSceneTest, FindsObjectsOfItsSubtreeByName) {
    mxPointer<mxScene> scene = new mxScene();
    mxNode* group = new mxNode();
    mxLine* line = new mxLine(2u);
    line->SetName("handle");
    scene->attachChild(group);
    group->attachChild(line);
    EXPECT_EQ(line, scene->GetObjectByName("handle"));
    EXPECT_EQ(line, scene->GetObjectByID(line->GetID()));
}
