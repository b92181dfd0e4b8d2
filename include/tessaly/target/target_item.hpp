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
#include "tessaly/common/xml_out.hpp"

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
// The plain keyed collections in which the cross-reference queries return what they found.
using DataPositionCollection = KeyedCollection<DataPositionItem>;
using DisplayCollection = KeyedCollection<DisplayItem>;
using ScenarioCollection = KeyedCollection<ScenarioItem>;
using OrganeCollection = KeyedCollection<OrganeItem>;

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

  // The reference placements of the requests, built anew at each call (changing the result
  // changes nothing in the target): every position whose `reference` is true, in request order
  // and then position order, keyed by its data name followed by "k". Of several positions of the
  // same data name (letter case ignored, as keys are) the first one is kept. datasRefRead keeps
  // only the data read from a reply (param false), datasRefWrite only the parameters (param
  // true). The setter is kept for hosts that call it and does nothing.
  std::shared_ptr<DataPositionCollection> datasRef() const;
  void set_datasRef(const std::shared_ptr<DataPositionCollection>& /*value*/) {}
  std::shared_ptr<DataPositionCollection> datasRefRead() const;
  std::shared_ptr<DataPositionCollection> datasRefWrite() const;

  // --- Where-used queries ---
  // Each walks the requests, the devices or the screens once. Names compare exactly (letter case
  // included), except test flags, which are found by their key ("k" + data name) ignoring letter
  // case; an unknown name gives an empty result, never an error. A result collection is new
  // and unkeyed, lists the hits in walk order (requests, devices, or categories > screens >
  // displays or buttons > steps, each in collection order), and holds the objects themselves.
  //
  // The placement of the data in each request that places it (at most one per request).
  std::shared_ptr<DataPositionCollection> GetRequestsUsingData(std::string_view dataName) const;
  // The displays whose DisplayDataItem shows that data (whatever the request).
  std::shared_ptr<DisplayCollection> GetScreensUsingData(std::string_view dataName) const;
  // The displays whose DisplayDataItem names that request.
  std::shared_ptr<DisplayCollection> GetScreensDataUsingRequest(std::string_view requestName) const;
  // The displays whose DisplayExtraItem names that request.
  std::shared_ptr<DisplayCollection> GetScreensExtraDataUsingRequest(std::string_view requestName) const;
  // The scenario steps, of every button of every screen, that send that request.
  std::shared_ptr<ScenarioCollection> GetScreensScenarioUsingRequest(std::string_view requestName) const;
  // The devices whose freeze-frame request (requestName) is that request.
  std::shared_ptr<OrganeCollection> GetDeviceUsingRequest(std::string_view requestName) const;
  // The first device-data link, over the devices in order, to that data; null when none.
  std::shared_ptr<DeviceDataItem> GetDeviceDataUsingData(std::string_view dataName) const;
  // The first device that links that data in its DeviceDatas or uses it as a stored flag of one
  // of its tests; null when none. A device without tests is not given an empty list.
  std::shared_ptr<OrganeItem> GetDeviceUsingData(std::string_view dataName) const;
  // The first placement, over the requests in order, of that data with `reference` true; null
  // when none.
  std::shared_ptr<DataPositionItem> GetDataPositionFromRefData(std::string_view dataName) const;

  // --- Referential edits ---
  // Each keeps the references between data, requests, devices and screens consistent, walking
  // each structure a fixed number of times whatever the number of users. A null argument is
  // error 91 (DeleteDevice ignores it, as the collection's Delete does).
  //
  // The data item found by datas()->ItemName (letter case ignored) is deleted by DeleteData; an
  // unknown name does nothing.
  void DeleteDataByName(std::string_view dataName);
  // Deletes every placement of the data (as DeleteDataPosition does, so displays and device
  // links go with them), then the data item itself.
  void DeleteData(const std::shared_ptr<DataItem>& data);
  // Deletes the request's placements (as DeleteDataPosition), leaves the devices that name it
  // without a freeze-frame request (empty name, no object), deletes the request displays and the
  // scenario steps that name it, then deletes the request.
  void DeleteRequest(const std::shared_ptr<RequestItem>& request);
  // For a reference placement, each device forgets the data (its link, else its test flag);
  // then the displays showing that data through the placement's request are deleted, then the
  // placement. Error 91 (nothing changed) when the placement belongs to no request.
  void DeleteDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition);
  // Deletes the device and nothing else.
  void DeleteDevice(const std::shared_ptr<OrganeItem>& device);
  // Renames the data item through datas()->rename, then its placements, its displays and the
  // first device that uses it. A refusal changes nothing: "Duplicate data (" ..., or error 457
  // when that device's test already holds a flag under the new name.
  void RenameData(const std::shared_ptr<DataItem>& data, const std::string& newName);
  // Renames the request through Requests()->rename, then its data displays, request displays
  // and scenario steps. Devices keep the old name. A refusal ("Duplicate request (" ...) changes
  // nothing.
  void RenameRequest(const std::shared_ptr<RequestItem>& request, const std::string& newName);
  // Renames the device through Organes()->rename ("Duplicate device (" ... on a clash).
  void RenameDevice(const std::shared_ptr<OrganeItem>& device, const std::string& newName);
  // Makes the placement place `data` instead of the data it names: every display of the old
  // data (whatever its request) and, for a reference placement, the first device that uses the
  // old data follow it. Error 457, nothing changed, when that device's test already holds a
  // flag under the new name.
  void ReplaceDataPosition(const std::shared_ptr<DataPositionItem>& dataPosition, const std::shared_ptr<DataItem>& data);

  // Releases the parameters and every child collection, clearing them first.
  void clear();

  // Writes the tsl:Target element into `parNode` (or as the document element when `parNode` is
  // empty).
  void createXMLnode(pugi::xml_document& odoc, pugi::xml_node parNode) {
    createXMLnode(parNode ? xml::Out(parNode) : xml::Out(odoc));
  }
  void createXMLnode(xml::Out parNode);
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
