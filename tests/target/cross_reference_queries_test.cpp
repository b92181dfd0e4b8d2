// The target's where-used queries and its derived collections of reference placements, on
// documents as loaded and as saved and loaded again.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "target/xref_fixture.hpp"

namespace tessaly::testing::xref {
namespace {

// Two categories of screens, four requests, four devices:
//   ReadSpeed places Speed (reference) and Rpm; ReadAll places Speed, Temp (reference) and Rpm
//   (reference); WriteTemp carries Temp; Reset places nothing.
//   Pump (ReadSpeed) links Speed and flags Rpm; Fan (ReadAll) links Temp; Valve (ReadSpeed)
//   flags Speed; Horn links Rpm.
//   Engine/Main: init step Reset; button Go sends ReadAll then Reset; displays Speed/ReadSpeed,
//   Speed/ReadAll, request display Reset, input Temp/WriteTemp. Engine/Empty has nothing.
//   Body/Dash: button Stop sends Reset; displays Speed/ReadSpeed, Rpm/ReadSpeed, request
//   display ReadAll.
std::string QueryDocument() {
  return Document(
      Datas({"Speed", "Rpm", "Temp", "Gear"}),
      RequestXml("ReadSpeed", "", Placed("Speed", 3, true) + Placed("Rpm", 4)) +
          RequestXml("ReadAll", "", Placed("Speed", 2) + Placed("Temp", 5, true) + Placed("Rpm", 6, true)) +
          RequestXml("WriteTemp", Placed("Temp", 3)) + RequestXml("Reset"),
      DeviceXml("Pump", "ReadSpeed", LinkXml("Speed", true), TestXml(1, {"Rpm"}, {"Rpm"})) +
          DeviceXml("Fan", "ReadAll", LinkXml("Temp")) + DeviceXml("Valve", "ReadSpeed", "", TestXml(2, {"Speed"})) +
          DeviceXml("Horn", "", LinkXml("Rpm")),
      CategoryXml("Engine",
                  ScreenXml("Main", SendXml("Reset", 5), ButtonXml("Go", SendXml("ReadAll", 1) + SendXml("Reset", 2)),
                            DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Speed", "ReadAll", 20) +
                                RequestDisplayXml("Reset", 30) + InputXml("Temp", "WriteTemp", 40)) +
                      ScreenXml("Empty")) +
          CategoryXml("Body", ScreenXml("Dash", "", ButtonXml("Stop", SendXml("Reset", 3)),
                                        DisplayXml("Speed", "ReadSpeed", 10) + DisplayXml("Rpm", "ReadSpeed", 20) +
                                            RequestDisplayXml("ReadAll", 30))));
}

class CrossRefQueriesTest : public CrossRefFixture {
 protected:
  // Runs `check` on the query document as loaded, then on the same document saved and loaded
  // again.
  template <class Check>
  void OnLoadedAndReloaded(Check check) {
    TessalyLibXml first;
    std::shared_ptr<TargetItem> target = Load(first, QueryDocument());
    ASSERT_EQ(first.ExportUceToText(), QueryDocument());
    check(*target);
    TessalyLibXml second;
    std::shared_ptr<TargetItem> reloaded = Load(second, first.ExportUceToText());
    check(*reloaded);
  }

  static std::shared_ptr<DataPositionItem> PositionOf(const TargetItem& target, const char* request, const char* data) {
    return target.Requests()->ItemName(request)->DataPositions()->ItemName(data);
  }
  static std::shared_ptr<ScreenItem> Screen(const TargetItem& target, const char* category, const char* screen) {
    return target.Categories()->ItemName(category)->Screens()->ItemName(screen);
  }
  static std::shared_ptr<DisplayItem> Display(const TargetItem& target, const char* category, const char* screen,
                                              std::int32_t position) {
    return Screen(target, category, screen)->DisplayItems()->Item(position);
  }
};

TEST_F(CrossRefQueriesTest, RequestsUsingDataGivesThePlacementOfEachRequestInRequestOrder) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto found = target.GetRequestsUsingData("Speed");
    ASSERT_EQ(found->Count(), 2);
    EXPECT_EQ(found->Item(1), PositionOf(target, "ReadSpeed", "Speed"));
    EXPECT_EQ(found->Item(2), PositionOf(target, "ReadAll", "Speed"));
    // The placements themselves, not their requests, and without keys.
    EXPECT_EQ(found->KeyAt(1), "");
    EXPECT_EQ(found->KeyAt(2), "");
    auto rpm = target.GetRequestsUsingData("Rpm");
    ASSERT_EQ(rpm->Count(), 2);
    EXPECT_EQ(rpm->Item(2), PositionOf(target, "ReadAll", "Rpm"));
  });
}

TEST_F(CrossRefQueriesTest, UnknownNamesAndOtherLetterCaseGiveEmptyResults) {
  OnLoadedAndReloaded([](TargetItem& target) {
    EXPECT_EQ(target.GetRequestsUsingData("speed")->Count(), 0);
    EXPECT_EQ(target.GetRequestsUsingData("Nothing")->Count(), 0);
    EXPECT_EQ(target.GetScreensUsingData("SPEED")->Count(), 0);
    EXPECT_EQ(target.GetScreensDataUsingRequest("readspeed")->Count(), 0);
    EXPECT_EQ(target.GetScreensExtraDataUsingRequest("reset")->Count(), 0);
    EXPECT_EQ(target.GetScreensScenarioUsingRequest("RESET")->Count(), 0);
    EXPECT_EQ(target.GetDeviceUsingRequest("readSpeed")->Count(), 0);
    EXPECT_EQ(target.GetDeviceDataUsingData("speed"), nullptr);
    EXPECT_EQ(target.GetDataPositionFromRefData("speed"), nullptr);
    EXPECT_EQ(target.GetDeviceUsingData("Gear"), nullptr);
    EXPECT_EQ(target.GetDataPositionFromRefData("Gear"), nullptr);
  });
}

TEST_F(CrossRefQueriesTest, ScreensUsingDataListsDataDisplaysByCategoryScreenAndPosition) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto found = target.GetScreensUsingData("Speed");
    ASSERT_EQ(found->Count(), 3);
    EXPECT_EQ(found->Item(1), Display(target, "Engine", "Main", 1));
    EXPECT_EQ(found->Item(2), Display(target, "Engine", "Main", 2));
    EXPECT_EQ(found->Item(3), Display(target, "Body", "Dash", 1));
    auto temp = target.GetScreensUsingData("Temp");
    ASSERT_EQ(temp->Count(), 1);
    EXPECT_EQ(temp->Item(1), Display(target, "Engine", "Main", 4));
  });
}

TEST_F(CrossRefQueriesTest, ScreensDataUsingRequestListsTheDataDisplaysOfThatRequest) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto found = target.GetScreensDataUsingRequest("ReadSpeed");
    ASSERT_EQ(found->Count(), 3);
    EXPECT_EQ(found->Item(1), Display(target, "Engine", "Main", 1));
    EXPECT_EQ(found->Item(2), Display(target, "Body", "Dash", 1));
    EXPECT_EQ(found->Item(3), Display(target, "Body", "Dash", 2));
    // A request display does not show data.
    EXPECT_EQ(target.GetScreensDataUsingRequest("Reset")->Count(), 0);
  });
}

TEST_F(CrossRefQueriesTest, ScreensExtraDataUsingRequestListsTheRequestDisplaysOnly) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto reset = target.GetScreensExtraDataUsingRequest("Reset");
    ASSERT_EQ(reset->Count(), 1);
    EXPECT_EQ(reset->Item(1), Display(target, "Engine", "Main", 3));
    auto readAll = target.GetScreensExtraDataUsingRequest("ReadAll");
    ASSERT_EQ(readAll->Count(), 1);
    EXPECT_EQ(readAll->Item(1), Display(target, "Body", "Dash", 3));
    EXPECT_EQ(target.GetScreensExtraDataUsingRequest("ReadSpeed")->Count(), 0);
  });
}

TEST_F(CrossRefQueriesTest, ScreensScenarioUsingRequestListsInitAndButtonStepsInWalkOrder) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto found = target.GetScreensScenarioUsingRequest("Reset");
    ASSERT_EQ(found->Count(), 3);
    auto main = Screen(target, "Engine", "Main");
    EXPECT_EQ(found->Item(1), main->ButtonInit()->ScenarioItems()->Item(1));
    EXPECT_EQ(found->Item(2), main->ButtonItems()->Item(2)->ScenarioItems()->Item(2));
    EXPECT_EQ(found->Item(3), Screen(target, "Body", "Dash")->ButtonItems()->Item(2)->ScenarioItems()->Item(1));
    EXPECT_EQ(found->Item(2)->delay(), 2);
    EXPECT_EQ(target.GetScreensScenarioUsingRequest("ReadAll")->Count(), 1);
  });
}

TEST_F(CrossRefQueriesTest, DeviceUsingRequestListsEveryDeviceOfThatFreezeFrameRequest) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto found = target.GetDeviceUsingRequest("ReadSpeed");
    ASSERT_EQ(found->Count(), 2);
    EXPECT_EQ(found->Item(1), target.Organes()->ItemName("Pump"));
    EXPECT_EQ(found->Item(2), target.Organes()->ItemName("Valve"));
    EXPECT_EQ(target.GetDeviceUsingRequest("Reset")->Count(), 0);
  });
}

TEST_F(CrossRefQueriesTest, DeviceDataUsingDataGivesTheFirstLinkOverTheDevices) {
  OnLoadedAndReloaded([](TargetItem& target) {
    EXPECT_EQ(target.GetDeviceDataUsingData("Temp"), target.Organes()->ItemName("Fan")->DeviceDatas()->Item(1));
    // Pump only flags Rpm; Horn links it.
    EXPECT_EQ(target.GetDeviceDataUsingData("Rpm"), target.Organes()->ItemName("Horn")->DeviceDatas()->Item(1));
  });
}

TEST_F(CrossRefQueriesTest, DeviceUsingDataTakesTheFirstDeviceThatLinksOrFlagsTheData) {
  OnLoadedAndReloaded([](TargetItem& target) {
    EXPECT_EQ(target.GetDeviceUsingData("Speed"), target.Organes()->ItemName("Pump"));
    EXPECT_EQ(target.GetDeviceUsingData("Temp"), target.Organes()->ItemName("Fan"));
    // Pump's test flag comes before Horn's link.
    EXPECT_EQ(target.GetDeviceUsingData("Rpm"), target.Organes()->ItemName("Pump"));
  });
}

TEST_F(CrossRefQueriesTest, DeviceUsingDataFindsTestFlagsThroughTheirKeysIgnoringLetterCase) {
  OnLoadedAndReloaded([](TargetItem& target) {
    // Links compare exactly, but a test's flags are found by their key "k" + name: Pump's link to
    // Speed is missed, Valve's flag of Speed is found.
    EXPECT_EQ(target.GetDeviceUsingData("speed"), target.Organes()->ItemName("Valve"));
    EXPECT_EQ(target.GetDeviceUsingData("rpm"), target.Organes()->ItemName("Pump"));
    EXPECT_EQ(target.GetDeviceUsingData("temp"), nullptr);
  });
}

TEST_F(CrossRefQueriesTest, DataPositionFromRefDataSkipsPlacementsThatAreNoReference) {
  OnLoadedAndReloaded([](TargetItem& target) {
    EXPECT_EQ(target.GetDataPositionFromRefData("Speed"), PositionOf(target, "ReadSpeed", "Speed"));
    EXPECT_EQ(target.GetDataPositionFromRefData("Rpm"), PositionOf(target, "ReadAll", "Rpm"));
    EXPECT_EQ(target.GetDataPositionFromRefData("Temp"), PositionOf(target, "ReadAll", "Temp"));
  });
}

TEST_F(CrossRefQueriesTest, ResultsAreTheCallersOwnCollectionsOfTheFoundObjects) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, QueryDocument());
  auto found = target->GetRequestsUsingData("Speed");
  found->Remove(1);
  EXPECT_EQ(found->Count(), 1);
  EXPECT_EQ(target->GetRequestsUsingData("Speed")->Count(), 2);
  EXPECT_EQ(target->Requests()->ItemName("ReadSpeed")->DataPositions()->Count(), 2);
  auto displays = target->GetScreensUsingData("Speed");
  EXPECT_NE(displays, target->GetScreensUsingData("Speed"));
  displays->RemoveAll();
  EXPECT_EQ(target->GetScreensUsingData("Speed")->Count(), 3);
  EXPECT_EQ(lib.ExportUceToText(), QueryDocument());
}

TEST_F(CrossRefQueriesTest, WalksSkipMissingListsAndCreateNothing) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, QueryDocument());
  // Host-made objects without their lists: a request without placements, a device without links
  // or tests, a screen without displays or buttons, a button without a scenario.
  target->Requests()->Add("Bare")->set_parent(target);
  auto device = target->Organes()->Add("Bare", "", 0, 0);
  device->set_parent(target);
  auto dash = Screen(*target, "Body", "Dash");
  auto button = dash->ButtonItems()->Add("NoSteps");
  button->set_parent(dash);
  auto bare = target->Categories()->ItemName("Body")->Screens()->Add("Bare");
  const std::string before = lib.ExportUceToText();

  EXPECT_EQ(target->GetRequestsUsingData("Speed")->Count(), 2);
  EXPECT_EQ(target->GetDataPositionFromRefData("Gear"), nullptr);
  EXPECT_EQ(target->GetScreensUsingData("Speed")->Count(), 3);
  EXPECT_EQ(target->GetScreensScenarioUsingRequest("Reset")->Count(), 3);
  EXPECT_EQ(target->GetDeviceUsingData("Gear"), nullptr);
  EXPECT_EQ(target->GetDeviceDataUsingData("Gear"), nullptr);
  EXPECT_FALSE(button->HasScenario());
  EXPECT_EQ(bare->DisplayItems(), nullptr);
  EXPECT_EQ(device->DeviceDatas(), nullptr);
  EXPECT_EQ(lib.ExportUceToText(), before);
}

TEST_F(CrossRefQueriesTest, QueriesOnATargetWithoutCollectionsFindNothing) {
  std::shared_ptr<TargetItem> target = TargetItem::Create();
  target->clear();
  EXPECT_EQ(target->GetRequestsUsingData("Speed")->Count(), 0);
  EXPECT_EQ(target->GetScreensUsingData("Speed")->Count(), 0);
  EXPECT_EQ(target->GetScreensScenarioUsingRequest("Reset")->Count(), 0);
  EXPECT_EQ(target->GetDeviceUsingRequest("Reset")->Count(), 0);
  EXPECT_EQ(target->GetDeviceUsingData("Speed"), nullptr);
  EXPECT_EQ(target->datasRef()->Count(), 0);
}

// --- datasRef, datasRefRead, datasRefWrite ---

// ReadA reads Speed (reference) and Rpm; ReadB reads Speed and Temp (both references); WriteC
// carries Gear and Temp (both references).
std::string RefDocument() {
  return Document(Datas({"Speed", "Rpm", "Temp", "Gear"}),
                  RequestXml("ReadA", "", Placed("Speed", 3, true) + Placed("Rpm", 4)) +
                      RequestXml("ReadB", "", Placed("Speed", 2, true) + Placed("Temp", 5, true)) +
                      RequestXml("WriteC", Placed("Gear", 3, true) + Placed("Temp", 4, true)));
}

class CrossRefDatasRefTest : public CrossRefFixture {
 protected:
  template <class Check>
  void OnLoadedAndReloaded(Check check) {
    TessalyLibXml first;
    std::shared_ptr<TargetItem> target = Load(first, RefDocument());
    ASSERT_EQ(first.ExportUceToText(), RefDocument());
    check(*target);
    TessalyLibXml second;
    check(*Load(second, first.ExportUceToText()));
  }

  static std::shared_ptr<DataPositionItem> PositionOf(const TargetItem& target, const char* request, const char* data) {
    return target.Requests()->ItemName(request)->DataPositions()->ItemName(data);
  }
};

TEST_F(CrossRefDatasRefTest, DataUsedAsReferenceByTwoRequestsGivesOneEntryTheFirstRequests) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto refs = target.datasRef();
    ASSERT_EQ(refs->Count(), 3);
    EXPECT_EQ(refs->Item(1), PositionOf(target, "ReadA", "Speed"));
    EXPECT_EQ(refs->KeyAt(1), "Speedk");
    EXPECT_EQ(refs->Item(2), PositionOf(target, "ReadB", "Temp"));
    EXPECT_EQ(refs->KeyAt(2), "Tempk");
    EXPECT_EQ(refs->Item(3), PositionOf(target, "WriteC", "Gear"));
    EXPECT_EQ(refs->KeyAt(3), "Geark");
  });
}

TEST_F(CrossRefDatasRefTest, EntriesAreKeyedByTheDataNameFollowedByK) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto refs = target.datasRef();
    EXPECT_EQ(refs->Item("Speedk"), PositionOf(target, "ReadA", "Speed"));
    EXPECT_EQ(refs->Item("SPEEDK"), PositionOf(target, "ReadA", "Speed"));
    EXPECT_TESSALY_ERROR(refs->Item("kSpeed"), 5, "Tessaly", "Invalid procedure call or argument");
    // Rpm is placed, but not as a reference.
    EXPECT_FALSE(refs->ContainsKey("Rpmk"));
  });
}

TEST_F(CrossRefDatasRefTest, ReadKeepsReplyDataAndWriteKeepsParameters) {
  OnLoadedAndReloaded([](TargetItem& target) {
    auto read = target.datasRefRead();
    ASSERT_EQ(read->Count(), 2);
    EXPECT_EQ(read->Item("Speedk"), PositionOf(target, "ReadA", "Speed"));
    EXPECT_EQ(read->Item("Tempk"), PositionOf(target, "ReadB", "Temp"));
    auto write = target.datasRefWrite();
    ASSERT_EQ(write->Count(), 2);
    EXPECT_EQ(write->Item(1), PositionOf(target, "WriteC", "Gear"));
    // Temp is a reference parameter of WriteC: the read entry of ReadB does not hide it here.
    EXPECT_EQ(write->Item(2), PositionOf(target, "WriteC", "Temp"));
    EXPECT_EQ(write->KeyAt(2), "Tempk");
  });
}

TEST_F(CrossRefDatasRefTest, EachCallBuildsANewCollectionAndTheSetterChangesNothing) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, RefDocument());
  auto refs = target->datasRef();
  EXPECT_NE(refs, target->datasRef());
  refs->Remove("Speedk");
  EXPECT_EQ(target->datasRef()->Count(), 3);
  target->set_datasRef(std::make_shared<DataPositionCollection>());
  EXPECT_EQ(target->datasRef()->Count(), 3);
  // Requests without placements are skipped.
  target->Requests()->Add("Bare");
  EXPECT_EQ(target->datasRef()->Count(), 3);
  EXPECT_EQ(target->datasRefRead()->Count(), 2);
  EXPECT_EQ(target->datasRefWrite()->Count(), 2);
}

TEST_F(CrossRefDatasRefTest, ReferencesFollowAPlacementMadeAReferenceAfterLoading) {
  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target = Load(lib, RefDocument());
  PositionOf(*target, "ReadA", "Rpm")->set_reference(true);
  auto refs = target->datasRef();
  ASSERT_EQ(refs->Count(), 4);
  EXPECT_EQ(refs->KeyAt(2), "Rpmk");
  EXPECT_EQ(Err().Number(), 0);
}

}  // namespace
}  // namespace tessaly::testing::xref
