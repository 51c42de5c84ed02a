#include "rules/auto/auto_items.h"

#include <algorithm>
#include <charconv>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/random.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "rules/auto/auto_run.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/edit.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_value.h"
#include "rules/value/tokens.h"

namespace zv {

namespace {

/// Appends `tail` to `text` behind a ";" (nothing for an empty tail).
void appendPart(std::string& text, const std::string& tail) {
  if (tail.empty()) return;
  if (!text.empty()) text += ';';
  text += tail;
}

Option* ownOption(Item& item, std::string_view name) {
  for (auto& option : item.options) {
    if (equalsIgnoringCase(option->name, name) ||
        (!option->alias.empty() && equalsIgnoringCase(option->alias, name))) {
      return option.get();
    }
  }
  return nullptr;
}

const Option* treeOption(const OptionTree& level, std::string_view name) {
  for (const OptionTreeEntry& entry : level) {
    if (entry.option &&
        (equalsIgnoringCase(entry.option->name, name) ||
         (!entry.option->alias.empty() && equalsIgnoringCase(entry.option->alias, name)))) {
      return entry.option.get();
    }
    if (const Option* found = treeOption(entry.entries, name)) return found;
  }
  return nullptr;
}

/// A number written in the option value language's choice forms becomes a choice: in a count
/// list "?:n;..." it picks entry n, in a toggle "?+" it switches it on (anything but 0) or off.
std::string asChoice(const std::string& present, const std::string& value) {
  if (present.starts_with("?:")) {
    const std::size_t semicolon = present.find(';');
    if (semicolon == std::string::npos) return value;
    return "?:" + trim(value) + present.substr(semicolon);
  }
  if (present.starts_with("?+") && present.size() >= 3) {
    const std::size_t semicolon = present.find(';');
    const std::string text = semicolon == std::string::npos ? "" : present.substr(semicolon + 1);
    return strprintf("?+%c;%s", trim(value) == "0" ? '0' : '1', text);
  }
  return value;
}

double numberIn(std::string_view text) {
  return valueToDouble(Value(std::string(text)));
}

}  // namespace

std::vector<AutoElement> splitAutoItems(std::string_view text) {
  std::vector<AutoElement> elements;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t semicolon = text.find(';', at);
    const std::size_t end = semicolon == std::string_view::npos ? text.size() : semicolon;
    std::string piece = trim(text.substr(at, end - at));
    at = end + 1;
    if (piece.empty()) continue;
    AutoElement element;
    element.terminated = semicolon != std::string_view::npos;
    element.text = piece;
    if (piece[0] == '?') {
      element.directive = true;
      const std::size_t colon = piece.find(':');
      element.name = trim(std::string_view(piece).substr(
          1, colon == std::string::npos ? std::string::npos : colon - 1));
      if (colon != std::string::npos) {
        element.hasArgument = true;
        element.argument = trim(std::string_view(piece).substr(colon + 1));
      }
    } else {
      element.name = piece;
    }
    elements.push_back(std::move(element));
  }
  return elements;
}

AutoItemRef parseAutoItemRef(std::string_view text) {
  AutoItemRef ref;
  const std::size_t bracket = text.find('[');
  const std::size_t equals = text.find('=');
  const std::size_t stop = std::min(bracket, equals);
  const std::size_t colon = text.find(':');
  if (colon != std::string_view::npos && colon < stop) {
    ref.hasCategory = true;
    ref.category = trim(text.substr(0, colon));
    text.remove_prefix(colon + 1);
  }
  std::size_t nameEnd = std::min(text.find('['), text.find('='));
  ref.name = trim(text.substr(0, nameEnd));
  if (nameEnd == std::string_view::npos) return ref;
  std::string_view rest = text.substr(nameEnd);
  if (rest[0] == '[') {
    const std::size_t close = rest.find(']');
    ref.hasDisplayName = true;
    ref.displayName =
        trim(rest.substr(1, close == std::string_view::npos ? rest.size() - 1 : close - 1));
    rest = close == std::string_view::npos ? std::string_view() : rest.substr(close + 1);
    const std::size_t levelAt = rest.find('=');
    if (levelAt == std::string_view::npos) return ref;
    rest = rest.substr(levelAt);
  }
  ref.hasLevel = true;
  ref.level = trim(rest.substr(1));
  return ref;
}

namespace {

/// Reads a count "n" at the start of `text`; false when no digit stands there.
bool readCount(std::string_view& text, int& out) {
  std::size_t digits = 0;
  while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9')
    ++digits;
  if (digits == 0) return false;
  long value = 0;
  std::from_chars(text.data(), text.data() + std::min<std::size_t>(digits, 9), value);
  out = static_cast<int>(value);
  text.remove_prefix(digits);
  return true;
}

}  // namespace

std::optional<ChooseArgument> parseChooseArgument(std::string_view argument, std::string& error) {
  ChooseArgument choice;
  const std::size_t comma = argument.find(',');
  choice.title = trim(argument.substr(0, comma));
  if (comma == std::string_view::npos || choice.title.empty()) {
    error = "Title missing after ?choose.";
    return std::nullopt;
  }
  std::string_view rest = argument.substr(comma + 1);
  while (!rest.empty() && rest.front() == ' ')
    rest.remove_prefix(1);
  int minimum = 0;
  if (readCount(rest, minimum)) {
    int maximum = minimum;
    if (!rest.empty() && rest.front() == '-') {
      rest.remove_prefix(1);
      if (!readCount(rest, maximum)) maximum = 0;
    }
    while (!rest.empty() && rest.front() == ' ')
      rest.remove_prefix(1);
    if (rest.empty() || rest.front() != ',') {
      error = "Missing comma after item count in ?choose.";
      return std::nullopt;
    }
    rest.remove_prefix(1);
    choice.minimum = minimum;
    choice.maximum = maximum;
  }
  for (const std::string& piece : split(rest, ',')) {
    if (trim(piece).empty()) continue;
    choice.elements.push_back(parseAutoItemRef(piece));
  }
  return choice;
}

std::string chooseCountText(int minimum, int maximum) {
  std::string count;
  if (minimum == 0 && maximum == 0) {
    count = "Choose any number of items, or none. ";
  } else if (minimum == maximum) {
    count = strprintf("Choose %d item%s. ", minimum, minimum == 1 ? "" : "s");
  } else if (minimum == 0) {
    count = strprintf("Choose up to %d item%s. ", maximum, maximum == 1 ? "" : "s");
  } else if (maximum == 0) {
    count = strprintf("Choose at least %d item%s. ", minimum, minimum == 1 ? "" : "s");
  } else {
    count = strprintf("Choose from %d to %d items. ", minimum, maximum);
  }
  return strprintf("%sClick an item in the list to choose it.", count);
}

bool autoLoadDataSheet(FileInfo& sheet, std::string_view name) {
  const auto& load = engine().services.loadDataSheet;
  return !load || load(sheet, name);
}

bool autoSelectionAllows(FileInfo& sheet, const Item& master) {
  const auto& offerable = engine().services.offerable;
  return !offerable || offerable(sheet, master);
}

bool applyPendingOption(FileInfo& sheet, Item& item, const PendingOption& pending, bool raising) {
  Option* option = pending.dup ? nullptr : ownOption(item, pending.name);
  if (option == nullptr) {
    const Option* master =
        sheet.gameSystem != nullptr ? treeOption(sheet.gameSystem->options, pending.name) : nullptr;
    if (master == nullptr) {
      showTitled(
          Severity::Error, "Cannot Find Option",
          strprintf("Cannot find option %s for automatic item %s.", pending.name, item.name));
      return false;
    }
    item.options.push_back(std::make_unique<Option>(*master));
    option = item.options.back().get();
    if (!equalsIgnoringCase(option->name, pending.name)) option->name = pending.name;
  }
  if (!pending.qualifier.empty()) option->qualifier = pending.qualifier;
  if (!pending.value.empty()) {
    std::string value = pending.value;
    if (!pending.isValue) {
      Value result;
      if (evaluateForItem(&item, option, pending.value, result) != 0) {
        showError(strprintf("Bad expression in ?opt:%s=%s.", pending.name, pending.value));
        return false;
      }
      value = asChoice(option->value, valueToText(result));
    }
    if (!raising ||
        numberIn(value.starts_with("?:") ? value.substr(2) : value) >=
            numberIn(option->value.starts_with("?:") ? option->value.substr(2) : option->value)) {
      option->value = value;
    }
  }
  // An option that isn't charged stands as an adjustment: present for expressions and displays,
  // with no effect on the cost.
  if (pending.noCharge) option->kind = kOptionAdjustment;
  return true;
}

AutoRun::AutoRun(FileInfo& sheetInfo, ListInfo& listInfo, Item& parentItem, Item* containerItem,
                 AddChain& addChain)
    : sheet(sheetInfo),
      list(listInfo),
      parent(parentItem),
      container(containerItem),
      chain(addChain) {
  clearState();
}

void AutoRun::clearState() {
  std::vector<AutoState::IfFrame> nesting = std::move(state.ifStack);
  const bool active = state.active;
  std::vector<Item*> open = std::move(state.sublistStack);
  Item* lastAdded = state.lastAdded;
  const int added = state.addedCount;
  state = AutoState();
  state.ifStack = std::move(nesting);
  state.active = active;
  state.sublistStack = std::move(open);
  state.lastAdded = lastAdded;
  state.addedCount = added;
  state.parent = &parent;
  state.charge = parent.autoChargeCost();
}

int AutoRun::run(std::string_view text, bool& cancelled) {
  cancelled = false;
  for (const AutoElement& element : splitAutoItems(text)) {
    AutoStep step = AutoStep::Go;
    if (element.directive) {
      step = directive(element);
    } else if (state.active) {
      step = reference(element.text);
      state.allowDuplicate = false;
    }
    if (step == AutoStep::Cancel) {
      cancelled = true;
      return state.addedCount;
    }
    if (step == AutoStep::Fail) return -1;
  }
  return state.addedCount;
}

std::string AutoRun::defaultCategoryName() const {
  if (!state.sourceCategory.empty()) return state.sourceCategory;
  if (!parent.origCat.empty()) return parent.origCat;
  if (parent.list != nullptr && !parent.list->catName.empty()) return parent.list->catName.str();
  return state.targetList != nullptr ? state.targetList->catName.str() : list.catName.str();
}

Category* AutoRun::category(std::string_view name) const {
  return name.empty() ? nullptr : categoryFind(sheet, name);
}

Item* AutoRun::findMaster(std::string_view categoryName, std::string_view name) const {
  Category* found = category(categoryName);
  return found != nullptr ? found->findItem(name) : nullptr;
}

ListInfo& AutoRun::destinationList() {
  if (!state.sublistStack.empty() && state.sublistStack.back()->list != nullptr) {
    return *state.sublistStack.back()->list;
  }
  return state.targetList != nullptr ? *state.targetList : list;
}

std::string AutoRun::parentLevel() const {
  return parent.value.isString() ? enclosed("\"", parent.value.text(), "\"")
                                 : valueToText(parent.value);
}

bool AutoRun::evaluate(std::string_view text, Value& out) {
  const std::string expression = replaceWord(text, "x", enclosed("(", parentLevel(), ")"));
  if (!sheet.symbols) return parseExp(nullptr, expression, out) == 0;
  // "@name" reads the parent's fields.
  ItemContextScope fields(&sheet, *sheet.symbols);
  if (parseExpInContext(sheet.symbols.get(), &parent, nullptr, expression, out) != 0) {
    reportExpressionError(expression);
    return false;
  }
  return true;
}

namespace {

void collectMembers(const Item& group, std::vector<const Item*>& pool) {
  for (const auto& child : group.children) {
    if (child->isSublist()) {
      collectMembers(*child, pool);
    } else {
      pool.push_back(child.get());
    }
  }
}

}  // namespace

AutoStep AutoRun::reference(std::string_view text) {
  const AutoItemRef ref = parseAutoItemRef(text);
  const std::string categoryName = ref.hasCategory ? ref.category : defaultCategoryName();
  if (!state.randomMode) {
    const Item* master = findMaster(categoryName, ref.name);
    if (master == nullptr && !state.defaultItem.empty()) {
      const AutoItemRef fallback = parseAutoItemRef(state.defaultItem);
      master = findMaster(fallback.hasCategory ? fallback.category : categoryName, fallback.name);
    }
    return addAutoItem(master, ref, categoryName);
  }
  const int draws = std::max(state.randomCount, 1);
  state.randomMode = false;
  state.randomCount = 0;
  // The pool: the members (not groups) of the sublist of that name, or of the whole category.
  std::vector<const Item*> pool;
  if (Category* found = category(categoryName)) {
    const Item* sublist = found->findItem(ref.name);
    if (sublist != nullptr && sublist->isSublist()) {
      collectMembers(*sublist, pool);
    } else if (equalsIgnoringCase(found->name.str(), ref.name)) {
      for (const Item* item : found->index)
        if (!item->isSublist()) pool.push_back(item);
    }
  }
  if (pool.empty()) {
    showError(strprintf("Unable to find sublist '%s' for automatic items", ref.name));
    return AutoStep::Fail;
  }
  for (int draw = 0; draw < draws; ++draw) {
    const Item* drawn = pool[randomBelow(static_cast<std::uint32_t>(pool.size()))];
    AutoItemRef one = ref;
    one.hasDisplayName = false;
    const AutoStep step = addAutoItem(drawn, one, categoryName);
    if (step != AutoStep::Go) return step;
  }
  return AutoStep::Go;
}

AutoStep AutoRun::addAutoItem(const Item* master, const AutoItemRef& ref,
                              std::string_view categoryName) {
  std::unique_ptr<Item> copy;
  if (master != nullptr) {
    copy = master->clone();
    copy->autoID = 0;
    copy->autoParent = 0;
    copy->setOpen(false);
    if (!equalsIgnoringCase(categoryName, destinationList().catName.str())) {
      copy->origCat = std::string(categoryName);
    }
  } else {
    copy = std::make_unique<Item>(ItemKind::Item, ref.name);
    if (ref.hasCategory) copy->cat = ref.category;
  }
  if (ref.hasDisplayName && !ref.displayName.empty()) {
    if (copy->original.empty()) copy->original = copy->name;
    copy->name = ref.displayName;
  }
  if (ref.hasLevel) copy->level = replaceWord(ref.level, "x", parentLevel());

  ListInfo& destination = destinationList();
  if (isRecursiveAdd(chain, destination, copy->name)) return AutoStep::Fail;
  if (!state.allowDuplicate && !parent.noAutoDup() && !copy->noAutoDup()) {
    if (Item* existing = findItemInSublists(destination, copy->name)) {
      return raise(*existing, *copy);
    }
  }
  return applyAutoItem(std::move(copy));
}

AutoStep AutoRun::raise(Item& existing, Item& copy) {
  ChangeBatch batch(sheet);
  Value wanted;
  if (!copy.level.empty() && evaluateForItem(&existing, nullptr, copy.level, wanted) == 0 &&
      valueToDouble(wanted) > existing.levelValue) {
    if (!setItemLevel(existing, copy.level, true, false)) return AutoStep::Fail;
  }
  for (const PendingOption& pending : state.options) {
    if (!applyPendingOption(sheet, existing, pending, true)) return AutoStep::Fail;
  }
  computeMultipliers(existing);
  existing.totalCost = computeCost(existing);
  updateTotals(existing);
  batch.noteValueChange(existing);
  state.lastAdded = &existing;
  return AutoStep::Go;
}

AutoStep AutoRun::applyAutoItem(std::unique_ptr<Item> copy) {
  if (!state.charge) copy->setInTotal(false);
  if (state.sublistStack.empty() && !parent.dontMarkAuto()) copy->setAutoAdded(true);
  if (state.useDefault && !copy->defaultText.empty()) copy->setUseDefault(true);
  appendPart(copy->adj, state.adjustment);
  appendPart(copy->cat, state.categoryToAdd);
  for (const PendingOption& pending : state.options) {
    if (!applyPendingOption(sheet, *copy, pending, false)) return AutoStep::Fail;
  }
  for (const PendingItemRef& ref : state.itemRefs) {
    Option* option = ownOption(*copy, ref.option);
    if (option == nullptr) {
      showError(strprintf("Cannot find itemref option %s for automatic item", ref.option));
      return AutoStep::Fail;
    }
    option->relatedItem = ref.reference;
  }
  copy->autoParent = autoIDFor(sheet, parent);
  if (state.noRequirements) copy->setNoPrereq(true);

  ListInfo& destination = destinationList();
  const Placement where = Placement::appendTo(
      !state.sublistStack.empty() ? state.sublistStack.back()
                                  : (state.targetList != nullptr ? nullptr : container));
  AddResult added = addItem(sheet, destination, std::move(copy), where, chain, true);
  if (added.status == AddStatus::Cancelled) return AutoStep::Cancel;
  if (added.status == AddStatus::Failed || added.item == nullptr) return AutoStep::Fail;
  Item& item = *added.item;
  ++state.addedCount;
  state.lastAdded = &item;

  if (item.editDlg() != 6 && !item.prereq.empty() && !state.noRequirements) {
    if (std::optional<BadValue> unmet = checkRequirementsOf(sheet, item, state.checkRequirements)) {
      if (!passBadValue(*unmet)) {
        DeleteOptions options;
        deleteElement(sheet, destination, item, options);
        --state.addedCount;
        state.lastAdded = nullptr;
      }
    }
  }
  return AutoStep::Go;
}

int runAutoItems(FileInfo& sheet, ListInfo& list, Item& parent, Item* container,
                 std::string_view text, AddChain& chain, bool& cancelled) {
  AutoRun run(sheet, list, parent, container, chain);
  return run.run(text, cancelled);
}

}  // namespace zv
