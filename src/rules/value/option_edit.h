#pragma once
// Editing the options of an item: adding, changing, stepping, choosing and removing one. Each
// edit puts the value into its normal form, then assigns the item again with its propagation and
// checks (reassessItem); a refused edit leaves the options as they were, the same records in the
// same order.

#include <cstddef>
#include <string_view>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/option.h"
#include "rules/value/edit.h"

namespace zv {

/// Appends a copy of `option`. An option of no known kind shows "Error: missing case adding
/// options".
EditResult addItemOption(FileInfo& sheet, Item& item, const Option& option);

/// Gives the option at `index` a new value text. An option marked not to be edited shows "Can't
/// change value: %s"; one of no known kind "Missing case (%d) in updateOptions".
EditResult changeItemOption(FileInfo& sheet, Item& item, std::size_t index,
                            std::string_view valueText);

/// Add 1 and Subtract 1 on an option: a count list moves its choice (within its entries), a
/// toggle turns on (step above 0) or off, and any other value has its first number moved by
/// `step`. A value with no number shows "The value is empty or contains no number, so you cannot
/// increment or decrement it." titled "Cannot Increment Value".
EditResult stepItemOption(FileInfo& sheet, Item& item, std::size_t index, int step);

/// Chooses entry `choice` (from 1) of a count list, writing "?:%d"; for a toggle, 0 turns it off
/// and anything else on ("?+%c;%s").
EditResult chooseItemOption(FileInfo& sheet, Item& item, std::size_t index, int choice);

/// Removes the option at `index`. An option of no known kind shows "Missing case in delOpt".
EditResult removeItemOption(FileInfo& sheet, Item& item, std::size_t index);

}  // namespace zv
