// A facade with an empty ECU, and helpers that give the ECU data and requests placing them,
// for the tests of devices, device data and failure tests.
#ifndef TESSALY_TESTS_DEVICES_DEVICES_FIXTURE_HPP_
#define TESSALY_TESTS_DEVICES_DEVICES_FIXTURE_HPP_

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "common/xml_util.hpp"
#include "support/test_support.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly::testing {

struct Warning {
  std::string LibClass;
  std::string warningMsg;
  bool operator==(const Warning&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Warning& w) {
  return out << "(" << w.LibClass << ", " << w.warningMsg << ")";
}

class DevicesFixture : public ::testing::Test {
 protected:
  DevicesFixture() : target(lib.NewTarget()) {
    Err().Clear();
    lib.set_WarningInfo([this](const std::string& c, const std::string& m) { warnings.push_back({c, m}); });
  }

  // A data item of the ECU.
  std::shared_ptr<DataItem> AddData(const std::string& name) {
    auto data = target->datas()->Add(name);
    data->set_parent(target);
    return data;
  }

  // A request of the ECU placing the given data (which are created in the ECU as well).
  std::shared_ptr<RequestItem> AddRequest(const std::string& name, std::initializer_list<const char*> dataNames) {
    auto request = target->Requests()->Add(name);
    request->set_parent(target);
    request->set_DataPositions(std::make_shared<DataPositionItems>());
    for (const char* dataName : dataNames) {
      if (!target->datas()->ItemName(dataName)) AddData(dataName);
      request->DataPositions()->Add(dataName)->set_parent(request);
    }
    return request;
  }

  // A device of the ECU.
  std::shared_ptr<OrganeItem> AddDevice(const std::string& name) {
    auto device = target->Organes()->Add(name, "", 0, 0);
    device->set_parent(target);
    return device;
  }

  // Reads `devicesXml` (a Devices element) into the ECU's devices.
  void LoadDevices(const std::string& devicesXml) {
    ParseText(input, devicesXml);
    target->Organes()->loadXml(input, input.child("Devices"), target);
  }

  // The ECU's devices written as the ECU writes them: a Devices element opening with a line feed.
  std::string WriteDevices() {
    pugi::xml_document out;
    pugi::xml_node devices = out.append_child("Devices");
    xml::AppendLf(devices);
    target->Organes()->createXMLnode(out, devices);
    return NodeText(devices);
  }

  // The warnings raised with this class name, in order.
  std::vector<Warning> WarningsOf(const std::string& LibClass) const {
    std::vector<Warning> found;
    for (const Warning& w : warnings)
      if (w.LibClass == LibClass) found.push_back(w);
    return found;
  }

  TessalyLibXml lib;
  std::shared_ptr<TargetItem> target;
  std::vector<Warning> warnings;
  pugi::xml_document input;
};

}  // namespace tessaly::testing

#endif  // TESSALY_TESTS_DEVICES_DEVICES_FIXTURE_HPP_
