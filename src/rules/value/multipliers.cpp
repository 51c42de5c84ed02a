#include "rules/value/multipliers.h"

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/value.h"
#include "expr/expr_error.h"
#include "rules/value/cost.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

std::vector<EffectiveOption> effectiveOptions(Item& item) {
  std::vector<EffectiveOption> out;
  for (const auto& option : item.options)
    out.push_back({&item, option.get()});
  for (Item* parent = item.parent; parent != nullptr && parent->inheritOpts();
       parent = parent->parent) {
    for (const auto& option : parent->options) {
      if (!option->noInherit()) out.push_back({parent, option.get()});
    }
  }
  return out;
}

namespace {

/// The options being evaluated, across nested walks: an option met again ends the walk, so that
/// a computed value that reads its own item's attributes cannot loop.
std::vector<const Option*> optionsInWork;

class InWork {
 public:
  explicit InWork(const Option* option) { optionsInWork.push_back(option); }
  ~InWork() { optionsInWork.pop_back(); }
  InWork(const InWork&) = delete;
  InWork& operator=(const InWork&) = delete;
};

bool isInWork(const Option* option) {
  for (const Option* busy : optionsInWork) {
    if (busy == option) return true;
  }
  return false;
}

bool hasPassingParent(const Item& item) {
  return item.parent != nullptr && item.parent->inheritOpts();
}

/// The number an option stands for: its auxiliary expression with x replaced by the value, or
/// the value read by its kind. nullopt when the auxiliary expression fails.
std::optional<Value> optionNumber(Item& item, Option& option, const std::string& value) {
  if (!option.auxExpression.empty()) {
    const std::string expression = replaceWord(option.auxExpression, "x", value);
    Value result;
    if (evaluateForItem(&item, &option, expression, result) != 0) {
      reportExpressionError(expression);
      return std::nullopt;
    }
    return result;
  }
  return Value(value);
}

}  // namespace

MultiplierSums computeMultipliers(Item& item) {
  MultiplierSums sums;
  item.mult = 1.0;
  item.add = 0.0;
  item.aux = 0.0;
  if (item.isSublist() && item.inheritOpts() && item.owner != nullptr && item.owner->loaded() &&
      item.calculated()) {
    for (const auto& child : item.children) {
      computeMultipliers(*child);
      child->totalCost = computeCost(*child);
    }
    if (!item.setListCost()) return sums;
  }
  if (item.options.empty() && !hasPassingParent(item)) return sums;

  for (const EffectiveOption& entry : effectiveOptions(item)) {
    Option& option = *entry.option;
    if (isInWork(&option)) break;
    if (isToggledOff(option.value)) continue;
    InWork guard(&option);
    std::optional<OptValue> read =
        getOptValue(entry.holder, option.kind, option.relatedItem, option.value);
    if (!read) continue;
    std::optional<Value> number = optionNumber(item, option, read->value);
    if (!number) continue;
    const bool parsedFromText = option.auxExpression.empty();
    switch (option.kind) {
      case kOptionFraction: {
        double share =
            parsedFromText ? parseFraction(read->value).value_or(0.0) : valueToDouble(*number);
        if (share >= 0) {
          sums.fractionUp += share;
        } else {
          sums.fractionDown -= share;
        }
        break;
      }
      case kOptionMultiplier:
        sums.product *=
            parsedFromText ? parseMultiplier(read->value).value_or(1.0) : valueToDouble(*number);
        break;
      case kOptionAddition: {
        double amount =
            parsedFromText ? parseFraction(read->value).value_or(0.0) : valueToDouble(*number);
        sums.additions += amount;
        if (amount >= 0) {
          sums.positiveAdditions += amount;
        } else {
          sums.negativeAdditions += amount;
        }
        break;
      }
      case kOptionPercentage:
        sums.percent += valueToInteger(*number);
        break;
      case kOptionAuxCost: {
        Value aux = *number;
        if (parsedFromText) {
          std::optional<double> parsed = parseFraction(read->value);
          if (parsed) aux = Value(*parsed);
        }
        if (!aux.isNumber()) {
          showError("Bad value type");
          item.mult = 1.0;
          item.add = sums.additions;
          return sums;
        }
        sums.aux += valueToDouble(aux);
        item.aux += valueToDouble(aux);
        break;
      }
      default:
        break;
    }
  }

  double multiplier = 1.0;
  if (sums.percent != 0) multiplier *= (sums.percent + 100) / 100.0;
  if (sums.product != 1.0) multiplier *= sums.product;
  if (sums.fractionUp != 0.0) multiplier *= 1.0 + sums.fractionUp;
  if (sums.fractionDown != 0.0) multiplier /= 1.0 + sums.fractionDown;
  item.mult = multiplier;
  item.add = sums.additions;
  return sums;
}

}  // namespace zv
