#pragma once
// Texts of an item that item formats and filters show: the name with its alias, the level in its
// looked-up form, the format a row is laid out by.

#include <string>

#include "core/item.h"

namespace zv {

/// The item's name as shown: with `useAliases` and an alias, the alias; but when the item's
/// original name differs from its name, the name with every occurrence of the original (ignoring
/// case) replaced by the alias, or the name unchanged when the original doesn't occur in it.
std::string displayName(const Item& item, bool useAliases);

/// The word that the item's lookup array gives for its present level, "--" when no entry has
/// that value; the level as a text for an item without a lookup array.
std::string lookedUpLevel(Item& item);

/// The format a filter lays the item out by: its own, else the format of its list (found from
/// the top of its parent chain), else "%0ln%-5rc%-10rv" for an item with a level and "%0ln%-5rc"
/// for one without.
std::string filterFormatOf(const Item& item);

/// Whether the item has a level: a level text or a level variable.
bool itemHasLevel(const Item& item);

}  // namespace zv
