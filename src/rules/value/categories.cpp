#include "rules/value/categories.h"

#include "core/fileinfo.h"
#include "core/text.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// Calls `visit` for every non-group item of a chain, descending into groups. The chain owns its
/// items, so they are handed out as changeable records.
template <typename Visit>
void forEachMember(const ItemChain& chain, Visit visit) {
  for (const auto& item : chain) {
    if (item->isSublist()) {
      forEachMember(item->children, visit);
    } else {
      visit(*item);
    }
  }
}

std::vector<std::string> categoryWords(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::size_t semicolon = text.find(';');
    std::string word = trim(text.substr(0, semicolon));
    text = semicolon == std::string_view::npos ? std::string_view() : text.substr(semicolon + 1);
    if (word.empty() || word[0] == '*') continue;
    bool seen = false;
    for (const std::string& known : words)
      seen = seen || equalsIgnoringCase(known, word);
    if (!seen) words.push_back(std::move(word));
  }
  return words;
}

void addToBase(Item& item, double amount) {
  if (item.levelSymbol == nullptr || item.owner == nullptr || !item.owner->symbols) return;
  setBaseValue(*item.owner->symbols, *item.levelSymbol, getBaseValue(item.levelSymbol) + amount);
}

}  // namespace

std::vector<std::string> itemCategories(const Item& item) {
  return categoryWords(item.cat);
}

bool itemInCategory(const Item& item, std::string_view test) {
  const std::vector<std::string> wanted = categoryWords(test);
  for (const std::string& category : itemCategories(item)) {
    for (const std::string& name : wanted) {
      if (equalsIgnoringCase(category, name)) return true;
    }
  }
  return false;
}

std::vector<CategoryTotal> categoryTotals(const std::vector<Item*>& items) {
  std::vector<CategoryTotal> totals;
  for (const Item* item : items) {
    for (const std::string& category : itemCategories(*item)) {
      CategoryTotal* entry = nullptr;
      for (CategoryTotal& total : totals) {
        if (equalsIgnoringCase(total.category, category)) entry = &total;
      }
      if (entry == nullptr) entry = &totals.emplace_back(CategoryTotal{category, 0.0, 0});
      entry->cost += item->totalCost;
      ++entry->count;
    }
  }
  return totals;
}

double categoryBonus(const ListInfo& list, std::string_view category) {
  for (const CategoryBonus& bonus : list.categoryBonuses) {
    if (equalsIgnoringCase(bonus.category, trim(category))) return bonus.total;
  }
  return 0.0;
}

double categoryBonusFor(const ListInfo& list, const Item& item) {
  double sum = 0.0;
  for (const CategoryBonus& bonus : list.categoryBonuses) {
    if (itemInCategory(item, bonus.category)) sum += bonus.total;
  }
  return sum;
}

double categoryBonusFor(const ListInfo& list, std::string_view categories) {
  const std::vector<std::string> wanted = categoryWords(categories);
  double sum = 0.0;
  for (const CategoryBonus& bonus : list.categoryBonuses) {
    for (const std::string& name : wanted) {
      if (equalsIgnoringCase(bonus.category, name)) {
        sum += bonus.total;
        break;
      }
    }
  }
  return sum;
}

void addCategoryBonus(ListInfo& list, std::string_view category, double amount) {
  const std::string name = trim(category);
  CategoryBonus* entry = nullptr;
  for (CategoryBonus& bonus : list.categoryBonuses) {
    if (equalsIgnoringCase(bonus.category, name)) entry = &bonus;
  }
  if (entry == nullptr) entry = &list.categoryBonuses.emplace_back(CategoryBonus{name, 0.0});
  entry->total += amount;
  forEachMember(list.items, [&](Item& member) {
    if (itemInCategory(member, name)) addToBase(member, amount);
  });
}

void applyCategoryBonuses(const ListInfo& list, Item& item) {
  const double bonus = categoryBonusFor(list, item);
  if (bonus != 0.0) addToBase(item, bonus);
}

}  // namespace zv
