// Tests for the translate drag controller with unusual input: no camera, a press outside the
// view, a press whose pick ray runs parallel to both planes through the axis, a move after a
// hover that no press followed, and a camera that gives no pick ray. None of them may move the
// reference objects; what happens instead is asserted through the picked axis, the listeners'
// callbacks, the objects and the drag's result.
#include "controller/mxGizmoControllerTranslate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "mxControllerTestSupport.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace mx;
using test::BitwiseEqual;
using test::csPickTolerance;
using test::csViewHeight;
using test::csViewWidth;
using test::MakeLookAtCamera;
using test::MakeObject;
using test::MakeStandardCamera;
using test::PlacedGizmo;
using test::RecordingListener;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

// The controller with its protected members opened to the tests, as the scale controller
// reaches them.
class ExposedTranslate : public mxGizmoControllerTranslate {
public:
    using mxGizmoControllerTranslate::getCurrentWorldPointPosition;
    using mxGizmoControllerTranslate::getProjectedPoint;
    using mxGizmoControllerTranslate::getResultingScale;
    using mxGizmoControllerTranslate::mxGizmoControllerTranslate;
    using mxGizmoControllerTranslate::pickedAxe;
    using mxGizmoControllerTranslate::resultTransformation;
};

// An orthographic camera whose view direction is the zero vector: no pick ray can be made
// with it, wherever the mouse is.
mxPointer<mxCamera> MakeBlindCamera() {
    mxPointer<mxCamera> camera = new mxCamera(false);
    camera->setAxes(Vec3(0.0f, 0.0f, 0.0f), Vec3(0.0f, 1.0f, 0.0f), Vec3(1.0f, 0.0f, 0.0f));
    return camera;
}

// A translate gizmo framed around one object at position (the origin by default) for camera (the
// standard view by default), a controller with a recording listener installed.
struct Scene {
    explicit Scene(mxPointer<mxCamera> withCamera = MakeStandardCamera(),
                   const Vec3& position = Vec3(0.0f, 0.0f, 0.0f))
        : camera(withCamera), object(MakeObject(position)),
          placed(mxGizmoNode::GIZMO_TRANSLATE, {object.get()}) {
        placed.place(*camera);
        objectAtStart = object->getWorldTransform();
    }

    mxGizmoNode* node() const { return placed.node; }
    bool hover(const Vec2& mouse) {
        return controller.updateTranslateHover(node(), camera.get(), mouse, csPickTolerance,
                                               csViewWidth, csViewHeight);
    }
    void press(const Vec2& mouse) { controller.setMousePressed(node(), camera.get(), mouse); }
    bool move(const Vec2& mouse) { return controller.setMousePos(node(), camera.get(), mouse); }
    void release(const Vec2& mouse) { controller.setMouseReleased(node(), camera.get(), mouse); }
    bool objectUnmoved() const { return BitwiseEqual(object->getWorldTransform(), objectAtStart); }

    mxPointer<mxCamera> camera;
    mxPointer<mxMesh> object;
    Transform objectAtStart;
    PlacedGizmo placed;
    RecordingListener recorder;
    std::vector<mx3DManipulatorMotionListener*> listeners{&recorder};
    ExposedTranslate controller{listeners};
};

// In the standard view the gizmo's X arrow runs from pixel (100, 100) to (160, 100): the mouse
// 6.25 pixels above it at pixel (125, 106.25), and two positions further right whose rays meet
// the plane z = 0 2.5 and 5 units further along X.
const Vec2 csPressOnX(0.625f, 0.53125f);
const Vec2 csMoveToFive(0.75f, 0.5625f);

// ---------------------------------------------------------------------------------------------
// No camera

TEST(mxGizmoControllerTranslateEdgeCaseTest, HoverAndIsOverWithoutACameraFindNothing) {
    Scene scene;
    ASSERT_TRUE(scene.controller.isOver(scene.node(), scene.camera.get(), csPressOnX,
                                        csPickTolerance, csViewWidth, csViewHeight));
    ASSERT_TRUE(scene.hover(csPressOnX));

    EXPECT_FALSE(scene.controller.isOver(scene.node(), nullptr, csPressOnX, csPickTolerance,
                                         csViewWidth, csViewHeight));
    EXPECT_FALSE(scene.controller.updateTranslateHover(scene.node(), nullptr, csPressOnX,
                                                       csPickTolerance, csViewWidth, csViewHeight));
    // The pick the last hover made stays.
    EXPECT_EQ(0, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerTranslateEdgeCaseTest, ProjectionWithoutACameraOrAPickedAxisGivesNoPoint) {
    Scene scene;
    Vec3 point(7.0f, 8.0f, 9.0f);
    float t = 5.0f;
    EXPECT_FALSE(
        scene.controller.getProjectedPoint(scene.camera.get(), csMoveToFive, false, point, t));
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_FALSE(scene.controller.getProjectedPoint(nullptr, csMoveToFive, false, point, t));
    EXPECT_EQ(Vec3(7.0f, 8.0f, 9.0f), point);
    EXPECT_EQ(5.0f, t);
    // With the camera the same projection gives the point.
    EXPECT_TRUE(
        scene.controller.getProjectedPoint(scene.camera.get(), csMoveToFive, false, point, t));
    EXPECT_NEAR(5.0f, point.X(), 1e-4f);
}

// ---------------------------------------------------------------------------------------------
// Rays that cannot be used

TEST(mxGizmoControllerTranslateEdgeCaseTest, PressOutsideTheViewDropsThePickButStillTellsTheStart) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    // Left of the view: no pick ray goes through it.
    scene.press(Vec2(-0.25f, 0.53125f));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_EQ(Events{"translateStart"}, scene.recorder.events);

    // The drag that follows moves nothing and ends with the identity.
    EXPECT_FALSE(scene.move(csMoveToFive));
    scene.release(csMoveToFive);
    EXPECT_TRUE(scene.objectUnmoved());
    EXPECT_EQ((Events{"translateStart", "translateEnd"}), scene.recorder.events);
    ASSERT_EQ(1u, scene.recorder.ends.size());
    EXPECT_TRUE(scene.recorder.ends[0].IsIdentity());
}

TEST(mxGizmoControllerTranslateEdgeCaseTest, PressWhoseRayRunsAlongBothPlanesDropsThePick) {
    // The eye at (-10, 1, 1) looking along +X, right being +Z and up +Y: the X arrow, seen end
    // on, stands about 9 pixels from the middle of the view, Y and Z 10 pixels. The ray through the
    // middle runs along X, parallel to both planes through the X axis (y = 0 and z = 0) and
    // one unit off each.
    Scene scene(MakeLookAtCamera(Vec3(-10.0f, 1.0f, 1.0f), Vec3(0.0f, 1.0f, 1.0f)));
    const Vec2 middle(0.5f, 0.5f);
    ASSERT_TRUE(scene.hover(middle));
    ASSERT_EQ(0, scene.controller.getPickedAxe());

    scene.press(middle);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_EQ(Events{"translateStart"}, scene.recorder.events);
    EXPECT_FALSE(scene.move(Vec2(0.6f, 0.6f)));
    EXPECT_TRUE(scene.objectUnmoved());
}

TEST(mxGizmoControllerTranslateEdgeCaseTest, MoveAfterAHoverThatNoPressFollowedMovesNothing) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    EXPECT_FALSE(scene.move(csMoveToFive));
    EXPECT_TRUE(scene.objectUnmoved());
    EXPECT_TRUE(scene.controller.resultTransformation.IsIdentity());
    EXPECT_TRUE(scene.recorder.events.empty());
}

TEST(mxGizmoControllerTranslateEdgeCaseTest, MoveWithACameraThatGivesNoRayMovesNothing) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    const mxPointer<mxCamera> blind = MakeBlindCamera();
    Vec3 origin;
    Vec3 direction;
    ASSERT_FALSE(blind->getPickRay(0.75f, 0.5625f, origin, direction));

    EXPECT_FALSE(scene.controller.setMousePos(scene.node(), blind.get(), csMoveToFive));
    EXPECT_TRUE(scene.objectUnmoved());
    EXPECT_TRUE(scene.controller.resultTransformation.IsIdentity());
    // The drag goes on with a camera that can see.
    EXPECT_TRUE(scene.move(csMoveToFive));
    EXPECT_FALSE(scene.objectUnmoved());
}

// ---------------------------------------------------------------------------------------------
// Axis numbers

TEST(mxGizmoControllerTranslateEdgeCaseTest, PickedAxisAboveTwoCountsAsNoAxis) {
    // A derived controller may store any number; only 0, 1 and 2 name an axis.
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_NE(Vec3(0.0f, 0.0f, 0.0f), scene.controller.getPickedWorldAxe());
    scene.controller.pickedAxe = 3;

    EXPECT_EQ(Vec3(0.0f, 0.0f, 0.0f), scene.controller.getPickedWorldAxe());
    EXPECT_EQ(Vec3(0.0f, 0.0f, 0.0f), scene.controller.getResultingScale(2.0f));
    EXPECT_EQ(Vec3(0.0f, 0.0f, 0.0f), scene.controller.getCurrentWorldPointPosition(scene.node()));
    EXPECT_FALSE(scene.move(csMoveToFive));
    EXPECT_TRUE(scene.objectUnmoved());
}

// ---------------------------------------------------------------------------------------------
// Keeping a drag between the near and far planes

TEST(mxGizmoControllerTranslateEdgeCaseTest, RestrictedDragAlongAnAxisLyingInTheFarPlaneIsFree) {
    // The far plane lies 100 units down the view, at z = -90. A gizmo there has its X axis in
    // that plane: the line meets the far plane everywhere and the near plane nowhere, so
    // nothing bounds the drag. At depth 100 one pixel is one unit, and the gizmo 60 units long.
    Scene scene(MakeStandardCamera(), Vec3(0.0f, 0.0f, -90.0f));
    scene.node()->restrictPositionBetweenNearFar(true);
    const Vec2 press = test::MouseAt(*scene.camera, Vec3(30.0f, 3.0f, -90.0f));
    ASSERT_TRUE(scene.hover(press));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    scene.press(press);

    EXPECT_TRUE(scene.move(test::MouseAt(*scene.camera, Vec3(50.0f, 3.0f, -90.0f))));
    EXPECT_TRUE(test::VectorNear(scene.object->getWorldTransform().GetTranslate(),
                                 Vec3(20.0f, 0.0f, -90.0f), 1e-3));
}

} // namespace
