#include "cli/diff_command.hpp"

#include <cstddef>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "cli/model_json.hpp"

namespace tessaly::cli {
namespace {

using Json = nlohmann::ordered_json;
using Path = std::vector<ModelChange::Step>;

// How the items of one collection are matched: by a key property, by the whole item (the four
// values of an auto-identification), or by position.
enum class Match { kByProperty, kWhole, kByPosition };

struct CollectionRule {
  const char* property;  // the collection's property name in the model JSON
  const char* kind;      // what one item is called in the output
  Match match;
  const char* key;  // the key property, for kByProperty
};

constexpr CollectionRule kRules[] = {
    {"AutoIdents", "auto-ident", Match::kWhole, nullptr},
    {"datas", "data", Match::kByProperty, "dataName"},
    {"DataListes", "value", Match::kByProperty, "Valeur"},
    {"Requests", "request", Match::kByProperty, "requestName"},
    {"DataPositions", "position", Match::kByProperty, "dataName"},
    {"Organes", "device", Match::kByProperty, "organeName"},
    {"DeviceDatas", "device data", Match::kByProperty, "dataName"},
    {"Tests", "test", Match::kByProperty, "testType"},
    {"Categories", "category", Match::kByProperty, "categoryName"},
    {"Screens", "screen", Match::kByProperty, "screenName"},
    {"LabelItems", "label", Match::kByPosition, nullptr},
    {"ButtonItems", "button", Match::kByPosition, nullptr},
    {"DisplayItems", "display", Match::kByPosition, nullptr},
    {"RangeItems", "threshold", Match::kByPosition, nullptr},
    {"ScenarioItems", "step", Match::kByPosition, nullptr},
};

const CollectionRule* RuleFor(const std::string& property) {
  for (const CollectionRule& rule : kRules)
    if (property == rule.property) return &rule;
  return nullptr;
}

// A value as the text output shows it: numbers and booleans as they are, texts in JSON quotes.
std::string ValueText(const Json& value) { return JsonText(value, -1); }

std::string KeyText(const Json& key) {
  if (key.is_string()) return key.get<std::string>();
  if (key.is_object()) {
    std::string text;
    for (const auto& [name, value] : key.items())
      text += (text.empty() ? "" : "/") + (value.is_string() ? value.get<std::string>() : ValueText(value));
    return text;
  }
  return ValueText(key);
}

ModelChange::Step StepOf(const CollectionRule& rule, const Json& item, std::size_t position) {
  Json key;
  switch (rule.match) {
    case Match::kByProperty: key = item.at(rule.key); break;
    case Match::kWhole: key = item; break;
    case Match::kByPosition: key = position + 1; break;
  }
  std::string text = KeyText(key);
  return {rule.kind, std::move(key), std::move(text)};
}

class Comparer {
 public:
  std::vector<ModelChange> Run(const Json& a, const Json& b) {
    CompareItem(a, b, Path{}, Path{{"target", nullptr, ""}});
    return std::move(changes_);
  }

 private:
  // Compares two versions of one item: its own properties are reported against `owner`, its
  // collections hang below `path` (the target reports as "target" but its collections stand on
  // their own).
  void CompareItem(const Json& a, const Json& b, const Path& path, const Path& owner) {
    for (const auto& [name, va] : a.items()) {
      const Json& vb = b.at(name);
      const CollectionRule* rule = RuleFor(name);
      if (rule != nullptr && va.is_array() && vb.is_array()) {
        CompareCollection(*rule, va, vb, path);
      } else if (path.empty() && name == "Parametres" && va.is_object() && vb.is_object()) {
        const Path parameters{{"parameters", nullptr, ""}};
        CompareItem(va, vb, parameters, parameters);
      } else {
        CompareValue(name, va, vb, owner);
      }
    }
  }

  // Nested objects (what a display shows) are compared property by property, as "Outer.inner".
  void CompareValue(const std::string& property, const Json& a, const Json& b, const Path& owner) {
    if (a.is_object() && b.is_object()) {
      for (const auto& [name, va] : a.items()) CompareValue(property + "." + name, va, b.at(name), owner);
      return;
    }
    if (a == b) return;
    ModelChange change;
    change.kind = ModelChange::Kind::kChanged;
    change.where = owner;
    change.property = property;
    change.was = a;
    change.now = b;
    changes_.push_back(std::move(change));
  }

  // Matches the k-th item of a key in `a` with the k-th item of the same key in `b`, so that
  // repeated keys still pair up in order.
  void CompareCollection(const CollectionRule& rule, const Json& a, const Json& b, const Path& parent) {
    std::vector<ModelChange::Step> stepsB;
    std::map<std::pair<std::string, std::size_t>, std::size_t> indexB;
    std::map<std::string, std::size_t> seenB;
    for (std::size_t i = 0; i < b.size(); ++i) {
      stepsB.push_back(StepOf(rule, b[i], i));
      const std::string key = stepsB.back().key.dump();
      indexB[{key, seenB[key]++}] = i;
    }
    std::vector<bool> matched(b.size(), false);
    std::map<std::string, std::size_t> seenA;
    for (std::size_t i = 0; i < a.size(); ++i) {
      Path path = parent;
      path.push_back(StepOf(rule, a[i], i));
      const std::string key = path.back().key.dump();
      auto found = indexB.find({key, seenA[key]++});
      if (found == indexB.end()) {
        Add(ModelChange::Kind::kRemoved, std::move(path), a[i]);
        continue;
      }
      matched[found->second] = true;
      CompareItem(a[i], b[found->second], path, path);
    }
    for (std::size_t i = 0; i < b.size(); ++i) {
      if (matched[i]) continue;
      Path path = parent;
      path.push_back(stepsB[i]);
      Add(ModelChange::Kind::kAdded, std::move(path), b[i]);
    }
  }

  void Add(ModelChange::Kind kind, Path where, const Json& item) {
    ModelChange change;
    change.kind = kind;
    change.where = std::move(where);
    (kind == ModelChange::Kind::kAdded ? change.now : change.was) = item;
    changes_.push_back(std::move(change));
  }

  std::vector<ModelChange> changes_;
};

const char* KindName(ModelChange::Kind kind) {
  switch (kind) {
    case ModelChange::Kind::kAdded: return "added";
    case ModelChange::Kind::kRemoved: return "removed";
    case ModelChange::Kind::kChanged: break;
  }
  return "changed";
}

// Imports `file` into `lib`; prints the error and returns false when the import raised one.
bool Load(TessalyLibXml& lib, const std::string& file, std::ostream& err) {
  if (std::optional<Error> error = Import(lib, file)) {
    PrintError(err, *error);
    return false;
  }
  return true;
}

}  // namespace

std::vector<ModelChange> CompareModels(const nlohmann::ordered_json& a, const nlohmann::ordered_json& b) {
  return Comparer().Run(a, b);
}

std::string ItemText(const std::vector<ModelChange::Step>& where) {
  if (where.empty()) return "target";
  const ModelChange::Step& last = where.back();
  std::vector<ModelChange::Step> parent(where.begin(), where.end() - 1);
  // A screen is named with its category: "screen Measurements/Engine".
  if (last.kind == "screen" && !parent.empty() && parent.back().kind == "category")
    return "screen " + parent.back().keyText + "/" + last.keyText;
  std::string text = last.key.is_null() ? last.kind : last.kind + " " + last.keyText;
  if (!parent.empty()) text += " of " + ItemText(parent);
  return text;
}

std::string ChangeLine(const ModelChange& change) {
  std::string line = std::string(KindName(change.kind)) + " " + ItemText(change.where);
  if (change.kind == ModelChange::Kind::kChanged)
    line += ": " + change.property + " " + ValueText(change.was) + " -> " + ValueText(change.now);
  return line;
}

nlohmann::ordered_json ChangeJson(const ModelChange& change) {
  Json j;
  j["change"] = KindName(change.kind);
  j["item"] = ItemText(change.where);
  Json where = Json::array();
  for (const ModelChange::Step& step : change.where) where.push_back({{"kind", step.kind}, {"key", step.key}});
  j["where"] = where;
  switch (change.kind) {
    case ModelChange::Kind::kAdded: j["new"] = change.now; break;
    case ModelChange::Kind::kRemoved: j["old"] = change.was; break;
    case ModelChange::Kind::kChanged:
      j["property"] = change.property;
      j["old"] = change.was;
      j["new"] = change.now;
      break;
  }
  return j;
}

void AddDiffCommand(CLI::App& app, int& status) {
  struct Options {
    std::string a;
    std::string b;
    bool json = false;
    FacadeOptions facade;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand(
      "diff", "Compare two ECU documents item by item (exit status 0 equal, 1 different, 3 not loaded)");
  cmd->add_option("A", options->a, "The old document: a file path, file:// or http(s):// URL")->required();
  cmd->add_option("B", options->b, "The new document: a file path, file:// or http(s):// URL")->required();
  cmd->add_flag("--json", options->json, "Print the differences as a JSON array");
  AddLoadOptions(*cmd, options->facade);
  cmd->callback([options, &status] {
    status = RunDiff(options->a, options->b, options->json, options->facade, std::cout, std::cerr);
  });
}

int RunDiff(const std::string& a, const std::string& b, bool json, const FacadeOptions& facade, std::ostream& out,
            std::ostream& err) {
  // Each document has a facade of its own, set up from the same options; options that cannot
  // be applied are reported once.
  std::unique_ptr<TessalyLibXml> libA;
  std::unique_ptr<TessalyLibXml> libB;
  try {
    libA = MakeFacade(facade, err);
    libB = MakeFacade(facade, err);
  } catch (const Error& error) {
    PrintError(err, error);
    return kDiffNotLoaded;
  }
  // Both documents are loaded, so that the errors of both are shown at once.
  const bool loadedA = Load(*libA, a, err);
  const bool loadedB = Load(*libB, b, err);
  if (!loadedA || !loadedB) return kDiffNotLoaded;
  const std::vector<ModelChange> changes =
      CompareModels(ModelJson(*libA->ActiveTarget()), ModelJson(*libB->ActiveTarget()));
  if (json) {
    Json list = Json::array();
    for (const ModelChange& change : changes) list.push_back(ChangeJson(change));
    out << JsonText(list) << '\n';
  } else if (changes.empty()) {
    out << "no differences\n";
  } else {
    for (const ModelChange& change : changes) out << ChangeLine(change) << '\n';
  }
  return changes.empty() ? kDiffEqual : kDiffDifferent;
}

}  // namespace tessaly::cli
