// String operands of directives ($$scan formats, $$exp expressions, $$repeat patterns and
// separators, $$argtype texts) and the replacement of define references inside them.

#include "core/text.h"
#include "formats/macro/macro_context.h"

namespace zv {

namespace {

bool isNameChar(char c) {
  auto byte = static_cast<unsigned char>(c);
  return (byte >= '0' && byte <= '9') || byte == '_' || isLetterChar(byte);
}

}  // namespace

// A string in double or single quotes, after optional blanks and line ends. Escapes: \n and \r;
// a backslash before a line end drops the line end; any other backslash stays with the character
// behind it (so "\." reaches a regular expression as written, and "\"" doesn't end the string).
bool MacroContext::readQuotedString(std::string& out, bool expandDefines) {
  const int quote = skipBlanksAndBreaks();
  if (quote != '"' && quote != '\'') return false;
  for (;;) {
    int c = rawChar();
    if (c == kEnd) return false;
    if (c == quote) break;
    if (c != '\\') {
      out.push_back(static_cast<char>(c));
      continue;
    }
    int next = rawChar();
    if (next == kEnd) return false;
    if (next == 'n') {
      out.push_back('\n');
    } else if (next == 'r') {
      out.push_back('\r');
    } else if (next == '\r') {
      int after = rawChar();
      if (after != '\n') pushBack(after);
    } else if (next != '\n') {
      out.push_back('\\');
      out.push_back(static_cast<char>(next));
    }
  }
  if (expandDefines) out = expandDefinesIn(out);
  return true;
}

// Each "$(name)" that names a define and has no backslash before it is replaced by the define's
// value; anything else stays as written.
std::string MacroContext::expandDefinesIn(std::string_view text) const {
  std::string out;
  std::size_t i = 0;
  while (i < text.size()) {
    const bool reference = text[i] == '$' && i + 1 < text.size() && text[i + 1] == '(' &&
                           (i == 0 || text[i - 1] != '\\');
    if (!reference) {
      out.push_back(text[i++]);
      continue;
    }
    std::size_t start = i + 2;
    std::size_t end = start;
    while (end < text.size() && isNameChar(text[end]) && end - start < kMaxReferenceName)
      ++end;
    const MacroDefine* define = nullptr;
    if (end < text.size() && text[end] == ')' && end > start) {
      define = findDefine(text.substr(start, end - start));
    }
    if (define == nullptr) {
      out.push_back(text[i++]);
      continue;
    }
    out += define->value;
    i = end + 1;
  }
  return out;
}

}  // namespace zv
