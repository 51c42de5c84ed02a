// Expansion of a macro body: references, directives, the quoted state, and the directives that
// exist only inside a body (conditions, $$scan, $$error, $$exp).

#include "core/text.h"
#include "expr/regex.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

bool hasSurroundingQuotes(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

}  // namespace

void MacroContext::expandMacro(const MacroDef& def, std::vector<std::string> args) {
  Frame frame;
  frame.macroName = def.name;
  frame.body = def.body;
  frame.argNames.reserve(def.args.size());
  for (const MacroArg& arg : def.args)
    frame.argNames.push_back(arg.name);
  args.resize(def.args.size());
  frame.args = std::move(args);
  pushAndExpand(std::move(frame), currentName());
}

// A character pushed back by the caller's reading belongs to the caller: it waits until the
// new frame is done.
void MacroContext::pushAndExpand(Frame frame, std::string_view calledFrom) {
  State& st = state_;
  if (st.frames.size() >= kMaxDepth) {
    macroErrorf(macro_text::kNesting, frame.macroName, std::string(calledFrom));
    return;
  }
  const int saved = takePushback();
  st.frames.push_back(std::move(frame));
  Expansion expansion;
  expansion.name = st.frames.back().macroName;
  runExpansion(expansion);
  st.frames.pop_back();
  st.pushback = saved;
}

void MacroContext::runExpansion(Expansion& expansion) {
  int previous = 0;
  for (;;) {
    if (failed()) return;
    int c = rawChar();
    if (c == kEnd) break;
    if (c == '$') {
      int next = rawChar();
      if (next == '(') {
        runReference(&expansion);
        previous = ')';
        continue;
      }
      if (next == '$') {
        runDirective(&expansion);
        previous = 0;
        continue;
      }
      if (expansion.active() && !appendOutput("$")) return;
      pushBack(next);
      previous = '$';
      continue;
    }
    if (c == '"' && previous != '\\') expansion.quoted = !expansion.quoted;
    previous = c;
    if (expansion.active()) {
      if (!appendOutput(static_cast<char>(c))) return;
    }
  }
  if (failed()) return;
  if (!expansion.conditions.empty()) {
    macroErrorf(macro_text::kEndifMissing, expansion.name, state_.lineNumber);
  }
}

// $(name): the value, itself expanded as a body in a temporary macro that has the name of the
// reference and the current arguments. `expansion` is null at the top level ("Main File").
void MacroContext::runReference(Expansion* expansion) {
  State& st = state_;
  const std::string name = expansion != nullptr ? expansion->name : macro_text::kMainFile;
  const bool active = expansion == nullptr || expansion->active();
  int terminator = 0;
  std::string reference = readWord(kMaxReferenceName, true, terminator);
  const int close = rawChar();
  if (reference.empty()) {
    macroErrorf(macro_text::kNoDefineName, name, st.lineNumber);
    return;
  }
  if (close != ')') {
    macroErrorf(macro_text::kReferenceParen, name, reference, st.lineNumber);
    return;
  }
  if (!active) return;
  std::optional<std::string> value = lookupValue(reference);
  if (!value) {
    macroErrorf(macro_text::kUnknownArg, name, reference, st.lineNumber);
    return;
  }
  if (value->empty()) return;
  std::string text = std::move(*value);
  if (expansion != nullptr && expansion->quoted && hasSurroundingQuotes(text)) {
    text = text.substr(1, text.size() - 2);
  }
  if (st.frames.size() >= kMaxDepth) {
    macroErrorf(macro_text::kNesting, reference, name);
    return;
  }
  if (text.find('$') == std::string::npos) {
    appendOutput(text);  // nothing in it to expand
    return;
  }
  Frame temporary;
  temporary.macroName = reference;
  temporary.body = std::move(text);
  if (!st.frames.empty()) {
    const Frame& current = st.frames.back();
    temporary.argNames = current.argNames;
    temporary.args = current.args;
    temporary.passThrough = current.passThrough;
  }
  pushAndExpand(std::move(temporary), name);
}

// The text of an expression: up to the parenthesis that balances the opening one, honouring
// strings in double or single quotes; 511 characters at most.
bool MacroContext::readParenthesized(std::string& text, std::string_view macroName) {
  int c = skipBlanks();
  if (c != '(') {
    if (c == kEnd) {
      premature(macroName);
    } else {
      macroErrorf(macro_text::kArgSyntax, std::string(macroName), state_.lineNumber);
    }
    return false;
  }
  int depth = 1;
  int quote = 0;
  for (;;) {
    c = rawChar();
    if (c == kEnd) {
      premature(macroName);
      return false;
    }
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && --depth == 0) {
      return true;
    }
    text.push_back(static_cast<char>(c));
    if (text.size() > kMaxDirectiveText) {
      macroErrorf(macro_text::kArgTooLong, std::string(macroName), state_.lineNumber);
      return false;
    }
  }
}

void MacroContext::runCondition(const std::string& word, Expansion& expansion) {
  State& st = state_;
  auto& levels = expansion.conditions;
  const bool isIfDef = equalsIgnoringCase(word, "ifdef");
  const bool isIfNull = equalsIgnoringCase(word, "ifnull");
  const bool isIf = equalsIgnoringCase(word, "if");

  if (isIfDef || isIfNull || isIf) {
    if (levels.size() >= kMaxConditionLevels) {
      macroErrorf(macro_text::kIfNesting, expansion.name, st.lineNumber);
      return;
    }
    const bool enclosing = expansion.active();
    bool value = false;
    if (isIf) {
      std::string text;
      if (!readParenthesized(text, expansion.name)) return;
      if (enclosing) {
        std::optional<Value> result = evaluate(text);
        if (!result) {
          macroErrorf(macro_text::kBadIf, text);
          return;
        }
        value = valueToDouble(*result) > 0;
      }
    } else {
      int c = skipBlanks();
      if (c != '(') {
        if (c == kEnd) {
          premature(expansion.name);
        } else {
          macroErrorf(macro_text::kArgSyntax, expansion.name, st.lineNumber);
        }
        return;
      }
      pushBack(skipBlanks());
      int terminator = 0;
      std::string name = readWord(kMaxReferenceName, true, terminator);
      c = skipBlanks();
      if (c != ')') {
        if (c == kEnd) {
          premature(expansion.name);
        } else {
          macroErrorf(macro_text::kArgSyntax, expansion.name, st.lineNumber);
        }
        return;
      }
      if (enclosing) {
        std::optional<std::string> found = lookupValue(name);
        if (!found) {
          macroErrorf(macro_text::kUnknownArg, expansion.name, name, st.lineNumber);
          return;
        }
        value = isIfDef ? !found->empty() : found->empty();
      }
    }
    const bool active = enclosing && value;
    levels.push_back(Condition{active, active});
    return;
  }

  if (equalsIgnoringCase(word, "elseif")) {
    if (levels.empty()) {
      macroErrorf(macro_text::kElseWithoutIf, expansion.name, st.lineNumber);
      return;
    }
    std::string text;
    if (!readParenthesized(text, expansion.name)) return;
    Condition& top = levels.back();
    if (!expansion.enclosingActive() || top.taken) {
      top.active = false;
      return;
    }
    std::optional<Value> result = evaluate(text);
    if (!result) {
      macroErrorf(macro_text::kBadElseIf, text);
      return;
    }
    top.active = valueToDouble(*result) > 0;
    top.taken = top.active;
    return;
  }

  if (equalsIgnoringCase(word, "else")) {
    if (levels.empty()) {
      macroErrorf(macro_text::kElseWithoutIf, expansion.name, st.lineNumber);
      return;
    }
    Condition& top = levels.back();
    top.active = expansion.enclosingActive() && !top.taken;
    top.taken = true;
    return;
  }

  // endif
  if (levels.empty()) {
    macroErrorf(macro_text::kEndifWithoutIf, expansion.name, st.lineNumber);
    return;
  }
  levels.pop_back();
}

// $$error(text): up to the first ")"; in a true branch it fails the expansion.
void MacroContext::runError(Expansion& expansion) {
  int c = skipBlanks();
  if (c != '(') {
    if (c == kEnd) {
      premature(expansion.name);
    } else {
      macroErrorf(macro_text::kArgSyntax, expansion.name, state_.lineNumber);
    }
    return;
  }
  std::string text;
  for (c = rawChar(); c != ')'; c = rawChar()) {
    if (c == kEnd) {
      premature(expansion.name);
      return;
    }
    if (text.size() < kMaxDirectiveText) text.push_back(static_cast<char>(c));
  }
  if (expansion.active()) {
    macroErrorf(macro_text::kErrorText, text, expansion.name, state_.lineNumber);
  }
}

// $$exp("expression"): the value as text, at most 511 characters.
void MacroContext::runExp(Expansion& expansion) {
  const int line = state_.lineNumber;
  if (skipBlanks() != '(') {
    macroErrorf(macro_text::kExpParen, line, expansion.name);
    return;
  }
  std::string text;
  if (!readQuotedString(text, false)) {
    macroErrorf(macro_text::kExpString, line, expansion.name);
    return;
  }
  if (skipBlanksAndBreaks() != ')') {
    macroErrorf(macro_text::kExpParen, line, expansion.name);
    return;
  }
  if (!expansion.active()) return;
  std::optional<Value> result = evaluate(text);
  if (!result) {
    macroErrorf(macro_text::kExpError, text, line, expansion.name);
    return;
  }
  std::string shown = valueToText(*result);
  if (shown.size() > kMaxDirectiveText) shown.resize(kMaxDirectiveText);
  appendOutput(shown);
}

// $$scan(name, "format", arg1, arg2 ...): defines arg1... with the groups of the first match of
// the format in the value of name, starting at the first group that isn't empty.
void MacroContext::runScan(Expansion& expansion) {
  const std::string& macroName = expansion.name;
  const int line = state_.lineNumber;
  int c = skipBlanks();
  if (c != '(') {
    std::string found = c == kEnd ? std::string() : std::string(1, static_cast<char>(c));
    macroErrorf(macro_text::kScanOpen, found, line, macroName);
    return;
  }
  pushBack(skipBlanksAndBreaks());
  int terminator = 0;
  std::string name = readWord(kMaxReferenceName, true, terminator);
  if (skipBlanksAndBreaks() != ',') {
    macroError(macro_text::kScanComma);
    return;
  }
  std::string format;
  if (!readQuotedString(format, false)) {
    macroErrorf(macro_text::kScanReadFormat, name, line, macroName);
    return;
  }
  std::vector<std::string> argNames;
  c = skipBlanksAndBreaks();
  if (c == ',') {
    for (;;) {
      pushBack(skipBlanksAndBreaks());
      std::string arg = readWord(kMaxReferenceName, true, terminator);
      if (arg.empty()) {
        macroErrorf(macro_text::kScanArgList, line, macroName);
        return;
      }
      argNames.push_back(arg);
      c = skipBlanksAndBreaks();
      if (c == ')') break;
      if (c != ',') {
        if (c == kEnd) {
          macroErrorf(macro_text::kScanArgList, line, macroName);
        } else {
          macroErrorf(macro_text::kScanCommaAfter, arg, line, macroName);
        }
        return;
      }
    }
  } else if (c != ')') {
    macroErrorf(macro_text::kScanCommaAfter, format, line, macroName);
    return;
  }
  if (!expansion.active()) return;

  std::optional<std::string> value = lookupValue(name);
  if (!value) {
    macroErrorf(macro_text::kScanUndeclared, name, line, macroName);
    return;
  }
  std::string text = std::move(*value);
  if (text.size() > 2 && hasSurroundingQuotes(text)) text = text.substr(1, text.size() - 2);
  std::string error;
  std::optional<Regex> regex = Regex::compile(format, &error);
  if (!regex) {
    macroErrorf(macro_text::kScanFormat, error, line, macroName);
    return;
  }
  RegexMatch match = regex->search(text);
  int first = 0;
  for (int group = 1; match.matched && group <= Regex::kMaxGroups; ++group) {
    if (!match.group(text, group).empty()) {
      first = group;
      break;
    }
  }
  for (std::size_t i = 0; i < argNames.size(); ++i) {
    std::string groupText;
    const int group = first + static_cast<int>(i);
    if (first > 0 && group <= Regex::kMaxGroups) groupText = match.group(text, group);
    setDefine(argNames[i], groupText);
  }
}

}  // namespace zv
