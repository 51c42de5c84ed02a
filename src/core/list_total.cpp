#include "core/list_total.h"

namespace zv {

namespace {

ListTotalHook& listTotalHook() {
  static ListTotalHook hook;
  return hook;
}

}  // namespace

ListTotalHook setListTotalHook(ListTotalHook hook) {
  ListTotalHook previous = std::move(listTotalHook());
  listTotalHook() = std::move(hook);
  return previous;
}

double addUpList(ListInfo& list) {
  double total = 0.0;
  for (const auto& item : list.items) {
    if (!item->inTotal()) continue;
    total += item->totalCost;
    if (item->isSublist() && item->childCostsSeparate()) total += item->childCost;
  }
  list.total = total;
  if (list.totalSymbol != nullptr && listTotalHook()) listTotalHook()(list, total);
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
