#include "tessaly/data/byte_string.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace tessaly {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(ByteStringTest, NewStringHoldsNoBytes) {
  ByteString bytes;
  EXPECT_EQ(bytes.ToText(), "");
  EXPECT_FALSE(bytes.HasBytes());
  EXPECT_EQ(bytes.Bytes(), Bytes{});
}

TEST(ByteStringTest, TextIsKeptExactly) {
  ByteString bytes;
  bytes.FromText("  21 a0\tFF ");
  EXPECT_EQ(bytes.ToText(), "  21 a0\tFF ");
  bytes.FromText("not hex at all");
  EXPECT_EQ(bytes.ToText(), "not hex at all");
}

TEST(ByteStringTest, HoldsBytesExactlyWhenANonBlankCharacterIsPresent) {
  EXPECT_FALSE(ByteString(" \t\r\n").HasBytes());
  EXPECT_TRUE(ByteString(" 0 ").HasBytes());
  EXPECT_TRUE(ByteString("x").HasBytes());
}

TEST(ByteStringTest, HexPairsSeparatedByBlanksGiveTheBytes) {
  EXPECT_EQ(ByteString("21 A0 FF").Bytes(), (Bytes{0x21, 0xA0, 0xFF}));
  EXPECT_EQ(ByteString(" 10  0a\t7f\n").Bytes(), (Bytes{0x10, 0x0A, 0x7F}));
  EXPECT_EQ(ByteString("   ").Bytes(), Bytes{});
}

TEST(ByteStringTest, OtherTextGivesNoBytes) {
  EXPECT_EQ(ByteString("21A0").Bytes(), std::nullopt);
  EXPECT_EQ(ByteString("2 1").Bytes(), std::nullopt);
  EXPECT_EQ(ByteString("21 G0").Bytes(), std::nullopt);
  EXPECT_EQ(ByteString("0x21").Bytes(), std::nullopt);
  EXPECT_EQ(ByteString("21,A0").Bytes(), std::nullopt);
  EXPECT_EQ(ByteString("21 A").Bytes(), std::nullopt);
}

TEST(ByteStringTest, SetBytesWritesUpperCasePairs) {
  ByteString bytes;
  bytes.SetBytes({0x01, 0xab, 0x00});
  EXPECT_EQ(bytes.ToText(), "01 AB 00");
  EXPECT_EQ(bytes.Bytes(), (Bytes{0x01, 0xAB, 0x00}));
  bytes.SetBytes({});
  EXPECT_EQ(bytes.ToText(), "");
  EXPECT_FALSE(bytes.HasBytes());
}

}  // namespace
}  // namespace tessaly
