// TargetItem: the root of one ECU description. It holds the ECU's identity (name, function
// address, language), its communication parameters and the collections of data, requests,
// devices, screen categories and auto-identifications, and it owns the tsl:Target element of the
// document: its attributes, its fixed children and the order of the sub-trees.
#ifndef TESSALY_TARGET_TARGET_ITEM_HPP_
#define TESSALY_TARGET_TARGET_ITEM_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tessaly/common/keyed_collection.hpp"

namespace tessaly {

class TessalyLibXml;
class TargetParamItem;
class DataItems;
class RequestItems;
class OrganeItems;
class CategoryItems;
class AutoIdentItems;
class DataPositionItem;
class DataItem;
class RequestItem;
class OrganeItem;
class DeviceDataItem;
class DisplayItem;
class ScenarioItem;

// The plain keyed collection of texts that holds the target's projects.
using TextCollection = KeyedCollection<std::string>;

class TargetItem : public std::enable_shared_from_this<TargetItem> {
 public:
  // Makes a target with its default values and empty collections. Use Create: the parameters
  // and children need a shared owner to point back to.
  static std::shared_ptr<TargetItem> Create();
  ~TargetItem();
  TargetItem(const TargetItem&) = delete;
  TargetItem& operator=(const TargetItem&) = delete;

  // The owning facade, or null (never set, or already destroyed).
  std::shared_ptr<TessalyLibXml> parent() const { return parent_.lock(); }
  void set_parent(const TessalyLibXml* facade);

  // Identity. Setters mark the document changed (ValueChanged).
  const std::string& name() const { return name_; }
  void set_name(std::string value);
  std::int32_t Address() const { return Address_; }
  void set_Address(std::int32_t value);
  const std::string& Langue() const { return Langue_; }
  void set_Langue(std::string value);
  bool reference() const { return reference_; }
  void set_reference(bool value);
  const std::string& Email() const { return Email_; }
  void set_Email(std::string value);
  const std::string& Href() const { return Href_; }
  void set_Href(std::string value);
  const std::string& Upload() const { return Upload_; }
  void set_Upload(std::string value);
  const std::string& Group() const { return Group_; }
  void set_Group(std::string value);
  // Starts true; set by the setters above; never reset by the library.
  bool ValueChanged() const { return ValueChanged_; }
  void set_ValueChanged(bool value) { ValueChanged_ = value; }

  // Owned parts. The setters of the first four mark the document changed.
  const std::shared_ptr<TargetParamItem>& Parametres() const { return Parametres_; }
  void set_Parametres(std::shared_ptr<TargetParamItem> value);
  const std::shared_ptr<DataItems>& datas() const { return datas_; }
  void set_datas(std::shared_ptr<DataItems> value);
  const std::shared_ptr<RequestItems>& Requests() const { return Requests_; }
  void set_Requests(std::shared_ptr<RequestItems> value);
  const std::shared_ptr<OrganeItems>& Organes() const { return Organes_; }
  void set_Organes(std::shared_ptr<OrganeItems> value);
  const std::shared_ptr<CategoryItems>& Categories() const { return Categories_; }
  void set_Categories(std::shared_ptr<CategoryItems> value) { Categories_ = std::move(value); }
  const std::shared_ptr<AutoIdentItems>& AutoIdents() const { return AutoIdents_; }
  void set_AutoIdents(std::shared_ptr<AutoIdentItems> value) { AutoIdents_ = std::move(value); }
  // The project names, keyed by themselves (read only).
  const std::shared_ptr<TextCollection>& Projects() const { return Projects_; }

  // Releases the parameters and every child collection, clearing them first.
  void clear();

  // Writes the tsl:Target element into `parNode` (or as the document element when `parNode` is
  // empty).
  void createXMLnode(pugi::xml_document& odoc, pugi::xml_node parNode);
  // Reads the target from the tsl:Target element below `parNode`. Errors are trapped: the
  // first error of the target itself, else the error a child reader left, stays pending.
  void loadXml(pugi::xml_document& odoc, pugi::xml_node parNode);

 private:
  TargetItem();
  void Changed() { ValueChanged_ = true; }

  std::weak_ptr<TessalyLibXml> parent_;
  std::string name_;
  std::int32_t Address_ = 0;
  std::string Langue_ = "Fran\xC3\xA7" "ais";
  bool reference_ = true;
  std::string Email_;
  std::string Href_;
  std::string Upload_;
  std::string Group_;
  bool ValueChanged_ = true;
  std::shared_ptr<TargetParamItem> Parametres_;
  std::shared_ptr<DataItems> datas_;
  std::shared_ptr<RequestItems> Requests_;
  std::shared_ptr<OrganeItems> Organes_;
  std::shared_ptr<CategoryItems> Categories_;
  std::shared_ptr<AutoIdentItems> AutoIdents_;
  std::shared_ptr<TextCollection> Projects_;
};

}  // namespace tessaly

#endif  // TESSALY_TARGET_TARGET_ITEM_HPP_
