#include "ui/list_rows.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/text.h"

namespace zv::ui {

void ListRows::fill(ListInfo& list) {
  rows_.clear();
  addChain(list.items);
}

void ListRows::addChain(ItemChain& chain) {
  for (auto& item : chain) {
    rows_.push_back(item.get());
    if (item->isSublist() && item->open()) addChain(item->children);
  }
}

int ListRows::rowOf(const Item* item) const {
  auto found = std::find(rows_.begin(), rows_.end(), item);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

bool ListRows::toggle(std::size_t row) {
  Item* sublist = at(row);
  if (sublist == nullptr || !sublist->isSublist()) return false;
  auto behind = rows_.begin() + static_cast<std::ptrdiff_t>(row) + 1;
  if (sublist->open()) {
    auto end = behind;
    while (end != rows_.end() && (*end)->depth > sublist->depth) {
      (*end)->setOpen(false);
      ++end;
    }
    rows_.erase(behind, end);
    sublist->setOpen(false);
  } else {
    std::vector<Item*> children;
    for (auto& child : sublist->children)
      children.push_back(child.get());
    rows_.insert(behind, children.begin(), children.end());
    sublist->setOpen(true);
  }
  return true;
}

namespace {

bool hasLevel(const Item& item) {
  return !item.level.empty() || item.levelSymbol != nullptr;
}

std::string defaultEntry(const Item& item) {
  if (!item.altFormats.empty() && item.altFormats.front().name.empty())
    return item.altFormats.front().format;
  return "^n";
}

}  // namespace

std::string rowFormat(const Item& item, const ListInfo& list, int altIndex) {
  if (altIndex >= 1 && static_cast<std::size_t>(altIndex) <= list.altFormats.size()) {
    const AltFormat& chosen = list.altFormats[static_cast<std::size_t>(altIndex) - 1];
    for (const AltFormat& own : item.altFormats) {
      if (equalsIgnoringCase(own.name, chosen.name)) return own.format;
    }
    return replaceAll(chosen.format, "$!", defaultEntry(item));
  }
  if (!item.format.empty()) return item.format;
  if (!list.format.empty()) return list.format;
  return hasLevel(item) ? "%0ln%-5rc%-10rv" : "%0ln%-5rc";
}

RowCells rowCells(const Item& item) {
  RowCells cells;
  cells.name = item.autoAdded() ? "+" + item.name : item.name;
  cells.cost = formatFloat(item.totalCost);
  cells.hasLevel = hasLevel(item);
  if (cells.hasLevel) cells.level = valueToText(item.value);
  return cells;
}

std::string offeredCostText(const Item& master) {
  if (master.isSublist() || !master.formula.empty()) return {};
  return formatFloat(master.totalCost);
}

std::string listHeaderText(const ListInfo& list, int altIndex) {
  if (altIndex >= 1 && static_cast<std::size_t>(altIndex) <= list.altFormats.size()) {
    const AltFormat& chosen = list.altFormats[static_cast<std::size_t>(altIndex) - 1];
    if (!chosen.header.empty()) return chosen.header;
  }
  return list.listHeader;
}

bool hasTotalLine(const ListInfo& list) {
  return list.listPrompt.str() != " ";
}

std::string totalText(const ListInfo& list) {
  return formatFloat(list.total);
}

}  // namespace zv::ui
