#include "expr/builtins_items.h"

#include <cstdint>
#include <string>

#include "core/dialog.h"
#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/messages.h"
#include "core/option.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_args.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// How many evals run inside one another now.
int evalDepth = 0;

const Item* itemOf(const BuiltinCall& call) {
  return callItem(call);
}

const FileInfo* sheetOf(const BuiltinCall& call) {
  return callSheet(call);
}

/// A field text that reads as an expression: it starts with a quote, a digit, a sign, ".", "'",
/// "(" or a quarter glyph.
bool looksLikeExpression(const std::string& text) {
  if (text.empty()) return false;
  const auto c = static_cast<unsigned char>(text[0]);
  return c == '"' || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == '\'' ||
         c == '(' || c == 0xBC || c == 0xBD || c == 0xBE;
}

/// Puts the field of the item into the call's result: a text that reads as an expression is
/// evaluated (and kept as a text when it doesn't evaluate); an absent field gives integer 0.
void fieldResult(BuiltinCall& call, const Item* item, const std::string& field) {
  Value value;
  if (item == nullptr || !itemValueByName(*item, field, value)) {
    call.result = Value(std::int32_t{0});
    return;
  }
  if (value.isString() && looksLikeExpression(value.text())) {
    Value evaluated;
    const int savedError = lastErrorCode();
    if (parseExp(&call.table, value.text(), evaluated) == 0) {
      call.result = std::move(evaluated);
      return;
    }
    setErrorCode(savedError);
  }
  call.result = std::move(value);
}

/// Appends the entries of a chain in order, descending into groups; groups themselves only when
/// `withGroups`.
void collectEntries(const ItemChain& chain, bool withGroups, std::vector<Item*>& out) {
  for (const auto& item : chain) {
    if (item->isSublist()) {
      if (withGroups) out.push_back(item.get());
      collectEntries(item->children, withGroups, out);
    } else {
      out.push_back(item.get());
    }
  }
}

/// The sublist of that name anywhere in the sheet's lists, first in order.
const Item* findSublist(const ItemChain& chain, std::string_view name) {
  for (const auto& item : chain) {
    if (!item->isSublist()) continue;
    if (equalsIgnoringCase(item->name, name)) return item.get();
    if (const Item* inner = findSublist(item->children, name)) return inner;
  }
  return nullptr;
}

/// The chain a list argument names, without the selector; null when unknown.
const ItemChain* namedChain(const FileInfo& sheet, std::string_view list) {
  if (!list.empty() && list[0] == '*') {
    const std::string_view name = list.substr(1);
    for (ListInfo* info : sheet.allLists()) {
      if (const Item* sublist = findSublist(info->items, name)) return &sublist->children;
    }
    return nullptr;
  }
  ListInfo* info = findListByPrefix(sheet, list);
  return info == nullptr ? nullptr : &info->items;
}

/// The items of the call's list argument `index`; false when the list is unknown.
bool listItems(BuiltinCall& call, std::size_t index, std::vector<Item*>& out) {
  const FileInfo* sheet = sheetOf(call);
  std::string list;
  if (sheet == nullptr || !textArgument(call, index, list)) return false;
  return listArgumentItems(*sheet, call.table, list, out);
}

/// The text of a field argument; an integer 0 gives "" (meaning: no field).
bool fieldArgument(BuiltinCall& call, std::size_t index, std::string& out) {
  const Value& value = call.args[index];
  if (value.isInteger() && value.integer() == 0) {
    out.clear();
    return true;
  }
  return textArgument(call, index, out);
}

/// The items of a list that the (value, comparison, field) arguments select; see countitems.
bool selectItems(BuiltinCall& call, std::vector<Item*>& selected) {
  std::vector<Item*> items;
  std::string field;
  if (!listItems(call, 0, items) || !fieldArgument(call, 3, field)) return false;
  const Value& value = call.args[1];
  const std::int32_t comparison = integerArgument(call, 2);
  for (Item* item : items) {
    if (field.empty()) {
      selected.push_back(item);
      continue;
    }
    Value fieldValue;
    if (!itemValueByName(*item, field, fieldValue)) continue;
    const int order = compareValues(fieldValue, value);
    const bool pass = comparison < 0 ? order < 0 : comparison == 0 ? order == 0 : order > 0;
    if (pass) selected.push_back(item);
  }
  return true;
}

/// The aggregate test "@option:value" or "@option=value" (the text behind the "@").
bool aggregateTest(const Item& item, SymbolTable& table, std::string_view test) {
  if (item.owner == nullptr) {
    showError("Unable to make aggregate comparison: item has no file information.");
    return false;
  }
  const std::size_t mark = test.find_first_of(":=");
  const std::string name(trim(test.substr(0, mark)));
  bool hasValue = mark != std::string_view::npos;
  Value wanted;
  if (hasValue) {
    const std::string valueText = trim(test.substr(mark + 1));
    if (parseExp(&table, valueText, wanted) != 0) wanted = Value(valueText);
  }
  for (const auto& option : item.options) {
    if (!equalsIgnoringCase(option->name, name)) continue;
    if (!hasValue) return true;
    Value value;
    if (engine().services.optionRules.optionString != nullptr) {
      std::string text;
      if (!engine().services.optionRules.optionString(item, *option, text, value)) {
        showError(strprintf("Unable to get option value: %s", option->name));
        continue;
      }
    } else {
      value = optionValue(*option);
    }
    if (compareValues(value, wanted) == 0) return true;
  }
  return false;
}

}  // namespace

Item* callItem(const BuiltinCall& call) {
  return call.item != nullptr ? call.item : currentContextItem();
}

const FileInfo* callSheet(const BuiltinCall& call) {
  const Item* item = callItem(call);
  if (item != nullptr && item->owner != nullptr) return item->owner;
  return call.table.owner;
}

Item* findListItem(const FileInfo& sheet, std::string_view list, const Value& key) {
  const ItemChain* chain = namedChain(sheet, list);
  if (chain == nullptr) return nullptr;
  bool numeric = key.isNumber();
  if (key.isString()) {
    const std::string trimmedKey = trim(key.text());
    numeric =
        !trimmedKey.empty() && trimmedKey.find_first_not_of("0123456789") == std::string::npos;
  }
  std::vector<Item*> entries;
  if (numeric) {
    collectEntries(*chain, false, entries);
    const std::int32_t n = integerOf(key);
    if (n < 1 || static_cast<std::size_t>(n) > entries.size()) return nullptr;
    return entries[static_cast<std::size_t>(n - 1)];
  }
  Value keyText = key;
  if (!forceString(keyText)) return nullptr;
  collectEntries(*chain, true, entries);
  for (Item* entry : entries) {
    if (equalsIgnoringCase(entry->name, keyText.text())) return entry;
  }
  return nullptr;
}

ListInfo* findListByPrefix(const FileInfo& sheet, std::string_view name) {
  for (ListInfo* list : sheet.allLists()) {
    if (startsWithIgnoringCase(std::string_view(list->name), name)) return list;
  }
  return nullptr;
}

bool compareItemvalue(const Item& item, SymbolTable& table, std::string_view text) {
  if (!text.empty() && text[0] == '@') return aggregateTest(item, table, text.substr(1));
  if (engine().services.optionRules.inCategory != nullptr)
    return engine().services.optionRules.inCategory(item, text);
  // Without the item rules: the item's category named in full, ignoring case.
  return equalsIgnoringCase(item.cat, trim(text));
}

bool listArgumentItems(const FileInfo& sheet, SymbolTable& table, std::string_view list,
                       std::vector<Item*>& out) {
  std::string_view name = list;
  std::string_view selector;
  bool hasSelector = false;
  if (const std::size_t colon = list.find(':'); colon != std::string_view::npos) {
    name = list.substr(0, colon);
    selector = list.substr(colon + 1);
    hasSelector = true;
  }
  const ItemChain* chain = namedChain(sheet, name);
  if (chain == nullptr) return false;
  std::vector<Item*> entries;
  collectEntries(*chain, false, entries);
  for (Item* item : entries) {
    if (!hasSelector || compareItemvalue(*item, table, selector)) out.push_back(item);
  }
  return true;
}

int builtinIteminfo(BuiltinCall& call) {
  std::string field;
  if (!hasArguments(call, 1) || !textArgument(call, 0, field)) return 0;
  const Item* item = itemOf(call);
  if (item != nullptr && engine().services.optionRules.expandOptionRefs != nullptr) {
    field = engine().services.optionRules.expandOptionRefs(*item, field);
  }
  fieldResult(call, item, field);
  return 0;
}

int builtinChilditeminfo(BuiltinCall& call) {
  std::string field;
  if (!hasArguments(call, 2) || !textArgument(call, 1, field)) return 0;
  const Item* item = itemOf(call);
  if (item == nullptr || item->children.empty()) return 0;
  std::int32_t n = integerArgument(call, 0);
  if (n < 2) n = 1;
  if (static_cast<std::size_t>(n) > item->children.size()) return 0;
  fieldResult(call, item->children[static_cast<std::size_t>(n - 1)].get(), field);
  return 0;
}

int builtinParentiteminfo(BuiltinCall& call) {
  std::string field;
  if (!hasArguments(call, 1) || !textArgument(call, 0, field)) return 0;
  const Item* item = itemOf(call);
  if (item == nullptr || item->autoParent == 0 || item->owner == nullptr) return 0;
  for (ListInfo* list : item->owner->allLists()) {
    std::vector<Item*> entries;
    collectEntries(list->items, true, entries);
    for (Item* candidate : entries) {
      if (candidate != item && candidate->autoID == item->autoParent) {
        fieldResult(call, candidate, field);
        return 0;
      }
    }
  }
  return 0;
}

int builtinListiteminfo(BuiltinCall& call) {
  std::string list;
  std::string field;
  if (!hasArguments(call, 3) || !textArgument(call, 0, list) || !textArgument(call, 2, field)) {
    return 0;
  }
  const FileInfo* sheet = sheetOf(call);
  if (sheet == nullptr) return 0;
  fieldResult(call, findListItem(*sheet, list, call.args[1]), field);
  return 0;
}

int builtinVariteminfo(BuiltinCall& call) {
  std::string variable;
  std::string field;
  if (!hasArguments(call, 2) || !textArgument(call, 0, variable) || !textArgument(call, 1, field)) {
    return 0;
  }
  const Symbol* symbol = call.table.find(variable);
  if (symbol == nullptr) return 0;
  fieldResult(call, symbol->ownerItem, field);
  return 0;
}

int builtinFinditemvalue(BuiltinCall& call) {
  std::vector<Item*> items;
  std::string mode;
  std::string field;
  if (!hasArguments(call, 3) || !listItems(call, 0, items) || !textArgument(call, 1, mode) ||
      !textArgument(call, 2, field)) {
    return 0;
  }
  const bool wantMax = equalsIgnoringCase(mode, "max");
  const bool wantMin = equalsIgnoringCase(mode, "min");
  bool haveBest = false;
  Value best;
  for (const Item* item : items) {
    Value value;
    if (!itemValueByName(*item, field, value)) continue;
    if (!haveBest) {
      best = std::move(value);
      haveBest = true;
      if (!wantMax && !wantMin) break;
      continue;
    }
    const int order = compareValues(value, best);
    if ((wantMax && order > 0) || (wantMin && order < 0)) best = std::move(value);
  }
  if (haveBest) call.result = std::move(best);
  return 0;
}

int builtinCountitems(BuiltinCall& call) {
  std::vector<Item*> selected;
  if (!hasArguments(call, 4) || !selectItems(call, selected)) return 0;
  call.result = Value(static_cast<std::int32_t>(selected.size()));
  return 0;
}

int builtinTotalitems(BuiltinCall& call) {
  call.result = Value(0.0);
  std::vector<Item*> selected;
  if (!hasArguments(call, 4) || !selectItems(call, selected)) return 0;
  double total = 0.0;
  for (const Item* item : selected) {
    Value cost;
    if (itemField(*item, nullptr, "cost", cost)) total += floatOf(cost);
  }
  call.result = Value(total);
  return 0;
}

int builtinTotalitemvalues(BuiltinCall& call) {
  call.result = Value(0.0);
  std::vector<Item*> items;
  std::string field;
  if (!hasArguments(call, 2) || !listItems(call, 0, items) || !textArgument(call, 1, field)) {
    return 0;
  }
  double total = 0.0;
  for (const Item* item : items) {
    Value value;
    if (itemValueByName(*item, field, value)) total += floatOf(value);
  }
  call.result = Value(total);
  return 0;
}

int builtinListentries(BuiltinCall& call) {
  std::vector<Item*> items;
  if (!hasArguments(call, 1) || !listItems(call, 0, items)) return 0;
  call.result = Value(static_cast<std::int32_t>(items.size()));
  return 0;
}

int builtinEval(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return 0;
  if (!call.args[0].isString()) {
    call.result = std::move(call.args[0]);
    return 0;
  }
  if (evalDepth >= kMaxEvalDepth) return fail(kExprTooComplicated);
  const std::string text = call.args[0].text();
  ++evalDepth;
  Value value;
  const int status = parseExp(&call.table, text, value);
  --evalDepth;
  if (status != 0) {
    const int code = lastErrorCode();
    return fail(code < 0 ? code : kExprInternal);
  }
  call.result = std::move(value);
  return 0;
}

}  // namespace zv
