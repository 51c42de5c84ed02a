#include "rules/lists/list_undo.h"

#include <algorithm>

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/lists/visible_rows.h"
#include "rules/value/change_batch.h"

namespace zv {

namespace {

ListInfo* listNamed(FileInfo& sheet, const std::string& name) {
  ListInfo* list = findListByName(sheet, name);
  if (list == nullptr) showError(strprintf("Unable to find list %s to perform undo.", name));
  return list;
}

/// Selects the rows of the items reinserted into a list, from the first to the last shown.
void selectReinserted(ListInfo& list, const std::vector<Item*>& items) {
  const SheetViews& views = engine().views;
  if (!views.selectRows) return;
  const std::vector<Item*> rows = visibleRows(list);
  int first = -1;
  int last = -1;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (std::find(items.begin(), items.end(), rows[row]) == items.end()) continue;
    if (first < 0) first = static_cast<int>(row);
    last = static_cast<int>(row);
  }
  if (first >= 0) views.selectRows(list, first, last);
}

void showList(ListInfo& list) {
  if (engine().views.showList) engine().views.showList(list);
}

/// Whether an element still stands somewhere in the list (compared by address only).
bool inChain(const ItemChain& chain, const Item* item) {
  for (const auto& element : chain) {
    if (element.get() == item || inChain(element->children, item)) return true;
  }
  return false;
}

}  // namespace

ItemDeletion::ItemDeletion(const ListInfo& list, std::unique_ptr<Item> item,
                           std::vector<std::int32_t> path, bool adjustmentsUndone)
    : listName_(list.name.str()),
      item_(std::move(item)),
      path_(std::move(path)),
      adjustmentsUndone_(adjustmentsUndone) {}

Item* ItemDeletion::reinsert(FileInfo& fileInfo, ListInfo& list) {
  if (!item_) return nullptr;
  return reinsertElement(fileInfo, list, std::move(item_), path_, adjustmentsUndone_);
}

bool ItemDeletion::apply(FileInfo& fileInfo) {
  ListInfo* list = listNamed(fileInfo, listName_);
  if (list == nullptr) return false;
  showList(*list);
  Item* item = reinsert(fileInfo, *list);
  if (item == nullptr) return false;
  selectReinserted(*list, {item});
  return true;
}

void ItemsDeletion::recordRemoval(const ListInfo& list, std::unique_ptr<Item> item,
                                  std::vector<std::int32_t> path, bool adjustmentsUndone) {
  entries_.insert(entries_.begin(), std::make_unique<ItemDeletion>(
                                        list, std::move(item), std::move(path), adjustmentsUndone));
}

std::unique_ptr<ItemDeletion> ItemsDeletion::takeSingle() {
  if (entries_.size() != 1) return nullptr;
  std::unique_ptr<ItemDeletion> single = std::move(entries_.front());
  entries_.clear();
  return single;
}

bool ItemsDeletion::apply(FileInfo& fileInfo) {
  ChangeBatch batch(fileInfo);
  bool all = true;
  std::size_t at = 0;
  while (at < entries_.size()) {
    const std::string& name = entries_[at]->listName();
    std::size_t end = at;
    while (end < entries_.size() && equalsIgnoringCase(entries_[end]->listName(), name))
      ++end;
    ListInfo* list = listNamed(fileInfo, name);
    if (list == nullptr) return false;
    showList(*list);
    std::vector<Item*> reinserted;
    for (; at < end; ++at) {
      if (Item* item = entries_[at]->reinsert(fileInfo, *list)) {
        reinserted.push_back(item);
      } else {
        all = false;
      }
    }
    selectReinserted(*list, reinserted);
  }
  entries_.clear();
  return all;
}

DeleteOutcome deleteItems(FileInfo& sheet, ListInfo& list, const std::vector<Item*>& items,
                          bool keepAutomaticChildren, long maxUndo) {
  if (!checkFileInfo(&sheet)) return {};
  // The deepest rows last in the list go first, so each record's path stays right for the
  // records that Undo puts back before it. A row inside another one being deleted goes with it.
  const std::vector<Item*> rows = visibleRows(list);
  std::vector<Item*> order;
  for (Item* item : items) {
    bool inside = false;
    for (const Item* above = item->parent; above != nullptr && !inside; above = above->parent)
      inside = std::find(items.begin(), items.end(), above) != items.end();
    if (!inside && std::find(order.begin(), order.end(), item) == order.end()) {
      order.push_back(item);
    }
  }
  auto rowOf = [&rows](const Item* item) {
    auto found = std::find(rows.begin(), rows.end(), item);
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
  };
  std::stable_sort(order.begin(), order.end(),
                   [&](const Item* a, const Item* b) { return rowOf(a) > rowOf(b); });
  int firstRow = -1;
  for (const Item* item : order) {
    const int row = rowOf(item);
    if (row >= 0 && (firstRow < 0 || row < firstRow)) firstRow = row;
  }

  auto record = std::make_unique<ItemsDeletion>();
  DeleteOptions options;
  options.keepAutomaticChildren = keepAutomaticChildren;
  options.undo = record.get();
  DeleteOutcome outcome;
  {
    ChangeBatch batch(sheet);
    for (Item* item : order) {
      // An item may have gone already as the automatic child of another one.
      if (!inChain(list.items, item)) continue;
      if (deleteElement(sheet, list, *item, options).deleted) outcome.deleted = true;
    }
  }
  if (!outcome.deleted) return outcome;
  const int kind = record->size() == 1 ? kUndoItemDeleted : kUndoItemsDeleted;
  std::unique_ptr<UndoAction> action;
  if (kind == kUndoItemDeleted) {
    action = record->takeSingle();
  } else {
    action = std::move(record);
  }
  undoPush(sheet, kind, nullptr, std::move(action), maxUndo);
  setChanged(sheet, true, kind);
  const int rowCount = static_cast<int>(visibleRows(list).size());
  outcome.row = firstRow < 0 ? -1 : std::min(firstRow, rowCount - 1);
  return outcome;
}

}  // namespace zv
