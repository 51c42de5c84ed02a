#include "rules/value/lookup.h"

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "core/value.h"
#include "expr/symbols.h"
#include "rules/value/option_value.h"

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

std::optional<std::vector<std::pair<std::string, std::string>>> lookupEntries(Item& item) {
  const std::string name = trim(item.lookupArray);
  if (name.empty() || name.front() == '$') return parseLookupString(item, name);
  SymbolTable* table = item.owner != nullptr ? item.owner->symbols.get() : nullptr;
  Symbol* array = table != nullptr ? table->find(name) : nullptr;
  if (array == nullptr || array->undefined()) {
    showError(strprintf("Cannot find lookup array '%s'", name.c_str()));
    return std::nullopt;
  }
  if (!array->isArray()) {
    showError(strprintf("Lookup array '%s' is not an array", name.c_str()));
    return std::nullopt;
  }
  if (array->elements.size() % 2 != 0) {
    showError("Must have even number of elements in lookup array");
    return std::nullopt;
  }
  std::vector<std::pair<std::string, std::string>> entries;
  for (std::size_t i = 0; i < array->elements.size(); i += 2) {
    if (!array->elements[i].isString()) {
      showError(strprintf("Element %d is not a string in combo box", static_cast<int>(i + 1)));
      return std::nullopt;
    }
    entries.emplace_back(array->elements[i].text(), valueToText(array->elements[i + 1]));
  }
  return entries;
}

}  // namespace zv
