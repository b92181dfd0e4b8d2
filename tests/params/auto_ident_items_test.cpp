#include "tessaly/params/auto_ident_items.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/test_support.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::NodeText;
using testing::ParseText;

std::shared_ptr<AutoIdentItem> Record(std::int32_t diag, const char* supplier, const char* soft, const char* version) {
  auto item = std::make_shared<AutoIdentItem>();
  item->set_DiagNumber(diag);
  item->set_SupplierCode(supplier);
  item->set_Soft(soft);
  item->set_Version(version);
  return item;
}

std::string Written(const AutoIdentItems& items) {
  pugi::xml_document doc;
  pugi::xml_node element = doc.append_child("AutoIdents");
  items.createXMLnode(doc, element);
  return NodeText(element);
}

// Loads `items` from <AutoIdents> holding `content`, with `parent` as the records' parent.
void LoadFrom(AutoIdentItems& items, const std::string& content, const std::shared_ptr<TargetItem>& parent = nullptr) {
  pugi::xml_document doc;
  ParseText(doc, "<AutoIdents>" + content + "</AutoIdents>");
  items.loadXml(doc, doc.child("AutoIdents"), parent);
}

TEST(ParamsAutoIdentTest, FreshRecordHoldsItsDefaults) {
  AutoIdentItem item;
  EXPECT_EQ(item.DiagNumber(), 0);
  EXPECT_EQ(item.SupplierCode(), "");
  EXPECT_EQ(item.Soft(), "");
  EXPECT_EQ(item.Version(), "");
  EXPECT_EQ(item.parent(), nullptr);
}

TEST(ParamsAutoIdentTest, RecordsDifferingOnlyInTheCaseOfSoftAreDifferentRecords) {
  AutoIdentItems items;
  items.Add(12, "SUP", "soft1", "V1", nullptr);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "SOFT1", "V1")), 0);
  EXPECT_EQ(items.FindItemObject(Record(12, "SUP", "SOFT1", "V1")), nullptr);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "soft1", "V1")), 1);
}

TEST(ParamsAutoIdentTest, EachOfTheFourFieldsTakesPartInTheIdentity) {
  AutoIdentItems items;
  items.Add(12, "SUP", "SOFT", "V1", nullptr);
  EXPECT_EQ(items.FindItem(Record(13, "SUP", "SOFT", "V1")), 0);
  EXPECT_EQ(items.FindItem(Record(12, "SUQ", "SOFT", "V1")), 0);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "SOFX", "V1")), 0);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "SOFT", "V2")), 0);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "SOFT", "V1")), 1);
}

TEST(ParamsAutoIdentTest, DeleteOfARecordAddedTwiceRemovesOnlyTheFirst) {
  AutoIdentItems items;
  auto first = items.Add(12, "SUP", "SOFT", "V1", nullptr);
  items.Add(3, "X", "Y", "Z", nullptr);
  auto second = items.Add(12, "SUP", "SOFT", "V1", nullptr);
  items.Delete(Record(12, "SUP", "SOFT", "V1"));
  ASSERT_EQ(items.Count(), 2);
  EXPECT_EQ(items.Item(1)->Soft(), "Y");
  EXPECT_EQ(items.Item(2), second);
  EXPECT_EQ(items.FindItem(Record(12, "SUP", "SOFT", "V1")), 2);
  EXPECT_EQ(items.FindItemObject(Record(12, "SUP", "SOFT", "V1")), second);
}

TEST(ParamsAutoIdentTest, DeleteClearsTheRemovedRecordOnly) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  AutoIdentItems items;
  auto first = items.Add(1, "A", "B", "C", target);
  auto second = items.Add(2, "A", "B", "C", target);
  items.Delete(Record(1, "A", "B", "C"));
  EXPECT_EQ(first->parent(), nullptr);
  EXPECT_EQ(second->parent(), target);
  EXPECT_EQ(items.Count(), 1);
}

TEST(ParamsAutoIdentTest, DeleteOfAnAbsentRecordChangesNothing) {
  AutoIdentItems items;
  items.Add(1, "A", "B", "C", nullptr);
  items.Delete(Record(1, "A", "B", "c"));
  EXPECT_EQ(items.Count(), 1);
}

TEST(ParamsAutoIdentTest, FindItemObjectReturnsTheStoredRecordNotTheProbe) {
  AutoIdentItems items;
  auto stored = items.Add(7, "S", "F", "V", nullptr);
  auto probe = Record(7, "S", "F", "V");
  EXPECT_EQ(items.FindItemObject(probe), stored);
  EXPECT_NE(items.FindItemObject(probe), probe);
}

TEST(ParamsAutoIdentTest, LookupsOnAnEmptyCollectionFindNothing) {
  AutoIdentItems items;
  EXPECT_EQ(items.FindItem(Record(1, "A", "B", "C")), 0);
  EXPECT_EQ(items.FindItemObject(Record(1, "A", "B", "C")), nullptr);
  items.Delete(Record(1, "A", "B", "C"));
  EXPECT_EQ(items.FindItem(nullptr), 0);
  EXPECT_EQ(items.FindItemObject(nullptr), nullptr);
  items.Delete(nullptr);
  EXPECT_EQ(items.Count(), 0);
}

TEST(ParamsAutoIdentTest, LookingUpANullRecordInANonEmptyCollectionIsError91) {
  AutoIdentItems items;
  items.Add(1, "A", "B", "C", nullptr);
  EXPECT_TESSALY_ERROR(items.FindItem(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_TESSALY_ERROR(items.Delete(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
  EXPECT_EQ(items.Count(), 1);
}

TEST(ParamsAutoIdentTest, AddStoresTheValuesAndTheParent) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  AutoIdentItems items;
  auto item = items.Add(42, "SUP", "SOFT", "V9", target);
  EXPECT_EQ(item->DiagNumber(), 42);
  EXPECT_EQ(item->SupplierCode(), "SUP");
  EXPECT_EQ(item->Soft(), "SOFT");
  EXPECT_EQ(item->Version(), "V9");
  EXPECT_EQ(item->parent(), target);
  EXPECT_EQ(items.Item(1), item);
}

TEST(ParamsAutoIdentTest, KeyedRecordIsReachableByItsKeyWhateverTheCase) {
  AutoIdentItems items;
  auto keyed = items.Add(1, "A", "B", "C", nullptr, "kFirst");
  auto unkeyed = items.AddData(Record(2, "A", "B", "C"));
  EXPECT_EQ(items.Item("KFIRST"), keyed);
  EXPECT_EQ(items.Item(2), unkeyed);
  EXPECT_TESSALY_ERROR(items.Item("C"), 5, "Tessaly", "Invalid procedure call or argument");
  EXPECT_TESSALY_ERROR(items.Add(3, "", "", "", nullptr, "kfirst"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(items.Count(), 2);
}

TEST(ParamsAutoIdentTest, EqualRecordsMayBeHeldTwice) {
  AutoIdentItems items;
  auto record = Record(1, "A", "B", "C");
  items.AddData(record);
  items.AddData(Record(1, "A", "B", "C"));
  EXPECT_EQ(items.Count(), 2);
}

TEST(ParamsAutoIdentTest, ClearClearsEveryRecordAndEmptiesTheCollection) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  AutoIdentItems items;
  auto a = items.Add(1, "A", "B", "C", target);
  auto b = items.Add(2, "A", "B", "C", target);
  items.clear();
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(b->parent(), nullptr);
  items.clear();
  EXPECT_EQ(items.Count(), 0);
}

TEST(ParamsAutoIdentTest, RecordWithEmptyTextsWritesAllFourAttributes) {
  AutoIdentItems items;
  items.Add(12, "", "", "", nullptr);
  EXPECT_EQ(Written(items), R"(<AutoIdents><AutoIdent DiagVersion="12" Supplier="" Soft="" Version=""/></AutoIdents>)");
}

TEST(ParamsAutoIdentTest, RecordsAreWrittenInOrderWithNothingBetweenThem) {
  AutoIdentItems items;
  items.Add(-3, "S&1", "F\"2", "V<3", nullptr);
  items.Add(0, "a", "b", "c", nullptr);
  EXPECT_EQ(Written(items), "<AutoIdents><AutoIdent DiagVersion=\"-3\" Supplier=\"S&amp;1\" Soft=\"F&quot;2\" "
                            "Version=\"V&lt;3\"/><AutoIdent DiagVersion=\"0\" Supplier=\"a\" Soft=\"b\" "
                            "Version=\"c\"/></AutoIdents>");
}

TEST(ParamsAutoIdentTest, EmptyCollectionWritesNothing) {
  AutoIdentItems items;
  EXPECT_EQ(Written(items), "<AutoIdents/>");
}

TEST(ParamsAutoIdentTest, LoadingKeepsTheDocumentOrderAndSetsTheParent) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  AutoIdentItems items;
  LoadFrom(items,
           R"(<AutoIdent DiagVersion="3" Supplier="S3" Soft="F3" Version="V3"/>)"
           "\n"
           R"(<Other/><AutoIdent DiagVersion="1" Supplier="S1" Soft="F1" Version="V1"/>)"
           R"(<AutoIdent DiagVersion="2" Supplier="" Soft="" Version=""/>)",
           target);
  ASSERT_EQ(items.Count(), 3);
  EXPECT_EQ(items.Item(1)->DiagNumber(), 3);
  EXPECT_EQ(items.Item(1)->SupplierCode(), "S3");
  EXPECT_EQ(items.Item(1)->Soft(), "F3");
  EXPECT_EQ(items.Item(1)->Version(), "V3");
  EXPECT_EQ(items.Item(2)->DiagNumber(), 1);
  EXPECT_EQ(items.Item(3)->DiagNumber(), 2);
  EXPECT_EQ(items.Item(3)->Version(), "");
  for (const auto& item : items) EXPECT_EQ(item->parent(), target);
  EXPECT_FALSE(Err().Pending());
}

TEST(ParamsAutoIdentTest, RecordMissingAnAttributeIsDroppedWithError91AndLaterRecordsLoad) {
  AutoIdentItems items;
  LoadFrom(items, R"(<AutoIdent DiagVersion="1" Supplier="S" Soft="F" Version="V"/>)"
                  R"(<AutoIdent DiagVersion="2" Supplier="S" Version="V"/>)"
                  R"(<AutoIdent DiagVersion="3" Supplier="S" Soft="F" Version="V"/>)");
  ASSERT_EQ(items.Count(), 2);
  EXPECT_EQ(items.Item(1)->DiagNumber(), 1);
  EXPECT_EQ(items.Item(2)->DiagNumber(), 3);
  EXPECT_PENDING_ERROR(91, "Tessaly", "Object variable or With block variable not set");
  Err().Clear();
}

TEST(ParamsAutoIdentTest, DiagVersionThatIsNotANumberDropsTheRecordWithTheConversionError) {
  AutoIdentItems items;
  LoadFrom(items, R"(<AutoIdent DiagVersion="x12" Supplier="S" Soft="F" Version="V"/>)");
  EXPECT_EQ(items.Count(), 0);
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  Err().Clear();
  LoadFrom(items, R"(<AutoIdent DiagVersion="4294967296" Supplier="S" Soft="F" Version="V"/>)");
  EXPECT_EQ(items.Count(), 0);
  EXPECT_PENDING_ERROR(6, "Tessaly", "Overflow");
  Err().Clear();
}

TEST(ParamsAutoIdentTest, RecordReaderStartsFromAClearErrorState) {
  pugi::xml_document doc;
  ParseText(doc, R"(<AutoIdent DiagVersion="5" Supplier="S" Soft="F" Version="V"/>)");
  AutoIdentItem item;
  Err().Raise(1, "elsewhere", "earlier");
  item.loadXml(doc, doc.child("AutoIdent"));
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(item.DiagNumber(), 5);
}

TEST(ParamsAutoIdentTest, DroppedRecordIsReportedToTheDiagnosticsCallback) {
  TessalyLibXml lib;
  auto target = lib.NewTarget();
  target->set_name("Engine");
  std::vector<Diagnostic> seen;
  lib.set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  AutoIdentItems items;
  LoadFrom(items, R"(<AutoIdent DiagVersion="1" Supplier="S" Soft="F" Version="V"/><AutoIdent DiagVersion="2"/>)",
           target);
  Err().Clear();
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[0].what, "AutoIdent 2 in AutoIdents of target Engine");
  EXPECT_EQ(seen[0].why, "Object variable or With block variable not set");
}

}  // namespace
}  // namespace tessaly
