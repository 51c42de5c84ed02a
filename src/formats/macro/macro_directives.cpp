// Directive dispatch after "$$", and the two line directives $$define and $$include.

#include <cstdio>
#include <memory>

#include "core/paths.h"
#include "core/text.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

bool isWhite(int c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
  for (std::string_view candidate : words) {
    if (equalsIgnoringCase(word, candidate)) return true;
  }
  return false;
}

}  // namespace

// The word behind "$$" is letters and digits (and "_" inside a body), at most 31 long. At the top
// level only macro, include, define, repeat and argtype are directives; a body also knows the
// conditions, scan, error and exp. Every other word is a macro call.
void MacroContext::runDirective(Expansion* expansion) {
  const bool inBody = expansion != nullptr;
  const bool active = !inBody || expansion->active();
  int terminator = 0;
  std::string word = readWord(kMaxNameLength, inBody, terminator);
  if (word.empty()) {
    if (terminator == kEnd) {
      premature(macro_text::kUnknownName);
      return;
    }
    if (inBody) {
      macroErrorf(macro_text::kArgSyntax, expansion->name, state_.lineNumber);
      return;
    }
  }

  if (equalsIgnoringCase(word, "macro")) {
    if (inBody) {
      macroErrorf(macro_text::kNotInMacro, std::string("$$macro"));
      return;
    }
    defineMacro();
  } else if (equalsIgnoringCase(word, "include")) {
    runInclude(active);
  } else if (equalsIgnoringCase(word, "define")) {
    runDefine(active);
  } else if (equalsIgnoringCase(word, "repeat")) {
    runRepeat(expansion);
  } else if (equalsIgnoringCase(word, "argtype")) {
    runArgType(active);
  } else if (inBody && isOneOf(word, {"ifdef", "ifnull", "if", "elseif", "else", "endif"})) {
    runCondition(word, *expansion);
  } else if (inBody && equalsIgnoringCase(word, "scan")) {
    runScan(*expansion);
  } else if (inBody && equalsIgnoringCase(word, "error")) {
    runError(*expansion);
  } else if (inBody && equalsIgnoringCase(word, "exp")) {
    runExp(*expansion);
  } else {
    callMacro(word, active);
  }
}

// $$define name value: the name ends at a white space; blanks are skipped and the value is the
// rest of the line. A backslash before the line end joins the next line; a backslash before
// anything else stays with that character; carriage returns are dropped.
void MacroContext::runDefine(bool active) {
  int c = skipBlanks();
  std::string name;
  while (c != kEnd && !isWhite(c)) {
    name.push_back(static_cast<char>(c));
    c = rawChar();
  }
  if (c == ' ' || c == '\t') c = skipBlanks();
  std::string value;
  while (c != kEnd && c != '\n' && !failed()) {
    if (c == '\r') {
      c = rawChar();
      continue;
    }
    if (c == '\\') {
      int next = rawChar();
      if (next == '\n') {
        c = rawChar();
        continue;
      }
      if (next == '\r') {
        c = rawChar();
        if (c == '\n') c = rawChar();
        continue;
      }
      value.push_back('\\');
      if (next == kEnd) break;
      value.push_back(static_cast<char>(next));
      c = rawChar();
      continue;
    }
    value.push_back(static_cast<char>(c));
    c = rawChar();
  }
  if (active && !name.empty() && !failed()) setDefine(name, value);
}

// $$include name: the next word, ended by white space. In a skipped branch nothing is opened.
void MacroContext::runInclude(bool active) {
  int c = skipBlanks();
  std::string name;
  while (c != kEnd && !isWhite(c)) {
    name.push_back(static_cast<char>(c));
    c = rawChar();
  }
  if (c == '\r') {  // a CR LF line end goes as a whole
    c = rawChar();
    if (c != '\n') pushBack(c);
  }
  if (!active || failed()) return;
  openInclude(name);
}

// Looked for in the directory of the file being read, then in the data directory. A file that
// is already open (by full path, ignoring case) may not be included again.
bool MacroContext::openInclude(std::string_view name) {
  namespace fs = std::filesystem;
  State& st = state_;
  std::optional<fs::path> found;
  std::error_code ec;
  if (!name.empty()) {
    if (!st.sourcePath.empty()) {
      fs::path candidate = findDataFile(st.sourcePath.parent_path(), name);
      if (fs::exists(candidate, ec)) found = candidate;
    }
    if (!found && !st.dataDir.empty()) {
      fs::path candidate = findDataFile(st.dataDir, name);
      if (fs::exists(candidate, ec)) found = candidate;
    }
  }
  if (!found) {
    macroErrorf(macro_text::kIncludeOpen, std::string(name), st.lineNumber);
    return false;
  }
  fs::path full = fs::absolute(*found, ec).lexically_normal();
  if (ec) full = found->lexically_normal();
  for (const IncludeFile& open : st.includeStack) {
    if (equalsIgnoringCase(open.path.string(), full.string())) {
      macroErrorf(macro_text::kIncludeNested, st.lineNumber);
      return false;
    }
  }

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file(std::fopen(full.c_str(), "rb"));
  if (!file) {
    macroErrorf(macro_text::kIncludeOpen, std::string(name), st.lineNumber);
    return false;
  }
  IncludeFile include;
  include.path = full;
  char buffer[4096];
  for (;;) {
    std::size_t got = std::fread(buffer, 1, sizeof buffer, file.get());
    include.data.append(buffer, got);
    if (got < sizeof buffer) break;
  }
  if (std::ferror(file.get())) {
    macroError(macro_text::kIncludeRead);
    return false;
  }
  st.includeStack.push_back(std::move(include));
  return true;
}

}  // namespace zv
