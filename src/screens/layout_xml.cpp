#include "screens/layout_xml.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "common/xml_util.hpp"
#include "tessaly/common/convert.hpp"
#include "tessaly/common/error.hpp"

namespace tessaly {

double FontSizeValue(std::string_view text) {
  std::string pointed(text);
  std::replace(pointed.begin(), pointed.end(), ',', '.');
  return LeadingNumber(pointed);
}

float FontSizeSingle(std::string_view text) {
  double value = FontSizeValue(text);
  if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) RaisePlatform(errc::kOverflow);
  return static_cast<float>(value);
}

void AppendRectangle(xml::Out parent, std::int32_t left, std::int32_t top, std::int32_t height,
                     std::int32_t width) {
  xml::Out rectangle = xml::AppendElement(parent, "Rectangle");
  xml::SetAttr(rectangle, "Left", left);
  xml::SetAttr(rectangle, "Top", top);
  xml::SetAttr(rectangle, "Height", height);
  xml::SetAttr(rectangle, "Width", width);
}

void ReadRectangle(pugi::xml_node rectangle, std::int32_t& left, std::int32_t& top, std::int32_t& height,
                   std::int32_t& width) {
  Trap([&] { xml::ReadInt(rectangle, "Left", left); });
  Trap([&] { xml::ReadInt(rectangle, "Top", top); });
  Trap([&] { xml::ReadInt(rectangle, "Height", height); });
  Trap([&] { xml::ReadInt(rectangle, "Width", width); });
}

}  // namespace tessaly
