#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Vector3.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Matrix3f = Wm4::Matrix3<float>;
using Matrix3d = Wm4::Matrix3<double>;
using Vector3f = Wm4::Vector3<float>;
using mx::test::expectVectorNear;
using mx::test::MatrixNear;

// The rows 1 2 3 / 4 5 6 / 7 8 10 (invertible, determinant -3).
const Matrix3f cSample(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 10.0f);

TEST(Wm4Matrix3Test, IsWildMagicsMatrix3) {
    EXPECT_TRUE((std::is_same<Matrix3f, Wm5::Matrix3<float>>::value));
    EXPECT_TRUE((std::is_same<Matrix3d, Wm5::Matrix3<double>>::value));
}

TEST(Wm4Matrix3Test, EntriesAreStoredRowByRow) {
    const float* entries = cSample;
    const float expected[9] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 10.0f};
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(entries[i], expected[i]) << "entry " << i;
    }
    EXPECT_EQ(cSample[0][1], 2.0f);
    EXPECT_EQ(cSample[1][0], 4.0f);
    EXPECT_EQ(cSample[2][1], 8.0f);
    EXPECT_EQ(cSample(1, 2), 6.0f);
    EXPECT_EQ(cSample(2, 0), 7.0f);
}

TEST(Wm4Matrix3Test, RowMajorAndColumnMajorArraysBuildTheSameMatrixWhenTransposed) {
    const float rowMajor[9] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 10.0f};
    const float columnMajor[9] = {1.0f, 4.0f, 7.0f, 2.0f, 5.0f, 8.0f, 3.0f, 6.0f, 10.0f};
    EXPECT_EQ(Matrix3f(rowMajor, true), cSample);
    EXPECT_EQ(Matrix3f(columnMajor, false), cSample);
}

TEST(Wm4Matrix3Test, ActsOnColumnVectorsSoColumnJIsTheImageOfAxisJ) {
    EXPECT_EQ(cSample * Vector3f::UNIT_X, Vector3f(1.0f, 4.0f, 7.0f));
    EXPECT_EQ(cSample * Vector3f::UNIT_Y, Vector3f(2.0f, 5.0f, 8.0f));
    EXPECT_EQ(cSample * Vector3f::UNIT_Z, Vector3f(3.0f, 6.0f, 10.0f));
    EXPECT_EQ(cSample * Vector3f(1.0f, 1.0f, 1.0f), Vector3f(6.0f, 15.0f, 25.0f));
}

TEST(Wm4Matrix3Test, VectorsGivenAsColumnsOrRowsLandWhereSaid) {
    const Vector3f u(1.0f, 2.0f, 3.0f);
    const Vector3f v(4.0f, 5.0f, 6.0f);
    const Vector3f w(7.0f, 8.0f, 9.0f);
    const Matrix3f columns(u, v, w, true);
    EXPECT_EQ(columns * Vector3f::UNIT_Y, v);
    EXPECT_EQ(columns[0][1], 4.0f);
    const Matrix3f rows(u, v, w, false);
    EXPECT_EQ(rows[1][0], 4.0f);
    EXPECT_EQ(rows, columns.Transpose());
}

TEST(Wm4Matrix3Test, TrueBuildsTheZeroMatrixAndFalseTheIdentity) {
    const Matrix3f zero(true);
    const Matrix3f identity(false);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(zero[r][c], 0.0f);
            EXPECT_EQ(identity[r][c], r == c ? 1.0f : 0.0f);
        }
    }
    EXPECT_EQ(zero, Matrix3f::ZERO);
    EXPECT_EQ(identity, Matrix3f::IDENTITY);
    EXPECT_EQ(Matrix3f(), Matrix3f::ZERO);
}

TEST(Wm4Matrix3Test, IdentityLeavesVectorsAndMatricesUnchanged) {
    const Vector3f v(-1.5f, 2.0f, 4.25f);
    EXPECT_EQ(Matrix3f::IDENTITY * v, v);
    EXPECT_EQ(Matrix3f::IDENTITY * cSample, cSample);
    EXPECT_EQ(cSample * Matrix3f::IDENTITY, cSample);
    EXPECT_EQ(Matrix3d::IDENTITY, Matrix3d(false));
}

TEST(Wm4Matrix3Test, ProductAppliesTheRightFactorFirst) {
    Matrix3f rotateZ;
    rotateZ.MakeRotation(Vector3f::UNIT_Z, Wm4::Math<float>::HALF_PI);
    const Matrix3f scaleX(2.0f, 1.0f, 1.0f);
    const Vector3f v(1.0f, 0.0f, 0.0f);
    // Scale first, then rotate: (2, 0, 0) turned to (0, 2, 0).
    expectVectorNear(Vector3f(0.0f, 2.0f, 0.0f), (rotateZ * scaleX) * v, 1e-6f);
    // Rotate first, then scale: (0, 1, 0) left alone by the x scale.
    expectVectorNear(Vector3f(0.0f, 1.0f, 0.0f), (scaleX * rotateZ) * v, 1e-6f);
}

TEST(Wm4Matrix3Test, PositiveRotationAngleTurnsCounterclockwise) {
    const Matrix3f rotateZ(Vector3f::UNIT_Z, Wm4::Math<float>::HALF_PI);
    expectVectorNear(Vector3f::UNIT_Y, rotateZ * Vector3f::UNIT_X, 1e-6f);
    expectVectorNear(-Vector3f::UNIT_X, rotateZ * Vector3f::UNIT_Y, 1e-6f);
    expectVectorNear(Vector3f::UNIT_Z, rotateZ * Vector3f::UNIT_Z, 1e-6f);
    EXPECT_NEAR(rotateZ.Determinant(), 1.0f, 1e-6f);
}

TEST(Wm4Matrix3Test, TransposeDeterminantAndInverseAreConsistent) {
    const Matrix3f transposed = cSample.Transpose();
    EXPECT_EQ(transposed[0][1], 4.0f);
    EXPECT_EQ(transposed[1][0], 2.0f);
    EXPECT_NEAR(cSample.Determinant(), -3.0f, 1e-5f);
    EXPECT_TRUE(MatrixNear(cSample * cSample.Inverse(), Matrix3f::IDENTITY, 1e-5f));
    EXPECT_TRUE(MatrixNear(cSample.Inverse() * cSample, Matrix3f::IDENTITY, 1e-5f));
}

} // namespace
