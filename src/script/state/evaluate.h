#pragma once
// Evaluating expression text in a run: in its context table, with the position's current item
// and option as the evaluator's, and the locals of the innermost call found before any other
// name. The text is evaluated as it stands; statements expand it first (expand/expand.h).

#include <string_view>

#include "core/value.h"
#include "script/state/script_run.h"

namespace zv::script {

/// 0, or -1 with the error in the expression engine's record (nothing shown).
int evaluateText(ScriptRun& run, std::string_view text, Value& out);
/// The same in another table (a sheet's own table), with the run's item and locals.
int evaluateTextIn(ScriptRun& run, SymbolTable& table, std::string_view text, Value& out);

/// The truth of `if`: the value's integer form ("0" and 0.5 are false, "abc" is true).
bool integerTruth(const Value& value);
/// The truth of `for` and `while`: a number that is not exactly 0, a text that is not empty.
bool nonZeroTruth(const Value& value);

}  // namespace zv::script
