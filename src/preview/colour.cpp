#include "preview/colour.hpp"

#include <array>

#include "tessaly/common/convert.hpp"

namespace tessaly::preview {
namespace {

constexpr std::uint32_t kSystemBit = 0x80000000U;

// The classic palette of the tool's system colours, by index.
constexpr std::array<Rgb, 25> kSystemPalette = {{
    {212, 208, 200},  // 0 scroll bars
    {58, 110, 165},   // 1 desktop
    {10, 36, 106},    // 2 active title bar
    {128, 128, 128},  // 3 inactive title bar
    {212, 208, 200},  // 4 menu bar
    {255, 255, 255},  // 5 window background
    {0, 0, 0},        // 6 window frame
    {0, 0, 0},        // 7 menu text
    {0, 0, 0},        // 8 window text
    {255, 255, 255},  // 9 active title bar text
    {212, 208, 200},  // 10 active border
    {212, 208, 200},  // 11 inactive border
    {128, 128, 128},  // 12 application workspace
    {10, 36, 106},    // 13 highlight
    {255, 255, 255},  // 14 highlight text
    {212, 208, 200},  // 15 button face
    {128, 128, 128},  // 16 button shadow
    {128, 128, 128},  // 17 grey (disabled) text
    {0, 0, 0},        // 18 button text
    {212, 208, 200},  // 19 inactive title bar text
    {255, 255, 255},  // 20 button highlight
    {64, 64, 64},     // 21 3-D dark shadow
    {212, 208, 200},  // 22 3-D light
    {0, 0, 0},        // 23 tooltip text
    {255, 255, 225},  // 24 tooltip background
}};

char HexDigit(unsigned value) { return "0123456789abcdef"[value & 0xFU]; }

}  // namespace

bool IsSystemColour(std::int32_t packed) noexcept { return (static_cast<std::uint32_t>(packed) & kSystemBit) != 0; }

Rgb DecodeColour(std::int32_t packed) noexcept {
  const auto bits = static_cast<std::uint32_t>(packed);
  if ((bits & kSystemBit) != 0) {
    const std::uint32_t index = bits & 0xFFFFFFU;
    return index < kSystemPalette.size() ? kSystemPalette[index] : Rgb{};
  }
  return Rgb{static_cast<std::uint8_t>(bits & 0xFFU), static_cast<std::uint8_t>((bits >> 8) & 0xFFU),
             static_cast<std::uint8_t>((bits >> 16) & 0xFFU)};
}

std::string CssColour(Rgb rgb) {
  std::string text = "#";
  for (std::uint8_t channel : {rgb.r, rgb.g, rgb.b}) {
    text += HexDigit(channel >> 4U);
    text += HexDigit(channel);
  }
  return text;
}

std::string CssColour(std::int32_t packed) { return CssColour(DecodeColour(packed)); }

std::string ColourLabel(std::int32_t packed) {
  std::string label;
  if (IsSystemColour(packed))
    label = "system " + IntText(static_cast<std::uint32_t>(packed) & 0xFFFFFFU) + " ";
  return label + CssColour(packed) + " (" + IntText(packed) + ")";
}

}  // namespace tessaly::preview
