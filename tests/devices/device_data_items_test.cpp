#include "tessaly/devices/device_data_items.hpp"

#include <gtest/gtest.h>

#include "devices/devices_fixture.hpp"

namespace tessaly {
namespace {

using testing::DevicesFixture;
using testing::NodeText;
using testing::ParseText;

constexpr const char* kDuplicate = "Duplicate Data, a data can be used only one time in one device";

std::shared_ptr<DeviceDataItem> Link(const std::string& name, bool flag = false) {
  auto link = std::make_shared<DeviceDataItem>();
  link->set_dataName(name);
  link->set_FlagPanne(flag);
  return link;
}

TEST(DeviceDataItemsTest, NewLinkHasDefaults) {
  DeviceDataItem link;
  EXPECT_EQ(link.dataName(), "");
  EXPECT_FALSE(link.FlagPanne());
  EXPECT_EQ(link.parent(), nullptr);
}

TEST(DeviceDataItemsTest, AddDataAppendsWithoutKeyAndReturnsTheLink) {
  DeviceDataItems links;
  auto speed = Link("Speed");
  EXPECT_EQ(links.AddData(speed), speed);
  EXPECT_EQ(links.Count(), 1);
  EXPECT_EQ(links.Item(1), speed);
  EXPECT_TESSALY_ERROR(links.Item("Speed"), 5, "Tessaly", "Invalid procedure call or argument");
  EXPECT_TESSALY_ERROR(links.Item("kSpeed"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST(DeviceDataItemsTest, AddDataRefusesANameAlreadyHeld) {
  DeviceDataItems links;
  links.AddData(Link("Speed"));
  EXPECT_TESSALY_ERROR(links.AddData(Link("Speed", true)), 1, "DeviceDataItems.AddData", kDuplicate);
  ASSERT_EQ(links.Count(), 1);
  EXPECT_FALSE(links.Item(1)->FlagPanne());
}

TEST(DeviceDataItemsTest, AddCreatesALinkWithoutParentAndRefusesDuplicates) {
  DeviceDataItems links;
  auto added = links.Add("Pressure");
  EXPECT_EQ(added->dataName(), "Pressure");
  EXPECT_EQ(added->parent(), nullptr);
  EXPECT_TESSALY_ERROR(links.Add("Pressure"), 1, "DeviceDataItems.AddData", kDuplicate);
  EXPECT_EQ(links.Count(), 1);
}

TEST(DeviceDataItemsTest, NamesDifferingOnlyInLetterCaseAreBothKept) {
  DeviceDataItems links;
  links.Add("Speed");
  links.Add("SPEED");
  EXPECT_EQ(links.Count(), 2);
  EXPECT_EQ(links.ItemName("SPEED"), links.Item(2));
  EXPECT_EQ(links.ItemName("speed"), nullptr);
}

TEST(DeviceDataItemsTest, ItemNameReturnsTheFirstExactMatch) {
  DeviceDataItems links;
  auto first = links.Add("A");
  links.Add("B");
  EXPECT_EQ(links.ItemName("A"), first);
  EXPECT_EQ(links.ItemName("C"), nullptr);
}

TEST(DeviceDataItemsTest, DeleteOfAnotherLinkWithTheSameNameRemovesNothing) {
  DeviceDataItems links;
  auto held = links.Add("Speed");
  links.Delete(Link("Speed"));
  ASSERT_EQ(links.Count(), 1);
  EXPECT_EQ(links.Item(1), held);
}

TEST(DeviceDataItemsTest, DeleteClearsAndRemovesTheHeldLink) {
  auto device = std::make_shared<OrganeItem>();
  DeviceDataItems links;
  auto a = links.Add("A");
  auto b = links.Add("B");
  a->set_parent(device);
  links.Delete(a);
  ASSERT_EQ(links.Count(), 1);
  EXPECT_EQ(links.Item(1), b);
  EXPECT_EQ(a->parent(), nullptr);
}

TEST(DeviceDataItemsTest, ClearClearsEveryLinkAndEmpties) {
  auto device = std::make_shared<OrganeItem>();
  DeviceDataItems links;
  links.clear();
  EXPECT_EQ(links.Count(), 0);
  auto a = links.Add("A");
  auto b = links.Add("B");
  a->set_parent(device);
  b->set_parent(device);
  links.clear();
  EXPECT_EQ(links.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(b->parent(), nullptr);
}

TEST(DeviceDataItemsTest, FailureFlagIsWrittenAsOneOrZeroAfterTheName) {
  pugi::xml_document doc;
  pugi::xml_node flagged = doc.append_child("DeviceData");
  Link("Speed", true)->createXMLnode(doc, flagged);
  EXPECT_EQ(NodeText(flagged), "<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>");
  pugi::xml_node plain = doc.append_child("DeviceData");
  Link("Rpm", false)->createXMLnode(doc, plain);
  EXPECT_EQ(NodeText(plain), "<DeviceData Name=\"Rpm\" FailureFlag=\"0\"/>");
}

TEST(DeviceDataItemsTest, CollectionWritesOneElementPerLinkWithoutWhitespace) {
  DeviceDataItems links;
  links.AddData(Link("A", true));
  links.AddData(Link("B"));
  pugi::xml_document doc;
  pugi::xml_node parent = doc.append_child("Device");
  links.createXMLnode(doc, parent);
  EXPECT_EQ(NodeText(parent),
            "<Device><DeviceData Name=\"A\" FailureFlag=\"1\"/><DeviceData Name=\"B\" FailureFlag=\"0\"/></Device>");
}

TEST(DeviceDataItemsTest, EmptyCollectionWritesNothing) {
  DeviceDataItems links;
  pugi::xml_document doc;
  pugi::xml_node parent = doc.append_child("Device");
  links.createXMLnode(doc, parent);
  EXPECT_EQ(NodeText(parent), "<Device/>");
}

TEST(DeviceDataItemsTest, LinkReadsNameAndFailureFlag) {
  pugi::xml_document doc;
  ParseText(doc,
            "<d><DeviceData Name=\"A\" FailureFlag=\"1\"/><DeviceData Name=\"B\" FailureFlag=\"0\"/>"
            "<DeviceData Name=\"C\" FailureFlag=\"true\"/><DeviceData Name=\"D\"/></d>");
  std::vector<bool> flags;
  for (pugi::xml_node node : doc.child("d").children()) {
    DeviceDataItem link;
    link.set_FlagPanne(true);
    link.loadXml(doc, node);
    EXPECT_FALSE(Err().Pending());
    flags.push_back(link.FlagPanne());
  }
  EXPECT_EQ(flags, (std::vector<bool>{true, false, true, false}));
}

TEST(DeviceDataItemsTest, LinkWithoutNameLeavesErrorOneWithThePlatformText) {
  pugi::xml_document doc;
  ParseText(doc, "<DeviceData FailureFlag=\"1\"/>");
  DeviceDataItem link;
  link.loadXml(doc, doc.child("DeviceData"));
  EXPECT_PENDING_ERROR(1, "Tessaly", "Object variable or With block variable not set");
  EXPECT_FALSE(link.FlagPanne());
  Err().Clear();
}

TEST(DeviceDataItemsTest, LinkWithANonBooleanFailureFlagLeavesTheConversionError) {
  pugi::xml_document doc;
  ParseText(doc, "<DeviceData Name=\"A\" FailureFlag=\"yes\"/>");
  DeviceDataItem link;
  link.loadXml(doc, doc.child("DeviceData"));
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(link.dataName(), "A");
  Err().Clear();
}

TEST(DeviceDataItemsTest, LoadingTwoElementsOfTheSameNameKeepsOneLinkSilently) {
  pugi::xml_document doc;
  ParseText(doc,
            "<Device Name=\"Pump\"><DeviceData Name=\"A\" FailureFlag=\"1\"/>"
            "<DeviceData Name=\"A\" FailureFlag=\"0\"/><DeviceData Name=\"B\" FailureFlag=\"0\"/></Device>");
  auto device = std::make_shared<OrganeItem>();
  DeviceDataItems links;
  links.loadXml(doc, doc.child("Device"), device);
  EXPECT_FALSE(Err().Pending());
  ASSERT_EQ(links.Count(), 2);
  EXPECT_EQ(links.Item(1)->dataName(), "A");
  EXPECT_TRUE(links.Item(1)->FlagPanne());
  EXPECT_EQ(links.Item(2)->dataName(), "B");
  EXPECT_EQ(links.Item(1)->parent(), device);
}

TEST(DeviceDataItemsTest, LoadingDropsLinksThatFailAndKeepsLaterSiblings) {
  pugi::xml_document doc;
  ParseText(doc,
            "<Device><DeviceData FailureFlag=\"1\"/><DeviceData Name=\"X\" FailureFlag=\"maybe\"/>"
            "<DeviceData Name=\"B\" FailureFlag=\"1\"/></Device>");
  DeviceDataItems links;
  links.loadXml(doc, doc.child("Device"), nullptr);
  EXPECT_FALSE(Err().Pending());
  ASSERT_EQ(links.Count(), 1);
  EXPECT_EQ(links.Item(1)->dataName(), "B");
}

TEST(DeviceDataItemsTest, LoadingReadsOnlyDeviceDataChildren) {
  pugi::xml_document doc;
  ParseText(doc, "<Device>\n<Mnemonic>M</Mnemonic>\n<DeviceData Name=\"A\" FailureFlag=\"0\"/><Test Type=\"1\"/></Device>");
  DeviceDataItems links;
  links.loadXml(doc, doc.child("Device"), nullptr);
  ASSERT_EQ(links.Count(), 1);
  EXPECT_EQ(links.Item(1)->dataName(), "A");
}

class DeviceDataItemsLinkTest : public DevicesFixture {};

TEST_F(DeviceDataItemsLinkTest, DataIsTheEcuDataOfThatName) {
  auto speed = AddData("Speed");
  auto device = AddDevice("Pump");
  auto link = std::make_shared<DeviceDataItem>();
  link->set_parent(device);
  link->set_dataName("Speed");
  EXPECT_EQ(link->data(), speed);
}

TEST_F(DeviceDataItemsLinkTest, DataOfANameNoDataItemHasIsNull) {
  AddData("Speed");
  auto device = AddDevice("Pump");
  auto link = std::make_shared<DeviceDataItem>();
  link->set_parent(device);
  link->set_dataName("Torque");
  EXPECT_EQ(link->data(), nullptr);
}

TEST_F(DeviceDataItemsLinkTest, DataFollowsTheNameOnEachAccess) {
  auto speed = AddData("Speed");
  auto rpm = AddData("Rpm");
  auto device = AddDevice("Pump");
  auto link = std::make_shared<DeviceDataItem>();
  link->set_parent(device);
  link->set_dataName("Speed");
  EXPECT_EQ(link->data(), speed);
  link->set_dataName("Rpm");
  EXPECT_EQ(link->data(), rpm);
}

TEST_F(DeviceDataItemsLinkTest, DataWithoutDeviceOrWithoutEcuFails) {
  AddData("Speed");
  auto link = std::make_shared<DeviceDataItem>();
  link->set_dataName("Speed");
  EXPECT_TESSALY_ERROR(link->data(), 91, "Tessaly", "Object variable or With block variable not set");
  auto loose = std::make_shared<OrganeItem>();
  link->set_parent(loose);
  EXPECT_TESSALY_ERROR(link->data(), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST_F(DeviceDataItemsLinkTest, SettingDataTakesItsNameAndNullChangesNothing) {
  auto rpm = AddData("Rpm");
  DeviceDataItem link;
  link.set_dataName("Speed");
  link.set_data(rpm);
  EXPECT_EQ(link.dataName(), "Rpm");
  link.set_data(nullptr);
  EXPECT_EQ(link.dataName(), "Rpm");
}

}  // namespace
}  // namespace tessaly
