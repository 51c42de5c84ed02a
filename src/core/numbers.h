#pragma once
// The two real formatters (what the user sees, and the exact form of files) and the real parser,
// all independent of the C locale. Bytes 188, 189 and 190 are the glyphs for a quarter, a half and
// three quarters.

#include <string>
#include <string_view>

namespace zv {

inline constexpr unsigned char kQuarterGlyph = 188;
inline constexpr unsigned char kHalfGlyph = 189;
inline constexpr unsigned char kThreeQuartersGlyph = 190;

/// Whether the display formatter writes quarter glyphs (the preference `UseFractions` of the
/// engine context).
bool useFractions();

/// The display form of a number: "2\xBD" for 2.5 with fractions on, otherwise up to seven decimals
/// with trailing zeros removed.
std::string formatFloat(double value, bool fractions);
inline std::string formatFloat(double value) {
  return formatFloat(value, useFractions());
}

/// The exact form written to files: "0", a whole number, or eight (sixteen for tiny fractions)
/// decimals with trailing zeros removed.
std::string formatRealForFile(double value);

/// Parses a number that may end in a quarter glyph ("2\xBD" is 2.5). Without a glyph the leading
/// decimal number of the text is read (junk after it is ignored, no number gives 0). With a glyph,
/// anything but a sign, digits and blanks before it reports "Poorly formatted floating point value:
/// %s" and gives 0.
double parseReal(std::string_view text);

/// The leading decimal number of a text (sign, digits, point, exponent); 0 when there is none.
double leadingDecimal(std::string_view text);
/// The leading integer of a text, like atol: optional blanks and sign, then digits; wraps to 32
/// bits.
long leadingInteger(std::string_view text);

}  // namespace zv
