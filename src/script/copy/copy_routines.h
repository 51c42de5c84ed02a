#pragma once
// Moving a sheet's contents into another sheet: the copy routines that a conversion without a
// script runs in a fixed order (header values, script-added variables, dialogs, lists), and that
// a conversion script calls one by one (copyall, copydefines, copydialog, copylist, copyitem,
// copyoption). Messages are shown where a failure is found; the routines return false.

#include <functional>
#include <string_view>
#include <vector>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv::script {

/// The two sheets of a copy, and what the caller wants to know as it goes.
struct CopyContext {
  FileInfo& destination;
  FileInfo& source;
  /// Told before elements of the destination are deleted (a copy replaces same-named elements),
  /// so that a script run can let go of them.
  std::function<void(const std::vector<Item*>& doomed)> beforeDelete;
  /// The element that the last copyItem made.
  Item* lastItemAdded = nullptr;
};

/// The header values in order: creation date, print template, template, generation template and
/// script, the generation flag, description, copyright and rule set (when the source has them),
/// the sheet type (when the destination has none), the larger attempt count, the data sheets
/// (same game system: those the source uses, known and of the destination's level), the
/// associated files, and the help texts of same-named dialogs and lists that lack one. False when
/// a data sheet fails to load.
bool copyHeaderValues(FileInfo& destination, FileInfo& source);

/// The variables that scripts added to the source ("$@name = ..."): each joins the destination,
/// or updates its text there. False after "Unable to define script-added variable %s.".
bool copyScriptDefines(FileInfo& destination, FileInfo& source);

/// Every dialog of the source into the same-named dialog of the destination: position and size,
/// the lists of its list fields (their elements replaced), the values of fields by variable name.
bool copyDialogs(CopyContext& context);

/// One dialog `from` of the source into the dialog `to` of the destination, as copyDialogs does.
bool copyDialog(CopyContext& context, DlgInfo& from, DlgInfo& to);

/// One field's value; the kinds must be equal ("Old and new character sheets are not
/// compatible: the type of '%s' in dialog '%s' is different.").
bool copyDlgItem(FileInfo& destination, DlgItem& target, const DlgItem& source,
                 std::string_view dialogName);

/// Every top-level list of the source into the destination's list of the same name (else its
/// first list, after "Can't find list named %s in new character sheet.\r\nAdding items to %s
/// instead."; with none "No lists in destination character sheet." fails).
bool copyLists(CopyContext& context);

/// One list of the source into one of the destination: same-named elements replaced.
bool copyList(CopyContext& context, ListInfo& from, ListInfo& to);

/// Deletes from the target (`parent`'s members, or the list itself) every element named as an
/// element of `elements` (by name or original name, ignoring case), then copies the elements in
/// order to the end.
bool replaceItems(CopyContext& context, Category* dataList, ListInfo& list,
                  const std::vector<Item*>& elements, Item* parent, int depth);

/// Copies one element to the end of the list (or of `parent`'s members): the data sheet's master
/// item of that name with the element's level, marks, links, texts and options; with
/// `recursive`, a sublist's members too. The element gets the `converted` mark. Null on failure.
Item* copyItem(CopyContext& context, Category* dataList, ListInfo& list, Item& element,
               Item* parent, int depth, bool recursive);

/// Merges one option of `sourceItem` into `target`: the same-named option there (by occurrence)
/// takes its value, translated between the forms of the value language where they differ, or the
/// option is appended. With `mark` the target is an element of a sheet, assigned again after.
void mergeOption(FileInfo& source, FileInfo& destination, const Item& sourceItem, Item& target,
                 const Option& option, bool mark);

/// The master item of an element: in the data sheet list of its `origCat` (else `dataList`) by
/// original name, by name, among patterns by original name and by name; last by name in any
/// category of the game system. Null when none.
Item* findMasterItem(FileInfo& sheet, Category* dataList, const Item& element);

/// Everything, in order: header values, script-added variables, dialogs, lists.
bool copyAll(CopyContext& context);

}  // namespace zv::script
