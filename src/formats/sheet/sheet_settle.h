#pragma once
// Settling a sheet at the end of reading, and the merge of a game system's definitions into a
// sheet.

#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "formats/sheet/sheet_symbols.h"

namespace zv {

/// The settling that stands in while items have no level assignment: for each list (and each
/// list of a `list` field), with the sheet's Constant Cost box held off, the list is added up
/// from the totalCost values read from the file.
///
/// The level assignment will add, for each item in order (and recursively for the members of a
/// sublist): set `settling`, store its position, assign the level from the item's `level` text
/// without checks and without propagation, clear `settling`, refresh the item's variable and copy
/// the numeric form of its value into levelValue; a failure stops the read with "Unable to set
/// list item '%s' for list '%s'".
bool settleFromStoredCosts(FileInfo& sheet);

/// The last step of every read: the game system's definitions are merged into the sheet, the
/// sheet is marked loaded and unchanged, and it enters the sheet registry.
void finishSettling(FileInfo& sheet, SheetSymbolBinder* symbols);

/// The key under which definitions count as the same: the name up to the first "[" or "(", so
/// that an array or function and its variants are one.
std::string_view definitionKey(std::string_view name);

/// Copies each definition that the sheet doesn't have by key (ignoring case) into the sheet,
/// with its sourceId, and defines it in the sheet's table. A failed definition shows "Error
/// defining data sheet value in character sheet: '%s': '%s': %s" and the copy stays without a
/// symbol.
void mergeDefinitions(FileInfo& sheet, const std::vector<DefineRec>& definitions,
                      SheetSymbolBinder* symbols);

}  // namespace zv
