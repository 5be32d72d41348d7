#include "wm4/Wm4ColorRGB.h"

#include <gtest/gtest.h>

namespace {

using Wm4::ColorRGB;

TEST(Wm4ColorRGBTest, BlackIsAllZeroAndWhiteAllOne) {
    EXPECT_EQ(ColorRGB::BLACK.R(), 0.0f);
    EXPECT_EQ(ColorRGB::BLACK.G(), 0.0f);
    EXPECT_EQ(ColorRGB::BLACK.B(), 0.0f);
    EXPECT_EQ(ColorRGB::WHITE.R(), 1.0f);
    EXPECT_EQ(ColorRGB::WHITE.G(), 1.0f);
    EXPECT_EQ(ColorRGB::WHITE.B(), 1.0f);
}

TEST(Wm4ColorRGBTest, DefaultColourIsBlack) { EXPECT_EQ(ColorRGB(), ColorRGB::BLACK); }

TEST(Wm4ColorRGBTest, AccessorsAndIndicesReadTheChannelsInRedGreenBlueOrder) {
    const ColorRGB colour(0.25f, 0.5f, 0.75f);
    EXPECT_EQ(colour.R(), 0.25f);
    EXPECT_EQ(colour.G(), 0.5f);
    EXPECT_EQ(colour.B(), 0.75f);
    EXPECT_EQ(colour[0], 0.25f);
    EXPECT_EQ(colour[1], 0.5f);
    EXPECT_EQ(colour[2], 0.75f);
    const float* channels = colour;
    EXPECT_EQ(channels[0], 0.25f);
    EXPECT_EQ(channels[1], 0.5f);
    EXPECT_EQ(channels[2], 0.75f);
}

TEST(Wm4ColorRGBTest, MutableAccessorsWriteTheChannels) {
    ColorRGB colour;
    colour.R() = 0.1f;
    colour.G() = 0.2f;
    colour[2] = 0.3f;
    EXPECT_EQ(colour, ColorRGB(0.1f, 0.2f, 0.3f));
    colour[0] = 0.4f;
    EXPECT_EQ(colour.R(), 0.4f);
}

TEST(Wm4ColorRGBTest, EqualityComparesEveryChannelExactly) {
    const ColorRGB colour(0.25f, 0.5f, 0.75f);
    EXPECT_TRUE(colour == ColorRGB(0.25f, 0.5f, 0.75f));
    EXPECT_FALSE(colour != ColorRGB(0.25f, 0.5f, 0.75f));
    EXPECT_TRUE(colour != ColorRGB(0.3f, 0.5f, 0.75f));
    EXPECT_TRUE(colour != ColorRGB(0.25f, 0.6f, 0.75f));
    EXPECT_TRUE(colour != ColorRGB(0.25f, 0.5f, 0.8f));
    EXPECT_FALSE(ColorRGB::BLACK == ColorRGB::WHITE);
}

TEST(Wm4ColorRGBTest, ConstantsConstructionAccessAndComparisonWorkInConstantExpressions) {
    constexpr ColorRGB colour(0.25f, 0.5f, 0.75f);
    constexpr float red = colour.R();
    constexpr float blue = colour[2];
    constexpr float whiteGreen = ColorRGB::WHITE.G();
    constexpr bool blackIsDefault = ColorRGB::BLACK == ColorRGB();
    constexpr bool whiteDiffersFromBlack = ColorRGB::WHITE != ColorRGB::BLACK;
    EXPECT_EQ(red, 0.25f);
    EXPECT_EQ(blue, 0.75f);
    EXPECT_EQ(whiteGreen, 1.0f);
    EXPECT_TRUE(blackIsDefault);
    EXPECT_TRUE(whiteDiffersFromBlack);
}

} // namespace
