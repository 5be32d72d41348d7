// Tests for the scale drag controller: hovering the handles, what the press and the release
// announce, the factor a drag along a handle gives (measured in lengths of the axis from the
// press), the scaling of the reference objects about their centre in the gizmo's orientation,
// the node's scale reference and the dragged axis's active frame.
#include "controller/mxGizmoControllerScale.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeScale.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxSpatial.h"
#include "system/mxLog.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxLogCapture.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

using mx::mx3DManipulatorMotionListener;
using mx::mxCamera;
using mx::mxGizmoControllerScale;
using mx::mxGizmoNode;
using mx::mxMesh;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::BitwiseEqual;
using mx::test::ColorIs;
using mx::test::csHidden;
using mx::test::csPickTolerance;
using mx::test::csShown;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::HoveredColor;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::MapsNear;
using mx::test::MatrixNear;
using mx::test::MouseAt;
using mx::test::NormalColor;
using mx::test::PlacedGizmo;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::VectorNear;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mx::mxGenericTransformation<float>;

namespace {

// Positions stay within 10 units of the origin and factors below 10: a ten-thousandth is far
// above the float rounding of a pick ray meeting a plane, and far below what any rule of the
// drag changes.
constexpr float csTolerance = 1e-4f;

// The gizmo is drawn 20 pixels long instead of the default 60: at depth 10 an axis is then 2
// world units (20 pixels), so that three axis lengths inwards from the middle of a handle
// still lie inside the 200-pixel view.
constexpr float csGizmoPixels = 20.0f;

// The objects' centre in the fixture below.
const Vec3 csCentre(1.0f, 0.0f, 0.0f);
const Vec3 csUnitX(1.0f, 0.0f, 0.0f);
const Vec3 csUnitY(0.0f, 1.0f, 0.0f);

// The diagonal matrix of (x, y, z).
Mat3 Diagonal(float x, float y, float z) {
    return Mat3(x, y, z);
}

// Success when object's world transformation maps like diagonal(scale) followed by a
// translation to position.
::testing::AssertionResult ObjectIs(const mxSpatial& object, const Vec3& position,
                                    const Vec3& scale) {
    const Transform& world = object.getWorldTransform();
    ::testing::AssertionResult matrix =
        MatrixNear(world.GetFullMatrix(), Diagonal(scale.X(), scale.Y(), scale.Z()), csTolerance);
    if (!matrix) {
        return matrix;
    }
    return VectorNear(world.GetTranslate(), position, csTolerance);
}

// The standard view over two objects at (-1, 0, 0) and (3, 0, 0): their centre (1, 0, 0) is
// off the world origin, so a scaling about the origin, or about the press point, would put
// them elsewhere than one about the centre. The gizmo sits at the centre, unrotated, in scale
// mode, its axis 2 units long, so the X handle runs on screen from pixel (110, 100) to
// (130, 100). Presses are made on the middle of the X handle, world (2, 0, 0).
class mxGizmoControllerScaleTest : public ::testing::Test {
protected:
    mxGizmoControllerScaleTest()
        : camera(MakeStandardCamera()), left(MakeObject(Vec3(-1.0f, 0.0f, 0.0f))),
          right(MakeObject(Vec3(3.0f, 0.0f, 0.0f))),
          gizmo(mxGizmoNode::GIZMO_SCALE, {left.get(), right.get()}), controller(listeners) {
        listeners.push_back(&listener);
        gizmo.node->setExpectedPixelSize(csGizmoPixels);
        gizmo.place(*camera);
    }

    void SetUp() override {
        // The round numbers above rest on this.
        ASSERT_NEAR(2.0f, axisLength(), 1e-5f);
        ASSERT_TRUE(VectorNear(gizmo.node->getWorldTransform().GetTranslate(), csCentre, 1e-6));
    }

    mxGizmoNode* node() const { return gizmo.node; }
    float axisLength() const { return gizmo.node->getWorldTransform().GetScale().X(); }

    // The mouse over the point lengths axis lengths from the centre along the world
    // direction.
    Vec2 mouseAlong(const Vec3& direction, float lengths) const {
        return MouseAt(*camera, csCentre + (lengths * axisLength()) * direction);
    }
    // The mouse over the middle of the X handle, and lengths axis lengths outwards from it
    // (inwards when negative).
    Vec2 pressMouse() const { return mouseAlong(csUnitX, 0.5f); }
    Vec2 draggedBy(float lengths) const { return mouseAlong(csUnitX, 0.5f + lengths); }

    bool hover(const Vec2& mouse) {
        return controller.updateScaleHover(node(), camera.get(), mouse, csPickTolerance,
                                           csViewWidth, csViewHeight);
    }
    // Hovers over the middle of the X handle, then presses there.
    void pressOnX() {
        ASSERT_TRUE(hover(pressMouse()));
        ASSERT_EQ(0, controller.getPickedAxe());
        controller.setMouseScalePressed(node(), camera.get(), pressMouse());
    }
    bool moveTo(const Vec2& mouse) {
        return controller.setMouseScalePos(node(), camera.get(), mouse);
    }
    void releaseAt(const Vec2& mouse) {
        controller.setMouseScaleReleased(node(), camera.get(), mouse);
    }

    mx::mxLine& activeFrame(unsigned int axis) const {
        return *gizmo.node->getScaleGizmo().getActiveFrame(axis);
    }

    mxPointer<mxCamera> camera;
    mxPointer<mxMesh> left;
    mxPointer<mxMesh> right;
    PlacedGizmo gizmo;
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners;
    mxGizmoControllerScale controller;
};

// The factor rules.

TEST_F(mxGizmoControllerScaleTest, DraggingTheXHandleOutwardsByOneAxisLengthScalesByTwoOneOne) {
    pressOnX();
    EXPECT_TRUE(moveTo(draggedBy(1.0f)));

    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
    // About the centre (1, 0, 0): -1 is 2 to the left of it and goes 4 to the left.
    EXPECT_TRUE(ObjectIs(*left, Vec3(-3.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, DraggingTheXHandleInwardsByOneAxisLengthScalesByHalfOneOne) {
    pressOnX();
    EXPECT_TRUE(moveTo(draggedBy(-1.0f)));

    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(0.5f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*left, Vec3(0.0f, 0.0f, 0.0f), Vec3(0.5f, 1.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(2.0f, 0.0f, 0.0f), Vec3(0.5f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest,
       DraggingTheXHandleInwardsByThreeAxisLengthsScalesByAQuarterOneOne) {
    pressOnX();
    // Past the centre: inwards the factor is 1 / (1 + lengths), never negative.
    EXPECT_TRUE(moveTo(draggedBy(-3.0f)));

    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(0.25f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*left, Vec3(0.5f, 0.0f, 0.0f), Vec3(0.25f, 1.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(1.5f, 0.0f, 0.0f), Vec3(0.25f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, UniformScaleDraggingOutwardsByOneAxisLengthScalesByTwoTwoTwo) {
    node()->setUseUniformScale(true);
    pressOnX();
    EXPECT_TRUE(moveTo(draggedBy(1.0f)));

    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 2.0f, 2.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*left, Vec3(-3.0f, 0.0f, 0.0f), Vec3(2.0f, 2.0f, 2.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 2.0f, 2.0f)));
}

TEST_F(mxGizmoControllerScaleTest, FactorIsMeasuredFromThePressAndNeverAccumulated) {
    pressOnX();
    EXPECT_TRUE(moveTo(draggedBy(1.0f)));
    // The same place again gives 2 again, not 4.
    EXPECT_TRUE(moveTo(draggedBy(1.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));

    // Two lengths from the press give 3, not 2 * 2 or 2 * 3.
    EXPECT_TRUE(moveTo(draggedBy(2.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(3.0f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*left, Vec3(-5.0f, 0.0f, 0.0f), Vec3(3.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(7.0f, 0.0f, 0.0f), Vec3(3.0f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, MouseBackAtThePressPointAppliesFactorOneAndPutsTheObjectsBack) {
    const Transform leftAtStart = left->getWorldTransform();
    const Transform rightAtStart = right->getWorldTransform();
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(1.0f)));
    ASSERT_FALSE(ObjectIs(*right, Vec3(3.0f, 0.0f, 0.0f), Vec3(1.0f, 1.0f, 1.0f)));

    // Unlike a translate move, a factor of exactly 1 is applied.
    EXPECT_TRUE(moveTo(pressMouse()));

    EXPECT_EQ(1.0f, node()->getScaleReference().X());
    EXPECT_EQ(1.0f, node()->getScaleReference().Y());
    EXPECT_EQ(1.0f, node()->getScaleReference().Z());
    EXPECT_TRUE(BitwiseEqual(left->getWorldTransform(), leftAtStart));
    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAtStart));
}

TEST_F(mxGizmoControllerScaleTest, EndTransformationIsTheScalingAboutTheCentreSinceThePress) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(2.0f)));
    releaseAt(draggedBy(1.0f));

    ASSERT_EQ(1u, listener.ends.size());
    // diag(2, 1, 1) about (1, 0, 0): x goes to 2x - 1.
    Transform expected;
    expected.SetScale(Vec3(2.0f, 1.0f, 1.0f));
    expected.SetTranslate(Vec3(-1.0f, 0.0f, 0.0f));
    EXPECT_TRUE(MapsNear(listener.ends[0], expected, csTolerance));
    // The release moved the objects there, and the reference keeps that last scale.
    EXPECT_TRUE(ObjectIs(*left, Vec3(-3.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
}

TEST_F(mxGizmoControllerScaleTest, ScaleReferenceIsOneAtThePressFollowsTheMovesAndStaysAfter) {
    node()->setScaleReference(Vec3(5.0f, 6.0f, 7.0f));
    pressOnX();
    EXPECT_EQ(1.0f, node()->getScaleReference().X());
    EXPECT_EQ(1.0f, node()->getScaleReference().Y());
    EXPECT_EQ(1.0f, node()->getScaleReference().Z());

    ASSERT_TRUE(moveTo(draggedBy(-1.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(0.5f, 1.0f, 1.0f), csTolerance));
    ASSERT_TRUE(moveTo(draggedBy(3.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(4.0f, 1.0f, 1.0f), csTolerance));

    releaseAt(draggedBy(3.0f));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(4.0f, 1.0f, 1.0f), csTolerance));
}

// A gizmo turned 90 degrees about Z: its X axis runs along world +Y. The objects sit off both
// world axes through the centre, at (-1, -1, 0) and (3, 1, 0), so that a scaling along world
// X would move them differently from one along world Y.
TEST_F(mxGizmoControllerScaleTest, RotatedGizmoScalesAlongItsRotatedXAxis) {
    mxPointer<mxMesh> low = MakeObject(Vec3(-1.0f, -1.0f, 0.0f));
    mxPointer<mxMesh> high = MakeObject(Vec3(3.0f, 1.0f, 0.0f));
    PlacedGizmo turned(mxGizmoNode::GIZMO_SCALE, {low.get(), high.get()});
    turned.node->setExpectedPixelSize(csGizmoPixels);
    turned.place(*camera, Rotation(0.0f, 0.0f, 1.0f, Wm4::Math<float>::HALF_PI));
    ASSERT_NEAR(2.0f, turned.node->getWorldTransform().GetScale().X(), 1e-5f);

    // The middle of the X handle is one unit above the centre.
    const Vec2 press = MouseAt(*camera, csCentre + csUnitY);
    ASSERT_TRUE(controller.updateScaleHover(turned.node, camera.get(), press, csPickTolerance,
                                            csViewWidth, csViewHeight));
    ASSERT_EQ(0, controller.getPickedAxe());
    mx::test::mxLogCapture log;
    controller.setMouseScalePressed(turned.node, camera.get(), press);
    EXPECT_TRUE(VectorNear(controller.getPickedWorldAxe(), csUnitY, 1e-6));

    // One axis length outwards along world +Y.
    EXPECT_TRUE(controller.setMouseScalePos(turned.node, camera.get(),
                                            MouseAt(*camera, csCentre + 3.0f * csUnitY)));

    // The reference names the gizmo's own axis; the objects are stretched along world Y about
    // the centre, their X left alone.
    EXPECT_TRUE(VectorNear(turned.node->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(ObjectIs(*low, Vec3(-1.0f, -2.0f, 0.0f), Vec3(1.0f, 2.0f, 1.0f)));
    EXPECT_TRUE(ObjectIs(*high, Vec3(3.0f, 2.0f, 0.0f), Vec3(1.0f, 2.0f, 1.0f)));
    // A scaling along a turned axis is a general matrix; it is refused by nothing.
    EXPECT_TRUE(log.lines().empty());

    controller.setMouseScaleReleased(turned.node, camera.get(),
                                     MouseAt(*camera, csCentre + 3.0f * csUnitY));
    ASSERT_EQ(1u, listener.ends.size());
    Transform expected;
    expected.SetMatrix(Diagonal(1.0f, 2.0f, 1.0f));
    EXPECT_TRUE(MapsNear(listener.ends[0], expected, csTolerance));
}

// The mouse must lie in the view.

TEST_F(mxGizmoControllerScaleTest, MoveWithTheMouseOutsideTheViewChangesNothingAndReturnsFalse) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(1.0f)));
    const Transform leftBefore = left->getWorldTransform();
    const Transform rightBefore = right->getWorldTransform();
    const Vec3 referenceBefore = node()->getScaleReference();

    const float justAboveOne = std::nextafter(1.0f, 2.0f);
    const float justBelowZero = std::nextafter(0.0f, -1.0f);
    const Vec2 inside = draggedBy(2.0f);
    for (const Vec2& outside : {Vec2(justAboveOne, inside.Y()), Vec2(justBelowZero, inside.Y()),
                                Vec2(inside.X(), justAboveOne), Vec2(inside.X(), justBelowZero)}) {
        SCOPED_TRACE(testing::Message() << "mouse (" << outside.X() << ", " << outside.Y() << ")");
        EXPECT_FALSE(moveTo(outside));
        EXPECT_TRUE(BitwiseEqual(left->getWorldTransform(), leftBefore));
        EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightBefore));
        EXPECT_EQ(referenceBefore.X(), node()->getScaleReference().X());
    }
}

TEST_F(mxGizmoControllerScaleTest, MoveWithTheMouseOnTheBorderOfTheViewIsApplied) {
    pressOnX();
    // x = 1 is world x = 10 on the axis: 4 lengths out from (2, 0, 0).
    EXPECT_TRUE(moveTo(Vec2(1.0f, 0.5f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(5.0f, 1.0f, 1.0f), csTolerance));
    // x = 0 is world x = -10: 6 lengths in.
    EXPECT_TRUE(moveTo(Vec2(0.0f, 0.5f)));
    EXPECT_TRUE(
        VectorNear(node()->getScaleReference(), Vec3(1.0f / 7.0f, 1.0f, 1.0f), csTolerance));
    // The bottom and top rows project onto the axis straight below and above them.
    EXPECT_TRUE(moveTo(Vec2(draggedBy(1.0f).X(), 0.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
    EXPECT_TRUE(moveTo(Vec2(draggedBy(2.0f).X(), 1.0f)));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(3.0f, 1.0f, 1.0f), csTolerance));
}

// Announcements, active frame and pick.

TEST_F(mxGizmoControllerScaleTest, PressOnAHandleAnnouncesTranslateStartsThenScaleStartsInOrder) {
    std::vector<std::string> log;
    RecordingListener first("first", log);
    RecordingListener second("second", log);
    listeners = {&first, &second};

    pressOnX();

    const std::vector<std::string> expected = {"first translateStart", "second translateStart",
                                               "first scaleStart", "second scaleStart"};
    EXPECT_EQ(expected, log);
}

TEST_F(mxGizmoControllerScaleTest, PressOnAHandleShowsItsActiveFrameAndKeepsThePick) {
    pressOnX();

    EXPECT_EQ(0, controller.getPickedAxe());
    EXPECT_EQ(csShown, activeFrame(0).getCullingMode());
    EXPECT_EQ(csHidden, activeFrame(1).getCullingMode());
    EXPECT_EQ(csHidden, activeFrame(2).getCullingMode());
    EXPECT_TRUE(VectorNear(controller.getPickedWorldAxe(), csUnitX, 1e-6));
}

TEST_F(mxGizmoControllerScaleTest, ReleaseAnnouncesOnlyScaleEnd) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(1.0f)));
    listener.events.clear();

    releaseAt(draggedBy(1.0f));

    EXPECT_EQ(std::vector<std::string>{"scaleEnd"}, listener.events);
}

TEST_F(mxGizmoControllerScaleTest, ReleaseHidesTheActiveFrameAndDropsThePick) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(1.0f)));
    ASSERT_EQ(csShown, activeFrame(0).getCullingMode());

    releaseAt(draggedBy(1.0f));

    EXPECT_EQ(csHidden, activeFrame(0).getCullingMode());
    EXPECT_EQ(-1, controller.getPickedAxe());
    // Without a pick, later moves do nothing.
    EXPECT_FALSE(moveTo(draggedBy(2.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, ReleaseAtThePressPointWithoutMovingPassesTheIdentity) {
    const Transform rightAtStart = right->getWorldTransform();
    pressOnX();
    releaseAt(pressMouse());

    ASSERT_EQ(std::vector<std::string>({"translateStart", "scaleStart", "scaleEnd"}),
              listener.events);
    EXPECT_TRUE(BitwiseEqual(listener.ends[0], Transform()));
    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAtStart));
}

TEST_F(mxGizmoControllerScaleTest, ReleaseAwayFromThePressAppliesALastMoveBeforeTheEnd) {
    pressOnX();
    releaseAt(draggedBy(-1.0f));

    ASSERT_EQ(1u, listener.ends.size());
    Transform expected;
    expected.SetScale(Vec3(0.5f, 1.0f, 1.0f));
    expected.SetTranslate(Vec3(0.5f, 0.0f, 0.0f));
    EXPECT_TRUE(MapsNear(listener.ends[0], expected, csTolerance));
    EXPECT_TRUE(ObjectIs(*left, Vec3(0.0f, 0.0f, 0.0f), Vec3(0.5f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, PressWithNoAxisPickedAnnouncesOnlyScaleStartAndResetsReference) {
    node()->setScaleReference(Vec3(5.0f, 6.0f, 7.0f));
    // Far from every handle, in the upper left.
    ASSERT_FALSE(hover(Vec2(0.1f, 0.9f)));

    controller.setMouseScalePressed(node(), camera.get(), Vec2(0.1f, 0.9f));

    EXPECT_EQ(std::vector<std::string>{"scaleStart"}, listener.events);
    EXPECT_EQ(1.0f, node()->getScaleReference().X());
    EXPECT_EQ(1.0f, node()->getScaleReference().Y());
    EXPECT_EQ(1.0f, node()->getScaleReference().Z());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(csHidden, activeFrame(axis).getCullingMode()) << axis;
    }
    EXPECT_FALSE(moveTo(draggedBy(1.0f)));
}

// Null node or camera.

TEST_F(mxGizmoControllerScaleTest, PressWithANullNodeOrCameraCallsNoListenerAndChangesNothing) {
    node()->setScaleReference(Vec3(5.0f, 6.0f, 7.0f));
    ASSERT_TRUE(hover(pressMouse()));

    controller.setMouseScalePressed(nullptr, camera.get(), pressMouse());
    controller.setMouseScalePressed(node(), nullptr, pressMouse());

    EXPECT_TRUE(listener.events.empty());
    EXPECT_EQ(5.0f, node()->getScaleReference().X());
    EXPECT_EQ(csHidden, activeFrame(0).getCullingMode());
}

TEST_F(mxGizmoControllerScaleTest, MoveWithANullNodeOrCameraReturnsFalseAndLeavesTheObjects) {
    const Transform rightAtStart = right->getWorldTransform();
    pressOnX();

    EXPECT_FALSE(controller.setMouseScalePos(nullptr, camera.get(), draggedBy(1.0f)));
    EXPECT_FALSE(controller.setMouseScalePos(node(), nullptr, draggedBy(1.0f)));

    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAtStart));
    EXPECT_EQ(1.0f, node()->getScaleReference().X());
}

TEST_F(mxGizmoControllerScaleTest, MoveWithACameraThatGivesNoRayReturnsFalseAndLeavesTheObjects) {
    const Transform rightAtStart = right->getWorldTransform();
    pressOnX();
    // Orthographic, with a zero view direction: no pick ray can be made with it.
    mxPointer<mxCamera> blind = new mxCamera(false);
    blind->setAxes(Vec3(0.0f, 0.0f, 0.0f), csUnitY, csUnitX);

    EXPECT_FALSE(controller.setMouseScalePos(node(), blind.get(), draggedBy(1.0f)));

    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAtStart));
    EXPECT_EQ(Vec3(1.0f, 1.0f, 1.0f), node()->getScaleReference());
    // The drag goes on with a camera that can see.
    EXPECT_TRUE(moveTo(draggedBy(1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
}

TEST_F(mxGizmoControllerScaleTest, ReleaseWithoutAPickedAxisAnnouncesAnIdentityScaleEnd) {
    const Transform rightAtStart = right->getWorldTransform();

    releaseAt(draggedBy(1.0f));

    EXPECT_EQ(std::vector<std::string>{"scaleEnd"}, listener.events);
    ASSERT_EQ(1u, listener.ends.size());
    EXPECT_TRUE(listener.ends[0].IsIdentity());
    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAtStart));
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(csHidden, activeFrame(axis).getCullingMode());
    }
}

// A derived controller that changes the drag's start behind the press's back: a start that is
// not held as rotation and scale cannot give the scaling's frame.
class ScaleWithOpenStart : public mxGizmoControllerScale {
public:
    using mxGizmoControllerScale::mxGizmoControllerScale;
    using mxGizmoControllerScale::startTransformation;
};

TEST_F(mxGizmoControllerScaleTest, MoveFromAStartThatIsNotRotationAndScaleWarnsAndScalesNothing) {
    ScaleWithOpenStart open(listeners);
    ASSERT_TRUE(open.updateScaleHover(node(), camera.get(), pressMouse(), csPickTolerance,
                                      csViewWidth, csViewHeight));
    open.setMouseScalePressed(node(), camera.get(), pressMouse());
    ASSERT_TRUE(open.setMouseScalePos(node(), camera.get(), draggedBy(1.0f)));
    ASSERT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));
    const Transform rightAfterFirstMove = right->getWorldTransform();
    // The same frame, held as a general matrix.
    open.startTransformation.SetMatrix(Mat3::IDENTITY);
    open.startTransformation.SetTranslate(csCentre);
    mx::test::mxLogCapture log;

    EXPECT_FALSE(open.setMouseScalePos(node(), camera.get(), draggedBy(2.0f)));
    EXPECT_FALSE(open.setMouseScalePos(node(), camera.get(), draggedBy(0.5f)));

    const std::string warning = mx::mxLog::formatLine(
        5, nullptr, nullptr,
        "The gizmo must have an RS matrix (mxGizmoControllerScale::setMouseScalePos)");
    EXPECT_EQ((std::vector<std::string>{warning, warning}), log.lines());
    EXPECT_TRUE(BitwiseEqual(right->getWorldTransform(), rightAfterFirstMove));
    EXPECT_TRUE(VectorNear(node()->getScaleReference(), Vec3(2.0f, 1.0f, 1.0f), csTolerance));
}

TEST_F(mxGizmoControllerScaleTest, ReleaseWithANullNodeStillDropsThePickAndAnnouncesScaleEnd) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(1.0f)));
    listener.events.clear();

    controller.setMouseScaleReleased(nullptr, camera.get(), draggedBy(2.0f));

    EXPECT_EQ(-1, controller.getPickedAxe());
    ASSERT_EQ(std::vector<std::string>{"scaleEnd"}, listener.events);
    // The last move took no effect: the end carries the scaling of the move before.
    Transform expected;
    expected.SetScale(Vec3(2.0f, 1.0f, 1.0f));
    expected.SetTranslate(Vec3(-1.0f, 0.0f, 0.0f));
    EXPECT_TRUE(MapsNear(listener.ends.back(), expected, csTolerance));
}

TEST_F(mxGizmoControllerScaleTest, HoverWithANullNodeReturnsFalseAndKeepsThePick) {
    ASSERT_TRUE(hover(pressMouse()));

    EXPECT_FALSE(controller.updateScaleHover(nullptr, camera.get(), pressMouse(), csPickTolerance,
                                             csViewWidth, csViewHeight));
    EXPECT_EQ(0, controller.getPickedAxe());
}

// Hovering, as the translate controller hovers.

TEST_F(mxGizmoControllerScaleTest, HoverOverTheXHandlePicksAndHighlightsIt) {
    EXPECT_TRUE(hover(pressMouse()));

    EXPECT_EQ(0, controller.getPickedAxe());
    const mx::mxGizmoNodeScale& scale = node()->getScaleGizmo();
    EXPECT_TRUE(ColorIs(scale.getAxis(0)->getColor(), HoveredColor(0)));
    EXPECT_TRUE(ColorIs(scale.getAxis(1)->getColor(), NormalColor(1)));
    EXPECT_TRUE(ColorIs(scale.getAxis(2)->getColor(), NormalColor(2)));
}

TEST_F(mxGizmoControllerScaleTest, HoverOverTheYHandlePicksY) {
    EXPECT_TRUE(hover(mouseAlong(csUnitY, 0.5f)));

    EXPECT_EQ(1, controller.getPickedAxe());
    EXPECT_TRUE(ColorIs(node()->getScaleGizmo().getAxis(1)->getColor(), HoveredColor(1)));
}

TEST_F(mxGizmoControllerScaleTest, HoverAwayFromEveryHandlePicksNothingAndPutsNormalColoursBack) {
    ASSERT_TRUE(hover(pressMouse()));

    EXPECT_FALSE(hover(Vec2(0.1f, 0.9f)));

    EXPECT_EQ(-1, controller.getPickedAxe());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(ColorIs(node()->getScaleGizmo().getAxis(axis)->getColor(), NormalColor(axis)))
            << axis;
    }
}

TEST_F(mxGizmoControllerScaleTest, HoverOverADisabledHandlePicksNothing) {
    // Near the tip of X: 18 pixels from the Y handle, 15.5 from the short Z handle.
    const Vec2 nearTheXTip = mouseAlong(csUnitX, 0.9f);
    ASSERT_TRUE(hover(nearTheXTip));
    node()->setEnabledAxis(mxGizmoNode::GIZMO_SCALE, 0x6);

    EXPECT_FALSE(hover(nearTheXTip));
    EXPECT_EQ(-1, controller.getPickedAxe());
}

// One object at the origin: the gizmo's centre projects to pixel (100, 100) exactly, its X
// handle to the row y = 100 and its Y handle to the column x = 100, and its Z handle to the
// centre. The mouse positions are multiples of 1/32, so that the pixel distances are exact:
// (0.5625, 0.53125) is pixel (112.5, 106.25), 6.25 pixels above the X handle and 12.5 right of
// the Y handle.
TEST_F(mxGizmoControllerScaleTest, HoverAcceptsAHandleExactlyAtTheToleranceAndNoFarther) {
    mxPointer<mxMesh> atOrigin = MakeObject(Vec3(0.0f, 0.0f, 0.0f));
    PlacedGizmo centred(mxGizmoNode::GIZMO_SCALE, {atOrigin.get()});
    centred.node->setExpectedPixelSize(csGizmoPixels);
    centred.place(*camera);
    const Vec2 mouse(0.5625f, 0.53125f);

    EXPECT_TRUE(controller.updateScaleHover(centred.node, camera.get(), mouse, 6.25f, csViewWidth,
                                            csViewHeight));
    EXPECT_EQ(0, controller.getPickedAxe());

    EXPECT_FALSE(controller.updateScaleHover(
        centred.node, camera.get(), mouse, std::nextafter(6.25f, 0.0f), csViewWidth, csViewHeight));
    EXPECT_EQ(-1, controller.getPickedAxe());
}

// The same scene; pixel (106.25, 106.25) is 6.25 pixels from both the X and the Y handle, and
// farther from the Z handle at the centre.
TEST_F(mxGizmoControllerScaleTest, HoverBetweenTwoEquallyNearHandlesPicksTheLaterAxis) {
    mxPointer<mxMesh> atOrigin = MakeObject(Vec3(0.0f, 0.0f, 0.0f));
    PlacedGizmo centred(mxGizmoNode::GIZMO_SCALE, {atOrigin.get()});
    centred.node->setExpectedPixelSize(csGizmoPixels);
    centred.place(*camera);

    EXPECT_TRUE(controller.updateScaleHover(centred.node, camera.get(), Vec2(0.53125f, 0.53125f),
                                            csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_EQ(1, controller.getPickedAxe());
}

// Copies.

TEST_F(mxGizmoControllerScaleTest, CopyMadeDuringADragContinuesItFromTheSamePress) {
    pressOnX();
    ASSERT_TRUE(moveTo(draggedBy(2.0f)));

    mxGizmoControllerScale copy(controller);
    EXPECT_TRUE(copy.setMouseScalePos(node(), camera.get(), draggedBy(1.0f)));
    EXPECT_TRUE(ObjectIs(*right, Vec3(5.0f, 0.0f, 0.0f), Vec3(2.0f, 1.0f, 1.0f)));

    // It tells the same listeners.
    listener.events.clear();
    copy.setMouseScaleReleased(node(), camera.get(), draggedBy(1.0f));
    EXPECT_EQ(std::vector<std::string>{"scaleEnd"}, listener.events);
}

} // namespace
