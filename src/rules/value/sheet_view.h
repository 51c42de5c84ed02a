#pragma once
// What the engine tells the windows of a sheet after its values changed. The desktop program
// installs these once; headless programs leave them empty and nothing is redrawn.

#include <functional>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

struct SheetViewHooks {
  /// The rows or the total of a list changed: repaint its window (or its dialog field).
  std::function<void(ListInfo& list)> listChanged;
  /// One item's level, cost or options changed: repaint its row.
  std::function<void(Item& item)> itemChanged;
  /// An edit or a recalculation of the sheet ended: refresh whatever shows its values.
  std::function<void(FileInfo& sheet)> sheetChanged;
  /// Undo is bringing items back into a list: open its window if it is closed and bring it
  /// forward.
  std::function<void(ListInfo& list)> showList;
  /// Undo brought items back: select the visible rows `first` to `last` of the list.
  std::function<void(ListInfo& list, int first, int last)> selectRows;
};

/// Installs the hooks and returns the previous ones, so that they can be put back.
SheetViewHooks installSheetViewHooks(SheetViewHooks hooks);
const SheetViewHooks& sheetViewHooks();

}  // namespace zv
