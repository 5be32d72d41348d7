// Geometry helpers shared by the host tests: near-equality checks for vectors and matrices,
// rotation builders, sphere containment, and a subclass that reports its own deletion.
// Header-only; everything lives in namespace mx::test.

#pragma once

#include "scenegraph/mxBoundingVolume.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <gtest/gtest.h>

#include <cmath>

namespace mx::test {

// Keeps a template argument out of deduction, so that callers may mix literal types.
template <class T> struct NonDeduced { using type = T; };

// Records one EXPECT_NEAR per component: |expected[i] - actual[i]| <= tolerance for i = 0..2.
// Non-fatal; every failing component is reported.
inline void expectVectorNear(const Wm4::Vector3<float>& expected, const Wm4::Vector3<float>& actual,
                             float tolerance) {
    EXPECT_NEAR(expected.X(), actual.X(), tolerance);
    EXPECT_NEAR(expected.Y(), actual.Y(), tolerance);
    EXPECT_NEAR(expected.Z(), actual.Z(), tolerance);
}

// Success when |actual[i] - expected[i]| <= tolerance for every component i (the difference
// taken in Real); otherwise a failure naming the first component that is off and both vectors.
// NaN components fail. Use as EXPECT_TRUE(VectorNear(...)).
template <class Real>
::testing::AssertionResult VectorNear(const Wm4::Vector3<Real>& actual,
                                      const Wm4::Vector3<Real>& expected, double tolerance) {
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(actual[i] - expected[i]) <= tolerance)) {
            return ::testing::AssertionFailure()
                   << "component " << i << " is " << actual[i] << ", expected " << expected[i]
                   << ": (" << actual[0] << ", " << actual[1] << ", " << actual[2]
                   << ") is not near (" << expected[0] << ", " << expected[1] << ", " << expected[2]
                   << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

// Success when |actual(r, c) - expected(r, c)| <= tolerance for every entry, the entries
// compared in double; otherwise a failure naming the first entry that is off. NaN entries fail.
template <class Real>
::testing::AssertionResult MatrixNear(const Wm4::Matrix3<Real>& actual,
                                      const Wm4::Matrix3<Real>& expected, double tolerance) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            const double a = actual(r, c);
            const double e = expected(r, c);
            if (!(std::fabs(a - e) <= tolerance)) {
                return ::testing::AssertionFailure()
                       << "entry (" << r << ", " << c << ") is " << a << ", expected " << e;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

// The rotation by angle (radians, counter-clockwise seen from the tip of the axis) about the
// axis (x, y, z), which is normalised first and must not be zero. Real defaults to float, so
// Rotation(0, 0, 1, 0.5f) builds a float matrix; Rotation<double>(...) a double one.
template <class Real = float>
Wm4::Matrix3<Real> Rotation(typename NonDeduced<Real>::type x, typename NonDeduced<Real>::type y,
                            typename NonDeduced<Real>::type z,
                            typename NonDeduced<Real>::type angle) {
    Wm4::Vector3<Real> axis(x, y, z);
    axis.Normalize();
    Wm4::Matrix3<Real> rotation;
    rotation.MakeRotation(axis, angle);
    return rotation;
}

// Success when sphere inner lies inside sphere outer up to tolerance: the distance between the
// centres plus inner's radius is at most outer's radius plus tolerance.
inline ::testing::AssertionResult Encloses(const mxBoundingVolume& outer,
                                           const mxBoundingVolume& inner, float tolerance) {
    const float reach = (outer.getCenter() - inner.getCenter()).Length() + inner.getRadius();
    if (reach <= outer.getRadius() + tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "inner sphere reaches " << reach << " from the outer centre, outer radius is "
           << outer.getRadius();
}

// A default-constructible Base that sets the flag it is given to true when it is deleted, to
// watch counted references at work. The flag must outlive the object.
template <class Base> class DeletionFlagged : public Base {
public:
    explicit DeletionFlagged(bool& deleted) : deleted(deleted) {}
    ~DeletionFlagged() override { deleted = true; }

private:
    bool& deleted;
};

} // namespace mx::test
