// The texts the page shows for values of the model: scaling formulas, sizes, hex forms of
// bytes, addresses and CAN identifiers.
#ifndef TESSALY_SRC_PREVIEW_FORMAT_HPP_
#define TESSALY_SRC_PREVIEW_FORMAT_HPP_

#include <cstdint>
#include <string>

namespace tessaly::preview {

// The physical value of a scaled data item as a formula of the raw value x:
// (x × Step + Offset) ÷ DivideBy, leaving out what is at its neutral value ("x", "x × 0.5",
// "x × 0.5 − 40", "(x + 3) ÷ 10").
std::string ScalingFormula(double step, double offset, double divideBy);

// The width of a data item: "12 bits" for a numeric one; "3 bytes" for a byte string, or
// "2.5 bytes (20 bits)" when its bits are not whole bytes.
std::string SizeText(bool numerique, std::int32_t numberBits);

// Upper-case hex of `value` with at least `digits` digits, prefixed "0x" ("0x07E0").
std::string HexText(std::uint32_t value, int digits);

// "122 (0x7A)".
std::string DecimalAndHex(std::int32_t value);

// A CAN identifier: "none" for -1, "0x7E0" for a standard identifier, "0x18DA10F1 (extended)"
// for one with bit 31 set (its low 29 bits).
std::string CanIdText(std::int32_t id);

}  // namespace tessaly::preview

#endif  // TESSALY_SRC_PREVIEW_FORMAT_HPP_
