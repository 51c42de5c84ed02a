#pragma once
// The option value language: the count list "?:n; a; b;", the toggle "?+1;text", the prompted
// value "??label;value;", the computed value "?!expression" and plain text; and the numbers that
// fractions, multipliers, additions and percentages hold.

#include <optional>
#include <string>
#include <string_view>

#include "core/item.h"
#include "core/option.h"

namespace zv {

/// What an option value stands for: the chosen value and its label, the 1-based index of the
/// choice (1 except in a count list) and the number of entries (1 except in a count list).
struct OptValue {
  std::string value;
  std::string label;
  int index = 1;
  int count = 1;
};

/// Reads a value text. A malformed value shows its message and gives nullopt. `item` names the
/// item in messages and is the context of a computed value; it may be null.
std::optional<OptValue> getOptValue(Item* item, std::int32_t kind, std::string_view relatedItem,
                                    std::string_view valueText);

/// True for a toggle that is off ("?+0"): such options count for nothing.
bool isToggledOff(std::string_view valueText);

/// A fraction: blanks, a sign, then a quarter glyph, or a whole number followed by "/den", a
/// glyph, a blank and "n/d", or a decimal part. nullopt when no number stands there.
std::optional<double> parseFraction(std::string_view text);

/// A multiplier's number: a leading "*" or the times byte is dropped, the rest read as a fraction.
std::optional<double> parseMultiplier(std::string_view text);

/// The normal form of a modifier value. Values of the value language stay as they are. Shows
/// "Value required", "Bad value type" or "Case missing in reformatModifier" and gives nullopt.
std::optional<std::string> reformatModifier(Item* item, const Option& option,
                                            std::string_view valueText);

/// The item of the owner's list (or of the list's sublists) with that name; null if none.
Item* findRelatedItem(const Item& item, std::string_view name);

/// Evaluates a text in the context of an item (and option): the item's sheet table, or literals
/// only for an item without a sheet. 0 or -1 as parseExp.
int evaluateForItem(Item* item, Option* option, std::string_view text, Value& out);

/// The item's field of that attribute name ("level", "cost", "basecost", "name", ...), or nullopt.
std::optional<std::string> itemAttributeText(Item& item, std::string_view attribute);

}  // namespace zv
