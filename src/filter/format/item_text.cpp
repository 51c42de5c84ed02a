#include "filter/format/item_text.h"

#include "core/list_info.h"
#include "core/text.h"
#include "core/value.h"
#include "rules/value/lookup.h"
#include "rules/value/option_value.h"

namespace zv {

std::string displayName(const Item& item, bool useAliases) {
  if (!useAliases || item.alias.empty()) return item.name;
  if (item.original.empty() || equalsIgnoringCase(item.original, item.name)) return item.alias;
  std::string out;
  std::size_t from = 0;
  bool replaced = false;
  for (;;) {
    std::size_t at = findIgnoringCase(item.name, item.original, from);
    if (at == std::string::npos) break;
    out.append(item.name, from, at - from);
    out += item.alias;
    from = at + item.original.size();
    replaced = true;
  }
  if (!replaced) return item.name;
  out.append(item.name, from, std::string::npos);
  return out;
}

std::string lookedUpLevel(Item& item) {
  if (trim(item.lookupArray).empty()) return valueToText(item.value);
  auto entries = lookupEntries(item);
  if (!entries) return "--";
  for (const auto& [word, expression] : *entries) {
    Value value;
    if (evaluateForItem(&item, nullptr, expression, value) != 0) value = Value(expression);
    const bool same = value.isString() || item.value.isString()
                          ? valueToText(value) == valueToText(item.value)
                          : compareValues(value, item.value) == 0;
    if (same) return word;
  }
  return "--";
}

bool itemHasLevel(const Item& item) {
  return !item.level.empty() || item.levelSymbol != nullptr;
}

std::string filterFormatOf(const Item& item) {
  if (!item.format.empty()) return item.format;
  const Item* top = &item;
  while (top->parent != nullptr)
    top = top->parent;
  if (top->list != nullptr && !top->list->format.empty()) return top->list->format;
  return itemHasLevel(item) ? "%0ln%-5rc%-10rv" : "%0ln%-5rc";
}

}  // namespace zv
