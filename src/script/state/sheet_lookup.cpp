#include "script/state/sheet_lookup.h"

#include "core/game_systems.h"
#include "core/text.h"
#include "rules/lists/list_ops.h"

namespace zv::script {

ListInfo* findListByPrefix(FileInfo& sheet, std::string_view name) {
  if (name.empty()) return nullptr;
  for (ListInfo* list : sheet.allLists()) {
    if (startsWithIgnoringCase(std::string_view(list->name), name)) return list;
  }
  return nullptr;
}

Category* dataListOf(FileInfo& sheet, const ListInfo& list) {
  return categoryFind(sheet, std::string_view(list.catName));
}

bool isPatternItem(const Item& item) {
  return item.name.find_first_of("*?") != std::string::npos;
}

namespace {

Item* findPattern(const ItemChain& chain, std::string_view name) {
  for (const auto& item : chain) {
    if (isPatternItem(*item) && wildcardMatch(item->name, name)) return item.get();
    if (Item* inner = findPattern(item->children, name)) return inner;
  }
  return nullptr;
}

}  // namespace

Item* findDataItem(const Category& category, std::string_view name) {
  if (Item* exact = category.findItem(name)) return exact;
  for (const auto& item : category.items) {
    if (equalsIgnoringCase(item->name, name)) return item.get();
  }
  return findPattern(category.items, name);
}

Item* findElement(ListInfo& list, std::string_view name) {
  return findItemInSublists(list, name);
}

std::size_t topLevelCount(const ListInfo& list) {
  return list.items.size();
}

}  // namespace zv::script
