// The target's where-used queries and referential edits. Objects refer to one another by name
// (a placement names its data, a display its request and data, a scenario step its request, a
// device its freeze-frame request and its data), so finding the users of a name means walking
// the requests, the devices or the screens. Every query and edit below walks each structure a
// fixed number of times, collecting what it needs first and changing things afterwards, so an
// edit costs the same number of walks whether a name has one user or thousands.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/data_position_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/devices/device_data_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/devices/test_items.hpp"
#include "tessaly/screens/button_items.hpp"
#include "tessaly/screens/category_items.hpp"
#include "tessaly/screens/display_items.hpp"
#include "tessaly/screens/display_references.hpp"
#include "tessaly/screens/scenario_items.hpp"
#include "tessaly/screens/screen_items.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

// A placement together with the request that holds it.
struct Placement {
  std::shared_ptr<DataPositionItem> position;
  std::shared_ptr<RequestItem> request;
};

// A display together with the screen whose list holds it.
struct HeldDisplay {
  std::shared_ptr<ScreenItem> screen;
  std::shared_ptr<DisplayItem> display;
};

// A scenario step together with the button whose scenario holds it.
struct HeldStep {
  std::shared_ptr<ButtonItem> button;
  std::shared_ptr<ScenarioItem> step;
};

// Passed to WalkScreens for a level that the caller does not visit.
struct Skip {};

// Visits, category by category and screen by screen in collection order, every display of the
// screen (visitDisplay(screen, display)) and then every scenario step of every button of the
// screen (visitStep(button, step)). Missing lists are skipped, and a button without a scenario
// is not given one.
template <class VisitDisplay, class VisitStep>
void WalkScreens(const std::shared_ptr<CategoryItems>& categories, VisitDisplay&& visitDisplay,
                 VisitStep&& visitStep) {
  constexpr bool kDisplays = !std::is_same_v<std::decay_t<VisitDisplay>, Skip>;
  constexpr bool kSteps = !std::is_same_v<std::decay_t<VisitStep>, Skip>;
  if (!categories) return;
  for (const auto& category : *categories) {
    const std::shared_ptr<ScreenItems>& screens = category->Screens();
    if (!screens) continue;
    for (const auto& screen : *screens) {
      if constexpr (kDisplays) {
        if (const std::shared_ptr<DisplayItems>& displays = screen->DisplayItems())
          for (const auto& display : *displays) visitDisplay(screen, display);
      }
      if constexpr (kSteps) {
        if (const std::shared_ptr<ButtonItems>& buttons = screen->ButtonItems()) {
          for (const auto& button : *buttons) {
            if (!button->HasScenario()) continue;
            for (const auto& step : *button->ScenarioItems()) visitStep(button, step);
          }
        }
      }
    }
  }
}

// The placement of `dataName` (exact) in each request that places it, in request order.
std::vector<Placement> PlacementsOf(const std::shared_ptr<RequestItems>& requests, std::string_view dataName) {
  std::vector<Placement> found;
  if (!requests) return found;
  for (const auto& request : *requests) {
    if (!request->DataPositions()) continue;
    if (std::shared_ptr<DataPositionItem> position = request->DataPositions()->ItemName(dataName))
      found.push_back({position, request});
  }
  return found;
}

// The data references of the displays that show `dataName` (exact), in walk order.
std::vector<std::shared_ptr<DisplayDataItem>> DataReferencesTo(const std::shared_ptr<CategoryItems>& categories,
                                                               std::string_view dataName) {
  std::vector<std::shared_ptr<DisplayDataItem>> found;
  WalkScreens(
      categories,
      [&](const std::shared_ptr<ScreenItem>&, const std::shared_ptr<DisplayItem>& display) {
        const std::shared_ptr<DisplayDataItem>& shown = display->DisplayDataItem();
        if (shown && shown->dataName() == dataName) found.push_back(shown);
      },
      Skip{});
  return found;
}

// A (request name, data name) pair, viewed in the names of the objects that hold it, and its
// hash, for the set of pairs whose displays go with their placements. The views stay valid
// while the set is used: nothing is renamed or deleted until the walks are over.
struct NamePair {
  std::string_view requestName;
  std::string_view dataName;
  bool operator==(const NamePair&) const = default;
};

struct NamePairHash {
  std::size_t operator()(const NamePair& pair) const noexcept {
    const std::size_t request = std::hash<std::string_view>{}(pair.requestName);
    const std::size_t data = std::hash<std::string_view>{}(pair.dataName);
    return request ^ (data + 0x9e3779b97f4a7c15ULL + (request << 6) + (request >> 2));
  }
};

// True when the test would refuse to move its flag of `oldName` to `newName` (another flag of
// one of its lists is already held under the new name). Checked before an edit starts changing
// things, so that such a refusal leaves the whole document as it was.
bool FlagRenameRefused(const TestItem& test, std::string_view oldName, std::string_view newName) {
  const std::string oldKey = "k" + std::string(oldName);
  const std::string newKey = "k" + std::string(newName);
  for (const FlagList* list : {&test.StoredFlag(), &test.PresentFlag()}) {
    std::int32_t from = list->PositionOfKey(oldKey);
    if (from == 0) continue;
    std::int32_t to = list->PositionOfKey(newKey);
    if (to != 0 && to != from) return true;
  }
  return false;
}

// What the deletion of placements takes with it, beyond the placements themselves.
struct Deletion {
  // The placements to delete, each with the request that holds it.
  std::vector<Placement> placements;
  // When a whole request is deleted: its name, whose devices, request displays and scenario
  // steps are dealt with in the same walks.
  const std::string* requestName = nullptr;
};

// Deletes placements the way DeleteDataPosition deletes one, for all of them in one walk of the
// devices and one of the screens: for each reference placement every device forgets the data
// (its link, else the flag of the test that uses it); every display showing a placement's data
// through that placement's request is deleted; then the placements are deleted. Devices,
// displays and placements are distinct objects, so doing each kind for all placements at once
// ends in the same state as doing all kinds placement by placement. With a request name, the
// devices naming that request lose it, and its request displays and scenario steps are deleted.
void DeletePlacements(TargetItem& target, const Deletion& deletion) {
  // A device forgets a data once per reference placement of it. What it forgets depends only on
  // the data name, so the placements are counted by name (the first one standing for the rest).
  // Forgetting one name never brings back anything of another (links compare names exactly;
  // flags of names equal but for letter case share a key, and then only the number of removals
  // counts), so taking the names one after the other ends as the placement order would.
  std::vector<std::pair<std::shared_ptr<DataPositionItem>, std::size_t>> references;
  std::unordered_map<std::string, std::size_t> referenceIndex;
  std::unordered_set<NamePair, NamePairHash> shown;
  // The lengths of the names in `shown`, one bit each (the last bit for every long name): most
  // displays are told apart by the length of a name, held in the display's own object, without
  // reading the names' texts or hashing them.
  auto lengthBit = [](std::size_t length) { return std::uint64_t{1} << std::min<std::size_t>(length, 63); };
  std::uint64_t shownRequestLengths = 0;
  std::uint64_t shownDataLengths = 0;
  for (const Placement& placement : deletion.placements) {
    const std::string& dataName = placement.position->dataName();
    if (placement.position->reference()) {
      auto [it, added] = referenceIndex.emplace(dataName, references.size());
      if (added) references.emplace_back(placement.position, 0);
      ++references[it->second].second;
    }
    shown.insert({placement.request->requestName(), dataName});
    shownRequestLengths |= lengthBit(placement.request->requestName().size());
    shownDataLengths |= lengthBit(dataName.size());
  }
  const std::string* requestName = deletion.requestName;

  if (const std::shared_ptr<OrganeItems>& devices = target.Organes(); devices && (!references.empty() || requestName)) {
    for (const auto& device : *devices) {
      for (const auto& [position, count] : references) {
        const std::string& dataName = position->dataName();
        for (std::size_t i = 0; i < count; ++i) {
          // Once the device has neither a link nor a flag of the data, the remaining placements
          // of that name have nothing left to take.
          if (!device->GetDeviceDataUsingData(dataName) && !device->GetTestUsingData(dataName)) break;
          device->DeleteDataPosition(position);
        }
      }
      if (requestName && device->requestName() == *requestName) device->set_request(nullptr);
    }
  }

  std::vector<HeldDisplay> displays;
  std::vector<HeldStep> steps;
  auto visitDisplay = [&](const std::shared_ptr<ScreenItem>& screen, const std::shared_ptr<DisplayItem>& display) {
    const std::shared_ptr<DisplayDataItem>& shows = display->DisplayDataItem();
    const std::shared_ptr<DisplayExtraItem>& names = display->DisplayExtraItem();
    if ((shows && (shownDataLengths & lengthBit(shows->dataName().size())) != 0 &&
         (shownRequestLengths & lengthBit(shows->requestName().size())) != 0 &&
         shown.count({shows->requestName(), shows->dataName()}) != 0) ||
        (requestName && names && names->requestName() == *requestName))
      displays.push_back({screen, display});
  };
  if (requestName) {
    WalkScreens(target.Categories(), visitDisplay,
                [&](const std::shared_ptr<ButtonItem>& button, const std::shared_ptr<ScenarioItem>& step) {
                  if (step->requestName() == *requestName) steps.push_back({button, step});
                });
  } else {
    WalkScreens(target.Categories(), visitDisplay, Skip{});
  }

  for (const HeldDisplay& held : displays) held.screen->DisplayItems()->Delete(held.display);
  for (const Placement& placement : deletion.placements)
    if (const std::shared_ptr<DataPositionItems>& positions = placement.request->DataPositions())
      positions->Delete(placement.position);
  for (const HeldStep& held : steps) held.button->ScenarioItems()->Delete(held.step);
}

// Which reference placements datasRef and its two variants keep.
enum class RefKind { kAll, kRead, kWrite };

std::shared_ptr<DataPositionCollection> ReferencePlacements(const std::shared_ptr<RequestItems>& requests,
                                                            RefKind kind) {
  auto result = std::make_shared<DataPositionCollection>();
  if (!requests) return result;
  for (const auto& request : *requests) {
    if (!request->DataPositions()) continue;
    for (const auto& position : *request->DataPositions()) {
      if (!position->reference()) continue;
      if (kind == RefKind::kRead && position->param()) continue;
      if (kind == RefKind::kWrite && !position->param()) continue;
      // A later placement of a data name already listed is skipped.
      std::string key = position->dataName() + "k";
      if (!result->ContainsKey(key)) result->Append(position, key);
    }
  }
  return result;
}

}  // namespace

// --- Derived collections ---

std::shared_ptr<DataPositionCollection> TargetItem::datasRef() const {
  return ReferencePlacements(Requests_, RefKind::kAll);
}

std::shared_ptr<DataPositionCollection> TargetItem::datasRefRead() const {
  return ReferencePlacements(Requests_, RefKind::kRead);
}

std::shared_ptr<DataPositionCollection> TargetItem::datasRefWrite() const {
  return ReferencePlacements(Requests_, RefKind::kWrite);
}

// --- Queries ---

std::shared_ptr<DataPositionCollection> TargetItem::GetRequestsUsingData(std::string_view dataName) const {
  auto result = std::make_shared<DataPositionCollection>();
  for (const Placement& placement : PlacementsOf(Requests_, dataName)) result->Append(placement.position);
  return result;
}

std::shared_ptr<DisplayCollection> TargetItem::GetScreensUsingData(std::string_view dataName) const {
  auto result = std::make_shared<DisplayCollection>();
  WalkScreens(
      Categories_,
      [&](const std::shared_ptr<ScreenItem>&, const std::shared_ptr<DisplayItem>& display) {
        const std::shared_ptr<tessaly::DisplayDataItem>& shown = display->DisplayDataItem();
        if (shown && shown->dataName() == dataName) result->Append(display);
      },
      Skip{});
  return result;
}

std::shared_ptr<DisplayCollection> TargetItem::GetScreensDataUsingRequest(std::string_view requestName) const {
  auto result = std::make_shared<DisplayCollection>();
  WalkScreens(
      Categories_,
      [&](const std::shared_ptr<ScreenItem>&, const std::shared_ptr<DisplayItem>& display) {
        const std::shared_ptr<tessaly::DisplayDataItem>& shown = display->DisplayDataItem();
        if (shown && shown->requestName() == requestName) result->Append(display);
      },
      Skip{});
  return result;
}

std::shared_ptr<DisplayCollection> TargetItem::GetScreensExtraDataUsingRequest(std::string_view requestName) const {
  auto result = std::make_shared<DisplayCollection>();
  WalkScreens(
      Categories_,
      [&](const std::shared_ptr<ScreenItem>&, const std::shared_ptr<DisplayItem>& display) {
        const std::shared_ptr<tessaly::DisplayExtraItem>& named = display->DisplayExtraItem();
        if (named && named->requestName() == requestName) result->Append(display);
      },
      Skip{});
  return result;
}

std::shared_ptr<ScenarioCollection> TargetItem::GetScreensScenarioUsingRequest(std::string_view requestName) const {
  auto result = std::make_shared<ScenarioCollection>();
  WalkScreens(Categories_, Skip{},
              [&](const std::shared_ptr<ButtonItem>&, const std::shared_ptr<ScenarioItem>& step) {
                if (step->requestName() == requestName) result->Append(step);
              });
  return result;
}

std::shared_ptr<OrganeCollection> TargetItem::GetDeviceUsingRequest(std::string_view requestName) const {
  auto result = std::make_shared<OrganeCollection>();
  if (!Organes_) return result;
  for (const auto& device : *Organes_)
    if (device->requestName() == requestName) result->Append(device);
  return result;
}

std::shared_ptr<DeviceDataItem> TargetItem::GetDeviceDataUsingData(std::string_view dataName) const {
  if (!Organes_) return nullptr;
  for (const auto& device : *Organes_)
    if (std::shared_ptr<DeviceDataItem> link = device->GetDeviceDataUsingData(dataName)) return link;
  return nullptr;
}

std::shared_ptr<OrganeItem> TargetItem::GetDeviceUsingData(std::string_view dataName) const {
  if (!Organes_) return nullptr;
  // The device's own look-up of its tests, which does not give a device without tests an
  // empty list (that list would then be written).
  for (const auto& device : *Organes_)
    if (device->GetDeviceDataUsingData(dataName) || device->GetTestUsingData(dataName)) return device;
  return nullptr;
}

std::shared_ptr<DataPositionItem> TargetItem::GetDataPositionFromRefData(std::string_view dataName) const {
  if (!Requests_) return nullptr;
  for (const auto& request : *Requests_) {
    if (!request->DataPositions()) continue;
    for (const auto& position : *request->DataPositions())
      if (position->reference() && position->dataName() == dataName) return position;
  }
  return nullptr;
}

// --- Edits ---

void TargetItem::DeleteDataByName(std::string_view dataName) {
  if (!datas_) return;
  if (std::shared_ptr<DataItem> data = datas_->ItemName(dataName)) DeleteData(data);
}

void TargetItem::DeleteData(const std::shared_ptr<DataItem>& data) {
  if (!data) RaisePlatform(errc::kObjectNotSet);
  Deletion deletion;
  deletion.placements = PlacementsOf(Requests_, data->dataName());
  if (!deletion.placements.empty()) DeletePlacements(*this, deletion);
  if (datas_) datas_->Delete(data);
}

void TargetItem::DeleteRequest(const std::shared_ptr<RequestItem>& request) {
  if (!request) RaisePlatform(errc::kObjectNotSet);
  const std::string name = request->requestName();
  Deletion deletion;
  deletion.requestName = &name;
  // The placements are taken as held by this request, whatever their own parent says.
  if (const std::shared_ptr<DataPositionItems>& positions = request->DataPositions())
    for (const auto& position : *positions) deletion.placements.push_back({position, request});
  DeletePlacements(*this, deletion);
  if (Requests_) Requests_->Delete(request);
}

void TargetItem::DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition) {
  if (!dataPosition) RaisePlatform(errc::kObjectNotSet);
  std::shared_ptr<RequestItem> request = dataPosition->parent();
  // Without its request there is no way to tell which displays go with the placement, nor to
  // delete it: refused before anything changes.
  if (!request) RaisePlatform(errc::kObjectNotSet);
  Deletion deletion;
  deletion.placements.push_back({dataPosition, request});
  DeletePlacements(*this, deletion);
}

void TargetItem::DeleteDevice(const std::shared_ptr<OrganeItem>& device) {
  if (Organes_) Organes_->Delete(device);
}

void TargetItem::RenameData(const std::shared_ptr<DataItem>& data, const std::string& newName) {
  if (!data) RaisePlatform(errc::kObjectNotSet);
  if (data->dataName() == newName) return;
  if (!datas_) RaisePlatform(errc::kObjectNotSet);
  const std::string oldName = data->dataName();

  // The users are found while the old name is still in place.
  std::vector<std::shared_ptr<DisplayDataItem>> displays = DataReferencesTo(Categories_, oldName);
  std::shared_ptr<OrganeItem> device = GetDeviceUsingData(oldName);
  std::vector<Placement> placements = PlacementsOf(Requests_, oldName);

  if (device) {
    std::shared_ptr<TestItem> test = device->GetTestUsingData(oldName);
    if (test && FlagRenameRefused(*test, oldName, newName)) {
      // The collection's duplicate refusal, when there is one, is the one reported; either way
      // nothing has changed yet.
      std::shared_ptr<DataItem> holder = datas_->ItemName(newName);
      if (holder && holder != data) datas_->rename(data, newName);
      RaisePlatform(errc::kDuplicateKey);
    }
  }

  // A refusal ("Duplicate data (" ...) leaves every user as it was.
  datas_->rename(data, newName);
  if (device) device->RenameData(oldName, newName);
  for (const Placement& placement : placements) placement.position->set_dataName(newName);
  for (const auto& shown : displays) shown->set_dataName(newName);
}

void TargetItem::RenameRequest(const std::shared_ptr<RequestItem>& request, const std::string& newName) {
  if (!request) RaisePlatform(errc::kObjectNotSet);
  if (request->requestName() == newName) return;
  if (!Requests_) RaisePlatform(errc::kObjectNotSet);
  const std::string oldName = request->requestName();

  std::vector<std::shared_ptr<tessaly::DisplayDataItem>> dataDisplays;
  std::vector<std::shared_ptr<tessaly::DisplayExtraItem>> requestDisplays;
  std::vector<std::shared_ptr<ScenarioItem>> steps;
  WalkScreens(
      Categories_,
      [&](const std::shared_ptr<ScreenItem>&, const std::shared_ptr<DisplayItem>& display) {
        const std::shared_ptr<tessaly::DisplayDataItem>& shown = display->DisplayDataItem();
        if (shown && shown->requestName() == oldName) dataDisplays.push_back(shown);
        const std::shared_ptr<tessaly::DisplayExtraItem>& named = display->DisplayExtraItem();
        if (named && named->requestName() == oldName) requestDisplays.push_back(named);
      },
      [&](const std::shared_ptr<ButtonItem>&, const std::shared_ptr<ScenarioItem>& step) {
        if (step->requestName() == oldName) steps.push_back(step);
      });

  // A refusal ("Duplicate request (" ...) leaves every user as it was. Devices are not visited:
  // a device keeps the freeze-frame request name it had.
  Requests_->rename(request, newName);
  for (const auto& shown : dataDisplays) shown->set_requestName(newName);
  for (const auto& named : requestDisplays) named->set_requestName(newName);
  for (const auto& step : steps) step->set_requestName(newName);
}

void TargetItem::RenameDevice(const std::shared_ptr<OrganeItem>& device, const std::string& newName) {
  if (!device) RaisePlatform(errc::kObjectNotSet);
  if (device->organeName() == newName) return;
  if (!Organes_) RaisePlatform(errc::kObjectNotSet);
  Organes_->rename(device, newName);
}

void TargetItem::ReplaceDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition,
                                     const std::shared_ptr<DataItem>& data) {
  if (!dataPosition || !data) RaisePlatform(errc::kObjectNotSet);
  if (dataPosition->dataName() == data->dataName()) return;
  const std::string oldName = dataPosition->dataName();
  const std::string newName = data->dataName();

  // Every display of the old data follows, whatever its request.
  std::vector<std::shared_ptr<DisplayDataItem>> displays = DataReferencesTo(Categories_, oldName);
  std::shared_ptr<DeviceDataItem> link;
  std::shared_ptr<TestItem> test;
  if (dataPosition->reference()) {
    if (std::shared_ptr<OrganeItem> device = GetDeviceUsingData(oldName)) {
      link = device->GetDeviceDataUsingData(oldName);
      if (!link) test = device->GetTestUsingData(oldName);
    }
  }
  // A flag that cannot move is refused before anything changes.
  if (test && FlagRenameRefused(*test, oldName, newName)) RaisePlatform(errc::kDuplicateKey);

  dataPosition->set_dataName(newName);
  if (link) {
    link->set_dataName(newName);
  } else if (test) {
    test->RenameFlag(oldName, newName);
  }
  for (const auto& shown : displays) shown->set_dataName(newName);
}

}  // namespace tessaly
