#include "rules/selection/select_item.h"

#include <algorithm>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/value/categories.h"

namespace zv {

namespace {

/// The entry of that name anywhere in the chain (groups searched), or null.
const Item* findInChain(const ItemChain& chain, std::string_view name) {
  for (const auto& entry : chain) {
    if (equalsIgnoringCase(entry->name, name)) return entry.get();
    if (const Item* found = findInChain(entry->children, name)) return found;
  }
  return nullptr;
}

/// The group of that name anywhere in the chain, or null.
Item* findGroup(const ItemChain& chain, std::string_view name) {
  for (const auto& entry : chain) {
    if (!entry->isSublist()) continue;
    if (equalsIgnoringCase(entry->name, name)) return entry.get();
    if (Item* found = findGroup(entry->children, name)) return found;
  }
  return nullptr;
}

bool hasItems(const Category& category) {
  return !category.items.empty();
}

/// The most references followed one after another before a reference counts as missing.
constexpr int kMostReferenceHops = 16;

void showNotFound(std::string_view name) {
  showTitled(Severity::Warning, "Item Not Found",
             strprintf("This item is actually a reference to another item.\r\n\r\nThe "
                       "referenced item, %s, is not currently loaded or active.",
                       std::string(name)));
}

}  // namespace

bool ItemSelection::open(const SelectionRequest& request) {
  request_ = request;
  taken_ = 0;
  rows_.clear();
  if (request_.sheet == nullptr || request_.list == nullptr ||
      request_.sheet->gameSystem == nullptr) {
    showTitled(Severity::Error, "Internal Error",
               "The game system is not set in the GetItem dialog.");
    return false;
  }
  if (request_.rules == nullptr) request_.rules = &selectionRules();
  const std::string start = defaultCategory();
  const GameSystem& system = *request_.sheet->gameSystem;
  const bool hasData = equalsIgnoringCase(start, kAllCategories)
                           ? std::any_of(system.categories.begin(), system.categories.end(),
                                         [](const auto& category) { return hasItems(*category); })
                           : categoryOf(start) != nullptr;
  if (!hasData) {
    showTitled(Severity::Warning, "No Data Available",
               strprintf("No data sheets are are loaded with data for this category.\r\n\r\nLoad "
                         "data sheets for the %s game system with File | Load Data Sheet... or "
                         "open a character for this game system.",
                         request_.sheet->gameSystemName.str()));
    return false;
  }
  current_ = start;
  refresh();
  return true;
}

Category* ItemSelection::categoryOf(std::string_view name) const {
  Category* category = request_.sheet->gameSystem->findCategory(name);
  return category != nullptr && hasItems(*category) ? category : nullptr;
}

std::string ItemSelection::defaultCategory() const {
  if (request_.masterList) return std::string(kAllCategories);
  // The group the cursor stands in: an open group takes the new item as a member.
  const Item* group = request_.cursor;
  if (group != nullptr && !(group->isSublist() && group->open())) group = group->parent;
  for (; group != nullptr; group = group->parent) {
    if (!group->origCat.empty() && categoryOf(group->origCat) != nullptr) return group->origCat;
    for (const std::string& name : itemCategories(*group)) {
      if (Category* category = categoryOf(name)) return category->name.str();
    }
  }
  const std::string own = request_.list->catName.str();
  if (trim(own).empty()) return std::string(kAllCategories);
  return own;
}

std::vector<std::string> ItemSelection::categoryChoices() const {
  std::vector<std::string> choices{std::string(kAllCategories)};
  for (const auto& category : request_.sheet->gameSystem->categories) {
    if (hasItems(*category)) choices.push_back(category->name.str());
  }
  return choices;
}

bool ItemSelection::chooseCategory(std::string_view name) {
  if (request_.sheet == nullptr || request_.sheet->gameSystem == nullptr) return false;
  if (!equalsIgnoringCase(name, kAllCategories) && categoryOf(name) == nullptr) return false;
  current_ = equalsIgnoringCase(name, kAllCategories) ? std::string(kAllCategories)
                                                      : categoryOf(name)->name.str();
  refresh();
  return true;
}

bool ItemSelection::listHolds(std::string_view name) const {
  return findInChain(request_.list->items, name) != nullptr;
}

void ItemSelection::addRows(const ItemChain& chain, Category* category, int depth, int parentRow,
                            const Item*& previous) {
  for (const auto& entry : chain) {
    Item& item = *entry;
    if (!item.isSublist()) {
      if (request_.unique && listHolds(item.name)) continue;
      if (!passesRules(rules_, item, previous)) continue;
      previous = &item;
    }
    rows_.push_back(OfferedRow{&item, category, depth, parentRow});
    if (item.isSublist()) {
      addRows(item.children, category, depth + 1, static_cast<int>(rows_.size()) - 1, previous);
    }
  }
}

void ItemSelection::refresh() {
  rows_.clear();
  rules_ = activeRules(*request_.rules, *request_.sheet, current_);
  const Item* previous = nullptr;
  if (!equalsIgnoringCase(current_, kAllCategories)) {
    if (Category* category = categoryOf(current_)) {
      addRows(category->items, category, 0, -1, previous);
    }
    return;
  }
  // "(All)": the categories' trees one after another; when every category keeps its items by
  // name (sort mode 0), their top entries are merged by name.
  struct Top {
    Item* item;
    Category* category;
  };
  std::vector<Top> tops;
  bool byName = true;
  for (const auto& category : request_.sheet->gameSystem->categories) {
    if (category->sort != 0) byName = false;
    for (const auto& item : category->items)
      tops.push_back(Top{item.get(), category.get()});
  }
  if (byName) {
    std::stable_sort(tops.begin(), tops.end(), [](const Top& a, const Top& b) {
      return compareIgnoringCase(a.item->name, b.item->name) < 0;
    });
  }
  for (const Top& top : tops) {
    Item& item = *top.item;
    if (!item.isSublist()) {
      if (request_.unique && listHolds(item.name)) continue;
      if (!passesRules(rules_, item, previous)) continue;
      previous = &item;
    }
    rows_.push_back(OfferedRow{&item, top.category, 0, -1});
    if (item.isSublist()) {
      addRows(item.children, top.category, 1, static_cast<int>(rows_.size()) - 1, previous);
    }
  }
}

bool ItemSelection::checkItemsLeft() const {
  if (std::any_of(rows_.begin(), rows_.end(),
                  [](const OfferedRow& row) { return !row.item->isSublist(); })) {
    return true;
  }
  if (request_.unique) {
    showTitled(Severity::Message, "No More Items Available",
               "There are no more unique items available in this list satisfying the current "
               "rules.");
  } else {
    showTitled(Severity::Message, "No Items Available",
               "There are no more items available in this list satisfying the current rules.");
  }
  return false;
}

std::optional<std::size_t> ItemSelection::findNext(std::string_view text,
                                                   std::optional<std::size_t> from) const {
  if (text.empty() || rows_.empty()) return std::nullopt;
  const std::size_t count = rows_.size();
  const std::size_t start = from ? (*from + 1) % count : 0;
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t row = (start + step) % count;
    if (findIgnoringCase(rows_[row].item->name, text) != std::string::npos) return row;
  }
  return std::nullopt;
}

std::optional<std::size_t> ItemSelection::findPrevious(std::string_view text,
                                                       std::optional<std::size_t> from) const {
  if (text.empty() || rows_.empty()) return std::nullopt;
  const std::size_t count = rows_.size();
  const std::size_t start = from ? (*from + count - 1) % count : count - 1;
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t row = (start + count - step) % count;
    if (findIgnoringCase(rows_[row].item->name, text) != std::string::npos) return row;
  }
  return std::nullopt;
}

Item* ItemSelection::follow(std::size_t row) const {
  if (row >= rows_.size()) return nullptr;
  Item* item = rows_[row].item;
  Category* home = rows_[row].category;
  const GameSystem& system = *request_.sheet->gameSystem;
  for (int hop = 0; item->see(); ++hop) {
    const std::string target = trim(item->original);
    if (item->isSublist()) {
      if (target.empty()) {
        showError("There is no sublist specified for this reference.");
        return nullptr;
      }
      Item* group = findGroup(home->items, target);
      for (const auto& category : system.categories) {
        if (group == nullptr) group = findGroup(category->items, target);
      }
      if (group == nullptr || group == item || hop >= kMostReferenceHops) {
        showError(
            strprintf("The sublist referenced by this item, %s, does not exist and cannot "
                      "be opened.",
                      target));
        return nullptr;
      }
      item = group;
      continue;
    }
    Item* found = home->findItem(target);
    for (const auto& category : system.categories) {
      if (found == nullptr) {
        found = category->findItem(target);
        if (found != nullptr) home = category.get();
      }
    }
    if (found == nullptr || found == item || hop >= kMostReferenceHops ||
        !passesRules(rules_, *found, nullptr)) {
      showNotFound(target);
      return nullptr;
    }
    item = found;
  }
  return item;
}

std::string selectionRowFormat(const Item& item) {
  if (!item.sformat.empty()) return item.sformat;
  if (!item.format.empty()) return item.format;
  return item.isSublist() ? "%0ln" : "%0ln%-5rc";
}

}  // namespace zv
