#pragma once
// Adding up a list, and marking a document changed.

#include "core/fileinfo.h"
#include "core/list_info.h"

namespace zv {

/// The list's total: the totalCost of every item in the total, plus the childCost of each such
/// sublist with childcostsseparate. Stores it in list.total and, when the list has a total
/// variable, has the engine's service store it there.
double addUpList(ListInfo& list);

/// Edit kinds that leave the undo history alone: a layout edit (2), a field moved or resized (4),
/// deletions of items (5, 6), a field's value (7) and a group of those (8).
bool isUndoableEditKind(int kind);

/// Writes the document's changed flag. Unless `kind` is an undoable kind, the undo history is
/// cleared first, since its entries could no longer be applied. Every edit ends with this call;
/// kind 1 stands for any edit that can't be undone.
void setChanged(FileInfo& fileInfo, bool changed, int kind = 1);

}  // namespace zv
