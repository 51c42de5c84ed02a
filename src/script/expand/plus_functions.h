#pragma once
// The $+ functions of stage 2 of the expansion: $+canceled, $+randselect, $+inlist,
// $+insourcelist, $+available, $+value, $+selectedIndex, $+listCount, $+currentField,
// $+currentWindow, $+date, $+tickcount. Their arguments are plain text, not expressions.

#include <optional>
#include <string>
#include <string_view>

#include "script/state/script_run.h"

namespace zv::script {

/// Whether a function of that name exists (ignoring case).
bool isPlusFunction(std::string_view name);

/// The result of the function for the arguments, or nullopt after its message (or silently, for
/// $+currentField and $+currentWindow without an answer).
std::optional<std::string> callPlusFunction(ScriptRun& run, std::string_view name,
                                            std::string_view arguments);

/// Today's date as $+date gives it: the short date pattern "m/d/yy" with the month counted from 0.
std::string scriptDateText(const LocalTime& time, std::string_view pattern = "m/d/yy");

}  // namespace zv::script
