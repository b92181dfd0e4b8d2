#include "tessaly/common/convert.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "support/test_support.hpp"

namespace tessaly {
namespace {

TEST(ToInt32Test, AcceptsBlanksSignAndDigits) {
  EXPECT_EQ(ToInt32("12"), 12);
  EXPECT_EQ(ToInt32("  -7 "), -7);
  EXPECT_EQ(ToInt32("+42"), 42);
  EXPECT_EQ(ToInt32("2147483647"), 2147483647);
  EXPECT_EQ(ToInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(ToInt32Test, RoundsFractionHalfToEven) {
  EXPECT_EQ(ToInt32("2.5"), 2);
  EXPECT_EQ(ToInt32("3.5"), 4);
  EXPECT_EQ(ToInt32("2.51"), 3);
  EXPECT_EQ(ToInt32("-1.5"), -2);
  EXPECT_EQ(ToInt32(".4"), 0);
}

TEST(ToInt32Test, TextThatIsNotANumberIsTypeMismatch) {
  EXPECT_TESSALY_ERROR(ToInt32("12abc"), 13, "Tessaly", "Type mismatch");
  EXPECT_TESSALY_ERROR(ToInt32(""), 13, "Tessaly", "Type mismatch");
  EXPECT_TESSALY_ERROR(ToInt32("0x10"), 13, "Tessaly", "Type mismatch");
  EXPECT_TESSALY_ERROR(ToInt32("1e3"), 13, "Tessaly", "Type mismatch");
}

TEST(ToInt32Test, OutOfRangeIsOverflow) {
  EXPECT_TESSALY_ERROR(ToInt32("99999999999"), 6, "Tessaly", "Overflow");
  EXPECT_TESSALY_ERROR(ToInt32("-2147483649"), 6, "Tessaly", "Overflow");
  EXPECT_TESSALY_ERROR(ToInt32("2147483647.5"), 6, "Tessaly", "Overflow");
}

TEST(ToBoolTest, ReadsWordsAndNumbers) {
  EXPECT_TRUE(ToBool("1"));
  EXPECT_TRUE(ToBool("-3"));
  EXPECT_TRUE(ToBool("TrUe"));
  EXPECT_FALSE(ToBool("0"));
  EXPECT_FALSE(ToBool("false"));
  EXPECT_TESSALY_ERROR(ToBool("yes"), 13, "Tessaly", "Type mismatch");
  EXPECT_FALSE(ToBoolOrFalse("yes"));
}

TEST(LeadingNumberTest, StopsAtFirstOtherCharacter) {
  EXPECT_DOUBLE_EQ(LeadingNumber("0,5"), 0.0);
  EXPECT_DOUBLE_EQ(LeadingNumber("  1.25kg"), 1.25);
  EXPECT_DOUBLE_EQ(LeadingNumber("-4e2x"), -400.0);
  EXPECT_DOUBLE_EQ(LeadingNumber("3e"), 3.0);
  EXPECT_DOUBLE_EQ(LeadingNumber("abc"), 0.0);
  EXPECT_DOUBLE_EQ(LeadingNumber("0x1F"), 0.0);
  EXPECT_DOUBLE_EQ(LeadingNumber("NaN"), 0.0);
}

TEST(LeadingNumberTest, SaturatesBeyondTheDoubleRange) {
  EXPECT_EQ(LeadingNumber("1e400"), std::numeric_limits<double>::max());
  EXPECT_EQ(LeadingNumber("-1e400"), -std::numeric_limits<double>::max());
  EXPECT_EQ(LeadingNumber("1e-400"), 0.0);
}

TEST(NumberTextTest, ShortestRoundTripText) {
  EXPECT_EQ(NumberText(0.5), "0.5");
  EXPECT_EQ(NumberText(-40.0), "-40");
  EXPECT_EQ(NumberText(0.001), "0.001");
  EXPECT_EQ(NumberText(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(NumberText(1e16), "1E+16");
  EXPECT_EQ(NumberText(1.5e-7), "1.5E-07");
  EXPECT_EQ(NumberText(0.0), "0");
  EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
  EXPECT_EQ(NumberText(2.5f), "2.5");
  EXPECT_EQ(NumberText(8.3f), "8.3");
}

TEST(SignedNumberTextTest, ReservesTheSignPosition) {
  EXPECT_EQ(SignedNumberText(12.0), " 12");
  EXPECT_EQ(SignedNumberText(-5.0), "-5");
  EXPECT_EQ(SignedNumberText(8.25), " 8.25");
  EXPECT_EQ(SignedNumberText(0.5), " .5");
  EXPECT_EQ(SignedNumberText(-0.25), "-.25");
  EXPECT_EQ(SignedNumberText(8.3f), " 8.3");
  EXPECT_EQ(SignedNumberText(1e16), " 1E+16");
}

TEST(RoundToInt32Test, HalvesGoToEven) {
  EXPECT_EQ(RoundToInt32(2.5), 2);
  EXPECT_EQ(RoundToInt32(3.5), 4);
  EXPECT_EQ(RoundToInt32(-2.5), -2);
  EXPECT_TESSALY_ERROR(RoundToInt32(3e9), 6, "Tessaly", "Overflow");
}

TEST(TrimSpacesTest, TrimsOnlyTheSpaceCharacter) {
  EXPECT_EQ(TrimSpaces("  a b  "), "a b");
  EXPECT_EQ(TrimSpaces("\ta\t"), "\ta\t");
}

TEST(FoldCaseTest, FoldsAsciiAndAccentedLetters) {
  EXPECT_EQ(FoldCase("kSpeed"), "kspeed");
  EXPECT_EQ(FoldCase("\xC3\x89T\xC3\x89"), "\xC3\xA9t\xC3\xA9");  // ÉTÉ -> été
  EXPECT_EQ(FoldCase("\xD0\x94"), "\xD0\xB4");                     // Д -> д
}

}  // namespace
}  // namespace tessaly
