// Tests for mx::mxGizmoControllerTranslate: hovering the arrows in pixels (nearest axis, ties,
// the tolerance bound, the mode's axis mask, highlighting), the side-effect-free hit test, the
// press (plane choice, press point, start transformation, listeners), the projection of the
// mouse onto the drag axis (behind-the-eye hits, signed distance, near/far restriction), the
// moves, the release, the small getters and the copy constructor.
//
// Everything happens in the standard view: eye at (0, 0, 10) looking down -Z, 90 degrees over
// 200 x 200 pixels, so at depth 10 one world unit covers 10 pixels and the 60-pixel gizmo is 6
// units long. Mouse positions are chosen as multiples of 1/32 so that pixel positions and the
// pick rays' slopes are exact binary fractions.

#include "controller/mxGizmoControllerTranslate.h"
#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using mx::mx3DManipulatorMotionListener;
using mx::mxCamera;
using mx::mxGizmoControllerTranslate;
using mx::mxGizmoNode;
using mx::mxLine;
using mx::mxMesh;
using mx::mxPointer;
using mx::test::BitwiseEqual;
using mx::test::ColorsOf;
using mx::test::csPickTolerance;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::HoveredColor;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::MapsNear;
using mx::test::MarkCounter;
using mx::test::MatrixNear;
using mx::test::MouseAt;
using mx::test::NormalColor;
using mx::test::PlacedGizmo;
using mx::test::RayHit;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::SameBits;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mx::mxGenericTransformation<float>;
using Listeners = std::vector<mx3DManipulatorMotionListener*>;

// World positions in these tests stay within a few tens of units and come out of float ray
// arithmetic: a ten-thousandth of a unit is a few hundred ulps at that size, far below any
// mistake a test is after.
constexpr float csWorldTolerance = 1e-4f;
// Dragging towards the horizon reaches the far plane 100 units away: same relative precision.
constexpr float csFarTolerance = 2e-3f;
// Unit directions.
constexpr float csDirectionTolerance = 1e-6f;

// The controller with its protected operations and fields opened to the tests, as the scale
// controller reaches them.
class ExposedTranslate : public mxGizmoControllerTranslate {
public:
    using mxGizmoControllerTranslate::getCurrentWorldPointPosition;
    using mxGizmoControllerTranslate::getProjectedPoint;
    using mxGizmoControllerTranslate::getResultingScale;
    using mxGizmoControllerTranslate::getWorldOrientation;
    using mxGizmoControllerTranslate::gizmo;
    using mxGizmoControllerTranslate::mxGizmoControllerTranslate;
    using mxGizmoControllerTranslate::pickedAxe;
    using mxGizmoControllerTranslate::pressPoint;
    using mxGizmoControllerTranslate::resultTransformation;
    using mxGizmoControllerTranslate::startTransformation;
    using mxGizmoControllerTranslate::updateTranslateHover;
    using mxGizmoControllerTranslate::useSecondPlane;
};

// The standard view seen from behind: same eye, looking down +Z instead (right is -X). Every
// point of the standard gizmos lies behind this eye.
mxPointer<mxCamera> MakeTurnedCamera() {
    mxPointer<mxCamera> camera = new mxCamera(true);
    camera->setFrame(Vec3(0.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, 1.0f), Vec3(0.0f, 1.0f, 0.0f),
                     Vec3(-1.0f, 0.0f, 0.0f));
    camera->setFrustum(90.0f, 1.0f, 1.0f, 100.0f);
    return camera;
}

// The foot of point on the line through origin along the unit vector axis.
Vec3 OntoAxis(const Vec3& origin, const Vec3& axis, const Vec3& point) {
    double s = 0.0;
    for (int i = 0; i < 3; ++i) {
        s += (double(point[i]) - origin[i]) * axis[i];
    }
    Vec3 foot(0.0f, 0.0f, 0.0f);
    for (int i = 0; i < 3; ++i) {
        foot[i] = static_cast<float>(origin[i] + s * axis[i]);
    }
    return foot;
}

// The normalised mouse position over the point fraction of the way along axis of the gizmo.
Vec2 MouseOnArrow(const mxCamera& camera, const mxGizmoNode& node, unsigned int axis,
                  float fraction) {
    return MouseAt(camera, node.getWorldTransform().ApplyForward(UnitAxis(axis) * fraction));
}

// Success when the translate sub-gizmo shows axis hovered and the others normal (axis -1:
// all normal), shaft and arrowhead alike.
::testing::AssertionResult TranslateHighlightIs(const mxGizmoNode& node, int axis) {
    const mx::mxGizmoNodeTranslate& translate = node.getTranslateGizmo();
    for (unsigned int i = 0; i < 3; ++i) {
        const Wm4::ColorRGBA expected = int(i) == axis ? HoveredColor(i) : NormalColor(i);
        if (translate.getAxis(i)->getColor() != expected ||
            translate.getArrowHead(i)->getColor() != expected) {
            return ::testing::AssertionFailure()
                   << "axis " << i << " is not in its " << (int(i) == axis ? "hovered" : "normal")
                   << " colour";
        }
    }
    return ::testing::AssertionSuccess();
}

// Success when both vectors hold the same bits.
::testing::AssertionResult SameVector(const Vec3& actual, const Vec3& expected) {
    if (SameBits(actual.X(), expected.X()) && SameBits(actual.Y(), expected.Y()) &&
        SameBits(actual.Z(), expected.Z())) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "(" << actual.X() << ", " << actual.Y() << ", " << actual.Z()
           << ") differs in its bits from (" << expected.X() << ", " << expected.Y() << ", "
           << expected.Z() << ")";
}

// The standard view with one reference object at position, a gizmo in mode framed around it
// with rotation, and a controller with a recording listener installed.
struct Scene {
    explicit Scene(const Vec3& position = Vec3(0.0f, 0.0f, 0.0f),
                   const Mat3& rotation = Mat3::IDENTITY,
                   mxGizmoNode::GizmoMode mode = mxGizmoNode::GIZMO_TRANSLATE)
        : object(MakeObject(position)), placed(mode, {object.get()}) {
        placed.place(*camera, rotation);
    }

    mxGizmoNode* node() const { return placed.node; }
    bool hover(const Vec2& mouse, float tolerance = csPickTolerance) {
        return controller.updateTranslateHover(node(), camera.get(), mouse, tolerance, csViewWidth,
                                               csViewHeight);
    }
    void press(const Vec2& mouse) { controller.setMousePressed(node(), camera.get(), mouse); }
    bool move(const Vec2& mouse) { return controller.setMousePos(node(), camera.get(), mouse); }
    void release(const Vec2& mouse) { controller.setMouseReleased(node(), camera.get(), mouse); }
    Vec3 objectPosition() const { return object->getWorldTransform().GetTranslate(); }

    mxPointer<mxCamera> camera = MakeStandardCamera();
    mxPointer<mxMesh> object;
    PlacedGizmo placed;
    RecordingListener recorder;
    Listeners listeners{&recorder};
    ExposedTranslate controller{listeners};
};

// The standard drag along X of a gizmo at the origin: the mouse 6.25 pixels above the X
// arrow at pixel (125, 106.25), whose ray (0.25, 0.0625, -1) meets z = 0 at (2.5, 0.625, 0).
const Vec2 csPressOnX(0.625f, 0.53125f);
const Vec3 csPressPointOnX(2.5f, 0.0f, 0.0f);
// Rays meeting z = 0 at (5, 1.25, 0) and (7.5, 0, 0): 2.5 and 5 units along X from the press.
const Vec2 csMoveToFive(0.75f, 0.5625f);
const Vec2 csMoveToSevenAndAHalf(0.875f, 0.5f);

// --- Hover -------------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, HoverOverTheXArrowPicksXAndHighlightsIt) {
    Scene scene;
    EXPECT_TRUE(scene.hover(csPressOnX));
    EXPECT_EQ(0, scene.controller.getPickedAxe());
    EXPECT_TRUE(TranslateHighlightIs(*scene.node(), 0));
}

TEST(mxGizmoControllerTranslateTest, HoverPicksTheNearestAxisNotTheLastWithinTolerance) {
    Scene scene;
    // Pixel (108, 105): 5 pixels above the X arrow, 8 to the right of the Y arrow and about
    // 9.4 from the end-on Z arrow at the centre; all three lie within 10 pixels.
    EXPECT_TRUE(scene.hover(Vec2(0.54f, 0.525f)));
    EXPECT_EQ(0, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerTranslateTest, HoverMovingToAnotherArrowMovesTheHighlight) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    // Pixel (106.25, 125): beside the Y arrow.
    EXPECT_TRUE(scene.hover(Vec2(0.53125f, 0.625f)));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
    EXPECT_TRUE(TranslateHighlightIs(*scene.node(), 1));
}

TEST(mxGizmoControllerTranslateTest, HoverAwayFromEveryArrowDropsThePickAndRestoresColours) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    // Pixel (150, 150): 50 pixels from the X and Y arrows, 70 from the centre.
    EXPECT_FALSE(scene.hover(Vec2(0.75f, 0.75f)));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(TranslateHighlightIs(*scene.node(), -1));
}

TEST(mxGizmoControllerTranslateTest, HoverWithEmptyMaskFindsNothingResetsColoursAndReturnsFalse) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    // At the centre every arrow is 0 pixels away, yet none is enabled.
    EXPECT_FALSE(scene.controller.updateTranslateHover(scene.node(), scene.camera.get(),
                                                       Vec2(0.5f, 0.5f), 0u, csPickTolerance,
                                                       csViewWidth, csViewHeight));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(TranslateHighlightIs(*scene.node(), -1));
}

TEST(mxGizmoControllerTranslateTest, HoverFindingNothingResetsOnlyTheCurrentModesSubGizmo) {
    Scene scene;
    mxGizmoNode& node = *scene.node();
    node.highlight(0);
    node.setMode(mxGizmoNode::GIZMO_ROTATE);
    node.highlight(1);
    ASSERT_EQ(HoveredColor(1), node.getRotateGizmo().getCircle(1)->getColor());

    EXPECT_FALSE(scene.controller.updateTranslateHover(&node, scene.camera.get(), Vec2(0.5f, 0.5f),
                                                       0u, csPickTolerance, csViewWidth,
                                                       csViewHeight));
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(NormalColor(axis), node.getRotateGizmo().getCircle(axis)->getColor()) << axis;
    }
    // The translate sub-gizmo is not the current one: it keeps its hovered X.
    EXPECT_TRUE(TranslateHighlightIs(node, 0));
}

TEST(mxGizmoControllerTranslateTest, HoverFindingNothingWithoutModeRecoloursNothing) {
    Scene scene;
    mxGizmoNode& node = *scene.node();
    node.highlight(2);
    node.setMode(mxGizmoNode::GIZMO_NONE);
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(node);
    MarkCounter counter(node);
    EXPECT_FALSE(scene.controller.updateTranslateHover(&node, scene.camera.get(), Vec2(0.5f, 0.5f),
                                                       0u, csPickTolerance, csViewWidth,
                                                       csViewHeight));
    EXPECT_EQ(before, ColorsOf(node));
    EXPECT_EQ(0u, counter.marks());
}

TEST(mxGizmoControllerTranslateTest, EquallyNearXAndYArrowsPickTheHigherIndex) {
    Scene scene;
    // Pixel (125, 125) on the diagonal: 25 pixels from the X and the Y arrow alike, about 35
    // from the end-on Z arrow at the centre.
    EXPECT_TRUE(scene.hover(Vec2(0.625f, 0.625f), 30.0f));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
    EXPECT_TRUE(TranslateHighlightIs(*scene.node(), 1));
}

TEST(mxGizmoControllerTranslateTest, AtTheCentreWhereEveryArrowStartsTheLastEnabledAxisWins) {
    Scene scene;
    const Vec2 centre(0.5f, 0.5f);
    struct Case {
        unsigned char mask;
        int picked;
    };
    for (const Case& c : {Case{0x1, 0}, Case{0x3, 1}, Case{0x5, 2}, Case{0x6, 2}, Case{0x7, 2}}) {
        EXPECT_TRUE(scene.controller.updateTranslateHover(scene.node(), scene.camera.get(), centre,
                                                          c.mask, csPickTolerance, csViewWidth,
                                                          csViewHeight))
            << int(c.mask);
        EXPECT_EQ(c.picked, scene.controller.getPickedAxe()) << int(c.mask);
    }
}

TEST(mxGizmoControllerTranslateTest, ArrowExactlyAtTheToleranceIsPickedAndJustBeyondItIsNot) {
    Scene scene;
    // Pixel (125, 112.5): exactly 12.5 pixels above the X arrow, 25 from the Y arrow.
    const Vec2 mouse(0.625f, 0.5625f);
    EXPECT_TRUE(scene.hover(mouse, 12.5f));
    EXPECT_EQ(0, scene.controller.getPickedAxe());
    EXPECT_FALSE(scene.hover(mouse, std::nextafter(12.5f, 0.0f)));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerTranslateTest, HoverUsesTheAxisMaskOfTheNodesCurrentMode) {
    // Off the view's centre the three arrows are apart on screen: centre at pixel (120, 120),
    // X to (180, 120), Y to (120, 180), Z to (150, 150).
    Scene scene(Vec3(2.0f, 2.0f, 0.0f));
    mxGizmoNode& node = *scene.node();
    node.setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0x1);
    node.setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 0x2);
    node.setEnabledAxis(mxGizmoNode::GIZMO_SCALE, 0x4);
    const Vec2 overArrow[3] = {Vec2(0.75f, 0.6f), Vec2(0.6f, 0.75f), Vec2(0.675f, 0.675f)};
    struct Case {
        mxGizmoNode::GizmoMode mode;
        int enabled;
    };
    for (const Case& c : {Case{mxGizmoNode::GIZMO_TRANSLATE, 0}, Case{mxGizmoNode::GIZMO_ROTATE, 1},
                          Case{mxGizmoNode::GIZMO_SCALE, 2}, Case{mxGizmoNode::GIZMO_NONE, -1}}) {
        node.setMode(c.mode);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(axis == c.enabled, scene.hover(overArrow[axis]))
                << "mode " << c.mode << " axis " << axis;
            EXPECT_EQ(axis == c.enabled ? axis : -1, scene.controller.getPickedAxe())
                << "mode " << c.mode << " axis " << axis;
        }
    }
}

TEST(mxGizmoControllerTranslateTest, HoverInRotateModeHighlightsThePickedCircle) {
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Mat3::IDENTITY, mxGizmoNode::GIZMO_ROTATE);
    // Pixel (106.25, 125): beside the Y axis segment.
    EXPECT_TRUE(scene.hover(Vec2(0.53125f, 0.625f)));
    const mx::mxGizmoNodeRotate& rotate = scene.node()->getRotateGizmo();
    EXPECT_EQ(NormalColor(0), rotate.getCircle(0)->getColor());
    EXPECT_EQ(HoveredColor(1), rotate.getCircle(1)->getColor());
    EXPECT_EQ(NormalColor(2), rotate.getCircle(2)->getColor());
}

TEST(mxGizmoControllerTranslateTest, HoverInScaleModeHighlightsThePickedAxis) {
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Mat3::IDENTITY, mxGizmoNode::GIZMO_SCALE);
    EXPECT_TRUE(scene.hover(csPressOnX));
    const mx::mxGizmoNodeScale& scale = scene.node()->getScaleGizmo();
    EXPECT_EQ(HoveredColor(0), scale.getAxis(0)->getColor());
    EXPECT_EQ(HoveredColor(0), scale.getEndSquare(0)->getColor());
    EXPECT_EQ(NormalColor(1), scale.getAxis(1)->getColor());
    EXPECT_EQ(NormalColor(2), scale.getAxis(2)->getColor());
}

TEST(mxGizmoControllerTranslateTest, HoverLeavesTheDragPlaneChoiceAlone) {
    Scene scene;
    scene.controller.useSecondPlane = 1;
    ASSERT_TRUE(scene.hover(csPressOnX));
    EXPECT_EQ(1u, scene.controller.useSecondPlane);
    ASSERT_FALSE(scene.hover(Vec2(0.75f, 0.75f)));
    EXPECT_EQ(1u, scene.controller.useSecondPlane);
    scene.controller.useSecondPlane = 0;
    ASSERT_TRUE(scene.hover(csPressOnX));
    EXPECT_EQ(0u, scene.controller.useSecondPlane);
}

TEST(mxGizmoControllerTranslateTest, HoverOverANullNodeReturnsFalseAndKeepsThePick) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    EXPECT_FALSE(scene.controller.updateTranslateHover(nullptr, scene.camera.get(), csPressOnX,
                                                       csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_FALSE(scene.controller.updateTranslateHover(
        nullptr, scene.camera.get(), csPressOnX, 0x7u, csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_EQ(0, scene.controller.getPickedAxe());
}

// --- isOver ------------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, IsOverTellsWhetherAnArrowLiesWithinTheTolerance) {
    Scene scene;
    const mxGizmoControllerTranslate& controller = scene.controller;
    const mxCamera* camera = scene.camera.get();
    // 12.5 pixels above the X arrow.
    const Vec2 mouse(0.625f, 0.5625f);
    EXPECT_TRUE(controller.isOver(scene.node(), camera, mouse, 12.5f, csViewWidth, csViewHeight));
    EXPECT_FALSE(controller.isOver(scene.node(), camera, mouse, std::nextafter(12.5f, 0.0f),
                                   csViewWidth, csViewHeight));
    EXPECT_TRUE(controller.isOver(scene.node(), camera, csPressOnX, csPickTolerance, csViewWidth,
                                  csViewHeight));
    EXPECT_FALSE(controller.isOver(scene.node(), camera, Vec2(0.75f, 0.75f), csPickTolerance,
                                   csViewWidth, csViewHeight));
}

TEST(mxGizmoControllerTranslateTest, IsOverHonoursTheModesMaskAndANullNode) {
    Scene scene;
    const mxGizmoControllerTranslate& controller = scene.controller;
    scene.node()->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 0x6);
    scene.node()->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    EXPECT_FALSE(controller.isOver(scene.node(), scene.camera.get(), csPressOnX, csPickTolerance,
                                   csViewWidth, csViewHeight));
    scene.node()->setMode(mxGizmoNode::GIZMO_ROTATE);
    EXPECT_TRUE(controller.isOver(scene.node(), scene.camera.get(), csPressOnX, csPickTolerance,
                                  csViewWidth, csViewHeight));
    scene.node()->setMode(mxGizmoNode::GIZMO_NONE);
    EXPECT_FALSE(controller.isOver(scene.node(), scene.camera.get(), Vec2(0.5f, 0.5f),
                                   csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_FALSE(controller.isOver(nullptr, scene.camera.get(), csPressOnX, csPickTolerance,
                                   csViewWidth, csViewHeight));
}

TEST(mxGizmoControllerTranslateTest, IsOverChangesNeitherPickNorColoursNorDirtyFlags) {
    Scene scene;
    // Y picked and hovered first; isOver then finds X.
    ASSERT_TRUE(scene.hover(Vec2(0.53125f, 0.625f)));
    ASSERT_EQ(1, scene.controller.getPickedAxe());
    scene.controller.useSecondPlane = 1;
    const std::vector<Wm4::ColorRGBA> before = ColorsOf(*scene.node());
    MarkCounter counter(*scene.node());

    EXPECT_TRUE(scene.controller.isOver(scene.node(), scene.camera.get(), csPressOnX,
                                        csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_FALSE(scene.controller.isOver(scene.node(), scene.camera.get(), Vec2(0.75f, 0.75f),
                                         csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
    EXPECT_EQ(1u, scene.controller.useSecondPlane);
    EXPECT_EQ(before, ColorsOf(*scene.node()));
    EXPECT_EQ(0u, counter.marks());
}

// --- Press -------------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, PressOnXFacingTheEyeDragsInThePlaneWhoseNormalIsZ) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_EQ(0, scene.controller.getPickedAxe());
    // The plane y = 0 holds the eye and is seen edge-on; z = 0 faces the eye.
    EXPECT_EQ(1u, scene.controller.useSecondPlane);
    const Vec3 hit = RayHit(*scene.camera, csPressOnX, Vec3(0.0f, 0.0f, 0.0f), UnitAxis(2));
    const Vec3 expected = OntoAxis(Vec3(0.0f, 0.0f, 0.0f), UnitAxis(0), hit);
    EXPECT_TRUE(VectorNear(scene.controller.pressPoint, expected, csWorldTolerance));
    EXPECT_TRUE(VectorNear(scene.controller.pressPoint, csPressPointOnX, csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, PressKeepsTheFirstPlaneWhenItFacesTheEyeBetter) {
    // Turned a quarter turn about X: local Y points at the eye, so the first plane (normal
    // local Y) faces it and the second (normal local Z, pointing down) is seen edge-on.
    const Mat3 rotation = Rotation(1.0f, 0.0f, 0.0f, Wm4::Math<float>::HALF_PI);
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), rotation);
    ASSERT_TRUE(scene.hover(csPressOnX));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    scene.controller.useSecondPlane = 1;
    scene.press(csPressOnX);
    EXPECT_EQ(0u, scene.controller.useSecondPlane);
    const Mat3& worldRotation = scene.node()->getWorldTransform().GetRotate();
    const Vec3 hit =
        RayHit(*scene.camera, csPressOnX, Vec3(0.0f, 0.0f, 0.0f), worldRotation * UnitAxis(1));
    const Vec3 expected = OntoAxis(Vec3(0.0f, 0.0f, 0.0f), worldRotation * UnitAxis(0), hit);
    EXPECT_TRUE(VectorNear(scene.controller.pressPoint, expected, csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, PressWithBothPlanesFacingTheEyeEquallyKeepsTheFirst) {
    // An eighth of a turn about X with equal entries: the normals (0, h, h) and (0, -h, h) make
    // the same angle with any ray in the plane y = 0, such as the one through the X arrow.
    const float h = std::sqrt(0.5f);
    const Mat3 rotation(Vec3(1.0f, 0.0f, 0.0f), Vec3(0.0f, h, h), Vec3(0.0f, -h, h), true);
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), rotation);
    const Vec2 mouse(0.625f, 0.5f);
    ASSERT_TRUE(scene.hover(mouse));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    scene.controller.useSecondPlane = 1;
    scene.press(mouse);
    EXPECT_EQ(0u, scene.controller.useSecondPlane);
    EXPECT_TRUE(VectorNear(scene.controller.pressPoint, csPressPointOnX, csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, PressRecordsTheWorldRotationAndTheReferenceCentre) {
    mxPointer<mxCamera> camera = MakeStandardCamera();
    // Two objects: their centre (2, 1, 0) is the start of the drag, not the gizmo position.
    mxPointer<mxMesh> left = MakeObject(Vec3(1.0f, 0.0f, 0.0f));
    mxPointer<mxMesh> right = MakeObject(Vec3(3.0f, 2.0f, 0.0f));
    PlacedGizmo placed(mxGizmoNode::GIZMO_TRANSLATE, {left.get(), right.get()});
    placed.place(*camera, Rotation(0.0f, 0.0f, 1.0f, 0.5f));
    Listeners listeners;
    ExposedTranslate controller(listeners);
    const Vec2 mouse = MouseOnArrow(*camera, *placed.node, 1, 0.5f);
    ASSERT_TRUE(controller.updateTranslateHover(placed.node, camera.get(), mouse, csPickTolerance,
                                                csViewWidth, csViewHeight));
    ASSERT_EQ(1, controller.getPickedAxe());
    controller.setMousePressed(placed.node, camera.get(), mouse);

    const Mat3& expectedRotation = placed.node->getWorldTransform().GetRotate();
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_TRUE(
                SameBits(expectedRotation(r, c), controller.startTransformation.GetRotate()(r, c)))
                << r << ", " << c;
        }
    }
    EXPECT_TRUE(SameVector(controller.startTransformation.GetTranslate(),
                           placed.node->getCenterReferences()));
    EXPECT_TRUE(VectorNear(controller.startTransformation.GetTranslate(), Vec3(2.0f, 1.0f, 0.0f),
                           csWorldTolerance));
    EXPECT_EQ(placed.node, controller.gizmo);
    // The press point lies on the Y arrow's line through the centre.
    const Vec3 axis = expectedRotation * UnitAxis(1);
    const Vec3 hit = RayHit(*camera, mouse, Vec3(2.0f, 1.0f, 0.0f), Vec3(0.0f, 0.0f, 1.0f));
    EXPECT_TRUE(VectorNear(controller.pressPoint, OntoAxis(Vec3(2.0f, 1.0f, 0.0f), axis, hit),
                           csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, PressStartsFromTheIdentityWhateverTheLastDragLeft) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    scene.release(csMoveToFive);
    ASSERT_FALSE(scene.controller.resultTransformation.IsIdentity());

    // The gizmo was not moved along (no frame ran): the same arrow is under the same mouse.
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_TRUE(BitwiseEqual(scene.controller.resultTransformation, Transform()));
}

TEST(mxGizmoControllerTranslateTest, PressTellsTheListenersInVectorOrderAndSkipsNullEntries) {
    Scene scene;
    std::vector<std::string> log;
    RecordingListener first("first", log);
    RecordingListener second("second", log);
    scene.listeners = {nullptr, &first, nullptr, &second, nullptr};
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_EQ((std::vector<std::string>{"first translateStart", "second translateStart"}), log);
    EXPECT_TRUE(scene.recorder.events.empty());
}

TEST(mxGizmoControllerTranslateTest, PressWithoutPickedAxisStoresTheNodeButCallsNoListener) {
    Scene scene;
    // A previous drag leaves its translation behind.
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    scene.release(csMoveToFive);
    const Transform lastResult = scene.controller.resultTransformation;
    scene.recorder.events.clear();

    PlacedGizmo other(mxGizmoNode::GIZMO_TRANSLATE, {scene.object.get()});
    other.place(*scene.camera);
    ASSERT_FALSE(scene.hover(Vec2(0.75f, 0.75f)));
    scene.controller.setMousePressed(other.node, scene.camera.get(), csPressOnX);
    EXPECT_EQ(other.node, scene.controller.gizmo);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(scene.recorder.events.empty());
    EXPECT_TRUE(BitwiseEqual(scene.controller.resultTransformation, lastResult));
}

TEST(mxGizmoControllerTranslateTest, PressWithNullNodeOrNullCameraDoesNothing) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.controller.setMousePressed(nullptr, scene.camera.get(), csPressOnX);
    EXPECT_EQ(nullptr, scene.controller.gizmo);
    scene.controller.setMousePressed(scene.node(), nullptr, csPressOnX);
    EXPECT_TRUE(scene.recorder.events.empty());
    EXPECT_EQ(0, scene.controller.getPickedAxe());
    EXPECT_TRUE(BitwiseEqual(scene.controller.resultTransformation, Transform()));
    EXPECT_TRUE(SameVector(scene.controller.pressPoint, Vec3(0.0f, 0.0f, 0.0f)));
    EXPECT_TRUE(SameVector(scene.objectPosition(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoControllerTranslateTest,
     PressHittingBothPlanesBehindTheEyeAnnouncesAStartGoingNowhere) {
    // Gizmo at (2, 2, 0), X picked in the standard view (pixel (150, 120) on the X arrow).
    Scene scene(Vec3(2.0f, 2.0f, 0.0f));
    ASSERT_TRUE(scene.hover(Vec2(0.75f, 0.6f)));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    // Seen from the same eye looking the other way, the ray through (0.5, 0.25) runs along
    // (0, -0.5, 1): y = 2 and z = 0 both lie behind it.
    mxPointer<mxCamera> turned = MakeTurnedCamera();
    const Vec2 mouse(0.5f, 0.25f);
    scene.controller.setMousePressed(scene.node(), turned.get(), mouse);
    EXPECT_EQ((std::vector<std::string>{"translateStart"}), scene.recorder.events);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());

    EXPECT_FALSE(scene.controller.setMousePos(scene.node(), turned.get(), Vec2(0.25f, 0.25f)));
    EXPECT_FALSE(scene.move(Vec2(0.875f, 0.625f)));
    EXPECT_TRUE(SameVector(scene.objectPosition(), Vec3(2.0f, 2.0f, 0.0f)));
}

TEST(mxGizmoControllerTranslateTest, PressGoingNowhereStillClearsTheLastDragsTranslation) {
    Scene scene(Vec3(2.0f, 2.0f, 0.0f));
    // A first drag along X from pixel (150, 120) to (175, 120): 2.5 units.
    ASSERT_TRUE(scene.hover(Vec2(0.75f, 0.6f)));
    scene.press(Vec2(0.75f, 0.6f));
    ASSERT_TRUE(scene.move(Vec2(0.875f, 0.6f)));
    scene.release(Vec2(0.875f, 0.6f));
    ASSERT_FALSE(scene.controller.resultTransformation.IsIdentity());

    // The gizmo was not moved along (no frame ran): the same arrow is under the same mouse.
    ASSERT_TRUE(scene.hover(Vec2(0.75f, 0.6f)));
    mxPointer<mxCamera> turned = MakeTurnedCamera();
    scene.controller.setMousePressed(scene.node(), turned.get(), Vec2(0.5f, 0.25f));
    scene.controller.setMouseReleased(scene.node(), turned.get(), Vec2(0.5f, 0.25f));
    EXPECT_EQ((std::vector<std::string>{"translateStart", "translateEnd", "translateStart",
                                        "translateEnd"}),
              scene.recorder.events);
    ASSERT_EQ(2u, scene.recorder.ends.size());
    EXPECT_TRUE(BitwiseEqual(scene.recorder.ends[1], Transform()));
}

// --- getProjectedPoint -------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, ProjectedPointAcceptsAHitBehindTheEyeDuringAMove) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_EQ(1u, scene.controller.useSecondPlane);
    // Looking away from the gizmo, the ray through (0.75, 0.5) runs along (-0.5, 0, 1) and
    // meets the drag plane z = 0 behind the eye at (5, 0, 0).
    mxPointer<mxCamera> turned = MakeTurnedCamera();
    const Vec2 mouse(0.75f, 0.5f);
    const Vec3 expected = RayHit(*turned, mouse, Vec3(0.0f, 0.0f, 0.0f), UnitAxis(2));
    ASSERT_TRUE(VectorNear(expected, Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    Vec3 point(-1.0f, -1.0f, -1.0f);
    float t = -1.0f;
    EXPECT_TRUE(scene.controller.getProjectedPoint(turned.get(), mouse, false, point, t));
    EXPECT_TRUE(VectorNear(point, expected, csWorldTolerance));
    EXPECT_NEAR(2.5f, t, csWorldTolerance);

    EXPECT_TRUE(scene.controller.setMousePos(scene.node(), turned.get(), mouse));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(2.5f, 0.0f, 0.0f), csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, ProjectedPointGivesTheSignedDistanceAlongTheAxisFromThePress) {
    // A quarter turn about Z: the gizmo's X arrow points up the screen along world +Y.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Rotation(0.0f, 0.0f, 1.0f, Wm4::Math<float>::HALF_PI));
    // Pixel (106.25, 125): beside the arrow; the ray meets z = 0 at (0.625, 2.5, 0).
    const Vec2 press(0.53125f, 0.625f);
    ASSERT_TRUE(scene.hover(press));
    ASSERT_EQ(0, scene.controller.getPickedAxe());
    scene.press(press);
    const Vec3 axis = scene.node()->getWorldTransform().GetRotate() * UnitAxis(0);
    ASSERT_TRUE(VectorNear(scene.controller.pressPoint, Vec3(0.0f, 2.5f, 0.0f), csWorldTolerance));

    struct Case {
        Vec2 mouse;
        float y;
    };
    // Up to y = 5, then down to y = -2.5.
    for (const Case& c : {Case{Vec2(0.5f, 0.75f), 5.0f}, Case{Vec2(0.5f, 0.375f), -2.5f}}) {
        Vec3 point(0.0f, 0.0f, 0.0f);
        float t = 0.0f;
        ASSERT_TRUE(
            scene.controller.getProjectedPoint(scene.camera.get(), c.mouse, false, point, t));
        EXPECT_TRUE(VectorNear(point, Vec3(0.0f, c.y, 0.0f), csWorldTolerance)) << c.y;
        EXPECT_NEAR(c.y - 2.5f, t, csWorldTolerance) << c.y;
        // point = pressPoint + t * axis.
        EXPECT_TRUE(VectorNear(point, scene.controller.pressPoint + axis * t, csWorldTolerance))
            << c.y;
    }
}

// A gizmo at (0, -2, 0) dragged along its Z arrow, which points at the eye: the drag plane is
// the ground y = -2, whose horizon is the middle row of the view.
struct GroundDrag : Scene {
    GroundDrag() : Scene(Vec3(0.0f, -2.0f, 0.0f)) {}
    // Pixel (100, 62.5), on the Z arrow (from (100, 80) down to (100, 50)); the ray (0, -0.375,
    // -1) meets the ground at (0, -2, 14 / 3).
    const Vec2 pressMouse{0.5f, 0.3125f};
    // Just below the horizon: the ray (0, -1/128, -1) meets the ground at z = -246, far beyond
    // the far plane z = -90.
    const Vec2 horizonMouse{0.5f, 0.49609375f};
};

TEST(mxGizmoControllerTranslateTest, DraggingTowardsTheHorizonStopsAtTheFarPlaneWhenRestricted) {
    GroundDrag drag;
    ASSERT_TRUE(drag.hover(drag.pressMouse));
    ASSERT_EQ(2, drag.controller.getPickedAxe());
    drag.node()->restrictPositionBetweenNearFar(true);
    drag.press(drag.pressMouse);
    ASSERT_EQ(1u, drag.controller.useSecondPlane);
    const Vec3 pressPoint =
        RayHit(*drag.camera, drag.pressMouse, Vec3(0.0f, -2.0f, 0.0f), UnitAxis(1));
    ASSERT_TRUE(VectorNear(drag.controller.pressPoint, pressPoint, csWorldTolerance));

    const float far = drag.camera->getLocation().Z() - drag.camera->getDMax();
    EXPECT_TRUE(drag.move(drag.horizonMouse));
    EXPECT_TRUE(
        VectorNear(drag.objectPosition(), Vec3(0.0f, -2.0f, far - pressPoint.Z()), csFarTolerance));

    Vec3 point(0.0f, 0.0f, 0.0f);
    float t = 0.0f;
    ASSERT_TRUE(
        drag.controller.getProjectedPoint(drag.camera.get(), drag.horizonMouse, true, point, t));
    EXPECT_TRUE(VectorNear(point, Vec3(0.0f, -2.0f, far), csFarTolerance));
    EXPECT_NEAR(far - pressPoint.Z(), t, csFarTolerance);
}

TEST(mxGizmoControllerTranslateTest, DraggingTowardsTheHorizonUnrestrictedGoesBeyondTheFarPlane) {
    GroundDrag drag;
    ASSERT_TRUE(drag.hover(drag.pressMouse));
    drag.press(drag.pressMouse);
    const Vec3 beyond =
        RayHit(*drag.camera, drag.horizonMouse, Vec3(0.0f, -2.0f, 0.0f), UnitAxis(1));
    ASSERT_NEAR(-246.0f, beyond.Z(), csFarTolerance);
    const float pressZ = drag.controller.pressPoint.Z();

    EXPECT_TRUE(drag.move(drag.horizonMouse));
    EXPECT_TRUE(
        VectorNear(drag.objectPosition(), Vec3(0.0f, -2.0f, beyond.Z() - pressZ), csFarTolerance));

    Vec3 point(0.0f, 0.0f, 0.0f);
    float t = 0.0f;
    ASSERT_TRUE(
        drag.controller.getProjectedPoint(drag.camera.get(), drag.horizonMouse, false, point, t));
    EXPECT_TRUE(VectorNear(point, Vec3(0.0f, -2.0f, beyond.Z()), csFarTolerance));
    EXPECT_NEAR(beyond.Z() - pressZ, t, csFarTolerance);
}

TEST(mxGizmoControllerTranslateTest, NearFarRestrictionIgnoresAnAxisParallelToThosePlanes) {
    // The X axis runs parallel to the near and far planes: neither intersection exists, so
    // nothing is clamped, however far the drag goes.
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    const Vec2 mouse(1.0f, 0.5f);
    Vec3 restricted(0.0f, 0.0f, 0.0f);
    float restrictedT = 0.0f;
    Vec3 free(0.0f, 0.0f, 0.0f);
    float freeT = 0.0f;
    ASSERT_TRUE(scene.controller.getProjectedPoint(scene.camera.get(), mouse, true, restricted,
                                                   restrictedT));
    ASSERT_TRUE(scene.controller.getProjectedPoint(scene.camera.get(), mouse, false, free, freeT));
    EXPECT_TRUE(VectorNear(restricted, Vec3(10.0f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_NEAR(7.5f, restrictedT, csWorldTolerance);
    EXPECT_TRUE(SameVector(restricted, free));
    EXPECT_TRUE(SameBits(restrictedT, freeT));
}

TEST(mxGizmoControllerTranslateTest, ProjectedPointFailingLeavesPointAndDistanceUntouched) {
    GroundDrag drag;
    ASSERT_TRUE(drag.hover(drag.pressMouse));
    drag.press(drag.pressMouse);
    // The centre ray (0, 0, -1) runs parallel to the ground.
    const Vec3 sentinel(-7.0f, 8.0f, -9.0f);
    for (bool restrict : {false, true}) {
        Vec3 point = sentinel;
        float t = 123.0f;
        EXPECT_FALSE(drag.controller.getProjectedPoint(drag.camera.get(), Vec2(0.5f, 0.5f),
                                                       restrict, point, t));
        EXPECT_TRUE(SameVector(point, sentinel));
        EXPECT_TRUE(SameBits(123.0f, t));
    }
}

// --- setMousePos -------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, MovesAreMeasuredFromThePressAndDoNotAccumulate) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_TRUE(scene.move(csMoveToFive));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(2.5f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_TRUE(scene.move(csMoveToSevenAndAHalf));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_TRUE(scene.move(csMoveToFive));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(2.5f, 0.0f, 0.0f), csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, MoveResultIsAPureTranslationFromPressPointToProjectedPoint) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToSevenAndAHalf));
    const Transform& result = scene.controller.resultTransformation;
    EXPECT_TRUE(result.IsRSMatrix());
    EXPECT_TRUE(MatrixNear(result.GetMatrix(), Mat3::IDENTITY, 0.0));
    EXPECT_TRUE(SameVector(result.GetScale(), Vec3(1.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(VectorNear(result.GetTranslate(), Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    Transform expected;
    expected.SetTranslate(Vec3(5.0f, 0.0f, 0.0f));
    EXPECT_TRUE(MapsNear(result, expected, csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, MoveWithMouseOutsideTheUnitSquareIsIgnored) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    const Transform result = scene.controller.resultTransformation;
    const Vec3 position = scene.objectPosition();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float aboveOne = std::nextafter(1.0f, 2.0f);
    const float belowZero = std::nextafter(0.0f, -1.0f);
    for (const Vec2& mouse : {Vec2(-0.25f, 0.5f), Vec2(0.75f, -0.25f), Vec2(1.25f, 0.5f),
                              Vec2(0.75f, 1.25f), Vec2(aboveOne, 0.5f), Vec2(0.75f, aboveOne),
                              Vec2(belowZero, 0.5f), Vec2(nan, 0.5f), Vec2(0.75f, nan)}) {
        EXPECT_FALSE(scene.move(mouse)) << mouse.X() << ", " << mouse.Y();
        EXPECT_TRUE(SameVector(scene.objectPosition(), position));
        EXPECT_TRUE(BitwiseEqual(scene.controller.resultTransformation, result));
    }
}

TEST(mxGizmoControllerTranslateTest, MoveWithMouseExactlyOnTheBoundsIsProcessed) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    // x = 1 and x = 0: the rays along (1, 0, -1) and (-1, 0, -1) meet z = 0 at x = 10 and -10.
    EXPECT_TRUE(scene.move(Vec2(1.0f, 0.5f)));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(7.5f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_TRUE(scene.move(Vec2(0.0f, 0.5f)));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(-12.5f, 0.0f, 0.0f), csWorldTolerance));
    // y = 1 and y = 0 change nothing along X but are processed all the same.
    EXPECT_TRUE(scene.move(Vec2(1.0f, 1.0f)));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(7.5f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_TRUE(scene.move(Vec2(0.75f, 0.0f)));
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(2.5f, 0.0f, 0.0f), csWorldTolerance));
}

TEST(mxGizmoControllerTranslateTest, MoveBackExactlyOnThePressPointLeavesObjectsAndResult) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    const Transform result = scene.controller.resultTransformation;
    const Vec3 position = scene.objectPosition();
    // The mirror of the press across the X axis: the ray meets z = 0 at (2.5, -0.625, 0),
    // whose foot on the axis is the press point itself. The objects stay where the last move
    // put them.
    const Vec2 mirror(0.625f, 0.46875f);
    Vec3 point(0.0f, 0.0f, 0.0f);
    float t = 1.0f;
    ASSERT_TRUE(scene.controller.getProjectedPoint(scene.camera.get(), mirror, false, point, t));
    ASSERT_EQ(0.0f, t);
    EXPECT_FALSE(scene.move(mirror));
    EXPECT_TRUE(SameVector(scene.objectPosition(), position));
    EXPECT_TRUE(BitwiseEqual(scene.controller.resultTransformation, result));
    EXPECT_FALSE(scene.move(csPressOnX));
    EXPECT_TRUE(SameVector(scene.objectPosition(), position));
}

TEST(mxGizmoControllerTranslateTest, MoveParallelToTheDragPlaneLeavesTheObjectsWhereTheyWere) {
    GroundDrag drag;
    ASSERT_TRUE(drag.hover(drag.pressMouse));
    drag.press(drag.pressMouse);
    // Pixel (100, 75): the ray (0, -0.25, -1) meets the ground at z = 2.
    ASSERT_TRUE(drag.move(Vec2(0.5f, 0.375f)));
    const Vec3 position = drag.objectPosition();
    const Transform result = drag.controller.resultTransformation;
    EXPECT_FALSE(drag.move(Vec2(0.5f, 0.5f)));
    EXPECT_TRUE(SameVector(drag.objectPosition(), position));
    EXPECT_TRUE(BitwiseEqual(drag.controller.resultTransformation, result));
}

TEST(mxGizmoControllerTranslateTest, MoveWithoutPickNodeOrCameraReturnsFalse) {
    Scene scene;
    EXPECT_FALSE(scene.move(csMoveToFive));
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    EXPECT_FALSE(scene.controller.setMousePos(nullptr, scene.camera.get(), csMoveToFive));
    EXPECT_FALSE(scene.controller.setMousePos(scene.node(), nullptr, csMoveToFive));
    EXPECT_TRUE(SameVector(scene.objectPosition(), Vec3(0.0f, 0.0f, 0.0f)));
    EXPECT_TRUE(scene.controller.resultTransformation.IsIdentity());
}

// --- Release -----------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, ReleaseMovesOnceMoreDropsThePickAndReportsTheTranslation) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    scene.release(csMoveToSevenAndAHalf);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    ASSERT_EQ(1u, scene.recorder.ends.size());
    EXPECT_TRUE(BitwiseEqual(scene.recorder.ends[0], scene.controller.resultTransformation));
    EXPECT_TRUE(VectorNear(scene.recorder.ends[0].GetTranslate(), Vec3(5.0f, 0.0f, 0.0f),
                           csWorldTolerance));
    // Later moves go nowhere.
    EXPECT_FALSE(scene.move(csMoveToFive));
}

TEST(mxGizmoControllerTranslateTest, ReleaseWithoutAnyMovePassesTheIdentity) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    scene.release(csPressOnX);
    ASSERT_EQ(1u, scene.recorder.ends.size());
    EXPECT_TRUE(scene.recorder.ends[0].IsIdentity());
    EXPECT_TRUE(BitwiseEqual(scene.recorder.ends[0], Transform()));
    EXPECT_TRUE(SameVector(scene.objectPosition(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoControllerTranslateTest, DragWithAxisIsHeardAsStartThenEndByEachListenerInOrder) {
    Scene scene;
    std::vector<std::string> log;
    RecordingListener first("first", log);
    RecordingListener second("second", log);
    scene.listeners = {&first, &second};
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    ASSERT_TRUE(scene.move(csMoveToSevenAndAHalf));
    scene.release(csMoveToSevenAndAHalf);
    EXPECT_EQ((std::vector<std::string>{"first translateStart", "second translateStart",
                                        "first translateEnd", "second translateEnd"}),
              log);
    for (const RecordingListener* listener : {&first, &second}) {
        EXPECT_EQ((std::vector<std::string>{"translateStart", "translateEnd"}), listener->events);
        ASSERT_EQ(1u, listener->ends.size());
        EXPECT_TRUE(
            VectorNear(listener->ends[0].GetTranslate(), Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    }
}

TEST(mxGizmoControllerTranslateTest, DragWithoutAxisIsHeardOnlyAsAnIdentityEnd) {
    Scene scene;
    std::vector<std::string> log;
    RecordingListener first("first", log);
    RecordingListener second("second", log);
    scene.listeners = {&first, &second};
    ASSERT_FALSE(scene.hover(Vec2(0.75f, 0.75f)));
    scene.press(Vec2(0.75f, 0.75f));
    EXPECT_FALSE(scene.move(csMoveToFive));
    scene.release(csMoveToFive);
    EXPECT_EQ((std::vector<std::string>{"first translateEnd", "second translateEnd"}), log);
    for (const RecordingListener* listener : {&first, &second}) {
        EXPECT_EQ((std::vector<std::string>{"translateEnd"}), listener->events);
        ASSERT_EQ(1u, listener->ends.size());
        EXPECT_TRUE(listener->ends[0].IsIdentity());
    }
    EXPECT_TRUE(SameVector(scene.objectPosition(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoControllerTranslateTest, ReleaseWithNullNodeOrCameraStillEndsTheDrag) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));
    scene.controller.setMouseReleased(scene.node(), nullptr, csMoveToSevenAndAHalf);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(VectorNear(scene.objectPosition(), Vec3(2.5f, 0.0f, 0.0f), csWorldTolerance));

    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    scene.controller.setMouseReleased(nullptr, scene.camera.get(), csMoveToSevenAndAHalf);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_EQ((std::vector<std::string>{"translateStart", "translateEnd", "translateStart",
                                        "translateEnd"}),
              scene.recorder.events);
    ASSERT_EQ(2u, scene.recorder.ends.size());
    EXPECT_TRUE(VectorNear(scene.recorder.ends[0].GetTranslate(), Vec3(2.5f, 0.0f, 0.0f),
                           csWorldTolerance));
    EXPECT_TRUE(scene.recorder.ends[1].IsIdentity());
}

// --- Getters -----------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, NewControllerHasNothingPickedAndNoWorldAxis) {
    Listeners listeners;
    const ExposedTranslate controller(listeners);
    const mxGizmoControllerTranslate& base = controller;
    EXPECT_EQ(-1, base.getPickedAxe());
    EXPECT_TRUE(SameVector(base.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f)));
    EXPECT_EQ(nullptr, controller.gizmo);
    EXPECT_EQ(0u, controller.useSecondPlane);
    EXPECT_TRUE(SameVector(controller.pressPoint, Vec3(0.0f, 0.0f, 0.0f)));
    EXPECT_TRUE(BitwiseEqual(controller.startTransformation, Transform()));
    EXPECT_TRUE(BitwiseEqual(controller.resultTransformation, Transform()));
}

TEST(mxGizmoControllerTranslateTest, PickedAxeAndWorldAxeAreReadThroughTheBaseClass) {
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Rotation(0.0f, 0.0f, 1.0f, 0.5f));
    const mxGizmoControllerTranslate* base = &scene.controller;
    const Vec2 mouse = MouseOnArrow(*scene.camera, *scene.node(), 0, 0.5f);
    ASSERT_TRUE(scene.hover(mouse));
    EXPECT_EQ(0, base->getPickedAxe());
    // Before the first press no gizmo is known: no world axis yet.
    EXPECT_TRUE(SameVector(base->getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f)));

    scene.press(mouse);
    const Vec3 expected = Rotation(0.0f, 0.0f, 1.0f, 0.5f) * UnitAxis(0);
    EXPECT_TRUE(VectorNear(base->getPickedWorldAxe(), expected, csDirectionTolerance));
    EXPECT_NEAR(1.0f, base->getPickedWorldAxe().Length(), csDirectionTolerance);

    scene.release(mouse);
    EXPECT_EQ(-1, base->getPickedAxe());
    EXPECT_TRUE(SameVector(base->getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f)));
}

// Overrides both virtual getters, to see that calls through the base class reach them.
class FixedPick : public mxGizmoControllerTranslate {
public:
    using mxGizmoControllerTranslate::mxGizmoControllerTranslate;
    Vec3 getPickedWorldAxe() const override { return Vec3(0.0f, 0.0f, 7.0f); }
    int getPickedAxe() const override { return 2; }
};

TEST(mxGizmoControllerTranslateTest, PickedAxeAndWorldAxeAreVirtual) {
    Listeners listeners;
    FixedPick fixed(listeners);
    const mxGizmoControllerTranslate& base = fixed;
    EXPECT_EQ(2, base.getPickedAxe());
    EXPECT_TRUE(SameVector(base.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 7.0f)));
}

TEST(mxGizmoControllerTranslateTest, ResultingScaleReplacesThePickedComponent) {
    Listeners listeners;
    ExposedTranslate controller(listeners);
    EXPECT_TRUE(SameVector(controller.getResultingScale(2.5f), Vec3(0.0f, 0.0f, 0.0f)));
    const Vec3 expected[3] = {Vec3(2.5f, 1.0f, 1.0f), Vec3(1.0f, 2.5f, 1.0f),
                              Vec3(1.0f, 1.0f, 2.5f)};
    for (int axis = 0; axis < 3; ++axis) {
        controller.pickedAxe = axis;
        EXPECT_TRUE(SameVector(controller.getResultingScale(2.5f), expected[axis])) << axis;
    }
    controller.pickedAxe = -1;
    EXPECT_TRUE(SameVector(controller.getResultingScale(2.5f), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoControllerTranslateTest, CurrentWorldPointIsTheTipOfThePickedArrow) {
    // At (2, 2, 0), depth 10: the gizmo is 6 units long.
    Scene scene(Vec3(2.0f, 2.0f, 0.0f));
    EXPECT_TRUE(SameVector(scene.controller.getCurrentWorldPointPosition(scene.node()),
                           Vec3(0.0f, 0.0f, 0.0f)));
    const Vec3 tips[3] = {Vec3(8.0f, 2.0f, 0.0f), Vec3(2.0f, 8.0f, 0.0f), Vec3(2.0f, 2.0f, 6.0f)};
    for (int axis = 0; axis < 3; ++axis) {
        scene.controller.pickedAxe = axis;
        const Vec3 tip = scene.controller.getCurrentWorldPointPosition(scene.node());
        EXPECT_TRUE(VectorNear(tip, tips[axis], csWorldTolerance)) << axis;
        EXPECT_TRUE(
            SameVector(tip, scene.node()->getWorldTransform().ApplyForward(UnitAxis(axis), true)))
            << axis;
        EXPECT_TRUE(SameVector(scene.controller.getCurrentWorldPointPosition(nullptr),
                               Vec3(0.0f, 0.0f, 0.0f)))
            << axis;
    }
}

TEST(mxGizmoControllerTranslateTest, WorldOrientationIsTheNormalisedWorldMatrixTimesTheAxis) {
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Rotation(0.0f, 0.0f, 1.0f, 0.5f));
    // Before any press no gizmo is known.
    EXPECT_TRUE(
        SameVector(scene.controller.getWorldOrientation(UnitAxis(0)), Vec3(0.0f, 0.0f, 0.0f)));
    ASSERT_FALSE(scene.hover(Vec2(0.125f, 0.875f)));
    scene.press(Vec2(0.125f, 0.875f));
    ASSERT_EQ(scene.node(), scene.controller.gizmo);

    // The gizmo is 6 units long, yet the result has unit length.
    const Vec3 x = scene.controller.getWorldOrientation(UnitAxis(0));
    EXPECT_TRUE(
        VectorNear(x, Rotation(0.0f, 0.0f, 1.0f, 0.5f) * UnitAxis(0), csDirectionTolerance));
    EXPECT_NEAR(1.0f, x.Length(), csDirectionTolerance);

    // A stretched world matrix: (1, 0, 1) becomes (3, 0, 4), then (0.6, 0, 0.8).
    Mat3 stretch(true);
    stretch(0, 0) = 3.0f;
    stretch(1, 1) = 1.0f;
    stretch(2, 2) = 4.0f;
    scene.node()->editWorldTransform(false).SetMatrix(stretch);
    EXPECT_TRUE(VectorNear(scene.controller.getWorldOrientation(Vec3(1.0f, 0.0f, 1.0f)),
                           Vec3(0.6f, 0.0f, 0.8f), csDirectionTolerance));
    EXPECT_TRUE(SameVector(scene.controller.getWorldOrientation(Vec3(0.0f, 0.0f, 0.0f)),
                           Vec3(0.0f, 0.0f, 0.0f)));
}

// --- Copy --------------------------------------------------------------------------------------

TEST(mxGizmoControllerTranslateTest, CopyTakesTheDragStateAndSharesTheListenerVector) {
    Scene scene;
    ASSERT_TRUE(scene.hover(csPressOnX));
    scene.press(csPressOnX);
    ASSERT_TRUE(scene.move(csMoveToFive));

    ExposedTranslate copy(scene.controller);
    EXPECT_TRUE(BitwiseEqual(copy.startTransformation, scene.controller.startTransformation));
    EXPECT_TRUE(BitwiseEqual(copy.resultTransformation, scene.controller.resultTransformation));
    EXPECT_EQ(scene.node(), copy.gizmo);
    EXPECT_TRUE(SameVector(copy.pressPoint, scene.controller.pressPoint));
    EXPECT_EQ(0, copy.getPickedAxe());
    EXPECT_EQ(1u, copy.useSecondPlane);

    // Installed after the copy was made, yet the copy tells it: the vector is shared.
    RecordingListener late;
    scene.listeners.push_back(&late);
    copy.setMouseReleased(scene.node(), scene.camera.get(), csMoveToSevenAndAHalf);
    EXPECT_EQ((std::vector<std::string>{"translateEnd"}), late.events);
    ASSERT_EQ(1u, late.ends.size());
    EXPECT_TRUE(VectorNear(late.ends[0].GetTranslate(), Vec3(5.0f, 0.0f, 0.0f), csWorldTolerance));
    EXPECT_EQ((std::vector<std::string>{"translateStart", "translateEnd"}), scene.recorder.events);
    // The source is still dragging.
    EXPECT_EQ(0, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerTranslateTest, CopyTakesBothBitFields) {
    Listeners listeners;
    ExposedTranslate source(listeners);
    source.pickedAxe = 2;
    source.useSecondPlane = 1;
    const ExposedTranslate copy(source);
    EXPECT_EQ(2, copy.getPickedAxe());
    EXPECT_EQ(1u, copy.useSecondPlane);
    source.pickedAxe = 1;
    source.useSecondPlane = 0;
    const ExposedTranslate second(source);
    EXPECT_EQ(1, second.getPickedAxe());
    EXPECT_EQ(0u, second.useSecondPlane);
}

} // namespace
