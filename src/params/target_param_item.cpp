#include "tessaly/params/target_param_item.hpp"

#include <string_view>
#include <utility>

#include "common/xml_util.hpp"
#include "target/reporting.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/facade/function_item.hpp"
#include "tessaly/facade/reference_tables.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

namespace pd = param_defaults;

constexpr const char* kWriterClass = "TargetParamItem.createXMLnode";

// An attribute found by a relative path, with the element that carries it.
struct Found {
  pugi::xml_node element;
  pugi::xml_attribute attribute;
};

// The first attribute `name`, in document order, of the elements reached from `node` by the
// '/'-separated element path (an empty path means `node` itself). Like an XPath "path/@name"
// selection, an element of the path that lacks the attribute does not hide a later one that
// has it.
Found FindAttribute(pugi::xml_node node, std::string_view path, const char* name) {
  if (path.empty()) {
    pugi::xml_attribute attribute = node.attribute(name);
    return attribute ? Found{node, attribute} : Found{};
  }
  auto slash = path.find('/');
  std::string head(path.substr(0, slash));
  std::string_view rest = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
  for (pugi::xml_node child = node.child(head.c_str()); child; child = child.next_sibling(head.c_str())) {
    if (child.type() != pugi::node_element) continue;
    Found found = FindAttribute(child, rest, name);
    if (found.attribute) return found;
  }
  return {};
}

xml::Out AppendWithAttr(xml::Out parent, const char* element, const char* attribute,
                              std::int32_t value) {
  xml::Out node = xml::AppendElement(parent, element);
  xml::SetAttr(node, attribute, value);
  return node;
}

// ISO8 holding: LF, L, LF, KW1, LF, KW2, LF, FirstRequest, LF.
void WriteIso8(xml::Out parent, std::int32_t key1, std::int32_t key2, std::int32_t kw2Timeout,
               std::int32_t firstRequestDelay) {
  xml::Out iso8 = xml::AppendElement(parent, "ISO8");
  xml::AppendLf(iso8);
  xml::AppendElement(iso8, "L");
  xml::AppendLf(iso8);
  AppendWithAttr(iso8, "KW1", "Value", key1);
  xml::AppendLf(iso8);
  xml::Out kw2 = AppendWithAttr(iso8, "KW2", "Value", key2);
  xml::SetAttr(kw2, "Timeout", kw2Timeout);
  xml::AppendLf(iso8);
  AppendWithAttr(iso8, "FirstRequest", "Delay", firstRequestDelay);
  xml::AppendLf(iso8);
}

// SendId or ReceiveId holding LF, CANId, LF.
void WriteIdContainer(xml::Out parent, const char* container, std::int32_t id) {
  xml::Out node = xml::AppendElement(parent, container);
  xml::AppendLf(node);
  WriteCanId(node, id);
  xml::AppendLf(node);
}

}  // namespace

// Reads single values default-first. A value that is present but does not convert keeps the
// default and is reported to the diagnostics callback as a repair; no error is recorded.
class TargetParamItem::Reader {
 public:
  explicit Reader(const TargetItem* target) : target_(target) {}

  void Int(pugi::xml_node base, std::string_view path, const char* name, std::int32_t& field,
           std::int32_t fallback) const {
    field = fallback;
    Found found = FindAttribute(base, path, name);
    if (!found.attribute) return;
    try {
      field = ToInt32(found.attribute.value());
    } catch (const Error& error) {
      Repaired(found, error, IntText(fallback));
    }
  }

  void Bool(pugi::xml_node base, std::string_view path, const char* name, bool& field, bool fallback) const {
    field = fallback;
    Found found = FindAttribute(base, path, name);
    if (!found.attribute) return;
    try {
      field = ToBool(found.attribute.value());
    } catch (const Error& error) {
      Repaired(found, error, fallback ? "1" : "0");
    }
  }

  void Text(pugi::xml_node base, std::string_view path, const char* name, std::string& field) const {
    field.clear();
    Found found = FindAttribute(base, path, name);
    if (found.attribute) field = found.attribute.value();
  }

  // A CAN identifier of `can` ("SendId" or "ReceiveId"): -1 first, then the CANId read.
  void CanId(pugi::xml_node can, const char* container, std::int32_t& id) const {
    id = pd::kNoCanId;
    try {
      ReadCanId(can, container, id);
    } catch (const Error& error) {
      pugi::xml_node element = xml::Path(can, std::string(container) + "/CANId");
      Repaired(Found{element, element.attribute("Value")}, error, IntText(pd::kNoCanId));
    }
  }

  std::string Where(pugi::xml_node element) const {
    return std::string(element.name()) + " in target " + (target_ != nullptr ? target_->name() : std::string());
  }

 private:
  void Repaired(const Found& found, const Error& error, const std::string& fallback) const {
    if (auto facade = DiagnosticsOf(target_))
      facade->ReportDiagnostic(Diagnostic::Action::kRepaired, found.element,
                               "@" + std::string(found.attribute.name()) + " of " + Where(found.element),
                               error.Description() + ": \"" + found.attribute.value() + "\" read as the default " +
                                   fallback);
  }

  const TargetItem* target_;
};

std::int32_t TargetParamItem::ToolAddress() {
  set_CanXId(ToolAddress_);
  return 0;
}

std::shared_ptr<TessalyLibXml> TargetParamItem::Facade() const {
  std::shared_ptr<TargetItem> target = parent();
  return target ? target->parent() : nullptr;
}

void TargetParamItem::set_TypePanneId(std::int32_t value) {
  TypePanneId_ = value;
  std::shared_ptr<TessalyLibXml> facade = Facade();
  if (!facade || !facade->Pannes()) return;
  if (auto failure = facade->Pannes()->ItemId(value)) TypePanne_ = failure->libelle();
}

void TargetParamItem::set_TypePanne(const std::string& value) {
  if (value == TypePanne_) return;
  TypePanne_ = value;
  std::shared_ptr<TessalyLibXml> facade = Facade();
  if (!facade || !facade->Pannes()) return;
  if (auto failure = facade->Pannes()->ItemName(value)) TypePanneId_ = failure->id();
}

bool TargetParamItem::isDefaultValue(std::int32_t index, DefaultValue& defaultValue) const {
  switch (index) {
    case kInitModeIndex: defaultValue = pd::kInitMode; return initMode_ == pd::kInitMode;
    case kMultiPointIndex: defaultValue = pd::kMultiPoint; return multiPoint_ == pd::kMultiPoint;
    case kKey1Index: defaultValue = pd::kKey1; return key1_ == pd::kKey1;
    case kKey2Index: defaultValue = pd::kKey2; return key2_ == pd::kKey2;
    case kBaudRateIndex: defaultValue = pd::kBaudRate; return BaudRate_ == pd::kBaudRate;
    case kInterByteDelayIndex: defaultValue = pd::kInterByteDelay; return InterByteDelay_ == pd::kInterByteDelay;
    case kKW2DelayIndex: defaultValue = pd::kKW2Delay; return KW2Delay_ == pd::kKW2Delay;
    case kFirstRequestDelayIndex:
      defaultValue = pd::kFirstRequestDelay;
      return FirstRequestDelay_ == pd::kFirstRequestDelay;
    case kReplyToRequestDelayIndex:
      defaultValue = pd::kReplyToRequestDelay;
      return ReplyToRequestDelay_ == pd::kReplyToRequestDelay;
    case kTesterPresentDelayIndex:
      defaultValue = pd::kTesterPresentDelay;
      return TesterPresentDelay_ == pd::kTesterPresentDelay;
    case kKW2TimeoutIndex: defaultValue = pd::kKW2Timeout; return KW2Timeout_ == pd::kKW2Timeout;
    case kRequestToReplyTimeoutIndex:
      defaultValue = pd::kRequestToReplyTimeout;
      return RequestToReplyTimeout_ == pd::kRequestToReplyTimeout;
    case kErrorDelayIndex: defaultValue = pd::kErrorDelay; return ErrorDelay_ == pd::kErrorDelay;
    case kLittleEndianIndex: defaultValue = pd::kLittleEndian; return LittleEndian_ == pd::kLittleEndian;
    case kReprogrammableIndex: defaultValue = std::string(); return Reprogrammable_.empty();
    case kToolAddressIndex: defaultValue = pd::kToolAddress; return ToolAddress_ == pd::kToolAddress;
    default: return false;  // DateOfficialisation, and indexes outside the table
  }
}

void TargetParamItem::SetDefaultValue(std::int32_t index) {
  switch (index) {
    case kInitModeIndex: set_initMode(pd::kInitMode); break;
    case kMultiPointIndex: set_multiPoint(pd::kMultiPoint); break;
    case kKey1Index: set_key1(pd::kKey1); break;
    case kKey2Index: set_key2(pd::kKey2); break;
    case kBaudRateIndex: set_BaudRate(pd::kBaudRate); break;
    case kInterByteDelayIndex: set_InterByteDelay(pd::kInterByteDelay); break;
    case kKW2DelayIndex: set_KW2Delay(pd::kKW2Delay); break;
    case kFirstRequestDelayIndex: set_FirstRequestDelay(pd::kFirstRequestDelay); break;
    case kReplyToRequestDelayIndex: set_ReplyToRequestDelay(pd::kReplyToRequestDelay); break;
    case kTesterPresentDelayIndex: set_TesterPresentDelay(pd::kTesterPresentDelay); break;
    case kKW2TimeoutIndex: set_KW2Timeout(pd::kKW2Timeout); break;
    case kRequestToReplyTimeoutIndex: set_RequestToReplyTimeout(pd::kRequestToReplyTimeout); break;
    case kErrorDelayIndex: set_ErrorDelay(pd::kErrorDelay); break;
    case kLittleEndianIndex: set_LittleEndian(pd::kLittleEndian); break;
    case kReprogrammableIndex: set_Reprogrammable(std::string()); break;
    case kDateOfficialisationIndex: set_DateOfficialisation(std::string()); break;
    case kToolAddressIndex: ToolAddress_ = pd::kToolAddress; break;
    default: break;
  }
}

// ---------------------------------------------------------------------------------------------
// Reading

bool TargetParamItem::isCan(pugi::xml_node node, bool& multiPoint, std::int32_t& initMode, std::int32_t& BaudRate,
                            std::int32_t& CanXId, std::int32_t& CanRId) {
  // Called by the target as well as by loadXml; only loadXml's own reading reports repairs, so
  // that one damaged value is reported once.
  return ReadCan(node, multiPoint, initMode, BaudRate, CanXId, CanRId, Reader(nullptr));
}

bool TargetParamItem::ReadCan(pugi::xml_node node, bool& multi, std::int32_t& init, std::int32_t& baud,
                              std::int32_t& sendId, std::int32_t& receiveId, const Reader& reader) {
  pugi::xml_node can = xml::Child(node, "CAN");
  if (!can) return false;
  reader.Int(can, "", "BaudRate", baud, pd::kBaudRate);
  reader.Bool(can, "", "Multipoint", multi, false);
  reader.CanId(can, "SendId", sendId);
  reader.CanId(can, "ReceiveId", receiveId);
  init = xml::Child(can, "SendId") ? init_mode::kDiagOnCan : init_mode::kCanMessaging;
  return true;
}

void TargetParamItem::ReadKLine(pugi::xml_node k, const Reader& reader) {
  reader.Int(k, "", "BaudRate", BaudRate_, pd::kBaudRate);
  auto readIso8 = [&](pugi::xml_node iso8) {
    reader.Int(iso8, "FirstRequest", "Delay", FirstRequestDelay_, pd::kFirstRequestDelay);
    reader.Int(iso8, "KW1", "Value", key1_, pd::kKey1);
    reader.Int(iso8, "KW2", "Value", key2_, pd::kKey2);
    reader.Int(iso8, "KW2", "Timeout", KW2Timeout_, pd::kKW2Timeout);
  };
  if (pugi::xml_node iso8 = xml::Child(k, "ISO8")) {
    initMode_ = init_mode::kIso8;
    multiPoint_ = false;
    readIso8(iso8);
  } else if (pugi::xml_node kwp = xml::Child(k, "KWP")) {
    reader.Bool(k, "KWP", "Multipoint", multiPoint_, pd::kMultiPoint);
    if (pugi::xml_node kwpIso8 = xml::Child(kwp, "ISO8")) {
      initMode_ = init_mode::kKwpSlowInit;
      readIso8(kwpIso8);
      reader.Int(kwp, "KW2_", "Delay", KW2Delay_, pd::kKW2Delay);
    } else {
      reader.Int(kwp, "FastInit/KW1", "Value", key1_, pd::kKey1);
      reader.Int(kwp, "FastInit/KW2", "Value", key2_, pd::kKey2);
      initMode_ = init_mode::kKwpFastInit;
    }
  }
  reader.Int(k, "InterByte", "Delay", InterByteDelay_, pd::kInterByteDelay);
  reader.Int(k, "ReplyToRequest", "Delay", ReplyToRequestDelay_, pd::kReplyToRequestDelay);
  reader.Int(k, "RequestToReply", "Timeout", RequestToReplyTimeout_, pd::kRequestToReplyTimeout);
  reader.Int(k, "TesterPresent", "Delay", TesterPresentDelay_, pd::kTesterPresentDelay);
  reader.Int(k, "OnError", "Delay", ErrorDelay_, pd::kErrorDelay);
}

void TargetParamItem::ReadGenericProtocol(pugi::xml_node protocol, const Reader& reader) {
  reader.Int(protocol, "", "InitMode", initMode_, pd::kInitMode);
  reader.Bool(protocol, "", "Multipoint", multiPoint_, pd::kMultiPoint);
  reader.Int(protocol, "", "BaudRate", BaudRate_, pd::kBaudRate);
  reader.Int(protocol, "InterByte", "Delay", InterByteDelay_, pd::kInterByteDelay);
  reader.Int(protocol, "ReplyToRequest", "Delay", ReplyToRequestDelay_, pd::kReplyToRequestDelay);
  reader.Int(protocol, "RequestToReply", "Timeout", RequestToReplyTimeout_, pd::kRequestToReplyTimeout);
  reader.Int(protocol, "TesterPresent", "Delay", TesterPresentDelay_, pd::kTesterPresentDelay);
  reader.Int(protocol, "OnError", "Delay", ErrorDelay_, pd::kErrorDelay);
  reader.Int(protocol, "FirstRequest", "Delay", FirstRequestDelay_, pd::kFirstRequestDelay);
  reader.Int(protocol, "KW1", "Value", key1_, pd::kKey1);
  reader.Int(protocol, "KW2", "Value", key2_, pd::kKey2);
  reader.Int(protocol, "KW2", "Timeout", KW2Timeout_, pd::kKW2Timeout);
  reader.Int(protocol, "KW2_", "Delay", KW2Delay_, pd::kKW2Delay);
}

void TargetParamItem::loadXml(pugi::xml_node parNode) {
  Err().Clear();
  std::shared_ptr<TargetItem> target = parent();
  const Reader reader(target.get());

  // The free comment: the Description element, else the first XML comment. Line feeds come
  // back as carriage return + line feed pairs.
  if (pugi::xml_node description = xml::Child(parNode, "Description")) {
    Comment_ = std::string(TrimSpaces(LfToCrLf(xml::Text(description))));
  } else if (pugi::xml_node comment = xml::FirstComment(parNode)) {
    Comment_ = LfToCrLf(comment.value());
  } else {
    Comment_.clear();
  }

  LittleEndian_ = pd::kLittleEndian;
  if (Found endian = FindAttribute(parNode, "Requests", "Endian"); endian.attribute)
    LittleEndian_ = std::string_view(endian.attribute.value()) == "Little";

  DateOfficialisation_.clear();
  if (pugi::xml_node date = xml::Child(parNode, "DateOfficialisation")) DateOfficialisation_ = xml::Text(date);

  reader.Text(parNode, "Boot", "Name", Reprogrammable_);

  // The failure type: only the identifier is read; the label comes from the global table. An
  // identifier the table does not know falls back to "no failures".
  reader.Int(parNode, "Failures", "Id", TypePanneId_, pd::kTypePanneId);
  std::shared_ptr<TessalyLibXml> facade = target ? target->parent() : nullptr;
  std::shared_ptr<PanneItem> failure =
      facade && facade->Pannes() ? facade->Pannes()->ItemId(TypePanneId_) : nullptr;
  if (failure) {
    TypePanne_ = failure->libelle();
  } else {
    pugi::xml_node failures = xml::Child(parNode, "Failures");
    if (auto diagnostics = failures ? DiagnosticsOf(target.get()) : nullptr) {
      diagnostics->ReportDiagnostic(Diagnostic::Action::kRepaired, failures, reader.Where(failures),
                                    "No failure type of Id " + IntText(TypePanneId_) + ", read as Id 0 \"" +
                                        pd::kTypePanne + "\"");
    }
    TypePanneId_ = pd::kTypePanneId;
    TypePanne_ = pd::kTypePanne;
  }

  if (pugi::xml_node k = xml::Child(parNode, "K")) {
    ReadKLine(k, reader);
  } else if (!ReadCan(parNode, multiPoint_, initMode_, BaudRate_, CanXId_, CanRId_, reader)) {
    if (pugi::xml_node protocol = xml::Child(parNode, "Protocol")) ReadGenericProtocol(protocol, reader);
  }
  Err().Clear();
}

// ---------------------------------------------------------------------------------------------
// Writing

void TargetParamItem::createXMLnode(xml::Out parNode) {
  const std::string comment(TrimSpaces(Comment_));
  if (!comment.empty()) xml::AppendCData(xml::AppendElement(parNode, "Description"), comment);
  xml::AppendLf(parNode);

  xml::Out date = xml::AppendElement(parNode, "DateOfficialisation");
  if (!DateOfficialisation_.empty()) xml::AppendText(date, DateOfficialisation_);
  xml::AppendLf(parNode);

  xml::Out failures = xml::AppendElement(parNode, "Failures");
  xml::SetAttr(failures, "Name", TypePanne_);
  xml::SetAttr(failures, "Id", TypePanneId_);

  if (!Reprogrammable_.empty()) {
    xml::AppendLf(parNode);
    xml::SetAttr(xml::AppendElement(parNode, "Boot"), "Name", Reprogrammable_);
  }

  // A placeholder of fixed content, never read back.
  xml::AppendLf(parNode);
  xml::Out power = xml::AppendElement(parNode, "PowerSupply");
  for (const char* line : {"Ground", "Vbat", "AfterContact"}) {
    xml::AppendLf(power);
    xml::AppendElement(power, line);
  }
  xml::AppendLf(power);

  xml::AppendLf(parNode);
  switch (initMode_) {
    case init_mode::kIso8:
    case init_mode::kKwpSlowInit:
    case init_mode::kKwpFastInit: WriteKLine(parNode); break;
    case init_mode::kDiagOnCan:
    case init_mode::kCanMessaging: WriteCan(parNode); break;
    default: WriteGenericProtocol(parNode); break;
  }
}

void TargetParamItem::WriteKLine(xml::Out parNode) const {
  xml::Out k = AppendWithAttr(parNode, "K", "BaudRate", BaudRate_);
  xml::AppendLf(k);
  if (initMode_ == init_mode::kIso8) {
    WriteIso8(k, key1_, key2_, KW2Timeout_, FirstRequestDelay_);
  } else {
    xml::Out kwp = xml::AppendElement(k, "KWP");
    xml::SetBoolAttr(kwp, "Multipoint", multiPoint_);
    xml::AppendLf(kwp);
    if (initMode_ == init_mode::kKwpFastInit) {
      xml::Out fastInit = xml::AppendElement(kwp, "FastInit");
      AppendWithAttr(fastInit, "KW1", "Value", key1_);
      xml::AppendLf(fastInit);
      AppendWithAttr(fastInit, "KW2", "Value", key2_);
    } else {
      WriteIso8(kwp, key1_, key2_, KW2Timeout_, FirstRequestDelay_);
      AppendWithAttr(kwp, "KW2_", "Delay", KW2Delay_);
    }
    xml::AppendLf(kwp);
  }
  xml::AppendLf(k);
  AppendWithAttr(k, "InterByte", "Delay", InterByteDelay_);
  xml::AppendLf(k);
  AppendWithAttr(k, "ReplyToRequest", "Delay", ReplyToRequestDelay_);
  xml::AppendLf(k);
  AppendWithAttr(k, "RequestToReply", "Timeout", RequestToReplyTimeout_);
  xml::AppendLf(k);
  AppendWithAttr(k, "TesterPresent", "Delay", TesterPresentDelay_);
  xml::AppendLf(k);
  AppendWithAttr(k, "OnError", "Delay", ErrorDelay_);
  xml::AppendLf(k);
}

void TargetParamItem::WriteCan(xml::Out parNode) const {
  xml::Out can = AppendWithAttr(parNode, "CAN", "BaudRate", BaudRate_);
  xml::SetBoolAttr(can, "Multipoint", multiPoint_);
  xml::AppendLf(can);
  if (initMode_ != init_mode::kDiagOnCan) return;

  // The identifiers written are those of the functions-table entry of the target's address,
  // not this object's own fields.
  std::shared_ptr<TargetItem> target = parent();
  std::shared_ptr<TessalyLibXml> facade = target ? target->parent() : nullptr;
  std::shared_ptr<FunctionItem> function =
      facade && facade->functions() ? facade->functions()->ItemAddress(target->Address()) : nullptr;
  if (!function) {
    // The rest of the document is still worth saving: the identifiers are left out and the host
    // is told.
    Warn(target.get(), kWriterClass,
         "No function of address " + IntText(target ? target->Address() : 0) +
             " in the functions table, CAN identifiers not written");
    return;
  }
  if (function->CanXId() != pd::kNoCanId) WriteIdContainer(can, "SendId", function->CanXId());
  if (function->CanRId() != pd::kNoCanId) WriteIdContainer(can, "ReceiveId", function->CanRId());
}

void TargetParamItem::WriteGenericProtocol(xml::Out parNode) const {
  xml::Out protocol = xml::AppendElement(parNode, "Protocol");
  std::shared_ptr<TessalyLibXml> facade = Facade();
  std::shared_ptr<ProtocolItem> known =
      facade && facade->protocols() ? facade->protocols()->ItemId(initMode_) : nullptr;
  if (known) xml::SetAttr(protocol, "Name", known->protocolName());
  xml::SetAttr(protocol, "InitMode", initMode_);
  xml::SetBoolAttr(protocol, "Multipoint", multiPoint_);
  xml::SetAttr(protocol, "BaudRate", BaudRate_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "InterByte", "Delay", InterByteDelay_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "ReplyToRequest", "Delay", ReplyToRequestDelay_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "RequestToReply", "Timeout", RequestToReplyTimeout_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "TesterPresent", "Delay", TesterPresentDelay_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "OnError", "Delay", ErrorDelay_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "KW1", "Value", key1_);
  xml::AppendLf(protocol);
  xml::Out kw2 = AppendWithAttr(protocol, "KW2", "Value", key2_);
  xml::SetAttr(kw2, "Timeout", KW2Timeout_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "KW2_", "Delay", KW2Delay_);
  xml::AppendLf(protocol);
  AppendWithAttr(protocol, "FirstRequest", "Delay", FirstRequestDelay_);
  xml::AppendLf(protocol);
}

}  // namespace tessaly
