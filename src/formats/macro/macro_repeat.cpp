// $$repeat(source, argName, "pattern", "separator") body $$endrepeat: the body is expanded once
// for each piece of the source's value, split by the pattern, with the separator between pieces.

#include <new>

#include "core/text.h"
#include "expr/regex.h"
#include "formats/macro/macro_context.h"
#include "formats/macro/macro_messages.h"

namespace zv {

namespace {

// Each piece is the text before a match; the search goes on behind the match; the text behind
// the last match is the last piece. A match of no characters doesn't split: the search moves on
// by one character, so a pattern like "x*" can't loop.
std::vector<std::string> splitByPattern(const Regex& regex, std::string_view text) {
  std::vector<std::string> pieces;
  std::size_t position = 0;
  for (;;) {
    RegexMatch match;
    bool found = false;
    for (std::size_t from = position; from <= text.size();) {
      match = regex.search(text, from);
      if (!match.matched) break;
      if (match.end() > match.start()) {
        found = true;
        break;
      }
      from = static_cast<std::size_t>(match.start()) + 1;
    }
    if (!found) {
      pieces.emplace_back(text.substr(position));
      return pieces;
    }
    const auto start = static_cast<std::size_t>(match.start());
    pieces.emplace_back(text.substr(position, start - position));
    position = static_cast<std::size_t>(match.end());
  }
}

}  // namespace

void MacroContext::runRepeat(Expansion* expansion) {
  State& st = state_;
  const bool active = expansion == nullptr || expansion->active();
  const std::string calledFrom = currentName();
  if (active && st.frames.size() >= kMaxDepth) {
    macroErrorf(macro_text::kNesting, std::string(macro_text::kRepeatName), calledFrom);
    return;
  }
  try {
    if (skipBlanks() != '(') {
      macroError(macro_text::kRepeatSource);
      return;
    }
    // The source: $(name) or a string.
    std::string value;
    int c = skipBlanksAndBreaks();
    if (c == '$') {
      int terminator = 0;
      std::string name;
      if (rawChar() == '(') name = readWord(kMaxReferenceName, true, terminator);
      if (name.empty() || rawChar() != ')') {
        macroError(macro_text::kRepeatReference);
        return;
      }
      if (active) {
        std::optional<std::string> found = lookupValue(name);
        if (!found) {
          macroErrorf(macro_text::kRepeatUndefined, name);
          return;
        }
        value = std::move(*found);
      }
    } else if (c == '"' || c == '\'') {
      pushBack(c);
      if (!readQuotedString(value, false)) {
        macroError(macro_text::kRepeatString);
        return;
      }
    } else {
      macroError(macro_text::kRepeatSource);
      return;
    }
    if (skipBlanksAndBreaks() != ',') {
      macroError(macro_text::kRepeatComma);
      return;
    }

    pushBack(skipBlanksAndBreaks());
    int terminator = 0;
    std::string argName = readWord(kMaxNameLength, true, terminator);
    if (argName.empty() || skipBlanksAndBreaks() != ',') {
      macroError(macro_text::kRepeatArgument);
      return;
    }
    std::string pattern;
    if (!readQuotedString(pattern, true)) {
      macroError(macro_text::kRepeatPattern);
      return;
    }
    std::string separator;
    c = skipBlanksAndBreaks();
    if (c == ',') {
      if (!readQuotedString(separator, true) || skipBlanksAndBreaks() != ')') {
        macroError(macro_text::kRepeatSeparator);
        return;
      }
    } else if (c != ')') {
      macroError(macro_text::kRepeatPattern);
      return;
    }

    std::string body;
    if (!readRepeatBody(body) || !active) return;

    if (expansion != nullptr && expansion->quoted && value.size() >= 2 && value.front() == '"' &&
        value.back() == '"') {
      value = value.substr(1, value.size() - 2);
    }
    std::string error;
    std::optional<Regex> regex = Regex::compile(pattern, &error);
    if (!regex) {
      macroErrorf(macro_text::kRepeatBadPattern, error);
      return;
    }
    std::vector<std::string> pieces = splitByPattern(*regex, value);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (i > 0 && !appendOutput(separator)) return;
      Frame frame;
      frame.macroName = macro_text::kRepeatName;
      frame.body = body;
      frame.argNames = {argName};
      frame.args = {std::move(pieces[i])};
      frame.passThrough = true;
      pushAndExpand(std::move(frame), calledFrom);
      if (failed()) return;
    }
  } catch (const std::bad_alloc&) {
    macroError(macro_text::kRepeatMemory);
  }
}

// The body up to the matching $$endrepeat; nested $$repeat and $$endrepeat are counted. Words
// of at most 63 characters behind "$$" are compared ignoring case.
bool MacroContext::readRepeatBody(std::string& body) {
  constexpr std::size_t kWordLimit = 63;
  int level = 1;
  for (;;) {
    int c = rawChar();
    if (failed()) return false;
    if (c == kEnd) {
      macroError(macro_text::kRepeatEnd);
      return false;
    }
    if (c != '$') {
      body.push_back(static_cast<char>(c));
      continue;
    }
    int next = rawChar();
    if (next != '$') {
      body.push_back('$');
      pushBack(next);
      continue;
    }
    int terminator = 0;
    std::string word = readWord(kWordLimit, true, terminator);
    if (equalsIgnoringCase(word, "repeat")) {
      ++level;
    } else if (equalsIgnoringCase(word, "endrepeat") && --level == 0) {
      return true;
    }
    body += "$$";
    body += word;
  }
}

}  // namespace zv
