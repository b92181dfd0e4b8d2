// The collection conventions shared by all collections, checked on the reference tables and on
// a collection of recording items.
#include "tessaly/facade/reference_tables.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "support/test_support.hpp"

namespace tessaly {
namespace {

using testing::NodeText;
using testing::ParseText;

// An item that records the order in which clear was called on it.
struct Recorder {
  std::vector<int>* log = nullptr;
  int id = 0;
  void clear() { log->push_back(id); }
};

class Recorders : public Collection<Recorder> {
 public:
  std::shared_ptr<Recorder> Add(std::vector<int>* log, int id) {
    auto r = std::make_shared<Recorder>();
    r->log = log;
    r->id = id;
    return Append(r);
  }
  void clear() { ClearItems(); }
  void Delete(const std::shared_ptr<Recorder>& item) { DeleteItem(item.get()); }
  void AddAgain(const std::shared_ptr<Recorder>& item) { Append(item); }
};

TEST(CollectionTest, ClearOnEmptyCollectionDoesNothing) {
  Recorders c;
  c.clear();
  EXPECT_EQ(c.Count(), 0);
}

TEST(CollectionTest, ClearCallsClearOnEachItemOnceFirstToLast) {
  std::vector<int> log;
  Recorders c;
  c.Add(&log, 1);
  c.Add(&log, 2);
  c.Add(&log, 3);
  c.clear();
  EXPECT_EQ(log, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(c.Count(), 0);
}

TEST(CollectionTest, DeleteOfAnAbsentItemChangesNothing) {
  std::vector<int> log;
  Recorders c;
  c.Add(&log, 1);
  auto stranger = std::make_shared<Recorder>();
  stranger->log = &log;
  c.Delete(stranger);
  EXPECT_EQ(c.Count(), 1);
  EXPECT_TRUE(log.empty());
}

TEST(CollectionTest, DeleteOfAnItemHeldTwiceRemovesTheFirstOccurrence) {
  std::vector<int> log;
  Recorders c;
  auto twice = c.Add(&log, 1);
  c.Add(&log, 2);
  c.AddAgain(twice);
  c.Delete(twice);
  ASSERT_EQ(c.Count(), 2);
  EXPECT_EQ(c.Item(1)->id, 2);
  EXPECT_EQ(c.Item(2), twice);
  EXPECT_EQ(log, (std::vector<int>{1}));
}

TEST(CollectionTest, AddWithEmptyKeyIsReachableByPositionOnly) {
  PanneItems p;
  p.Add(3, "DTC", "");
  EXPECT_EQ(p.Item(1)->libelle(), "DTC");
  EXPECT_TESSALY_ERROR(p.Item("DTC"), 5, "Tessaly", "Invalid procedure call or argument");
}

TEST(CollectionTest, KeyClashIsTheInnerCollectionsError) {
  ProtocolItems p;
  p.Add(1, "ISO8", false, 0, "k1");
  EXPECT_TESSALY_ERROR(p.Add(2, "Other", false, 0, "K1"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
  EXPECT_EQ(p.Count(), 1);
}

TEST(CollectionTest, ItemNameReturnsTheEarlierOfTwoAndIsCaseSensitive) {
  TypeOrganeItems t;
  auto first = t.Add(1, "Input");
  t.Add(2, "Input");
  EXPECT_EQ(t.ItemName("Input"), first);
  EXPECT_EQ(t.ItemName("input"), nullptr);
}

TEST(CollectionTest, ReadingSkipsTheElementMissingAMandatoryValue) {
  pugi::xml_document doc;
  ParseText(doc,
            "<Failures><Failure Id=\"0\"><Name>a</Name></Failure><Failure Id=\"1\"><Name>b</Name></Failure>"
            "<Failure><Name>c</Name></Failure><Failure Id=\"3\"><Name>d</Name></Failure></Failures>");
  PanneItems p;
  p.loadXml(doc, doc.child("Failures"));
  ASSERT_EQ(p.Count(), 3);
  EXPECT_EQ(p.Item(1)->libelle(), "a");
  EXPECT_EQ(p.Item(2)->libelle(), "b");
  EXPECT_EQ(p.Item(3)->libelle(), "d");
  // The error of the third element was cleared when the fourth started reading.
  EXPECT_EQ(Err().Number(), 0);
}

TEST(CollectionTest, ReadingLeavesTheLastItemsErrorPending) {
  pugi::xml_document doc;
  ParseText(doc, "<Failures><Failure Id=\"0\"><Name>a</Name></Failure><Failure Id=\"2\"/></Failures>");
  PanneItems p;
  p.loadXml(doc, doc.child("Failures"));
  EXPECT_EQ(p.Count(), 1);
  EXPECT_PENDING_ERROR(1, "PanneItem.loadXml", "PanneItem.loadXml : Failure Name not found");
  Err().Clear();
}

TEST(CollectionTest, WritingAnEmptyCollectionAppendsOneLineFeed) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Failures");
  PanneItems().createXMLnode(doc, node);
  EXPECT_EQ(NodeText(node), "<Failures>\n</Failures>");
}

TEST(ReferenceTablesTest, ItemReadersReportTheirMissingValues) {
  pugi::xml_document doc;
  ParseText(doc, "<r><Protocol Code=\"1\"/><DeviceType><Name>x</Name></DeviceType><DeviceType Id=\"1\"/></r>");
  ProtocolItem protocol;
  EXPECT_TESSALY_ERROR(protocol.loadXml(doc, doc.child("r").child("Protocol")), 1, "ProtocolItem.loadXml",
                       "ProtocolItem.loadXml : Protocol Name not found");
  TypeOrganeItem type;
  EXPECT_TESSALY_ERROR(type.loadXml(doc, doc.child("r").first_child().next_sibling()), 1, "TypeOrganeItem.loadXml",
                       "TypeOrganeItem.loadXml : Id not found");
  EXPECT_TESSALY_ERROR(type.loadXml(doc, doc.child("r").last_child()), 1, "TypeOrganeItem.loadXml",
                       "TypeOrganeItem.loadXml : Device type Name not found");
  PanneItem panne;
  pugi::xml_document d2;
  ParseText(d2, "<Failure><Name>n</Name></Failure>");
  EXPECT_TESSALY_ERROR(panne.loadXml(d2, d2.child("Failure")), 1, "PanneItem.loadXml", "PanneItem.loadXml : Id not found");
}

TEST(ReferenceTablesTest, TablesRoundTripInTheStandardForm) {
  ProtocolItems p;
  p.Add(7, "DiagOnCAN", true, 3);
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Protocols");
  p.createXMLnode(doc, node);
  EXPECT_EQ(NodeText(node),
            "<Protocols>\n<Protocol Code=\"7\" multiPoint=\"1\" initMode=\"3\"><Name>DiagOnCAN</Name></Protocol>\n</Protocols>");
  ProtocolItems back;
  back.loadXml(doc, node);
  ASSERT_EQ(back.Count(), 1);
  EXPECT_EQ(back.Item(1)->code(), 7);
  EXPECT_EQ(back.Item(1)->initMode(), 3);
  EXPECT_TRUE(back.Item(1)->multiPoint());
  EXPECT_EQ(back.Item(1)->protocolName(), "DiagOnCAN");
}

}  // namespace
}  // namespace tessaly
