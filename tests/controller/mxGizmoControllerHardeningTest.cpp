// Regression tests for what fuzzing mx::mxGizmoController found (fuzz/mxControllerFuzzer.cpp):
// calls an application may legitimately make that once broke the controller. Each test says
// the behaviour that must hold; the minimised fuzzer inputs sit in
// fuzz/corpus/mxControllerFuzzer/regression-*.

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxScene.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::BitwiseEqual;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::RecordingListener;

using Vec3 = Wm4::Vector3<float>;

// An engine showing one translate gizmo around an object at the origin, the controller attached
// with a recording listener, after the frame that collects and places the gizmo.
struct OneGizmoView {
    explicit OneGizmoView(const mxPointer<mxCamera>& viewCamera, float expectedPixelSize = 60.0f)
        : camera(viewCamera), cameraNode(new mxCameraNode(camera.get())) {
        engine.setViewportSize(csViewWidth, csViewHeight);
        engine.setCameraNode(cameraNode.get());
        object = MakeObject(Vec3(0.0f, 0.0f, 0.0f), engine.getScene());
        gizmo = new mxGizmoNode;
        engine.getScene()->attachChild(gizmo.get());
        gizmo->setMode(mxGizmoNode::GIZMO_TRANSLATE);
        gizmo->setExpectedPixelSize(expectedPixelSize);
        gizmo->setReferenceObject(object.get());
        controller.install3DManipulatorMotionListener(&listener);
        engine.attachController(&controller);
        engine.updateFrame();
    }
    ~OneGizmoView() { engine.detachController(&controller); }

    mxEngine engine;
    mxPointer<mxCamera> camera;
    mxPointer<mxCameraNode> cameraNode;
    mxPointer<mxMesh> object;
    mxPointer<mxGizmoNode> gizmo;
    mxGizmoController controller;
    RecordingListener listener;
};

// The standard view made orthographic: 20 world units across 200 pixels, so a gizmo of
// expected size P pixels has axes P pixels long on screen whatever its depth.
mxPointer<mxCamera> OrthographicStandardCamera() {
    mxPointer<mxCamera> camera = MakeStandardCamera(false);
    camera->setFrustum(-10.0f, 10.0f, -10.0f, 10.0f, 1.0f, 100.0f);
    return camera;
}

// A pixel row far above the view counts from the bottom as the whole number it is: the window's
// height minus the lowest int, 200 + 2^31, is beyond 32 bits and must not wrap round to a row
// far below the view. A gizmo three billion pixels tall reaches up to that row, so its Y axis
// is under the press there (and would not be, were the row taken from below).
TEST(mxGizmoControllerHardeningTest,
     PressAtTheLowestIntRowCountsThatRowFromTheBottomWithoutWrapping) {
    OneGizmoView view(OrthographicStandardCamera(), 3e9f);

    EXPECT_TRUE(view.controller.setMousePressed(view.camera.get(), csViewWidth / 2, INT_MIN,
                                                csViewWidth, csViewHeight));
}

// Mouse positions at the limits of int, recorded and replayed in a frame, are simply outside
// the view: the press holds no handle, the move and the release change nothing, and no
// listener hears anything.
TEST(mxGizmoControllerHardeningTest, MouseAtTheIntLimitsIsOutsideTheViewAndChangesNothing) {
    OneGizmoView view(MakeStandardCamera());
    const mxGenericTransformation<float> before = view.object->getWorldTransform();

    EXPECT_FALSE(view.controller.setMousePressed(view.camera.get(), INT_MAX, INT_MIN, csViewWidth,
                                                 csViewHeight));
    EXPECT_FALSE(view.controller.setMousePos(INT_MIN, INT_MAX));
    EXPECT_FALSE(view.controller.setMousePos(INT_MAX, INT_MAX));
    EXPECT_FALSE(view.controller.setMouseReleased(INT_MIN, INT_MIN));
    view.engine.updateFrame();

    EXPECT_TRUE(BitwiseEqual(view.object->getWorldTransform(), before));
    EXPECT_EQ(view.listener.events, std::vector<std::string>());
    EXPECT_EQ(view.controller.getPickedAxeIndex(view.gizmo.get()), -1);
}

// Two gizmos of mode side by side in the orthographic standard view, around an object each,
// 50 pixels left and right of the centre with axes (and circles' radii) 30 pixels long, so that
// they never overlap; frames run by the engine.
struct TwoGizmoView {
    explicit TwoGizmoView(mxGizmoNode::GizmoMode mode)
        : camera(OrthographicStandardCamera()), cameraNode(new mxCameraNode(camera.get())) {
        engine.setViewportSize(csViewWidth, csViewHeight);
        engine.setCameraNode(cameraNode.get());
        const Vec3 positions[2] = {Vec3(-5.0f, 0.0f, 0.0f), Vec3(5.0f, 0.0f, 0.0f)};
        for (int i = 0; i < 2; ++i) {
            objects[i] = MakeObject(positions[i], engine.getScene());
            gizmos[i] = new mxGizmoNode;
            engine.getScene()->attachChild(gizmos[i].get());
            gizmos[i]->setMode(mode);
            gizmos[i]->setExpectedPixelSize(30.0f);
            gizmos[i]->setReferenceObject(objects[i].get());
        }
        engine.attachController(&controller);
        engine.updateFrame();
    }
    ~TwoGizmoView() { engine.detachController(&controller); }

    // The window pixel over the point at local of gizmo i.
    mx::test::WindowPixel over(int i, const Vec3& local) const {
        return mx::test::WindowPixelOf(*camera,
                                       gizmos[i]->getWorldTransform().ApplyForward(local, true));
    }
    // Deletes gizmo i the documented way: out of the scene, the engine's controllers reset,
    // the last reference dropped.
    void deleteGizmo(int i) {
        engine.getScene()->detachChild(gizmos[i].get());
        engine.resetControllers();
        gizmos[i].reset();
    }

    mxEngine engine;
    mxPointer<mxCamera> camera;
    mxPointer<mxCameraNode> cameraNode;
    mxPointer<mxMesh> objects[2];
    mxPointer<mxGizmoNode> gizmos[2];
    mxGizmoController controller;
};

// Once the engine's controllers are reset, the gizmo of the last translate drag may be deleted:
// the controller keeps nothing of it. Hovering the other gizmo's Y axis then picks axis 1, and
// its picked world axis is (0, 0, 0) as before any drag, not read from the deleted gizmo.
TEST(mxGizmoControllerHardeningTest,
     ResetControllersForgetsTheTranslatedGizmoSoThatItMayBeDeleted) {
    TwoGizmoView view(mxGizmoNode::GIZMO_TRANSLATE);
    const mx::test::WindowPixel handle = view.over(0, Vec3(0.0f, 0.6f, 0.0f));
    ASSERT_TRUE(view.controller.setMousePressed(view.camera.get(), handle.x, handle.y, csViewWidth,
                                                csViewHeight));
    view.controller.setMousePos(handle.x, handle.y - 10);
    view.controller.setMouseReleased(handle.x, handle.y - 10);
    view.engine.updateFrame();
    ASSERT_EQ(view.controller.getPickedAxeIndex(view.gizmos[0].get()), 1);

    view.deleteGizmo(0);
    view.engine.updateFrame(); // collects the remaining gizmo
    const mx::test::WindowPixel other = view.over(1, Vec3(0.0f, 0.6f, 0.0f));
    view.controller.setMousePos(other.x, other.y);
    view.engine.updateFrame();

    ASSERT_EQ(view.controller.getPickedAxeIndex(view.gizmos[1].get()), 1);
    const Vec3 axis = view.controller.getPickedWorldAxe(view.gizmos[1].get());
    EXPECT_EQ(axis.X(), 0.0f);
    EXPECT_EQ(axis.Y(), 0.0f);
    EXPECT_EQ(axis.Z(), 0.0f);
}

// The same for a rotate drag cut short by the reset: the gizmo being turned may be deleted, and
// hovering the other gizmo's circle then reads nothing of it.
TEST(mxGizmoControllerHardeningTest,
     ResetControllersMidRotationForgetsTheTurnedGizmoSoThatItMayBeDeleted) {
    TwoGizmoView view(mxGizmoNode::GIZMO_ROTATE);
    // The circle about Z faces the eye; the half of it that counts is the one towards the
    // view's centre: at 45 degrees on the left gizmo, at 135 degrees on the right one.
    const mx::test::WindowPixel handle = view.over(0, Vec3(0.7071068f, 0.7071068f, 0.0f));
    ASSERT_TRUE(view.controller.setMousePressed(view.camera.get(), handle.x, handle.y, csViewWidth,
                                                csViewHeight));
    view.controller.setMousePos(handle.x - 10, handle.y - 5);
    view.engine.updateFrame();
    ASSERT_EQ(view.controller.getPickedAxeIndex(view.gizmos[0].get()), 2);

    view.deleteGizmo(0);
    view.engine.updateFrame();
    const mx::test::WindowPixel other = view.over(1, Vec3(-0.7071068f, 0.7071068f, 0.0f));
    view.controller.setMousePos(other.x, other.y);
    view.engine.updateFrame();

    ASSERT_EQ(view.controller.getPickedAxeIndex(view.gizmos[1].get()), 2);
    const Vec3 axis = view.controller.getPickedWorldAxe(view.gizmos[1].get());
    EXPECT_EQ(axis.X(), 0.0f);
    EXPECT_EQ(axis.Y(), 0.0f);
    EXPECT_EQ(axis.Z(), 0.0f);
}

// A recording listener that resets the engine's controllers from its translate Start or End
// callback, as an application may when a drag should start something new.
class ResettingListener : public RecordingListener {
public:
    ResettingListener(mxEngine& engine, bool atStart) : engine(engine), atStart(atStart) {}

    void onTranslateManipulatorStart() override {
        RecordingListener::onTranslateManipulatorStart();
        if (atStart) {
            engine.resetControllers();
        }
    }
    void onTranslateManipulatorEnd(const mxGenericTransformation<float>& transformation) override {
        RecordingListener::onTranslateManipulatorEnd(transformation);
        if (!atStart) {
            engine.resetControllers();
        }
    }

private:
    mxEngine& engine;
    bool atStart;
};

// A press on the X arrow of the one-gizmo view, replayed in a frame.
void PressTheXArrow(OneGizmoView& view) {
    const mx::test::WindowPixel handle = mx::test::WindowPixelOf(
        *view.camera, view.gizmo->getWorldTransform().ApplyForward(Vec3(0.6f, 0.0f, 0.0f), true));
    ASSERT_TRUE(view.controller.setMousePressed(view.camera.get(), handle.x, handle.y, csViewWidth,
                                                csViewHeight));
    view.engine.updateFrame();
}

// The pressed gizmo took part in the press: it is announced by name even when a listener reset
// the controllers while hearing the Start, never as a null gizmo.
TEST(mxGizmoControllerHardeningTest,
     GizmoPressedWhileAListenerResetsTheControllersIsStillAnnounced) {
    OneGizmoView view(MakeStandardCamera());
    ResettingListener resetting(view.engine, true);
    view.controller.install3DManipulatorMotionListener(&resetting);

    PressTheXArrow(view);

    EXPECT_EQ(resetting.events, std::vector<std::string>({"translateStart", "manipulated"}));
    EXPECT_EQ(resetting.manipulated, std::vector<mxGizmoNode*>({view.gizmo.get()}));
}

// The same at the release: a listener resetting the controllers from the End callback still
// hears which gizmo was released.
TEST(mxGizmoControllerHardeningTest,
     GizmoReleasedWhileAListenerResetsTheControllersIsStillAnnounced) {
    OneGizmoView view(MakeStandardCamera());
    ResettingListener resetting(view.engine, false);
    view.controller.install3DManipulatorMotionListener(&resetting);
    PressTheXArrow(view);

    view.controller.setMouseReleased(0, 0);
    view.engine.updateFrame();

    EXPECT_EQ(resetting.events, std::vector<std::string>({"translateStart", "manipulated",
                                                          "translateEnd", "manipulated"}));
    EXPECT_EQ(resetting.manipulated,
              std::vector<mxGizmoNode*>({view.gizmo.get(), view.gizmo.get()}));
}

} // namespace
