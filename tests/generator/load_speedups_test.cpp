// The shortcuts taken to load, look up and release large documents quickly keep the behaviour
// of the straightforward forms: case-blind keys without folded copies, clearing a collection in
// one pass, reading and parsing a file in place, the OBD index used while devices load, the
// quick readings of plain numbers and of plain text, and the release of each section of the
// DOM once an import has read it.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "common/document_io.hpp"
#include "ecu_generator.hpp"
#include "support/test_support.hpp"
#include "tessaly/tessaly.hpp"

namespace tessaly::testing {
namespace {

// Texts whose folded forms are compared pairwise: ASCII of every length around the eight-byte
// steps, Latin-1, Latin Extended-A, Greek and Cyrillic letters, and bytes that are not UTF-8.
const std::vector<std::string>& FoldSamples() {
  static const std::vector<std::string> samples = {
      "", "a", "A", "k", "K", "kSpeed", "KSPEED", "kspeed", "kSpeeD", "EngineSpeed_0001_12", "ENGINESPEED_0001_12",
      "enginespeed_0001_12", "EngineSpeed_0001_13", "ABCDEFGH", "abcdefgh", "abcdefgi", "@[`{", "`{@[",
      "Temp\xC3\xA9rature", "TEMP\xC3\x89RATURE", "temp\xC3\xa9rature", "Entr\xC3\xA9" "e", "ENTR\xC3\x89" "E",
      "\xC4\x80\xC4\x81", "\xC4\x81\xC4\x81", "\xCE\x91\xCE\xB2", "\xCE\xB1\xCE\x92", "\xD0\x90\xD0\xB1",
      "\xD0\xB0\xD0\x91", "\xD0\x81", "\xD1\x91", "\xC3\x97", "\xC3\xB7", "bad\xC3", "bad\xC3(", "BAD\xC3(",
      "\xE2\x80\x93 dash", "\xE2\x80\x93 DASH", "\xFF\xFE", "x\xC1\x81", "X\xC1\x81",
      // Tails after whole eight-byte words: they differ or fold alike only in their last bytes.
      "abcdefghI", "ABCDEFGHi", "abcdefghJ", "abcdefghij\xC3\x89", "ABCDEFGHIJ\xC3\xA9", "abcdefghijklmno",
      "ABCDEFGHIJKLMNO", "abcdefghijklmnp", "abcdefghijklmnopq", "ABCDEFGHIJKLMNOPQ", "abcdefghijklmnopr"};
  return samples;
}

TEST(LoadSpeedupsTest, FoldedEqualAgreesWithFoldCaseOnEveryPair) {
  for (const std::string& a : FoldSamples())
    for (const std::string& b : FoldSamples())
      EXPECT_EQ(FoldedEqual(a, b), FoldCase(a) == FoldCase(b)) << "'" << a << "' / '" << b << "'";
}

TEST(LoadSpeedupsTest, TextsThatFoldAlikeHashAlike) {
  std::size_t pairs = 0;
  for (const std::string& a : FoldSamples())
    for (const std::string& b : FoldSamples())
      if (FoldCase(a) == FoldCase(b)) {
        EXPECT_EQ(FoldedHash(a), FoldedHash(b)) << "'" << a << "' / '" << b << "'";
        ++pairs;
      }
  EXPECT_GT(pairs, FoldSamples().size());
  // Different names spread: not every hash is the same.
  EXPECT_NE(FoldedHash("EngineSpeed_0001_12"), FoldedHash("EngineSpeed_0001_13"));
  EXPECT_NE(FoldedHash("abcdefgh"), FoldedHash("abcdefgi"));
}

TEST(LoadSpeedupsTest, KeyLookupIgnoresCaseOfAccentedCapitals) {
  KeyedCollection<std::string> texts;
  texts.Append(std::make_shared<std::string>("t"), "kTemp\xC3\xA9rature");
  EXPECT_EQ(*texts.Item("KTEMP\xC3\x89RATURE"), "t");
  EXPECT_TESSALY_ERROR(texts.Append(std::make_shared<std::string>("u"), "ktemp\xC3\x89rature"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(texts.KeyAt(1), "kTemp\xC3\xA9rature");
}

TEST(LoadSpeedupsTest, CopiedCollectionKeepsItsOwnKeys) {
  KeyedCollection<std::string> original;
  original.Append(std::make_shared<std::string>("a"), "kA");
  original.Append(std::make_shared<std::string>("b"));
  KeyedCollection<std::string> copy = original;
  original.Remove("KA");
  ASSERT_EQ(copy.Count(), 2);
  EXPECT_EQ(copy.KeyAt(1), "kA");
  EXPECT_EQ(copy.KeyAt(2), "");
  EXPECT_EQ(*copy.Item("ka"), "a");
  // Assigning a collection to itself (through a second name, as a host's code would) keeps it.
  const KeyedCollection<std::string>& same = copy;
  copy = same;
  EXPECT_EQ(*copy.Item("ka"), "a");
  KeyedCollection<std::string> moved = std::move(copy);
  EXPECT_EQ(*moved.Item("KA"), "a");
  EXPECT_EQ(moved.KeyAt(1), "kA");
}

TEST(LoadSpeedupsTest, RemoveFirstDropsEntriesAndTheirKeys) {
  KeyedCollection<std::string> texts;
  for (const char* key : {"k1", "", "k3", "k4"}) texts.Append(std::make_shared<std::string>(key), key);
  texts.RemoveFirst(3);
  ASSERT_EQ(texts.Count(), 1);
  EXPECT_EQ(texts.KeyAt(1), "k4");
  EXPECT_FALSE(texts.ContainsKey("k1"));
  EXPECT_FALSE(texts.ContainsKey("K3"));
  texts.Append(std::make_shared<std::string>("again"), "K1");
  texts.RemoveFirst(10);
  EXPECT_EQ(texts.Count(), 0);
  EXPECT_FALSE(texts.ContainsKey("k4"));
}

TEST(LoadSpeedupsTest, ClearingCategoriesStopsAtTheFirstThatCannotBeCleared) {
  // A category without a screen list cannot be cleared: the ones before it are removed, it and
  // the ones after it stay, in order.
  CategoryItems categories;
  for (const char* name : {"A", "B", "C", "D"}) {
    std::shared_ptr<CategoryItem> category = categories.Add(name);
    if (std::string(name) != "C") category->set_Screens(std::make_shared<ScreenItems>());
  }
  EXPECT_TESSALY_ERROR(categories.clear(), 91, "Tessaly", "Object variable or With block variable not set");
  ASSERT_EQ(categories.Count(), 2);
  EXPECT_EQ(categories.Item(1)->categoryName(), "C");
  EXPECT_EQ(categories.Item(2)->categoryName(), "D");
  EXPECT_NE(categories.Item(2)->Screens(), nullptr);
}

TEST(LoadSpeedupsTest, ClearingCallsEveryItemsClearOnceInOrder) {
  TessalyLibXml facade;
  std::shared_ptr<TargetItem> target = facade.NewTarget();
  std::vector<std::shared_ptr<DataItem>> held;
  for (int i = 0; i < 5; ++i) {
    std::shared_ptr<DataItem> data = target->datas()->Add("D" + std::to_string(i));
    data->set_parent(target);
    data->set_DataListes(std::make_shared<DataListeItems>());
    held.push_back(data);
  }
  target->datas()->clear();
  EXPECT_EQ(target->datas()->Count(), 0);
  for (const auto& data : held) {
    EXPECT_EQ(data->parent(), nullptr);
    EXPECT_EQ(data->DataListes(), nullptr);
  }
}

TEST(LoadSpeedupsTest, ClearingALargeCollectionReleasesEveryItemInOneGo) {
  // The collection is emptied at once rather than by removing its first entry again and again
  // (which would move every remaining entry each time); its cost is measured by the benchmark.
  TessalyLibXml facade;
  std::shared_ptr<TargetItem> target = facade.NewTarget();
  for (int i = 0; i < 200000; ++i) target->datas()->Add("D" + std::to_string(i));
  std::weak_ptr<DataItem> first = target->datas()->Item(1);
  std::weak_ptr<DataItem> last = target->datas()->Item(200000);
  target->datas()->clear();
  EXPECT_EQ(target->datas()->Count(), 0);
  EXPECT_TRUE(first.expired());
  EXPECT_TRUE(last.expired());
  EXPECT_EQ(target->datas()->ItemName("D7"), nullptr);
}

TEST(LoadSpeedupsTest, FileReadInPlaceLoadsLikeTheCopyingPath) {
  TempDir dir;
  const std::string document = bench::GenerateEcuDocument(5, bench::EcuShape{3});
  WriteFileBytes(dir.File("ecu.xml"), document);
  TessalyLibXml fromFile;
  fromFile.ImportUceFromXml(dir.File("ecu.xml"));
  TessalyLibXml fromText;
  fromText.ImportUceFromText(document);
  EXPECT_EQ(fromFile.ExportUceToText(), document);
  EXPECT_EQ(fromText.ExportUceToText(), document);
}

TEST(LoadSpeedupsTest, HugePagesAskedForAreTheWholeAlignedPagesInsideTheBuffer) {
  const std::uintptr_t page = io::kHugePage;
  const std::uintptr_t aligned = 64 * page;
  struct Case {
    std::uintptr_t address;
    std::size_t size;
    std::size_t offset;
    std::size_t length;
  };
  const Case cases[] = {
      {aligned, page, 0, page},                          // exactly one page
      {aligned, page - 1, 0, 0},                         // one byte short of a page
      {aligned + 16, page, 0, 0},                        // a page's length across two pages
      {aligned + 16, 2 * page, page - 16, page},         // one whole page in the middle
      {aligned + 16, 50 * page + 3, page - 16, 49 * page},  // a 100 MB buffer as malloc gives it
      {aligned - 1, 2, 0, 0},                            // two bytes across a boundary
      {aligned, 0, 0, 0},                                // nothing
  };
  for (const Case& c : cases) {
    const io::HugePages whole = io::WholeHugePages(c.address, c.size);
    EXPECT_EQ(whole.offset, c.offset) << c.address - aligned << " + " << c.size;
    EXPECT_EQ(whole.size, c.length) << c.address - aligned << " + " << c.size;
    if (whole.size != 0) {
      EXPECT_EQ((c.address + whole.offset) % page, 0u);
      EXPECT_LE(whole.offset + whole.size, c.size);
    }
  }
}

TEST(LoadSpeedupsTest, FileOfSeveralHugePagesIsReadByteForByte) {
  TempDir dir;
  std::string bytes(5 * io::kHugePage + 123, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>((i * 7919) >> 5);
  WriteFileBytes(dir.File("large.bin"), bytes);
  std::string read;
  std::string reason;
  ASSERT_TRUE(io::ReadLocation(dir.File("large.bin"), read, reason)) << reason;
  EXPECT_TRUE(read == bytes);
}

TEST(LoadSpeedupsTest, InPlaceLoadKeepsTheCallersText) {
  const std::string document = bench::GenerateEcuDocument(6, bench::EcuShape{1});
  const std::string before = document;
  TessalyLibXml facade;
  facade.ImportUceFromText(document);
  EXPECT_EQ(document, before);
}

TEST(LoadSpeedupsTest, ParseFailureStillNamesLineAndColumnOfTheOriginalText) {
  // Line breaks as CR LF before the fault: the in-place parser rewrites them, the reason must
  // still count them as they were.
  const std::string bad = "<?xml version=\"1.0\"?>\r\n<xml>\r\n<a\r\nb=\"1\">\r\n<c></d>\r\n</xml>\r\n";
  TempDir dir;
  WriteFileBytes(dir.File("bad.xml"), bad);
  std::string fromCopy;
  {
    pugi::xml_document doc;
    ASSERT_FALSE(io::LoadDocument(doc, dir.File("bad.xml"), fromCopy));
  }
  TessalyLibXml facade;
  EXPECT_TESSALY_ERROR(facade.ImportUceFromXml(dir.File("bad.xml")), 1, "TessalyDatabase.ImportUceFromXml",
                       "Bad xml file, Reason=" + fromCopy);
  EXPECT_TESSALY_ERROR(facade.ImportUceFromText(bad), 1, "TessalyDatabase.ImportUceFromXml",
                       "Bad xml file, Reason=" + fromCopy);
  EXPECT_NE(fromCopy.find("line 5"), std::string::npos) << fromCopy;
}

TEST(LoadSpeedupsTest, DecodingInPlaceMatchesTheCopyingDecoder) {
  const std::vector<std::string> inputs = {
      "<?xml version=\"1.0\"?><a/>",
      "\xEF\xBB\xBF<?xml version=\"1.0\"?><a>\xC3\xA9</a>",
      std::string("\xFF\xFE<\0a\0/\0>\0", 10),
      "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\xE9</a>",
      "<?xml version=\"1.0\"?><a>\xC3</a>",
      "<a>\x01</a>",
      "<a>plain ascii text that is longer than eight bytes\tand\r\nlines</a>",
      "<a>\xF0\x9F\x98\x80 \xED\xA0\x80</a>"};
  for (const std::string& input : inputs) {
    std::string copied;
    std::string copyReason;
    const bool copyOk = io::DecodeToUtf8(input, copied, copyReason);
    std::string inPlace = input;
    std::string inPlaceReason;
    const bool inPlaceOk = io::DecodeToUtf8InPlace(inPlace, inPlaceReason);
    EXPECT_EQ(inPlaceOk, copyOk) << input;
    EXPECT_EQ(inPlaceReason, copyReason) << input;
    if (copyOk) {
      EXPECT_EQ(inPlace, copied) << input;
    }
  }
}

TEST(LoadSpeedupsTest, ControlCharacterAfterLongAsciiRunIsStillFound) {
  std::string text(64, 'a');
  text[37] = '\x02';
  std::string reason;
  EXPECT_FALSE(io::DecodeToUtf8InPlace(text, reason));
  EXPECT_EQ(reason, "control character 2 at line 1, column 38");

  // Tabs and line breaks in the same eight bytes as the fault do not hide it.
  std::string lines = "abcdefgh\tab\r\nc\x1F" "defghijklmnop";
  EXPECT_FALSE(io::DecodeToUtf8InPlace(lines, reason));
  EXPECT_EQ(reason, "control character 31 at line 2, column 2");
  std::string clean = "abcdefgh\tab\r\ncdefghijklmnop\n\n\n\n\n\n\n\n\t";
  EXPECT_TRUE(io::DecodeToUtf8InPlace(clean, reason));
}

// Two devices whose tests claim the same OBD code: the later one loses it, and is reported as
// repaired, whether or not earlier devices were already held.
constexpr const char* kDevices =
    "<Devices>\n"
    "<Device Name=\"First\">\n\r\n<Test Type=\"1\" OBD=\"300\">\r\n</Test>\n</Device>\n"
    "<Device Name=\"Second\">\n\r\n<Test Type=\"1\" OBD=\"300\">\r\n</Test>\r\n<Test Type=\"2\" OBD=\"301\">\r\n</Test>\n"
    "</Device>\n"
    "<Device Name=\"First\">\n\r\n<Test Type=\"1\" OBD=\"302\">\r\n</Test>\n</Device>\n"
    "<Device Name=\"Third\">\n\r\n<Test Type=\"1\" OBD=\"302\">\r\n</Test>\r\n<Test Type=\"2\" OBD=\"301\">\r\n</Test>\n"
    "</Device>\n"
    "</Devices>";

TEST(LoadSpeedupsTest, DuplicateObdCodeWhileLoadingIsDroppedFromTheLaterTest) {
  TessalyLibXml facade;
  std::vector<std::string> repaired;
  facade.set_Diagnostics([&](const Diagnostic& d) {
    if (d.action == Diagnostic::Action::kRepaired) repaired.push_back(d.what);
  });
  std::shared_ptr<TargetItem> target = facade.NewTarget();
  pugi::xml_document doc;
  ParseText(doc, kDevices);
  target->Organes()->loadXml(doc, doc.child("Devices"), target);
  ASSERT_EQ(target->Organes()->Count(), 3);
  EXPECT_EQ(target->Organes()->ItemName("First")->Tests()->ItemType(1)->OBD(), 300);
  EXPECT_EQ(target->Organes()->ItemName("Second")->Tests()->ItemType(1)->OBD(), 0);
  EXPECT_EQ(target->Organes()->ItemName("Second")->Tests()->ItemType(2)->OBD(), 301);
  // The dropped second "First" brought no codes: 302 is free for Third, 301 is not.
  EXPECT_EQ(target->Organes()->ItemName("Third")->Tests()->ItemType(1)->OBD(), 302);
  EXPECT_EQ(target->Organes()->ItemName("Third")->Tests()->ItemType(2)->OBD(), 0);
  EXPECT_EQ(repaired.size(), 2U);
  // After the load the codes are checked against the devices themselves again.
  EXPECT_TESSALY_ERROR(target->Organes()->ItemName("Third")->Tests()->ItemType(2)->set_OBD(300), 1, "TestItem.OBD",
                       "Duplicate OBD code");
  EXPECT_EQ(target->Organes()->GetDevicesTestWithObd(301), target->Organes()->ItemName("Second")->Tests()->ItemType(2));
}

TEST(LoadSpeedupsTest, CodesOfDevicesHeldBeforeTheLoadCount) {
  TessalyLibXml facade;
  std::shared_ptr<TargetItem> target = facade.NewTarget();
  std::shared_ptr<OrganeItem> held = target->Organes()->Add("Held", "", 0, 0);
  held->set_parent(target);
  held->Tests()->Add(5)->set_OBD(300);
  pugi::xml_document doc;
  ParseText(doc, kDevices);
  target->Organes()->loadXml(doc, doc.child("Devices"), target);
  EXPECT_EQ(target->Organes()->ItemName("First")->Tests()->ItemType(1)->OBD(), 0);
  EXPECT_EQ(target->Organes()->GetDevicesTestWithObd(300), held->Tests()->ItemType(5));
}

TEST(LoadSpeedupsTest, PlainDigitsReadAsIntegersLikeEveryOtherForm) {
  const std::vector<std::pair<std::string, std::int32_t>> values = {
      {"0", 0},          {"-0", 0},           {"7", 7},         {"007", 7},         {"-12", -12},
      {"123456789", 123456789}, {"-123456789", -123456789}, {"1234567890", 1234567890},
      {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1}, {"+5", 5}, {" 42", 42},
      {"42 ", 42},       {"2.5", 2},          {"3.5", 4},       {"-2.6", -3}};
  for (const auto& [text, value] : values) EXPECT_EQ(ToInt32(text), value) << "'" << text << "'";
  for (const std::string text : {"", "-", "--1", "12a", "1 2", "0x10"})
    EXPECT_THROW(ToInt32(text), Error) << "'" << text << "'";
  EXPECT_THROW(ToInt32("2147483648"), Error);
  EXPECT_THROW(ToInt32("-99999999999"), Error);
}

TEST(LoadSpeedupsTest, ZeroAndOneReadAsBooleansLikeEveryOtherForm) {
  EXPECT_FALSE(ToBool("0"));
  EXPECT_TRUE(ToBool("1"));
  EXPECT_TRUE(ToBool(" 1 "));
  EXPECT_FALSE(ToBool("0.0"));
  EXPECT_TRUE(ToBool("-1"));
  EXPECT_TRUE(ToBool("True"));
  EXPECT_FALSE(ToBool("FALSE"));
  EXPECT_THROW(ToBool("01x"), Error);
}

TEST(LoadSpeedupsTest, EveryPositionOfALongTextIsCheckedForForbiddenBytes) {
  // Runs of allowed text (letters, tabs, line feeds) around one offending byte, at every offset
  // across several sixteen-byte steps.
  const std::string base = "abc\tdefgh\nijklmnopqrstuvw\txyzABCDEFGHIJKLMNOPQRSTUVW";
  for (std::size_t at = 0; at < base.size(); ++at) {
    std::string reason;
    std::string clean = base;
    EXPECT_TRUE(io::DecodeToUtf8InPlace(clean, reason)) << at;

    std::string control = base;
    control[at] = '\x01';
    ASSERT_FALSE(io::DecodeToUtf8InPlace(control, reason)) << at;
    EXPECT_NE(reason.find("control character 1 at line "), std::string::npos) << reason;

    std::string invalid = base;
    invalid[at] = '\xFF';
    ASSERT_FALSE(io::DecodeToUtf8InPlace(invalid, reason)) << at;
    EXPECT_NE(reason.find("invalid UTF-8 byte sequence at line "), std::string::npos) << reason;

    std::string accented = base;
    accented.replace(at, 1, "\xC3\xA9");
    EXPECT_TRUE(io::DecodeToUtf8InPlace(accented, reason)) << at << ": " << reason;
  }
  std::string text(40, 'a');
  text[33] = '\x1B';
  std::string reason;
  EXPECT_FALSE(io::DecodeToUtf8InPlace(text, reason));
  EXPECT_EQ(reason, "control character 27 at line 1, column 34");
}

TEST(LoadSpeedupsTest, TargetLoadedFromTheCallersDocumentLeavesItWhole) {
  const std::string document = bench::GenerateEcuDocument(8, bench::EcuShape{2});
  pugi::xml_document doc;
  ParseText(doc, document);
  std::ostringstream before;
  doc.save(before, "", pugi::format_raw);
  TessalyLibXml facade;
  std::shared_ptr<TargetItem> target = facade.NewTarget();
  target->loadXml(doc, doc.document_element());
  EXPECT_GT(target->datas()->Count(), 0);
  EXPECT_GT(target->Categories()->Count(), 0);
  std::ostringstream after;
  doc.save(after, "", pugi::format_raw);
  EXPECT_EQ(after.str(), before.str());
}

TEST(LoadSpeedupsTest, ImportReleasingItsSectionsGivesTheSameModelAsALoadThatKeepsThem) {
  const std::string document = bench::GenerateEcuDocument(9, bench::EcuShape{3});
  pugi::xml_document doc;
  ParseText(doc, document);
  TessalyLibXml direct;
  std::shared_ptr<TargetItem> kept = direct.NewTarget();
  kept->loadXml(doc, doc.document_element());
  direct.set_ActiveTarget(kept);

  TessalyLibXml facade;
  facade.ImportUceFromText(document);
  EXPECT_EQ(facade.ExportUceToText(), document);
  EXPECT_EQ(facade.ExportUceToText(), direct.ExportUceToText());
}

// An element nested `levels` deep.
std::string Nested(int levels) {
  std::string text;
  text.reserve(static_cast<std::size_t>(levels) * 7);
  for (int i = 0; i < levels; ++i) text += "<n>";
  for (int i = 0; i < levels; ++i) text += "</n>";
  return text;
}

// An element of a few levels holding more than a page of text.
std::string LongElement() {
  std::string text = "<w>";
  for (int i = 0; i < 2000; ++i) text += "<v a=\"1\"><u>text</u></v>";
  return text + "</w>";
}

constexpr int kDeepLevels = 200000;

TEST(LoadSpeedupsTest, DeepAndLongElementsInsideASectionAreReleasedWithoutDeepRecursion) {
  // An element nested 200000 levels deep and one holding more than a page of text, between the
  // data of the section: neither is read, both are freed with the section.
  std::string document = bench::GenerateEcuDocument(10, bench::EcuShape{1});
  TessalyLibXml reference;
  reference.ImportUceFromText(document);
  const std::int32_t datas = reference.ActiveTarget()->datas()->Count();

  const std::size_t datasAt = document.find("<Datas>");
  ASSERT_NE(datasAt, std::string::npos);
  document.insert(datasAt + 7, Nested(kDeepLevels) + LongElement());

  TessalyLibXml facade;
  facade.ImportUceFromText(document);
  EXPECT_EQ(facade.ActiveTarget()->datas()->Count(), datas);
  EXPECT_EQ(facade.ExportUceToText(), reference.ExportUceToText());
}

TEST(LoadSpeedupsTest, NodesBetweenAndAfterTheElementsOfASectionAreFreedWithThemWithoutDeepRecursion) {
  // The data, requests and devices are freed one by one as they are read, each with the nodes
  // before it. Between two of them and after the last one of each section: an element nested
  // 200000 levels deep, one holding more than a page of text, a comment and a processing
  // instruction. None of them is read; the model is that of the document without them.
  std::string document = bench::GenerateEcuDocument(11, bench::EcuShape{1});
  TessalyLibXml reference;
  reference.ImportUceFromText(document);

  const std::string junk = Nested(kDeepLevels) + LongElement() + "<!-- between --><?pi between?>";
  for (const char* element : {"<Data ", "<Request ", "<Device "}) {
    const std::size_t first = document.find(element);
    ASSERT_NE(first, std::string::npos) << element;
    const std::size_t second = document.find(element, first + 1);
    ASSERT_NE(second, std::string::npos) << element;
    document.insert(second, junk);
  }
  for (const char* end : {"</Datas>", "</Requests>", "</Devices>"}) {
    const std::size_t at = document.find(end);
    ASSERT_NE(at, std::string::npos) << end;
    document.insert(at, junk);
  }

  TessalyLibXml facade;
  facade.ImportUceFromText(document);
  EXPECT_EQ(facade.ActiveTarget()->datas()->Count(), reference.ActiveTarget()->datas()->Count());
  EXPECT_EQ(facade.ActiveTarget()->Requests()->Count(), reference.ActiveTarget()->Requests()->Count());
  EXPECT_EQ(facade.ActiveTarget()->Organes()->Count(), reference.ActiveTarget()->Organes()->Count());
  EXPECT_EQ(facade.ExportUceToText(), reference.ExportUceToText());
}

TEST(LoadSpeedupsTest, DeepElementInsideTheScreensIsFreedWithTheDocument) {
  // The screens are not taken apart after reading: an element nested 200000 levels deep among
  // them goes when the whole DOM is freed, which needs no recursion either.
  std::string document = bench::GenerateEcuDocument(12, bench::EcuShape{1});
  TessalyLibXml reference;
  reference.ImportUceFromText(document);

  const std::size_t categoriesAt = document.find("<ds:Categories");
  ASSERT_NE(categoriesAt, std::string::npos);
  document.insert(document.find('>', categoriesAt) + 1, Nested(kDeepLevels));

  TessalyLibXml facade;
  facade.ImportUceFromText(document);
  EXPECT_EQ(facade.ExportUceToText(), reference.ExportUceToText());
}

}  // namespace
}  // namespace tessaly::testing
