#pragma once
// The built-ins that reach beyond the sheet: the die roller, the running script's directory, the
// game system's parameters, the file-value dialog and the fields of a sheet's dialogs. The
// services that live in layers above the expression engine (the die roller and the parameter
// store of the utilities, the script engine's source directory) come from the engine context.

#include <optional>
#include <string>
#include <string_view>

#include "expr/builtin_call.h"

namespace zv {

/// A parameter's text as configparam gives it: with the blanks left out, a text of digits and
/// "-" is an integer, one that also holds a "." a real; anything else the text itself.
Value configParamValue(std::string_view text);

/// The text of a picture block's size, "%dx%d", read from the head of a PNG, GIF, BMP or JPEG
/// picture; "0x0" when the block is none of them.
std::string pictureSizeText(std::string_view data);

int builtinRolldiceText(BuiltinCall& call);      ///< rolldice(text): the die roller's result
int builtinGetsourcedir(BuiltinCall& call);      ///< getsourcedir(x)
int builtinGetfilevalue(BuiltinCall& call);      ///< getfilevalue(title, initial)
int builtinConfigparam(BuiltinCall& call);       ///< configparam(name)
int builtinSetconfigparam(BuiltinCall& call);    ///< setconfigparam(name, value)
int builtinDialogfieldvalue(BuiltinCall& call);  ///< dialogfieldvalue(dialog, field)

}  // namespace zv
