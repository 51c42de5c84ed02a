#pragma once
// Subroutine calls that other statements make: the value of an assignment or of `add` may be a
// call "name(arguments)", whose return value is then the value.

#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"
#include "script/state/script_run.h"

namespace zv::script {

/// Calls the subroutine with argument texts (each expanded and evaluated in the caller's scope);
/// `result` gets the value of its `return` (integer 0 when it returns none).
Flow callSubroutine(ScriptRun& run, Subroutine& subroutine,
                    const std::vector<std::string>& arguments, Value& result);

/// The value of statement text: when the text up to its first "(" names a subroutine, the value
/// that the call returns (text behind the call's ")" gives `format`); else the text expanded and
/// evaluated with the current item, `format` (with the expanded text) on failure.
Flow valueOfText(ScriptRun& run, const std::string& text, const char* format, Value& out);

}  // namespace zv::script
