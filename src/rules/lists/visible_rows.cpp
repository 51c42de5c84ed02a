#include "rules/lists/visible_rows.h"

#include <algorithm>

namespace zv {

namespace {

void addChain(ItemChain& chain, std::vector<Item*>& rows) {
  for (auto& item : chain) {
    rows.push_back(item.get());
    if (item->isSublist() && item->open()) addChain(item->children, rows);
  }
}

}  // namespace

std::vector<Item*> visibleRows(ListInfo& list) {
  std::vector<Item*> rows;
  addChain(list.items, rows);
  return rows;
}

int rowOfItem(ListInfo& list, const Item* item) {
  const std::vector<Item*> rows = visibleRows(list);
  auto found = std::find(rows.begin(), rows.end(), item);
  return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

Item* itemAtRow(ListInfo& list, int row) {
  const std::vector<Item*> rows = visibleRows(list);
  if (row < 0 || static_cast<std::size_t>(row) >= rows.size()) return nullptr;
  return rows[static_cast<std::size_t>(row)];
}

}  // namespace zv
