#include "wm4/Wm4ColorRGBA.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Wm4::ColorRGB;
using Wm4::ColorRGBA;

TEST(Wm4ColorRGBATest, WhiteIsOpaqueWhite) {
    EXPECT_EQ(ColorRGBA::WHITE.R(), 1.0f);
    EXPECT_EQ(ColorRGBA::WHITE.G(), 1.0f);
    EXPECT_EQ(ColorRGBA::WHITE.B(), 1.0f);
    EXPECT_EQ(ColorRGBA::WHITE.A(), 1.0f);
}

TEST(Wm4ColorRGBATest, DefaultColourIsTransparentBlack) {
    EXPECT_EQ(ColorRGBA(), ColorRGBA(0.0f, 0.0f, 0.0f, 0.0f));
}

TEST(Wm4ColorRGBATest, ConstructionFromRgbCopiesTheChannelsAndGivesAlphaOne) {
    const ColorRGBA colour(ColorRGB(0.25f, 0.5f, 0.75f));
    EXPECT_EQ(colour.R(), 0.25f);
    EXPECT_EQ(colour.G(), 0.5f);
    EXPECT_EQ(colour.B(), 0.75f);
    EXPECT_EQ(colour.A(), 1.0f);
    EXPECT_EQ(ColorRGBA(ColorRGB::WHITE), ColorRGBA::WHITE);
    EXPECT_EQ(ColorRGBA(ColorRGB::BLACK), ColorRGBA(0.0f, 0.0f, 0.0f, 1.0f));
}

TEST(Wm4ColorRGBATest, RgbDoesNotConvertToRgbaImplicitly) {
    EXPECT_FALSE((std::is_convertible<ColorRGB, ColorRGBA>::value));
    EXPECT_TRUE((std::is_constructible<ColorRGBA, ColorRGB>::value));
}

TEST(Wm4ColorRGBATest, AccessorsAndIndicesReadAndWriteTheChannelsWithAlphaLast) {
    ColorRGBA colour(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(colour[0], 0.1f);
    EXPECT_EQ(colour[1], 0.2f);
    EXPECT_EQ(colour[2], 0.3f);
    EXPECT_EQ(colour[3], 0.4f);
    const float* channels = colour;
    EXPECT_EQ(channels[3], 0.4f);
    colour.A() = 0.5f;
    colour[0] = 0.6f;
    EXPECT_EQ(colour, ColorRGBA(0.6f, 0.2f, 0.3f, 0.5f));
}

TEST(Wm4ColorRGBATest, EqualityComparesEveryChannelIncludingAlpha) {
    const ColorRGBA colour(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_TRUE(colour == ColorRGBA(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_FALSE(colour != ColorRGBA(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_TRUE(colour != ColorRGBA(0.9f, 0.2f, 0.3f, 0.4f));
    EXPECT_TRUE(colour != ColorRGBA(0.1f, 0.9f, 0.3f, 0.4f));
    EXPECT_TRUE(colour != ColorRGBA(0.1f, 0.2f, 0.9f, 0.4f));
    EXPECT_TRUE(colour != ColorRGBA(0.1f, 0.2f, 0.3f, 0.9f));
    EXPECT_FALSE(ColorRGBA(1.0f, 1.0f, 1.0f, 0.0f) == ColorRGBA::WHITE);
}

TEST(Wm4ColorRGBATest, ConstructionAccessAndComparisonWorkInConstantExpressions) {
    constexpr ColorRGBA opaque(ColorRGB(0.25f, 0.5f, 0.75f));
    constexpr float alpha = opaque.A();
    constexpr float whiteAlpha = ColorRGBA::WHITE[3];
    constexpr bool whiteFromRgb = ColorRGBA(ColorRGB::WHITE) == ColorRGBA::WHITE;
    EXPECT_EQ(alpha, 1.0f);
    EXPECT_EQ(whiteAlpha, 1.0f);
    EXPECT_TRUE(whiteFromRgb);
}

} // namespace
