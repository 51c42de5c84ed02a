#pragma once
// The elements of a sheet's lists: how an item is linked into a list or a sublist, what adding it
// sets off (its level and cost, its adjustments, the category bonuses of the list, its automatic
// items), how it is taken out again with the items it added, how it is found and moved, and the
// `autoID` / `autoParent` ties between a parent and its automatic items.
//
// Rows are the visible rows of a list (visible_rows.h): a desktop list window passes the caret
// row and gets back the row to select; the model alone passes no row and elements are appended.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

class ItemsDeletion;

/// One item being added, with its list: an automatic item that names one of them again in the
/// same list would add itself without end.
struct AddChainEntry {
  const ListInfo* list = nullptr;
  std::string name;
};
/// The items being added, outermost first.
using AddChain = std::vector<AddChainEntry>;

/// True, after "Item '%s' recursively added", when the chain holds the name in that list
/// (ignoring case).
bool isRecursiveAdd(const AddChain& chain, const ListInfo& list, std::string_view name);

/// Where a new element goes: behind a visible row of the list (as a list window inserts), or at
/// the end of a sublist's members or of the list's elements (as the model alone adds).
struct Placement {
  bool append = true;
  int row = -1;            ///< with !append: the row behind which the element goes
  Item* parent = nullptr;  ///< with append: the sublist that takes it; null for the list itself

  static Placement atRow(int row) { return {false, row, nullptr}; }
  static Placement appendTo(Item* parent = nullptr) { return {true, -1, parent}; }
};

enum class AddStatus {
  Added,
  Failed,     ///< its message was shown
  Cancelled,  ///< the user cancelled a question of the automatic items; nothing was shown
};

struct AddResult {
  AddStatus status = AddStatus::Failed;
  /// The element as it stands in the list; also set when its automatic items failed or were
  /// cancelled, so that the caller can take it out again.
  Item* item = nullptr;
  int row = -1;  ///< its visible row, -1 when it isn't shown
};

/// The number of elements of the list, members of sublists included, which `maxItems` limits.
std::size_t elementCount(const ListInfo& list);

/// Links an element behind `row`: first in the list when the list is empty or `row` is negative;
/// as the first member when the row shows an open sublist; otherwise behind that row at the same
/// depth. `row` becomes the element's row. Positions and depths are renumbered. Null after "No
/// space to add item" (the list holds `maxItems`), "List Inconsistency: %s" or "Internal error in
/// insert element: %s".
Item* insertElement(FileInfo& sheet, ListInfo& list, int& row, std::unique_ptr<Item> item);

/// Adds a copy of a master item to a list: links it (a `addaslist` item becomes a sublist),
/// assigns its level and cost (and its members') with no checks, gives it the list's category
/// bonuses, runs its adjustment, opens a sublist, runs its automatic items (with
/// `runAutomatics`, while no sheet is being read), and adds up the totals. An item already on
/// the chain fails with "Item '%s' recursively added" before anything changes. The whole add
/// is one batch of changes. The sheet is not marked changed here.
AddResult addItem(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                  const Placement& where, AddChain& chain, bool runAutomatics = true);

/// How an element is taken out of its list.
struct DeleteOptions {
  /// Leave the items that this one added automatically (with their link) in place.
  bool keepAutomaticChildren = false;
  /// Undo the adjustments of the element and its members as they go.
  bool runAdjustments = true;
  /// When set, the removed records go to this undo record instead of being freed.
  ItemsDeletion* undo = nullptr;
};

struct DeleteOutcome {
  bool deleted = false;
  /// The row to select afterwards: the same row, or the last one; -1 when the list is empty or
  /// the element wasn't shown.
  int row = -1;
};

/// Deletes an element: closes it if it is an open sublist; deletes the items it added (and the
/// items those added) unless told to keep them; undoes its adjustments and takes the list's
/// category bonuses off its level; deletes its level and cost variables (and its members') so
/// that items depending on them see 0; unlinks it and closes up the positions behind it; adds up
/// the sublists above it and the list. Others' requirement texts are left as they are. Fails
/// with "Can't delete item in list" when the element isn't in the list.
DeleteOutcome deleteElement(FileInfo& sheet, ListInfo& list, Item& item,
                            const DeleteOptions& options = {});

/// Action 0: every element of the sheet whose autoParent is the parent's autoID gets the link
/// -1, and the elements those added in turn. Action 1: every element whose autoParent is -1 is
/// deleted. Any other action: "Unknown action deleting automatic items: %d" and false.
bool deleteAutomaticItems(FileInfo& sheet, Item* parent, int action);

/// The parent's autoID; the first time, the sheet's counter gives it one (never 0).
std::int32_t autoIDFor(FileInfo& sheet, Item& parent);

/// The elements of every list of the sheet that `parent` added (their autoParent is its
/// autoID), depth first in list order; none when it has no autoID.
std::vector<Item*> automaticChildren(FileInfo& sheet, const Item& parent);

/// Whether the Delete command asks "Delete Associated Items?" before deleting the item: it added
/// items that are still on the sheet, and it isn't flagged `deleteauto`, which takes them along
/// without asking.
bool asksAboutAutomaticChildren(FileInfo& sheet, const Item& item);

/// The first element of the list's own chain (not inside sublists) with that name, ignoring case.
Item* findItemInList(ListInfo& list, std::string_view name);
/// The first element of the list with that name, ignoring case, walking sublists depth first.
Item* findItemInSublists(ListInfo& list, std::string_view name);
/// The first element with that name in any list of the sheet (the top-level lists, then those of
/// dialog fields), sublists walked depth first; its list in `listFound` when given.
Item* findItemByName(FileInfo& sheet, std::string_view name, ListInfo** listFound = nullptr);
/// The list of the sheet of that name, ignoring case (top-level lists, then dialog fields' lists).
ListInfo* findListByName(FileInfo& sheet, std::string_view name);

/// Move Up (direction -1) and Move Down (+1): the element changes place with its neighbour among
/// its siblings, positions are renumbered and the sheet is marked changed. Returns its new
/// visible row, or -1 when it can't move that way.
int moveElement(FileInfo& sheet, ListInfo& list, Item& item, int direction);

/// The path of an element: its position and that of each sublist above it, indexed by depth.
std::vector<std::int32_t> elementPath(const Item& item);

/// Links a record back at a path as it was taken out, with no checks, and assigns it (and its
/// members) again: levels and costs, the list's category bonuses and, with `runAdjustments`, its
/// adjustments. Undo of a deletion uses it. Null when the list has no place at that path.
Item* reinsertElement(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                      const std::vector<std::int32_t>& path, bool runAdjustments);

/// Runs the adjustment of every item of a sheet that was just read, as the items came: the
/// bases of variables and the category bonuses of lists live only while a sheet is open.
void applySheetAdjustments(FileInfo& sheet);

}  // namespace zv
