#include "filter/file/measure.h"

#include <algorithm>
#include <cmath>

#include "core/text.h"

namespace zv {

namespace {

std::int16_t clampTwips(double value) {
  value = std::clamp(value, -32768.0, 32767.0);
  return static_cast<std::int16_t>(value);
}

}  // namespace

std::optional<std::int16_t> parseMeasure(std::string_view word) {
  std::size_t pos = 0;
  double sign = 1.0;
  if (pos < word.size() && (word[pos] == '-' || word[pos] == '+')) {
    if (word[pos] == '-') sign = -1.0;
    ++pos;
  }
  double number = 0.0;
  bool digits = false;
  while (pos < word.size() && word[pos] >= '0' && word[pos] <= '9') {
    number = number * 10.0 + (word[pos] - '0');
    digits = true;
    ++pos;
  }
  if (pos < word.size() && word[pos] == '.') {
    ++pos;
    double scale = 0.1;
    while (pos < word.size() && word[pos] >= '0' && word[pos] <= '9') {
      number += (word[pos] - '0') * scale;
      scale /= 10.0;
      digits = true;
      ++pos;
    }
  }
  if (!digits) return std::nullopt;
  number *= sign;
  const unsigned char unit =
      pos < word.size() ? toLowerChar(static_cast<unsigned char>(word[pos])) : 0;
  switch (unit) {
    case '"':
    case 'i':
      return clampTwips(std::trunc(number * 72.0 * 20.0 + 0.5));
    case 'c':
      return clampTwips(std::trunc(number * 72.0 * 20.0 / 2.54 + 0.5));
    case 'p':
      return clampTwips(std::trunc(number * 20.0 + 0.5));
    case 'l':
      return clampTwips(-std::trunc(number));
    default:
      return clampTwips(std::trunc(number));
  }
}

}  // namespace zv
