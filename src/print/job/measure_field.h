#pragma once
// Measure fields of the print dialogs: a length typed as a number with an optional unit word,
// stored in twips (1440 to the inch) and shown in the unit of the Measure preference.

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace zv {

/// The units of the Measure preference, by its stored value.
enum class MeasureUnit { Centimetres = 0, Inches = 1, Points = 2, Millimetres = 3 };

/// The unit of a stored Measure preference; any value outside 0 to 3 (-1 by default) takes the
/// locale's: centimetres where it is metric, else inches.
MeasureUnit measureUnitOf(long preference, bool localeIsMetric);

/// The message that refuses a measure field's text.
struct MeasureError {
  std::string text;
  friend bool operator==(const MeasureError&, const MeasureError&) = default;
};

/// Reads a measure field: a number, then an optional unit word ("in", "inch", "inches", `"`,
/// "cm", "mm", "pt", "point", "points" and the like, ignoring case); no unit takes `unit`.
/// Twips, rounded by adding 0.5 (points are 20 twips each, cut without rounding); or the
/// refusal: "Invalid measurement: %s" when there is no number, "Unrecognizable measurement"
/// when the unit word is unknown.
std::variant<long, MeasureError> readMeasure(std::string_view text, MeasureUnit unit);

/// Reads a measure field and shows its refusal in a box; nullopt when it was refused.
std::optional<long> measureFieldValue(std::string_view text, MeasureUnit unit);

/// The text a measure field shows for `twips` in `unit`: "%4.2f" with trailing zeros and a
/// trailing point removed, then "cm", "pt", "mm", or `"` for inches ("2.54cm", "12.5pt", `1"`).
std::string formatMeasure(long twips, MeasureUnit unit);

/// The spin step of a measure field: the unit is read from the first letter after the number
/// (`"` or i inches, c centimetres, m millimetres, p points; none or another: `unit`), the value
/// moved by `steps` of 0.1 (inches, centimetres) or 1 (millimetres, points), kept between
/// `minTwips` and `maxTwips`, and shown again in the same unit. Text without a number starts
/// from 0.
std::string spinMeasure(std::string_view text, int steps, long minTwips, long maxTwips,
                        MeasureUnit unit);

}  // namespace zv
