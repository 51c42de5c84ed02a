// The expressions of $$if, $$elseif and $$exp, evaluated by the expression engine in a scratch
// symbol table whose resolver gives the macro's values as strings. A name the resolver doesn't
// know is left to the engine (an undefined variable).

#include "expr/compiler.h"
#include "expr/symbols.h"
#include "formats/macro/macro_context.h"

namespace zv {

MacroExpressionEvaluator standardMacroExpressionEvaluator() {
  return [](std::string_view expression, const MacroNameLookup& lookup) -> std::optional<Value> {
    SymbolTable scratch;
    scratch.setResolver([&lookup](std::string_view name, Value& out) {
      std::optional<std::string> value = lookup(name);
      if (!value) return false;
      out = Value(std::move(*value));
      return true;
    });
    Value result;
    if (parseExp(&scratch, expression, result) != 0) return std::nullopt;
    return result;
  };
}

}  // namespace zv
