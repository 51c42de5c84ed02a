#include "ui/engine_edits.h"

#include "core/list_total.h"
#include "expr/symbols.h"
#include "rules/level.h"

namespace zv::ui {

int storeExpression(FileInfo& sheet, Symbol& symbol, std::string_view text) {
  if (!sheet.symbols) return -1;
  return setExpression(*sheet.symbols, symbol, text);
}

int storeConstant(FileInfo& sheet, Symbol& symbol, const Value& value) {
  if (!sheet.symbols) return -1;
  return setValue(*sheet.symbols, symbol, value);
}

namespace {

void reapplyOptions(FileInfo& sheet, ItemChain& chain) {
  for (auto& item : chain) {
    if (item->isSublist()) reapplyOptions(sheet, item->children);
    applyItemOptions(sheet, *item);
  }
}

}  // namespace

void recalculateSheet(FileInfo& sheet) {
  // Until the item rules offer Recalculate with propagation, the settling of a read sheet stands
  // in: options and costs again, then every level assigned and every list added up.
  for (ListInfo* list : sheet.allLists())
    reapplyOptions(sheet, list->items);
  settleSheetLevels(sheet);
  for (ListInfo* list : sheet.allLists())
    addUpList(*list);
}

}  // namespace zv::ui
