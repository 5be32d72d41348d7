// mxTransformFuzzer: the transformation arithmetic with arbitrary floats.
//
// The bytes are a sequence of operations on two transformations A and B (built by their own
// setters) and a few vectors and matrices: mxGenericTransformation's setters, Product, Inverse,
// ApplyForward and operator==, and mxGizmoNode's static ComputeRotation (both forms),
// ComputeHomotheticTransform, ExtractRotation and ComputeGizmoScale, plus a node's
// calculateFrameFromObjectWorldTranform and applyWorldTransformation. NaN, infinities,
// denormals and signed zeros are all allowed: an infinite or NaN result is a result.
//
// Only what the library promises exactly is checked: the setters' hints, the identity
// shortcuts of Product, that Product and Inverse may write into their own arguments, the form
// (rotation-and-scale or general) of their results, the exact branches of the static
// arithmetic (the 1e-6 comparisons, the dropped translations, the uniform case), ExtractRotation
// on identities, rotation-and-scale input and zero matrices, and, where the input is well
// conditioned, that products and inverses map points as A*B and A^-1 should.

#include "mxFuzzInput.h"

#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"
#include "system/mxLog.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

using mx::fuzz::IsFinite;
using mx::fuzz::mxFuzzInput;
using mx::fuzz::SameBits;
using Transform = mx::mxGenericTransformation<float>;
using Vector = Wm4::Vector3<float>;
using Matrix = Wm4::Matrix3<float>;

const Matrix csIdentity(false);

// Reading a transformation's rotation goes through std::as_const: the writable GetRotate()
// marks the transformation as a rotation and scale, which a check must not do.

bool HasNaN(const Transform& t) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            if (std::isnan(t.GetMatrix()(row, col))) {
                return true;
            }
        }
    }
    for (int i = 0; i < 3; ++i) {
        if (std::isnan(t.GetTranslate()[i]) || std::isnan(t.GetScale()[i])) {
            return true;
        }
    }
    return false;
}

// The library's "equal to the identity within 1e-6 in all nine entries", in double.
bool WithinIdentity(const Matrix& m) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double identity = row == col ? 1.0 : 0.0;
            if (!(std::fabs(static_cast<double>(m(row, col)) - identity) < 1e-6)) {
                return false;
            }
        }
    }
    return true;
}

// The library's "translation long enough to keep": squared length 1e-6 or more (NaN kept).
bool Significant(const Vector& t) {
    return !(static_cast<double>(t.SquaredLength()) < 1e-6);
}

double MaxAbs(const Matrix& m) {
    double largest = 0.0;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            largest = std::max(largest, std::fabs(static_cast<double>(m(row, col))));
        }
    }
    return largest;
}

double MaxAbs(const Vector& v) {
    return std::max({std::fabs(static_cast<double>(v.X())), std::fabs(static_cast<double>(v.Y())),
                     std::fabs(static_cast<double>(v.Z()))});
}

// Whether every stored value of t lies within a range where a few float operations stay
// accurate. The rotation and the scale are bounded apart: a product multiplies the rotations
// before the scales.
bool IsModerate(const Transform& t) {
    return IsFinite(t) && MaxAbs(t.GetMatrix()) <= 1e3 && MaxAbs(t.GetTranslate()) <= 1e3 &&
           MaxAbs(t.GetScale()) <= 1e3;
}

// A bound of how much t can stretch a vector, entry by entry, from its stored values.
double Stretch(const Transform& t) {
    return 3.0 * MaxAbs(t.GetMatrix()) * (t.IsRSMatrix() ? MaxAbs(t.GetScale()) : 1.0);
}

bool Near(const Vector& a, const Vector& b, double tolerance) {
    for (int i = 0; i < 3; ++i) {
        if (!(std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i])) <= tolerance)) {
            return false;
        }
    }
    return true;
}

// One setter on t, checking the hints the header promises for it.
void ApplySetter(mxFuzzInput& input, Transform& t) {
    switch (input.choice(8)) {
    case 0: {
        const Vector translate = input.anyVector();
        const bool rs = t.IsRSMatrix();
        t.SetTranslate(translate);
        MX_FUZZ_CHECK(!t.IsIdentity() && t.IsRSMatrix() == rs &&
                      SameBits(t.GetTranslate(), translate));
        break;
    }
    case 1: {
        const Matrix rotate = input.anyMatrix();
        t.SetRotate(rotate);
        MX_FUZZ_CHECK(!t.IsIdentity() && t.IsRSMatrix() &&
                      SameBits(std::as_const(t).GetRotate(), rotate));
        break;
    }
    case 2: {
        const Matrix matrix = input.anyMatrix();
        t.SetMatrix(matrix);
        MX_FUZZ_CHECK(!t.IsIdentity() && !t.IsRSMatrix() && !t.IsUniformScale() &&
                      SameBits(t.GetMatrix(), matrix) && SameBits(t.GetFullMatrix(), matrix));
        break;
    }
    case 3: {
        const Vector scale = input.anyVector();
        t.SetScale(scale);
        MX_FUZZ_CHECK(!t.IsIdentity() && !t.IsUniformScale() && SameBits(t.GetScale(), scale));
        break;
    }
    case 4: {
        const float scale = input.anyFloat();
        t.SetUniformScale(scale);
        MX_FUZZ_CHECK(!t.IsIdentity() && t.IsUniformScale() == t.IsRSMatrix() &&
                      SameBits(t.GetScale(), Vector(scale, scale, scale)));
        break;
    }
    case 5:
        t.MakeUnitScale();
        MX_FUZZ_CHECK(SameBits(t.GetScale(), Vector(1.0f, 1.0f, 1.0f)));
        break;
    case 6: {
        const Matrix rotate = input.anyMatrix();
        t.GetRotate() = rotate;
        MX_FUZZ_CHECK(!t.IsIdentity() && t.IsRSMatrix() &&
                      SameBits(std::as_const(t).GetRotate(), rotate));
        break;
    }
    default:
        t.MakeIdentity();
        MX_FUZZ_CHECK(t.IsIdentity() && SameBits(t, Transform()));
        break;
    }
}

void CheckProduct(const Transform& a, const Transform& b) {
    Transform product;
    product.Product(a, b);
    if (a.IsIdentity()) {
        MX_FUZZ_CHECK(SameBits(product, b));
    } else if (b.IsIdentity()) {
        MX_FUZZ_CHECK(SameBits(product, a));
    } else {
        MX_FUZZ_CHECK(!product.IsIdentity());
        MX_FUZZ_CHECK(product.IsRSMatrix() ==
                      (a.IsRSMatrix() && b.IsRSMatrix() && a.IsUniformScale()));
    }
    // The receiver may be either argument, or both.
    Transform first = a;
    first.Product(first, b);
    MX_FUZZ_CHECK(SameBits(first, product));
    Transform second = b;
    second.Product(a, second);
    MX_FUZZ_CHECK(SameBits(second, product));
    Transform both = a;
    both.Product(both, both);
    Transform square;
    square.Product(a, a);
    MX_FUZZ_CHECK(SameBits(both, square));

    // B applied first, then A: within float rounding where the values stay moderate.
    if (IsModerate(a) && IsModerate(b)) {
        const Vector points[] = {Vector(0.0f, 0.0f, 0.0f), Vector(1.0f, -2.0f, 3.0f),
                                 Vector(-10.0f, 5.0f, 0.5f)};
        for (const Vector& point : points) {
            const Vector expected = a.ApplyForward(b.ApplyForward(point, true), true);
            // The sizes the rounding is relative to.
            const double size =
                Stretch(a) * (Stretch(b) * MaxAbs(point) + MaxAbs(b.GetTranslate())) +
                MaxAbs(a.GetTranslate()) + 1.0;
            MX_FUZZ_CHECK(Near(product.ApplyForward(point, true), expected, 1e-5 * size));
        }
    }
}

void CheckInverse(const Transform& t) {
    Transform inverse;
    t.Inverse(inverse);
    Transform self = t;
    self.Inverse(self);
    MX_FUZZ_CHECK(SameBits(self, inverse));
    if (t.IsIdentity()) {
        MX_FUZZ_CHECK(SameBits(inverse, Transform()));
        return;
    }
    const Vector& scale = t.GetScale();
    const bool zeroScale = scale.X() == 0.0f || scale.Y() == 0.0f || scale.Z() == 0.0f;
    if (!t.IsRSMatrix()) {
        return;
    }
    if (zeroScale) {
        // Singular: the zero matrix.
        const Matrix full = inverse.GetFullMatrix();
        for (int row = 0; row < 3; ++row) {
            for (int col = 0; col < 3; ++col) {
                MX_FUZZ_CHECK(full(row, col) == 0.0f);
            }
        }
    } else if (t.IsUniformScale()) {
        MX_FUZZ_CHECK(inverse.IsRSMatrix() && inverse.IsUniformScale());
    } else {
        // A rotation with non-uniform scale inverts to a general matrix.
        MX_FUZZ_CHECK(!inverse.IsRSMatrix());
    }
}

// A transformation whose inverse is well conditioned: a rotation by whole degrees, scales
// between a quarter and four, a translation of a few units.
Transform WellConditioned(mxFuzzInput& input) {
    static constexpr float csScales[] = {1.0f, 2.0f, 0.5f, 4.0f, 0.25f, -1.0f, -2.0f, 3.0f};
    auto pick = [&input]() { return csScales[input.integer<std::size_t>(0, 7)]; };
    Transform t;
    const Matrix rotation = input.niceRotation();
    switch (input.choice(3)) {
    case 0:
        t.SetRotate(rotation);
        t.SetUniformScale(pick());
        break;
    case 1: {
        t.SetRotate(rotation);
        const float x = pick();
        const float y = pick();
        const float z = pick();
        t.SetScale(Vector(x, y, z));
        break;
    }
    default: {
        const float x = pick();
        const float y = pick();
        const float z = pick();
        t.SetMatrix(rotation.TimesDiagonal(Vector(x, y, z)));
        break;
    }
    }
    t.SetTranslate(input.niceVector());
    return t;
}

void CheckRoundTrip(mxFuzzInput& input) {
    const Transform t = WellConditioned(input);
    Transform inverse;
    t.Inverse(inverse);
    Transform product;
    product.Product(t, inverse);
    const Vector point = input.niceVector();
    const double size = 16.0 * (MaxAbs(point) + 4.0 * MaxAbs(t.GetTranslate()) + 1.0);
    MX_FUZZ_CHECK(Near(product.ApplyForward(point, true), point, 1e-5 * size));
    MX_FUZZ_CHECK(
        Near(inverse.ApplyForward(t.ApplyForward(point, true), true), point, 1e-5 * size));
}

void CheckEquality(const Transform& t) {
    const Transform copy = t;
    MX_FUZZ_CHECK(SameBits(copy, t));
    // Member-wise with ==: NaN equals nothing, so a transformation holding one is unequal
    // even to itself.
    MX_FUZZ_CHECK((copy == t) == !HasNaN(t));
    MX_FUZZ_CHECK((copy != t) == HasNaN(t));
}

void CheckComputeRotation(mxFuzzInput& input) {
    const Matrix rotation = input.anyMatrix();
    const Vector centre = input.anyVector();
    Transform out = input.anyTransformation(); // overwritten whatever it held
    mx::mxGizmoNode::ComputeRotation(rotation, centre, out);
    MX_FUZZ_CHECK(out.IsRSMatrix() && SameBits(out.GetScale(), Vector(1.0f, 1.0f, 1.0f)));
    const bool rotationSet = !WithinIdentity(rotation);
    MX_FUZZ_CHECK(SameBits(std::as_const(out).GetRotate(), rotationSet ? rotation : csIdentity));
    const Vector t = centre - rotation * centre;
    const bool translationSet = Significant(t);
    MX_FUZZ_CHECK(SameBits(out.GetTranslate(), translationSet ? t : Vector(0.0f, 0.0f, 0.0f)));
    MX_FUZZ_CHECK(out.IsIdentity() == (!rotationSet && !translationSet));

    // The axis-angle form goes through the matrix form: rotation and unit scale again.
    const Vector axis = input.anyVector();
    const float angle = input.anyFloat();
    mx::mxGizmoNode::ComputeRotation(axis, angle, centre, out);
    MX_FUZZ_CHECK(out.IsRSMatrix() && SameBits(out.GetScale(), Vector(1.0f, 1.0f, 1.0f)));
}

void CheckHomothetic(mxFuzzInput& input) {
    const Vector scale =
        input.flag() ? input.anyVector() : Vector(1.0f, 1.0f, 1.0f) * input.anyFloat();
    const Matrix frame = input.anyMatrix();
    const Vector centre = input.anyVector();
    Transform out = input.anyTransformation();
    mx::mxGizmoNode::ComputeHomotheticTransform(scale, frame, centre, out);

    const float sx = scale.X();
    const float sy = scale.Y();
    const float sz = scale.Z();
    const Vector t(centre.X() - centre.X() * sx, centre.Y() - centre.Y() * sy,
                   centre.Z() - centre.Z() * sz);
    if (sx == sy && sy == sz) {
        if (sx == 1.0f) {
            MX_FUZZ_CHECK(SameBits(out, Transform()));
            return;
        }
        MX_FUZZ_CHECK(out.IsRSMatrix() && out.IsUniformScale() &&
                      SameBits(out.GetScale(), Vector(sx, sx, sx)) &&
                      SameBits(out.GetTranslate(), t) &&
                      SameBits(std::as_const(out).GetRotate(), csIdentity));
        return;
    }
    if (WithinIdentity(frame)) {
        MX_FUZZ_CHECK(out.IsRSMatrix() && !out.IsUniformScale() &&
                      SameBits(out.GetScale(), scale) && SameBits(out.GetTranslate(), t) &&
                      SameBits(std::as_const(out).GetRotate(), csIdentity));
        return;
    }
    // Along the frame's columns: a general matrix unless it comes out as the identity, and a
    // translation only when it is long enough.
    const Matrix m = frame * Matrix(sx, sy, sz) * frame.Transpose();
    const Vector shift = centre - m * centre;
    MX_FUZZ_CHECK(
        SameBits(out.GetTranslate(), Significant(shift) ? shift : Vector(0.0f, 0.0f, 0.0f)));
    if (WithinIdentity(m)) {
        MX_FUZZ_CHECK(out.IsRSMatrix() && SameBits(out.GetMatrix(), csIdentity));
    } else {
        MX_FUZZ_CHECK(!out.IsRSMatrix() && SameBits(out.GetMatrix(), m));
    }
}

void CheckExtractRotation(mxFuzzInput& input) {
    Transform t = input.anyTransformation();
    if (input.choice(4) == 0) {
        t.SetMatrix(Matrix(true)); // all zero: the identity comes out
    }
    Matrix rotation = input.anyMatrix(); // overwritten
    mx::mxGizmoNode::ExtractRotation(t, rotation);
    if (t.IsIdentity()) {
        MX_FUZZ_CHECK(SameBits(rotation, csIdentity));
        return;
    }
    if (t.IsRSMatrix()) {
        MX_FUZZ_CHECK(SameBits(rotation, std::as_const(t).GetRotate()));
        return;
    }
    const Matrix& m = t.GetMatrix();
    bool allZero = true;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            allZero = allZero && m(row, col) == 0.0f;
        }
    }
    if (allZero) {
        MX_FUZZ_CHECK(SameBits(rotation, csIdentity));
        return;
    }
    // Three finite columns of moderate length, pairwise far from parallel or opposite: a proper
    // orthonormal frame whose first column keeps the direction of the first input column.
    Vector columns[3];
    for (int col = 0; col < 3; ++col) {
        columns[col] = Vector(m(0, col), m(1, col), m(2, col));
        const float length = columns[col].Length();
        if (!IsFinite(columns[col]) || !(length >= 1e-3f && length <= 1e3f)) {
            return;
        }
        columns[col] /= length;
    }
    for (int i = 0; i < 3; ++i) {
        for (int j = i + 1; j < 3; ++j) {
            if (!(std::fabs(columns[i].Dot(columns[j])) < 0.99f)) {
                return;
            }
        }
    }
    Vector result[3];
    for (int col = 0; col < 3; ++col) {
        result[col] = Vector(rotation(0, col), rotation(1, col), rotation(2, col));
    }
    for (int i = 0; i < 3; ++i) {
        MX_FUZZ_CHECK(std::fabs(result[i].Length() - 1.0f) <= 1e-4f);
        for (int j = i + 1; j < 3; ++j) {
            MX_FUZZ_CHECK(std::fabs(result[i].Dot(result[j])) <= 1e-4f);
        }
    }
    MX_FUZZ_CHECK(std::fabs(result[0].Cross(result[1]).Dot(result[2]) - 1.0f) <= 1e-4f);
    MX_FUZZ_CHECK(Near(result[0], columns[0], 1e-5));
}

mx::mxPointer<mx::mxCamera> AnyCamera(mxFuzzInput& input) {
    mx::mxPointer<mx::mxCamera> camera = new mx::mxCamera(input.flag());
    if (input.flag()) {
        camera->setFrame(input.anyVector(), input.anyVector(), input.anyVector(),
                         input.anyVector());
    }
    if (input.flag()) {
        const float fov = input.anyFloat();
        const float aspect = input.anyFloat();
        const float near = input.anyFloat();
        const float far = input.anyFloat();
        camera->setFrustum(fov, aspect, near, far);
    }
    return camera;
}

void CheckNodePlacement(mxFuzzInput& input) {
    mx::mxPointer<mx::mxGizmoNode> node = new mx::mxGizmoNode();
    const Transform frame = input.anyTransformation();
    const mx::mxPointer<mx::mxCamera> camera = input.choice(4) == 0 ? nullptr : AnyCamera(input);
    const float pixelSize = input.anyFloat();
    const int height = input.flag() ? 200 : input.anyInteger<int>();
    const Transform before = node->getLocalTransform();
    const bool changed =
        node->calculateFrameFromObjectWorldTranform(frame, camera.get(), pixelSize, height);
    if (!frame.IsRSMatrix() || !camera) {
        // Refused: the node keeps its placement.
        MX_FUZZ_CHECK(!changed && SameBits(node->getLocalTransform(), before));
    }
    (void)mx::mxGizmoNode::ComputeGizmoScale(camera.get(), input.anyVector(), pixelSize, height);
    MX_FUZZ_CHECK(mx::mxGizmoNode::ComputeGizmoScale(nullptr, input.anyVector(), input.anyFloat(),
                                                     input.anyInteger<int>()) == 1.0f);

    // Without a parent the local transformation is the world one: a second identical call
    // changes nothing, unless a NaN makes the transformation unequal to itself.
    const Transform world = input.anyTransformation();
    node->applyWorldTransformation(world);
    MX_FUZZ_CHECK(node->applyWorldTransformation(world) == HasNaN(world));
    node->updateCameraFacing(camera.get());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The refusals write warnings; thousands of runs a second need not print them.
    mx::mxLog::msInstance->setEchoToStandardError(false);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mxFuzzInput input(data, size);
    Transform a = input.anyTransformation();
    Transform b = input.anyTransformation();
    for (int step = 0; step < 64 && !input.exhausted(); ++step) {
        switch (input.choice(12)) {
        case 0:
            ApplySetter(input, a);
            break;
        case 1:
            ApplySetter(input, b);
            break;
        case 2:
            CheckProduct(a, b);
            break;
        case 3:
            CheckProduct(b, a);
            a.Product(a, b);
            break;
        case 4:
            CheckInverse(a);
            a.Inverse(b);
            break;
        case 5:
            CheckEquality(a);
            CheckEquality(b);
            break;
        case 6:
            CheckRoundTrip(input);
            break;
        case 7:
            CheckComputeRotation(input);
            break;
        case 8:
            CheckHomothetic(input);
            break;
        case 9:
            CheckExtractRotation(input);
            break;
        case 10:
            CheckNodePlacement(input);
            break;
        default: {
            // Points and directions through both, and the full matrices.
            const Vector v = input.anyVector();
            (void)a.ApplyForward(v, input.flag());
            (void)b.ApplyForward(v, input.flag());
            if (a.IsIdentity() && IsFinite(v)) {
                const Vector image = a.ApplyForward(v, true);
                MX_FUZZ_CHECK(image.X() == v.X() && image.Y() == v.Y() && image.Z() == v.Z());
            }
            (void)a.GetFullMatrix();
            break;
        }
        }
    }
    return 0;
}
