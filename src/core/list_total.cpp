#include "core/list_total.h"

#include "core/engine_context.h"

namespace zv {

double addUpList(ListInfo& list) {
  double total = 0.0;
  for (const auto& item : list.items) {
    if (!item->inTotal()) continue;
    total += item->totalCost;
    if (item->isSublist() && item->childCostsSeparate()) total += item->childCost;
  }
  list.total = total;
  if (list.totalSymbol != nullptr) {
    if (const auto& store = engine().services.storeListTotal) store(list, total);
  }
  return total;
}

bool isUndoableEditKind(int kind) {
  return kind == 2 || (kind >= 4 && kind <= 8);
}

void setChanged(FileInfo& fileInfo, bool changed, int kind) {
  if (!isUndoableEditKind(kind)) fileInfo.undoStack.clear();
  fileInfo.setChangedFlag(changed);
}

}  // namespace zv
