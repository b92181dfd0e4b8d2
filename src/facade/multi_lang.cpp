#include "tessaly/facade/multi_lang.hpp"

#include "common/xml_util.hpp"

namespace tessaly {

std::string MultiLang(pugi::xml_node node, const char* element, std::string_view language) {
  pugi::xml_node found = xml::ChildWhere(node, element, "xml:lang", language);
  if (!found) found = xml::Child(node, element);
  return found ? xml::Text(found) : std::string();
}

std::string ParamNodeDefinition() {
  // Declared windows-1252 as it has always been, but held here as UTF-8 text: it is parsed
  // directly, never decoded, so "Entrée" stays "Entrée".
  static const char* const kPieces[] = {
      "<?xml version=\"1.0\" encoding=\"windows-1252\"?><xml>",
      "  <Protocols>"
      "    <Protocol Code=\"1\" multiPoint=\"0\" initMode=\"0\">"
      "<Name xml:lang=\"en\">ISO8</Name><Name xml:lang=\"fr\">ISO8</Name></Protocol>"
      "    <Protocol Code=\"2\" multiPoint=\"0\" initMode=\"1\">"
      "<Name xml:lang=\"en\">KWP2000 Init 5 Baud Type I</Name>"
      "<Name xml:lang=\"fr\">KWP 2000 Type I - init lente</Name></Protocol>"
      "    <Protocol Code=\"3\" multiPoint=\"1\" initMode=\"1\">"
      "<Name xml:lang=\"en\">KWP2000 Init 5 Baud Type I and II</Name>"
      "<Name xml:lang=\"fr\">KWP 2000 Type II - init lente</Name></Protocol>"
      "    <Protocol Code=\"4\" multiPoint=\"0\" initMode=\"2\">"
      "<Name xml:lang=\"en\">KWP2000 FastInit MonoPoint</Name>"
      "<Name xml:lang=\"fr\">KWP 2000 init rapide monopoint</Name></Protocol>"
      "    <Protocol Code=\"6\" multiPoint=\"1\" initMode=\"2\">"
      "<Name xml:lang=\"en\">KWP2000 FastInit MultiPoint</Name>"
      "<Name xml:lang=\"fr\">KWP 2000 init rapide multipoint</Name></Protocol>"
      "    <Protocol Code=\"7\" multiPoint=\"1\" initMode=\"3\">"
      "<Name xml:lang=\"en\">DiagOnCAN</Name><Name xml:lang=\"fr\">DiagOnCAN</Name></Protocol>"
      "    <Protocol Code=\"8\" multiPoint=\"1\" initMode=\"255\">"
      "<Name xml:lang=\"en\">CAN Messaging</Name><Name xml:lang=\"fr\">Messagerie CAN</Name></Protocol>"
      "  </Protocols>",
      "  <Failures>"
      "    <Failure Id=\"0\"><Name xml:lang=\"en\">No failures</Name>"
      "<Name xml:lang=\"fr\">Ne contient pas de pannes</Name></Failure>"
      "    <Failure Id=\"1\"><Name xml:lang=\"en\">Failures Flags</Name>"
      "<Name xml:lang=\"fr\">Flags de pannes</Name></Failure>"
      "    <Failure Id=\"2\"><Name xml:lang=\"en\">10 DTC failures read with After sales Frames</Name>"
      "<Name xml:lang=\"fr\">10 pannes DTC dans les trames APV</Name></Failure>"
      "    <Failure Id=\"3\"><Name xml:lang=\"en\">DTC Failures</Name>"
      "<Name xml:lang=\"fr\">Pannes DTC</Name></Failure>"
      "  </Failures>",
      "  <DeviceTypes>"
      "    <DeviceType Id=\"1\"><Name xml:lang=\"en\">Input</Name>"
      "<Name xml:lang=\"fr\">Entr\xC3\xA9" "e</Name></DeviceType>"
      "    <DeviceType Id=\"2\"><Name xml:lang=\"en\">Internal</Name>"
      "<Name xml:lang=\"fr\">Interne</Name></DeviceType>"
      "    <DeviceType Id=\"3\"><Name xml:lang=\"en\">Output</Name>"
      "<Name xml:lang=\"fr\">Sortie</Name></DeviceType>"
      "    <DeviceType Id=\"4\"><Name xml:lang=\"en\">Other</Name>"
      "<Name xml:lang=\"fr\">Autres</Name></DeviceType>"
      "  </DeviceTypes>",
      "</xml>",
  };
  std::string text;
  for (const char* piece : kPieces) text += piece;
  return text;
}

}  // namespace tessaly
