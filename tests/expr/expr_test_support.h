#pragma once
// Shared fixture of the expression engine tests: a headless host that records boxes, a symbol
// table, and helpers that evaluate a text and describe the result by kind and value.

#include <gtest/gtest.h>

#include <string>

#include "core/engine_context.h"
#include "core/headless_host.h"
#include "core/numbers.h"
#include "core/value.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"

namespace zv::testing {

/// "int 5", "float 2.5", "string \"abc\"" or "array NAME": the kind matters as much as the value.
inline std::string describe(const Value& value) {
  switch (value.kind()) {
    case ValueKind::Integer:
      return "int " + std::to_string(value.integer());
    case ValueKind::Float:
      return "float " + formatFloat(value.real(), false);
    case ValueKind::String:
      return "string \"" + value.text() + "\"";
    case ValueKind::ArrayRef:
      return "array";
    default:
      return "local";
  }
}

class ExprTest : public ::testing::Test {
 protected:
  ExprTest() : host_(nullptr), installed_(host_) {
    engineContext_->preferences.useFractions = false;
  }

  /// Evaluates in the table: the described value, or "error N: text".
  std::string eval(std::string_view text) {
    Value out;
    if (parseExp(&table_, text, out) != 0) {
      return "error " + std::to_string(lastErrorCode()) + ": " + expressionErrorText();
    }
    return describe(out);
  }

  /// The error code of a failing evaluation, 0 when it succeeds.
  int errorOf(std::string_view text) {
    Value out;
    return parseExp(&table_, text, out) == 0 ? 0 : lastErrorCode();
  }

  Symbol& define(std::string_view name, std::string_view expression) {
    Symbol* symbol = defineVariable(table_, name, expression);
    EXPECT_NE(symbol, nullptr) << name << " = " << expression << ": " << expressionErrorText();
    return *symbol;
  }

  HeadlessHost host_;
  HostInstallation installed_;
  SymbolTable table_;
  ScopedEngineContext engineContext_;
};

}  // namespace zv::testing
