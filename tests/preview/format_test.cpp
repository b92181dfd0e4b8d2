#include "preview/format.hpp"

#include <gtest/gtest.h>

namespace tessaly::preview {
namespace {

TEST(PreviewFormatTest, NeutralScalingIsTheRawValue) { EXPECT_EQ(ScalingFormula(1, 0, 1), "x"); }

TEST(PreviewFormatTest, ScalingFormulaLeavesOutNeutralTerms) {
  EXPECT_EQ(ScalingFormula(0.25, 0, 1), "x \xC3\x97 0.25");
  EXPECT_EQ(ScalingFormula(1, -40, 1), "x \xE2\x88\x92 40");
  EXPECT_EQ(ScalingFormula(1, 3, 1), "x + 3");
  EXPECT_EQ(ScalingFormula(1, 0, 10), "x \xC3\xB7 10");
}

TEST(PreviewFormatTest, ScalingFormulaBracketsBeforeDividing) {
  EXPECT_EQ(ScalingFormula(0.5, -40, 1), "x \xC3\x97 0.5 \xE2\x88\x92 40");
  EXPECT_EQ(ScalingFormula(1, 3, 10), "(x + 3) \xC3\xB7 10");
  EXPECT_EQ(ScalingFormula(2, 0, 4), "(x \xC3\x97 2) \xC3\xB7 4");
}

TEST(PreviewFormatTest, SizeOfNumericDataIsInBits) {
  EXPECT_EQ(SizeText(true, 16), "16 bits");
  EXPECT_EQ(SizeText(true, 1), "1 bit");
}

TEST(PreviewFormatTest, SizeOfByteStringsIsInBytes) {
  EXPECT_EQ(SizeText(false, 24), "3 bytes");
  EXPECT_EQ(SizeText(false, 8), "1 byte");
  EXPECT_EQ(SizeText(false, 20), "2.5 bytes (20 bits)");
}

TEST(PreviewFormatTest, HexTextPadsToTheDigitsAsked) {
  EXPECT_EQ(HexText(0xD0, 2), "0xD0");
  EXPECT_EQ(HexText(0x7E0, 4), "0x07E0");
  EXPECT_EQ(HexText(0, 2), "0x00");
  EXPECT_EQ(HexText(0x18DA10F1, 2), "0x18DA10F1");
  EXPECT_EQ(DecimalAndHex(122), "122 (0x7A)");
}

TEST(PreviewFormatTest, CanIdentifiers) {
  EXPECT_EQ(CanIdText(-1), "none");
  EXPECT_EQ(CanIdText(0x7E0), "0x7E0");
  EXPECT_EQ(CanIdText(-2147481601), "0x000007FF (extended)");  // 2047 with bit 31
  EXPECT_EQ(CanIdText(static_cast<std::int32_t>(0x98DA10F1U)), "0x18DA10F1 (extended)");
}

}  // namespace
}  // namespace tessaly::preview
