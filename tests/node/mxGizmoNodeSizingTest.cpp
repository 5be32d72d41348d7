// The gizmo node's screen-constant size and the camera facing of its arrowheads: the scale that
// makes one gizmo unit cover a wanted number of pixels, the same scale measured along the ray
// through the node's bound, the arrowheads turned towards the eye, and the size the placed node
// really has once projected by the camera.
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "support/mxTestGeometry.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using mx::mxCamera;
using mx::mxGizmoNode;
using mx::mxLine;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::MarkCounter;
using mx::test::MatrixNear;
using mx::test::mxExposedGizmoNode;
using mx::test::Rotation;
using mx::test::VectorNear;
using Vec3 = Wm4::Vector3<float>;
using Vec3d = Wm4::Vector3<double>;
using Mat3 = Wm4::Matrix3<float>;
using Transform = mx::mxGenericTransformation<float>;

// ---------------------------------------------------------------------------------------------
// Helpers

Vec3d toDouble(const Vec3& v) {
    return Vec3d(v.X(), v.Y(), v.Z());
}

Vec3 column(const Mat3& m, int c) {
    return Vec3(m(0, c), m(1, c), m(2, c));
}

// The unit vector along the part of v at right angles to the unit axis a.
Vec3 perpendicularUnit(const Vec3& v, const Vec3& a) {
    Vec3 p = v - a * v.Dot(a);
    p.Normalize();
    return p;
}

// The camera's orientation as a rotation: columns R, U and -D, so that the frame's x axis runs
// to the right of the screen, its y axis up, and both lie in a plane facing the camera.
Mat3 cameraOrientation(const mxCamera& camera) {
    return Mat3(camera.getRVector(), camera.getUVector(), -camera.getDVector(), true);
}

// Success when both transformations hold the same bits in matrix, translation and scale and the
// same hints.
::testing::AssertionResult SameBits(const Transform& actual, const Transform& expected) {
    const bool matrix =
        std::memcmp(static_cast<const float*>(actual.GetMatrix()),
                    static_cast<const float*>(expected.GetMatrix()), 9 * sizeof(float)) == 0;
    const bool translate =
        std::memcmp(static_cast<const float*>(actual.GetTranslate()),
                    static_cast<const float*>(expected.GetTranslate()), 3 * sizeof(float)) == 0;
    const bool scale =
        std::memcmp(static_cast<const float*>(actual.GetScale()),
                    static_cast<const float*>(expected.GetScale()), 3 * sizeof(float)) == 0;
    if (matrix && translate && scale && actual == expected) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "transformation changed (matrix " << !matrix << ", translation " << !translate
           << ", scale " << !scale << ")";
}

// The local transformations of all the node's children.
std::vector<Transform> childLocals(const mxGizmoNode& node) {
    std::vector<Transform> locals;
    for (int slot = 0; slot < node.getChildCount(); ++slot) {
        locals.push_back(node.getChild(slot)->getLocalTransform());
    }
    return locals;
}

// Every child's local transformation still holds the bits recorded in before.
void expectChildLocalsUnchanged(const mxGizmoNode& node, const std::vector<Transform>& before) {
    const std::vector<Transform> after = childLocals(node);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t slot = 0; slot < before.size(); ++slot) {
        SCOPED_TRACE(slot);
        EXPECT_TRUE(SameBits(after[slot], before[slot]));
    }
}

std::vector<std::uint64_t> headStamps(const mxGizmoNode& node) {
    std::vector<std::uint64_t> stamps;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        stamps.push_back(node.getTranslateGizmo().getArrowHead(axis)->getChangeStamp());
    }
    return stamps;
}

bool isArrowHead(const mxGizmoNode& node, const mxSpatial* child) {
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (node.getTranslateGizmo().getArrowHead(axis) == child) {
            return true;
        }
    }
    return false;
}

// The world normal (local z) of the arrowhead of axis.
Vec3 headWorldNormal(const mxGizmoNode& node, unsigned int axis) {
    return column(node.getTranslateGizmo().getArrowHead(axis)->getWorldTransform().GetRotate(), 2);
}

// Checks, after the scene's update, that the arrowhead of axis runs along the node's axis and
// that its normal (world z) is the part of towards at right angles to the axis.
void expectHeadFacing(const mxGizmoNode& node, unsigned int axis, const Vec3& towards) {
    SCOPED_TRACE(axis);
    const mxLine* head = node.getTranslateGizmo().getArrowHead(axis);
    const Vec3 tip = head->getWorldTransform().GetTranslate();
    Vec3 a = tip - node.getWorldTransform().GetTranslate();
    a.Normalize();
    ASSERT_TRUE(head->getWorldTransform().IsRSMatrix());
    const Mat3& world = head->getWorldTransform().GetRotate();
    EXPECT_TRUE(VectorNear(column(world, 0), a, 1e-5));
    EXPECT_TRUE(VectorNear(column(world, 2), perpendicularUnit(towards, a), 1e-5));
    EXPECT_GT(column(world, 2).Dot(towards), 0.0f);
}

// Checks that the local rotation of the arrowhead of axis is a proper orthonormal frame.
void expectOrthonormalHead(const mxGizmoNode& node, unsigned int axis) {
    SCOPED_TRACE(axis);
    const Mat3& m = node.getTranslateGizmo().getArrowHead(axis)->getLocalTransform().GetRotate();
    EXPECT_TRUE(MatrixNear(m.TransposeTimes(m), Mat3::IDENTITY, 1e-5));
    EXPECT_NEAR(1.0, m.Determinant(), 1e-5);
}

// Full camera-facing check of a node placed in the world: every arrowhead along its axis and
// facing the eye, with an orthonormal local rotation and an untouched translation; every other
// line of the node left exactly as it was.
void expectFacesEye(mxGizmoNode& node, const mxCamera& camera) {
    const std::vector<Transform> before = childLocals(node);
    node.updateCameraFacing(&camera);
    node.UpdateGS();
    const std::vector<Transform> after = childLocals(node);
    ASSERT_EQ(before.size(), after.size());
    for (int slot = 0; slot < node.getChildCount(); ++slot) {
        SCOPED_TRACE(slot);
        if (isArrowHead(node, node.getChild(slot))) {
            EXPECT_EQ(0, std::memcmp(static_cast<const float*>(before[slot].GetTranslate()),
                                     static_cast<const float*>(after[slot].GetTranslate()),
                                     3 * sizeof(float)));
        } else {
            EXPECT_TRUE(SameBits(after[slot], before[slot]));
        }
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const Vec3 tip =
            node.getTranslateGizmo().getArrowHead(axis)->getWorldTransform().GetTranslate();
        expectHeadFacing(node, axis, camera.getLocation() - tip);
        expectOrthonormalHead(node, axis);
    }
}

// Where a world point lands on a view width x height pixels large, by the camera's
// view-projection matrix (column-major), counted from the lower left.
struct Pixel {
    double x;
    double y;
};

Pixel toPixel(const mxCamera& camera, const Vec3& point, int width, int height) {
    const float* m = camera.getViewProjectionMatrix();
    double clip[4];
    for (int r = 0; r < 4; ++r) {
        clip[r] = static_cast<double>(m[0 * 4 + r]) * point.X() +
                  static_cast<double>(m[1 * 4 + r]) * point.Y() +
                  static_cast<double>(m[2 * 4 + r]) * point.Z() + m[3 * 4 + r];
    }
    return {(clip[0] / clip[3] + 1.0) / 2.0 * width, (clip[1] / clip[3] + 1.0) / 2.0 * height};
}

double pixelDistance(const mxCamera& camera, const Vec3& from, const Vec3& to, int width,
                     int height) {
    const Pixel a = toPixel(camera, from, width, height);
    const Pixel b = toPixel(camera, to, width, height);
    return std::hypot(b.x - a.x, b.y - a.y);
}

// Places a fresh node at position with the world rotation through
// calculateFrameFromObjectWorldTranform, then checks that its X and Y axes, which the rotation
// must lay in a plane facing the camera, each cover pixelSize pixels on screen (within half a
// pixel).
void expectAxesCoverPixels(const mxCamera& camera, const Vec3& position, const Mat3& rotation,
                           float pixelSize, int width, int height) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    Transform frame;
    frame.SetRotate(rotation);
    frame.SetTranslate(position);
    ASSERT_TRUE(frame.IsRSMatrix());
    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, &camera, pixelSize, height));
    node->UpdateGS();

    const Vec3 origin = node->getWorldTransform().GetTranslate();
    ASSERT_TRUE(VectorNear(origin, position, 1e-5 * (1.0 + position.Length())));
    for (unsigned int axis = 0; axis < 2; ++axis) {
        SCOPED_TRACE(axis);
        const Vec3 tip =
            node->getTranslateGizmo().getArrowHead(axis)->getWorldTransform().GetTranslate();
        // The axis lies in a plane facing the camera, or the measure would be foreshortened.
        const Vec3 along = tip - origin;
        ASSERT_GT(along.Length(), 0.0f);
        ASSERT_NEAR(0.0, along.Dot(camera.getDVector()) / along.Length(), 1e-5);
        EXPECT_NEAR(pixelSize, pixelDistance(camera, origin, tip, width, height), 0.5);
    }
}

// Moves the node so that the centre of its world bound lands on centre: the bound encloses the
// node's lines, so its centre sits at a fixed offset from the node's translation.
void placeBoundCentre(mxGizmoNode& node, const Vec3& centre) {
    node.editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, 0.0f));
    node.UpdateGS();
    const Vec3 offset = node.getWorldBound().getCenter();
    node.editLocalTransform(true).SetTranslate(centre - offset);
    node.UpdateGS();
}

// The best scale computed by hand, in double: the near-plane height per pixel times pixelSize,
// times the distance L from the eye to centre over the distance t from the eye to the near
// plane along the same ray.
double bestScaleByHand(const mxCamera& camera, const Vec3& centre, float pixelSize,
                       int viewportHeight) {
    const Vec3d v = toDouble(centre) - toDouble(camera.getLocation());
    const double L = v.Length();
    const double t = camera.getDMin() / (toDouble(camera.getDVector()).Dot(v) / L);
    return (static_cast<double>(camera.getUMax()) - camera.getUMin()) / viewportHeight * pixelSize *
           L / t;
}

// The fixture's cameras, all with round numbers:
// - houseCamera: eye at (0, 0, 10) looking along -Z, a near plane at 1 that is 2 units tall over
//   200 pixels, so 60 pixels at depth d cover 0.6 * d units;
// - perspective: the same eye, a 60-degree vertical field of view over 800 x 600 pixels
//   (aspect 4 / 3), the usual desktop view;
// - orthographic: the same eye, 16 x 12 units over 800 x 600 pixels, 0.02 units per pixel both
//   ways.
// The node starts at the origin with nothing turned.
class mxGizmoNodeSizingTest : public ::testing::Test {
protected:
    static constexpr int csWidth = 800;
    static constexpr int csHeight = 600;

    void SetUp() override {
        houseCamera.setLocation(Vec3(0.0f, 0.0f, 10.0f));
        ASSERT_TRUE(houseCamera.setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 1000.0f));
        perspective.setLocation(Vec3(0.0f, 0.0f, 10.0f));
        ASSERT_TRUE(perspective.setFrustum(60.0f, 4.0f / 3.0f, 1.0f, 1000.0f));
        orthographic.setLocation(Vec3(0.0f, 0.0f, 10.0f));
        ASSERT_TRUE(orthographic.setFrustum(-8.0f, 8.0f, -6.0f, 6.0f, 1.0f, 1000.0f));
        node->UpdateGS();
    }

    // The centre of the view at depth and the points at 90 % of the half-width and the
    // half-height in the four corners, at the same depth.
    static std::vector<Vec3> viewPoints(const mxCamera& camera, float depth) {
        const float halfHeight =
            camera.isPerspective() ? camera.getUMax() * depth / camera.getDMin() : camera.getUMax();
        const float halfWidth =
            camera.isPerspective() ? camera.getRMax() * depth / camera.getDMin() : camera.getRMax();
        const Vec3 centre = camera.getLocation() + camera.getDVector() * depth;
        std::vector<Vec3> points{centre};
        for (float x : {-0.9f, 0.9f}) {
            for (float y : {-0.9f, 0.9f}) {
                points.push_back(centre + camera.getRVector() * (x * halfWidth) +
                                 camera.getUVector() * (y * halfHeight));
            }
        }
        return points;
    }

    mxCamera houseCamera;
    mxCamera perspective;
    mxCamera orthographic{false};
    mxPointer<mxExposedGizmoNode> node = new mxExposedGizmoNode;
};

// ---------------------------------------------------------------------------------------------
// ComputeGizmoScale

// Two units tall over 200 pixels: one pixel is 0.01 units, so 60 pixels are 0.6 units.
TEST_F(mxGizmoNodeSizingTest, OrthographicCameraTwoUnitsTallGivesZeroPointSixAtEveryPosition) {
    mxCamera camera(false);
    ASSERT_TRUE(camera.setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 1000.0f));
    const Vec3 positions[] = {Vec3(0.0f, 0.0f, -10.0f), Vec3(0.0f, 0.0f, 0.0f),
                              Vec3(5.0f, -3.0f, -200.0f), Vec3(-40.0f, 25.0f, 60.0f)};
    const float first = mxGizmoNode::ComputeGizmoScale(&camera, positions[0], 60.0f, 200);
    EXPECT_NEAR(0.6f, first, 1e-6f);
    for (const Vec3& position : positions) {
        EXPECT_EQ(first, mxGizmoNode::ComputeGizmoScale(&camera, position, 60.0f, 200));
    }
}

// A 45-degree half angle at near 1: the near plane is 0.8284 tall, 800 pixels high. At depth 10
// one pixel covers 0.8284 / 800 * 10 units.
TEST_F(mxGizmoNodeSizingTest, PerspectiveScaleFollowsDepthNotDistanceFromTheEye) {
    mxCamera camera;
    ASSERT_TRUE(camera.setFrustum(-0.4142f, 0.4142f, -0.4142f, 0.4142f, 1.0f, 1000.0f));
    ASSERT_TRUE(VectorNear(camera.getLocation(), Vec3(0.0f, 0.0f, 0.0f), 0.0));
    ASSERT_TRUE(VectorNear(camera.getDVector(), Vec3(0.0f, 0.0f, -1.0f), 0.0));
    const float ahead =
        mxGizmoNode::ComputeGizmoScale(&camera, Vec3(0.0f, 0.0f, -10.0f), 60.0f, 800);
    const float aside =
        mxGizmoNode::ComputeGizmoScale(&camera, Vec3(5.0f, 0.0f, -10.0f), 60.0f, 800);
    EXPECT_NEAR(0.6213, ahead, 1e-4);
    EXPECT_NEAR(0.6213, aside, 1e-4);
    EXPECT_NEAR(ahead, aside, 1e-6);
}

TEST_F(mxGizmoNodeSizingTest, PositionBehindThePerspectiveCameraGivesANegativeScale) {
    mxCamera camera;
    ASSERT_TRUE(camera.setFrustum(-0.4142f, 0.4142f, -0.4142f, 0.4142f, 1.0f, 1000.0f));
    const float behind =
        mxGizmoNode::ComputeGizmoScale(&camera, Vec3(0.0f, 0.0f, 10.0f), 60.0f, 800);
    EXPECT_LT(behind, 0.0f);
    EXPECT_NEAR(-0.6213, behind, 1e-4);
}

// 2 / 480 * 45 and 2 * 45 / 480 round differently in single precision, so the exact result tells
// which came first.
TEST_F(mxGizmoNodeSizingTest, ScaleDividesTheHeightByThePixelCountBeforeMultiplying) {
    mxCamera camera(false);
    ASSERT_TRUE(camera.setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 1000.0f));
    const float range = camera.getUMax() - camera.getUMin();
    const float divisionFirst = range / static_cast<float>(480) * 45.0f;
    ASSERT_NE(divisionFirst, range * 45.0f / static_cast<float>(480));
    EXPECT_EQ(divisionFirst,
              mxGizmoNode::ComputeGizmoScale(&camera, Vec3(1.0f, 2.0f, 3.0f), 45.0f, 480));
}

// Same frustum in perspective with the near plane at 0.5: depth 4 multiplies the orthographic
// size by 4 / 0.5.
TEST_F(mxGizmoNodeSizingTest, PerspectiveScaleIsDepthTimesOrthographicSizeOverNear) {
    mxCamera camera;
    ASSERT_TRUE(camera.setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 0.5f, 1000.0f));
    const float s = (camera.getUMax() - camera.getUMin()) / static_cast<float>(480) * 45.0f;
    const Vec3 position(0.0f, 0.0f, -4.0f);
    const float depth = (position - camera.getLocation()).Dot(camera.getDVector());
    EXPECT_FLOAT_EQ(depth * s / camera.getDMin(),
                    mxGizmoNode::ComputeGizmoScale(&camera, position, 45.0f, 480));
}

// An eye away from the origin looking down at a slant, with an off-centre frustum: every point
// on a plane facing the camera gets the same size, a plane twice as deep twice the size.
TEST_F(mxGizmoNodeSizingTest, RotatedOffCentreCameraGivesEqualScalesAtEqualDepth) {
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(7.0f, 3.0f, 12.0f), Vec3(1.0f, -2.0f, 0.0f), Vec3(0.0f, 1.0f, 0.0f)));
    ASSERT_TRUE(camera.setFrustum(-0.3f, 0.7f, -0.2f, 0.5f, 0.5f, 500.0f));
    const Vec3& E = camera.getLocation();
    const Vec3& D = camera.getDVector();
    const Vec3& R = camera.getRVector();
    const Vec3& U = camera.getUVector();
    const double expected = (static_cast<double>(camera.getUMax()) - camera.getUMin()) / 480.0 *
                            45.0 * 8.0 / camera.getDMin();
    const float offsets[][2] = {{0.0f, 0.0f}, {3.0f, 0.0f}, {0.0f, -2.5f}, {-4.0f, 3.5f}};
    for (const auto& offset : offsets) {
        SCOPED_TRACE(offset[0]);
        SCOPED_TRACE(offset[1]);
        const Vec3 position = E + D * 8.0f + R * offset[0] + U * offset[1];
        const float scale = mxGizmoNode::ComputeGizmoScale(&camera, position, 45.0f, 480);
        EXPECT_NEAR(expected, scale, 1e-5 * expected);
        const Vec3 deeper = E + D * 16.0f + R * offset[0] + U * offset[1];
        EXPECT_NEAR(2.0 * expected, mxGizmoNode::ComputeGizmoScale(&camera, deeper, 45.0f, 480),
                    2e-5 * expected);
    }
}

// Two orthographic cameras that differ only in where their near plane lies.
TEST_F(mxGizmoNodeSizingTest, OrthographicScaleIgnoresNearDistanceAndPosition) {
    mxCamera close(false);
    mxCamera far(false);
    ASSERT_TRUE(close.setFrustum(-2.0f, 2.0f, -1.5f, 1.5f, 0.25f, 1000.0f));
    ASSERT_TRUE(far.setFrustum(-2.0f, 2.0f, -1.5f, 1.5f, 50.0f, 1000.0f));
    const float reference =
        mxGizmoNode::ComputeGizmoScale(&close, Vec3(0.0f, 0.0f, -1.0f), 60.0f, 300);
    EXPECT_NEAR(0.6f, reference, 1e-6f);
    EXPECT_EQ(reference, mxGizmoNode::ComputeGizmoScale(&far, Vec3(0.0f, 0.0f, -1.0f), 60.0f, 300));
    EXPECT_EQ(reference,
              mxGizmoNode::ComputeGizmoScale(&far, Vec3(30.0f, -7.0f, -400.0f), 60.0f, 300));
}

TEST_F(mxGizmoNodeSizingTest, ZeroViewportHeightGivesANonFiniteScaleWithoutFailing) {
    const Vec3 position(0.0f, 0.0f, -10.0f);
    EXPECT_FALSE(std::isfinite(mxGizmoNode::ComputeGizmoScale(&orthographic, position, 60.0f, 0)));
    EXPECT_FALSE(std::isfinite(mxGizmoNode::ComputeGizmoScale(&perspective, position, 60.0f, 0)));
}

TEST_F(mxGizmoNodeSizingTest, NullCameraGivesScaleOne) {
    EXPECT_EQ(1.0f, mxGizmoNode::ComputeGizmoScale(nullptr, Vec3(3.0f, -2.0f, -9.0f), 60.0f, 200));
}

// ---------------------------------------------------------------------------------------------
// getBestScale

TEST_F(mxGizmoNodeSizingTest, NodeStraightAheadGetsTheDepthScaleAtItsBoundCentre) {
    placeBoundCentre(*node, Vec3(0.0f, 0.0f, 0.0f));
    const Vec3 centre = node->getWorldBound().getCenter();
    ASSERT_TRUE(VectorNear(centre, Vec3(0.0f, 0.0f, 0.0f), 1e-5));
    const float best = node->getBestScale(&houseCamera, 60.0f, 200);
    EXPECT_NEAR(6.0, best, 1e-5);
    EXPECT_NEAR(mxGizmoNode::ComputeGizmoScale(&houseCamera, centre, 60.0f, 200), best, 1e-5);
}

// Centre at (6, -4, -2): 12 deep and 14 from the eye. The ray meets the near plane 14 / 12 from
// the eye, so L / t = 12, the depth over the near distance, and the scale is 0.6 * 12 = 7.2, the
// depth scale again (not 0.6 * 14).
TEST_F(mxGizmoNodeSizingTest, NodeOffAxisGetsLengthOverNearPlaneDistanceAlongTheRay) {
    placeBoundCentre(*node, Vec3(6.0f, -4.0f, -2.0f));
    const Vec3 centre = node->getWorldBound().getCenter();
    ASSERT_TRUE(VectorNear(centre, Vec3(6.0f, -4.0f, -2.0f), 1e-5));
    const double expected = bestScaleByHand(houseCamera, centre, 60.0f, 200);
    EXPECT_NEAR(7.2, expected, 1e-5);
    const float best = node->getBestScale(&houseCamera, 60.0f, 200);
    EXPECT_NEAR(expected, best, 1e-5 * expected);
    EXPECT_NEAR(mxGizmoNode::ComputeGizmoScale(&houseCamera, centre, 60.0f, 200), best,
                1e-5 * expected);
}

TEST_F(mxGizmoNodeSizingTest, RotatedCameraMatchesTheRayFormula) {
    ASSERT_TRUE(houseCamera.lookAt(Vec3(7.0f, 3.0f, 12.0f), Vec3(1.0f, -2.0f, 0.0f),
                                   Vec3(0.0f, 1.0f, 0.0f)));
    ASSERT_TRUE(houseCamera.setFrustum(-0.5f, 0.5f, -0.4f, 0.4f, 0.5f, 500.0f));
    placeBoundCentre(*node, Vec3(-2.0f, 1.5f, -3.0f));
    const Vec3 centre = node->getWorldBound().getCenter();
    ASSERT_TRUE(VectorNear(centre, Vec3(-2.0f, 1.5f, -3.0f), 1e-5));
    const double expected = bestScaleByHand(houseCamera, centre, 45.0f, 480);
    EXPECT_NEAR(expected, node->getBestScale(&houseCamera, 45.0f, 480), 1e-5 * expected);
}

TEST_F(mxGizmoNodeSizingTest, OrthographicCameraGetsTheSameBestScaleAsPerspective) {
    placeBoundCentre(*node, Vec3(6.0f, -4.0f, -2.0f));
    const float asPerspective = node->getBestScale(&houseCamera, 60.0f, 200);
    houseCamera.setPerspective(false);
    ASSERT_FALSE(houseCamera.isPerspective());
    EXPECT_EQ(asPerspective, node->getBestScale(&houseCamera, 60.0f, 200));
    EXPECT_NEAR(7.2f, asPerspective, 1e-5f);
}

// The ray is a whole line: a centre 5 behind the eye meets the near plane at t = -1.
TEST_F(mxGizmoNodeSizingTest, CentreBehindTheEyeGivesANegativeBestScale) {
    placeBoundCentre(*node, Vec3(0.0f, 0.0f, 15.0f));
    ASSERT_TRUE(VectorNear(node->getWorldBound().getCenter(), Vec3(0.0f, 0.0f, 15.0f), 1e-5));
    EXPECT_NEAR(-3.0, node->getBestScale(&houseCamera, 60.0f, 200), 1e-5);
}

TEST_F(mxGizmoNodeSizingTest, NullCameraGivesBestScaleOne) {
    placeBoundCentre(*node, Vec3(6.0f, -4.0f, 0.0f));
    EXPECT_EQ(1.0f, node->getBestScale(nullptr, 60.0f, 200));
}

// ---------------------------------------------------------------------------------------------
// updateCameraFacing

// A node turned about an oblique axis, scaled by 2.5 and moved off the origin, seen by a camera
// looking down at a slant: nothing lines up by chance.
TEST_F(mxGizmoNodeSizingTest, ArrowheadsRunAlongTheirAxesWithTheirNormalTowardsTheEye) {
    Transform& local = node->editLocalTransform(true);
    local.SetRotate(Rotation(1.0f, 2.0f, 3.0f, 0.7f));
    local.SetUniformScale(2.5f);
    local.SetTranslate(Vec3(3.0f, -2.0f, -12.0f));
    node->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(8.0f, 5.0f, 6.0f), Vec3(2.0f, -1.0f, -10.0f), Vec3(0.0f, 1.0f, 0.0f)));
    // The axis directions measured from the tips are the node's rotated axes.
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        Vec3 a = node->getTranslateGizmo().getArrowHead(axis)->getWorldTransform().GetTranslate() -
                 node->getWorldTransform().GetTranslate();
        EXPECT_NEAR(2.5f, a.Length(), 1e-5f);
        a.Normalize();
        EXPECT_TRUE(VectorNear(a, column(Rotation(1.0f, 2.0f, 3.0f, 0.7f), axis), 1e-5));
    }
    expectFacesEye(*node, camera);
}

// The same check with the node below a turned, shrunk and moved parent: the facing is worked
// out in world space and brought back into the node's frame.
TEST_F(mxGizmoNodeSizingTest, ArrowheadsFaceTheEyeBelowATransformedParent) {
    mxPointer<mx::mxNode> parent = new mx::mxNode;
    ASSERT_GE(parent->attachChild(node.get()), 0);
    Transform& parentLocal = parent->editLocalTransform(true);
    parentLocal.SetRotate(Rotation(0.0f, 1.0f, 1.0f, -1.1f));
    parentLocal.SetUniformScale(0.5f);
    parentLocal.SetTranslate(Vec3(-4.0f, 1.0f, -6.0f));
    Transform& local = node->editLocalTransform(true);
    local.SetRotate(Rotation(1.0f, 0.0f, -1.0f, 0.4f));
    local.SetTranslate(Vec3(2.0f, 2.0f, 0.0f));
    parent->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(-9.0f, 6.0f, 4.0f), Vec3(-3.0f, 1.0f, -6.0f), Vec3(0.0f, 1.0f, 0.0f)));
    expectFacesEye(*node, camera);
}

TEST_F(mxGizmoNodeSizingTest, RotateCirclesAndScaleLinesAreNeverTurned) {
    node->editLocalTransform(true).SetTranslate(Vec3(1.0f, 2.0f, -8.0f));
    node->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(5.0f, 7.0f, 3.0f), Vec3(1.0f, 2.0f, -8.0f), Vec3(0.0f, 1.0f, 0.0f)));
    std::vector<const mxSpatial*> others;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        others.push_back(node->getRotateGizmo().getCircle(axis));
        others.push_back(node->getScaleGizmo().getAxis(axis));
        others.push_back(node->getScaleGizmo().getEndSquare(axis));
        others.push_back(node->getScaleGizmo().getActiveFrame(axis));
        others.push_back(node->getTranslateGizmo().getAxis(axis));
    }
    others.push_back(node->getScaleGizmo().getCentreTriangles());
    std::vector<Transform> before;
    std::vector<std::uint64_t> stamps;
    for (const mxSpatial* line : others) {
        ASSERT_NE(nullptr, line);
        before.push_back(line->getLocalTransform());
        stamps.push_back(line->getChangeStamp());
    }
    node->updateCameraFacing(&camera);
    for (std::size_t i = 0; i < others.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(SameBits(others[i]->getLocalTransform(), before[i]));
        EXPECT_EQ(stamps[i], others[i]->getChangeStamp());
    }
}

// The eye sits on the line of the X axis, 5 units out, so the line of sight to the X tip runs
// along the axis; the camera looks away at a slant, so its direction is usable.
TEST_F(mxGizmoNodeSizingTest, LineOfSightAlongAnAxisFacesThatHeadWithTheCameraDirection) {
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(5.0f, 0.0f, 0.0f), Vec3(0.0f, 3.0f, -4.0f), Vec3(0.0f, 1.0f, 0.0f)));
    const Vec3 a(1.0f, 0.0f, 0.0f);
    ASSERT_LT(std::fabs(camera.getDVector().Dot(a)), 0.99f);
    node->updateCameraFacing(&camera);
    node->UpdateGS();
    expectHeadFacing(*node, 0, -camera.getDVector());
    EXPECT_TRUE(VectorNear(headWorldNormal(*node, 0), Vec3(0.0f, -0.6f, 0.8f), 1e-5));
    expectOrthonormalHead(*node, 0);
    // The other heads are seen from the side and face the eye as usual.
    for (unsigned int axis = 1; axis < 3; ++axis) {
        const Vec3 tip =
            node->getTranslateGizmo().getArrowHead(axis)->getWorldTransform().GetTranslate();
        expectHeadFacing(*node, axis, camera.getLocation() - tip);
    }
}

// The eye on the X axis line looking straight at the centre: its direction runs along X too,
// so the right vector, tilted by the up vector (0, 1, 1), is the one left.
TEST_F(mxGizmoNodeSizingTest, CameraDirectionAlongTheAxisTooFacesThatHeadWithTheRightVector) {
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(5.0f, 0.0f, 0.0f), Vec3(0.0f, 0.0f, 0.0f), Vec3(0.0f, 1.0f, 1.0f)));
    const Vec3 a(1.0f, 0.0f, 0.0f);
    ASSERT_GE(std::fabs(camera.getDVector().Dot(a)), 0.99f);
    ASSERT_LT(std::fabs(camera.getRVector().Dot(a)), 0.99f);
    node->updateCameraFacing(&camera);
    node->UpdateGS();
    expectHeadFacing(*node, 0, -camera.getRVector());
    const float h = std::sqrt(0.5f);
    EXPECT_TRUE(VectorNear(headWorldNormal(*node, 0), Vec3(0.0f, -h, h), 1e-5));
    expectOrthonormalHead(*node, 0);
}

// The eye exactly at the X tip: there is no line of sight, so the camera direction comes first.
// The up vector (1, 1, 0) keeps the right vector off the axis and different from the direction,
// so taking it would show.
TEST_F(mxGizmoNodeSizingTest, EyeAtTheTipFacesThatHeadWithTheCameraDirection) {
    const Vec3 tip = node->getTranslateGizmo().getArrowHead(0)->getWorldTransform().GetTranslate();
    ASSERT_EQ(1.0f, tip.X());
    ASSERT_EQ(0.0f, tip.Y());
    ASSERT_EQ(0.0f, tip.Z());
    mxCamera camera;
    ASSERT_TRUE(camera.lookAt(tip, Vec3(1.0f, 3.0f, -4.0f), Vec3(1.0f, 1.0f, 0.0f)));
    ASSERT_LT(std::fabs(camera.getRVector().Dot(Vec3(1.0f, 0.0f, 0.0f))), 0.99f);
    node->updateCameraFacing(&camera);
    node->UpdateGS();
    expectHeadFacing(*node, 0, -camera.getDVector());
    EXPECT_TRUE(VectorNear(headWorldNormal(*node, 0), Vec3(0.0f, -0.6f, 0.8f), 1e-5));
    expectOrthonormalHead(*node, 0);
}

// The eye exactly at the X tip looking back along the axis: the direction fails too, and the
// right vector is the last choice.
TEST_F(mxGizmoNodeSizingTest, EyeAtTheTipLookingAlongTheAxisFacesThatHeadWithTheRightVector) {
    const Vec3 tip = node->getTranslateGizmo().getArrowHead(0)->getWorldTransform().GetTranslate();
    mxCamera camera;
    ASSERT_TRUE(camera.lookAt(tip, Vec3(-4.0f, 0.0f, 0.0f), Vec3(0.0f, 1.0f, 1.0f)));
    ASSERT_GE(std::fabs(camera.getDVector().Dot(Vec3(1.0f, 0.0f, 0.0f))), 0.99f);
    node->updateCameraFacing(&camera);
    node->UpdateGS();
    expectHeadFacing(*node, 0, -camera.getRVector());
    const float h = std::sqrt(0.5f);
    EXPECT_TRUE(VectorNear(headWorldNormal(*node, 0), Vec3(0.0f, -h, h), 1e-5));
    expectOrthonormalHead(*node, 0);
}

// The eye 5 units from the X tip, on a line at angle acos(cosine) to the axis, in the x-y
// plane; the camera looks along -Z. Answers the world normal of the X head once it has turned.
Vec3 xHeadNormalSeenAtCosine(float cosine) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->UpdateGS();
    const float sine = std::sqrt(1.0f - cosine * cosine);
    const Vec3 eye(1.0f + 5.0f * cosine, 5.0f * sine, 0.0f);
    mxCamera camera;
    EXPECT_TRUE(camera.lookAt(eye, eye + Vec3(0.0f, 0.0f, -1.0f), Vec3(0.0f, 1.0f, 0.0f)));
    node->updateCameraFacing(&camera);
    node->UpdateGS();
    return headWorldNormal(*node, 0);
}

TEST_F(mxGizmoNodeSizingTest, LineOfSightJustOutsideTheAxisConeIsKept) {
    EXPECT_TRUE(VectorNear(xHeadNormalSeenAtCosine(0.985f), Vec3(0.0f, 1.0f, 0.0f), 1e-5));
}

TEST_F(mxGizmoNodeSizingTest, LineOfSightJustInsideTheAxisConeGivesWayToTheCameraDirection) {
    EXPECT_TRUE(VectorNear(xHeadNormalSeenAtCosine(0.995f), Vec3(0.0f, 0.0f, 1.0f), 1e-5));
}

// A general placement and camera, so that all three heads have to turn on the first call.
TEST_F(mxGizmoNodeSizingTest, SecondFacingWithTheSameCameraWritesNothing) {
    Transform& local = node->editLocalTransform(true);
    local.SetRotate(Rotation(2.0f, -1.0f, 1.0f, 0.9f));
    local.SetUniformScale(1.5f);
    local.SetTranslate(Vec3(-1.0f, 4.0f, -9.0f));
    node->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(6.0f, 9.0f, 5.0f), Vec3(-1.0f, 4.0f, -9.0f), Vec3(0.0f, 1.0f, 0.0f)));

    const std::vector<std::uint64_t> fresh = headStamps(*node);
    node->updateCameraFacing(&camera);
    const std::vector<std::uint64_t> turned = headStamps(*node);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        EXPECT_GT(turned[axis], fresh[axis]);
    }
    node->UpdateGS();

    const std::vector<Transform> before = childLocals(*node);
    const std::vector<std::uint64_t> stamps = headStamps(*node);
    const MarkCounter marks(*node);
    node->updateCameraFacing(&camera);
    EXPECT_EQ(stamps, headStamps(*node));
    EXPECT_EQ(0u, marks.marks());
    expectChildLocalsUnchanged(*node, before);
}

TEST_F(mxGizmoNodeSizingTest, NullCameraLeavesTheArrowheadsAlone) {
    node->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, -10.0f));
    node->UpdateGS();
    const std::vector<Transform> before = childLocals(*node);
    const std::vector<std::uint64_t> stamps = headStamps(*node);
    node->updateCameraFacing(nullptr);
    EXPECT_EQ(stamps, headStamps(*node));
    expectChildLocalsUnchanged(*node, before);
}

// The arrowheads are turned in the frame of the node that the first of them hangs in: once it
// hangs in none, none of them is turned, not even those still attached.
TEST_F(mxGizmoNodeSizingTest, ArrowheadsAreNotTurnedOnceTheFirstHangsInNoNode) {
    node->editLocalTransform(true).SetTranslate(Vec3(0.0f, 0.0f, -10.0f));
    node->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(4.0f, 6.0f, 5.0f), Vec3(0.0f, 0.0f, -10.0f), Vec3(0.0f, 1.0f, 0.0f)));
    mxLine* first = node->editTranslateGizmo().getArrowHead(0);
    ASSERT_GE(node->detachChild(first), 0);
    ASSERT_EQ(nullptr, first->getParent());
    std::vector<Transform> before;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        before.push_back(node->getTranslateGizmo().getArrowHead(axis)->getLocalTransform());
    }
    const std::vector<std::uint64_t> stamps = headStamps(*node);

    node->updateCameraFacing(&camera);
    EXPECT_EQ(stamps, headStamps(*node));
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        EXPECT_TRUE(SameBits(node->getTranslateGizmo().getArrowHead(axis)->getLocalTransform(),
                             before[axis]));
    }
    // Hung in the node again, they are all turned.
    ASSERT_GE(node->attachChild(first), 0);
    node->UpdateGS();
    node->updateCameraFacing(&camera);
    const std::vector<std::uint64_t> turned = headStamps(*node);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_NE(stamps[axis], turned[axis]) << "axis " << axis;
    }
}

// A direction with a NaN component has length 0 (Wild Magic's square root gives 0 for NaN) and
// normalises to the zero vector: a node moved to a NaN position gives its arrowheads zero
// rotations, finite, instead of NaN ones.
TEST_F(mxGizmoNodeSizingTest, ArrowheadsOfANodeAtANaNPositionGetZeroRotationsNotNaN) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    node->editLocalTransform(true).SetTranslate(Vec3(nan, 0.0f, -10.0f));
    node->UpdateGS();
    mxCamera camera;
    ASSERT_TRUE(
        camera.lookAt(Vec3(4.0f, 6.0f, 5.0f), Vec3(0.0f, 0.0f, -10.0f), Vec3(0.0f, 1.0f, 0.0f)));

    node->updateCameraFacing(&camera);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        const Mat3& m =
            node->getTranslateGizmo().getArrowHead(axis)->getLocalTransform().GetRotate();
        EXPECT_TRUE(MatrixNear(m, Mat3::ZERO, 0.0));
    }
}

// ---------------------------------------------------------------------------------------------
// On-screen size of a placed node

TEST_F(mxGizmoNodeSizingTest, PerspectiveAxesCoverSixtyPixelsAcrossTheView) {
    for (const Vec3& position : viewPoints(perspective, 10.0f)) {
        SCOPED_TRACE(::testing::Message() << position.X() << ", " << position.Y());
        expectAxesCoverPixels(perspective, position, cameraOrientation(perspective), 60.0f, csWidth,
                              csHeight);
    }
}

TEST_F(mxGizmoNodeSizingTest, PerspectiveAxesCoverHundredPixelsAtAnyDepth) {
    for (float depth : {2.0f, 10.0f, 250.0f}) {
        for (const Vec3& position : viewPoints(perspective, depth)) {
            SCOPED_TRACE(::testing::Message()
                         << position.X() << ", " << position.Y() << ", " << position.Z());
            expectAxesCoverPixels(perspective, position, cameraOrientation(perspective), 100.0f,
                                  csWidth, csHeight);
        }
    }
}

TEST_F(mxGizmoNodeSizingTest, OrthographicAxesCoverTheirPixelsAcrossTheView) {
    for (float pixelSize : {60.0f, 100.0f}) {
        for (const Vec3& position : viewPoints(orthographic, 30.0f)) {
            SCOPED_TRACE(::testing::Message()
                         << pixelSize << " px at " << position.X() << ", " << position.Y());
            expectAxesCoverPixels(orthographic, position, cameraOrientation(orthographic),
                                  pixelSize, csWidth, csHeight);
        }
    }
}

// An eye up and to the side looking down at a slant, for both projections.
TEST_F(mxGizmoNodeSizingTest, RotatedCameraKeepsTheSizeAcrossTheView) {
    for (mxCamera* camera : {&perspective, &orthographic}) {
        ASSERT_TRUE(camera->lookAt(Vec3(12.0f, 8.0f, 15.0f), Vec3(1.0f, 2.0f, -3.0f),
                                   Vec3(0.0f, 1.0f, 0.0f)));
        const float depth = (Vec3(1.0f, 2.0f, -3.0f) - camera->getLocation()).Length();
        for (float pixelSize : {60.0f, 100.0f}) {
            for (const Vec3& position : viewPoints(*camera, depth)) {
                SCOPED_TRACE(::testing::Message()
                             << (camera->isPerspective() ? "perspective " : "orthographic ")
                             << pixelSize << " px at " << position.X() << ", " << position.Y()
                             << ", " << position.Z());
                expectAxesCoverPixels(*camera, position, cameraOrientation(*camera), pixelSize,
                                      csWidth, csHeight);
            }
        }
    }
}

// The frame turned about the line of sight: both axes still lie in a plane facing the camera,
// now at a slant on screen.
TEST_F(mxGizmoNodeSizingTest, AxesTurnedWithinTheScreenPlaneKeepTheirSize) {
    ASSERT_TRUE(perspective.lookAt(Vec3(-6.0f, 4.0f, 9.0f), Vec3(2.0f, 0.0f, -5.0f),
                                   Vec3(0.0f, 1.0f, 0.0f)));
    const float depth = (Vec3(2.0f, 0.0f, -5.0f) - perspective.getLocation()).Length();
    const Mat3 rolled = cameraOrientation(perspective) * Rotation(0.0f, 0.0f, 1.0f, 0.6f);
    for (const Vec3& position : viewPoints(perspective, depth)) {
        SCOPED_TRACE(::testing::Message()
                     << position.X() << ", " << position.Y() << ", " << position.Z());
        expectAxesCoverPixels(perspective, position, rolled, 60.0f, csWidth, csHeight);
    }
}

} // namespace
