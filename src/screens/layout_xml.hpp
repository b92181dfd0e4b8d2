// The Rectangle and Font pieces that labels, displays and buttons share.
#ifndef TESSALY_SRC_SCREENS_LAYOUT_XML_HPP_
#define TESSALY_SRC_SCREENS_LAYOUT_XML_HPP_

#include <pugixml.hpp>

#include <cstdint>
#include <string_view>

#include "tessaly/common/xml_out.hpp"

namespace tessaly {

// A font size as written in documents: read as a number from the start of the text, with every
// comma taken as a decimal point ("8,25" is 8.25, " 10" is 10, text without a number is 0).
double FontSizeValue(std::string_view text);

// The same for the 32-bit font sizes of labels and buttons: error 6 "Overflow" when the number
// is beyond the range of a float, which could only be written back as an infinity.
float FontSizeSingle(std::string_view text);

// Appends a Rectangle element with Left, Top, Height and Width, in that order.
void AppendRectangle(xml::Out parent, std::int32_t left, std::int32_t top, std::int32_t height,
                     std::int32_t width);

// Reads Left, Top, Height and Width of `rectangle` into the four values; a value that is missing
// keeps its value, one that does not convert keeps it too and records the conversion's error.
void ReadRectangle(pugi::xml_node rectangle, std::int32_t& left, std::int32_t& top, std::int32_t& height,
                   std::int32_t& width);

}  // namespace tessaly

#endif  // TESSALY_SRC_SCREENS_LAYOUT_XML_HPP_
