// Sorting master items and removing the duplicates of lower priority.

#include "formats/datasheet/data_sheet_sort.h"

#include <algorithm>

#include "core/text.h"

namespace zv {

namespace {

/// Drops, of two neighbours of one name and different priority, the lower; then steps back so
/// that runs of three or more resolve fully. Items of equal priority all stay.
void removeLowerPriority(ItemChain& chain) {
  std::size_t i = 1;
  while (i < chain.size()) {
    Item& earlier = *chain[i - 1];
    Item& later = *chain[i];
    if (!equalsIgnoringCase(earlier.name, later.name) || earlier.priority() == later.priority()) {
      ++i;
      continue;
    }
    const std::size_t drop = later.priority() <= earlier.priority() ? i : i - 1;
    chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(drop));
    if (i > 1) --i;
  }
}

void sortLevel(ItemChain& chain, int sortMode, bool removeDuplicates) {
  if (sortMode == 0) {
    std::stable_sort(chain.begin(), chain.end(), [](const auto& a, const auto& b) {
      return compareIgnoringCase(a->name, b->name) < 0;
    });
    if (removeDuplicates) removeLowerPriority(chain);
  }
  for (auto& item : chain)
    if (item->isSublist() && !item->addWholeList())
      sortLevel(item->children, static_cast<int>(item->sort()), removeDuplicates);
  renumberPositions(chain);
}

}  // namespace

void sortDataSheetItems(GameSystem& system, bool removeDuplicates) {
  for (auto& category : system.categories)
    sortLevel(category->items, category->sort, removeDuplicates);
}

}  // namespace zv
