#pragma once
// An item's level and how its cost follows it: the level and cost variables, level changes with
// checks, the reverse search from a cost to a level, and the settling of a sheet after reading.

#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "core/item.h"

namespace zv {

/// Sets up or updates the item's level variable (and its "c_" cost variable) from the level text
/// and recomputes multipliers and cost. Shows "Illegal value: %s" and returns false when the text
/// can't be evaluated.
bool defineItemVariable(Item& item, std::string_view levelText);

/// The full change of level: with `check`, a level that fails the item's checks is refused (false,
/// old state kept); with `recompute`, the list total follows. On failure the level, basecost and
/// cost are restored.
bool setItemLevel(Item& item, std::string_view levelText, bool recompute, bool check);

/// 1 when the level passes the item's check expression and its options' checks, 0 when it fails
/// (with the failure text in `message`), -1 on an error.
int checkLevel(Item& item, std::string_view levelText, std::string& message);

/// The text shown for a refused level: the item's failure text, the list's, the failed option's,
/// or "%s: The value '%s' is not allowed.".
std::string levelRefusalText(Item& item, std::string_view levelText, const std::string& optionText);

/// The cost function evaluated at a level (x the level less the base); false on failure.
bool costAtLevel(Item& item, double level, double& cost);

/// The reverse search: the level at which the cost function gives the item's basecost. On success
/// the level text is in `levelText`.
bool findLevelForCost(Item& item, std::string& levelText);

/// Steps from `level` by `step` until the level passes the check, at most maxAttempts steps (50
/// when 0); the start when none passes or a check can't be evaluated.
double nextAcceptableLevel(Item& item, double level, double step);

/// The level assignment at the end of reading a sheet: each item of each list (and its members)
/// gets its level from its level text, without checks and propagation, with the Constant Cost
/// box held off; then the list is added up. Shows "Unable to set list item '%s' for list '%s'"
/// and returns false on failure.
bool settleSheetLevels(FileInfo& sheet);

/// Applies an item's options and computes its cost, as after reading its option block.
void applyItemOptions(FileInfo& sheet, Item& item);

/// The change callback of the level variable: the item takes the variable's value.
void onItemVariableChanged(Symbol& symbol, void* item);
/// The change callback of the "c_" cost variable. Nothing happens while a sheet is read or the
/// item is being assigned; inside a ChangeBatch the item waits for the end of the batch; else
/// it follows at once (followCostVariable).
void onCostVariableChanged(Symbol& symbol, void* item);

/// An item after its cost variable changed through other items. With the Constant Cost box an
/// item with a level text (or without a cost function) that isn't at its default keeps its cost:
/// the reverse search gives a new level. Otherwise, with the preference CheckReq, the level is
/// checked again and a failure is noted in the open batch. Then the basecost follows the
/// variable, the cost is recomputed and, when it changed, the totals up the chain.
void followCostVariable(Item& item);

}  // namespace zv
