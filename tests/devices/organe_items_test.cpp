#include "tessaly/devices/organe_items.hpp"

#include <gtest/gtest.h>

#include "devices/devices_fixture.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"

namespace tessaly {
namespace {

using testing::DevicesFixture;
using testing::NodeText;
using testing::ParseText;
using testing::Warning;

const std::string kInput = "Entr\xC3\xA9" "e";

std::string WriteDevice(const OrganeItem& device) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Device");
  device.createXMLnode(doc, node);
  return NodeText(node);
}

std::vector<std::string> Names(const OrganeItems& devices) {
  std::vector<std::string> names;
  for (const auto& device : devices) names.push_back(device->organeName());
  return names;
}

// --- A device on its own ---

TEST(OrganeItemsTest, NewDeviceHasDefaults) {
  OrganeItem device;
  EXPECT_EQ(device.organeName(), "");
  EXPECT_EQ(device.Mnemonique(), "");
  EXPECT_EQ(device.OrganeTypeId(), 1);
  EXPECT_EQ(device.OrganeTypeName(), kInput);
  EXPECT_EQ(device.OrganeDTC(), 0);
  EXPECT_EQ(device.OrganeOBD(), 0);
  EXPECT_EQ(device.DeviceDatas(), nullptr);
  EXPECT_EQ(device.request(), nullptr);
  EXPECT_EQ(device.requestName(), "");
  EXPECT_EQ(device.parent(), nullptr);
}

TEST(OrganeItemsTest, DeviceWithAllDefaultsWritesOnlyItsName) {
  OrganeItem device;
  device.set_organeName("Pump");
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"Pump\">\n</Device>");
}

TEST(OrganeItemsTest, DeviceWritesNonDefaultValuesInOrder) {
  auto device = std::make_shared<OrganeItem>();
  device->set_organeName("Pump");
  device->set_OrganeOBD(42);
  device->set_OrganeDTC(4660);
  device->set_OrganeTypeId(3);
  device->set_requestName("FreezeFrame1");
  device->set_Mnemonique("PMP");
  device->set_DeviceDatas(std::make_shared<DeviceDataItems>());
  device->DeviceDatas()->Add("Speed")->set_FlagPanne(true);
  device->DeviceDatas()->Add("Rpm");
  device->Tests()->Add(3);
  EXPECT_EQ(WriteDevice(*device),
            "<Device Name=\"Pump\" DTC=\"4660\" OBD=\"42\" Type=\"3\" FreezeFrame=\"FreezeFrame1\">\n"
            "<Mnemonic>PMP</Mnemonic>\n"
            "<DeviceData Name=\"Speed\" FailureFlag=\"1\"/><DeviceData Name=\"Rpm\" FailureFlag=\"0\"/>\n"
            "\r\n<Test Type=\"3\">\r\n</Test>\n</Device>");
}

TEST(OrganeItemsTest, TypeOneIsNotWrittenAndTypeThreeIs) {
  OrganeItem device;
  device.set_organeName("A");
  device.set_OrganeTypeId(1);
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"A\">\n</Device>");
  device.set_OrganeTypeId(3);
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"A\" Type=\"3\">\n</Device>");
}

TEST(OrganeItemsTest, ReadingTestsOfAFreshDeviceCreatesAnEmptyCollectionThatIsWritten) {
  OrganeItem device;
  device.set_organeName("A");
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"A\">\n</Device>");
  const auto& tests = device.Tests();
  ASSERT_NE(tests, nullptr);
  EXPECT_EQ(tests->Count(), 0);
  EXPECT_EQ(device.Tests(), tests);
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"A\">\n\n</Device>");
}

TEST(OrganeItemsTest, LookupsOfADeviceWithoutCollectionsGiveNullAndCreateNothing) {
  OrganeItem device;
  device.set_organeName("A");
  EXPECT_EQ(device.GetDeviceDataUsingData("Speed"), nullptr);
  EXPECT_EQ(device.GetTestUsingData("Speed"), nullptr);
  device.RenameData("Speed", "Velocity");
  EXPECT_EQ(WriteDevice(device), "<Device Name=\"A\">\n</Device>");
}

TEST(OrganeItemsTest, RequestNameSetterStoresTheTextOnly) {
  OrganeItem device;
  auto request = std::make_shared<RequestItem>();
  request->set_requestName("FF");
  device.set_request(request);
  device.set_requestName("Other");
  EXPECT_EQ(device.request(), request);
  EXPECT_EQ(device.requestName(), "Other");
}

TEST(OrganeItemsTest, SettingTheRequestSetsItsNameAndNullEmptiesIt) {
  OrganeItem device;
  auto request = std::make_shared<RequestItem>();
  request->set_requestName("FF");
  device.set_request(request);
  EXPECT_EQ(device.requestName(), "FF");
  device.set_request(nullptr);
  EXPECT_EQ(device.request(), nullptr);
  EXPECT_EQ(device.requestName(), "");
}

TEST(OrganeItemsTest, TypeOfADeviceOutsideAnEcuIsNotLookedUp) {
  OrganeItem device;
  device.set_OrganeTypeId(3);
  EXPECT_EQ(device.OrganeTypeName(), kInput);
  device.set_OrganeTypeName("Interne");
  EXPECT_EQ(device.OrganeTypeId(), 3);
}

TEST(OrganeItemsTest, ClearDropsRequestCollectionsAndParent) {
  auto target = TargetItem::Create();
  auto device = std::make_shared<OrganeItem>();
  device->set_parent(target);
  device->set_request(std::make_shared<RequestItem>());
  device->set_DeviceDatas(std::make_shared<DeviceDataItems>());
  auto link = device->DeviceDatas()->Add("Speed");
  link->set_parent(device);
  auto tests = device->Tests();
  auto test = tests->Add(1);
  test->set_parent(device);
  device->clear();
  EXPECT_EQ(device->request(), nullptr);
  EXPECT_EQ(device->DeviceDatas(), nullptr);
  EXPECT_EQ(device->parent(), nullptr);
  EXPECT_EQ(link->parent(), nullptr);
  EXPECT_EQ(test->parent(), nullptr);
  EXPECT_EQ(tests->Count(), 0);
}

// --- The collection on its own ---

TEST(OrganeItemsTest, AddSetsTheFourValuesAndKeysByName) {
  OrganeItems devices;
  auto pump = devices.Add("Pump", "PMP", 12, 34);
  EXPECT_EQ(pump->organeName(), "Pump");
  EXPECT_EQ(pump->Mnemonique(), "PMP");
  EXPECT_EQ(pump->OrganeDTC(), 12);
  EXPECT_EQ(pump->OrganeOBD(), 34);
  EXPECT_EQ(pump->parent(), nullptr);
  EXPECT_EQ(devices.Item("kPump"), pump);
  EXPECT_EQ(devices.Item(1), pump);
}

TEST(OrganeItemsTest, DeviceNamedTwelveHasKeyK12) {
  OrganeItems devices;
  auto twelve = devices.Add("12", "", 0, 0);
  EXPECT_EQ(devices.Item("k12"), twelve);
}

TEST(OrganeItemsTest, AddDataOfAHeldNameFailsWithTheDuplicateKeyError) {
  OrganeItems devices;
  devices.Add("Pump", "", 0, 0);
  auto again = std::make_shared<OrganeItem>();
  again->set_organeName("PUMP");
  EXPECT_TESSALY_ERROR(devices.AddData(again), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(devices.Count(), 1);
}

TEST(OrganeItemsTest, AddingANullItemToAnyDeviceCollectionFails) {
  constexpr const char* kNotSet = "Object variable or With block variable not set";
  OrganeItems devices;
  DeviceDataItems links;
  TestItems tests;
  EXPECT_TESSALY_ERROR(devices.AddData(nullptr), 91, "Tessaly", kNotSet);
  EXPECT_TESSALY_ERROR(links.AddData(nullptr), 91, "Tessaly", kNotSet);
  EXPECT_TESSALY_ERROR(tests.AddData(nullptr), 91, "Tessaly", kNotSet);
  EXPECT_TESSALY_ERROR(devices.rename(nullptr, "A"), 91, "Tessaly", kNotSet);
  EXPECT_EQ(devices.Count() + links.Count() + tests.Count(), 0);
}

TEST(OrganeItemsTest, ItemNameIgnoresLetterCaseAndGivesNullWhenMissing) {
  OrganeItems devices;
  auto pump = devices.Add("Pump", "", 0, 0);
  EXPECT_EQ(devices.ItemName("pump"), pump);
  EXPECT_EQ(devices.ItemName("Valve"), nullptr);
}

TEST(OrganeItemsTest, RenameToItsOwnNameChangesNothing) {
  OrganeItems devices;
  auto a = devices.Add("A", "", 0, 0);
  devices.Add("B", "", 0, 0);
  devices.rename(a, "A");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(devices.Item("kA"), a);
}

TEST(OrganeItemsTest, RenameToAnotherDevicesNameIsRefusedAndBothAreUnchanged) {
  OrganeItems devices;
  auto a = devices.Add("A", "", 0, 0);
  auto b = devices.Add("B", "", 0, 0);
  EXPECT_TESSALY_ERROR(devices.rename(a, "B"), 1, "OrganeItems.rename", "Duplicate device (B)");
  EXPECT_TESSALY_ERROR(devices.rename(a, "b"), 1, "OrganeItems.rename", "Duplicate device (b)");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(devices.ItemName("A"), a);
  EXPECT_EQ(devices.ItemName("B"), b);
}

TEST(OrganeItemsTest, RenamedDeviceMovesToTheEndUnderItsNewKey) {
  OrganeItems devices;
  auto a = devices.Add("A", "", 0, 0);
  devices.Add("B", "", 0, 0);
  devices.Add("C", "", 0, 0);
  devices.rename(a, "Z");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"B", "C", "Z"}));
  EXPECT_EQ(devices.Item("kZ"), a);
  EXPECT_EQ(devices.ItemName("A"), nullptr);
  EXPECT_EQ(a->organeName(), "Z");
}

TEST(OrganeItemsTest, RenameToADifferentLetterCaseOfItsOwnName) {
  OrganeItems devices;
  auto a = devices.Add("Pump", "", 0, 0);
  devices.Add("B", "", 0, 0);
  devices.rename(a, "PUMP");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"B", "PUMP"}));
  EXPECT_EQ(devices.Item("kPUMP"), a);
}

TEST(OrganeItemsTest, RenameOfADeviceNotHeldRenamesAndAppendsIt) {
  OrganeItems devices;
  auto held = devices.Add("A", "", 0, 0);
  auto loose = std::make_shared<OrganeItem>();
  loose->set_organeName("A");
  devices.rename(loose, "X");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"A", "X"}));
  EXPECT_EQ(devices.ItemName("A"), held);
  EXPECT_EQ(devices.ItemName("X"), loose);
}

TEST(OrganeItemsTest, RenameFindsTheDeviceItselfEvenWhenItsNameWasChangedDirectly) {
  OrganeItems devices;
  auto a = devices.Add("A", "", 0, 0);
  devices.Add("B", "", 0, 0);
  a->set_organeName("Q");
  devices.rename(a, "Z");
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"B", "Z"}));
  EXPECT_EQ(devices.ItemName("Z"), a);
  EXPECT_EQ(devices.ItemName("A"), nullptr);
}

TEST(OrganeItemsTest, DeleteAndClearClearTheDevices) {
  OrganeItems devices;
  auto a = devices.Add("A", "", 0, 0);
  auto b = devices.Add("B", "", 0, 0);
  a->set_request(std::make_shared<RequestItem>());
  b->set_request(std::make_shared<RequestItem>());
  devices.Delete(std::make_shared<OrganeItem>());
  EXPECT_EQ(devices.Count(), 2);
  devices.Delete(a);
  EXPECT_EQ(Names(devices), (std::vector<std::string>{"B"}));
  EXPECT_EQ(a->request(), nullptr);
  devices.clear();
  EXPECT_EQ(devices.Count(), 0);
  EXPECT_EQ(b->request(), nullptr);
}

TEST(OrganeItemsTest, CollectionWritesEachDeviceFollowedByALineFeed) {
  OrganeItems devices;
  devices.Add("A", "", 0, 0);
  devices.Add("B", "M", 0, 0);
  pugi::xml_document doc;
  pugi::xml_node parent = doc.append_child("Devices");
  devices.createXMLnode(doc, parent);
  EXPECT_EQ(NodeText(parent),
            "<Devices><Device Name=\"A\">\n</Device>\n<Device Name=\"B\">\n<Mnemonic>M</Mnemonic>\n</Device>\n</Devices>");
}

// --- Devices in an ECU ---

class OrganeItemsEcuTest : public DevicesFixture {};

TEST_F(OrganeItemsEcuTest, TypeIdAndTypeNameFollowEachOtherThroughTheDeviceTypes) {
  auto device = AddDevice("Pump");
  device->set_OrganeTypeId(3);
  EXPECT_EQ(device->OrganeTypeName(), "Sortie");
  device->set_OrganeTypeName("Interne");
  EXPECT_EQ(device->OrganeTypeId(), 2);
  device->set_OrganeTypeId(9);
  EXPECT_EQ(device->OrganeTypeId(), 9);
  EXPECT_EQ(device->OrganeTypeName(), "Interne");
  device->set_OrganeTypeName("Unknown");
  EXPECT_EQ(device->OrganeTypeName(), "Unknown");
  EXPECT_EQ(device->OrganeTypeId(), 9);
}

TEST_F(OrganeItemsEcuTest, FreezeFramePositionIsThePlacementInTheNamedRequest) {
  auto request = AddRequest("FF", {"Speed", "Rpm"});
  AddRequest("Other", {"Temp"});
  auto device = AddDevice("Pump");
  EXPECT_EQ(device->FreezeFramePosition("Speed"), nullptr);
  device->set_requestName("FF");
  EXPECT_EQ(device->FreezeFramePosition("Rpm"), request->DataPositions()->ItemName("Rpm"));
  EXPECT_EQ(device->FreezeFramePosition("Temp"), nullptr);
  EXPECT_EQ(device->FreezeFramePosition("rpm"), nullptr);
  device->set_requestName("Missing");
  EXPECT_EQ(device->FreezeFramePosition("Speed"), nullptr);
  auto loose = std::make_shared<OrganeItem>();
  loose->set_requestName("FF");
  EXPECT_EQ(loose->FreezeFramePosition("Speed"), nullptr);
}

TEST_F(OrganeItemsEcuTest, FreezeFramePositionOfARequestWithoutPositionsIsNull) {
  target->Requests()->Add("Bare")->set_parent(target);
  auto device = AddDevice("Pump");
  device->set_requestName("Bare");
  EXPECT_EQ(device->FreezeFramePosition("Speed"), nullptr);
}

TEST_F(OrganeItemsEcuTest, GetDevicesTestWithObdGivesTheFirstTestOverTheDevices) {
  auto a = AddDevice("A");
  auto b = AddDevice("B");
  AddDevice("NoTests");
  auto onA = a->Tests()->Add(1);
  auto onB = b->Tests()->Add(1);
  onB->set_OBD(500);
  EXPECT_EQ(target->Organes()->GetDevicesTestWithObd(500), onB);
  EXPECT_EQ(target->Organes()->GetDevicesTestWithObd(0), nullptr);
  EXPECT_EQ(target->Organes()->GetDevicesTestWithObd(501), nullptr);
  EXPECT_EQ(onA->OBD(), 0);
}

TEST_F(OrganeItemsEcuTest, RenameDataRenamesTheLinkAndTheFlag) {
  AddRequest("FF", {"Speed", "Rpm"});
  LoadDevices(
      "<Devices>\n<Device Name=\"Pump\" FreezeFrame=\"FF\">\n<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>\n"
      "\r\n<Test Type=\"1\">\r\n<StoredFlag>Rpm</StoredFlag>\r\n<PresentFlag>Rpm</PresentFlag>\r\n</Test>\n</Device>\n"
      "</Devices>");
  auto device = target->Organes()->ItemName("Pump");
  ASSERT_NE(device, nullptr);
  auto test = device->Tests()->Item(1);
  device->RenameData("Speed", "Velocity");
  EXPECT_EQ(device->DeviceDatas()->Item(1)->dataName(), "Velocity");
  device->RenameData("Rpm", "Revs");
  EXPECT_TRUE(test->StoredFlag().ContainsKey("kRevs"));
  EXPECT_TRUE(test->PresentFlag().ContainsKey("kRevs"));
  EXPECT_FALSE(test->StoredFlag().ContainsKey("kRpm"));
  EXPECT_EQ(device->GetTestUsingData("Revs"), test);
}

TEST_F(OrganeItemsEcuTest, DeleteDataPositionDeletesTheLinkElseTheFlag) {
  auto request = AddRequest("FF", {"Speed", "Rpm", "Temp"});
  LoadDevices(
      "<Devices>\n<Device Name=\"Pump\" FreezeFrame=\"FF\">\n<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>\n"
      "\r\n<Test Type=\"1\">\r\n<StoredFlag>Speed</StoredFlag>\r\n<StoredFlag>Rpm</StoredFlag>\r\n"
      "<PresentFlag>Rpm</PresentFlag>\r\n<PresentFlag>Temp</PresentFlag>\r\n</Test>\n</Device>\n</Devices>");
  auto device = target->Organes()->ItemName("Pump");
  ASSERT_NE(device, nullptr);
  auto test = device->Tests()->Item(1);
  auto positions = request->DataPositions();

  // A device that links the data loses the link; its flag of the same data stays.
  device->DeleteDataPosition(positions->ItemName("Speed"));
  EXPECT_EQ(device->DeviceDatas()->Count(), 0);
  EXPECT_TRUE(test->StoredFlag().ContainsKey("kSpeed"));

  // Without a link, the test that stores the data as a flag loses it from both lists.
  device->DeleteDataPosition(positions->ItemName("Rpm"));
  EXPECT_FALSE(test->StoredFlag().ContainsKey("kRpm"));
  EXPECT_FALSE(test->PresentFlag().ContainsKey("kRpm"));

  // A data that is only a present flag is not found through the stored flags.
  device->DeleteDataPosition(positions->ItemName("Temp"));
  EXPECT_TRUE(test->PresentFlag().ContainsKey("kTemp"));

  EXPECT_TESSALY_ERROR(device->DeleteDataPosition(nullptr), 91, "Tessaly",
                       "Object variable or With block variable not set");
}

TEST_F(OrganeItemsEcuTest, CollectionDeleteDataPositionReachesEveryDevice) {
  auto request = AddRequest("FF", {"Speed"});
  LoadDevices(
      "<Devices>\n<Device Name=\"A\" FreezeFrame=\"FF\">\n<DeviceData Name=\"Speed\" FailureFlag=\"0\"/>\n\n</Device>\n"
      "<Device Name=\"B\" FreezeFrame=\"FF\">\n\n\r\n<Test Type=\"1\">\r\n<StoredFlag>Speed</StoredFlag>\r\n</Test>\n"
      "</Device>\n</Devices>");
  target->Organes()->DeleteDataPosition(request->DataPositions()->ItemName("Speed"));
  EXPECT_EQ(target->Organes()->ItemName("A")->DeviceDatas()->Count(), 0);
  EXPECT_EQ(target->Organes()->ItemName("B")->Tests()->Item(1)->StoredFlag().Count(), 0);
}

TEST_F(OrganeItemsEcuTest, GetDeviceDataUsingDataIsTheExactLink) {
  LoadDevices("<Devices>\n<Device Name=\"A\">\n<DeviceData Name=\"Speed\" FailureFlag=\"0\"/>\n\n</Device>\n</Devices>");
  auto device = target->Organes()->ItemName("A");
  EXPECT_EQ(device->GetDeviceDataUsingData("Speed"), device->DeviceDatas()->Item(1));
  EXPECT_EQ(device->GetDeviceDataUsingData("speed"), nullptr);
}

// --- Reading and writing the device list ---

TEST_F(OrganeItemsEcuTest, ReadsEveryValueOfADevice) {
  auto request = AddRequest("FF", {"Speed"});
  LoadDevices(
      "<Devices>\n<Device Name=\"Pump\" DTC=\"4660\" OBD=\"42\" Type=\"3\" FreezeFrame=\"FF\">\n"
      "<Mnemonic>PMP</Mnemonic>\n<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>\n"
      "\r\n<Test Type=\"2\">\r\n</Test>\n</Device>\n</Devices>");
  EXPECT_FALSE(Err().Pending());
  ASSERT_EQ(target->Organes()->Count(), 1);
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->organeName(), "Pump");
  EXPECT_EQ(device->Mnemonique(), "PMP");
  EXPECT_EQ(device->OrganeDTC(), 4660);
  EXPECT_EQ(device->OrganeOBD(), 42);
  EXPECT_EQ(device->OrganeTypeId(), 3);
  EXPECT_EQ(device->OrganeTypeName(), "Sortie");
  EXPECT_EQ(device->requestName(), "FF");
  EXPECT_EQ(device->request(), request);
  EXPECT_EQ(device->parent(), target);
  ASSERT_EQ(device->DeviceDatas()->Count(), 1);
  EXPECT_EQ(device->DeviceDatas()->Item(1)->parent(), device);
  EXPECT_EQ(device->Tests()->Item(1)->parent(), device);
  EXPECT_EQ(device->Tests()->Item(1)->testType(), 2);
}

TEST_F(OrganeItemsEcuTest, DeviceWithoutTypeTakesTypeOneAndItsName) {
  LoadDevices("<Devices><Device Name=\"A\"/></Devices>");
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->OrganeTypeId(), 1);
  EXPECT_EQ(device->OrganeTypeName(), kInput);
  EXPECT_EQ(device->DeviceDatas()->Count(), 0);
  EXPECT_EQ(device->Tests()->Count(), 0);
}

TEST_F(OrganeItemsEcuTest, TypeOneReadFromTheFileIsNotWrittenBack) {
  LoadDevices("<Devices>\n<Device Name=\"A\" Type=\"1\">\n\n\n</Device>\n<Device Name=\"B\" Type=\"3\">\n\n\n</Device>\n</Devices>");
  EXPECT_EQ(WriteDevices(),
            "<Devices>\n<Device Name=\"A\">\n\n\n</Device>\n<Device Name=\"B\" Type=\"3\">\n\n\n</Device>\n</Devices>");
}

TEST_F(OrganeItemsEcuTest, UnknownTypeKeepsTheNumberAndThePreviousName) {
  LoadDevices("<Devices><Device Name=\"A\" Type=\"7\"/></Devices>");
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->OrganeTypeId(), 7);
  EXPECT_EQ(device->OrganeTypeName(), kInput);
  EXPECT_FALSE(Err().Pending());
}

TEST_F(OrganeItemsEcuTest, NonNumericTypeIsReadAsOneAndLeavesTheConversionError) {
  LoadDevices("<Devices><Device Name=\"A\" Type=\"output\"><DeviceData Name=\"S\" FailureFlag=\"1\"/></Device></Devices>");
  ASSERT_EQ(target->Organes()->Count(), 1);
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->OrganeTypeId(), 1);
  EXPECT_EQ(device->DeviceDatas()->Count(), 1);
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  Err().Clear();
}

TEST_F(OrganeItemsEcuTest, NonNumericDtcIsZeroAndItsErrorWinsOverThoseOfTheTests) {
  LoadDevices("<Devices><Device Name=\"A\" DTC=\"x\" OBD=\"7\"><Test/></Device></Devices>");
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->OrganeDTC(), 0);
  EXPECT_EQ(device->OrganeOBD(), 7);
  EXPECT_EQ(device->Tests()->Count(), 0);
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  Err().Clear();
}

TEST_F(OrganeItemsEcuTest, DeviceWithoutNameLeavesErrorHundredAndIsStillAdded) {
  LoadDevices("<Devices><Device DTC=\"5\"><Mnemonic>M</Mnemonic></Device></Devices>");
  EXPECT_PENDING_ERROR(100, "OrganeItem.loadXml", "OrganeItem.loadXml error : Device Name not defined");
  ASSERT_EQ(target->Organes()->Count(), 1);
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->organeName(), "");
  EXPECT_EQ(device->OrganeDTC(), 0);
  EXPECT_EQ(device->Mnemonique(), "");
  Err().Clear();
}

TEST_F(OrganeItemsEcuTest, ErrorOfAnEarlierDeviceNeverDropsALaterOne) {
  LoadDevices("<Devices><Device/><Device Name=\"B\"/><Device Name=\"C\"/></Devices>");
  EXPECT_EQ(Names(*target->Organes()), (std::vector<std::string>{"", "B", "C"}));
  EXPECT_FALSE(Err().Pending());
}

TEST_F(OrganeItemsEcuTest, SecondDeviceOfTheSameNameIsDroppedWithTheDuplicateKeyError) {
  LoadDevices("<Devices><Device Name=\"A\" DTC=\"1\"/><Device Name=\"a\" DTC=\"2\"/></Devices>");
  ASSERT_EQ(target->Organes()->Count(), 1);
  EXPECT_EQ(target->Organes()->Item(1)->OrganeDTC(), 1);
  EXPECT_PENDING_ERROR(457, "Tessaly", "This key is already associated with an element of this collection");
  Err().Clear();
}

TEST_F(OrganeItemsEcuTest, DeviceElementsAreReadWhateverTheirPrefixAndOthersSkipped) {
  LoadDevices(
      "<Devices xmlns:x=\"urn:x\">\n<Device Name=\"A\"/>\n<x:Device Name=\"B\"/>\n<Other Name=\"C\"/>\n"
      "<!-- Device --><y:Device xmlns:y=\"urn:y\" Name=\"D\"/><DeviceX Name=\"E\"/></Devices>");
  EXPECT_EQ(Names(*target->Organes()), (std::vector<std::string>{"A", "B", "D"}));
}

TEST_F(OrganeItemsEcuTest, FreezeFrameNamingNoRequestKeepsTheNameAndNoRequest) {
  AddRequest("FF", {"Speed"});
  LoadDevices("<Devices>\n<Device Name=\"A\" FreezeFrame=\"Missing\">\n\n\n</Device>\n</Devices>");
  auto device = target->Organes()->Item(1);
  EXPECT_EQ(device->request(), nullptr);
  EXPECT_EQ(device->requestName(), "Missing");
  EXPECT_EQ(WriteDevices(), NodeText(input.child("Devices")));
}

TEST_F(OrganeItemsEcuTest, TestsAreResolvedThroughTheFreezeFrameReadBeforeThem) {
  AddRequest("FF", {"Speed"});
  AddRequest("Other", {"Rpm"});
  LoadDevices(
      "<Devices><Device Name=\"A\" FreezeFrame=\"FF\"><Test Type=\"1\"><StoredFlag>Speed</StoredFlag>"
      "<StoredFlag>Rpm</StoredFlag></Test></Device></Devices>");
  auto test = target->Organes()->Item(1)->Tests()->Item(1);
  EXPECT_EQ(test->StoredFlag().Count(), 1);
  EXPECT_TRUE(test->StoredFlag().ContainsKey("kSpeed"));
  EXPECT_EQ(warnings, (std::vector<Warning>{{"TestItem.LoadXml", "Data 'Rpm' doesn't exist, remove from StoredFlag list"}}));
}

TEST_F(OrganeItemsEcuTest, ObdCheckWhileLoadingSeesTheDevicesAlreadyRead) {
  LoadDevices(
      "<Devices><Device Name=\"A\"><Test Type=\"1\" OBD=\"300\"/><Test Type=\"2\" OBD=\"300\"/></Device>"
      "<Device Name=\"B\"><Test Type=\"1\" OBD=\"300\"/><Test Type=\"2\" OBD=\"301\"/></Device></Devices>");
  EXPECT_FALSE(Err().Pending());
  auto a = target->Organes()->ItemName("A")->Tests();
  auto b = target->Organes()->ItemName("B")->Tests();
  // Device A is not in the list while it reads itself, so its own tests are not compared.
  EXPECT_EQ(a->Item(1)->OBD(), 300);
  EXPECT_EQ(a->Item(2)->OBD(), 300);
  EXPECT_EQ(b->Item(1)->OBD(), 0);
  EXPECT_EQ(b->Item(2)->OBD(), 301);
}

TEST_F(OrganeItemsEcuTest, DevicesRoundTripByteForByte) {
  AddRequest("FF", {"Speed", "Rpm", "Temp"});
  AddRequest("FF2", {"Pressure"});
  const std::string text =
      "<Devices>\n"
      // Only a name.
      "<Device Name=\"Bare\">\n\n\n</Device>\n"
      // Every attribute, mnemonic, links and tests with both flag lists.
      "<Device Name=\"Pump\" DTC=\"4660\" OBD=\"42\" Type=\"3\" FreezeFrame=\"FF\">\n"
      "<Mnemonic>PMP</Mnemonic>\n"
      "<DeviceData Name=\"Speed\" FailureFlag=\"1\"/><DeviceData Name=\"Rpm\" FailureFlag=\"0\"/>\n"
      "\r\n<Test Type=\"3\">\r\n</Test>"
      "\r\n<Test Type=\"4\" OBD=\"291\" Severity=\"2\" Autocheck=\"0\">\r\n<Description>Stuck</Description>\r\n"
      "<StoredFlag>Speed</StoredFlag>\r\n<StoredFlag>Temp</StoredFlag>\r\n<PresentFlag>Rpm</PresentFlag>\r\n</Test>\n"
      "</Device>\n"
      // Mnemonic without type or codes.
      "<Device Name=\"Valve\">\n<Mnemonic>VLV</Mnemonic>\n\n\n</Device>\n"
      // Type and DTC only.
      "<Device Name=\"Lamp\" DTC=\"7\" Type=\"2\">\n\n\n</Device>\n"
      // OBD and freeze frame, a link, one test.
      "<Device Name=\"Sensor\" OBD=\"9\" FreezeFrame=\"FF2\">\n<DeviceData Name=\"Pressure\" FailureFlag=\"0\"/>\n"
      "\r\n<Test Type=\"1\" OBD=\"1\">\r\n<PresentFlag>Pressure</PresentFlag>\r\n</Test>\n</Device>\n"
      "</Devices>";
  LoadDevices(text);
  EXPECT_FALSE(Err().Pending());
  EXPECT_TRUE(warnings.empty());
  EXPECT_EQ(WriteDevices(), text);
}

TEST_F(OrganeItemsEcuTest, EmptyDeviceListRoundTrips) {
  const std::string text = "<Devices>\n</Devices>";
  LoadDevices(text);
  EXPECT_EQ(target->Organes()->Count(), 0);
  EXPECT_EQ(WriteDevices(), text);
}

TEST_F(OrganeItemsEcuTest, UnknownFlagIsRemovedOnSavingAgain) {
  AddRequest("FF", {"Speed"});
  LoadDevices(
      "<Devices>\n<Device Name=\"A\" FreezeFrame=\"FF\">\n\n\r\n<Test Type=\"1\">\r\n<StoredFlag>Speed</StoredFlag>\r\n"
      "<StoredFlag>Gone</StoredFlag>\r\n</Test>\n</Device>\n</Devices>");
  EXPECT_EQ(WriteDevices(),
            "<Devices>\n<Device Name=\"A\" FreezeFrame=\"FF\">\n\n\r\n<Test Type=\"1\">\r\n<StoredFlag>Speed</StoredFlag>\r\n"
            "</Test>\n</Device>\n</Devices>");
}

TEST_F(OrganeItemsEcuTest, DroppedAndRepairedElementsAreToldToTheDiagnosticsCallback) {
  std::vector<Diagnostic> seen;
  lib.set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  auto other = AddDevice("Other");
  other->Tests()->Add(9)->set_OBD(55);
  AddRequest("FF", {"Speed"});
  LoadDevices(
      "<Devices><Device Name=\"Pump\" Type=\"big\" FreezeFrame=\"FF\"><DeviceData Name=\"Speed\" FailureFlag=\"1\"/>"
      "<DeviceData Name=\"Speed\" FailureFlag=\"0\"/><Test Type=\"1\" OBD=\"55\"><StoredFlag>Nope</StoredFlag></Test>"
      "<Test Type=\"1\"/></Device><Device Name=\"pump\"/></Devices>");
  Err().Clear();
  ASSERT_EQ(seen.size(), 6u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kRepaired);
  EXPECT_EQ(seen[0].what, "Type of device Pump");
  EXPECT_EQ(seen[0].why, "Type mismatch, type set to 1");
  EXPECT_EQ(seen[1].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[1].what, "DeviceData Speed in device Pump");
  EXPECT_EQ(seen[1].why, "Duplicate Data, a data can be used only one time in one device");
  EXPECT_EQ(seen[2].action, Diagnostic::Action::kRepaired);
  EXPECT_EQ(seen[2].what, "OBD of test 1 in device Pump");
  EXPECT_EQ(seen[2].why, "Duplicate OBD code 55, OBD set to 0");
  EXPECT_EQ(seen[3].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[3].what, "StoredFlag Nope in test 1 of device Pump");
  EXPECT_EQ(seen[3].why, "Data 'Nope' doesn't exist, remove from StoredFlag list");
  EXPECT_EQ(seen[4].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[4].what, "Test 1 in device Pump");
  EXPECT_EQ(seen[4].why, "Duplicate Data, a data can be used only one time in one device");
  EXPECT_EQ(seen[5].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[5].what, "Device pump");
  EXPECT_EQ(seen[5].why, "This key is already associated with an element of this collection");
}

// --- Through the facade: a whole document ---

class OrganeItemsDocumentTest : public DevicesFixture {
 protected:
  static std::string Document(const std::string& devices) {
    return "<?xml version=\"1.0\"?>\r\n<xml xmlns:tsl=\"urn:ecu\">\n<tsl:Target Name=\"ECU\">\n"
           "<Function Name=\"Injection\" Address=\"122\"/>\n<Datas>\n<Data Name=\"Speed\">\n</Data>"
           "<Data Name=\"Rpm\">\n</Data></Datas>\n"
           "<Requests Endian=\"Big\">\n<Request Name=\"FF\">\n<Sent>\n<SentBytes>21 01</SentBytes>\n</Sent>\n"
           "<Received MinBytes=\"1\">\n<DataItem Name=\"Speed\" FirstByte=\"3\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"4\"/>\n"
           "</Received>\n</Request></Requests>\n<Devices>\n" +
           devices + "</Devices>\n</tsl:Target></xml>";
  }

  // The text of the Devices element in `document`.
  static std::string DevicesSection(const std::string& document) {
    auto begin = document.find("<Devices>");
    auto end = document.find("</Devices>");
    if (begin == std::string::npos || end == std::string::npos) return "";
    return document.substr(begin, end + 10 - begin);
  }
};

TEST_F(OrganeItemsDocumentTest, DevicesSurviveImportAndExportByteForByte) {
  const std::string devices =
      "<Device Name=\"Pump\" DTC=\"12\" OBD=\"34\" Type=\"3\" FreezeFrame=\"FF\">\n<Mnemonic>PMP</Mnemonic>\n"
      "<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>\n\r\n<Test Type=\"1\" OBD=\"100\">\r\n"
      "<StoredFlag>Speed</StoredFlag>\r\n<PresentFlag>Rpm</PresentFlag>\r\n</Test>\n</Device>\n"
      "<Device Name=\"Lamp\">\n\n\n</Device>\n";
  lib.ImportUceFromText(Document(devices));
  const std::string exported = lib.ExportUceToText();
  EXPECT_EQ(DevicesSection(exported), "<Devices>\n" + devices + "</Devices>");
  lib.ImportUceFromText(exported);
  EXPECT_EQ(lib.ExportUceToText(), exported);
  EXPECT_TRUE(WarningsOf("TestItem.LoadXml").empty());
}

TEST_F(OrganeItemsDocumentTest, UnknownFlagDataAreReportedThroughWarningInfo) {
  lib.ImportUceFromText(Document(
      "<Device Name=\"Pump\" FreezeFrame=\"FF\">\n\n\r\n<Test Type=\"1\">\r\n<StoredFlag>Torque</StoredFlag>\r\n"
      "<StoredFlag>Speed</StoredFlag>\r\n<PresentFlag>Load</PresentFlag>\r\n</Test>\n</Device>\n"));
  EXPECT_EQ(WarningsOf("TestItem.LoadXml"),
            (std::vector<Warning>{{"TestItem.LoadXml", "Data 'Torque' doesn't exist, remove from StoredFlag list"},
                                  {"TestItem.LoadXml", "Data 'Load' doesn't exist, remove from PresentFlag list"}}));
  auto test = lib.ActiveTarget()->Organes()->ItemName("Pump")->Tests()->Item(1);
  EXPECT_EQ(test->StoredFlag().Count(), 1);
  EXPECT_EQ(test->PresentFlag().Count(), 0);
  EXPECT_EQ(DevicesSection(lib.ExportUceToText()),
            "<Devices>\n<Device Name=\"Pump\" FreezeFrame=\"FF\">\n\n\r\n<Test Type=\"1\">\r\n"
            "<StoredFlag>Speed</StoredFlag>\r\n</Test>\n</Device>\n</Devices>");
}

TEST_F(OrganeItemsDocumentTest, DeviceRequestIsTheLoadedRequest) {
  lib.ImportUceFromText(Document("<Device Name=\"Pump\" FreezeFrame=\"ff\">\n\n\n</Device>\n"));
  auto target2 = lib.ActiveTarget();
  auto device = target2->Organes()->ItemName("Pump");
  EXPECT_EQ(device->request(), target2->Requests()->ItemName("FF"));
  EXPECT_EQ(device->requestName(), "ff");
  EXPECT_EQ(device->FreezeFramePosition("Speed"), target2->Requests()->ItemName("FF")->DataPositions()->ItemName("Speed"));
}

}  // namespace
}  // namespace tessaly
