// Deleting data items, requests, placements and devices through the target: each edit is applied
// to a document built for it, and the saved document is compared byte for byte with the one
// expected, on the document as loaded and as saved and loaded again.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "target/xref_fixture.hpp"

namespace tessaly::testing::xref {
namespace {

using CrossRefDeleteTest = CrossRefFixture;

// --- DeleteData, DeleteDataByName ---

// Speed is a reference in ReadSpeed and in ReadAll. Pump links Speed and flags it in a test; Fan
// only flags it. Displays show Speed through both requests.
std::string SpeedEverywhere() {
  return Document(
      Datas({"Speed", "Rpm", "Temp"}),
      RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)) +
          RequestXml("ReadAll", "", Placed("Speed", 2, true) + Placed("Temp", 5)) + RequestXml("ReadMore", "", Placed("Rpm", 3)),
      DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true) + LinkXml("Rpm"), TestXml(1, {"Speed"}, {"Speed"})) +
          DeviceXml("Fan", "ReadAll", "", TestXml(1, {"Speed"})),
      CategoryXml("Engine", ScreenXml("Main", SendXml("ReadSpeed", 50), "",
                                      DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Rpm", "ReadSpeed", 20) +
                                          DisplayXml("Speed", "ReadAll", 30) + DisplayXml("Temp", "ReadAll", 40))));
}

TEST_F(CrossRefDeleteTest, DeleteDataTakesEveryPlacementWithItsDisplaysAndDeviceUses) {
  const std::string saved = EditAndSave(SpeedEverywhere(), [](TargetItem& target) {
    target.DeleteData(target.datas()->ItemName("Speed"));
  });
  // One reference placement per request: Pump loses its link with the first and its test flag
  // with the second; Fan loses its flag.
  EXPECT_EQ(saved, Document(Datas({"Rpm", "Temp"}),
                            RequestXml("ReadSpeed", "", Placed("Rpm", 4)) + RequestXml("ReadAll", "", Placed("Temp", 5)) +
                                RequestXml("ReadMore", "", Placed("Rpm", 3)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Rpm"), TestXml(1, {})) +
                                DeviceXml("Fan", "ReadAll", "", TestXml(1, {})),
                            CategoryXml("Engine", ScreenXml("Main", SendXml("ReadSpeed", 50), "",
                                                            DisplayXml("Rpm", "ReadSpeed", 20) +
                                                                DisplayXml("Temp", "ReadAll", 40)))));
}

TEST_F(CrossRefDeleteTest, DeleteDataByNameLooksTheNameUpIgnoringLetterCase) {
  const std::string byName = EditAndSave(SpeedEverywhere(), [](TargetItem& target) { target.DeleteDataByName("sPEED"); });
  const std::string byItem = EditAndSave(SpeedEverywhere(), [](TargetItem& target) {
    target.DeleteData(target.datas()->ItemName("Speed"));
  });
  EXPECT_EQ(byName, byItem);
  EXPECT_EQ(byName.find("\"Speed\""), std::string::npos);
  EXPECT_EQ(byName.find("<StoredFlag>Speed"), std::string::npos);
}

TEST_F(CrossRefDeleteTest, DeleteDataByNameOfAnUnknownNameChangesNothing) {
  EXPECT_EQ(EditAndSave(SpeedEverywhere(), [](TargetItem& target) { target.DeleteDataByName("Nothing"); }),
            SpeedEverywhere());
}

TEST_F(CrossRefDeleteTest, DeleteDataOfUnplacedDataRemovesOnlyTheItem) {
  const std::string document = Document(Datas({"Speed", "Spare"}), RequestXml("ReadSpeed", "", Placed("Speed", 3)));
  EXPECT_EQ(EditAndSave(document, [](TargetItem& target) { target.DeleteData(target.datas()->ItemName("Spare")); }),
            Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3))));
}

TEST_F(CrossRefDeleteTest, DeleteDataOfANullItemIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, SpeedEverywhere());
  EXPECT_TESSALY_ERROR(target->DeleteData(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(lib.ExportUceToText(), SpeedEverywhere());
}

// --- DeleteRequest ---

// ReadSpeed is shown by two data displays of different screens and by a request display, is
// sent by one scenario step and is Pump's freeze-frame request; its reference placement of Speed
// is linked by Pump and by Fan.
std::string ReadSpeedEverywhere() {
  return Document(
      Datas({"Speed", "Rpm", "Temp"}),
      RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)) +
          RequestXml("ReadAll", "", Placed("Speed", 2) + Placed("Temp", 5, true)),
      DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true) + LinkXml("Temp")) + DeviceXml("Fan", "ReadAll", LinkXml("Speed")),
      CategoryXml("Engine", ScreenXml("Main", SendXml("ReadAll", 10),
                                      ButtonXml("Go", SendXml("ReadSpeed", 1) + SendXml("ReadAll", 2)),
                                      DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20) +
                                          RequestDisplayXml("ReadSpeed", 30) + DisplayXml("Temp", "ReadAll", 40))) +
          CategoryXml("Body", ScreenXml("Dash", "", "", DisplayXml("Rpm", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20))));
}

TEST_F(CrossRefDeleteTest, DeleteRequestRemovesItsDisplaysAndStepsAndEmptiesItsDevicesRequest) {
  const std::string saved = EditAndSave(ReadSpeedEverywhere(), [](TargetItem& target) {
    target.DeleteRequest(target.Requests()->ItemName("ReadSpeed"));
  });
  // Pump stays without a freeze-frame request; the reference placement of Speed took the Speed
  // links of both devices with it.
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm", "Temp"}), RequestXml("ReadAll", "", Placed("Speed", 2) + Placed("Temp", 5, true)),
                            DeviceXml("Pump", "", LinkXml("Temp")) + DeviceXml("Fan", "ReadAll"),
                            CategoryXml("Engine", ScreenXml("Main", SendXml("ReadAll", 10), ButtonXml("Go", SendXml("ReadAll", 2)),
                                                            DisplayXml("Speed", "ReadAll", 20) + DisplayXml("Temp", "ReadAll", 40))) +
                                CategoryXml("Body", ScreenXml("Dash", "", "", DisplayXml("Speed", "ReadAll", 20)))));
}

TEST_F(CrossRefDeleteTest, DeleteRequestLeavesItsDevicesWithoutRequestAndRenumbersTheScenario) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, ReadSpeedEverywhere());
  auto pump = target->Organes()->ItemName("Pump");
  ASSERT_NE(pump->request(), nullptr);
  auto go = target->Categories()->Item(1)->Screens()->Item(1)->ButtonItems()->Item(2);
  target->DeleteRequest(target->Requests()->ItemName("ReadSpeed"));
  EXPECT_EQ(target->Organes()->Count(), 2);
  EXPECT_EQ(pump->requestName(), "");
  EXPECT_EQ(pump->request(), nullptr);
  ASSERT_EQ(go->ScenarioItems()->Count(), 1);
  EXPECT_EQ(go->ScenarioItems()->Item(1)->Index(), 1);
  EXPECT_EQ(target->Requests()->ItemName("ReadSpeed"), nullptr);
}

TEST_F(CrossRefDeleteTest, DeleteRequestWithoutPlacementsSucceeds) {
  // Reset has neither Sent nor Received, so it is read without placements.
  const std::string document =
      Document(Datas({"Speed"}),
               "\n<Request Name=\"Reset\"/>" + RequestXml("ReadSpeed", "", Placed("Speed", 3)),
               DeviceXml("Pump", "Reset"),
               CategoryXml("Engine", ScreenXml("Main", SendXml("Reset", 5) + SendXml("ReadSpeed", 6), "",
                                               RequestDisplayXml("Reset", 10) + DisplayXml("Speed", "ReadSpeed", 20))));
  {
    TessalyLibXml lib;
    std::shared_ptr<TargetItem> target = Load(lib, document);
    EXPECT_EQ(target->Requests()->ItemName("Reset")->DataPositions(), nullptr);
  }
  EXPECT_EQ(EditAndSave(document, [](TargetItem& target) { target.DeleteRequest(target.Requests()->ItemName("Reset")); }),
            Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3)), DeviceXml("Pump"),
                     CategoryXml("Engine", ScreenXml("Main", SendXml("ReadSpeed", 6), "", DisplayXml("Speed", "ReadSpeed", 20)))));
}

TEST_F(CrossRefDeleteTest, DeleteRequestOfAHostMadeRequestDeletesItsUnparentedPlacements) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, Document(Datas({"Speed"}), ""));
  auto request = target->Requests()->Add("Made");
  request->set_DataPositions(std::make_shared<DataPositionItems>());
  auto position = request->DataPositions()->Add("Speed");
  ASSERT_EQ(position->parent(), nullptr);
  target->DeleteRequest(request);
  EXPECT_EQ(request->DataPositions(), nullptr);
  EXPECT_EQ(target->Requests()->Count(), 0);
  EXPECT_EQ(lib.ExportUceToText(), Document(Datas({"Speed"}), ""));
}

TEST_F(CrossRefDeleteTest, DeleteRequestOfANullRequestIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, ReadSpeedEverywhere());
  EXPECT_TESSALY_ERROR(target->DeleteRequest(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(lib.ExportUceToText(), ReadSpeedEverywhere());
}

// --- DeleteDataPosition ---

// ReadSpeed reads Speed (no reference) and Rpm (reference); ReadAll reads Speed. Pump
// (ReadSpeed) links Speed and flags Rpm.
std::string TwoRequestsOfSpeed() {
  return Document(Datas({"Speed", "Rpm"}),
                  RequestXml("ReadSpeed", "", Placed("Speed", 3) + Placed("Rpm", 4, true)) +
                      RequestXml("ReadAll", "", Placed("Speed", 2)),
                  DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Rpm"}, {"Rpm"})),
                  CategoryXml("Engine", ScreenXml("Main", "", "",
                                                  DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20) +
                                                      DisplayXml("Rpm", "ReadSpeed", 30))));
}

TEST_F(CrossRefDeleteTest, DeleteDataPositionThatIsNoReferenceLeavesDevicesButTakesItsDisplays) {
  const std::string saved = EditAndSave(TwoRequestsOfSpeed(), [](TargetItem& target) {
    target.DeleteDataPosition(target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"));
  });
  // Pump keeps its link to Speed; the display of Speed through ReadAll stays.
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm"}),
                            RequestXml("ReadSpeed", "", Placed("Rpm", 4, true)) + RequestXml("ReadAll", "", Placed("Speed", 2)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Rpm"}, {"Rpm"})),
                            CategoryXml("Engine", ScreenXml("Main", "", "",
                                                            DisplayXml("Speed", "ReadAll", 20) + DisplayXml("Rpm", "ReadSpeed", 30)))));
}

TEST_F(CrossRefDeleteTest, DeleteDataPositionKeepsDisplaysOfTheSameDataThroughAnotherRequest) {
  const std::string saved = EditAndSave(TwoRequestsOfSpeed(), [](TargetItem& target) {
    target.DeleteDataPosition(target.Requests()->ItemName("ReadAll")->DataPositions()->ItemName("Speed"));
  });
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm"}),
                            RequestXml("ReadSpeed", "", Placed("Speed", 3) + Placed("Rpm", 4, true)) + RequestXml("ReadAll"),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Rpm"}, {"Rpm"})),
                            CategoryXml("Engine", ScreenXml("Main", "", "",
                                                            DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Rpm", "ReadSpeed", 30)))));
}

TEST_F(CrossRefDeleteTest, DeleteDataPositionThatIsAReferenceRemovesTheTestFlagOfADeviceWithoutLink) {
  const std::string saved = EditAndSave(TwoRequestsOfSpeed(), [](TargetItem& target) {
    target.DeleteDataPosition(target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Rpm"));
  });
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm"}),
                            RequestXml("ReadSpeed", "", Placed("Speed", 3)) + RequestXml("ReadAll", "", Placed("Speed", 2)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {})),
                            CategoryXml("Engine", ScreenXml("Main", "", "",
                                                            DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20)))));
}

TEST_F(CrossRefDeleteTest, DeleteDataPositionThatIsAReferenceRemovesTheDeviceLinkFirst) {
  const std::string document = Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true)),
                                        DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Speed"})) +
                                            DeviceXml("Fan", "", LinkXml("Speed")));
  const std::string saved = EditAndSave(document, [](TargetItem& target) {
    target.DeleteDataPosition(target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"));
  });
  // A device that has a link loses the link only; every device is visited.
  EXPECT_EQ(saved, Document(Datas({"Speed"}), RequestXml("ReadSpeed"),
                            DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Speed"})) + DeviceXml("Fan")));
}

TEST_F(CrossRefDeleteTest, DeleteDataPositionWithoutRequestIsRefusedAndChangesNothing) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, TwoRequestsOfSpeed());
  auto loose = std::make_shared<DataPositionItem>();
  loose->set_dataName("Speed");
  loose->set_reference(true);
  EXPECT_TESSALY_ERROR(target->DeleteDataPosition(loose), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_TESSALY_ERROR(target->DeleteDataPosition(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(lib.ExportUceToText(), TwoRequestsOfSpeed());
}

// --- DeleteDevice ---

TEST_F(CrossRefDeleteTest, DeleteDeviceLeavesItsRequestAndDataUntouched) {
  const std::string document = Document(Datas({"Speed", "Rpm"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)),
                                        DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Rpm"})) +
                                            DeviceXml("Fan", "ReadSpeed"),
                                        CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Speed", "ReadSpeed"))));
  EXPECT_EQ(EditAndSave(document, [](TargetItem& target) { target.DeleteDevice(target.Organes()->ItemName("Pump")); }),
            Document(Datas({"Speed", "Rpm"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)),
                     DeviceXml("Fan", "ReadSpeed"),
                     CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Speed", "ReadSpeed")))));
}

TEST_F(CrossRefDeleteTest, DeleteDeviceOfADeviceNotHeldOrNullDoesNothing) {
  const std::string document = Document(Datas({"Speed"}), "", DeviceXml("Pump"));
  EXPECT_EQ(EditAndSave(document,
                        [](TargetItem& target) {
                          auto stranger = std::make_shared<OrganeItem>();
                          stranger->set_organeName("Pump");
                          target.DeleteDevice(stranger);
                          target.DeleteDevice(nullptr);
                        }),
            document);
}

}  // namespace
}  // namespace tessaly::testing::xref
