// Text and number conversions with the semantics that ECU documents have always been read and
// written with. Every reader and writer of the library goes through these functions, so a value
// is converted the same way wherever it appears.
#ifndef TESSALY_COMMON_CONVERT_HPP_
#define TESSALY_COMMON_CONVERT_HPP_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly {

// Text to 32-bit integer. Accepts blanks around the number, an optional sign, decimal digits and
// an optional "." fraction (rounded half to even). Anything else throws error 13 "Type mismatch";
// a value outside the 32-bit range throws error 6 "Overflow".
std::int32_t ToInt32(std::string_view text);

// Text to boolean: "true"/"false" in any letter case, or a number ("0" is false, any other
// number true). Anything else throws error 13.
bool ToBool(std::string_view text);

// Like ToBool, but text that is not a boolean gives false instead of an error.
bool ToBoolOrFalse(std::string_view text) noexcept;

// The longest leading decimal number of `text`: leading blanks, an optional sign, digits, an
// optional "." and fraction, an optional exponent (E or e, optional sign, digits). The first
// other character ends it; no number at all gives 0. Never fails.
double LeadingNumber(std::string_view text) noexcept;

// Rounds to the nearest 32-bit integer, halves to the even neighbour. Throws error 6 when the
// result does not fit (NaN included).
std::int32_t RoundToInt32(double value);

// Decimal text of an integer ("-12").
std::string IntText(std::int64_t value);

// The shortest decimal text that reads back as `value`, with at most 15 significant digits,
// "." as separator and a leading zero below 1 ("0.5", "-40", "0.001"). Magnitudes from 1E+15 up
// and below 1E-4 use the exponent form ("1E+16", "1.5E-07").
std::string NumberText(double value);

// The same for a 32-bit float, with at most 7 significant digits (exponent from 1E+07 up).
std::string NumberText(float value);

// Number text that reserves a position for the sign: a blank before a non-negative number, "-"
// before a negative one, and no leading zero below 1 (" 12", "-5", " 8.25", " .5", "-.25").
std::string SignedNumberText(double value);
std::string SignedNumberText(float value);

// Removes leading and trailing space characters (code 32 only).
std::string_view TrimSpaces(std::string_view text) noexcept;

// Replaces every line feed by carriage return + line feed.
std::string LfToCrLf(std::string_view text);

// Upper-cases ASCII letters (used by case-blind label look-ups).
std::string AsciiUpper(std::string_view text);

// The form under which collection keys are compared: letters folded to lower case (ASCII, and
// simple case folding of Latin-1, Latin Extended-A, Greek and Cyrillic letters in UTF-8).
std::string FoldCase(std::string_view text);
// A hash of FoldCase(text), and FoldCase(a) == FoldCase(b), computed without building the folded
// texts.
std::size_t FoldedHash(std::string_view text) noexcept;
bool FoldedEqual(std::string_view a, std::string_view b) noexcept;

}  // namespace tessaly

#endif  // TESSALY_COMMON_CONVERT_HPP_
