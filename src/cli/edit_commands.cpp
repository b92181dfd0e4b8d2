#include "cli/edit_commands.hpp"

#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/convert_command.hpp"
#include "cli/where_used_command.hpp"

namespace tessaly::cli {
namespace {

// One kind of user of the edited name: how many there were before the edit and how many still
// name it (with the same spelling) afterwards.
struct Row {
  std::string what;
  std::string verb;  // "updated", "removed", "cleared"
  std::int32_t before = 0;
  std::int32_t after = 0;
  // Whether the users left afterwards still name the edited item (for the kinds counted by
  // another name, what is left is no dangling reference).
  bool namesEditedItem = true;
};

// What an edit did, ready to print.
struct Outcome {
  std::string headline;
  std::string name;  // the edited item's name before the edit
  std::vector<Row> rows;
};

struct CommandInfo {
  const char* name;
  const char* description;
  Edit edit;
};

const CommandInfo kCommands[] = {
    {"rename-data", "Rename a data item with its placements, displays, device link and test flag", Edit::kRenameData},
    {"rename-request", "Rename a request with its displays and scenario steps", Edit::kRenameRequest},
    {"rename-device", "Rename a device", Edit::kRenameDevice},
    {"delete-data", "Delete a data item with its placements, their displays and device links", Edit::kDeleteData},
    {"delete-request", "Delete a request with its placements, displays and scenario steps", Edit::kDeleteRequest},
    {"delete-device", "Delete a device with its data links and tests", Edit::kDeleteDevice},
};

const CommandInfo& CommandOf(Edit edit) {
  for (const CommandInfo& command : kCommands)
    if (command.edit == edit) return command;
  return kCommands[0];
}

bool IsRename(Edit edit) {
  return edit == Edit::kRenameData || edit == Edit::kRenameRequest || edit == Edit::kRenameDevice;
}

std::int32_t Size(std::size_t n) { return static_cast<std::int32_t>(n); }

std::vector<Row> DataRows(const DataUsers& before, const DataUsers& after, const std::string& verb) {
  return {{"data positions", verb, before.positions->Count(), after.positions->Count()},
          {"displays", verb, before.displays->Count(), after.displays->Count()},
          {"device data links", verb, Size(before.links.size()), Size(after.links.size())},
          {"test flags", verb, Size(before.flags.size()), Size(after.flags.size())}};
}

// The device data links and test flags of several data items, counted together.
struct DeviceUses {
  std::int32_t links = 0;
  std::int32_t flags = 0;
};

DeviceUses DeviceUsesOf(const TargetItem& target, const std::vector<std::string>& dataNames) {
  DeviceUses uses;
  for (const std::string& name : dataNames) {
    const DataUsers users = FindDataUsers(target, name);
    uses.links += Size(users.links.size());
    uses.flags += Size(users.flags.size());
  }
  return uses;
}

// A rename to the name the item already has (letter case included) changes nothing.
Outcome Unchanged(const std::string& what, const std::string& name) {
  Outcome outcome;
  outcome.name = name;
  outcome.headline = "The " + what + " " + name + " already has that name; nothing changed";
  return outcome;
}

// Each edit below looks its item up as the collection does (letter case ignored), counts the
// users of the name as the document spells it, applies the target's referential edit (which
// throws on a refusal, before anything changed), and counts again. A null outcome means the
// item is not in the document.

std::optional<Outcome> RenameData(TargetItem& target, const std::string& name, const std::string& newName) {
  std::shared_ptr<DataItem> data = target.datas() ? target.datas()->ItemName(name) : nullptr;
  if (!data) return std::nullopt;
  Outcome outcome;
  outcome.name = data->dataName();
  if (outcome.name == newName) return Unchanged("data", outcome.name);
  const DataUsers before = FindDataUsers(target, outcome.name);
  target.RenameData(data, newName);
  outcome.rows = DataRows(before, FindDataUsers(target, outcome.name), "updated");
  outcome.headline = "Renamed data " + outcome.name + " to " + data->dataName();
  return outcome;
}

std::optional<Outcome> RenameRequest(TargetItem& target, const std::string& name, const std::string& newName) {
  std::shared_ptr<RequestItem> request = target.Requests() ? target.Requests()->ItemName(name) : nullptr;
  if (!request) return std::nullopt;
  Outcome outcome;
  outcome.name = request->requestName();
  if (outcome.name == newName) return Unchanged("request", outcome.name);
  const RequestUsers before = FindRequestUsers(target, outcome.name);
  target.RenameRequest(request, newName);
  const RequestUsers after = FindRequestUsers(target, outcome.name);
  outcome.rows = {
      {"data displays", "updated", before.dataDisplays->Count(), after.dataDisplays->Count()},
      {"request displays", "updated", before.requestDisplays->Count(), after.requestDisplays->Count()},
      {"scenario steps", "updated", before.steps->Count(), after.steps->Count()},
      // Devices keep the freeze-frame request name they had; the count says so.
      {"freeze-frame devices", "updated", before.devices->Count(), after.devices->Count()}};
  outcome.headline = "Renamed request " + outcome.name + " to " + request->requestName();
  return outcome;
}

std::optional<Outcome> RenameDevice(TargetItem& target, const std::string& name, const std::string& newName) {
  std::shared_ptr<OrganeItem> device = target.Organes() ? target.Organes()->ItemName(name) : nullptr;
  if (!device) return std::nullopt;
  Outcome outcome;
  outcome.name = device->organeName();
  if (outcome.name == newName) return Unchanged("device", outcome.name);
  target.RenameDevice(device, newName);
  outcome.headline = "Renamed device " + outcome.name + " to " + device->organeName();
  return outcome;
}

std::optional<Outcome> DeleteData(TargetItem& target, const std::string& name) {
  std::shared_ptr<DataItem> data = target.datas() ? target.datas()->ItemName(name) : nullptr;
  if (!data) return std::nullopt;
  Outcome outcome;
  outcome.name = data->dataName();
  const DataUsers before = FindDataUsers(target, outcome.name);
  target.DeleteData(data);
  outcome.rows = DataRows(before, FindDataUsers(target, outcome.name), "removed");
  outcome.headline = "Deleted data " + outcome.name;
  return outcome;
}

std::optional<Outcome> DeleteRequest(TargetItem& target, const std::string& name) {
  std::shared_ptr<RequestItem> request = target.Requests() ? target.Requests()->ItemName(name) : nullptr;
  if (!request) return std::nullopt;
  Outcome outcome;
  outcome.name = request->requestName();
  // The data the request places lose their placements in it, and with a reference placement
  // the devices' links and flags to them.
  std::vector<std::string> placed;
  if (const std::shared_ptr<DataPositionItems>& positions = request->DataPositions())
    for (const auto& position : *positions) placed.push_back(position->dataName());
  const RequestUsers before = FindRequestUsers(target, outcome.name);
  const DeviceUses devicesBefore = DeviceUsesOf(target, placed);
  target.DeleteRequest(request);
  const RequestUsers after = FindRequestUsers(target, outcome.name);
  const DeviceUses devicesAfter = DeviceUsesOf(target, placed);
  outcome.rows = {
      {"data positions", "removed", Size(placed.size()), 0, false},
      {"data displays", "removed", before.dataDisplays->Count(), after.dataDisplays->Count()},
      {"request displays", "removed", before.requestDisplays->Count(), after.requestDisplays->Count()},
      {"scenario steps", "removed", before.steps->Count(), after.steps->Count()},
      {"freeze-frame devices", "cleared", before.devices->Count(), after.devices->Count()},
      {"device data links", "removed", devicesBefore.links, devicesAfter.links, false},
      {"test flags", "removed", devicesBefore.flags, devicesAfter.flags, false}};
  outcome.headline = "Deleted request " + outcome.name;
  return outcome;
}

std::optional<Outcome> DeleteDevice(TargetItem& target, const std::string& name) {
  std::shared_ptr<OrganeItem> device = target.Organes() ? target.Organes()->ItemName(name) : nullptr;
  if (!device) return std::nullopt;
  Outcome outcome;
  outcome.name = device->organeName();
  const std::int32_t links = device->DeviceDatas() ? device->DeviceDatas()->Count() : 0;
  const std::int32_t tests = device->HasTests() ? device->Tests()->Count() : 0;
  target.DeleteDevice(device);
  outcome.rows = {{"device data links", "removed", links, 0, false}, {"tests", "removed", tests, 0, false}};
  outcome.headline = "Deleted device " + outcome.name;
  return outcome;
}

const char* WhatIsEdited(Edit edit) {
  switch (edit) {
    case Edit::kRenameData:
    case Edit::kDeleteData: return "data";
    case Edit::kRenameRequest:
    case Edit::kDeleteRequest: return "request";
    default: return "device";
  }
}

std::optional<Outcome> Apply(Edit edit, TargetItem& target, const EditRequest& request) {
  switch (edit) {
    case Edit::kRenameData: return RenameData(target, request.name, request.newName);
    case Edit::kRenameRequest: return RenameRequest(target, request.name, request.newName);
    case Edit::kRenameDevice: return RenameDevice(target, request.name, request.newName);
    case Edit::kDeleteData: return DeleteData(target, request.name);
    case Edit::kDeleteRequest: return DeleteRequest(target, request.name);
    case Edit::kDeleteDevice: return DeleteDevice(target, request.name);
  }
  return std::nullopt;
}

void PrintOutcome(const Outcome& outcome, const std::string& path, std::ostream& out) {
  out << outcome.headline << '\n';
  for (const Row& row : outcome.rows) {
    out << "  " << row.what << ' ' << row.verb << ": " << row.before - row.after << '\n';
    if (row.namesEditedItem && row.after > 0)
      out << "  " << row.what << " still naming " << outcome.name << ": " << row.after << '\n';
  }
  out << "Saved to " << path << '\n';
}

void AddEditCommand(CLI::App& app, int& status, const CommandInfo& command) {
  auto request = std::make_shared<EditRequest>();
  CLI::App* cmd = app.add_subcommand(command.name, command.description);
  cmd->add_option("FILE", request->file, "Document to load: a file path, file:// or http(s):// URL")->required();
  const std::string what = WhatIsEdited(command.edit);
  if (IsRename(command.edit)) {
    cmd->add_option("OLD", request->name, "Current name of the " + what)->required();
    // An empty name would be written and then dropped, with its users, by the next load.
    cmd->add_option("NEW", request->newName, "New name")
        ->required()
        ->check(CLI::Validator(
            [](std::string& name) { return name.empty() ? std::string("the new name is empty") : std::string(); },
            "NAME"));
  } else {
    cmd->add_option("NAME", request->name, "Name of the " + what)->required();
  }
  CLI::Option_group* where = cmd->add_option_group("output", "Where the edited document goes (exactly one)");
  where->add_option("-o,--output", request->output, "File to write");
  where->add_flag("--in-place", request->inPlace, "Write back over FILE");
  where->require_option(1);
  AddFacadeOptions(*cmd, request->facade);
  const Edit edit = command.edit;
  cmd->callback([request, edit, &status] { status = RunEdit(edit, *request, std::cout, std::cerr); });
}

}  // namespace

void AddEditCommands(CLI::App& app, int& status) {
  for (const CommandInfo& command : kCommands) AddEditCommand(app, status, command);
}

int RunEdit(Edit edit, const EditRequest& request, std::ostream& out, std::ostream& err) {
  const std::string source = std::string("tessaly.") + CommandOf(edit).name;
  const std::string path = request.inPlace ? request.file : request.output.value_or(std::string());
  if (path.empty()) {
    PrintError(err, Error(errc::kModel, source, "the output file name is empty"));
    return 2;
  }
  std::unique_ptr<TessalyLibXml> lib = LoadDocument(request.facade, request.file, err);
  if (!lib) return 1;
  std::optional<Outcome> outcome;
  try {
    outcome = Apply(edit, *lib->ActiveTarget(), request);
  } catch (const Error& error) {
    PrintError(err, error);
    return 1;
  }
  if (!outcome) {
    PrintError(err, Error(errc::kModel, source,
                          std::string("no ") + WhatIsEdited(edit) + " named '" + request.name + "'"));
    return 1;
  }
  if (!SaveDocument(*lib, path, err)) return 1;
  PrintOutcome(*outcome, path, out);
  return 0;
}

}  // namespace tessaly::cli
