#pragma once
// Runs a built-in function directly, the way the evaluator hands it its arguments, and describes
// the result by kind and value.

#include <string>
#include <string_view>
#include <vector>

#include "expr/builtin_table.h"
#include "expr/builtins.h"
#include "expr_test_support.h"

namespace zv::testing {

inline Value I(std::int32_t n) {
  return Value(n);
}
inline Value F(double x) {
  return Value(x);
}
inline Value S(std::string_view text) {
  return Value(text);
}

class BuiltinTest : public ExprTest {
 protected:
  /// The built-in of that name run on `args`: the described result, or "error N".
  std::string run(std::string_view name, std::vector<Value> args) {
    const BuiltinInfo* info = findBuiltin(name);
    if (!info) return "no built-in " + std::string(name);
    BuiltinFunction function = standardBuiltin(info->id);
    if (!function) return "no function for " + std::string(name);
    Value result;
    BuiltinCall call{table_, nullptr, args, result};
    if (int code = function(call); code != 0) return "error " + std::to_string(code);
    return describe(result);
  }

  /// A new array of that name holding `elements`.
  Symbol& makeArray(std::string_view name, std::vector<Value> elements) {
    Symbol* array = table_.add(name);
    EXPECT_NE(array, nullptr) << name;
    array->kind = SymbolKind::Array;
    array->elements = std::move(elements);
    return *array;
  }
};

/// One row of a table-driven case: a built-in, its arguments and the described result.
struct BuiltinCase {
  std::string_view name;
  std::vector<Value> args;
  std::string expected;
};

}  // namespace zv::testing
