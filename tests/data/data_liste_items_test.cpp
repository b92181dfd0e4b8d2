#include "tessaly/data/data_liste_items.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "data/data_test_util.hpp"
#include "tessaly/data/data_items.hpp"

namespace tessaly {
namespace {

using testing::ParseElement;

std::vector<std::int32_t> Values(const DataListeItems& list) {
  std::vector<std::int32_t> values;
  for (const auto& item : list) values.push_back(item->Valeur());
  return values;
}

std::shared_ptr<DataListeItem> Entry(std::int32_t value, const std::string& label) {
  auto item = std::make_shared<DataListeItem>();
  item->set_Valeur(value);
  item->set_libelle(label);
  return item;
}

DataListeItems& Ascending(DataListeItems& list) {
  list.Add(1, "one");
  list.Add(5, "five");
  list.Add(9, "nine");
  return list;
}

std::shared_ptr<DataListeItems> ReadList(const std::string& text, const std::shared_ptr<DataItem>& parent = nullptr) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, text);
  auto list = std::make_shared<DataListeItems>();
  list->loadXml(doc, node, parent);
  return list;
}

std::string WriteList(const DataListeItems& list) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("List");
  list.createXMLnode(doc, node);
  return testing::NodeText(node);
}

// ----- the item -----------------------------------------------------------------------------

TEST(DataListeItemTest, NewItemHoldsTheDefaults) {
  DataListeItem item;
  EXPECT_EQ(item.Valeur(), 0);
  EXPECT_EQ(item.libelle(), "");
  EXPECT_EQ(item.Info(), "");
  EXPECT_EQ(item.parent(), nullptr);
}

TEST(DataListeItemTest, ClearResetsEverything) {
  auto data = std::make_shared<DataItem>();
  auto item = Entry(4, "four");
  item->set_Info("note");
  item->set_parent(data);
  item->clear();
  EXPECT_EQ(item->Valeur(), 0);
  EXPECT_EQ(item->libelle(), "");
  EXPECT_EQ(item->Info(), "");
  EXPECT_EQ(item->parent(), nullptr);
}

TEST(DataListeItemTest, CloneCopiesValuesAndTakesTheNewParent) {
  auto data = std::make_shared<DataItem>();
  auto item = Entry(4, "four");
  item->set_Info("note");
  auto copy = item->clone(data);
  EXPECT_NE(copy, item);
  EXPECT_EQ(copy->Valeur(), 4);
  EXPECT_EQ(copy->libelle(), "four");
  EXPECT_EQ(copy->Info(), "note");
  EXPECT_EQ(copy->parent(), data);
}

TEST(DataListeItemTest, ItemWithoutTextReadsAsValueZeroWithEmptyLabel) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Item Value=\"7\">note</Item>");
  DataListeItem item;
  item.loadXml(doc, node);
  EXPECT_PENDING_ERROR(1, "DataListeItem.loadXml", "Object variable or With block variable not set");
  EXPECT_EQ(item.Valeur(), 0);
  EXPECT_EQ(item.libelle(), "");
  EXPECT_EQ(item.Info(), "");
}

TEST(DataListeItemTest, MissingValueStopsAfterTheLabel) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Item Text=\"on\">note</Item>");
  DataListeItem item;
  item.loadXml(doc, node);
  EXPECT_PENDING_ERROR(1, "DataListeItem.loadXml", "Object variable or With block variable not set");
  EXPECT_EQ(item.libelle(), "on");
  EXPECT_EQ(item.Info(), "");
}

TEST(DataListeItemTest, ValueThatDoesNotConvertStopsTheItem) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Item Value=\"12abc\" Text=\"on\">note</Item>");
  DataListeItem item;
  item.loadXml(doc, node);
  EXPECT_PENDING_ERROR(1, "DataListeItem.loadXml", "Type mismatch");
  EXPECT_EQ(item.Valeur(), 0);
  EXPECT_EQ(item.Info(), "");
}

TEST(DataListeItemTest, ValueOutOfRangeStopsTheItemWithOverflowText) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Item Value=\"4294967296\" Text=\"big\"/>");
  DataListeItem item;
  item.loadXml(doc, node);
  EXPECT_PENDING_ERROR(1, "DataListeItem.loadXml", "Overflow");
}

TEST(DataListeItemTest, NoteWithSurroundingSpacesIsTrimmed) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Item Value=\"-3\" Text=\"low\"><![CDATA[  below range  ]]></Item>");
  DataListeItem item;
  item.loadXml(doc, node);
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(item.Valeur(), -3);
  EXPECT_EQ(item.libelle(), "low");
  EXPECT_EQ(item.Info(), "below range");
}

TEST(DataListeItemTest, EmptyNoteWritesAnEmptyItem) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Item");
  Entry(-2, "").get()->createXMLnode(doc, node);
  EXPECT_EQ(testing::NodeText(node), "<Item Value=\"-2\" Text=\"\"/>");
}

TEST(DataListeItemTest, NoteIsWrittenAsCData) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Item");
  auto item = Entry(3, "a<b");
  item->set_Info("x & y");
  item->createXMLnode(doc, node);
  EXPECT_EQ(testing::NodeText(node), "<Item Value=\"3\" Text=\"a&lt;b\"><![CDATA[x & y]]></Item>");
}

// ----- the list -----------------------------------------------------------------------------

TEST(DataListeItemsTest, EmptyListHasValueMaxZeroAndFindsNothing) {
  DataListeItems list;
  EXPECT_EQ(list.ValueMax(), 0);
  EXPECT_EQ(list.ItemValue(0), nullptr);
  EXPECT_EQ(list.ItemLabel(""), nullptr);
}

TEST(DataListeItemsTest, ValueMaxOfNegativeValuesIsTheLargestNegative) {
  DataListeItems list;
  list.Add(-7, "a");
  list.Add(-3, "b");
  list.Add(-5, "c");
  EXPECT_EQ(list.ValueMax(), -3);
}

TEST(DataListeItemsTest, AddingThreeToOneFiveNineGoesBeforeTheLast) {
  DataListeItems list;
  Ascending(list).Add(3, "three");
  EXPECT_EQ(Values(list), (std::vector<std::int32_t>{1, 5, 3, 9}));
}

TEST(DataListeItemsTest, AddingTenToOneFiveNineAppends) {
  DataListeItems list;
  Ascending(list).Add(10, "ten");
  EXPECT_EQ(Values(list), (std::vector<std::int32_t>{1, 5, 9, 10}));
}

TEST(DataListeItemsTest, AddingZeroToOneFiveNineGoesBeforeTheLast) {
  DataListeItems list;
  Ascending(list).Add(0, "zero");
  EXPECT_EQ(Values(list), (std::vector<std::int32_t>{1, 5, 0, 9}));
}

TEST(DataListeItemsTest, AddReturnsTheNewItemWithoutParentOrNote) {
  DataListeItems list;
  auto item = list.Add(2, "two");
  EXPECT_EQ(list.Item(1), item);
  EXPECT_EQ(item->Info(), "");
  EXPECT_EQ(item->parent(), nullptr);
}

TEST(DataListeItemsTest, DuplicateValueIsRefusedWithItsMessage) {
  DataListeItems list;
  list.Add(1, "one");
  EXPECT_TESSALY_ERROR(list.Add(1, "uno"), 1, "DataListeItems.AddData", "Duplicate value '1' with label 'uno'");
  EXPECT_TESSALY_ERROR(list.AddDataUnSorted(Entry(1, "uno")), 1, "DataListeItems.AddDataUnSorted",
                       "Duplicate value '1' with label 'uno'");
  EXPECT_EQ(list.Count(), 1);
}

TEST(DataListeItemsTest, DuplicateLabelIsRefusedWithItsMessage) {
  DataListeItems list;
  list.Add(1, "one");
  EXPECT_TESSALY_ERROR(list.Add(-2, "one"), 1, "DataListeItems.AddData", "Duplicate label 'one' with value '-2'");
  EXPECT_TESSALY_ERROR(list.AddDataUnSorted(Entry(2, "one")), 1, "DataListeItems.AddDataUnSorted",
                       "Duplicate label 'one' with value '2'");
  EXPECT_EQ(list.Count(), 1);
}

TEST(DataListeItemsTest, ChecksRunItemByItemValueFirst) {
  DataListeItems list;
  list.Add(1, "a");
  list.Add(2, "b");
  // Item 1 has the label, item 2 the value: item 1 is met first, so the label is reported.
  EXPECT_TESSALY_ERROR(list.Add(2, "a"), 1, "DataListeItems.AddData", "Duplicate label 'a' with value '2'");
  // The same item holding both: the value is reported.
  EXPECT_TESSALY_ERROR(list.Add(1, "a"), 1, "DataListeItems.AddData", "Duplicate value '1' with label 'a'");
}

TEST(DataListeItemsTest, LabelThatDiffersInCaseIsAcceptedAndItemLabelFindsTheFirst) {
  DataListeItems list;
  auto upper = list.Add(1, "ON");
  auto lower = list.Add(2, "on");
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list.ItemLabel("On"), upper);
  EXPECT_NE(lower, upper);
}

TEST(DataListeItemsTest, ItemValueFindsTheFirstWithThatValue) {
  DataListeItems list;
  Ascending(list);
  EXPECT_EQ(list.ItemValue(5)->libelle(), "five");
  EXPECT_EQ(list.ItemValue(6), nullptr);
}

TEST(DataListeItemsTest, AddDataUnSortedAppends) {
  DataListeItems list;
  Ascending(list);
  auto item = Entry(0, "zero");
  EXPECT_EQ(list.AddDataUnSorted(item), item);
  EXPECT_EQ(Values(list), (std::vector<std::int32_t>{1, 5, 9, 0}));
}

TEST(DataListeItemsTest, ItemOutOfRangeIsSubscriptError) {
  DataListeItems list;
  EXPECT_TESSALY_ERROR(list.Item(1), 9, "Tessaly", "Subscript out of range");
}

TEST(DataListeItemsTest, DeleteRemovesOnlyTheSameObject) {
  DataListeItems list;
  auto one = list.Add(1, "one");
  list.Delete(Entry(1, "one"));
  EXPECT_EQ(list.Count(), 1);
  list.Delete(one);
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(one->libelle(), "");
}

TEST(DataListeItemsTest, RemoveByPositionLeavesTheItemIntact) {
  DataListeItems list;
  auto one = list.Add(1, "one");
  list.Remove(1);
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(one->libelle(), "one");
}

TEST(DataListeItemsTest, ClearEmptiesAndClearsEachItem) {
  DataListeItems list;
  auto one = list.Add(1, "one");
  auto two = list.Add(2, "two");
  list.clear();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(one->Valeur(), 0);
  EXPECT_EQ(two->libelle(), "");
}

TEST(DataListeItemsTest, ReadingKeepsDocumentOrderAndCloningReinsertsByValue) {
  auto data = std::make_shared<DataItem>();
  auto list = ReadList("<List><Item Value=\"2\" Text=\"b\"/><Item Value=\"1\" Text=\"a\"/></List>", data);
  EXPECT_EQ(Values(*list), (std::vector<std::int32_t>{2, 1}));
  EXPECT_EQ(list->Item(1)->parent(), data);

  auto other = std::make_shared<DataItem>();
  auto copy = list->clone(other);
  EXPECT_EQ(Values(*copy), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(copy->Item(1)->parent(), other);
  EXPECT_NE(copy->Item(1), list->Item(2));
}

TEST(DataListeItemsTest, ReadingDropsDuplicatesSilentlyFirstWins) {
  auto list = ReadList(
      "<List><Item Value=\"1\" Text=\"a\"/><Item Value=\"1\" Text=\"b\"/><Item Value=\"2\" Text=\"a\"/>"
      "<Item Value=\"3\" Text=\"c\"/></List>");
  EXPECT_EQ(Values(*list), (std::vector<std::int32_t>{1, 3}));
  EXPECT_FALSE(Err().Pending());
}

TEST(DataListeItemsTest, ItemWithoutTextIsKeptWithDefaults) {
  auto list = ReadList("<List><Item Value=\"4\" Text=\"four\"/><Item Value=\"5\"/></List>");
  ASSERT_EQ(list->Count(), 2);
  EXPECT_EQ(list->Item(2)->Valeur(), 0);
  EXPECT_EQ(list->Item(2)->libelle(), "");
  EXPECT_FALSE(Err().Pending());
}

TEST(DataListeItemsTest, ItemWithoutTextIsDroppedBesideValueZero) {
  auto list = ReadList("<List><Item Value=\"0\" Text=\"zero\"/><Item Value=\"5\"/></List>");
  EXPECT_EQ(list->Count(), 1);
}

TEST(DataListeItemsTest, ItemWithoutTextIsDroppedBesideAnEmptyLabel) {
  auto list = ReadList("<List><Item Value=\"3\" Text=\"\"/><Item Value=\"5\"/></List>");
  ASSERT_EQ(list->Count(), 1);
  EXPECT_EQ(list->Item(1)->Valeur(), 3);
}

TEST(DataListeItemsTest, ItemWithBadValueKeepsItsLabelAndValueZero) {
  auto list = ReadList("<List><Item Value=\"12abc\" Text=\"x\"/></List>");
  ASSERT_EQ(list->Count(), 1);
  EXPECT_EQ(list->Item(1)->Valeur(), 0);
  EXPECT_EQ(list->Item(1)->libelle(), "x");
  EXPECT_FALSE(Err().Pending());
}

TEST(DataListeItemsTest, WritingPutsALineFeedBeforeEachItemAndNoneAfterTheLast) {
  DataListeItems list;
  list.Add(1, "one")->set_Info("first");
  list.Add(2, "two");
  EXPECT_EQ(WriteList(list),
            "<List>\n<Item Value=\"1\" Text=\"one\"><![CDATA[first]]></Item>\n<Item Value=\"2\" Text=\"two\"/></List>");
  EXPECT_EQ(WriteList(DataListeItems()), "<List/>");
}

TEST(DataListeItemsTest, ListRoundTripsByteForByte) {
  const std::string text =
      "<List>\n<Item Value=\"2\" Text=\"b\"/>\n<Item Value=\"-1\" Text=\"minus &amp; one\"><![CDATA[note <x>]]></Item>"
      "\n<Item Value=\"0\" Text=\"\"/></List>";
  auto list = ReadList(text);
  EXPECT_EQ(WriteList(*list), text);
}

}  // namespace
}  // namespace tessaly
