// Tests for mx::mxGenericTransformation: the hint rules, forward mapping, products and
// inverses, degenerate input, and randomised agreement with Wild Magic 5's Transform.

#include "scenegraph/mxGenericTransformation.h"

#include "support/mxTestGeometry.h"

#include <Wm5Transform.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace {

template <class Real> using Transformation = mx::mxGenericTransformation<Real>;
template <class Real> using Mat3 = Wm4::Matrix3<Real>;
template <class Real> using Vec3 = Wm4::Vector3<Real>;
using mx::test::MatrixNear;
using mx::test::Rotation;
using mx::test::VectorNear;

template <class Real> Mat3<Real> IdentityMatrix() {
    return Mat3<Real>(false);
}

template <class Real> Mat3<Real> ZeroMatrix() {
    return Mat3<Real>(true);
}

template <class Real> Mat3<Real> SomeRotation() {
    return Rotation<Real>((Real)1, (Real)2, (Real)3, (Real)0.7);
}

template <class Real> Mat3<Real> SomeGeneralMatrix() {
    return Mat3<Real>((Real)2, (Real)1, (Real)0, (Real)-1, (Real)3, (Real)0.5, (Real)0.25, (Real)0,
                      (Real)1.5);
}

template <class Real> bool IsZeroMatrix(const Mat3<Real>& m) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (m(r, c) != (Real)0) {
                return false;
            }
        }
    }
    return true;
}

template <class Real> bool IsZeroVector(const Vec3<Real>& v) {
    return v.X() == (Real)0 && v.Y() == (Real)0 && v.Z() == (Real)0;
}

template <class Real> Transformation<Real> UniformRS() {
    Transformation<Real> t;
    t.SetRotate(SomeRotation<Real>());
    t.SetUniformScale((Real)2.5);
    t.SetTranslate(Vec3<Real>((Real)1, (Real)-2, (Real)3));
    return t;
}

template <class Real> Transformation<Real> NonUniformRS() {
    Transformation<Real> t;
    t.SetRotate(Rotation<Real>((Real)-1, (Real)0.5, (Real)2, (Real)1.9));
    t.SetScale(Vec3<Real>((Real)0.5, (Real)2, (Real)3));
    t.SetTranslate(Vec3<Real>((Real)-4, (Real)0.5, (Real)2));
    return t;
}

template <class Real> Transformation<Real> General() {
    Transformation<Real> t;
    t.SetMatrix(SomeGeneralMatrix<Real>());
    t.SetTranslate(Vec3<Real>((Real)0.5, (Real)7, (Real)-1));
    return t;
}

// Points used to compare two mappings.
template <class Real> Vec3<Real> SamplePoint(int i) {
    static const double coords[][3] = {
        {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {3, -2, 5}, {-7, 0.5, 2.25},
    };
    return Vec3<Real>((Real)coords[i][0], (Real)coords[i][1], (Real)coords[i][2]);
}
constexpr int kSamplePointCount = 6;

template <class Real> class mxGenericTransformationTest : public ::testing::Test {};

using RealTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(mxGenericTransformationTest, RealTypes);

// ---------------------------------------------------------------------------------------------
// Construction and hints

TYPED_TEST(mxGenericTransformationTest, NewTransformationIsIdentity) {
    using Real = TypeParam;
    const Transformation<Real> t;
    EXPECT_TRUE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_TRUE(t.GetMatrix() == IdentityMatrix<Real>());
    EXPECT_TRUE(t.GetRotate() == IdentityMatrix<Real>());
    EXPECT_TRUE(t.GetTranslate() == Vec3<Real>((Real)0, (Real)0, (Real)0));
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)1, (Real)1, (Real)1));
    EXPECT_EQ(t.GetUniformScale(), (Real)1);
    EXPECT_TRUE(t.GetFullMatrix() == IdentityMatrix<Real>());
}

TYPED_TEST(mxGenericTransformationTest, SetRotateMakesNonIdentityRSAndKeepsScale) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetScale(Vec3<Real>((Real)2, (Real)3, (Real)4));
    t.SetMatrix(SomeGeneralMatrix<Real>());
    ASSERT_FALSE(t.IsRSMatrix());

    t.SetRotate(SomeRotation<Real>());
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsUniformScale());
    EXPECT_TRUE(t.GetRotate() == SomeRotation<Real>());
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)2, (Real)3, (Real)4));
}

TYPED_TEST(mxGenericTransformationTest, SetRotateKeepsUniformScaleHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetRotate(SomeRotation<Real>());
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_EQ(t.GetUniformScale(), (Real)1);
}

TYPED_TEST(mxGenericTransformationTest, SetMatrixMakesGeneralAndClearsUniformScale) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetMatrix(SomeGeneralMatrix<Real>());
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_FALSE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsUniformScale());
    EXPECT_TRUE(t.GetMatrix() == SomeGeneralMatrix<Real>());
    EXPECT_TRUE(t.GetFullMatrix() == SomeGeneralMatrix<Real>());
}

TYPED_TEST(mxGenericTransformationTest, SetMatrixWithIdentityMatrixStillClearsIdentityHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetMatrix(IdentityMatrix<Real>());
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_FALSE(t.IsRSMatrix());
}

TYPED_TEST(mxGenericTransformationTest, SetTranslateClearsOnlyIdentityHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetTranslate(Vec3<Real>((Real)1, (Real)2, (Real)3));
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_TRUE(t.GetTranslate() == Vec3<Real>((Real)1, (Real)2, (Real)3));
}

TYPED_TEST(mxGenericTransformationTest, SetTranslateWithZeroStillClearsIdentityHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetTranslate(Vec3<Real>((Real)0, (Real)0, (Real)0));
    EXPECT_FALSE(t.IsIdentity());
}

TYPED_TEST(mxGenericTransformationTest, SetScaleClearsUniformScaleHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetScale(Vec3<Real>((Real)2, (Real)2, (Real)2));
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsUniformScale());
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)2, (Real)2, (Real)2));
}

TYPED_TEST(mxGenericTransformationTest, SetUniformScaleSetsUniformScaleHint) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetScale(Vec3<Real>((Real)1, (Real)2, (Real)3));
    ASSERT_FALSE(t.IsUniformScale());
    t.SetUniformScale((Real)4);
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_EQ(t.GetUniformScale(), (Real)4);
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)4, (Real)4, (Real)4));
}

TYPED_TEST(mxGenericTransformationTest, ScaleOnGeneralTransformationIsStoredButNotUsed) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetMatrix(SomeGeneralMatrix<Real>());
    t.SetUniformScale((Real)3);
    EXPECT_FALSE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsUniformScale());
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)3, (Real)3, (Real)3));
    EXPECT_TRUE(t.GetMatrix() == SomeGeneralMatrix<Real>());
    EXPECT_TRUE(t.GetFullMatrix() == SomeGeneralMatrix<Real>());

    t.SetScale(Vec3<Real>((Real)1, (Real)2, (Real)3));
    EXPECT_FALSE(t.IsRSMatrix());
    EXPECT_TRUE(t.GetFullMatrix() == SomeGeneralMatrix<Real>());
}

TYPED_TEST(mxGenericTransformationTest, WritableGetRotateMakesNonIdentityRS) {
    using Real = TypeParam;
    Transformation<Real> identity;
    identity.GetRotate();
    EXPECT_FALSE(identity.IsIdentity());
    EXPECT_TRUE(identity.IsRSMatrix());

    Transformation<Real> general;
    general.SetMatrix(SomeGeneralMatrix<Real>());
    general.SetScale(Vec3<Real>((Real)2, (Real)3, (Real)4));
    general.GetRotate() = SomeRotation<Real>();
    EXPECT_FALSE(general.IsIdentity());
    EXPECT_TRUE(general.IsRSMatrix());
    EXPECT_TRUE(general.GetRotate() == SomeRotation<Real>());
    EXPECT_TRUE(general.GetScale() == Vec3<Real>((Real)2, (Real)3, (Real)4));
}

TYPED_TEST(mxGenericTransformationTest, ConstGetRotateLeavesHintsAlone) {
    using Real = TypeParam;
    const Transformation<Real> t;
    const Mat3<Real>& rotation = t.GetRotate();
    EXPECT_TRUE(rotation == IdentityMatrix<Real>());
    EXPECT_TRUE(t.IsIdentity());
}

TYPED_TEST(mxGenericTransformationTest, MakeIdentityRestoresIdentityAndAllHints) {
    using Real = TypeParam;
    Transformation<Real> t = General<Real>();
    t.SetScale(Vec3<Real>((Real)1, (Real)2, (Real)3));
    t.MakeIdentity();
    EXPECT_TRUE(t.IsIdentity());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_TRUE(t == Transformation<Real>());
}

TYPED_TEST(mxGenericTransformationTest, MakeUnitScaleKeepsRotationAndTranslation) {
    using Real = TypeParam;
    Transformation<Real> t = NonUniformRS<Real>();
    const Transformation<Real> before = t;
    t.MakeUnitScale();
    EXPECT_TRUE(t.GetScale() == Vec3<Real>((Real)1, (Real)1, (Real)1));
    EXPECT_TRUE(t.IsUniformScale());
    EXPECT_TRUE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsIdentity());
    EXPECT_TRUE(t.GetRotate() == before.GetRotate());
    EXPECT_TRUE(t.GetTranslate() == before.GetTranslate());
    EXPECT_TRUE(t.GetFullMatrix() == before.GetRotate());
}

TYPED_TEST(mxGenericTransformationTest, MakeUnitScaleLeavesGeneralMatrixUnchanged) {
    using Real = TypeParam;
    Transformation<Real> t = General<Real>();
    t.MakeUnitScale();
    EXPECT_FALSE(t.IsRSMatrix());
    EXPECT_FALSE(t.IsUniformScale());
    EXPECT_TRUE(t.GetFullMatrix() == SomeGeneralMatrix<Real>());
}

TYPED_TEST(mxGenericTransformationTest, CopiesCompareEqual) {
    using Real = TypeParam;
    const Transformation<Real> original = NonUniformRS<Real>();
    const Transformation<Real> copy(original);
    Transformation<Real> assigned;
    assigned = original;
    EXPECT_TRUE(copy == original);
    EXPECT_TRUE(assigned == original);
    EXPECT_FALSE(assigned != original);
}

TYPED_TEST(mxGenericTransformationTest, EqualityLooksAtEveryMemberAndHint) {
    using Real = TypeParam;
    const Transformation<Real> base = UniformRS<Real>();

    Transformation<Real> matrixDiffers = base;
    matrixDiffers.GetRotate()(2, 1) += (Real)0.5;
    EXPECT_TRUE(matrixDiffers != base);

    Transformation<Real> translateDiffers = base;
    translateDiffers.SetTranslate(Vec3<Real>((Real)1, (Real)-2, (Real)3.5));
    EXPECT_TRUE(translateDiffers != base);

    Transformation<Real> scaleDiffers = base;
    scaleDiffers.SetUniformScale((Real)2);
    EXPECT_TRUE(scaleDiffers != base);

    // Same numbers, different hints.
    Transformation<Real> uniformHintDiffers = base;
    uniformHintDiffers.SetScale(base.GetScale());
    EXPECT_TRUE(uniformHintDiffers != base);

    Transformation<Real> rsHintDiffers = base;
    rsHintDiffers.SetMatrix(base.GetRotate());
    rsHintDiffers.SetUniformScale(base.GetUniformScale());
    EXPECT_TRUE(rsHintDiffers != base);

    Transformation<Real> identityHintDiffers;
    identityHintDiffers.SetTranslate(Vec3<Real>((Real)0, (Real)0, (Real)0));
    EXPECT_TRUE(identityHintDiffers != Transformation<Real>());
}

TYPED_TEST(mxGenericTransformationTest, FullMatrixIsRotationTimesScale) {
    using Real = TypeParam;
    const Transformation<Real> t = NonUniformRS<Real>();
    const Mat3<Real>& r = t.GetRotate();
    const Vec3<Real>& s = t.GetScale();
    const Mat3<Real> full = t.GetFullMatrix();
    // Column j of R*S is column j of R times s[j].
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            EXPECT_EQ(full(row, col), r(row, col) * s[col]);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// ApplyForward

TYPED_TEST(mxGenericTransformationTest, ApplyForwardOnPointAddsTranslation) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetRotate(Rotation<Real>((Real)0, (Real)0, (Real)1, (Real)(0.5 * 3.14159265358979323846)));
    t.SetScale(Vec3<Real>((Real)2, (Real)3, (Real)4));
    t.SetTranslate(Vec3<Real>((Real)10, (Real)20, (Real)30));
    // x axis scaled by 2 and turned onto y; then moved.
    EXPECT_TRUE(VectorNear(t.ApplyForward(Vec3<Real>((Real)1, (Real)0, (Real)0)),
                           Vec3<Real>((Real)10, (Real)22, (Real)30), 1e-5));
    EXPECT_TRUE(VectorNear(t.ApplyForward(Vec3<Real>((Real)0, (Real)1, (Real)0), true),
                           Vec3<Real>((Real)7, (Real)20, (Real)30), 1e-5));
    EXPECT_TRUE(VectorNear(t.ApplyForward(Vec3<Real>((Real)0, (Real)0, (Real)1), true),
                           Vec3<Real>((Real)10, (Real)20, (Real)34), 1e-5));
}

TYPED_TEST(mxGenericTransformationTest, ApplyForwardOnDirectionIgnoresTranslation) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetRotate(Rotation<Real>((Real)0, (Real)0, (Real)1, (Real)(0.5 * 3.14159265358979323846)));
    t.SetScale(Vec3<Real>((Real)2, (Real)3, (Real)4));
    t.SetTranslate(Vec3<Real>((Real)10, (Real)20, (Real)30));
    EXPECT_TRUE(VectorNear(t.ApplyForward(Vec3<Real>((Real)1, (Real)0, (Real)0), false),
                           Vec3<Real>((Real)0, (Real)2, (Real)0), 1e-5));
    EXPECT_TRUE(VectorNear(t.ApplyForward(Vec3<Real>((Real)0, (Real)1, (Real)0), false),
                           Vec3<Real>((Real)-3, (Real)0, (Real)0), 1e-5));
}

TYPED_TEST(mxGenericTransformationTest, ApplyForwardUsesGeneralMatrix) {
    using Real = TypeParam;
    const Transformation<Real> t = General<Real>();
    const Vec3<Real> v((Real)1, (Real)2, (Real)-3);
    const Vec3<Real> expectedDirection = SomeGeneralMatrix<Real>() * v;
    EXPECT_TRUE(VectorNear(t.ApplyForward(v, false), expectedDirection, 1e-6));
    EXPECT_TRUE(VectorNear(t.ApplyForward(v, true), expectedDirection + t.GetTranslate(), 1e-6));
}

TYPED_TEST(mxGenericTransformationTest, ApplyForwardOfIdentityReturnsInput) {
    using Real = TypeParam;
    const Transformation<Real> t;
    const Vec3<Real> v((Real)1.5, (Real)-2, (Real)1e6);
    EXPECT_TRUE(t.ApplyForward(v) == v);
    EXPECT_TRUE(t.ApplyForward(v, false) == v);
}

// ---------------------------------------------------------------------------------------------
// Product

template <class Real>
void ExpectProductMapsLikeComposition(const Transformation<Real>& product,
                                      const Transformation<Real>& a,
                                      const Transformation<Real>& b) {
    for (int i = 0; i < kSamplePointCount; ++i) {
        const Vec3<Real> p = SamplePoint<Real>(i);
        EXPECT_TRUE(VectorNear(product.ApplyForward(p), a.ApplyForward(b.ApplyForward(p)), 1e-4))
            << "point " << i;
        EXPECT_TRUE(VectorNear(product.ApplyForward(p, false),
                               a.ApplyForward(b.ApplyForward(p, false), false), 1e-4))
            << "direction " << i;
    }
}

TYPED_TEST(mxGenericTransformationTest, ProductOfUniformRSTransformationsIsUniformRS) {
    using Real = TypeParam;
    const Transformation<Real> a = UniformRS<Real>();
    Transformation<Real> b;
    b.SetRotate(Rotation<Real>((Real)0, (Real)1, (Real)0, (Real)-0.4));
    b.SetUniformScale((Real)0.5);
    b.SetTranslate(Vec3<Real>((Real)2, (Real)0, (Real)1));

    Transformation<Real> p;
    p.Product(a, b);
    EXPECT_FALSE(p.IsIdentity());
    EXPECT_TRUE(p.IsRSMatrix());
    EXPECT_TRUE(p.IsUniformScale());
    EXPECT_NEAR(p.GetUniformScale(), 1.25, 1e-6);
    EXPECT_TRUE(MatrixNear(p.GetRotate(), a.GetRotate() * b.GetRotate(), 1e-6));
    ExpectProductMapsLikeComposition(p, a, b);
}

TYPED_TEST(mxGenericTransformationTest, ProductWithUniformLeftAndNonUniformRightStaysRS) {
    using Real = TypeParam;
    const Transformation<Real> a = UniformRS<Real>();
    const Transformation<Real> b = NonUniformRS<Real>();

    Transformation<Real> p;
    p.Product(a, b);
    EXPECT_FALSE(p.IsIdentity());
    EXPECT_TRUE(p.IsRSMatrix());
    EXPECT_FALSE(p.IsUniformScale());
    EXPECT_TRUE(VectorNear(p.GetScale(), a.GetUniformScale() * b.GetScale(), 1e-6));
    EXPECT_TRUE(MatrixNear(p.GetRotate(), a.GetRotate() * b.GetRotate(), 1e-6));
    ExpectProductMapsLikeComposition(p, a, b);
}

TYPED_TEST(mxGenericTransformationTest, ProductWithNonUniformLeftIsGeneral) {
    using Real = TypeParam;
    const Transformation<Real> a = NonUniformRS<Real>();
    const Transformation<Real> b = UniformRS<Real>();

    Transformation<Real> p;
    p.Product(a, b);
    EXPECT_FALSE(p.IsIdentity());
    EXPECT_FALSE(p.IsRSMatrix());
    EXPECT_FALSE(p.IsUniformScale());
    EXPECT_TRUE(MatrixNear(p.GetMatrix(), a.GetFullMatrix() * b.GetFullMatrix(), 1e-5));
    ExpectProductMapsLikeComposition(p, a, b);
}

TYPED_TEST(mxGenericTransformationTest, ProductWithGeneralOperandIsGeneral) {
    using Real = TypeParam;
    const Transformation<Real> rs = UniformRS<Real>();
    const Transformation<Real> general = General<Real>();

    Transformation<Real> left;
    left.Product(general, rs);
    EXPECT_FALSE(left.IsRSMatrix());
    ExpectProductMapsLikeComposition(left, general, rs);

    Transformation<Real> right;
    right.Product(rs, general);
    EXPECT_FALSE(right.IsRSMatrix());
    ExpectProductMapsLikeComposition(right, rs, general);
}

TYPED_TEST(mxGenericTransformationTest, ProductIsNotCommutative) {
    using Real = TypeParam;
    const Transformation<Real> a = UniformRS<Real>();
    const Transformation<Real> b = General<Real>();
    Transformation<Real> ab;
    ab.Product(a, b);
    Transformation<Real> ba;
    ba.Product(b, a);
    const Vec3<Real> p = SamplePoint<Real>(4);
    EXPECT_FALSE(VectorNear(ab.ApplyForward(p), ba.ApplyForward(p), 1e-3));
}

TYPED_TEST(mxGenericTransformationTest, ProductWithIdentityLeftGivesRightOperand) {
    using Real = TypeParam;
    const Transformation<Real> identity;
    for (const Transformation<Real>& b :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> p = UniformRS<Real>();
        p.Product(identity, b);
        EXPECT_TRUE(p == b);
    }
}

TYPED_TEST(mxGenericTransformationTest, ProductWithIdentityRightGivesLeftOperand) {
    using Real = TypeParam;
    const Transformation<Real> identity;
    for (const Transformation<Real>& a :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> p = General<Real>();
        p.Product(a, identity);
        EXPECT_TRUE(p == a);
    }
}

TYPED_TEST(mxGenericTransformationTest, ProductOfIdentitiesIsIdentity) {
    using Real = TypeParam;
    Transformation<Real> p = General<Real>();
    p.Product(Transformation<Real>(), Transformation<Real>());
    EXPECT_TRUE(p.IsIdentity());
    EXPECT_TRUE(p == Transformation<Real>());
}

TYPED_TEST(mxGenericTransformationTest, ProductOfTransformationWithItselfIntoItself) {
    using Real = TypeParam;
    for (const Transformation<Real>& original :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> expected;
        expected.Product(Transformation<Real>(original), Transformation<Real>(original));

        Transformation<Real> t = original;
        t.Product(t, t);
        EXPECT_TRUE(t == expected);
        ExpectProductMapsLikeComposition(t, original, original);
    }
}

TYPED_TEST(mxGenericTransformationTest, ProductIntoOneOfItsOperands) {
    using Real = TypeParam;
    const Transformation<Real> other = NonUniformRS<Real>();
    for (const Transformation<Real>& original :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> expectedLeft;
        expectedLeft.Product(original, other);
        Transformation<Real> left = original;
        left.Product(left, other);
        EXPECT_TRUE(left == expectedLeft);

        Transformation<Real> expectedRight;
        expectedRight.Product(other, original);
        Transformation<Real> right = original;
        right.Product(other, right);
        EXPECT_TRUE(right == expectedRight);
    }
}

// ---------------------------------------------------------------------------------------------
// Inverse

template <class Real>
void ExpectInverseUndoes(const Transformation<Real>& t, const Transformation<Real>& inverse) {
    for (int i = 0; i < kSamplePointCount; ++i) {
        const Vec3<Real> p = SamplePoint<Real>(i);
        EXPECT_TRUE(VectorNear(inverse.ApplyForward(t.ApplyForward(p)), p, 1e-4)) << "point " << i;
        EXPECT_TRUE(VectorNear(t.ApplyForward(inverse.ApplyForward(p)), p, 1e-4)) << "point " << i;
        EXPECT_TRUE(VectorNear(inverse.ApplyForward(t.ApplyForward(p, false), false), p, 1e-4))
            << "direction " << i;
    }
    Transformation<Real> product;
    product.Product(inverse, t);
    EXPECT_TRUE(MatrixNear(product.GetFullMatrix(), IdentityMatrix<Real>(), 1e-5));
    EXPECT_TRUE(VectorNear(product.GetTranslate(), Vec3<Real>((Real)0, (Real)0, (Real)0), 1e-5));
}

TYPED_TEST(mxGenericTransformationTest, InverseOfIdentityIsIdentity) {
    using Real = TypeParam;
    Transformation<Real> inverse = General<Real>();
    Transformation<Real>().Inverse(inverse);
    EXPECT_TRUE(inverse.IsIdentity());
    EXPECT_TRUE(inverse == Transformation<Real>());
}

TYPED_TEST(mxGenericTransformationTest, InverseOfUniformRSStaysUniformRS) {
    using Real = TypeParam;
    const Transformation<Real> t = UniformRS<Real>();
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsIdentity());
    EXPECT_TRUE(inverse.IsRSMatrix());
    EXPECT_TRUE(inverse.IsUniformScale());
    EXPECT_NEAR(inverse.GetUniformScale(), 0.4, 1e-6);
    EXPECT_TRUE(inverse.GetRotate() == t.GetRotate().Transpose());
    ExpectInverseUndoes(t, inverse);
}

TYPED_TEST(mxGenericTransformationTest, InverseOfNonUniformRSIsGeneralAndExact) {
    using Real = TypeParam;
    const Transformation<Real> t = NonUniformRS<Real>();
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsIdentity());
    EXPECT_FALSE(inverse.IsRSMatrix());
    EXPECT_FALSE(inverse.IsUniformScale());
    EXPECT_TRUE(MatrixNear(inverse.GetMatrix(), t.GetFullMatrix().Inverse(), 1e-5));
    ExpectInverseUndoes(t, inverse);
}

TYPED_TEST(mxGenericTransformationTest, InverseOfGeneralMatrixUndoesIt) {
    using Real = TypeParam;
    const Transformation<Real> t = General<Real>();
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsRSMatrix());
    ExpectInverseUndoes(t, inverse);
}

TYPED_TEST(mxGenericTransformationTest, InverseOfTranslationNegatesIt) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetTranslate(Vec3<Real>((Real)1, (Real)-2, (Real)3));
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_TRUE(inverse.IsRSMatrix());
    EXPECT_TRUE(inverse.IsUniformScale());
    EXPECT_TRUE(inverse.GetTranslate() == Vec3<Real>((Real)-1, (Real)2, (Real)-3));
    EXPECT_TRUE(inverse.GetFullMatrix() == IdentityMatrix<Real>());
}

TYPED_TEST(mxGenericTransformationTest, InverseIntoItself) {
    using Real = TypeParam;
    for (const Transformation<Real>& original :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> expected;
        original.Inverse(expected);
        Transformation<Real> t = original;
        t.Inverse(t);
        EXPECT_TRUE(t == expected);
    }
}

TYPED_TEST(mxGenericTransformationTest, InverseOfInverseGivesOriginalMapping) {
    using Real = TypeParam;
    for (const Transformation<Real>& original :
         {UniformRS<Real>(), NonUniformRS<Real>(), General<Real>()}) {
        Transformation<Real> twice;
        original.Inverse(twice);
        twice.Inverse(twice);
        EXPECT_TRUE(MatrixNear(twice.GetFullMatrix(), original.GetFullMatrix(), 1e-5));
        EXPECT_TRUE(VectorNear(twice.GetTranslate(), original.GetTranslate(), 1e-5));
    }
}

TYPED_TEST(mxGenericTransformationTest, SingularGeneralMatrixInvertsToZeroMatrix) {
    using Real = TypeParam;
    Transformation<Real> t;
    // Third row is the sum of the first two.
    t.SetMatrix(Mat3<Real>((Real)1, (Real)2, (Real)3, (Real)4, (Real)5, (Real)6, (Real)5, (Real)7,
                           (Real)9));
    t.SetTranslate(Vec3<Real>((Real)1, (Real)1, (Real)1));
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsRSMatrix());
    EXPECT_TRUE(IsZeroMatrix(inverse.GetMatrix()));
    EXPECT_TRUE(IsZeroVector(inverse.GetTranslate()));
}

TYPED_TEST(mxGenericTransformationTest, ZeroMatrixInvertsToZeroMatrix) {
    using Real = TypeParam;
    Transformation<Real> t;
    t.SetMatrix(ZeroMatrix<Real>());
    t.SetTranslate(Vec3<Real>((Real)5, (Real)6, (Real)7));
    t.Inverse(t);
    EXPECT_FALSE(t.IsRSMatrix());
    EXPECT_TRUE(IsZeroMatrix(t.GetMatrix()));
    EXPECT_TRUE(IsZeroVector(t.GetTranslate()));
}

TYPED_TEST(mxGenericTransformationTest, ZeroUniformScaleInvertsToZeroMatrix) {
    using Real = TypeParam;
    Transformation<Real> t = UniformRS<Real>();
    t.SetUniformScale((Real)0);
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsIdentity());
    EXPECT_FALSE(inverse.IsRSMatrix());
    EXPECT_TRUE(IsZeroMatrix(inverse.GetMatrix()));
    EXPECT_TRUE(IsZeroMatrix(inverse.GetFullMatrix()));
    EXPECT_TRUE(IsZeroVector(inverse.GetTranslate()));
}

TYPED_TEST(mxGenericTransformationTest, ZeroComponentOfNonUniformScaleInvertsToZeroMatrix) {
    using Real = TypeParam;
    for (int zeroed = 0; zeroed < 3; ++zeroed) {
        Transformation<Real> t = NonUniformRS<Real>();
        Vec3<Real> scale((Real)2, (Real)3, (Real)4);
        scale[zeroed] = (Real)0;
        t.SetScale(scale);
        Transformation<Real> inverse;
        t.Inverse(inverse);
        EXPECT_FALSE(inverse.IsRSMatrix()) << "zero scale " << zeroed;
        EXPECT_TRUE(IsZeroMatrix(inverse.GetMatrix())) << "zero scale " << zeroed;
        EXPECT_TRUE(IsZeroVector(inverse.GetTranslate())) << "zero scale " << zeroed;
    }
}

// ---------------------------------------------------------------------------------------------
// Bad input

template <class Real> void Exercise(const Transformation<Real>& t) {
    const Vec3<Real> p((Real)1, (Real)2, (Real)3);
    (void)t.ApplyForward(p);
    (void)t.ApplyForward(p, false);
    (void)t.GetFullMatrix();
    Transformation<Real> inverse;
    t.Inverse(inverse);
    (void)inverse.ApplyForward(p);
    Transformation<Real> product;
    product.Product(t, t);
    product.Product(t, UniformRS<Real>());
    product.Product(UniformRS<Real>(), t);
    product.Product(NonUniformRS<Real>(), t);
    product.Product(t, General<Real>());
    Transformation<Real> self = t;
    self.Product(self, self);
    self.Inverse(self);
    (void)(t == inverse);
}

TYPED_TEST(mxGenericTransformationTest, NonFiniteInputDoesNotCrash) {
    using Real = TypeParam;
    const Real values[] = {std::numeric_limits<Real>::quiet_NaN(),
                           std::numeric_limits<Real>::infinity(),
                           -std::numeric_limits<Real>::infinity()};
    for (const Real bad : values) {
        Transformation<Real> uniform = UniformRS<Real>();
        uniform.SetUniformScale(bad);
        Exercise(uniform);

        Transformation<Real> nonUniform = NonUniformRS<Real>();
        nonUniform.SetScale(Vec3<Real>((Real)1, bad, (Real)2));
        Exercise(nonUniform);

        Transformation<Real> badRotation = UniformRS<Real>();
        badRotation.GetRotate()(1, 2) = bad;
        Exercise(badRotation);

        Mat3<Real> badMatrix = SomeGeneralMatrix<Real>();
        badMatrix(0, 1) = bad;
        Transformation<Real> general;
        general.SetMatrix(badMatrix);
        Exercise(general);

        Transformation<Real> badTranslate = General<Real>();
        badTranslate.SetTranslate(Vec3<Real>(bad, (Real)0, bad));
        Exercise(badTranslate);

        Exercise(Transformation<Real>());
    }
}

TYPED_TEST(mxGenericTransformationTest, NaNPropagatesThroughApplyForward) {
    using Real = TypeParam;
    Transformation<Real> t = UniformRS<Real>();
    t.SetTranslate(Vec3<Real>(std::numeric_limits<Real>::quiet_NaN(), (Real)0, (Real)0));
    const Vec3<Real> mapped = t.ApplyForward(Vec3<Real>((Real)1, (Real)1, (Real)1));
    EXPECT_TRUE(std::isnan(mapped.X()));
    const Vec3<Real> direction = t.ApplyForward(Vec3<Real>((Real)1, (Real)1, (Real)1), false);
    EXPECT_FALSE(std::isnan(direction.X()));
}

TYPED_TEST(mxGenericTransformationTest, NaNMakesTransformationUnequalToItself) {
    using Real = TypeParam;
    Transformation<Real> t = UniformRS<Real>();
    t.SetTranslate(Vec3<Real>((Real)0, std::numeric_limits<Real>::quiet_NaN(), (Real)0));
    const Transformation<Real> copy = t;
    EXPECT_FALSE(copy == t);
}

TYPED_TEST(mxGenericTransformationTest, NaNGeneralMatrixInvertsWithoutCrashing) {
    using Real = TypeParam;
    Mat3<Real> m = SomeGeneralMatrix<Real>();
    m(1, 1) = std::numeric_limits<Real>::quiet_NaN();
    Transformation<Real> t;
    t.SetMatrix(m);
    Transformation<Real> inverse;
    t.Inverse(inverse);
    EXPECT_FALSE(inverse.IsRSMatrix());
    // The determinant is NaN, which Wild Magic treats as singular.
    EXPECT_TRUE(IsZeroMatrix(inverse.GetMatrix()));
}

// ---------------------------------------------------------------------------------------------
// Randomised agreement with Wild Magic 5's Transform (float only; matrix * column vector, and
// the homogeneous matrix is {{M, T}, {0, 1}}).

enum class Kind { UniformRS, NonUniformRS, General };

const char* KindName(Kind kind) {
    switch (kind) {
    case Kind::UniformRS:
        return "uniform RS";
    case Kind::NonUniformRS:
        return "non-uniform RS";
    case Kind::General:
        return "general";
    }
    return "?";
}

// The same transformation in float, double and Wild Magic form.
struct RandomCase {
    Transformation<float> single;
    Transformation<double> twice;
    Wm5::Transform reference;
    std::string description;
};

class RandomSource {
public:
    explicit RandomSource(unsigned seed) : engine(seed) {}

    float Uniform(float lo, float hi) {
        return std::uniform_real_distribution<float>(lo, hi)(engine);
    }

    Vec3<float> Vector(float range) {
        return Vec3<float>(Uniform(-range, range), Uniform(-range, range), Uniform(-range, range));
    }

    Mat3<float> RandomRotation() {
        Vec3<float> axis;
        do {
            axis = Vector(1.0f);
        } while (axis.Length() < 0.1f);
        axis.Normalize();
        Mat3<float> rotation;
        rotation.MakeRotation(axis, Uniform(-3.14159f, 3.14159f));
        return rotation;
    }

    float Scale() { return Uniform(0.25f, 4.0f); }

    RandomCase Make(Kind kind) {
        RandomCase c;
        const Vec3<float> translate = Vector(10.0f);
        std::ostringstream text;
        text << KindName(kind);
        switch (kind) {
        case Kind::UniformRS: {
            const Mat3<float> rotation = RandomRotation();
            const float s = Scale();
            c.single.SetRotate(rotation);
            c.single.SetUniformScale(s);
            c.twice.SetRotate(ToDouble(rotation));
            c.twice.SetUniformScale(s);
            c.reference.SetRotate(Wm5::HMatrix(rotation));
            c.reference.SetUniformScale(s);
            text << " s=" << s;
            break;
        }
        case Kind::NonUniformRS: {
            const Mat3<float> rotation = RandomRotation();
            const Vec3<float> s(Scale(), Scale(), Scale());
            c.single.SetRotate(rotation);
            c.single.SetScale(s);
            c.twice.SetRotate(ToDouble(rotation));
            c.twice.SetScale(ToDouble(s));
            c.reference.SetRotate(Wm5::HMatrix(rotation));
            c.reference.SetScale(Wm5::APoint(s.X(), s.Y(), s.Z()));
            text << " s=(" << s.X() << ", " << s.Y() << ", " << s.Z() << ")";
            break;
        }
        case Kind::General: {
            // R1 * D * R2 with |D| in [0.25, 4] and random signs: any well-conditioned matrix,
            // reflections included.
            Vec3<float> d(Scale(), Scale(), Scale());
            for (int i = 0; i < 3; ++i) {
                if (Uniform(0.0f, 1.0f) < 0.3f) {
                    d[i] = -d[i];
                }
            }
            const Mat3<float> matrix = RandomRotation().TimesDiagonal(d) * RandomRotation();
            c.single.SetMatrix(matrix);
            c.twice.SetMatrix(ToDouble(matrix));
            c.reference.SetMatrix(Wm5::HMatrix(matrix));
            break;
        }
        }
        c.single.SetTranslate(translate);
        c.twice.SetTranslate(ToDouble(translate));
        c.reference.SetTranslate(Wm5::APoint(translate.X(), translate.Y(), translate.Z()));
        text << " T=(" << translate.X() << ", " << translate.Y() << ", " << translate.Z() << ")";
        c.description = text.str();
        return c;
    }

    static Mat3<double> ToDouble(const Mat3<float>& m) {
        return Mat3<double>(m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0), m(2, 1),
                            m(2, 2));
    }

    static Vec3<double> ToDouble(const Vec3<float>& v) { return Vec3<double>(v.X(), v.Y(), v.Z()); }

private:
    std::mt19937 engine;
};

constexpr Kind kKinds[] = {Kind::UniformRS, Kind::NonUniformRS, Kind::General};
constexpr double kRelativeTolerance = 1e-4;

// Compares {M, T} with the upper three rows of a Wild Magic homogeneous matrix, with a
// tolerance relative to the largest entry expected.
template <class Real>
::testing::AssertionResult AffineMatches(const Mat3<Real>& m, const Vec3<Real>& t,
                                         const Wm5::HMatrix& expected) {
    double magnitude = 1.0;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 4; ++c) {
            magnitude = std::max(magnitude, (double)std::fabs(expected(r, c)));
        }
    }
    const double tolerance = kRelativeTolerance * magnitude;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 4; ++c) {
            const double actual = c < 3 ? (double)m(r, c) : (double)t[r];
            const double wanted = expected(r, c);
            if (!(std::fabs(actual - wanted) <= tolerance)) {
                return ::testing::AssertionFailure()
                       << "entry (" << r << ", " << c << ") is " << actual << ", Wild Magic has "
                       << wanted << " (tolerance " << tolerance << ")";
            }
        }
    }
    return ::testing::AssertionSuccess();
}

template <class Real>
::testing::AssertionResult MappingMatches(const Vec3<Real>& actual, const Wm5::HPoint& expected) {
    double magnitude = 1.0;
    for (int i = 0; i < 3; ++i) {
        magnitude = std::max(magnitude, (double)std::fabs(expected[i]));
    }
    const double tolerance = kRelativeTolerance * magnitude;
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs((double)actual[i] - (double)expected[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "component " << i << " is " << actual[i] << ", Wild Magic has " << expected[i]
                   << " (tolerance " << tolerance << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

TEST(mxGenericTransformationWm5CrossCheck, HomogeneousMatrixLayoutIsMatrixTimesColumnVector) {
    // Pins down how the reference is read: rows are kept, T is column 3, APoint has w = 1.
    const Mat3<float> m(1, 2, 3, 4, 5, 6, 7, 8, 10);
    Wm5::Transform reference;
    reference.SetMatrix(Wm5::HMatrix(m));
    reference.SetTranslate(Wm5::APoint(10, 20, 30));
    const Wm5::HMatrix& h = reference.Matrix();
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(h(r, c), m(r, c));
        }
    }
    EXPECT_EQ(h(0, 3), 10.0f);
    EXPECT_EQ(h(1, 3), 20.0f);
    EXPECT_EQ(h(2, 3), 30.0f);
    const Wm5::APoint p = reference * Wm5::APoint(1, 0, 0);
    EXPECT_EQ(p[0], 11.0f);
    EXPECT_EQ(p[1], 24.0f);
    EXPECT_EQ(p[2], 37.0f);
}

TEST(mxGenericTransformationWm5CrossCheck, ApplyForwardMatchesWm5Transform) {
    RandomSource random(20240601u);
    for (const Kind kind : kKinds) {
        for (int i = 0; i < 300; ++i) {
            const RandomCase c = random.Make(kind);
            const Vec3<float> v = random.Vector(20.0f);
            const Wm5::APoint point = c.reference * Wm5::APoint(v.X(), v.Y(), v.Z());
            const Wm5::AVector direction = c.reference * Wm5::AVector(v.X(), v.Y(), v.Z());
            const Vec3<double> vd = RandomSource::ToDouble(v);

            EXPECT_TRUE(MappingMatches(c.single.ApplyForward(v, true), point)) << c.description;
            EXPECT_TRUE(MappingMatches(c.single.ApplyForward(v, false), direction))
                << c.description;
            EXPECT_TRUE(MappingMatches(c.twice.ApplyForward(vd, true), point)) << c.description;
            EXPECT_TRUE(MappingMatches(c.twice.ApplyForward(vd, false), direction))
                << c.description;
            EXPECT_TRUE(AffineMatches(c.single.GetFullMatrix(), c.single.GetTranslate(),
                                      c.reference.Matrix()))
                << c.description;
        }
    }
}

TEST(mxGenericTransformationWm5CrossCheck, ProductMatchesWm5TransformProduct) {
    RandomSource random(77u);
    for (const Kind kindA : kKinds) {
        for (const Kind kindB : kKinds) {
            for (int i = 0; i < 100; ++i) {
                const RandomCase a = random.Make(kindA);
                const RandomCase b = random.Make(kindB);
                const Wm5::Transform expected = a.reference * b.reference;
                const std::string description = a.description + " * " + b.description;

                Transformation<float> single;
                single.Product(a.single, b.single);
                Transformation<double> twice;
                twice.Product(a.twice, b.twice);

                EXPECT_TRUE(
                    AffineMatches(single.GetFullMatrix(), single.GetTranslate(), expected.Matrix()))
                    << description;
                EXPECT_TRUE(
                    AffineMatches(twice.GetFullMatrix(), twice.GetTranslate(), expected.Matrix()))
                    << description;
                EXPECT_EQ(single.IsIdentity(), expected.IsIdentity()) << description;
                EXPECT_EQ(single.IsRSMatrix(), expected.IsRSMatrix()) << description;
                EXPECT_EQ(single.IsUniformScale(), expected.IsUniformScale()) << description;
                EXPECT_EQ(twice.IsRSMatrix(), expected.IsRSMatrix()) << description;
                EXPECT_EQ(twice.IsUniformScale(), expected.IsUniformScale()) << description;
            }
        }
    }
}

TEST(mxGenericTransformationWm5CrossCheck, InverseMatchesWm5InverseMatrix) {
    RandomSource random(424242u);
    for (const Kind kind : kKinds) {
        for (int i = 0; i < 300; ++i) {
            const RandomCase c = random.Make(kind);
            const Wm5::HMatrix& expected = c.reference.Inverse();

            Transformation<float> single;
            c.single.Inverse(single);
            Transformation<double> twice;
            c.twice.Inverse(twice);

            EXPECT_TRUE(AffineMatches(single.GetFullMatrix(), single.GetTranslate(), expected))
                << c.description;
            EXPECT_TRUE(AffineMatches(twice.GetFullMatrix(), twice.GetTranslate(), expected))
                << c.description;
            EXPECT_EQ(single.IsRSMatrix(), kind == Kind::UniformRS) << c.description;
            EXPECT_EQ(twice.IsUniformScale(), kind == Kind::UniformRS) << c.description;
        }
    }
}

} // namespace
