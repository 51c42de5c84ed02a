#include "rules/lists/list_sort.h"

#include <utility>

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/text.h"
#include "core/value.h"

namespace zv {

namespace {

int sign(double value) {
  return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

/// The order of two texts where an empty one goes first; `settled` tells whether that decided.
int compareTexts(const std::string& a, const std::string& b, bool& settled) {
  settled = a.empty() != b.empty();
  if (settled) return a.empty() ? -1 : 1;
  return compareIgnoringCase(a, b);
}

void shellSort(ItemChain& chain, const SortSettings& settings) {
  const std::size_t count = chain.size();
  for (std::size_t gap = count / 2; gap > 0; gap /= 2) {
    for (std::size_t i = gap; i < count; ++i) {
      for (std::size_t j = i; j >= gap && compareForSort(*chain[j - gap], *chain[j], settings) > 0;
           j -= gap)
        std::swap(chain[j - gap], chain[j]);
    }
  }
}

/// Closes a sublist and every open sublist inside it, as closing its row does.
void closeWithMembers(Item& item) {
  if (!item.isSublist()) return;
  item.setOpen(false);
  for (const auto& member : item.children)
    closeWithMembers(*member);
}

void sortMembers(ItemChain& chain, const SortSettings& settings) {
  if (chain.size() > 1) shellSort(chain, settings);
  for (std::size_t i = 0; i < chain.size(); ++i) {
    chain[i]->position = static_cast<std::int32_t>(i);
    if (settings.recursive && chain[i]->isSublist()) sortMembers(chain[i]->children, settings);
  }
}

}  // namespace

int compareForSort(const Item& a, const Item& b, const SortSettings& settings) {
  const int direction = settings.reverse ? -1 : 1;
  if (settings.sublists != SublistPosition::Intersperse && a.isSublist() != b.isSublist()) {
    bool first = a.isSublist();
    if (settings.sublists == SublistPosition::Beginning) first = !first;
    return (first ? 1 : -1) * direction;
  }
  int order = 0;
  bool settled = false;
  switch (settings.key) {
    case SortKey::Name:
      break;
    case SortKey::Class:
      order = compareTexts(a.className, b.className, settled);
      break;
    case SortKey::Cost:
      order = sign(a.totalCost - b.totalCost);
      break;
    case SortKey::Level:
      order = compareValues(a.value, b.value);
      break;
    case SortKey::Category:
      order = compareTexts(a.cat, b.cat, settled);
      break;
  }
  if (settled) return order;
  if (order == 0 && !a.name.empty() && !b.name.empty()) order = compareIgnoringCase(a.name, b.name);
  return sign(order) * direction;
}

void sortChain(FileInfo& sheet, ListInfo& list, const Item* caret, const SortSettings& settings) {
  ItemChain& chain =
      caret != nullptr && caret->parent != nullptr ? caret->parent->children : list.items;
  if (chain.size() < 2) return;
  for (const auto& item : chain)
    closeWithMembers(*item);
  sortMembers(chain, settings);
  setChanged(sheet, true);
  if (engine().views.listChanged) engine().views.listChanged(list);
}

}  // namespace zv
