#pragma once
// The category test: which categories an item belongs to and whether it belongs to one. The
// list selectors, incategory, defaults by category, requirements by category and automatic
// items all ask it.

#include <string>
#include <string_view>
#include <vector>

#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// The categories of an item: the words of its category text separated by ";", trimmed, with
/// empty words and words beginning "*" (markers, not categories) left out; in order, each once
/// (ignoring case).
std::vector<std::string> itemCategories(const Item& item);

/// True when the item belongs to one of the categories of `test` (a category name, or several
/// separated by ";"), ignoring case. False for an item without categories.
bool itemInCategory(const Item& item, std::string_view test);

/// Per category of some items: the categories found among them, in the order first met, with
/// the summed total cost and the number of items.
struct CategoryTotal {
  std::string category;
  double cost = 0.0;
  int count = 0;
};
std::vector<CategoryTotal> categoryTotals(const std::vector<Item*>& items);

/// The bonus total that the list keeps for a category (ignoring case); 0 when none.
double categoryBonus(const ListInfo& list, std::string_view category);

/// The sum of the list's category bonuses whose category the item belongs to.
double categoryBonusFor(const ListInfo& list, const Item& item);
/// The same for a category text (one category, or several separated by ";").
double categoryBonusFor(const ListInfo& list, std::string_view categories);

/// Adds `amount` to the list's bonus of the category (a new entry at the end when it has none)
/// and to the base of the level variable of every item of the list in that category (groups
/// descended), so that their levels change with it.
void addCategoryBonus(ListInfo& list, std::string_view category, double amount);

/// Gives an item that joins a list the bonuses the list holds for its categories, on the base of
/// its level variable.
void applyCategoryBonuses(const ListInfo& list, Item& item);

}  // namespace zv
