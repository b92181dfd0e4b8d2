// Screens: one window of the diagnostic tool each, with its size, background colour and window
// state, its static labels, its live displays, its buttons and one hidden init button whose
// scenario runs when the screen opens. A category owns the ScreenItems list of its screens,
// keyed "k" + screen name (keys ignore letter case).
//
// Thread safety: none; a screen belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_SCREEN_ITEMS_HPP_
#define TESSALY_SCREENS_SCREEN_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class CategoryItem;
class ButtonItem;
class ButtonItems;
class LabelItems;
class DisplayItems;

// White, packed 0x00BBGGRR.
inline constexpr std::int32_t kWhite = 16777215;

class ScreenItem : public std::enable_shared_from_this<ScreenItem> {
 public:
  const std::string& screenName() const { return screenName_; }
  void set_screenName(std::string value) { screenName_ = std::move(value); }
  // Kept for the host; never read from or written to XML.
  std::int32_t InitId() const { return InitId_; }
  void set_InitId(std::int32_t value) { InitId_ = value; }
  std::int32_t WindowState() const { return WindowState_; }
  void set_WindowState(std::int32_t value) { WindowState_ = value; }
  std::int32_t ScreenWidth() const { return ScreenWidth_; }
  void set_ScreenWidth(std::int32_t value) { ScreenWidth_ = value; }
  std::int32_t ScreenHeight() const { return ScreenHeight_; }
  void set_ScreenHeight(std::int32_t value) { ScreenHeight_ = value; }
  // Background colour, packed 0x00BBGGRR.
  std::int32_t ScreenColor() const { return ScreenColor_; }
  void set_ScreenColor(std::int32_t value) { ScreenColor_ = value; }

  // The init button; after a load also the first entry of ButtonItems.
  const std::shared_ptr<ButtonItem>& ButtonInit() const { return ButtonInit_; }
  void set_ButtonInit(std::shared_ptr<ButtonItem> value) { ButtonInit_ = std::move(value); }
  // The child lists are null until loadXml creates them (or the host sets them).
  const std::shared_ptr<tessaly::ButtonItems>& ButtonItems() const { return ButtonItems_; }
  void set_ButtonItems(std::shared_ptr<tessaly::ButtonItems> value) { ButtonItems_ = std::move(value); }
  const std::shared_ptr<tessaly::LabelItems>& LabelItems() const { return LabelItems_; }
  void set_LabelItems(std::shared_ptr<tessaly::LabelItems> value) { LabelItems_ = std::move(value); }
  const std::shared_ptr<tessaly::DisplayItems>& DisplayItems() const { return DisplayItems_; }
  void set_DisplayItems(std::shared_ptr<tessaly::DisplayItems> value) { DisplayItems_ = std::move(value); }
  // The owning category, or null.
  std::shared_ptr<CategoryItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<CategoryItem>& value) { parent_ = value; }

  // Releases the parent and the init button, then clears and releases each child list.
  void clear();
  // Fills the Screen element: Name, Color, WindowState, Width, Height (always, in that order),
  // then the labels, the init button's message and Send steps, the buttons and the displays.
  // Throws error 91 when a data display cannot resolve its request or data, or when a button
  // with steps is not attached to a target.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Screen element. Without a Name attribute the screen keeps its defaults and gets no
  // contents (reported and cleared at once). Otherwise it creates its init button (first in
  // the button list) and reads, in order, the init button's Send steps, the labels, the
  // buttons and the displays. An attribute that does not convert keeps its default.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::string screenName_;
  std::int32_t InitId_ = 0;
  std::int32_t WindowState_ = 0;
  std::int32_t ScreenWidth_ = 600;
  std::int32_t ScreenHeight_ = 400;
  std::int32_t ScreenColor_ = kWhite;
  std::shared_ptr<ButtonItem> ButtonInit_;
  std::shared_ptr<tessaly::ButtonItems> ButtonItems_;
  std::shared_ptr<tessaly::LabelItems> LabelItems_;
  std::shared_ptr<tessaly::DisplayItems> DisplayItems_;
  std::weak_ptr<CategoryItem> parent_;
};

class ScreenItems : public Collection<ScreenItem> {
 public:
  // Creates a screen with that name and adds it with AddData.
  std::shared_ptr<ScreenItem> Add(std::string screenName);
  // Adds the screen under the key "k" + its name. A name already used (ignoring letter case)
  // fails with the collection's error 457 and adds nothing.
  std::shared_ptr<ScreenItem> AddData(const std::shared_ptr<ScreenItem>& vData);
  // The first screen whose name equals `name` exactly, or null.
  std::shared_ptr<ScreenItem> ItemName(std::string_view name) const;
  // Removes the first entry whose name equals the item's name; the entry is not cleared.
  void Delete(const std::shared_ptr<ScreenItem>& item);
  void clear() { ClearItems(); }

  // For each screen: a line feed, then a Screen element. No trailing line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Screen child of the Category element. A screen whose name clashes with an
  // earlier one of the category (ignoring case) is dropped; that key error stays pending when
  // it was the last screen.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<CategoryItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_SCREEN_ITEMS_HPP_
