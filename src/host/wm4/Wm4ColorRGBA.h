// Wm4::ColorRGBA: a colour of four single-precision channels, red, green, blue and alpha
// (1 opaque), each nominally in [0, 1]. Wild Magic 5 has no colour type of its own.
#pragma once

#include "Wm4ColorRGB.h"

namespace Wm4 {

class ColorRGBA {
public:
    // Transparent black.
    constexpr ColorRGBA() : mTuple{0.0f, 0.0f, 0.0f, 0.0f} {}
    constexpr ColorRGBA(float red, float green, float blue, float alpha)
        : mTuple{red, green, blue, alpha} {}
    // An opaque colour (alpha 1) with the channels of rgb.
    constexpr explicit ColorRGBA(const ColorRGB& rgb)
        : mTuple{rgb.R(), rgb.G(), rgb.B(), 1.0f} {}

    constexpr float R() const { return mTuple[0]; }
    constexpr float G() const { return mTuple[1]; }
    constexpr float B() const { return mTuple[2]; }
    constexpr float A() const { return mTuple[3]; }
    float& R() { return mTuple[0]; }
    float& G() { return mTuple[1]; }
    float& B() { return mTuple[2]; }
    float& A() { return mTuple[3]; }

    // Channel i: 0 red, 1 green, 2 blue, 3 alpha.
    constexpr float operator[](int i) const { return mTuple[i]; }
    float& operator[](int i) { return mTuple[i]; }
    operator const float*() const { return mTuple; }

    // Exact, channel by channel.
    constexpr bool operator==(const ColorRGBA& other) const {
        return mTuple[0] == other.mTuple[0] && mTuple[1] == other.mTuple[1] &&
               mTuple[2] == other.mTuple[2] && mTuple[3] == other.mTuple[3];
    }
    constexpr bool operator!=(const ColorRGBA& other) const { return !(*this == other); }

    static const ColorRGBA WHITE; // (1, 1, 1, 1)

private:
    float mTuple[4];
};

inline constexpr ColorRGBA ColorRGBA::WHITE{1.0f, 1.0f, 1.0f, 1.0f};

} // namespace Wm4
