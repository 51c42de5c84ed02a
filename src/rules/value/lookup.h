#pragma once
// Lookup strings: a closed choice of levels, "$key=expression;key=expression;...".

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/item.h"

namespace zv {

/// The (key, expression) pairs of a lookup string; a key that starts with "$" is evaluated in
/// the item's context. Shows "No lookup array specified.", "Poorly formatted lookup string: %s."
/// or "Empty expression for lookup entry: %s" and gives nullopt.
std::optional<std::vector<std::pair<std::string, std::string>>> parseLookupString(
    Item& item, std::string_view lookup);

/// The expression that stands for a key (ignoring case), or nullopt.
std::optional<std::string> lookupExpression(
    const std::vector<std::pair<std::string, std::string>>& entries, std::string_view key);

/// The choices of the item's lookupArray: a lookup string, or the name of an array of pairs
/// (text, value). Shows "No lookup array specified.", "Cannot find lookup array '%s'", "Lookup
/// array '%s' is not an array", "Must have even number of elements in lookup array" or "Element
/// %d is not a string in combo box" (1-based) and gives nullopt.
std::optional<std::vector<std::pair<std::string, std::string>>> lookupEntries(Item& item);

}  // namespace zv
