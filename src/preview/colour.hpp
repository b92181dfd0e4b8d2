// Colours of ECU screens. Documents store a colour as a 32-bit integer packed blue, green, red
// from the high to the low byte (0x00BBGGRR): 255 is red, 65280 green, 16711680 blue. A value
// with the top bit set is a system colour of the diagnostic tool (0x800000NN, NN the index of
// the colour in the tool's classic palette: 5 window background, 15 button face, ...).
#ifndef TESSALY_SRC_PREVIEW_COLOUR_HPP_
#define TESSALY_SRC_PREVIEW_COLOUR_HPP_

#include <cstdint>
#include <string>

namespace tessaly::preview {

struct Rgb {
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

// True for a system colour (top bit set).
bool IsSystemColour(std::int32_t packed) noexcept;

// The red, green and blue of a packed colour. A system colour gives the colour of that index in
// the classic palette (black for an index the palette does not have); for any other value the
// top byte is ignored.
Rgb DecodeColour(std::int32_t packed) noexcept;

// "#rrggbb" (lower-case hex) of a packed colour, for CSS and SVG.
std::string CssColour(std::int32_t packed);
std::string CssColour(Rgb rgb);

// What the page prints beside a swatch: "#ff0000 (255)", or for a system colour
// "system 15 #d4d0c8 (-2147483633)".
std::string ColourLabel(std::int32_t packed);

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_COLOUR_HPP_
