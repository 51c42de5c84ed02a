#pragma once
// Argument handling shared by the built-in functions: counts, and the conversions that "text"
// and "integer" arguments go through.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/value.h"
#include "expr/builtin_call.h"
#include "expr/expr_error.h"

namespace zv {

/// Stores `code` in the error record and returns it, for `return fail(code);`.
inline int fail(int code) {
  setErrorCode(code);
  return code;
}

/// True when the call has at least `count` arguments.
inline bool hasArguments(const BuiltinCall& call, std::size_t count) {
  return call.args.size() >= count;
}

/// Turns argument `index` into its text (forceString). False, after forceString's message, for
/// a value that has no text form (an array).
inline bool textArgument(BuiltinCall& call, std::size_t index, std::string& out) {
  Value& value = call.args[index];
  if (!forceString(value)) return false;
  out = value.text();
  return true;
}

/// Argument `index` through forceInteger.
inline std::int32_t integerArgument(const BuiltinCall& call, std::size_t index) {
  return integerOf(call.args[index]);
}

}  // namespace zv
