#include "rules/selection/apply_rules.h"

#include "core/list_total.h"
#include "core/text.h"
#include "rules/selection/rule_sets.h"

namespace zv {

namespace {

bool names(const RuleSetReference& reference, const RuleFile& file, std::string_view set) {
  return equalsIgnoringCase(reference.set, set) &&
         (reference.file.empty() || file.isNamed(reference.file));
}

}  // namespace

ApplyRulesModel::ApplyRulesModel(const RuleLibrary& library, const FileInfo& sheet) {
  choices_.push_back(
      RuleSetChoice{"", std::string(kNoRuleSet), std::string(kNoRuleSet), "", false});
  const std::vector<RuleSetReference> references = ruleSetReferences(sheet.ruleSet);
  auto isOn = [&](const RuleFile& file, std::string_view set) {
    for (const RuleSetReference& reference : references) {
      if (names(reference, file, set)) return true;
    }
    return false;
  };
  bool any = false;
  for (const RuleFile* file : library.filesOf(sheet.gameSystemName.str())) {
    for (const RuleSetDef& set : file->ruleSets) {
      const bool on = isOn(*file, set.name);
      any = any || on;
      choices_.push_back(RuleSetChoice{file->shortName, set.name,
                                       set.name + " (" + file->shortName + ")", set.list, on});
    }
    const bool whole = isOn(*file, kWholeFileRuleSet);
    any = any || whole;
    choices_.push_back(RuleSetChoice{file->shortName, std::string(kWholeFileRuleSet),
                                     std::string(kWholeFileRuleSet) + " (" + file->shortName + ")",
                                     "", whole});
  }
  choices_.front().on = !any;
}

void ApplyRulesModel::toggle(std::size_t index) {
  if (index >= choices_.size()) return;
  RuleSetChoice& choice = choices_[index];
  choice.on = !choice.on;
  if (index == 0 && choice.on) {
    for (std::size_t i = 1; i < choices_.size(); ++i)
      choices_[i].on = false;
    return;
  }
  bool any = false;
  for (std::size_t i = 1; i < choices_.size(); ++i)
    any = any || choices_[i].on;
  choices_.front().on = !any;
}

std::string ApplyRulesModel::ruleSetText() const {
  std::string text;
  for (std::size_t i = 1; i < choices_.size(); ++i) {
    if (!choices_[i].on) continue;
    if (!text.empty()) text += ';';
    text += choices_[i].file + ":" + choices_[i].set;
  }
  return text;
}

bool ApplyRulesModel::apply(FileInfo& sheet) const {
  const std::string text = ruleSetText();
  if (text == sheet.ruleSet) return false;
  sheet.ruleSet = text;
  setChanged(sheet, true);
  return true;
}

}  // namespace zv
