// Data and requests inside a whole ECU document: imported through the facade and exported again,
// the Datas and Requests sections come back byte for byte, and the ECU's byte order (read from
// Requests/@Endian) decides which placements carry Endian.
#include <gtest/gtest.h>

#include "data/data_test_util.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

const std::string kDatas =
    "<Datas>\n"
    "\n<Data Name=\"Speed\">\n<Comment><![CDATA[Vehicle speed]]></Comment>\n<Bits count=\"16\">\n"
    "<Scaled Unit=\"km/h\" Step=\"0.01\"/>\n</Bits>\n</Data>"
    "\n<Data Name=\"Gear\">\n<Bits count=\"3\" signed=\"1\">\n<List>\n<Item Value=\"-1\" Text=\"R\"/>\n"
    "<Item Value=\"0\" Text=\"N\"><![CDATA[neutral]]></Item></List>\n</Bits>\n</Data>"
    "\n<Data Name=\"VIN\">\n<Bytes count=\"17\" ascii=\"1\"/>\n</Data>"
    "\n<Data Name=\"Raw\">\n<Bytes count=\"1.5\"/>\n</Data>"
    "</Datas>";

std::string RequestsSection(const char* endian, const char* otherEndian) {
  return std::string("<Requests Endian=\"") + endian +
         "\">\n"
         "\n<Request Name=\"ReadSpeed\">\n<DenyAccess><Plant/></DenyAccess>\n<Sent>\n<SentBytes>21 01</SentBytes>\n"
         "</Sent>\n<Received MinBytes=\"4\">\n<ReplyBytes>61 01</ReplyBytes>\n"
         "<DataItem Name=\"Speed\" Ref=\"1\" FirstByte=\"3\"/>\n<DataItem Name=\"Gear\" FirstByte=\"5\" BitOffset=\"1\" "
         "Endian=\"" + otherEndian + "\"/>\n</Received>\n</Request>"
         "\n<Request Name=\"WriteVin\">\n<ManuelSend/>\n<Sent>\n<VariableLength/>\n<SentBytes>3B 90</SentBytes>\n"
         "<DataItem Name=\"VIN\" FirstByte=\"3\"/>\n</Sent>\n<Received MinBytes=\"2\">\n<ShiftBytesCount>1</ShiftBytesCount>\n"
         "</Received>\n</Request>"
         "</Requests>";
}

std::string Document(const std::string& requests) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xml>\n<tsl:Target Name=\"ECU\">\n"
         "<Function Name=\"Engine\" Address=\"18\"/>\n" + kDatas + "\n" + requests + "\n</tsl:Target></xml>";
}

// The part of `text` from `open` up to and including `close`.
std::string Section(const std::string& text, const std::string& open, const std::string& close) {
  auto begin = text.find(open);
  auto end = text.find(close, begin == std::string::npos ? 0 : begin);
  if (begin == std::string::npos || end == std::string::npos) return "<missing " + open + ">";
  return text.substr(begin, end + close.size() - begin);
}

TEST(DataDocumentTest, BigEndianEcuRoundTripsDataAndRequests) {
  TessalyLibXml lib;
  const std::string requests = RequestsSection("Big", "Little");
  lib.ImportUceFromText(Document(requests));
  auto target = lib.ActiveTarget();
  ASSERT_NE(target, nullptr);
  EXPECT_FALSE(target->Parametres()->LittleEndian());
  EXPECT_EQ(target->datas()->Count(), 4);
  EXPECT_EQ(target->Requests()->Count(), 2);
  EXPECT_TRUE(target->Requests()->ItemDataPositionName("ReadSpeed", "Gear")->LittleEndian());

  const std::string text = lib.ExportUceToText();
  EXPECT_EQ(Section(text, "<Datas>", "</Datas>"), kDatas);
  EXPECT_EQ(Section(text, "<Requests ", "</Requests>"), requests);
}

TEST(DataDocumentTest, LittleEndianEcuRoundTripsDataAndRequests) {
  TessalyLibXml lib;
  const std::string requests = RequestsSection("Little", "Big");
  lib.ImportUceFromText(Document(requests));
  auto target = lib.ActiveTarget();
  ASSERT_NE(target, nullptr);
  EXPECT_TRUE(target->Parametres()->LittleEndian());
  EXPECT_TRUE(target->Requests()->ItemDataPositionName("ReadSpeed", "Speed")->LittleEndian());
  EXPECT_FALSE(target->Requests()->ItemDataPositionName("ReadSpeed", "Gear")->LittleEndian());

  const std::string text = lib.ExportUceToText();
  EXPECT_EQ(Section(text, "<Datas>", "</Datas>"), kDatas);
  EXPECT_EQ(Section(text, "<Requests ", "</Requests>"), requests);
}

TEST(DataDocumentTest, PlacementsAreResolvedAgainstTheDataReadBefore) {
  TessalyLibXml lib;
  lib.ImportUceFromText(
      "<xml><tsl:Target Name=\"ECU\"><Function Name=\"Engine\" Address=\"18\"/>"
      "<Datas><Data Name=\"Speed\"/></Datas><Requests Endian=\"Big\"><Request Name=\"R\"><Received>"
      "<DataItem Name=\"SPEED\"/><DataItem Name=\"Temp\"/></Received></Request></Requests></tsl:Target></xml>");
  auto positions = lib.ActiveTarget()->Requests()->ItemName("R")->DataPositions();
  ASSERT_EQ(positions->Count(), 1);
  EXPECT_EQ(positions->Item(1)->dataName(), "SPEED");
  EXPECT_EQ(positions->Item(1)->data(), lib.ActiveTarget()->datas()->ItemName("Speed"));
}

}  // namespace
}  // namespace tessaly
