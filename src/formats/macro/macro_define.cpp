// $$macro: a definition with its argument list and body, and the three directives that describe
// a macro for the data sheet editor ($$argdesc, $$macrodesc, $$hideMacro), which are taken out of
// the body.

#include "core/text.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

constexpr std::size_t kNoLimit = std::string::npos;

}  // namespace

// $$macro name ( arg, arg ... ) {{ body }}
void MacroContext::defineMacro() {
  State& st = state_;
  int c = skipBlanks();
  pushBack(c);
  int terminator = 0;
  std::string name = readWord(kMaxNameLength, true, terminator);
  if (name.empty()) {
    if (terminator == kEnd) {
      premature(macro_text::kUnknownName);
    } else {
      macroErrorf(macro_text::kSyntax, name, st.lineNumber);
    }
    return;
  }
  if (macroFind(name) != nullptr) {
    macroErrorf(macro_text::kDuplicate, name, st.lineNumber);
    return;
  }
  MacroDef def;
  def.name = name;
  // The end of the input is a premature end; any other wrong character a syntax error.
  auto badCharacter = [&](int found) {
    if (found == kEnd) {
      premature(name);
    } else {
      macroErrorf(macro_text::kSyntax, name, st.lineNumber);
    }
  };

  c = skipBlanks();
  if (c != '(') {
    badCharacter(c);
    return;
  }
  c = skipBlanksAndBreaks();
  if (c != ')') {
    for (;;) {
      pushBack(c);
      std::string arg = readWord(kMaxNameLength, true, terminator);
      if (arg.empty()) {
        badCharacter(terminator);
        return;
      }
      if (def.args.size() == kMaxArgs) {
        macroErrorf(macro_text::kArgCount, name, st.lineNumber);
        return;
      }
      def.args.push_back(MacroArg{arg, {}, MacroArgClass::Text, -1});
      c = skipBlanksAndBreaks();
      if (c == ')') break;
      if (c != ',') {
        badCharacter(c);
        return;
      }
      c = skipBlanksAndBreaks();
    }
  }

  c = skipBlanksAndBreaks();
  if (c == kEnd) {
    premature(name);
    return;
  }
  if (c != '{' || rawChar() != '{') {
    macroErrorf(macro_text::kMissingBraces, name, st.lineNumber);
    return;
  }
  if (!readMacroBody(def)) return;
  st.macros.push_back(std::move(def));
  st.dropLineBreaks = true;
}

// The first line breaks behind "{{" are dropped; characters are copied up to "}}", a single "}"
// is kept.
bool MacroContext::readMacroBody(MacroDef& def) {
  int c = rawChar();
  while (c == '\r' || c == '\n')
    c = rawChar();
  pushBack(c);
  std::string& body = def.body;
  for (;;) {
    c = rawChar();
    if (failed()) return false;
    if (c == kEnd) {
      premature(def.name);
      return false;
    }
    if (c == '}') {
      int next = rawChar();
      if (next == '}') break;
      body.push_back('}');
      pushBack(next);
    } else if (c == '$') {
      int next = rawChar();
      if (next != '$') {
        body.push_back('$');
        pushBack(next);
      } else {
        int terminator = 0;
        std::string word = readWord(kNoLimit, true, terminator);
        bool handled = false;
        if (!readBodyDirective(def, word, handled)) return false;
        if (handled) {
          pushBack(skipBlanksAndBreaks());  // space behind a removed directive goes with it
        } else {
          body += "$$";
          body += word;
        }
      }
    } else {
      body.push_back(static_cast<char>(c));
    }
    if (body.size() >= kMaxBody) {
      macroError(macro_text::kInsufficientMemory);
      return false;
    }
  }
  body.shrink_to_fit();
  return true;
}

bool MacroContext::readBodyDirective(MacroDef& def, const std::string& word, bool& handled) {
  handled = true;
  if (equalsIgnoringCase(word, "argdesc")) return readArgDesc(def);
  if (equalsIgnoringCase(word, "macrodesc")) return readMacroDesc(def);
  if (equalsIgnoringCase(word, "hideMacro")) {
    def.hidden = true;
    int c = skipBlanks();
    if (c != '(') {
      pushBack(c);
      return true;
    }
    do {
      c = rawChar();
    } while (c != ')' && c != kEnd);
    if (c == kEnd) {
      premature(def.name);
      return false;
    }
    return true;
  }
  handled = false;
  return true;
}

// One field of $$argdesc or $$macrodesc: quoted, or up to one of its terminators. Escapes are
// \n, \r and \\; a backslash before a line end drops the line end; any other backslash stays.
// `terminator` receives the character that ended the field (kEnd at the end of the input).
bool MacroContext::readDescField(std::string_view terminators, std::string& out, int& terminator) {
  int c = skipBlanks();
  const bool quoted = c == '"';
  if (quoted) c = rawChar();
  for (;;) {
    if (c == kEnd) {
      terminator = kEnd;
      return false;
    }
    if (quoted ? c == '"' : terminators.find(static_cast<char>(c)) != std::string_view::npos) {
      break;
    }
    if (c == '\\') {
      int next = rawChar();
      if (next == 'n') {
        out.push_back('\n');
      } else if (next == 'r') {
        out.push_back('\r');
      } else if (next == '\\') {
        out.push_back('\\');
      } else if (next == '\r') {
        int after = rawChar();
        if (after != '\n') pushBack(after);
      } else if (next != '\n') {
        out.push_back('\\');
        if (next == kEnd) {
          c = kEnd;
          continue;
        }
        out.push_back(static_cast<char>(next));
      }
    } else {
      out.push_back(static_cast<char>(c));
    }
    c = rawChar();
  }
  terminator = quoted ? skipBlanks() : c;
  return true;
}

// $$argdesc(name:type, description)
bool MacroContext::readArgDesc(MacroDef& def) {
  if (skipBlanks() != '(') {
    macroErrorf(macro_text::kArgDescParens, def.name);
    return false;
  }
  std::string head;
  int terminator = 0;
  readDescField(",)", head, terminator);
  if (terminator != ',') {
    macroErrorf(terminator == ')' ? macro_text::kArgDescComma : macro_text::kArgDescParens,
                def.name);
    return false;
  }
  std::string description;
  readDescField(")", description, terminator);
  if (terminator != ')') {
    macroErrorf(macro_text::kArgDescParens, def.name);
    return false;
  }

  std::string argName = head;
  std::string typeName;
  if (std::size_t colon = head.find(':'); colon != std::string::npos) {
    argName = head.substr(0, colon);
    typeName = trim(std::string_view(head).substr(colon + 1));
  }
  argName = trim(argName);
  MacroArg* arg = nullptr;
  for (MacroArg& candidate : def.args) {
    if (equalsIgnoringCase(candidate.name, argName)) arg = &candidate;
  }
  if (arg == nullptr) return true;  // an unknown argument name is ignored

  MacroArgClass argClass = MacroArgClass::Text;
  int typeIndex = -1;
  if (!typeName.empty()) {
    if (auto reserved = reservedArgClass(typeName)) {
      argClass = *reserved;
    } else if (const MacroArgType* type = findArgType(typeName)) {
      argClass = MacroArgClass::Custom;
      typeIndex = static_cast<int>(type - state_.argTypes.data());
    } else {
      macroErrorf(macro_text::kArgDescType, typeName, def.name);
      return false;
    }
  }
  arg->argClass = argClass;
  arg->typeIndex = typeIndex;
  arg->description = std::move(description);
  return true;
}

// $$macrodesc(text)
bool MacroContext::readMacroDesc(MacroDef& def) {
  int terminator = 0;
  std::string text;
  if (skipBlanks() != '(' || (readDescField(")", text, terminator), terminator != ')')) {
    macroErrorf(macro_text::kMacroDescParen, def.name);
    return false;
  }
  def.description = std::move(text);
  return true;
}

}  // namespace zv
