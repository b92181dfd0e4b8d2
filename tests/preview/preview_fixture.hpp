// A small but complete engine ECU document for the preview tests: data of every shape, requests
// with parameters and reply data, devices with tests, and two categories of screens with labels,
// data and request displays, input fields, thresholds and buttons with scenarios. Some names hold
// characters that HTML must escape.
#ifndef TESSALY_TESTS_PREVIEW_PREVIEW_FIXTURE_HPP_
#define TESSALY_TESTS_PREVIEW_PREVIEW_FIXTURE_HPP_

#include <memory>
#include <string>

#include "tessaly/tessaly.hpp"

namespace tessaly::testing {

inline const std::string kPreviewEcu =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n"
    "<tsl:Target Name=\"Engine &lt;EMS&gt;\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
    "xmlns:ds=\"http://www.tessaly.org/2002/screens\">\n"
    "<Function Name=\"Injection\" Address=\"122\"/>\n<Language Name=\"English\" Reference=\"1\"/>\n"
    "<Description><![CDATA[Petrol engine, bench set-up]]></Description>\n"
    "<DateOfficialisation>2004-03-17</DateOfficialisation>\n<Failures Name=\"\" Id=\"3\"/>\n"
    "<Boot Name=\"BOOT_EMS3\"/>\n"
    "<K BaudRate=\"10400\">\n<KWP Multipoint=\"0\">\n<FastInit><KW1 Value=\"239\"/>\n<KW2 Value=\"143\"/></FastInit>\n"
    "</KWP>\n<InterByte Delay=\"5\"/>\n<ReplyToRequest Delay=\"25\"/>\n<RequestToReply Timeout=\"50\"/>\n"
    "<TesterPresent Delay=\"2000\"/>\n<OnError Delay=\"300\"/>\n</K>\n"
    "<AutoIdents>\n<AutoIdent DiagVersion=\"12\" Supplier=\"SUP\" Soft=\"S1\" Version=\"V2\"/></AutoIdents>\n"
    "<Datas>\n"
    "<Data Name=\"EngineSpeed\">\n<Mnemonic>N</Mnemonic>\n<Bits count=\"16\">\n"
    "<Scaled Unit=\"rpm\" Step=\"0.25\" Format=\"%.0f\"/>\n</Bits>\n</Data>\n"
    "<Data Name=\"CoolantTemp\">\n<Bits signed=\"1\">\n<Scaled Unit=\"&#176;C\" Offset=\"-40\"/>\n</Bits>\n</Data>\n"
    "<Data Name=\"Gear\">\n<Bits count=\"3\">\n<List>\n<Item Value=\"0\" Text=\"Neutral\"/>\n"
    "<Item Value=\"1\" Text=\"First &amp; &lt;low&gt;\"><![CDATA[crawler]]></Item></List>\n</Bits>\n</Data>\n"
    "<Data Name=\"Fault&lt;A&gt;\">\n<Bits count=\"1\">\n<Scaled/>\n</Bits>\n</Data>\n"
    "<Data Name=\"IdleTarget\">\n<Bits count=\"12\">\n<Scaled Unit=\"rpm\" DivideBy=\"2\"/>\n</Bits>\n</Data>\n"
    "<Data Name=\"Vin\">\n<Bytes count=\"17\" ascii=\"1\"/>\n</Data></Datas>\n"
    "<Requests Endian=\"Big\">\n"
    "<Request Name=\"ReadLive\">\n<Sent>\n<SentBytes>21 01</SentBytes>\n</Sent>\n"
    "<Received MinBytes=\"6\">\n<ReplyBytes>61 01</ReplyBytes>\n"
    "<DataItem Name=\"EngineSpeed\" Ref=\"1\" FirstByte=\"3\"/>\n<DataItem Name=\"CoolantTemp\" FirstByte=\"5\"/>\n"
    "<DataItem Name=\"Gear\" FirstByte=\"6\" BitOffset=\"2\"/>\n<DataItem Name=\"Fault&lt;A&gt;\" FirstByte=\"6\" "
    "BitOffset=\"7\"/>\n</Received>\n</Request>\n"
    "<Request Name=\"WriteIdle\">\n<DenyAccess><AfterSales/><Supplier/></DenyAccess>\n"
    "<Sent>\n<SentBytes>3B 10 00 00</SentBytes>\n<DataItem Name=\"IdleTarget\" FirstByte=\"3\" Endian=\"Little\"/>\n"
    "</Sent>\n<Received MinBytes=\"2\">\n<ReplyBytes>7B 10</ReplyBytes>\n</Received>\n</Request>\n"
    "<Request Name=\"ReadVin\">\n<Sent>\n<SentBytes>21 90</SentBytes>\n</Sent>\n<Received MinBytes=\"19\">\n"
    "<DataItem Name=\"Vin\" FirstByte=\"3\"/>\n</Received>\n</Request>\n"
    "<Request Name=\"StartSession\">\n<ManuelSend/>\n<Sent>\n<SentBytes>10 81</SentBytes>\n</Sent>\n"
    "<Received MinBytes=\"1\">\n</Received>\n</Request></Requests>\n"
    "<Devices>\n<Device Name=\"CoolantSensor\" DTC=\"277\" OBD=\"277\" FreezeFrame=\"ReadLive\">\n"
    "<Mnemonic>CTS</Mnemonic>\n<DeviceData Name=\"CoolantTemp\" FailureFlag=\"0\"/>"
    "<DeviceData Name=\"Fault&lt;A&gt;\" FailureFlag=\"1\"/>\n"
    "\r\n<Test Type=\"3\" OBD=\"279\" Severity=\"2\">\r\n<Description>Open circuit</Description>\r\n"
    "<StoredFlag>Fault&lt;A&gt;</StoredFlag>\r\n<PresentFlag>CoolantTemp</PresentFlag>\r\n</Test>\n</Device>\n"
    "<Device Name=\"IdleValve\" Type=\"3\">\n</Device>\n</Devices>\n"
    "<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n"
    "<Category Name=\"Engine\">\n"
    "\n<Screen Name=\"Live &amp; values\" Color=\"12632256\" WindowState=\"0\" Width=\"9600\" Height=\"7200\">\n"
    "\n<Label Text=\"Engine &lt;live&gt; values\" Color=\"8388608\" Alignment=\"2\">\n"
    "<Rectangle Left=\"120\" Top=\"120\" Height=\"400\" Width=\"9360\"/>\n"
    "<Font Name=\"Arial\" Size=\" 12\" Bold=\"1\" Italic=\"0\" Color=\"16777215\"/></Label>\n"
    "<Label Text=\"Speed\" Color=\"12632256\" Alignment=\"0\">\n<Rectangle Left=\"120\" Top=\"700\" Height=\"300\" Width=\"2000\"/>\n"
    "<Font Name=\"Tahoma\" Size=\" 8.25\" Bold=\"0\" Italic=\"1\" Color=\"255\"/></Label>\n"
    "<Send Delay=\"100\" RequestName=\"StartSession\"/>"
    "\n<Button Text=\"Set idle\">\n<Rectangle Left=\"6000\" Top=\"6300\" Height=\"420\" Width=\"1680\"/>\n"
    "<Font Name=\"Arial\" Size=\" 8.25\" Bold=\"1\" Italic=\"0\"/>\n<Message Text=\"Engine must idle. Continue?\"/>\n"
    "<Send Delay=\"50\" RequestName=\"StartSession\"/><Send Delay=\"200\" RequestName=\"WriteIdle\"/>\n</Button>\n"
    "\n<Display Width=\"2000\" Color=\"16777215\" DataName=\"EngineSpeed\" RequestName=\"ReadLive\">\n"
    "<Rectangle Left=\"2400\" Top=\"700\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/>"
    "<Threshold Value=\" 0\" Color=\"65280\"/><Threshold Value=\" 6500\" Color=\"255\">\n<Sound Name=\"880\"/></Threshold>"
    "</Display>"
    "\n<Input Width=\"2000\" Color=\"16777215\" DataName=\"IdleTarget\" RequestName=\"WriteIdle\">\n"
    "<Rectangle Left=\"2400\" Top=\"1200\" Height=\"300\" Width=\"4000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"16711680\"/></Input>"
    "\n<Display Width=\"1500\" Color=\"14737632\" RequestName=\"ReadVin\">\n"
    "<Rectangle Left=\"2400\" Top=\"1700\" Height=\"300\" Width=\"6000\"/>\n"
    "<Font Name=\"Courier New\" Size=\" 9\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Display>\n</Screen>"
    "\n<Screen Name=\"Empty\" Color=\"16777215\" WindowState=\"2\" Width=\"4800\" Height=\"3600\">\n\n\n\n</Screen>"
    "\n</Category><Category Name=\"Body\">\n\n<Screen Name=\"Doors\" Color=\"16711680\" WindowState=\"0\" "
    "Width=\"6000\" Height=\"3000\">\n"
    "\n<Label Text=\"\" Color=\"0\" Alignment=\"1\">\n<Rectangle Left=\"0\" Top=\"0\" Height=\"3000\" Width=\"300\"/>\n"
    "<Font Name=\"\" Size=\" 10\" Bold=\"0\" Italic=\"0\" Color=\"0\"/></Label>\n"
    "\n<Button Text=\"Read &quot;VIN&quot;\">\n<Rectangle Left=\"600\" Top=\"600\" Height=\"420\" Width=\"2000\"/>\n"
    "<Font Name=\"Arial\" Size=\" 8.25\" Bold=\"0\" Italic=\"0\"/>\n<Message Text=\"\"/>\n"
    "<Send Delay=\"0\" RequestName=\"ReadVin\"/>\n</Button>\n\n</Screen>\n</Category></ds:Categories>"
    "</tsl:Target></xml>\r\n";

// A facade holding kPreviewEcu as its active target.
inline std::unique_ptr<TessalyLibXml> LoadPreviewEcu() {
  auto lib = std::make_unique<TessalyLibXml>();
  lib->ImportUceFromText(kPreviewEcu);
  return lib;
}

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_PREVIEW_PREVIEW_FIXTURE_HPP_
