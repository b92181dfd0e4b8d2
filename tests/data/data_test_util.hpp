// Helpers of the data and request tests: loading fragments into a fresh ECU and writing them
// back the way the ECU frames them.
#ifndef TESSALY_TESTS_DATA_DATA_TEST_UTIL_HPP_
#define TESSALY_TESTS_DATA_DATA_TEST_UTIL_HPP_

#include <pugixml.hpp>

#include <memory>
#include <string>

#include "common/xml_util.hpp"
#include "support/test_support.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly::testing {

// Loads `datas` (a whole <Datas> element) into the ECU's data.
inline void LoadDatas(const std::shared_ptr<TargetItem>& target, const std::string& datas) {
  pugi::xml_document doc;
  ParseText(doc, datas);
  target->datas()->loadXml(doc, doc.child("Datas"), target);
}

// Loads `requests` (a whole <Requests> element) into the ECU's requests.
inline void LoadRequests(const std::shared_ptr<TargetItem>& target, const std::string& requests) {
  pugi::xml_document doc;
  ParseText(doc, requests);
  target->Requests()->loadXml(doc, doc.child("Requests"), target);
}

// The ECU's data written as the ECU writes them: <Datas>, a line feed, then the items.
inline std::string WriteDatas(const std::shared_ptr<TargetItem>& target) {
  pugi::xml_document doc;
  pugi::xml_node datas = doc.append_child("Datas");
  xml::AppendLf(datas);
  target->datas()->createXMLnode(doc, datas);
  return NodeText(datas);
}

// The ECU's requests written as the ECU writes them (Endian from its byte order).
inline std::string WriteRequests(const std::shared_ptr<TargetItem>& target) {
  pugi::xml_document doc;
  pugi::xml_node requests = doc.append_child("Requests");
  xml::SetAttr(requests, "Endian", std::string_view(target->Parametres()->LittleEndian() ? "Little" : "Big"));
  xml::AppendLf(requests);
  target->Requests()->createXMLnode(doc, requests);
  return NodeText(requests);
}

// Parses `text` and returns a fresh document whose first element the test reads.
inline pugi::xml_node ParseElement(pugi::xml_document& doc, const std::string& text) {
  ParseText(doc, text);
  return doc.first_child();
}

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_DATA_DATA_TEST_UTIL_HPP_
