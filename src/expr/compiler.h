#pragma once
// The expression compiler: one pass over the text with a single operator stack, producing the
// stack code that the evaluator runs. A text is either a plain expression or a procedure in
// braces with locals, assignments, if and while.

#include <span>
#include <string>
#include <string_view>

#include "core/record_types.h"
#include "core/value.h"
#include "expr/code.h"

namespace zv {

struct Option;

/// Compiles `text` into `code` (which is cleared first) against a table (null: only literals are
/// allowed). `parameters` are the names of the function whose body is compiled. `isConstant`
/// tells whether the text held literals only. Returns the code length, or a negative error code;
/// the same number is stored in the error record.
int compileExpression(SymbolTable* table, std::string_view text, Code& code,
                      std::span<const std::string> parameters, bool& isConstant);

/// Compiles and evaluates a text under the name "Expression" (the compiled form is thrown away).
/// Returns 0, or -1 with the error in the record.
int parseExp(SymbolTable* table, std::string_view text, Value& out);

/// parseExp with `item` and `option` as the table's current ones for the time of the call.
/// A null table gives -1.
int parseExpInContext(SymbolTable* table, Item* item, Option* option, std::string_view text,
                      Value& out);

}  // namespace zv
