// The export streams its text without a DOM. These tests check, document by document, that the
// streamed text is the one the same writers give into a DOM saved by pugixml.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "common/document_io.hpp"
#include "ecu_generator.hpp"
#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly {
namespace {

std::filesystem::path Documents() { return TESSALY_TEST_DOCUMENTS; }

// The document written into a DOM, then saved by pugixml.
std::string ThroughDom(TessalyLibXml& lib) {
  pugi::xml_document doc;
  lib.WriteDocument(doc);
  return io::Serialize(doc, lib.xmlEncoding());
}

void ExpectStreamedEqualsDom(TessalyLibXml& lib, const std::string& what) {
  std::string streamed = lib.ExportUceToText();
  EXPECT_FALSE(streamed.empty()) << what;
  EXPECT_EQ(streamed, ThroughDom(lib)) << what;
}

void ImportFileQuietly(TessalyLibXml& lib, const std::filesystem::path& path) {
  lib.set_WarningInfo([](const std::string&, const std::string&) {});
  lib.ImportUceFromXml(path.string());
}

TEST(StreamedExportTest, SamplesAndTestDocumentsStreamAsTheDomSavesThem) {
  const std::filesystem::path examples = Documents().parent_path().parent_path() / "examples";
  for (const std::filesystem::path& path :
       {examples / "engine-ecu.xml", examples / "engine-ecu-can.xml", Documents() / "json" / "every-kind.xml",
        Documents() / "cli" / "xref-ecu.xml"}) {
    TessalyLibXml lib;
    ImportFileQuietly(lib, path);
    ExpectStreamedEqualsDom(lib, path.string());
  }
}

TEST(StreamedExportTest, GeneratedDocumentsOfManySeedsStreamAsTheDomSavesThem) {
  bench::EcuShape shape;
  shape.blocks = 2;
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    TessalyLibXml lib;
    lib.set_WarningInfo([](const std::string&, const std::string&) {});
    lib.ImportUceFromText(bench::GenerateEcuDocument(seed, shape));
    ExpectStreamedEqualsDom(lib, "seed " + std::to_string(seed));
  }
}

TEST(StreamedExportTest, HostileDocumentsThatLoadStreamAsTheDomSavesThem) {
  int loaded = 0;
  for (const auto& entry : std::filesystem::directory_iterator(Documents() / "hostile")) {
    TessalyLibXml lib;
    try {
      ImportFileQuietly(lib, entry.path());
    } catch (const Error&) {
      continue;
    }
    if (!lib.ActiveTarget()) continue;
    ++loaded;
    ExpectStreamedEqualsDom(lib, entry.path().string());
  }
  EXPECT_GE(loaded, 5);
}

TEST(StreamedExportTest, OtherEncodingAndNoStyleSheetStreamAsTheDomSavesThem) {
  TessalyLibXml lib;
  ImportFileQuietly(lib, Documents() / "json" / "every-kind.xml");
  lib.set_xmlEncoding("windows-1252");
  lib.set_xmlStyleSheet("");
  ExpectStreamedEqualsDom(lib, "windows-1252");
  EXPECT_EQ(lib.ExportUceToText().rfind("<?xml version='1.0' encoding=\"windows-1252\"?>\r\n<xml", 0), 0u);
}

TEST(StreamedExportTest, SavedFileHoldsTheStreamedText) {
  testing::TempDir dir;
  TessalyLibXml lib;
  lib.set_WarningInfo([](const std::string&, const std::string&) {});
  bench::EcuShape shape;
  shape.blocks = 60;  // over the one-megabyte pieces the file receives
  lib.ImportUceFromText(bench::GenerateEcuDocument(3, shape));
  lib.ExportUceToXml(dir.File("out.xml"));
  ASSERT_FALSE(lib.LastSaveError());
  std::string saved = testing::ReadFileBytes(dir.File("out.xml"));
  EXPECT_GT(saved.size(), std::size_t{1} << 20);
  EXPECT_EQ(saved, ThroughDom(lib));
}

TEST(StreamedExportTest, ModelErrorWhileWritingLeavesTheExistingFileUnchanged) {
  testing::TempDir dir;
  testing::WriteFileBytes(dir.File("out.xml"), "before");
  TessalyLibXml lib;
  ImportFileQuietly(lib, Documents() / "json" / "every-kind.xml");
  lib.ActiveTarget()->Projects()->Append(std::make_shared<std::string>("2nd"), "2nd");
  EXPECT_TESSALY_ERROR(lib.ExportUceToXml(dir.File("out.xml")), 1, "TargetItem.createXMLnode",
                       "Project name '2nd' is not an XML name");
  EXPECT_EQ(testing::ReadFileBytes(dir.File("out.xml")), "before");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), std::filesystem::directory_iterator()), 1);
}

TEST(StreamedExportTest, FileThatCannotBeOpenedIsReportedBeforeTheModelIsWritten) {
  testing::TempDir dir;
  TessalyLibXml lib;
  std::vector<std::string> warnings;
  ImportFileQuietly(lib, Documents() / "json" / "every-kind.xml");
  lib.set_WarningInfo([&](const std::string& c, const std::string& m) { warnings.push_back(c + ": " + m); });
  lib.ActiveTarget()->Projects()->Append(std::make_shared<std::string>("2nd"), "2nd");
  lib.ExportUceToXml(dir.File("missing/out.xml"));
  ASSERT_TRUE(lib.LastSaveError());
  EXPECT_EQ(lib.LastSaveError()->Number(), 2);
  EXPECT_EQ(warnings, std::vector<std::string>{"ExportParametersToXml: Save error (number : 2)"});
}

TEST(StreamedExportTest, WritingIntoAnEmptyDomNodeDoesNothing) {
  pugi::xml_document doc;
  TessalyLibXml lib;
  ImportFileQuietly(lib, Documents() / "json" / "every-kind.xml");
  lib.ActiveTarget()->datas()->Item(1)->createXMLnode(doc, pugi::xml_node());
  lib.ActiveTarget()->Requests()->createXMLnode(doc, pugi::xml_node());
  EXPECT_FALSE(doc.first_child());
}

TEST(StreamedExportTest, WriteDocumentWithoutATargetIsError91) {
  TessalyLibXml lib;
  pugi::xml_document doc;
  EXPECT_TESSALY_ERROR(lib.WriteDocument(doc), 91, "Tessaly", "Object variable or With block variable not set");
}

}  // namespace
}  // namespace tessaly
