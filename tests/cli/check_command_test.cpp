#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::LineOf;
using testing::ReadFileBytes;
using testing::ReplaceOnce;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;

// The column of the element that `marker` (which starts with its "<") opens in `text`: the
// column of the element's name, as diagnostics give it.
std::size_t ColumnOf(const std::string& text, const std::string& marker) {
  std::size_t at = text.find(marker);
  if (at == std::string::npos) {
    ADD_FAILURE() << "not in the document: " << marker;
    return 0;
  }
  std::size_t lineStart = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
  return (lineStart == std::string::npos ? at : at - lineStart - 1) + 2;
}

// "FILE:LINE:COLUMN" of that element.
std::string At(const std::string& file, const std::string& text, const std::string& marker) {
  return file + ":" + std::to_string(LineOf(text, marker)) + ":" + std::to_string(ColumnOf(text, marker));
}

class CheckCommandTest : public ::testing::Test {
 protected:
  // Writes `text` as the document to check and runs `tessaly check` on it with `extra` arguments.
  testing::CommandResult CheckOf(const std::string& text, std::vector<std::string> extra = {}) {
    WriteFileBytes(in, text);
    std::vector<std::string> args = {"check", in};
    args.insert(args.end(), extra.begin(), extra.end());
    return RunTessaly(args);
  }

  std::string Loading() const { return "warning: TessalyDatabase: Loading url : " + in + "\n"; }

  TempDir dir;
  std::string in = dir.File("ecu.xml");
  std::string sample = ReadFileBytes(SamplePath("engine-ecu.xml"));
};

TEST_F(CheckCommandTest, SamplesAreCleanAndExitZero) {
  for (const char* name : {"engine-ecu.xml", "engine-ecu-can.xml"}) {
    const std::string path = SamplePath(name);
    auto r = RunTessaly({"check", path});
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(r.out,
              "warning: TessalyDatabase: Loading url : " + path + "\n" + path + ": nothing dropped or repaired\n");
    EXPECT_EQ(r.err, "");
  }
}

TEST_F(CheckCommandTest, DamagedCopyNamesEveryDroppedOrRepairedElementWithItsLineInLoadingOrder) {
  std::string text = sample;
  text = ReplaceOnce(text, "<Failures Name=\"Pannes DTC\" Id=\"3\"/>", "<Failures Name=\"Pannes DTC\" Id=\"9\"/>");
  // A second EngineSpeed: the data is dropped, and with it its placement and its display.
  text = ReplaceOnce(text, "<Data Name=\"MilStatus\">", "<Data Name=\"EngineSpeed\">");
  // A nameless request: dropped, and with it the scenario step that sends it.
  text = ReplaceOnce(text, "<Request Name=\"TesterPresent\">", "<Request>");
  text = ReplaceOnce(text, "<Device Name=\"LambdaSensor\"", "<Device");
  text = ReplaceOnce(text, "<StoredFlag>KnockSensorStatus</StoredFlag>", "<StoredFlag>KnockStatus</StoredFlag>");
  text = ReplaceOnce(text, "DataName=\"OilTemperature\" RequestName=\"ReadEngineValues\"",
                     "DataName=\"OilTemperature\" RequestName=\"ReadOilValues\"");
  text = ReplaceOnce(text, "<Screen Name=\"Inputs\"", "<Screen Name=\"ENGINE\"");

  auto r = CheckOf(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(
      r.out,
      Loading() + At(in, text, "<Failures Name=\"Pannes DTC\" Id=\"9\"/>") +
          ": repaired: Failures in target EC4: No failure type of Id 9, read as Id 0 \"Ne contient pas de pannes\"\n" +
          At(in, text, "<Data Name=\"EngineSpeed\">\n<Mnemonic>MIL") +
          ": dropped: Data EngineSpeed: This key is already associated with an element of this collection\n" +
          At(in, text, "<Request>") + ": dropped: Request : RequestItem.loadXml error : Name not defined\n" +
          At(in, text, "<DataItem Name=\"MilStatus\"") +
          ": dropped: DataItem MilStatus in request ReadEngineValues: Data name 'MilStatus' not found, request : "
          "ReadEngineValues\n" +
          At(in, text, "<Device DTC=\"304\"") +
          ": repaired: Device without Name: OrganeItem.loadXml error : Device Name not defined\n"
          "warning: TestItem.LoadXml: Data 'KnockStatus' doesn't exist, remove from StoredFlag list\n" +
          At(in, text, "<StoredFlag>KnockStatus") +
          ": dropped: StoredFlag KnockStatus in test 1 of device KnockSensor: Data 'KnockStatus' doesn't exist, "
          "remove from StoredFlag list\n"
          "log: DisplayItem.loadXml : request/data missing (ReadOilValues/OilTemperature)\n" +
          At(in, text, "<Display Width=\"3600\" Color=\"16777215\" DataName=\"OilTemperature\"") +
          ": dropped: Display in screen Measurements/Engine: request/data missing\n"
          "log: DisplayItem.loadXml : request/data missing (ReadEngineValues/MilStatus)\n" +
          At(in, text, "<Display Width=\"3600\" Color=\"16777215\" DataName=\"MilStatus\"") +
          ": dropped: Display in screen Measurements/Engine: request/data missing\n" +
          At(in, text, "<Screen Name=\"ENGINE\"") +
          ": dropped: Screen Measurements/ENGINE: This key is already associated with an element of this collection\n"
          "log: ScenarioItem.loadXml : request (TesterPresent) missing \n" +
          At(in, text, "<Send Delay=\"0\" RequestName=\"TesterPresent\"") +
          ": dropped: Send of button Write idle speed in screen Actuator tests/Adaptations: request missing\n" + in +
          ": 8 dropped, 2 repaired\n");
}

TEST_F(CheckCommandTest, RepairAloneFailsTheCheck) {
  std::string text = ReplaceOnce(sample, "<Failures Name=\"Pannes DTC\" Id=\"3\"/>", "<Failures Id=\"12\"/>");
  auto r = CheckOf(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            Loading() + At(in, text, "<Failures Id=\"12\"/>") +
                ": repaired: Failures in target EC4: No failure type of Id 12, read as Id 0 \"Ne contient pas de "
                "pannes\"\n" +
                in + ": 0 dropped, 1 repaired\n");
}

TEST_F(CheckCommandTest, ErrorLeftByAReaderIsPrintedAfterTheDropsAndFailsTheCheck) {
  std::string text =
      ReplaceOnce(sample, "<AutoIdent DiagVersion=\"14\" Supplier=\"S023\"", "<AutoIdent Supplier=\"S023\"");
  auto r = CheckOf(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, Loading() + At(in, text, "<AutoIdent Supplier=\"S023\"") +
                       ": dropped: AutoIdent 3 in AutoIdents of target EC4: Object variable or With block variable "
                       "not set\n"
                       "error 91: Tessaly: Object variable or With block variable not set\n" +
                       in + ": 1 dropped, 0 repaired, the import raised error 91\n");
}

TEST_F(CheckCommandTest, TargetErrorWithoutDropsFailsTheCheck) {
  auto r = CheckOf("<xml><tsl:Target Name=\"E\"><Function Name=\"Unknown\"/></tsl:Target></xml>");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, Loading() +
                       "error 1: loadXml: Bad xml file, The function 'Unknown' doesn't exist in the database "
                       "structure, Contact Tessaly HotLine\n" +
                       in + ": 0 dropped, 0 repaired, the import raised error 1\n");
}

TEST_F(CheckCommandTest, DocumentThatDoesNotParseFailsWithTheParserReason) {
  auto r = CheckOf("<xml>\n<tsl:Target Name=\"E\">\n</xml>\n");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            "error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=Start-end tags mismatch at line 3, "
            "column 3\n" +
                in + ": 0 dropped, 0 repaired, the import raised error 1\n");
}

TEST_F(CheckCommandTest, MissingFileFailsTheCheck) {
  auto r = RunTessaly({"check", in});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=cannot open '" + in +
                       "': No such file or directory\n" + in + ": 0 dropped, 0 repaired, the import raised error 1\n");
}

TEST_F(CheckCommandTest, JsonListsDiagnosticsWarningsLogEntriesAndTheError) {
  std::string text = sample;
  text = ReplaceOnce(text, "<Item Value=\"1\" Text=\"Cranking\"/>",
                     "<Item Value=\"1\" Text=\"Cranking\"/><Item Value=\"1\" Text=\"Starting\"/>");
  text = ReplaceOnce(text, "<Category Name=\"Faults\">", "<Category Name=\"Measurements\">");
  text = ReplaceOnce(text, "<Send Delay=\"2000\" RequestName=\"EcuReset\"",
                     "<Send Delay=\"2000\" RequestName=\"EcuRestart\"");
  text = ReplaceOnce(text, "<AutoIdent DiagVersion=\"14\" Supplier=\"S023\"", "<AutoIdent Supplier=\"S023\"");
  auto r = CheckOf(text, {"--json"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "");
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["file"], in);
  EXPECT_EQ(j["clean"], false);
  EXPECT_EQ(j["dropped"], 4);
  EXPECT_EQ(j["repaired"], 0);
  ASSERT_EQ(j["diagnostics"].size(), 4u);
  EXPECT_EQ(j["diagnostics"][0], nlohmann::json({{"action", "dropped"},
                                                 {"line", LineOf(text, "<Item Value=\"1\" Text=\"Starting\"/>")},
                                                 {"column", ColumnOf(text, "<Item Value=\"1\" Text=\"Starting\"/>")},
                                                 {"what", "Item 1 in data EngineState"},
                                                 {"why", "Duplicate value '1' with label 'Starting'"}}));
  EXPECT_EQ(j["diagnostics"][1]["what"], "Category Measurements");
  EXPECT_EQ(j["diagnostics"][1]["why"], "Duplicate category");
  EXPECT_EQ(j["diagnostics"][1]["line"],
            LineOf(text, "<Category Name=\"Measurements\">\n\n<Screen Name=\"SensorStatus\""));
  EXPECT_EQ(j["diagnostics"][2]["what"], "Send of button Reset adaptations in screen Actuator tests/Adaptations");
  EXPECT_EQ(j["diagnostics"][2]["why"], "request missing");
  EXPECT_EQ(j["diagnostics"][3]["what"], "AutoIdent 3 in AutoIdents of target EC4");
  EXPECT_EQ(j["warnings"],
            nlohmann::json::array({{{"libClass", "TessalyDatabase"}, {"message", "Loading url : " + in}}}));
  EXPECT_EQ(j["log"], nlohmann::json::array({"ScenarioItem.loadXml : request (EcuRestart) missing "}));
  EXPECT_EQ(j["error"], nlohmann::json({{"number", 91},
                                        {"source", "Tessaly"},
                                        {"description", "Object variable or With block variable not set"}}));
}

TEST_F(CheckCommandTest, JsonOfACleanDocument) {
  auto r = RunTessaly({"check", "--json", SamplePath("engine-ecu.xml")});
  EXPECT_EQ(r.status, 0) << r.out;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["clean"], true);
  EXPECT_EQ(j["dropped"], 0);
  EXPECT_EQ(j["repaired"], 0);
  EXPECT_TRUE(j["diagnostics"].empty());
  EXPECT_EQ(j["warnings"].size(), 1u);
  EXPECT_TRUE(j["log"].empty());
  EXPECT_TRUE(j["error"].is_null());
  EXPECT_EQ(j["onSaving"], nlohmann::json({{"changes", nlohmann::json::array()}, {"error", nullptr}}));
}

TEST_F(CheckCommandTest, WhatSavingWouldChangeIsListedAfterTheLoadReportWithoutFailingTheCheck) {
  // A reference "0" loads as false; it is saved as no attribute, which loads as true.
  std::string text = ReplaceOnce(sample, "<Language Name=\"English\" Reference=\"1\"/>",
                                 "<Language Name=\"English\" Reference=\"0\"/>");
  auto r = CheckOf(text);
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out, Loading() + in + ": on saving: changed target: reference false -> true\n" + in +
                       ": nothing dropped or repaired; 1 change on saving\n");
}

TEST_F(CheckCommandTest, ChangesOnSavingFollowTheDropsAndJoinTheirSummary) {
  std::string text = ReplaceOnce(sample, "<Failures Name=\"Pannes DTC\" Id=\"3\"/>", "<Failures Id=\"12\"/>");
  text = ReplaceOnce(text, "<Language Name=\"English\" Reference=\"1\"/>", "<Language Name=\"English\" Reference=\"0\"/>");
  auto r = CheckOf(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, Loading() + At(in, text, "<Failures Id=\"12\"/>") +
                       ": repaired: Failures in target EC4: No failure type of Id 12, read as Id 0 \"Ne contient pas de "
                       "pannes\"\n" +
                       in + ": on saving: changed target: reference false -> true\n" + in +
                       ": 0 dropped, 1 repaired; 1 change on saving\n");
}

TEST_F(CheckCommandTest, ACanEcuReadWithASendIdItsFunctionLacksIsSavedWithoutIdentifiers) {
  // The identifiers written are the function's, which takes them from this document: a receive
  // identifier only. So the save has no SendId, and loads in the mode without identifiers.
  auto r = CheckOf(
      "<xml><tsl:Target Name=\"E\"><Function Name=\"Injection\" Address=\"122\"/>"
      "<CAN BaudRate=\"500000\"><SendId>none</SendId><ReceiveId><CANId Value=\"1800\"/></ReceiveId></CAN>"
      "</tsl:Target></xml>");
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.out, Loading() + in + ": on saving: changed parameters: initMode 3 -> 255\n" + in +
                       ": nothing dropped or repaired; 1 change on saving\n");
}

TEST_F(CheckCommandTest, AButtonTakingOverTheInitButtonLeavesTheButtonListOnSaving) {
  // The Boot button becomes the screen's init button: saved in the screen's own form, without
  // its message, it is no longer one of the screen's buttons on the next load.
  auto r = CheckOf(
      "<xml><tsl:Target Name=\"E\"><Function Name=\"Injection\" Address=\"122\"/>"
      "<ds:Categories><Category Name=\"C\"><Screen Name=\"S\">"
      "<Button Text=\"Before\"/><Button Text=\"Boot\" InitButton=\"1\"><Message Text=\"Wait\"/></Button>"
      "<Button Text=\"After\"/></Screen></Category></ds:Categories></tsl:Target></xml>");
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.out, Loading() + in + ": on saving: changed button 3 of screen C/S: caption \"Boot\" -> \"After\"\n" +
                       in + ": on saving: changed button 3 of screen C/S: InitButton true -> false\n" + in +
                       ": on saving: changed button 3 of screen C/S: Message \"Wait\" -> \"\"\n" + in +
                       ": on saving: removed button 4 of screen C/S\n" + in +
                       ": nothing dropped or repaired; 4 changes on saving\n");
}

TEST_F(CheckCommandTest, JsonListsTheChangesOnSavingAsDiffDoes) {
  std::string text = ReplaceOnce(sample, "<Language Name=\"English\" Reference=\"1\"/>",
                                 "<Language Name=\"English\" Reference=\"0\"/>");
  auto r = CheckOf(text, {"--json"});
  EXPECT_EQ(r.status, 0) << r.out;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["clean"], true);
  EXPECT_EQ(j["onSaving"], nlohmann::json({{"changes",
                                             {{{"change", "changed"},
                                               {"item", "target"},
                                               {"where", {{{"kind", "target"}, {"key", nullptr}}}},
                                               {"property", "reference"},
                                               {"old", false},
                                               {"new", true}}}},
                                            {"error", nullptr}}));
}

TEST_F(CheckCommandTest, FunctionsTableAndParametersAreUsedForLoading) {
  // Failure type 7 is unknown to the built-in table, and known to this parameter document.
  std::string params = dir.File("params.xml");
  WriteFileBytes(params,
                 "<xml><Failures><Failure Id=\"3\"><Name>Codes</Name></Failure><Failure Id=\"7\"><Name>Seven</Name>"
                 "</Failure></Failures><DeviceTypes><DeviceType Id=\"1\"><Name>In</Name></DeviceType>"
                 "<DeviceType Id=\"3\"><Name>Out</Name></DeviceType></DeviceTypes></xml>");
  std::string text = ReplaceOnce(sample, "<Failures Name=\"Pannes DTC\" Id=\"3\"/>", "<Failures Id=\"7\"/>");
  EXPECT_EQ(CheckOf(text).status, 1);
  auto r = CheckOf(text, {"--params", params});
  EXPECT_EQ(r.status, 0) << r.out;
}

TEST_F(CheckCommandTest, UnreadableFunctionsTableIsPrintedOnStandardErrorAndExitsOne) {
  auto r = RunTessaly({"check", SamplePath("engine-ecu.xml"), "--functions", "/nonexistent/f.xml"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err,
            "error 1: tessaly: Cannot read the functions table /nonexistent/f.xml: cannot open "
            "'/nonexistent/f.xml': No such file or directory\n");
}

TEST_F(CheckCommandTest, MissingFileArgumentIsAUsageError) {
  auto r = RunTessaly({"check"});
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("FILE"), std::string::npos) << r.err;
}

TEST_F(CheckCommandTest, HelpSucceeds) {
  auto r = RunTessaly({"check", "--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("--json"), std::string::npos) << r.out;
}

}  // namespace
}  // namespace tessaly
