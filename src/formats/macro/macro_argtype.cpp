// $$argtype(name, class, "title", "prompt", ...): a type of argument for the data sheet editor.
//   choose:         then a string of choices, then ")"
//   list, duplist:  then a terminator string, optionally "," and a value list string, then ")"

#include "core/text.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

void MacroContext::runArgType(bool active) {
  using namespace macro_text;
  if (skipBlanks() != '(') {
    macroErrorf(kSyntax, std::string("argtype"), state_.lineNumber);
    return;
  }
  int terminator = 0;
  pushBack(skipBlanksAndBreaks());
  MacroArgType type;
  type.name = readWord(kMaxNameLength, true, terminator);
  const std::string& name = type.name;
  if (name.empty() || skipBlanksAndBreaks() != ',') {
    macroErrorf(kTypeCommaName, name);
    return;
  }
  if (reservedArgClass(name)) {
    macroErrorf(kTypeReserved, name, name);
    return;
  }
  pushBack(skipBlanksAndBreaks());
  std::string argClass = readWord(kMaxNameLength, true, terminator);
  if (equalsIgnoringCase(argClass, "choose")) {
    type.kind = MacroArgTypeKind::Choose;
  } else if (equalsIgnoringCase(argClass, "list")) {
    type.kind = MacroArgTypeKind::List;
  } else if (equalsIgnoringCase(argClass, "duplist")) {
    type.kind = MacroArgTypeKind::DupList;
  } else {
    macroErrorf(kTypeClass, argClass, name);
    return;
  }
  if (skipBlanksAndBreaks() != ',') {
    macroErrorf(kTypeCommaClass, name);
    return;
  }
  if (!readQuotedString(type.title, true) || skipBlanksAndBreaks() != ',') {
    macroErrorf(kTypeCommaTitle, name);
    return;
  }
  if (!readQuotedString(type.prompt, true) || skipBlanksAndBreaks() != ',') {
    macroErrorf(kTypeCommaPrompt, name);
    return;
  }

  if (type.kind == MacroArgTypeKind::Choose) {
    std::string choices;
    if (!readQuotedString(choices, true) || skipBlanksAndBreaks() != ')') {
      macroErrorf(kTypeChooseParen, name);
      return;
    }
    std::optional<MacroChoices> parsed = parseMacroChoices(choices);
    if (!parsed) {
      macroErrorf(kTypeChoices, name);
      return;
    }
    type.choices = std::move(*parsed);
  } else {
    int c = 0;
    if (!readQuotedString(type.terminator, true) ||
        ((c = skipBlanksAndBreaks()) != ',' && c != ')')) {
      macroErrorf(kTypeTerminator, name);
      return;
    }
    if (c == ',' && (!readQuotedString(type.valueList, true) || skipBlanksAndBreaks() != ')')) {
      macroErrorf(kTypeValueList, name);
      return;
    }
  }
  if (!active) return;
  for (MacroArgType& existing : state_.argTypes) {
    if (equalsIgnoringCase(existing.name, name)) {
      existing = std::move(type);  // a later definition replaces the earlier one in place
      return;
    }
  }
  state_.argTypes.push_back(std::move(type));
}

}  // namespace zv
