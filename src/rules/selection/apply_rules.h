#pragma once
// The ApplyRules dialog without its window: which rule sets exist for a sheet's game system,
// which are on for the sheet, and the sheet's `ruleset` text that the choice makes.

#include <cstddef>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "rules/selection/rule_library.h"

namespace zv {

struct RuleSetChoice {
  std::string file;   ///< the rule file's short name; "" for "(None)"
  std::string set;    ///< the set's name, "whole-file", or "(None)"
  std::string label;  ///< "(None)", or "set (file)"
  std::string rules;  ///< what the set holds, as written ("" for "(None)" and "whole-file")
  bool on = false;
};

class ApplyRulesModel {
 public:
  /// The choices for the sheet: "(None)" first, then for each rule file of its game system its
  /// sets in file order and "whole-file". Those the sheet's `ruleset` names are on; "(None)" is
  /// on when none is.
  ApplyRulesModel(const RuleLibrary& library, const FileInfo& sheet);

  const std::vector<RuleSetChoice>& choices() const { return choices_; }
  /// Turns a choice on or off. Turning "(None)" on turns every set off; turning a set on turns
  /// "(None)" off; with no set left on, "(None)" is on.
  void toggle(std::size_t index);
  /// The sheet's `ruleset` text for the choices: "file:set" entries separated by ";", or "" for
  /// "(None)".
  std::string ruleSetText() const;
  /// OK: stores the text in the sheet, marking it changed when it differs. True when it changed.
  bool apply(FileInfo& sheet) const;

 private:
  std::vector<RuleSetChoice> choices_;
};

}  // namespace zv
