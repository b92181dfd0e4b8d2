// The whole document model of one ECU as JSON: one object per item holding every property of the
// item under the model's own property name, each collection as an array in collection order,
// and each item's children nested inside it. docs/json.md describes the format and
// docs/tessaly.schema.json is its JSON Schema. Reading the model for other commands (diff) goes
// through here too, so that the model is read in one place.
#ifndef TESSALY_SRC_CLI_MODEL_JSON_HPP_
#define TESSALY_SRC_CLI_MODEL_JSON_HPP_

#include <nlohmann/json.hpp>

#include <string>

#include "tessaly/tessaly.hpp"

namespace tessaly::cli {

// The target with its parameters and every collection below it. Reading leaves the model as it
// was: collections that are created on first access are not created, and the tool address is
// read without keeping the side effect of its read accessor.
nlohmann::ordered_json ModelJson(const TargetItem& target);

// The text of `json` as written by the commands: indented by two spaces, UTF-8 kept as it is,
// bytes that are not UTF-8 replaced by U+FFFD.
std::string JsonText(const nlohmann::ordered_json& json, int indent = 2);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_MODEL_JSON_HPP_
