// Whole mouse gestures through mx::mxGizmoController run by mx::mxEngine: the mouse is given in
// window pixels (origin top left, y downwards) between the engine's frames, exactly as an
// application's event handling gives it, and the engine's updateFrame replays it.
//
// Every scene has three reference objects, two below the scene root and one below a parent
// node that is turned and moved, a gizmo around them and the controller attached to the
// engine with a recording listener. A gesture is a hover at the handle (one frame), the press,
// several moves in frames of their own, and the release somewhere else, in a frame of its own.
//
// What the objects should become is worked out here, in double, from the camera alone and the
// normalised positions the controller makes of the window pixels: the pick ray of each mouse
// position, the drag plane or circle plane it meets, the point of the axis under it, the angle
// it sweeps. Each object is checked against "its world transformation at the press, carried by
// the expected delta".

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "e2e/mxGestureSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::Affine;
using mx::test::AxisDrag;
using mx::test::BitwiseEqual;
using mx::test::Circle;
using mx::test::CircleOf;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::GestureScene;
using mx::test::MakeLookAtCamera;
using mx::test::MakeStandardCamera;
using mx::test::MapsNear;
using mx::test::MeanPosition;
using mx::test::MouseOfWindowPixel;
using mx::test::PressAxisDrag;
using mx::test::Radians;
using mx::test::Rotation;
using mx::test::ScaleFactor;
using mx::test::ScaleTriple;
using mx::test::ScalingAlong;
using mx::test::ShowsHover;
using mx::test::ToDouble;
using mx::test::ToFloat;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using mx::test::WindowPixel;
using mx::test::WindowPixelOf;
using mx::test::WorldsOf;

using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Vec3d = Wm4::Vector3<double>;
using Mat3d = Wm4::Matrix3<double>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

constexpr int X = 0;
constexpr int Y = 1;
constexpr int Z = 2;

// Positions are a few units from the origin: a ten-thousandth is far above float rounding
// there and far below anything a drag could get wrong.
constexpr double csPositionTolerance = 1e-4;
// Rotations about a centre near the origin: entries of size 1 to 5 after a handful of float
// operations.
constexpr double csRotationTolerance = 1e-5;
// The gizmo against the centre of its objects in the same frame: both are read from the same
// floats, up to the rounding of the child's world transformation worked out again from its
// local one.
constexpr double csFramingTolerance = 1e-5;

// A few pixels across the axis line, so that the pick ray misses the axis and its projection
// onto the axis matters.
const Vec2 csAside(2.0f, -3.0f);

// The oblique camera of the rotation about X: from a corner, so that the circle about X is an
// open ellipse and not a line.
const Vec3 csRotateEye(6.0f, 5.0f, 8.0f);
const Vec3 csOrigin(0.0f, 0.0f, 0.0f);

// Three reference objects about centre: two below the scene and one below a parent node that
// is turned about a slanted axis and moved, so that its local transformation differs from its
// world one. The offsets sum to zero, so the objects' centre is centre; they lie within two
// units of it, well inside the gizmo, which is six units long at depth 10.
std::unique_ptr<GestureScene> ThreeObjectScene(mxGizmoNode::GizmoMode mode, const Vec3& centre,
                                               const mxPointer<mxCamera>& camera) {
    auto scene = std::make_unique<GestureScene>(camera, Rotation(1.0f, 2.0f, 2.0f, 0.7f),
                                                Vec3(2.0f, -1.0f, 3.0f));
    scene->addObject(centre + Vec3(1.5f, 0.5f, 0.5f), false);
    scene->addObject(centre + Vec3(-1.0f, 1.0f, -0.5f), false);
    scene->addObject(centre + Vec3(-0.5f, -1.5f, 0.0f), true);
    scene->start(mode);
    return scene;
}

// ---------------------------------------------------------------------------------------------
// Expected deltas, one per move and one for the release, from the scene as it stands at the
// press.

std::vector<Transform> TranslateDeltas(const GestureScene& scene, int axis,
                                       const WindowPixel& press,
                                       const std::vector<WindowPixel>& later) {
    const AxisDrag drag = PressAxisDrag(*scene.camera, MouseOfWindowPixel(press), scene.centre(),
                                        scene.frame(), axis);
    EXPECT_TRUE(drag.found) << "the press meets neither plane through the axis";
    std::vector<Transform> deltas;
    for (const WindowPixel& pixel : later) {
        Transform delta;
        delta.SetTranslate(
            ToFloat(drag.pointUnder(*scene.camera, MouseOfWindowPixel(pixel)) - drag.pressPoint));
        deltas.push_back(delta);
    }
    return deltas;
}

// The scaling by the factor of each position, along the gizmo's axis or uniformly, about the
// objects' centre; finalScale receives the scale triple of the last position.
std::vector<Transform> ScaleDeltas(const GestureScene& scene, int axis, const WindowPixel& press,
                                   const std::vector<WindowPixel>& later, Vec3d& finalScale) {
    const Vec3d centre = scene.centre();
    const Mat3d frame = scene.frame();
    const AxisDrag drag =
        PressAxisDrag(*scene.camera, MouseOfWindowPixel(press), centre, frame, axis);
    EXPECT_TRUE(drag.found) << "the press meets neither plane through the axis";
    // The axis as it stands at the press: the unit of the drag.
    const Vec3d arrow = scene.gizmoPoint(UnitAxis(static_cast<unsigned int>(axis))) - centre;
    const bool uniform = scene.gizmo->shouldUseUniformScale();
    std::vector<Transform> deltas;
    for (const WindowPixel& pixel : later) {
        const double factor =
            ScaleFactor(drag.lengthsDragged(*scene.camera, MouseOfWindowPixel(pixel), arrow));
        finalScale = ScaleTriple(axis, factor, uniform);
        const Mat3d m = ScalingAlong(frame, finalScale);
        deltas.push_back(Affine(m, centre - m * centre));
    }
    return deltas;
}

// The turn by the swept angle rounded to 5 degrees about the circle's axis through the gizmo's
// position, as ComputeRotation gives it; finalDegrees receives the angle of the last position.
std::vector<Transform> RotateDeltas(const GestureScene& scene, int axis, const WindowPixel& press,
                                    const std::vector<WindowPixel>& later, double& finalDegrees) {
    const Circle circle = CircleOf(scene, axis);
    const Vec3d pressPoint = circle.onPlane(*scene.camera, MouseOfWindowPixel(press));
    std::vector<Transform> deltas;
    for (const WindowPixel& pixel : later) {
        const double angle =
            circle.sweptAngle(*scene.camera, pressPoint, MouseOfWindowPixel(pixel));
        Transform delta;
        mxGizmoNode::ComputeRotation(ToFloat(circle.axis), static_cast<float>(angle),
                                     scene.gizmo->getGizmoPosition(), delta);
        deltas.push_back(delta);
        finalDegrees = angle * 180.0 / mx::test::csPi;
    }
    return deltas;
}

// ---------------------------------------------------------------------------------------------
// Gestures

// One gesture on one handle and what it should give.
struct Case {
    std::unique_ptr<GestureScene> scene;
    int axis = X;
    WindowPixel press;
    std::vector<WindowPixel> moves;
    WindowPixel release;
    // The expected delta of each move, then of the release.
    std::vector<Transform> deltas;
    // What the listeners hear in the press frame before onGizmoManipulated, and in the
    // release frame.
    Events startWords;
    Events endWords;
    // The axis shown hovered after the release, -1 for none.
    int hoverAfterRelease = -1;
    double tolerance = csPositionTolerance;

    std::vector<WindowPixel> later() const {
        std::vector<WindowPixel> pixels = moves;
        pixels.push_back(release);
        return pixels;
    }
};

// What one frame of the gesture left.
struct FrameRecord {
    Events events;
    Vec3 gizmoTranslation;
    Vec3 centreOfReferences;
    std::vector<Transform> worlds;
};

struct GestureRun {
    std::vector<Transform> start;
    // The press frame, one frame per move, the release frame.
    std::vector<FrameRecord> frames;
};

FrameRecord RunFrame(GestureScene& scene) {
    const std::size_t heard = scene.listener.events.size();
    scene.engine.updateFrame();
    FrameRecord record;
    record.events.assign(scene.listener.events.begin() + static_cast<std::ptrdiff_t>(heard),
                         scene.listener.events.end());
    record.gizmoTranslation = scene.gizmo->getWorldTransform().GetTranslate();
    record.centreOfReferences = scene.gizmo->getCenterReferences();
    record.worlds = WorldsOf(scene.objects);
    return record;
}

// The hover frame, then the press, each move and the release in frames of their own.
void RunGesture(Case& c, GestureRun& run) {
    GestureScene& scene = *c.scene;
    scene.hoverFrame(c.press);
    ASSERT_EQ(c.axis, scene.controller.getPickedAxeIndex(scene.gizmo.get()))
        << "the hover does not find the handle";
    ASSERT_TRUE(ShowsHover(*scene.gizmo, c.axis));
    run.start = WorldsOf(scene.objects);
    ASSERT_TRUE(scene.controller.setMousePressed(scene.viewCamera(), c.press.x, c.press.y,
                                                 csViewWidth, csViewHeight));
    run.frames.push_back(RunFrame(scene));
    for (const WindowPixel& move : c.moves) {
        EXPECT_TRUE(scene.controller.setMousePos(move.x, move.y));
        run.frames.push_back(RunFrame(scene));
    }
    EXPECT_TRUE(scene.controller.setMouseReleased(c.release.x, c.release.y));
    run.frames.push_back(RunFrame(scene));
}

// Every object's world transformation is delta times the one it had at the press.
void ExpectObjectsCarriedBy(const std::vector<Transform>& worlds,
                            const std::vector<Transform>& start, const Transform& delta,
                            double tolerance) {
    ASSERT_EQ(start.size(), worlds.size());
    for (std::size_t i = 0; i < worlds.size(); ++i) {
        Transform expected;
        expected.Product(delta, start[i]);
        EXPECT_TRUE(MapsNear(worlds[i], expected, tolerance)) << "object " << i;
    }
}

// ---------------------------------------------------------------------------------------------
// The aspects of a gesture

// The hover move darkens the handle and nothing else; the press is answered before any frame,
// and nothing happens until the next one.
void ExpectHoverThenPressAnsweredAtOnce(Case& c) {
    GestureScene& scene = *c.scene;
    EXPECT_TRUE(ShowsHover(*scene.gizmo, -1));
    EXPECT_FALSE(scene.controller.setMousePos(c.press.x, c.press.y));
    scene.engine.updateFrame();
    EXPECT_TRUE(ShowsHover(*scene.gizmo, c.axis));
    EXPECT_EQ(c.axis, scene.controller.getPickedAxeIndex(scene.gizmo.get()));
    EXPECT_TRUE(scene.listener.events.empty());

    const std::vector<Transform> before = WorldsOf(scene.objects);
    EXPECT_TRUE(scene.controller.setMousePressed(scene.viewCamera(), c.press.x, c.press.y,
                                                 csViewWidth, csViewHeight));
    EXPECT_TRUE(scene.listener.events.empty());
    const std::vector<Transform> after = WorldsOf(scene.objects);
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_TRUE(BitwiseEqual(after[i], before[i])) << "object " << i;
    }
}

// After every move frame and after the release frame the objects stand where the expected
// delta carries them from the press.
void ExpectObjectsFollowTheDrag(Case& c) {
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    ASSERT_EQ(c.moves.size() + 2u, run.frames.size());
    ASSERT_EQ(c.moves.size() + 1u, c.deltas.size());
    // The press moves nothing.
    for (std::size_t i = 0; i < run.start.size(); ++i) {
        EXPECT_TRUE(BitwiseEqual(run.frames[0].worlds[i], run.start[i])) << "object " << i;
    }
    for (std::size_t k = 0; k < c.deltas.size(); ++k) {
        SCOPED_TRACE(k < c.moves.size() ? "move " + std::to_string(k) : std::string("release"));
        ExpectObjectsCarriedBy(run.frames[k + 1].worlds, run.start, c.deltas[k], c.tolerance);
    }
    // Objects as the scene holds them at the end: really moved, by the gesture's delta.
    const std::vector<Transform> finals = WorldsOf(c.scene->objects);
    for (std::size_t i = 0; i < finals.size(); ++i) {
        EXPECT_FALSE(MapsNear(finals[i], run.start[i], 0.1)) << "object " << i << " barely moved";
    }
    ExpectObjectsCarriedBy(finals, run.start, c.deltas.back(), c.tolerance);
}

// The whole sequence of callbacks, frame by frame: the Start callbacks in the press frame
// before its onGizmoManipulated, one onGizmoManipulated per frame of the gesture, the End
// callback in the release frame before its onGizmoManipulated.
void ExpectAnnouncements(Case& c) {
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    Events expected = c.startWords;
    expected.push_back("manipulated");
    EXPECT_EQ(expected, run.frames.front().events) << "press frame";
    for (std::size_t k = 0; k < c.moves.size(); ++k) {
        EXPECT_EQ(Events{"manipulated"}, run.frames[k + 1].events) << "move " << k;
    }
    Events release = c.endWords;
    release.push_back("manipulated");
    EXPECT_EQ(release, run.frames.back().events) << "release frame";

    for (std::size_t k = 0; k < c.moves.size(); ++k) {
        expected.push_back("manipulated");
    }
    expected.insert(expected.end(), release.begin(), release.end());
    EXPECT_EQ(expected, c.scene->listener.events);
    EXPECT_EQ(std::vector<mxGizmoNode*>(c.moves.size() + 2u, c.scene->gizmo.get()),
              c.scene->listener.manipulated);
}

// The End transformation carries every object from where it stood at the press to where it
// ends, and is the expected delta of the release.
void ExpectEndTransformation(Case& c) {
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    ASSERT_EQ(1u, c.scene->listener.ends.size());
    const Transform& end = c.scene->listener.ends[0];
    EXPECT_TRUE(MapsNear(end, c.deltas.back(), c.tolerance));
    const std::vector<Transform> finals = WorldsOf(c.scene->objects);
    for (std::size_t i = 0; i < finals.size(); ++i) {
        Transform carried;
        carried.Product(end, run.start[i]);
        EXPECT_TRUE(MapsNear(carried, finals[i], c.tolerance)) << "object " << i;
    }
}

// The release hovers at its own position.
void ExpectHoverAfterRelease(Case& c) {
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    EXPECT_TRUE(ShowsHover(*c.scene->gizmo, c.hoverAfterRelease));
    EXPECT_EQ(c.hoverAfterRelease, c.scene->controller.getPickedAxeIndex(c.scene->gizmo.get()));
}

// In the frame of every move and in the frame of the release the gizmo is placed at the centre
// of the objects as that frame left them.
void ExpectGizmoFollowsTheObjects(Case& c) {
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    const Vec3d startCentre = MeanPosition(run.start);
    for (std::size_t k = 1; k < run.frames.size(); ++k) {
        SCOPED_TRACE(k < run.frames.size() - 1u ? "move " + std::to_string(k - 1)
                                                : std::string("release"));
        const FrameRecord& frame = run.frames[k];
        EXPECT_TRUE(
            VectorNear(frame.gizmoTranslation, frame.centreOfReferences, csFramingTolerance));
        // Where the expected delta takes the objects' centre.
        const Transform& delta = c.deltas[k - 1];
        const Vec3d expected = ToDouble(delta.ApplyForward(ToFloat(startCentre), true));
        EXPECT_TRUE(VectorNear(ToDouble(frame.gizmoTranslation), expected, c.tolerance));
    }
}

// ---------------------------------------------------------------------------------------------
// The cases

// The gesture of c on the arrow or scale handle of axis, given in lengths of it from the
// gizmo's centre: the press and the release on the axis line, the moves csAside off it.
void SetArrowGesture(Case& c, int axis, double press, const std::vector<double>& moves,
                     double release) {
    const GestureScene& scene = *c.scene;
    c.axis = axis;
    c.press = scene.onArrow(axis, press);
    c.moves.clear();
    for (double along : moves) {
        c.moves.push_back(scene.onArrow(axis, along, csAside));
    }
    c.release = scene.onArrow(axis, release);
}

// Translate along X in the standard view. The objects sit left of and above the centre of the
// view, so that the whole drag to the right stays in it and the Z arrow (pointing at the eye)
// shows as a slanted segment, away from the X arrow. The release is on the X arrow, a little
// further than the last move.
Case TranslateXCase() {
    Case c;
    c.scene = ThreeObjectScene(mxGizmoNode::GIZMO_TRANSLATE, Vec3(-2.0f, 1.0f, 0.0f),
                               MakeStandardCamera());
    SetArrowGesture(c, X, 0.6, {1.0, 1.4, 0.9}, 1.2);
    c.deltas = TranslateDeltas(*c.scene, X, c.press, c.later());
    c.startWords = {"translateStart"};
    c.endWords = {"translateEnd"};
    c.hoverAfterRelease = X;
    c.tolerance = csPositionTolerance;
    return c;
}

// A rotation about axis of the objects about the origin seen by camera: the press, the moves
// and the release at the given angles on the circle about axis, the release a quarter turn
// from the press. Every position is on the circle, and the release hovers it.
Case RotateCase(const mxPointer<mxCamera>& camera, int axis, double pressDegrees,
                const std::vector<double>& movesDegrees, double releaseDegrees) {
    Case c;
    c.scene = ThreeObjectScene(mxGizmoNode::GIZMO_ROTATE, csOrigin, camera);
    const Circle circle = CircleOf(*c.scene, axis);
    const auto on = [&](double degrees) {
        return WindowPixelOf(*camera, ToFloat(circle.pointAt(degrees)));
    };
    c.axis = axis;
    c.press = on(pressDegrees);
    for (double degrees : movesDegrees) {
        c.moves.push_back(on(degrees));
    }
    c.release = on(releaseDegrees);
    double finalDegrees = 0.0;
    c.deltas = RotateDeltas(*c.scene, axis, c.press, c.later(), finalDegrees);
    EXPECT_NEAR(90.0, finalDegrees, 1e-9);
    c.startWords = {"rotateStart"};
    c.endWords = {"rotateEnd"};
    c.hoverAfterRelease = axis;
    c.tolerance = csRotationTolerance;
    return c;
}

// Rotate about Z in the standard view: the objects about the origin, where the circle about Z
// faces the eye whole. The press is at 45 degrees on it, the moves sweep 20, 45 and 70
// degrees, the release 90 degrees: all on the 5-degree grid, so that the half pixel of a
// window position cannot change the rounded angle.
Case RotateZCase() {
    return RotateCase(MakeStandardCamera(), Z, 45.0, {65.0, 90.0, 115.0}, 135.0);
}

// Rotate about X seen from (6, 5, 8): the circle about X is an open ellipse. Its point nearest
// the eye is at 58 degrees from Y towards Z; the press at 40 degrees and the release at 130
// degrees are on its visible half, on screen more than 5 pixels nearer to it than to the other
// two circles. The moves sweep 25, 50 and 75 degrees, the release 90.
Case RotateXCase() {
    return RotateCase(MakeLookAtCamera(csRotateEye, csOrigin), X, 40.0, {65.0, 90.0, 115.0}, 130.0);
}

// Scale along Y in the standard view, outwards: the objects sit right of and below the centre
// of the view, so that the drag upwards stays in it. The press is at 0.4 of the Y axis, the
// release at 1.4, one axis length further: the objects double along Y. The release lies 24
// pixels beyond the tip of the axis, off every handle.
Case ScaleYCase() {
    Case c;
    c.scene =
        ThreeObjectScene(mxGizmoNode::GIZMO_SCALE, Vec3(1.0f, -3.0f, 0.0f), MakeStandardCamera());
    SetArrowGesture(c, Y, 0.4, {0.8, 1.2, 1.0}, 1.4);
    Vec3d finalScale;
    c.deltas = ScaleDeltas(*c.scene, Y, c.press, c.later(), finalScale);
    // Within the half pixel of the window positions.
    EXPECT_TRUE(VectorNear(finalScale, Vec3d(1.0, 2.0, 1.0), 0.02));
    c.startWords = {"translateStart", "scaleStart"};
    c.endWords = {"scaleEnd"};
    c.hoverAfterRelease = -1;
    c.tolerance = csPositionTolerance;
    return c;
}

// Uniform scale by the X handle in the standard view, inwards: the press at 0.8 of the axis,
// the release at 0.3, half an axis length back: the objects shrink to two thirds about their
// centre. The release is still on the X handle.
Case UniformScaleXCase() {
    Case c;
    c.scene =
        ThreeObjectScene(mxGizmoNode::GIZMO_SCALE, Vec3(-2.0f, 2.0f, 0.0f), MakeStandardCamera());
    c.scene->gizmo->setUseUniformScale(true);
    SetArrowGesture(c, X, 0.8, {0.6, 0.2, 0.5}, 0.3);
    Vec3d finalScale;
    c.deltas = ScaleDeltas(*c.scene, X, c.press, c.later(), finalScale);
    const double twoThirds = 2.0 / 3.0;
    EXPECT_TRUE(VectorNear(finalScale, Vec3d(twoThirds, twoThirds, twoThirds), 0.02));
    c.startWords = {"translateStart", "scaleStart"};
    c.endWords = {"scaleEnd"};
    c.hoverAfterRelease = X;
    c.tolerance = csPositionTolerance;
    return c;
}

// =============================================================================================
// Translate along X

TEST(mxEngineGestureTest, TranslateXHoverDarkensTheXArrowAndThePressOnItIsAnsweredAtOnce) {
    Case c = TranslateXCase();
    ExpectHoverThenPressAnsweredAtOnce(c);
}

TEST(mxEngineGestureTest, TranslateXDragMovesTheObjectsAlongXByWhatThePickRaysGive) {
    Case c = TranslateXCase();
    ExpectObjectsFollowTheDrag(c);
}

TEST(mxEngineGestureTest, TranslateXGestureIsAnnouncedStartFirstThenEveryFrameThenEnd) {
    Case c = TranslateXCase();
    ExpectAnnouncements(c);
}

TEST(mxEngineGestureTest, TranslateXEndTransformationCarriesThePressPlacementsToTheFinalOnes) {
    Case c = TranslateXCase();
    ExpectEndTransformation(c);
}

TEST(mxEngineGestureTest, TranslateXReleaseOnTheArrowLeavesItDarkened) {
    Case c = TranslateXCase();
    ExpectHoverAfterRelease(c);
}

TEST(mxEngineGestureTest, TranslateXGizmoFollowsTheObjectsCentreInTheFrameOfEachMoveAndRelease) {
    Case c = TranslateXCase();
    ExpectGizmoFollowsTheObjects(c);
}

// The release 30 pixels above the arrow line: the objects follow its projection onto the axis,
// and the hover at the release finds no handle.
TEST(mxEngineGestureTest, TranslateXReleaseAwayFromEveryArrowPutsTheNormalColoursBack) {
    Case c = TranslateXCase();
    c.release = c.scene->onArrow(X, 1.2, Vec2(0.0f, 30.0f));
    c.deltas = TranslateDeltas(*c.scene, X, c.press, c.later());
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));
    EXPECT_TRUE(ShowsHover(*c.scene->gizmo, -1));
    EXPECT_EQ(-1, c.scene->controller.getPickedAxeIndex(c.scene->gizmo.get()));
    ExpectObjectsCarriedBy(WorldsOf(c.scene->objects), run.start, c.deltas.back(), c.tolerance);
}

// A translate drag works from the press alone and the gizmo stays at depth 10, so its size and
// axes are the same in every frame: the gesture recorded whole before one frame ends bit for
// bit where the gesture spread over frames ends, and the single frame announces the gizmo
// once.
TEST(mxEngineGestureTest, TranslateXGestureRecordedBeforeOneFrameEndsBitForBitLikeTheSpreadOne) {
    Case spread = TranslateXCase();
    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(spread, run));

    Case whole = TranslateXCase();
    GestureScene& scene = *whole.scene;
    scene.hoverFrame(whole.press);
    scene.listener.events.clear();
    EXPECT_TRUE(scene.controller.setMousePressed(scene.viewCamera(), whole.press.x, whole.press.y,
                                                 csViewWidth, csViewHeight));
    for (const WindowPixel& move : whole.moves) {
        EXPECT_TRUE(scene.controller.setMousePos(move.x, move.y));
    }
    EXPECT_TRUE(scene.controller.setMouseReleased(whole.release.x, whole.release.y));
    // Nothing happens before the frame.
    EXPECT_TRUE(scene.listener.events.empty());
    scene.engine.updateFrame();

    EXPECT_EQ((Events{"translateStart", "translateEnd", "manipulated"}), scene.listener.events);
    EXPECT_EQ(std::vector<mxGizmoNode*>{scene.gizmo.get()}, scene.listener.manipulated);
    ASSERT_EQ(1u, scene.listener.ends.size());
    ASSERT_EQ(1u, spread.scene->listener.ends.size());
    EXPECT_TRUE(BitwiseEqual(scene.listener.ends[0], spread.scene->listener.ends[0]));
    for (std::size_t i = 0; i < scene.objects.size(); ++i) {
        SCOPED_TRACE("object " + std::to_string(i));
        EXPECT_TRUE(BitwiseEqual(scene.objects[i]->getWorldTransform(),
                                 spread.scene->objects[i]->getWorldTransform()));
        EXPECT_TRUE(BitwiseEqual(scene.objects[i]->getLocalTransform(),
                                 spread.scene->objects[i]->getLocalTransform()));
    }
    // And both are where the pick rays say.
    ExpectObjectsCarriedBy(WorldsOf(scene.objects), run.start, whole.deltas.back(),
                           whole.tolerance);
}

// A press off every handle still starts a gesture, but one without a gizmo: its moves do not
// even hover, so crossing the X arrow with the button down darkens nothing; the release hovers
// at its position. No object moves, no listener hears anything.
TEST(mxEngineGestureTest, PressOffEveryHandleThenDragAcrossTheXArrowMovesNothingAndOnlyHovers) {
    Case c = TranslateXCase();
    GestureScene& scene = *c.scene;
    const std::vector<Transform> start = WorldsOf(scene.objects);
    const Transform gizmoStart = scene.gizmo->getWorldTransform();
    // The top left corner of the view, far from the gizmo.
    const WindowPixel corner{10, 10};
    const std::vector<WindowPixel> across = {scene.onArrow(X, 0.3), scene.onArrow(X, 0.6),
                                             scene.onArrow(X, 0.9)};

    EXPECT_FALSE(scene.controller.setMousePressed(scene.viewCamera(), corner.x, corner.y,
                                                  csViewWidth, csViewHeight));
    scene.engine.updateFrame();
    for (const WindowPixel& move : across) {
        EXPECT_FALSE(scene.controller.setMousePos(move.x, move.y));
        scene.engine.updateFrame();
        EXPECT_TRUE(ShowsHover(*scene.gizmo, -1));
        EXPECT_EQ(-1, scene.controller.getPickedAxeIndex(scene.gizmo.get()));
    }
    EXPECT_FALSE(scene.controller.setMouseReleased(across.back().x, across.back().y));
    scene.engine.updateFrame();

    EXPECT_TRUE(ShowsHover(*scene.gizmo, X));
    EXPECT_EQ(X, scene.controller.getPickedAxeIndex(scene.gizmo.get()));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_TRUE(scene.listener.ends.empty());
    const std::vector<Transform> finals = WorldsOf(scene.objects);
    for (std::size_t i = 0; i < finals.size(); ++i) {
        EXPECT_TRUE(BitwiseEqual(finals[i], start[i])) << "object " << i;
    }
    EXPECT_TRUE(BitwiseEqual(scene.gizmo->getWorldTransform(), gizmoStart));
}

// With the Local orientation (the controller's default) and a single reference object below a
// parent turned 30 degrees about Z, the gizmo's X is the parent's: dragging its X arrow moves
// the object along (cos 30, sin 30, 0) in the world, that is along X of its parent.
TEST(mxEngineGestureTest, LocalOrientationDragsTheChildOfAParentTurnedThirtyDegreesAlongItsX) {
    Case c;
    c.scene = std::make_unique<GestureScene>(
        MakeStandardCamera(), Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(30.0))),
        Vec3(-3.0f, 1.0f, 0.0f));
    GestureScene& scene = *c.scene;
    mxMesh* object = scene.addObject(Vec3(-2.0f, 1.0f, 0.0f), true);
    scene.start(mxGizmoNode::GIZMO_TRANSLATE);
    ASSERT_EQ(mxGizmoController::Local, scene.controller.getOrientationReference());
    const Vec3d direction(std::cos(Radians(30.0)), std::sin(Radians(30.0)), 0.0);
    ASSERT_TRUE(VectorNear(mx::test::ColumnOf(scene.frame(), X), direction, 1e-6));

    SetArrowGesture(c, X, 0.6, {1.0, 1.3}, 1.1);
    const AxisDrag drag = PressAxisDrag(*scene.camera, MouseOfWindowPixel(c.press), scene.centre(),
                                        Rotation<double>(0.0, 0.0, 1.0, Radians(30.0)), X);
    ASSERT_TRUE(drag.found);
    const Vec3d moved =
        drag.pointUnder(*scene.camera, MouseOfWindowPixel(c.release)) - drag.pressPoint;
    const Vec3 worldStart = object->getWorldTransform().GetTranslate();
    const Vec3 localStart = object->getLocalTransform().GetTranslate();

    GestureRun run;
    ASSERT_NO_FATAL_FAILURE(RunGesture(c, run));

    const Vec3d displacement =
        ToDouble(object->getWorldTransform().GetTranslate()) - ToDouble(worldStart);
    // A real drag, by about half an arrow (three units), along the parent's X.
    EXPECT_GT(displacement.Length(), 2.0);
    EXPECT_TRUE(VectorNear(displacement, moved, csPositionTolerance));
    EXPECT_NEAR(0.0, displacement.Cross(direction).Length(), csPositionTolerance);
    EXPECT_NEAR(displacement.Length(), displacement.Dot(direction), csPositionTolerance);
    // In the parent's frame the object moved along X only.
    const Vec3d localMoved =
        ToDouble(object->getLocalTransform().GetTranslate()) - ToDouble(localStart);
    EXPECT_TRUE(
        VectorNear(localMoved, Vec3d(displacement.Length(), 0.0, 0.0), csPositionTolerance));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(
        VectorNear(ToDouble(scene.listener.ends[0].GetTranslate()), moved, csPositionTolerance));
}

// =============================================================================================
// Rotate about Z, standard view

TEST(mxEngineGestureTest, RotateZHoverDarkensTheZCircleAndThePressOnItIsAnsweredAtOnce) {
    Case c = RotateZCase();
    ExpectHoverThenPressAnsweredAtOnce(c);
}

TEST(mxEngineGestureTest, RotateZDragTurnsTheObjectsByTheSweptAngleRoundedToFiveDegrees) {
    Case c = RotateZCase();
    ExpectObjectsFollowTheDrag(c);
}

TEST(mxEngineGestureTest, RotateZGestureIsAnnouncedStartFirstThenEveryFrameThenEnd) {
    Case c = RotateZCase();
    ExpectAnnouncements(c);
}

TEST(mxEngineGestureTest, RotateZEndTransformationCarriesThePressPlacementsToTheFinalOnes) {
    Case c = RotateZCase();
    ExpectEndTransformation(c);
}

TEST(mxEngineGestureTest, RotateZReleaseOnTheCircleLeavesItDarkened) {
    Case c = RotateZCase();
    ExpectHoverAfterRelease(c);
}

TEST(mxEngineGestureTest, RotateZGizmoStaysAtTheObjectsCentreInEveryFrame) {
    Case c = RotateZCase();
    ExpectGizmoFollowsTheObjects(c);
}

// =============================================================================================
// Rotate about X, oblique camera

TEST(mxEngineGestureTest, RotateXHoverDarkensTheXCircleAndThePressOnItIsAnsweredAtOnce) {
    Case c = RotateXCase();
    ExpectHoverThenPressAnsweredAtOnce(c);
}

TEST(mxEngineGestureTest, RotateXDragTurnsTheObjectsByTheSweptAngleRoundedToFiveDegrees) {
    Case c = RotateXCase();
    ExpectObjectsFollowTheDrag(c);
}

TEST(mxEngineGestureTest, RotateXGestureIsAnnouncedStartFirstThenEveryFrameThenEnd) {
    Case c = RotateXCase();
    ExpectAnnouncements(c);
}

TEST(mxEngineGestureTest, RotateXEndTransformationCarriesThePressPlacementsToTheFinalOnes) {
    Case c = RotateXCase();
    ExpectEndTransformation(c);
}

TEST(mxEngineGestureTest, RotateXReleaseOnTheCircleLeavesItDarkened) {
    Case c = RotateXCase();
    ExpectHoverAfterRelease(c);
}

TEST(mxEngineGestureTest, RotateXGizmoStaysAtTheObjectsCentreInEveryFrame) {
    Case c = RotateXCase();
    ExpectGizmoFollowsTheObjects(c);
}

// =============================================================================================
// Scale along Y

TEST(mxEngineGestureTest, ScaleYHoverDarkensTheYHandleAndThePressOnItIsAnsweredAtOnce) {
    Case c = ScaleYCase();
    ExpectHoverThenPressAnsweredAtOnce(c);
}

TEST(mxEngineGestureTest, ScaleYDragOutwardsByOneAxisLengthDoublesTheObjectsAlongY) {
    Case c = ScaleYCase();
    ExpectObjectsFollowTheDrag(c);
}

TEST(mxEngineGestureTest, ScaleYGestureIsAnnouncedTranslateStartScaleStartThenEveryFrameThenEnd) {
    Case c = ScaleYCase();
    ExpectAnnouncements(c);
}

TEST(mxEngineGestureTest, ScaleYEndTransformationCarriesThePressPlacementsToTheFinalOnes) {
    Case c = ScaleYCase();
    ExpectEndTransformation(c);
}

TEST(mxEngineGestureTest, ScaleYReleaseBeyondTheTipPutsTheNormalColoursBack) {
    Case c = ScaleYCase();
    ExpectHoverAfterRelease(c);
}

TEST(mxEngineGestureTest, ScaleYGizmoStaysAtTheObjectsCentreInEveryFrame) {
    Case c = ScaleYCase();
    ExpectGizmoFollowsTheObjects(c);
}

// =============================================================================================
// Uniform scale by the X handle

TEST(mxEngineGestureTest, UniformScaleHoverDarkensTheXHandleAndThePressOnItIsAnsweredAtOnce) {
    Case c = UniformScaleXCase();
    ExpectHoverThenPressAnsweredAtOnce(c);
}

TEST(mxEngineGestureTest, UniformScaleDragInwardsByHalfAnAxisShrinksTheObjectsToTwoThirds) {
    Case c = UniformScaleXCase();
    ExpectObjectsFollowTheDrag(c);
}

TEST(mxEngineGestureTest, UniformScaleGestureIsAnnouncedTranslateStartScaleStartEveryFrameEnd) {
    Case c = UniformScaleXCase();
    ExpectAnnouncements(c);
}

TEST(mxEngineGestureTest, UniformScaleEndTransformationCarriesThePressPlacementsToTheFinalOnes) {
    Case c = UniformScaleXCase();
    ExpectEndTransformation(c);
}

TEST(mxEngineGestureTest, UniformScaleReleaseOnTheHandleLeavesItDarkened) {
    Case c = UniformScaleXCase();
    ExpectHoverAfterRelease(c);
}

TEST(mxEngineGestureTest, UniformScaleGizmoStaysAtTheObjectsCentreInEveryFrame) {
    Case c = UniformScaleXCase();
    ExpectGizmoFollowsTheObjects(c);
}

} // namespace
