// format(fmt, args...): a small printf-like language. A conversion is "%", an optional "+" or
// "-" (show the sign; with "-" a zero gets "-"), optional digits and a letter:
//   d, s        a text as it stands; a number plainly, or fixed with `digits` decimals
//   n           a number with the locale's thousands and decimal marks
//   x, X, o, b  an integer in base 16, 16 upper case, 8 or 2, at least `digits` wide, "0" padded
// A conversion that has no argument left is written as its letter; any other letter is written
// alone. "%%" writes one "%", and a "%" followed by neither a letter nor flags and digits and a
// letter is copied as it stands.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "core/engine_context.h"
#include "core/numbers.h"
#include "core/text.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"

namespace zv {

namespace {

/// Decimals and widths beyond this are taken as this, which keeps every text bounded.
constexpr int kMostDigits = 300;

/// A real in fixed notation with `decimals` decimals, independent of the C locale, rounding an
/// exact tie to even as printf does.
std::string fixed(double value, int decimals) {
  if (!std::isfinite(value)) return value != value ? "nan" : (value < 0 ? "-inf" : "inf");
  char buffer[700];
  auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  if (result.ec != std::errc()) return "0";
  return std::string(buffer, result.ptr);
}

/// Removes trailing zeros after a decimal point, and the point when nothing follows it.
void stripZeros(std::string& text) {
  if (text.find('.') == std::string::npos) return;
  while (text.back() == '0')
    text.pop_back();
  if (text.back() == '.') text.pop_back();
  if (text == "-0") text = "0";
}

struct Conversion {
  char sign = 0;    ///< '+', '-' or 0
  int digits = -1;  ///< -1 when none were given
  char letter = 0;
};

/// The prefix that the sign flag asks for: "+" before a positive value and, with "+", before
/// zero; "-" before zero with "-". Negative values carry their own sign.
std::string signPrefix(const Conversion& conversion, double value) {
  if (conversion.sign == 0 || value < 0) return {};
  if (value > 0) return "+";
  return std::string(1, conversion.sign);
}

/// Inserts the thousands mark between groups of three digits of the whole part, and puts the
/// decimal mark for the point.
std::string withMarks(const std::string& number, const NumberMarks& marks) {
  std::size_t begin = number.empty() || number[0] != '-' ? 0 : 1;
  std::size_t point = number.find('.');
  std::size_t end = point == std::string::npos ? number.size() : point;
  std::string out = number.substr(0, begin);
  for (std::size_t i = begin; i < end; ++i) {
    if (i > begin && (end - i) % 3 == 0) out += marks.thousands;
    out.push_back(number[i]);
  }
  if (point != std::string::npos) out += marks.decimal + number.substr(point + 1);
  return out;
}

std::string convertText(const Conversion& conversion, const Value& argument) {
  if (argument.isString()) return argument.text();
  double value = valueToDouble(argument);
  std::string digits =
      conversion.digits >= 0 ? fixed(value, conversion.digits) : valueToText(argument);
  return signPrefix(conversion, value) + digits;
}

std::string convertMarked(const Conversion& conversion, const Value& argument) {
  double value = floatOf(argument);
  std::string number;
  if (conversion.digits > 0) {
    number = fixed(value, conversion.digits);
  } else if (conversion.digits == 0) {
    number = fixed(argument.isInteger() ? value : std::floor(value + 0.5), 0);
  } else {
    number = fixed(value, 7);
    stripZeros(number);
  }
  if (number == "-0") number = "0";
  return signPrefix(conversion, value) + withMarks(number, numberMarks());
}

std::string convertBase(const Conversion& conversion, const Value& argument) {
  auto bits = static_cast<std::uint32_t>(integerOf(argument));
  int base = conversion.letter == 'o' ? 8 : conversion.letter == 'b' ? 2 : 16;
  char buffer[40];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, bits, base);
  std::string digits(buffer, result.ptr);
  if (conversion.letter == 'X') digits = toUpper(digits);
  if (static_cast<int>(digits.size()) < conversion.digits) {
    digits.insert(0, static_cast<std::size_t>(conversion.digits) - digits.size(), '0');
  }
  return digits;
}

bool isAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool converts(char letter) {
  return std::string_view("dsnxXob").find(letter) != std::string_view::npos;
}

}  // namespace

NumberMarks numberMarks() {
  const auto& provider = engine().services.numberMarks;
  return provider ? provider() : NumberMarks{};
}

int formatValues(std::string_view format, std::vector<Value>& arguments, std::string& out) {
  out.clear();
  out.reserve(512);
  std::size_t next = 0;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      out.push_back(format[i]);
      continue;
    }
    std::size_t j = i + 1;
    if (j < format.size() && format[j] == '%') {
      out.push_back('%');
      i = j;
      continue;
    }
    Conversion conversion;
    if (j < format.size() && (format[j] == '+' || format[j] == '-')) conversion.sign = format[j++];
    for (; j < format.size() && format[j] >= '0' && format[j] <= '9'; ++j) {
      conversion.digits =
          std::min(std::max(conversion.digits, 0) * 10 + (format[j] - '0'), kMostDigits);
    }
    if (j >= format.size() || !isAsciiLetter(format[j])) {
      out.append(format.substr(i, j - i));
      i = j - 1;
      continue;
    }
    conversion.letter = format[j];
    i = j;
    if (!converts(conversion.letter) || next >= arguments.size()) {
      out.push_back(conversion.letter);
      continue;
    }
    Value& argument = arguments[next++];
    if (!argument.isNumber() && !argument.isString()) return fail(kExprBadFormat);
    switch (conversion.letter) {
      case 'd':
      case 's':
        out += convertText(conversion, argument);
        break;
      case 'n':
        out += convertMarked(conversion, argument);
        break;
      default:
        out += convertBase(conversion, argument);
        break;
    }
  }
  return 0;
}

int builtinFormat(BuiltinCall& call) {
  if (call.args.empty()) return fail(kExprStackUnderflow);
  if (!call.args[0].isNumber() && !call.args[0].isString()) return fail(kExprBadFormat);
  forceString(call.args[0]);
  std::string format = call.args[0].text();
  std::vector<Value> arguments(std::make_move_iterator(call.args.begin() + 1),
                               std::make_move_iterator(call.args.end()));
  std::string out;
  if (int code = formatValues(format, arguments, out); code != 0) return code;
  call.result = Value(std::move(out));
  return 0;
}

}  // namespace zv
