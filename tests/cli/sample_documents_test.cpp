// The sample ECU documents of the examples folder: they are what the sample builder writes, they
// load with nothing dropped or repaired, they convert back byte for byte, and they hold what a
// real engine ECU description holds.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "../../examples/sample_ecu.hpp"
#include "cli/cli_support.hpp"
#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly {
namespace {

using examples::SampleLine;
using testing::ReadFileBytes;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;

const SampleLine kLines[] = {SampleLine::kKLine, SampleLine::kCan};

// A facade that records everything it reports while loading.
struct RecordingFacade {
  TessalyLibXml lib;
  std::vector<std::string> warnings;
  std::vector<Diagnostic> diagnostics;
  std::shared_ptr<testing::RecordingEventLog> log = std::make_shared<testing::RecordingEventLog>();

  RecordingFacade() {
    lib.set_WarningInfo(
        [this](const std::string& cls, const std::string& msg) { warnings.push_back(cls + ": " + msg); });
    lib.set_Diagnostics([this](const Diagnostic& d) { diagnostics.push_back(d); });
    lib.set_EventLog(log);
  }
};

TEST(SampleDocumentsTest, CommittedSamplesAreExactlyWhatTheSampleBuilderWrites) {
  for (SampleLine line : kLines) {
    const std::string name = examples::SampleFileName(line);
    EXPECT_EQ(ReadFileBytes(SamplePath(name)), examples::SampleDocument(line))
        << name << " is out of date: rebuild it with examples/make_samples";
  }
}

TEST(SampleDocumentsTest, SamplesLoadWithNoDropNoRepairAndOnlyTheLoadingWarning) {
  for (SampleLine line : kLines) {
    const std::string path = SamplePath(examples::SampleFileName(line));
    RecordingFacade facade;
    EXPECT_NO_THROW(facade.lib.ImportUceFromXml(path));
    EXPECT_EQ(facade.warnings, std::vector<std::string>{"TessalyDatabase: Loading url : " + path});
    EXPECT_TRUE(facade.diagnostics.empty())
        << path << ": " << facade.diagnostics.front().what << ": " << facade.diagnostics.front().why;
    EXPECT_TRUE(facade.log->entries.empty());
  }
}

TEST(SampleDocumentsTest, ConvertGivesEachSampleBackByteForByte) {
  for (SampleLine line : kLines) {
    TempDir dir;
    const std::string in = SamplePath(examples::SampleFileName(line));
    const std::string out = dir.File("out.xml");
    auto r = RunTessaly({"convert", in, out});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in + "\n");
    EXPECT_EQ(ReadFileBytes(out), ReadFileBytes(in)) << in;
  }
}

TEST(SampleDocumentsTest, ConvertOfADamagedCopyLeavesOutWhatLoadingDroppedAndTheResultChecksClean) {
  TempDir dir;
  const std::string in = dir.File("damaged.xml");
  const std::string out = dir.File("converted.xml");
  const std::string display =
      "<Display Width=\"3600\" Color=\"16777215\" DataName=\"VehicleSpeed\" RequestName=\"ReadEngineValues\">";
  const std::string sample = ReadFileBytes(SamplePath("engine-ecu.xml"));
  testing::WriteFileBytes(in,
                          testing::ReplaceOnce(sample,
                                               "RequestName=\"ReadEngineValues\">\n<Rectangle Left=\"240\" "
                                               "Top=\"2820\"",
                                               "RequestName=\"ReadSpeeds\">\n<Rectangle Left=\"240\" Top=\"2820\""));

  auto converted = RunTessaly({"convert", in, out});
  EXPECT_EQ(converted.status, 0) << converted.err;
  EXPECT_EQ(converted.err, "warning: TessalyDatabase: Loading url : " + in +
                               "\nlog: DisplayItem.loadXml : request/data missing (ReadSpeeds/VehicleSpeed)\n");
  const std::string written = ReadFileBytes(out);
  EXPECT_NE(sample.find(display), std::string::npos);
  EXPECT_EQ(written.find("DataName=\"VehicleSpeed\""), std::string::npos);
  // Only that display (a line feed, the element and its content) is gone.
  std::size_t start = sample.find(display);
  std::size_t end = sample.find("</Display>", start) + std::string("</Display>").size();
  EXPECT_EQ(written, sample.substr(0, start - 1) + sample.substr(end));

  auto checked = RunTessaly({"check", out});
  EXPECT_EQ(checked.status, 0) << checked.out;
}

TEST(SampleDocumentsTest, KLineSampleIsAnEngineEcuOnKwp2000FastInit) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const TargetItem& ecu = *facade.lib.ActiveTarget();
  const TargetParamItem& p = *ecu.Parametres();
  EXPECT_EQ(ecu.name(), "EC4");
  EXPECT_EQ(ecu.Address(), 122);
  EXPECT_EQ(p.initMode(), 2);
  EXPECT_FALSE(p.multiPoint());
  EXPECT_EQ(p.BaudRate(), 10400);
  EXPECT_EQ(p.key1(), 0xEF);
  EXPECT_EQ(p.key2(), 0x8F);
  EXPECT_EQ(p.TypePanneId(), 3);
}

TEST(SampleDocumentsTest, CanSampleIsTheSameEcuOnDiagOnCanWithExtendedIdentifiers) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu-can.xml"));
  const TargetParamItem& p = *facade.lib.ActiveTarget()->Parametres();
  EXPECT_EQ(p.initMode(), 3);
  EXPECT_EQ(p.BaudRate(), 500000);
  EXPECT_EQ(p.CanXId(), static_cast<std::int32_t>(0x80000000U | 0x18DA7AF1U));
  EXPECT_EQ(p.CanRId(), static_cast<std::int32_t>(0x80000000U | 0x18DAF17AU));
  EXPECT_EQ(facade.lib.ActiveTarget()->datas()->Count(), 42);
  EXPECT_EQ(facade.lib.ActiveTarget()->Requests()->Count(), 20);
}

TEST(SampleDocumentsTest, DataCoverBitsScaledValuesValueListsAndBytes) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const DataItems& data = *facade.lib.ActiveTarget()->datas();
  EXPECT_EQ(data.Count(), 42);
  int scaled = 0, listed = 0, bytes = 0, ascii = 0, narrow = 0, isSigned = 0;
  for (const auto& item : data) {
    if (!item->numerique()) {
      ++bytes;
      if (item->Ascii()) ++ascii;
    } else if (item->liste()) {
      ++listed;
      EXPECT_GT(item->DataListes()->Count(), 1) << item->dataName();
    } else {
      ++scaled;
    }
    if (item->numerique() && item->NumberBits() < 8) ++narrow;
    if (item->Signe()) ++isSigned;
  }
  EXPECT_EQ(scaled, 19);
  EXPECT_EQ(listed, 18);
  EXPECT_EQ(bytes, 5);
  EXPECT_EQ(ascii, 3);
  EXPECT_EQ(narrow, 16);
  EXPECT_EQ(isSigned, 2);
  EXPECT_EQ(data.ItemName("ThrottlePosition")->CoeffC(), 255.0);
  EXPECT_EQ(data.ItemName("CoolantTemperature")->CoeffB(), -40.0);
}

TEST(SampleDocumentsTest, RequestsCarryParametersAndReplyData) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const RequestItems& requests = *facade.lib.ActiveTarget()->Requests();
  EXPECT_EQ(requests.Count(), 20);
  int withParams = 0, withReplies = 0, manual = 0, restricted = 0;
  for (const auto& request : requests) {
    EXPECT_TRUE(request->RequestBytes()->HasBytes()) << request->requestName();
    EXPECT_TRUE(request->ReplyBytes()->HasBytes()) << request->requestName();
    bool param = false, reply = false;
    for (const auto& position : *request->DataPositions()) (position->param() ? param : reply) = true;
    withParams += param;
    withReplies += reply;
    manual += request->ManuelSend();
    restricted += !request->AccesApresVente();
  }
  EXPECT_EQ(withParams, 4);
  EXPECT_EQ(withReplies, 8);
  EXPECT_EQ(manual, 5);
  EXPECT_EQ(restricted, 3);
  std::shared_ptr<DataPositionItem> runTime = requests.ItemDataPositionName("ReadEngineValues", "EngineRunTime");
  ASSERT_TRUE(runTime);
  EXPECT_TRUE(runTime->LittleEndian());
}

TEST(SampleDocumentsTest, DevicesHaveDataLinksAndFailureTestsWithFlags) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const OrganeItems& devices = *facade.lib.ActiveTarget()->Organes();
  EXPECT_EQ(devices.Count(), 10);
  int tests = 0, outputs = 0;
  for (const auto& device : devices) {
    EXPECT_EQ(device->DeviceDatas()->Count(), 2) << device->organeName();
    EXPECT_TRUE(device->request()) << device->organeName();
    outputs += device->OrganeTypeId() == 3;
    for (const auto& test : *device->Tests()) {
      ++tests;
      EXPECT_EQ(test->StoredFlag().Count(), 1);
      EXPECT_EQ(test->PresentFlag().Count(), 1);
    }
  }
  EXPECT_EQ(tests, 19);
  EXPECT_EQ(outputs, 4);
}

TEST(SampleDocumentsTest, ScreensHaveLabelsDisplaysInputsThresholdsButtonsAndScenarios) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const CategoryItems& categories = *facade.lib.ActiveTarget()->Categories();
  EXPECT_EQ(categories.Count(), 3);
  int screens = 0, labels = 0, displays = 0, inputs = 0, requestDisplays = 0, thresholds = 0, sounds = 0;
  int buttons = 0, steps = 0, initSteps = 0;
  for (const auto& category : categories) {
    for (const auto& screen : *category->Screens()) {
      ++screens;
      labels += screen->LabelItems()->Count();
      initSteps += screen->ButtonInit()->ScenarioItems()->Count();
      for (const auto& display : *screen->DisplayItems()) {
        ++displays;
        if (display->TypeDisplay() == kRequestDisplay) {
          ++requestDisplays;
          inputs += display->DisplayExtraItem()->param();
        } else {
          inputs += display->DisplayDataItem()->DataPosition()->param();
        }
        thresholds += display->RangeItems()->Count();
        for (const auto& range : *display->RangeItems()) sounds += range->SonFlag();
      }
      for (const auto& button : *screen->ButtonItems()) {
        if (button->InitButton()) continue;
        ++buttons;
        steps += button->ScenarioItems()->Count();
      }
    }
  }
  EXPECT_EQ(screens, 7);
  EXPECT_EQ(labels, 9);
  EXPECT_EQ(displays, 44);
  EXPECT_EQ(requestDisplays, 2);
  EXPECT_EQ(inputs, 4);
  EXPECT_EQ(thresholds, 61);
  EXPECT_EQ(sounds, 3);
  EXPECT_EQ(buttons, 7);
  EXPECT_EQ(steps, 16);
  EXPECT_EQ(initSteps, 9);
}

TEST(SampleDocumentsTest, AutoIdentificationsAreDistinctRecords) {
  RecordingFacade facade;
  facade.lib.ImportUceFromXml(SamplePath("engine-ecu.xml"));
  const AutoIdentItems& idents = *facade.lib.ActiveTarget()->AutoIdents();
  EXPECT_EQ(idents.Count(), 3);
  std::set<std::string> softs;
  for (const auto& ident : idents) softs.insert(ident->Soft());
  EXPECT_EQ(softs.size(), 3u);
}

}  // namespace
}  // namespace tessaly
