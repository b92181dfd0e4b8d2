// TargetParamItem: how a diagnostic tool talks to one ECU. It holds the protocol family (stored
// as the protocol's initialisation mode), the line speed, the K-line key bytes, the protocol
// timings, the CAN identifiers, the byte order of the ECU's data, the failure type, the boot
// name, the date of official release and a free comment.
//
// Each TargetItem owns exactly one. Its elements are direct children of the target's element;
// the global tables (failure types, protocols, functions) are reached through the parent chain
// parameters -> target -> facade.
#ifndef TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_
#define TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class TargetItem;
class TessalyLibXml;

// The output slot of isDefaultValue: an integer, a boolean or a text.
using DefaultValue = std::variant<std::monostate, std::int32_t, bool, std::string>;

// Default values of the parameters.
namespace param_defaults {
inline constexpr std::int32_t kInitMode = 2;
inline constexpr bool kMultiPoint = false;
inline constexpr std::int32_t kKey1 = 208;  // 0xD0
inline constexpr std::int32_t kKey2 = 143;  // 0x8F
inline constexpr std::int32_t kBaudRate = 10400;
inline constexpr std::int32_t kInterByteDelay = 0;
inline constexpr std::int32_t kKW2Delay = 25;
inline constexpr std::int32_t kFirstRequestDelay = 20;
inline constexpr std::int32_t kReplyToRequestDelay = 5;
inline constexpr std::int32_t kTesterPresentDelay = 3000;
inline constexpr std::int32_t kKW2Timeout = 300;
inline constexpr std::int32_t kRequestToReplyTimeout = 300;
inline constexpr std::int32_t kErrorDelay = 300;
inline constexpr bool kLittleEndian = false;
inline constexpr std::int32_t kTypePanneId = 0;
inline constexpr const char* kTypePanne = "Ne contient pas de pannes";
inline constexpr std::int32_t kToolAddress = 241;  // 0xF1
inline constexpr std::int32_t kNoCanId = -1;
}  // namespace param_defaults

// Initialisation modes that select a protocol element of their own when written.
namespace init_mode {
inline constexpr std::int32_t kIso8 = 0;
inline constexpr std::int32_t kKwpSlowInit = 1;
inline constexpr std::int32_t kKwpFastInit = 2;
inline constexpr std::int32_t kDiagOnCan = 3;
inline constexpr std::int32_t kCanMessaging = 255;
}  // namespace init_mode

class TargetParamItem {
 public:
  // Parameter indexes of isDefaultValue and SetDefaultValue.
  enum Index : std::int32_t {
    kInitModeIndex = 0,
    kMultiPointIndex = 1,
    kKey1Index = 2,
    kKey2Index = 3,
    kBaudRateIndex = 4,
    kInterByteDelayIndex = 5,
    kKW2DelayIndex = 6,
    kFirstRequestDelayIndex = 7,
    kReplyToRequestDelayIndex = 8,
    kTesterPresentDelayIndex = 9,
    kKW2TimeoutIndex = 10,
    kRequestToReplyTimeoutIndex = 11,
    kErrorDelayIndex = 12,
    kLittleEndianIndex = 13,
    kReprogrammableIndex = 14,
    kDateOfficialisationIndex = 15,
    kToolAddressIndex = 16,
  };

  TargetParamItem() = default;
  TargetParamItem(const TargetParamItem&) = delete;
  TargetParamItem& operator=(const TargetParamItem&) = delete;

  // Drops the parent link; nothing else is reset.
  void clear() { parent_.reset(); }

  // True when the parameter of `index` holds its default; the default is stored into
  // `defaultValue`. Index 15 (DateOfficialisation) and indexes outside 0..16 give false and leave
  // `defaultValue` untouched.
  bool isDefaultValue(std::int32_t index, DefaultValue& defaultValue) const;
  // Puts the parameter of `index` back to its default through its setter (the tool address is
  // stored directly). Indexes outside 0..16 do nothing.
  void SetDefaultValue(std::int32_t index);

  // The owning target, or null.
  std::shared_ptr<TargetItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<TargetItem>& value) { parent_ = value; }

  // Reading the tool address is asymmetric, and hosts rely on it: the read stores the tool
  // address into CanXId and returns 0. Writing stores the value.
  std::int32_t ToolAddress();
  void set_ToolAddress(std::int32_t value) { ToolAddress_ = value; }
  std::int32_t CanXId() const { return CanXId_; }
  void set_CanXId(std::int32_t value) { CanXId_ = value; }
  std::int32_t CanRId() const { return CanRId_; }
  void set_CanRId(std::int32_t value) { CanRId_ = value; }

  // The failure type, kept in step with the global failure types: writing the identifier takes
  // the label of the failure type with that id, writing the label takes the id of the failure
  // type with that label. Without a facade or a match the other value is left as it is.
  std::int32_t TypePanneId() const { return TypePanneId_; }
  void set_TypePanneId(std::int32_t value);
  const std::string& TypePanne() const { return TypePanne_; }
  void set_TypePanne(const std::string& value);

  const std::string& DateOfficialisation() const { return DateOfficialisation_; }
  void set_DateOfficialisation(const std::string& value) { SetText(DateOfficialisation_, value); }
  // The boot name; empty means the ECU is not reprogrammable.
  const std::string& Reprogrammable() const { return Reprogrammable_; }
  void set_Reprogrammable(const std::string& value) { SetText(Reprogrammable_, value); }
  bool LittleEndian() const { return LittleEndian_; }
  void set_LittleEndian(bool value) { LittleEndian_ = value; }
  std::int32_t ErrorDelay() const { return ErrorDelay_; }
  void set_ErrorDelay(std::int32_t value) { ErrorDelay_ = value; }
  std::int32_t RequestToReplyTimeout() const { return RequestToReplyTimeout_; }
  void set_RequestToReplyTimeout(std::int32_t value) { RequestToReplyTimeout_ = value; }
  std::int32_t KW2Timeout() const { return KW2Timeout_; }
  void set_KW2Timeout(std::int32_t value) { KW2Timeout_ = value; }
  std::int32_t TesterPresentDelay() const { return TesterPresentDelay_; }
  void set_TesterPresentDelay(std::int32_t value) { TesterPresentDelay_ = value; }
  std::int32_t ReplyToRequestDelay() const { return ReplyToRequestDelay_; }
  void set_ReplyToRequestDelay(std::int32_t value) { ReplyToRequestDelay_ = value; }
  std::int32_t FirstRequestDelay() const { return FirstRequestDelay_; }
  void set_FirstRequestDelay(std::int32_t value) { FirstRequestDelay_ = value; }
  std::int32_t KW2Delay() const { return KW2Delay_; }
  void set_KW2Delay(std::int32_t value) { KW2Delay_ = value; }
  std::int32_t InterByteDelay() const { return InterByteDelay_; }
  void set_InterByteDelay(std::int32_t value) { InterByteDelay_ = value; }
  std::int32_t BaudRate() const { return BaudRate_; }
  void set_BaudRate(std::int32_t value) { BaudRate_ = value; }
  std::int32_t key2() const { return key2_; }
  void set_key2(std::int32_t value) { key2_ = value; }
  std::int32_t key1() const { return key1_; }
  void set_key1(std::int32_t value) { key1_ = value; }
  bool multiPoint() const { return multiPoint_; }
  void set_multiPoint(bool value) { multiPoint_ = value; }
  std::int32_t initMode() const { return initMode_; }
  void set_initMode(std::int32_t value) { initMode_ = value; }
  const std::string& Comment() const { return Comment_; }
  void set_Comment(const std::string& value) { SetText(Comment_, value); }

  // Reads the parameters from the target's element. Every value is set to its default first; a
  // missing value, or one that does not convert, keeps the default. Never fails: the error
  // state is clear when it returns.
  void loadXml(pugi::xml_node parNode);

  // Reads the CAN child of `node` into the output arguments and returns true; returns false and
  // leaves them untouched when `node` has no CAN child. A value that is missing or does not
  // convert gives its default; nothing is recorded in the error state.
  bool isCan(pugi::xml_node node, bool& multiPoint, std::int32_t& initMode, std::int32_t& BaudRate,
             std::int32_t& CanXId, std::int32_t& CanRId);

  // Appends the parameter elements to the target's element `parNode`.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode);

 private:
  class Reader;

  static void SetText(std::string& field, const std::string& value) {
    if (field != value) field = value;
  }
  // The facade reached through the target, or null.
  std::shared_ptr<TessalyLibXml> Facade() const;
  bool ReadCan(pugi::xml_node node, bool& multi, std::int32_t& init, std::int32_t& baud, std::int32_t& sendId,
               std::int32_t& receiveId, const Reader& reader);
  void ReadKLine(pugi::xml_node k, const Reader& reader);
  void ReadGenericProtocol(pugi::xml_node protocol, const Reader& reader);
  void WriteKLine(xml::Out parNode) const;
  void WriteCan(xml::Out parNode) const;
  void WriteGenericProtocol(xml::Out parNode) const;

  std::string Comment_;
  std::int32_t initMode_ = param_defaults::kInitMode;
  bool multiPoint_ = param_defaults::kMultiPoint;
  std::int32_t key1_ = param_defaults::kKey1;
  std::int32_t key2_ = param_defaults::kKey2;
  std::int32_t BaudRate_ = param_defaults::kBaudRate;
  std::int32_t InterByteDelay_ = param_defaults::kInterByteDelay;
  std::int32_t KW2Delay_ = param_defaults::kKW2Delay;
  std::int32_t FirstRequestDelay_ = param_defaults::kFirstRequestDelay;
  std::int32_t ReplyToRequestDelay_ = param_defaults::kReplyToRequestDelay;
  std::int32_t TesterPresentDelay_ = param_defaults::kTesterPresentDelay;
  std::int32_t KW2Timeout_ = param_defaults::kKW2Timeout;
  std::int32_t RequestToReplyTimeout_ = param_defaults::kRequestToReplyTimeout;
  std::int32_t ErrorDelay_ = param_defaults::kErrorDelay;
  bool LittleEndian_ = param_defaults::kLittleEndian;
  std::string Reprogrammable_;
  std::string DateOfficialisation_;
  std::int32_t TypePanneId_ = param_defaults::kTypePanneId;
  std::string TypePanne_ = param_defaults::kTypePanne;
  std::int32_t ToolAddress_ = param_defaults::kToolAddress;
  std::int32_t CanXId_ = param_defaults::kNoCanId;
  std::int32_t CanRId_ = param_defaults::kNoCanId;
  std::weak_ptr<TargetItem> parent_;
};

}  // namespace tessaly

#endif  // TESSALY_PARAMS_TARGET_PARAM_ITEM_HPP_
