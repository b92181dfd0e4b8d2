// Screens inside whole ECU documents, loaded and saved through the facade.
#include <gtest/gtest.h>

#include <string>

#include "screens/screens_fixture.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"

namespace tessaly::testing {
namespace {

// Every screen shape at once: labels, init steps, buttons with and without steps, data and
// request displays, inputs, thresholds with and without sound; a second category; an empty one.
const std::string kCategories =
    "<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n"
    "<Category Name=\"Engine\">\n"
    "\n<Screen Name=\"Main\" Color=\"12632256\" WindowState=\"2\" Width=\"800\" Height=\"600\">\n"
    "\n<Label Text=\"Engine\" Color=\"16777215\" Alignment=\"1\">\n<Rectangle Left=\"5\" Top=\"5\" Height=\"20\" Width=\"200\"/>\n"
    "<Font Name=\"Arial\" Size=\" 14.5\" Bold=\"1\" Italic=\"0\" Color=\"0\"/></Label>\n"
    "<Send Delay=\"50\" RequestName=\"Reset\"/><Send Delay=\"0\" RequestName=\"ReadSpeed\"/>"
    "\n<Button Text=\"Write\">\n<Rectangle Left=\"10\" Top=\"400\" Height=\"30\" Width=\"100\"/>\n"
    "<Font Name=\"Arial\" Size=\" 8.25\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"Write the temperature?\"/>\n"
    "<Send Delay=\"100\" RequestName=\"WriteTemp\"/><Send Delay=\"20\" RequestName=\"Stop\"/>\n</Button>"
    "\n<Button Text=\"Nothing\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"0\" Width=\"0\"/>\n"
    "<Font Name=\"\" Size=\" 12\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n\n</Button>\n"
    "\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"Speed\" RequestName=\"ReadSpeed\">\n"
    "<Rectangle Left=\"10\" Top=\"40\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/>"
    "<Threshold Value=\" 0\" Color=\"65280\"/><Threshold Value=\" 6500.5\" Color=\"255\">\n<Sound Name=\"880\"/></Threshold>"
    "</Display>"
    "\n<Input Width=\"2000\" Color=\"16777215\" DataName=\"Temp\" RequestName=\"WriteTemp\">\n"
    "<Rectangle Left=\"10\" Top=\"80\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"1\" Color=\"255\"/><Threshold Value=\"-40\" Color=\"16711680\"/></Input>"
    "\n<Input Width=\"1000\" Color=\"0\" RequestName=\"Reset\">\n"
    "<Rectangle Left=\"0\" Top=\"0\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Input>"
    "\n<Display Width=\"2000\" Color=\"16777215\" RequestName=\"Stop\">\n"
    "<Rectangle Left=\"0\" Top=\"0\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Display>\n</Screen>"
    "\n<Screen Name=\"Second\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n\n\n\n</Screen>"
    "\n</Category><Category Name=\"Body\">\n\n</Category></ds:Categories>";

std::string Document(const std::string& categories) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n"
         "<tsl:Target Name=\"Engine\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
         "xmlns:ds=\"http://www.tessaly.org/2002/screens\">\n"
         "<Function Name=\"Injection\" Address=\"122\"/>\n"
         "<Language Name=\"English\" Reference=\"1\"/>\n" +
         std::string(kScreenDatas) + "\n" + kScreenRequests + "\n" + categories + "</tsl:Target></xml>\r\n";
}

// The ds:Categories element of a written document.
std::string CategoriesOf(const std::string& document) {
  auto begin = document.find("<ds:Categories");
  auto end = document.find("</ds:Categories>");
  if (begin == std::string::npos || end == std::string::npos) return {};
  return document.substr(begin, end + 16 - begin);
}

class ScreensDocumentTest : public ::testing::Test {
 protected:
  ScreensDocumentTest() : log_(std::make_shared<RecordingEventLog>()) { facade_.set_EventLog(log_); }
  TessalyLibXml facade_;
  std::shared_ptr<RecordingEventLog> log_;
};

TEST_F(ScreensDocumentTest, EveryScreenShapeSurvivesImportAndExportByteForByte) {
  facade_.ImportUceFromText(Document(kCategories));
  EXPECT_TRUE(log_->entries.empty());
  auto categories = facade_.ActiveTarget()->Categories();
  ASSERT_EQ(categories->Count(), 2);
  auto main = categories->Item(1)->Screens()->Item("kMAIN");
  EXPECT_EQ(main->DisplayItems()->Count(), 4);
  EXPECT_EQ(main->ButtonItems()->Count(), 3);
  EXPECT_EQ(main->ButtonInit()->ScenarioItems()->Count(), 2);
  const std::string first = facade_.ExportUceToText();
  EXPECT_EQ(CategoriesOf(first), kCategories);
  facade_.ImportUceFromText(first);
  EXPECT_EQ(facade_.ExportUceToText(), first);
}

TEST_F(ScreensDocumentTest, DroppedDisplaysAndStepsAreLoggedAndTheImportSucceeds) {
  facade_.ImportUceFromText(Document(
      "<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\">"
      "<Send RequestName=\"Gone\"/><Display RequestName=\"Gone\"/><Display DataName=\"Speed\"/>"
      "<Input DataName=\"Temp\" RequestName=\"ReadSpeed\"/><Display RequestName=\"Reset\"/></Screen>\n"
      "</Category></ds:Categories>"));
  EXPECT_EQ(log_->entries, (std::vector<std::string>{"ScenarioItem.loadXml : request (Gone) missing ",
                                                     "DisplayItem.loadXml : request missing (Gone)",
                                                     "DisplayItem.loadXml : dataName or requestName missing",
                                                     "DisplayItem.loadXml : request/data missing (ReadSpeed/Temp)"}));
  auto screen = facade_.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1);
  EXPECT_EQ(screen->ButtonInit()->ScenarioItems()->Count(), 0);
  ASSERT_EQ(screen->DisplayItems()->Count(), 1);
  EXPECT_EQ(screen->DisplayItems()->Item(1)->DisplayExtraItem()->requestName(), "Reset");
}

TEST_F(ScreensDocumentTest, DroppedElementsAreToldToTheDiagnosticsCallback) {
  std::vector<std::string> told;
  facade_.set_Diagnostics([&](const Diagnostic& d) {
    told.push_back(std::string(d.action == Diagnostic::Action::kDropped ? "dropped " : "repaired ") + d.what + ": " +
                   d.why);
  });
  facade_.ImportUceFromText(Document(
      "<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\"><Send RequestName=\"Gone\"/>"
      "<Display RequestName=\"Gone\"><Threshold Color=\"x\"/></Display><Display RequestName=\"Stop\"><Threshold Color=\"x\"/></Display>"
      "</Screen>\n<Screen Name=\"s\"/><Screen/></Category><Category Name=\"C\"/></ds:Categories>"));
  EXPECT_EQ(told, (std::vector<std::string>{
                      "dropped Send of the init button in screen C/S: request missing",
                      "dropped Display in screen C/S: request missing",
                      "repaired Threshold in screen C/S: Color 'x' unreadable, red used",
                      "dropped Screen C/s: This key is already associated with an element of this collection",
                      "repaired Screen without Name in category C: Name undefined, bad screen",
                      "dropped Category C: Duplicate category"}));
}

TEST_F(ScreensDocumentTest, SavingADataDisplayWhoseRequestIsGoneFailsAndLeavesTheFileUntouched) {
  facade_.ImportUceFromText(Document(
      "<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\"><Display DataName=\"Speed\" RequestName=\"ReadSpeed\"/>"
      "</Screen>\n</Category></ds:Categories>"));
  auto requests = facade_.ActiveTarget()->Requests();
  requests->Delete(requests->ItemName("ReadSpeed"));
  TempDir dir;
  const std::string path = dir.File("ecu.xml");
  WriteFileBytes(path, "previous content");
  EXPECT_TESSALY_ERROR(facade_.ExportUceToXml(path), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(ReadFileBytes(path), "previous content");
  EXPECT_EQ(facade_.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->DisplayItems()->Count(), 1);
}

TEST_F(ScreensDocumentTest, InitButtonMessageDoesNotSurviveASaveAndLoad) {
  facade_.ImportUceFromText(Document("<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\"/>\n</Category></ds:Categories>"));
  facade_.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->ButtonInit()->set_Message("Hello");
  const std::string saved = facade_.ExportUceToText();
  EXPECT_NE(saved.find("<Message>Hello</Message>"), std::string::npos);
  facade_.ImportUceFromText(saved);
  EXPECT_EQ(facade_.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->ButtonInit()->Message(), "");
}

}  // namespace
}  // namespace tessaly::testing
