// Displays: fields on a screen that show (or, as input fields, let the user enter) one value
// exchanged with the ECU. A data display (TypeDisplay 3) shows one data item as placed in one
// request; a request display (TypeDisplay 1) names a request only. Each has a caption and a
// value area, a rectangle, a font, a background colour and thresholds that recolour the value.
// A screen owns the DisplayItems list of its displays.
//
// Thread safety: none; a display belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_DISPLAY_ITEMS_HPP_
#define TESSALY_SCREENS_DISPLAY_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class ScreenItem;
class RangeItems;
class DisplayDataItem;
class DisplayExtraItem;

// The two kinds of display that name what they show.
inline constexpr std::int32_t kRequestDisplay = 1;
inline constexpr std::int32_t kDataDisplay = 3;

class DisplayItem : public std::enable_shared_from_this<DisplayItem> {
 public:
  // 1: request display; 3: data display; any other value is kept and written as a display
  // naming its data only.
  std::int32_t TypeDisplay() const { return TypeDisplay_; }
  void set_TypeDisplay(std::int32_t value) { TypeDisplay_ = value; }
  std::int32_t DisplayLeft() const { return DisplayLeft_; }
  void set_DisplayLeft(std::int32_t value) { DisplayLeft_ = value; }
  std::int32_t DisplayTop() const { return DisplayTop_; }
  void set_DisplayTop(std::int32_t value) { DisplayTop_ = value; }
  std::int32_t DisplayHeight() const { return DisplayHeight_; }
  void set_DisplayHeight(std::int32_t value) { DisplayHeight_ = value; }
  std::int32_t DisplayWidth() const { return DisplayWidth_; }
  void set_DisplayWidth(std::int32_t value) { DisplayWidth_ = value; }
  // Width of the caption part inside the rectangle.
  std::int32_t CaptionWidth() const { return CaptionWidth_; }
  void set_CaptionWidth(std::int32_t value) { CaptionWidth_ = value; }
  // Background colour, packed 0x00BBGGRR.
  std::int32_t DisplayColor() const { return DisplayColor_; }
  void set_DisplayColor(std::int32_t value) { DisplayColor_ = value; }
  const std::string& FontName() const { return FontName_; }
  void set_FontName(std::string value) { FontName_ = std::move(value); }
  // Font size in whole points.
  std::int32_t FontSize() const { return FontSize_; }
  void set_FontSize(std::int32_t value) { FontSize_ = value; }
  bool FontBold() const { return FontBold_; }
  void set_FontBold(bool value) { FontBold_ = value; }
  bool FontItalic() const { return FontItalic_; }
  void set_FontItalic(bool value) { FontItalic_ = value; }
  // Text colour, packed 0x00BBGGRR.
  std::int32_t FontColor() const { return FontColor_; }
  void set_FontColor(std::int32_t value) { FontColor_ = value; }

  // Thresholds; created by loadXml.
  const std::shared_ptr<tessaly::RangeItems>& RangeItems() const { return RangeItems_; }
  void set_RangeItems(std::shared_ptr<tessaly::RangeItems> value) { RangeItems_ = std::move(value); }
  // What a data display shows (type 3).
  const std::shared_ptr<tessaly::DisplayDataItem>& DisplayDataItem() const { return DisplayDataItem_; }
  void set_DisplayDataItem(std::shared_ptr<tessaly::DisplayDataItem> value) { DisplayDataItem_ = std::move(value); }
  // What a request display shows (type 1).
  const std::shared_ptr<tessaly::DisplayExtraItem>& DisplayExtraItem() const { return DisplayExtraItem_; }
  void set_DisplayExtraItem(std::shared_ptr<tessaly::DisplayExtraItem> value) {
    DisplayExtraItem_ = std::move(value);
  }
  // The owning screen, or null.
  std::shared_ptr<ScreenItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<ScreenItem>& value) { parent_ = value; }

  // Clears and releases the request reference, the data reference and the thresholds, then
  // releases the parent.
  void clear();
  // Appends the display's own element (Input for an input field, Display otherwise) to the
  // Screen element `parNode` and fills it. A request or data display without its reference
  // object writes nothing. A data display (or one of another type) whose request or data can
  // no longer be found throws error 91.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the Display or Input element `parNode`. Geometry, colours and font keep their
  // defaults when missing or unreadable. A missing or unknown request or data name writes an
  // entry to the event log and leaves error 1 pending (source "DisplayItem.loadXml"), so that
  // the display list drops the display.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  void ReadReference(pugi::xml_node parNode, bool input);

  std::int32_t TypeDisplay_ = kDataDisplay;
  std::int32_t DisplayLeft_ = 0;
  std::int32_t DisplayTop_ = 0;
  std::int32_t DisplayHeight_ = 300;
  std::int32_t DisplayWidth_ = 4000;
  std::int32_t CaptionWidth_ = 2000;
  std::int32_t DisplayColor_ = 16777215;
  std::string FontName_ = "Arial";
  std::int32_t FontSize_ = 10;
  bool FontBold_ = false;
  bool FontItalic_ = false;
  std::int32_t FontColor_ = 0;
  std::shared_ptr<tessaly::RangeItems> RangeItems_;
  std::shared_ptr<tessaly::DisplayDataItem> DisplayDataItem_;
  std::shared_ptr<tessaly::DisplayExtraItem> DisplayExtraItem_;
  std::weak_ptr<ScreenItem> parent_;
};

class DisplayItems : public Collection<DisplayItem> {
 public:
  // Creates a display with every default and adds it, under `sKey` when not empty.
  std::shared_ptr<DisplayItem> Add(std::string_view sKey = {});
  // Adds an existing display, under `sKey` when not empty.
  std::shared_ptr<DisplayItem> AddData(const std::shared_ptr<DisplayItem>& vData, std::string_view sKey = {});
  // Clears and removes the very same object; an item not held is ignored.
  void Delete(const std::shared_ptr<DisplayItem>& item) { DeleteItem(item.get()); }
  void clear() { ClearItems(); }

  // For each display: a line feed, then the display's own element. No trailing line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads the Display and Input children of the Screen element in document order, dropping
  // the displays whose reading fails; the error state is clear when this returns.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_DISPLAY_ITEMS_HPP_
