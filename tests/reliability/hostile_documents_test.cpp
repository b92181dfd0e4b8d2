// Hostile documents: each ends in a clear error or a documented repair, never in a crash, a hang
// or memory out of proportion. The small ones are files under tests/documents/hostile; the big
// ones are made here at run time.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "reliability/reliability_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

const std::string kBadXml = "Bad xml file, Reason=";

class HostileDocumentTest : public ::testing::Test {
 protected:
  // Loads a small, valid document first, so that each test can check what a refused load leaves
  // active.
  HostileDocumentTest() {
    f.lib.ImportUceFromText(EcuFrame(""));
    previous = f.lib.ActiveTarget();
    f.warnings.clear();
  }

  // Imports the corpus file `name` by its path, as a host would.
  void ImportFile(const std::string& name) { f.lib.ImportUceFromXml(HostilePath(name)); }

  RecordingFacade f;
  std::shared_ptr<TargetItem> previous;
};

// --- Truncated documents ---------------------------------------------------------------------

TEST_F(HostileDocumentTest, DocumentCutInsideAStartTagIsRefusedWithItsPosition) {
  EXPECT_TESSALY_ERROR(ImportFile("truncated-in-element.xml"), 1, kImportSource,
                       kBadXml + "Error parsing start element tag at line 9, column 5");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, DocumentCutInsideAnAttributeValueIsRefusedWithItsPosition) {
  EXPECT_TESSALY_ERROR(ImportFile("truncated-in-attribute.xml"), 1, kImportSource,
                       kBadXml + "Error parsing element attribute at line 9, column 15");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, DocumentMissingItsRootEndTagIsRefused) {
  EXPECT_TESSALY_ERROR(ImportFile("truncated-before-root-end.xml"), 1, kImportSource,
                       kBadXml + "Start-end tags mismatch at line 16, column 13");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, EveryTruncationOfAWholeDocumentIsAParseErrorAndKeepsThePreviousDocument) {
  const std::string whole = HostileDocument("truncated-before-root-end.xml") + "</xml>\r\n";
  ASSERT_NO_THROW(f.lib.ImportUceFromText(whole));
  previous = f.lib.ActiveTarget();
  // Every cut before the end of the root element leaves a document that is not well formed.
  const std::size_t end = whole.find("</xml>") + 5;
  for (std::size_t cut = 0; cut < end; ++cut) {
    bool refused = false;
    try {
      f.lib.ImportUceFromText(std::string_view(whole).substr(0, cut));
    } catch (const Error& e) {
      refused = e.Number() == 1 && e.Source() == kImportSource && e.Description().starts_with(kBadXml);
    }
    ASSERT_TRUE(refused) << "cut at byte " << cut;
    ASSERT_EQ(f.lib.ActiveTarget(), previous) << "cut at byte " << cut;
  }
}

TEST_F(HostileDocumentTest, ZeroByteFileHasNoDocumentElement) {
  EXPECT_TESSALY_ERROR(ImportFile("empty.xml"), 1, kImportSource, kBadXml + "No document element found");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, DocumentOfOnlyACommentHasNoDocumentElement) {
  EXPECT_TESSALY_ERROR(ImportFile("no-root-element.xml"), 1, kImportSource, kBadXml + "No document element found");
}

TEST_F(HostileDocumentTest, OtherRootElementLeavesAnEmptyNewDocument) {
  EXPECT_TESSALY_ERROR(ImportFile("other-root.xml"), 1, kImportSource, "Bad xml file, RootNode \"xml\" not found");
  ASSERT_NE(f.lib.ActiveTarget(), nullptr);
  EXPECT_NE(f.lib.ActiveTarget(), previous);
  EXPECT_EQ(f.lib.ActiveTarget()->name(), "");
}

// --- Entities --------------------------------------------------------------------------------

TEST_F(HostileDocumentTest, EntityDefinitionsAreNotExpanded) {
  // Nine levels of ten references each would expand to 10^9 copies; the reference stays text.
  ImportFile("entity-expansion.xml");
  EXPECT_EQ(f.lib.ActiveTarget()->name(), "&lol9;");
  // The predefined entities and character references are still read.
  EXPECT_EQ(f.lib.ActiveTarget()->Email(), "&<AB");
  const std::string saved = f.lib.ExportUceToText();
  EXPECT_NE(saved.find("Name=\"&amp;lol9;\""), std::string::npos);
  EXPECT_NE(saved.find("email=\"&amp;&lt;AB\""), std::string::npos);
  EXPECT_EQ(saved.find("DOCTYPE"), std::string::npos);
}

TEST_F(HostileDocumentTest, ExternalEntitiesAreNeitherFetchedNorRead) {
  ImportFile("external-entity.xml");
  EXPECT_EQ(f.lib.ActiveTarget()->name(), "&secret;");
  EXPECT_EQ(f.lib.ExportUceToText().find("root:"), std::string::npos);
}

// --- Encodings -------------------------------------------------------------------------------

TEST_F(HostileDocumentTest, InvalidUtf8IsRefusedWithItsPosition) {
  EXPECT_TESSALY_ERROR(ImportFile("invalid-utf8.xml"), 1, kImportSource,
                       kBadXml + "invalid UTF-8 byte sequence at line 2, column 31");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, ReferenceToASurrogateIsRefusedWithItsPosition) {
  // Decoded, it would be three bytes that are no character: the saved file would not load.
  EXPECT_TESSALY_ERROR(ImportFile("invalid-character-reference.xml"), 1, kImportSource,
                       kBadXml + "invalid character reference at line 3, column 10");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, ReferenceToNulIsRefusedInsteadOfCuttingTheName) {
  EXPECT_TESSALY_ERROR(ImportFile("nul-character-reference.xml"), 1, kImportSource,
                       kBadXml + "invalid character reference at line 2, column 26");
}

TEST_F(HostileDocumentTest, ReferenceBeyondUnicodeFoundByTheFuzzerIsRefused) {
  EXPECT_TESSALY_ERROR(f.lib.ImportUceFromXml(std::string(TESSALY_TEST_DOCUMENTS) +
                                              "/../../fuzz/regressions/import/character-reference-beyond-unicode.xml"),
                       1, kImportSource, kBadXml + "invalid character reference at line 6, column 48");
}

TEST_F(HostileDocumentTest, ReferencesToControlCharactersLoadAndAreWrittenBackAsReferences) {
  f.lib.ImportUceFromText("<?xml version=\"1.0\"?>\n<xml><tsl:Target Name=\"T\" email=\"a&#1;b\"><Function Name=\"F\" Address=\"1\"/>"
                          "</tsl:Target></xml>\n");
  EXPECT_EQ(f.lib.ActiveTarget()->Email(), "a\x01" "b");
  const std::string saved = f.lib.ExportUceToText();
  EXPECT_NE(saved.find("email=\"a&#01;b\""), std::string::npos);
  f.lib.ImportUceFromText(saved);
  EXPECT_EQ(f.lib.ActiveTarget()->Email(), "a\x01" "b");
}

TEST_F(HostileDocumentTest, OverlongUtf8FormIsRefused) {
  // "\xC0\xBC" would be an over-long "<": refused, never read as markup.
  EXPECT_TESSALY_ERROR(ImportFile("overlong-utf8.xml"), 1, kImportSource,
                       kBadXml + "invalid UTF-8 byte sequence at line 1, column 24");
}

TEST_F(HostileDocumentTest, Latin1BytesWithoutAnEncodingDeclarationAreRefusedAsUtf8) {
  EXPECT_TESSALY_ERROR(ImportFile("undeclared-latin1.xml"), 1, kImportSource,
                       kBadXml + "invalid UTF-8 byte sequence at line 1, column 25");
}

TEST_F(HostileDocumentTest, UnknownDeclaredEncodingIsRefused) {
  EXPECT_TESSALY_ERROR(ImportFile("unknown-encoding.xml"), 1, kImportSource,
                       kBadXml + "unsupported encoding 'x-tessaly-7'");
}

TEST_F(HostileDocumentTest, DeclaredUtf16OverSingleByteTextFindsNoDocument) {
  // The bytes are read as UTF-16, as declared: they make no markup at all.
  EXPECT_TESSALY_ERROR(ImportFile("declared-utf16-but-bytes.xml"), 1, kImportSource,
                       kBadXml + "No document element found");
}

TEST_F(HostileDocumentTest, Utf16LittleEndianWithByteOrderMarkLoads) {
  ImportFile("utf16le-bom.xml");
  EXPECT_EQ(f.lib.ActiveTarget()->name(), "R\xC3\xA9gulateur \xCE\xA9");
}

TEST_F(HostileDocumentTest, Utf16BigEndianWithoutByteOrderMarkLoads) {
  ImportFile("utf16be-no-bom.xml");
  EXPECT_EQ(f.lib.ActiveTarget()->name(), "R\xC3\xA9gulateur \xCE\xA9");
}

TEST_F(HostileDocumentTest, Utf16WithAnOddNumberOfBytesIsRefused) {
  EXPECT_TESSALY_ERROR(ImportFile("utf16-odd-length.xml"), 1, kImportSource,
                       kBadXml + "invalid UTF-16LE byte sequence at byte offset 258");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, Utf16WithALoneSurrogateIsRefused) {
  EXPECT_TESSALY_ERROR(ImportFile("utf16-lone-surrogate.xml"), 1, kImportSource,
                       kBadXml + "invalid UTF-16LE byte sequence at byte offset 50");
}

TEST_F(HostileDocumentTest, NulByteIsRefusedWithItsPosition) {
  EXPECT_TESSALY_ERROR(ImportFile("nul-byte.xml"), 1, kImportSource, kBadXml + "NUL character at line 1, column 25");
  EXPECT_EQ(f.lib.ActiveTarget(), previous);
}

TEST_F(HostileDocumentTest, ControlCharacterIsRefusedWithItsPosition) {
  EXPECT_TESSALY_ERROR(ImportFile("control-character.xml"), 1, kImportSource,
                       kBadXml + "control character 7 at line 1, column 44");
}

// --- Numbers ---------------------------------------------------------------------------------

TEST_F(HostileDocumentTest, IntegersBeyondThirtyTwoBitsAreOverflowErrors) {
  // Each record whose DiagVersion overflows is dropped; data whose bit count overflows keep the
  // default count. The last overflow reaches the host once everything else has loaded.
  EXPECT_TESSALY_ERROR(ImportFile("integer-overflow.xml"), 6, kLibrarySource, "Overflow");
  auto target = f.lib.ActiveTarget();
  ASSERT_EQ(target->AutoIdents()->Count(), 1);
  EXPECT_EQ(target->AutoIdents()->Item(1)->DiagNumber(), 2147483647);
  ASSERT_EQ(target->datas()->Count(), 2);
  const std::int32_t defaultBits = DataItem().NumberBits();
  EXPECT_EQ(target->datas()->ItemName("Wide")->NumberBits(), defaultBits);
  EXPECT_EQ(target->datas()->ItemName("Low")->NumberBits(), defaultBits);
}

TEST_F(HostileDocumentTest, NotANumberReadsAsZeroWhereDoublesAreRead) {
  ImportFile("double-nan-and-overflow.xml");
  auto target = f.lib.ActiveTarget();
  EXPECT_EQ(target->datas()->ItemName("Speed")->CoeffA(), 0.0);
  auto screen = target->Categories()->Item(1)->Screens()->Item(1);
  auto display = screen->DisplayItems()->Item(1);
  EXPECT_EQ(display->RangeItems()->Item(1)->Seuil(), 0.0);
  EXPECT_EQ(screen->ButtonItems()->Item(2)->FontSize(), 0.0f);
}

TEST_F(HostileDocumentTest, ExponentBeyondTheDoubleRangeReadsAsTheLargestDouble) {
  ImportFile("double-nan-and-overflow.xml");
  auto target = f.lib.ActiveTarget();
  auto data = target->datas()->ItemName("Speed");
  EXPECT_EQ(data->CoeffB(), std::numeric_limits<double>::max());
  EXPECT_EQ(data->CoeffC(), -std::numeric_limits<double>::max());
  auto display = target->Categories()->Item(1)->Screens()->Item(1)->DisplayItems()->Item(1);
  EXPECT_EQ(display->RangeItems()->Item(2)->Seuil(), std::numeric_limits<double>::max());
  EXPECT_EQ(display->RangeItems()->Item(3)->Seuil(), -std::numeric_limits<double>::max());
  // Written with fifteen digits, they read back as finite numbers, and from then on unchanged.
  const std::string saved = f.lib.ExportUceToText();
  EXPECT_NE(saved.find("Offset=\"1.79769313486232E+308\" DivideBy=\"-1.79769313486232E+308\""), std::string::npos);
  EXPECT_NE(saved.find("<Threshold Value=\" 1.79769313486232E+308\" Color=\"2\"/>"), std::string::npos);
  f.lib.ImportUceFromText(saved);
  EXPECT_EQ(f.lib.ExportUceToText(), saved);
}

TEST_F(HostileDocumentTest, FontSizesBeyondTheirRangeKeepTheirDefaults) {
  // A label's font size is a 32-bit float, a display's a whole number: 1e400 fits neither, so
  // each keeps its default (0 for a label, 10 for a display) rather than becoming infinite.
  ImportFile("double-nan-and-overflow.xml");
  auto screen = f.lib.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1);
  EXPECT_EQ(screen->LabelItems()->Item(1)->FontSize(), 0.0f);
  EXPECT_EQ(screen->DisplayItems()->Item(1)->FontSize(), 10);
  const std::string saved = f.lib.ExportUceToText();
  EXPECT_EQ(saved.find("Inf"), std::string::npos);
  EXPECT_NE(saved.find("<Font Name=\"Arial\" Size=\" 0\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Label>"),
            std::string::npos);
}

// --- Names that cannot be written back -------------------------------------------------------

TEST_F(HostileDocumentTest, ProjectNamesThatAreNotPlainNamesAreLeftOutAndReported) {
  ImportFile("project-names.xml");
  auto projects = f.lib.ActiveTarget()->Projects();
  ASSERT_EQ(projects->Count(), 2);
  EXPECT_EQ(*projects->Item(1), "Good");
  EXPECT_EQ(*projects->Item(2), "_x");
  ASSERT_EQ(f.diagnostics.size(), 2u);
  EXPECT_EQ(f.diagnostics[0].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(f.diagnostics[0].why, "Project name '1st' is not an XML name");
  EXPECT_EQ(f.diagnostics[1].why, "Project name 'b:c' is not an XML name");
  EXPECT_NE(f.lib.ExportUceToText().find("<Projects xmlns=\"\"><Good/><_x/></Projects>"), std::string::npos);
}

TEST_F(HostileDocumentTest, ProjectNameThatIsNotAnXmlNameIsRefusedAtExport) {
  f.lib.ActiveTarget()->Projects()->Append(std::make_shared<std::string>("2nd"), "2nd");
  EXPECT_TESSALY_ERROR(f.lib.ExportUceToText(), 1, "TargetItem.createXMLnode", "Project name '2nd' is not an XML name");
  // The save is refused as a whole: no file is written.
  TempDir dir;
  EXPECT_TESSALY_ERROR(f.lib.ExportUceToXml(dir.File("out.xml")), 1, "TargetItem.createXMLnode",
                       "Project name '2nd' is not an XML name");
  EXPECT_FALSE(std::filesystem::exists(dir.File("out.xml")));
}

// --- Big documents, made at run time ---------------------------------------------------------

constexpr int kDeep = 100000;

std::string Nested(const std::string& inner) {
  std::string out;
  out.reserve(static_cast<std::size_t>(kDeep) * 8 + inner.size());
  for (int i = 0; i < kDeep; ++i) out += "<b>";
  out += inner;
  for (int i = 0; i < kDeep; ++i) out += "</b>";
  return out;
}

TEST_F(HostileDocumentTest, HundredThousandLevelsUnderTheRootFindNoTarget) {
  const std::string document = "<xml>" + Nested("") + "</xml>";
  ASSERT_TRUE(RunOnSmallStack(std::size_t{1} << 20, [&] {
    EXPECT_TESSALY_ERROR(f.lib.ImportUceFromText(document), 1, "loadXml", "Bad xml file, Target node not found");
  }));
}

TEST_F(HostileDocumentTest, HundredThousandLevelsInsideTextValuesAreReadAsTheirText) {
  const std::string document = EcuFrame(
      "<Description><![CDATA[ECU]]>" + Nested("<![CDATA[ deep]]>") + "</Description>\n"
      "<Datas>\n<Data Name=\"Speed\">\n<Mnemonic>" + Nested("SPD") + "</Mnemonic>\n<Description>" +
      Nested("<![CDATA[vehicle speed]]>") + "</Description>\n<Bits count=\"8\">\n<List>\n<Item Value=\"1\" Text=\"One\">" +
      Nested("<![CDATA[first]]>") + "</Item></List>\n</Bits>\n</Data>\n</Datas>\n"
      "<Requests Endian=\"Big\">\n<Request Name=\"Read\"><Sent><SentBytes>" + Nested("21 01") +
      "</SentBytes></Sent></Request>\n</Requests>\n" + Nested("<Unknown/>"));
  // On a thread of 1 MB of stack, as hosts' worker threads often have: the depth of the document
  // must not become depth of calls.
  bool loaded = false;
  ASSERT_TRUE(RunOnSmallStack(std::size_t{1} << 20, [&] {
    try {
      f.lib.ImportUceFromText(document);
      loaded = true;
    } catch (const Error&) {
    }
  }));
  ASSERT_TRUE(loaded);
  auto target = f.lib.ActiveTarget();
  EXPECT_EQ(target->Parametres()->Comment(), "ECU deep");
  auto data = target->datas()->ItemName("Speed");
  EXPECT_EQ(data->Mnemo(), "SPD");
  EXPECT_EQ(data->Fiche(), "vehicle speed");
  EXPECT_EQ(data->DataListes()->Item(1)->Info(), "first");
  EXPECT_EQ(target->Requests()->ItemName("Read")->RequestBytes()->ToText(), "21 01");
  EXPECT_NO_THROW(f.lib.ExportUceToText());
}

TEST_F(HostileDocumentTest, HundredMegabyteAttributeValueIsKeptWhole) {
  const std::size_t size = 100u << 20;
  std::string document = EcuFrame("");
  const std::string marker = "Name=\"Engine\"";
  document.replace(document.find(marker), marker.size(), "Name=\"" + std::string(size, 'E') + "\"");
  ASSERT_NO_THROW(f.lib.ImportUceFromText(document));
  document.clear();
  document.shrink_to_fit();
  const std::string& name = f.lib.ActiveTarget()->name();
  ASSERT_EQ(name.size(), size);
  EXPECT_EQ(name.find_first_not_of('E'), std::string::npos);
  const std::string saved = f.lib.ExportUceToText();
  EXPECT_GT(saved.size(), size);
  EXPECT_NE(saved.find("Name=\"EEEE"), std::string::npos);
}

constexpr int kRepeats = 1000000;

std::string Repeated(const std::string& element) {
  std::string out;
  out.reserve(element.size() * kRepeats);
  for (int i = 0; i < kRepeats; ++i) out += element;
  return out;
}

TEST_F(HostileDocumentTest, MillionRepeatedScenarioStepsAreAllKeptInOrder) {
  const std::string document = EcuFrame(
      "<Requests Endian=\"Big\">\n<Request Name=\"Ping\"/>\n</Requests>\n"
      "<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\">\n\n<Button Text=\"Go\">\n" +
      Repeated("<Send Delay=\"5\" RequestName=\"Ping\"/>") + "\n</Button>\n</Screen>\n</Category></ds:Categories>");
  ASSERT_NO_THROW(f.lib.ImportUceFromText(document));
  auto button = f.lib.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->ButtonItems()->Item(2);
  auto steps = button->ScenarioItems();
  ASSERT_EQ(steps->Count(), kRepeats);
  EXPECT_EQ(steps->Item(1)->Index(), 1);
  EXPECT_EQ(steps->Item(kRepeats)->Index(), kRepeats);
}

TEST_F(HostileDocumentTest, MillionRepeatedDataKeepOneAndReportEveryOtherWithItsLine) {
  const std::string document = EcuFrame("<Datas>\n" + Repeated("<Data Name=\"Speed\"/>\n") + "</Datas>\n");
  ASSERT_NO_THROW(f.lib.ImportUceFromText(document));
  EXPECT_EQ(f.lib.ActiveTarget()->datas()->Count(), 1);
  ASSERT_EQ(f.diagnostics.size(), static_cast<std::size_t>(kRepeats - 1));
  // The k-th Data element stands on line 6 + k; its position is that of its name, after "<".
  EXPECT_EQ(f.diagnostics.front().line, 8u);
  EXPECT_EQ(f.diagnostics.front().column, 2u);
  EXPECT_EQ(f.diagnostics.back().line, static_cast<std::size_t>(6 + kRepeats));
  EXPECT_EQ(f.diagnostics.back().column, 2u);
  EXPECT_EQ(f.diagnostics.back().why, f.diagnostics.front().why);
}

TEST_F(HostileDocumentTest, MillionRepeatedThresholdsAreAllKept) {
  const std::string document = EcuFrame(
      "<Datas>\n<Data Name=\"Speed\"/>\n</Datas>\n<Requests Endian=\"Big\">\n<Request Name=\"Read\"><Received>"
      "<DataItem Name=\"Speed\" FirstByte=\"2\"/></Received></Request>\n</Requests>\n"
      "<ds:Categories>\n<Category Name=\"C\">\n\n<Screen Name=\"S\">\n\n<Display DataName=\"Speed\" RequestName=\"Read\">" +
      Repeated("<Threshold Value=\" 1\" Color=\"255\"/>") + "</Display>\n</Screen>\n</Category></ds:Categories>");
  ASSERT_NO_THROW(f.lib.ImportUceFromText(document));
  auto display = f.lib.ActiveTarget()->Categories()->Item(1)->Screens()->Item(1)->DisplayItems()->Item(1);
  EXPECT_EQ(display->RangeItems()->Count(), kRepeats);
}

}  // namespace
}  // namespace tessaly::testing
