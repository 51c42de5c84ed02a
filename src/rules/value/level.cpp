#include "rules/value/level.h"

#include <algorithm>
#include <cmath>

#include "core/engine_context.h"
#include "core/list_info.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/defaults.h"
#include "rules/value/dist_adj.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

constexpr std::string_view kDefaultPrefix = "_default_";

SymbolTable* tableOf(const Item& item) {
  return item.owner != nullptr ? item.owner->symbols.get() : nullptr;
}

/// `base`, or `base` with the first number behind it that no defined symbol holds.
std::string freeName(SymbolTable& table, const std::string& base) {
  Symbol* existing = table.findHere(base);
  if (existing == nullptr || existing->undefined()) return base;
  for (int n = 1;; ++n) {
    std::string name = strprintf("%s%d", base.c_str(), n);
    Symbol* taken = table.findHere(name);
    if (taken == nullptr || taken->undefined()) return name;
  }
}

void dropVariables(SymbolTable& table, Item& item) {
  if (item.costSymbol != nullptr) deleteSymbol(table, *item.costSymbol);
  if (item.levelSymbol != nullptr) deleteSymbol(table, *item.levelSymbol);
  item.costSymbol = nullptr;
  item.levelSymbol = nullptr;
}

double baseOf(const Item& item) {
  return getBaseValue(item.levelSymbol);
}

/// The cost function with the level tokens replaced.
std::string substituteLevel(std::string_view function, double level, double base) {
  std::string text = replaceWord(function, "&x", formatFloat(base, false));
  text = replaceWord(text, "~x", formatFloat(level - base, false));
  return replaceWord(text, "x", formatFloat(level, false));
}

bool evaluateNumber(Item& item, const std::string& text, double& out) {
  Value result;
  if (evaluateForItem(&item, nullptr, expandOptionRefs(item, text, nullptr, true), result) != 0) {
    return false;
  }
  out = valueToDouble(result);
  return true;
}

/// Zero or not, as a check reads a result: a real against 0.0, anything else as an integer.
bool passes(const Value& result) {
  if (result.isFloat()) return result.real() != 0.0;
  return integerOf(result) != 0;
}

struct SavedState {
  std::string level;
  Value value;
  double levelValue;
  double cost;
  double totalCost;
};

SavedState save(const Item& item) {
  return {item.level, item.value, item.levelValue, item.cost, item.totalCost};
}

void restore(Item& item, const SavedState& saved) {
  item.level = saved.level;
  item.value = saved.value;
  item.levelValue = saved.levelValue;
  item.cost = saved.cost;
  item.totalCost = saved.totalCost;
}

bool settleChain(ItemChain& chain, ListInfo& list) {
  renumberPositions(chain);
  for (auto& item : chain) {
    item->setSettling(true);
    const bool ok = setItemLevel(*item, item->level, false, false);
    item->setSettling(false);
    if (!ok) {
      showError(strprintf("Unable to set list item '%s' for list '%s'", item->name.c_str(),
                          list.name.c_str()));
      return false;
    }
    item->levelValue = valueToDouble(item->value);
    if (!settleChain(item->children, list)) return false;
    // A sublist adds up its members once they are settled, so that a sheet shows the same totals
    // on opening as after Recalculate.
    if (item->isSublist()) computeChildCost(*item);
  }
  return true;
}

}  // namespace

bool defineItemVariable(Item& item, std::string_view levelText) {
  std::string text = levelText.empty() ? std::string("0") : std::string(levelText);
  SymbolTable* table = tableOf(item);
  if (item.varName.empty() || table == nullptr) {
    Value result;
    if (evaluateForItem(&item, nullptr, text, result) != 0) {
      showError(strprintf("Illegal value: %s", text.c_str()));
      return false;
    }
    item.value = result;
  } else {
    const bool atDefault = item.useDefault() && !item.defaultText.empty();
    if (atDefault && isDefaultList(item)) {
      Value best;
      if (evaluateDefault(item, best) != 0) {
        showError(strprintf("Illegal value: %s", item.defaultText.c_str()));
        return false;
      }
      text = best.isString() ? enclosed("\"", best.text(), "\"") : valueToText(best);
    }
    if (item.levelSymbol != nullptr &&
        item.levelSymbol->name.starts_with(kDefaultPrefix) != atDefault) {
      dropVariables(*table, item);
    }
    if (item.levelSymbol != nullptr) {
      item.levelSymbol->changeCallback = onItemVariableChanged;
      item.levelSymbol->userData = &item;
      setOwnerItem(*item.levelSymbol, &item);
      if (setExpression(*table, *item.levelSymbol, text) != 0) {
        showError(strprintf("Illegal value: %s", text.c_str()));
        return false;
      }
    } else {
      const std::string base =
          atDefault ? std::string(kDefaultPrefix) + item.varName : item.varName;
      item.levelSymbol =
          defineVariable(*table, freeName(*table, base), text, onItemVariableChanged, &item, &item);
      if (item.levelSymbol == nullptr) {
        showError(strprintf("Illegal value: %s", text.c_str()));
        return false;
      }
    }
    getValue(*item.levelSymbol, item.value);
    if (atDefault) {
      if (!isDefaultList(item) && item.levelSymbol->hasBase() && item.value.isNumber()) {
        item.value = Value(valueToDouble(item.value) + baseOf(item));
      }
      if (!item.defFormula.empty()) {
        double cost = 0.0;
        item.cost = evaluateNumber(item, item.defFormula, cost) ? cost : 0.0;
      }
    } else if (!item.formula.empty()) {
      std::string function = replaceWord(item.formula, "x", item.levelSymbol->name);
      function = expandOptionRefs(item, function, nullptr, true);
      if (item.costSymbol != nullptr) {
        if (setExpression(*table, *item.costSymbol, function) != 0) {
          reportExpressionError(function);
          return false;
        }
      } else {
        item.costSymbol = defineVariable(*table, freeName(*table, enclosed("c_", item.varName, "")),
                                         function, onCostVariableChanged, &item, &item);
        if (item.costSymbol == nullptr) {
          reportExpressionError(function);
          return false;
        }
      }
      Value cost;
      getValue(*item.costSymbol, cost);
      if (!cost.isNumber()) {
        showError(strprintf("Illegal cost value: '%s'", valueToText(cost).c_str()));
        return false;
      }
      item.cost = valueToDouble(cost);
    }
  }
  item.levelValue = valueToDouble(item.value);
  computeMultipliers(item);
  item.totalCost = computeCost(item);
  item.setCalculated(true);
  return true;
}

bool setItemLevel(Item& item, std::string_view levelText, bool recompute, bool check) {
  std::string text(levelText);
  const SavedState old = save(item);
  if (check && !item.useDefault() && !item.checkExp.empty() && !text.empty()) {
    std::string message;
    if (checkLevel(item, text, message) != 1) {
      showError(levelRefusalText(item, text, message));
      return false;
    }
  }
  if (item.useDefault() && !item.defaultText.empty()) text = item.defaultText;
  const bool wasSettling = item.settling();
  item.setSettling(true);
  const bool ok = defineItemVariable(item, text);
  item.setSettling(wasSettling);
  if (!ok) {
    restore(item, old);
    return false;
  }
  item.level = std::string(levelText);
  if (item.totalCost != old.totalCost) {
    distAdj(item, kOptionAdjDistCost, -1, old.totalCost, item.totalCost);
  }
  if (item.levelValue != old.levelValue) {
    distAdj(item, kOptionAdjDistLevel, -1, old.levelValue, item.levelValue);
  }
  if (recompute) {
    const bool distributed = std::any_of(item.options.begin(), item.options.end(), [](auto& o) {
      return o->kind == kOptionAdjDistLevel || o->kind == kOptionAdjDistCost;
    });
    std::string message;
    if ((distributed || !item.adj.empty()) && !item.useDefault() &&
        checkLevel(item, item.level, message) == 0) {
      showError(levelRefusalText(item, item.level, message));
      if (item.levelValue != old.levelValue) {
        distAdj(item, kOptionAdjDistLevel, -1, item.levelValue, old.levelValue);
      }
      if (item.totalCost != old.totalCost) {
        distAdj(item, kOptionAdjDistCost, -1, item.totalCost, old.totalCost);
      }
      item.setSettling(true);
      defineItemVariable(item, old.level);
      item.setSettling(wasSettling);
      restore(item, old);
      updateTotals(item);
      return false;
    }
    updateTotals(item);
    propagateDefaults(item);
  }
  return true;
}

std::string levelRefusalText(Item& item, std::string_view levelText,
                             const std::string& optionText) {
  std::string text = item.checkMsg;
  if (text.empty() && item.list != nullptr) text = item.list->checkMsg;
  if (text.empty()) text = optionText;
  if (text.empty()) {
    return strprintf("%s: The value '%s' is not allowed.", item.name.c_str(),
                     std::string(levelText).c_str());
  }
  return replaceWord(text, "x", levelText);
}

int checkLevel(Item& item, std::string_view levelText, std::string& message) {
  message.clear();
  item.checkFailed = false;
  if (item.checkExp.empty()) return 1;
  const std::string level = enclosed("(", levelText, ")");
  std::string expression = replaceWord(item.checkExp, "x", level);
  expression = expandOptionRefs(item, expression, nullptr, true);
  Value result;
  if (evaluateForItem(&item, nullptr, expression, result) != 0) {
    reportExpressionError(expression);
    return -1;
  }
  if (!passes(result)) {
    item.checkFailed = true;
    return 0;
  }
  for (const EffectiveOption& entry : effectiveOptions(item)) {
    Option& option = *entry.option;
    if (option.checkExpression.empty()) continue;
    std::string_view check = option.checkExpression;
    Item* context = &item;
    if (check.starts_with("?!")) {
      check.remove_prefix(2);
      if (Item* related = findRelatedItem(item, option.relatedItem)) context = related;
    }
    const std::size_t semicolon = check.find(';');
    const std::string failure =
        semicolon == std::string_view::npos ? std::string() : trim(check.substr(semicolon + 1));
    std::optional<OptValue> value =
        getOptValue(entry.holder, option.kind, option.relatedItem, option.value);
    if (!value) {
      showError("Error getting option value for checkexp");
      return -1;
    }
    std::string test = replaceWord(check.substr(0, semicolon), "x", level);
    test = replaceWord(test, "v", value->value);
    test = expandOptionRefs(item, test, context, true);
    Value optionResult;
    if (evaluateForItem(context, &option, test, optionResult) != 0) {
      showError(strprintf("Bad check expression in option %s of item %s", option.name.c_str(),
                          item.name.c_str()));
      return -1;
    }
    if (!passes(optionResult)) {
      message = failure;
      item.checkFailed = true;
      return 0;
    }
  }
  return 1;
}

bool costAtLevel(Item& item, double level, double& cost) {
  const double base = baseOf(item);
  return evaluateNumber(item, substituteLevel(item.formula, level - base, base), cost);
}

bool findLevelForCost(Item& item, std::string& levelText) {
  if (item.formula.empty()) return true;
  const double target = item.cost;
  const int limit =
      item.owner != nullptr && item.owner->maxAttempts > 0 ? item.owner->maxAttempts : 200;
  const double start = valueToDouble(item.value);
  const double base = baseOf(item);
  if (!containsWord(item.formula, "&x") && !containsWord(item.formula, "~x") &&
      !containsWord(item.formula, "x")) {
    levelText = formatFloat(start, false);
    return true;
  }
  auto acceptable = [&](double level) {
    std::string unused;
    return checkLevel(item, formatFloat(level, false), unused) == 1;
  };
  double cost = 0.0;
  if (!evaluateNumber(item, substituteLevel(item.formula, start, base), cost)) {
    showError("Can't parse formula!");
    return false;
  }
  double direction = cost < target ? 1.0 : -1.0;
  double below = start;
  double above = start;
  double level = start;
  bool levelPasses = acceptable(start);
  int counter = 0;
  int pass = 0;
  double previous = start;
  for (;;) {
    if (cost == target && levelPasses) break;
    if (++counter > limit) {
      ++pass;
      if (pass == 1) {
        level = start;
        previous = start;
        direction = -direction;
        counter = 0;
      } else if (pass == 2) {
        level = target;
        previous = target;
        direction = 0.0;
        counter = limit;
      } else {
        if (below == above && !acceptable(below)) return true;
        showError(strprintf("Can't find level for %s at cost %s. Try %s or %s.", item.name.c_str(),
                            formatFloat(target).c_str(), formatFloat(below).c_str(),
                            formatFloat(above).c_str()));
        return false;
      }
    }
    level += direction;
    if (!evaluateNumber(item, substituteLevel(item.formula, level, base), cost)) {
      showError("Can't parse formula!");
      return false;
    }
    levelPasses = acceptable(level);
    if (!levelPasses) continue;
    if (cost == target) break;
    const bool crossed = (direction > 0 && cost > target) || (direction < 0 && cost < target);
    if (crossed) {
      if (pass == 0) {
        below = std::min(previous, level);
        above = std::max(previous, level);
      }
      counter = limit;
    }
    previous = level;
  }
  levelText = formatFloat(level, false);
  return true;
}

double nextAcceptableLevel(Item& item, double level, double step) {
  const int limit =
      item.owner != nullptr && item.owner->maxAttempts > 0 ? item.owner->maxAttempts : 50;
  double candidate = level;
  for (int attempt = 0; attempt < limit; ++attempt) {
    candidate += step;
    std::string unused;
    const int verdict = checkLevel(item, formatFloat(candidate, false), unused);
    if (verdict == 1) return candidate;
    if (verdict < 0) break;
  }
  return level;
}

bool settleSheetLevels(FileInfo& sheet) {
  const bool constCost = sheet.constCost();
  sheet.setConstCost(false);
  bool ok = true;
  for (ListInfo* list : sheet.allLists()) {
    if (!settleChain(list->items, *list)) {
      ok = false;
      break;
    }
    addUpList(*list);
  }
  sheet.setConstCost(constCost);
  return ok;
}

void applyItemOptions(FileInfo& /*sheet*/, Item& item) {
  computeMultipliers(item);
  item.totalCost = computeCost(item);
}

void onItemVariableChanged(Symbol& symbol, void* owner) {
  if (owner == nullptr) return;
  Item& item = *static_cast<Item*>(owner);
  item.value = symbol.value;
  item.levelValue = valueToDouble(item.value);
  if (ChangeBatch* batch = ChangeBatch::current()) batch->noteValueChange(item);
}

void onCostVariableChanged(Symbol& /*symbol*/, void* owner) {
  if (owner == nullptr) return;
  Item& item = *static_cast<Item*>(owner);
  if (isReading() || item.settling()) return;
  if (ChangeBatch* batch = ChangeBatch::current()) {
    batch->noteCostChange(item);
    return;
  }
  followCostVariable(item);
  if (engine().views.itemChanged) engine().views.itemChanged(item);
}

void followCostVariable(Item& item) {
  if (item.costSymbol == nullptr || item.settling()) return;
  FileInfo* sheet = item.owner;
  if (sheet != nullptr && sheet->constCost()) {
    if (!item.useDefault() && (!item.level.empty() || item.formula.empty())) {
      std::string level;
      if (findLevelForCost(item, level)) {
        setItemLevel(item, level, true, false);
        return;
      }
    }
  } else if (engine().preferences.checkReq && !item.level.empty() && !item.formula.empty()) {
    std::string message;
    if (checkLevel(item, item.level, message) == 0) {
      if (ChangeBatch* batch = ChangeBatch::current()) {
        batch->noteFailedCheck(item, levelRefusalText(item, valueToText(item.value), message));
      }
    }
  }
  const double oldCost = item.totalCost;
  item.cost = valueToDouble(item.costSymbol->value);
  computeMultipliers(item);
  item.totalCost = computeCost(item);
  if (item.totalCost != oldCost) updateTotals(item);
}

}  // namespace zv
