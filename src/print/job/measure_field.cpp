#include "print/job/measure_field.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "core/messages.h"
#include "core/text.h"

namespace zv {

namespace {

/// Lengths beyond this many twips (about eleven miles) are no measure of a page.
constexpr double kLargestTwips = 1e9;

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

std::string_view skipBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  return text;
}

/// The number at the start of `text` (after blanks, with an optional sign); the rest follows it.
std::optional<double> leadingNumber(std::string_view& text) {
  std::string_view rest = skipBlanks(text);
  bool negative = false;
  if (!rest.empty() && (rest.front() == '+' || rest.front() == '-')) {
    negative = rest.front() == '-';
    rest.remove_prefix(1);
  }
  double value = 0;
  auto [end, error] =
      std::from_chars(rest.data(), rest.data() + rest.size(), value, std::chars_format::general);
  if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
  text = rest.substr(static_cast<std::size_t>(end - rest.data()));
  return negative ? -value : value;
}

double twipsPer(MeasureUnit unit) {
  switch (unit) {
    case MeasureUnit::Centimetres:
      return 1440.0 / 2.54;
    case MeasureUnit::Inches:
      return 1440.0;
    case MeasureUnit::Points:
      return 20.0;
    case MeasureUnit::Millimetres:
      return 1440.0 / 25.4;
  }
  return 1440.0;
}

long toTwips(double value, MeasureUnit unit) {
  const double twips = value * twipsPer(unit);
  // Points are whole twentieths of a point with no rounding; the others round by adding 0.5.
  return static_cast<long>(unit == MeasureUnit::Points ? twips : twips + 0.5);
}

struct UnitWord {
  std::string_view word;
  MeasureUnit unit;
};

constexpr std::array<UnitWord, 15> kUnitWords{{
    {"\"", MeasureUnit::Inches},
    {"in", MeasureUnit::Inches},
    {"inch", MeasureUnit::Inches},
    {"inches", MeasureUnit::Inches},
    {"cm", MeasureUnit::Centimetres},
    {"centimeter", MeasureUnit::Centimetres},
    {"centimeters", MeasureUnit::Centimetres},
    {"centimetre", MeasureUnit::Centimetres},
    {"centimetres", MeasureUnit::Centimetres},
    {"mm", MeasureUnit::Millimetres},
    {"millimeters", MeasureUnit::Millimetres},
    {"millimetres", MeasureUnit::Millimetres},
    {"pt", MeasureUnit::Points},
    {"point", MeasureUnit::Points},
    {"points", MeasureUnit::Points},
}};

std::optional<MeasureUnit> unitOfWord(std::string_view word) {
  for (const UnitWord& entry : kUnitWords)
    if (equalsIgnoringCase(entry.word, word)) return entry.unit;
  if (equalsIgnoringCase(word, "millimeter") || equalsIgnoringCase(word, "millimetre"))
    return MeasureUnit::Millimetres;
  return std::nullopt;
}

/// The unit named by the first letter after a number; none when it names none.
std::optional<MeasureUnit> unitOfLetter(std::string_view rest) {
  rest = skipBlanks(rest);
  if (rest.empty()) return std::nullopt;
  switch (rest.front()) {
    case '"':
    case 'i':
    case 'I':
      return MeasureUnit::Inches;
    case 'c':
    case 'C':
      return MeasureUnit::Centimetres;
    case 'm':
    case 'M':
      return MeasureUnit::Millimetres;
    case 'p':
    case 'P':
      return MeasureUnit::Points;
    default:
      return std::nullopt;
  }
}

std::string_view suffixOf(MeasureUnit unit) {
  switch (unit) {
    case MeasureUnit::Centimetres:
      return "cm";
    case MeasureUnit::Inches:
      return "\"";
    case MeasureUnit::Points:
      return "pt";
    case MeasureUnit::Millimetres:
      return "mm";
  }
  return "";
}

/// "%4.2f" with trailing zeros and a trailing point removed.
std::string numberText(double value) {
  std::array<char, 64> buffer{};
  auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::fixed, 2);
  std::string number = error == std::errc() ? std::string(buffer.data(), end) : "0";
  if (number.find('.') != std::string::npos) {
    while (number.back() == '0')
      number.pop_back();
    if (number.back() == '.') number.pop_back();
  }
  if (number == "-0") number = "0";
  return number;
}

}  // namespace

MeasureUnit measureUnitOf(long preference, bool localeIsMetric) {
  if (preference >= 0 && preference <= 3) return static_cast<MeasureUnit>(preference);
  return localeIsMetric ? MeasureUnit::Centimetres : MeasureUnit::Inches;
}

std::variant<long, MeasureError> readMeasure(std::string_view text, MeasureUnit unit) {
  std::string_view rest = text;
  std::optional<double> value = leadingNumber(rest);
  if (!value || std::fabs(*value * twipsPer(MeasureUnit::Inches)) > kLargestTwips)
    return MeasureError{strprintf("Invalid measurement: %s", std::string(text))};
  rest = skipBlanks(rest);
  std::size_t wordEnd = 0;
  while (wordEnd < rest.size() && !isBlank(rest[wordEnd]))
    ++wordEnd;
  if (wordEnd > 0) {
    std::optional<MeasureUnit> named = unitOfWord(rest.substr(0, wordEnd));
    if (!named) return MeasureError{"Unrecognizable measurement"};
    unit = *named;
  }
  return toTwips(*value, unit);
}

std::optional<long> measureFieldValue(std::string_view text, MeasureUnit unit) {
  auto read = readMeasure(text, unit);
  if (const auto* error = std::get_if<MeasureError>(&read)) {
    showError(error->text);
    return std::nullopt;
  }
  return std::get<long>(read);
}

std::string formatMeasure(long twips, MeasureUnit unit) {
  return numberText(static_cast<double>(twips) / twipsPer(unit)) + std::string(suffixOf(unit));
}

std::string spinMeasure(std::string_view text, int steps, long minTwips, long maxTwips,
                        MeasureUnit unit) {
  std::string_view rest = text;
  double value = leadingNumber(rest).value_or(0.0);
  unit = unitOfLetter(rest).value_or(unit);
  const double step = unit == MeasureUnit::Inches || unit == MeasureUnit::Centimetres ? 0.1 : 1.0;
  value = std::clamp(value + steps * step, -kLargestTwips / 1440.0, kLargestTwips / 1440.0);
  const long twips = toTwips(value, unit);
  // A value inside the bounds is shown as stepped; one outside is held at the bound.
  if (twips >= minTwips && twips <= maxTwips)
    return numberText(value) + std::string(suffixOf(unit));
  return formatMeasure(std::clamp(twips, minTwips, maxTwips), unit);
}

}  // namespace zv
