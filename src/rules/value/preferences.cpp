#include "rules/value/preferences.h"

namespace zv {

namespace {

RulePreferences& installedPreferences() {
  static RulePreferences preferences;
  return preferences;
}

}  // namespace

RulePreferences rulePreferencesFrom(const AppSettings& settings) {
  return {settings.checkReq, settings.disallowIfNotSatisfied, settings.noBadValueDlg,
          settings.applyRules};
}

RulePreferences setRulePreferences(const RulePreferences& preferences) {
  RulePreferences previous = installedPreferences();
  installedPreferences() = preferences;
  return previous;
}

const RulePreferences& rulePreferences() {
  return installedPreferences();
}

}  // namespace zv
