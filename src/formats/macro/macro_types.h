#pragma once
// The records of the macro processor: macro definitions with their argument descriptions, the
// user-defined argument types of $$argtype, and defines. The argument classes and types are what
// the macro data sheet editor shows for each argument.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

/// The class of a macro argument, as $$argdesc gives it.
enum class MacroArgClass : int {
  Text = 0,
  Requirement = 1,
  Adjustment = 2,
  AutoItems = 3,
  Category = 4,
  Custom = 5,  ///< a type defined by $$argtype
};

/// The class of one of the 10 reserved type names ("text", "req", "requirement", "adj",
/// "adjustment", "auto", "autoitems", "cat", "categories", "category"), ignoring case.
std::optional<MacroArgClass> reservedArgClass(std::string_view name);

struct MacroArg {
  std::string name;
  std::string description;
  MacroArgClass argClass = MacroArgClass::Text;
  int typeIndex = -1;  ///< index into the context's argument types for MacroArgClass::Custom
};

struct MacroDef {
  std::string name;            ///< at most 31 characters
  std::vector<MacroArg> args;  ///< at most 30
  bool hidden = false;         ///< $$hideMacro
  std::string description;     ///< $$macrodesc
  std::string body;
};

struct MacroDefine {
  std::string name;  ///< at most 31 characters
  std::string value;
};

enum class MacroArgTypeKind { Choose, List, DupList };

/// What the choices string of a `choose` type says.
struct MacroChoices {
  std::vector<std::string> choices;  ///< literal choices and the "?list"-like directives
  bool allowOther = false;           ///< "*" or "?choose": the user may type a value of his own
  std::string promptValue;           ///< "?choose:value:text"
  std::string promptText;
  std::string checkExpression;  ///< "?checkexp:value"
  std::string checkMessage;     ///< "?checkmsg:value"
};

/// Parses a choices string: entries separated by "|", a backslash protecting the next character,
/// spaces around an entry trimmed. nullopt when its format is bad (a backslash at the end, a
/// "?choose" without value and text, a "?checkexp" or "?checkmsg" without a value).
std::optional<MacroChoices> parseMacroChoices(std::string_view text);

/// A type defined by $$argtype for the data sheet editor.
struct MacroArgType {
  std::string name;
  MacroArgTypeKind kind = MacroArgTypeKind::Choose;
  std::string title;
  std::string prompt;
  MacroChoices choices;    ///< choose
  std::string terminator;  ///< list, duplist
  std::string valueList;   ///< list, duplist: optional
};

}  // namespace zv
