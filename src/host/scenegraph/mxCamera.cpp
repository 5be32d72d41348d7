#include "mxCamera.h"

#include "wm4/Wm4Math.h"

#include <cmath>
#include <limits>

namespace mx {

namespace {

// The camera's arithmetic runs in double and rounds once at the end: the matrix and the pick
// rays are then the correctly rounded images of the same frustum, which keeps a picked point
// and its projection in agreement to well below a pixel even for far-off eyes.
using Vec = Wm4::Vector3<double>;

Vec toVec(const Wm4::Vector3<float>& v) {
    return Vec(v.X(), v.Y(), v.Z());
}

// Converting a double beyond the float range is undefined; such values become infinities,
// which the callers then either refuse or pass on as the degenerate result they are.
float toFloat(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    if (value > largest) {
        return std::numeric_limits<float>::infinity();
    }
    if (value < -largest) {
        return -std::numeric_limits<float>::infinity();
    }
    return static_cast<float>(value);
}

Wm4::Vector3<float> toFloat(const Vec& v) {
    return Wm4::Vector3<float>(toFloat(v.X()), toFloat(v.Y()), toFloat(v.Z()));
}

// std::sqrt rather than Wild Magic's Length, whose square root asserts on NaN in builds
// without NDEBUG; a degenerate frame must not stop the program.
double length(const Vec& v) {
    return std::sqrt(v.Dot(v));
}

bool isFinite(const Wm4::Vector3<float>& v) {
    return std::isfinite(v.X()) && std::isfinite(v.Y()) && std::isfinite(v.Z());
}

// A length that can divide: positive and finite (an overflowed or NaN length cannot).
bool isUsableLength(double value) {
    return value > 0.0 && std::isfinite(value);
}

} // namespace

const mxRtti mxCamera::TYPE("mxCore.mxCamera", &mxObject::TYPE);

mxCamera::mxCamera(bool perspective)
    : location(0.0f, 0.0f, 0.0f), dVector(0.0f, 0.0f, -1.0f), uVector(0.0f, 1.0f, 0.0f),
      rVector(1.0f, 0.0f, 0.0f), rMin(-1.0f), rMax(1.0f), uMin(-1.0f), uMax(1.0f), dMin(1.0f),
      dMax(1000.0f), perspective(perspective), viewProjection{} {
    // The members already hold the symmetric default; running it through setFrustum gives
    // the default exactly what a caller asking for the same frustum would get, and fills
    // the matrix.
    setFrustum(90.0f, 1.0f, 1.0f, 1000.0f);
}

mxCamera::~mxCamera() = default;

const mxRtti& mxCamera::GetType() const {
    return TYPE;
}

void mxCamera::setFrame(const Wm4::Vector3<float>& newLocation,
                        const Wm4::Vector3<float>& newDVector,
                        const Wm4::Vector3<float>& newUVector,
                        const Wm4::Vector3<float>& newRVector) {
    location = newLocation;
    dVector = newDVector;
    uVector = newUVector;
    rVector = newRVector;
    updateViewProjection();
}

void mxCamera::setLocation(const Wm4::Vector3<float>& newLocation) {
    location = newLocation;
    updateViewProjection();
}

void mxCamera::setAxes(const Wm4::Vector3<float>& newDVector, const Wm4::Vector3<float>& newUVector,
                       const Wm4::Vector3<float>& newRVector) {
    dVector = newDVector;
    uVector = newUVector;
    rVector = newRVector;
    updateViewProjection();
}

bool mxCamera::lookAt(const Wm4::Vector3<float>& eye, const Wm4::Vector3<float>& target,
                      const Wm4::Vector3<float>& up) {
    if (!isFinite(eye) || !isFinite(target) || !isFinite(up)) {
        return false;
    }
    // In double the difference of two finite floats cannot overflow, so the only way to fail
    // below is a genuinely zero or parallel input.
    const Vec toTarget = toVec(target) - toVec(eye);
    const double distance = length(toTarget);
    if (!isUsableLength(distance)) {
        return false;
    }
    const Vec d = toTarget / distance;

    const Vec upVec = toVec(up);
    const double upLength = length(upVec);
    if (!isUsableLength(upLength)) {
        return false;
    }
    const Vec side = d.Cross(upVec);
    const double sideLength = length(side);
    // |D x up| = |up| sin(angle): comparing against |up| makes the test independent of the
    // length the caller gave up.
    if (!(sideLength > 1e-6 * upLength)) {
        return false;
    }
    const Vec r = side / sideLength;
    const Vec u = r.Cross(d);

    location = eye;
    dVector = toFloat(d);
    uVector = toFloat(u);
    rVector = toFloat(r);
    updateViewProjection();
    return true;
}

bool mxCamera::setFrustum(float newRMin, float newRMax, float newUMin, float newUMax, float newDMin,
                          float newDMax) {
    // Written so that a NaN anywhere fails a comparison and is refused.
    const bool finite = std::isfinite(newRMin) && std::isfinite(newRMax) &&
                        std::isfinite(newUMin) && std::isfinite(newUMax) &&
                        std::isfinite(newDMin) && std::isfinite(newDMax);
    if (!finite || !(newRMin < newRMax) || !(newUMin < newUMax) || !(newDMin > 0.0f) ||
        !(newDMin < newDMax)) {
        return false;
    }
    // Extents so large that their difference overflows would still give an infinite scale
    // in the matrix.
    if (!std::isfinite(newRMax - newRMin) || !std::isfinite(newUMax - newUMin) ||
        !std::isfinite(newDMax - newDMin)) {
        return false;
    }
    rMin = newRMin;
    rMax = newRMax;
    uMin = newUMin;
    uMax = newUMax;
    dMin = newDMin;
    dMax = newDMax;
    updateViewProjection();
    return true;
}

bool mxCamera::setFrustum(float upFovDegrees, float aspect, float newDMin, float newDMax) {
    if (!(upFovDegrees > 0.0f) || !(upFovDegrees < 180.0f) || !(aspect > 0.0f) ||
        !std::isfinite(aspect)) {
        return false;
    }
    const double halfAngle = 0.5 * static_cast<double>(upFovDegrees) * (Wm4::Math<double>::WM4_PI / 180.0);
    const double top = static_cast<double>(newDMin) * std::tan(halfAngle);
    const double right = static_cast<double>(aspect) * top;
    // The general overload checks the near/far planes and any overflow of the extents.
    return setFrustum(toFloat(-right), toFloat(right), toFloat(-top), toFloat(top), newDMin,
                      newDMax);
}

void mxCamera::setPerspective(bool newPerspective) {
    perspective = newPerspective;
    updateViewProjection();
}

bool mxCamera::getPickRay(float x, float y, Wm4::Vector3<float>& origin,
                          Wm4::Vector3<float>& direction) const {
    // The negated form also refuses NaN.
    if (!(x >= 0.0f && x <= 1.0f) || !(y >= 0.0f && y <= 1.0f)) {
        return false;
    }
    const double r = rMin + static_cast<double>(x) * (static_cast<double>(rMax) - rMin);
    const double u = uMin + static_cast<double>(y) * (static_cast<double>(uMax) - uMin);
    const Vec e = toVec(location);
    const Vec d = toVec(dVector);
    const Vec offset = toVec(rVector) * r + toVec(uVector) * u;

    Vec rayOrigin;
    Vec rayDirection;
    if (perspective) {
        rayOrigin = e;
        rayDirection = d * static_cast<double>(dMin) + offset;
    } else {
        rayOrigin = e + offset;
        rayDirection = d;
    }
    const double directionLength = length(rayDirection);
    if (!isUsableLength(directionLength)) {
        return false;
    }
    const Wm4::Vector3<float> newOrigin = toFloat(rayOrigin);
    const Wm4::Vector3<float> newDirection = toFloat(rayDirection / directionLength);
    if (!isFinite(newOrigin) || !isFinite(newDirection)) {
        return false;
    }
    origin = newOrigin;
    direction = newDirection;
    return true;
}

void mxCamera::updateViewProjection() {
    // view[r][c], row-major, acting on column vectors (X, 1).
    const Vec e = toVec(location);
    const Vec axes[3] = {toVec(rVector), toVec(uVector), toVec(dVector)};
    double view[4][4] = {};
    for (int row = 0; row < 3; ++row) {
        view[row][0] = axes[row].X();
        view[row][1] = axes[row].Y();
        view[row][2] = axes[row].Z();
        view[row][3] = -axes[row].Dot(e);
    }
    view[3][3] = 1.0;

    const double left = rMin;
    const double right = rMax;
    const double bottom = uMin;
    const double top = uMax;
    const double nearDepth = dMin;
    const double farDepth = dMax;
    const double width = right - left;
    const double height = top - bottom;
    const double depth = farDepth - nearDepth;

    double projection[4][4] = {};
    if (perspective) {
        // x and y are scaled at the near plane and divided by w = z: a view point (x, y, z)
        // reaches NDC x = (2 dMin x / z - (rMax + rMin)) / (rMax - rMin).
        projection[0][0] = 2.0 * nearDepth / width;
        projection[0][2] = -(right + left) / width;
        projection[1][1] = 2.0 * nearDepth / height;
        projection[1][2] = -(top + bottom) / height;
        projection[2][2] = (farDepth + nearDepth) / depth;
        projection[2][3] = -2.0 * farDepth * nearDepth / depth;
        projection[3][2] = 1.0;
    } else {
        projection[0][0] = 2.0 / width;
        projection[0][3] = -(right + left) / width;
        projection[1][1] = 2.0 / height;
        projection[1][3] = -(top + bottom) / height;
        projection[2][2] = 2.0 / depth;
        projection[2][3] = -(farDepth + nearDepth) / depth;
        projection[3][3] = 1.0;
    }

    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) {
                sum += projection[row][k] * view[k][column];
            }
            viewProjection[column * 4 + row] = toFloat(sum);
        }
    }
}

} // namespace mx
