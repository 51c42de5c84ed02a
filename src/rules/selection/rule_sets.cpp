#include "rules/selection/rule_sets.h"

#include "core/engine_context.h"
#include "core/game_system.h"
#include "core/text.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// Switches on every rule an entry names: a set of a file (or of every file when no file is
/// named), all rules of a file for "whole-file", or else a rule of that name.
void activateEntry(RuleLibrary& library, std::string_view gameSystem,
                   const RuleSetReference& reference, const RuleResolver& resolve) {
  std::vector<RuleFile*> files;
  if (!reference.file.empty()) {
    if (RuleFile* file = library.findFile(gameSystem, reference.file)) files.push_back(file);
  } else {
    files = library.filesOf(gameSystem);
  }
  bool found = false;
  for (RuleFile* file : files) {
    if (equalsIgnoringCase(reference.set, kWholeFileRuleSet)) {
      for (const auto& rule : file->rules)
        rule->setActive(true, resolve);
      found = true;
      continue;
    }
    const RuleSetDef* set = file->findRuleSet(reference.set);
    if (set == nullptr) continue;
    found = true;
    for (const std::string& entry : set->entries()) {
      if (Rule* rule = library.resolve(gameSystem, entry, file)) rule->setActive(true, resolve);
    }
    if (!reference.file.empty()) break;
  }
  if (found) return;
  const RuleFile* from = files.empty() ? nullptr : files.front();
  const std::string name =
      reference.file.empty() ? reference.set : reference.file + ":" + reference.set;
  if (Rule* rule = library.resolve(gameSystem, name, from)) rule->setActive(true, resolve);
}

}  // namespace

std::vector<RuleSetReference> ruleSetReferences(std::string_view ruleSetText) {
  std::vector<RuleSetReference> out;
  for (const std::string& part : split(ruleSetText, ';')) {
    const std::string entry = trim(part);
    if (entry.empty() || equalsIgnoringCase(entry, kNoRuleSet)) continue;
    const std::size_t colon = entry.find(':');
    if (colon == std::string::npos) {
      out.push_back(RuleSetReference{{}, entry});
    } else {
      out.push_back(RuleSetReference{trim(std::string_view(entry).substr(0, colon)),
                                     trim(std::string_view(entry).substr(colon + 1))});
    }
  }
  return out;
}

RuleSetContext activeRules(RuleLibrary& library, FileInfo& sheet, std::string_view category) {
  RuleSetContext context;
  context.sheet = &sheet;
  context.category = std::string(category);
  const std::string gameSystem = sheet.gameSystemName.str();
  const std::vector<RuleFile*> files = library.filesOf(gameSystem);
  for (RuleFile* file : files) {
    for (const auto& rule : file->rules)
      rule->active = false;
  }
  if (!engine().preferences.applyRules) return context;

  const RuleResolver resolve = [&](std::string_view reference, const Rule& from) {
    return library.resolve(gameSystem, reference, library.fileOf(from));
  };
  for (const RuleSetReference& reference : ruleSetReferences(sheet.ruleSet)) {
    activateEntry(library, gameSystem, reference, resolve);
  }
  for (RuleFile* file : files) {
    for (const auto& rule : file->rules) {
      if (rule->isActive() && !equalsIgnoringCase(rule->typeWord(), "Rules List")) {
        context.rules.push_back(rule.get());
      }
    }
  }
  context.table = sheet.symbols ? sheet.symbols : std::make_shared<SymbolTable>();
  return context;
}

bool passesRules(const RuleSetContext& context, Item& item, const Item* previous) {
  if (context.rules.empty()) return true;
  ItemContextScope scope(context.sheet, *context.table);
  setCurrentItem(&item, nullptr);
  const RuleTestContext test{context.sheet, context.table.get()};
  for (const Rule* rule : context.rules) {
    if (!rule->allows(test, item, previous)) return false;
  }
  return true;
}

}  // namespace zv
