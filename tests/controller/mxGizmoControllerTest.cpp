// Tests for mx::mxGizmoController, driven the way an application drives it: gizmo nodes below
// an engine's scene, the controller attached to the engine, mouse calls in window pixels (origin
// at the top left, y downwards) and frames through mxEngine::updateFrame. What a press, a move
// and a release do to a gizmo belongs to the drag controllers; here it shows through the
// handles' colours (the hovered axis is darker), the reference objects' transformations and the
// callbacks a RecordingListener hears.

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxScene.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::BitwiseEqual;
using mx::test::ColumnOf;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::MatrixNear;
using mx::test::PixelOf;
using mx::test::Radians;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::ShowsHover;
using mx::test::VectorNear;
using mx::test::WindowPixel;
using mx::test::WindowPixelOf;

using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mxGenericTransformation<float>;
using Words = std::vector<std::string>;
using GizmoMode = mxGizmoNode::GizmoMode;
using Orientation = mxGizmoController::OrientationReference;

// Positions a few units from the origin after a drag: far above float rounding, far below the
// tenth of a unit that one pixel of drag is worth at the gizmo's depth.
constexpr double csPositionTolerance = 1e-4;
// Entries of rotation matrices after a handful of float operations.
constexpr double csRotationTolerance = 1e-5;

WindowPixel Shifted(const WindowPixel& pixel, int dx, int dy) {
    return WindowPixel{pixel.x + dx, pixel.y + dy};
}

// Near the top left corner: far from every gizmo of these tests, which stand near the middle.
constexpr WindowPixel csNowhere{5, 5};

// Points of the handles in a gizmo's own frame, where one unit is the length of an axis: 0.6 of
// the way along the X and the Y axis (translate and scale), and points of the rotate circles
// about Y and about Z away from where the circles cross.
const Vec3 csXHandle(0.6f, 0.0f, 0.0f);
const Vec3 csYHandle(0.0f, 0.6f, 0.0f);
const Vec3 csYCircle(0.5f, 0.0f, 0.8660254f);
const Vec3 csZCircle(0.8f, 0.6f, 0.0f);

// The custom transformation of the tests that place a gizmo at one: turned about a slanted
// axis, away from the objects.
Transform TurnedCustom() {
    Transform custom;
    custom.SetRotate(Rotation(1.0f, 2.0f, 3.0f, 0.7f));
    custom.SetTranslate(Vec3(2.0f, -1.0f, 1.0f));
    return custom;
}

// The controller in the standard view (ControllerInEngineTest), with the scenes the tests share.
class mxGizmoControllerTest : public mx::test::ControllerInEngineTest {
protected:
    // A new node below the scene (or parent).
    mxNode* AddNode(mxNode* parent = nullptr) {
        mxNode* node = new mxNode;
        (parent ? parent : engine.getScene())->attachChild(node);
        return node;
    }

    // A whole drag from pixel by dx pixels to the right, recorded only: the press, one move
    // and the release there. Returns what the press answered.
    bool RecordDrag(const WindowPixel& pixel, int dx) {
        const bool onGizmo = Press(pixel);
        Move(Shifted(pixel, dx, 0));
        Release(Shifted(pixel, dx, 0));
        return onGizmo;
    }

    // A whole drag of the gizmo's X handle by dx pixels to the right, recorded before one frame,
    // then that frame.
    void DragXHandle(const mxGizmoNode& gizmo, int dx) {
        EXPECT_TRUE(RecordDrag(PixelOver(gizmo, csXHandle), dx));
        engine.updateFrame();
    }

    // No axis picked: index -1, black colours and a zero axis.
    void ExpectNothingPicked(const mxGizmoNode* asked) {
        EXPECT_EQ(-1, controller.getPickedAxeIndex(asked));
        EXPECT_EQ(Wm4::ColorRGB::BLACK, controller.getPickedAxeColor(asked));
        EXPECT_EQ(Wm4::ColorRGB::BLACK, controller.getPickedAxeHighlightColor(asked));
        EXPECT_EQ(Vec3::ZERO, controller.getPickedWorldAxe(asked));
    }

    // Scenes shared by several tests; each fills the members below it names.

    // object at the origin and a gizmo in mode around it, placed by a first frame; xHandle
    // over its X handle.
    void PlaceAtOrigin(GizmoMode mode = mxGizmoNode::GIZMO_TRANSLATE) {
        object = AddObject(Vec3::ZERO);
        objectAtStart = object->getWorldTransform();
        gizmo = AddGizmo(mode, {object});
        engine.updateFrame();
        xHandle = PixelOver(*gizmo, csXHandle);
    }

    // A translate gizmo around an object at (0, 1, 2), placed by a first frame. Its centre is
    // at depth 8, where a unit covers 12.5 pixels: the X axis then runs along the pixel row
    // 112.5 from the bottom, on the edge between two rows of pixel centres, so that whole
    // pixels lie exactly 10 and 11 pixels from it.
    void PlaceOnAPixelEdge() {
        gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(0.0f, 1.0f, 2.0f))});
        engine.updateFrame();
    }

    // The pixel position of the gizmo's centre, from the lower left.
    Vec2 Centre() const { return PixelOf(*camera, gizmo->getWorldTransform().GetTranslate()); }

    // object at (-3, 0, 0) and a translate gizmo around it that the Custom orientation places at
    // the custom translation (2, 1, 0), by a first frame; xHandle over its X handle.
    void PlaceCustom() {
        object = AddObject(Vec3(-3.0f, 0.0f, 0.0f));
        gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
        Transform custom;
        custom.SetTranslate(Vec3(2.0f, 1.0f, 0.0f));
        controller.setCustomTransformation(custom);
        controller.setOrientationReference(mxGizmoController::Custom);
        engine.updateFrame();
        xHandle = PixelOver(*gizmo, csXHandle);
    }

    // object below a parent turned 30 degrees about Z, 3 units below the eye's line of sight:
    // in the default Local orientation a gizmo around it has the Y axis (-sin 30, cos 30, 0),
    // not the world's, and the eye lies in none of its rotate circles' planes, so that each
    // circle can be pressed.
    void MakeTurnedParent() {
        parent = new mxNode;
        parent->editLocalTransform(true).SetRotate(
            Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(30.0))));
        parent->editLocalTransform(true).SetTranslate(Vec3(0.0f, -3.0f, 0.0f));
        parent->UpdateGS();
        object = AddObject(Vec3::ZERO, parent.get());
    }

    // MakeTurnedParent, then a gizmo in mode around object, placed by a first frame.
    void PlaceBelowTurnedParent(GizmoMode mode) {
        MakeTurnedParent();
        gizmo = AddGizmo(mode, {object});
        engine.updateFrame();
    }

    // After PlaceBelowTurnedParent: hovers over the gizmo's Y handle and checks the picked-axis
    // accessors, then presses there and checks them again while the button is held (the drag
    // controllers learn the gizmo's frame at the press).
    void CheckYHandle() {
        const WindowPixel handle = PixelOver(
            *gizmo, gizmo->getMode() == mxGizmoNode::GIZMO_ROTATE ? csYCircle : csYHandle);

        Move(handle);
        engine.updateFrame();
        ASSERT_TRUE(ShowsHover(*gizmo, 1));
        EXPECT_EQ(1, controller.getPickedAxeIndex(gizmo));
        EXPECT_EQ(mxGizmoNode::csColors[1], controller.getPickedAxeColor(gizmo));
        EXPECT_EQ(mxGizmoNode::csColorsHighlight[1], controller.getPickedAxeHighlightColor(gizmo));

        ASSERT_TRUE(Press(handle));
        engine.updateFrame();
        EXPECT_EQ(1, controller.getPickedAxeIndex(gizmo));
        EXPECT_EQ(mxGizmoNode::csColors[1], controller.getPickedAxeColor(gizmo));
        EXPECT_EQ(mxGizmoNode::csColorsHighlight[1], controller.getPickedAxeHighlightColor(gizmo));
        const Vec3 worldY = ColumnOf(gizmo->getWorldTransform().GetRotate(), 1);
        EXPECT_TRUE(VectorNear(worldY, Vec3(-0.5f, 0.8660254f, 0.0f), csRotationTolerance));
        EXPECT_TRUE(VectorNear(controller.getPickedWorldAxe(gizmo), worldY, csRotationTolerance));
    }

    // A parent at (3, 1, 0), turned by turn (30 degrees about Z) and scaled by 2, with the
    // object child 1 unit along its X axis, at (3 + 2 cos 30, 2, 0).
    void MakeLocalParent() {
        turn = Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(30.0)));
        parent = new mxNode;
        Transform& local = parent->editLocalTransform(true);
        local.SetRotate(turn);
        local.SetUniformScale(2.0f);
        local.SetTranslate(Vec3(3.0f, 1.0f, 0.0f));
        parent->UpdateGS();
        child = AddObject(Vec3(1.0f, 0.0f, 0.0f), parent.get());
    }

    // Two translate gizmos apart, upper around (-5, 3, 0) and lower around (-5, -3, 0), their
    // X handles 60 pixels apart on screen, placed by a first frame.
    void PlaceTwo() {
        upper = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-5.0f, 3.0f, 0.0f))});
        lower = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-5.0f, -3.0f, 0.0f))});
        engine.updateFrame();
    }

    mxSpatial* object = nullptr;
    // The world (and local) transformation object was made with.
    Transform objectAtStart;
    mxGizmoNode* gizmo = nullptr;
    WindowPixel xHandle;
    mxPointer<mxNode> parent;
    Mat3 turn = Mat3::IDENTITY;
    mxSpatial* child = nullptr;
    mxGizmoNode* upper = nullptr;
    mxGizmoNode* lower = nullptr;
};

// ---------------------------------------------------------------------------------------------
// Defaults

TEST_F(mxGizmoControllerTest, NewControllerIsEnabledLocalWithIdentityTransformationsAndNoGizmos) {
    mxGizmoController fresh;
    EXPECT_TRUE(fresh.isEnabled());
    EXPECT_EQ(mxGizmoController::Local, fresh.getOrientationReference());
    EXPECT_EQ(0, static_cast<int>(fresh.getOrientationReference()));
    EXPECT_TRUE(BitwiseEqual(fresh.getCustomTransformation(), Transform()));
    EXPECT_TRUE(BitwiseEqual(fresh.getCurrentTransformation(), Transform()));
    EXPECT_TRUE(fresh.get3DManipulators().empty());
}

TEST_F(mxGizmoControllerTest, PressTenPixelsFromAnAxisHitsAndElevenPixelsMisses) {
    PlaceOnAPixelEdge();
    ASSERT_EQ(100.0f, Centre().X());
    ASSERT_EQ(112.5f, Centre().Y());
    // Window row 77 has its centre at 199.5 - 77 = 122.5 from the bottom: 10 pixels above the
    // X axis; row 76 is 11 pixels above it. Column 130 lies halfway along the axis.
    EXPECT_TRUE(Press(WindowPixel{130, 77}));
    EXPECT_FALSE(Press(WindowPixel{130, 76}));
}

TEST_F(mxGizmoControllerTest, HoverTakesTheSameTenPixels) {
    PlaceOnAPixelEdge();
    Move(WindowPixel{130, 77});
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 0));
    EXPECT_EQ(0, controller.getPickedAxeIndex(gizmo));

    Move(WindowPixel{130, 76});
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, -1));
    EXPECT_EQ(-1, controller.getPickedAxeIndex(gizmo));
}

TEST_F(mxGizmoControllerTest, PressRowsAreCountedFromTheTopAndTakenAtTheirCentres) {
    PlaceOnAPixelEdge();
    gizmo->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0x1);
    ASSERT_EQ(112.5f, Centre().Y());
    // Rows 77 and 97 have their centres 10 pixels above and below the X axis (122.5 and 102.5
    // from the bottom); rows 76 and 98 are 11 pixels off. Counting from the bottom, or at the
    // pixel's edge instead of its centre, moves one of each pair across the tolerance.
    EXPECT_FALSE(Press(WindowPixel{130, 76}));
    EXPECT_TRUE(Press(WindowPixel{130, 77}));
    EXPECT_TRUE(Press(WindowPixel{130, 97}));
    EXPECT_FALSE(Press(WindowPixel{130, 98}));
}

// The object at (1, 1, 2) puts the Y axis along the pixel column 112.5 from the left.
TEST_F(mxGizmoControllerTest, PressColumnsAreCountedFromTheLeftAndTakenAtTheirCentres) {
    mxGizmoNode* gizmo =
        AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(1.0f, 1.0f, 2.0f))});
    gizmo->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0x2);
    engine.updateFrame();
    ASSERT_EQ(112.5f, PixelOf(*camera, gizmo->getWorldTransform().GetTranslate()).X());

    // Row 57 is halfway up the Y axis. Columns 102 and 122 have their centres 10 pixels left
    // and right of it; columns 101 and 123 are 11 pixels off.
    EXPECT_FALSE(Press(WindowPixel{101, 57}));
    EXPECT_TRUE(Press(WindowPixel{102, 57}));
    EXPECT_TRUE(Press(WindowPixel{122, 57}));
    EXPECT_FALSE(Press(WindowPixel{123, 57}));
}

// ---------------------------------------------------------------------------------------------
// The public mouse calls

TEST_F(mxGizmoControllerTest, SetMousePressedAnswersAtOnceWhetherThePressIsOnAGizmo) {
    PlaceAtOrigin();
    EXPECT_TRUE(Press(xHandle));
    EXPECT_TRUE(Press(PixelOver(*gizmo, csYHandle)));
    EXPECT_FALSE(Press(csNowhere));
    // Nothing was replayed yet: the presses are only recorded.
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(ShowsHover(*gizmo, -1));
}

TEST_F(mxGizmoControllerTest, PressBeforeAnyFrameFindsNoGizmo) {
    // Not collected yet: the hit test only knows the gizmos of the last frame.
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3::ZERO)});
    EXPECT_FALSE(Press(WindowPixel{105, 100}));
    controller.clearControllerEvents();

    engine.updateFrame();
    EXPECT_TRUE(Press(PixelOver(*gizmo, csXHandle)));
}

TEST_F(mxGizmoControllerTest, SetMousePosReturnsTheFlagOfTheLastPressUnchanged) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    EXPECT_TRUE(Move(csNowhere));
    EXPECT_TRUE(Move(xHandle));
    EXPECT_TRUE(Release(xHandle));
    EXPECT_FALSE(Move(xHandle));

    ASSERT_FALSE(Press(csNowhere));
    EXPECT_FALSE(Move(xHandle));
    EXPECT_FALSE(Move(csNowhere));
}

TEST_F(mxGizmoControllerTest, SetMouseReleasedReturnsTrueOnceAfterAPressOnAGizmo) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    EXPECT_TRUE(Release(xHandle));
    EXPECT_FALSE(Release(xHandle));

    ASSERT_FALSE(Press(csNowhere));
    EXPECT_FALSE(Release(csNowhere));
}

TEST_F(mxGizmoControllerTest, PressMoveAndReleaseBeforeOneFrameAreAllReplayedInIt) {
    PlaceAtOrigin();
    ASSERT_TRUE(RecordDrag(xHandle, 20));
    // Recorded only.
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));

    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, listener.manipulated);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
    ASSERT_EQ(1u, listener.ends.size());
    EXPECT_TRUE(
        VectorNear(listener.ends[0].GetTranslate(), Vec3(2.0f, 0.0f, 0.0f), csPositionTolerance));
    // Framed around the object's new place in the same frame.
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));

    // Nothing is left to replay.
    engine.updateFrame();
    EXPECT_EQ(3u, listener.events.size());
}

TEST_F(mxGizmoControllerTest, EachMoveOfADragIsReplayedInTheFrameAfterIt) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "manipulated"}), listener.events);

    Move(Shifted(xHandle, 10, 0));
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(1.0f, 0.0f, 0.0f),
                           csPositionTolerance));
    EXPECT_EQ((Words{"translateStart", "manipulated", "manipulated"}), listener.events);

    Move(Shifted(xHandle, 30, 0));
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(3.0f, 0.0f, 0.0f),
                           csPositionTolerance));

    Release(Shifted(xHandle, 30, 0));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "manipulated", "manipulated", "manipulated", "translateEnd",
                     "manipulated"}),
              listener.events);
}

// ---------------------------------------------------------------------------------------------
// Listeners

TEST_F(mxGizmoControllerTest, InstallingTheSameListenerTwiceReturnsTrueThenFalse) {
    RecordingListener other;
    EXPECT_TRUE(controller.install3DManipulatorMotionListener(&other));
    EXPECT_FALSE(controller.install3DManipulatorMotionListener(&other));
    EXPECT_FALSE(controller.install3DManipulatorMotionListener(&listener));
}

TEST_F(mxGizmoControllerTest, UninstallingAListenerReturnsTrueThenFalse) {
    RecordingListener other;
    EXPECT_FALSE(controller.uninstall3DManipulatorMotionListener(&other));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&other));
    EXPECT_TRUE(controller.uninstall3DManipulatorMotionListener(&other));
    EXPECT_FALSE(controller.uninstall3DManipulatorMotionListener(&other));
}

TEST_F(mxGizmoControllerTest, ListenersAreCalledInInstallOrderAndUninstallKeepsIt) {
    PlaceAtOrigin();
    ASSERT_TRUE(controller.uninstall3DManipulatorMotionListener(&listener));
    Words journal;
    RecordingListener a("a", journal);
    RecordingListener b("b", journal);
    RecordingListener c("c", journal);
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&a));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&b));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&c));

    DragXHandle(*gizmo, 10);
    EXPECT_EQ((Words{"a translateStart", "b translateStart", "c translateStart", "a translateEnd",
                     "b translateEnd", "c translateEnd", "a manipulated", "b manipulated",
                     "c manipulated"}),
              journal);

    journal.clear();
    ASSERT_TRUE(controller.uninstall3DManipulatorMotionListener(&a));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&a));
    ASSERT_TRUE(controller.uninstall3DManipulatorMotionListener(&b));
    DragXHandle(*gizmo, 10);
    EXPECT_EQ((Words{"c translateStart", "a translateStart", "c translateEnd", "a translateEnd",
                     "c manipulated", "a manipulated"}),
              journal);
    EXPECT_EQ(3u, b.events.size());
}

TEST_F(mxGizmoControllerTest, NullListenerCanBeInstalledAndUninstalledOnce) {
    EXPECT_TRUE(controller.install3DManipulatorMotionListener(nullptr));
    EXPECT_FALSE(controller.install3DManipulatorMotionListener(nullptr));
    EXPECT_TRUE(controller.uninstall3DManipulatorMotionListener(nullptr));
    EXPECT_FALSE(controller.uninstall3DManipulatorMotionListener(nullptr));
}

TEST_F(mxGizmoControllerTest, WholeGestureRunsPastANullListener) {
    PlaceAtOrigin();
    ASSERT_TRUE(controller.uninstall3DManipulatorMotionListener(&listener));
    Words journal;
    RecordingListener a("a", journal);
    RecordingListener b("b", journal);
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&a));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(nullptr));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&b));

    DragXHandle(*gizmo, 20);
    EXPECT_EQ((Words{"a translateStart", "b translateStart", "a translateEnd", "b translateEnd",
                     "a manipulated", "b manipulated"}),
              journal);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// Dispatch by mode

TEST_F(mxGizmoControllerTest, TranslateGestureGoesToTheTranslateController) {
    PlaceAtOrigin();
    DragXHandle(*gizmo, 20);
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, RotateGestureGoesToTheRotateController) {
    PlaceAtOrigin(mxGizmoNode::GIZMO_ROTATE);

    // From (0.8, 0.6) to (-0.6, 0.8) on the circle about Z, which faces the eye: a quarter
    // turn counter-clockwise.
    ASSERT_TRUE(Press(PixelOver(*gizmo, csZCircle)));
    Move(PixelOver(*gizmo, Vec3(-0.6f, 0.8f, 0.0f)));
    Release(PixelOver(*gizmo, Vec3(-0.6f, 0.8f, 0.0f)));
    engine.updateFrame();

    EXPECT_EQ((Words{"rotateStart", "rotateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(MatrixNear(object->getWorldTransform().GetRotate(),
                           Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(90.0))),
                           csRotationTolerance));
}

TEST_F(mxGizmoControllerTest, ScaleGestureGoesToTheScaleController) {
    PlaceAtOrigin(mxGizmoNode::GIZMO_SCALE);

    // The scale handles are picked like the translate ones, and a press announces both starts.
    DragXHandle(*gizmo, 20);
    EXPECT_EQ((Words{"translateStart", "scaleStart", "scaleEnd", "manipulated"}), listener.events);
    EXPECT_GT(object->getWorldTransform().GetFullMatrix()(0, 0), 1.0f);
    EXPECT_TRUE(
        VectorNear(object->getWorldTransform().GetTranslate(), Vec3::ZERO, csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// Picked axis

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveTheYHandleInTranslateMode) {
    PlaceBelowTurnedParent(mxGizmoNode::GIZMO_TRANSLATE);
    CheckYHandle();
}

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveTheYCircleInRotateMode) {
    PlaceBelowTurnedParent(mxGizmoNode::GIZMO_ROTATE);
    CheckYHandle();
}

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveTheYHandleInScaleMode) {
    PlaceBelowTurnedParent(mxGizmoNode::GIZMO_SCALE);
    CheckYHandle();
}

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveNothingBeforeAnyHover) {
    PlaceBelowTurnedParent(mxGizmoNode::GIZMO_TRANSLATE);
    for (GizmoMode mode :
         {mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE, mxGizmoNode::GIZMO_SCALE}) {
        SCOPED_TRACE(static_cast<int>(mode));
        gizmo->setMode(mode);
        ExpectNothingPicked(gizmo);
    }
}

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveNothingAfterHoveringAway) {
    PlaceBelowTurnedParent(mxGizmoNode::GIZMO_TRANSLATE);
    const WindowPixel handle = PixelOver(*gizmo, csYHandle);
    ASSERT_TRUE(Press(handle));
    Release(handle);
    Move(csNowhere);
    engine.updateFrame();
    ExpectNothingPicked(gizmo);
}

TEST_F(mxGizmoControllerTest, PickedAxisAccessorsGiveNothingForAGizmoWithoutModeOrNull) {
    MakeTurnedParent();
    mxGizmoNode* held = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    mxGizmoNode* idle = AddGizmo(mxGizmoNode::GIZMO_NONE, {object});
    engine.updateFrame();
    // The translate controller holds the Y axis of the first gizmo, button down.
    ASSERT_TRUE(Press(PixelOver(*held, csYHandle)));
    engine.updateFrame();
    ASSERT_EQ(1, controller.getPickedAxeIndex(held));
    ASSERT_NE(Vec3::ZERO, controller.getPickedWorldAxe(held));

    for (const mxGizmoNode* asked :
         {static_cast<const mxGizmoNode*>(idle), static_cast<const mxGizmoNode*>(nullptr)}) {
        SCOPED_TRACE(asked ? "GIZMO_NONE" : "null");
        ExpectNothingPicked(asked);
    }
}

// ---------------------------------------------------------------------------------------------
// Event handlers

TEST_F(mxGizmoControllerTest, PressOnNothingMakesTheMovesDoNothingAndTheReleaseHover) {
    PlaceAtOrigin();
    ASSERT_FALSE(Press(csNowhere));
    Move(xHandle);
    Move(Shifted(xHandle, 20, 0));
    engine.updateFrame();
    // A button is down: the moves do not even hover.
    EXPECT_TRUE(ShowsHover(*gizmo, -1));
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), objectAtStart));

    Release(xHandle);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 0));
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(listener.events.empty());
}

TEST_F(mxGizmoControllerTest, MovesWithoutAButtonHighlightTheAxisUnderTheMouse) {
    PlaceAtOrigin();
    Move(xHandle);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 0));

    Move(PixelOver(*gizmo, csYHandle));
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 1));

    Move(csNowhere);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, -1));

    // Hovering touches no gizmo: nobody hears anything.
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
}

TEST_F(mxGizmoControllerTest, ReleaseOnTheHandleLeavesItHighlighted) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    Release(xHandle);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 0));
    EXPECT_EQ(0, controller.getPickedAxeIndex(gizmo));
}

TEST_F(mxGizmoControllerTest, ReleaseAwayFromTheHandlesPutsTheNormalColoursBack) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    Move(xHandle);
    Release(csNowhere);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, -1));
}

TEST_F(mxGizmoControllerTest, ReleaseHoversAtTheReleasePosition) {
    PlaceAtOrigin();
    // Pressed on X, let go over the Y handle: the drag ends and Y is the axis under the mouse.
    ASSERT_TRUE(Press(xHandle));
    Release(PixelOver(*gizmo, csYHandle));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(ShowsHover(*gizmo, 1));
    EXPECT_EQ(1, controller.getPickedAxeIndex(gizmo));
}

TEST_F(mxGizmoControllerTest, TranslateDragMovesTheCustomTranslationByTheCentresShift) {
    PlaceCustom();
    ASSERT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(2.0f, 1.0f, 0.0f),
                           csPositionTolerance));
    ASSERT_TRUE(Press(xHandle));
    engine.updateFrame();

    const Vec3 centreBefore = gizmo->getCenterReferences();
    Move(Shifted(xHandle, 20, 0));
    engine.updateFrame();
    const Vec3 centreAfter = gizmo->getCenterReferences();
    ASSERT_TRUE(VectorNear(centreAfter, Vec3(-1.0f, 0.0f, 0.0f), csPositionTolerance));
    EXPECT_TRUE(VectorNear(controller.getCustomTransformation().GetTranslate(),
                           Vec3(2.0f, 1.0f, 0.0f) + (centreAfter - centreBefore), 1e-6));
    EXPECT_TRUE(MatrixNear(controller.getCustomTransformation().GetRotate(), Mat3::IDENTITY, 0.0));
    // The gizmo went along with its custom frame.
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(),
                           controller.getCustomTransformation().GetTranslate(), 1e-6));
}

TEST_F(mxGizmoControllerTest, ReleaseAwayFromTheLastMoveLeavesTheCustomTranslation) {
    PlaceCustom();
    ASSERT_TRUE(Press(xHandle));
    Move(Shifted(xHandle, 20, 0));
    engine.updateFrame();
    const Vec3 afterMove = controller.getCustomTransformation().GetTranslate();
    ASSERT_TRUE(VectorNear(afterMove, Vec3(4.0f, 1.0f, 0.0f), csPositionTolerance));

    // The release's last move carries the object 1 unit further; only moves carry the custom
    // translation along.
    Release(Shifted(xHandle, 30, 0));
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(0.0f, 0.0f, 0.0f),
                           csPositionTolerance));
    EXPECT_EQ(afterMove, controller.getCustomTransformation().GetTranslate());
}

TEST_F(mxGizmoControllerTest, TranslateDragMovesTheCustomTranslationInAnyOrientation) {
    PlaceAtOrigin();
    Transform custom;
    custom.SetTranslate(Vec3(5.0f, 5.0f, 5.0f));
    controller.setCustomTransformation(custom);
    ASSERT_TRUE(Press(xHandle));
    Move(Shifted(xHandle, 20, 0));
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(controller.getCustomTransformation().GetTranslate(),
                           Vec3(5.0f, 5.0f, 5.0f) + object->getWorldTransform().GetTranslate(),
                           1e-6));
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// Collecting the gizmos

TEST_F(mxGizmoControllerTest, GizmosAreCollectedDepthFirstInChildIndexOrder) {
    object = AddObject(Vec3::ZERO);
    // scene: [n0: [g0: [lines..., g1], n1: [g2], g3], g4]
    mxNode* n0 = AddNode();
    mxGizmoNode* g0 = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, n0);
    mxGizmoNode* g1 = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, g0);
    mxNode* n1 = AddNode(n0);
    mxGizmoNode* g2 = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, n1);
    mxGizmoNode* g3 = AddGizmo(mxGizmoNode::GIZMO_NONE, {object}, n0);
    mxGizmoNode* g4 = AddGizmo(mxGizmoNode::GIZMO_ROTATE, {object});
    EXPECT_TRUE(controller.get3DManipulators().empty());

    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{g0, g1, g2, g3, g4}), controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, GizmoAttachedAfterAFrameIsCollectedByTheNextFrame) {
    object = AddObject(Vec3::ZERO);
    mxNode* node = AddNode();
    mxGizmoNode* first = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, node);
    engine.updateFrame();
    ASSERT_EQ(std::vector<mxGizmoNode*>{first}, controller.get3DManipulators());

    mxGizmoNode* second = new mxGizmoNode;
    engine.getScene()->attachChild(second);
    ASSERT_NE(0u, engine.getScene()->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED);
    EXPECT_EQ(std::vector<mxGizmoNode*>{first}, controller.get3DManipulators());
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{first, second}), controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, ListIsKeptUntilTheRootReportsAChangeBelowIt) {
    object = AddObject(Vec3::ZERO);
    mxGizmoNode* first = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    mxGizmoNode* second = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    ASSERT_EQ((std::vector<mxGizmoNode*>{first, second}), controller.get3DManipulators());

    // Excluding a gizmo is no change of the subtree: it stays in the list.
    first->setStateFlags(first->getStateFlags() | mxSpatial::STATE_EXCLUDED);
    engine.updateFrame();
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{first, second}), controller.get3DManipulators());

    // Nor is a flag of the root cleared by hand before the frame, even with a new gizmo.
    mxGizmoNode* third = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.getScene()->setUpdateFlags(
        engine.getScene()->getUpdateFlags() &
        ~static_cast<unsigned int>(mxSpatial::UPDATE_SUBTREE_CHANGED));
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{first, second}), controller.get3DManipulators());

    AddNode();
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{second, third}), controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, ExcludedSubtreeIsNotSearched) {
    object = AddObject(Vec3::ZERO);
    mxNode* excluded = AddNode();
    excluded->setStateFlags(excluded->getStateFlags() | mxSpatial::STATE_EXCLUDED);
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, excluded);
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, AddNode(excluded));
    mxGizmoNode* found = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{found}, controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, ExcludedGizmoIsNotCollected) {
    object = AddObject(Vec3::ZERO);
    mxGizmoNode* excluded = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    excluded->setStateFlags(excluded->getStateFlags() | mxSpatial::STATE_EXCLUDED);
    mxGizmoNode* found = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{found}, controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, RootNodeLimitsTheSearchToItsSubtree) {
    object = AddObject(Vec3::ZERO);
    mxNode* root = AddNode();
    mxNode* outside = AddNode();
    mxGizmoNode* inRoot = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, root);
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, outside);
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    controller.setRootNode(root);
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{inRoot}, controller.get3DManipulators());

    // A gizmo attached outside the root is not found, even when the root changes.
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, outside);
    engine.updateFrame();
    mxGizmoNode* second = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, root);
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{inRoot, second}), controller.get3DManipulators());

    // Null: the whole scene again.
    controller.setRootNode(nullptr);
    AddNode();
    engine.updateFrame();
    EXPECT_EQ(5u, controller.get3DManipulators().size());
}

TEST_F(mxGizmoControllerTest, GizmosOfARootOutsideTheSceneAreDriven) {
    object = AddObject(Vec3::ZERO);
    mxPointer<mxNode> root = new mxNode;
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object}, root.get());
    controller.setRootNode(root.get());
    engine.updateFrame();
    ASSERT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
    // The engine updates only its own scene.
    root->UpdateGS();

    DragXHandle(*gizmo, 20);
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// Clearing

TEST_F(mxGizmoControllerTest, ClearControllerForgetsTheGizmosUntilTheNextChange) {
    PlaceAtOrigin();
    ASSERT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
    engine.resetControllers();
    EXPECT_TRUE(controller.get3DManipulators().empty());
    engine.updateFrame();
    engine.updateFrame();
    EXPECT_TRUE(controller.get3DManipulators().empty());
    EXPECT_FALSE(Press(xHandle));

    AddNode();
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, ClearControllerKeepsTheFlagOfThePressOnAGizmo) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    engine.resetControllers();
    EXPECT_TRUE(Move(xHandle));
    EXPECT_TRUE(Release(xHandle));
    EXPECT_FALSE(Release(xHandle));
}

TEST_F(mxGizmoControllerTest, ClearControllerDropsTheRecordedEventsAndTheDrag) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    engine.updateFrame();
    ASSERT_EQ((Words{"translateStart", "manipulated"}), listener.events);
    const Transform before = object->getWorldTransform();

    Move(Shifted(xHandle, 20, 0));
    engine.resetControllers();
    // Collected again in the next frame, with nothing in progress: the move after the clearing
    // only hovers, the release ends no drag.
    AddNode();
    Move(Shifted(xHandle, 30, 0));
    Release(Shifted(xHandle, 30, 0));
    engine.updateFrame();
    ASSERT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), before));
    EXPECT_EQ((Words{"translateStart", "manipulated"}), listener.events);
}

TEST_F(mxGizmoControllerTest, ClearControllerEventsDropsTheRecordedEvents) {
    PlaceAtOrigin();
    ASSERT_TRUE(RecordDrag(xHandle, 20));
    controller.clearControllerEvents();
    engine.updateFrame();
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(ShowsHover(*gizmo, -1));
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, ClearControllerEventsEndsTheDragForTheFollowingMoves) {
    PlaceAtOrigin();
    ASSERT_TRUE(Press(xHandle));
    engine.updateFrame();
    controller.clearControllerEvents();

    // No longer dragging: the move only hovers (still over the X axis).
    Move(Shifted(xHandle, 20, 0));
    engine.updateFrame();
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_EQ((Words{"translateStart", "manipulated"}), listener.events);
    EXPECT_TRUE(ShowsHover(*gizmo, 0));
}

// ---------------------------------------------------------------------------------------------
// Enabled flag

TEST_F(mxGizmoControllerTest, DisabledControllerKeepsTheEventsUntilEnabledAgain) {
    PlaceAtOrigin();
    controller.setEnabled(false);
    EXPECT_FALSE(controller.isEnabled());
    // The hit test does not wait.
    EXPECT_TRUE(RecordDrag(xHandle, 20));
    for (int frame = 0; frame < 3; ++frame) {
        engine.updateFrame();
    }
    EXPECT_TRUE(listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(ShowsHover(*gizmo, -1));

    controller.setEnabled(true);
    EXPECT_TRUE(controller.isEnabled());
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, DisabledControllerStillCollectsAndPlacesTheGizmos) {
    controller.setEnabled(false);
    object = AddObject(Vec3(1.0f, 2.0f, 0.0f));
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(1.0f, 2.0f, 0.0f),
                           csPositionTolerance));
    // 60 of the 200 pixels at depth 10, where the view is 20 units high.
    EXPECT_NEAR(6.0f, gizmo->getWorldTransform().GetUniformScale(), 1e-5);

    object->editLocalTransform(true).SetTranslate(Vec3(-1.0f, 0.0f, 0.0f));
    object->UpdateGS();
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(-1.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

// ---------------------------------------------------------------------------------------------
// Gizmos without a mode

TEST_F(mxGizmoControllerTest, GizmoWithoutModeKeepsItsFrameBitForBit) {
    mxGizmoNode* idle = AddGizmo(mxGizmoNode::GIZMO_NONE, {AddObject(Vec3(2.0f, 0.0f, 0.0f))});
    mxGizmoNode* placed =
        AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-2.0f, 0.0f, 0.0f))});
    Transform& local = idle->editLocalTransform(true);
    local.SetRotate(Rotation(1.0f, 1.0f, 0.0f, 0.5f));
    local.SetUniformScale(3.0f);
    local.SetTranslate(Vec3(5.0f, -4.0f, 1.0f));
    const Transform kept = idle->getLocalTransform();

    engine.updateFrame();
    engine.updateFrame();
    ASSERT_EQ((std::vector<mxGizmoNode*>{idle, placed}), controller.get3DManipulators());
    EXPECT_TRUE(BitwiseEqual(idle->getLocalTransform(), kept));
    EXPECT_TRUE(VectorNear(placed->getWorldTransform().GetTranslate(), Vec3(-2.0f, 0.0f, 0.0f),
                           csPositionTolerance));

    // Given a mode, it is placed like any other.
    idle->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(idle->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, HitTestAndHoverPassOverAGizmoWithoutMode) {
    mxSpatial* idleObject = AddObject(Vec3::ZERO);
    const Transform idleStart = idleObject->getWorldTransform();
    object = AddObject(Vec3::ZERO);
    mxGizmoNode* idle = AddGizmo(mxGizmoNode::GIZMO_NONE, {idleObject});
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.updateFrame();
    // The idle gizmo stands exactly where the other one is.
    idle->editLocalTransform(true) = gizmo->getLocalTransform();
    engine.updateFrame();
    ASSERT_EQ((std::vector<mxGizmoNode*>{idle, gizmo}), controller.get3DManipulators());

    const WindowPixel handle = PixelOver(*gizmo, csXHandle);
    Move(handle);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*gizmo, 0));

    EXPECT_TRUE(RecordDrag(handle, 20));
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, listener.manipulated);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
    EXPECT_TRUE(BitwiseEqual(idleObject->getWorldTransform(), idleStart));
}

// ---------------------------------------------------------------------------------------------
// Orientation references

TEST_F(mxGizmoControllerTest, LocalTurnsTheGizmoWithTheParentOfItsOnlyObject) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    engine.updateFrame();
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(),
                           parent->getWorldTransform().GetRotate(), csRotationTolerance));
    EXPECT_TRUE(MatrixNear(gizmo->getLocalTransform().GetRotate(), turn, csRotationTolerance));
    // The parent's scale is not taken: 60 of 200 pixels at depth 10 are 6 units.
    EXPECT_NEAR(6.0f, gizmo->getWorldTransform().GetUniformScale(), 1e-5);
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(),
                           Vec3(3.0f + 2.0f * std::cos(0.5235988f), 2.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, LocalDoesNotTurnAGizmoOfTwoObjects) {
    MakeLocalParent();
    // The first gizmo leaves a turned frame behind; the second must not inherit it.
    mxGizmoNode* turned = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    mxSpatial* other = AddObject(Vec3(0.0f, 1.0f, 0.0f), parent.get());
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child, other});
    engine.updateFrame();
    ASSERT_TRUE(MatrixNear(turned->getWorldTransform().GetRotate(), turn, csRotationTolerance));
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 1e-7));
}

TEST_F(mxGizmoControllerTest, LocalDoesNotTurnAGizmoOfAnObjectWithoutParent) {
    MakeLocalParent();
    mxGizmoNode* turned = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    mxGizmoNode* gizmo =
        AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-3.0f, 0.0f, 0.0f))});
    engine.updateFrame();
    ASSERT_TRUE(MatrixNear(turned->getWorldTransform().GetRotate(), turn, csRotationTolerance));
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 1e-7));
}

TEST_F(mxGizmoControllerTest, WorldDoesNotTurnTheGizmo) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    controller.setOrientationReference(mxGizmoController::World);
    engine.updateFrame();
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 1e-7));
}

// The eye at (8, 0, 6) looking at the origin with +Y up: right is (0.6, 0, -0.8).
TEST_F(mxGizmoControllerTest, ViewTurnsTheFirstAxisToTheCameraRight) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    ASSERT_TRUE(camera->lookAt(Vec3(8.0f, 0.0f, 6.0f), Vec3::ZERO, Vec3(0.0f, 1.0f, 0.0f)));
    ASSERT_TRUE(VectorNear(camera->getRVector(), Vec3(0.6f, 0.0f, -0.8f), 1e-6));
    controller.setOrientationReference(mxGizmoController::View);
    engine.updateFrame();

    const Mat3& rotation = gizmo->getWorldTransform().GetRotate();
    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 0), camera->getRVector(), 1e-6));
    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 1), camera->getDVector(), 1e-6));
    EXPECT_TRUE(VectorNear(ColumnOf(rotation, 2), camera->getUVector(), 1e-6));
}

TEST_F(mxGizmoControllerTest, CustomAndCustomAltPlaceTheGizmoAtTheCustomTransformation) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    const Transform custom = TurnedCustom();
    controller.setCustomTransformation(custom);
    EXPECT_TRUE(BitwiseEqual(controller.getCustomTransformation(), custom));

    for (Orientation orientation : {mxGizmoController::Custom, mxGizmoController::CustomAlt}) {
        SCOPED_TRACE(static_cast<int>(orientation));
        controller.setOrientationReference(mxGizmoController::World);
        engine.updateFrame();
        ASSERT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 1e-7));

        controller.setOrientationReference(orientation);
        engine.updateFrame();
        EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), custom.GetRotate(), 1e-6));
        EXPECT_TRUE(
            VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(2.0f, -1.0f, 1.0f), 1e-6));
        EXPECT_TRUE(VectorNear(controller.getCurrentTransformation().GetTranslate(),
                               Vec3(2.0f, -1.0f, 1.0f), 0.0));
    }
}

TEST_F(mxGizmoControllerTest, UnknownOrientationKeepsTheRotationOfTheLastFrame) {
    MakeLocalParent();
    mxGizmoNode* first = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    mxGizmoNode* second =
        AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-3.0f, 0.0f, 0.0f))});
    const Transform custom = TurnedCustom();
    controller.setCustomTransformation(custom);
    controller.setOrientationReference(mxGizmoController::Custom);
    engine.updateFrame();

    controller.setOrientationReference(static_cast<Orientation>(7));
    EXPECT_EQ(7, static_cast<int>(controller.getOrientationReference()));
    engine.updateFrame();
    for (const mxGizmoNode* placed : {first, second}) {
        EXPECT_TRUE(MatrixNear(placed->getWorldTransform().GetRotate(), custom.GetRotate(), 1e-6));
    }
    // Each at its own objects' centre.
    EXPECT_TRUE(VectorNear(first->getWorldTransform().GetTranslate(),
                           Vec3(3.0f + 2.0f * std::cos(0.5235988f), 2.0f, 0.0f),
                           csPositionTolerance));
    EXPECT_TRUE(VectorNear(second->getWorldTransform().GetTranslate(), Vec3(-3.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, CustomTranslateWithWorldPlacesTheGizmoAtTheCustomTranslation) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    const Transform custom = TurnedCustom();
    controller.setCustomTransformation(custom);
    controller.setOrientationReference(mxGizmoController::World);
    controller.useCustomTranslate(true);
    engine.updateFrame();
    EXPECT_TRUE(
        VectorNear(gizmo->getWorldTransform().GetTranslate(), Vec3(2.0f, -1.0f, 1.0f), 1e-6));
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), Mat3::IDENTITY, 1e-7));

    controller.useCustomTranslate(false);
    engine.updateFrame();
    EXPECT_TRUE(VectorNear(gizmo->getWorldTransform().GetTranslate(),
                           Vec3(3.0f + 2.0f * std::cos(0.5235988f), 2.0f, 0.0f),
                           csPositionTolerance));
}

TEST_F(mxGizmoControllerTest, CurrentTransformationIsTheFrameOfTheLastGizmoPlaced) {
    MakeLocalParent();
    AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {AddObject(Vec3(-3.0f, 0.0f, 0.0f))});
    mxGizmoNode* last = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    // Not placed, so it does not count.
    AddGizmo(mxGizmoNode::GIZMO_NONE, {AddObject(Vec3(9.0f, 9.0f, 9.0f))});
    EXPECT_TRUE(BitwiseEqual(controller.getCurrentTransformation(), Transform()));
    engine.updateFrame();

    const Transform& current = controller.getCurrentTransformation();
    EXPECT_EQ(last->getCenterReferences(), current.GetTranslate());
    EXPECT_TRUE(MatrixNear(current.GetRotate(), turn, csRotationTolerance));
    EXPECT_TRUE(MatrixNear(current.GetRotate(), last->getLocalTransform().GetRotate(), 1e-6));
}

TEST_F(mxGizmoControllerTest, OrientationReferenceTakesEffectAtTheNextFrame) {
    MakeLocalParent();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {child});
    controller.setOrientationReference(mxGizmoController::World);
    engine.updateFrame();
    const Transform placed = gizmo->getLocalTransform();

    controller.setOrientationReference(mxGizmoController::Local);
    EXPECT_EQ(mxGizmoController::Local, controller.getOrientationReference());
    EXPECT_TRUE(BitwiseEqual(gizmo->getLocalTransform(), placed));
    engine.updateFrame();
    EXPECT_TRUE(MatrixNear(gizmo->getWorldTransform().GetRotate(), turn, csRotationTolerance));
}

// ---------------------------------------------------------------------------------------------
// Several gizmos

TEST_F(mxGizmoControllerTest, OverlappingGizmosLeaveHoverAndPressToTheFirstCollected) {
    mxSpatial* firstObject = AddObject(Vec3::ZERO);
    mxSpatial* secondObject = AddObject(Vec3::ZERO);
    const Transform secondStart = secondObject->getWorldTransform();
    mxGizmoNode* first = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {firstObject});
    mxGizmoNode* second = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {secondObject});
    engine.updateFrame();
    const WindowPixel handle = PixelOver(*first, csXHandle);
    ASSERT_EQ(handle.x, PixelOver(*second, csXHandle).x);

    Move(handle);
    engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*first, 0));
    EXPECT_TRUE(ShowsHover(*second, -1));

    ASSERT_TRUE(RecordDrag(handle, 20));
    engine.updateFrame();
    EXPECT_EQ(std::vector<mxGizmoNode*>{first}, listener.manipulated);
    EXPECT_TRUE(VectorNear(firstObject->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
    EXPECT_TRUE(BitwiseEqual(secondObject->getWorldTransform(), secondStart));
}

TEST_F(mxGizmoControllerTest, TouchedGizmosAreAnnouncedInAscendingAddressOrder) {
    PlaceTwo();
    // The gizmo at the higher address is dragged first, so that the order of the touches is
    // not the order of the announcements.
    const std::less<mxGizmoNode*> before;
    mxGizmoNode* low = before(upper, lower) ? upper : lower;
    mxGizmoNode* high = before(upper, lower) ? lower : upper;
    for (mxGizmoNode* dragged : {high, low}) {
        const WindowPixel handle = PixelOver(*dragged, csXHandle);
        ASSERT_TRUE(Press(handle));
        Release(handle);
    }
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "translateStart", "translateEnd",
                     "manipulated", "manipulated"}),
              listener.events);
    EXPECT_EQ((std::vector<mxGizmoNode*>{low, high}), listener.manipulated);
}

TEST_F(mxGizmoControllerTest, ReleaseOverAnotherGizmoEndsTheFirstDragAndHoversTheOther) {
    PlaceTwo();
    ASSERT_TRUE(Press(PixelOver(*upper, csXHandle)));
    Release(PixelOver(*lower, csXHandle));
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), listener.events);
    EXPECT_EQ(std::vector<mxGizmoNode*>{upper}, listener.manipulated);
    EXPECT_TRUE(ShowsHover(*upper, -1));
    EXPECT_TRUE(ShowsHover(*lower, 0));

    // The second gizmo is then pressed like any other.
    ASSERT_TRUE(Press(PixelOver(*lower, csXHandle)));
    Release(PixelOver(*lower, csXHandle));
    engine.updateFrame();
    EXPECT_EQ((std::vector<mxGizmoNode*>{upper, lower}), listener.manipulated);
}

// ---------------------------------------------------------------------------------------------
// Degenerate views

TEST_F(mxGizmoControllerTest, ZeroSizedViewportNeitherCrashesNorMovesAnything) {
    object = AddObject(Vec3::ZERO);
    objectAtStart = object->getWorldTransform();
    gizmo = AddGizmo(mxGizmoNode::GIZMO_TRANSLATE, {object});
    engine.setViewportSize(0, 0);
    engine.updateFrame();

    // Where the X handle stands in the standard view.
    controller.setMousePressed(camera.get(), 136, 100, 0, 0);
    Move(WindowPixel{156, 100});
    Release(WindowPixel{156, 100});
    engine.updateFrame();
    engine.updateFrame();
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
    EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), objectAtStart));
    EXPECT_TRUE(listener.events.empty());
    EXPECT_EQ(std::vector<mxGizmoNode*>{gizmo}, controller.get3DManipulators());
}

TEST_F(mxGizmoControllerTest, PressHitTestedInAZeroSizedViewIsReplayedInTheEnginesView) {
    PlaceAtOrigin();
    // The size only serves the answer at once; the frame replays the press in its own
    // 200 x 200 view, where the pixel lies on the X handle.
    controller.setMousePressed(camera.get(), xHandle.x, xHandle.y, 0, 0);
    engine.updateFrame();
    EXPECT_EQ((Words{"translateStart", "manipulated"}), listener.events);
    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), objectAtStart));
}

// ---------------------------------------------------------------------------------------------
// Destruction

TEST_F(mxGizmoControllerTest, DeletingTheControllerLeavesGizmosAndListenersUsable) {
    PlaceAtOrigin();
    engine.detachController(&controller);
    RecordingListener kept;
    auto* doomed = new mxGizmoController;
    ASSERT_TRUE(engine.attachController(doomed));
    ASSERT_TRUE(doomed->install3DManipulatorMotionListener(&kept));
    AddNode();
    engine.updateFrame();
    ASSERT_EQ(std::vector<mxGizmoNode*>{gizmo}, doomed->get3DManipulators());
    const WindowPixel start = PixelOver(*gizmo, csXHandle);
    ASSERT_TRUE(doomed->setMousePressed(camera.get(), start.x, start.y, csViewWidth, csViewHeight));
    doomed->setMouseReleased(start.x, start.y);
    engine.updateFrame();
    ASSERT_EQ((Words{"translateStart", "translateEnd", "manipulated"}), kept.events);

    engine.detachController(doomed);
    delete doomed;

    // Both still work, and another controller drives them.
    gizmo->highlight(2);
    EXPECT_TRUE(ShowsHover(*gizmo, 2));
    kept.onGizmoManipulated(gizmo);
    EXPECT_EQ(4u, kept.events.size());

    ASSERT_TRUE(engine.attachController(&controller));
    ASSERT_TRUE(controller.install3DManipulatorMotionListener(&kept));
    DragXHandle(*gizmo, 20);
    EXPECT_EQ((Words{"translateStart", "translateEnd", "manipulated", "manipulated",
                     "translateStart", "translateEnd", "manipulated"}),
              kept.events);
    EXPECT_TRUE(VectorNear(object->getWorldTransform().GetTranslate(), Vec3(2.0f, 0.0f, 0.0f),
                           csPositionTolerance));
}

} // namespace
