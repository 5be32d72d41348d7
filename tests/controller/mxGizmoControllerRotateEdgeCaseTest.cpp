// Tests for the rotate drag controller with unusual input: no camera, a press outside the view,
// a move whose pick ray runs along the dragged circle's plane, a release without a node, a
// gizmo that was never placed (its world transformation is the identity), a gizmo placed at a
// NaN position, and the squaring at the release of an axis that points exactly along the view
// axis Z. None of them may turn anything they should not; what happens instead is asserted
// through the picked axis, the listeners' callbacks, the circles' look and the objects.
#include "controller/mxGizmoControllerRotate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "mxControllerTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace mx;
using test::BitwiseEqual;
using test::csPickTolerance;
using test::csViewHeight;
using test::csViewWidth;
using test::MakeObject;
using test::MakeStandardCamera;
using test::MatrixNear;
using test::MouseAt;
using test::MouseAtPixel;
using test::PixelOf;
using test::PlacedGizmo;
using test::Radians;
using test::RecordingListener;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

// A circle of the gizmo has radius 1 in the gizmo's frame, which the standard view sizes to
// 60 pixels; a gizmo centred in the plane z = 0 sits at depth 10, where its circle facing the
// eye projects to a ring of exactly that radius around the projected centre.
constexpr float csRingRadius = 60.0f;
// Where the drags press: well inside the ring, well off the centre.
constexpr float csDragRadius = 40.0f;
// Entries of unit vectors and rotations after a handful of float operations.
constexpr double csUnitTolerance = 1e-6;

// The point at degrees (counter-clockwise with y up) on the screen circle of radius pixels
// around centre, as a normalised mouse position.
Vec2 MouseAround(const Vec2& centre, float radius, double degrees) {
    const double a = Radians(degrees);
    return MouseAtPixel(Vec2(static_cast<float>(centre.X() + radius * std::cos(a)),
                             static_cast<float>(centre.Y() + radius * std::sin(a))));
}

// The standard view over a rotate gizmo framed with rotation around one object at centre, a
// recording listener installed and a controller. A centre in the plane z = 0 keeps the
// gizmo at depth 10, where one world unit covers 10 pixels.
struct Scene {
    mxPointer<mxCamera> camera = MakeStandardCamera();
    std::vector<mx3DManipulatorMotionListener*> listeners;
    RecordingListener listener;
    mxPointer<mxMesh> object;
    PlacedGizmo placed;
    mxGizmoNode* node;
    mxGizmoControllerRotate controller;

    explicit Scene(const Vec3& centre = Vec3(0.0f, 0.0f, 0.0f),
                   const Mat3& rotation = Mat3::IDENTITY)
        : object(MakeObject(centre)), placed(mxGizmoNode::GIZMO_ROTATE, {object.get()}),
          node(placed.node), controller(listeners) {
        listeners.push_back(&listener);
        placed.place(*camera, rotation);
    }

    Vec2 centrePixel() const { return PixelOf(*camera, node->getGizmoPosition()); }
    Vec2 around(float radius, double degrees) const {
        return MouseAround(centrePixel(), radius, degrees);
    }

    bool hover(const Vec2& mouse, float tolerance = csPickTolerance) {
        return controller.updateRotateHover(node, camera.get(), mouse, tolerance, csViewWidth,
                                            csViewHeight);
    }
    void press(const Vec2& mouse) {
        controller.setMousePressed(node, camera.get(), mouse, csViewWidth, csViewHeight);
    }
    bool move(const Vec2& mouse) {
        return controller.setMousePos(node, camera.get(), mouse, csViewWidth, csViewHeight);
    }
    void release(const Vec2& mouse) {
        controller.setMouseReleased(node, camera.get(), mouse, csViewWidth, csViewHeight);
    }

    // Hovers the ring facing the eye at 45 degrees, away from the two circles seen edge-on,
    // and checks that it picks axis.
    void pickRing(int axis = 2) {
        ASSERT_TRUE(hover(around(csRingRadius, 45.0)));
        ASSERT_EQ(axis, controller.getPickedAxe());
    }

    mxLine::DrawMethod drawMethodOf(unsigned int axis) const {
        return node->getRotateGizmo().getCircle(axis)->getDrawMethod();
    }
};

// ---------------------------------------------------------------------------------------------
// No camera, no node

TEST(mxGizmoControllerRotateEdgeCaseTest, HoverAndIsOverWithoutACameraFindNothing) {
    Scene scene;
    const Vec2 onRing = scene.around(csRingRadius, 45.0);
    ASSERT_TRUE(scene.controller.isOver(scene.node, scene.camera.get(), onRing, csPickTolerance,
                                        csViewWidth, csViewHeight));
    scene.pickRing();

    EXPECT_FALSE(scene.controller.isOver(scene.node, nullptr, onRing, csPickTolerance, csViewWidth,
                                         csViewHeight));
    EXPECT_FALSE(scene.controller.updateRotateHover(scene.node, nullptr, onRing, csPickTolerance,
                                                    csViewWidth, csViewHeight));
    // The pick the last hover made stays.
    EXPECT_EQ(2, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateEdgeCaseTest, PressWithoutACameraTellsNobodyAndShowsNoDrag) {
    Scene scene;
    scene.pickRing();
    scene.controller.setMousePressed(scene.node, nullptr, scene.around(csDragRadius, 30.0),
                                     csViewWidth, csViewHeight);
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, scene.drawMethodOf(2));
}

TEST(mxGizmoControllerRotateEdgeCaseTest, MoveWithoutACameraReturnsFalseAndTurnsNothing) {
    Scene scene;
    scene.pickRing();
    scene.press(scene.around(csDragRadius, 0.0));
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    const Transform atStart = scene.object->getWorldTransform();

    EXPECT_FALSE(scene.controller.setMousePos(scene.node, nullptr, scene.around(csDragRadius, 90.0),
                                              csViewWidth, csViewHeight));
    EXPECT_TRUE(BitwiseEqual(scene.object->getWorldTransform(), atStart));
    // With its camera the same move turns the object.
    EXPECT_TRUE(scene.move(scene.around(csDragRadius, 90.0)));
    EXPECT_FALSE(BitwiseEqual(scene.object->getWorldTransform(), atStart));
}

TEST(mxGizmoControllerRotateEdgeCaseTest, ReleaseWithoutANodeStillEndsTheDragWithNoTurn) {
    Scene scene;
    scene.node->setSnapRotationToAxis(true);
    scene.pickRing();
    scene.press(scene.around(csDragRadius, 0.0));
    const Transform atStart = scene.object->getWorldTransform();
    const Transform gizmoAtStart = scene.node->getLocalTransform();

    scene.controller.setMouseReleased(nullptr, scene.camera.get(), scene.around(csDragRadius, 90.0),
                                      csViewWidth, csViewHeight);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(scene.listener.ends[0].IsIdentity());
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(BitwiseEqual(scene.object->getWorldTransform(), atStart));
    EXPECT_TRUE(BitwiseEqual(scene.node->getLocalTransform(), gizmoAtStart));
}

// ---------------------------------------------------------------------------------------------
// Rays that cannot be used

TEST(mxGizmoControllerRotateEdgeCaseTest, PressOutsideTheViewDropsThePickAndTellsNobody) {
    Scene scene;
    scene.pickRing();
    // Right of the view: no pick ray goes through it.
    scene.press(Vec2(1.25f, 0.5f));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, scene.drawMethodOf(2));
}

TEST(mxGizmoControllerRotateEdgeCaseTest, MoveWhoseRayRunsAlongTheCirclesPlaneTurnsNothing) {
    // Centred 3 units right of the eye's line of sight: the circle about X lies in the plane
    // x = 3, and every pick ray through the middle column of the view (mouse x = 0.5) runs
    // parallel to that plane, 3 units off it.
    Scene scene(Vec3(3.0f, 0.0f, 0.0f));
    const Vec2 onXCircle =
        MouseAt(*scene.camera, Vec3(3.0f, 6.0f * std::sqrt(0.5f), 6.0f * std::sqrt(0.5f)));
    ASSERT_TRUE(scene.hover(onXCircle));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    scene.press(onXCircle);
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    const Transform atStart = scene.object->getWorldTransform();

    EXPECT_FALSE(scene.move(Vec2(0.5f, 0.75f)));
    EXPECT_TRUE(BitwiseEqual(scene.object->getWorldTransform(), atStart));
    EXPECT_EQ(0, scene.controller.getPickedAxe());
}

// ---------------------------------------------------------------------------------------------
// Unusual gizmos

TEST(mxGizmoControllerRotateEdgeCaseTest, CircleOfAGizmoNeverPlacedIsPickedWhereTheUnitCircleIs) {
    // Unplaced, the gizmo's world transformation is the identity: at depth 10 its unit circle
    // about Z is a ring of 10 pixels around the middle of the view.
    mxPointer<mxCamera> camera = MakeStandardCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->UpdateGS();
    ASSERT_TRUE(node->getWorldTransform().IsIdentity());
    std::vector<mx3DManipulatorMotionListener*> listeners;
    mxGizmoControllerRotate controller(listeners);
    const Vec2 middle(100.0f, 100.0f);
    const float tolerance = 1.0f;

    for (const double degrees : {45.0, 135.0, 225.0, 315.0}) {
        SCOPED_TRACE(degrees);
        EXPECT_TRUE(controller.updateRotateHover(node.get(), camera.get(),
                                                 MouseAround(middle, 10.0f, degrees), tolerance,
                                                 csViewWidth, csViewHeight));
        EXPECT_EQ(2, controller.getPickedAxe());
        EXPECT_FALSE(controller.isOver(node.get(), camera.get(),
                                       MouseAround(middle, 12.5f, degrees), tolerance, csViewWidth,
                                       csViewHeight));
        EXPECT_FALSE(controller.isOver(node.get(), camera.get(), MouseAround(middle, 7.5f, degrees),
                                       tolerance, csViewWidth, csViewHeight));
    }
}

TEST(mxGizmoControllerRotateEdgeCaseTest, GizmoAtANaNPositionIsNeverOverAndPicksNothing) {
    mxPointer<mxCamera> camera = MakeStandardCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->setMode(mxGizmoNode::GIZMO_ROTATE);
    node->editLocalTransform(true).SetTranslate(
        Vec3(std::numeric_limits<float>::quiet_NaN(), 0.0f, 0.0f));
    node->UpdateGS();
    std::vector<mx3DManipulatorMotionListener*> listeners;
    mxGizmoControllerRotate controller(listeners);
    // However generous the tolerance.
    const float tolerance = 1000.0f;

    for (const Vec2& mouse : {Vec2(0.5f, 0.5f), Vec2(0.55f, 0.5f), Vec2(0.1f, 0.9f)}) {
        EXPECT_FALSE(controller.isOver(node.get(), camera.get(), mouse, tolerance, csViewWidth,
                                       csViewHeight));
        EXPECT_FALSE(controller.updateRotateHover(node.get(), camera.get(), mouse, tolerance,
                                                  csViewWidth, csViewHeight));
        EXPECT_EQ(-1, controller.getPickedAxe());
    }
}

TEST(mxGizmoControllerRotateEdgeCaseTest, SnappingKeepsAnAxisThatPointsExactlyAlongZOrMinusZ) {
    // Turned a quarter about X, one way and the other, written out exactly: the gizmo's
    // second axis points exactly along +Z, then -Z, where it has no azimuth. Its circle is the
    // ring facing the eye.
    const Mat3 towardsEye(1.0f, 0.0f, 0.0f, 0.0f, 0.0f, -1.0f, 0.0f, 1.0f, 0.0f);
    const Mat3 awayFromEye(1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, -1.0f, 0.0f);
    for (const Mat3& rotation : {towardsEye, awayFromEye}) {
        SCOPED_TRACE(rotation(2, 1) > 0.0f ? "+Z" : "-Z");
        Scene scene(Vec3(0.0f, 0.0f, 0.0f), rotation);
        ASSERT_EQ(rotation, scene.node->getLocalTransform().GetRotate());
        scene.node->setSnapRotationToAxis(true);
        scene.pickRing(1);
        scene.press(scene.around(csDragRadius, 0.0));
        scene.release(scene.around(csDragRadius, 0.0));
        ASSERT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);

        // Already square: it stays as it was, to float precision.
        EXPECT_TRUE(
            MatrixNear(scene.node->getLocalTransform().GetRotate(), rotation, csUnitTolerance));
    }
}

} // namespace
