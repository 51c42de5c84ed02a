#pragma once
// The ordering of master items after a data sheet load: each level sorted, and of two neighbours
// of one name the one of lower priority dropped.

#include "core/game_system.h"

namespace zv {

/// Sorts the items of every category of `system`, recursing into sublists that don't add their
/// whole list. At a level of sort mode 0 the items go by name, ignoring case, keeping the load
/// order among equal names; with `removeDuplicates` (the master data's lookup index) neighbours
/// of one name and different priority keep only the higher priority. Positions are renumbered.
void sortDataSheetItems(GameSystem& system, bool removeDuplicates);

}  // namespace zv
