#include "ui/list_commands.h"

#include "core/strfmt.h"
#include "core/undo.h"
#include "rules/lists/list_ops.h"
#include "ui/command_table.h"

namespace zv::ui {

std::string confirmDeletionText(std::size_t count) {
  return strprintf("Delete the %d selected items?", static_cast<int>(count));
}

bool listCommandEnabled(int command, const ListInfo& list, const std::vector<Item*>& selected,
                        std::size_t rowCount) {
  const Item* only = selected.size() == 1 ? selected.front() : nullptr;
  switch (command) {
    case kToolsSelectItem:
    case kToolsSelectFromMasterList:
      return list.maxItems <= 0 || elementCount(list) < static_cast<std::size_t>(list.maxItems);
    case kToolsModify:
    case kToolsNotes:
    case kToolsOpenCloseSublist:
    case kToolsMoveUp:
    case kToolsMoveDown:
      return only != nullptr;
    case kToolsShowRequirements:
      return only != nullptr && !only->isSublist() && !only->prereq.empty();
    case kToolsAdd1:
    case kToolsSubtract1:
      return only != nullptr && (!only->isSublist() || only->setListCost());
    case kEditClear:
    case kToolsDeleteItem:
      return !selected.empty();
    case kEditSelectAll:
    case kToolsListSummary:
      return rowCount > 0;
    case kToolsSort:
      return rowCount >= 2;
    default:
      return true;
  }
}

std::string undoMenuText(const FileInfo& sheet) {
  const UndoEntry* newest = undoPeek(sheet);
  if (newest == nullptr) return "&Undo";
  switch (newest->kind) {
    case kUndoItemDeleted:
    case kUndoItemsDeleted:
      return "&Undo Delete";
    case kUndoFieldValue:
      return "&Undo Typing";
    case kUndoLayoutEdit:
      return "&Undo Layout";
    case kUndoFieldMoved:
      return "&Undo Move";
    default:
      return "&Undo";
  }
}

}  // namespace zv::ui
