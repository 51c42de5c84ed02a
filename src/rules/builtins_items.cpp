// The built-ins of level and cost, categories and requirements of the current item.

#include <cstdint>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/numbers.h"
#include "core/text.h"
#include "expr/builtin_call.h"
#include "expr/builtins_args.h"
#include "expr/builtins_items.h"
#include "expr/compiler.h"
#include "expr/symbols.h"
#include "rules/builtins.h"
#include "rules/value/categories.h"
#include "rules/value/defaults.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"
#include "rules/requirements/requirements.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

/// The text a level argument stands for in a formula: a number as the file form writes it, a
/// text as it is.
std::string levelText(const Value& level) {
  if (level.isString()) return level.text();
  return formatFloat(valueToDouble(level), false);
}

/// Evaluates a formula of the item with `x` put for the level (`checkForm` puts it in
/// parentheses), `&x` for the base of the level variable and `~x` for the level less the base.
int evaluateAtLevel(BuiltinCall& call, Item& item, const std::string& formula, bool checkForm) {
  const Value& level = call.args[0];
  const double base = getBaseValue(item.levelSymbol);
  const std::string x = levelText(level);
  std::string text = replaceWord(formula, "&x", formatFloat(base, false));
  text = replaceWord(text, "~x", formatFloat(valueToDouble(level) - base, false));
  text = replaceWord(text, "x", checkForm ? "(" + x + ")" : x);
  text = expandOptionRefs(item, text, nullptr, true);
  Value result;
  if (evaluateForItem(&item, nullptr, text, result) != 0) {
    const int code = lastErrorCode();
    return fail(code < 0 ? code : kExprInternal);
  }
  call.result = std::move(result);
  return 0;
}

/// The array that argument `index` refers to, or null.
Symbol* arrayArgument(const BuiltinCall& call, std::size_t index) {
  const Value& value = call.args[index];
  if (!value.isArrayRef()) return nullptr;
  Symbol* symbol = value.arraySymbol();
  return symbol != nullptr && symbol->isArray() ? symbol : nullptr;
}

void fillArray(Symbol& array, const std::vector<Value>& values) {
  clearArray(array);
  sizeArray(array, values.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    setArrayElement(array, i, values[i]);
}

}  // namespace

int builtinItemcostfunction(BuiltinCall& call) {
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr) return 0;
  if (item->formula.empty()) {
    call.result = Value(item->cost);
    return 0;
  }
  return evaluateAtLevel(call, *item, item->formula, false);
}

int builtinItemcheckexpression(BuiltinCall& call) {
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr) return 0;
  if (item->checkExp.empty()) {
    call.result = Value(std::int32_t{1});
    return 0;
  }
  return evaluateAtLevel(call, *item, item->checkExp, true);
}

int builtinEvaluatedefault(BuiltinCall& call) {
  Item* item = callItem(call);
  // An item without a default has nothing to evaluate: integer 0.
  if (item == nullptr || trim(item->defaultText).empty()) return 0;
  Value value;
  const int status = evaluateDefault(*item, value);
  if (status != 0) return fail(status);
  call.result = std::move(value);
  return 0;
}

int builtinIncategory(BuiltinCall& call) {
  std::string name;
  Item* item = callItem(call);
  if (!hasArguments(call, 1) || item == nullptr || !textArgument(call, 0, name)) return 0;
  call.result = Value(std::int32_t{compareItemvalue(*item, call.table, name) ? 1 : 0});
  return 0;
}

int builtinCategorybonus(BuiltinCall& call) {
  call.result = Value(0.0);
  std::string listName;
  std::string itemText;
  const FileInfo* sheet = callSheet(call);
  if (!hasArguments(call, 2) || sheet == nullptr || !textArgument(call, 0, listName) ||
      !textArgument(call, 1, itemText)) {
    return 0;
  }
  ListInfo* list = findListByPrefix(*sheet, listName);
  if (list == nullptr) return 0;
  // The item text names an item of the list, whose categories count; any other text is read as
  // categories itself.
  if (const Item* item = findListItem(*sheet, std::string(list->name), Value(itemText))) {
    call.result = Value(categoryBonusFor(*list, *item));
  } else {
    call.result = Value(categoryBonusFor(*list, std::string_view(itemText)));
  }
  return 0;
}

int builtinGetcategorylist(BuiltinCall& call) {
  const std::size_t count = call.args.size();
  if (count < 2 || count > 4) return fail(kExprStackUnderflow);
  std::vector<Symbol*> arrays;
  for (std::size_t i = 1; i < count; ++i) {
    Symbol* array = arrayArgument(call, i);
    if (array == nullptr) return fail(kExprBadIndexing);
    arrays.push_back(array);
  }
  std::string list;
  const FileInfo* sheet = callSheet(call);
  std::vector<Item*> items;
  if (sheet == nullptr || !textArgument(call, 0, list) ||
      !listArgumentItems(*sheet, call.table, list, items)) {
    return 0;
  }
  const std::vector<CategoryTotal> totals = categoryTotals(items);
  std::vector<Value> names;
  std::vector<Value> costs;
  std::vector<Value> counts;
  for (const CategoryTotal& total : totals) {
    names.emplace_back(total.category);
    costs.emplace_back(total.cost);
    counts.emplace_back(static_cast<std::int32_t>(total.count));
  }
  fillArray(*arrays[0], names);
  if (arrays.size() > 1) fillArray(*arrays[1], costs);
  if (arrays.size() > 2) fillArray(*arrays[2], counts);
  call.result = Value(static_cast<std::int32_t>(totals.size()));
  return 0;
}

int builtinCheckrequirements(BuiltinCall& call) {
  std::string listName;
  Item* item = callItem(call);
  if (!hasArguments(call, 3) || item == nullptr || item->owner == nullptr ||
      !textArgument(call, 0, listName)) {
    return 0;
  }
  FileInfo& sheet = *item->owner;
  ListInfo* list = findListByPrefix(sheet, listName);
  if (list == nullptr) return 0;
  PrereqMode mode;
  mode.excludedTest = integerArgument(call, 1) != 0;
  mode.adding = integerArgument(call, 2) != 0;
  call.result =
      Value(std::int32_t{prereqSatisfied(sheet, list, *item, mode, item->prereq) ? 1 : 0});
  return 0;
}

void registerRuleBuiltins() {
  registerBuiltin(25, builtinOptpresent);
  registerBuiltin(30, builtinOptvalue);
  registerBuiltin(32, builtinOpttextvalue);
  registerBuiltin(37, builtinListoptions);
  registerBuiltin(45, builtinIncategory);
  registerBuiltin(46, builtinCategorybonus);
  registerBuiltin(56, builtinEvaluatedefault);
  registerBuiltin(58, builtinOptcount);
  registerBuiltin(60, builtinGetcategorylist);
  registerBuiltin(62, builtinItemcostfunction);
  registerBuiltin(63, builtinItemcheckexpression);
  registerBuiltin(70, builtinCheckrequirements);
  registerBuiltin(71, builtinOptnumbervalue);
  registerBuiltin(73, builtinOptavailable);
}

}  // namespace zv
