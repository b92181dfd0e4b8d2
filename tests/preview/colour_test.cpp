#include "preview/colour.hpp"

#include <gtest/gtest.h>

namespace tessaly::preview {
namespace {

TEST(PreviewColourTest, RedIsTheLowByte) {
  EXPECT_EQ(DecodeColour(255), (Rgb{255, 0, 0}));
  EXPECT_EQ(CssColour(255), "#ff0000");
}

TEST(PreviewColourTest, GreenIsTheMiddleByte) {
  EXPECT_EQ(DecodeColour(65280), (Rgb{0, 255, 0}));
  EXPECT_EQ(CssColour(65280), "#00ff00");
}

TEST(PreviewColourTest, BlueIsTheHighByte) {
  EXPECT_EQ(DecodeColour(16711680), (Rgb{0, 0, 255}));
  EXPECT_EQ(CssColour(16711680), "#0000ff");
}

TEST(PreviewColourTest, MixedColourReversesTheByteOrderForCss) {
  // 0x00123456: blue 0x12, green 0x34, red 0x56.
  EXPECT_EQ(DecodeColour(0x00123456), (Rgb{0x56, 0x34, 0x12}));
  EXPECT_EQ(CssColour(0x00123456), "#563412");
  EXPECT_EQ(CssColour(16777215), "#ffffff");
  EXPECT_EQ(CssColour(12632256), "#c0c0c0");
  EXPECT_EQ(CssColour(8388608), "#000080");
}

TEST(PreviewColourTest, TopByteOfAnOrdinaryColourIsIgnored) {
  EXPECT_FALSE(IsSystemColour(0x7F0000FF));
  EXPECT_EQ(CssColour(0x7F0000FF), "#ff0000");
}

TEST(PreviewColourTest, SystemColoursComeFromTheClassicPalette) {
  EXPECT_TRUE(IsSystemColour(-2147483633));  // 0x8000000F, button face
  EXPECT_EQ(CssColour(-2147483633), "#d4d0c8");
  EXPECT_EQ(CssColour(static_cast<std::int32_t>(0x80000005U)), "#ffffff");  // window background
  EXPECT_EQ(CssColour(static_cast<std::int32_t>(0x80000008U)), "#000000");  // window text
}

TEST(PreviewColourTest, SystemColourOutsideThePaletteIsBlack) {
  EXPECT_EQ(DecodeColour(static_cast<std::int32_t>(0x80000063U)), (Rgb{0, 0, 0}));
  EXPECT_EQ(DecodeColour(-1), (Rgb{0, 0, 0}));
}

TEST(PreviewColourTest, LabelGivesHexAndTheStoredValue) {
  EXPECT_EQ(ColourLabel(255), "#ff0000 (255)");
  EXPECT_EQ(ColourLabel(-2147483633), "system 15 #d4d0c8 (-2147483633)");
}

}  // namespace
}  // namespace tessaly::preview
