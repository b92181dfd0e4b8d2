#include "sample_ecu.hpp"

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "tessaly/tessaly.hpp"

namespace tessaly::examples {
namespace {

// Colours are packed 0x00BBGGRR.
constexpr std::int32_t kBlack = 0;
constexpr std::int32_t kRed = 0x0000FF;
constexpr std::int32_t kOrange = 0x00A5FF;
constexpr std::int32_t kGreen = 0x00C000;
constexpr std::int32_t kBlue = 0xFF0000;
constexpr std::int32_t kSilver = 0xC0C0C0;
constexpr std::int32_t kPaleYellow = 0xE0FFFF;

constexpr std::int32_t kDeviceInput = 1;
constexpr std::int32_t kDeviceOutput = 3;
constexpr std::int32_t kDtcFailures = 3;

const std::string kDegreesCelsius = "\u00B0C";
const std::string kDegrees = "\u00B0";

using Entries = std::initializer_list<std::pair<std::int32_t, std::string_view>>;

// What each sensor and actuator status reports: two bits, stored and present.
const Entries kFaultStatus = {
    {0, "No fault"}, {1, "Fault stored"}, {2, "Fault present"}, {3, "Fault present and stored"}};

struct Threshold {
  double value;
  std::int32_t colour;
  std::int32_t tone = 0;  // a tone in Hz, 0 for none
};

class SampleBuilder {
 public:
  SampleBuilder(TessalyLibXml& facade, SampleLine line) : facade_(facade), line_(line) {}

  std::shared_ptr<TargetItem> Build() {
    target_ = facade_.NewTarget();
    Identity();
    Parameters();
    Data();
    Requests();
    Devices();
    Screens();
    AutoIdentifications();
    return target_;
  }

 private:
  bool Can() const { return line_ == SampleLine::kCan; }

  // --- The ECU and how to talk to it ---

  void Identity() {
    facade_.set_functions(std::make_shared<FunctionItems>());
    std::shared_ptr<FunctionItem> function = facade_.functions()->Add(122, "Injection");
    if (Can()) {
      // Extended identifiers carry bit 31 on top of their 29-bit number.
      function->set_CanXId(static_cast<std::int32_t>(0x80000000U | 0x18DA7AF1U));
      function->set_CanRId(static_cast<std::int32_t>(0x80000000U | 0x18DAF17AU));
    }
    target_->set_name(Can() ? "EC4-CAN" : "EC4");
    target_->set_Address(122);
    target_->set_Langue("English");
    target_->set_Email("diagnostics@example.com");
    target_->set_Group("Powertrain");
    for (std::string_view project : {"K9X", "M4R"})
      target_->Projects()->Append(std::make_shared<std::string>(project), project);
  }

  void Parameters() {
    const std::shared_ptr<TargetParamItem>& p = target_->Parametres();
    p->set_Comment(Can() ? "Petrol engine control, sequential port injection, diagnosed on the CAN bus"
                         : "Petrol engine control, sequential port injection, diagnosed on the K line");
    p->set_DateOfficialisation("2004-03-15");
    p->set_Reprogrammable("EC4_BOOT");
    p->set_TypePanneId(kDtcFailures);
    if (Can()) {
      p->set_initMode(3);
      p->set_multiPoint(true);
      p->set_BaudRate(500000);
      return;
    }
    p->set_initMode(2);
    p->set_multiPoint(false);
    p->set_BaudRate(10400);
    p->set_key1(0xEF);
    p->set_key2(0x8F);
    p->set_InterByteDelay(5);
    p->set_ReplyToRequestDelay(55);
    p->set_RequestToReplyTimeout(50);
    p->set_TesterPresentDelay(2000);
    p->set_ErrorDelay(500);
  }

  // --- Data items ---

  std::shared_ptr<DataItem> NewData(const std::string& name, std::string mnemonic) {
    auto data = std::make_shared<DataItem>();
    data->set_dataName(name);
    data->set_Mnemo(std::move(mnemonic));
    target_->datas()->AddData(data);
    data->set_parent(target_);
    return data;
  }

  std::shared_ptr<DataItem> Scaled(const std::string& name, std::string mnemonic, std::int32_t bits, double step,
                                   double offset, std::string unit, std::string format = "", bool isSigned = false,
                                   double divideBy = 1.0) {
    std::shared_ptr<DataItem> data = NewData(name, std::move(mnemonic));
    data->set_NumberBits(bits);
    data->set_Signe(isSigned);
    data->set_CoeffA(step);
    data->set_CoeffB(offset);
    data->set_CoeffC(divideBy);
    data->set_Unite(std::move(unit));
    data->set_DataFormat(std::move(format));
    return data;
  }

  std::shared_ptr<DataItem> Listed(const std::string& name, std::string mnemonic, std::int32_t bits, Entries entries) {
    std::shared_ptr<DataItem> data = NewData(name, std::move(mnemonic));
    data->set_NumberBits(bits);
    data->set_liste(true);
    auto list = std::make_shared<DataListeItems>();
    for (const auto& [value, label] : entries) list->Add(value, std::string(label))->set_parent(data);
    data->set_DataListes(std::move(list));
    return data;
  }

  std::shared_ptr<DataItem> Bytes(const std::string& name, std::string mnemonic, std::int32_t count, bool ascii) {
    std::shared_ptr<DataItem> data = NewData(name, std::move(mnemonic));
    data->set_numerique(false);
    data->set_NumberBits(8 * count);
    data->set_Ascii(ascii);
    return data;
  }

  void Data() {
    // Measured values.
    Scaled("EngineSpeed", "N", 16, 0.25, 0, "rpm", "%.0f")
        ->set_Description("Crankshaft speed, averaged over one revolution");
    Scaled("CoolantTemperature", "TCO", 8, 1, -40, kDegreesCelsius);
    Scaled("IntakeAirTemperature", "TIA", 8, 1, -40, kDegreesCelsius);
    Scaled("OilTemperature", "TOIL", 8, 1, -40, kDegreesCelsius);
    Scaled("ManifoldPressure", "MAP", 8, 1, 0, "kPa");
    Scaled("VehicleSpeed", "VS", 8, 1, 0, "km/h");
    Scaled("BatteryVoltage", "VB", 16, 0.001, 0, "V", "%.2f");
    Scaled("EngineRunTime", "TRUN", 32, 1, 0, "s");
    Scaled("InjectionTime", "TI", 16, 0.004, 0, "ms", "%.2f")
        ->set_Fiche(
            "Opening time of the injectors, battery voltage correction included.\n"
            "Cylinders are injected in the firing order 1-3-4-2.");
    Scaled("IgnitionAdvance", "IGA", 8, 0.5, 0, kDegrees, "%.1f", true);
    Scaled("LambdaVoltage", "VLS", 8, 0.005, 0, "V", "%.3f");
    Scaled("ShortTermFuelTrim", "STFT", 8, 0.78125, 0, "%", "%.1f", true);
    Scaled("AirMassFlow", "MAF", 16, 0.01, 0, "kg/h", "%.1f");
    Scaled("KnockRetard", "KR", 8, 0.375, 0, kDegrees, "%.1f");
    Scaled("FuelPressure", "FUP", 16, 0.1, 0, "kPa", "%.0f");
    Scaled("IdleSpeedSetpoint", "NSP", 8, 10, 0, "rpm");
    // Positions in per cent of the full travel: raw 0..255 scaled by 100/255.
    Scaled("ThrottlePosition", "TPS", 8, 100, 0, "%", "%.1f", false, 255);
    Scaled("PedalPosition", "APP", 8, 100, 0, "%", "%.1f", false, 255);
    Scaled("CanisterPurgeDutyCycle", "CPS", 8, 100, 0, "%", "%.0f", false, 255);

    // States.
    Listed("EngineState", "ENST", 2, {{0, "Stopped"}, {1, "Cranking"}, {2, "Running"}, {3, "Stalled"}});
    Listed("FuelSystemStatus", "FSS", 8,
           {{1, "Open loop"},
            {2, "Closed loop"},
            {4, "Open loop, driving conditions"},
            {8, "Open loop, system fault"},
            {16, "Closed loop, feedback fault"}});
    Listed("ImmobiliserStatus", "IMMO", 2, {{0, "Key not learnt"}, {1, "Key recognised"}, {2, "Key refused"}});
    Listed("MilStatus", "MIL", 1, {{0, "Off"}, {1, "On"}});
    Listed("AirConditioningRequest", "ACR", 1, {{0, "No request"}, {1, "Requested"}});
    Listed("BrakeSwitch", "BRK", 1, {{0, "Released"}, {1, "Pressed"}});
    Listed("FanCommand", "FAN", 2, {{0, "Off"}, {1, "Low speed"}, {2, "High speed"}});
    std::shared_ptr<DataItem> result =
        Listed("ActuatorTestResult", "ATR", 8,
               {{0, "Passed"}, {1, "Failed"}, {2, "Aborted by the ECU"}, {3, "Conditions not met"}});
    result->DataListes()->ItemValue(3)->set_Info("Engine stopped, ignition on and battery above 11 V are required");

    // Fault status of each device.
    for (const char* name : {"CoolantSensorStatus", "AirTemperatureSensorStatus", "ThrottleSensorStatus",
                             "PedalSensorStatus", "LambdaSensorStatus", "KnockSensorStatus", "InjectorCircuitStatus",
                             "IgnitionCoilStatus", "FuelPumpRelayStatus", "FanRelayStatus"})
      Listed(name, "", 2, kFaultStatus);

    // Identification and security.
    Bytes("Vin", "VIN", 17, true)->set_Description("Vehicle identification number, written at the end of the line");
    Bytes("SoftwareNumber", "SWN", 10, true);
    Bytes("HardwareNumber", "HWN", 10, true);
    Bytes("SecuritySeed", "", 2, false);
    Bytes("SecurityKey", "", 2, false);
  }

  // --- Requests ---

  std::shared_ptr<RequestItem> Request(const std::string& name, std::string sent, std::string reply,
                                       std::int32_t minBytes) {
    std::shared_ptr<RequestItem> request = target_->Requests()->Add(name);
    request->set_parent(target_);
    request->set_RequestBytes(std::make_shared<ByteString>(std::move(sent)));
    request->set_ReplyBytes(std::make_shared<ByteString>(std::move(reply)));
    request->set_LengthDatas(minBytes);
    request->set_DataPositions(std::make_shared<DataPositionItems>());
    return request;
  }

  // Places a data item in a request; the first placement of each data item is its reference.
  std::shared_ptr<DataPositionItem> Place(const std::shared_ptr<RequestItem>& request, const std::string& dataName,
                                          std::int32_t byte, std::int32_t bit, bool param) {
    std::shared_ptr<DataPositionItem> position = request->DataPositions()->Add(dataName);
    position->set_parent(request);
    position->set_StartOctet(byte);
    position->set_StartBit(bit);
    position->set_param(param);
    bool first = true;
    for (const auto& other : *target_->Requests())
      if (other != request && other->DataPositions() && other->DataPositions()->ItemName(dataName)) first = false;
    position->set_reference(first);
    return position;
  }
  void Reply(const std::shared_ptr<RequestItem>& request, const std::string& dataName, std::int32_t byte,
             std::int32_t bit = 0) {
    Place(request, dataName, byte, bit, false);
  }
  void Param(const std::shared_ptr<RequestItem>& request, const std::string& dataName, std::int32_t byte) {
    Place(request, dataName, byte, 0, true);
  }

  void Requests() {
    Request("StartDiagnosticSession", "10 81", "50 81", 2);
    Request("StartAdjustmentSession", "10 85", "50 85", 2)->set_AccesApresVente(false);
    Request("TesterPresent", "3E 01", "7E 01", 2);

    auto vin = Request("ReadVin", "1A 90", "5A 90", 19);
    Reply(vin, "Vin", 3);
    auto software = Request("ReadSoftwareIdentification", "1A 94", "5A 94", 22);
    Reply(software, "SoftwareNumber", 3);
    Reply(software, "HardwareNumber", 13);

    auto engine = Request("ReadEngineValues", "21 01", "61 01", 16);
    engine->set_Commentaire("Read cyclically while an engine screen is open");
    Reply(engine, "EngineSpeed", 3);
    Reply(engine, "CoolantTemperature", 5);
    Reply(engine, "IntakeAirTemperature", 6);
    Reply(engine, "OilTemperature", 7);
    Reply(engine, "ManifoldPressure", 8);
    Reply(engine, "VehicleSpeed", 9);
    Reply(engine, "BatteryVoltage", 10);
    Reply(engine, "EngineState", 12, 0);
    Reply(engine, "MilStatus", 12, 2);
    Reply(engine, "EngineRunTime", 13);
    // The run-time counter is the one value this ECU sends least significant byte first.
    engine->DataPositions()->ItemName("EngineRunTime")->set_LittleEndian(true);

    auto injection = Request("ReadInjectionValues", "21 02", "61 02", 17);
    Reply(injection, "InjectionTime", 3);
    Reply(injection, "IgnitionAdvance", 5);
    Reply(injection, "LambdaVoltage", 6);
    Reply(injection, "ShortTermFuelTrim", 7);
    Reply(injection, "AirMassFlow", 8);
    Reply(injection, "FuelSystemStatus", 10);
    Reply(injection, "KnockRetard", 11);
    Reply(injection, "FuelPressure", 12);
    Reply(injection, "EngineSpeed", 14);
    Reply(injection, "IdleSpeedSetpoint", 16);

    auto inputs = Request("ReadInputs", "21 03", "61 03", 7);
    Reply(inputs, "ThrottlePosition", 3);
    Reply(inputs, "PedalPosition", 4);
    Reply(inputs, "AirConditioningRequest", 5, 0);
    Reply(inputs, "BrakeSwitch", 5, 1);
    Reply(inputs, "ImmobiliserStatus", 5, 2);
    Reply(inputs, "CanisterPurgeDutyCycle", 6);
    Reply(inputs, "FanCommand", 7);

    auto status = Request("ReadSensorStatus", "21 04", "61 04", 5);
    const char* statuses[] = {"CoolantSensorStatus",   "AirTemperatureSensorStatus", "ThrottleSensorStatus",
                              "PedalSensorStatus",     "LambdaSensorStatus",         "KnockSensorStatus",
                              "InjectorCircuitStatus", "IgnitionCoilStatus",         "FuelPumpRelayStatus",
                              "FanRelayStatus"};
    for (std::int32_t i = 0; i < 10; ++i) Reply(status, statuses[i], 3 + i / 4, 2 * (i % 4));

    auto idle = Request("WriteIdleSetpoint", "3B 05 00", "7B 05", 2);
    idle->set_AccesApresVente(false);
    Param(idle, "IdleSpeedSetpoint", 3);

    auto dtc = Request("ReadDtcByStatus", "18 00 FF 00", "58", 2);
    dtc->set_Commentaire("Stored and pending codes of every group");
    Request("ClearDiagnosticInformation", "14 FF 00", "54 FF 00", 3)->set_DossierMaintenabilite(true);

    auto seed = Request("SecurityRequestSeed", "27 01", "67 01", 4);
    Reply(seed, "SecuritySeed", 3);
    auto key = Request("SecuritySendKey", "27 02 00 00", "67 02", 2);
    Param(key, "SecurityKey", 3);

    auto fan = Request("ActuatorFanTest", "30 10 07 00", "70 10", 2);
    fan->set_ManuelSend(true);
    Param(fan, "FanCommand", 4);
    Request("ActuatorFuelPumpTest", "30 11 07 01", "70 11", 2)->set_ManuelSend(true);
    auto purge = Request("ActuatorPurgeValveTest", "30 12 07 00", "70 12", 2);
    purge->set_ManuelSend(true);
    Param(purge, "CanisterPurgeDutyCycle", 4);
    auto result = Request("ReadActuatorTestResult", "33 10", "73 10", 3);
    Reply(result, "ActuatorTestResult", 3);

    auto reset = Request("ResetAdaptations", "31 A0", "71 A0", 2);
    reset->set_ManuelSend(true);
    reset->set_DossierMaintenabilite(true);
    reset->set_AccesTous(false);
    reset->set_AccesApresVente(false);
    reset->set_Commentaire("Forgets the learnt fuel trims and idle corrections");
    Request("EcuReset", "11 01", "51 01", 2)->set_ManuelSend(true);
  }

  // --- Devices and their failure tests ---

  struct TestShape {
    std::int32_t type;
    std::int32_t obd;
    std::int32_t severity;
    bool autocheck;
    std::string_view description;
  };

  void Device(const std::string& name, const std::string& mnemonic, std::int32_t type, std::int32_t dtc,
              std::int32_t obd, const std::string& value, const std::string& status,
              std::initializer_list<TestShape> tests) {
    std::shared_ptr<RequestItem> freezeFrame = target_->Requests()->ItemName("ReadSensorStatus");
    std::shared_ptr<OrganeItem> device = target_->Organes()->Add(name, mnemonic, dtc, obd);
    device->set_parent(target_);
    device->set_OrganeTypeId(type);
    device->set_request(freezeFrame);

    auto links = std::make_shared<DeviceDataItems>();
    links->Add(value)->set_parent(device);
    std::shared_ptr<DeviceDataItem> flag = links->Add(status);
    flag->set_parent(device);
    flag->set_FlagPanne(true);
    device->set_DeviceDatas(std::move(links));

    // The status data both tells that the failure is stored and that it is present.
    std::shared_ptr<DataPositionItem> placement = freezeFrame->DataPositions()->ItemName(status);
    for (const TestShape& shape : tests) {
      std::shared_ptr<TestItem> test = device->Tests()->Add(shape.type);
      test->set_parent(device);
      test->set_OBD(shape.obd);
      test->set_Severity(shape.severity);
      test->set_Autocheck(shape.autocheck);
      test->set_Description(std::string(shape.description));
      test->StoredFlag().Append(placement, "k" + status);
      test->PresentFlag().Append(placement, "k" + status);
    }
  }

  void Devices() {
    Device("CoolantTemperatureSensor", "CTS", kDeviceInput, 0x0115, 0, "CoolantTemperature", "CoolantSensorStatus",
           {{1, 0x0117, 2, true, "Signal too low, short circuit to ground"},
            {2, 0x0118, 2, true, "Signal too high, open circuit"}});
    Device("IntakeAirTemperatureSensor", "IAT", kDeviceInput, 0x0110, 0, "IntakeAirTemperature",
           "AirTemperatureSensorStatus",
           {{1, 0x0112, 1, true, "Signal too low, short circuit to ground"},
            {2, 0x0113, 1, true, "Signal too high, open circuit"}});
    Device("ThrottlePositionSensor", "TPS", kDeviceInput, 0x0120, 0x0120, "ThrottlePosition", "ThrottleSensorStatus",
           {{1, 0x0122, 3, true, "Signal too low"},
            {2, 0x0123, 3, true, "Signal too high"},
            {3, 0x0121, 3, false, "Position not plausible against the pedal"}});
    Device("PedalPositionSensor", "APP", kDeviceInput, 0x2120, 0, "PedalPosition", "PedalSensorStatus",
           {{1, 0x2122, 3, true, "Track 1 signal out of range"}});
    Device("LambdaSensor", "O2S", kDeviceInput, 0x0130, 0x0130, "LambdaVoltage", "LambdaSensorStatus",
           {{1, 0x0133, 1, false, "Slow response"}, {2, 0x0135, 2, true, "Heater circuit fault"}});
    Device("KnockSensor", "KS", kDeviceInput, 0x0325, 0, "KnockRetard", "KnockSensorStatus",
           {{1, 0x0327, 1, true, "Signal too low"}});
    Device("Injectors", "INJ", kDeviceOutput, 0x0200, 0, "InjectionTime", "InjectorCircuitStatus",
           {{1, 0x0201, 2, true, "Cylinder 1 circuit open"},
            {2, 0x0202, 2, true, "Cylinder 2 circuit open"},
            {3, 0x0203, 2, true, "Cylinder 3 circuit open"},
            {4, 0x0204, 2, true, "Cylinder 4 circuit open"}});
    Device("IgnitionCoils", "IGN", kDeviceOutput, 0x0350, 0, "IgnitionAdvance", "IgnitionCoilStatus",
           {{1, 0x0351, 2, true, "Coil A primary circuit"}, {2, 0x0352, 2, true, "Coil B primary circuit"}});
    Device("FuelPumpRelay", "FPR", kDeviceOutput, 0x0230, 0, "FuelPressure", "FuelPumpRelayStatus",
           {{1, 0x0230, 2, true, "Relay circuit fault"}});
    Device("CoolingFanRelay", "FAN", kDeviceOutput, 0x0480, 0, "FanCommand", "FanRelayStatus",
           {{1, 0x0480, 1, true, "Relay circuit fault"}});
  }

  // --- Screens ---

  std::shared_ptr<ScreenItem> Screen(const std::shared_ptr<CategoryItem>& category, const std::string& name,
                                     const std::string& title, std::initializer_list<std::string_view> initSteps) {
    std::shared_ptr<ScreenItem> screen = category->Screens()->Add(name);
    screen->set_parent(category);
    screen->set_ScreenWidth(9600);
    screen->set_ScreenHeight(7200);
    screen->set_LabelItems(std::make_shared<LabelItems>());
    screen->set_ButtonItems(std::make_shared<ButtonItems>());
    screen->set_DisplayItems(std::make_shared<DisplayItems>());

    // The init button runs when the screen opens; it is the first entry of the button list.
    auto init = std::make_shared<ButtonItem>();
    init->set_InitButton(true);
    init->set_parent(screen);
    screen->ButtonItems()->AddData(init);
    screen->set_ButtonInit(init);
    std::int32_t delay = 100;
    for (std::string_view step : initSteps) {
      init->ScenarioItems()->Add(std::string(step), delay)->set_parent(init);
      delay = 0;
    }

    std::shared_ptr<LabelItem> heading = screen->LabelItems()->Add(1);
    heading->set_parent(screen);
    heading->set_LabelText(title);
    heading->set_LabelLeft(120);
    heading->set_LabelTop(120);
    heading->set_LabelHeight(360);
    heading->set_LabelWidth(9240);
    heading->set_FontName("Arial");
    heading->set_FontSize(12);
    heading->set_FontBold(true);
    heading->set_FontColor(kBlack);
    heading->set_LabelColor(kSilver);
    heading->set_Alignment(2);
    rows_ = 0;
    return screen;
  }

  void Note(const std::shared_ptr<ScreenItem>& screen, const std::string& text) {
    std::shared_ptr<LabelItem> label = screen->LabelItems()->Add(screen->LabelItems()->Count() + 1);
    label->set_parent(screen);
    label->set_LabelText(text);
    label->set_LabelLeft(120);
    label->set_LabelTop(6000);
    label->set_LabelHeight(300);
    label->set_LabelWidth(6000);
    label->set_FontName("Arial");
    label->set_FontSize(8.25F);
    label->set_FontItalic(true);
    label->set_FontColor(kBlack);
    label->set_LabelColor(kPaleYellow);
  }

  std::shared_ptr<DisplayItem> NewDisplay(const std::shared_ptr<ScreenItem>& screen) {
    std::shared_ptr<DisplayItem> display = screen->DisplayItems()->Add();
    display->set_parent(screen);
    display->set_DisplayLeft(240);
    display->set_DisplayTop(720 + 420 * rows_++);
    display->set_DisplayHeight(360);
    display->set_DisplayWidth(6000);
    display->set_CaptionWidth(3600);
    display->set_RangeItems(std::make_shared<RangeItems>());
    return display;
  }

  // A data display: the value of `dataName` as `requestName` places it (an input field when the
  // data is a parameter of that request).
  void Show(const std::shared_ptr<ScreenItem>& screen, const std::string& requestName, const std::string& dataName,
            std::initializer_list<Threshold> thresholds = {}) {
    std::shared_ptr<DisplayItem> display = NewDisplay(screen);
    display->set_TypeDisplay(kDataDisplay);
    auto reference = std::make_shared<DisplayDataItem>();
    reference->set_parent(display);
    reference->set_requestName(requestName);
    reference->set_dataName(dataName);
    display->set_DisplayDataItem(std::move(reference));
    for (const Threshold& threshold : thresholds) {
      std::shared_ptr<RangeItem> range = display->RangeItems()->Add(threshold.value);
      range->set_parent(display);
      range->set_Couleur(threshold.colour);
      if (threshold.tone != 0) {
        range->set_SonFlag(true);
        range->set_Son(threshold.tone);
      }
    }
  }

  // A request display: the whole reply of a request, or an input field that sends it.
  void ShowRequest(const std::shared_ptr<ScreenItem>& screen, const std::string& requestName, bool input) {
    std::shared_ptr<DisplayItem> display = NewDisplay(screen);
    display->set_TypeDisplay(kRequestDisplay);
    display->set_DisplayColor(kPaleYellow);
    auto reference = std::make_shared<DisplayExtraItem>();
    reference->set_parent(display);
    reference->set_requestName(requestName);
    reference->set_param(input);
    display->set_DisplayExtraItem(std::move(reference));
  }

  void Button(const std::shared_ptr<ScreenItem>& screen, const std::string& caption, const std::string& message,
              std::initializer_list<std::pair<std::string_view, std::int32_t>> steps) {
    std::shared_ptr<ButtonItem> button = screen->ButtonItems()->Add(caption);
    button->set_parent(screen);
    button->set_ButtonLeft(6600);
    button->set_ButtonTop(720 + 600 * (screen->ButtonItems()->Count() - 2));
    button->set_ButtonHeight(480);
    button->set_ButtonWidth(2760);
    button->set_FontName("Arial");
    button->set_FontSize(9.75F);
    button->set_FontBold(true);
    button->set_Message(message);
    for (const auto& [request, delay] : steps)
      button->ScenarioItems()->Add(std::string(request), delay)->set_parent(button);
  }

  std::shared_ptr<CategoryItem> Category(const std::string& name) {
    std::shared_ptr<CategoryItem> category = target_->Categories()->Add(name);
    category->set_parent(target_);
    category->set_Screens(std::make_shared<ScreenItems>());
    return category;
  }

  void Screens() {
    std::shared_ptr<CategoryItem> measures = Category("Measurements");

    auto engine = Screen(measures, "Engine", "Engine: live values", {"StartDiagnosticSession"});
    Show(engine, "ReadEngineValues", "EngineSpeed", {{0, kGreen}, {6200, kOrange}, {6800, kRed, 1000}});
    Show(engine, "ReadEngineValues", "CoolantTemperature",
         {{-40, kBlue}, {60, kGreen}, {105, kOrange}, {115, kRed, 880}});
    Show(engine, "ReadEngineValues", "IntakeAirTemperature");
    Show(engine, "ReadEngineValues", "OilTemperature", {{130, kOrange}, {150, kRed, 880}});
    Show(engine, "ReadEngineValues", "ManifoldPressure");
    Show(engine, "ReadEngineValues", "VehicleSpeed");
    Show(engine, "ReadEngineValues", "BatteryVoltage", {{0, kRed}, {11.5, kOrange}, {12.4, kGreen}, {14.8, kRed}});
    Show(engine, "ReadEngineValues", "EngineState");
    Show(engine, "ReadEngineValues", "MilStatus", {{0, kGreen}, {1, kOrange}});
    Show(engine, "ReadEngineValues", "EngineRunTime");

    auto fuel = Screen(measures, "FuelIgnition", "Fuel and ignition", {"StartDiagnosticSession"});
    Show(fuel, "ReadInjectionValues", "InjectionTime");
    Show(fuel, "ReadInjectionValues", "IgnitionAdvance");
    Show(fuel, "ReadInjectionValues", "LambdaVoltage", {{0, kOrange}, {0.1, kGreen}, {0.9, kOrange}});
    Show(fuel, "ReadInjectionValues", "ShortTermFuelTrim", {{-25, kOrange}, {-10, kGreen}, {10, kOrange}});
    Show(fuel, "ReadInjectionValues", "AirMassFlow");
    Show(fuel, "ReadInjectionValues", "FuelSystemStatus");
    Show(fuel, "ReadInjectionValues", "KnockRetard", {{0, kGreen}, {4.5, kOrange}});
    Show(fuel, "ReadInjectionValues", "FuelPressure", {{0, kRed}, {250, kGreen}, {400, kRed}});
    Show(fuel, "ReadInjectionValues", "EngineSpeed");

    auto inputs = Screen(measures, "Inputs", "Driver inputs and switches", {"StartDiagnosticSession"});
    Show(inputs, "ReadInputs", "ThrottlePosition");
    Show(inputs, "ReadInputs", "PedalPosition");
    Show(inputs, "ReadInputs", "AirConditioningRequest");
    Show(inputs, "ReadInputs", "BrakeSwitch");
    Show(inputs, "ReadInputs", "ImmobiliserStatus", {{0, kOrange}, {1, kGreen}, {2, kRed}});

    auto identification = Screen(measures, "Identification", "Identification", {"StartDiagnosticSession"});
    Show(identification, "ReadVin", "Vin");
    Show(identification, "ReadSoftwareIdentification", "SoftwareNumber");
    Show(identification, "ReadSoftwareIdentification", "HardwareNumber");

    std::shared_ptr<CategoryItem> faults = Category("Faults");
    auto status =
        Screen(faults, "SensorStatus", "Sensor and actuator status", {"StartDiagnosticSession", "ReadSensorStatus"});
    for (const char* name : {"CoolantSensorStatus", "AirTemperatureSensorStatus", "ThrottleSensorStatus",
                             "PedalSensorStatus", "LambdaSensorStatus", "KnockSensorStatus", "InjectorCircuitStatus",
                             "IgnitionCoilStatus", "FuelPumpRelayStatus", "FanRelayStatus"})
      Show(status, "ReadSensorStatus", name, {{0, kGreen}, {1, kOrange}, {2, kRed}});
    ShowRequest(status, "ReadDtcByStatus", false);
    Button(status, "Read fault codes", "", {{"ReadDtcByStatus", 0}});
    Button(status, "Clear fault codes", "Clear every stored fault code?",
           {{"ClearDiagnosticInformation", 500}, {"ReadDtcByStatus", 0}, {"ReadSensorStatus", 0}});
    Note(status, "Codes come back at once when the fault is still present.");

    std::shared_ptr<CategoryItem> tests = Category("Actuator tests");
    auto actuators = Screen(tests, "Actuators", "Actuator tests", {"StartAdjustmentSession"});
    Show(actuators, "ActuatorFanTest", "FanCommand");
    Show(actuators, "ActuatorPurgeValveTest", "CanisterPurgeDutyCycle");
    Show(actuators, "ReadActuatorTestResult", "ActuatorTestResult", {{0, kGreen}, {1, kRed}});
    Button(actuators, "Cooling fan", "Keep clear of the fan. Start the test?",
           {{"ActuatorFanTest", 5000}, {"ReadActuatorTestResult", 0}});
    Button(actuators, "Fuel pump", "Start the fuel pump for 5 seconds?",
           {{"ActuatorFuelPumpTest", 5000}, {"ReadActuatorTestResult", 0}});
    Button(actuators, "Purge valve", "", {{"ActuatorPurgeValveTest", 3000}, {"ReadActuatorTestResult", 0}});
    Note(actuators, "Engine stopped, ignition on.");

    auto adaptations = Screen(tests, "Adaptations", "Adaptations", {"StartAdjustmentSession", "SecurityRequestSeed"});
    Show(adaptations, "ReadInjectionValues", "IdleSpeedSetpoint");
    Show(adaptations, "WriteIdleSetpoint", "IdleSpeedSetpoint");
    ShowRequest(adaptations, "SecuritySendKey", true);
    Button(adaptations, "Write idle speed", "",
           {{"SecuritySendKey", 100}, {"WriteIdleSetpoint", 100}, {"TesterPresent", 0}});
    Button(adaptations, "Reset adaptations", "The learnt corrections will be lost. Continue?",
           {{"ResetAdaptations", 1000}, {"EcuReset", 2000}, {"StartAdjustmentSession", 0}});
  }

  // --- Identification answers that this description fits ---

  void AutoIdentifications() {
    target_->AutoIdents()->Add(12, "S017", "EC4_0412", "04.12", target_);
    target_->AutoIdents()->Add(12, "S017", "EC4_0507", "05.07", target_);
    target_->AutoIdents()->Add(14, "S023", "EC4B_0602", "06.02", target_);
  }

  TessalyLibXml& facade_;
  SampleLine line_;
  std::shared_ptr<TargetItem> target_;
  std::int32_t rows_ = 0;
};

}  // namespace

std::string SampleFileName(SampleLine line) {
  return line == SampleLine::kCan ? "engine-ecu-can.xml" : "engine-ecu.xml";
}

std::shared_ptr<TargetItem> BuildSampleEcu(TessalyLibXml& facade, SampleLine line) {
  return SampleBuilder(facade, line).Build();
}

std::string SampleDocument(SampleLine line) {
  TessalyLibXml facade;
  BuildSampleEcu(facade, line);
  std::string text = facade.ExportUceToText();
  facade.ClearTarget();
  return text;
}

}  // namespace tessaly::examples
