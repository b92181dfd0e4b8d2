#include "cli/params_command.hpp"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>

#include "cli/console.hpp"

namespace tessaly::cli {
namespace {

void PrintText(const TessalyLibXml& lib, std::ostream& out) {
  out << "Protocols\n" << std::setw(6) << "Code" << std::setw(6) << "Init" << "  Multi  Name\n";
  for (const auto& p : *lib.protocols())
    out << std::setw(6) << p->code() << std::setw(6) << p->initMode() << "  " << std::left << std::setw(5)
        << (p->multiPoint() ? "yes" : "no") << std::right << "  " << p->protocolName() << '\n';
  out << "\nFailure types\n" << std::setw(6) << "Id" << "  Name\n";
  for (const auto& f : *lib.Pannes()) out << std::setw(6) << f->id() << "  " << f->libelle() << '\n';
  out << "\nDevice types\n" << std::setw(6) << "Id" << "  Name\n";
  for (const auto& d : *lib.typeOrganes()) out << std::setw(6) << d->id() << "  " << d->libelle() << '\n';
}

nlohmann::ordered_json ToJson(const TessalyLibXml& lib) {
  nlohmann::ordered_json j;
  j["protocols"] = nlohmann::ordered_json::array();
  for (const auto& p : *lib.protocols())
    j["protocols"].push_back(
        {{"code", p->code()}, {"initMode", p->initMode()}, {"multiPoint", p->multiPoint()}, {"name", p->protocolName()}});
  j["failureTypes"] = nlohmann::ordered_json::array();
  for (const auto& f : *lib.Pannes()) j["failureTypes"].push_back({{"id", f->id()}, {"name", f->libelle()}});
  j["deviceTypes"] = nlohmann::ordered_json::array();
  for (const auto& d : *lib.typeOrganes()) j["deviceTypes"].push_back({{"id", d->id()}, {"name", d->libelle()}});
  return j;
}

}  // namespace

void AddParamsCommand(CLI::App& app, int& status) {
  struct Options {
    FacadeOptions facade;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand("params", "List the protocols, failure types and device types");
  cmd->add_option("--lang", options->facade.lang, "Language of the names (default fr)");
  cmd->add_option("--params", options->facade.params, "Global parameter document to read instead of the built-in one");
  cmd->add_flag("--json", options->json, "Print JSON instead of tables");
  cmd->callback([options, &status] {
    try {
      auto lib = MakeFacade(options->facade, std::cerr);
      if (options->json) std::cout << ToJson(*lib).dump(2) << '\n';
      else PrintText(*lib, std::cout);
      status = 0;
    } catch (const Error& error) {
      PrintError(std::cerr, error);
      status = 1;
    }
  });
}

}  // namespace tessaly::cli
