#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/test_support.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

// A document whose tsl:Target holds `inner` after the given attributes.
std::string Document(const std::string& attributes, const std::string& inner) {
  return "<xml><tsl:Target" + attributes + ">" + inner + "</tsl:Target></xml>";
}

class TargetFrameTest : public ::testing::Test {
 protected:
  // Loads `text`; returns the error the import raised, if any.
  std::optional<Error> Load(const std::string& text) {
    try {
      lib.ImportUceFromText(text);
    } catch (const Error& e) {
      return e;
    }
    return std::nullopt;
  }
  TargetItem& target() { return *lib.ActiveTarget(); }
  // The tsl:Target element as exported, without the document frame around it.
  std::string TargetText() {
    std::string text = lib.ExportUceToText();
    auto begin = text.find("<tsl:Target");
    auto end = text.find("</tsl:Target>");
    return text.substr(begin, end + 13 - begin);
  }

  TessalyLibXml lib;
};

TEST_F(TargetFrameTest, NoProjectsWritesNoProjectsElement) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/>")));
  EXPECT_EQ(TargetText().find("<Projects"), std::string::npos);
}

TEST_F(TargetFrameTest, ProjectsAreWrittenAsEmptyElementsAndReadBackInOrder) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "\n<Projects xmlns=\"\"><A/><B/></Projects>\n<Function Name=\"F\" Address=\"1\"/>")));
  ASSERT_EQ(target().Projects()->Count(), 2);
  EXPECT_EQ(*target().Projects()->Item(1), "A");
  EXPECT_EQ(*target().Projects()->Item(2), "B");
  std::string text = TargetText();
  EXPECT_NE(text.find(">\n<Projects xmlns=\"\"><A/><B/></Projects>\n<Function "), std::string::npos) << text;
}

TEST_F(TargetFrameTest, BlankProjectNamesAreIgnoredAndDuplicatesKeptOnce) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"",
                             "<Projects><p:Alpha/><ALPHA/><Beta/><Alpha/></Projects><Function Name=\"F\" Address=\"1\"/>")));
  ASSERT_EQ(target().Projects()->Count(), 2);
  EXPECT_EQ(*target().Projects()->Item(1), "Alpha");
  EXPECT_EQ(*target().Projects()->Item(2), "Beta");
  EXPECT_EQ(*target().Projects()->Item("alpha"), "Alpha");
}

TEST_F(TargetFrameTest, KnownFunctionNameNeedsNoAddressAndGivesTheTablesAddress) {
  auto table = std::make_shared<FunctionItems>();
  table->Add(122, "Injection");
  lib.set_functions(table);
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"Injection\"/>")));
  EXPECT_EQ(target().Address(), 122);
  EXPECT_EQ(table->Count(), 1);
}

TEST_F(TargetFrameTest, TableDecidesTheAddressOverTheFile) {
  auto table = std::make_shared<FunctionItems>();
  table->Add(122, "Injection");
  lib.set_functions(table);
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"Injection\" Address=\"7\"/>")));
  EXPECT_EQ(target().Address(), 122);
}

TEST_F(TargetFrameTest, UnknownNameWithKnownAddressUsesTheTableEntry) {
  auto table = std::make_shared<FunctionItems>();
  table->Add(122, "Injection");
  lib.set_functions(table);
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"Old name\" Address=\"122\"/>")));
  EXPECT_EQ(table->Count(), 1);
  EXPECT_EQ(target().Address(), 122);
  EXPECT_NE(TargetText().find("<Function Name=\"Injection\" Address=\"122\"/>"), std::string::npos);
}

TEST_F(TargetFrameTest, UnknownFunctionIsAddedToTheTable) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"Airbag\" Address=\"88\"/>")));
  ASSERT_NE(lib.functions(), nullptr);
  ASSERT_EQ(lib.functions()->Count(), 1);
  EXPECT_EQ(lib.functions()->Item(1)->functionName(), "Airbag");
  EXPECT_EQ(lib.functions()->Item(1)->Address(), 88);
  EXPECT_EQ(target().Address(), 88);
}

TEST_F(TargetFrameTest, UnknownFunctionWithoutAddressIsRefused) {
  auto error = Load(Document(" Name=\"E\"", "<Function Name=\"Ghost\"/>"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 1);
  EXPECT_EQ(error->Source(), "loadXml");
  EXPECT_EQ(error->Description(),
            "Bad xml file, The function 'Ghost' doesn't exist in the database structure, Contact Tessaly HotLine");
}

TEST_F(TargetFrameTest, MissingTargetElementIsRefused) {
  auto error = Load("<xml><Other/></xml>");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 1);
  EXPECT_EQ(error->Source(), "loadXml");
  EXPECT_EQ(error->Description(), "Bad xml file, Target node not found");
}

TEST_F(TargetFrameTest, MissingTargetNameIsRefusedAndTheRestStillLoads) {
  auto error = Load(Document("", "<Function Name=\"F\" Address=\"5\"/><Language Name=\"English\"/>"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 1);
  EXPECT_EQ(error->Source(), "loadXml");
  EXPECT_EQ(error->Description(), "Bad xml file, Target Name not found");
  EXPECT_EQ(target().Address(), 5);
  EXPECT_EQ(target().Langue(), "English");
}

TEST_F(TargetFrameTest, MissingFunctionNameIsRefused) {
  auto error = Load(Document(" Name=\"E\"", "<Function Address=\"5\"/>"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 1);
  EXPECT_EQ(error->Source(), "loadXml");
  EXPECT_EQ(error->Description(), "Bad xml file, Target function name not found");
}

TEST_F(TargetFrameTest, FirstOfSeveralTargetErrorsIsReported) {
  auto error = Load(Document("", "<Function/>"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Description(), "Bad xml file, Target Name not found");
}

TEST_F(TargetFrameTest, EmptySchemasWriteNoNamespaceDeclarations) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/>")));
  lib.set_xmlEcuSchema("");
  lib.set_xmlScreenSchema("");
  std::string text = TargetText();
  EXPECT_TRUE(text.starts_with("<tsl:Target Name=\"E\">")) << text;
  EXPECT_NE(text.find("<ds:Categories>"), std::string::npos) << text;
  EXPECT_EQ(text.find("xmlns"), std::string::npos) << text;
}

TEST_F(TargetFrameTest, SchemasAreDeclaredOnTargetAndCategories) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/>")));
  std::string text = TargetText();
  EXPECT_TRUE(text.starts_with("<tsl:Target Name=\"E\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
                               "xmlns:ds=\"http://www.tessaly.org/2002/screens\">"))
      << text;
  EXPECT_NE(text.find("<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">"), std::string::npos);
}

TEST_F(TargetFrameTest, OptionalAttributesAreWrittenOnlyWhenSet) {
  ASSERT_FALSE(Load(Document(" Name=\"E\" email=\"a@b\" href=\"h\" upload=\"u\" group=\"g\"",
                             "<Function Name=\"F\" Address=\"1\"/>")));
  EXPECT_EQ(target().Email(), "a@b");
  EXPECT_EQ(target().Upload(), "u");
  lib.set_xmlEcuSchema("");
  lib.set_xmlScreenSchema("");
  EXPECT_TRUE(TargetText().starts_with("<tsl:Target Name=\"E\" email=\"a@b\" href=\"h\" upload=\"u\" group=\"g\">"));
}

TEST_F(TargetFrameTest, LanguageDefaultsAndReferenceAsymmetry) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/>")));
  EXPECT_EQ(target().Langue(), "Fran\xC3\xA7" "ais");
  EXPECT_TRUE(target().reference());
  target().set_reference(false);
  std::string text = TargetText();
  EXPECT_NE(text.find("<Language Name=\"Fran\xC3\xA7" "ais\"/>"), std::string::npos) << text;
  ASSERT_FALSE(Load(lib.ExportUceToText()));
  EXPECT_TRUE(target().reference());
}

TEST_F(TargetFrameTest, ReferenceReadsAsABoolean) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/><Language Name=\"X\" Reference=\"0\"/>")));
  EXPECT_FALSE(target().reference());
  EXPECT_EQ(target().Langue(), "X");
}

TEST_F(TargetFrameTest, ToolAddressOtherThanDefaultIsWrittenAsZero) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\" ToolAddress=\"16\"/>")));
  std::string text = TargetText();
  EXPECT_NE(text.find("<Function Name=\"F\" Address=\"1\" ToolAddress=\"0\"/>"), std::string::npos) << text;
}

TEST_F(TargetFrameTest, DefaultToolAddressIsNotWritten) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\" ToolAddress=\"241\"/>")));
  EXPECT_NE(TargetText().find("<Function Name=\"F\" Address=\"1\"/>"), std::string::npos);
}

TEST_F(TargetFrameTest, ChildrenAreWrittenInTheirFixedOrder) {
  ASSERT_FALSE(Load(Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/>")));
  std::string text = TargetText();
  std::size_t last = 0;
  for (const char* element : {"<Function", "<Language", "<DateOfficialisation", "<AutoIdents>", "<Datas>",
                              "<Requests Endian=\"Big\">", "<Devices>", "<ds:Categories"}) {
    std::size_t at = text.find(element);
    ASSERT_NE(at, std::string::npos) << element << " in " << text;
    EXPECT_GT(at, last) << element;
    last = at;
  }
}

TEST_F(TargetFrameTest, SettersMarkTheDocumentChanged) {
  auto t = lib.NewTarget();
  EXPECT_TRUE(t->ValueChanged());
  t->set_ValueChanged(false);
  t->set_Categories(t->Categories());
  EXPECT_FALSE(t->ValueChanged());
  t->set_name("X");
  EXPECT_TRUE(t->ValueChanged());
  t->set_ValueChanged(false);
  t->set_Address(3);
  EXPECT_TRUE(t->ValueChanged());
}

TEST_F(TargetFrameTest, ClearReleasesEverything) {
  auto t = lib.NewTarget();
  auto params = t->Parametres();
  t->clear();
  EXPECT_EQ(t->Parametres(), nullptr);
  EXPECT_EQ(t->datas(), nullptr);
  EXPECT_EQ(t->Requests(), nullptr);
  EXPECT_EQ(t->Organes(), nullptr);
  EXPECT_EQ(t->Categories(), nullptr);
  EXPECT_EQ(t->AutoIdents(), nullptr);
  EXPECT_EQ(t->parent(), nullptr);
  EXPECT_EQ(params->parent(), nullptr);
}

TEST_F(TargetFrameTest, MissingFunctionEntryWritesAnEmptyNameWithAWarning) {
  std::vector<std::string> warnings;
  lib.set_WarningInfo([&](const std::string& c, const std::string& m) { warnings.push_back(c + ": " + m); });
  auto t = lib.NewTarget();
  t->set_name("New");
  t->set_Address(9);
  std::string text = TargetText();
  EXPECT_NE(text.find("<Function Name=\"\" Address=\"9\"/>"), std::string::npos) << text;
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0], "TargetItem.createXMLnode: No function of address 9 in the functions table, Name written empty");
}

}  // namespace
}  // namespace tessaly

namespace tessaly {
namespace {

// A category read without a name has no screen list, and clearing it fails; that must neither
// keep the document alive nor stop the next import, nor escape a destructor.
TEST(TargetClearTest, CategoryThatCannotClearDoesNotBlockTheNextImport) {
  const std::string damaged = Document(" Name=\"E\"", "<Function Name=\"F\" Address=\"1\"/><ds:Categories><Category/></ds:Categories>");
  auto lib = std::make_unique<TessalyLibXml>();
  try {
    lib->ImportUceFromText(damaged);
  } catch (const Error&) {
  }
  auto first = lib->ActiveTarget();
  ASSERT_NE(first, nullptr);
  // Clearing it reports the failure once every part is released.
  EXPECT_TESSALY_ERROR(first->clear(), 91, "Tessaly",
                       "Object variable or With block variable not set");
  EXPECT_EQ(first->Categories(), nullptr);
  lib->ImportUceFromText(Document(" Name=\"Next\"", "<Function Name=\"F\" Address=\"1\"/>"));
  EXPECT_EQ(lib->ActiveTarget()->name(), "Next");
  try {
    lib->ImportUceFromText(damaged);
  } catch (const Error&) {
  }
  lib.reset();  // destroying the facade with that document active must not terminate
  SUCCEED();
}

}  // namespace
}  // namespace tessaly

namespace tessaly {
namespace {

// The whole document as the facade writes it, spelled out once, so that every byte of the frame
// is checked: declaration, style sheet, root, target attributes, projects, function, language,
// the parameters of a default ECU, and the empty sub-tree containers.
const std::string kFrameDocument =
    "<?xml version='1.0' encoding=\"UTF-8\"?>\r\n"
    "<?xml-stylesheet type=\"text/xsl\" href=\"http://www.tessaly.org/Tessaly/TSLECUPreview.xsl\"?>\r\n"
    "<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n"
    "<tsl:Target Name=\"ECU1\" xmlns=\"http://www.tessaly.org/2002/ECU\" xmlns:ds=\"http://www.tessaly.org/2002/screens\""
    " email=\"diag@example.com\" group=\"Powertrain\">\n"
    "<Projects xmlns=\"\"><X81/><B9/></Projects>\n"
    "<Function Name=\"Injection\" Address=\"122\"/>\n"
    "<Language Name=\"English\" Reference=\"1\"/>\n"
    "\n<DateOfficialisation/>\n"
    "<Failures Name=\"Ne contient pas de pannes\" Id=\"0\"/>\n"
    "<PowerSupply>\n<Ground/>\n<Vbat/>\n<AfterContact/>\n</PowerSupply>\n"
    "<K BaudRate=\"10400\">\n<KWP Multipoint=\"0\">\n<FastInit><KW1 Value=\"208\"/>\n<KW2 Value=\"143\"/></FastInit>\n"
    "</KWP>\n<InterByte Delay=\"0\"/>\n<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n"
    "<TesterPresent Delay=\"3000\"/>\n<OnError Delay=\"300\"/>\n</K>\n"
    "<AutoIdents>\n</AutoIdents>\n"
    "<Datas>\n</Datas>\n"
    "<Requests Endian=\"Big\">\n</Requests>\n"
    "<Devices>\n</Devices>\n"
    "<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n</ds:Categories></tsl:Target></xml>\r\n";

TEST(TargetDocumentTest, FrameRoundTripsByteForByte) {
  TessalyLibXml lib;
  lib.ImportUceFromText(kFrameDocument);
  EXPECT_EQ(lib.ExportUceToText(), kFrameDocument);
}

TEST(TargetDocumentTest, FrameSavedToAFileIsTheSameBytes) {
  TessalyLibXml lib;
  lib.ImportUceFromText(kFrameDocument);
  testing::TempDir dir;
  lib.ExportUceToXml(dir.File("ecu.xml"));
  EXPECT_EQ(testing::ReadFileBytes(dir.File("ecu.xml")), kFrameDocument);
  TessalyLibXml again;
  again.ImportUceFromXml(dir.File("ecu.xml"));
  EXPECT_EQ(again.ExportUceToText(), kFrameDocument);
}

}  // namespace
}  // namespace tessaly
