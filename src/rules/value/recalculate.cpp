#include "rules/value/recalculate.h"

#include "core/list_total.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/defaults.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"

namespace zv {

namespace {

/// Assigns the item's level from its level text with `settling` held, so that its own listeners
/// stay quiet; a failure has shown its message and leaves the item as it was.
void assignHeld(Item& item, bool propagate) {
  const bool wasSettling = item.settling();
  item.setSettling(true);
  setItemLevel(item, item.level, propagate, false);
  item.setSettling(wasSettling);
}

void recalculateItem(Item& item) {
  if (item.isSublist()) {
    for (auto& child : item.children)
      recalculateItem(*child);
    computeChildCost(item);
    computeMultipliers(item);
    item.totalCost = computeCost(item);
    assignHeld(item, false);
    return;
  }
  computeMultipliers(item);
  item.totalCost = computeCost(item);
  assignHeld(item, true);
}

}  // namespace

void recalculateList(FileInfo& sheet, ListInfo& list) {
  ChangeBatch batch(sheet);
  for (auto& item : list.items)
    recalculateItem(*item);
  addUpList(list);
  batch.noteList(list);
}

void recalculateSheet(FileInfo& sheet) {
  ChangeBatch batch(sheet);
  for (ListInfo* list : sheet.allLists())
    recalculateList(sheet, *list);
}

}  // namespace zv
