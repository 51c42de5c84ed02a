#pragma once
// The built-in functions of the expression language that need no sheet: numbers, texts, format,
// arrays, the table's maps and variables, and files. Each takes its arguments from a
// BuiltinCall, leaves its result there and returns 0 or a negative error code (see
// builtin_call.h). The functions that reach into a sheet's items, lists, options or game system
// live elsewhere.

#include <string>
#include <string_view>
#include <vector>

#include "core/engine_context.h"
#include "expr/builtin_call.h"

namespace zv {

/// The function of the built-in `id` among those above; null for an id without one here (the
/// evaluator then gives integer 0). A fixed table: it never changes at run time.
BuiltinFunction standardBuiltin(int id);

// Numbers.
int builtinInteger(BuiltinCall& call);   ///< integer(x): truncated toward zero
int builtinFloat(BuiltinCall& call);     ///< float(x)
int builtinRound(BuiltinCall& call);     ///< round(x): halves away from zero
int builtinMin(BuiltinCall& call);       ///< min(...): by compareValues
int builtinMax(BuiltinCall& call);       ///< max(...): by compareValues
int builtinCeil(BuiltinCall& call);      ///< ceil(x): up, with a tolerance of 0.001
int builtinRand(BuiltinCall& call);      ///< rand(n): 1 to n
int builtinDround(BuiltinCall& call);    ///< dround(x): halves toward zero
int builtinRolldice(BuiltinCall& call);  ///< rolldice(keep, dice, sides): the best `keep` dice
int builtinSqrt(BuiltinCall& call);      ///< sqrt(x): root of |x|
int builtinLog(BuiltinCall& call);       ///< log(x): ln |x|, 0.0 for 0
int builtinLog10(BuiltinCall& call);     ///< log10(x): log10 |x|, 0.0 for 0
int builtinAbs(BuiltinCall& call);       ///< abs(x)

// Texts.
int builtinChrval(BuiltinCall& call);         ///< chrval(n): the one-byte text of n
int builtinStrlen(BuiltinCall& call);         ///< strlen(s)
int builtinSubstr(BuiltinCall& call);         ///< substr(s, start, length), 1-based
int builtinStrindex(BuiltinCall& call);       ///< strindex(s, t): 1-based position, or 0
int builtinDupstr(BuiltinCall& call);         ///< dupstr(s, n)
int builtinConcat(BuiltinCall& call);         ///< concat(a, b), concat(a, separator, b)
int builtinTolower(BuiltinCall& call);        ///< tolower(s)
int builtinToupper(BuiltinCall& call);        ///< toupper(s), toupper(s, wordStarts)
int builtinReplaceString(BuiltinCall& call);  ///< replaceString(s, from, to)
int builtinReplaceToken(BuiltinCall& call);   ///< replaceToken(s, token, value)
int builtinFormat(BuiltinCall& call);         ///< format(fmt, args...)

// Arrays (the first argument names an array; element numbers count from 1).
int builtinSizeof(BuiltinCall& call);             ///< sizeof(a): the element count
int builtinIndex(BuiltinCall& call);              ///< index(a, v): first equal element, or -1
int builtinLookup(BuiltinCall& call);             ///< lookup(a, v): step function over key pairs
int builtinAddelement(BuiltinCall& call);         ///< addelement(a, v): the new count
int builtinRemoveelement(BuiltinCall& call);      ///< removeelement(a, n): the new count
int builtinRemoveallelements(BuiltinCall& call);  ///< removeallelements(a): 0
int builtinSetelement(BuiltinCall& call);         ///< setelement(a, n, v): n, or 0
int builtinSortelements(BuiltinCall& call);       ///< sortelements(a, ascending): the count
int builtinGetassoc(BuiltinCall& call);           ///< getassoc(a, key): the value of a pair
int builtinPutassoc(BuiltinCall& call);           ///< putassoc(a, key, v): the count
int builtinListdirectory(BuiltinCall& call);      ///< listdirectory(a, directory, wildcards)

// Maps kept by the table.
int builtinPutmap(BuiltinCall& call);     ///< putmap(map, key, v): 0
int builtinGetglobal(BuiltinCall& call);  ///< getglobal(name): the game system's variable
int builtinSetglobal(BuiltinCall& call);  ///< setglobal(name, v): 1 when stored
int builtinGetmap(BuiltinCall& call);     ///< getmap(map, key): the value, or 0
int builtinListmap(BuiltinCall& call);    ///< listmap(map, separator): the keys joined
int builtinClearmap(BuiltinCall& call);   ///< clearmap(map): 0

// Variables of the table the code runs in.
int builtinSetvariable(BuiltinCall& call);  ///< setvariable(name, v): 1 when stored
int builtinSplit(BuiltinCall& call);        ///< split(s, separator, v1, v2, ...) or (s, sep, a)

// Files.
int builtinFileexists(BuiltinCall& call);  ///< fileexists(path), fileexists(directory, file)

/// The marks now in force: the engine context's, else "," and ".".
NumberMarks numberMarks();

/// Builds into `out` the text of format(fmt, args...), with `arguments` filling the conversions
/// in order. Returns 0, or -18 when an argument has no text form.
int formatValues(std::string_view format, std::vector<Value>& arguments, std::string& out);

}  // namespace zv
