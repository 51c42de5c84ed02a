// The reserved argument class names and the choices strings of `choose` argument types.

#include <array>
#include <utility>

#include "core/text.h"
#include "formats/macro/macro_types.h"

namespace zv {

std::optional<MacroArgClass> reservedArgClass(std::string_view name) {
  static constexpr std::array<std::pair<std::string_view, MacroArgClass>, 10> kTable{{
      {"text", MacroArgClass::Text},
      {"req", MacroArgClass::Requirement},
      {"requirement", MacroArgClass::Requirement},
      {"adj", MacroArgClass::Adjustment},
      {"adjustment", MacroArgClass::Adjustment},
      {"auto", MacroArgClass::AutoItems},
      {"autoitems", MacroArgClass::AutoItems},
      {"cat", MacroArgClass::Category},
      {"categories", MacroArgClass::Category},
      {"category", MacroArgClass::Category},
  }};
  for (const auto& [reserved, argClass] : kTable) {
    if (equalsIgnoringCase(reserved, name)) return argClass;
  }
  return std::nullopt;
}

namespace {

struct Entry {
  std::string text;
  bool literal = false;  ///< its first character was protected by a backslash
};

// Splits at "|" that no backslash protects; the backslashes are removed. nullopt for a
// backslash at the very end.
std::optional<std::vector<Entry>> splitEntries(std::string_view text) {
  std::vector<Entry> entries(1);
  bool leading = true;  // no character of the current entry but spaces yet
  for (std::size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '|') {
      entries.emplace_back();
      leading = true;
      continue;
    }
    bool escaped = false;
    if (c == '\\') {
      if (++i >= text.size()) return std::nullopt;
      c = text[i];
      escaped = true;
    }
    if (leading && c != ' ') {
      entries.back().literal = escaped;
      leading = false;
    }
    entries.back().text.push_back(c);
  }
  return entries;
}

}  // namespace

// Entries: "*" lets the user type a value of his own; "?choose:value:text" gives the prompt of
// the choice dialog (and also lets the user type); "?checkexp:value" and "?checkmsg:value" give
// the check and its message; "?list" and any other directive stay among the choices; every other
// entry is a literal choice.
std::optional<MacroChoices> parseMacroChoices(std::string_view text) {
  std::optional<std::vector<Entry>> entries = splitEntries(text);
  if (!entries) return std::nullopt;
  MacroChoices result;
  for (Entry& entry : *entries) {
    std::string item = trim(entry.text);
    if (item.empty()) continue;
    if (entry.literal || (item != "*" && item.front() != '?')) {
      result.choices.push_back(std::move(item));
      continue;
    }
    if (item == "*") {
      result.allowOther = true;
      continue;
    }
    const std::size_t colon = item.find(':');
    const std::string directive = item.substr(0, colon);
    const std::string rest = colon == std::string::npos ? std::string() : item.substr(colon + 1);
    if (equalsIgnoringCase(directive, "?choose")) {
      const std::size_t second = rest.find(':');
      if (colon == std::string::npos || second == std::string::npos) return std::nullopt;
      result.promptValue = rest.substr(0, second);
      result.promptText = rest.substr(second + 1);
      result.allowOther = true;
    } else if (equalsIgnoringCase(directive, "?checkexp") ||
               equalsIgnoringCase(directive, "?checkmsg")) {
      if (colon == std::string::npos) return std::nullopt;
      std::string value = rest.substr(0, rest.find(':'));
      if (equalsIgnoringCase(directive, "?checkexp")) {
        result.checkExpression = std::move(value);
      } else {
        result.checkMessage = std::move(value);
      }
    } else {
      result.choices.push_back(std::move(item));
    }
  }
  return result;
}

}  // namespace zv
