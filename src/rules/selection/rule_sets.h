#pragma once
// The rule sets that are on for a sheet, and the test of an item against them. A sheet names its
// sets in `ruleset`: entries separated by ";", each "set" or "file:set", where the set
// "whole-file" of a file stands for all its rules and "(None)" for no rules.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "rules/selection/rule_library.h"

namespace zv {

/// The active rules of a sheet, ready to test items. The rules belong to the library: a context
/// is made when an offer is made and must not outlive a change of the library.
struct RuleSetContext {
  FileInfo* sheet = nullptr;
  std::string category;            ///< the category whose items are offered ("" for all)
  std::vector<const Rule*> rules;  ///< the active rules that test (no "Rules List")
  /// The table in which expressions of rules are evaluated: the sheet's, or one of its own.
  std::shared_ptr<SymbolTable> table;

  bool empty() const { return rules.empty(); }
};

/// A sheet's rule set entry resolved: the file (null for an entry that names no file) and set.
struct RuleSetReference {
  std::string file;
  std::string set;
};

/// The entries of a sheet's `ruleset` text, "(None)" and empty ones left out.
std::vector<RuleSetReference> ruleSetReferences(std::string_view ruleSetText);

/// Switches on exactly the rules of the sheet's rule sets (a "Rules List" passing it on to the
/// rules it lists) and gives them as a context; empty when the preference ApplyRules is off or
/// the sheet names no set. An entry that names no set but a rule switches that rule on.
RuleSetContext activeRules(RuleLibrary& library, FileInfo& sheet, std::string_view category);

/// Whether an item may be offered: each active rule in turn, with the item as the current item of
/// an item context, stopping at the first refusal. `previous` is the item row before it that
/// isn't a sublist (null for the first).
bool passesRules(const RuleSetContext& context, Item& item, const Item* previous);

}  // namespace zv
