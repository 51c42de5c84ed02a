#include "rules/value/defaults.h"

#include <algorithm>

#include "core/fileinfo.h"
#include "core/list_info.h"
#include "core/numbers.h"
#include "core/text.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "rules/value/categories.h"
#include "rules/value/cost.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

constexpr int kBadDefault = -36;

/// A value as literal text of an expression.
std::string literalOf(const Value& value) {
  if (value.isString()) return enclosed("\"", value.text(), "\"");
  return valueToText(value);
}

Item* findByAutoID(ItemChain& chain, std::int32_t id) {
  for (auto& item : chain) {
    if (item->autoID == id) return item.get();
    if (Item* inner = findByAutoID(item->children, id)) return inner;
  }
  return nullptr;
}

/// True when the candidate's chain of default sources leads to `item`.
bool defaultsFrom(Item& candidate, Item& item) {
  if (item.autoID == 0 || candidate.list == nullptr) return false;
  Item* step = &candidate;
  for (int guard = 0; guard < 1000 && step != nullptr && step->defaultSource != 0; ++guard) {
    if (step->defaultSource == item.autoID) return true;
    step = findByAutoID(step->list->items, step->defaultSource);
  }
  return false;
}

/// The items of a chain, sublists walked, that hold the category among their ";"-joined ones.
void collectCategory(ItemChain& chain, std::string_view category, Item& self,
                     std::vector<Item*>& out) {
  for (auto& candidate : chain) {
    if (candidate.get() != &self && candidate->levelSymbol != nullptr &&
        itemInCategory(*candidate, category)) {
      out.push_back(candidate.get());
    }
    collectCategory(candidate->children, category, self, out);
  }
}

struct Best {
  bool found = false;
  Value value;
  Item* source = nullptr;
};

void tryCandidate(Item& item, const std::string& base, std::string_view e, Symbol& variable,
                  Best& best) {
  Item* owner = variable.ownerItem;
  if (owner == &item) return;
  if (owner != nullptr && defaultsFrom(*owner, item)) return;
  Value bonus(0);
  if (!trim(e).empty() && evaluateForItem(&item, nullptr, e, bonus) != 0) return;
  Value current;
  getValue(variable, current);
  std::string text = replaceWord(base, "v", literalOf(bonus));
  text = replaceWord(text, "x", literalOf(current));
  Value result;
  if (evaluateForItem(owner != nullptr ? owner : &item, nullptr, text, result) != 0) return;
  if (!best.found || compareValues(result, best.value) > 0) {
    best.found = true;
    best.value = result;
    best.source = owner;
  }
}

void walkDependants(ItemChain& chain, Item& changed, const std::string& name) {
  for (auto& candidate : chain) {
    if (candidate.get() != &changed && candidate->useDefault() && !candidate->settling() &&
        isDefaultList(*candidate) && containsWord(candidate->defaultText, name)) {
      setItemLevel(*candidate, candidate->level, true, false);
    }
    walkDependants(candidate->children, changed, name);
  }
}

}  // namespace

bool isDefaultList(const Item& item) {
  return item.defBased() && item.defaultText.find(';') != std::string::npos;
}

int evaluateDefault(Item& item, Value& out) {
  if (!isDefaultList(item)) {
    if (evaluateForItem(&item, nullptr, item.defaultText, out) != 0) return lastErrorCode();
    return 0;
  }
  const std::string text = expandOptionRefs(item, item.defaultText, nullptr, true);
  const std::size_t first = text.find(';');
  if (first == std::string::npos) return kBadDefault;
  const std::string base = text.substr(0, first);
  SymbolTable* table = item.owner != nullptr ? item.owner->symbols.get() : nullptr;
  Best best;
  for (const std::string& piece : split(std::string_view(text).substr(first + 1), ';')) {
    const std::string source = trim(piece);
    if (source.empty()) continue;
    if (source.starts_with("cat:")) {
      std::string_view rest = std::string_view(source).substr(4);
      if (rest.empty()) return kBadDefault;
      const char quote = rest.front();
      const std::size_t close = rest.find(quote, 1);
      if (close == std::string_view::npos || item.list == nullptr) return kBadDefault;
      std::vector<Item*> candidates;
      collectCategory(item.list->items, rest.substr(1, close - 1), item, candidates);
      for (Item* candidate : candidates) {
        tryCandidate(item, base, rest.substr(close + 1), *candidate->levelSymbol, best);
      }
      continue;
    }
    const std::size_t comma = source.find(',');
    const std::string name = trim(std::string_view(source).substr(0, comma));
    const std::string_view e = comma == std::string::npos
                                   ? std::string_view()
                                   : std::string_view(source).substr(comma + 1);
    Symbol* variable = table != nullptr ? table->find(name) : nullptr;
    if (variable == nullptr || !variable->isVariable() || variable->undefined()) continue;
    tryCandidate(item, base, e, *variable, best);
  }
  item.defaultSource = 0;
  if (best.source != nullptr) {
    if (best.source->autoID == 0 && item.owner != nullptr) {
      best.source->autoID = item.owner->nextAutoID++;
      if (best.source->autoID == 0) best.source->autoID = item.owner->nextAutoID++;
    }
    item.defaultSource = best.source->autoID;
  }
  out = best.found ? best.value : Value(0);
  const double base_value = getBaseValue(item.levelSymbol);
  if (base_value != 0.0) {
    if (out.isInteger()) {
      out = Value(static_cast<std::int32_t>(out.integer() + static_cast<std::int32_t>(base_value)));
    } else {
      out = Value(valueToDouble(out) + base_value);
    }
  }
  return 0;
}

void propagateDefaults(Item& item) {
  if (item.list == nullptr || item.levelSymbol == nullptr) return;
  // The items whose dependants are being set: one met again ends the walk, so that items that
  // default from each other cannot recurse.
  static std::vector<const Item*> inWork;
  if (std::find(inWork.begin(), inWork.end(), &item) != inWork.end()) return;
  inWork.push_back(&item);
  walkDependants(item.list->items, item, item.levelSymbol->name);
  inWork.pop_back();
}

double computeChildCost(Item& sublist) {
  double sum = 0.0;
  for (const auto& child : sublist.children) {
    if (!child->inTotal()) continue;
    sum += child->totalCost;
    if (child->isSublist() && child->childCostsSeparate()) sum += child->childCost;
  }
  sublist.childCost = sum;
  if (sublist.isSublist() && !sublist.childCostsSeparate() && sublist.level.empty()) {
    sublist.cost = sum;
    computeMultipliers(sublist);
    sublist.totalCost = computeCost(sublist);
  }
  return sum;
}

}  // namespace zv
