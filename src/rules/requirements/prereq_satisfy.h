#pragma once
// Satisfying requirements: the offer to fulfil an unmet requirement by adding what is missing:
// the item it names (at the level it asks for), the option, a dialog field's value, or, for
// counts, items that the user chooses from the category. Items added have their own
// requirements satisfied the same way; a chain of the items in progress stops a requirement that
// comes round again.

#include <optional>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "rules/lists/place_item.h"
#include "rules/requirements/requirements.h"
#include "rules/selection/rule_sets.h"

namespace zv {

/// An item whose requirements are being satisfied, and the one whose requirement brought it.
struct SatisfyLink {
  std::string name;
  const ListInfo* list = nullptr;
  const SatisfyLink* parent = nullptr;
};

/// What satisfying works with: the sheet, how items are placed, the rules that trim what a count
/// offers (may be null), and the chain of items in progress.
struct SatisfyContext {
  FileInfo& sheet;
  PlaceItem place;
  const RuleSetContext* rules = nullptr;
  const SatisfyLink* chain = nullptr;
};

/// The value that satisfies a comparison: for a number value - 1 ("<"), the value ("<=", "=",
/// ">="), value + 1 (">"), written as a whole number (its whole part); for a text the text itself,
/// "=" only: any other comparison shows "Only equals allowed in requirements using string values:
/// %s"
/// ("Incorrect Requirement") and gives nullopt.
std::optional<std::string> satisfyingValue(const Prereq& prereq);

/// Tries to satisfy one requirement of `item` (an item of `list`, or about to join it). An
/// expression and a NOT requirement can't be satisfied; the others add or change what they
/// name, with the boxes of each failure. On success the requirement is marked satisfied by the
/// user and true comes back.
bool insertPrereq(SatisfyContext& context, ListInfo* list, Prereq& prereq, Item& item);

/// Tries each requirement of `prereqs` that doesn't hold for the item. Returns how many were
/// satisfied.
int satisfyPrereqs(SatisfyContext& context, ListInfo* list, Item& item,
                   std::vector<Prereq>& prereqs);

}  // namespace zv
