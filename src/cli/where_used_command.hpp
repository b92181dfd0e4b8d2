// tessaly where-used FILE (--data NAME | --request NAME): every object of an ECU document that
// names one data item or one request, found with the target's where-used queries. The same
// findings are what the edit commands count before and after they rename or delete something.
#ifndef TESSALY_SRC_CLI_WHERE_USED_COMMAND_HPP_
#define TESSALY_SRC_CLI_WHERE_USED_COMMAND_HPP_

#include <CLI/CLI.hpp>

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/console.hpp"

namespace tessaly::cli {

// One test of a device whose flag lists name a data item.
struct TestFlagUse {
  std::shared_ptr<OrganeItem> device;
  std::shared_ptr<TestItem> test;
  bool stored = false;   // named in the test's StoredFlag list
  bool present = false;  // named in the test's PresentFlag list
};

// Everything that names one data item (by its exact name).
struct DataUsers {
  // Its placement in each request that places it, in request order.
  std::shared_ptr<DataPositionCollection> positions;
  // The data displays and inputs that show it, by category and screen.
  std::shared_ptr<DisplayCollection> displays;
  // The device data links to it, in device order.
  std::vector<std::shared_ptr<DeviceDataItem>> links;
  // The tests whose flags name it, in device and then test order.
  std::vector<TestFlagUse> flags;
};

// Everything that names one request (by its exact name).
struct RequestUsers {
  // The data displays and inputs that show a data item through it.
  std::shared_ptr<DisplayCollection> dataDisplays;
  // The request displays and inputs that name it.
  std::shared_ptr<DisplayCollection> requestDisplays;
  // The scenario steps, of every button and init button, that send it.
  std::shared_ptr<ScenarioCollection> steps;
  // The devices whose freeze-frame request it is.
  std::shared_ptr<OrganeCollection> devices;
};

DataUsers FindDataUsers(const TargetItem& target, const std::string& dataName);
RequestUsers FindRequestUsers(const TargetItem& target, const std::string& requestName);

// Registers the command; its exit status is stored into `status` when it runs.
void AddWhereUsedCommand(CLI::App& app, int& status);

struct WhereUsedRequest {
  std::string file;
  std::optional<std::string> data;     // exactly one of data and request is set
  std::optional<std::string> request;
  bool json = false;
  FacadeOptions facade;
};

// Loads the document and prints the users of the data item or request on `out` (JSON when
// asked); warnings, event-log entries and errors go to `err`. Returns 0, or 1 when the facade
// could not be set up, the import raised an error, or the document holds no such item.
int RunWhereUsed(const WhereUsedRequest& request, std::ostream& out, std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_WHERE_USED_COMMAND_HPP_
