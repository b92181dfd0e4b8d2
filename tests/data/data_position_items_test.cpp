#include "tessaly/data/data_position_items.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "data/data_test_util.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::ParseElement;

// An ECU holding the data "Speed" and "Rpm" and one request "Read" of its own.
struct Ecu {
  Ecu() {
    target->datas()->Add("Speed")->set_parent(target);
    target->datas()->Add("Rpm")->set_parent(target);
    request = target->Requests()->Add("Read");
    request->set_parent(target);
    request->set_DataPositions(std::make_shared<DataPositionItems>());
  }
  std::shared_ptr<TargetItem> target = TargetItem::Create();
  std::shared_ptr<RequestItem> request;
};

std::vector<std::string> Names(const DataPositionItems& positions) {
  std::vector<std::string> names;
  for (const auto& position : positions) names.push_back(position->dataName());
  return names;
}

// Reads one DataItem element as a position of `request`.
std::shared_ptr<DataPositionItem> ReadPosition(const std::string& text, const std::shared_ptr<RequestItem>& request) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, text);
  auto position = std::make_shared<DataPositionItem>();
  position->set_parent(request);
  position->loadXml(doc, node);
  return position;
}

std::string WritePosition(const DataPositionItem& position) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("DataItem");
  position.createXMLnode(doc, node);
  return testing::NodeText(node);
}

std::shared_ptr<DataPositionItem> Placed(const std::string& name, const std::shared_ptr<RequestItem>& request) {
  auto position = std::make_shared<DataPositionItem>();
  position->set_dataName(name);
  position->set_parent(request);
  return position;
}

// ----- the item -----------------------------------------------------------------------------

TEST(DataPositionItemTest, NewItemHoldsTheDefaults) {
  DataPositionItem position;
  EXPECT_EQ(position.dataName(), "");
  EXPECT_EQ(position.StartOctet(), 1);
  EXPECT_EQ(position.StartBit(), 0);
  EXPECT_FALSE(position.LittleEndian());
  EXPECT_FALSE(position.param());
  EXPECT_FALSE(position.reference());
  EXPECT_EQ(position.parent(), nullptr);
  EXPECT_EQ(position.data(), nullptr);
}

TEST(DataPositionItemTest, DataIsResolvedByNameOnEachAccess) {
  Ecu ecu;
  auto position = Placed("speed", ecu.request);
  EXPECT_EQ(position->data(), ecu.target->datas()->ItemName("Speed"));
  position->set_dataName("Nothing");
  EXPECT_EQ(position->data(), nullptr);
}

TEST(DataPositionItemTest, DataOfADeletedItemIsNullWhileTheNameStays) {
  Ecu ecu;
  auto position = Placed("Speed", ecu.request);
  ecu.target->datas()->Delete(ecu.target->datas()->ItemName("Speed"));
  EXPECT_EQ(position->data(), nullptr);
  EXPECT_EQ(position->dataName(), "Speed");
}

TEST(DataPositionItemTest, AssigningDataStoresOnlyItsName) {
  Ecu ecu;
  DataPositionItem position;
  auto rpm = ecu.target->datas()->ItemName("Rpm");
  position.set_data(rpm);
  EXPECT_EQ(position.dataName(), "Rpm");
  EXPECT_EQ(position.data(), nullptr);  // no parent request: nothing to resolve against
  EXPECT_TESSALY_ERROR(position.set_data(nullptr), 91, "Tessaly", "Object variable or With block variable not set");
}

TEST(DataPositionItemTest, ClearDropsTheParent) {
  Ecu ecu;
  auto position = Placed("Speed", ecu.request);
  position->clear();
  EXPECT_EQ(position->parent(), nullptr);
  EXPECT_EQ(position->dataName(), "Speed");
}

TEST(DataPositionItemTest, DefaultPositionWritesNameAndFirstByteOnly) {
  Ecu ecu;
  EXPECT_EQ(WritePosition(*Placed("Speed", ecu.request)), "<DataItem Name=\"Speed\" FirstByte=\"1\"/>");
}

TEST(DataPositionItemTest, EveryAttributeInItsOrder) {
  Ecu ecu;
  auto position = Placed("Speed", ecu.request);
  position->set_reference(true);
  position->set_StartOctet(3);
  position->set_StartBit(4);
  position->set_LittleEndian(true);
  position->set_param(true);  // the item itself never writes Param
  EXPECT_EQ(WritePosition(*position),
            "<DataItem Name=\"Speed\" Ref=\"1\" FirstByte=\"3\" BitOffset=\"4\" Endian=\"Little\"/>");
}

TEST(DataPositionItemTest, LittleEndianEcuWritesBigButNotLittle) {
  Ecu ecu;
  ecu.target->Parametres()->set_LittleEndian(true);
  auto position = Placed("Speed", ecu.request);
  position->set_LittleEndian(false);
  EXPECT_EQ(WritePosition(*position), "<DataItem Name=\"Speed\" FirstByte=\"1\" Endian=\"Big\"/>");
  position->set_LittleEndian(true);
  EXPECT_EQ(WritePosition(*position), "<DataItem Name=\"Speed\" FirstByte=\"1\"/>");
}

TEST(DataPositionItemTest, WithoutEcuTheDefaultIsBigEndian) {
  DataPositionItem position;
  position.set_dataName("X");
  position.set_LittleEndian(true);
  EXPECT_EQ(WritePosition(position), "<DataItem Name=\"X\" FirstByte=\"1\" Endian=\"Little\"/>");
}

TEST(DataPositionItemTest, ReadingWithoutEndianTakesTheEcuDefault) {
  Ecu ecu;
  EXPECT_FALSE(ReadPosition("<DataItem Name=\"Speed\"/>", ecu.request)->LittleEndian());
  ecu.target->Parametres()->set_LittleEndian(true);
  EXPECT_TRUE(ReadPosition("<DataItem Name=\"Speed\"/>", ecu.request)->LittleEndian());
  EXPECT_FALSE(ReadPosition("<DataItem Name=\"Speed\" Endian=\"Big\"/>", ecu.request)->LittleEndian());
  EXPECT_FALSE(ReadPosition("<DataItem Name=\"Speed\" Endian=\"little\"/>", ecu.request)->LittleEndian());
  ecu.target->Parametres()->set_LittleEndian(false);
  EXPECT_TRUE(ReadPosition("<DataItem Name=\"Speed\" Endian=\"Little\"/>", ecu.request)->LittleEndian());
  EXPECT_FALSE(Err().Pending());
}

TEST(DataPositionItemTest, ReadsEveryAttribute) {
  Ecu ecu;
  auto position =
      ReadPosition("<DataItem Name=\"Rpm\" Ref=\"true\" FirstByte=\"4\" BitOffset=\"2\" Param=\"1\"/>", ecu.request);
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(position->dataName(), "Rpm");
  EXPECT_TRUE(position->reference());
  EXPECT_EQ(position->StartOctet(), 4);
  EXPECT_EQ(position->StartBit(), 2);
  EXPECT_FALSE(position->param());
}

TEST(DataPositionItemTest, MissingNameIsError1AndStops) {
  Ecu ecu;
  auto position = ReadPosition("<DataItem FirstByte=\"4\"/>", ecu.request);
  EXPECT_PENDING_ERROR(1, "DataPositionItem.loadXml", "Object variable or With block variable not set");
  EXPECT_EQ(position->StartOctet(), 1);
}

TEST(DataPositionItemTest, UnknownDataNamesTheRequest) {
  Ecu ecu;
  auto position = ReadPosition("<DataItem Name=\"Temp\" FirstByte=\"4\"/>", ecu.request);
  EXPECT_PENDING_ERROR(1, "DataPositionItem.loadXml", "Data name 'Temp' not found, request : Read");
  EXPECT_EQ(position->StartOctet(), 1);
}

TEST(DataPositionItemTest, EmptyNameOfAnExistingNamelessDataIsRefused) {
  Ecu ecu;
  ecu.target->datas()->Add("");
  ReadPosition("<DataItem Name=\"\"/>", ecu.request);
  EXPECT_PENDING_ERROR(1, "DataPositionItem.loadXml", "DataPositionItem.loadXml error : Dataname missing");
}

TEST(DataPositionItemTest, FirstByteThatDoesNotConvertLeavesTheError) {
  Ecu ecu;
  auto position = ReadPosition("<DataItem Name=\"Rpm\" FirstByte=\"x\" BitOffset=\"3\"/>", ecu.request);
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(position->StartBit(), 3);
}

// ----- the collection -----------------------------------------------------------------------

TEST(DataPositionItemsTest, AddOfAPlacedDataNameIsRefused) {
  DataPositionItems positions;
  positions.Add("Speed");
  EXPECT_TESSALY_ERROR(positions.Add("Speed"), 1, "DataPositionItems.AddData",
                       "Duplicate Data, a data can be used only one time in the same request");
  EXPECT_EQ(positions.Count(), 1);
}

TEST(DataPositionItemsTest, ItemNameIsExactAndNamesDifferingInCaseAreDistinct) {
  DataPositionItems positions;
  auto speed = positions.Add("Speed");
  EXPECT_EQ(positions.ItemName("Speed"), speed);
  EXPECT_EQ(positions.ItemName("speed"), nullptr);
  auto lower = positions.Add("speed");
  EXPECT_EQ(positions.Count(), 2);
  EXPECT_EQ(positions.ItemName("speed"), lower);
}

TEST(DataPositionItemsTest, PositionsHaveNoKeys) {
  DataPositionItems positions;
  positions.Add("Speed");
  EXPECT_TESSALY_ERROR(positions.Item("kSpeed"), 5, "Tessaly", "Invalid procedure call or argument");
  EXPECT_EQ(positions.Item(1)->dataName(), "Speed");
}

TEST(DataPositionItemsTest, DeleteAndClear) {
  Ecu ecu;
  DataPositionItems positions;
  auto a = positions.AddData(Placed("Speed", ecu.request));
  auto b = positions.AddData(Placed("Rpm", ecu.request));
  positions.Delete(Placed("Speed", ecu.request));
  EXPECT_EQ(positions.Count(), 2);
  positions.Delete(a);
  EXPECT_EQ(positions.Count(), 1);
  EXPECT_EQ(a->parent(), nullptr);
  positions.clear();
  EXPECT_EQ(positions.Count(), 0);
  EXPECT_EQ(b->parent(), nullptr);
}

TEST(DataPositionItemsTest, CreateXmlNodeWritesAllWithParamOnParameters) {
  Ecu ecu;
  DataPositionItems positions;
  positions.AddData(Placed("Speed", ecu.request))->set_param(true);
  positions.AddData(Placed("Rpm", ecu.request));
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("X");
  positions.createXMLnode(doc, node);
  EXPECT_EQ(testing::NodeText(node),
            "<X><DataItem Name=\"Speed\" FirstByte=\"1\" Param=\"1\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"1\"/>\n</X>");
}

TEST(DataPositionItemsTest, CreateXmlNodeTypeWritesOnlyTheGivenKindWithoutParam) {
  Ecu ecu;
  DataPositionItems positions;
  positions.AddData(Placed("Speed", ecu.request))->set_param(true);
  positions.AddData(Placed("Rpm", ecu.request));
  pugi::xml_document doc;
  pugi::xml_node sent = doc.append_child("Sent");
  pugi::xml_node received = doc.append_child("Received");
  positions.createXMLnodeType(doc, sent, true);
  positions.createXMLnodeType(doc, received, false);
  EXPECT_EQ(testing::NodeText(sent), "<Sent><DataItem Name=\"Speed\" FirstByte=\"1\"/>\n</Sent>");
  EXPECT_EQ(testing::NodeText(received), "<Received><DataItem Name=\"Rpm\" FirstByte=\"1\"/>\n</Received>");
}

TEST(DataPositionItemsTest, LoadXmlTypeGivesParamAndParentAndDropsBadPositions) {
  Ecu ecu;
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(
      doc,
      "<Sent><DataItem Name=\"Speed\" FirstByte=\"2\"/><DataItem Name=\"Temp\"/><DataItem/>"
      "<DataItem Name=\"Speed\"/><DataItem Name=\"Rpm\"/></Sent>");
  auto positions = ecu.request->DataPositions();
  positions->loadXmlType(doc, node, ecu.request, true);
  EXPECT_EQ(Names(*positions), (std::vector<std::string>{"Speed", "Rpm"}));
  EXPECT_TRUE(positions->Item(1)->param());
  EXPECT_TRUE(positions->Item(2)->param());
  EXPECT_EQ(positions->Item(1)->StartOctet(), 2);
  EXPECT_EQ(positions->Item(1)->parent(), ecu.request);
  EXPECT_FALSE(Err().Pending());
}

TEST(DataPositionItemsTest, LoadXmlLeavesParamFalse) {
  Ecu ecu;
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<X><DataItem Name=\"Speed\" Param=\"1\"/></X>");
  DataPositionItems positions;
  positions.loadXml(doc, node, ecu.request);
  ASSERT_EQ(positions.Count(), 1);
  EXPECT_FALSE(positions.Item(1)->param());
}

TEST(DataPositionItemsTest, ErrorOfOnePositionNeverDropsTheNext) {
  Ecu ecu;
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<X><DataItem Name=\"Rpm\" FirstByte=\"bad\"/><DataItem Name=\"Speed\"/></X>");
  DataPositionItems positions;
  positions.loadXml(doc, node, ecu.request);
  EXPECT_EQ(Names(positions), (std::vector<std::string>{"Speed"}));
  EXPECT_FALSE(Err().Pending());
}

TEST(DataPositionItemsTest, DroppedPositionIsReportedToTheDiagnosticsCallback) {
  auto facade = std::make_shared<TessalyLibXml>();
  std::vector<Diagnostic> seen;
  facade->set_Diagnostics([&](const Diagnostic& d) { seen.push_back(d); });
  auto target = facade->NewTarget();
  auto request = target->Requests()->Add("Read");
  request->set_parent(target);
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<X><DataItem Name=\"Temp\"/></X>");
  DataPositionItems positions;
  positions.loadXml(doc, node, request);
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].action, Diagnostic::Action::kDropped);
  EXPECT_EQ(seen[0].what, "DataItem Temp in request Read");
  EXPECT_EQ(seen[0].why, "Data name 'Temp' not found, request : Read");
}

}  // namespace
}  // namespace tessaly
