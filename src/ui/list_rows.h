#pragma once
// The rows of a list as a list window shows them, with no window: which items are visible,
// sublists that open and close, the format of a row, the cells of a row, the header and the
// total line.

#include <string>
#include <vector>

#include "core/list_info.h"

namespace zv::ui {

/// The visible rows of a list, top to bottom: the list's chain and, under each open sublist, its
/// children, depth first. Each row is an item of the list.
class ListRows {
 public:
  /// Fills the rows from the list: every sublist flagged open shows its children.
  void fill(ListInfo& list);
  const std::vector<Item*>& rows() const { return rows_; }
  std::size_t size() const { return rows_.size(); }
  Item* at(std::size_t row) const { return row < rows_.size() ? rows_[row] : nullptr; }
  /// The row of an item; -1 when it isn't shown.
  int rowOf(const Item* item) const;

  /// Opens a closed sublist (its children appear behind it, each closed) or closes an open one
  /// (the rows behind it that are deeper go, and each loses its open flag). False on a row that
  /// isn't a sublist.
  bool toggle(std::size_t row);

 private:
  void addChain(ItemChain& chain);
  std::vector<Item*> rows_;
};

/// The format a row is drawn by: the item's own, else the list's, else the plain name and cost
/// (and level when the item has one). `altIndex` above 0 picks an alternative format of the
/// list, which an alternative of the item's of the same name overrides; "$!" in the list's
/// alternative stands for the item's nameless first alternative, or "^n".
std::string rowFormat(const Item& item, const ListInfo& list, int altIndex);

/// The cells of a row: the name (with "+" before an automatically added item), the cost and the
/// level. Stands for the item format language until the filter engine formats rows.
struct RowCells {
  std::string name;
  std::string cost;
  std::string level;
  bool hasLevel = false;
};
RowCells rowCells(const Item& item);

/// The cost the Select Item dialog shows beside a master item: its cost when it is fixed; empty
/// for an item priced by a cost formula (its cost waits for the level it will have) and for a
/// group.
std::string offeredCostText(const Item& master);

/// The header text: the chosen alternative's header, else the list's header.
std::string listHeaderText(const ListInfo& list, int altIndex);

/// Whether the window has a total line: not when the prompt is exactly one blank.
bool hasTotalLine(const ListInfo& list);
/// The total as the total line shows it.
std::string totalText(const ListInfo& list);

}  // namespace zv::ui
