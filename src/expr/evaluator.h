#pragma once
// The evaluator: a stack machine over compiled code, holding every rule of how numbers and texts
// mix. It nests: a user function call is an evaluation of the function's code whose arguments are
// values of the caller's stack.

#include <cstdint>
#include <string_view>

#include "core/record_types.h"
#include "core/value.h"
#include "expr/code.h"

namespace zv {

/// The values one evaluation may hold at once.
inline constexpr int kEvaluationStackSize = 39;

/// Runs `code` and on success moves its value into `result`. `name` appears only in the
/// interrupt question. `arguments` are a user function's arguments; `item` becomes the current
/// item for the time of the call. Returns 0 or a negative error code (also in the error record).
int evaluate(SymbolTable* table, std::string_view name, const std::uint8_t* code,
             std::size_t length, Value& result, const Value* arguments, int argumentCount,
             Item* item);
inline int evaluate(SymbolTable* table, std::string_view name, const Code& code, Value& result,
                    const Value* arguments = nullptr, int argumentCount = 0, Item* item = nullptr) {
  return evaluate(table, name, code.data(), code.size(), result, arguments, argumentCount, item);
}

/// The item of the evaluation under way (null outside one or when it has none).
Item* currentEvaluationItem();

/// The interrupt poll: when the user asked to stop, asks whether to abort the evaluation of
/// `name`; true (with error -35 in the record) when the answer is Yes.
bool interruptEvaluation(std::string_view name);

}  // namespace zv
