// mxFuzzInput: turns a fuzzer's bytes into the values the library is called with. Shared by the
// three fuzz targets; header-only.
//
// Every value is chosen by a selector first, so that the fuzzer reaches both ends: "nice"
// values (small round numbers, unit axes, rotations by whole degrees) often enough to build
// scenes in which a drag actually happens, and hostile ones (NaN, infinities, denormals, signed
// zeros, the largest floats, raw bit patterns) everywhere else. When the bytes run out every
// choice falls back to its first, tamest option (FuzzedDataProvider yields zeros).
//
// MX_FUZZ_CHECK is the one way the targets stop on a broken promise: it traps.
#pragma once

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

namespace mx::fuzz {

// Stops the run when a documented promise is broken; libFuzzer reports the input as a crash.
// The broken promise is printed first, since a trap's stack trace loses the line.
inline void CheckFailed(const char* file, int line, const char* promise) {
    std::fprintf(stderr, "%s:%d: broken promise: %s\n", file, line, promise);
    std::fflush(stderr);
    __builtin_trap();
}

#define MX_FUZZ_CHECK(promise)                                                                     \
    ((promise) ? static_cast<void>(0) : ::mx::fuzz::CheckFailed(__FILE__, __LINE__, #promise))

// Whether two floats hold the same bits.
inline bool SameBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool SameBits(const Wm4::Vector3<float>& a, const Wm4::Vector3<float>& b) {
    return SameBits(a.X(), b.X()) && SameBits(a.Y(), b.Y()) && SameBits(a.Z(), b.Z());
}

inline bool SameBits(const Wm4::Matrix3<float>& a, const Wm4::Matrix3<float>& b) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            if (!SameBits(a(row, col), b(row, col))) {
                return false;
            }
        }
    }
    return true;
}

// Every stored value and hint of two transformations, bit for bit.
inline bool SameBits(const mxGenericTransformation<float>& a,
                     const mxGenericTransformation<float>& b) {
    return SameBits(a.GetMatrix(), b.GetMatrix()) && SameBits(a.GetTranslate(), b.GetTranslate()) &&
           SameBits(a.GetScale(), b.GetScale()) && a.IsIdentity() == b.IsIdentity() &&
           a.IsRSMatrix() == b.IsRSMatrix() && a.IsUniformScale() == b.IsUniformScale();
}

inline bool IsFinite(const Wm4::Vector3<float>& v) {
    return std::isfinite(v.X()) && std::isfinite(v.Y()) && std::isfinite(v.Z());
}

inline bool IsFinite(const Wm4::Matrix3<float>& m) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            if (!std::isfinite(m(row, col))) {
                return false;
            }
        }
    }
    return true;
}

inline bool IsFinite(const mxGenericTransformation<float>& t) {
    return IsFinite(t.GetMatrix()) && IsFinite(t.GetTranslate()) && IsFinite(t.GetScale());
}

// The window position (origin top left, y downwards, pixel centres at whole numbers) of a world
// point in a width x height view of camera, as the controllers' picking measures it: through
// the camera's view-projection matrix, with y counted from the bottom there. Worked out in
// double; false when the point has no position within a billion pixels of the view (behind
// the eye, at infinity, NaN), so that the caller may convert it to int safely.
inline bool WindowPositionOf(const mxCamera& camera, const Wm4::Vector3<float>& world, int width,
                             int height, double& x, double& y) {
    const float* m = camera.getViewProjectionMatrix();
    const double wx = world.X();
    const double wy = world.Y();
    const double wz = world.Z();
    const double cx = m[0] * wx + m[4] * wy + m[8] * wz + m[12];
    const double cy = m[1] * wx + m[5] * wy + m[9] * wz + m[13];
    const double cw = m[3] * wx + m[7] * wy + m[11] * wz + m[15];
    x = (cx / cw + 1.0) * 0.5 * width - 0.5;
    y = height - ((cy / cw + 1.0) * 0.5 * height + 0.5);
    return std::fabs(x) < 1e9 && std::fabs(y) < 1e9;
}

// A point of one of a gizmo's handles, in the gizmo's frame: handles 0 to 2 are the X, Y and Z
// axes, along a fraction of their length; handles 3 to 5 the circles about X, Y and Z, along an
// angle in degrees.
inline Wm4::Vector3<float> HandlePoint(int handle, float along) {
    if (handle < 3) {
        return Wm4::Vector3<float>(handle == 0 ? along : 0.0f, handle == 1 ? along : 0.0f,
                                   handle == 2 ? along : 0.0f);
    }
    const float radians = along * 3.14159265358979f / 180.0f;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return handle == 3   ? Wm4::Vector3<float>(0.0f, c, s)
           : handle == 4 ? Wm4::Vector3<float>(c, 0.0f, s)
                         : Wm4::Vector3<float>(c, s, 0.0f);
}

class mxFuzzInput {
public:
    mxFuzzInput(const std::uint8_t* data, std::size_t size) : provider(data, size) {}

    bool exhausted() { return provider.remaining_bytes() == 0; }

    template <class T> T integer(T low, T high) {
        return provider.ConsumeIntegralInRange<T>(low, high);
    }
    template <class T> T anyInteger() { return provider.ConsumeIntegral<T>(); }
    bool flag() { return provider.ConsumeBool(); }
    // A choice among count options, the first one when the bytes have run out.
    int choice(int count) { return integer<int>(0, count - 1); }

    // Small round numbers, the kind a scene is built of.
    float niceFloat() {
        static constexpr float csNice[] = {0.0f,  1.0f,   -1.0f, 0.5f, -0.5f, 2.0f,
                                           -2.0f, 3.0f,   -3.0f, 5.0f, 10.0f, -10.0f,
                                           0.25f, 100.0f, 1e-3f, 1e3f, 0.1f,  -4.0f};
        return csNice[integer<std::size_t>(0, sizeof csNice / sizeof csNice[0] - 1)];
    }

    // The values that break arithmetic.
    float specialFloat() {
        static const float csSpecial[] = {
            std::numeric_limits<float>::quiet_NaN(),
            -std::numeric_limits<float>::quiet_NaN(),
            std::numeric_limits<float>::infinity(),
            -std::numeric_limits<float>::infinity(),
            std::numeric_limits<float>::max(),
            -std::numeric_limits<float>::max(),
            std::numeric_limits<float>::min(),
            std::numeric_limits<float>::denorm_min(),
            -std::numeric_limits<float>::denorm_min(),
            -0.0f,
            std::numeric_limits<float>::epsilon(),
            1.0f + std::numeric_limits<float>::epsilon(),
            1.0f - std::numeric_limits<float>::epsilon() / 2.0f,
            1e-30f,
            1e30f,
            -1e30f,
            1e-7f,
            5e-7f,
            0.001f,
            0.0005f,
            16777216.0f,
            2147483648.0f,
            -2147483648.0f,
        };
        return csSpecial[integer<std::size_t>(0, sizeof csSpecial / sizeof csSpecial[0] - 1)];
    }

    float rawFloat() {
        const std::uint32_t bits = anyInteger<std::uint32_t>();
        float value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    // Any float: nice half of the time, then small multiples of 1/8, special values and raw
    // bits.
    float anyFloat() {
        const int selector = integer<int>(0, 15);
        if (selector < 8) {
            return niceFloat();
        }
        if (selector < 11) {
            return static_cast<float>(anyInteger<std::int8_t>()) / 8.0f;
        }
        if (selector < 14) {
            return specialFloat();
        }
        return rawFloat();
    }

    // A double for the Qt positions: the same mix, plus doubles beyond every float and int.
    double anyDouble() {
        switch (integer<int>(0, 5)) {
        case 0:
        case 1:
            return static_cast<double>(anyFloat());
        case 2: {
            static const double csHuge[] = {1e300,
                                            -1e300,
                                            2147483647.0,
                                            2147483647.49,
                                            2147483647.5,
                                            2147483648.0,
                                            -2147483648.0,
                                            -2147483648.49,
                                            -2147483648.5,
                                            -2147483649.0,
                                            std::numeric_limits<double>::max(),
                                            std::numeric_limits<double>::lowest(),
                                            std::numeric_limits<double>::denorm_min(),
                                            std::numeric_limits<double>::quiet_NaN(),
                                            std::numeric_limits<double>::infinity(),
                                            -std::numeric_limits<double>::infinity()};
            return csHuge[integer<std::size_t>(0, sizeof csHuge / sizeof csHuge[0] - 1)];
        }
        case 3:
            return static_cast<double>(anyInteger<std::int32_t>()) + 0.5 * integer<int>(-1, 1);
        default: {
            const std::uint64_t bits = anyInteger<std::uint64_t>();
            double value;
            std::memcpy(&value, &bits, sizeof value);
            return value;
        }
        }
    }

    Wm4::Vector3<float> niceVector() {
        const float x = niceFloat();
        const float y = niceFloat();
        const float z = niceFloat();
        return Wm4::Vector3<float>(x, y, z);
    }

    Wm4::Vector3<float> anyVector() {
        switch (integer<int>(0, 4)) {
        case 0:
            return niceVector();
        case 1: {
            static const Wm4::Vector3<float> csAxes[] = {
                Wm4::Vector3<float>(1.0f, 0.0f, 0.0f),  Wm4::Vector3<float>(0.0f, 1.0f, 0.0f),
                Wm4::Vector3<float>(0.0f, 0.0f, 1.0f),  Wm4::Vector3<float>(-1.0f, 0.0f, 0.0f),
                Wm4::Vector3<float>(0.0f, -1.0f, 0.0f), Wm4::Vector3<float>(0.0f, 0.0f, -1.0f),
                Wm4::Vector3<float>(0.0f, 0.0f, 0.0f)};
            return csAxes[integer<std::size_t>(0, sizeof csAxes / sizeof csAxes[0] - 1)];
        }
        default: {
            const float x = anyFloat();
            const float y = anyFloat();
            const float z = anyFloat();
            return Wm4::Vector3<float>(x, y, z);
        }
        }
    }

    // A rotation by a whole number of 15-degree steps about a nice axis (identity for a zero
    // axis).
    Wm4::Matrix3<float> niceRotation() {
        Wm4::Vector3<float> axis = niceVector();
        const float length = axis.Length();
        const float degrees = 15.0f * static_cast<float>(integer<int>(-12, 12));
        if (!(length > 0.0f) || !std::isfinite(length)) {
            return Wm4::Matrix3<float>(false);
        }
        axis /= length;
        return Wm4::Matrix3<float>(axis, degrees * 3.14159265358979f / 180.0f);
    }

    // Any matrix: identity, rotations, scaled rotations, matrices with missing or parallel
    // columns, almost-identities within the library's 1e-6, and raw entries.
    Wm4::Matrix3<float> anyMatrix() {
        switch (integer<int>(0, 6)) {
        case 0:
            return Wm4::Matrix3<float>(false);
        case 1:
            return niceRotation();
        case 2: {
            const Wm4::Matrix3<float> rotation = niceRotation();
            const Wm4::Vector3<float> scale = anyVector();
            return rotation.TimesDiagonal(scale);
        }
        case 3: {
            // Columns picked from a small set, so that zero, equal, opposite and parallel
            // columns are common.
            Wm4::Vector3<float> columns[3];
            for (int c = 0; c < 3; ++c) {
                switch (integer<int>(0, 5)) {
                case 0:
                    columns[c] = Wm4::Vector3<float>(0.0f, 0.0f, 0.0f);
                    break;
                case 1:
                    columns[c] = c > 0 ? columns[c - 1] : Wm4::Vector3<float>(1.0f, 0.0f, 0.0f);
                    break;
                case 2:
                    columns[c] = c > 0 ? -columns[c - 1] : Wm4::Vector3<float>(0.0f, 1.0f, 0.0f);
                    break;
                case 3:
                    columns[c] = c > 0 ? columns[0] * niceFloat() : niceVector();
                    break;
                default:
                    columns[c] = anyVector();
                    break;
                }
            }
            return Wm4::Matrix3<float>(columns[0], columns[1], columns[2], true);
        }
        case 4: {
            // Close to the identity: around the 1e-6 below which the library calls it one.
            static constexpr float csTiny[] = {0.0f, 1e-6f, -1e-6f, 5e-7f, 9.9e-7f, 1e-7f, 2e-6f};
            Wm4::Matrix3<float> m(false);
            for (int i = 0; i < 3; ++i) {
                const int row = integer<int>(0, 2);
                const int col = integer<int>(0, 2);
                m(row, col) +=
                    csTiny[integer<std::size_t>(0, sizeof csTiny / sizeof csTiny[0] - 1)];
            }
            return m;
        }
        default: {
            float entries[9];
            for (float& entry : entries) {
                entry = anyFloat();
            }
            return Wm4::Matrix3<float>(entries, true);
        }
        }
    }

    // A transformation built by a few of its own setters, as an application would build one.
    mxGenericTransformation<float> anyTransformation() {
        mxGenericTransformation<float> transformation;
        const int steps = integer<int>(0, 4);
        for (int step = 0; step < steps; ++step) {
            switch (integer<int>(0, 7)) {
            case 0:
                transformation.SetTranslate(anyVector());
                break;
            case 1:
                transformation.SetRotate(anyMatrix());
                break;
            case 2:
                transformation.SetMatrix(anyMatrix());
                break;
            case 3:
                transformation.SetScale(anyVector());
                break;
            case 4:
                transformation.SetUniformScale(anyFloat());
                break;
            case 5:
                transformation.MakeUnitScale();
                break;
            case 6:
                transformation.GetRotate() = anyMatrix();
                break;
            default:
                transformation.MakeIdentity();
                break;
            }
        }
        return transformation;
    }

private:
    FuzzedDataProvider provider;
};

} // namespace mx::fuzz
