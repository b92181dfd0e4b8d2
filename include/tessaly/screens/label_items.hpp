// Labels: static text placed on a screen (captions, headings, coloured frames). A label refers
// to nothing else in the ECU description. A screen owns the LabelItems list of its labels.
//
// Thread safety: none; a label belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_LABEL_ITEMS_HPP_
#define TESSALY_SCREENS_LABEL_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class ScreenItem;

// Every value starts at zero, false or empty (the font name and size included).
class LabelItem {
 public:
  // Kept for the host; never read from or written to XML.
  std::int32_t LabelId() const { return LabelId_; }
  void set_LabelId(std::int32_t value) { LabelId_ = value; }
  const std::string& LabelText() const { return LabelText_; }
  void set_LabelText(std::string value) { LabelText_ = std::move(value); }
  std::int32_t LabelLeft() const { return LabelLeft_; }
  void set_LabelLeft(std::int32_t value) { LabelLeft_ = value; }
  std::int32_t LabelTop() const { return LabelTop_; }
  void set_LabelTop(std::int32_t value) { LabelTop_ = value; }
  std::int32_t LabelHeight() const { return LabelHeight_; }
  void set_LabelHeight(std::int32_t value) { LabelHeight_ = value; }
  std::int32_t LabelWidth() const { return LabelWidth_; }
  void set_LabelWidth(std::int32_t value) { LabelWidth_ = value; }
  const std::string& FontName() const { return FontName_; }
  void set_FontName(std::string value) { FontName_ = std::move(value); }
  // Font size in points, fraction kept.
  float FontSize() const { return FontSize_; }
  void set_FontSize(float value) { FontSize_ = value; }
  bool FontBold() const { return FontBold_; }
  void set_FontBold(bool value) { FontBold_ = value; }
  bool FontItalic() const { return FontItalic_; }
  void set_FontItalic(bool value) { FontItalic_ = value; }
  // Text and background colours, packed 0x00BBGGRR.
  std::int32_t FontColor() const { return FontColor_; }
  void set_FontColor(std::int32_t value) { FontColor_ = value; }
  std::int32_t LabelColor() const { return LabelColor_; }
  void set_LabelColor(std::int32_t value) { LabelColor_ = value; }
  // Text alignment code, kept and written unchanged.
  std::int32_t Alignment() const { return Alignment_; }
  void set_Alignment(std::int32_t value) { Alignment_ = value; }
  // The owning screen, or null.
  std::shared_ptr<ScreenItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<ScreenItem>& value) { parent_ = value; }

  // Releases the parent.
  void clear() { parent_.reset(); }
  // Fills the Label element: Text, Color, Alignment, then Rectangle and Font.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Label element. A missing value keeps the property; one that does not convert keeps
  // it too and leaves the conversion's error pending. A label is never refused.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  std::int32_t LabelId_ = 0;
  std::string LabelText_;
  std::int32_t LabelLeft_ = 0;
  std::int32_t LabelTop_ = 0;
  std::int32_t LabelHeight_ = 0;
  std::int32_t LabelWidth_ = 0;
  std::string FontName_;
  float FontSize_ = 0.0F;
  bool FontBold_ = false;
  bool FontItalic_ = false;
  std::int32_t FontColor_ = 0;
  std::int32_t LabelColor_ = 0;
  std::int32_t Alignment_ = 0;
  std::weak_ptr<ScreenItem> parent_;
};

class LabelItems : public Collection<LabelItem> {
 public:
  // Creates a label with that identifier and adds it, under `sKey` when not empty.
  std::shared_ptr<LabelItem> Add(std::int32_t LabelId, std::string_view sKey = {});
  // Adds an existing label, under `sKey` when not empty.
  std::shared_ptr<LabelItem> AddData(const std::shared_ptr<LabelItem>& vData, std::string_view sKey = {});
  // Clears and removes the very same object; an item not held is ignored.
  void Delete(const std::shared_ptr<LabelItem>& item) { DeleteItem(item.get()); }
  void clear() { ClearItems(); }

  // For each label: a line feed, then a Label element. No trailing line feed.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Label child of the Screen element, in document order; every label is kept.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<ScreenItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_LABEL_ITEMS_HPP_
