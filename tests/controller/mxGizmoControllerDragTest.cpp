// Whole drags of the three drag controllers, driven by hand as the gizmo controller drives
// them: a hover at the press position, the press, several moves and the release, with a placed
// gizmo node, a host camera and normalised mouse positions. The gizmo is not re-placed between
// moves unless a test says so: the drag arithmetic works from what it stored at the press.
//
// What the objects should become is worked out here, in double, from the camera's geometry:
// the pick ray of each mouse position, the drag plane or circle plane it meets, the point of
// the axis under it, the angle it sweeps. Every object is checked against
// "its world transformation at the press, moved by the expected delta", and its local
// transformation against "its parent's inverse times that".

#include "controller/mxGizmoControllerRotate.h"
#include "controller/mxGizmoControllerScale.h"
#include "controller/mxGizmoControllerTranslate.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace {

using namespace mx;
using mx::test::Affine;
using mx::test::AxisDrag;
using mx::test::BitwiseEqual;
using mx::test::Circle;
using mx::test::CircleAbout;
using mx::test::csPi;
using mx::test::csPickTolerance;
using mx::test::csViewHeight;
using mx::test::csViewWidth;
using mx::test::LocalPositionBelow;
using mx::test::MakeLookAtCamera;
using mx::test::MakeObject;
using mx::test::MakeStandardCamera;
using mx::test::MapsNear;
using mx::test::MatrixNear;
using mx::test::MeanPosition;
using mx::test::MouseAt;
using mx::test::MouseAtPixel;
using mx::test::PixelOf;
using mx::test::PlacedGizmo;
using mx::test::PressAxisDrag;
using mx::test::RecordingListener;
using mx::test::Rotation;
using mx::test::ScaleFactor;
using mx::test::ScaleTriple;
using mx::test::ScalingAlong;
using mx::test::ToDouble;
using mx::test::ToFloat;
using mx::test::UnitAxis;
using mx::test::VectorNear;
using mx::test::WorldsOf;

using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Vec3d = Wm4::Vector3<double>;
using Mat3 = Wm4::Matrix3<float>;
using Mat3d = Wm4::Matrix3<double>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

// Positions are a few units from the origin: a ten-thousandth is far above float rounding
// there and far below anything a drag could get wrong. Long drags scale it with their length.
constexpr double csPositionTolerance = 1e-4;
// Rotations and their positions: entries of size 1 to 10 after a handful of float operations.
constexpr double csRotationTolerance = 1e-5;
// Matrix entries of the objects (rotations, scales up to 2): a few ulps of float.
constexpr double csMatrixTolerance = 1e-5;

// A few pixels across the axis line, so that the pick ray misses the axis and the choice of
// the drag plane matters.
const Vec2 csAside(2.0f, -3.0f);

bool Inside(const Vec2& mouse) {
    return mouse.X() >= 0.0f && mouse.X() <= 1.0f && mouse.Y() >= 0.0f && mouse.Y() <= 1.0f;
}

// ---------------------------------------------------------------------------------------------
// Cameras

// An orthographic camera at eye looking at target with +Y up, showing a box 16 units wide and
// high: round numbers, and the gizmo's 60 pixels are then 4.8 units everywhere.
mxPointer<mxCamera> MakeOrthographicCamera(const Vec3& eye, const Vec3& target) {
    mxPointer<mxCamera> camera = new mxCamera(false);
    camera->lookAt(eye, target, Vec3(0.0f, 1.0f, 0.0f));
    camera->setFrustum(-8.0f, 8.0f, -8.0f, 8.0f, 1.0f, 100.0f);
    return camera;
}

// ---------------------------------------------------------------------------------------------
// The scene

// Three reference objects about centre: two on their own and one below a parent node that is
// moved and turned, so that the child's local transformation differs from its world one. The
// offsets sum to zero, so the objects' centre is centre; they lie within two units of it, well
// inside the gizmo, which is several units long.
struct Scene {
    mxPointer<mxNode> parent;
    std::vector<mxPointer<mxMesh>> objects;
    PlacedGizmo gizmo;
    Mat3 frame;

    Scene(mxGizmoNode::GizmoMode mode, const Vec3& centre, const mxCamera& camera,
          const Mat3& gizmoFrame = Mat3::IDENTITY)
        : parent(MakeParent()), objects(MakeObjects(centre, parent.get())),
          gizmo(mode, References(objects)), frame(gizmoFrame) {
        place(camera);
    }

    // Frames the gizmo around the objects as the per-frame controller would.
    void place(const mxCamera& camera) { gizmo.place(camera, frame); }

    mxGizmoNode* node() const { return gizmo.node; }

    // The objects' centre, from their world positions (their bounds have no radius).
    Vec3d centre() const { return MeanPosition(WorldsOf(objects)); }

    // The tip of the gizmo's axis in world space, as the gizmo stands: its length carries the
    // screen-constant size.
    Vec3d axisTip(int axis) const {
        return ToDouble(node()->getWorldTransform().ApplyForward(
            UnitAxis(static_cast<unsigned int>(axis)), true));
    }

private:
    static mxPointer<mxNode> MakeParent() {
        mxPointer<mxNode> node = new mxNode;
        node->editLocalTransform(true).SetRotate(Rotation(1.0f, 2.0f, 2.0f, 0.7f));
        node->editLocalTransform(true).SetTranslate(Vec3(2.0f, -1.0f, 3.0f));
        node->UpdateGS();
        return node;
    }

    static std::vector<mxPointer<mxMesh>> MakeObjects(const Vec3& centre, mxNode* parentNode) {
        std::vector<mxPointer<mxMesh>> made;
        made.push_back(MakeObject(centre + Vec3(1.5f, 0.5f, 0.5f)));
        made.push_back(MakeObject(centre + Vec3(-1.0f, 1.0f, -0.5f)));
        // The child's local position puts it at centre + (-0.5, -1.5, 0) in the world.
        made.push_back(MakeObject(
            LocalPositionBelow(*parentNode, centre + Vec3(-0.5f, -1.5f, 0.0f)), parentNode));
        return made;
    }

    static std::vector<mxSpatial*> References(const std::vector<mxPointer<mxMesh>>& meshes) {
        std::vector<mxSpatial*> references;
        for (const auto& mesh : meshes) {
            references.push_back(mesh.get());
        }
        return references;
    }
};

// The objects' transformations at one moment.
struct Snapshot {
    std::vector<Transform> worlds;
    std::vector<Transform> locals;
};

Snapshot Take(const Scene& scene) {
    Snapshot snapshot;
    for (const auto& object : scene.objects) {
        snapshot.worlds.push_back(object->getWorldTransform());
        snapshot.locals.push_back(object->getLocalTransform());
    }
    return snapshot;
}

// Every object's world transformation is (m, t) times the one it had at the press, and its
// local transformation is its parent's inverse times that (the world one without a parent).
void ExpectObjectsMovedBy(const Scene& scene, const Snapshot& start, const Mat3d& m, const Vec3d& t,
                          double positionTolerance) {
    for (std::size_t i = 0; i < scene.objects.size(); ++i) {
        SCOPED_TRACE("object " + std::to_string(i));
        const mxMesh& object = *scene.objects[i];
        const Mat3d startMatrix = ToDouble(start.worlds[i].GetFullMatrix());
        const Vec3d startTranslate = ToDouble(start.worlds[i].GetTranslate());
        const Mat3d worldMatrix = m * startMatrix;
        const Vec3d worldTranslate = m * startTranslate + t;
        EXPECT_TRUE(MatrixNear(object.getWorldTransform().GetFullMatrix(), ToFloat(worldMatrix),
                               csMatrixTolerance));
        EXPECT_TRUE(VectorNear(object.getWorldTransform().GetTranslate(), ToFloat(worldTranslate),
                               positionTolerance));

        Mat3d localMatrix = worldMatrix;
        Vec3d localTranslate = worldTranslate;
        if (const mxNode* parent = object.getParent()) {
            const Mat3d inverse = ToDouble(parent->getWorldTransform().GetFullMatrix()).Inverse();
            localMatrix = inverse * worldMatrix;
            localTranslate =
                inverse * (worldTranslate - ToDouble(parent->getWorldTransform().GetTranslate()));
        }
        EXPECT_TRUE(MatrixNear(object.getLocalTransform().GetFullMatrix(), ToFloat(localMatrix),
                               csMatrixTolerance));
        EXPECT_TRUE(VectorNear(object.getLocalTransform().GetTranslate(), ToFloat(localTranslate),
                               positionTolerance));
    }
}

void ExpectObjectsMovedBy(const Scene& scene, const Snapshot& start, const Transform& delta,
                          double positionTolerance) {
    ExpectObjectsMovedBy(scene, start, ToDouble(delta.GetFullMatrix()),
                         ToDouble(delta.GetTranslate()), positionTolerance);
}

// What a drag leaves behind.
struct DragResult {
    Events events;
    std::vector<Transform> ends;
    Snapshot objects;
};

// Re-places the gizmo after every move, as the per-frame controller would, or leaves it as it
// stood at the press.
enum class Framing { KeepPressFrame, ReframeEveryMove };

// ---------------------------------------------------------------------------------------------
// Translate drags

// The mouse over the point along arrow lengths from the gizmo's centre on axis, moved by
// aside pixels.
Vec2 OnArrow(const Scene& scene, const mxCamera& camera, int axis, float along,
             const Vec2& aside = Vec2(0.0f, 0.0f)) {
    const Vec3d centre = ToDouble(scene.node()->getGizmoPosition());
    const Vec3d point = centre + (scene.axisTip(axis) - centre) * static_cast<double>(along);
    return MouseAtPixel(PixelOf(camera, ToFloat(point)) + aside);
}

// Hover over press, press, one move per entry of moves and the release at the last one: after
// every move each object has moved by the translation along the axis from the press point to
// the point under the mouse; the End transformation is that translation.
void DragTranslate(Scene& scene, const mxCamera& camera, int axis, const Vec2& press,
                   const std::vector<Vec2>& moves, DragResult* result = nullptr,
                   Framing framing = Framing::KeepPressFrame) {
    ASSERT_FALSE(moves.empty());
    ASSERT_TRUE(Inside(press));
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners{&listener};
    mxGizmoControllerTranslate controller(listeners);
    mxGizmoNode* node = scene.node();

    ASSERT_TRUE(controller.updateTranslateHover(node, &camera, press, csPickTolerance, csViewWidth,
                                                csViewHeight));
    ASSERT_EQ(axis, controller.getPickedAxe());

    const Snapshot start = Take(scene);
    const AxisDrag expected =
        PressAxisDrag(camera, press, scene.centre(), ToDouble(scene.frame), axis);
    ASSERT_TRUE(expected.found);
    controller.setMousePressed(node, &camera, press);
    EXPECT_EQ(Events{"translateStart"}, listener.events);
    ASSERT_EQ(axis, controller.getPickedAxe());

    const double arrowLength = (scene.axisTip(axis) - scene.centre()).Length();
    Vec3d moved(0.0, 0.0, 0.0);
    double tolerance = csPositionTolerance;
    for (std::size_t k = 0; k < moves.size(); ++k) {
        SCOPED_TRACE("move " + std::to_string(k));
        ASSERT_TRUE(Inside(moves[k]));
        moved = expected.pointUnder(camera, moves[k]) - expected.pressPoint;
        // The gesture must really drag: at least a tenth of the arrow.
        ASSERT_GT(moved.Length(), 0.1 * arrowLength);
        tolerance = csPositionTolerance * std::max(1.0, moved.Length());
        EXPECT_TRUE(controller.setMousePos(node, &camera, moves[k]));
        ExpectObjectsMovedBy(scene, start, Mat3d::IDENTITY, moved, tolerance);
        if (framing == Framing::ReframeEveryMove) {
            scene.place(camera);
        }
    }

    controller.setMouseReleased(node, &camera, moves.back());
    EXPECT_EQ((Events{"translateStart", "translateEnd"}), listener.events);
    EXPECT_EQ(-1, controller.getPickedAxe());
    ExpectObjectsMovedBy(scene, start, Mat3d::IDENTITY, moved, tolerance);
    if (listener.ends.size() == 1u) {
        EXPECT_TRUE(listener.ends[0].IsRSMatrix());
        EXPECT_TRUE(MapsNear(listener.ends[0], Affine(Mat3d::IDENTITY, moved), tolerance));
    }
    if (result) {
        *result = DragResult{listener.events, listener.ends, Take(scene)};
    }
}

// The same gesture given in arrow lengths from the centre; every move is aside pixels off the
// axis line.
void DragTranslateAlong(Scene& scene, const mxCamera& camera, int axis, float pressAlong,
                        const std::vector<float>& movesAlong, const Vec2& aside = csAside,
                        DragResult* result = nullptr, Framing framing = Framing::KeepPressFrame) {
    std::vector<Vec2> moves;
    for (float along : movesAlong) {
        moves.push_back(OnArrow(scene, camera, axis, along, aside));
    }
    DragTranslate(scene, camera, axis, OnArrow(scene, camera, axis, pressAlong), moves, result,
                  framing);
}

// ---------------------------------------------------------------------------------------------
// Scale drags

// Hover over the handle at pressAlong, press, moves to movesAlong (arrow lengths from the
// centre, on the axis line), release at the last: after every move the objects are scaled
// about their centre, in the gizmo's frame, by the factor of the distance dragged along the
// axis in arrow lengths (1 + s outwards, 1 / (1 - s) inwards); the End transformation is that
// scaling. The scale triple of the last move must be finalScale, the gesture's purpose.
void DragScale(Scene& scene, const mxCamera& camera, int axis, float pressAlong,
               const std::vector<float>& movesAlong, const Vec3d& finalScale) {
    ASSERT_FALSE(movesAlong.empty());
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners{&listener};
    mxGizmoControllerScale controller(listeners);
    mxGizmoNode* node = scene.node();
    const bool uniform = node->shouldUseUniformScale();

    const Vec2 press = OnArrow(scene, camera, axis, pressAlong);
    ASSERT_TRUE(Inside(press));
    ASSERT_TRUE(controller.updateScaleHover(node, &camera, press, csPickTolerance, csViewWidth,
                                            csViewHeight));
    ASSERT_EQ(axis, controller.getPickedAxe());

    const Snapshot start = Take(scene);
    const Vec3d centre = scene.centre();
    const Mat3d frame = ToDouble(scene.frame);
    const AxisDrag expected = PressAxisDrag(camera, press, centre, frame, axis);
    ASSERT_TRUE(expected.found);
    const Vec3d arrow = scene.axisTip(axis) - centre;
    controller.setMouseScalePressed(node, &camera, press);
    EXPECT_EQ((Events{"translateStart", "scaleStart"}), listener.events);

    Vec3d scale(1.0, 1.0, 1.0);
    Mat3d m = Mat3d::IDENTITY;
    Vec3d t(0.0, 0.0, 0.0);
    for (std::size_t k = 0; k < movesAlong.size(); ++k) {
        SCOPED_TRACE("move " + std::to_string(k));
        const Vec2 mouse = OnArrow(scene, camera, axis, movesAlong[k]);
        ASSERT_TRUE(Inside(mouse));
        scale =
            ScaleTriple(axis, ScaleFactor(expected.lengthsDragged(camera, mouse, arrow)), uniform);
        // Scaling along the frame's columns about the centre.
        m = ScalingAlong(frame, scale);
        t = centre - m * centre;
        EXPECT_TRUE(controller.setMouseScalePos(node, &camera, mouse));
        ExpectObjectsMovedBy(scene, start, m, t, csPositionTolerance);
        EXPECT_TRUE(VectorNear(node->getScaleReference(), ToFloat(scale), csMatrixTolerance));
    }
    EXPECT_TRUE(VectorNear(scale, finalScale, 1e-4));

    controller.setMouseScaleReleased(node, &camera,
                                     OnArrow(scene, camera, axis, movesAlong.back()));
    EXPECT_EQ((Events{"translateStart", "scaleStart", "scaleEnd"}), listener.events);
    ExpectObjectsMovedBy(scene, start, m, t, csPositionTolerance);
    if (listener.ends.size() == 1u) {
        EXPECT_TRUE(MapsNear(listener.ends[0], Affine(m, t), csPositionTolerance));
    }
}

// ---------------------------------------------------------------------------------------------
// Rotate drags

// The circle about axis of the gizmo as the scene frames it.
Circle CircleOf(const Scene& scene, int axis) {
    const Vec3d centre = ToDouble(scene.node()->getGizmoPosition());
    return CircleAbout(centre, ToDouble(scene.frame), axis,
                       (scene.axisTip(axis) - centre).Length());
}

// The mouse over the point of the circle at degrees from e1.
Vec2 OnCircle(const Circle& circle, const mxCamera& camera, double degrees) {
    return MouseAt(camera, ToFloat(circle.pointAt(degrees)));
}

// Hover over the circle about axis at pressDegrees from its point nearest the eye, press,
// moves to the circle's points swept by sweepsDegrees from the press, release at the last:
// after every move the objects are turned by the swept angle rounded to 5 degrees, about the
// axis through the gizmo's position, as ComputeRotation gives it; so is the End
// transformation. The last sweep, rounded, must be finalDegrees (modulo a full turn).
void DragRotate(Scene& scene, const mxCamera& camera, int axis,
                const std::vector<double>& sweepsDegrees, double finalDegrees,
                double pressDegrees = 0.0, DragResult* result = nullptr,
                Framing framing = Framing::KeepPressFrame) {
    ASSERT_FALSE(sweepsDegrees.empty());
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners{&listener};
    mxGizmoControllerRotate controller(listeners);
    mxGizmoNode* node = scene.node();
    const Circle circle = CircleOf(scene, axis);
    const double pressAngle = circle.frontDegrees(camera) + pressDegrees;

    const Vec2 press = OnCircle(circle, camera, pressAngle);
    ASSERT_TRUE(Inside(press));
    ASSERT_TRUE(controller.updateRotateHover(node, &camera, press, csPickTolerance, csViewWidth,
                                             csViewHeight));
    ASSERT_EQ(axis, controller.getPickedAxe());

    const Snapshot start = Take(scene);
    const Vec3d pressPoint = circle.onPlane(camera, press);
    const Vec3 axisF = ToFloat(circle.axis);
    const Vec3 centreF = node->getGizmoPosition();
    controller.setMousePressed(node, &camera, press, csViewWidth, csViewHeight);
    EXPECT_EQ(Events{"rotateStart"}, listener.events);
    ASSERT_EQ(axis, controller.getPickedAxe());

    Transform turn;
    Vec2 mouse = press;
    double angle = 0.0;
    for (std::size_t k = 0; k < sweepsDegrees.size(); ++k) {
        SCOPED_TRACE("move " + std::to_string(k));
        mouse = OnCircle(circle, camera, pressAngle + sweepsDegrees[k]);
        ASSERT_TRUE(Inside(mouse));
        angle = circle.sweptAngle(camera, pressPoint, mouse);
        mxGizmoNode::ComputeRotation(axisF, static_cast<float>(angle), centreF, turn);
        EXPECT_TRUE(controller.setMousePos(node, &camera, mouse, csViewWidth, csViewHeight));
        ExpectObjectsMovedBy(scene, start, turn, csRotationTolerance);
        if (framing == Framing::ReframeEveryMove) {
            scene.place(camera);
        }
    }
    EXPECT_NEAR(0.0, std::remainder(angle * 180.0 / csPi - finalDegrees, 360.0), 1e-9);

    controller.setMouseReleased(node, &camera, mouse, csViewWidth, csViewHeight);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), listener.events);
    EXPECT_EQ(-1, controller.getPickedAxe());
    ExpectObjectsMovedBy(scene, start, turn, csRotationTolerance);
    if (listener.ends.size() == 1u) {
        EXPECT_TRUE(MapsNear(listener.ends[0], turn, csRotationTolerance));
    }
    if (result) {
        *result = DragResult{listener.events, listener.ends, Take(scene)};
    }
}

// Both drags left the objects and told the listeners the same, bit for bit.
void ExpectSameBits(const DragResult& a, const DragResult& b) {
    EXPECT_EQ(a.events, b.events);
    ASSERT_EQ(a.ends.size(), b.ends.size());
    for (std::size_t i = 0; i < a.ends.size(); ++i) {
        EXPECT_TRUE(BitwiseEqual(a.ends[i], b.ends[i]));
    }
    ASSERT_EQ(a.objects.worlds.size(), b.objects.worlds.size());
    for (std::size_t i = 0; i < a.objects.worlds.size(); ++i) {
        SCOPED_TRACE("object " + std::to_string(i));
        EXPECT_TRUE(BitwiseEqual(a.objects.worlds[i], b.objects.worlds[i]));
        EXPECT_TRUE(BitwiseEqual(a.objects.locals[i], b.objects.locals[i]));
    }
}

// The cameras of the tests. The oblique ones look at the origin from a corner, so that all
// three axes and all three circles are well open on screen.
const Vec3 csOrigin(0.0f, 0.0f, 0.0f);
const Vec3 csObliqueEye(7.0f, 5.0f, 9.0f);
const Vec3 csRotateEye(6.0f, 5.0f, 8.0f);
// Almost along +X: the X arrow is seen nearly end-on, a few pixels long.
const Vec3 csEndOnEye(20.0f, 0.5f, 0.3f);

constexpr int X = 0;
constexpr int Y = 1;
constexpr int Z = 2;

// =============================================================================================
// Translate

// The standard view's scene sits up and right of the centre of the view, so that the Z arrow
// (pointing at the eye) shows as a short slanted segment and not as a dot.
const Vec3 csStandardCentre(1.0f, 2.0f, 0.0f);

TEST(mxGizmoControllerDragTest, TranslateAlongXInTheStandardViewFollowsTheMouse) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csStandardCentre, *camera);
    DragTranslateAlong(scene, *camera, X, 0.6f, {1.1f, 1.4f, -0.5f, 0.3f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongYInTheStandardViewFollowsTheMouse) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csStandardCentre, *camera);
    DragTranslateAlong(scene, *camera, Y, 0.6f, {0.9f, 1.1f, -1.2f, -0.4f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongZInTheStandardViewFollowsTheMouse) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, Vec3(3.0f, 2.0f, 0.0f), *camera);
    DragTranslateAlong(scene, *camera, Z, 0.6f, {1.0f, -1.5f, 0.3f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongXFromAnObliqueCameraFollowsTheMouse) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragTranslateAlong(scene, *camera, X, 0.6f, {1.0f, 1.15f, -1.2f, 0.2f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongYFromAnObliqueCameraFollowsTheMouse) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragTranslateAlong(scene, *camera, Y, 0.6f, {1.0f, 1.2f, -1.0f, -0.2f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongZFromAnObliqueCameraFollowsTheMouse) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragTranslateAlong(scene, *camera, Z, 0.6f, {1.0f, 1.2f, -0.7f, 0.3f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongZOfATurnedGizmoFromAnObliqueCameraFollowsTheMouse) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera, Rotation(1.0f, 1.0f, 0.0f, 0.5f));
    DragTranslateAlong(scene, *camera, Z, 0.6f, {1.0f, 1.2f, -0.7f, 0.3f});
}

// The arrow is a few pixels long on screen: a move of a dozen pixels drags the objects most of
// the way to the eye. No step aside, the plane is seen at a grazing angle.
TEST(mxGizmoControllerDragTest, TranslateAlongXSeenAlmostEndOnDragsFarForAFewPixels) {
    const auto camera = MakeLookAtCamera(csEndOnEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragTranslateAlong(scene, *camera, X, 0.7f, {1.0f, 1.2f, 1.4f}, Vec2(0.0f, 0.0f));
}

TEST(mxGizmoControllerDragTest, TranslateAlongXInAFrontOrthographicViewFollowsTheMouse) {
    const auto camera = MakeOrthographicCamera(Vec3(0.0f, 0.0f, 10.0f), csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, Vec3(-1.0f, 1.0f, 0.0f), *camera);
    DragTranslateAlong(scene, *camera, X, 0.6f, {1.2f, 0.9f, -0.7f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongYInAFrontOrthographicViewFollowsTheMouse) {
    const auto camera = MakeOrthographicCamera(Vec3(0.0f, 0.0f, 10.0f), csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, Vec3(-1.0f, 1.0f, 0.0f), *camera);
    DragTranslateAlong(scene, *camera, Y, 0.6f, {1.2f, -0.9f, -0.3f});
}

TEST(mxGizmoControllerDragTest, TranslateAlongZInAnObliqueOrthographicViewFollowsTheMouse) {
    const auto camera = MakeOrthographicCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragTranslateAlong(scene, *camera, Z, 0.6f, {1.2f, -0.9f, 0.3f});
}

// The bounds of the view are inside it: a move to its very right edge is a move.
TEST(mxGizmoControllerDragTest, TranslateAlongXToTheRightEdgeOfTheStandardViewIsAMove) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csStandardCentre, *camera);
    const Vec2 press = OnArrow(scene, *camera, X, 0.6f);
    DragTranslate(scene, *camera, X, press,
                  {OnArrow(scene, *camera, X, 1.2f), Vec2(1.0f, press.Y())});
}

// Back exactly at the press point the move is refused: the objects stay where the previous
// move put them, and that previous translation is what the End callback passes.
TEST(mxGizmoControllerDragTest, TranslateBackExactlyToThePressPointLeavesTheObjectsWhereTheyWere) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_TRANSLATE, csStandardCentre, *camera);
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners{&listener};
    mxGizmoControllerTranslate controller(listeners);
    mxGizmoNode* node = scene.node();
    const Vec2 press = OnArrow(scene, *camera, X, 0.6f);
    const Vec2 away = OnArrow(scene, *camera, X, 1.3f, csAside);
    ASSERT_TRUE(controller.updateTranslateHover(node, camera.get(), press, csPickTolerance,
                                                csViewWidth, csViewHeight));
    const Snapshot start = Take(scene);
    const AxisDrag expected = PressAxisDrag(*camera, press, scene.centre(), Mat3d::IDENTITY, X);
    const Vec3d moved = expected.pointUnder(*camera, away) - expected.pressPoint;
    controller.setMousePressed(node, camera.get(), press);
    ASSERT_TRUE(controller.setMousePos(node, camera.get(), away));
    const Snapshot afterAway = Take(scene);

    EXPECT_FALSE(controller.setMousePos(node, camera.get(), press));
    controller.setMouseReleased(node, camera.get(), press);

    const Snapshot atEnd = Take(scene);
    for (std::size_t i = 0; i < atEnd.worlds.size(); ++i) {
        EXPECT_TRUE(BitwiseEqual(atEnd.worlds[i], afterAway.worlds[i])) << "object " << i;
        EXPECT_TRUE(BitwiseEqual(atEnd.locals[i], afterAway.locals[i])) << "object " << i;
    }
    ExpectObjectsMovedBy(scene, start, Mat3d::IDENTITY, moved, csPositionTolerance);
    ASSERT_EQ(1u, listener.ends.size());
    EXPECT_TRUE(MapsNear(listener.ends[0], Affine(Mat3d::IDENTITY, moved), csPositionTolerance));
}

// The drag works from the press: re-framing the gizmo around the moved objects after every
// move, as the per-frame controller does, changes no bit of the result.
TEST(mxGizmoControllerDragTest, TranslateFromAnObliqueCameraIsTheSameWhenTheGizmoIsReframed) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene still(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    Scene reframed(mxGizmoNode::GIZMO_TRANSLATE, csOrigin, *camera);
    DragResult stillResult;
    DragResult reframedResult;
    DragTranslateAlong(still, *camera, Y, 0.6f, {1.0f, 1.2f, -0.8f}, csAside, &stillResult);
    DragTranslateAlong(reframed, *camera, Y, 0.6f, {1.0f, 1.2f, -0.8f}, csAside, &reframedResult,
                       Framing::ReframeEveryMove);
    ExpectSameBits(stillResult, reframedResult);
}

// =============================================================================================
// Scale
//
// The standard view, the gizmo 60 pixels long at depth 10: one arrow length is 6 units. The
// scene sits left of centre for drags outwards and right of centre for long drags inwards, so
// that the whole gesture stays in the view; off the horizontal line, so that the Z handle does
// not lie along the X handle on screen.

TEST(mxGizmoControllerDragTest, ScaleXOutwardsByOneArrowLengthInTheStandardViewDoublesAlongX) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_SCALE, Vec3(-3.0f, 3.0f, 0.0f), *camera);
    DragScale(scene, *camera, X, 0.4f, {0.7f, 1.1f, 1.4f}, Vec3d(2.0, 1.0, 1.0));
}

TEST(mxGizmoControllerDragTest, ScaleXInwardsByOneArrowLengthInTheStandardViewHalvesAlongX) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_SCALE, Vec3(-3.0f, 3.0f, 0.0f), *camera);
    DragScale(scene, *camera, X, 0.4f, {0.2f, -0.3f, -0.6f}, Vec3d(0.5, 1.0, 1.0));
}

TEST(mxGizmoControllerDragTest, ScaleXInwardsByThreeArrowLengthsInTheStandardViewQuartersAlongX) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_SCALE, Vec3(6.5f, -3.0f, 0.0f), *camera);
    DragScale(scene, *camera, X, 0.4f, {-0.6f, -1.6f, -2.6f}, Vec3d(0.25, 1.0, 1.0));
}

TEST(mxGizmoControllerDragTest, UniformScaleXOutwardsByOneArrowLengthDoublesEverywhere) {
    const auto camera = MakeStandardCamera();
    Scene scene(mxGizmoNode::GIZMO_SCALE, Vec3(-3.0f, 3.0f, 0.0f), *camera);
    scene.node()->setUseUniformScale(true);
    DragScale(scene, *camera, X, 0.4f, {0.9f, 1.4f}, Vec3d(2.0, 2.0, 2.0));
}

// The scaling runs along the gizmo's own X, not the world's.
TEST(mxGizmoControllerDragTest, ScaleXOfATurnedGizmoFromAnObliqueCameraDoublesAlongItsX) {
    const auto camera = MakeLookAtCamera(csObliqueEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_SCALE, csOrigin, *camera, Rotation(0.0f, 1.0f, 0.0f, 0.4f));
    DragScale(scene, *camera, X, 0.25f, {0.6f, 1.0f, 1.25f}, Vec3d(2.0, 1.0, 1.0));
}

// =============================================================================================
// Rotate
//
// From (6, 5, 8) all three circles are open ellipses. The press is on the circle's point
// nearest the eye; the moves pass through angles off the 5-degree grid, which round.

TEST(mxGizmoControllerDragTest, RotateThirtyDegreesAboutXFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, X, {12.0, 31.0, 30.0}, 30.0);
}

TEST(mxGizmoControllerDragTest, RotateNinetyDegreesAboutXFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, X, {17.0, 43.0, 88.0, 90.0}, 90.0);
}

TEST(mxGizmoControllerDragTest, RotateHalfATurnAboutXFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, X, {-22.0, 61.0, 118.0, 151.0, 180.0}, 180.0);
}

TEST(mxGizmoControllerDragTest, RotateThirtyDegreesAboutYFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Y, {12.0, 31.0, 30.0}, 30.0);
}

TEST(mxGizmoControllerDragTest, RotateNinetyDegreesAboutYFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Y, {17.0, 43.0, 88.0, 90.0}, 90.0);
}

TEST(mxGizmoControllerDragTest, RotateHalfATurnAboutYFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Y, {-22.0, 61.0, 118.0, 151.0, 180.0}, 180.0);
}

TEST(mxGizmoControllerDragTest, RotateThirtyDegreesAboutZFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Z, {12.0, 31.0, 30.0}, 30.0);
}

TEST(mxGizmoControllerDragTest, RotateNinetyDegreesAboutZFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Z, {17.0, 43.0, 88.0, 90.0}, 90.0);
}

TEST(mxGizmoControllerDragTest, RotateHalfATurnAboutZFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragRotate(scene, *camera, Z, {-22.0, 61.0, 118.0, 151.0, 180.0}, 180.0);
}

// The rotation about the gizmo's own axis, of a scene away from the origin.
TEST(mxGizmoControllerDragTest, RotateNinetyDegreesAboutZOfATurnedGizmoFromAnObliqueCamera) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, Vec3(1.0f, -1.0f, 0.5f), *camera,
                Rotation(1.0f, 0.0f, 1.0f, 0.3f));
    DragRotate(scene, *camera, Z, {17.0, 43.0, 88.0, 90.0}, 90.0);
}

// Unlike a translate drag, a rotate drag back at the press point applies its move: the angle
// rounds to 0 and every object's world transformation is put back exactly as it was, and so is
// the local one of the objects without a parent; the End callback passes the identity. The
// child's local transformation is worked out again as its parent's inverse times its world one,
// which float rounding does not undo bit for bit: it comes back to within rounding.
TEST(mxGizmoControllerDragTest, RotateAwayAndBackToThePressPointRestoresTheObjectsBitForBit) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene scene(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    RecordingListener listener;
    std::vector<mx3DManipulatorMotionListener*> listeners{&listener};
    mxGizmoControllerRotate controller(listeners);
    mxGizmoNode* node = scene.node();
    const Circle circle = CircleOf(scene, Y);
    const double front = circle.frontDegrees(*camera);
    const Vec2 press = OnCircle(circle, *camera, front);
    ASSERT_TRUE(controller.updateRotateHover(node, camera.get(), press, csPickTolerance,
                                             csViewWidth, csViewHeight));
    ASSERT_EQ(Y, controller.getPickedAxe());
    const Snapshot start = Take(scene);
    controller.setMousePressed(node, camera.get(), press, csViewWidth, csViewHeight);
    for (double sweep : {40.0, 90.0, 135.0}) {
        ASSERT_TRUE(controller.setMousePos(node, camera.get(),
                                           OnCircle(circle, *camera, front + sweep), csViewWidth,
                                           csViewHeight));
    }
    ASSERT_FALSE(BitwiseEqual(scene.objects[0]->getWorldTransform(), start.worlds[0]));

    EXPECT_TRUE(controller.setMousePos(node, camera.get(), press, csViewWidth, csViewHeight));
    controller.setMouseReleased(node, camera.get(), press, csViewWidth, csViewHeight);

    for (std::size_t i = 0; i < scene.objects.size(); ++i) {
        const mxMesh& object = *scene.objects[i];
        EXPECT_TRUE(BitwiseEqual(object.getWorldTransform(), start.worlds[i])) << "object " << i;
        if (object.getParent()) {
            EXPECT_TRUE(MapsNear(object.getLocalTransform(), start.locals[i], 1e-6))
                << "object " << i;
        } else {
            EXPECT_TRUE(BitwiseEqual(object.getLocalTransform(), start.locals[i]))
                << "object " << i;
        }
    }
    ASSERT_EQ(1u, listener.ends.size());
    EXPECT_TRUE(BitwiseEqual(listener.ends[0], Transform()));
}

// The drag works from the press: re-framing the gizmo after every move changes no bit.
TEST(mxGizmoControllerDragTest, RotateFromAnObliqueCameraIsTheSameWhenTheGizmoIsReframed) {
    const auto camera = MakeLookAtCamera(csRotateEye, csOrigin);
    Scene still(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    Scene reframed(mxGizmoNode::GIZMO_ROTATE, csOrigin, *camera);
    DragResult stillResult;
    DragResult reframedResult;
    DragRotate(still, *camera, X, {17.0, 43.0, 88.0}, 90.0, 0.0, &stillResult);
    DragRotate(reframed, *camera, X, {17.0, 43.0, 88.0}, 90.0, 0.0, &reframedResult,
               Framing::ReframeEveryMove);
    ExpectSameBits(stillResult, reframedResult);
}

} // namespace
