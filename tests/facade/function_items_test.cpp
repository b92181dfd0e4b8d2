#include "tessaly/facade/function_item.hpp"

#include <gtest/gtest.h>

#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::NodeText;
using testing::ParseText;

std::string Write(const FunctionItems& items) {
  pugi::xml_document doc;
  pugi::xml_node table = doc.append_child("Functions");
  items.createXMLnode(doc, table);
  return NodeText(table);
}

TEST(FunctionItemsTest, ItemAddressReturnsTheFirstOfTwoRowsWithTheSameAddress) {
  FunctionItems table;
  auto first = table.Add(122, "Injection");
  table.Add(122, "Other");
  EXPECT_EQ(table.ItemAddress(122), first);
  EXPECT_EQ(table.ItemAddress(5), nullptr);
}

TEST(FunctionItemsTest, ItemNameIsExactAndReturnsTheFirst) {
  FunctionItems table;
  auto first = table.Add(1, "ABS");
  table.Add(2, "ABS");
  EXPECT_EQ(table.ItemName("ABS"), first);
  EXPECT_EQ(table.ItemName("abs"), nullptr);
}

TEST(FunctionItemsTest, RowWithOnlyReceiveIdWritesOnlyReceiveId) {
  FunctionItems table;
  table.Add(122, "Injection")->set_CanRId(1792);
  EXPECT_EQ(Write(table),
            "<Functions>\n<Function Name=\"Injection\" Address=\"122\">\n<ReceiveId>\n<CANId Value=\"1792\"/>\n"
            "</ReceiveId>\n</Function>\n</Functions>");
}

TEST(FunctionItemsTest, RowWithOnlySendIdGetsNoClosingLineFeed) {
  FunctionItems table;
  table.Add(7, "Gate")->set_CanXId(2016);
  EXPECT_EQ(Write(table),
            "<Functions>\n<Function Name=\"Gate\" Address=\"7\">\n<SendId>\n<CANId Value=\"2016\"/>\n</SendId>"
            "</Function>\n</Functions>");
}

TEST(FunctionItemsTest, ExtendedIdentifierRoundTrips) {
  pugi::xml_document doc;
  ParseText(doc,
            "<F>\n<Function Name=\"Gate\" Address=\"7\">\n<SendId>\n<CANId Value=\"1234\" Extended=\"1\"/>\n</SendId>"
            "\n<ReceiveId>\n<CANId Value=\"2047\"/>\n</ReceiveId>\n</Function>\n</F>");
  FunctionItems table;
  table.loadXml(doc, doc.child("F"));
  ASSERT_EQ(table.Count(), 1);
  EXPECT_EQ(table.Item(1)->CanXId(), static_cast<std::int32_t>(0x80000000u | 1234u));
  EXPECT_EQ(table.Item(1)->CanRId(), 2047);
  EXPECT_EQ(Write(table),
            "<Functions>\n<Function Name=\"Gate\" Address=\"7\">\n<SendId>\n<CANId Value=\"1234\" Extended=\"1\"/>\n"
            "</SendId>\n<ReceiveId>\n<CANId Value=\"2047\"/>\n</ReceiveId>\n</Function>\n</Functions>");
}

TEST(FunctionItemsTest, RowWithoutNameLoadsNamelessWithAddressZero) {
  pugi::xml_document doc;
  ParseText(doc, "<F><Function Address=\"122\"/><Function Name=\"B\"/></F>");
  FunctionItems table;
  table.loadXml(doc, doc.child("F"));
  ASSERT_EQ(table.Count(), 2);
  EXPECT_EQ(table.Item(1)->functionName(), "");
  EXPECT_EQ(table.Item(1)->Address(), 0);
  EXPECT_EQ(table.Item(2)->functionName(), "B");
  EXPECT_EQ(table.Item(2)->Address(), 0);
  EXPECT_EQ(Err().Number(), 0);
}

TEST(FunctionItemsTest, NegativeValueWithExtendedStaysAsRead) {
  pugi::xml_document doc;
  ParseText(doc, "<F><Function Name=\"A\" Address=\"1\"><SendId><CANId Value=\"-5\" Extended=\"1\"/></SendId></Function></F>");
  FunctionItems table;
  table.loadXml(doc, doc.child("F"));
  EXPECT_EQ(table.Item(1)->CanXId(), -5);
}

TEST(FunctionItemsTest, AddDataWithKeyIsReachableByKey) {
  FunctionItems table;
  auto row = std::make_shared<FunctionItem>();
  row->set_functionName("Airbag");
  table.AddData(row, "kAirbag");
  table.AddData(std::make_shared<FunctionItem>());
  EXPECT_EQ(table.Item("KAIRBAG"), row);
  EXPECT_EQ(table.Count(), 2);
}

TEST(FunctionItemsTest, EmptyTableWritesOneLineFeed) {
  FunctionItems table;
  EXPECT_EQ(Write(table), "<Functions>\n</Functions>");
}

}  // namespace
}  // namespace tessaly
