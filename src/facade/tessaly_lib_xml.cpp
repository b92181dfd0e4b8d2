#include "tessaly/facade/tessaly_lib_xml.hpp"

#include <algorithm>

#include "common/document_io.hpp"
#include "common/section_release.hpp"
#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"
#include "tessaly/facade/multi_lang.hpp"
#include "tessaly/target/target_item.hpp"

namespace tessaly {
namespace {

constexpr const char* kImportSource = "TessalyDatabase.ImportUceFromXml";

// Reads one integer attribute of a parameter-table entry: a missing attribute is the platform's
// error for reading a missing node, text that is not a number the conversion's error.
std::int32_t EntryInt(pugi::xml_node entry, const char* attribute) {
  return ToInt32(xml::Required(entry, attribute));
}

}  // namespace

TessalyLibXml::TessalyLibXml()
    : self_(this, [](TessalyLibXml*) {}), eventLog_(DefaultEventLog()) {
  set_lang("fr");
  xmlStyleSheet_ = kDefaultStyleSheet;
  ecuNamespace_ = kDefaultEcuNamespace;
  xmlScreenSchema_ = kDefaultScreenNamespace;
  xmlEncoding_ = "UTF-8";
  ReloadDefaultParameters();
}

void TessalyLibXml::ReloadDefaultParameters() {
  // The built-in text is already UTF-8: it is parsed as such, never decoded from its declared
  // encoding.
  pugi::xml_document doc;
  std::string reason;
  if (!io::ParseUtf8(doc, ParamNodeDefinition(), reason))
    Raise(errc::kModel, kLibrarySource, "Internal error when reading default parameters, please contact Tessaly hotline");
  ReadParameterDocument(doc);
}

TessalyLibXml::~TessalyLibXml() {
  functions_.reset();
  Pannes_.reset();
  typeOrganes_.reset();
  protocols_.reset();
  ClearTarget();
  self_.reset();
}

void TessalyLibXml::ClearTarget() {
  if (!ActiveTarget_) return;
  std::shared_ptr<TargetItem> target = std::move(ActiveTarget_);
  ActiveTarget_.reset();
  try {
    target->clear();
  } catch (const Error&) {
    // The target released all its parts; a part that could not clear itself (a category
    // without a screen list) must not keep the document, nor stop the next one from loading.
  }
}

std::shared_ptr<TargetItem> TessalyLibXml::NewTarget() {
  ClearTarget();
  auto target = TargetItem::Create();
  target->set_parent(this);
  ActiveTarget_ = target;
  return target;
}

void TessalyLibXml::ImportUceFromXml(const std::string& location) { ImportDocument(location, nullptr); }

void TessalyLibXml::ImportUceFromText(std::string_view document) { ImportDocument("<memory>", &document); }

void TessalyLibXml::ImportDocument(const std::string& location, const std::string_view* bytes) {
  // The DOM is built inside `text`, which therefore outlives it.
  std::string text;
  pugi::xml_document doc;
  std::string reason;
  // Lines and columns of diagnostics are counted in the text as read: with a diagnostics
  // callback the parser works on a copy and leaves `text` as it was.
  const bool keepText = HasDiagnostics();
  bool loaded = io::LoadDocumentInPlace(doc, text, location, bytes, keepText, reason);
  if (!loaded) Raise(errc::kModel, kImportSource, "Bad xml file, Reason=" + reason);
  RaiseWarningInfo("TessalyDatabase", "Loading url : " + location);
  std::shared_ptr<TargetItem> target = NewTarget();
  Err().Clear();
  pugi::xml_node root = xml::Child(doc, "xml");
  if (!root) Raise(errc::kModel, kImportSource, "Bad xml file, RootNode \"xml\" not found");
  if (keepText) loadingText_ = std::move(text);
  positionOffset_ = 0, positionLine_ = 1, positionColumn_ = 1;
  {
    // `doc` is thrown away after the load: the target may release its sections as it goes.
    SectionRelease release;
    target->loadXml(doc, root);
  }
  loadingText_.clear();
  loadingText_.shrink_to_fit();
  if (Err().Pending()) {
    Error error = Err().ToError();
    Err().Clear();
    throw error;
  }
}

void TessalyLibXml::WriteDocument(xml::Out doc) {
  if (!ActiveTarget_) RaisePlatform(errc::kObjectNotSet);
  doc.sink().AppendProcessingInstruction(doc.handle(), "xml", "version='1.0' encoding=\"" + xmlEncoding_ + "\"");
  if (!xmlStyleSheet_.empty())
    doc.sink().AppendProcessingInstruction(doc.handle(), "xml-stylesheet",
                                           "type=\"text/xsl\" href=\"" + xmlStyleSheet_ + "\"");
  xml::Out root = xml::AppendElement(doc, "xml");
  if (!ecuNamespace_.empty()) xml::SetAttr(root, "xmlns:tsl", ecuNamespace_);
  xml::AppendLf(root);
  ActiveTarget_->createXMLnode(root);
}

void TessalyLibXml::ExportUceToXml(const std::string& location) {
  if (!ActiveTarget_) RaisePlatform(errc::kObjectNotSet);
  // The document is written as it is made, without a DOM. An error of the model (a project
  // name that is not an XML name) comes through as it is; a failure to write the file is a
  // warning, kept for LastSaveError.
  lastSaveError_ = io::SaveAtomically(location, [this](xml::Out doc) { WriteDocument(doc); }, xmlEncoding_);
  if (lastSaveError_) {
    RaiseWarningInfo("ExportParametersToXml", "Save error (number : " + IntText(lastSaveError_->Number()) + ")");
    Err().Clear();
  }
}

std::string TessalyLibXml::ExportUceToText() {
  return io::Serialize([this](xml::Out doc) { WriteDocument(doc); }, xmlEncoding_);
}

void TessalyLibXml::ReadGlobalParameters(const std::string& url) {
  pugi::xml_document doc;
  std::string reason;
  if (!io::LoadDocument(doc, url, reason))
    Raise(errc::kModel, kLibrarySource, "Error when reading parameters " + url + "  msg = " + reason);
  ReadParameterDocument(doc);
}

void TessalyLibXml::ExportParametersToXml(const std::string&, const std::string&) {}

void TessalyLibXml::ReadParameterDocument(const pugi::xml_document& doc) {
  pugi::xml_node root = xml::Child(doc, "xml");
  protocols_ = std::make_shared<ProtocolItems>();
  for (pugi::xml_node p : xml::Child(root, "Protocols").children("Protocol")) {
    std::string name = MultiLang(p, "Name", lang_);
    std::int32_t code = EntryInt(p, "Code");
    bool multi = xml::Attr(p, "multiPoint") == "1";
    std::int32_t init = EntryInt(p, "initMode");
    protocols_->Add(code, std::move(name), multi, init);
  }
  Pannes_ = std::make_shared<PanneItems>();
  for (pugi::xml_node f : xml::Child(root, "Failures").children("Failure")) {
    std::string name = MultiLang(f, "Name", lang_);
    Pannes_->Add(EntryInt(f, "Id"), std::move(name));
  }
  typeOrganes_ = std::make_shared<TypeOrganeItems>();
  for (pugi::xml_node d : xml::Child(root, "DeviceTypes").children("DeviceType")) {
    std::string name = MultiLang(d, "Name", lang_);
    typeOrganes_->Add(EntryInt(d, "Id"), std::move(name));
  }
}

void TessalyLibXml::RaiseWarningInfo(const std::string& LibClass, const std::string& warningMsg) const {
  if (warningHandler_) warningHandler_(LibClass, warningMsg);
}

void TessalyLibXml::ReportDiagnostic(Diagnostic::Action action, pugi::xml_node node, std::string what,
                                     std::string why) const {
  if (!diagnosticHandler_) return;
  Diagnostic d;
  d.action = action;
  d.what = std::move(what);
  d.why = std::move(why);
  std::ptrdiff_t offset = node.offset_debug();
  if (offset >= 0 && !loadingText_.empty()) {
    const std::size_t at = std::min(static_cast<std::size_t>(offset), loadingText_.size());
    if (at < positionOffset_) positionOffset_ = 0, positionLine_ = 1, positionColumn_ = 1;
    // Line and column of `at` within the stretch since the last diagnostic, then added on.
    std::size_t line = 0;
    std::size_t column = 0;
    const std::size_t length = at - positionOffset_;
    io::LineColumn(std::string_view(loadingText_).substr(positionOffset_, length), length, line, column);
    if (line > 1) positionLine_ += line - 1, positionColumn_ = column;
    else positionColumn_ += column - 1;
    positionOffset_ = at;
    d.line = positionLine_;
    d.column = positionColumn_;
  }
  diagnosticHandler_(d);
}

}  // namespace tessaly
