#include "core/value.h"

#include <cmath>
#include <limits>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/text.h"

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

/// A value as a double; texts go through `textToDouble`, the two readings of a text differing.
template <typename TextToDouble>
double numberOf(const Value& value, TextToDouble textToDouble) {
  switch (value.kind()) {
    case ValueKind::Integer:
      return value.integer();
    case ValueKind::Float:
      return value.real();
    case ValueKind::String:
      return textToDouble(value.text());
    default:
      return 0.0;
  }
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
  return numberOf(value, floatOfText);
}

void forceInteger(Value& value) {
  if (!value.isInteger()) value.setInteger(integerOf(value));
}

void forceFloat(Value& value) {
  if (!value.isFloat()) value.setFloat(floatOf(value));
}

bool forceString(Value& value) {
  switch (value.kind()) {
    case ValueKind::String:
      return true;
    case ValueKind::Integer:
      value.setString(std::to_string(value.integer()));
      return true;
    case ValueKind::Float:
      value.setString(formatFloat(value.real()));
      return true;
    default:
      showError("Error in forceString");
      return false;
  }
}

void freeValue(Value& value) {
  if (value.isString()) value.setInteger(0);
}

namespace {

template <typename T>
int threeWay(T a, T b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

}  // namespace

int compareValues(const Value& a, const Value& b) {
  if (a.kind() == b.kind()) {
    switch (a.kind()) {
      case ValueKind::Integer:
        return threeWay(a.integer(), b.integer());
      case ValueKind::Float:
        return threeWay(a.real(), b.real());
      case ValueKind::String:
        return compareIgnoringCase(a.text(), b.text());
      default:
        return 1;
    }
  }
  return threeWay(valueToDouble(a), valueToDouble(b));
}

std::string valueToText(const Value& value) {
  switch (value.kind()) {
    case ValueKind::Integer:
      return std::to_string(value.integer());
    case ValueKind::String:
      return value.text();
    default:
      return formatFloat(valueToDouble(value));
  }
}

double valueToDouble(const Value& value) {
  return numberOf(value, [](const std::string& text) { return leadingDecimal(text); });
}

std::int32_t valueToInteger(const Value& value) {
  return integerOf(value);
}

}  // namespace zv
