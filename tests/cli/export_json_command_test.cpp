#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using Json = nlohmann::json;
using testing::ReadFileBytes;
using testing::LoadingWarning;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;

std::string DocumentPath(const std::string& name) { return std::string(TESSALY_TEST_DOCUMENTS) + "/json/" + name; }

std::string SchemaPath() {
  return (std::filesystem::path(TESSALY_TEST_DOCUMENTS).parent_path().parent_path() / "docs" / "tessaly.schema.json")
      .string();
}


// The item of `array` whose `property` is `value`; a test failure and null when there is none.
Json ItemWith(const Json& array, const std::string& property, const Json& value) {
  for (const Json& item : array)
    if (item.at(property) == value) return item;
  ADD_FAILURE() << "no item with " << property << " = " << value.dump();
  return nullptr;
}

std::vector<std::string> Names(const Json& array, const std::string& property) {
  std::vector<std::string> names;
  for (const Json& item : array) names.push_back(item.at(property).get<std::string>());
  return names;
}

// Exports `path` and parses what the command printed.
Json ExportOf(const std::string& path) {
  auto r = RunTessaly({"export-json", path});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, LoadingWarning(path));
  return Json::parse(r.out);
}

struct Validation {
  int status = -1;
  std::string output;
};

// Validates each JSON file against the schema with the jsonschema module of Debian's Python
// (python3-jsonschema): status 0 and "valid" when every file conforms, else 1 and one line per
// violation.
Validation Validate(const std::vector<std::string>& files) {
  const std::string python = std::filesystem::exists("/usr/bin/python3") ? "/usr/bin/python3" : "python3";
  TempDir dir;
  const std::string script = dir.File("validate.py");
  WriteFileBytes(script,
                 "import json, sys\n"
                 "from jsonschema import Draft202012Validator\n"
                 "schema = json.load(open(sys.argv[1]))\n"
                 "Draft202012Validator.check_schema(schema)\n"
                 "validator = Draft202012Validator(schema)\n"
                 "errors = []\n"
                 "for path in sys.argv[2:]:\n"
                 "    for e in validator.iter_errors(json.load(open(path))):\n"
                 "        errors.append(path + ': ' + '/'.join(str(p) for p in e.absolute_path) + ': ' + e.message)\n"
                 "print('\\n'.join(errors) if errors else 'valid')\n"
                 "sys.exit(1 if errors else 0)\n");
  std::string command = python + " '" + script + "' '" + SchemaPath() + "'";
  for (const std::string& file : files) command += " '" + file + "'";
  command += " >'" + dir.File("out") + "' 2>&1";
  const int raw = std::system(command.c_str());
  Validation v;
  v.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  v.output = ReadFileBytes(dir.File("out"));
  return v;
}

TEST(ExportJsonCommand, KLineSampleGivesItsTargetParametersAndCounts) {
  const Json j = ExportOf(SamplePath("engine-ecu.xml"));
  EXPECT_EQ(j.at("name"), "EC4");
  EXPECT_EQ(j.at("Address"), 122);
  EXPECT_EQ(j.at("Langue"), "English");
  EXPECT_EQ(j.at("reference"), true);
  EXPECT_EQ(j.at("Email"), "diagnostics@example.com");
  EXPECT_EQ(j.at("Group"), "Powertrain");
  EXPECT_EQ(j.at("Projects"), Json::parse(R"(["K9X", "M4R"])"));
  const Json& p = j.at("Parametres");
  EXPECT_EQ(p.at("initMode"), 2);
  EXPECT_EQ(p.at("multiPoint"), false);
  EXPECT_EQ(p.at("key1"), 239);
  EXPECT_EQ(p.at("key2"), 143);
  EXPECT_EQ(p.at("BaudRate"), 10400);
  EXPECT_EQ(p.at("InterByteDelay"), 5);
  EXPECT_EQ(p.at("ReplyToRequestDelay"), 55);
  EXPECT_EQ(p.at("RequestToReplyTimeout"), 50);
  EXPECT_EQ(p.at("TesterPresentDelay"), 2000);
  EXPECT_EQ(p.at("ErrorDelay"), 500);
  EXPECT_EQ(p.at("TypePanneId"), 3);
  EXPECT_EQ(p.at("TypePanne"), "Pannes DTC");
  EXPECT_EQ(p.at("Reprogrammable"), "EC4_BOOT");
  EXPECT_EQ(p.at("DateOfficialisation"), "2004-03-15");
  EXPECT_EQ(p.at("ToolAddress"), 241);
  EXPECT_EQ(p.at("CanXId"), -1);
  EXPECT_EQ(j.at("datas").size(), 42U);
  EXPECT_EQ(j.at("Requests").size(), 20U);
  EXPECT_EQ(j.at("Organes").size(), 10U);
  EXPECT_EQ(j.at("Categories").size(), 3U);
  EXPECT_EQ(j.at("AutoIdents").size(), 3U);
  EXPECT_EQ(j.at("AutoIdents").at(0),
            Json::parse(R"({"DiagNumber": 12, "SupplierCode": "S017", "Soft": "EC4_0412", "Version": "04.12"})"));
}

TEST(ExportJsonCommand, DataItemCarriesEveryPropertyWithItsTypeInModelOrder) {
  const Json j = ExportOf(SamplePath("engine-ecu.xml"));
  // Parsed again keeping the order in which the properties were written.
  const auto ordered = nlohmann::ordered_json::parse(RunTessaly({"export-json", SamplePath("engine-ecu.xml")}).out);
  EXPECT_EQ(ordered.at("datas").at(0).dump(),
            R"({"dataName":"EngineSpeed","NumberBits":16,"numerique":true,"liste":false,"Unite":"rpm","Signe":false,)"
            R"("CoeffA":0.25,"CoeffB":0.0,"CoeffC":1.0,"DataFormat":"%.0f","Ascii":false,"Mnemo":"N",)"
            R"("Description":"Crankshaft speed, averaged over one revolution","Fiche":"","DataListes":[]})");
  const Json vin = ItemWith(j.at("datas"), "dataName", "Vin");
  EXPECT_EQ(vin.at("numerique"), false);
  EXPECT_EQ(vin.at("NumberBits"), 136);
  EXPECT_EQ(vin.at("Ascii"), true);
  const Json mil = ItemWith(j.at("datas"), "dataName", "MilStatus");
  EXPECT_EQ(mil.at("liste"), true);
  EXPECT_EQ(mil.at("DataListes"), Json::parse(R"([{"Valeur": 0, "libelle": "Off", "Info": ""},
                                                  {"Valeur": 1, "libelle": "On", "Info": ""}])"));
}

TEST(ExportJsonCommand, RequestHoldsItsPositionsInDocumentOrder) {
  const Json j = ExportOf(SamplePath("engine-ecu.xml"));
  const Json request = ItemWith(j.at("Requests"), "requestName", "ReadEngineValues");
  EXPECT_EQ(request.at("RequestBytes"), "21 01");
  EXPECT_EQ(request.at("ReplyBytes"), "61 01");
  EXPECT_EQ(request.at("LengthDatas"), 16);
  EXPECT_EQ(request.at("Commentaire"), "Read cyclically while an engine screen is open");
  EXPECT_EQ(Names(request.at("DataPositions"), "dataName"),
            (std::vector<std::string>{"EngineSpeed", "CoolantTemperature", "IntakeAirTemperature", "OilTemperature",
                                      "ManifoldPressure", "VehicleSpeed", "BatteryVoltage", "EngineState",
                                      "MilStatus", "EngineRunTime"}));
  EXPECT_EQ(request.at("DataPositions").at(8),
            Json::parse(R"({"dataName": "MilStatus", "StartOctet": 12, "StartBit": 2, "LittleEndian": false,
                            "param": false, "reference": true})"));
  EXPECT_EQ(request.at("DataPositions").at(9).at("LittleEndian"), true);
  const Json adjustment = ItemWith(j.at("Requests"), "requestName", "StartAdjustmentSession");
  EXPECT_EQ(adjustment.at("AccesApresVente"), false);
  EXPECT_EQ(adjustment.at("AccesTous"), true);
}

TEST(ExportJsonCommand, DeviceHoldsItsDataAndTests) {
  const Json j = ExportOf(SamplePath("engine-ecu.xml"));
  const Json device = j.at("Organes").at(0);
  EXPECT_EQ(device.at("organeName"), "CoolantTemperatureSensor");
  EXPECT_EQ(device.at("OrganeDTC"), 277);
  EXPECT_EQ(device.at("requestName"), "ReadSensorStatus");
  EXPECT_EQ(device.at("Mnemonique"), "CTS");
  EXPECT_EQ(device.at("DeviceDatas"), Json::parse(R"([{"dataName": "CoolantTemperature", "FlagPanne": false},
                                                      {"dataName": "CoolantSensorStatus", "FlagPanne": true}])"));
  EXPECT_EQ(device.at("Tests").at(0),
            Json::parse(R"({"testType": 1, "Description": "Signal too low, short circuit to ground", "OBD": 279,
                            "Severity": 2, "Autocheck": true, "StoredFlag": ["CoolantSensorStatus"],
                            "PresentFlag": ["CoolantSensorStatus"]})"));
}

TEST(ExportJsonCommand, ScreensNestLabelsButtonsDisplaysAndThresholds) {
  const Json j = ExportOf(SamplePath("engine-ecu.xml"));
  const Json& category = j.at("Categories").at(0);
  EXPECT_EQ(category.at("categoryName"), "Measurements");
  const Json& screen = category.at("Screens").at(0);
  EXPECT_EQ(screen.at("screenName"), "Engine");
  EXPECT_EQ(screen.at("ScreenWidth"), 9600);
  EXPECT_EQ(screen.at("LabelItems").at(0).at("LabelText"), "Engine: live values");
  EXPECT_EQ(screen.at("LabelItems").at(0).at("FontSize"), 12);
  // The init button comes first, holding the steps sent when the screen opens.
  EXPECT_EQ(screen.at("ButtonItems").size(), 1U);
  EXPECT_EQ(screen.at("ButtonItems").at(0).at("InitButton"), true);
  EXPECT_EQ(screen.at("ButtonItems").at(0).at("ScenarioItems"),
            Json::parse(R"([{"Index": 1, "requestName": "StartDiagnosticSession", "delay": 100}])"));
  EXPECT_EQ(screen.at("DisplayItems").size(), 10U);
  const Json& display = screen.at("DisplayItems").at(0);
  EXPECT_EQ(display.at("TypeDisplay"), 3);
  EXPECT_EQ(display.at("CaptionWidth"), 3600);
  EXPECT_EQ(display.at("DisplayDataItem"),
            Json::parse(R"({"dataName": "EngineSpeed", "requestName": "ReadEngineValues"})"));
  EXPECT_EQ(display.at("DisplayExtraItem"), nullptr);
  EXPECT_EQ(display.at("RangeItems").at(2),
            Json::parse(R"({"Seuil": 6800, "Couleur": 255, "SonFlag": true, "Son": 1000, "SoundName": "1000"})"));
}

TEST(ExportJsonCommand, CanSampleGivesItsExtendedIdentifiers) {
  const Json j = ExportOf(SamplePath("engine-ecu-can.xml"));
  EXPECT_EQ(j.at("name"), "EC4-CAN");
  const Json& p = j.at("Parametres");
  EXPECT_EQ(p.at("initMode"), 3);
  EXPECT_EQ(p.at("multiPoint"), true);
  EXPECT_EQ(p.at("BaudRate"), 500000);
  // Bit 31 marks a 29-bit identifier: 0x18DA7AF1 and 0x18DAF17A.
  EXPECT_EQ(p.at("CanXId"), -1730512143);
  EXPECT_EQ(p.at("CanRId"), -1730481798);
}

TEST(ExportJsonCommand, DocumentWithEveryKindKeepsEachValue) {
  const Json j = ExportOf(DocumentPath("every-kind.xml"));
  EXPECT_EQ(j.at("Href"), "http://example.com/ecu");
  EXPECT_EQ(j.at("Upload"), "ftp://example.com/in");
  const Json& p = j.at("Parametres");
  EXPECT_EQ(p.at("Comment"), "Body controller with one of every kind of item");
  EXPECT_EQ(p.at("initMode"), 1);
  EXPECT_EQ(p.at("KW2Timeout"), 400);
  EXPECT_EQ(p.at("KW2Delay"), 40);
  EXPECT_EQ(p.at("FirstRequestDelay"), 30);
  EXPECT_EQ(p.at("LittleEndian"), true);
  // Reading the tool address leaves the send identifier as it was.
  EXPECT_EQ(p.at("ToolAddress"), 245);
  EXPECT_EQ(p.at("CanXId"), -1);

  const Json door = ItemWith(j.at("datas"), "dataName", "DoorState");
  EXPECT_EQ(door.at("Fiche"), "Read from the door switch");
  EXPECT_EQ(door.at("DataListes").at(1), Json::parse(R"({"Valeur": 1, "libelle": "Open", "Info": "Interior light on"})"));
  EXPECT_EQ(door.at("DataListes").at(2).at("Valeur"), -1);
  const Json cabin = ItemWith(j.at("datas"), "dataName", "CabinTemperature");
  EXPECT_EQ(cabin.at("Signe"), true);
  EXPECT_EQ(cabin.at("CoeffA"), 0.1);
  EXPECT_EQ(cabin.at("CoeffB"), -40);
  EXPECT_EQ(cabin.at("CoeffC"), 2);

  const Json read = ItemWith(j.at("Requests"), "requestName", "ReadBody");
  EXPECT_EQ(read.at("LgVariable"), true);
  EXPECT_EQ(read.at("ShiftBytesCount"), 1);
  EXPECT_EQ(read.at("DossierMaintenabilite"), true);
  EXPECT_EQ(read.at("DataPositions").at(1).at("LittleEndian"), false);
  EXPECT_EQ(read.at("DataPositions").at(2).at("LittleEndian"), true);
  const Json write = ItemWith(j.at("Requests"), "requestName", "WriteCalibration");
  EXPECT_EQ(write.at("ManuelSend"), true);
  for (const char* right : {"AccesTous", "AccesUsine", "AccesApresVente", "AccesEtudes", "AccesConstructeur"})
    EXPECT_EQ(write.at(right), false) << right;
  EXPECT_EQ(write.at("DataPositions").at(0).at("param"), true);
  EXPECT_EQ(ItemWith(j.at("Requests"), "requestName", "LampTest").at("ReplyBytes"), "");

  const Json sw = ItemWith(j.at("Organes"), "organeName", "DoorSwitch");
  EXPECT_EQ(sw.at("OrganeOBD"), 9001);
  EXPECT_EQ(sw.at("OrganeTypeId"), 2);
  EXPECT_EQ(sw.at("Tests").at(1).at("Autocheck"), false);
  EXPECT_EQ(sw.at("Tests").at(1).at("PresentFlag"), Json::array());
  EXPECT_EQ(ItemWith(j.at("Organes"), "organeName", "CabinSensor").at("Tests"), Json::array());

  const Json& screen = j.at("Categories").at(0).at("Screens").at(0);
  EXPECT_EQ(screen.at("WindowState"), 2);
  EXPECT_EQ(screen.at("ScreenColor"), 12632256);
  const Json& label = screen.at("LabelItems").at(0);
  EXPECT_EQ(label.at("FontSize").dump(), "9.75");
  EXPECT_EQ(label.at("FontItalic"), true);
  EXPECT_EQ(label.at("Alignment"), 1);
  const Json& button = screen.at("ButtonItems").at(1);
  EXPECT_EQ(button.at("caption"), "Lamp test");
  EXPECT_EQ(button.at("FontSize").dump(), "8.25");
  EXPECT_EQ(button.at("Message"), "Switch the lamp on?");
  EXPECT_EQ(Names(button.at("ScenarioItems"), "requestName"), (std::vector<std::string>{"LampTest", "ReadBody"}));
  const Json& displays = screen.at("DisplayItems");
  ASSERT_EQ(displays.size(), 4U);
  EXPECT_EQ(displays.at(0).at("RangeItems").at(0).at("Seuil"), -0.5);
  EXPECT_EQ(displays.at(1).at("TypeDisplay"), 1);
  EXPECT_EQ(displays.at(1).at("DisplayExtraItem"), Json::parse(R"({"requestName": "ReadBody", "param": false})"));
  EXPECT_EQ(displays.at(2).at("DisplayExtraItem"), Json::parse(R"({"requestName": "LampTest", "param": true})"));
  EXPECT_EQ(displays.at(3).at("DisplayDataItem"),
            Json::parse(R"({"dataName": "LampCommand", "requestName": "LampTest"})"));
  EXPECT_EQ(j.at("Categories").at(1).at("Screens"), Json::array());
}

TEST(ExportJsonCommand, OutputOptionWritesTheSameTextToTheFile) {
  TempDir dir;
  const std::string path = SamplePath("engine-ecu.xml");
  const std::string out = dir.File("ecu.json");
  auto printed = RunTessaly({"export-json", path});
  auto written = RunTessaly({"export-json", path, "-o", out});
  EXPECT_EQ(written.status, 0) << written.err;
  EXPECT_EQ(written.out, "");
  EXPECT_EQ(written.err, LoadingWarning(path));
  EXPECT_EQ(ReadFileBytes(out), printed.out);
  EXPECT_EQ(printed.out.substr(0, 18), "{\n  \"name\": \"EC4\",");
  EXPECT_EQ(printed.out.back(), '\n');
}

TEST(ExportJsonCommand, ExportsOfBothSamplesAndTheEveryKindDocumentMatchTheSchema) {
  TempDir dir;
  std::vector<std::string> files;
  for (const std::string& path :
       {SamplePath("engine-ecu.xml"), SamplePath("engine-ecu-can.xml"), DocumentPath("every-kind.xml")}) {
    files.push_back(dir.File(std::to_string(files.size()) + ".json"));
    auto r = RunTessaly({"export-json", path, "-o", files.back()});
    ASSERT_EQ(r.status, 0) << r.err;
  }
  const Validation v = Validate(files);
  EXPECT_EQ(v.status, 0) << v.output;
  EXPECT_EQ(v.output, "valid\n");
}

TEST(ExportJsonCommand, SchemaRejectsAnUnknownPropertyAndAMissingOne) {
  TempDir dir;
  Json j = ExportOf(DocumentPath("every-kind.xml"));
  j["datas"][0]["Colour"] = 1;
  j["Requests"][0].erase("LengthDatas");
  const std::string file = dir.File("altered.json");
  WriteFileBytes(file, j.dump());
  const Validation v = Validate({file});
  EXPECT_EQ(v.status, 1);
  EXPECT_NE(v.output.find("datas/0: Additional properties are not allowed ('Colour' was unexpected)"),
            std::string::npos)
      << v.output;
  EXPECT_NE(v.output.find("Requests/0: 'LengthDatas' is a required property"), std::string::npos) << v.output;
}

TEST(ExportJsonCommand, DocumentThatFailsToLoadPrintsTheErrorAndWritesNothing) {
  TempDir dir;
  const std::string in = dir.File("bad.xml");
  const std::string out = dir.File("bad.json");
  WriteFileBytes(in, "<xml><tsl:Target><Function Name=\"Abs\" Address=\"40\"/></tsl:Target></xml>");
  auto r = RunTessaly({"export-json", in, "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(in) + "error 1: loadXml: Bad xml file, Target Name not found\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(ExportJsonCommand, UnwritableOutputIsAnError) {
  TempDir dir;
  const std::string path = SamplePath("engine-ecu.xml");
  const std::string out = dir.File("missing-folder") + "/ecu.json";
  auto r = RunTessaly({"export-json", path, "-o", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(path) + "error 2: tessaly: cannot write '" + out + "': No such file or directory\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(ExportJsonCommand, LoadOptionThatCannotBeAppliedIsAnError) {
  TempDir dir;
  const std::string missing = dir.File("missing-params.xml");
  auto r = RunTessaly({"export-json", SamplePath("engine-ecu.xml"), "--params", missing});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "error 1: Tessaly: Error when reading parameters " + missing + "  msg = cannot open '" + missing +
                       "': No such file or directory\n");
}

TEST(ExportJsonCommand, MissingFileArgumentIsAUsageError) {
  auto r = RunTessaly({"export-json"});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_NE(r.err.find("FILE is required"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace tessaly
