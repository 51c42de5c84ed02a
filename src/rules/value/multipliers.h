#pragma once
// The options that count for an item (its own, then those its sublists pass on) and what they do
// to its multiplier, addition and side cost.

#include <utility>
#include <vector>

#include "core/item.h"
#include "core/option.h"

namespace zv {

/// An option and the item where it stands.
struct EffectiveOption {
  Item* holder = nullptr;
  Option* option = nullptr;
};

/// The item's own options, then those of each parent up while the parent has inheritopts;
/// options marked not to be inherited count only in the item where they stand.
std::vector<EffectiveOption> effectiveOptions(Item& item);

/// The sums of one walk over the options, which also answer the item attributes.
struct MultiplierSums {
  double fractionUp = 0.0;
  double fractionDown = 0.0;
  double product = 1.0;
  double additions = 0.0;
  double positiveAdditions = 0.0;
  double negativeAdditions = 0.0;
  int percent = 0;
  double aux = 0.0;
};

/// Resets and recomputes the item's mult, add and aux from its effective options, skipping
/// toggles that are off. Percent first, then the product, then fractions up (added together),
/// then fractions down (one division). Returns the sums.
MultiplierSums computeMultipliers(Item& item);

}  // namespace zv
