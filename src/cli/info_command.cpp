#include "cli/info_command.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <vector>

namespace tessaly::cli {
namespace {

// How the ECU is reached: the protocol sub-tree that its initialisation mode writes.
enum class Line { kIso8, kKwpSlowInit, kKwpFastInit, kDiagOnCan, kCanMessaging, kOther };

Line LineOf(std::int32_t initMode) {
  switch (initMode) {
    case 0: return Line::kIso8;
    case 1: return Line::kKwpSlowInit;
    case 2: return Line::kKwpFastInit;
    case 3: return Line::kDiagOnCan;
    case 255: return Line::kCanMessaging;
    default: return Line::kOther;
  }
}

bool IsKLine(Line line) { return line == Line::kIso8 || line == Line::kKwpSlowInit || line == Line::kKwpFastInit; }
bool IsCan(Line line) { return line == Line::kDiagOnCan || line == Line::kCanMessaging; }

// The protocol of the global table that the parameters stand for: the one with the same
// initialisation mode and the same mono-/multi-point setting, else the first one with the same
// mode. A mode of no K-line or CAN family is named by the protocol whose code it is, as the
// document writer names it.
std::shared_ptr<ProtocolItem> ProtocolOf(const TessalyLibXml& lib, const TargetParamItem& params) {
  if (!lib.protocols()) return nullptr;
  if (LineOf(params.initMode()) == Line::kOther) return lib.protocols()->ItemId(params.initMode());
  std::shared_ptr<ProtocolItem> sameMode;
  for (const auto& protocol : *lib.protocols()) {
    if (protocol->initMode() != params.initMode()) continue;
    if (protocol->multiPoint() == params.multiPoint()) return protocol;
    if (!sameMode) sameMode = protocol;
  }
  return sameMode;
}

struct Counts {
  std::int32_t data = 0;
  std::int32_t requests = 0;
  std::int32_t devices = 0;
  std::int32_t tests = 0;
  std::int32_t categories = 0;
  std::int32_t screens = 0;
  std::int32_t displays = 0;
  std::int32_t buttons = 0;
  std::int32_t autoIdents = 0;
};

Counts CountContents(const TargetItem& target) {
  Counts counts;
  if (target.datas()) counts.data = target.datas()->Count();
  if (target.Requests()) counts.requests = target.Requests()->Count();
  if (target.Organes()) {
    counts.devices = target.Organes()->Count();
    for (const auto& device : *target.Organes())
      if (device->Tests()) counts.tests += device->Tests()->Count();
  }
  if (target.Categories()) {
    counts.categories = target.Categories()->Count();
    for (const auto& category : *target.Categories()) {
      if (!category->Screens()) continue;
      counts.screens += category->Screens()->Count();
      for (const auto& screen : *category->Screens()) {
        if (screen->DisplayItems()) counts.displays += screen->DisplayItems()->Count();
        // The init button runs when the screen opens; it is not a button the user sees.
        if (screen->ButtonItems())
          for (const auto& button : *screen->ButtonItems())
            if (!button->InitButton()) ++counts.buttons;
      }
    }
  }
  if (target.AutoIdents()) counts.autoIdents = target.AutoIdents()->Count();
  return counts;
}

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", value);
  return text;
}

std::string HexByte(std::int32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%02X", static_cast<std::uint32_t>(value));
  return text;
}

// A CAN identifier as a person reads it: "0x7E0", "0x18DA10F1 (29-bit)" or "none".
std::string CanIdText(std::int32_t id) {
  if (id == -1) return "none";
  const auto bits = static_cast<std::uint32_t>(id);
  if ((bits & 0x80000000U) != 0) return Hex(bits & 0x1FFFFFFFU) + " (29-bit)";
  return Hex(bits);
}

nlohmann::ordered_json CanIdJson(std::int32_t id) {
  if (id == -1) return nullptr;
  const auto bits = static_cast<std::uint32_t>(id);
  const bool extended = (bits & 0x80000000U) != 0;
  return {{"id", extended ? (bits & 0x1FFFFFFFU) : bits}, {"extended", extended}};
}

// The timings that the ECU's protocol sub-tree carries, by name, in document order.
std::vector<std::pair<std::string, std::int32_t>> Timings(const TargetParamItem& p) {
  const Line line = LineOf(p.initMode());
  std::vector<std::pair<std::string, std::int32_t>> timings;
  if (IsCan(line)) return timings;
  timings = {{"inter-byte", p.InterByteDelay()},
             {"reply to request", p.ReplyToRequestDelay()},
             {"request to reply", p.RequestToReplyTimeout()},
             {"tester present", p.TesterPresentDelay()},
             {"on error", p.ErrorDelay()}};
  if (line == Line::kIso8 || line == Line::kKwpSlowInit || line == Line::kOther) {
    timings.emplace_back("KW2 timeout", p.KW2Timeout());
    if (line != Line::kIso8) timings.emplace_back("KW2 delay", p.KW2Delay());
    timings.emplace_back("first request", p.FirstRequestDelay());
  }
  return timings;
}

// JSON keys of the timings above.
std::string TimingKey(const std::string& name) {
  if (name == "inter-byte") return "interByte";
  if (name == "reply to request") return "replyToRequest";
  if (name == "request to reply") return "requestToReply";
  if (name == "tester present") return "testerPresent";
  if (name == "on error") return "onError";
  if (name == "KW2 timeout") return "kw2Timeout";
  if (name == "KW2 delay") return "kw2Delay";
  return "firstRequest";
}

std::string FunctionName(const TessalyLibXml& lib, const TargetItem& target) {
  std::shared_ptr<FunctionItem> function = lib.functions() ? lib.functions()->ItemAddress(target.Address()) : nullptr;
  return function ? function->functionName() : std::string();
}

void PrintText(const TessalyLibXml& lib, const TargetItem& target, std::ostream& out) {
  const TargetParamItem& p = *target.Parametres();
  const Line line = LineOf(p.initMode());
  auto row = [&out](const std::string& label, const std::string& value) {
    std::string padded = label + ":";
    padded.resize(22, ' ');
    out << padded << value << '\n';
  };
  row("ECU", target.name());
  row("Function", FunctionName(lib, target) + " (address " + std::to_string(target.Address()) + ")");
  std::shared_ptr<ProtocolItem> protocol = ProtocolOf(lib, p);
  row("Protocol", (protocol ? protocol->protocolName() : std::string("unknown protocol")) + " (init mode " +
                      std::to_string(p.initMode()) + ", " + (p.multiPoint() ? "multi-point" : "mono-point") + ", " +
                      std::to_string(p.BaudRate()) + " baud)");
  if (IsKLine(line) || line == Line::kOther) row("Key bytes", HexByte(p.key1()) + " " + HexByte(p.key2()));
  if (line == Line::kDiagOnCan)
    row("CAN identifiers", "send " + CanIdText(p.CanXId()) + ", receive " + CanIdText(p.CanRId()));
  std::vector<std::pair<std::string, std::int32_t>> timings = Timings(p);
  if (!timings.empty()) {
    std::string text;
    for (const auto& [name, value] : timings) text += (text.empty() ? "" : ", ") + name + " " + std::to_string(value);
    row("Timings", text);
  }
  row("Failure type", p.TypePanne() + " (id " + std::to_string(p.TypePanneId()) + ")");
  const Counts c = CountContents(target);
  row("Data", std::to_string(c.data));
  row("Requests", std::to_string(c.requests));
  row("Devices", std::to_string(c.devices));
  row("Tests", std::to_string(c.tests));
  row("Categories", std::to_string(c.categories));
  row("Screens", std::to_string(c.screens));
  row("Displays", std::to_string(c.displays));
  row("Buttons", std::to_string(c.buttons));
  row("Auto-identifications", std::to_string(c.autoIdents));
}

nlohmann::ordered_json ToJson(const TessalyLibXml& lib, const TargetItem& target, const std::string& file) {
  const TargetParamItem& p = *target.Parametres();
  const Line line = LineOf(p.initMode());
  nlohmann::ordered_json j;
  j["file"] = file;
  j["name"] = target.name();
  j["function"] = {{"name", FunctionName(lib, target)}, {"address", target.Address()}};
  std::shared_ptr<ProtocolItem> protocol = ProtocolOf(lib, p);
  nlohmann::ordered_json proto;
  proto["name"] = protocol ? nlohmann::ordered_json(protocol->protocolName()) : nlohmann::ordered_json(nullptr);
  proto["initMode"] = p.initMode();
  proto["multiPoint"] = p.multiPoint();
  proto["baudRate"] = p.BaudRate();
  if (IsKLine(line) || line == Line::kOther) proto["keyBytes"] = {p.key1(), p.key2()};
  if (line == Line::kDiagOnCan) proto["canIds"] = {{"send", CanIdJson(p.CanXId())}, {"receive", CanIdJson(p.CanRId())}};
  std::vector<std::pair<std::string, std::int32_t>> timings = Timings(p);
  if (!timings.empty()) {
    nlohmann::ordered_json t = nlohmann::ordered_json::object();
    for (const auto& [name, value] : timings) t[TimingKey(name)] = value;
    proto["timings"] = t;
  }
  j["protocol"] = proto;
  j["failureType"] = {{"id", p.TypePanneId()}, {"name", p.TypePanne()}};
  const Counts c = CountContents(target);
  j["counts"] = {{"data", c.data},           {"requests", c.requests},     {"devices", c.devices},
                 {"tests", c.tests},         {"categories", c.categories}, {"screens", c.screens},
                 {"displays", c.displays},   {"buttons", c.buttons},       {"autoIdentifications", c.autoIdents}};
  return j;
}

}  // namespace

void AddInfoCommand(CLI::App& app, int& status) {
  struct Options {
    std::string file;
    bool json = false;
    FacadeOptions facade;
  };
  auto options = std::make_shared<Options>();
  CLI::App* cmd = app.add_subcommand("info", "Summarise an ECU document: protocol, failure type and what it holds");
  cmd->add_option("FILE", options->file, "Document to load: a file path, file:// or http(s):// URL")->required();
  cmd->add_flag("--json", options->json, "Print JSON instead of text");
  AddLoadOptions(*cmd, options->facade);
  cmd->callback([options, &status] {
    status = RunInfo(options->file, options->json, options->facade, std::cout, std::cerr);
  });
}

int RunInfo(const std::string& file, bool json, const FacadeOptions& facade, std::ostream& out, std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib = LoadDocument(facade, file, err);
  if (!lib) return 1;
  const TargetItem& target = *lib->ActiveTarget();
  if (json) out << ToJson(*lib, target, file).dump(2) << '\n';
  else PrintText(*lib, target, out);
  return 0;
}

}  // namespace tessaly::cli
