#include <gtest/gtest.h>

#include "support/test_support.hpp"
#include "tessaly/facade/multi_lang.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"

namespace tessaly {
namespace {

using testing::ParseText;
using testing::TempDir;
using testing::WriteFileBytes;

TEST(BuiltInParametersTest, ProtocolNamesFollowTheLanguage) {
  TessalyLibXml fr;
  EXPECT_EQ(fr.protocols()->ItemId(4)->protocolName(), "KWP 2000 init rapide monopoint");
}

TEST(BuiltInParametersTest, EnglishTablesAfterReadingTheDefaultsWithLangEn) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"), ParamNodeDefinition());
  TessalyLibXml lib;
  lib.set_lang("en");
  lib.ReadGlobalParameters(dir.File("p.xml"));
  EXPECT_EQ(lib.protocols()->ItemId(4)->protocolName(), "KWP2000 FastInit MonoPoint");
  EXPECT_EQ(lib.Pannes()->ItemId(3)->libelle(), "DTC Failures");
  EXPECT_EQ(lib.typeOrganes()->ItemId(1)->libelle(), "Input");
}

TEST(BuiltInParametersTest, UnknownLanguageTakesTheFirstName) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"), ParamNodeDefinition());
  TessalyLibXml lib;
  lib.set_lang("de");
  lib.ReadGlobalParameters(dir.File("p.xml"));
  EXPECT_EQ(lib.protocols()->ItemId(4)->protocolName(), "KWP2000 FastInit MonoPoint");
}

TEST(BuiltInParametersTest, TablesHoldTheDefaultContent) {
  TessalyLibXml lib;
  ASSERT_EQ(lib.protocols()->Count(), 7);
  auto can = lib.protocols()->ItemId(8);
  EXPECT_EQ(can->protocolName(), "Messagerie CAN");
  EXPECT_TRUE(can->multiPoint());
  EXPECT_EQ(can->initMode(), 255);
  EXPECT_EQ(lib.Pannes()->Count(), 4);
  EXPECT_EQ(lib.Pannes()->ItemId(0)->libelle(), "Ne contient pas de pannes");
  EXPECT_EQ(lib.typeOrganes()->Count(), 4);
}

TEST(BuiltInParametersTest, DeviceTypeNameKeepsItsAccent) {
  TessalyLibXml lib;
  EXPECT_EQ(lib.typeOrganes()->ItemId(1)->libelle(), "Entr\xC3\xA9" "e");
  EXPECT_EQ(lib.typeOrganes()->ItemName("Entr\xC3\xA9" "e")->id(), 1);
}

TEST(BuiltInParametersTest, ThereIsNoProtocolWithCodeFive) {
  TessalyLibXml lib;
  EXPECT_EQ(lib.protocols()->ItemId(5), nullptr);
}

TEST(BuiltInParametersTest, DeclaresWindows1252WithoutLineBreaks) {
  std::string text = ParamNodeDefinition();
  EXPECT_TRUE(text.starts_with("<?xml version=\"1.0\" encoding=\"windows-1252\"?><xml>"));
  EXPECT_TRUE(text.ends_with("</xml>"));
  EXPECT_EQ(text.find('\n'), std::string::npos);
}

TEST(ReadGlobalParametersTest, OnlyTheTextOneMeansMultiPoint) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"),
                 "<xml><Protocols><Protocol Code=\"1\" multiPoint=\"true\" initMode=\"0\"><Name>P</Name></Protocol>"
                 "<Protocol Code=\"2\" multiPoint=\"1\" initMode=\"0\"><Name>Q</Name></Protocol></Protocols></xml>");
  TessalyLibXml lib;
  lib.ReadGlobalParameters(dir.File("p.xml"));
  EXPECT_FALSE(lib.protocols()->ItemId(1)->multiPoint());
  EXPECT_TRUE(lib.protocols()->ItemId(2)->multiPoint());
}

TEST(ReadGlobalParametersTest, MissingDeviceTypesLeavesAnEmptyTable) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"), "<xml><Protocols/><Failures><Failure Id=\"7\"><Name>F</Name></Failure></Failures></xml>");
  TessalyLibXml lib;
  auto before = lib.typeOrganes();
  lib.ReadGlobalParameters(dir.File("p.xml"));
  EXPECT_EQ(lib.typeOrganes()->Count(), 0);
  EXPECT_NE(lib.typeOrganes(), before);
  EXPECT_EQ(lib.protocols()->Count(), 0);
  EXPECT_EQ(lib.Pannes()->ItemId(7)->libelle(), "F");
}

TEST(ReadGlobalParametersTest, UnreadableDocumentRaisesAndKeepsTheTables) {
  TempDir dir;
  TessalyLibXml lib;
  auto protocols = lib.protocols();
  std::string url = dir.File("missing.xml");
  EXPECT_TESSALY_ERROR(lib.ReadGlobalParameters(url), 1, "Tessaly",
                       "Error when reading parameters " + url + "  msg = cannot open '" + url +
                           "': No such file or directory");
  EXPECT_EQ(lib.protocols(), protocols);
}

TEST(ReadGlobalParametersTest, BadNumberStopsTheReadingAfterReplacingEarlierTables) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"),
                 "<xml><Protocols><Protocol Code=\"1\" initMode=\"0\"><Name>P</Name></Protocol></Protocols>"
                 "<Failures><Failure Id=\"x\"><Name>F</Name></Failure></Failures></xml>");
  TessalyLibXml lib;
  auto devices = lib.typeOrganes();
  EXPECT_TESSALY_ERROR(lib.ReadGlobalParameters(dir.File("p.xml")), 13, "Tessaly", "Type mismatch");
  EXPECT_EQ(lib.protocols()->Count(), 1);
  EXPECT_EQ(lib.Pannes()->Count(), 0);
  EXPECT_EQ(lib.typeOrganes(), devices);
}

TEST(ReadGlobalParametersTest, MissingCodeIsTheMissingNodeError) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"), "<xml><Protocols><Protocol initMode=\"0\"><Name>P</Name></Protocol></Protocols></xml>");
  TessalyLibXml lib;
  EXPECT_TESSALY_ERROR(lib.ReadGlobalParameters(dir.File("p.xml")), 91, "Tessaly",
                       "Object variable or With block variable not set");
}

TEST(ReadGlobalParametersTest, DoesNotTouchTheFunctionsTable) {
  TempDir dir;
  WriteFileBytes(dir.File("p.xml"), ParamNodeDefinition());
  TessalyLibXml lib;
  auto functions = std::make_shared<FunctionItems>();
  lib.set_functions(functions);
  lib.ReadGlobalParameters(dir.File("p.xml"));
  EXPECT_EQ(lib.functions(), functions);
}

class MultiLangTest : public ::testing::Test {
 protected:
  pugi::xml_document doc;
};

TEST_F(MultiLangTest, PicksTheWantedLanguage) {
  ParseText(doc, "<p><Name xml:lang=\"en\">Output</Name><Name xml:lang=\"fr\">Sortie</Name></p>");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "fr"), "Sortie");
}

TEST_F(MultiLangTest, OtherLanguageTakesTheFirstName) {
  ParseText(doc, "<p><Name xml:lang=\"en\">Output</Name><Name xml:lang=\"fr\">Sortie</Name></p>");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "de"), "Output");
}

TEST_F(MultiLangTest, LanguageCodesAreCaseSensitive) {
  ParseText(doc, "<p><Name xml:lang=\"en\">Output</Name><Name xml:lang=\"fr\">Sortie</Name></p>");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "FR"), "Output");
}

TEST_F(MultiLangTest, NoNameGivesEmptyText) {
  ParseText(doc, "<p><Other/></p>");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "fr"), "");
}

TEST_F(MultiLangTest, NameWithoutLanguageIsFoundOnlyAsTheFirst) {
  ParseText(doc, "<p><Name>Plain</Name><Name xml:lang=\"fr\">Sortie</Name></p>");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "fr"), "Sortie");
  EXPECT_EQ(MultiLang(doc.child("p"), "Name", "en"), "Plain");
}

}  // namespace
}  // namespace tessaly
