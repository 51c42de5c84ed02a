#include "core/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "core/engine_context.h"
#include "core/messages.h"

namespace zv {

namespace {

std::string fixed(double value, int precision) {
  char buffer[400];
  auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, precision);
  if (result.ec != std::errc()) return "0";
  return std::string(buffer, result.ptr);
}

void trimZeros(std::string& text) {
  if (text.find('.') == std::string::npos) return;
  while (!text.empty() && (text.back() == '0' || text.back() == ' '))
    text.pop_back();
  if (!text.empty() && text.back() == '.') text.pop_back();
}

bool isGlyph(unsigned char c) {
  return c == kQuarterGlyph || c == kHalfGlyph || c == kThreeQuartersGlyph;
}

}  // namespace

bool useFractions() {
  return engine().preferences.useFractions;
}

std::string formatFloat(double value, bool fractions) {
  if (value == 0.0) return "0";
  if (!std::isfinite(value)) return fixed(value, 0);
  double integral = 0.0;
  double fraction = std::modf(value, &integral);
  if (fractions) {
    double f = std::fabs(fraction);
    std::string sign = value < 0 ? "-" : "";
    std::string whole = integral == 0.0 ? std::string() : fixed(std::fabs(integral), 0);
    auto near = [f](double target) { return std::fabs(f - target) <= 1e-13; };
    if (near(0.5)) return sign + whole + static_cast<char>(kHalfGlyph);
    if (near(0.25)) return sign + whole + static_cast<char>(kQuarterGlyph);
    if (near(0.75)) return sign + whole + static_cast<char>(kThreeQuartersGlyph);
  }
  if (std::fabs(fraction) >= 1e-13) {
    std::string text = fixed(value, 7);
    trimZeros(text);
    if (text == "-0") text = "0";
    return text;
  }
  std::string text = fixed(integral, 0);
  return text == "-0" ? "0" : text;
}

std::string formatRealForFile(double value) {
  if (value == 0.0) return "0";
  if (!std::isfinite(value)) return "0";
  double integral = 0.0;
  double fraction = std::modf(value, &integral);
  if (fraction == 0.0 && integral >= -2147483648.0 && integral <= 2147483647.0) {
    return std::to_string(static_cast<long>(integral));
  }
  std::string text = fixed(value, std::fabs(fraction) < 1e-5 ? 16 : 8);
  trimZeros(text);
  return text;
}

double leadingDecimal(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  size_t start = i;
  size_t digits = 0;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9')
    ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9')
      ++i, ++digits;
  }
  if (digits == 0) return 0.0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    if (j < text.size() && text[j] >= '0' && text[j] <= '9') {
      while (j < text.size() && text[j] >= '0' && text[j] <= '9')
        ++j;
      i = j;
    }
  }
  double value = 0.0;
  std::from_chars(text.data() + start, text.data() + i, value, std::chars_format::general);
  return negative ? -value : value;
}

long leadingInteger(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
    ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  uint32_t value = 0;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
    value = value * 10u + static_cast<uint32_t>(text[i] - '0');
    ++i;
  }
  if (negative) value = 0u - value;
  return static_cast<long>(static_cast<int32_t>(value));
}

double parseReal(std::string_view text) {
  size_t glyphAt = std::string_view::npos;
  for (size_t i = 0; i < text.size(); ++i) {
    if (isGlyph(static_cast<unsigned char>(text[i]))) {
      glyphAt = i;
      break;
    }
  }
  if (glyphAt == std::string_view::npos) return leadingDecimal(text);

  size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  std::string_view behindSign = text.substr(i);
  double whole = 0.0;
  for (; i < glyphAt; ++i) {
    char c = text[i];
    if (c >= '0' && c <= '9') {
      whole = whole * 10.0 + (c - '0');
    } else if (c != ' ' && c != '\t') {
      showError(strprintf("Poorly formatted floating point value: %s", std::string(behindSign)));
      return 0.0;
    }
  }
  unsigned char glyph = static_cast<unsigned char>(text[glyphAt]);
  double part = glyph == kQuarterGlyph ? 0.25 : glyph == kHalfGlyph ? 0.5 : 0.75;
  double value = whole + part;
  return negative ? -value : value;
}

}  // namespace zv
