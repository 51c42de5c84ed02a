#pragma once
// A computed value: a 32-bit integer, a real or an owned single-byte text. Copying a value
// duplicates its text. The array reference and local reference kinds belong to the expression
// evaluator and are added there; the kind numbers are fixed because compiled code stores them.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace zv {

enum class ValueKind : std::int32_t {
  Integer = 0,
  Float = 1,
  String = 2,
  ArrayRef = 3,  ///< an array symbol, not owned (evaluator only)
  LocalRef = 4,  ///< a slot of a procedure's locals (evaluation stack only)
};

class Value {
 public:
  /// Integer 0, the value of a cleared slot.
  Value() = default;
  explicit Value(std::int32_t integer) : data_(integer) {}
  explicit Value(double real) : data_(real) {}
  explicit Value(std::string text) : data_(std::move(text)) {}
  explicit Value(std::string_view text) : data_(std::string(text)) {}
  explicit Value(const char* text) : data_(std::string(text)) {}

  ValueKind kind() const { return static_cast<ValueKind>(data_.index()); }
  bool isInteger() const { return kind() == ValueKind::Integer; }
  bool isFloat() const { return kind() == ValueKind::Float; }
  bool isNumber() const { return isInteger() || isFloat(); }
  bool isString() const { return kind() == ValueKind::String; }

  /// The payload of a value of that kind; asking for another kind is a programming error.
  std::int32_t integer() const { return std::get<std::int32_t>(data_); }
  double real() const { return std::get<double>(data_); }
  const std::string& text() const { return std::get<std::string>(data_); }
  std::string& text() { return std::get<std::string>(data_); }

  void setInteger(std::int32_t integer) { data_ = integer; }
  void setFloat(double real) { data_ = real; }
  void setString(std::string text) { data_ = std::move(text); }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::int32_t, double, std::string> data_{std::int32_t{0}};
};

/// The integer that forceInteger gives, without changing the value: a real is clamped to the
/// 32-bit range and truncated toward zero; a text starting with a digit or sign gives its leading
/// integer ("12abc" is 12), any other text 1 when not empty and 0 when empty; other kinds 0.
std::int32_t integerOf(const Value& value);
/// The real that forceFloat gives, without changing the value: a text starting with a digit, ".",
/// a quarter glyph or a sign is parsed with the glyphs ("2\xBD" is 2.5); any other text gives 1.0
/// when not empty and 0.0 when empty; other kinds 0.0.
double floatOf(const Value& value);

/// Turns the value into an integer (see integerOf), dropping its text.
void forceInteger(Value& value);
/// Turns the value into a real (see floatOf), dropping its text.
void forceFloat(Value& value);

}  // namespace zv
