#pragma once
// The Sort command of a list: the chain that holds the caret row (the list's own, or the members
// of the row's sublist) put in order by name, class, cost, level or category, with sublists kept
// among the items, before them or after them.

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// The sort keys, numbered as the settings keep them.
enum class SortKey { Name = 101, Class = 102, Cost = 103, Level = 104, Category = 105 };
/// Where sublists go among the items sorted.
enum class SublistPosition { Intersperse = 0, Beginning = 1, End = 2 };

/// The choices of the sort dialog (settings section "Sort").
struct SortSettings {
  bool reverse = false;  ///< "ReverseOrder"
  SortKey key = SortKey::Name;
  bool recursive = false;  ///< "Recursive": members of sublists are sorted too
  SublistPosition sublists = SublistPosition::Intersperse;
};

/// The order of two items, negative when `a` goes first: the sublist position (when it applies
/// and the kinds differ), then the key (Class and Category: an item without the text goes first,
/// whatever the direction), then the name ignoring case; ReverseOrder turns it round.
int compareForSort(const Item& a, const Item& b, const SortSettings& settings);

/// Sorts the chain that holds `caret` (the list's own chain when it is null or at the top): its
/// open sublists close, it is put in order by a shell sort (not stable), positions are numbered
/// again, with `recursive` each sublist's members the same way; the sheet is marked changed and
/// the views told. An empty chain, or one of one item, is left as it is (and the sheet too).
void sortChain(FileInfo& sheet, ListInfo& list, const Item* caret, const SortSettings& settings);

}  // namespace zv
