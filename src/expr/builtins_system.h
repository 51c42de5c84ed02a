#pragma once
// The built-ins that reach beyond the sheet: the die roller, the running script's directory, the
// game system's parameters, the file-value dialog and the fields of a sheet's dialogs. The
// programs install the services that live in layers above the expression engine (the die roller
// and the parameter store of the utilities, the script engine's source directory) at start.

#include <optional>
#include <string>
#include <string_view>

#include "expr/builtin_call.h"

namespace zv {

/// Rolls a die specification into its result text; false after a shown failure.
using DiceRoller = bool (*)(std::string_view dice, std::string& result);
/// Installs the roller of rolldice(text) and returns the previous one (null: none).
DiceRoller setDiceRoller(DiceRoller roller);

/// The directory of the running script's source; installed by the programs, and wrapped by the
/// script engine while a script runs.
using SourceDirectoryProvider = std::string (*)();
/// Installs the provider of getsourcedir and returns the previous one (null: "").
SourceDirectoryProvider setSourceDirectoryProvider(SourceDirectoryProvider provider);

/// Where the game systems' parameters are read and stored, by game system name and parameter.
struct ConfigParamStore {
  /// The parameter's present value (stored, else its default); nullopt when there is none.
  std::optional<std::string> (*read)(std::string_view gameSystem, std::string_view name) = nullptr;
  /// Stores a value; false when it can't be stored.
  bool (*write)(std::string_view gameSystem, std::string_view name,
                std::string_view value) = nullptr;
};
/// Installs the store of configparam and setconfigparam and returns the previous one.
ConfigParamStore setConfigParamStore(const ConfigParamStore& store);

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
