#pragma once
// Default levels: an item at its default takes its level from other items, by a plain
// expression or by a list "base;source;source;..." of which the best source wins.

#include "core/item.h"
#include "core/value.h"

namespace zv {

/// True for a default in the list form: the data flags the item (defbased) and the text holds
/// a ";".
bool isDefaultList(const Item& item);

/// Evaluates the item's default. The list form tries each source: "cat:'category'e" for every
/// item of the list in that category, or "name" / "name,e" for a variable. For a candidate, e (or
/// 0) is put for v in the base and the candidate's value for x; the greatest result wins, and a
/// candidate that itself defaults from this item is passed over. The winner's autoID becomes the
/// item's defaultSource (0 when none won). Returns 0, or -36 for a malformed list, or the
/// evaluation's error.
int evaluateDefault(Item& item, Value& out);

/// Sets again every item of the item's list that is at its default and whose default mentions
/// the item's variable; sublists are walked.
void propagateDefaults(Item& item);

/// The sum of the children's costs (those in totals, plus the child total of children that keep
/// child costs separate), stored in childCost. A sublist that doesn't keep them separate and has
/// no level text takes the sum as its basecost and recomputes its cost.
double computeChildCost(Item& sublist);

}  // namespace zv
