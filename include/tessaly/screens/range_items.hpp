// Thresholds of a display: from each threshold value on, the displayed value takes the range's
// colour and may sound a tone. A display owns the RangeItems list of its thresholds, in order.
//
// Thread safety: none; a range belongs to one document, used from one thread at a time.
#ifndef TESSALY_SCREENS_RANGE_ITEMS_HPP_
#define TESSALY_SCREENS_RANGE_ITEMS_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/collection.hpp"
#include "tessaly/common/xml_out.hpp"

namespace tessaly {

class DisplayItem;

// Red, packed 0x00BBGGRR: the colour of a threshold whose colour cannot be read.
inline constexpr std::int32_t kRed = 255;

// Every value starts at zero, false or empty.
class RangeItem {
 public:
  double Seuil() const { return Seuil_; }
  void set_Seuil(double value) { Seuil_ = value; }
  // Colour used from this threshold on, packed 0x00BBGGRR.
  std::int32_t Couleur() const { return Couleur_; }
  void set_Couleur(std::int32_t value) { Couleur_ = value; }
  bool SonFlag() const { return SonFlag_; }
  void set_SonFlag(bool value) { SonFlag_ = value; }
  // Son and SoundName are two views of one sound: setting Son sets SoundName to its decimal
  // text; setting SoundName sets Son to the text as an integer, or 0 when it is not one.
  std::int32_t Son() const { return Son_; }
  void set_Son(std::int32_t value);
  const std::string& SoundName() const { return SoundName_; }
  void set_SoundName(std::string value);
  // The owning display, or null.
  std::shared_ptr<DisplayItem> parent() const { return parent_.lock(); }
  void set_parent(const std::shared_ptr<DisplayItem>& value) { parent_ = value; }

  // Releases the parent.
  void clear() { parent_.reset(); }
  // Fills the Threshold element: Value (with a sign position), Color, and when SonFlag is set a
  // line feed and a Sound element naming the sound.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads a Threshold element: Value read as a number from its start (0 when absent), Color
  // (255 when absent or unreadable), and the sound from Sound/@Name. Leaves no error pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  void ReportRepairedColor(pugi::xml_node parNode) const;

  double Seuil_ = 0.0;
  std::int32_t Couleur_ = 0;
  bool SonFlag_ = false;
  std::int32_t Son_ = 0;
  std::string SoundName_;
  std::weak_ptr<DisplayItem> parent_;
};

class RangeItems : public Collection<RangeItem> {
 public:
  // Creates a range with that threshold and adds it, under `sKey` when not empty.
  std::shared_ptr<RangeItem> Add(double Seuil, std::string_view sKey = {});
  // Adds an existing range, under `sKey` when not empty.
  std::shared_ptr<RangeItem> AddData(const std::shared_ptr<RangeItem>& vData, std::string_view sKey = {});
  // Clears and removes the very same object; an item not held is ignored.
  void Delete(const std::shared_ptr<RangeItem>& item) { DeleteItem(item.get()); }
  void clear() { ClearItems(); }

  // One Threshold element per range, in order, with no line feeds between.
  void createXMLnode(pugi::xml_document&, pugi::xml_node parNode) const { createXMLnode(xml::Out(parNode)); }
  void createXMLnode(xml::Out parNode) const;
  // Reads every Threshold child of the display element; the error state is clear when this
  // returns.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode, const std::shared_ptr<DisplayItem>& parent);
};

}  // namespace tessaly

#endif  // TESSALY_SCREENS_RANGE_ITEMS_HPP_
