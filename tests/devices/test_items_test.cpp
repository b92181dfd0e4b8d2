#include "tessaly/devices/test_items.hpp"

#include <gtest/gtest.h>

#include "devices/devices_fixture.hpp"
#include "tessaly/data/data_position_items.hpp"

namespace tessaly {
namespace {

using testing::DevicesFixture;
using testing::NodeText;
using testing::ParseText;
using testing::Warning;

constexpr const char* kDuplicateType = "Duplicate Data, a data can be used only one time in one device";
constexpr const char* kWarningClass = "TestItem.LoadXml";

std::shared_ptr<DataPositionItem> Placement(const std::string& name) {
  auto placement = std::make_shared<DataPositionItem>();
  placement->set_dataName(name);
  return placement;
}

std::string WriteTest(const TestItem& test) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Test");
  test.createXMLnode(doc, node);
  return NodeText(node);
}

std::vector<std::string> Keys(const FlagList& list) {
  std::vector<std::string> keys;
  for (std::int32_t i = 1; i <= list.Count(); ++i) keys.emplace_back(list.KeyAt(i));
  return keys;
}

// --- Properties and writing, without an ECU ---

TEST(TestItemsTest, NewTestHasDefaults) {
  TestItem test;
  EXPECT_EQ(test.testType(), 0);
  EXPECT_EQ(test.Description(), "");
  EXPECT_EQ(test.OBD(), 0);
  EXPECT_EQ(test.Severity(), 0);
  EXPECT_TRUE(test.Autocheck());
  EXPECT_EQ(test.StoredFlag().Count(), 0);
  EXPECT_EQ(test.PresentFlag().Count(), 0);
  EXPECT_EQ(test.parent(), nullptr);
}

TEST(TestItemsTest, TestWithOnlyATypeIsWrittenWithTypeAndOneCrLf) {
  TestItem test;
  test.set_testType(3);
  EXPECT_EQ(WriteTest(test), "<Test Type=\"3\">\r\n</Test>");
}

TEST(TestItemsTest, TestWritesEveryValueInOrderWithCrLfLineBreaks) {
  TestItem test;
  test.set_testType(12);
  test.set_OBD(4660);
  test.set_Severity(2);
  test.set_Autocheck(false);
  test.set_Description("Short circuit");
  test.StoredFlag().Append(Placement("Stored1"), "kStored1");
  test.StoredFlag().Append(Placement("Stored2"), "kStored2");
  test.PresentFlag().Append(Placement("Present"), "kPresent");
  EXPECT_EQ(WriteTest(test),
            "<Test Type=\"12\" OBD=\"4660\" Severity=\"2\" Autocheck=\"0\">\r\n"
            "<Description>Short circuit</Description>\r\n"
            "<StoredFlag>Stored1</StoredFlag>\r\n<StoredFlag>Stored2</StoredFlag>\r\n"
            "<PresentFlag>Present</PresentFlag>\r\n</Test>");
}

TEST(TestItemsTest, AutocheckTrueAndZeroValuesAreNotWritten) {
  TestItem test;
  test.set_testType(0);
  test.set_Autocheck(true);
  test.set_OBD(0);
  test.set_Severity(0);
  EXPECT_EQ(WriteTest(test), "<Test Type=\"0\">\r\n</Test>");
}

TEST(TestItemsTest, FlagIsWrittenWithThePlacementsDataName) {
  TestItem test;
  test.set_testType(1);
  auto placement = Placement("Old");
  test.StoredFlag().Append(placement, "kOld");
  placement->set_dataName("New");
  EXPECT_EQ(WriteTest(test), "<Test Type=\"1\">\r\n<StoredFlag>New</StoredFlag>\r\n</Test>");
}

TEST(TestItemsTest, ObdOfATestOutsideAnEcuIsStoredUnchecked) {
  auto device = std::make_shared<OrganeItem>();
  TestItems tests;
  auto a = tests.Add(1);
  auto b = tests.Add(2);
  a->set_parent(device);
  b->set_parent(device);
  a->set_OBD(77);
  b->set_OBD(77);
  EXPECT_EQ(a->OBD(), 77);
  EXPECT_EQ(b->OBD(), 77);
}

TEST(TestItemsTest, AddDataKeysByTheDecimalTypeAndRefusesARepeatedType) {
  TestItems tests;
  auto three = std::make_shared<TestItem>();
  three->set_testType(3);
  EXPECT_EQ(tests.AddData(three), three);
  EXPECT_EQ(tests.Item("3"), three);
  auto again = std::make_shared<TestItem>();
  again->set_testType(3);
  EXPECT_TESSALY_ERROR(tests.AddData(again), 1, "TestItems.AddData", kDuplicateType);
  EXPECT_TESSALY_ERROR(tests.Add(3), 1, "TestItems.AddData", kDuplicateType);
  EXPECT_EQ(tests.Count(), 1);
}

TEST(TestItemsTest, AddCreatesATestOfThatTypeWithoutParent) {
  TestItems tests;
  auto added = tests.Add(-7);
  EXPECT_EQ(added->testType(), -7);
  EXPECT_EQ(added->parent(), nullptr);
  EXPECT_EQ(tests.Item("-7"), added);
}

TEST(TestItemsTest, ItemTypeFindsByTypeOrGivesNull) {
  TestItems tests;
  auto five = tests.Add(5);
  EXPECT_EQ(tests.ItemType(5), five);
  EXPECT_EQ(tests.ItemType(6), nullptr);
}

TEST(TestItemsTest, ItemObdGivesTheFirstTestWithANonZeroCode) {
  TestItems tests;
  auto a = tests.Add(1);
  auto b = tests.Add(2);
  auto c = tests.Add(3);
  b->set_OBD(300);
  c->set_OBD(300);
  EXPECT_EQ(tests.ItemOBD(300), b);
  EXPECT_EQ(tests.ItemOBD(0), nullptr);
  EXPECT_EQ(tests.ItemOBD(301), nullptr);
  EXPECT_EQ(a->OBD(), 0);
}

TEST(TestItemsTest, GetTestUsingDataLooksAtStoredFlagsOnly) {
  TestItems tests;
  auto a = tests.Add(1);
  auto b = tests.Add(2);
  a->PresentFlag().Append(Placement("Speed"), "kSpeed");
  b->StoredFlag().Append(Placement("Speed"), "kSpeed");
  EXPECT_EQ(tests.GetTestUsingData("Speed"), b);
  EXPECT_EQ(tests.GetTestUsingData("SPEED"), b);
  a->PresentFlag().Append(Placement("Rpm"), "kRpm");
  EXPECT_EQ(tests.GetTestUsingData("Rpm"), nullptr);
}

TEST(TestItemsTest, DeleteFlagRemovesTheEntryFromBothLists) {
  TestItem test;
  test.StoredFlag().Append(Placement("A"), "kA");
  test.StoredFlag().Append(Placement("B"), "kB");
  test.PresentFlag().Append(Placement("A"), "kA");
  test.DeleteFlag("A");
  EXPECT_EQ(Keys(test.StoredFlag()), (std::vector<std::string>{"kB"}));
  EXPECT_EQ(test.PresentFlag().Count(), 0);
  test.DeleteFlag("Unknown");
  EXPECT_EQ(test.StoredFlag().Count(), 1);
}

TEST(TestItemsTest, RenameFlagRekeysInBothListsKeepingThePlace) {
  TestItem test;
  auto a = Placement("A");
  test.StoredFlag().Append(a, "kA");
  test.StoredFlag().Append(Placement("B"), "kB");
  test.PresentFlag().Append(Placement("C"), "kC");
  test.PresentFlag().Append(a, "kA");
  test.RenameFlag("A", "Z");
  EXPECT_EQ(Keys(test.StoredFlag()), (std::vector<std::string>{"kZ", "kB"}));
  EXPECT_EQ(Keys(test.PresentFlag()), (std::vector<std::string>{"kC", "kZ"}));
  EXPECT_EQ(test.StoredFlag().Item(std::string_view("kZ")), a);
  EXPECT_FALSE(test.StoredFlag().ContainsKey("kA"));
}

TEST(TestItemsTest, RenameFlagOfAnUnknownNameChangesNothing) {
  TestItem test;
  test.StoredFlag().Append(Placement("A"), "kA");
  test.RenameFlag("Q", "R");
  EXPECT_EQ(Keys(test.StoredFlag()), (std::vector<std::string>{"kA"}));
}

TEST(TestItemsTest, RenameFlagOntoAnotherEntryIsRefusedWithoutChange) {
  TestItem test;
  test.StoredFlag().Append(Placement("A"), "kA");
  test.PresentFlag().Append(Placement("A"), "kA");
  test.PresentFlag().Append(Placement("B"), "kB");
  EXPECT_TESSALY_ERROR(test.RenameFlag("A", "B"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(Keys(test.StoredFlag()), (std::vector<std::string>{"kA"}));
  EXPECT_EQ(Keys(test.PresentFlag()), (std::vector<std::string>{"kA", "kB"}));
}

TEST(TestItemsTest, RenameFlagToADifferentLetterCaseOfItsOwnName) {
  TestItem test;
  test.StoredFlag().Append(Placement("A"), "kA");
  test.RenameFlag("A", "a");
  EXPECT_EQ(Keys(test.StoredFlag()), (std::vector<std::string>{"ka"}));
}

TEST(TestItemsTest, ClearDropsParentAndEmptiesTheLists) {
  auto device = std::make_shared<OrganeItem>();
  TestItem test;
  test.set_parent(device);
  test.StoredFlag().Append(Placement("A"), "kA");
  test.PresentFlag().Append(Placement("B"), "kB");
  test.clear();
  EXPECT_EQ(test.parent(), nullptr);
  EXPECT_EQ(test.StoredFlag().Count(), 0);
  EXPECT_EQ(test.PresentFlag().Count(), 0);
}

TEST(TestItemsTest, DeleteAndClearOfTheCollection) {
  auto device = std::make_shared<OrganeItem>();
  TestItems tests;
  auto a = tests.Add(1);
  auto b = tests.Add(2);
  a->set_parent(device);
  b->set_parent(device);
  tests.Delete(std::make_shared<TestItem>());
  EXPECT_EQ(tests.Count(), 2);
  tests.Delete(a);
  EXPECT_EQ(tests.Count(), 1);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(tests.ItemType(1), nullptr);
  tests.clear();
  EXPECT_EQ(tests.Count(), 0);
  EXPECT_EQ(b->parent(), nullptr);
}

TEST(TestItemsTest, CollectionPutsCrLfBeforeEachTestAndNothingAfterTheLast) {
  TestItems tests;
  tests.Add(1);
  tests.Add(2)->set_Severity(3);
  pugi::xml_document doc;
  pugi::xml_node device = doc.append_child("Device");
  tests.createXMLnode(doc, device);
  EXPECT_EQ(NodeText(device),
            "<Device>\r\n<Test Type=\"1\">\r\n</Test>\r\n<Test Type=\"2\" Severity=\"3\">\r\n</Test></Device>");
}

TEST(TestItemsTest, EmptyCollectionWritesNothing) {
  TestItems tests;
  pugi::xml_document doc;
  pugi::xml_node device = doc.append_child("Device");
  tests.createXMLnode(doc, device);
  EXPECT_EQ(NodeText(device), "<Device/>");
}

TEST(TestItemsTest, TestWithoutTypeLeavesErrorHundredAndReadsNothingMore) {
  pugi::xml_document doc;
  ParseText(doc, "<Test OBD=\"5\" Severity=\"2\"><Description>D</Description></Test>");
  TestItem test;
  test.loadXml(doc, doc.child("Test"));
  EXPECT_PENDING_ERROR(100, "TestItem.loadXml", "TestItem.loadXml error : Type not found");
  EXPECT_EQ(test.OBD(), 0);
  EXPECT_EQ(test.Severity(), 0);
  EXPECT_EQ(test.Description(), "");
  Err().Clear();
}

TEST(TestItemsTest, TestWithANonNumericTypeLeavesTheConversionError) {
  pugi::xml_document doc;
  ParseText(doc, "<Test Type=\"three\" Severity=\"2\"/>");
  TestItem test;
  test.loadXml(doc, doc.child("Test"));
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(test.Severity(), 0);
  Err().Clear();
}

TEST(TestItemsTest, TestReadsItsValues) {
  pugi::xml_document doc;
  ParseText(doc,
            "<Test Type=\"4\" OBD=\"1234\" Severity=\"2\" Autocheck=\"false\">\r\n"
            "<Description>Open circuit</Description>\r\n</Test>");
  TestItem test;
  test.loadXml(doc, doc.child("Test"));
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(test.testType(), 4);
  EXPECT_EQ(test.OBD(), 1234);
  EXPECT_EQ(test.Severity(), 2);
  EXPECT_FALSE(test.Autocheck());
  EXPECT_EQ(test.Description(), "Open circuit");
}

TEST(TestItemsTest, MissingOptionalValuesTakeTheirDefaults) {
  pugi::xml_document doc;
  ParseText(doc, "<Test Type=\"4\"/>");
  TestItem test;
  test.set_OBD(9);
  test.set_Severity(9);
  test.set_Autocheck(false);
  test.set_Description("old");
  test.loadXml(doc, doc.child("Test"));
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(test.OBD(), 0);
  EXPECT_EQ(test.Severity(), 0);
  EXPECT_TRUE(test.Autocheck());
  EXPECT_EQ(test.Description(), "");
}

TEST(TestItemsTest, AutocheckReadsOneZeroTrueAndFalse) {
  pugi::xml_document doc;
  ParseText(doc,
            "<d><Test Type=\"1\" Autocheck=\"1\"/><Test Type=\"1\" Autocheck=\"0\"/>"
            "<Test Type=\"1\" Autocheck=\"True\"/><Test Type=\"1\" Autocheck=\"false\"/></d>");
  std::vector<bool> read;
  for (pugi::xml_node node : doc.child("d").children()) {
    TestItem test;
    test.loadXml(doc, node);
    EXPECT_FALSE(Err().Pending());
    read.push_back(test.Autocheck());
  }
  EXPECT_EQ(read, (std::vector<bool>{true, false, true, false}));
}

TEST(TestItemsTest, NonNumericSeverityOrObdLeavesTheConversionErrorAndZero) {
  pugi::xml_document doc;
  ParseText(doc, "<d><Test Type=\"1\" Severity=\"high\"/><Test Type=\"2\" OBD=\"P0100\"/></d>");
  TestItem severity;
  severity.loadXml(doc, doc.child("d").first_child());
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(severity.Severity(), 0);
  TestItem obd;
  obd.loadXml(doc, doc.child("d").last_child());
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(obd.OBD(), 0);
  Err().Clear();
}

TEST(TestItemsTest, LoadingTwoTestsOfTheSameTypeAddsOnlyTheFirst) {
  pugi::xml_document doc;
  ParseText(doc, "<Device>\r\n<Test Type=\"2\" Severity=\"1\">\r\n</Test>\r\n<Test Type=\"2\" Severity=\"9\">\r\n</Test></Device>");
  auto device = std::make_shared<OrganeItem>();
  TestItems tests;
  tests.loadXml(doc, doc.child("Device"), device);
  EXPECT_PENDING_ERROR(1, "TestItems.AddData", kDuplicateType);
  ASSERT_EQ(tests.Count(), 1);
  EXPECT_EQ(tests.Item(1)->Severity(), 1);
  EXPECT_EQ(tests.Item(1)->parent(), device);
  Err().Clear();
}

TEST(TestItemsTest, LoadingDropsATestWithoutTypeAndKeepsTheOthersInOrder) {
  pugi::xml_document doc;
  ParseText(doc, "<Device><Test Type=\"1\"/><Test Type=\"2\"/><Test Severity=\"4\"/><Test Type=\"4\"/></Device>");
  TestItems tests;
  tests.loadXml(doc, doc.child("Device"), nullptr);
  ASSERT_EQ(tests.Count(), 3);
  EXPECT_EQ(tests.Item(1)->testType(), 1);
  EXPECT_EQ(tests.Item(2)->testType(), 2);
  EXPECT_EQ(tests.Item(3)->testType(), 4);
  // The error of the dropped test was followed by a test that read without error.
  EXPECT_FALSE(Err().Pending());
}

TEST(TestItemsTest, ErrorOfTheLastDroppedTestStaysPending) {
  pugi::xml_document doc;
  ParseText(doc, "<Device><Test Type=\"1\"/><Test Severity=\"4\"/></Device>");
  TestItems tests;
  tests.loadXml(doc, doc.child("Device"), nullptr);
  EXPECT_EQ(tests.Count(), 1);
  EXPECT_PENDING_ERROR(100, "TestItem.loadXml", "TestItem.loadXml error : Type not found");
  Err().Clear();
}

// --- With an ECU: OBD check and flags resolved through the device's request ---

class TestItemsEcuTest : public DevicesFixture {
 protected:
  // A device whose freeze-frame request "FF" places Speed, Rpm and Temp.
  std::shared_ptr<OrganeItem> DeviceWithRequest(const std::string& name) {
    if (!target->Requests()->ItemName("FF")) AddRequest("FF", {"Speed", "Rpm", "Temp"});
    auto device = AddDevice(name);
    device->set_requestName("FF");
    return device;
  }

  std::shared_ptr<TestItem> LoadTest(const std::shared_ptr<OrganeItem>& device, const std::string& xml) {
    ParseText(input, xml);
    auto test = std::make_shared<TestItem>();
    test->set_parent(device);
    test->loadXml(input, input.child("Test"));
    return test;
  }
};

TEST_F(TestItemsEcuTest, ZeroObdOnTwoTestsOfTheEcuIsAllowed) {
  auto a = AddDevice("A")->Tests()->Add(1);
  auto b = AddDevice("B")->Tests()->Add(1);
  a->set_parent(target->Organes()->ItemName("A"));
  b->set_parent(target->Organes()->ItemName("B"));
  a->set_OBD(5);
  a->set_OBD(0);
  b->set_OBD(0);
  EXPECT_EQ(a->OBD(), 0);
  EXPECT_EQ(b->OBD(), 0);
}

TEST_F(TestItemsEcuTest, SameNonZeroObdOnASecondTestIsRefused) {
  auto deviceA = AddDevice("A");
  auto deviceB = AddDevice("B");
  auto a = deviceA->Tests()->Add(1);
  auto b = deviceB->Tests()->Add(1);
  auto c = deviceA->Tests()->Add(2);
  a->set_parent(deviceA);
  b->set_parent(deviceB);
  c->set_parent(deviceA);
  a->set_OBD(4660);
  b->set_OBD(17);
  EXPECT_TESSALY_ERROR(b->set_OBD(4660), 1, "TestItem.OBD", "Duplicate OBD code");
  EXPECT_EQ(b->OBD(), 17);
  EXPECT_TESSALY_ERROR(c->set_OBD(4660), 1, "TestItem.OBD", "Duplicate OBD code");
  EXPECT_EQ(c->OBD(), 0);
}

TEST_F(TestItemsEcuTest, SettingTheCurrentObdAgainIsNotADuplicate) {
  auto device = AddDevice("A");
  auto a = device->Tests()->Add(1);
  a->set_parent(device);
  a->set_OBD(88);
  a->set_OBD(88);
  EXPECT_EQ(a->OBD(), 88);
}

TEST_F(TestItemsEcuTest, ObdOfATestWhoseDeviceIsNotInAnEcuIsUnchecked) {
  auto held = AddDevice("A");
  auto a = held->Tests()->Add(1);
  a->set_parent(held);
  a->set_OBD(50);
  auto loose = std::make_shared<OrganeItem>();
  auto b = loose->Tests()->Add(1);
  b->set_parent(loose);
  b->set_OBD(50);
  EXPECT_EQ(b->OBD(), 50);
}

TEST_F(TestItemsEcuTest, FlagsAreTheRequestsPlacementsKeyedByName) {
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device,
                       "<Test Type=\"3\">\r\n<StoredFlag>Speed</StoredFlag>\r\n<StoredFlag>Temp</StoredFlag>\r\n"
                       "<PresentFlag>Rpm</PresentFlag>\r\n</Test>");
  EXPECT_FALSE(Err().Pending());
  auto positions = target->Requests()->ItemName("FF")->DataPositions();
  EXPECT_EQ(Keys(test->StoredFlag()), (std::vector<std::string>{"kSpeed", "kTemp"}));
  EXPECT_EQ(test->StoredFlag().Item(1), positions->ItemName("Speed"));
  EXPECT_EQ(test->StoredFlag().Item(2), positions->ItemName("Temp"));
  EXPECT_EQ(Keys(test->PresentFlag()), (std::vector<std::string>{"kRpm"}));
  EXPECT_EQ(test->PresentFlag().Item(1), positions->ItemName("Rpm"));
  EXPECT_TRUE(warnings.empty());
}

TEST_F(TestItemsEcuTest, RepeatedFlagNameIsIgnored) {
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device,
                       "<Test Type=\"3\"><StoredFlag>Speed</StoredFlag><StoredFlag>Speed</StoredFlag></Test>");
  EXPECT_EQ(Keys(test->StoredFlag()), (std::vector<std::string>{"kSpeed"}));
  EXPECT_TRUE(warnings.empty());
}

TEST_F(TestItemsEcuTest, StoredFlagOfUnknownDataGivesOneWarningAndAnEmptyList) {
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device, "<Test Type=\"3\">\r\n<StoredFlag>Pressure</StoredFlag>\r\n</Test>");
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(test->StoredFlag().Count(), 0);
  EXPECT_EQ(warnings,
            (std::vector<Warning>{{kWarningClass, "Data 'Pressure' doesn't exist, remove from StoredFlag list"}}));
}

TEST_F(TestItemsEcuTest, PresentFlagOfUnknownDataGivesThePresentFlagWarning) {
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device, "<Test Type=\"3\">\r\n<PresentFlag>Pressure</PresentFlag>\r\n</Test>");
  EXPECT_EQ(test->PresentFlag().Count(), 0);
  EXPECT_EQ(warnings,
            (std::vector<Warning>{{kWarningClass, "Data 'Pressure' doesn't exist, remove from PresentFlag list"}}));
}

TEST_F(TestItemsEcuTest, FlagOfEcuDataThatTheRequestDoesNotPlaceIsDropped) {
  AddData("Pressure");
  AddRequest("Other", {"Pressure"});
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device,
                       "<Test Type=\"3\"><StoredFlag>Pressure</StoredFlag><StoredFlag>Rpm</StoredFlag></Test>");
  EXPECT_EQ(Keys(test->StoredFlag()), (std::vector<std::string>{"kRpm"}));
  EXPECT_EQ(warnings,
            (std::vector<Warning>{{kWarningClass, "Data 'Pressure' doesn't exist, remove from StoredFlag list"}}));
}

TEST_F(TestItemsEcuTest, FlagNamesAreComparedExactlyWithThePlacements) {
  auto device = DeviceWithRequest("Pump");
  auto test = LoadTest(device, "<Test Type=\"3\"><StoredFlag>speed</StoredFlag></Test>");
  EXPECT_EQ(test->StoredFlag().Count(), 0);
  EXPECT_EQ(warnings,
            (std::vector<Warning>{{kWarningClass, "Data 'speed' doesn't exist, remove from StoredFlag list"}}));
}

TEST_F(TestItemsEcuTest, FlagsOfADeviceWithoutRequestAreAllDropped) {
  AddRequest("FF", {"Speed"});
  auto device = AddDevice("Pump");
  auto test = LoadTest(device, "<Test Type=\"3\"><StoredFlag>Speed</StoredFlag><PresentFlag>Speed</PresentFlag></Test>");
  EXPECT_EQ(test->StoredFlag().Count(), 0);
  EXPECT_EQ(test->PresentFlag().Count(), 0);
  EXPECT_EQ(warnings,
            (std::vector<Warning>{{kWarningClass, "Data 'Speed' doesn't exist, remove from StoredFlag list"},
                                  {kWarningClass, "Data 'Speed' doesn't exist, remove from PresentFlag list"}}));
}

TEST_F(TestItemsEcuTest, ObdHeldByAnotherDeviceOfTheEcuIsReadAsZeroAndTheTestKept) {
  auto other = AddDevice("Other");
  auto taken = other->Tests()->Add(1);
  taken->set_parent(other);
  taken->set_OBD(700);
  auto device = std::make_shared<OrganeItem>();
  device->set_parent(target);
  ParseText(input, "<Device><Test Type=\"5\" OBD=\"700\" Severity=\"1\"/><Test Type=\"6\" OBD=\"701\"/></Device>");
  TestItems tests;
  tests.loadXml(input, input.child("Device"), device);
  EXPECT_FALSE(Err().Pending());
  ASSERT_EQ(tests.Count(), 2);
  EXPECT_EQ(tests.Item(1)->OBD(), 0);
  EXPECT_EQ(tests.Item(1)->Severity(), 1);
  EXPECT_EQ(tests.Item(2)->OBD(), 701);
}

TEST_F(TestItemsEcuTest, TestRoundTripsByteForByte) {
  auto device = DeviceWithRequest("Pump");
  const std::string text =
      "<Test Type=\"7\" OBD=\"291\" Severity=\"3\" Autocheck=\"0\">\r\n<Description>Sensor stuck</Description>\r\n"
      "<StoredFlag>Speed</StoredFlag>\r\n<StoredFlag>Rpm</StoredFlag>\r\n<PresentFlag>Temp</PresentFlag>\r\n"
      "<PresentFlag>Speed</PresentFlag>\r\n</Test>";
  auto test = LoadTest(device, text);
  EXPECT_EQ(WriteTest(*test), text);
}

}  // namespace
}  // namespace tessaly
