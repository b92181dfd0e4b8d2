#include "cli/where_used_command.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <iostream>

namespace tessaly::cli {
namespace {

const char* const kSource = "tessaly.where-used";

// Where a display sits: its category, its screen and its 1-based place among the screen's
// displays and inputs.
struct DisplayPlace {
  std::string category;
  std::string screen;
  std::int32_t number = 0;
};

DisplayPlace PlaceOf(const DisplayItem& display) {
  DisplayPlace place;
  std::shared_ptr<ScreenItem> screen = display.parent();
  if (!screen) return place;
  place.screen = screen->screenName();
  if (std::shared_ptr<CategoryItem> category = screen->parent()) place.category = category->categoryName();
  if (const std::shared_ptr<DisplayItems>& displays = screen->DisplayItems()) {
    std::int32_t number = 0;
    for (const auto& held : *displays) {
      ++number;
      if (held.get() == &display) {
        place.number = number;
        break;
      }
    }
  }
  return place;
}

// Whether the user edits the value: a request display marked so, or a data display whose data
// is a parameter of its request.
bool IsInput(const DisplayItem& display) {
  if (const std::shared_ptr<DisplayExtraItem>& named = display.DisplayExtraItem()) return named->param();
  if (const std::shared_ptr<DisplayDataItem>& shown = display.DisplayDataItem()) {
    std::shared_ptr<DataPositionItem> position = shown->DataPosition();
    return position && position->param();
  }
  return false;
}

// "Category/Screen: display 3" or "...: input 3".
std::string DisplayText(const DisplayItem& display) {
  const DisplayPlace place = PlaceOf(display);
  return place.category + "/" + place.screen + ": " + (IsInput(display) ? "input " : "display ") +
         std::to_string(place.number);
}

nlohmann::ordered_json DisplayJson(const DisplayItem& display) {
  const DisplayPlace place = PlaceOf(display);
  return {{"category", place.category}, {"screen", place.screen}, {"display", place.number},
          {"input", IsInput(display)}};
}

struct StepPlace {
  std::string category;
  std::string screen;
  std::string button;
  bool initButton = false;
};

StepPlace PlaceOf(const ScenarioItem& step) {
  StepPlace place;
  std::shared_ptr<ButtonItem> button = step.parent();
  if (!button) return place;
  place.button = button->caption();
  place.initButton = button->InitButton();
  std::shared_ptr<ScreenItem> screen = button->parent();
  if (!screen) return place;
  place.screen = screen->screenName();
  if (std::shared_ptr<CategoryItem> category = screen->parent()) place.category = category->categoryName();
  return place;
}

std::string FlagLists(const TestFlagUse& use) {
  if (use.stored && use.present) return "stored and present flag";
  return use.stored ? "stored flag" : "present flag";
}

void PrintData(const std::string& name, const DataUsers& users, std::ostream& out) {
  out << "Data " << name << '\n';
  out << "Data positions: " << users.positions->Count() << '\n';
  for (const auto& position : *users.positions) {
    std::shared_ptr<RequestItem> request = position->parent();
    out << "  " << (request ? request->requestName() : std::string()) << ": byte " << position->StartOctet()
        << ", bit " << position->StartBit() << ", " << (position->param() ? "parameter" : "reply")
        << (position->reference() ? ", reference" : "") << '\n';
  }
  out << "Displays: " << users.displays->Count() << '\n';
  for (const auto& display : *users.displays)
    out << "  " << DisplayText(*display) << " through " << display->DisplayDataItem()->requestName() << '\n';
  out << "Device data: " << users.links.size() << '\n';
  for (const auto& link : users.links) {
    std::shared_ptr<OrganeItem> device = link->parent();
    out << "  " << (device ? device->organeName() : std::string()) << (link->FlagPanne() ? ", failure flag" : "")
        << '\n';
  }
  out << "Test flags: " << users.flags.size() << '\n';
  for (const TestFlagUse& use : users.flags)
    out << "  " << use.device->organeName() << ": test " << use.test->testType() << ", " << FlagLists(use) << '\n';
}

nlohmann::ordered_json DataJson(const std::string& file, const std::string& name, const DataUsers& users) {
  nlohmann::ordered_json j;
  j["file"] = file;
  j["data"] = name;
  j["dataPositions"] = nlohmann::ordered_json::array();
  for (const auto& position : *users.positions) {
    std::shared_ptr<RequestItem> request = position->parent();
    j["dataPositions"].push_back({{"request", request ? request->requestName() : std::string()},
                                  {"firstByte", position->StartOctet()},
                                  {"bitOffset", position->StartBit()},
                                  {"param", position->param()},
                                  {"reference", position->reference()}});
  }
  j["displays"] = nlohmann::ordered_json::array();
  for (const auto& display : *users.displays) {
    nlohmann::ordered_json entry = DisplayJson(*display);
    entry["request"] = display->DisplayDataItem()->requestName();
    j["displays"].push_back(entry);
  }
  j["deviceData"] = nlohmann::ordered_json::array();
  for (const auto& link : users.links) {
    std::shared_ptr<OrganeItem> device = link->parent();
    j["deviceData"].push_back(
        {{"device", device ? device->organeName() : std::string()}, {"failureFlag", link->FlagPanne()}});
  }
  j["testFlags"] = nlohmann::ordered_json::array();
  for (const TestFlagUse& use : users.flags)
    j["testFlags"].push_back({{"device", use.device->organeName()},
                              {"test", use.test->testType()},
                              {"stored", use.stored},
                              {"present", use.present}});
  return j;
}

void PrintRequest(const std::string& name, const RequestUsers& users, std::ostream& out) {
  out << "Request " << name << '\n';
  out << "Data displays: " << users.dataDisplays->Count() << '\n';
  for (const auto& display : *users.dataDisplays)
    out << "  " << DisplayText(*display) << " of " << display->DisplayDataItem()->dataName() << '\n';
  out << "Request displays: " << users.requestDisplays->Count() << '\n';
  for (const auto& display : *users.requestDisplays) out << "  " << DisplayText(*display) << '\n';
  out << "Scenario steps: " << users.steps->Count() << '\n';
  for (const auto& step : *users.steps) {
    const StepPlace place = PlaceOf(*step);
    out << "  " << place.category << "/" << place.screen << ": "
        << (place.initButton ? std::string("init button") : "button \"" + place.button + "\"") << ", step "
        << step->Index() << '\n';
  }
  out << "Freeze-frame devices: " << users.devices->Count() << '\n';
  for (const auto& device : *users.devices) out << "  " << device->organeName() << '\n';
}

nlohmann::ordered_json RequestJson(const std::string& file, const std::string& name, const RequestUsers& users) {
  nlohmann::ordered_json j;
  j["file"] = file;
  j["request"] = name;
  j["dataDisplays"] = nlohmann::ordered_json::array();
  for (const auto& display : *users.dataDisplays) {
    nlohmann::ordered_json entry = DisplayJson(*display);
    entry["data"] = display->DisplayDataItem()->dataName();
    j["dataDisplays"].push_back(entry);
  }
  j["requestDisplays"] = nlohmann::ordered_json::array();
  for (const auto& display : *users.requestDisplays) j["requestDisplays"].push_back(DisplayJson(*display));
  j["scenarioSteps"] = nlohmann::ordered_json::array();
  for (const auto& step : *users.steps) {
    const StepPlace place = PlaceOf(*step);
    j["scenarioSteps"].push_back({{"category", place.category},
                                  {"screen", place.screen},
                                  {"button", place.button},
                                  {"initButton", place.initButton},
                                  {"step", step->Index()},
                                  {"delay", step->delay()}});
  }
  j["freezeFrameDevices"] = nlohmann::ordered_json::array();
  for (const auto& device : *users.devices) j["freezeFrameDevices"].push_back(device->organeName());
  return j;
}

}  // namespace

DataUsers FindDataUsers(const TargetItem& target, const std::string& dataName) {
  DataUsers users;
  users.positions = target.GetRequestsUsingData(dataName);
  users.displays = target.GetScreensUsingData(dataName);
  // The target answers for the first device only; every device is asked the same question.
  if (const std::shared_ptr<OrganeItems>& devices = target.Organes()) {
    const std::string flagKey = "k" + dataName;
    for (const auto& device : *devices) {
      if (std::shared_ptr<DeviceDataItem> link = device->GetDeviceDataUsingData(dataName))
        users.links.push_back(link);
      // A device without tests is not given an empty list just by being looked at.
      if (!device->HasTests()) continue;
      for (const auto& test : *device->Tests()) {
        TestFlagUse use{device, test, test->StoredFlag().ContainsKey(flagKey), test->PresentFlag().ContainsKey(flagKey)};
        if (use.stored || use.present) users.flags.push_back(use);
      }
    }
  }
  return users;
}

RequestUsers FindRequestUsers(const TargetItem& target, const std::string& requestName) {
  RequestUsers users;
  users.dataDisplays = target.GetScreensDataUsingRequest(requestName);
  users.requestDisplays = target.GetScreensExtraDataUsingRequest(requestName);
  users.steps = target.GetScreensScenarioUsingRequest(requestName);
  users.devices = target.GetDeviceUsingRequest(requestName);
  return users;
}

void AddWhereUsedCommand(CLI::App& app, int& status) {
  auto request = std::make_shared<WhereUsedRequest>();
  CLI::App* cmd = app.add_subcommand("where-used", "List every object of an ECU document that uses a data item or a request");
  cmd->add_option("FILE", request->file, "Document to load: a file path, file:// or http(s):// URL")->required();
  CLI::Option_group* what = cmd->add_option_group("what", "The item whose users are listed (exactly one)");
  what->add_option("--data", request->data, "Name of the data item");
  what->add_option("--request", request->request, "Name of the request");
  what->require_option(1);
  cmd->add_flag("--json", request->json, "Print JSON instead of text");
  AddLoadOptions(*cmd, request->facade);
  cmd->callback([request, &status] { status = RunWhereUsed(*request, std::cout, std::cerr); });
}

int RunWhereUsed(const WhereUsedRequest& request, std::ostream& out, std::ostream& err) {
  std::unique_ptr<TessalyLibXml> lib = LoadDocument(request.facade, request.file, err);
  if (!lib) return 1;
  const TargetItem& target = *lib->ActiveTarget();
  // Names are looked up as the collections look them up (letter case ignored); the users are
  // then those of the name as the document spells it.
  if (request.data) {
    std::shared_ptr<DataItem> data = target.datas() ? target.datas()->ItemName(*request.data) : nullptr;
    if (!data) {
      PrintError(err, Error(errc::kModel, kSource, "no data named '" + *request.data + "'"));
      return 1;
    }
    const DataUsers users = FindDataUsers(target, data->dataName());
    if (request.json) out << DataJson(request.file, data->dataName(), users).dump(2) << '\n';
    else PrintData(data->dataName(), users, out);
    return 0;
  }
  const std::string name = request.request.value_or(std::string());
  std::shared_ptr<RequestItem> item = target.Requests() ? target.Requests()->ItemName(name) : nullptr;
  if (!item) {
    PrintError(err, Error(errc::kModel, kSource, "no request named '" + name + "'"));
    return 1;
  }
  const RequestUsers users = FindRequestUsers(target, item->requestName());
  if (request.json) out << RequestJson(request.file, item->requestName(), users).dump(2) << '\n';
  else PrintRequest(item->requestName(), users, out);
  return 0;
}

}  // namespace tessaly::cli
