#pragma once
// The user's preferences that decide what happens to a value the rules refuse. The desktop
// program installs the user's choices; the defaults are those of a fresh installation.

#include "core/app_settings.h"

namespace zv {

struct RulePreferences {
  /// "CheckReq" ("Check When Adding"): levels and requirements are checked when they change.
  bool checkReq = true;
  /// "DisallowIfNotSatisfied": a refused value is never taken; the box has OK only.
  bool disallowIfNotSatisfied = false;
  /// "NoBadValueDlg": a refused value only beeps, with no box.
  bool noBadValueDlg = false;
  /// "ApplyRules": the selection rule sets of a sheet trim what the item selection offers.
  bool applyRules = false;
};

/// The preferences as the program's settings give them.
RulePreferences rulePreferencesFrom(const AppSettings& settings);

/// Installs the preferences and returns the previous ones.
RulePreferences setRulePreferences(const RulePreferences& preferences);
const RulePreferences& rulePreferences();

}  // namespace zv
