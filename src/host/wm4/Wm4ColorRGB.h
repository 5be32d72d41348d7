// Wm4::ColorRGB: a colour of three single-precision channels, red, green, blue, each
// nominally in [0, 1]. Wild Magic 5 has no colour type of its own, so this one is ours.
#pragma once

namespace Wm4 {

class ColorRGB {
public:
    // Black.
    constexpr ColorRGB() : mTuple{0.0f, 0.0f, 0.0f} {}
    constexpr ColorRGB(float red, float green, float blue) : mTuple{red, green, blue} {}

    constexpr float R() const { return mTuple[0]; }
    constexpr float G() const { return mTuple[1]; }
    constexpr float B() const { return mTuple[2]; }
    float& R() { return mTuple[0]; }
    float& G() { return mTuple[1]; }
    float& B() { return mTuple[2]; }

    // Channel i: 0 red, 1 green, 2 blue.
    constexpr float operator[](int i) const { return mTuple[i]; }
    float& operator[](int i) { return mTuple[i]; }
    operator const float*() const { return mTuple; }

    // Exact, channel by channel.
    constexpr bool operator==(const ColorRGB& other) const {
        return mTuple[0] == other.mTuple[0] && mTuple[1] == other.mTuple[1] &&
               mTuple[2] == other.mTuple[2];
    }
    constexpr bool operator!=(const ColorRGB& other) const { return !(*this == other); }

    static const ColorRGB BLACK; // (0, 0, 0)
    static const ColorRGB WHITE; // (1, 1, 1)

private:
    float mTuple[3];
};

inline constexpr ColorRGB ColorRGB::BLACK{0.0f, 0.0f, 0.0f};
inline constexpr ColorRGB ColorRGB::WHITE{1.0f, 1.0f, 1.0f};

} // namespace Wm4
