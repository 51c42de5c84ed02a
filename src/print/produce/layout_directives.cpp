#include "print/produce/layout_directives.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/text.h"

namespace zv {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

std::vector<std::string_view> words(std::string_view text) {
  std::vector<std::string_view> out;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && isBlank(text[i]))
      ++i;
    std::size_t start = i;
    while (i < text.size() && !isBlank(text[i]))
      ++i;
    if (i > start) out.push_back(text.substr(start, i - start));
  }
  return out;
}

int integerOf(std::string_view word, int base = 10) {
  int value = 0;
  std::from_chars(word.data(), word.data() + word.size(), value, base);
  return value;
}

/// Every word of the filters' header command table: a line beginning with one is a directive.
constexpr std::string_view kDirectiveWords[] = {
    "bgcolor",   "bold",     "bolditalic",  "clipformat", "columns",   "deftab",     "description",
    "extension", "face",     "firstindent", "font",       "fontinfo",  "gamesystem", "hline",
    "italic",    "keepnext", "landscape",   "leftindent", "margins",   "need",       "parinfo",
    "plain",     "samepage", "sheettype",   "sortexp",    "sortorder", "tabs",       "tabwidth",
    "textcolor", "trans",    "vline",       "wraptab"};

std::int16_t clampTwips(int value) {
  return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

/// "@font 'Face' size styles": false when the quoting is bad (the line is then left alone).
bool applyFont(std::string_view rest, TextProperties& state) {
  std::size_t i = 0;
  while (i < rest.size() && isBlank(rest[i]))
    ++i;
  if (i >= rest.size() || (rest[i] != '"' && rest[i] != '\'')) return false;
  char quote = rest[i++];
  std::size_t close = rest.find(quote, i);
  if (close == std::string_view::npos) return false;
  std::string face(rest.substr(i, close - i));
  std::vector<std::string_view> tail = words(rest.substr(close + 1));
  state.faceName = face.substr(0, 31);
  if (!tail.empty()) {
    if (auto size = parseLayoutMeasure(tail[0]); size && *size > 0)
      state.fontHeight = static_cast<std::uint16_t>(*size);
    std::uint16_t style = 0;
    for (std::size_t w = 1; w < tail.size(); ++w) {
      for (char c : tail[w]) {
        switch (static_cast<char>(toLowerChar(static_cast<unsigned char>(c)))) {
          case 'b':
            style |= kCharBold;
            break;
          case 'i':
            style |= kCharItalic;
            break;
          case 's':
            style |= kCharStrikeout;
            break;
          case 'u':
            style |= kCharUnderline;
            break;
          default:
            break;
        }
      }
    }
    state.charStyle = style;
  }
  return true;
}

}  // namespace

std::optional<int> parseLayoutMeasure(std::string_view word) {
  std::size_t i = 0;
  while (i < word.size() && (std::isdigit(static_cast<unsigned char>(word[i])) || word[i] == '.' ||
                             ((word[i] == '-' || word[i] == '+') && i == 0)))
    ++i;
  if (i == 0) return std::nullopt;
  std::string number(word.substr(0, i));
  char* end = nullptr;
  double value = std::strtod(number.c_str(), &end);
  if (end == number.c_str()) return std::nullopt;
  std::string unit;
  for (char c : word.substr(i))
    unit.push_back(static_cast<char>(toLowerChar(static_cast<unsigned char>(c))));
  double twips = value;
  if (unit == "\"" || unit == "i" || unit == "in") {
    twips = value * 1440;
  } else if (unit == "c" || unit == "cm") {
    twips = value * 1440 / 2.54;
  } else if (unit == "mm") {
    twips = value * 1440 / 25.4;
  } else if (unit == "p" || unit == "pt") {
    twips = value * 20;
  } else if (unit == "l" || unit == "ln") {
    return -static_cast<int>(std::lround(std::fabs(value)));
  }
  return static_cast<int>(std::lround(twips));
}

bool applyLayoutDirective(std::string_view line, TextProperties& state, DirectiveEffect& effect) {
  std::size_t i = 0;
  while (i < line.size() && isBlank(line[i]))
    ++i;
  if (i >= line.size() || line[i] != '@') return false;
  std::size_t start = ++i;
  while (i < line.size() && !isBlank(line[i]))
    ++i;
  std::string_view word = line.substr(start, i - start);
  bool known = false;
  for (std::string_view directive : kDirectiveWords)
    if (equalsIgnoringCase(directive, word)) known = true;
  if (!known) return false;
  std::string command;
  for (char c : word)
    command.push_back(static_cast<char>(toLowerChar(static_cast<unsigned char>(c))));
  std::string_view rest = line.substr(i);
  std::vector<std::string_view> args = words(rest);
  auto measure = [&](std::size_t n) -> std::optional<int> {
    return n < args.size() ? parseLayoutMeasure(args[n]) : std::nullopt;
  };
  if (command == "bold") {
    state.charStyle |= kCharBold;
  } else if (command == "italic") {
    state.charStyle |= kCharItalic;
  } else if (command == "bolditalic") {
    state.charStyle |= kCharBold | kCharItalic;
  } else if (command == "plain") {
    state.charStyle = 0;
  } else if (command == "face") {
    std::size_t f = 0;
    while (f < rest.size() && isBlank(rest[f]))
      ++f;
    state.faceName = std::string(rest.substr(f, 31));
  } else if (command == "font") {
    applyFont(rest, state);
  } else if (command == "fontinfo") {
    if (auto size = measure(0); size && *size > 0)
      state.fontHeight = static_cast<std::uint16_t>(*size);
    if (args.size() > 1) state.charStyle = static_cast<std::uint16_t>(integerOf(args[1], 16));
    if (args.size() > 2) state.charset = static_cast<std::uint8_t>(integerOf(args[2], 16));
    if (args.size() > 3) state.pitchFamily = static_cast<std::uint8_t>(integerOf(args[3], 16));
  } else if (command == "textcolor") {
    if (args.size() >= 3)
      state.textColour = static_cast<std::uint32_t>(integerOf(args[0]) & 0xFF) |
                         (static_cast<std::uint32_t>(integerOf(args[1]) & 0xFF) << 8) |
                         (static_cast<std::uint32_t>(integerOf(args[2]) & 0xFF) << 16);
  } else if (command == "firstindent") {
    if (auto m = measure(0)) state.firstIndent = clampTwips(*m);
  } else if (command == "leftindent") {
    if (auto m = measure(0)) state.leftIndent = clampTwips(*m);
  } else if (command == "parinfo") {
    if (auto m = measure(0)) state.firstIndent = clampTwips(*m);
  } else if (command == "deftab") {
    if (auto m = measure(0); m && *m >= 0) state.tabWidth = static_cast<std::uint16_t>(*m);
  } else if (command == "wraptab") {
    if (!args.empty()) state.wrapTabs = integerOf(args[0]) & 1;
  } else if (command == "tabs") {
    state.tabs.clear();
    for (std::size_t a = 0; a + 1 < args.size(); a += 2) {
      auto position = parseLayoutMeasure(args[a + 1]);
      if (!position) break;
      state.tabs.push_back(
          {clampTwips(*position), static_cast<std::uint16_t>(integerOf(args[a]) & 3)});
    }
  } else if (command == "need") {
    effect.need = measure(0);
  } else if (command == "hline") {
    DirectiveEffect::Rule rule;
    if (!args.empty()) rule.width = integerOf(args[0]);
    if (auto m = measure(1)) rule.start = *m;
    if (auto m = measure(2)) rule.end = *m;
    effect.rule = rule;
  }
  // The other header words (page, identity, sort and column settings of filters) mean nothing
  // inside a box: the line is taken and not printed.
  return true;
}

}  // namespace zv
