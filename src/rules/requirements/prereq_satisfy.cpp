#include "rules/requirements/prereq_satisfy.h"

#include "core/game_system.h"
#include "core/game_systems.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_items.h"
#include "expr/compiler.h"
#include "expr/symbols.h"
#include "rules/value/categories.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/edit.h"
#include "rules/value/level.h"
#include "rules/value/option_edit.h"

namespace zv {

namespace {

constexpr std::int32_t kEditTextField = 31;

/// The entry of that name anywhere in the chain (groups searched), or null.
Item* findInChain(const ItemChain& chain, std::string_view name) {
  for (const auto& entry : chain) {
    if (equalsIgnoringCase(entry->name, name)) return entry.get();
    if (Item* found = findInChain(entry->children, name)) return found;
  }
  return nullptr;
}

bool onChain(const SatisfyLink* link, std::string_view name, const ListInfo* list) {
  for (; link != nullptr; link = link->parent) {
    if (link->list == list && equalsIgnoringCase(link->name, name)) return true;
  }
  return false;
}

bool listIsFull(const ListInfo& list) {
  return list.maxItems > 0 && static_cast<std::int32_t>(list.items.size()) >= list.maxItems;
}

/// The list a requirement adds to: the one it names, or the item's own.
ListInfo* targetList(FileInfo& sheet, ListInfo* itemList, const Item& item, const Prereq& prereq) {
  if (prereq.list.empty()) return itemList != nullptr ? itemList : item.list;
  if (prereq.listFound != nullptr) return prereq.listFound;
  return findListByPrefix(sheet, prereq.list);
}

/// The master item that a list's category offers under that name, after the boxes of a missing
/// category or item.
Item* masterItemFor(FileInfo& sheet, const ListInfo& list, std::string_view name) {
  Category* category = categoryFind(sheet, list.catName);
  if (category == nullptr) {
    showError(strprintf("Category '%s' doesn't exist (specified for list '%s').",
                        list.catName.str(), list.name.str()));
    return nullptr;
  }
  Item* master = category->findItem(name);
  if (master == nullptr) {
    showError(
        strprintf("Item '%s' not found in category '%s'.", std::string(name), list.catName.str()));
  }
  return master;
}

/// Evaluates a copy's level text in the sheet's table for its displayed number.
void evaluateCopyLevel(FileInfo& sheet, Item& copy) {
  if (copy.level.empty() || !sheet.symbols) return;
  Value level;
  if (parseExpInContext(sheet.symbols.get(), &copy, nullptr, copy.level, level) != 0) return;
  copy.value = level;
  if (level.isNumber()) copy.levelValue = valueToDouble(level);
}

/// Gives a copy the level text `text` with the cost at that level; false after "Unable to
/// compute cost".
bool setCopyLevel(Item& copy, const std::string& text) {
  copy.level = text;
  copy.value = Value(text);
  const double level = valueToDouble(copy.value);
  if (!copy.formula.empty()) {
    double cost = 0.0;
    if (!costAtLevel(copy, level, cost)) {
      showError("Unable to compute cost");
      return false;
    }
    copy.cost = cost;
  }
  copy.levelValue = level;
  return true;
}

/// The first level at or above the copy's own that its check accepts.
void takeFirstAcceptableLevel(Item& copy) {
  if (copy.checkExp.empty()) return;
  std::string message;
  const std::string text = copy.level.empty() ? std::string("0") : copy.level;
  if (checkLevel(copy, text, message) == 1) return;
  const double start = valueToDouble(copy.value);
  const double level = nextAcceptableLevel(copy, start, 1);
  if (level != start) setCopyLevel(copy, formatFloat(level, false));
}

bool satisfyField(FileInfo& sheet, ListInfo* list, Prereq& prereq, Item& item) {
  DlgItem& field = *prereq.field;
  if (!testPrereq(sheet, list, item, prereq)) {
    const std::optional<std::string> value = satisfyingValue(prereq);
    if (!value) return false;
    if (field.kind == kEditTextField) field.text = *value;
    Symbol* symbol = field.symbol != nullptr
                         ? field.symbol
                         : (sheet.symbols ? sheet.symbols->find(field.varName) : nullptr);
    if (symbol != nullptr) {
      const int status = field.kind == kEditTextField
                             ? setVariableValue(sheet, *symbol, Value(*value))
                             : setVariableExpression(sheet, *symbol, *value);
      if (status != 0) return false;
    }
    setChanged(sheet, true);
  }
  prereq.satisfiedByUser = true;
  return true;
}

/// "item" or "item op value" on a list: the item there, changed if need be, or a new copy.
bool satisfyItem(SatisfyContext& context, ListInfo* itemList, Prereq& prereq, Item& item) {
  FileInfo& sheet = context.sheet;
  ListInfo* list = targetList(sheet, itemList, item, prereq);
  if (list == nullptr) {
    showError(strprintf("List '%s' doesn't exist -- can't add item.", prereq.list));
    return false;
  }
  const bool compared = prereq.kind == PrereqKind::ItemCompared;
  if (Item* existing = findInChain(list->items, prereq.name); existing != nullptr) {
    if (compared && !levelCompares(*existing, prereq)) {
      const std::optional<std::string> value = satisfyingValue(prereq);
      if (!value) return false;
      ChangeBatch batch(sheet);
      const bool assigned = setItemLevel(*existing, *value, true, false);
      batch.finish();
      if (!assigned) return false;
      setChanged(sheet, true);
    }
    prereq.satisfiedByUser = true;
    return true;
  }
  if (listIsFull(*list)) {
    showError(strprintf("List '%s' is full; cannot add '%s'", list->name.str(), prereq.name));
    return false;
  }
  if (onChain(context.chain, prereq.name, list)) {
    showTitled(Severity::Error, "Recursive Requirement",
               strprintf("Recursive item requirement for '%s'", prereq.name));
    return false;
  }
  Item* master = masterItemFor(sheet, *list, prereq.name);
  if (master == nullptr) return false;
  std::unique_ptr<Item> copy = master->clone();
  evaluateCopyLevel(sheet, *copy);

  // The copy's own requirements first, with the copy on the chain.
  const SatisfyLink link{copy->name, list, context.chain};
  if (!copy->prereq.empty() && !copy->noPrereq()) {
    PrereqContext parse{&sheet, list, copy.get(), true, false};
    if (std::optional<std::vector<Prereq>> own = parsePrereqs(parse, copy->prereq)) {
      SatisfyContext inner{sheet, context.place, context.rules, &link};
      satisfyPrereqs(inner, list, *copy, *own);
    }
  }
  if (!compared) {
    takeFirstAcceptableLevel(*copy);
  } else if (!levelCompares(*copy, prereq)) {
    const std::optional<std::string> value = satisfyingValue(prereq);
    if (!value || !setCopyLevel(*copy, *value)) return false;
  }
  if (context.place(sheet, *list, std::move(copy), nullptr) == nullptr) return false;
  setChanged(sheet, true);
  prereq.satisfiedByUser = true;
  return true;
}

/// The option of the game system's option tree with that name (or starting with it when
/// `prefix`), at any depth; null if none.
const Option* findMasterOption(const OptionTree& tree, std::string_view name, bool prefix) {
  for (const OptionTreeEntry& entry : tree) {
    if (entry.option != nullptr && (equalsIgnoringCase(entry.option->name, name) ||
                                    (prefix && startsWithIgnoringCase(entry.option->name, name)))) {
      return entry.option.get();
    }
    if (const Option* found = findMasterOption(entry.entries, name, prefix)) return found;
  }
  return nullptr;
}

bool satisfyOption(SatisfyContext& context, ListInfo* itemList, Prereq& prereq, Item& item) {
  FileInfo& sheet = context.sheet;
  ListInfo* list = targetList(sheet, itemList, item, prereq);
  Item* holder = list != nullptr ? findInChain(list->items, prereq.name) : nullptr;
  if (holder == nullptr) {
    Prereq exists = prereq;
    exists.kind = PrereqKind::ItemExists;
    exists.comparison = PrereqComparison::None;
    if (!satisfyItem(context, itemList, exists, item)) return false;
    holder = list != nullptr ? findInChain(list->items, prereq.name) : nullptr;
    if (holder == nullptr) return false;
  }
  const Option* master =
      sheet.gameSystem != nullptr
          ? findMasterOption(sheet.gameSystem->options, prereq.optionName, prereq.optionStarred)
          : nullptr;
  if (master == nullptr) {
    showTitled(Severity::Error, "Unknown Option",
               strprintf("Cannot find option %s in data sheet", prereq.optionName));
    return false;
  }
  Option option = *master;
  if (prereq.comparison != PrereqComparison::None) {
    const std::optional<std::string> value = satisfyingValue(prereq);
    if (!value) return false;
    option.value = *value;
  }
  if (addItemOption(sheet, *holder, option) != EditResult::Changed) return false;
  prereq.satisfiedByUser = true;
  return true;
}

/// The category whose items a count offers, and the item category they must hold ("" for any).
struct CountSource {
  std::string listCategory;
  std::string itemCategory;
};

/// Counts: the user picks items of the category until the requirement holds or the choice is
/// cancelled.
bool satisfyCount(SatisfyContext& context, ListInfo* itemList, Prereq& prereq, Item& item) {
  FileInfo& sheet = context.sheet;
  ListInfo* list = targetList(sheet, itemList, item, prereq);
  if (list == nullptr) {
    showError(strprintf("List '%s' doesn't exist -- can't add item.", prereq.list));
    return false;
  }
  Category* category = categoryFind(sheet, list->catName);
  if (category == nullptr) {
    showError(strprintf("Category '%s' doesn't exist (specified for list '%s').",
                        list->catName.str(), list->name.str()));
    return false;
  }
  const std::string shown =
      prereq.kind == PrereqKind::CategoryCount ? prereq.category : list->catName.str();
  std::optional<std::string> level;
  if (prereq.comparison != PrereqComparison::None) {
    level = satisfyingValue(prereq);
    if (!level) return false;
  }
  const std::string title =
      prereq.comparison == PrereqComparison::None
          ? shown
          : strprintf("%s %s %d", shown, std::string(comparisonText(prereq.comparison)),
                      static_cast<int>(valueToInteger(prereq.value)));
  while (!testPrereq(sheet, itemList, item, prereq)) {
    if (listIsFull(*list)) {
      showError(strprintf("List '%s' is full; cannot add any more", list->name.str()));
      return false;
    }
    std::vector<Item*> offered;
    const Item* previous = nullptr;
    for (Item* master : category->index) {
      if (master->isSublist() || findInChain(list->items, master->name) != nullptr) continue;
      if (prereq.kind == PrereqKind::CategoryCount && !itemInCategory(*master, prereq.category)) {
        continue;
      }
      if (context.rules != nullptr && !passesRules(*context.rules, *master, previous)) continue;
      previous = master;
      offered.push_back(master);
    }
    ChoiceRequest request;
    request.title = title;
    request.prompt = strprintf("%d needed", prereq.count);
    request.multiple = true;
    for (const Item* master : offered)
      request.choices.push_back(master->name);
    const std::vector<int> chosen = host().choose(request);
    if (chosen.empty()) return false;
    for (int index : chosen) {
      if (index < 0 || static_cast<std::size_t>(index) >= offered.size()) continue;
      if (listIsFull(*list)) break;
      std::unique_ptr<Item> copy = offered[static_cast<std::size_t>(index)]->clone();
      evaluateCopyLevel(sheet, *copy);
      if (level && !setCopyLevel(*copy, *level)) return false;
      if (context.place(sheet, *list, std::move(copy), nullptr) == nullptr) return false;
      setChanged(sheet, true);
    }
  }
  prereq.satisfiedByUser = true;
  return true;
}

}  // namespace

std::optional<std::string> satisfyingValue(const Prereq& prereq) {
  if (prereq.value.isNumber()) {
    double value = valueToDouble(prereq.value);
    if (prereq.comparison == PrereqComparison::Less) value -= 1;
    if (prereq.comparison == PrereqComparison::Greater) value += 1;
    return strprintf("%d", static_cast<int>(value));  // "%d" keeps the whole part
  }
  if (prereq.comparison != PrereqComparison::Equal) {
    showTitled(Severity::Error, "Incorrect Requirement",
               strprintf("Only equals allowed in requirements using string values: %s",
                         prereqText(prereq, nullptr)));
    return std::nullopt;
  }
  return valueToText(prereq.value);
}

bool insertPrereq(SatisfyContext& context, ListInfo* list, Prereq& prereq, Item& item) {
  if (prereq.negated) return false;  // nothing can be added to fulfil a NOT
  switch (prereq.kind) {
    case PrereqKind::ItemCompared:
      if (prereq.field != nullptr) return satisfyField(context.sheet, list, prereq, item);
      return satisfyItem(context, list, prereq, item);
    case PrereqKind::ItemExists:
      return satisfyItem(context, list, prereq, item);
    case PrereqKind::Option:
      return satisfyOption(context, list, prereq, item);
    case PrereqKind::ListCount:
    case PrereqKind::CategoryCount:
    case PrereqKind::CategoriesCount:
      return satisfyCount(context, list, prereq, item);
    case PrereqKind::Expression:
    case PrereqKind::Excluded:
    case PrereqKind::MessageOnly:
      return false;
  }
  return false;
}

int satisfyPrereqs(SatisfyContext& context, ListInfo* list, Item& item,
                   std::vector<Prereq>& prereqs) {
  int satisfied = 0;
  for (Prereq& prereq : prereqs) {
    if (testPrereq(context.sheet, list, item, prereq)) continue;
    if (insertPrereq(context, list, prereq, item)) ++satisfied;
  }
  return satisfied;
}

}  // namespace zv
