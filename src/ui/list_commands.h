#pragma once
// The commands of a list window without the window: which of them the menus enable for a list
// and its selected rows, the name the Undo entry carries, and the questions of a deletion.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv::ui {

/// The question of deleting an item that added others to the sheet (Yes, No and Cancel).
inline constexpr std::string_view kDeleteAssociatedTitle = "Delete Associated Items?";
inline constexpr std::string_view kDeleteAssociatedText =
    "Do you wish to delete the associated items as well?\r\n\r\nClick Yes to also delete the "
    "items added by this item to other lists. Click No to delete only the selected items.";

/// The confirmation of a deletion of several rows, under the preference ConfirmMultipleDeletions.
inline constexpr std::string_view kConfirmDeletionTitle = "Confirm Deletion";
/// "Delete the %d selected items?"
std::string confirmDeletionText(std::size_t count);

/// Whether a list command may run on `list` with the rows `selected` (in row order) among
/// `rowCount` visible rows: Select Item and Select from Master List not at `maxItems`; Modify,
/// Notes, Open/Close, Move, Show Requirements, Add 1 and Subtract 1 with exactly one row (Show
/// Requirements an item with requirements; Add 1 and Subtract 1 an item, or a sublist that sets
/// its cost); Delete with at least one; Select All and List Summary with any row; Sort with two
/// rows. Other commands: true.
bool listCommandEnabled(int command, const ListInfo& list, const std::vector<Item*>& selected,
                        std::size_t rowCount);

/// The text of the Edit menu's Undo entry: "&Undo" followed by the name of the newest step
/// ("&Undo Delete", "&Undo Typing", "&Undo Layout", "&Undo Move"), or "&Undo" alone when there is
/// nothing to undo.
std::string undoMenuText(const FileInfo& sheet);

}  // namespace zv::ui
