#include "preview/format.hpp"

#include "tessaly/common/convert.hpp"

namespace tessaly::preview {

std::string ScalingFormula(double step, double offset, double divideBy) {
  std::string formula = "x";
  bool combined = false;
  if (step != 1.0) {
    formula += " \xC3\x97 " + NumberText(step);  // ×
    combined = true;
  }
  if (offset != 0.0) {
    formula += offset < 0 ? " \xE2\x88\x92 " + NumberText(-offset) : " + " + NumberText(offset);  // −
    combined = true;
  }
  if (divideBy != 1.0) {
    if (combined) formula = "(" + formula + ")";
    formula += " \xC3\xB7 " + NumberText(divideBy);  // ÷
  }
  return formula;
}

std::string SizeText(bool numerique, std::int32_t numberBits) {
  if (numerique) return IntText(numberBits) + (numberBits == 1 ? " bit" : " bits");
  if (numberBits % 8 == 0) {
    const std::int32_t bytes = numberBits / 8;
    return IntText(bytes) + (bytes == 1 ? " byte" : " bytes");
  }
  return NumberText(static_cast<double>(numberBits) / 8.0) + " bytes (" + IntText(numberBits) + " bits)";
}

std::string HexText(std::uint32_t value, int digits) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string hex;
  do {
    hex.insert(hex.begin(), kHex[value & 0xFU]);
    value >>= 4U;
  } while (value != 0);
  while (static_cast<int>(hex.size()) < digits) hex.insert(hex.begin(), '0');
  return "0x" + hex;
}

std::string DecimalAndHex(std::int32_t value) {
  return IntText(value) + " (" + HexText(static_cast<std::uint32_t>(value), 2) + ")";
}

std::string CanIdText(std::int32_t id) {
  if (id == -1) return "none";
  const auto bits = static_cast<std::uint32_t>(id);
  if ((bits & 0x80000000U) != 0) return HexText(bits & 0x1FFFFFFFU, 8) + " (extended)";
  return HexText(bits, 3);
}

}  // namespace tessaly::preview
