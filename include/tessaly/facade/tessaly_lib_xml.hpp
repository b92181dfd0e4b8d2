// TessalyLibXml: the one object a host creates. It owns the ECU document being edited (the
// active target), the reference tables of the global parameters, the functions table, and the
// settings that shape the XML file; it loads and saves ECU documents and passes warnings to the
// host through its WarningInfo callback.
//
// Thread safety: none. One facade and its document are used from one thread at a time;
// separate facades on separate threads share nothing.
#ifndef TESSALY_FACADE_TESSALY_LIB_XML_HPP_
#define TESSALY_FACADE_TESSALY_LIB_XML_HPP_

#include <pugixml.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tessaly/common/error.hpp"
#include "tessaly/common/event_log.hpp"
#include "tessaly/common/xml_out.hpp"
#include "tessaly/facade/function_item.hpp"
#include "tessaly/facade/reference_tables.hpp"

namespace tessaly {

class TargetItem;

// Default settings of a new facade.
inline constexpr const char* kDefaultEcuNamespace = "http://www.tessaly.org/2002/ECU";
inline constexpr const char* kDefaultScreenNamespace = "http://www.tessaly.org/2002/screens";
inline constexpr const char* kDefaultStyleSheet = "http://www.tessaly.org/Tessaly/TSLECUPreview.xsl";

// What a reader did with a damaged element: dropped it, or repaired it and kept it.
struct Diagnostic {
  enum class Action { kDropped, kRepaired };
  Action action = Action::kDropped;
  std::string what;    // the element, e.g. "Display in screen Engine/Main"
  std::string why;     // the reader's own message
  std::size_t line = 0;    // 1-based position of the element in the file; 0 when unknown
  std::size_t column = 0;
};

class TessalyLibXml {
 public:
  using WarningHandler = std::function<void(const std::string& LibClass, const std::string& warningMsg)>;
  using DiagnosticHandler = std::function<void(const Diagnostic&)>;

  // Sets the defaults and reads the built-in global parameters. Throws Error 1 "Internal error
  // when reading default parameters, please contact Tessaly hotline" if they do not parse.
  TessalyLibXml();
  ~TessalyLibXml();
  TessalyLibXml(const TessalyLibXml&) = delete;
  TessalyLibXml& operator=(const TessalyLibXml&) = delete;

  // --- Properties (setters store the value and do nothing else) ---
  const std::shared_ptr<TargetItem>& ActiveTarget() const { return ActiveTarget_; }
  void set_ActiveTarget(std::shared_ptr<TargetItem> value) { ActiveTarget_ = std::move(value); }
  const std::string& fileName() const { return fileName_; }
  void set_fileName(std::string value) { fileName_ = std::move(value); }
  const std::shared_ptr<ProtocolItems>& protocols() const { return protocols_; }
  void set_protocols(std::shared_ptr<ProtocolItems> value) { protocols_ = std::move(value); }
  const std::shared_ptr<TypeOrganeItems>& typeOrganes() const { return typeOrganes_; }
  void set_typeOrganes(std::shared_ptr<TypeOrganeItems> value) { typeOrganes_ = std::move(value); }
  const std::shared_ptr<PanneItems>& Pannes() const { return Pannes_; }
  void set_Pannes(std::shared_ptr<PanneItems> value) { Pannes_ = std::move(value); }
  // The functions table; null until the host (or the first import) sets one.
  const std::shared_ptr<FunctionItems>& functions() const { return functions_; }
  void set_functions(std::shared_ptr<FunctionItems> value) { functions_ = std::move(value); }
  // xmlns and xmlEcuSchema are two names of one stored value.
  const std::string& xmlns() const { return ecuNamespace_; }
  void set_xmlns(std::string value) { ecuNamespace_ = std::move(value); }
  const std::string& xmlEcuSchema() const { return ecuNamespace_; }
  void set_xmlEcuSchema(std::string value) { ecuNamespace_ = std::move(value); }
  const std::string& xmlScreenSchema() const { return xmlScreenSchema_; }
  void set_xmlScreenSchema(std::string value) { xmlScreenSchema_ = std::move(value); }
  const std::string& xmlStyleSheet() const { return xmlStyleSheet_; }
  void set_xmlStyleSheet(std::string value) { xmlStyleSheet_ = std::move(value); }
  const std::string& xmlEncoding() const { return xmlEncoding_; }
  void set_xmlEncoding(std::string value) { xmlEncoding_ = std::move(value); }
  const std::string& lang() const { return lang_; }
  void set_lang(std::string value) { lang_ = std::move(value); }

  // --- Operations ---
  // Clears and drops the active target, if any.
  void ClearTarget();
  // Clears the active target and makes a new empty one, whose parent is this facade.
  std::shared_ptr<TargetItem> NewTarget();
  // Loads the ECU document at `location` (file path, file:// or http(s):// URL) into a new
  // active target. Throws Error on a document that does not load or has no root "xml" (the
  // previous target stays active in the first case), and raises the error the target's
  // reading left pending (with everything else loaded).
  void ImportUceFromXml(const std::string& location);
  // The same for a document held in memory (its bytes, in any supported encoding).
  void ImportUceFromText(std::string_view document);
  // Writes the active target to the file `location`. A failed save is reported only through a
  // WarningInfo "Save error (number : N)"; the file is then left as it was.
  void ExportUceToXml(const std::string& location);
  // The reason of the last failed ExportUceToXml (its number is the one the warning gives), or
  // nothing when the last save succeeded.
  const std::optional<Error>& LastSaveError() const { return lastSaveError_; }
  // The document ExportUceToXml would write, as bytes in xmlEncoding.
  std::string ExportUceToText();
  // Writes that document into `doc` (the document node of a DOM or of a text sink): the
  // declaration, the style sheet instruction and the xml element holding the target. Error 91
  // without an active target.
  void WriteDocument(xml::Out doc);
  // Replaces the three reference tables with those of the parameter document at `url`.
  void ReadGlobalParameters(const std::string& url);
  // Replaces the three reference tables with those of the built-in parameter document, names
  // picked in the current `lang` (construction reads them in "fr").
  void ReloadDefaultParameters();
  // Kept for hosts that call it: does nothing.
  void ExportParametersToXml(const std::string& url, const std::string& options);

  // --- Events and sinks ---
  // Registers the WarningInfo callback (an empty function removes it).
  void set_WarningInfo(WarningHandler handler) { warningHandler_ = std::move(handler); }
  // Raises WarningInfo(LibClass, warningMsg) to the host.
  void RaiseWarningInfo(const std::string& LibClass, const std::string& warningMsg) const;
  // The application event log sink (syslog unless the host installs another).
  const std::shared_ptr<tessaly::EventLog>& EventLog() const { return eventLog_; }
  void set_EventLog(std::shared_ptr<tessaly::EventLog> sink) { eventLog_ = std::move(sink); }
  // Registers a callback told of every element a reader drops or repairs while loading.
  void set_Diagnostics(DiagnosticHandler handler) { diagnosticHandler_ = std::move(handler); }
  bool HasDiagnostics() const { return static_cast<bool>(diagnosticHandler_); }
  // Reports one dropped or repaired element (no-op without a registered callback). `node`
  // locates the element in the document being loaded.
  void ReportDiagnostic(Diagnostic::Action action, pugi::xml_node node, std::string what, std::string why) const;

  // A non-owning handle to this facade, which expires when the facade is destroyed: the parent
  // link of the target.
  std::weak_ptr<TessalyLibXml> Handle() const { return self_; }

 private:
  void ReadParameterDocument(const pugi::xml_document& doc);
  void ImportDocument(const std::string& location, const std::string_view* bytes);

  std::shared_ptr<TessalyLibXml> self_;
  std::shared_ptr<TargetItem> ActiveTarget_;
  std::string fileName_;
  std::shared_ptr<ProtocolItems> protocols_;
  std::shared_ptr<TypeOrganeItems> typeOrganes_;
  std::shared_ptr<PanneItems> Pannes_;
  std::shared_ptr<FunctionItems> functions_;
  std::string ecuNamespace_;
  std::string xmlScreenSchema_;
  std::string xmlStyleSheet_;
  std::string xmlEncoding_;
  std::string lang_;
  WarningHandler warningHandler_;
  DiagnosticHandler diagnosticHandler_;
  std::shared_ptr<tessaly::EventLog> eventLog_;
  std::optional<Error> lastSaveError_;
  // Text of the document being loaded, to turn node offsets into lines and columns.
  std::string loadingText_;
  // The offset, line and column of the last diagnostic in loadingText_: the next one, usually
  // further on, is counted from there, so that many diagnostics cost one pass over the text.
  mutable std::size_t positionOffset_ = 0;
  mutable std::size_t positionLine_ = 1;
  mutable std::size_t positionColumn_ = 1;
};

}  // namespace tessaly

#endif  // TESSALY_FACADE_TESSALY_LIB_XML_HPP_
