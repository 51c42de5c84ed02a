#pragma once
// An item's total cost from its basecost, the options' multiplier and addition and its side
// cost, with the sheet's rounding rule.

#include "core/item.h"

namespace zv {

/// Rounds the magnitude and restores the sign. 0: half up; 1: halves down (also the rule of an
/// item without a sheet, and of unknown modes); 2: down; 3: up unless within 0.001 above.
double roundCost(double value, int mode);

/// The rounding mode that applies to an item: its sheet's, or 1 without a sheet.
int roundingModeOf(const Item& item);

/// The total cost: by the item's or the sheet's total cost formula (unrounded); or with a side
/// cost, the rounded (aux + add) × mult plus the basecost; or the basecost itself when add is 0
/// and mult exactly 1; or the rounded (basecost + add) × mult.
double computeCost(Item& item);

}  // namespace zv
