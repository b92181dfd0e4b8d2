#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "cli/cli_support.hpp"
#include "support/test_support.hpp"

namespace tessaly {
namespace {

using Json = nlohmann::json;
using testing::ReadFileBytes;
using testing::ReplaceOnce;
using testing::LoadingWarning;
using testing::RunTessaly;
using testing::SamplePath;
using testing::TempDir;
using testing::WriteFileBytes;


// Every start tag with its attributes in the reverse order.
std::string ReverseAttributes(const std::string& text) {
  static const std::regex tag(R"(<([A-Za-z][\w:.-]*)((?:\s+[\w:.-]+="[^"]*")+)(\s*/?)>)");
  static const std::regex attribute(R"(\s+[\w:.-]+="[^"]*")");
  std::string result;
  auto last = text.cbegin();
  for (std::sregex_iterator it(text.begin(), text.end(), tag), end; it != end; ++it) {
    const std::smatch& m = *it;
    result.append(last, m[0].first);
    std::vector<std::string> attributes;
    const std::string list = m[2].str();
    for (std::sregex_iterator a(list.begin(), list.end(), attribute); a != std::sregex_iterator(); ++a)
      attributes.push_back(a->str());
    result += "<" + m[1].str();
    for (auto a = attributes.rbegin(); a != attributes.rend(); ++a) result += *a;
    result += m[3].str() + ">";
    last = m[0].second;
  }
  result.append(last, text.cend());
  return result;
}

// Carriage return, line feed and indentation wherever a line feed stands before an element.
std::string Reindent(const std::string& text) {
  return std::regex_replace(text, std::regex("\n<"), "\r\n  \t<");
}

class DiffCommandTest : public ::testing::Test {
 protected:
  // Writes `text` as the new document B.
  std::string WriteB(const std::string& text) {
    WriteFileBytes(b, text);
    return b;
  }

  // Runs `tessaly diff` from the every-kind document to `text`.
  testing::CommandResult DiffTo(const std::string& text, std::vector<std::string> extra = {}) {
    std::vector<std::string> args = {"diff", a, WriteB(text)};
    args.insert(args.end(), extra.begin(), extra.end());
    auto r = RunTessaly(args);
    EXPECT_EQ(r.err, LoadingWarning(a) + LoadingWarning(b));
    return r;
  }

  TempDir dir;
  std::string a = std::string(TESSALY_TEST_DOCUMENTS) + "/json/every-kind.xml";
  std::string b = dir.File("b.xml");
  std::string original = ReadFileBytes(a);
};

TEST_F(DiffCommandTest, DocumentComparedWithItselfHasNoDifferences) {
  auto r = RunTessaly({"diff", a, a});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "no differences\n");
  EXPECT_EQ(r.err, LoadingWarning(a) + LoadingWarning(a));
}

TEST_F(DiffCommandTest, AttributeOrderAndWhitespaceBetweenElementsMakeNoDifference) {
  const std::string changed = Reindent(ReverseAttributes(original));
  ASSERT_NE(changed, original);
  ASSERT_NE(changed.find("<Bits signed=\"1\" count=\"16\">"), std::string::npos);
  ASSERT_NE(changed.find("\r\n  \t<Request Name=\"LampTest\">"), std::string::npos);
  auto r = DiffTo(changed);
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "no differences\n");
}

TEST_F(DiffCommandTest, SampleWithAttributesReorderedAndReindentedMatchesTheSample) {
  const std::string sample = SamplePath("engine-ecu.xml");
  const std::string changed = Reindent(ReverseAttributes(ReadFileBytes(sample)));
  ASSERT_NE(changed.find("<Display RequestName=\"ReadEngineValues\" DataName=\"EngineSpeed\""), std::string::npos);
  auto r = RunTessaly({"diff", sample, WriteB(changed)});
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.out, "no differences\n");
}

TEST_F(DiffCommandTest, ChangedPropertyIsShownOldAndNew) {
  auto r = DiffTo(ReplaceOnce(original, "<Bits count=\"16\" signed=\"1\">", "<Bits count=\"32\" signed=\"1\">"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "changed data CabinTemperature: NumberBits 16 -> 32\n");
}

TEST_F(DiffCommandTest, AddedItemIsNamed) {
  auto r = DiffTo(ReplaceOnce(original, "</Requests>",
                              "<Request Name=\"ReadExtra\">\n<Sent>\n<SentBytes>21 30</SentBytes>\n</Sent>\n"
                              "<Received MinBytes=\"2\">\n</Received>\n</Request>\n</Requests>"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "added request ReadExtra\n");
}

TEST_F(DiffCommandTest, RemovedItemIsNamed) {
  auto r = DiffTo(ReplaceOnce(original, "<Device Name=\"CabinSensor\">\n</Device>\n", ""));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "removed device CabinSensor\n");
}

TEST_F(DiffCommandTest, RenamedItemIsRemovedUnderItsOldNameAndAddedUnderItsNewOne) {
  auto r = DiffTo(ReplaceOnce(original, "<Device Name=\"CabinSensor\">", "<Device Name=\"CabinProbe\">"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, "removed device CabinSensor\nadded device CabinProbe\n");
}

TEST_F(DiffCommandTest, ChangesAtEveryLevelComeInDocumentOrder) {
  std::string text = original;
  text = ReplaceOnce(text, "<Threshold Value=\" 1\" Color=\"255\">", "<Threshold Value=\" 1\" Color=\"65280\">");
  text = ReplaceOnce(text, "<Display Width=\"2000\" Color=\"16777215\" RequestName=\"ReadBody\">",
                     "<Display Width=\"2000\" Color=\"16777215\" RequestName=\"LampTest\">");
  text = ReplaceOnce(text, "<Send Delay=\"1000\" RequestName=\"LampTest\"/>",
                     "<Send Delay=\"2000\" RequestName=\"LampTest\"/>");
  text = ReplaceOnce(text, "<Label Text=\"Doors\"", "<Label Text=\"Door panel\"");
  text = ReplaceOnce(text, "<StoredFlag>LampStatus</StoredFlag>", "<StoredFlag>DoorState</StoredFlag>");
  text = ReplaceOnce(text, "<DataItem Name=\"LightLevel\" FirstByte=\"6\"/>", "<DataItem Name=\"LightLevel\" FirstByte=\"7\"/>");
  text = ReplaceOnce(text, "<![CDATA[Read cyclically]]>", "<![CDATA[Read on demand]]>");
  text = ReplaceOnce(text, "<Item Value=\"1\" Text=\"Open\">", "<Item Value=\"1\" Text=\"Ajar\">");
  text = ReplaceOnce(text, "Soft=\"BODY_02\"", "Soft=\"BODY_03\"");
  text = ReplaceOnce(text, "<K BaudRate=\"9600\">", "<K BaudRate=\"10400\">");
  text = ReplaceOnce(text, "email=\"ecu@example.com\"", "email=\"body@example.com\"");
  auto r = DiffTo(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            "changed target: Email \"ecu@example.com\" -> \"body@example.com\"\n"
            "changed parameters: BaudRate 9600 -> 10400\n"
            "removed auto-ident 4/SUP2/BODY_02/2.0\n"
            "added auto-ident 4/SUP2/BODY_03/2.0\n"
            "changed value 1 of data DoorState: libelle \"Open\" -> \"Ajar\"\n"
            "changed request ReadBody: Commentaire \"Read cyclically\" -> \"Read on demand\"\n"
            "changed position LightLevel of request ReadBody: StartOctet 6 -> 7\n"
            "changed test 1 of device DoorSwitch: StoredFlag [\"LampStatus\"] -> [\"DoorState\"]\n"
            "changed label 1 of screen Body/Doors: LabelText \"Doors\" -> \"Door panel\"\n"
            "changed step 1 of button 2 of screen Body/Doors: delay 1000 -> 2000\n"
            "changed threshold 2 of display 1 of screen Body/Doors: Couleur 255 -> 65280\n"
            "changed display 2 of screen Body/Doors: DisplayExtraItem.requestName \"ReadBody\" -> \"LampTest\"\n");
}

TEST_F(DiffCommandTest, ScreenContentsAreMatchedByPosition) {
  std::string text = original;
  // The last display goes, a second label comes.
  text = ReplaceOnce(text,
                     "<Input Width=\"2000\" Color=\"16777215\" DataName=\"LampCommand\" RequestName=\"LampTest\">\n"
                     "<Rectangle Left=\"200\" Top=\"2200\" Height=\"360\" Width=\"4500\"/>\n"
                     "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Input>\n",
                     "");
  text = ReplaceOnce(text, "<Send Delay=\"50\" RequestName=\"ReadBody\"/>",
                     "<Label Text=\"Windows\" Color=\"65535\" Alignment=\"0\"/>\n<Send Delay=\"50\" RequestName=\"ReadBody\"/>");
  text = ReplaceOnce(text, "<Category Name=\"Empty\"/>", "");
  auto r = DiffTo(text);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            "added label 2 of screen Body/Doors\n"
            "removed display 4 of screen Body/Doors\n"
            "removed category Empty\n");
}

TEST_F(DiffCommandTest, JsonListsEachDifferenceWithWhereItIs) {
  std::string text = ReplaceOnce(original, "<Bits count=\"16\" signed=\"1\">", "<Bits count=\"32\" signed=\"1\">");
  text = ReplaceOnce(text, "<Device Name=\"CabinSensor\">\n</Device>\n", "");
  text = ReplaceOnce(text, "group=\"Chassis\"", "group=\"Body\"");
  text = ReplaceOnce(text, "<Send Delay=\"0\" RequestName=\"ReadBody\"/>\n</Button>",
                     "<Send Delay=\"0\" RequestName=\"ReadBody\"/><Send Delay=\"5\" RequestName=\"LampTest\"/>\n</Button>");
  auto r = DiffTo(text, {"--json"});
  EXPECT_EQ(r.status, 1);
  const Json expected = Json::parse(R"([
    {"change": "changed", "item": "target", "where": [{"kind": "target", "key": null}],
     "property": "Group", "old": "Chassis", "new": "Body"},
    {"change": "changed", "item": "data CabinTemperature", "where": [{"kind": "data", "key": "CabinTemperature"}],
     "property": "NumberBits", "old": 16, "new": 32},
    {"change": "removed", "item": "device CabinSensor", "where": [{"kind": "device", "key": "CabinSensor"}],
     "old": {"organeName": "CabinSensor", "Mnemonique": "", "OrganeTypeId": 1, "OrganeTypeName": "Entrée",
             "OrganeDTC": 0, "OrganeOBD": 0, "requestName": "", "DeviceDatas": [], "Tests": []}},
    {"change": "added", "item": "step 3 of button 2 of screen Body/Doors",
     "where": [{"kind": "category", "key": "Body"}, {"kind": "screen", "key": "Doors"},
               {"kind": "button", "key": 2}, {"kind": "step", "key": 3}],
     "new": {"Index": 3, "requestName": "LampTest", "delay": 5}}
  ])");
  EXPECT_EQ(Json::parse(r.out), expected) << r.out;
}

TEST_F(DiffCommandTest, JsonOfEqualDocumentsIsAnEmptyList) {
  auto r = RunTessaly({"diff", a, a, "--json"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "[]\n");
}

TEST_F(DiffCommandTest, DocumentThatFailsToLoadEndsWithStatusThree) {
  auto r = RunTessaly({"diff", a, WriteB("<xml><tsl:Target><Function Name=\"Abs\" Address=\"40\"/></tsl:Target></xml>")});
  EXPECT_EQ(r.status, 3);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(a) + LoadingWarning(b) + "error 1: loadXml: Bad xml file, Target Name not found\n");
}

TEST_F(DiffCommandTest, MissingDocumentEndsWithStatusThree) {
  const std::string missing = dir.File("missing.xml");
  auto r = RunTessaly({"diff", missing, a});
  EXPECT_EQ(r.status, 3);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "error 1: TessalyDatabase.ImportUceFromXml: Bad xml file, Reason=cannot open '" + missing +
                       "': No such file or directory\n" + LoadingWarning(a));
}

TEST_F(DiffCommandTest, ErrorsOfBothDocumentsAreShown) {
  const std::string bad = "<xml><tsl:Target Name=\"X\"/></xml>";
  const std::string other = dir.File("other.xml");
  WriteFileBytes(other, bad);
  auto r = RunTessaly({"diff", other, WriteB(bad)});
  EXPECT_EQ(r.status, 3);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, LoadingWarning(other) + "error 1: loadXml: Bad xml file, Target function name not found\n" +
                       LoadingWarning(b) + "error 1: loadXml: Bad xml file, Target function name not found\n");
}

TEST_F(DiffCommandTest, LoadOptionThatCannotBeAppliedIsReportedOnceWithStatusThree) {
  const std::string missing = dir.File("missing-params.xml");
  auto r = RunTessaly({"diff", a, a, "--params", missing});
  EXPECT_EQ(r.status, 3);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "error 1: Tessaly: Error when reading parameters " + missing + "  msg = cannot open '" + missing +
                       "': No such file or directory\n");
}

TEST_F(DiffCommandTest, OneDocumentIsAUsageError) {
  auto r = RunTessaly({"diff", a});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_NE(r.err.find("B is required"), std::string::npos) << r.err;
}

}  // namespace
}  // namespace tessaly
