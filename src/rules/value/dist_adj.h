#pragma once
// Distributed adjustments: a total level or cost kept spread in proportion over the options of
// kind adjdistlevel or adjdistcost.

#include <optional>
#include <vector>

#include "core/item.h"

namespace zv {

/// Spreads `newTotal` over the values in proportion to their share of `oldTotal`; the value at
/// `excluded` (-1 for none) is left as it is. Shares are truncated and the remainder handed out
/// one by one to the largest fractions. At most 20 values, else the message "distAdj: error --
/// too many distributed adjustments" and nullopt.
std::optional<std::vector<int>> distributeTotal(const std::vector<int>& values, int excluded,
                                                double oldTotal, double newTotal);

/// Redistributes the item's options of `kind` (121 or 122) from the old total to the new one,
/// writing each changed value by "%d". False after a message.
bool distAdj(Item& item, std::int32_t kind, int excluded, double oldTotal, double newTotal);

}  // namespace zv
