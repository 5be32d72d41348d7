// Tests for mx::mxBoundingVolume: merging spheres, spheres around point sets, the image of a
// sphere under a transformation, and point containment.

#include "scenegraph/mxBoundingVolume.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using mx::mxBoundingVolume;
using Transformation = mx::mxGenericTransformation<float>;
using Vec3 = Wm4::Vector3<float>;
using Mat3 = Wm4::Matrix3<float>;
using mx::test::Encloses;
using mx::test::Rotation;
using mx::test::VectorNear;

namespace {

// Single precision: a relative error of a few ulps on quantities of order 10.
constexpr float csTolerance = 1e-5f;
// Images of sphere surface points have coordinates of order 20: a few ulps of that.
constexpr float csImageTolerance = 1e-4f;

float Distance(const Vec3& a, const Vec3& b) { return (a - b).Length(); }

// Points spread over the unit sphere: the axis points and a fixed pseudo-random set.
std::vector<Vec3> UnitSpherePoints() {
    std::vector<Vec3> points = {Vec3(1, 0, 0),  Vec3(-1, 0, 0), Vec3(0, 1, 0),
                                Vec3(0, -1, 0), Vec3(0, 0, 1),  Vec3(0, 0, -1)};
    std::mt19937 generator(7);
    std::normal_distribution<float> normal(0.0f, 1.0f);
    while (points.size() < 500) {
        Vec3 direction(normal(generator), normal(generator), normal(generator));
        if (direction.Length() > 1e-3f) {
            direction.Normalize();
            points.push_back(direction);
        }
    }
    return points;
}

} // namespace

TEST(mxBoundingVolumeTest, DefaultVolumeIsThePointAtTheOrigin) {
    const mxBoundingVolume volume;
    EXPECT_EQ(Vec3(0, 0, 0), volume.getCenter());
    EXPECT_EQ(0.0f, volume.getRadius());
}

TEST(mxBoundingVolumeTest, ConstructorAndSettersStoreCentreAndRadius) {
    mxBoundingVolume volume(Vec3(1, 2, 3), 4.0f);
    EXPECT_EQ(Vec3(1, 2, 3), volume.getCenter());
    EXPECT_EQ(4.0f, volume.getRadius());
    volume.setCenter(Vec3(-5, 6, -7));
    volume.setRadius(8.0f);
    EXPECT_EQ(Vec3(-5, 6, -7), volume.getCenter());
    EXPECT_EQ(8.0f, volume.getRadius());
}

TEST(mxBoundingVolumeTest, EqualityComparesCentreAndRadius) {
    const mxBoundingVolume volume(Vec3(1, 2, 3), 4.0f);
    EXPECT_TRUE(volume == mxBoundingVolume(Vec3(1, 2, 3), 4.0f));
    EXPECT_FALSE(volume != mxBoundingVolume(Vec3(1, 2, 3), 4.0f));
    EXPECT_TRUE(volume != mxBoundingVolume(Vec3(1, 2, 3.5f), 4.0f));
    EXPECT_TRUE(volume != mxBoundingVolume(Vec3(1, 2, 3), 4.5f));
}

TEST(mxBoundingVolumeTest, GrowToContainDisjointSpheresSpansFromFarSideToFarSide) {
    // Along x: this sphere covers [-1, 1], the other [8, 12]; the result covers [-1, 12].
    mxBoundingVolume volume(Vec3(0, 0, 0), 1.0f);
    const mxBoundingVolume other(Vec3(10, 0, 0), 2.0f);
    volume.growToContain(other);
    EXPECT_TRUE(VectorNear(volume.getCenter(), Vec3(5.5f, 0, 0), csTolerance));
    EXPECT_NEAR(6.5f, volume.getRadius(), csTolerance);
    EXPECT_TRUE(Encloses(volume, mxBoundingVolume(Vec3(0, 0, 0), 1.0f), csTolerance));
    EXPECT_TRUE(Encloses(volume, other, csTolerance));
}

TEST(mxBoundingVolumeTest, GrowToContainAlongADiagonalIsTheSmallestEnclosingSphere) {
    // The centres are (2, 3, 6) apart, a distance of 7: the new diameter is 1 + 7 + 2.
    const mxBoundingVolume first(Vec3(1, 2, 3), 1.0f);
    const mxBoundingVolume second(Vec3(3, 5, 9), 2.0f);
    mxBoundingVolume volume = first;
    volume.growToContain(second);
    EXPECT_NEAR(5.0f, volume.getRadius(), csTolerance);
    // The centre moves 4 of the 7 units towards the other sphere.
    EXPECT_TRUE(VectorNear(volume.getCenter(), Vec3(1, 2, 3) + Vec3(2, 3, 6) * (4.0f / 7.0f),
                           csTolerance));
    EXPECT_TRUE(Encloses(volume, first, csTolerance));
    EXPECT_TRUE(Encloses(volume, second, csTolerance));
}

TEST(mxBoundingVolumeTest, GrowToContainGivesTheSameSphereWhicheverSideGrows) {
    const mxBoundingVolume first(Vec3(-2, 4, 1), 3.0f);
    const mxBoundingVolume second(Vec3(6, -1, 5), 1.5f);
    mxBoundingVolume grownFirst = first;
    grownFirst.growToContain(second);
    mxBoundingVolume grownSecond = second;
    grownSecond.growToContain(first);
    EXPECT_TRUE(VectorNear(grownFirst.getCenter(), grownSecond.getCenter(), csTolerance));
    EXPECT_NEAR(grownFirst.getRadius(), grownSecond.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, GrowToContainKeepsThisSphereWhenTheOtherIsInside) {
    mxBoundingVolume volume(Vec3(0, 0, 0), 5.0f);
    volume.growToContain(mxBoundingVolume(Vec3(1, 1, 0), 1.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(0, 0, 0), 5.0f), volume);
}

TEST(mxBoundingVolumeTest, GrowToContainKeepsThisSphereWhenTheOtherTouchesItFromInside) {
    // The other sphere reaches x = 3, exactly this sphere's surface.
    mxBoundingVolume volume(Vec3(0, 0, 0), 3.0f);
    volume.growToContain(mxBoundingVolume(Vec3(2, 0, 0), 1.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(0, 0, 0), 3.0f), volume);
}

TEST(mxBoundingVolumeTest, GrowToContainBecomesTheOtherSphereWhenThisIsInside) {
    mxBoundingVolume volume(Vec3(1, 0, 0), 1.0f);
    volume.growToContain(mxBoundingVolume(Vec3(0, 0, 0), 5.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(0, 0, 0), 5.0f), volume);
}

TEST(mxBoundingVolumeTest, GrowToContainWithCoincidentCentresTakesTheLargerRadius) {
    mxBoundingVolume smaller(Vec3(1, 2, 3), 1.0f);
    smaller.growToContain(mxBoundingVolume(Vec3(1, 2, 3), 4.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(1, 2, 3), 4.0f), smaller);

    mxBoundingVolume larger(Vec3(1, 2, 3), 4.0f);
    larger.growToContain(mxBoundingVolume(Vec3(1, 2, 3), 1.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(1, 2, 3), 4.0f), larger);
}

TEST(mxBoundingVolumeTest, GrowToContainOfTwoPointsIsTheSphereOverTheirSegment) {
    // (0, 6, 8) is 10 from the origin: a 3-4-5 triangle scaled by 2.
    mxBoundingVolume volume(Vec3(0, 0, 0), 0.0f);
    volume.growToContain(mxBoundingVolume(Vec3(0, 6, 8), 0.0f));
    EXPECT_TRUE(VectorNear(volume.getCenter(), Vec3(0, 3, 4), csTolerance));
    EXPECT_NEAR(5.0f, volume.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, GrowToContainOfTheSamePointStaysThatPoint) {
    mxBoundingVolume volume(Vec3(2, -3, 4), 0.0f);
    volume.growToContain(mxBoundingVolume(Vec3(2, -3, 4), 0.0f));
    EXPECT_EQ(mxBoundingVolume(Vec3(2, -3, 4), 0.0f), volume);
}

TEST(mxBoundingVolumeTest, GrowToContainOfAPointOutsideReachesIt) {
    mxBoundingVolume volume(Vec3(0, 0, 0), 2.0f);
    volume.growToContain(mxBoundingVolume(Vec3(0, 0, 10), 0.0f));
    // From z = -2 to z = 10.
    EXPECT_TRUE(VectorNear(volume.getCenter(), Vec3(0, 0, 4), csTolerance));
    EXPECT_NEAR(6.0f, volume.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, ComputeFromNoPointGivesThePointAtTheOrigin) {
    mxBoundingVolume volume(Vec3(5, 5, 5), 3.0f);
    volume.computeFromPoints({});
    EXPECT_EQ(mxBoundingVolume(), volume);
}

TEST(mxBoundingVolumeTest, ComputeFromOnePointGivesThatPointWithRadiusZero) {
    mxBoundingVolume volume(Vec3(5, 5, 5), 3.0f);
    volume.computeFromPoints({Vec3(-1, 2, 7)});
    EXPECT_EQ(mxBoundingVolume(Vec3(-1, 2, 7), 0.0f), volume);
}

TEST(mxBoundingVolumeTest, ComputeFromPointsCentresOnTheirBoxAndReachesTheFarthest) {
    // Box [-1, 3] x [0, 2] x [0, 0], centre (1, 1, 0); the farthest points are sqrt(5) away.
    mxBoundingVolume volume;
    volume.computeFromPoints({Vec3(-1, 0, 0), Vec3(3, 0, 0), Vec3(0, 2, 0), Vec3(1, 1, 0)});
    EXPECT_TRUE(VectorNear(volume.getCenter(), Vec3(1, 1, 0), csTolerance));
    EXPECT_NEAR(std::sqrt(5.0f), volume.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, ComputeFromPointsEnclosesEveryPointAndTouchesOne) {
    std::mt19937 generator(11);
    std::uniform_real_distribution<float> coordinate(-50.0f, 50.0f);
    std::vector<Vec3> points;
    for (int i = 0; i < 200; ++i) {
        points.emplace_back(coordinate(generator), coordinate(generator), coordinate(generator));
    }
    mxBoundingVolume volume;
    volume.computeFromPoints(points);
    // Coordinates up to 50: allow a few ulps of that.
    const float tolerance = 50.0f * 1e-6f;
    float farthest = 0.0f;
    for (const Vec3& point : points) {
        EXPECT_TRUE(volume.contains(point, tolerance));
        farthest = std::max(farthest, Distance(point, volume.getCenter()));
    }
    EXPECT_NEAR(farthest, volume.getRadius(), tolerance);
}

TEST(mxBoundingVolumeTest, TransformedByIdentityIsTheSameSphere) {
    const mxBoundingVolume volume(Vec3(1, 2, 3), 4.0f);
    EXPECT_EQ(volume, volume.transformedBy(Transformation()));
}

TEST(mxBoundingVolumeTest, TransformedByTranslationMovesTheCentreOnly) {
    Transformation translation;
    translation.SetTranslate(Vec3(10, -20, 30));
    const mxBoundingVolume image = mxBoundingVolume(Vec3(1, 2, 3), 4.0f).transformedBy(translation);
    EXPECT_TRUE(VectorNear(image.getCenter(), Vec3(11, -18, 33), csTolerance));
    EXPECT_EQ(4.0f, image.getRadius());
}

TEST(mxBoundingVolumeTest, TransformedByRotationAndUniformScaleScalesTheRadiusExactly) {
    // A quarter turn about z maps (1, 0, 0) to (0, 1, 0); scale 3 then takes it to (0, 3, 0).
    Transformation transformation;
    transformation.SetRotate(Rotation(0, 0, 1, static_cast<float>(M_PI / 2)));
    transformation.SetUniformScale(3.0f);
    transformation.SetTranslate(Vec3(0, 0, 5));
    const mxBoundingVolume image = mxBoundingVolume(Vec3(1, 0, 0), 2.0f).transformedBy(transformation);
    EXPECT_TRUE(VectorNear(image.getCenter(), Vec3(0, 3, 5), csTolerance));
    EXPECT_NEAR(6.0f, image.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, TransformedByNegativeUniformScaleKeepsAPositiveRadius) {
    Transformation transformation;
    transformation.SetUniformScale(-2.0f);
    const mxBoundingVolume image = mxBoundingVolume(Vec3(1, 2, 3), 1.5f).transformedBy(transformation);
    EXPECT_TRUE(VectorNear(image.getCenter(), Vec3(-2, -4, -6), csTolerance));
    EXPECT_NEAR(3.0f, image.getRadius(), csTolerance);
}

TEST(mxBoundingVolumeTest, TransformedByNonUniformScaleUsesTheLargestAbsoluteScale) {
    Transformation transformation;
    transformation.SetRotate(Rotation(1, 1, 0, 0.6f));
    transformation.SetScale(Vec3(2, -5, 0.5f));
    transformation.SetTranslate(Vec3(1, 1, 1));
    const mxBoundingVolume volume(Vec3(3, -1, 2), 2.0f);
    const mxBoundingVolume image = volume.transformedBy(transformation);
    EXPECT_TRUE(
        VectorNear(image.getCenter(), transformation.ApplyForward(volume.getCenter()), csTolerance));
    EXPECT_NEAR(10.0f, image.getRadius(), csTolerance);
    // The bound holds: every surface point lands inside.
    for (const Vec3& direction : UnitSpherePoints()) {
        const Vec3 surface = volume.getCenter() + direction * volume.getRadius();
        EXPECT_TRUE(image.contains(transformation.ApplyForward(surface), csImageTolerance));
    }
}

TEST(mxBoundingVolumeTest, TransformedByGeneralMatrixScalesByTheFrobeniusNorm) {
    // Squares of the entries sum to 4 + 1 + 4 + 9 + 1 + 16 + 4 + 1 + 9 = 49: the norm is 7.
    const Mat3 matrix(2, 1, -2, 3, 1, 4, 2, 1, -3);
    Transformation transformation;
    transformation.SetMatrix(matrix);
    transformation.SetTranslate(Vec3(-4, 0, 2));
    const mxBoundingVolume volume(Vec3(1, -2, 0.5f), 1.5f);
    const mxBoundingVolume image = volume.transformedBy(transformation);
    EXPECT_TRUE(VectorNear(image.getCenter(), matrix * volume.getCenter() + Vec3(-4, 0, 2),
                           csTolerance));
    EXPECT_NEAR(10.5f, image.getRadius(), csTolerance);
    for (const Vec3& direction : UnitSpherePoints()) {
        const Vec3 surface = volume.getCenter() + direction * volume.getRadius();
        EXPECT_TRUE(image.contains(transformation.ApplyForward(surface), csImageTolerance));
    }
}

TEST(mxBoundingVolumeTest, TransformedByAPointSphereStaysAPoint) {
    Transformation transformation;
    transformation.SetMatrix(Mat3(1, 2, 3, 4, 5, 6, 7, 8, 10));
    const mxBoundingVolume image = mxBoundingVolume(Vec3(1, 0, 0), 0.0f).transformedBy(transformation);
    EXPECT_TRUE(VectorNear(image.getCenter(), Vec3(1, 4, 7), csTolerance));
    EXPECT_EQ(0.0f, image.getRadius());
}

TEST(mxBoundingVolumeTest, ContainsPointsInsideAndOnTheSurfaceButNotOutside) {
    const mxBoundingVolume volume(Vec3(1, 1, 1), 2.0f);
    EXPECT_TRUE(volume.contains(Vec3(1, 1, 1)));
    EXPECT_TRUE(volume.contains(Vec3(2, 2, 1)));
    EXPECT_TRUE(volume.contains(Vec3(3, 1, 1)));
    EXPECT_FALSE(volume.contains(Vec3(3.01f, 1, 1)));
    EXPECT_FALSE(volume.contains(Vec3(-1, -1, -1)));
}

TEST(mxBoundingVolumeTest, ContainsWithToleranceAcceptsPointsJustOutside) {
    const mxBoundingVolume volume(Vec3(0, 0, 0), 1.0f);
    EXPECT_FALSE(volume.contains(Vec3(0, 0, 1.5f)));
    EXPECT_TRUE(volume.contains(Vec3(0, 0, 1.5f), 0.5f));
    EXPECT_FALSE(volume.contains(Vec3(0, 0, 1.6f), 0.5f));
}

TEST(mxBoundingVolumeTest, APointSphereContainsOnlyItsCentre) {
    const mxBoundingVolume point(Vec3(4, 5, 6), 0.0f);
    EXPECT_TRUE(point.contains(Vec3(4, 5, 6)));
    EXPECT_FALSE(point.contains(Vec3(4, 5, 6.001f)));
}
