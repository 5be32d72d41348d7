// Tests for mx::mxGizmoNode's static transform arithmetic: the rotation about a centre (from a
// matrix or from an axis and an angle), the scaling about a centre along a frame, and the
// extraction of a proper rotation from any transformation.
//
// Most fixtures use axis-aligned vectors and lengths of 2 and 4, so that every step of the
// arithmetic is exact in single precision and the results can be compared entry for entry.

#include "node/mxGizmoNode.h"

#include "scenegraph/mxGenericTransformation.h"
#include "support/mxTestGeometry.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using mx::mxGizmoNode;
using mx::test::MatrixNear;
using mx::test::Rotation;
using mx::test::VectorNear;
using Mat3 = Wm4::Matrix3<float>;
using Vec3 = Wm4::Vector3<float>;
using Xform = mx::mxGenericTransformation<float>;

namespace {

constexpr float csPi = 3.14159265358979323846f;

// Entries are at most a few units: a few ulps of that.
constexpr double csMatrixTolerance = 1e-6;
// Points in these tests stay within about 10 of the origin.
constexpr double csPointTolerance = 1e-5;

Mat3 Identity() {
    return Mat3(false);
}

Mat3 Columns(const Vec3& c0, const Vec3& c1, const Vec3& c2) {
    return Mat3(c0, c1, c2, true);
}

Vec3 Column(const Mat3& m, int j) {
    return Vec3(m(0, j), m(1, j), m(2, j));
}

// A quarter turn about +Z built from exact columns: X goes to Y and Y to -X.
Mat3 QuarterTurnAboutZ() {
    return Columns(Vec3(0.0f, 1.0f, 0.0f), Vec3(-1.0f, 0.0f, 0.0f), Vec3(0.0f, 0.0f, 1.0f));
}

// A half turn about +Z: -x and -y, exactly.
Mat3 HalfTurnAboutZ() {
    return Mat3(-1.0f, -1.0f, 1.0f);
}

// A transformation far from the identity in every member, to show that the operations start
// from the identity rather than from what the output held.
Xform Cluttered() {
    Xform t;
    t.SetMatrix(Mat3(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 10.0f));
    t.SetScale(Vec3(2.0f, 3.0f, 4.0f));
    t.SetTranslate(Vec3(9.0f, 9.0f, 9.0f));
    return t;
}

// A transformation held as the general matrix with the given columns.
Xform General(const Vec3& c0, const Vec3& c1, const Vec3& c2) {
    Xform t;
    t.SetMatrix(Columns(c0, c1, c2));
    return t;
}

// ExtractRotation into a matrix full of NaN, so that an entry left unwritten shows.
Mat3 Extract(const Xform& t) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Mat3 rotation(nan, nan, nan, nan, nan, nan, nan, nan, nan);
    mxGizmoNode::ExtractRotation(t, rotation);
    return rotation;
}

// The right-handed rotation about (x, y, z) as the library writes it, the axis taken as given.
Mat3 AxisAngleMatrix(float x, float y, float z, float angle) {
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float k = 1.0f - c;
    return Mat3(x * x * k + c, x * y * k - z * s, x * z * k + y * s, x * y * k + z * s,
                y * y * k + c, y * z * k - x * s, x * z * k - y * s, y * z * k + x * s,
                z * z * k + c);
}

// Success when every entry equals the expected one with == (so 0 equals -0).
::testing::AssertionResult MatrixIs(const Mat3& actual, const Mat3& expected) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (!(actual(r, c) == expected(r, c))) {
                return ::testing::AssertionFailure()
                       << "entry (" << r << ", " << c << ") is " << actual(r, c) << ", expected "
                       << expected(r, c);
            }
        }
    }
    return ::testing::AssertionSuccess();
}

// Success when both matrices hold the same bits in every entry.
::testing::AssertionResult SameBits(const Mat3& actual, const Mat3& expected) {
    float a[9];
    float e[9];
    for (int i = 0; i < 9; ++i) {
        a[i] = actual(i / 3, i % 3);
        e[i] = expected(i / 3, i % 3);
    }
    if (std::memcmp(a, e, sizeof a) == 0) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "the matrices differ in their bits";
}

::testing::AssertionResult VectorIs(const Vec3& actual, const Vec3& expected) {
    return VectorNear(actual, expected, 0.0);
}

// Success when t is the identity in every member, as a new transformation is.
::testing::AssertionResult IsPlainIdentity(const Xform& t) {
    if (t == Xform()) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "not the identity: IsIdentity " << t.IsIdentity() << ", IsRSMatrix " << t.IsRSMatrix()
           << ", translation (" << t.GetTranslate()[0] << ", " << t.GetTranslate()[1] << ", "
           << t.GetTranslate()[2] << ")";
}

// ---------------------------------------------------------------------------------------------
// ComputeRotation from a matrix

TEST(mxGizmoNodeTransformTest, RotationByIdentityMatrixGivesIdentityForAnyCentre) {
    const Vec3 centres[] = {Vec3(0.0f, 0.0f, 0.0f), Vec3(1.0f, 2.0f, 3.0f),
                            Vec3(-100.0f, 50.0f, 7.0f)};
    for (const Vec3& centre : centres) {
        Xform out = Cluttered();
        mxGizmoNode::ComputeRotation(Identity(), centre, out);
        EXPECT_TRUE(out.IsIdentity());
        EXPECT_TRUE(IsPlainIdentity(out));
    }
}

TEST(mxGizmoNodeTransformTest, QuarterTurnAboutZThroughOneZeroZeroTranslatesByOneMinusOneZero) {
    // The centre (1, 0, 0) turns to (0, 1, 0), so it stays put only after (1, -1, 0).
    Xform out = Cluttered();
    mxGizmoNode::ComputeRotation(QuarterTurnAboutZ(), Vec3(1.0f, 0.0f, 0.0f), out);

    EXPECT_FALSE(out.IsIdentity());
    EXPECT_TRUE(out.IsRSMatrix());
    EXPECT_TRUE(out.IsUniformScale());
    EXPECT_TRUE(SameBits(out.GetRotate(), QuarterTurnAboutZ()));
    EXPECT_TRUE(VectorIs(out.GetScale(), Vec3(1.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(1.0f, -1.0f, 0.0f)));
    EXPECT_TRUE(VectorIs(out.ApplyForward(Vec3(1.0f, 0.0f, 0.0f)), Vec3(1.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, CentreInducedTranslationOfHalfAThousandthIsDroppedLeavingRotation) {
    // A half turn about Z through (0.00025, 0, 0) would translate by (0.0005, 0, 0).
    Xform out = Cluttered();
    mxGizmoNode::ComputeRotation(HalfTurnAboutZ(), Vec3(0.00025f, 0.0f, 0.0f), out);

    Xform rotationOnly;
    rotationOnly.SetRotate(HalfTurnAboutZ());
    EXPECT_TRUE(out == rotationOnly);
    EXPECT_FALSE(out.IsIdentity());
    EXPECT_TRUE(out.IsRSMatrix());
    EXPECT_TRUE(SameBits(out.GetRotate(), HalfTurnAboutZ()));
    EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, RotationKeepsTranslationFromSquaredLengthOfAMillionthAndDropsBelow) {
    // A half turn translates by twice the centre: 0.0011 (squared 1.21e-6) is kept, 0.00095
    // (squared 9.0e-7) is dropped.
    Xform kept;
    mxGizmoNode::ComputeRotation(HalfTurnAboutZ(), Vec3(0.00055f, 0.0f, 0.0f), kept);
    EXPECT_TRUE(VectorNear(kept.GetTranslate(), Vec3(0.0011f, 0.0f, 0.0f), 1e-9));

    Xform dropped;
    mxGizmoNode::ComputeRotation(HalfTurnAboutZ(), Vec3(0.000475f, 0.0f, 0.0f), dropped);
    EXPECT_TRUE(VectorIs(dropped.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
    EXPECT_TRUE(SameBits(dropped.GetRotate(), HalfTurnAboutZ()));
}

TEST(mxGizmoNodeTransformTest, MatrixWithinAMillionthOfIdentityInEveryEntryLeavesRotationUnset) {
    // Each entry in turn off the identity by 0.9e-6; about the origin nothing translates
    // either, so the result is the identity.
    for (int entry = 0; entry < 9; ++entry) {
        SCOPED_TRACE(entry);
        Mat3 nearIdentity = Identity();
        nearIdentity(entry / 3, entry % 3) += (entry % 2 == 0) ? 0.9e-6f : -0.9e-6f;
        Xform out = Cluttered();
        mxGizmoNode::ComputeRotation(nearIdentity, Vec3(0.0f, 0.0f, 0.0f), out);
        EXPECT_TRUE(IsPlainIdentity(out));
    }

    // All nine entries off at once.
    Mat3 allOff(1.0f + 0.5e-6f, 0.5e-6f, -0.5e-6f, 0.5e-6f, 1.0f - 0.5e-6f, 0.5e-6f, -0.5e-6f,
                0.5e-6f, 1.0f + 0.5e-6f);
    Xform out = Cluttered();
    mxGizmoNode::ComputeRotation(allOff, Vec3(0.0f, 0.0f, 0.0f), out);
    EXPECT_TRUE(IsPlainIdentity(out));
}

TEST(mxGizmoNodeTransformTest, MatrixDifferingFromIdentityByAMillionthOrMoreInOneEntryIsSet) {
    for (int entry = 0; entry < 9; ++entry) {
        SCOPED_TRACE(entry);
        Mat3 offIdentity = Identity();
        offIdentity(entry / 3, entry % 3) += (entry % 2 == 0) ? 1.1e-6f : -1.1e-6f;
        Xform out = Cluttered();
        mxGizmoNode::ComputeRotation(offIdentity, Vec3(0.0f, 0.0f, 0.0f), out);
        EXPECT_FALSE(out.IsIdentity());
        EXPECT_TRUE(out.IsRSMatrix());
        EXPECT_TRUE(SameBits(out.GetRotate(), offIdentity));
        EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
    }
}

TEST(mxGizmoNodeTransformTest, MatrixLeftUnsetStillTranslatesAFarCentreByWhatItMovesIt) {
    // 5e-7 in entry (0, 1) is too little for a rotation, but at y = 10000 it moves the centre
    // by 0.005 along x, which is kept.
    Mat3 nearIdentity = Identity();
    nearIdentity(0, 1) = 5e-7f;
    Xform out;
    mxGizmoNode::ComputeRotation(nearIdentity, Vec3(0.0f, 10000.0f, 0.0f), out);

    EXPECT_FALSE(out.IsIdentity());
    EXPECT_TRUE(out.IsRSMatrix());
    EXPECT_TRUE(SameBits(out.GetRotate(), Identity()));
    EXPECT_TRUE(VectorNear(out.GetTranslate(), Vec3(-0.005f, 0.0f, 0.0f), 1e-6));
}

// ---------------------------------------------------------------------------------------------
// ComputeRotation from an axis and an angle

struct AxisAngleCase {
    Vec3 axis;
    float angle;
    Vec3 centre;
};

std::vector<AxisAngleCase> UnitAxisCases() {
    const float third = 1.0f / std::sqrt(3.0f);
    return {
        {Vec3(1.0f, 0.0f, 0.0f), 0.5f, Vec3(0.0f, 2.0f, 0.0f)},
        {Vec3(0.0f, 1.0f, 0.0f), -1.0f, Vec3(3.0f, 0.0f, 1.0f)},
        {Vec3(0.0f, 0.0f, 1.0f), csPi / 2.0f, Vec3(1.0f, 0.0f, 0.0f)},
        {Vec3(third, third, third), 2.0f, Vec3(1.0f, -2.0f, 4.0f)},
        {Vec3(0.6f, 0.0f, -0.8f), 3.0f, Vec3(-5.0f, 5.0f, 2.0f)},
        {Vec3(0.0f, -0.8f, 0.6f), csPi, Vec3(0.0f, 0.0f, 0.0f)},
    };
}

TEST(mxGizmoNodeTransformTest,
     AxisAngleRotationEqualsMatrixRotationWithRightHandedAxisAngleMatrix) {
    for (const AxisAngleCase& c : UnitAxisCases()) {
        SCOPED_TRACE(c.angle);
        const Mat3 formula = AxisAngleMatrix(c.axis.X(), c.axis.Y(), c.axis.Z(), c.angle);
        Xform expected;
        mxGizmoNode::ComputeRotation(formula, c.centre, expected);
        Xform actual = Cluttered();
        mxGizmoNode::ComputeRotation(c.axis, c.angle, c.centre, actual);

        EXPECT_EQ(expected.IsIdentity(), actual.IsIdentity());
        EXPECT_EQ(expected.IsRSMatrix(), actual.IsRSMatrix());
        EXPECT_TRUE(MatrixNear(actual.GetRotate(), expected.GetRotate(), csMatrixTolerance));
        EXPECT_TRUE(VectorIs(actual.GetScale(), Vec3(1.0f, 1.0f, 1.0f)));
        EXPECT_TRUE(VectorNear(actual.GetTranslate(), expected.GetTranslate(), csPointTolerance));
    }
}

TEST(mxGizmoNodeTransformTest, AxisAngleRotationAboutUnitAxisIsWildMagicsRotation) {
    for (const AxisAngleCase& c : UnitAxisCases()) {
        SCOPED_TRACE(c.angle);
        Xform out;
        mxGizmoNode::ComputeRotation(c.axis, c.angle, c.centre, out);
        const Mat3 rotation = Rotation(c.axis.X(), c.axis.Y(), c.axis.Z(), c.angle);
        EXPECT_TRUE(out.IsRSMatrix());
        EXPECT_TRUE(MatrixNear(out.GetRotate(), rotation, csMatrixTolerance));
        EXPECT_TRUE(
            VectorNear(out.GetTranslate(), c.centre - rotation * c.centre, csPointTolerance));
    }
}

TEST(mxGizmoNodeTransformTest, QuarterTurnAboutZAxisTurnsXTowardsYAboutTheCentre) {
    // Right-handed: seen from +Z the turn is counter-clockwise. Through (1, 0, 0) the
    // translation is (1, -1, 0) up to the rounding of cos(pi / 2).
    Xform out;
    mxGizmoNode::ComputeRotation(Vec3(0.0f, 0.0f, 1.0f), csPi / 2.0f, Vec3(1.0f, 0.0f, 0.0f), out);
    EXPECT_TRUE(MatrixNear(out.GetRotate(), QuarterTurnAboutZ(), csMatrixTolerance));
    EXPECT_TRUE(VectorNear(out.GetTranslate(), Vec3(1.0f, -1.0f, 0.0f), csMatrixTolerance));
    EXPECT_TRUE(VectorNear(out.ApplyForward(Vec3(2.0f, 0.0f, 0.0f)), Vec3(1.0f, 1.0f, 0.0f),
                           csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, AxisIsUsedAsGivenSoANonUnitAxisGivesTheFormulasNonRotation) {
    // Axis (0, 0, 2), a quarter turn: z^2 k + c = 4 - 3c is about 4 and x y k - z s = -2 s
    // about -2, where a unit axis would give 1 and -1.
    Xform out;
    mxGizmoNode::ComputeRotation(Vec3(0.0f, 0.0f, 2.0f), csPi / 2.0f, Vec3(0.0f, 0.0f, 0.0f), out);
    EXPECT_TRUE(out.IsRSMatrix());
    EXPECT_NEAR(4.0, out.GetRotate()(2, 2), 1e-6);
    EXPECT_NEAR(-2.0, out.GetRotate()(0, 1), 1e-6);
    EXPECT_TRUE(MatrixNear(out.GetRotate(), AxisAngleMatrix(0.0f, 0.0f, 2.0f, csPi / 2.0f),
                           csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, ZeroAndFullTurnsGiveIdentity) {
    // A full turn in single precision leaves sin at about 1.7e-7: within the identity's
    // tolerance, and so is what it does to the centre.
    for (float angle : {0.0f, 2.0f * csPi}) {
        SCOPED_TRACE(angle);
        Xform out = Cluttered();
        mxGizmoNode::ComputeRotation(Vec3(0.0f, 0.0f, 1.0f), angle, Vec3(1.0f, 2.0f, 3.0f), out);
        EXPECT_TRUE(IsPlainIdentity(out));
    }
}

// ---------------------------------------------------------------------------------------------
// ComputeHomotheticTransform

std::vector<Mat3> SomeFrames() {
    return {Identity(), QuarterTurnAboutZ(), Rotation(1.0f, 2.0f, 3.0f, 0.7f),
            Mat3(true), // not even a frame: equal factors never read it
            Mat3(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 10.0f)};
}

TEST(mxGizmoNodeTransformTest, HomotheticWithUnitFactorsGivesIdentityForAnyFrameAndCentre) {
    const Vec3 centres[] = {Vec3(0.0f, 0.0f, 0.0f), Vec3(1.0f, 0.0f, 0.0f),
                            Vec3(-3.0f, 7.0f, 11.0f)};
    for (const Mat3& frame : SomeFrames()) {
        for (const Vec3& centre : centres) {
            Xform out = Cluttered();
            mxGizmoNode::ComputeHomotheticTransform(Vec3(1.0f, 1.0f, 1.0f), frame, centre, out);
            EXPECT_TRUE(IsPlainIdentity(out));
        }
    }
}

TEST(mxGizmoNodeTransformTest,
     HomotheticByTwoAboutOneZeroZeroGivesUniformTwoAndMinusOneXWhateverFrame) {
    for (const Mat3& frame : SomeFrames()) {
        Xform out = Cluttered();
        mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 2.0f, 2.0f), frame,
                                                Vec3(1.0f, 0.0f, 0.0f), out);
        EXPECT_FALSE(out.IsIdentity());
        EXPECT_TRUE(out.IsRSMatrix());
        EXPECT_TRUE(out.IsUniformScale());
        EXPECT_EQ(2.0f, out.GetUniformScale());
        EXPECT_TRUE(VectorIs(out.GetScale(), Vec3(2.0f, 2.0f, 2.0f)));
        EXPECT_TRUE(MatrixIs(out.GetRotate(), Identity()));
        EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(-1.0f, 0.0f, 0.0f)));
    }
}

TEST(mxGizmoNodeTransformTest, HomotheticWithEqualFactorsAboutOriginSetsItsZeroTranslation) {
    Xform out = Cluttered();
    mxGizmoNode::ComputeHomotheticTransform(Vec3(3.0f, 3.0f, 3.0f), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.0f, 0.0f), out);
    EXPECT_FALSE(out.IsIdentity());
    EXPECT_TRUE(out.IsUniformScale());
    EXPECT_EQ(3.0f, out.GetUniformScale());
    EXPECT_TRUE(MatrixIs(out.GetRotate(), Identity()));
    EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest,
     HomotheticTwoOneOneInIdentityFrameAboutOneOneOneGivesScaleAndMinusOneX) {
    Xform out = Cluttered();
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), Identity(),
                                            Vec3(1.0f, 1.0f, 1.0f), out);
    EXPECT_FALSE(out.IsIdentity());
    EXPECT_TRUE(out.IsRSMatrix());
    EXPECT_FALSE(out.IsUniformScale());
    EXPECT_TRUE(VectorIs(out.GetScale(), Vec3(2.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(MatrixIs(out.GetRotate(), Identity()));
    EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(-1.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, HomotheticInIdentityFrameSetsTranslationHoweverShort) {
    // About (0.0001, 0, 0) the translation is (-0.0001, 0, 0), far below what a rotated frame
    // keeps; about the origin it is zero.
    Xform nearOrigin;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), Identity(),
                                            Vec3(0.0001f, 0.0f, 0.0f), nearOrigin);
    EXPECT_TRUE(VectorNear(nearOrigin.GetTranslate(), Vec3(-0.0001f, 0.0f, 0.0f), 1e-10));

    Xform atOrigin;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), Identity(),
                                            Vec3(0.0f, 0.0f, 0.0f), atOrigin);
    EXPECT_FALSE(atOrigin.IsIdentity());
    EXPECT_TRUE(atOrigin.IsRSMatrix());
    EXPECT_TRUE(VectorIs(atOrigin.GetScale(), Vec3(2.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(VectorIs(atOrigin.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, HomotheticTakesFrameWithinAMillionthOfIdentityAsIdentity) {
    Mat3 nearIdentity = Identity();
    nearIdentity(1, 0) = 0.9e-6f;
    nearIdentity(2, 2) = 1.0f - 0.9e-6f;
    Xform near;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), nearIdentity,
                                            Vec3(0.0f, 0.0f, 0.0f), near);
    EXPECT_TRUE(near.IsRSMatrix());
    EXPECT_TRUE(MatrixIs(near.GetRotate(), Identity()));
    EXPECT_TRUE(VectorIs(near.GetScale(), Vec3(2.0f, 1.0f, 1.0f)));

    Mat3 offIdentity = Identity();
    offIdentity(1, 0) = 1.1e-6f;
    Xform off;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), offIdentity,
                                            Vec3(0.0f, 0.0f, 0.0f), off);
    EXPECT_FALSE(off.IsRSMatrix());
}

TEST(mxGizmoNodeTransformTest,
     HomotheticTwoOneOneInQuarterTurnFrameAboutOriginGivesGeneralDiagOneTwoOne) {
    // The frame's first column is Y, so the factor 2 lands on y.
    Xform out = Cluttered();
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.0f, 0.0f), out);
    EXPECT_FALSE(out.IsIdentity());
    EXPECT_FALSE(out.IsRSMatrix());
    EXPECT_TRUE(MatrixIs(out.GetMatrix(), Mat3(1.0f, 2.0f, 1.0f)));
    EXPECT_TRUE(VectorIs(out.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, HomotheticInRotatedFrameKeepsOnlyTranslationsFromAThousandth) {
    // M = diag(1, 2, 1): about (0, c, 0) the translation is (0, -c, 0).
    Xform dropped;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.0004f, 0.0f), dropped);
    EXPECT_FALSE(dropped.IsRSMatrix());
    EXPECT_TRUE(VectorIs(dropped.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));

    Xform kept;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 1.0f), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.002f, 0.0f), kept);
    EXPECT_FALSE(kept.IsRSMatrix());
    EXPECT_TRUE(MatrixIs(kept.GetMatrix(), Mat3(1.0f, 2.0f, 1.0f)));
    EXPECT_TRUE(VectorNear(kept.GetTranslate(), Vec3(0.0f, -0.002f, 0.0f), 1e-9));
}

TEST(mxGizmoNodeTransformTest,
     HomotheticInRotatedFrameLeavesMatrixWithinAMillionthOfIdentityUnset) {
    // The factor on z is 1 plus four ulps (4.8e-7): not uniform, so the frame is used, but the
    // matrix it gives is the identity within tolerance. About the origin nothing is set.
    const float nearOne = 1.0f + 4.0f * std::numeric_limits<float>::epsilon();
    Xform near = Cluttered();
    mxGizmoNode::ComputeHomotheticTransform(Vec3(1.0f, 1.0f, nearOne), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.0f, 0.0f), near);
    EXPECT_TRUE(IsPlainIdentity(near));

    // 1 + 2e-6 is far enough to be set, exactly as computed.
    const float offOne = 1.0f + 2e-6f;
    Xform off;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(1.0f, 1.0f, offOne), QuarterTurnAboutZ(),
                                            Vec3(0.0f, 0.0f, 0.0f), off);
    EXPECT_FALSE(off.IsRSMatrix());
    EXPECT_TRUE(MatrixIs(off.GetMatrix(), Mat3(1.0f, 1.0f, offOne)));
    EXPECT_TRUE(VectorIs(off.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f)));
}

TEST(mxGizmoNodeTransformTest, HomotheticFactorsDifferingInTheLastBitAreNotUniform) {
    const float justAboveTwo = std::nextafter(2.0f, 3.0f);
    const float justAboveOne = std::nextafter(1.0f, 2.0f);

    Xform rotatedFrame;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 2.0f, justAboveTwo), QuarterTurnAboutZ(),
                                            Vec3(1.0f, 0.0f, 0.0f), rotatedFrame);
    EXPECT_FALSE(rotatedFrame.IsRSMatrix());

    Xform identityFrame;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 2.0f, justAboveTwo), Identity(),
                                            Vec3(1.0f, 0.0f, 0.0f), identityFrame);
    EXPECT_TRUE(identityFrame.IsRSMatrix());
    EXPECT_FALSE(identityFrame.IsUniformScale());
    EXPECT_TRUE(VectorIs(identityFrame.GetScale(), Vec3(2.0f, 2.0f, justAboveTwo)));

    // Nearly all ones is not the identity either.
    Xform nearlyOne;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(justAboveOne, 1.0f, 1.0f), Identity(),
                                            Vec3(0.0f, 0.0f, 0.0f), nearlyOne);
    EXPECT_FALSE(nearlyOne.IsIdentity());
    EXPECT_TRUE(VectorIs(nearlyOne.GetScale(), Vec3(justAboveOne, 1.0f, 1.0f)));
}

// Centre, centre + column j of the frame and the results: the centre stays, and the column
// is scaled by its own factor.
void ExpectScalesAlongFrameAboutCentre(const Xform& out, const Mat3& frame, const Vec3& scale,
                                       const Vec3& centre) {
    EXPECT_TRUE(VectorNear(out.ApplyForward(centre), centre, csPointTolerance));
    for (int j = 0; j < 3; ++j) {
        const Vec3 column = Column(frame, j);
        EXPECT_TRUE(VectorNear(out.ApplyForward(centre + column), centre + scale[j] * column,
                               csPointTolerance))
            << "column " << j;
    }
}

TEST(mxGizmoNodeTransformTest, HomotheticScalesRandomFrameColumnsAboutTheCentre) {
    // Factors kept at least 0.25 away from 1 and centres at least 0.5 from the origin, so the
    // translation is never short enough to be dropped.
    std::mt19937 random(20250917u);
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    std::uniform_real_distribution<float> angle(-csPi, csPi);
    std::uniform_real_distribution<float> shrink(0.25f, 0.75f);
    std::uniform_real_distribution<float> grow(1.25f, 2.5f);
    std::uniform_real_distribution<float> coordinate(-2.0f, 2.0f);
    std::bernoulli_distribution coin(0.5);

    int cases = 0;
    while (cases < 300) {
        const Vec3 axis(unit(random), unit(random), unit(random));
        const Vec3 centre(coordinate(random), coordinate(random), coordinate(random));
        if (axis.Length() < 0.1f || centre.Length() < 0.5f) {
            continue;
        }
        const Mat3 frame = Rotation(axis.X(), axis.Y(), axis.Z(), angle(random));
        Vec3 scale(0.0f, 0.0f, 0.0f);
        for (int j = 0; j < 3; ++j) {
            scale[j] = coin(random) ? shrink(random) : grow(random);
        }
        SCOPED_TRACE(cases);
        Xform out;
        mxGizmoNode::ComputeHomotheticTransform(scale, frame, centre, out);
        EXPECT_FALSE(out.IsRSMatrix());
        ExpectScalesAlongFrameAboutCentre(out, frame, scale, centre);
        ++cases;
    }
}

TEST(mxGizmoNodeTransformTest, HomotheticWithEqualFactorsOrIdentityFrameAlsoScalesAboutTheCentre) {
    const Vec3 centre(1.5f, -2.0f, 0.5f);
    const Mat3 frame = Rotation(1.0f, -1.0f, 2.0f, 0.9f);

    Xform uniform;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(1.5f, 1.5f, 1.5f), frame, centre, uniform);
    ExpectScalesAlongFrameAboutCentre(uniform, frame, Vec3(1.5f, 1.5f, 1.5f), centre);

    Xform identityFrame;
    mxGizmoNode::ComputeHomotheticTransform(Vec3(0.5f, 2.0f, 3.0f), Identity(), centre,
                                            identityFrame);
    ExpectScalesAlongFrameAboutCentre(identityFrame, Identity(), Vec3(0.5f, 2.0f, 3.0f), centre);
}

// ---------------------------------------------------------------------------------------------
// ExtractRotation

const Vec3 csZero(0.0f, 0.0f, 0.0f);
const Vec3 csX(1.0f, 0.0f, 0.0f);
const Vec3 csY(0.0f, 1.0f, 0.0f);
const Vec3 csZ(0.0f, 0.0f, 1.0f);

TEST(mxGizmoNodeTransformTest, ExtractRotationOfIdentityGivesIdentity) {
    EXPECT_TRUE(MatrixIs(Extract(Xform()), Identity()));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationOfRotationAndScaleGivesItsRotationBitForBit) {
    const Mat3 rotation = Rotation(1.0f, 2.0f, 3.0f, 0.7f);
    Xform t;
    t.SetRotate(rotation);
    t.SetScale(Vec3(2.0f, 3.0f, 4.0f));
    t.SetTranslate(Vec3(5.0f, -6.0f, 7.0f));
    EXPECT_TRUE(SameBits(Extract(t), rotation));

    // Translation only: the stored rotation is the identity.
    Xform moved;
    moved.SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    EXPECT_TRUE(SameBits(Extract(moved), Identity()));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationOfColumnsTwoXNoneAndThreeZGivesIdentity) {
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csX, csZero, 3.0f * csZ)), Identity()));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithOnlyThirdColumnAlongXTakesFallbackYForFirst) {
    // c0 = Y, c1 = X x Y = Z, c0 = Z x X = Y.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, csZero, csX)), Columns(csY, csZ, csX)));
}

TEST(mxGizmoNodeTransformTest, TwoIdenticalXColumnsAndAZeroThirdGiveYAndZForTheOthers) {
    const Mat3 rotation = Extract(General(csX, csX, csZero));
    EXPECT_TRUE(VectorIs(Column(rotation, 0), csX));
    EXPECT_TRUE(VectorIs(Column(rotation, 1), csY));
    EXPECT_TRUE(VectorIs(Column(rotation, 2), csZ));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationOfZeroMatrixGivesIdentity) {
    Xform zero;
    zero.SetMatrix(Mat3(true));
    zero.SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    EXPECT_TRUE(MatrixIs(Extract(zero), Identity()));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithOnlyFirstColumnKeepsItWithFallbackXForSecond) {
    // c0 = Y, c1 = X, c2 = Y x X = -Z, c1 = -Z x Y = X.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csY, csZero, csZero)), Columns(csY, csX, -csZ)));
    // c0 = X takes Y instead: the identity.
    EXPECT_TRUE(MatrixIs(Extract(General(4.0f * csX, csZero, csZero)), Identity()));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithOnlySecondColumnKeepsItWithFallbackForFirst) {
    // c1 = Z: c0 = X, c2 = X x Z = -Y, c0 = Z x -Y = X.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, 2.0f * csZ, csZero)), Columns(csX, csZ, -csY)));
    // c1 = X: c0 = Y, c2 = Y x X = -Z, c0 = X x -Z = Y.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, 4.0f * csX, csZero)), Columns(csY, csX, -csZ)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithOnlyThirdColumnKeepsItWithFallbackForFirst) {
    // c2 = Y: c0 = X, c1 = Y x X = -Z, c0 = -Z x Y = X.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, csZero, 2.0f * csY)), Columns(csX, -csZ, csY)));
    // c2 = -X: |x| is 1, so c0 = Y, c1 = -X x Y = -Z, c0 = -Z x -X = Y.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, csZero, -4.0f * csX)), Columns(csY, -csZ, -csX)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithSecondAndThirdColumnsBuildsFirstFromThem) {
    // c1 = Y, c2 = Z: c0 = Y x Z = X, c2 = X x Y = Z.
    EXPECT_TRUE(MatrixIs(Extract(General(csZero, 2.0f * csY, 4.0f * csZ)), Identity()));
    // A sheared third column is replaced: c1 = Y, c2 = (0, 1, 1) / sqrt 2 give X, then Z.
    EXPECT_TRUE(MatrixNear(Extract(General(csZero, csY, Vec3(0.0f, 1.0f, 1.0f))), Identity(),
                           csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithParallelSecondAndThirdColumnsReplacesThird) {
    // c1 = c2 = Y: c2 = X, c0 = Y x X = -Z, c2 = -Z x Y = X.
    EXPECT_TRUE(
        MatrixIs(Extract(General(csZero, 2.0f * csY, 4.0f * csY)), Columns(-csZ, csY, csX)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithFirstAndThirdColumnsRebuildsSecond) {
    // c0 = Z, c2 = Y: c1 = Y x Z = X, c2 = Z x X = Y.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csZ, csZero, 4.0f * csY)), Columns(csZ, csX, csY)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithParallelFirstAndThirdColumnsReplacesThird) {
    // c0 = c2 = X: c2 = Y, c1 = Y x X = -Z, c2 = X x -Z = Y.
    EXPECT_TRUE(
        MatrixIs(Extract(General(2.0f * csX, csZero, 4.0f * csX)), Columns(csX, -csZ, csY)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithFirstAndSecondColumnsRebuildsThird) {
    // c0 = Y, c1 = Z: c2 = Y x Z = X, c1 = X x Y = Z.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csY, 4.0f * csZ, csZero)), Columns(csY, csZ, csX)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithParallelFirstAndSecondColumnsReplacesSecond) {
    // c0 = c1 = Y: c1 = X, c2 = Y x X = -Z, c1 = -Z x Y = X.
    EXPECT_TRUE(
        MatrixIs(Extract(General(2.0f * csY, 4.0f * csY, csZero)), Columns(csY, csX, -csZ)));
}

// The frame ExtractRotation gives for two identical columns along (x, y, 0) with y small: the
// fallback for the second column decides on which side the third one points.
void ExpectFallbackFrame(float x, float y, bool fallbackY) {
    const double length = std::sqrt(double(x) * x + double(y) * y);
    const float a0 = static_cast<float>(x / length);
    const float a1 = static_cast<float>(y / length);
    const Vec3 c0(a0, a1, 0.0f);
    // With Y: c2 = c0 x Y = (0, 0, a0); with X: c2 = c0 x X = (0, 0, -a1).
    const float side = fallbackY ? (a0 > 0.0f ? 1.0f : -1.0f) : (a1 > 0.0f ? -1.0f : 1.0f);
    const Vec3 c2(0.0f, 0.0f, side);
    // c1 = c2 x c0.
    const Vec3 c1(-side * a1, side * a0, 0.0f);

    const Vec3 column(x, y, 0.0f);
    const Mat3 rotation = Extract(General(column, column, csZero));
    EXPECT_TRUE(MatrixNear(rotation, Columns(c0, c1, c2), csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, FallbackIsYWhenFirstColumnIsWithinAThousandthOfXAndXOtherwise) {
    // (1, 0.04) normalised has x = 0.99920 (0.0008 from 1); (1, 0.05) has x = 0.99875
    // (0.00125 from 1). The sign of x does not count.
    {
        SCOPED_TRACE("(1, 0.04)");
        ExpectFallbackFrame(1.0f, 0.04f, true);
    }
    {
        SCOPED_TRACE("(-1, -0.04)");
        ExpectFallbackFrame(-1.0f, -0.04f, true);
    }
    {
        SCOPED_TRACE("(1, 0.05)");
        ExpectFallbackFrame(1.0f, 0.05f, false);
    }
    {
        SCOPED_TRACE("(-1, -0.05)");
        ExpectFallbackFrame(-1.0f, -0.05f, false);
    }
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithThreeColumnsIgnoresTheThirdAndStaysRightHanded) {
    // The third column points along -Z: the result still has X x Y = Z.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csX, 2.0f * csY, -2.0f * csZ)), Identity()));
    // Any third column gives the same result.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csY, 4.0f * csZ, Vec3(1.0f, 2.0f, 3.0f))),
                         Columns(csY, csZ, csX)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithParallelFirstTwoColumnsBuildsSecondFromThird) {
    // c0 = c1 = Y, c2 = Z: c1 = Z x Y = -X, c2 = Y x -X = Z; the fallback X would have given
    // (Y, X, -Z).
    EXPECT_TRUE(
        MatrixIs(Extract(General(2.0f * csY, 4.0f * csY, 4.0f * csZ)), Columns(csY, -csX, csZ)));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationWithAllThreeColumnsParallelFallsBack) {
    // c1 = X, c2 = Y x X = -Z, c1 = -Z x Y = X.
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csY, 4.0f * csY, csY)), Columns(csY, csX, -csZ)));
}

TEST(mxGizmoNodeTransformTest, OppositeColumnsAreNotParallelSoTheirZeroCrossProductStaysZero) {
    // Deliberately only the same direction counts as parallel: opposite columns go through
    // the cross products, whose zero normalises to zero.
    EXPECT_TRUE(
        MatrixIs(Extract(General(2.0f * csX, -4.0f * csX, csZero)), Columns(csX, csZero, csZero)));
    EXPECT_TRUE(
        MatrixIs(Extract(General(2.0f * csX, csZero, -4.0f * csX)), Columns(csX, csZero, csZero)));
    EXPECT_TRUE(
        MatrixIs(Extract(General(csZero, 2.0f * csY, -4.0f * csY)), Columns(csZero, csY, csZero)));
    EXPECT_TRUE(MatrixIs(Extract(General(2.0f * csX, -4.0f * csX, 2.0f * csZ)),
                         Columns(csX, csZero, csZero)));
}

TEST(mxGizmoNodeTransformTest, ColumnsWhoseDotProductIsWithinAThousandthOfOneAreParallel) {
    // c0 = Y and c1 leaning towards -X by an angle of cosine d. Parallel, c1 falls back to X:
    // (Y, X, -Z). Not parallel, c2 = Y x c1 points along +Z: (Y, -X, Z).
    const auto leaning = [](double d) {
        return Vec3(static_cast<float>(-std::sqrt(1.0 - d * d)), static_cast<float>(d), 0.0f);
    };
    EXPECT_TRUE(
        MatrixIs(Extract(General(csY, leaning(1.0 - 0.0005), csZero)), Columns(csY, csX, -csZ)));
    EXPECT_TRUE(MatrixNear(Extract(General(csY, leaning(1.0 - 0.002), csZero)),
                           Columns(csY, -csX, csZ), csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationDiscardsScaleAndShearAndKeepsFirstDirection) {
    // c0 = (6, 8, 0) is kept as (0.6, 0.8, 0); the sheared c1 and the scaled c2 only choose
    // the side: c2 = Z, c1 = Z x c0 = (-0.8, 0.6, 0). The stored scale and translation of a
    // general transformation play no part.
    Xform t = General(Vec3(6.0f, 8.0f, 0.0f), Vec3(1.0f, 5.0f, 0.0f), Vec3(0.0f, 0.0f, 7.0f));
    t.SetScale(Vec3(5.0f, 6.0f, 7.0f));
    t.SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    EXPECT_TRUE(MatrixNear(Extract(t),
                           Columns(Vec3(0.6f, 0.8f, 0.0f), Vec3(-0.8f, 0.6f, 0.0f), csZ),
                           csMatrixTolerance));
}

TEST(mxGizmoNodeTransformTest, ExtractRotationOfRandomRotationAndScaleGivesItsRotationBitForBit) {
    std::mt19937 random(7u);
    std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
    std::uniform_real_distribution<float> angle(-csPi, csPi);
    std::uniform_real_distribution<float> factor(0.1f, 10.0f);
    std::uniform_real_distribution<float> coordinate(-100.0f, 100.0f);

    int cases = 0;
    while (cases < 300) {
        const Vec3 axis(unit(random), unit(random), unit(random));
        if (axis.Length() < 0.1f) {
            continue;
        }
        const Mat3 rotation = Rotation(axis.X(), axis.Y(), axis.Z(), angle(random));
        Xform t;
        t.SetRotate(rotation);
        t.SetScale(Vec3(factor(random), factor(random), factor(random)));
        t.SetTranslate(Vec3(coordinate(random), coordinate(random), coordinate(random)));
        SCOPED_TRACE(cases);
        EXPECT_TRUE(SameBits(Extract(t), rotation));
        ++cases;
    }
}

TEST(mxGizmoNodeTransformTest,
     ExtractRotationOfRandomGeneralMatrixIsProperOrthonormalAlongFirstColumn) {
    std::mt19937 random(11u);
    std::uniform_real_distribution<float> entry(-10.0f, 10.0f);
    constexpr double tolerance = 1e-5;

    int cases = 0;
    while (cases < 300) {
        Mat3 m(true);
        for (int i = 0; i < 9; ++i) {
            m(i / 3, i % 3) = entry(random);
        }
        if (std::fabs(m.Determinant()) <= 0.1f) {
            continue;
        }
        SCOPED_TRACE(cases);
        Xform t;
        t.SetMatrix(m);
        const Mat3 r = Extract(t);

        // R^T R = I, in double.
        for (int a = 0; a < 3; ++a) {
            for (int b = 0; b < 3; ++b) {
                double dot = 0.0;
                for (int k = 0; k < 3; ++k) {
                    dot += double(r(k, a)) * double(r(k, b));
                }
                EXPECT_NEAR(a == b ? 1.0 : 0.0, dot, tolerance) << "columns " << a << ", " << b;
            }
        }
        const double determinant =
            double(r(0, 0)) * (double(r(1, 1)) * r(2, 2) - double(r(1, 2)) * r(2, 1)) -
            double(r(0, 1)) * (double(r(1, 0)) * r(2, 2) - double(r(1, 2)) * r(2, 0)) +
            double(r(0, 2)) * (double(r(1, 0)) * r(2, 1) - double(r(1, 1)) * r(2, 0));
        EXPECT_NEAR(1.0, determinant, tolerance);

        const double length = std::sqrt(double(m(0, 0)) * m(0, 0) + double(m(1, 0)) * m(1, 0) +
                                        double(m(2, 0)) * m(2, 0));
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(m(k, 0) / length, r(k, 0), tolerance) << "row " << k;
        }
        ++cases;
    }
}

} // namespace
