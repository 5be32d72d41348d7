// Tests that what a gizmo node shows is what a renderer draws: its culling modes decide which
// of its lines reach the device, placed by the node.

#include "node/mxGizmoNode.h"
#include "rendering/mxSceneRenderer.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxScene.h"

#include "support/mxRecordingRenderer.h"
#include "support/mxTestGeometry.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

using mx::mxBaseGeometry;
using mx::mxGizmoNode;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::mxExposedGizmoNode;
using mx::test::mxRecordingRenderer;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// The default camera looks from the origin along -Z; the gizmo sits 10 units in front of it,
// well inside the view, so only culling mode 1 keeps a line from being drawn.
class mxGizmoNodeRenderingTest : public ::testing::Test {
protected:
    void SetUp() override {
        scene->attachChild(node.get());
        node->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, -10.0f));
        node->setCullingMode(mxSpatial::CULL_DYNAMIC);
    }

    // Brings the scene up to date, draws it and answers the node's child slots drawn, in
    // draw order.
    std::vector<int> drawnSlots() {
        scene->UpdateGS();
        device.clear();
        renderer.renderScene(scene.get(), camera, 640, 480);
        std::vector<int> slots;
        for (mxBaseGeometry* geometry : device.getDrawnGeometries()) {
            int found = -1;
            for (int slot = 0; slot < node->getChildCount(); ++slot) {
                if (node->getChild(slot) == geometry) {
                    found = slot;
                }
            }
            slots.push_back(found);
        }
        return slots;
    }

    mxPointer<mx::mxNode> scene = new mx::mxScene();
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode();
    mx::mxCamera camera;
    mxRecordingRenderer device;
    mx::mxSceneRenderer renderer{&device};
};

} // namespace

TEST_F(mxGizmoNodeRenderingTest, NewNodeDrawsNothingEvenOnceTheNodeIsShown) {
    node->setCullingMode(mxSpatial::CULL_ALWAYS);
    EXPECT_TRUE(drawnSlots().empty());
    node->setCullingMode(mxSpatial::CULL_DYNAMIC);
    EXPECT_TRUE(drawnSlots().empty());
}

TEST_F(mxGizmoNodeRenderingTest, HiddenNodeDrawsNothingWhateverItsMode) {
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    node->setCullingMode(mxSpatial::CULL_ALWAYS);
    EXPECT_TRUE(drawnSlots().empty());
}

TEST_F(mxGizmoNodeRenderingTest, TranslateModeDrawsTheThreeShaftsAndArrowheads) {
    node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5}), drawnSlots());
}

TEST_F(mxGizmoNodeRenderingTest, RotateModeDrawsTheEnabledCirclesOnly) {
    node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 0x05);
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    EXPECT_EQ((std::vector<int>{6, 8}), drawnSlots());
}

TEST_F(mxGizmoNodeRenderingTest, ScaleModeDrawsShaftsSquaresAndTrianglesAndTheDraggedFrame) {
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    EXPECT_EQ((std::vector<int>{9, 10, 11, 12, 13, 14, 18}), drawnSlots());
    node->setActiveState(1, true);
    EXPECT_EQ((std::vector<int>{9, 10, 11, 12, 13, 14, 16, 18}), drawnSlots());
    node->setActiveState(1, false);
    EXPECT_EQ((std::vector<int>{9, 10, 11, 12, 13, 14, 18}), drawnSlots());
}

TEST_F(mxGizmoNodeRenderingTest, DrawnLinesArePlacedByTheNode) {
    node->setMode(mxGizmoNode::GIZMO_SCALE);
    drawnSlots();
    // The X end square sits at the tip of X, turned so that its local x runs along Y and its
    // local y along Z.
    const mxSpatial* square = node->getChild(10);
    EXPECT_TRUE(
        VectorNear(square->getWorldTransform().GetTranslate(), Vec3(1.0f, 0.0f, -10.0f), 1e-5));
    EXPECT_TRUE(VectorNear(square->getWorldTransform().ApplyForward(Vec3(0.1f, 0.2f, 0.0f)),
                           Vec3(1.0f, 0.1f, -9.8f), 1e-5));
}
