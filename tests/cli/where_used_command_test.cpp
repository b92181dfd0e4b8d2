#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::LoadingWarning;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;

// A small ECU whose names are used in every way a name can be used: Speed is placed in two
// requests and shown through both, Temp and Speed are device data, Status is a test flag, the
// requests are shown, sent by an init button and a button, and are freeze-frame requests.
const std::string kDocument = std::string(TESSALY_TEST_DOCUMENTS) + "/cli/xref-ecu.xml";

TEST(WhereUsedCommandTest, DataListsPlacementsDisplaysAndDeviceLinks) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Speed"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Data Speed\n"
            "Data positions: 2\n"
            "  ReadValues: byte 3, bit 0, reply, reference\n"
            "  ReadFreeze: byte 2, bit 0, reply\n"
            "Displays: 2\n"
            "  Main/Live: display 1 through ReadValues\n"
            "  Main/Live: display 3 through ReadFreeze\n"
            "Device data: 1\n"
            "  Fan\n"
            "Test flags: 0\n");
}

TEST(WhereUsedCommandTest, DataListsTestFlagsWithTheirLists) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Status"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "Data Status\n"
            "Data positions: 1\n"
            "  ReadValues: byte 5, bit 0, reply, reference\n"
            "Displays: 0\n"
            "Device data: 0\n"
            "Test flags: 1\n"
            "  Pump: test 1, stored and present flag\n");
}

TEST(WhereUsedCommandTest, DataLinkShowsTheFailureFlagAndInputsAreMarked) {
  auto temp = RunTessaly({"where-used", kDocument, "--data", "Temp"});
  EXPECT_EQ(temp.status, 0) << temp.err;
  EXPECT_NE(temp.out.find("Device data: 1\n  Pump, failure flag\n"), std::string::npos) << temp.out;

  auto setpoint = RunTessaly({"where-used", kDocument, "--data", "Setpoint"});
  EXPECT_EQ(setpoint.status, 0) << setpoint.err;
  EXPECT_EQ(setpoint.out,
            "Data Setpoint\n"
            "Data positions: 1\n"
            "  WriteSetpoint: byte 3, bit 0, parameter\n"
            "Displays: 1\n"
            "  Main/Adjust: input 1 through WriteSetpoint\n"
            "Device data: 0\n"
            "Test flags: 0\n");
}

TEST(WhereUsedCommandTest, UnusedDataListsNothing) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Spare"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "Data Spare\nData positions: 0\nDisplays: 0\nDevice data: 0\nTest flags: 0\n");
}

TEST(WhereUsedCommandTest, RequestListsDisplaysStepsAndFreezeFrameDevices) {
  auto r = RunTessaly({"where-used", kDocument, "--request", "ReadValues"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(kDocument));
  EXPECT_EQ(r.out,
            "Request ReadValues\n"
            "Data displays: 2\n"
            "  Main/Live: display 1 of Speed\n"
            "  Main/Live: display 2 of Temp\n"
            "Request displays: 0\n"
            "Scenario steps: 2\n"
            "  Main/Live: init button, step 1\n"
            "  Main/Live: button \"Restart\", step 2\n"
            "Freeze-frame devices: 2\n"
            "  Pump\n"
            "  Fan\n");
}

TEST(WhereUsedCommandTest, RequestListsRequestDisplaysAndInputs) {
  auto reset = RunTessaly({"where-used", kDocument, "--request", "Reset"});
  EXPECT_EQ(reset.status, 0) << reset.err;
  EXPECT_EQ(reset.out,
            "Request Reset\n"
            "Data displays: 0\n"
            "Request displays: 1\n"
            "  Main/Live: display 4\n"
            "Scenario steps: 1\n"
            "  Main/Live: button \"Restart\", step 1\n"
            "Freeze-frame devices: 0\n");

  auto write = RunTessaly({"where-used", kDocument, "--request", "WriteSetpoint"});
  EXPECT_EQ(write.status, 0) << write.err;
  EXPECT_EQ(write.out,
            "Request WriteSetpoint\n"
            "Data displays: 1\n"
            "  Main/Adjust: input 1 of Setpoint\n"
            "Request displays: 1\n"
            "  Main/Adjust: input 2\n"
            "Scenario steps: 0\n"
            "Freeze-frame devices: 0\n");
}

TEST(WhereUsedCommandTest, NamesAreFoundIgnoringLetterCaseAndPrintedAsTheDocumentSpellsThem) {
  auto r = RunTessaly({"where-used", kDocument, "--request", "readvalues"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "Request ReadValues");
  EXPECT_NE(r.out.find("Scenario steps: 2\n"), std::string::npos);
}

TEST(WhereUsedCommandTest, DataAsJson) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Speed", "--json"});
  ASSERT_EQ(r.status, 0) << r.err;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["file"], kDocument);
  EXPECT_EQ(j["data"], "Speed");
  EXPECT_EQ(j["dataPositions"],
            nlohmann::json::parse(R"([{"request":"ReadValues","firstByte":3,"bitOffset":0,"param":false,"reference":true},
                                      {"request":"ReadFreeze","firstByte":2,"bitOffset":0,"param":false,"reference":false}])"));
  EXPECT_EQ(j["displays"],
            nlohmann::json::parse(R"([{"category":"Main","screen":"Live","display":1,"input":false,"request":"ReadValues"},
                                      {"category":"Main","screen":"Live","display":3,"input":false,"request":"ReadFreeze"}])"));
  EXPECT_EQ(j["deviceData"], nlohmann::json::parse(R"([{"device":"Fan","failureFlag":false}])"));
  EXPECT_EQ(j["testFlags"], nlohmann::json::array());

  auto status = RunTessaly({"where-used", kDocument, "--data", "Status", "--json"});
  ASSERT_EQ(status.status, 0) << status.err;
  EXPECT_EQ(nlohmann::json::parse(status.out)["testFlags"],
            nlohmann::json::parse(R"([{"device":"Pump","test":1,"stored":true,"present":true}])"));
}

TEST(WhereUsedCommandTest, RequestAsJson) {
  auto r = RunTessaly({"where-used", kDocument, "--request", "ReadValues", "--json"});
  ASSERT_EQ(r.status, 0) << r.err;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["request"], "ReadValues");
  EXPECT_EQ(j["dataDisplays"],
            nlohmann::json::parse(R"([{"category":"Main","screen":"Live","display":1,"input":false,"data":"Speed"},
                                      {"category":"Main","screen":"Live","display":2,"input":false,"data":"Temp"}])"));
  EXPECT_EQ(j["requestDisplays"], nlohmann::json::array());
  EXPECT_EQ(j["scenarioSteps"], nlohmann::json::parse(
                                    R"([{"category":"Main","screen":"Live","button":"","initButton":true,"step":1,"delay":100},
                                        {"category":"Main","screen":"Live","button":"Restart","initButton":false,"step":2,"delay":0}])"));
  EXPECT_EQ(j["freezeFrameDevices"], nlohmann::json::parse(R"(["Pump","Fan"])"));
}

TEST(WhereUsedCommandTest, SampleDataPlacedInTwoRequestsIsShownThroughBoth) {
  const std::string sample = SamplePath("engine-ecu.xml");
  auto r = RunTessaly({"where-used", sample, "--data", "EngineSpeed"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(sample));
  EXPECT_EQ(r.out,
            "Data EngineSpeed\n"
            "Data positions: 2\n"
            "  ReadEngineValues: byte 3, bit 0, reply, reference\n"
            "  ReadInjectionValues: byte 14, bit 0, reply\n"
            "Displays: 2\n"
            "  Measurements/Engine: display 1 through ReadEngineValues\n"
            "  Measurements/FuelIgnition: display 9 through ReadInjectionValues\n"
            "Device data: 0\n"
            "Test flags: 0\n");
}

TEST(WhereUsedCommandTest, SampleFreezeFrameRequestIsUsedByEveryDevice) {
  auto r = RunTessaly({"where-used", SamplePath("engine-ecu.xml"), "--request", "ReadSensorStatus"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Freeze-frame devices: 10\n  CoolantTemperatureSensor\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("  Faults/SensorStatus: init button, step 2\n"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("  Faults/SensorStatus: button \"Clear fault codes\", step 3\n"), std::string::npos) << r.out;
}

TEST(WhereUsedCommandTest, UnknownDataIsAnErrorNamingIt) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Torque"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: tessaly.where-used: no data named 'Torque'\n");
}

TEST(WhereUsedCommandTest, UnknownRequestIsAnErrorNamingIt) {
  auto r = RunTessaly({"where-used", kDocument, "--request", "Speed"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(kDocument) + "error 1: tessaly.where-used: no request named 'Speed'\n");
}

TEST(WhereUsedCommandTest, NeitherDataNorRequestIsAUsageError) {
  auto r = RunTessaly({"where-used", kDocument});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "Exactly 1 option from [--data,--request] is required\nRun with --help for more information.\n");
}

TEST(WhereUsedCommandTest, BothDataAndRequestIsAUsageError) {
  auto r = RunTessaly({"where-used", kDocument, "--data", "Speed", "--request", "ReadValues"});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err,
            "Exactly 1 option from [--data,--request] is required and 2 were given\n"
            "Run with --help for more information.\n");
}

TEST(WhereUsedCommandTest, ImportErrorExitsOneWithoutAList) {
  TempDir dir;
  const std::string bad = dir.File("bad.xml");
  WriteFileBytes(bad, "<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  auto r = RunTessaly({"where-used", bad, "--data", "Speed"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(bad) + "error 1: loadXml: Bad xml file, Target Name not found\n");
}

}  // namespace
}  // namespace tessaly
