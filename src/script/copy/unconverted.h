#pragma once
// What a conversion leaves undone: the elements of the source sheet that no part of the script
// handled (they lack the `converted` mark) are added to a list of the new sheet as empty items
// named "Unconverted: name-level", so that the user sees them.

#include <vector>

#include "core/fileinfo.h"
#include "core/list_info.h"

namespace zv::script {

/// Clears the `converted` mark of every element of the sheet (lists and the lists of dialogs)
/// and, with `options`, of their options; `items` says whether the elements' own marks go too.
void clearConversionMarks(FileInfo& sheet, bool items, bool options);

/// The number of elements of the lists that are no sublist and lack the mark, sublists searched.
int countUnconverted(const std::vector<ListInfo*>& lists);

/// Adds an item "Unconverted: %s-%s" (name and level text) or "Unconverted: %s" (no level text)
/// at the end of `target` for every unmarked element of the lists that is no sublist, sublists
/// searched, and marks the element. Returns how many were added.
int addUnconvertedItems(FileInfo& destination, ListInfo& target,
                        const std::vector<ListInfo*>& lists);

/// The end of a conversion run: with unmarked elements left in the source, they go to the first
/// list of the destination and "%d item(s) not converted. Added to %s list." is shown, or "%d
/// item(s) not converted." when it has no list.
void reportUnconvertedItems(FileInfo& source, FileInfo& destination);

}  // namespace zv::script
