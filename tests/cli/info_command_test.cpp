#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;

const std::string kSampleCounts =
    "Data:                 42\n"
    "Requests:             20\n"
    "Devices:              10\n"
    "Tests:                19\n"
    "Categories:           3\n"
    "Screens:              7\n"
    "Displays:             44\n"
    "Buttons:              7\n"
    "Auto-identifications: 3\n";

const std::string kEmptyCounts =
    "Data:                 0\n"
    "Requests:             0\n"
    "Devices:              0\n"
    "Tests:                0\n"
    "Categories:           0\n"
    "Screens:              0\n"
    "Displays:             0\n"
    "Buttons:              0\n"
    "Auto-identifications: 0\n";

// A target with only its function and the given parameter elements.
std::string Document(const std::string& parameters) {
  return "<xml><tsl:Target Name=\"OLD\"><Function Name=\"Abs\" Address=\"40\"/>" + parameters + "</tsl:Target></xml>";
}

class InfoCommandTest : public ::testing::Test {
 protected:
  // Writes `text` and runs `tessaly info` on it with `extra` arguments.
  testing::CommandResult InfoOf(const std::string& text, std::vector<std::string> extra = {}) {
    WriteFileBytes(in, text);
    std::vector<std::string> args = {"info", in};
    args.insert(args.end(), extra.begin(), extra.end());
    return RunTessaly(args);
  }

  TempDir dir;
  std::string in = dir.File("ecu.xml");
};

TEST_F(InfoCommandTest, SummarisesTheKLineSample) {
  const std::string path = SamplePath("engine-ecu.xml");
  auto r = RunTessaly({"info", path});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "ECU:                  EC4\n"
            "Function:             Injection (address 122)\n"
            "Protocol:             KWP 2000 init rapide monopoint (init mode 2, mono-point, 10400 baud)\n"
            "Key bytes:            0xEF 0x8F\n"
            "Timings:              inter-byte 5, reply to request 55, request to reply 50, tester present 2000, "
            "on error 500\n"
            "Failure type:         Pannes DTC (id 3)\n" +
                kSampleCounts);
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + path + "\n");
}

TEST_F(InfoCommandTest, CanSampleShowsItsIdentifiersAndNoKLineSettings) {
  auto r = RunTessaly({"info", SamplePath("engine-ecu-can.xml")});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "ECU:                  EC4-CAN\n"
            "Function:             Injection (address 122)\n"
            "Protocol:             DiagOnCAN (init mode 3, multi-point, 500000 baud)\n"
            "CAN identifiers:      send 0x18DA7AF1 (29-bit), receive 0x18DAF17A (29-bit)\n"
            "Failure type:         Pannes DTC (id 3)\n" +
                kSampleCounts);
}

TEST_F(InfoCommandTest, LangNamesTheProtocolAndFailureTypeInThatLanguage) {
  auto r = RunTessaly({"info", SamplePath("engine-ecu.xml"), "--lang", "en"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Protocol:             KWP2000 FastInit MonoPoint (init mode 2"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("Failure type:         DTC Failures (id 3)\n"), std::string::npos) << r.out;
}

TEST_F(InfoCommandTest, Iso8EcuShowsItsKeyByteTimeoutAndFirstRequestDelay) {
  auto r =
      InfoOf(Document("<K BaudRate=\"9600\"><ISO8><KW1 Value=\"8\"/><KW2 Value=\"9\" Timeout=\"400\"/>"
                      "<FirstRequest Delay=\"30\"/></ISO8></K>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "ECU:                  OLD\n"
            "Function:             Abs (address 40)\n"
            "Protocol:             ISO8 (init mode 0, mono-point, 9600 baud)\n"
            "Key bytes:            0x08 0x09\n"
            "Timings:              inter-byte 0, reply to request 5, request to reply 300, tester present 3000, "
            "on error 300, KW2 timeout 400, first request 30\n"
            "Failure type:         Ne contient pas de pannes (id 0)\n" +
                kEmptyCounts);
}

TEST_F(InfoCommandTest, SlowInitMultiPointEcuIsNamedByItsMultiPointProtocolAndShowsTheKw2Delay) {
  auto r = InfoOf(Document("<K><KWP Multipoint=\"1\"><ISO8/><KW2_ Delay=\"40\"/></KWP></K>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Protocol:             KWP 2000 Type II - init lente (init mode 1, multi-point, 10400 baud)\n"),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("on error 300, KW2 timeout 300, KW2 delay 40, first request 20\n"), std::string::npos) << r.out;
}

TEST_F(InfoCommandTest, CanMessagingEcuShowsNeitherKeyBytesNorIdentifiersNorTimings) {
  auto r = InfoOf(Document("<CAN BaudRate=\"250000\" Multipoint=\"1\"/>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "ECU:                  OLD\n"
            "Function:             Abs (address 40)\n"
            "Protocol:             Messagerie CAN (init mode 255, multi-point, 250000 baud)\n"
            "Failure type:         Ne contient pas de pannes (id 0)\n" +
                kEmptyCounts);
}

TEST_F(InfoCommandTest, StandardCanIdentifiersAreShownWithoutTheExtendedMark) {
  auto r =
      InfoOf(Document("<CAN BaudRate=\"500000\" Multipoint=\"1\"><SendId><CANId Value=\"2016\"/></SendId>"
                      "<ReceiveId><CANId Value=\"2024\"/></ReceiveId></CAN>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("CAN identifiers:      send 0x7E0, receive 0x7E8\n"), std::string::npos) << r.out;
}

TEST_F(InfoCommandTest, ProtocolOfAnUnknownModeIsShownAsUnknownWithEveryTiming) {
  auto r = InfoOf(Document("<Protocol InitMode=\"9\" Multipoint=\"0\" BaudRate=\"19200\"/>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Protocol:             unknown protocol (init mode 9, mono-point, 19200 baud)\n"
                       "Key bytes:            0xD0 0x8F\n"
                       "Timings:              inter-byte 0, reply to request 5, request to reply 300, "
                       "tester present 3000, on error 300, KW2 timeout 300, KW2 delay 25, first request 20\n"),
            std::string::npos)
      << r.out;
}

TEST_F(InfoCommandTest, ButtonsLeaveOutTheInitButtons) {
  auto r =
      InfoOf(Document("<ds:Categories><Category Name=\"C\"><Screen Name=\"S\"><Button Text=\"Go\"/></Screen>"
                      "<Screen Name=\"T\"/></Category></ds:Categories>"));
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Categories:           1\nScreens:              2\nDisplays:             0\n"
                       "Buttons:              1\n"),
            std::string::npos)
      << r.out;
}

TEST_F(InfoCommandTest, JsonGivesTheSameSummary) {
  auto r = RunTessaly({"info", "--json", SamplePath("engine-ecu.xml")});
  ASSERT_EQ(r.status, 0) << r.err;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["file"], SamplePath("engine-ecu.xml"));
  EXPECT_EQ(j["name"], "EC4");
  EXPECT_EQ(j["function"]["name"], "Injection");
  EXPECT_EQ(j["function"]["address"], 122);
  EXPECT_EQ(j["protocol"]["name"], "KWP 2000 init rapide monopoint");
  EXPECT_EQ(j["protocol"]["initMode"], 2);
  EXPECT_EQ(j["protocol"]["multiPoint"], false);
  EXPECT_EQ(j["protocol"]["baudRate"], 10400);
  EXPECT_EQ(j["protocol"]["keyBytes"], nlohmann::json({239, 143}));
  EXPECT_EQ(j["protocol"]["timings"], nlohmann::json({{"interByte", 5},
                                                      {"replyToRequest", 55},
                                                      {"requestToReply", 50},
                                                      {"testerPresent", 2000},
                                                      {"onError", 500}}));
  EXPECT_FALSE(j["protocol"].contains("canIds"));
  EXPECT_EQ(j["failureType"]["id"], 3);
  EXPECT_EQ(j["failureType"]["name"], "Pannes DTC");
  EXPECT_EQ(j["counts"], nlohmann::json({{"data", 42},
                                         {"requests", 20},
                                         {"devices", 10},
                                         {"tests", 19},
                                         {"categories", 3},
                                         {"screens", 7},
                                         {"displays", 44},
                                         {"buttons", 7},
                                         {"autoIdentifications", 3}}));
}

TEST_F(InfoCommandTest, JsonOfTheCanSampleGivesTheIdentifiers) {
  auto r = RunTessaly({"info", "--json", SamplePath("engine-ecu-can.xml")});
  ASSERT_EQ(r.status, 0) << r.err;
  nlohmann::json j = nlohmann::json::parse(r.out);
  EXPECT_EQ(j["protocol"]["canIds"]["send"], nlohmann::json({{"id", 0x18DA7AF1}, {"extended", true}}));
  EXPECT_EQ(j["protocol"]["canIds"]["receive"], nlohmann::json({{"id", 0x18DAF17A}, {"extended", true}}));
  EXPECT_FALSE(j["protocol"].contains("timings"));
  EXPECT_FALSE(j["protocol"].contains("keyBytes"));
}

TEST_F(InfoCommandTest, ImportErrorExitsOneWithTheErrorAndNoSummary) {
  auto r = InfoOf("<xml><tsl:Target><Function Name=\"F\" Address=\"1\"/></tsl:Target></xml>");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "warning: TessalyDatabase: Loading url : " + in +
                       "\nerror 1: loadXml: Bad xml file, Target Name not found\n");
}

TEST_F(InfoCommandTest, MissingFileExitsOne) {
  auto r = RunTessaly({"info", in});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=cannot open '" + in +
                       "': No such file or directory\n");
}

TEST_F(InfoCommandTest, FunctionsTableNamesTheFunction) {
  std::string functions = dir.File("functions.xml");
  WriteFileBytes(functions, "<Functions><Function Name=\"Brakes\" Address=\"40\"/></Functions>");
  auto r = InfoOf(Document(""), {"--functions", functions});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Function:             Brakes (address 40)\n"), std::string::npos) << r.out;
}

TEST_F(InfoCommandTest, UnreadableParameterDocumentExitsOne) {
  auto r = InfoOf(Document(""), {"--params", "/nonexistent/p.xml"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err,
            "error 1: Tessaly: Error when reading parameters /nonexistent/p.xml  msg = cannot open "
            "'/nonexistent/p.xml': No such file or directory\n");
}

TEST_F(InfoCommandTest, MissingFileArgumentIsAUsageError) {
  auto r = RunTessaly({"info"});
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("FILE"), std::string::npos) << r.err;
}

TEST_F(InfoCommandTest, HelpSucceedsAndListsTheOptions) {
  auto r = RunTessaly({"info", "--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("--json"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("--functions"), std::string::npos) << r.out;
}

}  // namespace
}  // namespace tessaly
