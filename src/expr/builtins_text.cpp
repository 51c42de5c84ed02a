// Built-in functions on texts: bytes, lengths, parts, searching, repeating, joining, case and
// replacing.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/messages.h"
#include "core/text.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/regex.h"

namespace zv {

namespace {

/// The longest text that dupstr may take, repeat or make.
constexpr std::size_t kLongestRepeat = 65536;
/// The longest text that concat may make.
constexpr std::size_t kLongestConcatenation = 32000;
/// The buffer that replaceToken fills: texts up to the length concat may make.
constexpr std::size_t kReplaceTokenCapacity = kLongestConcatenation + 1;

/// The pattern of a text of the form "/pattern/" of at least `shortest` bytes; nullopt for any
/// other text, which is then searched for as it stands.
std::optional<std::string_view> slashedPattern(std::string_view text, std::size_t shortest) {
  if (text.size() < shortest || text.front() != '/' || text.back() != '/') return std::nullopt;
  return text.substr(1, text.size() - 2);
}

/// True when `to` holds a backslash followed by a digit.
bool hasGroupReference(std::string_view to) {
  for (std::size_t i = 0; i + 1 < to.size(); ++i) {
    if (to[i] == '\\' && to[i + 1] >= '0' && to[i + 1] <= '9') return true;
  }
  return false;
}

/// The replacement for one match: `to` with each backslash-digit pair replaced by that group of
/// the match, when `to` holds any such pair; otherwise `to` as it stands.
std::string substituteGroups(std::string_view to, std::string_view text, const RegexMatch& match,
                             bool groupsInTo) {
  if (!groupsInTo) return std::string(to);
  std::string out;
  for (std::size_t i = 0; i < to.size(); ++i) {
    if (to[i] == '\\' && i + 1 < to.size() && to[i + 1] >= '0' && to[i + 1] <= '9') {
      out.append(match.group(text, to[i + 1] - '0'));
      ++i;
    } else {
      out.push_back(to[i]);
    }
  }
  return out;
}

/// Replaces the matches of a compiled pattern. A pattern anchored by "^" replaces at most once;
/// an empty match copies the byte after it, so that the search moves on.
std::string replaceMatches(const std::string& text, const Regex& regex, bool once,
                           std::string_view to) {
  bool groupsInTo = hasGroupReference(to);
  std::string out;
  std::size_t position = 0;
  while (position <= text.size()) {
    RegexMatch match = regex.search(text, position);
    if (!match.matched) break;
    auto start = static_cast<std::size_t>(match.start());
    auto end = static_cast<std::size_t>(match.end());
    out.append(text, position, start - position);
    out.append(substituteGroups(to, text, match, groupsInTo));
    if (end == start) {
      if (start < text.size()) out.push_back(text[start]);
      position = start + 1;
    } else {
      position = end;
    }
    if (once) break;
  }
  if (position < text.size()) out.append(text, position, std::string::npos);
  return out;
}

/// Replaces every occurrence of `from`, ignoring case, by `to`.
std::string replacePlain(const std::string& text, std::string_view from, std::string_view to) {
  if (from.empty()) return text;
  std::string out;
  std::size_t position = 0;
  for (std::size_t at; (at = findIgnoringCase(text, from, position)) != std::string::npos;) {
    out.append(text, position, at - position);
    out.append(to);
    position = at + from.size();
  }
  out.append(text, position, std::string::npos);
  return out;
}

/// Upper-cases the first letter of each word: a letter at the start or after a non-letter.
std::string capitalizeWords(std::string text) {
  bool afterLetter = false;
  for (char& c : text) {
    auto byte = static_cast<unsigned char>(c);
    bool letter = isLetterChar(byte);
    if (letter && !afterLetter) c = static_cast<char>(toUpperChar(byte));
    afterLetter = letter;
  }
  return text;
}

}  // namespace

int builtinChrval(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  auto byte = static_cast<char>(integerArgument(call, 0) & 0xFF);
  // Texts end at a zero byte, so byte 0 makes the empty text.
  call.result = Value(byte == 0 ? std::string() : std::string(1, byte));
  return 0;
}

int builtinStrlen(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  std::string text;
  if (!textArgument(call, 0, text)) return fail(kExprBadIndexing);
  call.result = Value(static_cast<std::int32_t>(text.size()));
  return 0;
}

int builtinSubstr(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  std::string text;
  if (!textArgument(call, 0, text)) return fail(kExprBadIndexing);
  std::int64_t start = integerArgument(call, 1);
  std::int64_t length = std::max<std::int64_t>(integerArgument(call, 2), 0);
  auto size = static_cast<std::int64_t>(text.size());
  if (start < 1 || start > size) {
    call.result = Value("");
  } else {
    length = std::min(length, size - start + 1);
    call.result =
        Value(text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(length)));
  }
  return 0;
}

int builtinStrindex(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string text, sought;
  if (!textArgument(call, 0, text) || !textArgument(call, 1, sought)) {
    return fail(kExprBadIndexing);
  }
  std::int32_t position = 0;
  if (auto pattern = slashedPattern(sought, 2)) {
    std::string error;
    std::optional<Regex> regex = Regex::compile(*pattern, &error);
    if (!regex) {
      showError(strprintf("Error in strindex regular expression pattern: %s", error));
    } else if (RegexMatch match = regex->search(text); match.matched) {
      position = static_cast<std::int32_t>(match.start() + 1);
    }
  } else if (std::size_t at = findIgnoringCase(text, sought); at != std::string::npos) {
    position = static_cast<std::int32_t>(at + 1);
  }
  call.result = Value(position);
  return 0;
}

int builtinDupstr(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string text;
  if (!textArgument(call, 0, text)) return fail(kExprBadIndexing);
  std::int64_t count = std::max<std::int64_t>(integerArgument(call, 1), 0);
  auto size = static_cast<std::int64_t>(text.size());
  constexpr auto kLongest = static_cast<std::int64_t>(kLongestRepeat);
  if (size > kLongest || count > kLongest || size * count > kLongest) {
    return fail(kExprNumberTooLarge);
  }
  std::string out;
  out.reserve(static_cast<std::size_t>(size * count));
  for (std::int64_t i = 0; i < count; ++i)
    out += text;
  call.result = Value(std::move(out));
  return 0;
}

int builtinConcat(BuiltinCall& call) {
  std::size_t count = call.args.size();
  if (count != 2 && count != 3) return fail(kExprStackUnderflow);
  std::string first, last;
  if (!textArgument(call, 0, first) || !textArgument(call, count - 1, last)) {
    return fail(kExprBadIndexing);
  }
  std::string out;
  if (count == 2) {
    out = first + last;
  } else if (first.empty()) {
    out = last;
  } else {
    const Value& separator = call.args[1];
    out = first + (separator.isString() ? separator.text() : std::string()) + last;
  }
  if (out.size() > kLongestConcatenation) return fail(kExprNoMemory);
  call.result = Value(std::move(out));
  return 0;
}

int builtinTolower(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  std::string text;
  if (!textArgument(call, 0, text)) return fail(kExprBadIndexing);
  call.result = Value(toLower(text));
  return 0;
}

int builtinToupper(BuiltinCall& call) {
  std::size_t count = call.args.size();
  if (count != 1 && count != 2) return fail(kExprStackUnderflow);
  std::string text;
  if (!textArgument(call, 0, text)) return fail(kExprBadIndexing);
  bool wordStarts = count == 2 && integerArgument(call, 1) != 0;
  call.result = Value(wordStarts ? capitalizeWords(std::move(text)) : toUpper(text));
  return 0;
}

int builtinReplaceString(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  std::string text, from, to;
  if (!textArgument(call, 0, text) || !textArgument(call, 1, from) || !textArgument(call, 2, to)) {
    return fail(kExprBadIndexing);
  }
  if (auto pattern = slashedPattern(from, 3)) {
    std::string error;
    std::optional<Regex> regex = Regex::compile(*pattern, &error);
    if (!regex) {
      showError(strprintf("Illegal regular expression in replaceString: %s", error));
      call.result = Value("");
      return 0;
    }
    bool once = pattern->front() == '^';
    call.result = Value(replaceMatches(text, *regex, once, to));
  } else {
    call.result = Value(replacePlain(text, from, to));
  }
  return 0;
}

int builtinReplaceToken(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  std::string text, token, value;
  if (!textArgument(call, 0, text) || !textArgument(call, 1, token) ||
      !textArgument(call, 2, value)) {
    return fail(kExprBadIndexing);
  }
  // When the result won't fit, replaceToken has said so and left the text as it was.
  replaceToken(text, kReplaceTokenCapacity, token, value);
  call.result = Value(std::move(text));
  return 0;
}

}  // namespace zv
