#pragma once
// A computed value: a 32-bit integer, a real, an owned single-byte text, a reference to an array
// symbol or a reference to a procedure local. Copying a value duplicates its text; moving it hands
// the text over. The kind numbers are fixed because compiled code and the evaluator share them.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "core/record_types.h"

namespace zv {

enum class ValueKind : std::int32_t {
  Integer = 0,
  Float = 1,
  String = 2,
  ArrayRef = 3,  ///< an array symbol, not owned (evaluator only)
  LocalRef = 4,  ///< a slot of a procedure's locals (evaluation stack only)
};

/// The slot number of a procedure local, as a value of kind LocalRef holds it.
struct LocalSlot {
  std::int32_t slot = 0;
  friend bool operator==(const LocalSlot&, const LocalSlot&) = default;
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

  /// A reference to an array symbol (not owned).
  static Value arrayRef(Symbol* array) {
    Value v;
    v.data_ = array;
    return v;
  }
  /// A reference to the local in `slot` of the running procedure.
  static Value localRef(std::int32_t slot) {
    Value v;
    v.data_ = LocalSlot{slot};
    return v;
  }

  ValueKind kind() const { return static_cast<ValueKind>(data_.index()); }
  bool isInteger() const { return kind() == ValueKind::Integer; }
  bool isFloat() const { return kind() == ValueKind::Float; }
  bool isNumber() const { return isInteger() || isFloat(); }
  bool isString() const { return kind() == ValueKind::String; }
  bool isArrayRef() const { return kind() == ValueKind::ArrayRef; }
  bool isLocalRef() const { return kind() == ValueKind::LocalRef; }

  /// The payload of a value of that kind; asking for another kind is a programming error.
  std::int32_t integer() const { return *std::get_if<std::int32_t>(&data_); }
  double real() const { return *std::get_if<double>(&data_); }
  const std::string& text() const { return std::get<std::string>(data_); }
  std::string& text() { return std::get<std::string>(data_); }
  Symbol* arraySymbol() const { return std::get<Symbol*>(data_); }
  std::int32_t localSlot() const { return std::get<LocalSlot>(data_).slot; }

  void setInteger(std::int32_t integer) { data_ = integer; }
  void setFloat(double real) { data_ = real; }
  void setString(std::string text) { data_ = std::move(text); }
  void setArrayRef(Symbol* array) { data_ = array; }
  void setLocalRef(std::int32_t slot) { data_ = LocalSlot{slot}; }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::int32_t, double, std::string, Symbol*, LocalSlot> data_{std::int32_t{0}};
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
/// Turns a number into its text: an integer by "%d", a real by formatFloat. A text stays. Any
/// other kind reports "Error in forceString" and returns false, leaving the value as it was.
bool forceString(Value& value);

/// Drops a value's text: it becomes integer 0. Numbers and references are left as they are.
void freeValue(Value& value);

/// Orders two values: two integers or two reals by value (-1, 0, 1); two texts ignoring case; two
/// values of another common kind give 1; values of different kinds are compared as doubles, a
/// text by its leading decimal number ("10" equals 10, "abc" equals 0).
int compareValues(const Value& a, const Value& b);

/// The text the system shows for a value: an integer by "%d", a text as it is, anything else by
/// formatFloat.
std::string valueToText(const Value& value);
/// The value as a double, leaving it unchanged; a text gives its leading decimal number.
double valueToDouble(const Value& value);
/// The value as an integer, leaving it unchanged (the same rules as forceInteger).
std::int32_t valueToInteger(const Value& value);

}  // namespace zv
