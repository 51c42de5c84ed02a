#pragma once
// The $ preprocessor of script expressions. Every expression of a statement passes through it
// before the expression engine sees it: it knows only text, and puts the values of the current
// item, of variables and of the two sheets into the text as characters.
//
// Stage 1 replaces $# (the line), $$name (a script variable, locals first), $*name (of the source
// sheet, for the current item), $@name (of the destination sheet, for the last item added), $c,
// $l, $n, $o, $v (of the current item and option). A name may start with "~" (the value less its
// base), "&" (the base) or "@" (a sheet attribute, then a field of the item). Inside double quotes
// a replacement's double quotes become two single quotes. Stage 2 replaces the $+ functions.

#include <string>
#include <string_view>

#include "script/state/script_run.h"

namespace zv::script {

/// Expands `text` in place, keeping at most `size` - 1 bytes (stage 2 cuts silently there).
/// False after the message ("Expression overflow", "Missing character after $ in expression",
/// "Unknown function: $+%s", ...); a $+ function without an answer of the windows stops with no
/// message.
bool expandExpression(ScriptRun& run, std::string& text, std::size_t size = kExpressionCapacity);

/// The text of a value as expansion writes it: an integer by "%d", a real by the display
/// formatter, a text as it is.
std::string expansionText(const Value& value);

}  // namespace zv::script
