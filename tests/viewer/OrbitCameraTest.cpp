// The viewer's orbiting camera: its home view, the limits of orbit and zoom, lookAt and its
// refusal, panning that makes the scene follow the mouse, and what apply() gives the host
// camera in perspective and in orthographic projection.
#include "OrbitCamera.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"
#include "support/mxTestGeometry.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using viewer::OrbitCamera;
using Vec3d = Wm4::Vector3<double>;
using Vec3 = Wm4::Vector3<float>;
using mx::test::VectorNear;

constexpr double csPi = 3.14159265358979323846;

double Radians(double degrees) {
    return degrees * csPi / 180.0;
}

Vec3d ToDouble(const Vec3& v) {
    return Vec3d(v.X(), v.Y(), v.Z());
}

// A position in a view in pixels from its top left, y downwards, as mouse events give it.
struct Pixel {
    double x;
    double y;
};

// Where the host camera shows a world point in a width x height view.
Pixel PixelOf(const mx::mxCamera& camera, const Vec3d& world, int width, int height) {
    const float* m = camera.getViewProjectionMatrix();
    double clip[4];
    for (int row = 0; row < 4; ++row) {
        clip[row] =
            m[row] * world.X() + m[4 + row] * world.Y() + m[8 + row] * world.Z() + m[12 + row];
    }
    return Pixel{(clip[0] / clip[3] + 1.0) / 2.0 * width,
                 height - (clip[1] / clip[3] + 1.0) / 2.0 * height};
}

// The world length one pixel covers at the target of a view height pixels tall.
double UnitsPerPixel(const OrbitCamera& orbit, int height) {
    return 2.0 * orbit.getDistance() * std::tan(Radians(orbit.getFieldOfViewDegrees()) / 2.0) /
           height;
}

TEST(OrbitCameraTest, HomeViewLooksAtTheTargetAboveTheOriginFromTheFrontRightAndAbove) {
    const OrbitCamera orbit;
    EXPECT_TRUE(VectorNear(orbit.getTarget(), Vec3d(0.0, 0.5, 0.0), 0.0));
    EXPECT_EQ(orbit.getDistance(), 11.0);
    EXPECT_EQ(orbit.getYawDegrees(), 35.0);
    EXPECT_EQ(orbit.getPitchDegrees(), 28.0);
    EXPECT_EQ(orbit.getFieldOfViewDegrees(), 45.0);
    EXPECT_EQ(orbit.getNear(), 0.1);
    EXPECT_EQ(orbit.getFar(), 500.0);
    EXPECT_TRUE(orbit.isPerspective());
    const Vec3d eye = orbit.getEye();
    EXPECT_GT(eye.X(), 0.0);
    EXPECT_GT(eye.Y(), orbit.getTarget().Y());
    EXPECT_GT(eye.Z(), 0.0);
}

TEST(OrbitCameraTest, ResetGoesBackToTheHomeView) {
    OrbitCamera orbit;
    orbit.orbit(50.0, -40.0);
    orbit.zoom(3.0);
    orbit.pan(20.0, 10.0, 600);
    orbit.setPerspective(false);

    orbit.reset();

    const OrbitCamera home;
    EXPECT_TRUE(VectorNear(orbit.getTarget(), home.getTarget(), 0.0));
    EXPECT_EQ(orbit.getDistance(), home.getDistance());
    EXPECT_EQ(orbit.getYawDegrees(), home.getYawDegrees());
    EXPECT_EQ(orbit.getPitchDegrees(), home.getPitchDegrees());
    EXPECT_TRUE(orbit.isPerspective());
}

TEST(OrbitCameraTest, OrbitAddsYawAndPitchKeepingTargetAndDistance) {
    OrbitCamera orbit;
    orbit.orbit(10.0, -8.0);
    EXPECT_DOUBLE_EQ(orbit.getYawDegrees(), 45.0);
    EXPECT_DOUBLE_EQ(orbit.getPitchDegrees(), 20.0);
    EXPECT_EQ(orbit.getDistance(), 11.0);
    EXPECT_NEAR((orbit.getEye() - orbit.getTarget()).Length(), 11.0, 1e-12);
}

TEST(OrbitCameraTest, OrbitClampsThePitchToEightyNineDegreesEitherWay) {
    OrbitCamera orbit;
    orbit.orbit(0.0, 100.0);
    EXPECT_EQ(orbit.getPitchDegrees(), 89.0);
    orbit.orbit(0.0, -500.0);
    EXPECT_EQ(orbit.getPitchDegrees(), -89.0);
}

TEST(OrbitCameraTest, LookAtRoundTripsTheEyeAndKeepsTheTarget) {
    OrbitCamera orbit;
    const Vec3d eye(3.0, 4.0, -5.0);
    const Vec3d target(1.0, -2.0, 0.5);

    ASSERT_TRUE(orbit.lookAt(eye, target));

    EXPECT_TRUE(VectorNear(orbit.getEye(), eye, 1e-12));
    EXPECT_TRUE(VectorNear(orbit.getTarget(), target, 0.0));
    EXPECT_NEAR(orbit.getDistance(), (eye - target).Length(), 1e-12);
}

TEST(OrbitCameraTest, LookAtRefusesAnEyeOnTheTargetAndChangesNothing) {
    OrbitCamera orbit;
    orbit.orbit(12.0, 5.0);
    const Vec3d target = orbit.getTarget();
    const double distance = orbit.getDistance();
    const double yaw = orbit.getYawDegrees();
    const double pitch = orbit.getPitchDegrees();

    EXPECT_FALSE(orbit.lookAt(Vec3d(2.0, 3.0, 4.0), Vec3d(2.0, 3.0, 4.0)));

    EXPECT_TRUE(VectorNear(orbit.getTarget(), target, 0.0));
    EXPECT_EQ(orbit.getDistance(), distance);
    EXPECT_EQ(orbit.getYawDegrees(), yaw);
    EXPECT_EQ(orbit.getPitchDegrees(), pitch);
}

TEST(OrbitCameraTest, ZoomByOneNotchBringsTheEyeFifteenPercentCloser) {
    OrbitCamera orbit;
    orbit.zoom(1.0);
    EXPECT_NEAR(orbit.getDistance(), 11.0 * 0.85, 1e-12);
    orbit.zoom(-1.0);
    EXPECT_NEAR(orbit.getDistance(), 11.0, 1e-12);
    orbit.zoom(-1.0);
    EXPECT_NEAR(orbit.getDistance(), 11.0 / 0.85, 1e-12);
}

TEST(OrbitCameraTest, ZoomKeepsTheDistanceBetweenHalfAUnitAndFourHundred) {
    OrbitCamera orbit;
    orbit.zoom(100.0);
    EXPECT_EQ(orbit.getDistance(), 0.5);
    orbit.zoom(-1000.0);
    EXPECT_EQ(orbit.getDistance(), 400.0);
}

// The view the panning tests use: 800 x 600 pixels, turned away from the axes so that every
// component of the camera's axes counts.
constexpr int csWidth = 800;
constexpr int csHeight = 600;

OrbitCamera TurnedOrbit() {
    OrbitCamera orbit;
    orbit.orbit(25.0, -12.0);
    return orbit;
}

// A pan of the turned orbit by (dx, dy) pixels: how far the target went, and the host camera's
// right and up vectors and the world length of a pixel at the target before the pan.
struct TurnedPan {
    Vec3d right;
    Vec3d up;
    double step = 0.0;
    Vec3d targetShift;

    TurnedPan(double dx, double dy) {
        OrbitCamera orbit = TurnedOrbit();
        mx::mxCamera camera;
        orbit.apply(camera, csWidth, csHeight);
        right = ToDouble(camera.getRVector());
        up = ToDouble(camera.getUVector());
        step = UnitsPerPixel(orbit, csHeight);
        const Vec3d before = orbit.getTarget();

        orbit.pan(dx, dy, csHeight);

        targetShift = orbit.getTarget() - before;
    }
};

TEST(OrbitCameraTest, PanAlongXMovesTheTargetAlongTheCamerasRightVector) {
    const TurnedPan pan(40.0, 0.0);
    // Dragging right takes the scene along: the target goes the other way.
    EXPECT_TRUE(VectorNear(pan.targetShift, pan.right * (-40.0 * pan.step), 1e-6));
}

TEST(OrbitCameraTest, PanAlongYMovesTheTargetAlongTheCamerasUpVector) {
    const TurnedPan pan(0.0, 30.0);
    // Screen y grows downwards: dragging down takes the scene down, the target goes up.
    EXPECT_TRUE(VectorNear(pan.targetShift, pan.up * (30.0 * pan.step), 1e-6));
}

TEST(OrbitCameraTest, PanMakesTheOldTargetFollowTheMouseOnScreen) {
    OrbitCamera orbit = TurnedOrbit();
    const Vec3d target = orbit.getTarget();
    mx::mxCamera camera;
    orbit.apply(camera, csWidth, csHeight);
    const Pixel before = PixelOf(camera, target, csWidth, csHeight);

    orbit.pan(40.0, 30.0, csHeight);
    orbit.apply(camera, csWidth, csHeight);

    const Pixel after = PixelOf(camera, target, csWidth, csHeight);
    EXPECT_NEAR(after.x - before.x, 40.0, 1e-2);
    EXPECT_NEAR(after.y - before.y, 30.0, 1e-2);
}

TEST(OrbitCameraTest, PanKeepsDistanceAndAngles) {
    OrbitCamera orbit = TurnedOrbit();
    orbit.pan(40.0, 30.0, csHeight);
    EXPECT_EQ(orbit.getDistance(), 11.0);
    EXPECT_DOUBLE_EQ(orbit.getYawDegrees(), 60.0);
    EXPECT_DOUBLE_EQ(orbit.getPitchDegrees(), 16.0);
}

TEST(OrbitCameraTest, ApplyPlacesTheHostCameraAtTheEyeLookingAtTheTarget) {
    OrbitCamera orbit = TurnedOrbit();
    mx::mxCamera camera;

    orbit.apply(camera, csWidth, csHeight);

    const Vec3d eye = orbit.getEye();
    EXPECT_TRUE(VectorNear(ToDouble(camera.getLocation()), eye, 1e-5));
    Vec3d view = orbit.getTarget() - eye;
    view.Normalize();
    EXPECT_TRUE(VectorNear(ToDouble(camera.getDVector()), view, 1e-6));
    // Up is the world's up tilted into the view: no roll.
    EXPECT_NEAR(camera.getRVector().Y(), 0.0f, 1e-6f);
    EXPECT_GT(camera.getUVector().Y(), 0.0f);
}

TEST(OrbitCameraTest, ApplyGivesAFortyFiveDegreeViewWithTheAspectOfTheSize) {
    const OrbitCamera orbit;
    mx::mxCamera camera;

    orbit.apply(camera, 960, 600);

    EXPECT_TRUE(camera.isPerspective());
    const double halfHeight = 0.1 * std::tan(Radians(22.5));
    EXPECT_NEAR(camera.getUMax(), halfHeight, 1e-7);
    EXPECT_NEAR(camera.getUMin(), -halfHeight, 1e-7);
    EXPECT_NEAR(camera.getRMax(), halfHeight * 1.6, 1e-7);
    EXPECT_NEAR(camera.getRMin(), -halfHeight * 1.6, 1e-7);
    EXPECT_FLOAT_EQ(camera.getDMin(), 0.1f);
    EXPECT_FLOAT_EQ(camera.getDMax(), 500.0f);
}

TEST(OrbitCameraTest, OrthographicViewIsAsTallAtTheTargetAsThePerspectiveOne) {
    OrbitCamera orbit;
    orbit.zoom(2.0);
    mx::mxCamera perspective;
    orbit.apply(perspective, 960, 600);
    orbit.setPerspective(false);
    mx::mxCamera orthographic;

    orbit.apply(orthographic, 960, 600);

    EXPECT_FALSE(orbit.isPerspective());
    EXPECT_FALSE(orthographic.isPerspective());
    const double halfHeight = orbit.getDistance() * std::tan(Radians(22.5));
    // The perspective frustum's half height grown from the near plane to the target.
    EXPECT_NEAR(perspective.getUMax() / perspective.getDMin() * orbit.getDistance(), halfHeight,
                1e-5);
    EXPECT_NEAR(orthographic.getUMax(), halfHeight, 1e-5);
    EXPECT_NEAR(orthographic.getUMin(), -halfHeight, 1e-5);
    EXPECT_NEAR(orthographic.getRMax(), halfHeight * 1.6, 1e-5);
    EXPECT_NEAR(orthographic.getRMin(), -halfHeight * 1.6, 1e-5);
}

TEST(OrbitCameraTest, FrameLooksAtTheSphereFromFarEnoughToSeeItWhole) {
    OrbitCamera orbit;
    const Vec3d centre(4.0, 1.0, -2.0);

    orbit.frame(centre, 2.0);

    EXPECT_TRUE(VectorNear(orbit.getTarget(), centre, 0.0));
    // The sphere's silhouette fits in the view's half angle.
    EXPECT_LE(2.0 / orbit.getDistance(), std::sin(Radians(22.5)));
}

} // namespace
