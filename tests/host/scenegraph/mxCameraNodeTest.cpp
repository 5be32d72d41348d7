#include "scenegraph/mxCameraNode.h"

#include <gtest/gtest.h>

#include <vector>

using mx::mxCamera;
using mx::mxCameraNode;
using mx::mxPointer;

namespace {

// A camera that reports its own deletion, to watch the node's reference at work.
class WatchedCamera : public mxCamera {
public:
    explicit WatchedCamera(int& deletions) : deletions(deletions) {}
    ~WatchedCamera() override { ++deletions; }

private:
    int& deletions;
};

} // namespace

TEST(mxCameraNodeTest, TypeIsCameraNodeDerivedFromObject) {
    mxPointer<mxCameraNode> node = new mxCameraNode();
    EXPECT_STREQ("mxCore.mxCameraNode", mxCameraNode::TYPE.getName());
    EXPECT_EQ(&mx::mxObject::TYPE, mxCameraNode::TYPE.getParent());
    EXPECT_TRUE(node->IsExactly(mxCameraNode::TYPE));
    EXPECT_TRUE(node->IsDerived(mx::mxObject::TYPE));
    EXPECT_FALSE(node->IsDerived(mxCamera::TYPE));
}

TEST(mxCameraNodeTest, DefaultNodeHoldsNoCamera) {
    mxPointer<mxCameraNode> node = new mxCameraNode();
    EXPECT_EQ(nullptr, node->getCamera());
    EXPECT_EQ(nullptr, node->editCamera());
}

TEST(mxCameraNodeTest, NodeTakesAReferenceToItsCamera) {
    mxCamera* camera = new mxCamera();
    mxPointer<mxCameraNode> node = new mxCameraNode(camera);
    EXPECT_EQ(camera, node->getCamera());
    EXPECT_EQ(camera, node->editCamera());
    EXPECT_EQ(1, camera->GetReferences());
}

TEST(mxCameraNodeTest, CameraIsDeletedWhenTheNodeGoesAway) {
    int deletions = 0;
    {
        mxPointer<mxCameraNode> node = new mxCameraNode(new WatchedCamera(deletions));
        EXPECT_EQ(0, deletions);
    }
    EXPECT_EQ(1, deletions);
}

TEST(mxCameraNodeTest, CameraOutlivesTheNodeWhileHeldElsewhere) {
    int deletions = 0;
    mxPointer<mxCamera> camera = new WatchedCamera(deletions);
    {
        mxPointer<mxCameraNode> node = new mxCameraNode(camera.get());
        EXPECT_EQ(2, camera->GetReferences());
    }
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(1, camera->GetReferences());
    camera.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxCameraNodeTest, SetCameraReleasesThePreviousCamera) {
    int firstDeletions = 0;
    int secondDeletions = 0;
    mxPointer<mxCameraNode> node = new mxCameraNode(new WatchedCamera(firstDeletions));
    WatchedCamera* second = new WatchedCamera(secondDeletions);
    node->setCamera(second);
    EXPECT_EQ(1, firstDeletions);
    EXPECT_EQ(0, secondDeletions);
    EXPECT_EQ(second, node->getCamera());
    EXPECT_EQ(1, second->GetReferences());

    node->setCamera(nullptr);
    EXPECT_EQ(1, secondDeletions);
    EXPECT_EQ(nullptr, node->getCamera());
}

TEST(mxCameraNodeTest, SettingTheHeldCameraAgainKeepsIt) {
    int deletions = 0;
    WatchedCamera* camera = new WatchedCamera(deletions);
    mxPointer<mxCameraNode> node = new mxCameraNode(camera);
    node->setCamera(camera);
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(1, camera->GetReferences());
    EXPECT_EQ(camera, node->getCamera());
}

TEST(mxCameraNodeTest, EditedCameraIsTheHeldCamera) {
    mxPointer<mxCameraNode> node = new mxCameraNode(new mxCamera());
    node->editCamera()->setLocation(Wm4::Vector3<float>(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(2.0f, node->getCamera()->getLocation().Y());
}

TEST(mxCameraNodeTest, LookupsSearchTheNodeThenItsCamera) {
    mxCamera* camera = new mxCamera();
    camera->SetName("eye");
    mxPointer<mxCameraNode> node = new mxCameraNode(camera);
    node->SetName("eye");

    EXPECT_EQ(node.get(), node->GetObjectByName("eye"));
    EXPECT_EQ(camera, node->GetObjectByID(camera->GetID()));
    EXPECT_EQ(node.get(), node->GetObjectByID(node->GetID()));
    std::vector<mx::mxObject*> found;
    node->GetAllObjectsByName("eye", found);
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(node.get(), found[0]);
    EXPECT_EQ(camera, found[1]);

    node->SetName("rig");
    EXPECT_EQ(camera, node->GetObjectByName("eye"));
    EXPECT_EQ(nullptr, node->GetObjectByName("nobody"));

    node->setCamera(nullptr);
    EXPECT_EQ(nullptr, node->GetObjectByName("eye"));
    EXPECT_EQ(nullptr, node->GetObjectByID(0u));
}
