// Renaming data items, requests and devices, and making a placement place another data item,
// through the target: each edit is applied to a document built for it, and the saved document is
// compared byte for byte with the one expected, on the document as loaded and as saved and
// loaded again. Refusals leave the saved document as it was.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "target/xref_fixture.hpp"

namespace tessaly::testing::xref {
namespace {

using CrossRefRenameTest = CrossRefFixture;

// --- RenameData ---

// Speed is placed by ReadSpeed (reference) and ReadAll, shown through both, linked and flagged
// by Pump.
std::string SpeedDocument() {
  return Document(Datas({"Alpha", "Speed", "Temp"}),
                  RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Temp", 4)) +
                      RequestXml("ReadAll", "", Placed("Speed", 2)),
                  DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Speed"})),
                  CategoryXml("Engine", ScreenXml("Main", "", "",
                                                  DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20) +
                                                      DisplayXml("Temp", "ReadSpeed", 30))));
}

TEST_F(CrossRefRenameTest, RenameDataRenamesPlacementsDisplaysAndTheDevice) {
  const std::string saved = EditAndSave(SpeedDocument(), [](TargetItem& target) {
    target.RenameData(target.datas()->ItemName("Speed"), "Velocity");
    auto test = target.Organes()->ItemName("Pump")->Tests()->ItemType(1);
    EXPECT_TRUE(test->StoredFlag().ContainsKey("kVelocity"));
    EXPECT_FALSE(test->StoredFlag().ContainsKey("kSpeed"));
  });
  // The renamed item takes its sorted place among the data.
  EXPECT_EQ(saved, Document(Datas({"Alpha", "Temp", "Velocity"}),
                            RequestXml("ReadSpeed", "", Placed("Velocity", 3, true) + Placed("Temp", 4)) +
                                RequestXml("ReadAll", "", Placed("Velocity", 2)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Velocity", true), TestXml(1, {"Velocity"})),
                            CategoryXml("Engine", ScreenXml("Main", "", "",
                                                            DisplayXml("Velocity", "ReadSpeed", 10) +
                                                                DisplayXml("Velocity", "ReadAll", 20) +
                                                                DisplayXml("Temp", "ReadSpeed", 30)))));
}

TEST_F(CrossRefRenameTest, RenameDataToANameInUseIsRefusedAndChangesNothing) {
  EXPECT_EQ(EditAndSave(SpeedDocument(),
                        [](TargetItem& target) {
                          EXPECT_TESSALY_ERROR(target.RenameData(target.datas()->ItemName("Speed"), "Temp"), 1,
                                               "DataItems.rename", "Duplicate data (Temp)");
                        }),
            SpeedDocument());
}

TEST_F(CrossRefRenameTest, RenameDataChecksDuplicatesIgnoringLetterCase) {
  EXPECT_EQ(EditAndSave(SpeedDocument(),
                        [](TargetItem& target) {
                          EXPECT_TESSALY_ERROR(target.RenameData(target.datas()->ItemName("Speed"), "TEMP"), 1,
                                               "DataItems.rename", "Duplicate data (TEMP)");
                        }),
            SpeedDocument());
}

TEST_F(CrossRefRenameTest, RenameDataToItsOwnNameChangesNothing) {
  EXPECT_EQ(EditAndSave(SpeedDocument(),
                        [](TargetItem& target) { target.RenameData(target.datas()->ItemName("Speed"), "Speed"); }),
            SpeedDocument());
}

TEST_F(CrossRefRenameTest, RenameDataMayChangeTheLetterCaseOnly) {
  EXPECT_EQ(EditAndSave(SpeedDocument(),
                        [](TargetItem& target) { target.RenameData(target.datas()->ItemName("Speed"), "SPEED"); }),
            Document(Datas({"Alpha", "SPEED", "Temp"}),
                     RequestXml("ReadSpeed", "", Placed("SPEED", 3, true) + Placed("Temp", 4)) +
                         RequestXml("ReadAll", "", Placed("SPEED", 2)),
                     DeviceXml("Pump", "ReadSpeed", LinkXml("SPEED", true), TestXml(1, {"SPEED"})),
                     CategoryXml("Engine", ScreenXml("Main", "", "",
                                                     DisplayXml("SPEED", "ReadSpeed", 10) + DisplayXml("SPEED", "ReadAll", 20) +
                                                         DisplayXml("Temp", "ReadSpeed", 30)))));
}

TEST_F(CrossRefRenameTest, RenameDataUpdatesOnlyTheFirstDeviceThatUsesTheData) {
  const std::string document = Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true)),
                                        DeviceXml("Pump", "ReadSpeed", LinkXml("Speed")) +
                                            DeviceXml("Fan", "", LinkXml("Speed")));
  const std::string saved = EditAndSave(document, [](TargetItem& target) {
    target.RenameData(target.datas()->ItemName("Speed"), "Velocity");
  });
  EXPECT_EQ(saved, Document(Datas({"Velocity"}), RequestXml("ReadSpeed", "", Placed("Velocity", 3, true)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Velocity")) + DeviceXml("Fan", "", LinkXml("Speed"))));
}

TEST_F(CrossRefRenameTest, RenameDataKeepsTheRenamedFlagAtItsPlaceInEachList) {
  const std::string document =
      Document(Datas({"Rpm", "Speed", "Temp"}),
               RequestXml("ReadSpeed", "", Placed("Rpm", 2) + Placed("Speed", 3) + Placed("Temp", 4)),
               DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Rpm", "Speed", "Temp"}, {"Speed", "Temp"})));
  const std::string saved = EditAndSave(document, [](TargetItem& target) {
    target.RenameData(target.datas()->ItemName("Speed"), "Velocity");
    auto test = target.Organes()->ItemName("Pump")->Tests()->ItemType(1);
    EXPECT_EQ(test->StoredFlag().KeyAt(2), "kVelocity");
    EXPECT_EQ(test->PresentFlag().KeyAt(1), "kVelocity");
  });
  EXPECT_EQ(saved, Document(Datas({"Rpm", "Temp", "Velocity"}),
                            RequestXml("ReadSpeed", "", Placed("Rpm", 2) + Placed("Velocity", 3) + Placed("Temp", 4)),
                            DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Rpm", "Velocity", "Temp"}, {"Velocity", "Temp"}))));
}

TEST_F(CrossRefRenameTest, RenameDataRefusedByATestFlagChangesNothing) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target =
      Load(lib, Document(Datas({"Speed", "Old"}), RequestXml("ReadSpeed", "", Placed("Speed", 3) + Placed("Old", 4)),
                         DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Speed", "Old"})),
                         CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Speed", "ReadSpeed")))));
  // The data item Old is dropped behind the target's back: its placement and flag stay.
  target->datas()->Delete(target->datas()->ItemName("Old"));
  auto speed = target->datas()->ItemName("Speed");
  EXPECT_TESSALY_ERROR(target->RenameData(speed, "Old"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(speed->dataName(), "Speed");
  EXPECT_EQ(target->datas()->ItemName("Old"), nullptr);
  EXPECT_NE(target->Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"), nullptr);
  EXPECT_EQ(target->GetScreensUsingData("Speed")->Count(), 1);
  EXPECT_TRUE(target->Organes()->ItemName("Pump")->Tests()->ItemType(1)->StoredFlag().ContainsKey("kSpeed"));
}

TEST_F(CrossRefRenameTest, RenameDataOfANullItemIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, SpeedDocument());
  EXPECT_TESSALY_ERROR(target->RenameData(nullptr, "X"), 91, "Tessaly", "Object variable or With block variable not set");
}

// --- RenameRequest ---

// ReadSpeed is shown by data displays on two screens and by a request display, sent by the init
// button and by a button, and is Pump's freeze-frame request.
std::string ReadSpeedDocument() {
  return Document(
      Datas({"Speed", "Temp"}),
      RequestXml("ReadSpeed", "", Placed("Speed", 3, true)) + RequestXml("WriteTemp", Placed("Temp", 3)) + RequestXml("Reset"),
      DeviceXml("Pump", "ReadSpeed", LinkXml("Speed")),
      CategoryXml("Engine", ScreenXml("Main", SendXml("ReadSpeed", 5), ButtonXml("Go", SendXml("Reset", 1) + SendXml("ReadSpeed", 2)),
                                      DisplayXml("Speed", "ReadSpeed", 10) + RequestDisplayXml("ReadSpeed", 20) +
                                          InputXml("Temp", "WriteTemp", 30)) +
                                ScreenXml("Dash", "", "", DisplayXml("Speed", "ReadSpeed", 10))));
}

TEST_F(CrossRefRenameTest, RenameRequestRenamesDisplaysAndStepsButDevicesKeepTheOldName) {
  const std::string saved = EditAndSave(ReadSpeedDocument(), [](TargetItem& target) {
    target.RenameRequest(target.Requests()->ItemName("ReadSpeed"), "GetSpeed");
  });
  // The renamed request moves to the end; Pump still names ReadSpeed.
  EXPECT_EQ(saved, Document(Datas({"Speed", "Temp"}),
                            RequestXml("WriteTemp", Placed("Temp", 3)) + RequestXml("Reset") +
                                RequestXml("GetSpeed", "", Placed("Speed", 3, true)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Speed")),
                            CategoryXml("Engine", ScreenXml("Main", SendXml("GetSpeed", 5),
                                                            ButtonXml("Go", SendXml("Reset", 1) + SendXml("GetSpeed", 2)),
                                                            DisplayXml("Speed", "GetSpeed", 10) + RequestDisplayXml("GetSpeed", 20) +
                                                                InputXml("Temp", "WriteTemp", 30)) +
                                                      ScreenXml("Dash", "", "", DisplayXml("Speed", "GetSpeed", 10)))));
}

TEST_F(CrossRefRenameTest, RenameRequestLeavesTheDevicesRequestNameAsItWas) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, ReadSpeedDocument());
  auto request = target->Requests()->ItemName("ReadSpeed");
  target->RenameRequest(request, "GetSpeed");
  auto pump = target->Organes()->ItemName("Pump");
  EXPECT_EQ(pump->requestName(), "ReadSpeed");
  EXPECT_EQ(pump->request(), request);
  EXPECT_EQ(target->GetDeviceUsingRequest("ReadSpeed")->Count(), 1);
  EXPECT_EQ(target->GetDeviceUsingRequest("GetSpeed")->Count(), 0);
}

TEST_F(CrossRefRenameTest, RenameRequestToANameInUseIsRefusedAndChangesNothing) {
  EXPECT_EQ(EditAndSave(ReadSpeedDocument(),
                        [](TargetItem& target) {
                          EXPECT_TESSALY_ERROR(target.RenameRequest(target.Requests()->ItemName("ReadSpeed"), "reset"), 1,
                                               "RequestItems.rename", "Duplicate request (reset)");
                        }),
            ReadSpeedDocument());
}

TEST_F(CrossRefRenameTest, RenameRequestToItsOwnNameChangesNothing) {
  EXPECT_EQ(EditAndSave(ReadSpeedDocument(),
                        [](TargetItem& target) {
                          target.RenameRequest(target.Requests()->ItemName("ReadSpeed"), "ReadSpeed");
                        }),
            ReadSpeedDocument());
}

TEST_F(CrossRefRenameTest, RenameRequestOfANullRequestIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, ReadSpeedDocument());
  EXPECT_TESSALY_ERROR(target->RenameRequest(nullptr, "X"), 91, "Tessaly", "Object variable or With block variable not set");
}

// --- RenameDevice ---

std::string DevicesDocument() {
  return Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true)),
                  DeviceXml("Pump", "ReadSpeed", LinkXml("Speed")) + DeviceXml("Fan") + DeviceXml("Horn"));
}

TEST_F(CrossRefRenameTest, RenameDeviceMovesItToTheEndUnderItsNewName) {
  EXPECT_EQ(EditAndSave(DevicesDocument(),
                        [](TargetItem& target) {
                          target.RenameDevice(target.Organes()->ItemName("Pump"), "Pompe");
                          EXPECT_EQ(target.Organes()->Item("kPompe")->organeName(), "Pompe");
                        }),
            Document(Datas({"Speed"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true)),
                     DeviceXml("Fan") + DeviceXml("Horn") + DeviceXml("Pompe", "ReadSpeed", LinkXml("Speed"))));
}

TEST_F(CrossRefRenameTest, RenameDeviceToANameInUseIsRefusedAndChangesNothing) {
  EXPECT_EQ(EditAndSave(DevicesDocument(),
                        [](TargetItem& target) {
                          EXPECT_TESSALY_ERROR(target.RenameDevice(target.Organes()->ItemName("Pump"), "FAN"), 1,
                                               "OrganeItems.rename", "Duplicate device (FAN)");
                        }),
            DevicesDocument());
}

TEST_F(CrossRefRenameTest, RenameDeviceToItsOwnNameChangesNothing) {
  EXPECT_EQ(EditAndSave(DevicesDocument(),
                        [](TargetItem& target) { target.RenameDevice(target.Organes()->ItemName("Pump"), "Pump"); }),
            DevicesDocument());
}

TEST_F(CrossRefRenameTest, RenameDeviceOfANullDeviceIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, DevicesDocument());
  EXPECT_TESSALY_ERROR(target->RenameDevice(nullptr, "X"), 91, "Tessaly", "Object variable or With block variable not set");
}

// --- ReplaceDataPosition ---

// ReadSpeed places Speed as a reference; ReadAll places Speed, Rpm and Temp. Pump links Speed.
// Speed is shown through both requests.
std::string ReplaceDocument() {
  return Document(Datas({"Speed", "Rpm", "Temp"}),
                  RequestXml("ReadSpeed", "", Placed("Speed", 3, true)) +
                      RequestXml("ReadAll", "", Placed("Speed", 2) + Placed("Rpm", 3) + Placed("Temp", 4)),
                  DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true)),
                  CategoryXml("Engine", ScreenXml("Main", "", "",
                                                  DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20) +
                                                      DisplayXml("Rpm", "ReadAll", 30))));
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionMovesTheDeviceLinkAndEveryDisplayOfTheOldData) {
  const std::string saved = EditAndSave(ReplaceDocument(), [](TargetItem& target) {
    target.ReplaceDataPosition(target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"),
                               target.datas()->ItemName("Rpm"));
  });
  // The display of Speed through ReadAll follows too: it now shows Rpm of ReadAll. ReadAll's own
  // placement of Speed is not touched.
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm", "Temp"}),
                            RequestXml("ReadSpeed", "", Placed("Rpm", 3, true)) +
                                RequestXml("ReadAll", "", Placed("Speed", 2) + Placed("Rpm", 3) + Placed("Temp", 4)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Rpm", true)),
                            CategoryXml("Engine", ScreenXml("Main", "", "",
                                                            DisplayXml("Rpm", "ReadSpeed", 10) + DisplayXml("Rpm", "ReadAll", 20) +
                                                                DisplayXml("Rpm", "ReadAll", 30)))));
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionThatIsNoReferenceLeavesDevicesUntouched) {
  const std::string document = Document(Datas({"Speed", "Gear"}),
                                        RequestXml("ReadSpeed", "", Placed("Speed", 3, true)) +
                                            RequestXml("ReadAll", "", Placed("Speed", 2)),
                                        DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true)),
                                        CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Speed", "ReadAll", 20))));
  const std::string saved = EditAndSave(document, [](TargetItem& target) {
    target.ReplaceDataPosition(target.Requests()->ItemName("ReadAll")->DataPositions()->ItemName("Speed"),
                               target.datas()->ItemName("Gear"));
  });
  EXPECT_EQ(saved, Document(Datas({"Speed", "Gear"}),
                            RequestXml("ReadSpeed", "", Placed("Speed", 3, true)) + RequestXml("ReadAll", "", Placed("Gear", 2)),
                            DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true)),
                            CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Gear", "ReadAll", 20)))));
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionRenamesTheTestFlagOfADeviceWithoutLink) {
  const std::string document = Document(Datas({"Speed", "Rpm"}), RequestXml("ReadSpeed", "", Placed("Speed", 3, true)),
                                        DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Speed"}, {"Speed"})));
  const std::string saved = EditAndSave(document, [](TargetItem& target) {
    target.ReplaceDataPosition(target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"),
                               target.datas()->ItemName("Rpm"));
    auto test = target.Organes()->ItemName("Pump")->Tests()->ItemType(1);
    EXPECT_EQ(test->StoredFlag().KeyAt(1), "kRpm");
    EXPECT_EQ(test->PresentFlag().KeyAt(1), "kRpm");
  });
  EXPECT_EQ(saved, Document(Datas({"Speed", "Rpm"}), RequestXml("ReadSpeed", "", Placed("Rpm", 3, true)),
                            DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Rpm"}, {"Rpm"}))));
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionWithTheDataItAlreadyPlacesChangesNothing) {
  EXPECT_EQ(EditAndSave(ReplaceDocument(),
                        [](TargetItem& target) {
                          target.ReplaceDataPosition(
                              target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"),
                              target.datas()->ItemName("Speed"));
                        }),
            ReplaceDocument());
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionRefusedByATestFlagChangesNothing) {
  // Pump's test flags both Speed and Rpm: its Speed flag cannot become Rpm.
  const std::string document = Document(Datas({"Speed", "Rpm"}),
                                        RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)),
                                        DeviceXml("Pump", "ReadSpeed", "", TestXml(1, {"Speed", "Rpm"})),
                                        CategoryXml("Engine", ScreenXml("Main", "", "", DisplayXml("Speed", "ReadSpeed"))));
  EXPECT_EQ(EditAndSave(document,
                        [](TargetItem& target) {
                          EXPECT_TESSALY_ERROR(
                              target.ReplaceDataPosition(
                                  target.Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed"),
                                  target.datas()->ItemName("Rpm")),
                              457, "Tessaly", "This key is already associated with an element of this collection");
                        }),
            document);
}

TEST_F(CrossRefRenameTest, ReplaceDataPositionWithNullIsRefused) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, ReplaceDocument());
  auto position = target->Requests()->ItemName("ReadSpeed")->DataPositions()->ItemName("Speed");
  EXPECT_TESSALY_ERROR(target->ReplaceDataPosition(position, nullptr), 91, "Tessaly",
                       "Object variable or With block variable not set");
  EXPECT_TESSALY_ERROR(target->ReplaceDataPosition(nullptr, target->datas()->ItemName("Rpm")), 91, "Tessaly",
                       "Object variable or With block variable not set");
  EXPECT_EQ(lib.ExportUceToText(), ReplaceDocument());
}

}  // namespace
}  // namespace tessaly::testing::xref
