#include "ecu_generator.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tessaly/tessaly.hpp"

namespace tessaly::bench {
namespace {

// A small, fully specified pseudo-random source (SplitMix64), so that a seed gives the same
// document with every compiler and standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  // A number in 0..n-1 (n > 0).
  std::uint32_t Below(std::uint32_t n) {
    return static_cast<std::uint32_t>(((Next() >> 32) * static_cast<std::uint64_t>(n)) >> 32);
  }
  // A number in lo..hi.
  std::int32_t Between(std::int32_t lo, std::int32_t hi) {
    return lo + static_cast<std::int32_t>(Below(static_cast<std::uint32_t>(hi - lo + 1)));
  }
  // True `percent` times in a hundred.
  bool Chance(std::uint32_t percent) { return Below(100) < percent; }
  template <class T, std::size_t N>
  const T& Pick(const std::array<T, N>& values) {
    return values[Below(static_cast<std::uint32_t>(N))];
  }

 private:
  std::uint64_t state_;
};

// The seed of one block: the block's content does not depend on how many blocks come before.
std::uint64_t BlockSeed(std::uint64_t seed, std::size_t block) {
  Random mix(seed ^ (0xD1B54A32D192ED03ULL * (static_cast<std::uint64_t>(block) + 1)));
  return mix.Next();
}

constexpr std::array<std::string_view, 24> kAreas = {
    "Engine",   "Coolant", "Intake",   "Fuel",    "Throttle", "Battery", "Oil",     "Exhaust",
    "Turbo",    "Injector", "Lambda",  "Knock",   "Camshaft", "Crank",   "Pedal",   "Brake",
    "Clutch",   "Gearbox", "Vehicle",  "Air",     "Egr",      "Glow",    "Starter", "Alternator"};
constexpr std::array<std::string_view, 16> kQuantities = {
    "Speed",   "Temperature", "Pressure", "Voltage", "Position", "Flow",  "Level",  "Status",
    "Counter", "DutyCycle",   "Angle",    "Current", "Setpoint", "Mode",  "Torque", "Correction"};
constexpr std::array<std::string_view, 10> kUnits = {"rpm", "\xC2\xB0" "C", "kPa", "V", "%",
                                                     "km/h", "mA", "ms", "\xC2\xB0", "mg/stroke"};
constexpr std::array<std::string_view, 4> kFormats = {"", "%.1f", "%.2f", "%d"};
constexpr std::array<double, 8> kSteps = {1.0, 0.1, 0.5, 0.01, 0.25, 0.0625, 0.00390625, 3.0};
constexpr std::array<double, 6> kOffsets = {0.0, 0.0, 0.0, -40.0, -273.15, -50.0};
constexpr std::array<std::int32_t, 8> kNumericBits = {8, 16, 16, 32, 8, 12, 16, 10};
constexpr std::array<std::string_view, 14> kStates = {
    "Inactive", "Active",  "Not available", "Fault",     "OK",      "Open",     "Closed",
    "Short to ground", "Short to battery", "Open circuit", "Init", "Running", "Stopped",
    "Limp home"};
constexpr std::array<std::string_view, 4> kFonts = {"Arial", "MS Sans Serif", "Tahoma", "Verdana"};
constexpr std::array<float, 5> kFontSizes = {8.25F, 9.75F, 10.0F, 12.0F, 8.0F};
constexpr std::array<std::int32_t, 6> kColours = {16777215, 0, 255, 65280, 16711680, 12632256};
constexpr std::array<std::string_view, 5> kGlobalRequests = {
    "StartDiagnosticSession", "TesterPresent", "ReadDTCInformation", "ClearDiagnosticInformation", "EcuReset"};

std::string Hex2(std::uint32_t value) {
  char text[8];
  std::snprintf(text, sizeof text, "%02X", value & 0xFFU);
  return text;
}

std::string Number4(std::size_t value) {
  char text[24];
  std::snprintf(text, sizeof text, "%04zu", value);
  return text;
}

// Builds one ECU into a target, block after block.
class EcuBuilder {
 public:
  EcuBuilder(TessalyLibXml& facade, std::uint64_t seed, const EcuShape& shape)
      : facade_(facade), seed_(seed), shape_(shape) {}

  std::shared_ptr<TargetItem> Build() {
    target_ = facade_.NewTarget();
    Random random(seed_);
    BuildIdentity(random);
    BuildGlobalRequests();
    for (std::size_t block = 0; block < std::max<std::size_t>(shape_.blocks, 1); ++block) BuildBlock(block);
    return target_;
  }

 private:
  // The data and requests of one block, which its devices and screens refer to.
  struct BlockContent {
    std::vector<std::shared_ptr<DataItem>> data;
    std::vector<std::shared_ptr<RequestItem>> reads;
    std::vector<std::shared_ptr<RequestItem>> writes;
    std::vector<std::shared_ptr<RequestItem>> routines;
  };

  void BuildIdentity(Random& random) {
    if (!facade_.functions()) facade_.set_functions(std::make_shared<FunctionItems>());
    if (!facade_.functions()->ItemAddress(122)) facade_.functions()->Add(122, "Injection");
    target_->set_name("EngineControl_" + Number4(random.Below(10000)));
    target_->set_Address(122);
    target_->set_Email("diagnostics@example.com");
    target_->set_Group("Powertrain");
    for (std::string_view project : {"P84", "X61", "B9"})
      target_->Projects()->Append(std::make_shared<std::string>(project), project);

    const std::shared_ptr<TargetParamItem>& params = target_->Parametres();
    params->set_TypePanneId(3);
    params->set_DateOfficialisation("2004-06-1" + std::to_string(random.Below(10)));
    params->set_Comment("Synthetic engine ECU, generated for load and save measurements");

    std::shared_ptr<AutoIdentItems> idents = target_->AutoIdents();
    const std::int32_t records = 3 + static_cast<std::int32_t>(shape_.blocks / 40);
    for (std::int32_t i = 0; i < records; ++i)
      idents->Add(random.Between(1, 40), "S" + Number4(random.Below(1000)), "SW" + Number4(random.Below(10000)),
                  Hex2(random.Below(256)) + "." + Hex2(random.Below(256)), target_);
  }

  // Session and fault-memory requests that the scenarios of every screen use.
  void BuildGlobalRequests() {
    static constexpr std::array<std::string_view, 5> kSent = {"10 C0", "3E", "19 02 FF", "14 FF FF FF", "11 01"};
    static constexpr std::array<std::string_view, 5> kReply = {"50 C0", "7E", "59 02", "54", "51 01"};
    for (std::size_t i = 0; i < kGlobalRequests.size(); ++i) {
      std::shared_ptr<RequestItem> request = NewRequest(std::string(kGlobalRequests[i]), std::string(kSent[i]),
                                                        std::string(kReply[i]));
      request->set_LengthDatas(static_cast<std::int32_t>((kReply[i].size() + 1) / 3));
    }
  }

  std::shared_ptr<RequestItem> NewRequest(std::string name, std::string sent, std::string reply) {
    std::shared_ptr<RequestItem> request = target_->Requests()->Add(std::move(name));
    request->set_parent(target_);
    request->set_RequestBytes(std::make_shared<ByteString>(std::move(sent)));
    request->set_ReplyBytes(std::make_shared<ByteString>(std::move(reply)));
    request->set_DataPositions(std::make_shared<DataPositionItems>());
    return request;
  }

  std::shared_ptr<DataPositionItem> Place(const std::shared_ptr<RequestItem>& request, const DataItem& data,
                                          std::int32_t byte, std::int32_t bit, bool param, Random& random) {
    std::shared_ptr<DataPositionItem> position = request->DataPositions()->Add(data.dataName());
    position->set_parent(request);
    position->set_StartOctet(byte);
    position->set_StartBit(bit);
    position->set_param(param);
    position->set_LittleEndian(random.Chance(4));
    if (!referenced_.count(data.dataName())) {
      position->set_reference(true);
      referenced_.insert(data.dataName());
    }
    return position;
  }

  void BuildBlock(std::size_t block) {
    Random random(BlockSeed(seed_, block));
    const std::string suffix = "_" + Number4(block);
    const std::string area(random.Pick(kAreas));
    BlockContent content;
    BuildData(random, area, suffix, content);
    BuildRequests(random, area, suffix, content);
    BuildDevices(random, area, suffix, content);
    BuildScreens(random, block, area, suffix, content);
  }

  void BuildData(Random& random, const std::string& area, const std::string& suffix, BlockContent& content) {
    const std::int32_t count = random.Between(30, 42);
    for (std::int32_t i = 0; i < count; ++i) {
      auto data = std::make_shared<DataItem>();
      data->set_dataName(area + std::string(random.Pick(kQuantities)) + suffix + "_" + std::to_string(i));
      const std::uint32_t kind = random.Below(100);
      if (kind < 60) {
        // A scaled value.
        data->set_NumberBits(random.Pick(kNumericBits));
        data->set_Signe(random.Chance(20));
        data->set_CoeffA(random.Pick(kSteps));
        data->set_CoeffB(random.Pick(kOffsets));
        if (random.Chance(10)) data->set_CoeffC(random.Chance(50) ? 10.0 : 100.0);
        data->set_Unite(std::string(random.Pick(kUnits)));
        data->set_DataFormat(std::string(random.Pick(kFormats)));
      } else if (kind < 82) {
        // An enumerated value with its value list.
        const std::int32_t bits = random.Chance(50) ? random.Between(1, 3) : 8;
        data->set_NumberBits(bits);
        data->set_liste(true);
        auto list = std::make_shared<DataListeItems>();
        const std::int32_t entries = std::min(random.Between(2, 10), 1 << bits);
        const std::uint32_t first = random.Below(static_cast<std::uint32_t>(kStates.size()));
        for (std::int32_t v = 0; v < entries; ++v) {
          std::string label(kStates[(first + static_cast<std::uint32_t>(v)) % kStates.size()]);
          if (static_cast<std::size_t>(v) >= kStates.size()) label += " " + std::to_string(v);
          std::shared_ptr<DataListeItem> entry = list->Add(v, std::move(label));
          entry->set_parent(data);
          if (random.Chance(15)) entry->set_Info("Reported by the " + area + " monitor");
        }
        data->set_DataListes(std::move(list));
      } else {
        // A string of bytes, often readable text (part numbers, identification).
        static constexpr std::array<std::int32_t, 5> kByteCounts = {2, 4, 8, 10, 17};
        data->set_numerique(false);
        data->set_NumberBits(8 * random.Pick(kByteCounts));
        data->set_Ascii(random.Chance(50));
      }
      if (random.Chance(70)) data->set_Mnemo(Hex2(random.Below(256)) + area.substr(0, 3) + std::to_string(i));
      if (random.Chance(20)) data->set_Description("Measured by the " + area + " sensor, filtered over 40 ms");
      if (random.Chance(10))
        data->set_Fiche("Diagnostic note: value frozen when the " + area + " monitor reports a fault.\n"
                        "Temp\xC3\xA9rature de r\xC3\xA9" "f\xC3\xA9rence incluse.");
      target_->datas()->AddData(data);
      data->set_parent(target_);
      content.data.push_back(std::move(data));
    }
  }

  static std::int32_t ByteCount(const DataItem& data) { return std::max(1, (data.NumberBits() + 7) / 8); }

  void BuildRequests(Random& random, const std::string& area, const std::string& suffix, BlockContent& content) {
    const std::size_t dataCount = content.data.size();
    std::size_t next = 0;
    // Read requests take the block's data in turn, three to six each; a few data are read by a
    // second request too.
    const std::int32_t reads = random.Between(6, 9);
    for (std::int32_t r = 0; r < reads; ++r) {
      const std::uint32_t did = 0xF000U + random.Below(0x0FFF);
      std::shared_ptr<RequestItem> request =
          NewRequest("Read" + area + "Group" + suffix + "_" + std::to_string(r), "22 " + Hex2(did >> 8) + " " + Hex2(did),
                     "62 " + Hex2(did >> 8) + " " + Hex2(did));
      std::int32_t byte = 4;
      const std::int32_t placed = random.Between(3, 6);
      for (std::int32_t p = 0; p < placed; ++p) {
        const DataItem& data = *content.data[(r == reads - 1 && p > 0) ? random.Below(static_cast<std::uint32_t>(dataCount))
                                                                       : next++ % dataCount];
        if (request->DataPositions()->ItemName(data.dataName())) continue;
        const std::int32_t bit = data.NumberBits() < 8 ? random.Between(0, 8 - data.NumberBits()) : 0;
        Place(request, data, byte, bit, false, random);
        byte += ByteCount(data);
      }
      request->set_LengthDatas(byte - 1);
      if (random.Chance(15)) request->set_AccesApresVente(false);
      if (random.Chance(10)) request->set_DossierMaintenabilite(true);
      if (random.Chance(20)) request->set_Commentaire("Cyclic read of the " + area + " values");
      content.reads.push_back(std::move(request));
    }
    // Write requests carry one or two data as parameters.
    const std::int32_t writes = random.Between(2, 4);
    for (std::int32_t w = 0; w < writes; ++w) {
      const std::uint32_t did = 0xD000U + random.Below(0x0FFF);
      std::shared_ptr<RequestItem> request =
          NewRequest("Write" + area + "Setting" + suffix + "_" + std::to_string(w),
                     "2E " + Hex2(did >> 8) + " " + Hex2(did), "6E " + Hex2(did >> 8) + " " + Hex2(did));
      std::int32_t byte = 4;
      const std::int32_t placed = random.Between(1, 2);
      for (std::int32_t p = 0; p < placed; ++p) {
        const DataItem& data = *content.data[random.Below(static_cast<std::uint32_t>(dataCount))];
        if (request->DataPositions()->ItemName(data.dataName())) continue;
        Place(request, data, byte, 0, true, random);
        byte += ByteCount(data);
      }
      request->set_LgVariable(random.Chance(10));
      request->set_AccesTous(false);
      if (random.Chance(40)) request->set_AccesApresVente(false);
      if (random.Chance(30)) request->set_AccesUsine(false);
      request->set_LengthDatas(3);
      content.writes.push_back(std::move(request));
    }
    // Routines and actuator tests, sent on demand only.
    const std::int32_t routines = random.Between(1, 3);
    for (std::int32_t t = 0; t < routines; ++t) {
      const std::uint32_t id = random.Below(0x10000);
      std::shared_ptr<RequestItem> request =
          NewRequest("Routine" + area + suffix + "_" + std::to_string(t), "31 01 " + Hex2(id >> 8) + " " + Hex2(id),
                     "71 01 " + Hex2(id >> 8) + " " + Hex2(id));
      request->set_ManuelSend(true);
      request->set_LengthDatas(4);
      request->set_ShiftBytesCount(random.Chance(20) ? 1 : 0);
      if (random.Chance(50)) request->set_AccesEtudes(false);
      if (random.Chance(30)) request->set_AccesConstructeur(false);
      content.routines.push_back(std::move(request));
    }
  }

  void BuildDevices(Random& random, const std::string& area, const std::string& suffix, BlockContent& content) {
    static constexpr std::array<std::string_view, 6> kKinds = {"Sensor", "Actuator", "Valve", "Relay", "Heater", "Pump"};
    const std::int32_t devices = random.Between(2, 4);
    for (std::int32_t d = 0; d < devices; ++d) {
      const std::shared_ptr<RequestItem>& freeze = content.reads[random.Below(static_cast<std::uint32_t>(content.reads.size()))];
      std::shared_ptr<OrganeItem> device = target_->Organes()->Add(
          area + std::string(random.Pick(kKinds)) + suffix + "_" + std::to_string(d), "D" + area.substr(0, 2) + std::to_string(d),
          static_cast<std::int32_t>(0x1000 + (nextDtc_++ % 0xE000)), random.Chance(30) ? random.Between(100, 999) : 0);
      device->set_parent(target_);
      device->set_OrganeTypeId(random.Between(1, 4));
      device->set_requestName(freeze->requestName());

      // Links to data of the freeze-frame request, the first one being the failure flag.
      auto links = std::make_shared<DeviceDataItems>();
      std::vector<std::shared_ptr<DataPositionItem>> placed(freeze->DataPositions()->begin(), freeze->DataPositions()->end());
      const std::size_t linkCount = std::min<std::size_t>(placed.size(), static_cast<std::size_t>(random.Between(1, 3)));
      for (std::size_t l = 0; l < linkCount; ++l) {
        std::shared_ptr<DeviceDataItem> link = links->Add(placed[l]->dataName());
        link->set_parent(device);
        link->set_FlagPanne(l == 0);
      }
      device->set_DeviceDatas(std::move(links));

      // Failure tests whose flags are data of the freeze-frame request. A loaded device always
      // has a tests list, empty or not, and so does a generated one.
      device->Tests();
      const std::int32_t tests = random.Between(0, 3);
      for (std::int32_t t = 0; t < tests; ++t) {
        std::shared_ptr<TestItem> test = device->Tests()->Add(t + 1);
        test->set_parent(device);
        test->set_Severity(random.Between(0, 3));
        test->set_Autocheck(random.Chance(80));
        if (random.Chance(40)) test->set_OBD(static_cast<std::int32_t>(0x0100 + nextObd_++));
        if (random.Chance(60)) test->set_Description(std::string(random.Pick(kStates)) + " detected on " + area);
        const std::shared_ptr<DataPositionItem>& stored = placed[random.Below(static_cast<std::uint32_t>(placed.size()))];
        test->StoredFlag().Append(stored, "k" + stored->dataName());
        const std::shared_ptr<DataPositionItem>& present = placed[random.Below(static_cast<std::uint32_t>(placed.size()))];
        if (random.Chance(70)) test->PresentFlag().Append(present, "k" + present->dataName());
      }
    }
  }

  std::shared_ptr<CategoryItem> CategoryFor(std::size_t block, const std::string& area) {
    const std::size_t index = block / std::max<std::size_t>(shape_.blocksPerCategory, 1);
    if (index < categories_.size()) return categories_[index];
    std::shared_ptr<CategoryItem> category = target_->Categories()->Add(area + " " + Number4(index));
    category->set_parent(target_);
    category->set_Screens(std::make_shared<ScreenItems>());
    categories_.push_back(category);
    return category;
  }

  void BuildScreens(Random& random, std::size_t block, const std::string& area, const std::string& suffix,
                    BlockContent& content) {
    std::shared_ptr<CategoryItem> category = CategoryFor(block, area);
    const std::int32_t screens = random.Between(1, 3);
    for (std::int32_t s = 0; s < screens; ++s) {
      std::shared_ptr<ScreenItem> screen = category->Screens()->Add(area + " view" + suffix + "_" + std::to_string(s));
      screen->set_parent(category);
      screen->set_ScreenWidth(random.Chance(50) ? 9600 : 12000);
      screen->set_ScreenHeight(random.Chance(50) ? 7200 : 8400);
      screen->set_ScreenColor(random.Chance(70) ? kWhite : 12632256);
      screen->set_WindowState(random.Chance(10) ? 2 : 0);
      screen->set_LabelItems(std::make_shared<LabelItems>());
      screen->set_ButtonItems(std::make_shared<ButtonItems>());
      screen->set_DisplayItems(std::make_shared<DisplayItems>());

      BuildLabels(random, *screen, area, screen);
      BuildButtons(random, *screen, content, screen);
      BuildDisplays(random, *screen, content, screen);
    }
  }

  void BuildLabels(Random& random, ScreenItem& screen, const std::string& area, const std::shared_ptr<ScreenItem>& self) {
    const std::int32_t labels = random.Between(2, 6);
    for (std::int32_t l = 0; l < labels; ++l) {
      std::shared_ptr<LabelItem> label = screen.LabelItems()->Add(l + 1);
      label->set_parent(self);
      label->set_LabelText(l == 0 ? area + " \xE2\x80\x93 live values" : std::string(random.Pick(kQuantities)));
      label->set_LabelLeft(120);
      label->set_LabelTop(120 + l * 480);
      label->set_LabelHeight(300);
      label->set_LabelWidth(random.Between(1500, 4500));
      label->set_FontName(std::string(random.Pick(kFonts)));
      label->set_FontSize(random.Pick(kFontSizes));
      label->set_FontBold(l == 0);
      label->set_FontColor(random.Chance(80) ? 0 : 255);
      label->set_LabelColor(random.Pick(kColours));
      label->set_Alignment(random.Between(0, 2));
    }
  }

  void AddStep(const std::shared_ptr<ButtonItem>& button, const std::string& requestName, std::int32_t delay) {
    std::shared_ptr<ScenarioItem> step = button->ScenarioItems()->Add(requestName, delay);
    step->set_parent(button);
  }

  void BuildButtons(Random& random, ScreenItem& screen, BlockContent& content, const std::shared_ptr<ScreenItem>& self) {
    // The init button opens a session, and sometimes reads the fault memory.
    auto init = std::make_shared<ButtonItem>();
    init->set_InitButton(true);
    init->set_parent(self);
    screen.ButtonItems()->AddData(init);
    screen.set_ButtonInit(init);
    init->ScenarioItems();
    if (random.Chance(80)) AddStep(init, std::string(kGlobalRequests[0]), 100);
    if (random.Chance(40)) AddStep(init, std::string(kGlobalRequests[2]), 0);

    const std::int32_t buttons = random.Between(0, 3);
    for (std::int32_t b = 0; b < buttons; ++b) {
      const bool routine = !content.routines.empty() && random.Chance(60);
      const std::shared_ptr<RequestItem>& request =
          routine ? content.routines[random.Below(static_cast<std::uint32_t>(content.routines.size()))]
                  : content.writes[random.Below(static_cast<std::uint32_t>(content.writes.size()))];
      std::shared_ptr<ButtonItem> button = screen.ButtonItems()->Add(routine ? "Start test" : "Apply setting");
      button->set_parent(self);
      button->set_ButtonLeft(6000 + b * 1800);
      button->set_ButtonTop(screen.ScreenHeight() - 900);
      button->set_ButtonHeight(420);
      button->set_ButtonWidth(1680);
      button->set_FontName(std::string(random.Pick(kFonts)));
      button->set_FontSize(random.Pick(kFontSizes));
      button->set_FontBold(random.Chance(30));
      button->set_FontItalic(random.Chance(5));
      if (random.Chance(50)) button->set_Message("Engine must be stopped. Continue?");
      button->ScenarioItems();
      if (random.Chance(50)) AddStep(button, std::string(kGlobalRequests[0]), 50);
      AddStep(button, request->requestName(), random.Chance(50) ? 0 : 500);
      if (random.Chance(30)) AddStep(button, std::string(kGlobalRequests[1]), 2000);
    }
  }

  void BuildDisplays(Random& random, ScreenItem& screen, BlockContent& content, const std::shared_ptr<ScreenItem>& self) {
    const std::int32_t displays = random.Between(5, 12);
    for (std::int32_t d = 0; d < displays; ++d) {
      std::shared_ptr<DisplayItem> display = screen.DisplayItems()->Add();
      display->set_parent(self);
      display->set_DisplayLeft(d < 8 ? 120 : 5400);
      display->set_DisplayTop(1200 + (d % 8) * 360);
      display->set_CaptionWidth(random.Chance(70) ? 2000 : 2600);
      display->set_DisplayColor(random.Chance(80) ? kWhite : 12632256);
      display->set_FontName(std::string(random.Pick(kFonts)));
      display->set_FontSize(random.Chance(80) ? 10 : 8);
      display->set_FontBold(random.Chance(10));
      if (random.Chance(12) && !content.writes.empty()) {
        // A request display: an input field of a write request.
        const std::shared_ptr<RequestItem>& request =
            content.writes[random.Below(static_cast<std::uint32_t>(content.writes.size()))];
        display->set_TypeDisplay(kRequestDisplay);
        auto extra = std::make_shared<DisplayExtraItem>();
        extra->set_parent(display);
        extra->set_requestName(request->requestName());
        extra->set_param(random.Chance(70));
        display->set_DisplayExtraItem(std::move(extra));
      } else {
        // A data display of a value read by one of the block's requests.
        const std::shared_ptr<RequestItem>& request =
            content.reads[random.Below(static_cast<std::uint32_t>(content.reads.size()))];
        std::vector<std::shared_ptr<DataPositionItem>> placed(request->DataPositions()->begin(),
                                                              request->DataPositions()->end());
        const std::shared_ptr<DataPositionItem>& position = placed[random.Below(static_cast<std::uint32_t>(placed.size()))];
        display->set_TypeDisplay(kDataDisplay);
        auto reference = std::make_shared<DisplayDataItem>();
        reference->set_parent(display);
        reference->set_dataName(position->dataName());
        reference->set_requestName(request->requestName());
        display->set_DisplayDataItem(std::move(reference));
      }
      auto ranges = std::make_shared<RangeItems>();
      const std::int32_t thresholds = random.Chance(45) ? random.Between(1, 3) : 0;
      for (std::int32_t t = 0; t < thresholds; ++t) {
        static constexpr std::array<double, 6> kThresholds = {-40.0, 0.0, 0.5, 90.0, 105.5, 4500.0};
        std::shared_ptr<RangeItem> range = ranges->Add(random.Pick(kThresholds) + t * 10);
        range->set_parent(display);
        range->set_Couleur(random.Pick(kColours));
        if (random.Chance(20)) {
          range->set_SonFlag(true);
          range->set_Son(random.Between(1, 9));
        }
      }
      display->set_RangeItems(std::move(ranges));
    }
  }

  TessalyLibXml& facade_;
  std::uint64_t seed_;
  EcuShape shape_;
  std::shared_ptr<TargetItem> target_;
  std::vector<std::shared_ptr<CategoryItem>> categories_;
  std::unordered_set<std::string> referenced_;
  std::uint32_t nextDtc_ = 0;
  std::uint32_t nextObd_ = 0;
};

}  // namespace

std::shared_ptr<TargetItem> BuildEcu(TessalyLibXml& facade, std::uint64_t seed, const EcuShape& shape) {
  return EcuBuilder(facade, seed, shape).Build();
}

std::string GenerateEcuDocument(std::uint64_t seed, const EcuShape& shape) {
  TessalyLibXml facade;
  BuildEcu(facade, seed, shape);
  std::string text = facade.ExportUceToText();
  facade.ClearTarget();
  return text;
}

std::size_t BlocksForSize(std::uint64_t seed, std::size_t approx_bytes) {
  // A first estimate of the fixed part and the mean block size from two small documents, then
  // a second one from a document of about the requested number of blocks (at most 200): since
  // a larger document starts with the blocks of a smaller one, that sample is the start of the
  // final document itself.
  auto sizeOf = [seed](std::size_t blocks) {
    return static_cast<double>(GenerateEcuDocument(seed, EcuShape{blocks}).size());
  };
  auto estimate = [&](std::size_t small, double smallSize, std::size_t large, double largeSize) {
    const double perBlock = (largeSize - smallSize) / static_cast<double>(large - small);
    const double fixed = smallSize - perBlock * static_cast<double>(small);
    const double blocks = (static_cast<double>(approx_bytes) - fixed) / perBlock;
    return blocks < 1.0 ? std::size_t{1} : static_cast<std::size_t>(blocks + 0.5);
  };
  constexpr std::size_t kSmall = 2;
  const double smallSize = sizeOf(kSmall);
  const std::size_t guess = estimate(kSmall, smallSize, 10, sizeOf(10));
  const std::size_t sample = std::clamp<std::size_t>(guess, 10, 200);
  return estimate(kSmall, smallSize, sample, sizeOf(sample));
}

std::string GenerateEcuDocument(std::uint64_t seed, std::size_t approx_bytes) {
  return GenerateEcuDocument(seed, EcuShape{BlocksForSize(seed, approx_bytes)});
}

}  // namespace tessaly::bench
