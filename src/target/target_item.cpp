#include "tessaly/target/target_item.hpp"

#include <optional>
#include <type_traits>

#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/data/data_items.hpp"
#include "tessaly/data/request_items.hpp"
#include "tessaly/devices/organe_items.hpp"
#include "tessaly/facade/tessaly_lib_xml.hpp"
#include "tessaly/params/auto_ident_items.hpp"
#include "tessaly/params/target_param_item.hpp"
#include "tessaly/screens/category_items.hpp"
#include "target/reporting.hpp"
#include "common/section_release.hpp"

namespace tessaly {
namespace {

constexpr const char* kLoadSource = "loadXml";
constexpr const char* kDefaultLanguage = "Fran\xC3\xA7" "ais";

// Appends a line feed, then an element holding a line feed, and returns the element.
xml::Out AppendContainer(xml::Out parent, const char* name) {
  xml::AppendLf(parent);
  xml::Out element = xml::AppendElement(parent, name);
  xml::AppendLf(element);
  return element;
}

// Copies the CAN identifiers that the parameters read from the target element into a function
// entry, when the target is a CAN target.
void FillCanIds(TargetParamItem& params, pugi::xml_node target, FunctionItem& function) {
  bool multi = false;
  std::int32_t init = 0;
  std::int32_t baud = 0;
  std::int32_t send = kNoCanId;
  std::int32_t receive = kNoCanId;
  if (!params.isCan(target, multi, init, baud, send, receive)) return;
  if (send != kNoCanId) function.set_CanXId(send);
  if (receive != kNoCanId) function.set_CanRId(receive);
}

// Whether `name` can be a project: a project is written as an element named after it and read
// back by its local name, so the name must be an element name without prefix. That is a letter,
// "_" or a non-ASCII character first, then those, digits, "-" and ".". Any other name would
// make the saved file unreadable, or come back shortened on the next load.
bool IsProjectName(std::string_view name) {
  auto start = [](unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80;
  };
  if (name.empty() || !start(static_cast<unsigned char>(name.front()))) return false;
  for (char ch : name.substr(1)) {
    auto c = static_cast<unsigned char>(ch);
    if (!start(c) && !(c >= '0' && c <= '9') && c != '-' && c != '.') return false;
  }
  return true;
}

}  // namespace

std::shared_ptr<TargetItem> TargetItem::Create() {
  std::shared_ptr<TargetItem> target(new TargetItem());
  target->Parametres_ = std::make_shared<TargetParamItem>();
  target->Parametres_->set_parent(target);
  return target;
}

TargetItem::TargetItem()
    : datas_(std::make_shared<DataItems>()),
      Requests_(std::make_shared<RequestItems>()),
      Organes_(std::make_shared<OrganeItems>()),
      Categories_(std::make_shared<CategoryItems>()),
      AutoIdents_(std::make_shared<AutoIdentItems>()),
      Projects_(std::make_shared<TextCollection>()) {}

TargetItem::~TargetItem() {
  try {
    clear();
  } catch (const Error&) {
    // A part that cannot clear itself (a category without a screen list) must not escape a
    // destructor; every part has been released all the same.
  }
}

void TargetItem::set_parent(const TessalyLibXml* facade) {
  parent_ = facade != nullptr ? facade->Handle() : std::weak_ptr<TessalyLibXml>();
}

void TargetItem::set_name(std::string value) { name_ = std::move(value), Changed(); }
void TargetItem::set_Address(std::int32_t value) { Address_ = value, Changed(); }
void TargetItem::set_Langue(std::string value) { Langue_ = std::move(value), Changed(); }
void TargetItem::set_reference(bool value) { reference_ = value, Changed(); }
void TargetItem::set_Email(std::string value) { Email_ = std::move(value), Changed(); }
void TargetItem::set_Href(std::string value) { Href_ = std::move(value), Changed(); }
void TargetItem::set_Upload(std::string value) { Upload_ = std::move(value), Changed(); }
void TargetItem::set_Group(std::string value) { Group_ = std::move(value), Changed(); }
void TargetItem::set_Parametres(std::shared_ptr<TargetParamItem> value) { Parametres_ = std::move(value), Changed(); }
void TargetItem::set_datas(std::shared_ptr<DataItems> value) { datas_ = std::move(value), Changed(); }
void TargetItem::set_Requests(std::shared_ptr<RequestItems> value) { Requests_ = std::move(value), Changed(); }
void TargetItem::set_Organes(std::shared_ptr<OrganeItems> value) { Organes_ = std::move(value), Changed(); }

void TargetItem::clear() {
  // Every part is cleared and released even when one of them fails; the first failure is
  // raised afterwards.
  std::optional<Error> failure;
  auto clear_part = [&](const auto& part) {
    if (!part) return;
    try {
      part->clear();
    } catch (const Error& error) {
      if (!failure) failure = error;
    }
  };
  clear_part(Parametres_);
  clear_part(datas_);
  clear_part(Requests_);
  clear_part(Organes_);
  clear_part(Categories_);
  clear_part(AutoIdents_);
  Parametres_.reset();
  datas_.reset();
  Requests_.reset();
  Organes_.reset();
  Categories_.reset();
  AutoIdents_.reset();
  if (Projects_) Projects_->RemoveAll();
  parent_.reset();
  if (failure) throw *failure;
}

void TargetItem::createXMLnode(xml::Out parNode) {
  std::shared_ptr<TessalyLibXml> facade = parent();
  xml::Out target = xml::AppendElement(parNode, "tsl:Target");
  xml::SetAttr(target, "Name", name_);
  if (facade && !facade->xmlEcuSchema().empty()) xml::SetAttr(target, "xmlns", facade->xmlEcuSchema());
  if (facade && !facade->xmlScreenSchema().empty()) xml::SetAttr(target, "xmlns:ds", facade->xmlScreenSchema());
  if (!Email_.empty()) xml::SetAttr(target, "email", Email_);
  if (!Href_.empty()) xml::SetAttr(target, "href", Href_);
  if (!Upload_.empty()) xml::SetAttr(target, "upload", Upload_);
  if (!Group_.empty()) xml::SetAttr(target, "group", Group_);

  if (Projects_ && Projects_->Count() > 0) {
    xml::AppendLf(target);
    xml::Out projects = xml::AppendElement(target, "Projects");
    xml::SetAttr(projects, "xmlns", std::string_view());
    for (const auto& project : *Projects_) {
      if (!IsProjectName(*project))
        Raise(errc::kModel, "TargetItem.createXMLnode",
              "Project name '" + *project + "' is not an XML name");
      xml::AppendElement(projects, project->c_str());
    }
  }

  xml::AppendLf(target);
  xml::Out function = xml::AppendElement(target, "Function");
  std::shared_ptr<FunctionItem> entry =
      facade && facade->functions() ? facade->functions()->ItemAddress(Address_) : nullptr;
  if (!entry && facade)
    facade->RaiseWarningInfo("TargetItem.createXMLnode",
                             "No function of address " + IntText(Address_) + " in the functions table, Name written empty");
  xml::SetAttr(function, "Name", entry ? entry->functionName() : std::string());
  xml::SetAttr(function, "Address", Address_);
  DefaultValue slot;
  if (!Parametres_->isDefaultValue(16, slot)) xml::SetAttr(function, "ToolAddress", Parametres_->ToolAddress());

  xml::AppendLf(target);
  xml::Out language = xml::AppendElement(target, "Language");
  xml::SetAttr(language, "Name", Langue_);
  if (reference_) xml::SetAttr(language, "Reference", std::string_view("1"));

  xml::AppendLf(target);
  Parametres_->createXMLnode(target);

  if (AutoIdents_) AutoIdents_->createXMLnode(AppendContainer(target, "AutoIdents"));
  if (datas_) datas_->createXMLnode(AppendContainer(target, "Datas"));
  xml::AppendLf(target);
  xml::Out requests = xml::AppendElement(target, "Requests");
  xml::SetAttr(requests, "Endian", std::string_view(Parametres_->LittleEndian() ? "Little" : "Big"));
  xml::AppendLf(requests);
  if (Requests_) Requests_->createXMLnode(requests);
  if (Organes_) Organes_->createXMLnode(AppendContainer(target, "Devices"));
  if (Categories_) {
    xml::AppendLf(target);
    xml::Out categories = xml::AppendElement(target, "ds:Categories");
    if (facade && !facade->xmlScreenSchema().empty()) xml::SetAttr(categories, "xmlns", facade->xmlScreenSchema());
    xml::AppendLf(categories);
    Categories_->createXMLnode(categories);
  }
}

void TargetItem::loadXml(pugi::xml_document& odoc, pugi::xml_node parNode) {
  Err().Clear();
  // The target's own errors always reach the host, the first one winning; they are kept apart
  // from the pending state, which the steps below clear for their own optional reads.
  std::optional<Error> own;
  auto fail = [&](const std::string& description) {
    if (!own) own = Error(errc::kModel, kLoadSource, description);
  };
  std::shared_ptr<TargetItem> self = shared_from_this();

  pugi::xml_node target = xml::Child(parNode, "tsl:Target");
  if (!target) {
    fail("Bad xml file, Target node not found");
    Err().Raise(*own);
    return;
  }
  if (!xml::ReadText(target, "Name", name_)) fail("Bad xml file, Target Name not found");
  pugi::xml_node functionNode = xml::Child(target, "Function");
  std::string functionName;
  if (!xml::ReadText(functionNode, "Name", functionName)) fail("Bad xml file, Target function name not found");

  Upload_.clear();
  xml::ReadText(target, "upload", Upload_);
  xml::ReadText(target, "href", Href_);
  xml::ReadText(target, "email", Email_);
  xml::ReadText(target, "group", Group_);

  for (pugi::xml_node project : xml::Child(target, "Projects").children()) {
    if (project.type() != pugi::node_element) continue;
    std::string_view local = TrimSpaces(xml::BaseName(project));
    if (!local.empty() && !IsProjectName(local)) {
      // A local name that is not a name by itself ("p:1st", "a:b:c") cannot be written back
      // as it was read: the project is left out.
      if (auto diagnostics = DiagnosticsOf(this))
        diagnostics->ReportDiagnostic(Diagnostic::Action::kDropped, project, "Project " + std::string(local),
                                      "Project name '" + std::string(local) + "' is not an XML name");
      continue;
    }
    if (!local.empty() && !Projects_->ContainsKey(local))
      Projects_->Append(std::make_shared<std::string>(local), local);
  }

  std::shared_ptr<TessalyLibXml> facade = parent();
  std::shared_ptr<FunctionItems> functions = facade ? facade->functions() : nullptr;
  if (!functions) {
    functions = std::make_shared<FunctionItems>();
    if (facade) facade->set_functions(functions);
  }
  std::shared_ptr<FunctionItem> entry = functions->ItemName(functionName);
  if (entry) {
    FillCanIds(*Parametres_, target, *entry);
  } else if (auto address = xml::Attr(functionNode, "Address"); !address) {
    fail("Bad xml file, The function '" + functionName +
         "' doesn't exist in the database structure, Contact Tessaly HotLine");
  } else {
    Trap([&] { Address_ = ToInt32(*address); });
    entry = functions->ItemAddress(Address_);
    if (entry) {
      functionName = entry->functionName();
    } else {
      entry = functions->Add(Address_, functionName);
      FillCanIds(*Parametres_, target, *entry);
    }
  }
  Trap([&] {
    std::int32_t tool = 0;
    if (xml::ReadInt(functionNode, "ToolAddress", tool)) Parametres_->set_ToolAddress(tool);
  });
  Err().Clear();
  if (entry) Address_ = entry->Address();

  pugi::xml_node language = xml::Child(target, "Language");
  Langue_ = kDefaultLanguage;
  xml::ReadText(language, "Name", Langue_);
  reference_ = true;
  Trap([&] { xml::ReadBool(language, "Reference", reference_); });
  Err().Clear();

  Parametres_->loadXml(target);

  // Each section is read from its own element only, and nothing reads it again afterwards, so
  // when the DOM is the facade's own, the data, requests and devices are freed one by one as
  // they are read, and what is left of their sections afterwards (see SectionRelease). The
  // screens are left in: only the auto-identifications are read after them, and the DOM is
  // freed whole right after the load, much faster than node by node.
  auto readSection = [&](const char* name, auto& items, bool freeAsRead) {
    const pugi::xml_node node = xml::Child(target, name);
    if (!node) return;
    if (!items) items = std::make_shared<typename std::decay_t<decltype(items)>::element_type>();
    if (!freeAsRead) return items->loadXml(odoc, node, self);
    SectionRelease::ChildByChild freeing(node);
    items->loadXml(odoc, node, self);
    SectionRelease::Release(target, node);
  };
  readSection("Datas", datas_, true);
  readSection("Requests", Requests_, true);
  readSection("Devices", Organes_, true);
  readSection("ds:Categories", Categories_, false);
  readSection("AutoIdents", AutoIdents_, false);
  if (own) Err().Raise(*own);
}

}  // namespace tessaly
