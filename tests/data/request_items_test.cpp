#include "tessaly/data/request_items.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "data/data_test_util.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

using testing::LoadDatas;
using testing::LoadRequests;
using testing::ParseElement;
using testing::WriteRequests;

std::vector<std::string> Names(const RequestItems& requests) {
  std::vector<std::string> names;
  for (const auto& request : requests) names.push_back(request->requestName());
  return names;
}

// An ECU with the data Speed, Rpm and Mode.
std::shared_ptr<TargetItem> Ecu() {
  auto target = TargetItem::Create();
  LoadDatas(target, "<Datas><Data Name=\"Speed\"/><Data Name=\"Rpm\"/><Data Name=\"Mode\"/></Datas>");
  return target;
}

std::shared_ptr<RequestItem> ReadRequest(const std::shared_ptr<TargetItem>& target, const std::string& text) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, text);
  auto request = std::make_shared<RequestItem>();
  request->set_parent(target);
  request->loadXml(doc, node);
  return request;
}

std::string WriteRequest(const RequestItem& request) {
  pugi::xml_document doc;
  pugi::xml_node node = doc.append_child("Request");
  request.createXMLnode(doc, node);
  return testing::NodeText(node);
}

// A request's text, loaded into `target` through the collection and written back.
std::string RoundTrip(const std::shared_ptr<TargetItem>& target, const std::string& request) {
  const std::string endian = target->Parametres()->LittleEndian() ? "Little" : "Big";
  LoadRequests(target, "<Requests Endian=\"" + endian + "\">\n" + request + "</Requests>");
  return WriteRequests(target);
}

std::string Wrapped(const std::shared_ptr<TargetItem>& target, const std::string& request) {
  const std::string endian = target->Parametres()->LittleEndian() ? "Little" : "Big";
  return "<Requests Endian=\"" + endian + "\">\n" + request + "</Requests>";
}

constexpr const char* kBareRequest = "<Request Name=\"R\">\n<Sent>\n<SentBytes/>\n</Sent>\n<Received MinBytes=\"1\">\n</Received>\n</Request>";

// ----- the item -----------------------------------------------------------------------------

TEST(RequestItemTest, NewRequestHoldsTheDefaults) {
  RequestItem request;
  EXPECT_EQ(request.requestName(), "");
  EXPECT_EQ(request.RequestBytes(), nullptr);
  EXPECT_EQ(request.ReplyBytes(), nullptr);
  EXPECT_EQ(request.LengthDatas(), 1);
  EXPECT_EQ(request.ShiftBytesCount(), 0);
  EXPECT_FALSE(request.ManuelSend());
  EXPECT_FALSE(request.LgVariable());
  EXPECT_TRUE(request.AccesTous());
  EXPECT_TRUE(request.AccesUsine());
  EXPECT_TRUE(request.AccesApresVente());
  EXPECT_TRUE(request.AccesEtudes());
  EXPECT_TRUE(request.AccesConstructeur());
  EXPECT_FALSE(request.DossierMaintenabilite());
  EXPECT_EQ(request.Commentaire(), "");
  EXPECT_EQ(request.DataPositions(), nullptr);
  EXPECT_EQ(request.parent(), nullptr);
}

TEST(RequestItemTest, RequestWithoutBytesOrDataStillWritesSentAndReceived) {
  RequestItem request;
  request.set_requestName("R");
  EXPECT_EQ(WriteRequest(request), kBareRequest);
}

TEST(RequestItemTest, AllAccessFlagsTrueWritesNoDenyAccess) {
  RequestItem request;
  request.set_requestName("R");
  EXPECT_EQ(WriteRequest(request).find("DenyAccess"), std::string::npos);
}

TEST(RequestItemTest, OnlyPlantDeniedWritesDenyAccessWithPlant) {
  RequestItem request;
  request.set_requestName("R");
  request.set_AccesUsine(false);
  EXPECT_EQ(WriteRequest(request),
            "<Request Name=\"R\">\n<DenyAccess><Plant/></DenyAccess>\n<Sent>\n<SentBytes/>\n</Sent>\n"
            "<Received MinBytes=\"1\">\n</Received>\n</Request>");
}

TEST(RequestItemTest, EmptyDenyAccessLeavesAllFlagsTrue) {
  auto request = ReadRequest(Ecu(), "<Request Name=\"R\"><DenyAccess/></Request>");
  EXPECT_TRUE(request->AccesTous());
  EXPECT_TRUE(request->AccesUsine());
  EXPECT_TRUE(request->AccesApresVente());
  EXPECT_TRUE(request->AccesEtudes());
  EXPECT_TRUE(request->AccesConstructeur());
}

TEST(RequestItemTest, EachDenyChildClearsItsFlag) {
  auto target = Ecu();
  auto request = ReadRequest(target, "<Request Name=\"R\"><DenyAccess><NoSDS/><Engineering/></DenyAccess></Request>");
  EXPECT_FALSE(request->AccesTous());
  EXPECT_TRUE(request->AccesUsine());
  EXPECT_TRUE(request->AccesApresVente());
  EXPECT_FALSE(request->AccesEtudes());
  EXPECT_TRUE(request->AccesConstructeur());
  request = ReadRequest(target, "<Request Name=\"R\"><DenyAccess><Supplier/><AfterSales/><Plant/></DenyAccess></Request>");
  EXPECT_TRUE(request->AccesTous());
  EXPECT_FALSE(request->AccesUsine());
  EXPECT_FALSE(request->AccesApresVente());
  EXPECT_TRUE(request->AccesEtudes());
  EXPECT_FALSE(request->AccesConstructeur());
}

TEST(RequestItemTest, RequestWithoutReceivedKeepsLengthAndShiftsNothing) {
  pugi::xml_document doc;
  pugi::xml_node node = ParseElement(doc, "<Request Name=\"R\"><Sent><SentBytes>10 01</SentBytes></Sent></Request>");
  RequestItem request;
  request.set_ShiftBytesCount(3);
  request.loadXml(doc, node);
  EXPECT_EQ(request.LengthDatas(), 1);
  EXPECT_EQ(request.ShiftBytesCount(), 0);
  ASSERT_NE(request.ReplyBytes(), nullptr);
  EXPECT_FALSE(request.ReplyBytes()->HasBytes());
  EXPECT_EQ(request.RequestBytes()->ToText(), "10 01");
}

TEST(RequestItemTest, RequestWithoutSentOrReceivedHasEmptyBytesAndNoPositions) {
  auto request = ReadRequest(Ecu(), "<Request Name=\"R\"/>");
  ASSERT_NE(request->RequestBytes(), nullptr);
  ASSERT_NE(request->ReplyBytes(), nullptr);
  EXPECT_EQ(request->RequestBytes()->ToText(), "");
  EXPECT_EQ(request->DataPositions(), nullptr);
  EXPECT_FALSE(Err().Pending());
}

TEST(RequestItemTest, ReadsEveryPart) {
  auto target = Ecu();
  auto request = ReadRequest(
      target,
      "<Request Name=\"Read\"><DossierMaintenabilite>x</DossierMaintenabilite><ManuelSend/>"
      "<Comment><![CDATA[ one\ntwo ]]></Comment>"
      "<Sent><VariableLength/><SentBytes>21 A0</SentBytes><DataItem Name=\"Mode\" FirstByte=\"3\"/></Sent>"
      "<Received MinBytes=\"5\"><ShiftBytesCount>2</ShiftBytesCount><ReplyBytes>61 A0</ReplyBytes>"
      "<DataItem Name=\"Speed\" FirstByte=\"3\" Ref=\"1\"/><DataItem Name=\"Rpm\" FirstByte=\"4\"/></Received></Request>");
  EXPECT_FALSE(Err().Pending());
  EXPECT_EQ(request->requestName(), "Read");
  EXPECT_TRUE(request->DossierMaintenabilite());
  EXPECT_TRUE(request->ManuelSend());
  EXPECT_EQ(request->Commentaire(), "one\r\ntwo");
  EXPECT_TRUE(request->LgVariable());
  EXPECT_EQ(request->RequestBytes()->ToText(), "21 A0");
  EXPECT_EQ(request->LengthDatas(), 5);
  EXPECT_EQ(request->ShiftBytesCount(), 2);
  EXPECT_EQ(request->ReplyBytes()->ToText(), "61 A0");
  auto positions = request->DataPositions();
  ASSERT_NE(positions, nullptr);
  ASSERT_EQ(positions->Count(), 3);
  EXPECT_TRUE(positions->ItemName("Mode")->param());
  EXPECT_FALSE(positions->ItemName("Speed")->param());
  EXPECT_TRUE(positions->ItemName("Speed")->reference());
  EXPECT_EQ(positions->ItemName("Rpm")->parent(), request);
}

TEST(RequestItemTest, MissingNameIsError100AndReadsNothingMore) {
  auto request = ReadRequest(Ecu(), "<Request><ManuelSend/></Request>");
  EXPECT_PENDING_ERROR(100, "RequestItem.loadXml", "RequestItem.loadXml error : Name not defined");
  EXPECT_FALSE(request->ManuelSend());
  EXPECT_EQ(request->RequestBytes(), nullptr);
}

TEST(RequestItemTest, MinBytesThatDoesNotConvertStaysPendingPastTheReplyData) {
  auto request = ReadRequest(
      Ecu(), "<Request Name=\"R\"><Received MinBytes=\"four\"><DataItem Name=\"Nope\"/><DataItem Name=\"Rpm\"/></Received></Request>");
  EXPECT_PENDING_ERROR(13, "Tessaly", "Type mismatch");
  EXPECT_EQ(request->LengthDatas(), 1);
  ASSERT_NE(request->DataPositions(), nullptr);
  EXPECT_EQ(request->DataPositions()->Count(), 1);
}

TEST(RequestItemTest, SameDataInSentAndReceivedKeepsTheFirst) {
  auto request = ReadRequest(
      Ecu(),
      "<Request Name=\"R\"><Sent><SentBytes/><DataItem Name=\"Speed\" FirstByte=\"2\"/></Sent>"
      "<Received><DataItem Name=\"Speed\" FirstByte=\"5\"/></Received></Request>");
  EXPECT_FALSE(Err().Pending());
  ASSERT_EQ(request->DataPositions()->Count(), 1);
  EXPECT_TRUE(request->DataPositions()->Item(1)->param());
  EXPECT_EQ(request->DataPositions()->Item(1)->StartOctet(), 2);
}

TEST(RequestItemTest, ReplyBytesWrittenOnlyWhenTheyHoldBytes) {
  RequestItem request;
  request.set_requestName("R");
  request.set_RequestBytes(std::make_shared<ByteString>("  "));
  request.set_ReplyBytes(std::make_shared<ByteString>(" \t"));
  EXPECT_EQ(WriteRequest(request),
            "<Request Name=\"R\">\n<Sent>\n<SentBytes>  </SentBytes>\n</Sent>\n<Received MinBytes=\"1\">\n</Received>\n</Request>");
  request.ReplyBytes()->FromText("7F");
  EXPECT_EQ(WriteRequest(request),
            "<Request Name=\"R\">\n<Sent>\n<SentBytes>  </SentBytes>\n</Sent>\n<Received MinBytes=\"1\">\n"
            "<ReplyBytes>7F</ReplyBytes>\n</Received>\n</Request>");
}

TEST(RequestItemTest, CommentIsWrittenTrimmedAsCData) {
  RequestItem request;
  request.set_requestName("R");
  request.set_Commentaire("  note ");
  EXPECT_EQ(WriteRequest(request),
            "<Request Name=\"R\">\n<Comment><![CDATA[note]]></Comment>\n<Sent>\n<SentBytes/>\n</Sent>\n"
            "<Received MinBytes=\"1\">\n</Received>\n</Request>");
}

TEST(RequestItemTest, XmlCommentIsReadWhenThereIsNoCommentElement) {
  auto request = ReadRequest(Ecu(), "<Request Name=\"R\"><!-- legacy\nnote --></Request>");
  EXPECT_EQ(request->Commentaire(), "legacy\r\nnote");
}

TEST(RequestItemTest, ClearDropsPositionsBytesAndParent) {
  auto target = Ecu();
  auto request = ReadRequest(target, "<Request Name=\"R\"><Received><DataItem Name=\"Rpm\"/></Received></Request>");
  auto positions = request->DataPositions();
  auto position = positions->Item(1);
  request->clear();
  EXPECT_EQ(request->DataPositions(), nullptr);
  EXPECT_EQ(request->RequestBytes(), nullptr);
  EXPECT_EQ(request->ReplyBytes(), nullptr);
  EXPECT_EQ(request->parent(), nullptr);
  EXPECT_EQ(positions->Count(), 0);
  EXPECT_EQ(position->parent(), nullptr);
}

// ----- the collection -----------------------------------------------------------------------

TEST(RequestItemsTest, AddKeysByKAndName) {
  RequestItems requests;
  auto read = requests.Add("Read");
  EXPECT_EQ(requests.Item("kread"), read);
  EXPECT_EQ(requests.ItemName("READ"), read);
  EXPECT_EQ(requests.ItemName("Write"), nullptr);
  EXPECT_TESSALY_ERROR(requests.Add("read"), 457, "Tessaly",
                       "This key is already associated with an element of this collection");
}

TEST(RequestItemsTest, RenameToItsOwnNameDoesNothing) {
  RequestItems requests;
  auto a = requests.Add("A");
  requests.Add("B");
  requests.rename(a, "A");
  EXPECT_EQ(Names(requests), (std::vector<std::string>{"A", "B"}));
}

TEST(RequestItemsTest, RenameToAnotherRequestsNameFails) {
  RequestItems requests;
  auto a = requests.Add("A");
  requests.Add("B");
  EXPECT_TESSALY_ERROR(requests.rename(a, "B"), 1, "RequestItems.rename", "Duplicate request (B)");
  EXPECT_EQ(Names(requests), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(a->requestName(), "A");
}

TEST(RequestItemsTest, RenamedRequestIsLast) {
  RequestItems requests;
  auto a = requests.Add("A");
  requests.Add("B");
  requests.Add("C");
  requests.rename(a, "Z0");
  EXPECT_EQ(Names(requests), (std::vector<std::string>{"B", "C", "Z0"}));
  EXPECT_EQ(requests.ItemName("z0"), a);
  EXPECT_EQ(requests.ItemName("A"), nullptr);
}

TEST(RequestItemsTest, RenameFindsARequestWhoseNameWasChangedDirectly) {
  RequestItems requests;
  auto a = requests.Add("A");
  requests.Add("B");
  a->set_requestName("X");  // the key is still "kA"
  requests.rename(a, "C");
  EXPECT_EQ(Names(requests), (std::vector<std::string>{"B", "C"}));
  EXPECT_EQ(requests.ItemName("A"), nullptr);
  EXPECT_EQ(requests.ItemName("C"), a);
}

TEST(RequestItemsTest, ItemDataPositionNameFindsThePlacementOfExistingData) {
  auto target = Ecu();
  LoadRequests(target,
               "<Requests><Request Name=\"Read\"><Received><DataItem Name=\"speed\"/><DataItem Name=\"Rpm\"/>"
               "</Received></Request><Request Name=\"Empty\"/></Requests>");
  auto requests = target->Requests();
  auto rpm = requests->ItemDataPositionName("read", "Rpm");
  ASSERT_NE(rpm, nullptr);
  EXPECT_EQ(rpm->dataName(), "Rpm");
  // The placement names "speed"; its data item is "Speed", which is what is compared.
  EXPECT_EQ(requests->ItemDataPositionName("Read", "Speed"), requests->ItemName("Read")->DataPositions()->Item(1));
  EXPECT_EQ(requests->ItemDataPositionName("Read", "speed"), nullptr);
  EXPECT_EQ(requests->ItemDataPositionName("Read", "rpm"), nullptr);
  EXPECT_EQ(requests->ItemDataPositionName("Empty", "Rpm"), nullptr);
  EXPECT_EQ(requests->ItemDataPositionName("Missing", "Rpm"), nullptr);
  // Data deleted from the ECU: the placement is no longer found.
  target->datas()->Delete(target->datas()->ItemName("Rpm"));
  EXPECT_EQ(requests->ItemDataPositionName("Read", "Rpm"), nullptr);
}

TEST(RequestItemsTest, DeleteClearsTheSameObjectOnly) {
  auto target = Ecu();
  RequestItems requests;
  auto a = requests.Add("A");
  a->set_parent(target);
  auto other = std::make_shared<RequestItem>();
  other->set_requestName("A");
  requests.Delete(other);
  EXPECT_EQ(requests.Count(), 1);
  requests.Delete(a);
  EXPECT_EQ(requests.Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
}

TEST(RequestItemsTest, ClearClearsEveryRequest) {
  auto target = Ecu();
  LoadRequests(target, "<Requests><Request Name=\"A\"/><Request Name=\"B\"/></Requests>");
  auto a = target->Requests()->Item(1);
  target->Requests()->clear();
  EXPECT_EQ(target->Requests()->Count(), 0);
  EXPECT_EQ(a->parent(), nullptr);
  EXPECT_EQ(a->RequestBytes(), nullptr);
}

TEST(RequestItemsTest, ReadingDropsNamelessRepeatedAndBrokenRequests) {
  auto target = Ecu();
  LoadRequests(target,
               "<Requests><Request Name=\"A\"/><Request/><Request Name=\"a\"/>"
               "<Request Name=\"C\"><Received MinBytes=\"x\"/></Request><Request Name=\"D\"/></Requests>");
  EXPECT_EQ(Names(*target->Requests()), (std::vector<std::string>{"A", "D"}));
  EXPECT_EQ(target->Requests()->Item(1)->parent(), target);
  EXPECT_FALSE(Err().Pending());
}

TEST(RequestItemsTest, RequestWithAnUnknownDataIsKeptWithoutIt) {
  auto target = Ecu();
  LoadRequests(target, "<Requests><Request Name=\"A\"><Received><DataItem Name=\"Temp\"/></Received></Request></Requests>");
  ASSERT_EQ(target->Requests()->Count(), 1);
  EXPECT_EQ(target->Requests()->Item(1)->DataPositions()->Count(), 0);
  EXPECT_FALSE(Err().Pending());
}

TEST(RequestItemsTest, EmptyCollectionWritesNothingAfterTheTargetsLineFeed) {
  auto target = Ecu();
  EXPECT_EQ(WriteRequests(target), "<Requests Endian=\"Big\">\n</Requests>");
}

// ----- byte-exact round trips ---------------------------------------------------------------

TEST(RequestRoundTripTest, BareRequest) {
  auto target = Ecu();
  const std::string text = kBareRequest;
  EXPECT_EQ(RoundTrip(target, "\n" + text), Wrapped(target, "\n" + text));
}

TEST(RequestRoundTripTest, EachDenyFlagAlone) {
  for (const char* flag : {"NoSDS", "Plant", "AfterSales", "Engineering", "Supplier"}) {
    auto target = Ecu();
    const std::string text = std::string("\n<Request Name=\"R\">\n<DenyAccess><") + flag +
                             "/></DenyAccess>\n<Sent>\n<SentBytes>22 F1 90</SentBytes>\n</Sent>\n"
                             "<Received MinBytes=\"3\">\n<ReplyBytes>62 F1 90</ReplyBytes>\n</Received>\n</Request>";
    EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text)) << flag;
  }
}

TEST(RequestRoundTripTest, AllDenyFlagsMaintainabilityManualSendAndComment) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"Clear\">\n<DossierMaintenabilite/>\n<ManuelSend/>\n"
      "<DenyAccess><NoSDS/><Plant/><AfterSales/><Engineering/><Supplier/></DenyAccess>\n"
      "<Comment><![CDATA[Clears the fault memory]]></Comment>\n"
      "<Sent>\n<SentBytes>14 FF 00</SentBytes>\n</Sent>\n<Received MinBytes=\"1\">\n<ReplyBytes>54</ReplyBytes>\n"
      "</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
}

TEST(RequestRoundTripTest, VariableLengthWithParameters) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"Write\">\n<Sent>\n<VariableLength/>\n<SentBytes>2E 01 00</SentBytes>\n"
      "<DataItem Name=\"Mode\" FirstByte=\"3\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"4\" BitOffset=\"2\"/>\n</Sent>\n"
      "<Received MinBytes=\"2\">\n</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
}

TEST(RequestRoundTripTest, ShiftedReplyWithReplyData) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"Read\">\n<Sent>\n<SentBytes>21 01</SentBytes>\n</Sent>\n<Received MinBytes=\"6\">\n"
      "<ShiftBytesCount>-2</ShiftBytesCount>\n<ReplyBytes>61 01</ReplyBytes>\n"
      "<DataItem Name=\"Speed\" Ref=\"1\" FirstByte=\"3\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"4\" Endian=\"Little\"/>\n"
      "</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
}

TEST(RequestRoundTripTest, ParametersAndReplyDataTogether) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"A\">\n<Sent>\n<SentBytes>30 01</SentBytes>\n<DataItem Name=\"Mode\" FirstByte=\"3\"/>\n"
      "</Sent>\n<Received MinBytes=\"4\">\n<ReplyBytes>70 01</ReplyBytes>\n<DataItem Name=\"Speed\" FirstByte=\"3\"/>\n"
      "</Received>\n</Request>\n<Request Name=\"B\">\n<Sent>\n<SentBytes>21 02</SentBytes>\n</Sent>\n"
      "<Received MinBytes=\"3\">\n<DataItem Name=\"Speed\" FirstByte=\"3\"/>\n</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
}

TEST(RequestRoundTripTest, LittleEndianEcuDefault) {
  auto target = Ecu();
  target->Parametres()->set_LittleEndian(true);
  const std::string text =
      "\n<Request Name=\"Read\">\n<Sent>\n<SentBytes>21 01</SentBytes>\n</Sent>\n<Received MinBytes=\"6\">\n"
      "<DataItem Name=\"Speed\" FirstByte=\"3\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"5\" Endian=\"Big\"/>\n"
      "</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
  auto requests = target->Requests();
  EXPECT_TRUE(requests->ItemDataPositionName("Read", "Speed")->LittleEndian());
  EXPECT_FALSE(requests->ItemDataPositionName("Read", "Rpm")->LittleEndian());
}

TEST(RequestRoundTripTest, BigEndianEcuDefault) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"Read\">\n<Sent>\n<SentBytes>21 01</SentBytes>\n</Sent>\n<Received MinBytes=\"6\">\n"
      "<DataItem Name=\"Speed\" FirstByte=\"3\"/>\n<DataItem Name=\"Rpm\" FirstByte=\"5\" Endian=\"Little\"/>\n"
      "</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
  auto requests = target->Requests();
  EXPECT_FALSE(requests->ItemDataPositionName("Read", "Speed")->LittleEndian());
  EXPECT_TRUE(requests->ItemDataPositionName("Read", "Rpm")->LittleEndian());
}

TEST(RequestRoundTripTest, NonHexBytesTextRoundTripsUnchanged) {
  auto target = Ecu();
  const std::string text =
      "\n<Request Name=\"R\">\n<Sent>\n<SentBytes>$21,$01 &amp; more</SentBytes>\n</Sent>\n<Received MinBytes=\"1\">\n"
      "<ReplyBytes>  61xx </ReplyBytes>\n</Received>\n</Request>";
  EXPECT_EQ(RoundTrip(target, text), Wrapped(target, text));
  EXPECT_EQ(target->Requests()->Item(1)->RequestBytes()->Bytes(), std::nullopt);
}

}  // namespace
}  // namespace tessaly
