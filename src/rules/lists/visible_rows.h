#pragma once
// The rows of a list as a list window shows them, without the window: the list's chain and, under
// each open sublist, its children, depth first. List operations take and give row indices into
// these rows, so that a window can keep its selection.

#include <vector>

#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// The visible rows of the list, top to bottom.
std::vector<Item*> visibleRows(ListInfo& list);

/// The row of an item among the visible rows; -1 when it isn't shown.
int rowOfItem(ListInfo& list, const Item* item);

/// The item at a row; null outside the rows.
Item* itemAtRow(ListInfo& list, int row);

}  // namespace zv
