#include "rules/lookup.h"

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "core/value.h"
#include "rules/option_value.h"

namespace zv {

std::optional<std::vector<std::pair<std::string, std::string>>> parseLookupString(
    Item& item, std::string_view lookup) {
  const std::string text = trim(lookup);
  if (text.empty()) {
    showError("No lookup array specified.");
    return std::nullopt;
  }
  if (text.front() != '$') {
    showError(strprintf("Poorly formatted lookup string: %s.", text.c_str()));
    return std::nullopt;
  }
  std::vector<std::pair<std::string, std::string>> entries;
  for (const std::string& piece : split(std::string_view(text).substr(1), ';')) {
    const std::string entry = trim(piece);
    if (entry.empty()) continue;
    const std::size_t equals = entry.find('=');
    if (equals == std::string::npos || equals == 0) {
      showError(strprintf("Poorly formatted lookup string: %s.", text.c_str()));
      return std::nullopt;
    }
    std::string key = trim(std::string_view(entry).substr(0, equals));
    std::string expression = trim(std::string_view(entry).substr(equals + 1));
    if (expression.empty()) {
      showError(strprintf("Empty expression for lookup entry: %s", key.c_str()));
      return std::nullopt;
    }
    if (key.front() == '$') {
      Value value;
      if (evaluateForItem(&item, nullptr, std::string_view(key).substr(1), value) == 0) {
        key = valueToText(value);
      }
    }
    entries.emplace_back(std::move(key), std::move(expression));
  }
  return entries;
}

std::optional<std::string> lookupExpression(
    const std::vector<std::pair<std::string, std::string>>& entries, std::string_view key) {
  for (const auto& [entryKey, expression] : entries) {
    if (equalsIgnoringCase(entryKey, key)) return expression;
  }
  return std::nullopt;
}

}  // namespace zv
