// Comparisons of mxGenericTransformation<float> for tests: bit for bit (every stored float and
// the three hints), or by the way they map points up to a tolerance. Header-only; everything
// lives in namespace mx::test.
#pragma once

#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Matrix3.h"

#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

namespace mx::test {

inline bool SameBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof(float)) == 0;
}

// The stored matrix, translation, scale and hints, for failure messages.
inline std::string Describe(const mxGenericTransformation<float>& t) {
    std::ostringstream out;
    const Wm4::Matrix3<float>& m = t.GetMatrix();
    out << "{matrix (" << m(0, 0) << ", " << m(0, 1) << ", " << m(0, 2) << "; " << m(1, 0) << ", "
        << m(1, 1) << ", " << m(1, 2) << "; " << m(2, 0) << ", " << m(2, 1) << ", " << m(2, 2)
        << "), translate (" << t.GetTranslate().X() << ", " << t.GetTranslate().Y() << ", "
        << t.GetTranslate().Z() << "), scale (" << t.GetScale().X() << ", " << t.GetScale().Y()
        << ", " << t.GetScale().Z() << "), identity " << t.IsIdentity() << ", rs " << t.IsRSMatrix()
        << ", uniform " << t.IsUniformScale() << "}";
    return out.str();
}

// Success when both transformations hold the same bits in every stored float (matrix,
// translation, scale) and the same three hints.
inline ::testing::AssertionResult BitwiseEqual(const mxGenericTransformation<float>& actual,
                                               const mxGenericTransformation<float>& expected) {
    bool same = actual.IsIdentity() == expected.IsIdentity() &&
                actual.IsRSMatrix() == expected.IsRSMatrix() &&
                actual.IsUniformScale() == expected.IsUniformScale();
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            same = same && SameBits(actual.GetMatrix()(r, c), expected.GetMatrix()(r, c));
        }
    }
    for (int i = 0; i < 3; ++i) {
        same = same && SameBits(actual.GetTranslate()[i], expected.GetTranslate()[i]) &&
               SameBits(actual.GetScale()[i], expected.GetScale()[i]);
    }
    if (same) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << Describe(actual) << " differs in its bits from " << Describe(expected);
}

// Success when both transformations map points the same way up to tolerance: their full
// matrices and translations agree entry by entry.
inline ::testing::AssertionResult MapsNear(const mxGenericTransformation<float>& actual,
                                           const mxGenericTransformation<float>& expected,
                                           double tolerance) {
    ::testing::AssertionResult matrix =
        MatrixNear(actual.GetFullMatrix(), expected.GetFullMatrix(), tolerance);
    if (!matrix) {
        return matrix << " in " << Describe(actual) << " against " << Describe(expected);
    }
    ::testing::AssertionResult translation =
        VectorNear(actual.GetTranslate(), expected.GetTranslate(), tolerance);
    if (!translation) {
        return translation << " in " << Describe(actual) << " against " << Describe(expected);
    }
    return ::testing::AssertionSuccess();
}

} // namespace mx::test
