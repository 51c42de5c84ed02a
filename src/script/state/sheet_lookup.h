#pragma once
// Finding what scripts name on a sheet: lists by the start of their name, the data sheet list
// (the game system's category) that feeds a list, and master items in it by name or pattern.

#include <string_view>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv::script {

/// The first list of the sheet, top-level lists first and then those of dialog fields, whose name
/// starts with `name` ignoring case (so "Ski" finds "Skills"); null when none does or the name
/// is empty.
ListInfo* findListByPrefix(FileInfo& sheet, std::string_view name);

/// The category of the sheet's game system that feeds the list; null when there is none.
Category* dataListOf(FileInfo& sheet, const ListInfo& list);

/// A master item whose name is a pattern: it holds "*" or "?".
bool isPatternItem(const Item& item);

/// The master item of that name in the category: by exact name (ignoring case), else the first
/// pattern item whose pattern matches the name. Null when none.
Item* findDataItem(const Category& category, std::string_view name);

/// The element of the list (sublists searched depth first) with that name ignoring case.
Item* findElement(ListInfo& list, std::string_view name);

/// The number of elements at the top level of the list.
std::size_t topLevelCount(const ListInfo& list);

}  // namespace zv::script
