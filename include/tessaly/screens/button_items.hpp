// Buttons: a button on a screen sends its scenario (an ordered list of requests, each followed
// by a delay) to the ECU when pressed, and may show a message first. Every screen also has one
// hidden init button whose scenario runs when the screen opens; it is written in the screen's
// own element rather than as a Button. A screen owns the ButtonItems list of its buttons.
//
// Thread safety: none; a button belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_BUTTON_ITEMS_HPP_
#define TESSALY_SCREENS_BUTTON_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class ScreenItem;
class ScenarioItems;

class ButtonItem : public std::enable_shared_from_this<ButtonItem> {
 public:
  const std::string& caption() const { return caption_; }
  void set_caption(std::string value) { caption_ = std::move(value); }
  std::int32_t ButtonLeft() const { return ButtonLeft_; }
  void set_ButtonLeft(std::int32_t value) { ButtonLeft_ = value; }
  std::int32_t ButtonTop() const { return ButtonTop_; }
  void set_ButtonTop(std::int32_t value) { ButtonTop_ = value; }
  std::int32_t ButtonHeight() const { return ButtonHeight_; }
  void set_ButtonHeight(std::int32_t value) { ButtonHeight_ = value; }
  std::int32_t ButtonWidth() const { return ButtonWidth_; }
  void set_ButtonWidth(std::int32_t value) { ButtonWidth_ = value; }
  const std::string& FontName() const { return FontName_; }
  void set_FontName(std::string value) { FontName_ = std::move(value); }
  // Font size in points, fraction kept.
  float FontSize() const { return FontSize_; }
  void set_FontSize(float value) { FontSize_ = value; }
  bool FontBold() const { return FontBold_; }
  void set_FontBold(bool value) { FontBold_ = value; }
  bool FontItalic() const { return FontItalic_; }
  void set_FontItalic(bool value) { FontItalic_ = value; }
  // Shown when the button is pressed.
  const std::string& Message() const { return Message_; }
  void set_Message(std::string value) { Message_ = std::move(value); }
  // True for a screen's init button.
  bool InitButton() const { return InitButton_; }
  void set_InitButton(bool value) { InitButton_ = value; }
  // The scenario; an empty one is created on the first call when there is none, so this never
  // returns null.
  const std::shared_ptr<tessaly::ScenarioItems>& ScenarioItems();
  void set_ScenarioItems(std::shared_ptr<tessaly::ScenarioItems> value) { ScenarioItems_ = std::move(value); }
  // Whether the button holds a scenario list (without creating one).
  bool HasScenario() const { return ScenarioItems_ != nullptr; }
  // The owning screen, or null.
  std::shared_ptr<ScreenItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<ScreenItem>& value) { parent_ = value; }

  // Releases the parent, then clears and releases the scenario.
  void clear();
  // Fills the Button element: Text (and InitButton="1" for an init button), Rectangle, Font,
  // Message (always), then the Send steps when there is a scenario list.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Button element; values that are missing or do not convert keep their defaults. A
  // button with InitButton true becomes its screen's init button. The scenario is read last; a
  // dropped step leaves its error pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string caption_;
  std::int32_t ButtonLeft_ = 0;
  std::int32_t ButtonTop_ = 0;
  std::int32_t ButtonHeight_ = 0;
  std::int32_t ButtonWidth_ = 0;
  std::string FontName_;
  float FontSize_ = 12.0F;
  bool FontBold_ = false;
  bool FontItalic_ = false;
  std::string Message_;
  bool InitButton_ = false;
  std::shared_ptr<tessaly::ScenarioItems> ScenarioItems_;
  std::weak_ptr<ScreenItem> parent_;
};

class ButtonItems : public Collection<ButtonItem> {
 public:
  // Creates a button with that caption and adds it, under `sKey` when not empty.
  std::shared_ptr<ButtonItem> Add(std::string caption, std::string_view sKey = {});
  // Adds an existing button, under `sKey` when not empty.
  std::shared_ptr<ButtonItem> AddData(const std::shared_ptr<ButtonItem>& vData, std::string_view sKey = {});
  // Clears and removes the very same object; an item not held is ignored.
  void Delete(const std::shared_ptr<ButtonItem>& item) { DeleteItem(item.get()); }
  void clear() { ClearItems(); }

  // For each button that is not an init button: a line feed, then a Button element. No
  // trailing line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Button child of the Screen element, in document order, appending each after the
  // buttons already held; every button is kept.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_BUTTON_ITEMS_HPP_
