// The page header: who the ECU is, how the tool talks to it, and how much the document holds.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "preview/format.hpp"
#include "preview/page.hpp"
#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

using Row = std::pair<std::string, std::string>;

struct Counts {
  std::int64_t data = 0, listEntries = 0, requests = 0, parameters = 0, replyData = 0, devices = 0,
               deviceData = 0, tests = 0, categories = 0, screens = 0, labels = 0, displays = 0, inputs = 0,
               buttons = 0, steps = 0, autoIdents = 0;
};

Counts CountEverything(const Page& page) {
  const TargetItem& target = page.target();
  Counts n;
  if (const auto& datas = target.datas()) {
    n.data = datas->Count();
    for (const auto& data : *datas)
      if (data->DataListes()) n.listEntries += data->DataListes()->Count();
  }
  if (const auto& requests = target.Requests()) {
    n.requests = requests->Count();
    for (const auto& request : *requests)
      if (request->DataPositions())
        for (const auto& position : *request->DataPositions()) ++(position->param() ? n.parameters : n.replyData);
  }
  if (const auto& devices = target.Organes()) {
    n.devices = devices->Count();
    for (const auto& device : *devices) {
      if (device->DeviceDatas()) n.deviceData += device->DeviceDatas()->Count();
      if (device->HasTests()) n.tests += device->Tests()->Count();
    }
  }
  if (const auto& categories = target.Categories()) {
    n.categories = categories->Count();
    for (const auto& category : *categories) {
      if (!category->Screens()) continue;
      for (const auto& screen : *category->Screens()) {
        ++n.screens;
        if (screen->LabelItems()) n.labels += screen->LabelItems()->Count();
        if (screen->DisplayItems())
          for (const auto& display : *screen->DisplayItems()) ++(ViewOf(page, *display).input ? n.inputs : n.displays);
        if (screen->ButtonItems())
          for (const auto& button : *screen->ButtonItems())
            if (!button->InitButton()) {
              ++n.buttons;
              if (button->HasScenario()) n.steps += button->ScenarioItems()->Count();
            }
        if (screen->ButtonInit() && screen->ButtonInit()->HasScenario())
          n.steps += screen->ButtonInit()->ScenarioItems()->Count();
      }
    }
  }
  if (target.AutoIdents()) n.autoIdents = target.AutoIdents()->Count();
  return n;
}

std::string ProtocolName(const Page& page, const TargetParamItem& params) {
  std::shared_ptr<ProtocolItem> byMode;
  if (const auto& protocols = page.lib().protocols()) {
    for (const auto& protocol : *protocols) {
      if (protocol->initMode() != params.initMode()) continue;
      if (protocol->multiPoint() == params.multiPoint()) return protocol->protocolName();
      if (!byMode) byMode = protocol;
    }
  }
  if (byMode) return byMode->protocolName() + (params.multiPoint() ? " (multi-point)" : " (mono-point)");
  return "initialisation mode " + IntText(params.initMode());
}

// The communication rows that the ECU's protocol uses, as its document keeps them.
std::vector<Row> ProtocolRows(const Page& page, const TargetParamItem& params) {
  const std::int32_t mode = params.initMode();
  const bool kLine = mode == init_mode::kIso8 || mode == init_mode::kKwpSlowInit || mode == init_mode::kKwpFastInit;
  const bool can = mode == init_mode::kDiagOnCan || mode == init_mode::kCanMessaging;
  std::vector<Row> rows;
  rows.emplace_back("Protocol", ProtocolName(page, params) + " \xE2\x80\x93 init mode " + IntText(mode) +
                                    (params.multiPoint() ? ", multi-point" : ", mono-point"));
  rows.emplace_back("Baud rate", IntText(params.BaudRate()) + " bit/s");
  if (can) {
    if (mode == init_mode::kDiagOnCan) {
      std::int32_t send = params.CanXId();
      std::int32_t receive = params.CanRId();
      // The written document takes the identifiers of the ECU's function, as the page does.
      if (const auto& functions = page.lib().functions())
        if (auto function = functions->ItemAddress(page.target().Address())) {
          send = function->CanXId();
          receive = function->CanRId();
        }
      rows.emplace_back("CAN identifiers", "send " + CanIdText(send) + ", receive " + CanIdText(receive));
    }
    return rows;
  }
  rows.emplace_back("Key bytes", "KW1 " + HexText(static_cast<std::uint32_t>(params.key1()), 2) + ", KW2 " +
                                   HexText(static_cast<std::uint32_t>(params.key2()), 2));
  // Fast init keeps no first-request delay or KW2 timing; the slow init and other protocols do.
  if (mode != init_mode::kKwpFastInit) {
    rows.emplace_back("First request delay", IntText(params.FirstRequestDelay()));
    rows.emplace_back("KW2 timeout", IntText(params.KW2Timeout()));
  }
  if (!kLine || mode == init_mode::kKwpSlowInit) rows.emplace_back("KW2 delay", IntText(params.KW2Delay()));
  rows.emplace_back("Inter-byte delay", IntText(params.InterByteDelay()));
  rows.emplace_back("Reply to request delay", IntText(params.ReplyToRequestDelay()));
  rows.emplace_back("Request to reply timeout", IntText(params.RequestToReplyTimeout()));
  rows.emplace_back("Tester present period", IntText(params.TesterPresentDelay()));
  rows.emplace_back("Delay after an error", IntText(params.ErrorDelay()));
  return rows;
}

void WriteRows(Page& page, const std::vector<Row>& rows) {
  for (const auto& [name, value] : rows) {
    page << "<tr><th>";
    page.Text(name) << "</th><td>";
    page.Text(value) << "</td></tr>";
  }
}

}  // namespace

void WriteHeader(Page& page) {
  TargetItem& target = page.target();
  std::string functionName = "(not in the functions table)";
  if (const auto& functions = page.lib().functions())
    if (auto function = functions->ItemAddress(target.Address())) functionName = function->functionName();

  page << "<header class=\"ecu\" id=\"ecu\"><h1>";
  page.Text(target.name().empty() ? "(ECU without a name)" : target.name()) << "</h1><div class=\"sub\">";
  page.Text(functionName + " \xE2\x80\x93 address " + DecimalAndHex(target.Address()));
  if (!page.options().source.empty()) page.Text(" \xE2\x80\x93 ").Text(page.options().source);
  page << "</div></header>\n";

  std::vector<Row> rows;
  rows.emplace_back("ECU", target.name());
  rows.emplace_back("Function", functionName);
  rows.emplace_back("Address", DecimalAndHex(target.Address()));
  rows.emplace_back("Language", target.Langue() + (target.reference() ? " (reference)" : ""));
  std::vector<Row> protocol;
  if (const auto& params = target.Parametres()) {
    protocol = ProtocolRows(page, *params);
    rows.emplace_back("Failure type", params->TypePanne() + " (" + IntText(params->TypePanneId()) + ")");
    rows.emplace_back("Boot", params->Reprogrammable().empty() ? "none (not reprogrammable)" : params->Reprogrammable());
    rows.emplace_back("Release date", params->DateOfficialisation().empty() ? "(none)" : params->DateOfficialisation());
    rows.emplace_back("Byte order", params->LittleEndian() ? "little-endian" : "big-endian");
    if (!params->Comment().empty()) rows.emplace_back("Comment", params->Comment());
  }
  if (!target.Email().empty()) rows.emplace_back("E-mail", target.Email());
  if (!target.Href().empty()) rows.emplace_back("Link", target.Href());
  if (!target.Upload().empty()) rows.emplace_back("Upload", target.Upload());
  if (!target.Group().empty()) rows.emplace_back("Group", target.Group());
  if (const auto& projects = target.Projects(); projects && projects->Count() != 0) {
    std::string list;
    for (const auto& project : *projects) list += (list.empty() ? "" : ", ") + *project;
    rows.emplace_back("Projects", list);
  }

  const Counts n = CountEverything(page);
  page << "<section class=\"summary\"><div class=\"screen-row\"><div><table class=\"props\">";
  WriteRows(page, rows);
  page << "</table></div><div><table class=\"props\">";
  WriteRows(page, protocol);
  page << "</table></div><div><table class=\"counts\"><tr><th colspan=\"2\">The document holds</th></tr>";
  const std::vector<std::pair<const char*, std::int64_t>> counts = {
      {"data items", n.data},          {"value-list entries", n.listEntries}, {"requests", n.requests},
      {"parameters placed", n.parameters}, {"reply data placed", n.replyData}, {"devices", n.devices},
      {"device data links", n.deviceData}, {"tests", n.tests},            {"categories", n.categories},
      {"screens", n.screens},          {"labels", n.labels},                {"displays", n.displays},
      {"input fields", n.inputs},      {"buttons", n.buttons},              {"scenario steps", n.steps},
      {"auto-identifications", n.autoIdents}};
  for (const auto& [name, value] : counts)
    page << "<tr><td>" << name << "</td><td class=\"n\">" << IntText(value) << "</td></tr>";
  page << "</table></div></div></section>\n";
}

}  // namespace tessaly::preview
