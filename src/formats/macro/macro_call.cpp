// Macro calls in their two forms, the reading of arguments, and simple expansion of the
// references an argument holds.

#include "core/text.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

bool isNameChar(char c) {
  auto byte = static_cast<unsigned char>(c);
  return (byte >= '0' && byte <= '9') || byte == '_' || isLetterChar(byte);
}

bool hasSurroundingQuotes(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

}  // namespace

// Tab form: name, a tab, then arguments separated by tabs up to the end of the line.
// Bracket form: name, optional spaces, "(", arguments separated by commas, ")".
void MacroContext::callMacro(const std::string& word, bool active) {
  State& st = state_;
  const MacroDef* def = macroFind(word);
  if (def == nullptr && active) {
    macroErrorf(macro_text::kUndefinedMacro, word, st.lineNumber);
    return;
  }
  int c = rawChar();
  const bool tabForm = c == '\t';
  if (!tabForm) {
    while (c == ' ')
      c = rawChar();
    if (c != '(') {
      if (def == nullptr) {  // an unknown word in a skipped branch: not a call
        pushBack(c);
        return;
      }
      if (c == kEnd) {
        premature(word);
      } else {
        macroErrorf(macro_text::kInvocation, word, st.lineNumber);
      }
      return;
    }
  }
  std::vector<std::string> args;
  const bool read = tabForm ? readTabArgs(args, word, active) : readBracketArgs(args, word, active);
  if (!read || failed() || !active) return;
  while (!args.empty() && args.back().empty())
    args.pop_back();
  if (args.size() > def->args.size()) {
    macroErrorf(macro_text::kArgCount, def->name, st.lineNumber);
    return;
  }
  expandMacro(*def, std::move(args));
}

// A quoted argument is kept with its quotes and escapes exactly as written, up to an unescaped
// double quote. The opening quote has been read.
bool MacroContext::readQuotedArg(std::string& arg, std::string_view macroName) {
  arg.push_back('"');
  for (;;) {
    int c = rawChar();
    if (c == kEnd) {
      premature(macroName);
      return false;
    }
    arg.push_back(static_cast<char>(c));
    if (c == '"') return true;
    if (c == '\\') {
      int next = rawChar();
      if (next == kEnd) {
        premature(macroName);
        return false;
      }
      arg.push_back(static_cast<char>(next));
    }
  }
}

// "$(name)" at the start of an argument: replaced by the value of name. "$(" has been read.
bool MacroContext::readStartReference(std::string& arg, bool active) {
  int terminator = 0;
  std::string name = readWord(kMaxReferenceName, true, terminator);
  if (rawChar() != ')') {
    macroErrorf(macro_text::kArgMissingParen, name);
    return false;
  }
  if (!active) return true;
  std::optional<std::string> value = lookupValue(name);
  if (!value) {
    macroErrorf(macro_text::kArgUndeclared, name);
    return false;
  }
  arg += *value;
  return true;
}

// The start of an unquoted argument, whose first character `c` has been read: "$(name)" is
// replaced by the value of name, a "$" before anything else is kept. On return `c` is the next
// character to take.
bool MacroContext::readArgumentStart(int& c, std::string& arg, bool active) {
  if (c != '$') return true;
  c = rawChar();
  if (c != '(') {
    arg.push_back('$');
    return true;
  }
  if (!readStartReference(arg, active)) return false;
  c = rawChar();
  return true;
}

// Appends `c` to a raw argument and returns the next character. A reference "$(name)" inside the
// argument is taken whole, so that its ")" doesn't end the argument.
int MacroContext::readRawArgChar(std::string& arg, int c) {
  arg.push_back(static_cast<char>(c));
  int next = rawChar();
  if (c != '$' || next != '(') return next;
  arg.push_back('(');
  for (next = rawChar(); next != kEnd; next = rawChar()) {
    arg.push_back(static_cast<char>(next));
    if (next == ')') return rawChar();
  }
  return next;
}

bool MacroContext::readTabArgs(std::vector<std::string>& args, std::string_view macroName,
                               bool active) {
  auto endsArg = [](int c) { return c == '\t' || c == '\r' || c == '\n' || c == kEnd; };
  for (;;) {
    if (args.size() == kMaxArgs) {
      macroErrorf(macro_text::kArgCount, std::string(macroName), state_.lineNumber);
      return false;
    }
    int c = rawChar();
    while (c == ' ')
      c = rawChar();
    std::string arg;
    if (c == '"') {
      if (!readQuotedArg(arg, macroName)) return false;
      c = rawChar();
      while (c == ' ')
        c = rawChar();
    } else {
      if (!readArgumentStart(c, arg, active)) return false;
      while (!endsArg(c))
        c = readRawArgChar(arg, c);
      while (!arg.empty() && arg.back() == ' ')
        arg.pop_back();
    }
    if (!endsArg(c)) {
      macroErrorf(macro_text::kSyntax, std::string(macroName), state_.lineNumber);
      return false;
    }
    if (active && arg.find("$(") != std::string::npos) {
      std::optional<std::string> expanded = simpleExpand(arg);
      if (!expanded) return false;
      arg = std::move(*expanded);
    }
    args.push_back(std::move(arg));
    if (c != '\t') {
      pushBack(c);  // the line end is delivered as it stands
      return true;
    }
  }
}

bool MacroContext::readBracketArgs(std::vector<std::string>& args, std::string_view macroName,
                                   bool active) {
  for (;;) {
    int c = skipBlanksAndBreaks();
    if (c == kEnd) {
      premature(macroName);
      return false;
    }
    if (c == ')') {
      if (!args.empty()) args.emplace_back();  // an empty last argument behind a comma
      return true;
    }
    if (args.size() == kMaxArgs) {
      macroErrorf(macro_text::kArgCount, std::string(macroName), state_.lineNumber);
      return false;
    }
    std::string arg;
    if (c == '"') {
      if (!readQuotedArg(arg, macroName)) return false;
      c = skipBlanksAndBreaks();
    } else {
      if (!readArgumentStart(c, arg, active)) return false;
      while (c != ',' && c != ')' && c != kEnd)
        c = readRawArgChar(arg, c);
    }
    if (c == kEnd) {
      premature(macroName);
      return false;
    }
    if (c != ',' && c != ')') {
      macroErrorf(macro_text::kSyntax, std::string(macroName), state_.lineNumber);
      return false;
    }
    if (active && arg.find("$(") != std::string::npos) {
      std::optional<std::string> expanded = simpleExpand(arg);
      if (!expanded) return false;
      arg = std::move(*expanded);
    }
    args.push_back(std::move(arg));
    if (c == ')') return true;
  }
}

// Replaces each "$(name)" by the value of name, without its surrounding quotes if it has both;
// the result is expanded again until nothing is left to replace, for at most 10 levels.
std::optional<std::string> MacroContext::simpleExpand(std::string_view text) {
  std::string current(text);
  for (std::size_t level = 0;; ++level) {
    if (current.find("$(") == std::string::npos) return current;
    if (level >= kMaxDepth) {
      macroErrorf(macro_text::kSimpleRecursion, std::string(text));
      return std::nullopt;
    }
    std::string next;
    std::size_t i = 0;
    while (i < current.size()) {
      if (current[i] != '$' || i + 1 >= current.size() || current[i + 1] != '(') {
        next.push_back(current[i++]);
        continue;
      }
      std::size_t start = i + 2;
      std::size_t end = start;
      while (end < current.size() && isNameChar(current[end]) && end - start < kMaxReferenceName) {
        ++end;
      }
      std::string name = current.substr(start, end - start);
      if (end >= current.size() || current[end] != ')') {
        macroErrorf(macro_text::kArgMissingParen, name);
        return std::nullopt;
      }
      std::optional<std::string> value = lookupValue(name);
      if (!value) {
        macroErrorf(macro_text::kArgUndeclared, name);
        return std::nullopt;
      }
      std::string_view replacement = *value;
      if (hasSurroundingQuotes(replacement)) {
        replacement = replacement.substr(1, replacement.size() - 2);
      }
      next += replacement;
      if (next.size() >= kOutputLimit) {
        macroError(macro_text::kInsufficientMemory);
        return std::nullopt;
      }
      i = end + 1;
    }
    current = std::move(next);
  }
}

}  // namespace zv
