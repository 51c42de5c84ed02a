#include "core/value.h"

#include <cmath>
#include <limits>

#include "core/numbers.h"

namespace zv {

namespace {

bool isDigit(unsigned char c) {
  return c >= '0' && c <= '9';
}

bool isFractionGlyph(unsigned char c) {
  return c == kQuarterGlyph || c == kHalfGlyph || c == kThreeQuartersGlyph;
}

std::int32_t clampToInteger(double real) {
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  if (std::isnan(real)) return 0;
  if (real > kHighest) return std::numeric_limits<std::int32_t>::max();
  if (real < kLowest) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(std::trunc(real));
}

std::int32_t integerOfText(const std::string& text) {
  if (text.empty()) return 0;
  unsigned char first = static_cast<unsigned char>(text.front());
  if (isDigit(first) || first == '-' || first == '+') {
    return static_cast<std::int32_t>(leadingInteger(text));
  }
  return 1;
}

double floatOfText(const std::string& text) {
  if (text.empty()) return 0.0;
  unsigned char first = static_cast<unsigned char>(text.front());
  if (isDigit(first) || first == '.' || first == '+' || first == '-' || isFractionGlyph(first)) {
    return parseReal(text);
  }
  return 1.0;
}

}  // namespace

std::int32_t integerOf(const Value& value) {
  switch (value.kind()) {
    case ValueKind::Integer:
      return value.integer();
    case ValueKind::Float:
      return clampToInteger(value.real());
    case ValueKind::String:
      return integerOfText(value.text());
    default:
      return 0;
  }
}

double floatOf(const Value& value) {
  switch (value.kind()) {
    case ValueKind::Integer:
      return value.integer();
    case ValueKind::Float:
      return value.real();
    case ValueKind::String:
      return floatOfText(value.text());
    default:
      return 0.0;
  }
}

void forceInteger(Value& value) {
  if (!value.isInteger()) value.setInteger(integerOf(value));
}

void forceFloat(Value& value) {
  if (!value.isFloat()) value.setFloat(floatOf(value));
}

}  // namespace zv
