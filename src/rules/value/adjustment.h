#pragma once
// The adjustment language of an item's `adj` text: statements "target op expression;" that change
// variables and category bonuses as the item comes into a sheet and goes again.
//
// The text is "part" or "part!part": the part before "!" runs when the item comes, the part
// behind it when it goes. Without "!", the going runs the same part inverted ("+" and "-"
// exchanged, "*" and "/" exchanged, "=" setting 0). In an expression "$adding$" stands for the
// count and "$add$" for 1 when the item comes, 0 when it goes.
//
//   name = expression   the variable takes the expression (and is made when it is new)
//   name + expression   the value is added to the variable's base ("-" subtracts)
//   name * expression   the variable's value is multiplied ("/" divides)
//   list:category + e   the value is added to the category's bonus in that list, and to the base
//                       of every item of the category there

#include <string_view>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// Runs the item's adjustment text for its coming (`adding`) or going, `count` times the item.
/// A failing statement shows its message and stops the run: false.
bool runAdjustment(FileInfo& sheet, Item& item, bool adding, std::string_view text, int count = 1);

}  // namespace zv
