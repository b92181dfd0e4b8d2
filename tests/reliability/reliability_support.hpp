// What the reliability tests share: the hostile documents kept under tests/documents/hostile, a
// frame that makes a whole ECU document around a few elements, and a facade that records its
// warnings, event-log entries and drop/repair diagnostics instead of sending them anywhere.
#ifndef TESSALY_TESTS_RELIABILITY_RELIABILITY_SUPPORT_HPP_
#define TESSALY_TESTS_RELIABILITY_RELIABILITY_SUPPORT_HPP_

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/test_support.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"

namespace tessaly::testing {

inline constexpr const char* kImportSource = "TessalyDatabase.ImportUceFromXml";

// The path of a file of the hostile corpus.
inline std::string HostilePath(const std::string& name) {
  return std::string(TESSALY_TEST_DOCUMENTS) + "/hostile/" + name;
}

// The bytes of a file of the hostile corpus.
inline std::string HostileDocument(const std::string& name) { return ReadFileBytes(HostilePath(name)); }

// A whole ECU document (target "Engine", function "Injection" at address 122) whose target
// element holds `content` after its Function and Language elements.
inline std::string EcuFrame(std::string_view content) {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n"
      "<tsl:Target Name=\"Engine\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
      "xmlns:ds=\"http://www.tessaly.org/2002/screens\">\n"
      "<Function Name=\"Injection\" Address=\"122\"/>\n<Language Name=\"English\" Reference=\"1\"/>\n";
  out += content;
  out += "</tsl:Target></xml>\r\n";
  return out;
}

// An ECU with every kind of element: parameters with a K line, auto-identifications, data of
// each shape, requests with bytes, access rights and data placed in both directions, a device
// with data links and a failure test, and screens with labels, buttons, an init scenario,
// displays and thresholds. Loading it reports nothing.
inline std::string RichEcuDocument() {
  return EcuFrame(
      "<Description><![CDATA[Engine control unit\r\nsecond line]]></Description>\n"
      "<DateOfficialisation>2024-03-01</DateOfficialisation>\n"
      "<Failures Name=\"Flags de pannes\" Id=\"1\"/>\n<Boot Name=\"Flash\"/>\n"
      "<PowerSupply>\n<Ground/>\n<Vbat/>\n<AfterContact/>\n</PowerSupply>\n"
      "<K BaudRate=\"10400\">\n<KWP Multipoint=\"1\">\n<ISO8>\n<L/>\n<KW1 Value=\"233\"/>\n"
      "<KW2 Value=\"143\" Timeout=\"250\"/>\n<FirstRequest Delay=\"40\"/>\n</ISO8><KW2_ Delay=\"35\"/>\n</KWP>\n"
      "<InterByte Delay=\"1\"/>\n<ReplyToRequest Delay=\"5\"/>\n<RequestToReply Timeout=\"300\"/>\n"
      "<TesterPresent Delay=\"2000\"/>\n<OnError Delay=\"300\"/>\n</K>\n"
      "<AutoIdents>\n<AutoIdent DiagVersion=\"12\" Supplier=\"SUP\" Soft=\"96 123 45 80\" Version=\"V2\"/>"
      "<AutoIdent DiagVersion=\"3\" Supplier=\"A\" Soft=\"B\" Version=\"C\"/></AutoIdents>\n"
      "<Datas>\n"
      "<Data Name=\"Speed\">\n<Comment><![CDATA[Vehicle speed]]></Comment>\n<Mnemonic>SPD</Mnemonic>\n"
      "<Description><![CDATA[Measured at the gearbox <output>]]></Description>\n"
      "<Bits count=\"16\">\n<Scaled Unit=\"km/h\" Step=\"0.01\" Offset=\"-40\" DivideBy=\"3\" Format=\"%5.1f\"/>\n"
      "</Bits>\n</Data>\n"
      "<Data Name=\"Temp\">\n<Bits count=\"10\" signed=\"1\">\n<Scaled Unit=\"\xC2\xB0" "C\"/>\n</Bits>\n</Data>\n"
      "<Data Name=\"Pressure\">\n<Bits count=\"8\">\n<Scaled/>\n</Bits>\n</Data>\n"
      "<Data Name=\"Gear\">\n<Bits count=\"3\">\n<List>\n<Item Value=\"0\" Text=\"Neutral\"/>\n"
      "<Item Value=\"1\" Text=\"First\"><![CDATA[Lowest forward gear]]></Item>\n<Item Value=\"-1\" Text=\"Reverse\"/>"
      "</List>\n</Bits>\n</Data>\n"
      "<Data Name=\"VIN\">\n<Bytes count=\"17\" ascii=\"1\"/>\n</Data>\n"
      "</Datas>\n"
      "<Requests Endian=\"Big\">\n"
      "<Request Name=\"ReadSpeed\"><Sent><SentBytes>21 01</SentBytes></Sent><Received MinBytes=\"4\"><ReplyBytes>61 01</ReplyBytes>"
      "<DataItem Name=\"Speed\" Ref=\"1\" FirstByte=\"2\"/><DataItem Name=\"Pressure\" FirstByte=\"4\" BitOffset=\"2\"/>"
      "<DataItem Name=\"Gear\" FirstByte=\"5\"/></Received></Request>\n"
      "<Request Name=\"WriteTemp\"><DenyAccess><Plant/><AfterSales/></DenyAccess><Sent><SentBytes>3B 02</SentBytes>"
      "<DataItem Name=\"Temp\" FirstByte=\"3\"/></Sent></Request>\n"
      "<Request Name=\"ReadVin\"><Sent><SentBytes>21 80</SentBytes></Sent><Received><DataItem Name=\"VIN\" Ref=\"1\" FirstByte=\"3\"/>"
      "</Received></Request>\n"
      "<Request Name=\"Reset\"/>\n<Request Name=\"Stop\"/>\n"
      "</Requests>\n"
      "<Devices>\n<Device Name=\"Pump\" DTC=\"4660\" OBD=\"42\" Type=\"3\" FreezeFrame=\"ReadSpeed\">\n"
      "<Mnemonic>PMP</Mnemonic>\n<DeviceData Name=\"Speed\" FailureFlag=\"1\"/>\n<DeviceData Name=\"Gear\" FailureFlag=\"0\"/>\n"
      "\r\n<Test Type=\"1\" OBD=\"4660\" Severity=\"2\">\r\n<StoredFlag>Pressure</StoredFlag>\r\n"
      "<PresentFlag>Gear</PresentFlag>\r\n</Test>\n</Device>\n"
      "<Device Name=\"Fan\">\n</Device>\n</Devices>\n"
      "<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n"
      "<Category Name=\"Engine\">\n"
      "\n<Screen Name=\"Main\" Color=\"12632256\" WindowState=\"2\" Width=\"800\" Height=\"600\">\n"
      "\n<Label Text=\"Engine\" Color=\"16777215\" Alignment=\"1\">\n<Rectangle Left=\"5\" Top=\"5\" Height=\"20\" Width=\"200\"/>\n"
      "<Font Name=\"Arial\" Size=\" 14.5\" Bold=\"1\" Italic=\"0\" Color=\"0\"/></Label>\n"
      "<Send Delay=\"50\" RequestName=\"Reset\"/><Send Delay=\"0\" RequestName=\"ReadSpeed\"/>"
      "\n<Button Text=\"Write\">\n<Rectangle Left=\"10\" Top=\"400\" Height=\"30\" Width=\"100\"/>\n"
      "<Font Name=\"Arial\" Size=\" 8.25\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"Write the temperature?\"/>\n"
      "<Send Delay=\"100\" RequestName=\"WriteTemp\"/><Send Delay=\"20\" RequestName=\"Stop\"/>\n</Button>\n"
      "\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"Speed\" RequestName=\"ReadSpeed\">\n"
      "<Rectangle Left=\"10\" Top=\"40\" Height=\"300\" Width=\"4000\"/>\n"
      "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/>"
      "<Threshold Value=\" 0\" Color=\"65280\"/><Threshold Value=\" 6500.5\" Color=\"255\">\n<Sound Name=\"880\"/></Threshold>"
      "</Display>"
      "\n<Input Width=\"2000\" Color=\"16777215\" DataName=\"Temp\" RequestName=\"WriteTemp\">\n"
      "<Rectangle Left=\"10\" Top=\"80\" Height=\"300\" Width=\"4000\"/>\n"
      "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"1\" Color=\"255\"/><Threshold Value=\"-40\" Color=\"16711680\"/></Input>"
      "\n<Display Width=\"2000\" Color=\"16777215\" RequestName=\"Stop\">\n"
      "<Rectangle Left=\"0\" Top=\"0\" Height=\"300\" Width=\"4000\"/>\n"
      "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Display>\n</Screen>"
      "\n<Screen Name=\"Second\" Color=\"16777215\" WindowState=\"0\" Width=\"600\" Height=\"400\">\n\n\n\n</Screen>"
      "\n</Category><Category Name=\"Body\">\n\n</Category></ds:Categories>");
}

// Runs `work` on a thread whose stack holds only `stackBytes`, as a host's worker thread may
// have, and waits for it. Returns false when the thread could not be started.
inline bool RunOnSmallStack(std::size_t stackBytes, const std::function<void()>& work) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  pthread_attr_setstacksize(&attributes, stackBytes);
  pthread_t thread;
  auto entry = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  const bool started = pthread_create(&thread, &attributes, entry, const_cast<std::function<void()>*>(&work)) == 0;
  pthread_attr_destroy(&attributes);
  if (started) pthread_join(thread, nullptr);
  return started;
}

struct RecordedWarning {
  std::string LibClass;
  std::string warningMsg;
};

// A facade whose warnings, event-log entries and diagnostics are recorded in memory.
class RecordingFacade {
 public:
  RecordingFacade() : log_(std::make_shared<RecordingEventLog>()) {
    lib.set_EventLog(log_);
    lib.set_WarningInfo([this](const std::string& c, const std::string& m) { warnings.push_back({c, m}); });
    lib.set_Diagnostics([this](const Diagnostic& d) { diagnostics.push_back(d); });
  }
  const std::vector<std::string>& logEntries() const { return log_->entries; }

  TessalyLibXml lib;
  std::vector<RecordedWarning> warnings;
  std::vector<Diagnostic> diagnostics;

 private:
  std::shared_ptr<RecordingEventLog> log_;
};

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_RELIABILITY_RELIABILITY_SUPPORT_HPP_
