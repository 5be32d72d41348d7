// Tests for mx::mxGizmoController when something it usually finds is missing or changes under
// it: a frame run without a rendering context or engine, an engine that has no scene or no
// camera node, a camera node that holds no camera, an empty child slot in the scene, a gizmo
// whose only reference object is null, and a gizmo that loses its mode in the middle of a
// drag. None of them may crash, drag anything or lose the recorded events; what the
// controller does instead is asserted through the reference objects, the gizmos' frames and
// the callbacks a RecordingListener hears.

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxEngineInterface.h"
#include "scenegraph/mxGenericRenderingContext.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxScene.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::BitwiseEqual;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::MatrixNear;
using mx::test::Radians;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::VectorNear;
using mx::test::WindowPixel;
using mx::test::WindowPixelOf;

using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mxGenericTransformation<float>;
using Words = std::vector<std::string>;
using GizmoMode = mxGizmoNode::GizmoMode;

// Positions a few units from the origin after a drag: far above float rounding, far below the
// tenth of a unit that one pixel of drag is worth at the gizmo's depth.
constexpr double csPositionTolerance = 1e-4;

// Points of the handles in a gizmo's own frame, where one unit is the length of an axis: 0.6
// of the way along X (translate and scale), and a point of the rotate circle about Z away
// from where the circles cross.
const Vec3 csXHandle(0.6f, 0.0f, 0.0f);
const Vec3 csZCircle(0.8f, 0.6f, 0.0f);

// The handle of mode that the tests press.
Vec3 HandleOf(GizmoMode mode) {
    return mode == mxGizmoNode::GIZMO_ROTATE ? csZCircle : csXHandle;
}

const char* NameOf(GizmoMode mode) {
    switch (mode) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        return "translate";
    case mxGizmoNode::GIZMO_ROTATE:
        return "rotate";
    default:
        return "scale";
    }
}

constexpr GizmoMode csModes[] = {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE,
                                 mxGizmoNode::GIZMO_SCALE};

// An engine of the host's interface that has only what it is given: a scene and a camera node
// each may be missing, as they are in an engine that is not set up yet. The view is the
// standard 200 x 200 pixels.
class BareEngine : public mxEngineInterface {
public:
    BareEngine(mxScene* withScene, mxCameraNode* withCameraNode) {
        scene = withScene;
        cameraNode = withCameraNode;
    }
    void getViewportSize(int& width, int& height) const override {
        width = csViewWidth;
        height = csViewHeight;
    }
};

// The controller in the standard view (ControllerInEngineTest), with the scenes the tests share.
class mxGizmoControllerEdgeCaseTest : public mx::test::ControllerInEngineTest {
protected:
    // object at the origin and a gizmo in mode around it, placed by a first frame; handle over
    // the handle of HandleOf(mode).
    void PlaceAtOrigin(GizmoMode mode = mxGizmoNode::GIZMO_TRANSLATE) {
        object = AddObject(Vec3::ZERO);
        objectAtStart = object->getWorldTransform();
        gizmo = AddGizmo(mode, {object});
        engine.updateFrame();
        handle = PixelOver(*gizmo, HandleOf(mode));
    }

    Vec3 ObjectPosition() const { return object->getWorldTransform().GetTranslate(); }

    mxSpatial* object = nullptr;
    Transform objectAtStart;
    mxGizmoNode* gizmo = nullptr;
    WindowPixel handle;
};

WindowPixel Shifted(const WindowPixel& pixel, int dx, int dy) {
    return WindowPixel{pixel.x + dx, pixel.y + dy};
}

// ---------------------------------------------------------------------------------------------
// No context, no engine

TEST_F(mxGizmoControllerEdgeCaseTest, FrameWithoutAContextOrAnEngineDoesNothingAndKeepsTheEvents) {
    PlaceAtOrigin();
    const Transform gizmoAtStart = gizmo->getLocalTransform();
    ASSERT_TRUE(Press(handle));
    Move(Shifted(handle, 20, 0));
    Release(Shifted(handle, 20, 0));

    controller.updateController(nullptr);
    mxGenericRenderingContext withoutEngine(nullptr);
    controller.updateController(&withoutEngine);
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(BitwiseEqual(gizmo->getLocalTransform(), gizmoAtStart));

    // The first frame with an engine replays the whole drag.
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(VectorNear(ObjectPosition(), Vec3(2.0f, 0.0f, 0.0f), csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// No camera

TEST_F(mxGizmoControllerEdgeCaseTest, FrameWithoutACameraNeitherDragsNorPlacesTheGizmo) {
    for (const GizmoMode mode : csModes) {
        SCOPED_TRACE(NameOf(mode));
        listener.events.clear();
        engine.getCameraNode()->setCamera(camera.get());
        PlaceAtOrigin(mode);
        const Transform gizmoAtStart = gizmo->getLocalTransform();
        // The press is hit-tested against the camera it comes with.
        ASSERT_TRUE(Press(handle));
        Move(Shifted(handle, 20, 0));
        engine.getCameraNode()->setCamera(nullptr);

        engine.updateFrame();
        EXPECT_TRUE(listener.events.empty());
        EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
        EXPECT_TRUE(BitwiseEqual(gizmo->getLocalTransform(), gizmoAtStart));
        EXPECT_EQ(-1, controller.getPickedAxeIndex(gizmo));

        Release(Shifted(handle, 20, 0));
        engine.updateFrame();
        EXPECT_TRUE(listener.events.empty());
        // The next mode's gizmo takes the scene alone.
        engine.getScene()->detachChild(gizmo);
        engine.resetControllers();
    }
}

TEST_F(mxGizmoControllerEdgeCaseTest, PressHitTestedWithoutACameraIsOnNoGizmo) {
    for (const GizmoMode mode : csModes) {
        SCOPED_TRACE(NameOf(mode));
        PlaceAtOrigin(mode);
        EXPECT_TRUE(Press(handle));
        EXPECT_FALSE(
            controller.setMousePressed(nullptr, handle.x, handle.y, csViewWidth, csViewHeight));
        EXPECT_FALSE(controller.setMouseReleased(handle.x, handle.y));
        controller.clearControllerEvents();
        engine.getScene()->detachChild(gizmo);
        engine.resetControllers();
    }
}

TEST_F(mxGizmoControllerEdgeCaseTest, ViewOrientationWithoutACameraKeepsTheRotationOfTheLastFrame) {
    object = AddObject(Vec3(1.0f, 2.0f, 0.0f));
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    // A first frame framed by a turned custom transformation.
    Transform custom;
    const Mat3 turned = Rotation(1.0f, 2.0f, 3.0f, 0.7f);
    custom.SetRotate(turned);
    custom.SetTranslate(Vec3(2.0f, -1.0f, 1.0f));
    controller.setCustomTransformation(custom);
    controller.setOrientationReference(mxGizmoController::Custom);
    engine.updateFrame();
    ASSERT_TRUE(BitwiseEqual(controller.getCurrentTransformation(), custom));

    controller.setOrientationReference(mxGizmoController::View);
    engine.getCameraNode()->setCamera(nullptr);
    engine.updateFrame();
    // Placed at the object again, with the rotation the custom frame left.
    const Transform& current = controller.getCurrentTransformation();
    EXPECT_EQ(turned, current.GetRotate());
    EXPECT_EQ(Vec3(1.0f, 2.0f, 0.0f), current.GetTranslate());

    // Given a camera again, the frame follows the camera's axes: right, direction, up.
    engine.getCameraNode()->setCamera(camera.get());
    engine.updateFrame();
    EXPECT_TRUE(MatrixNear(controller.getCurrentTransformation().GetRotate(),
                           Mat3(1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, -1.0f, 0.0f), 0.0));
}

// ---------------------------------------------------------------------------------------------
// Engines without a scene or a camera node

TEST_F(mxGizmoControllerEdgeCaseTest, EngineWithoutASceneFindsGizmosOnlyBelowTheRootNode) {
    BareEngine bare(nullptr, new mxCameraNode(camera.get()));
    mxGenericRenderingContext context(&bare);
    mxGizmoController own;
    own.updateController(&context);
    EXPECT_TRUE(own.get3DManipulators().empty());

    mxPointer<mxNode> root = new mxNode;
    object = AddObject(Vec3(-2.0f, 1.0f, 0.0f));
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, root.get());
    own.setRootNode(root.get());
    own.updateController(&context);
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, own.get3DManipulators());
    // Placed for the engine's camera like any other.
    EXPECT_TRUE(VectorNear(gizmo->getLocalTransform().GetTranslate(), Vec3(-2.0f, 1.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerEdgeCaseTest, EngineWithoutACameraNodeNeitherDragsNorPlacesTheGizmo) {
    mxPointer<mxScene> scene = new mxScene;
    BareEngine bare(scene.get(), nullptr);
    mxGenericRenderingContext context(&bare);
    mxGizmoController own;
    RecordingListener heard;
    own.install3DManipulatorMotionListener(&heard);
    object = AddObject(Vec3::ZERO);
    objectAtStart = object->getWorldTransform();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, scene.get());
    const Transform gizmoAtStart = gizmo->getLocalTransform();
    own.updateController(&context);
    ASSERT_EQ(std::vector<mxGizmoNode*>{gizmo}, own.get3DManipulators());

    // Where the X handle would be, had the gizmo been placed for the standard camera.
    mxGenericTransformation<float> placed;
    placed.SetUniformScale(6.0f);
    const WindowPixel pixel = WindowPixelOf(*camera, placed.ApplyForward(csXHandle, true));
    own.setMousePressed(camera.get(), pixel.x, pixel.y, csViewWidth, csViewHeight);
    own.setMousePos(pixel.x + 20, pixel.y);
    own.setMouseReleased(pixel.x + 20, pixel.y);
    own.updateController(&context);
    EXPECT_TRUE(heard.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(BitwiseEqual(gizmo->getLocalTransform(), gizmoAtStart));
}

// ---------------------------------------------------------------------------------------------
// Unusual scenes

TEST_F(mxGizmoControllerEdgeCaseTest, EmptyChildSlotIsPassedOverAndTheGizmosAfterItAreFound) {
    mxPointer<mxNode> group = new mxNode;
    mxNode* removed = new mxNode;
    group->attachChild(removed);
    object = AddObject(Vec3(3.0f, 0.0f, 0.0f));
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, group.get());
    engine.getScene()->attachChild(group.get());
    // Slot 0 stays, empty.
    ASSERT_EQ(0, group->detachChild(removed));
    ASSERT_EQ(nullptr, group->getChild(0));

    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(3.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerEdgeCaseTest,
       LocalOrientationOfAGizmoWhoseOnlyReferenceIsNullIsTheIdentity) {
    // First around an object below a parent turned 30 degrees about Z: the gizmo is turned.
    mxPointer<mxNode> parent = new mxNode;
    parent->editLocalTransform(true).SetRotate(
        Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(30.0))));
    parent->UpdateGS();
    object = AddObject(Vec3(2.0f, 0.0f, 0.0f), parent.get());
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    ASSERT_FALSE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 0.1));

    gizmo->setReferenceObjects({nullptr});
    engine.updateFrame();
    EXPECT_EQ(Mat3::IDENTITY, controller.getCurrentTransformation().GetRotate());
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 0.0));
    // A null entry counts as the origin.
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3::ZERO, 0.0));
}

// ---------------------------------------------------------------------------------------------
// A gizmo that loses its mode during a drag

TEST_F(mxGizmoControllerEdgeCaseTest, GizmoLosingItsModeDuringADragIsNotMovedFurtherButAnnounced) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(handle));
    Move(Shifted(handle, 20, 0));
    engine.updateFrame();
    ASSERT_TRUE(VectorNear(ObjectPosition(), Vec3(2.0f, 0.0f, 0.0f), csPositionTolerance));
    const Transform afterFirstMove = object->getWorldTransform();
    ASSERT_EQ((Words{"translateStart", "manipulated"}), listener.events);

    gizmo->setMode(mxGizmoNode::GIZMO_NONE);
    Move(Shifted(handle, 40, 0));
    engine.updateFrame();
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), afterFirstMove));
    // Still taking part in the drag, so still announced.
    EXPECT_EQ((Words{"translateStart", "manipulated", "manipulated"}), listener.events);
    EXPECT_EQ((std::vector<mxGizmoNode*>{gizmo, gizmo}), listener.manipulated);
}

TEST_F(mxGizmoControllerEdgeCaseTest, ReleaseOfAGizmoThatLostItsModeEndsNoDrag) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(handle));
    Move(Shifted(handle, 20, 0));
    engine.updateFrame();
    const Transform afterFirstMove = object->getWorldTransform();

    gizmo->setMode(mxGizmoNode::GIZMO_NONE);
    Release(Shifted(handle, 40, 0));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "manipulated", "manipulated"}), listener.events);
    EXPECT_TRUE(listener.ends.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), afterFirstMove));

    // Given its mode back, the gizmo is placed at the object again and a new drag starts
    // from there.
    gizmo->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    engine.updateFrame();
    const WindowPixel moved = PixelOver(*gizmo, csXHandle);
    ASSERT_TRUE(Press(moved));
    Move(Shifted(moved, 10, 0));
    Release(Shifted(moved, 10, 0));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "manipulated", "manipulated", "translateStart",
                     "translateEnd", "manipulated"}),
              listener.events);
    EXPECT_TRUE(VectorNear(ObjectPosition(), Vec3(3.0f, 0.0f, 0.0f), csPositionTolerance));
}

} // namespace
