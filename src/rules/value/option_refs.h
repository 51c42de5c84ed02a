#pragma once
// Finding options by name, their value in text and Value form, their display text, and the
// backquoted option references of formulas.

#include <optional>
#include <string>
#include <string_view>

#include "core/item.h"
#include "core/option.h"
#include "core/value.h"
#include "rules/value/multipliers.h"

namespace zv {

/// An option's value in three forms: the text ("label, value" when a label differs), the Value,
/// and the raw value text.
struct OptString {
  std::string text;
  Value value;
  std::string raw;
};

/// The option's value in its three forms, or nullopt after a shown message.
std::optional<OptString> getOptString(Item& item, Option& option);

/// The option of that name or alias on the item or the parents that pass their options on. Not
/// exact: within one item an option whose name starts with `name` is taken when no full match
/// stands there.
std::optional<EffectiveOption> findOptionByName(Item& item, std::string_view name, bool exact);

/// The nth option (counting from 1) whose name or alias is `name`, or of every option when the
/// name is empty: the item's own first, then those of the parents that pass theirs on.
std::optional<EffectiveOption> findOptionByIndex(Item& item, std::string_view name, int n);

/// The display text of an option: name (with " (qualifier)"), then by kind.
std::string formatOption(Item& item, Option& option, bool useAlias = false);

/// Replaces backquoted references in a formula: "`name`" by the option of the item, "`!name`"
/// of `other`, "`$expression`" by its value. A result holding an operator is wrapped in
/// parentheses when `wrap` is on, unless the reference starts with "~". A missing option gives 0.
std::string expandOptionRefs(Item& item, std::string_view text, Item* other, bool wrap);

}  // namespace zv
