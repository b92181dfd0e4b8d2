// Builds whole ECU documents in the exact form the library writes them, around a given set of
// parameter elements and auto-identification records, for load/save round trips.
#ifndef TESSALY_TESTS_PARAMS_ECU_DOCUMENT_HPP_
#define TESSALY_TESTS_PARAMS_ECU_DOCUMENT_HPP_

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly::testing {

// The parameter elements that come before the protocol element: the optional Description, the
// date, the failure type, the optional Boot and the fixed PowerSupply, each with the line feeds
// written around it. The failure name must be the label the global table gives to the id,
// since only the id is read back.
struct ParamHead {
  std::string description;  // text of the CDATA section; empty writes no Description
  std::string date;
  std::string failureName = "Ne contient pas de pannes";
  std::int32_t failureId = 0;
  std::string boot;  // empty writes no Boot

  std::string Text() const {
    std::string out;
    if (!description.empty()) out += "<Description><![CDATA[" + description + "]]></Description>";
    out += "\n";
    out += date.empty() ? std::string("<DateOfficialisation/>")
                        : "<DateOfficialisation>" + date + "</DateOfficialisation>";
    out += "\n<Failures Name=\"" + failureName + "\" Id=\"" + std::to_string(failureId) + "\"/>";
    if (!boot.empty()) out += "\n<Boot Name=\"" + boot + "\"/>";
    out += "\n<PowerSupply>\n<Ground/>\n<Vbat/>\n<AfterContact/>\n</PowerSupply>\n";
    return out;
  }
};

// The timing elements that close every K element, each followed by a line feed.
inline std::string KTimings(std::int32_t interByte = 0, std::int32_t replyToRequest = 5,
                            std::int32_t requestToReply = 300, std::int32_t testerPresent = 3000,
                            std::int32_t onError = 300) {
  return "<InterByte Delay=\"" + std::to_string(interByte) + "\"/>\n<ReplyToRequest Delay=\"" +
         std::to_string(replyToRequest) + "\"/>\n<RequestToReply Timeout=\"" + std::to_string(requestToReply) +
         "\"/>\n<TesterPresent Delay=\"" + std::to_string(testerPresent) + "\"/>\n<OnError Delay=\"" +
         std::to_string(onError) + "\"/>\n";
}

// A whole document as the facade writes it with its default settings (UTF-8, style sheet, both
// namespaces): `parameters` are the parameter elements (head and protocol element),
// `autoIdents` the AutoIdent records, `function` the Function element. The data, request,
// device and screen containers are empty.
inline std::string EcuDocument(std::string_view parameters, std::string_view autoIdents = {},
                               std::string_view endian = "Big",
                               std::string_view function = R"(<Function Name="Injection" Address="122"/>)") {
  std::string out;
  out += "<?xml version='1.0' encoding=\"UTF-8\"?>\r\n";
  out += "<?xml-stylesheet type=\"text/xsl\" href=\"http://www.tessaly.org/Tessaly/TSLECUPreview.xsl\"?>\r\n";
  out += "<xml xmlns:tsl=\"http://www.tessaly.org/2002/ECU\">\n";
  out += "<tsl:Target Name=\"Engine\" xmlns=\"http://www.tessaly.org/2002/ECU\" "
         "xmlns:ds=\"http://www.tessaly.org/2002/screens\">\n";
  out += function;
  out += "\n<Language Name=\"Fran\xC3\xA7" "ais\" Reference=\"1\"/>\n";
  out += parameters;
  out += "\n<AutoIdents>\n";
  out += autoIdents;
  out += "</AutoIdents>\n<Datas>\n</Datas>\n<Requests Endian=\"";
  out += endian;
  out += "\">\n</Requests>\n<Devices>\n</Devices>\n";
  out += "<ds:Categories xmlns=\"http://www.tessaly.org/2002/screens\">\n</ds:Categories></tsl:Target></xml>\r\n";
  return out;
}

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_PARAMS_ECU_DOCUMENT_HPP_
