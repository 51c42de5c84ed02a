#include "core/game_system.h"

#include <algorithm>

#include "core/game_systems.h"
#include "core/text.h"

namespace zv {

Item& Category::appendItem(std::unique_ptr<Item> item) {
  item->bindTo(nullptr, nullptr, nullptr, 0);
  item->position = static_cast<std::int32_t>(items.size());
  items.push_back(std::move(item));
  return *items.back();
}

namespace {

void collectItems(const ItemChain& chain, std::vector<Item*>& out) {
  for (const auto& item : chain) {
    out.push_back(item.get());
    if (item->isSublist()) collectItems(item->children, out);
  }
}

}  // namespace

void Category::rebuildIndex() {
  index.clear();
  collectItems(items, index);
  std::stable_sort(index.begin(), index.end(), [](const Item* a, const Item* b) {
    return compareIgnoringCase(a->name, b->name) < 0;
  });
}

Item* Category::findItem(std::string_view itemName) const {
  auto found = std::lower_bound(index.begin(), index.end(), itemName,
                                [](const Item* item, std::string_view name) {
                                  return compareIgnoringCase(item->name, name) < 0;
                                });
  if (found == index.end() || !equalsIgnoringCase((*found)->name, itemName)) return nullptr;
  return *found;
}

GameSystem::GameSystem(std::string_view systemName) : name(systemName) {
  master.gameSystem = this;
  master.gameSystemName = name;
}

Category* GameSystem::findCategory(std::string_view categoryName) const {
  FixedString<kCategoryNameCapacity> key(categoryName);
  for (const auto& category : categories) {
    if (equalsIgnoringCase(category->name, key)) return category.get();
  }
  return nullptr;
}

Category& GameSystem::findOrAddCategory(std::string_view categoryName) {
  if (Category* found = findCategory(categoryName)) return *found;
  categories.push_back(std::make_unique<Category>(categoryName));
  return *categories.back();
}

OpenDataSheet& GameSystem::addDataSheet(std::string_view sheetName) {
  OpenDataSheet& sheet = dataSheets.emplace_back();
  sheet.id = nextDataSheetId();
  sheet.name = sheetName;
  return sheet;
}

OpenDataSheet* GameSystem::findDataSheet(std::int32_t id) {
  for (auto& sheet : dataSheets) {
    if (sheet.id == id) return &sheet;
  }
  return nullptr;
}

}  // namespace zv
