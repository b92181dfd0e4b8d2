// Byte-exact round trips of data items of every shape: load a Datas element, write it back and
// compare the text.
#include <gtest/gtest.h>

#include "data/data_test_util.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

void ExpectRoundTrip(const std::string& items) {
  auto target = TargetItem::Create();
  const std::string text = "<Datas>\n" + items + "</Datas>";
  testing::LoadDatas(target, text);
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(testing::WriteDatas(target), text);
}

TEST(DataRoundTripTest, UnsignedBits) {
  ExpectRoundTrip("\n<Data Name=\"Counter\">\n<Bits count=\"4\">\n<Scaled/>\n</Bits>\n</Data>");
}

TEST(DataRoundTripTest, SignedBits) {
  ExpectRoundTrip("\n<Data Name=\"Torque\">\n<Bits count=\"16\" signed=\"1\">\n<Scaled/>\n</Bits>\n</Data>");
}

TEST(DataRoundTripTest, ScaledWithUnitAndFormat) {
  ExpectRoundTrip(
      "\n<Data Name=\"Coolant\">\n<Comment><![CDATA[Coolant temperature]]></Comment>\n<Mnemonic>CT</Mnemonic>\n"
      "<Description><![CDATA[Measured at the outlet <of the engine>]]></Description>\n"
      "<Bits count=\"10\">\n<Scaled Unit=\"\xC2\xB0" "C\" Step=\"0.25\" Offset=\"-40\" DivideBy=\"3\" Format=\"%5.1f\"/>\n"
      "</Bits>\n</Data>");
}

TEST(DataRoundTripTest, ListWithNotes) {
  ExpectRoundTrip(
      "\n<Data Name=\"Gear\">\n<Bits count=\"3\">\n<List>\n<Item Value=\"0\" Text=\"Neutral\"/>\n"
      "<Item Value=\"1\" Text=\"First\"><![CDATA[Lowest forward gear]]></Item>\n<Item Value=\"-1\" Text=\"Reverse\"/>"
      "</List>\n</Bits>\n</Data>");
}

TEST(DataRoundTripTest, BytesWithAscii) {
  ExpectRoundTrip("\n<Data Name=\"VIN\">\n<Bytes count=\"17\" ascii=\"1\"/>\n</Data>");
}

TEST(DataRoundTripTest, TwelveBitBytes) {
  ExpectRoundTrip("\n<Data Name=\"Raw\">\n<Bytes count=\"1.5\"/>\n</Data>");
}

TEST(DataRoundTripTest, SeveralItemsKeepTheirOrder) {
  ExpectRoundTrip(
      "\n<Data Name=\"Z\">\n<Bits>\n<Scaled/>\n</Bits>\n</Data>\n<Data Name=\"A\">\n<Bytes count=\"2\"/>\n</Data>"
      "\n<Data Name=\"M\">\n<Bits count=\"1\">\n<List/>\n</Bits>\n</Data>");
}

}  // namespace
}  // namespace tessaly
