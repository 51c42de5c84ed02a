#pragma once
// Undo of deletions from lists. A deleted item is kept whole by its undo record while the
// deletion stands, with the path of positions where it stood; Undo links the same record back
// there. One record is an entry of kind 5; several (several rows, or an item with the items it
// added in other lists) are one entry of kind 6.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/undo.h"
#include "rules/lists/list_ops.h"

namespace zv {

/// The MaxUndo setting of a fresh installation.
inline constexpr long kDefaultMaxUndo = 50;

/// One deleted element (kind 5): the list it came from (by name), the record itself and its path
/// of positions by depth.
class ItemDeletion : public UndoAction {
 public:
  ItemDeletion(const ListInfo& list, std::unique_ptr<Item> item, std::vector<std::int32_t> path,
               bool adjustmentsUndone);

  /// Links the record back where it stood, with no checks, and tells the views to show and
  /// select it. Shows "Unable to find list %s to perform undo." when the list is gone.
  bool apply(FileInfo& fileInfo) override;

  /// Links the record back into `list`; the element, or null.
  Item* reinsert(FileInfo& fileInfo, ListInfo& list);

  const std::string& listName() const { return listName_; }
  const Item* item() const { return item_.get(); }
  const std::vector<std::int32_t>& path() const { return path_; }

 private:
  std::string listName_;
  std::unique_ptr<Item> item_;
  std::vector<std::int32_t> path_;
  bool adjustmentsUndone_ = false;
};

/// Several deleted elements (kind 6), in the order Undo brings them back: the reverse of the
/// order in which they were taken out, so each path is right when its record goes back.
class ItemsDeletion : public UndoAction {
 public:
  /// Records an element that has just been taken out; it goes back before those taken earlier.
  void recordRemoval(const ListInfo& list, std::unique_ptr<Item> item,
                     std::vector<std::int32_t> path, bool adjustmentsUndone);

  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  const std::vector<std::unique_ptr<ItemDeletion>>& entries() const { return entries_; }
  /// The only record, as an action of its own (kind 5); null unless there is exactly one.
  std::unique_ptr<ItemDeletion> takeSingle();

  /// Brings the records back in order. Consecutive records of one list (by name, ignoring case)
  /// form a run: its list is found by name among the sheet's lists and list fields ("Unable to
  /// find list %s to perform undo." stops the undo), shown, and after the run the rows from its
  /// first to its last reinserted element are selected.
  bool apply(FileInfo& fileInfo) override;

 private:
  std::vector<std::unique_ptr<ItemDeletion>> entries_;
};

/// Deletes elements of one list as one edit that Undo takes back: each element with the items it
/// added (unless `keepAutomaticChildren`), the lowest rows first taken out last; an element
/// inside another one being deleted goes with it. The undo entry (kind 5 for one record, kind 6
/// for several) is pushed and the sheet marked changed. The row to select comes back: the first
/// deleted row, or the last row.
DeleteOutcome deleteItems(FileInfo& sheet, ListInfo& list, const std::vector<Item*>& items,
                          bool keepAutomaticChildren = false, long maxUndo = kDefaultMaxUndo);

}  // namespace zv
