// tessaly diff A B [--json]: what changed in the model from document A to document B. Items are
// matched by their names (data, requests, devices, categories, screens within their category,
// positions within their request, device data within their device), by their values
// (auto-identifications, value-list entries by value, tests by type) or by their position
// (labels, buttons and displays within their screen, thresholds within their display, steps
// within their button); the target's own properties and its parameters are compared property
// by property. Only the model counts: line breaks, attribute order and whatever else a load
// does not keep make no difference.
#ifndef TESSALY_SRC_CLI_DIFF_COMMAND_HPP_
#define TESSALY_SRC_CLI_DIFF_COMMAND_HPP_

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/console.hpp"

namespace tessaly::cli {

// Exit statuses of the command (2 is the usage error of every command).
inline constexpr int kDiffEqual = 0;
inline constexpr int kDiffDifferent = 1;
inline constexpr int kDiffNotLoaded = 3;

// One difference between two models.
struct ModelChange {
  // One level of where the item sits: the kind of item ("data", "screen", "step" ...) and its
  // key (a name, a number, a position, or the four values of an auto-identification); the
  // target and its parameters have no key (null).
  struct Step {
    std::string kind;
    nlohmann::ordered_json key;
    std::string keyText;
  };
  enum class Kind { kAdded, kRemoved, kChanged };

  Kind kind = Kind::kChanged;
  std::vector<Step> where;
  std::string property;        // changed only: the property, "Outer.inner" inside a nested object
  nlohmann::ordered_json was;  // changed: the old value; removed: the whole item
  nlohmann::ordered_json now;  // changed: the new value; added: the whole item
};

// The differences from model `a` to model `b`, both as ModelJson gives them, in document order:
// the target's properties, its parameters, then each collection; within a collection the items
// of `a` in order (removed, or their changes), then the items only `b` holds, in order.
std::vector<ModelChange> CompareModels(const nlohmann::ordered_json& a, const nlohmann::ordered_json& b);

// "data EngineSpeed", "position Vin of request ReadVin", "screen Measurements/Engine",
// "step 2 of button 3 of screen Faults/SensorStatus", "target", "parameters".
std::string ItemText(const std::vector<ModelChange::Step>& where);

// One line without its line feed: "added request ReadX", "removed device Fan",
// "changed data Speed: NumberBits 8 -> 16" (texts are shown as JSON strings, in quotes).
std::string ChangeLine(const ModelChange& change);

// The machine-readable form of one difference (docs/json.md).
nlohmann::ordered_json ChangeJson(const ModelChange& change);

// Registers the command; its exit status is stored into `status` when it runs.
void AddDiffCommand(CLI::App& app, int& status);

// Loads both documents and prints their differences on `out` ("no differences" when there is
// none; a JSON array when `json`). Warnings, event-log entries and errors go to `err`. Returns
// kDiffEqual, kDiffDifferent, or kDiffNotLoaded when the facade could not be set up or either
// import raised an error (nothing is printed on `out` then).
int RunDiff(const std::string& a, const std::string& b, bool json, const FacadeOptions& facade, std::ostream& out,
            std::ostream& err);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_DIFF_COMMAND_HPP_
