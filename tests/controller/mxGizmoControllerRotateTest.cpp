// Tests for the rotate drag controller: which circle a hover picks (only the half of a circle
// that faces the eye counts, ties go to the later axis), what the press, the moves and the
// release announce, the angle a drag sweeps around the gizmo's centre (measured from the press,
// rounded to 5 degrees), the turning of the reference objects about the gizmo's position, the
// squaring of the gizmo's own orientation at the release, and the warnings for a gizmo that is
// not held as rotation and scale.
#include "controller/mxGizmoControllerRotate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxPickingHelpers.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeTranslate.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "system/mxLog.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxLogCapture.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace mx;
using test::BitwiseEqual;
using test::ColorIs;
using test::csPi;
using test::csPickTolerance;
using test::csViewHeight;
using test::csViewWidth;
using test::HoveredColor;
using test::MakeObject;
using test::MakeStandardCamera;
using test::MapsNear;
using test::MarkCounter;
using test::MatrixNear;
using test::MeetPlane;
using test::MouseAt;
using test::MouseAtPixel;
using test::NormalColor;
using test::PickRay;
using test::PickRayOf;
using test::PixelOf;
using test::PlacedGizmo;
using test::Radians;
using test::RecordingListener;
using test::Rotation;
using test::ToDouble;
using test::VectorNear;
using Vec2 = Wm4::Vector2<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

// A circle of the gizmo has radius 1 in the gizmo's frame, which the standard view sizes to
// 60 pixels; a gizmo centred in the plane z = 0 sits at depth 10, where its Z circle projects
// to a ring of exactly that radius around the projected centre.
constexpr float csRingRadius = 60.0f;
// Where the drag tests press and move: well inside the ring, well off the centre.
constexpr float csDragRadius = 40.0f;
// Object positions stay within a few units: a few float ulps of that, with room for the
// cosine and sine of the snapped angle.
constexpr float csPositionTolerance = 1e-5f;
// The unit vectors and rotations compared below have entries of at most 1.
constexpr float csUnitTolerance = 1e-5f;

const std::string csWorldNormalWarning =
    "The gizmo must have an RS matrix (mxGizmoControllerRotate::getWorldNormal)";
const std::string csEndPosWarning =
    "The gizmo must have an RS matrix (mxGizmoControllerRotate::onEndPos)";

std::string WarningLine(const std::string& message) {
    return mxLog::formatLine(5, nullptr, nullptr, message);
}

const Vec3 csOrigin(0.0f, 0.0f, 0.0f);

Vec3 UnitZ() {
    return Vec3(0.0f, 0.0f, 1.0f);
}

// The point at angle degrees (counter-clockwise with y up) on the screen circle of radius
// pixels around centre, as a normalised mouse position.
Vec2 MouseAround(const Vec2& centre, float radius, double degrees) {
    const double a = Radians(degrees);
    return MouseAtPixel(Vec2(static_cast<float>(centre.X() + radius * std::cos(a)),
                             static_cast<float>(centre.Y() + radius * std::sin(a))));
}

// The rotation about the line through centre along axis by degrees, as the drag hands it on.
Transform RotationAbout(const Vec3& axis, double degrees, const Vec3& centre) {
    Transform out;
    mxGizmoNode::ComputeRotation(axis, static_cast<float>(Radians(degrees)), centre, out);
    return out;
}

// The standard view over a rotate gizmo framed around two objects 2 units either side of
// centre along X, a recording listener installed and a controller. Centres in the plane z = 0
// keep the whole gizmo at depth 10, where one world unit covers 10 pixels.
struct Scene {
    mxPointer<mxCamera> camera = MakeStandardCamera();
    std::vector<mx3DManipulatorMotionListener*> listeners;
    RecordingListener listener;
    mxPointer<mxMesh> left;
    mxPointer<mxMesh> right;
    PlacedGizmo placed;
    mxGizmoNode* node;
    mxGizmoControllerRotate controller;

    explicit Scene(const Vec3& centre = Vec3(0.0f, 0.0f, 0.0f),
                   const Mat3& rotation = Mat3::IDENTITY)
        : left(MakeObject(centre - Vec3(2.0f, 0.0f, 0.0f))),
          right(MakeObject(centre + Vec3(2.0f, 0.0f, 0.0f))),
          placed(mxGizmoNode::GIZMO_ROTATE, {left.get(), right.get()}), node(placed.node),
          controller(listeners) {
        listeners.push_back(&listener);
        placed.place(*camera, rotation);
    }

    Vec2 centrePixel() const { return PixelOf(*camera, node->getGizmoPosition()); }
    // The mouse at degrees on the screen circle of radius pixels around the gizmo's centre.
    Vec2 around(float radius, double degrees) const {
        return MouseAround(centrePixel(), radius, degrees);
    }

    bool hover(const Vec2& mouse, float tolerance = csPickTolerance) {
        return controller.updateRotateHover(node, camera.get(), mouse, tolerance, csViewWidth,
                                            csViewHeight);
    }
    bool over(const Vec2& mouse, float tolerance = csPickTolerance) const {
        return controller.isOver(node, camera.get(), mouse, tolerance, csViewWidth, csViewHeight);
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

    // Hovers the Z circle on the ring at degrees (45 by default, away from the X and Y
    // circles of an unturned gizmo).
    void pickZ(double degrees = 45.0) {
        ASSERT_TRUE(hover(around(csRingRadius, degrees)));
        ASSERT_EQ(2, controller.getPickedAxe());
    }
    // Picks the Z circle and presses at degrees on the drag radius.
    void startZ(double degrees, double hoverDegrees = 45.0) {
        pickZ(hoverDegrees);
        press(around(csDragRadius, degrees));
        ASSERT_EQ(Events{"rotateStart"}, listener.events);
    }

    // The right object's position, and where a turn by degrees about +Z through the gizmo's
    // position puts it.
    Vec3 rightPosition() const { return right->getWorldTransform().GetTranslate(); }
    Vec3 rightTurnedBy(double degrees) const {
        const Vec3 c = node->getGizmoPosition();
        const double a = Radians(degrees);
        return Vec3(static_cast<float>(c.X() + 2.0 * std::cos(a)),
                    static_cast<float>(c.Y() + 2.0 * std::sin(a)), c.Z());
    }
    Vec3 leftPosition() const { return left->getWorldTransform().GetTranslate(); }
    Vec3 leftTurnedBy(double degrees) const {
        const Vec3 c = node->getGizmoPosition();
        const double a = Radians(degrees);
        return Vec3(static_cast<float>(c.X() - 2.0 * std::cos(a)),
                    static_cast<float>(c.Y() - 2.0 * std::sin(a)), c.Z());
    }
};

// The signed angle in degrees, about n, from where the camera's pick ray through press meets
// the plane through centre with normal n to where the ray through mouse meets it. The rays
// are lines: a plane behind the eye is met too. Computed in double from the camera's rays.
double SweptDegrees(const mxCamera& camera, const Vec3& centre, const Vec3& n, const Vec2& press,
                    const Vec2& mouse) {
    const Wm4::Vector3<double> normal = ToDouble(n);
    auto fromCentre = [&](const Vec2& at) {
        const PickRay ray = PickRayOf(camera, at);
        double lineT = 0.0;
        EXPECT_TRUE(MeetPlane(ray, normal, ToDouble(centre), lineT));
        return ray.origin + ray.direction * lineT - ToDouble(centre);
    };
    const Wm4::Vector3<double> v = fromCentre(press);
    const Wm4::Vector3<double> u = fromCentre(mouse);
    return std::atan2(normal.Cross(v).Dot(u), v.Dot(u)) * 180.0 / csPi;
}

// The smallest tolerance, in pixels, that isOver accepts at mouse: found by bisection over
// the ordered bit patterns of the non-negative floats up to 1000. Only used to show that two
// circles lie at the very same distance, whatever comparison isOver makes.
float SmallestAcceptedTolerance(const Scene& scene, const Vec2& mouse) {
    auto bits = [](float f) {
        std::uint32_t b;
        std::memcpy(&b, &f, sizeof b);
        return b;
    };
    auto value = [](std::uint32_t b) {
        float f;
        std::memcpy(&f, &b, sizeof f);
        return f;
    };
    std::uint32_t lo = 0;
    std::uint32_t hi = bits(1000.0f);
    while (lo < hi) {
        const std::uint32_t mid = lo + (hi - lo) / 2;
        if (scene.over(mouse, value(mid))) {
            hi = mid;
        } else {
            lo = mid + 1;
        }
    }
    return value(lo);
}

// The smallest mouse coordinate above centre / size whose distance in pixels from the
// projected centre, computed as the press computes it (|float(size) * mouse - centre|),
// reaches gap; the float below it stays under gap.
float FirstCoordinateReaching(float centre, int size, float gap) {
    auto distance = [&](float m) { return std::fabs(static_cast<float>(size) * m - centre); };
    float m = (centre + gap) / static_cast<float>(size);
    while (distance(m) < gap) {
        m = std::nextafter(m, 2.0f);
    }
    while (distance(std::nextafter(m, -1.0f)) >= gap) {
        m = std::nextafter(m, -1.0f);
    }
    return m;
}

// One column (a, b, c) squared the way the release squares the gizmo's orientation: its
// elevation and azimuth each rounded to 5 degrees.
void SquareColumn(double a, double b, double c, double out[3]) {
    const double h = std::sqrt(a * a + b * b);
    double e = csPi * 0.5;
    if (h != 0.0) {
        e = std::atan(c / h);
    } else if (c < 0.0) {
        e = -e;
    }
    const double ce = std::cos(e);
    const double z = ce != 0.0 ? std::atan2(b / ce, a / ce) : 0.0;
    auto snap = [](double x) { return std::floor(x * 36.0 / csPi + 0.5) * csPi / 36.0; };
    const double zs = snap(z);
    const double es = snap(e);
    out[0] = std::cos(zs) * std::cos(es);
    out[1] = std::sin(zs) * std::cos(es);
    out[2] = std::sin(es);
}

// A gizmo below a parent whose matrix is sheared, so that the gizmo's world transformation
// is a general matrix; the gizmo's own local transformation is rotation and scale (scale 6 as
// the standard view would size it). The circles still project, so hovering picks.
struct ShearedScene {
    mxPointer<mxCamera> camera = MakeStandardCamera();
    std::vector<mx3DManipulatorMotionListener*> listeners;
    RecordingListener listener;
    mxPointer<mxMesh> object;
    mxPointer<mxNode> root;
    mxNode* parent;
    mxGizmoNode* node;
    mxGizmoControllerRotate controller;

    ShearedScene()
        : object(MakeObject(Vec3(2.0f, 0.0f, 0.0f))), root(new mxNode), parent(new mxNode),
          node(new mxGizmoNode), controller(listeners) {
        listeners.push_back(&listener);
        root->attachChild(parent);
        parent->attachChild(node);
        parent->editLocalTransform(true).SetMatrix(
            Mat3(1.0f, 0.5f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f));
        node->setMode(mxGizmoNode::GIZMO_ROTATE);
        node->setReferenceObjects({object.get()});
        node->editLocalTransform(true).SetUniformScale(6.0f);
        root->UpdateGS();
    }
};

// ---- Construction and the virtual accessors ----------------------------------------------

TEST(mxGizmoControllerRotateTest, NewControllerHasNoPickedAxeAndAZeroWorldAxe) {
    std::vector<mx3DManipulatorMotionListener*> listeners;
    const mxGizmoControllerRotate controller(listeners);
    EXPECT_EQ(-1, controller.getPickedAxe());
    EXPECT_TRUE(VectorNear(controller.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f), 0.0));
}

// A controller whose accessors are overridden: calls through the base class reach them.
class OverridingController : public mxGizmoControllerRotate {
public:
    using mxGizmoControllerRotate::mxGizmoControllerRotate;
    Vec3 getPickedWorldAxe() const override { return Vec3(7.0f, 8.0f, 9.0f); }
    int getPickedAxe() const override { return 7; }
};

TEST(mxGizmoControllerRotateTest, PickedAxeAccessorsAreVirtual) {
    EXPECT_TRUE(std::has_virtual_destructor<mxGizmoControllerRotate>::value);
    std::vector<mx3DManipulatorMotionListener*> listeners;
    std::unique_ptr<mxGizmoControllerRotate> controller(new OverridingController(listeners));
    EXPECT_EQ(7, controller->getPickedAxe());
    EXPECT_TRUE(VectorNear(controller->getPickedWorldAxe(), Vec3(7.0f, 8.0f, 9.0f), 0.0));
}

TEST(mxGizmoControllerRotateTest, PickedWorldAxeIsZeroUntilAPressGivesTheDragANode) {
    // Turned 30 degrees about X, the Z circle's axis points to (0, -sin 30, cos 30). With
    // only the Z circle enabled the hover picks it where it crosses the X axis.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f),
                Rotation(1.0f, 0.0f, 0.0f, static_cast<float>(Radians(30))));
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    ASSERT_TRUE(scene.hover(MouseAtPixel(Vec2(160.0f, 100.0f))));
    ASSERT_EQ(2, scene.controller.getPickedAxe());
    EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f), 0.0));

    scene.press(scene.around(csDragRadius, 30.0));
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), Vec3(0.0f, -0.5f, 0.8660254f),
                           csUnitTolerance));
}

TEST(mxGizmoControllerRotateTest, PickedWorldAxeIsOfUnitLengthWhateverTheGizmoScale) {
    Scene scene;
    scene.startZ(30.0);
    // The gizmo is scaled by 6; the axis is not.
    ASSERT_NEAR(6.0f, scene.node->getWorldTransform().GetUniformScale(), 1e-5f);
    EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), UnitZ(), csUnitTolerance));
}

TEST(mxGizmoControllerRotateTest, ReleaseForgetsThePickedAxeAndTheWorldAxe) {
    Scene scene;
    scene.startZ(30.0);
    scene.release(scene.around(csDragRadius, 30.0));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f), 0.0));
}

// ---- Hover ---------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, HoverOnTheRingPicksTheZCircleAndHighlightsIt) {
    Scene scene;
    EXPECT_TRUE(scene.hover(scene.around(csRingRadius, 45.0)));
    EXPECT_EQ(2, scene.controller.getPickedAxe());
    const mxGizmoNodeRotate& rotate = scene.node->getRotateGizmo();
    EXPECT_TRUE(ColorIs(rotate.getCircle(0)->getColor(), NormalColor(0)));
    EXPECT_TRUE(ColorIs(rotate.getCircle(1)->getColor(), NormalColor(1)));
    EXPECT_TRUE(ColorIs(rotate.getCircle(2)->getColor(), HoveredColor(2)));
}

TEST(mxGizmoControllerRotateTest, HoverPicksTheNearestCircle) {
    // At pixel (155, 100) the Y circle, seen edge on along y = 100, is under the mouse and
    // the Z ring about 4 pixels away: both within the tolerance, the nearer wins.
    Scene scene;
    EXPECT_TRUE(scene.hover(MouseAtPixel(Vec2(155.0f, 100.0f))));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
    EXPECT_TRUE(ColorIs(scene.node->getRotateGizmo().getCircle(1)->getColor(), HoveredColor(1)));
}

TEST(mxGizmoControllerRotateTest, HoverSkipsADisabledCircle) {
    Scene scene;
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 5);
    EXPECT_TRUE(scene.hover(MouseAtPixel(Vec2(155.0f, 100.0f))));
    EXPECT_EQ(2, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, HoverReadsTheRotateMaskWhateverTheNodesMode) {
    // In translate mode with the translate arrows of X and Y enabled but only the Z circle:
    // the circle is picked although the Y circle is nearer and Z is no translate axis.
    Scene scene;
    scene.node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE, 3);
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    EXPECT_TRUE(scene.hover(MouseAtPixel(Vec2(155.0f, 100.0f))));
    EXPECT_EQ(2, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, HoverInTranslateModeHighlightsTheTranslateAxisOfThatIndex) {
    Scene scene;
    scene.node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    ASSERT_TRUE(scene.hover(scene.around(csRingRadius, 45.0)));
    ASSERT_EQ(2, scene.controller.getPickedAxe());
    const mxGizmoNodeTranslate& translate = scene.node->getTranslateGizmo();
    EXPECT_TRUE(ColorIs(translate.getAxis(2)->getColor(), HoveredColor(2)));
    EXPECT_TRUE(ColorIs(translate.getAxis(0)->getColor(), NormalColor(0)));
    EXPECT_TRUE(ColorIs(scene.node->getRotateGizmo().getCircle(2)->getColor(), NormalColor(2)));
}

TEST(mxGizmoControllerRotateTest, EqualDistancesGoToTheLaterCircle) {
    // On the diagonal through the centre the X circle (seen edge on along x = 100) and the
    // Y circle (along y = 100) are mirror images of each other: 3 pixels each.
    Scene scene;
    const Vec2 mouse(0.515f, 0.515f);
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 1);
    const float toX = SmallestAcceptedTolerance(scene, mouse);
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 2);
    const float toY = SmallestAcceptedTolerance(scene, mouse);
    ASSERT_NEAR(3.0f, toX, 1e-3f);
    ASSERT_EQ(toX, toY);

    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 7);
    EXPECT_TRUE(scene.hover(mouse));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, ToleranceEqualToTheDistanceIsAccepted) {
    // 10 pixels right of the Z ring's first sample (pixel (160, 100)) that sample is the
    // nearest point of the ring; its distance is measured here as the picking measures it.
    Scene scene;
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    const Vec2 mouse = MouseAtPixel(Vec2(170.0f, 100.0f));
    Vec2 sample(0.0f, 0.0f);
    impl::projectToScreen(scene.camera->getViewProjectionMatrix(), scene.node->getWorldTransform(),
                          Vec3(1.0f, 0.0f, 0.0f), sample, csViewWidth, csViewHeight);
    const Vec2 mousePixels(static_cast<float>(csViewWidth) * mouse.X(),
                           static_cast<float>(csViewHeight) * mouse.Y());
    const float distance = impl::distanceToSegment(sample, sample, mousePixels);
    ASSERT_NEAR(10.0f, distance, 1e-3f);
    const float below = std::nextafter(distance, 0.0f);

    EXPECT_TRUE(scene.over(mouse, distance));
    EXPECT_FALSE(scene.over(mouse, below));
    EXPECT_FALSE(scene.hover(mouse, below));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(scene.hover(mouse, distance));
    EXPECT_EQ(2, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, CircleWhoseAxisPointsAtTheEyeCountsWhole) {
    // The Z circle of a gizmo at the origin points straight at the eye: every one of its
    // 40 samples, on every side, is within half a pixel of its polyline.
    Scene scene;
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    for (int k = 0; k < 40; ++k) {
        const Vec3 world = scene.node->getWorldTransform().ApplyForward(
            Vec3(static_cast<float>(std::cos(Radians(9.0 * k))),
                 static_cast<float>(std::sin(Radians(9.0 * k))), 0.0f),
            true);
        EXPECT_TRUE(scene.over(MouseAt(*scene.camera, world), 0.5f)) << "sample " << k;
        EXPECT_TRUE(scene.hover(MouseAt(*scene.camera, world), 0.5f)) << "sample " << k;
        EXPECT_EQ(2, scene.controller.getPickedAxe()) << "sample " << k;
    }
}

TEST(mxGizmoControllerRotateTest, OnlyTheHalfOfACircleThatFacesTheEyeCounts) {
    // Tipped 60 degrees about X, the Z circle's upper half comes towards the eye: its top
    // (local (0, 1, 0)) counts, its bottom (local (0, -1, 0)) does not.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f),
                Rotation(1.0f, 0.0f, 0.0f, static_cast<float>(Radians(60))));
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    const Transform& world = scene.node->getWorldTransform();
    const Vec2 top = MouseAt(*scene.camera, world.ApplyForward(Vec3(0.0f, 1.0f, 0.0f), true));
    const Vec2 bottom = MouseAt(*scene.camera, world.ApplyForward(Vec3(0.0f, -1.0f, 0.0f), true));
    ASSERT_GT(std::fabs(top.Y() - bottom.Y()) * csViewHeight, 60.0f);
    EXPECT_TRUE(scene.over(top, 1.0f));
    EXPECT_FALSE(scene.over(bottom, 5.0f));
    EXPECT_FALSE(scene.hover(bottom, 5.0f));
}

TEST(mxGizmoControllerRotateTest, WholeCircleClosesFromItsLastSampleToItsSecond) {
    // The last stretch of a whole circle joins sample 39 (351 degrees) to sample 1 (9
    // degrees) straight, passing inside sample 0: on that chord the mouse is on the circle,
    // while the middle of the arc from sample 39 to sample 0 is about 0.37 pixels off.
    Scene scene;
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 4);
    const Transform& world = scene.node->getWorldTransform();
    auto pixelOfSample = [&](double degrees) {
        return PixelOf(
            *scene.camera,
            world.ApplyForward(Vec3(static_cast<float>(std::cos(Radians(degrees))),
                                    static_cast<float>(std::sin(Radians(degrees))), 0.0f),
                               true));
    };
    const Vec2 last = pixelOfSample(351.0);
    const Vec2 first = pixelOfSample(0.0);
    const Vec2 second = pixelOfSample(9.0);
    const Vec2 onClosingChord = MouseAtPixel((last + second) * 0.5f);
    const Vec2 onSkippedChord = MouseAtPixel((last + first) * 0.5f);
    EXPECT_TRUE(scene.over(onClosingChord, 0.05f));
    EXPECT_FALSE(scene.over(onSkippedChord, 0.25f));
    EXPECT_TRUE(scene.over(onSkippedChord, 0.5f));
}

TEST(mxGizmoControllerRotateTest, CircleWithNoSampleFacingTheEyeIsNeverPicked) {
    // An eye at infinity along +Z makes the direction from the eye to each circle's centre
    // not a number, so no sample faces the eye and each circle's distance is the largest
    // finite float: beyond any smaller tolerance, and accepted by that float itself.
    Scene scene;
    scene.camera->setLocation(Vec3(0.0f, 0.0f, std::numeric_limits<float>::infinity()));
    const Vec2 mouse(0.5f, 0.5f);
    EXPECT_FALSE(scene.over(mouse, 3.0e38f));
    EXPECT_FALSE(scene.hover(mouse, 3.0e38f));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());

    EXPECT_EQ(3.4028235e38f, FLT_MAX);
    EXPECT_TRUE(scene.over(mouse, FLT_MAX));
    // All three tie at that distance: the last one wins.
    EXPECT_TRUE(scene.hover(mouse, FLT_MAX));
    EXPECT_EQ(2, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, HoverThatFindsNoCirclePutsTheRotateColoursBack) {
    Scene scene;
    ASSERT_TRUE(scene.hover(scene.around(csRingRadius, 45.0)));
    EXPECT_FALSE(scene.hover(MouseAtPixel(Vec2(10.0f, 190.0f))));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    const mxGizmoNodeRotate& rotate = scene.node->getRotateGizmo();
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(ColorIs(rotate.getCircle(axis)->getColor(), NormalColor(axis)));
    }
}

TEST(mxGizmoControllerRotateTest, HoverThatFindsNoCirclePutsTheCurrentModesColoursBack) {
    Scene scene;
    scene.node->setMode(mxGizmoNode::GIZMO_TRANSLATE);
    scene.node->highlight(0);
    const mxGizmoNodeTranslate& translate = scene.node->getTranslateGizmo();
    ASSERT_TRUE(ColorIs(translate.getAxis(0)->getColor(), HoveredColor(0)));
    EXPECT_FALSE(scene.hover(MouseAtPixel(Vec2(10.0f, 190.0f))));
    EXPECT_TRUE(ColorIs(translate.getAxis(0)->getColor(), NormalColor(0)));
}

TEST(mxGizmoControllerRotateTest, HoverAndIsOverWithANullNodeFindNothing) {
    Scene scene;
    const Vec2 mouse = scene.around(csRingRadius, 45.0);
    EXPECT_FALSE(scene.controller.updateRotateHover(nullptr, scene.camera.get(), mouse,
                                                    csPickTolerance, csViewWidth, csViewHeight));
    EXPECT_FALSE(scene.controller.isOver(nullptr, scene.camera.get(), mouse, csPickTolerance,
                                         csViewWidth, csViewHeight));
}

TEST(mxGizmoControllerRotateTest, IsOverAnswersWithoutPickingOrColouring) {
    Scene scene;
    ASSERT_TRUE(scene.hover(MouseAtPixel(Vec2(155.0f, 100.0f))));
    ASSERT_EQ(1, scene.controller.getPickedAxe());
    const MarkCounter marks(*scene.node);

    EXPECT_TRUE(scene.over(scene.around(csRingRadius, 45.0)));
    EXPECT_FALSE(scene.over(MouseAtPixel(Vec2(10.0f, 190.0f))));
    EXPECT_EQ(1, scene.controller.getPickedAxe());
    EXPECT_EQ(0u, marks.marks());
    const mxGizmoNodeRotate& rotate = scene.node->getRotateGizmo();
    EXPECT_TRUE(ColorIs(rotate.getCircle(1)->getColor(), HoveredColor(1)));
    EXPECT_TRUE(ColorIs(rotate.getCircle(2)->getColor(), NormalColor(2)));
}

TEST(mxGizmoControllerRotateTest, IsOverIgnoresADisabledCircle) {
    Scene scene;
    const Vec2 mouse = scene.around(csRingRadius, 45.0);
    ASSERT_TRUE(scene.over(mouse));
    scene.node->setEnabledAxis(mxGizmoNode::GIZMO_ROTATE, 3);
    EXPECT_FALSE(scene.over(mouse));
}

// ---- Press ---------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, PressOnAPickedCircleShowsItDraggedAndTellsEachListener) {
    Scene scene;
    Events journal;
    RecordingListener first("first", journal);
    RecordingListener second("second", journal);
    scene.listeners = {&first, &second};
    scene.pickZ();
    scene.press(scene.around(csDragRadius, 30.0));

    EXPECT_EQ((Events{"first rotateStart", "second rotateStart"}), journal);
    EXPECT_EQ(Events{"rotateStart"}, first.events);
    EXPECT_EQ(Events{"rotateStart"}, second.events);
    EXPECT_EQ(2, scene.controller.getPickedAxe());
    const mxGizmoNodeRotate& rotate = scene.node->getRotateGizmo();
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, rotate.getCircle(2)->getDrawMethod());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, rotate.getCircle(0)->getDrawMethod());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, rotate.getCircle(1)->getDrawMethod());
}

TEST(mxGizmoControllerRotateTest, PressWithoutAPickedCircleTellsNobody) {
    Scene scene;
    ASSERT_FALSE(scene.hover(MouseAtPixel(Vec2(10.0f, 190.0f))));
    scene.press(scene.around(csDragRadius, 30.0));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(mxLine::DRAW_POLYLINE,
                  scene.node->getRotateGizmo().getCircle(axis)->getDrawMethod());
    }
}

TEST(mxGizmoControllerRotateTest, PressWithANullNodeTellsNobody) {
    Scene scene;
    scene.pickZ();
    scene.controller.setMousePressed(nullptr, scene.camera.get(), scene.around(csDragRadius, 30),
                                     csViewWidth, csViewHeight);
    EXPECT_TRUE(scene.listener.events.empty());
}

TEST(mxGizmoControllerRotateTest, PressOnTheCentreDropsThePickAndTellsNobody) {
    Scene scene;
    scene.pickZ();
    scene.press(Vec2(0.5f, 0.5f));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, scene.node->getRotateGizmo().getCircle(2)->getDrawMethod());
}

TEST(mxGizmoControllerRotateTest, PressStartsFromOnePointSixPixelsOffTheCentreOnEitherAxis) {
    // A gizmo centred at (-10, -10, 0) projects to the lower left corner, pixel (0, 0), so
    // that the distances near 1.6 pixels are fine-grained floats.
    Scene scene(Vec3(-10.0f, -10.0f, 0.0f));
    Vec2 centre(-1.0f, -1.0f);
    impl::projectToScreen(scene.camera->getViewProjectionMatrix(), Transform(),
                          scene.node->getGizmoPosition(), centre, csViewWidth, csViewHeight);
    ASSERT_TRUE(VectorNear(Vec3(centre.X(), centre.Y(), 0.0f), Vec3(0.0f, 0.0f, 0.0f), 1e-4));
    const float cx = centre.X() / csViewWidth;
    const float cy = centre.Y() / csViewHeight;
    const float startX = FirstCoordinateReaching(centre.X(), csViewWidth, 1.6f);
    const float startY = FirstCoordinateReaching(centre.Y(), csViewHeight, 1.6f);
    const float cancelX = std::nextafter(startX, -1.0f);
    const float cancelY = std::nextafter(startY, -1.0f);

    struct Case {
        Vec2 mouse;
        bool starts;
    };
    const Case cases[] = {{Vec2(cancelX, cy), false},
                          {Vec2(startX, cy), true},
                          {Vec2(cx, cancelY), false},
                          {Vec2(cx, startY), true},
                          {Vec2(cancelX, cancelY), false}};
    for (const Case& c : cases) {
        scene.listener.events.clear();
        scene.pickZ();
        scene.press(c.mouse);
        const std::string where =
            "mouse (" + std::to_string(c.mouse.X()) + ", " + std::to_string(c.mouse.Y()) + ")";
        if (c.starts) {
            EXPECT_EQ(Events{"rotateStart"}, scene.listener.events) << where;
            EXPECT_EQ(2, scene.controller.getPickedAxe()) << where;
            scene.release(c.mouse);
        } else {
            EXPECT_TRUE(scene.listener.events.empty()) << where;
            EXPECT_EQ(-1, scene.controller.getPickedAxe()) << where;
        }
    }
}

TEST(mxGizmoControllerRotateTest, PressWhoseRayMeetsThePlaneBehindTheEyeStillStarts) {
    // A gizmo at (2, 0, 0) with its X circle picked: the ray through the mouse at x = 0.3
    // runs away from the plane x = 2 and meets it behind the eye, at (2, 0, 15).
    Scene scene(Vec3(2.0f, 0.0f, 0.0f));
    const Transform& world = scene.node->getWorldTransform();
    const double a = Radians(45.0);
    ASSERT_TRUE(scene.hover(MouseAt(
        *scene.camera,
        world.ApplyForward(
            Vec3(0.0f, static_cast<float>(std::cos(a)), static_cast<float>(std::sin(a))), true))));
    ASSERT_EQ(0, scene.controller.getPickedAxe());

    const Vec2 press(0.3f, 0.5f);
    scene.press(press);
    EXPECT_EQ(Events{"rotateStart"}, scene.listener.events);
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, scene.node->getRotateGizmo().getCircle(0)->getDrawMethod());

    // The drag then measures from that point behind the eye: about 3.8 degrees about +X,
    // which rounds to 5.
    const Vec2 mouse(0.3f, 0.6f);
    const Vec3 centre(2.0f, 0.0f, 0.0f);
    const double swept = SweptDegrees(*scene.camera, centre, Vec3(1.0f, 0.0f, 0.0f), press, mouse);
    ASSERT_NEAR(3.8141, swept, 1e-3);
    EXPECT_TRUE(scene.move(mouse));
    scene.release(mouse);
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], RotationAbout(Vec3(1.0f, 0.0f, 0.0f), 5.0, centre),
                         csUnitTolerance));
}

// ---- Moves ---------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, SweptAngleAroundAFacingCircleIsTheScreenAngle) {
    // The geometry the drag tests rest on: for the Z circle of a gizmo at the origin the
    // angle between two pick points in the plane z = 0 is their angle on screen.
    Scene scene;
    const double swept =
        SweptDegrees(*scene.camera, Vec3(0.0f, 0.0f, 0.0f), UnitZ(),
                     scene.around(csDragRadius, 30.0), scene.around(csDragRadius, 32.6));
    EXPECT_NEAR(2.6, swept, 1e-3);
}

TEST(mxGizmoControllerRotateTest, MovesTurnTheObjectsByTheSweptAngleRoundedToFiveDegrees) {
    struct Case {
        double swept;
        double turned;
    };
    const Case cases[] = {{2.0, 0.0}, {2.6, 5.0},  {4.0, 5.0},   {-2.6, -5.0},    {-2.0, 0.0},
                          {7.4, 5.0}, {7.6, 10.0}, {90.0, 90.0}, {-137.0, -135.0}};
    for (const Case& c : cases) {
        Scene scene;
        scene.startZ(30.0);
        EXPECT_TRUE(scene.move(scene.around(csDragRadius, 30.0 + c.swept))) << c.swept;
        EXPECT_TRUE(
            VectorNear(scene.rightPosition(), scene.rightTurnedBy(c.turned), csPositionTolerance))
            << "swept " << c.swept;
        EXPECT_TRUE(
            VectorNear(scene.leftPosition(), scene.leftTurnedBy(c.turned), csPositionTolerance))
            << "swept " << c.swept;
        scene.release(scene.around(csDragRadius, 30.0 + c.swept));
        ASSERT_EQ(1u, scene.listener.ends.size());
        EXPECT_TRUE(
            MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), c.turned, csOrigin), 1e-6))
            << "swept " << c.swept;
    }
}

TEST(mxGizmoControllerRotateTest, MoveThroughTwoDegreesLeavesTheObjectsAtTheirStart) {
    Scene scene;
    const Transform start = scene.right->getWorldTransform();
    scene.startZ(30.0);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 34.0)));
    ASSERT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(5.0), csPositionTolerance));
    EXPECT_TRUE(scene.move(scene.around(csDragRadius, 32.0)));
    EXPECT_TRUE(MapsNear(scene.right->getWorldTransform(), start, 1e-6));
    scene.release(scene.around(csDragRadius, 32.0));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], Transform(), 1e-6));
}

TEST(mxGizmoControllerRotateTest, AnglesAreRoundedWhetherOrNotTheGizmoSnapsItsOrientation) {
    for (const bool snap : {false, true}) {
        Scene scene;
        scene.node->setSnapRotationToAxis(snap);
        scene.startZ(30.0);
        EXPECT_TRUE(scene.move(scene.around(csDragRadius, 33.0)));
        EXPECT_TRUE(
            VectorNear(scene.rightPosition(), scene.rightTurnedBy(5.0), csPositionTolerance))
            << "snap " << snap;
    }
}

TEST(mxGizmoControllerRotateTest, MovesMeasureFromThePressAndNeverAccumulate) {
    Scene scene;
    scene.startZ(30.0);
    for (const double degrees : {34.0, 38.0, 40.0, 41.0, 59.0, 40.0}) {
        ASSERT_TRUE(scene.move(scene.around(csDragRadius, degrees)));
    }
    // 40 degrees is 10 from the press, however the mouse got there.
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(10.0), csPositionTolerance));
    scene.release(scene.around(csDragRadius, 40.0));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), 10.0, csOrigin), 1e-6));
}

TEST(mxGizmoControllerRotateTest, CounterClockwiseOnScreenTurnsTheObjectsPositivelyAboutZ) {
    // The Z circle faces the eye: a turn of the mouse counter-clockwise (y up) is right-handed
    // about +Z, so the object on +X moves towards +Y and the object's own frame turns too.
    Scene scene;
    scene.startZ(0.0);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 20.0)));
    EXPECT_GT(scene.rightPosition().Y(), 0.5f);
    EXPECT_TRUE(MatrixNear(scene.right->getWorldTransform().GetRotate(),
                           Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(20.0))),
                           csUnitTolerance));
}

TEST(mxGizmoControllerRotateTest, ObjectsFollowTheMouseAlsoWhenTheCircleAxisPointsAway) {
    // Turned half a turn about X, the gizmo's Z axis points away from the eye: the angle is
    // measured and applied about that world axis, so the objects still follow the mouse.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f), Rotation(1.0f, 0.0f, 0.0f, static_cast<float>(csPi)));
    scene.startZ(0.0);
    ASSERT_TRUE(
        VectorNear(scene.controller.getPickedWorldAxe(), Vec3(0.0f, 0.0f, -1.0f), csUnitTolerance));
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 20.0)));
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(20.0), csPositionTolerance));
    scene.release(scene.around(csDragRadius, 20.0));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(
        MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), 20.0, csOrigin), csUnitTolerance));
}

TEST(mxGizmoControllerRotateTest, ObjectsTurnAboutTheGizmosPosition) {
    // Gizmo at (2, 0, 0) between objects at (0, 0, 0) and (4, 0, 0): only half of its Z
    // circle faces the eye, so it is picked on its left side.
    Scene scene(Vec3(2.0f, 0.0f, 0.0f));
    ASSERT_TRUE(scene.hover(scene.around(csRingRadius, 135.0)));
    ASSERT_EQ(2, scene.controller.getPickedAxe());
    scene.press(scene.around(csDragRadius, 180.0));
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 270.0)));
    EXPECT_TRUE(VectorNear(scene.rightPosition(), Vec3(2.0f, 2.0f, 0.0f), csPositionTolerance));
    EXPECT_TRUE(VectorNear(scene.leftPosition(), Vec3(2.0f, -2.0f, 0.0f), csPositionTolerance));
    scene.release(scene.around(csDragRadius, 270.0));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0],
                         RotationAbout(UnitZ(), 90.0, Vec3(2.0f, 0.0f, 0.0f)),
                         csPositionTolerance));
}

TEST(mxGizmoControllerRotateTest, MoveAcceptsTheBoundsOfTheView) {
    // Pressed on +X: the corners of the view lie at 45, 135, -135 and -45 degrees.
    struct Case {
        Vec2 mouse;
        double turned;
    };
    const Case cases[] = {{Vec2(1.0f, 1.0f), 45.0},
                          {Vec2(0.0f, 1.0f), 135.0},
                          {Vec2(0.0f, 0.0f), -135.0},
                          {Vec2(1.0f, 0.0f), -45.0},
                          {Vec2(1.0f, 0.5f), 0.0}};
    Scene scene;
    scene.startZ(0.0);
    for (const Case& c : cases) {
        EXPECT_TRUE(scene.move(c.mouse)) << c.turned;
        EXPECT_TRUE(
            VectorNear(scene.rightPosition(), scene.rightTurnedBy(c.turned), csPositionTolerance))
            << c.turned;
    }
}

TEST(mxGizmoControllerRotateTest, MoveOutsideTheViewChangesNothing) {
    Scene scene;
    scene.startZ(0.0);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 30.0)));
    const float above = std::nextafter(1.0f, 2.0f);
    const float below = std::nextafter(0.0f, -1.0f);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Vec2& mouse : {Vec2(above, 0.5f), Vec2(below, 0.5f), Vec2(0.5f, above),
                              Vec2(0.5f, below), Vec2(nan, 0.5f), Vec2(0.75f, nan)}) {
        EXPECT_FALSE(scene.move(mouse)) << mouse.X() << ", " << mouse.Y();
        EXPECT_TRUE(
            VectorNear(scene.rightPosition(), scene.rightTurnedBy(30.0), csPositionTolerance));
    }
    scene.release(scene.around(csDragRadius, 30.0));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), 30.0, csOrigin), 1e-6));
}

TEST(mxGizmoControllerRotateTest, MoveOnTheCentreReturnsFalseAndChangesNothing) {
    Scene scene;
    scene.startZ(0.0);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 30.0)));
    for (const Vec2& pixel : {Vec2(100.0f, 100.0f), Vec2(101.5f, 98.5f), Vec2(98.5f, 101.5f)}) {
        EXPECT_FALSE(scene.move(MouseAtPixel(pixel))) << pixel.X() << ", " << pixel.Y();
        EXPECT_TRUE(
            VectorNear(scene.rightPosition(), scene.rightTurnedBy(30.0), csPositionTolerance));
    }
    // 1.6 pixels off the centre on one axis is far enough to measure an angle: 90 degrees.
    EXPECT_TRUE(scene.move(MouseAtPixel(Vec2(100.0f, 101.7f))));
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(90.0), csPositionTolerance));
}

TEST(mxGizmoControllerRotateTest, MoveWithANullNodeReturnsFalse) {
    Scene scene;
    scene.startZ(0.0);
    EXPECT_FALSE(scene.controller.setMousePos(
        nullptr, scene.camera.get(), scene.around(csDragRadius, 30.0), csViewWidth, csViewHeight));
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(0.0), csPositionTolerance));
}

// ---- Release -------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, DragTellsStartAtThePressAndEndAtTheReleaseInListenerOrder) {
    Scene scene;
    Events journal;
    RecordingListener first("first", journal);
    RecordingListener second("second", journal);
    scene.listeners = {&first, &second};
    scene.pickZ();
    scene.press(scene.around(csDragRadius, 30.0));
    EXPECT_TRUE(scene.move(scene.around(csDragRadius, 45.0)));
    EXPECT_TRUE(scene.move(scene.around(csDragRadius, 60.0)));
    EXPECT_EQ((Events{"first rotateStart", "second rotateStart"}), journal);
    scene.release(scene.around(csDragRadius, 60.0));

    EXPECT_EQ(
        (Events{"first rotateStart", "second rotateStart", "first rotateEnd", "second rotateEnd"}),
        journal);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), first.events);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), second.events);
    ASSERT_EQ(1u, first.ends.size());
    ASSERT_EQ(1u, second.ends.size());
    EXPECT_TRUE(MapsNear(first.ends[0], RotationAbout(UnitZ(), 30.0, csOrigin), 1e-6));
    EXPECT_TRUE(BitwiseEqual(second.ends[0], first.ends[0]));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, ReleaseTurnsTheObjectsToTheReleasePositionFirst) {
    Scene scene;
    scene.startZ(30.0);
    ASSERT_TRUE(scene.move(scene.around(csDragRadius, 45.0)));
    scene.release(scene.around(csDragRadius, 50.0));
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(20.0), csPositionTolerance));
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), 20.0, csOrigin), 1e-6));
}

TEST(mxGizmoControllerRotateTest, ReleaseShowsTheCircleIdleAgain) {
    Scene scene;
    scene.startZ(30.0);
    ASSERT_EQ(mxLine::DRAW_SEGMENTS, scene.node->getRotateGizmo().getCircle(2)->getDrawMethod());
    scene.release(scene.around(csDragRadius, 30.0));
    EXPECT_EQ(mxLine::DRAW_POLYLINE, scene.node->getRotateGizmo().getCircle(2)->getDrawMethod());
}

TEST(mxGizmoControllerRotateTest, PressMoveAndReleaseWithoutAPickedCircleTellNobody) {
    Scene scene;
    const Transform start = scene.right->getWorldTransform();
    scene.press(scene.around(csDragRadius, 30.0));
    EXPECT_FALSE(scene.move(scene.around(csDragRadius, 60.0)));
    scene.release(scene.around(csDragRadius, 60.0));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_TRUE(BitwiseEqual(scene.right->getWorldTransform(), start));
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, ReleaseOfADragThatNeverStartedTellsNobodyButForgetsTheNode) {
    // A press gives the drag its node; a hover that then finds nothing drops the pick. The
    // release that follows tells nobody, but forgets the node: a circle picked afterwards has
    // no world axe until the next press.
    for (const bool released : {false, true}) {
        Scene scene;
        scene.startZ(30.0);
        ASSERT_FALSE(scene.hover(MouseAtPixel(Vec2(10.0f, 190.0f))));
        ASSERT_EQ(-1, scene.controller.getPickedAxe());
        if (released) {
            scene.release(scene.around(csDragRadius, 60.0));
            EXPECT_EQ(Events{"rotateStart"}, scene.listener.events);
        }
        scene.pickZ();
        const Vec3 expected = released ? Vec3(0.0f, 0.0f, 0.0f) : UnitZ();
        EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), expected, csUnitTolerance))
            << "released " << released;
    }
}

TEST(mxGizmoControllerRotateTest, ReleaseAfterACancelledPressTellsNobody) {
    Scene scene;
    scene.pickZ();
    scene.press(Vec2(0.5f, 0.5f));
    ASSERT_EQ(-1, scene.controller.getPickedAxe());
    scene.release(scene.around(csDragRadius, 60.0));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    scene.pickZ();
    EXPECT_TRUE(VectorNear(scene.controller.getPickedWorldAxe(), Vec3(0.0f, 0.0f, 0.0f), 0.0));
}

TEST(mxGizmoControllerRotateTest, ReleaseWithoutSnappingLeavesTheGizmoAsTheDragLeftIt) {
    Scene scene(Vec3(0.0f, 0.0f, 0.0f),
                Rotation(1.0f, 1.0f, 0.0f, static_cast<float>(Radians(33.0))));
    ASSERT_FALSE(scene.node->shouldSnapRotationToAxis());
    const Transform local = scene.node->getLocalTransform();
    const Transform world = scene.node->getWorldTransform();
    ASSERT_TRUE(scene.hover(Vec2(0.7f, 0.6f), 300.0f));
    scene.press(Vec2(0.7f, 0.6f));
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    ASSERT_TRUE(scene.move(Vec2(0.4f, 0.8f)));
    scene.release(Vec2(0.4f, 0.8f));
    ASSERT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);
    EXPECT_TRUE(BitwiseEqual(scene.node->getLocalTransform(), local));
    EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), world));
}

TEST(mxGizmoControllerRotateTest, ReleaseWithSnappingSquaresTheGizmosFirstTwoAxesToFiveDegrees) {
    // Turned 33 degrees about (1, 1, 0): the first column has azimuth 5.0 and elevation
    // -22.7 degrees (to 5 and -25), the second azimuth 85.0 and elevation 22.7 (to 85 and
    // 25). The squared columns are no longer perpendicular, so their cross product, the new
    // third column, is a little shorter than 1.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f),
                Rotation(1.0f, 1.0f, 0.0f, static_cast<float>(Radians(33.0))));
    scene.node->setSnapRotationToAxis(true);
    const Mat3 before = scene.node->getLocalTransform().GetRotate();
    const float scale = scene.node->getLocalTransform().GetUniformScale();
    const Vec3 position = scene.node->getGizmoPosition();
    double first[3];
    double second[3];
    SquareColumn(before(0, 0), before(1, 0), before(2, 0), first);
    SquareColumn(before(0, 1), before(1, 1), before(2, 1), second);
    const double third[3] = {first[1] * second[2] - first[2] * second[1],
                             first[2] * second[0] - first[0] * second[2],
                             first[0] * second[1] - first[1] * second[0]};
    const double thirdLength =
        std::sqrt(third[0] * third[0] + third[1] * third[1] + third[2] * third[2]);
    ASSERT_GT(1.0 - thirdLength, 1e-4);
    Mat3 expected;
    for (int r = 0; r < 3; ++r) {
        expected(r, 0) = static_cast<float>(first[r]);
        expected(r, 1) = static_cast<float>(second[r]);
        expected(r, 2) = static_cast<float>(third[r]);
    }
    ASSERT_TRUE(MatrixNear(expected,
                           Mat3(0.90286f, 0.07899f, 0.41489f, 0.07899f, 0.90286f, -0.41489f,
                                -0.42262f, 0.42262f, 0.80889f),
                           1e-4));

    ASSERT_TRUE(scene.hover(Vec2(0.7f, 0.6f), 300.0f));
    scene.press(Vec2(0.7f, 0.6f));
    ASSERT_EQ(Events{"rotateStart"}, scene.listener.events);
    scene.release(Vec2(0.7f, 0.6f));
    ASSERT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);

    const Transform& local = scene.node->getLocalTransform();
    EXPECT_TRUE(local.IsRSMatrix());
    EXPECT_TRUE(MatrixNear(local.GetRotate(), expected, csUnitTolerance));
    EXPECT_EQ(scale, local.GetUniformScale());
    EXPECT_TRUE(VectorNear(local.GetTranslate(), position, 0.0));
    // The world transformation follows at once.
    EXPECT_TRUE(MatrixNear(scene.node->getWorldTransform().GetRotate(), expected, csUnitTolerance));
}

TEST(mxGizmoControllerRotateTest, ReleaseWithSnappingKeepsAnOrientationAlreadyOnTheSteps) {
    // Turned 45 degrees about Z: azimuths 45 and 135, elevations 0, all on 5-degree steps.
    // The X and Y circles now lie along the diagonals: the ring is hovered at 90 degrees.
    Scene scene(Vec3(0.0f, 0.0f, 0.0f),
                Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(Radians(45.0))));
    scene.node->setSnapRotationToAxis(true);
    const Mat3 before = scene.node->getLocalTransform().GetRotate();
    scene.startZ(30.0, 90.0);
    scene.release(scene.around(csDragRadius, 30.0));
    EXPECT_TRUE(MatrixNear(scene.node->getLocalTransform().GetRotate(), before, csUnitTolerance));
}

// ---- Warnings ------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, PressOnAGizmoWithAGeneralWorldMatrixWarnsAndTurnsNothing) {
    // Without a world axis the drag has nothing to turn about: each press and move says so
    // once, and the object 2 units off the gizmo's centre stays where it was.
    ShearedScene scene;
    ASSERT_FALSE(scene.node->getWorldTransform().IsRSMatrix());
    ASSERT_TRUE(scene.controller.updateRotateHover(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f),
                                                   1000.0f, csViewWidth, csViewHeight));
    ASSERT_NE(-1, scene.controller.getPickedAxe());
    const Transform start = scene.object->getWorldTransform();

    test::mxLogCapture log;
    scene.controller.setMousePressed(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f), csViewWidth,
                                     csViewHeight);
    EXPECT_EQ(std::vector<std::string>{WarningLine(csWorldNormalWarning)}, log.lines());

    scene.controller.setMousePos(scene.node, scene.camera.get(), Vec2(0.4f, 0.8f), csViewWidth,
                                 csViewHeight);
    EXPECT_TRUE(BitwiseEqual(scene.object->getWorldTransform(), start));
    scene.controller.setMouseReleased(scene.node, scene.camera.get(), Vec2(0.4f, 0.8f), csViewWidth,
                                      csViewHeight);
    EXPECT_TRUE(BitwiseEqual(scene.object->getWorldTransform(), start));
    for (const Transform& end : scene.listener.ends) {
        EXPECT_TRUE(BitwiseEqual(end, Transform()));
    }
    for (const std::string& line : log.lines()) {
        EXPECT_EQ(WarningLine(csWorldNormalWarning), line);
    }
}

TEST(mxGizmoControllerRotateTest, PressOnAGizmoWithAGeneralWorldMatrixDropsThePickAndTellsNobody) {
    // The zero axis leaves no plane to meet, so the press cannot take hold of the circle.
    ShearedScene scene;
    ASSERT_TRUE(scene.controller.updateRotateHover(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f),
                                                   1000.0f, csViewWidth, csViewHeight));
    ASSERT_NE(-1, scene.controller.getPickedAxe());
    test::mxLogCapture log;
    scene.controller.setMousePressed(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f), csViewWidth,
                                     csViewHeight);
    EXPECT_EQ(-1, scene.controller.getPickedAxe());
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_FALSE(scene.controller.setMousePos(scene.node, scene.camera.get(), Vec2(0.4f, 0.8f),
                                              csViewWidth, csViewHeight));
    scene.controller.setMouseReleased(scene.node, scene.camera.get(), Vec2(0.4f, 0.8f), csViewWidth,
                                      csViewHeight);
    EXPECT_TRUE(scene.listener.events.empty());
}

TEST(mxGizmoControllerRotateTest, HoverOnAGizmoWithAGeneralWorldMatrixWarnsNothing) {
    ShearedScene scene;
    test::mxLogCapture log;
    EXPECT_TRUE(scene.controller.updateRotateHover(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f),
                                                   1000.0f, csViewWidth, csViewHeight));
    EXPECT_TRUE(scene.controller.isOver(scene.node, scene.camera.get(), Vec2(0.7f, 0.6f), 1000.0f,
                                        csViewWidth, csViewHeight));
    EXPECT_TRUE(log.lines().empty());
}

TEST(mxGizmoControllerRotateTest, SnappingAGizmoWithAGeneralLocalMatrixWarnsAndLeavesIt) {
    // The application gives the gizmo a sheared local matrix during the drag; the release
    // cannot square it, says so and leaves it, and still ends the drag.
    Scene scene;
    scene.node->setSnapRotationToAxis(true);
    scene.startZ(30.0);
    const Mat3 sheared(6.0f, 3.0f, 0.0f, 0.0f, 6.0f, 0.0f, 0.0f, 0.0f, 6.0f);
    scene.node->editLocalTransform(true).SetMatrix(sheared);

    test::mxLogCapture log;
    scene.release(scene.around(csDragRadius, 60.0));
    EXPECT_EQ(std::vector<std::string>{WarningLine(csEndPosWarning)}, log.lines());
    const Transform& local = scene.node->getLocalTransform();
    EXPECT_FALSE(local.IsRSMatrix());
    EXPECT_TRUE(MatrixNear(local.GetMatrix(), sheared, 0.0));
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);
    ASSERT_EQ(1u, scene.listener.ends.size());
    EXPECT_TRUE(MapsNear(scene.listener.ends[0], RotationAbout(UnitZ(), 30.0, csOrigin), 1e-6));
    EXPECT_EQ(mxLine::DRAW_POLYLINE, scene.node->getRotateGizmo().getCircle(2)->getDrawMethod());
}

TEST(mxGizmoControllerRotateTest, ReleaseWithoutSnappingDoesNotLookAtTheLocalMatrix) {
    Scene scene;
    scene.startZ(30.0);
    scene.node->editLocalTransform(true).SetMatrix(
        Mat3(6.0f, 3.0f, 0.0f, 0.0f, 6.0f, 0.0f, 0.0f, 0.0f, 6.0f));
    test::mxLogCapture log;
    scene.release(scene.around(csDragRadius, 60.0));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);
}

// ---- Copies --------------------------------------------------------------------------------

TEST(mxGizmoControllerRotateTest, CopyWorksOnItsOwnAfterTheSourceIsGoneAndSharesTheListeners) {
    Scene scene;
    auto source = std::make_unique<mxGizmoControllerRotate>(scene.listeners);
    ASSERT_TRUE(source->updateRotateHover(scene.node, scene.camera.get(),
                                          scene.around(csRingRadius, 45.0), csPickTolerance,
                                          csViewWidth, csViewHeight));
    mxGizmoControllerRotate copy(*source);
    EXPECT_EQ(2, copy.getPickedAxe());
    source.reset();
    // Memory the source gave back may be handed out again at once: a table of the same size
    // filled with points far off screen.
    const std::vector<Vec2> reused(41, Vec2(-1.0e6f, -1.0e6f));

    // Installed after the copy was made: the copy reads the very same list.
    RecordingListener late;
    scene.listeners.push_back(&late);
    copy.setMousePressed(scene.node, scene.camera.get(), scene.around(csDragRadius, 30.0),
                         csViewWidth, csViewHeight);
    EXPECT_TRUE(copy.setMousePos(scene.node, scene.camera.get(), scene.around(csDragRadius, 40.0),
                                 csViewWidth, csViewHeight));
    copy.setMouseReleased(scene.node, scene.camera.get(), scene.around(csDragRadius, 40.0),
                          csViewWidth, csViewHeight);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), scene.listener.events);
    EXPECT_EQ((Events{"rotateStart", "rotateEnd"}), late.events);
    EXPECT_TRUE(VectorNear(scene.rightPosition(), scene.rightTurnedBy(10.0), csPositionTolerance));

    // Its circle table is its own: picking still measures every circle right.
    EXPECT_TRUE(copy.isOver(scene.node, scene.camera.get(), scene.around(csRingRadius, 100.0), 0.5f,
                            csViewWidth, csViewHeight));
    EXPECT_TRUE(copy.updateRotateHover(scene.node, scene.camera.get(),
                                       MouseAtPixel(Vec2(155.0f, 100.0f)), csPickTolerance,
                                       csViewWidth, csViewHeight));
    EXPECT_EQ(1, copy.getPickedAxe());
}

TEST(mxGizmoControllerRotateTest, CopyAndSourceCanBothBeDestroyed) {
    Scene scene;
    auto source = std::make_unique<mxGizmoControllerRotate>(scene.listeners);
    auto copy = std::make_unique<mxGizmoControllerRotate>(*source);
    copy.reset();
    EXPECT_TRUE(source->isOver(scene.node, scene.camera.get(), scene.around(csRingRadius, 45.0),
                               0.5f, csViewWidth, csViewHeight));
    source.reset();
}

} // namespace
