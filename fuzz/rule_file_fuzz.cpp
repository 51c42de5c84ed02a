// Feeds the input to the rule file reader as a `.rules` file of a small game system, with a
// second file beside it that its rules and sets may name. Every set the file names (and its
// "whole-file") is switched on for a sheet and every master item tested against the active
// rules, the offer of the item selection is made, and each rule read is written into an INI text
// and read back: a rule that was read must read back with the same type and texts. Nothing may
// crash.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/ini_file.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/install.h"
#include "rules/selection/apply_rules.h"
#include "rules/selection/rule_library.h"
#include "rules/selection/rule_sets.h"
#include "rules/selection/select_item.h"

namespace {

constexpr const char* kOther =
    "[Rulesets]\nCheap=Cheap\n[Cheap]\nType=Expression\nValue=@cost<=3\nDescription=d\n"
    "[Loop]\nType=Rules List\nValue=Loop;Campaign:Loop\nDescription=d\n";

zv::Item& addMaster(zv::Category& category, const char* name, const char* cat, double cost) {
  zv::Item& item = category.appendItem(std::make_unique<zv::Item>(zv::ItemKind::Item, name));
  item.cat = cat;
  item.cost = cost;
  item.dsid = "CORE";
  return item;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(2000);
  zv::HostInstallation installed(host);
  static const bool rules = (zv::wireItemRules(zv::engine()), true);
  (void)rules;
  zv::engine().preferences.applyRules = true;

  zv::clearGameSystems();
  zv::GameSystem& system = zv::findOrCreateGameSystem("Fuzzland");
  zv::Category& spells = system.findOrAddCategory("Spells");
  addMaster(spells, "Fireball", "Fire", 5).prereq = "Skills:Sword";
  addMaster(spells, "Light", "", 1);
  addMaster(spells, "Light", "", 1);
  zv::Item& group =
      spells.appendItem(std::make_unique<zv::Item>(zv::ItemKind::Sublist, "Forbidden"));
  group.appendChild(std::make_unique<zv::Item>(zv::ItemKind::Item, "Curse")).cat = "Dark";
  spells.rebuildIndex();

  zv::FileInfo sheet;
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  sheet.gameSystem = &system;
  sheet.gameSystemName = "Fuzzland";
  sheet.lists.push_back(std::make_unique<zv::ListInfo>());
  sheet.lists.back()->owner = &sheet;
  sheet.lists.back()->name = "Skills";
  sheet.lists.back()->catName = "Spells";

  zv::RuleLibrary library;
  library.readRuleText("Fuzzland", "/nowhere/Other.rules", kOther);
  library.readRuleText("Fuzzland", "/nowhere/Campaign.rules", text);
  // The file belongs to the game system its [Configuration] names, else to the one asked.
  zv::IniFile head;
  head.parse(text);
  std::string gameSystem = zv::trim(head.get("Configuration", "GameSystem").value_or(""));
  if (gameSystem.empty()) gameSystem = "Fuzzland";
  zv::RuleFile* file = library.findFile(gameSystem, "Campaign");
  if (file == nullptr) abort();  // every text is a file, if an empty one

  std::vector<std::string> sets{"(None)", "Campaign:whole-file", "Other:whole-file"};
  for (const zv::RuleSetDef& set : file->ruleSets)
    sets.push_back("Campaign:" + set.name);
  for (const std::string& set : sets) {
    sheet.ruleSet = set;
    zv::ItemSelection selection;
    if (!selection.open(
            zv::SelectionRequest{&sheet, sheet.lists[0].get(), nullptr, true, false, &library})) {
      continue;
    }
    for (std::size_t row = 0; row < selection.rows().size(); ++row)
      (void)selection.follow(row);
  }
  (void)zv::ApplyRulesModel(library, sheet).ruleSetText();

  for (const auto& rule : file->rules) {
    zv::IniFile ini;
    if (!rule->write(ini)) continue;
    zv::RuleLibrary again;
    again.readRuleText("Fuzzland", "/nowhere/Again.rules", ini.text());
    const zv::Rule* back = again.findRule("Fuzzland", rule->name);
    if (back == nullptr || back->typeWord() != rule->typeWord() || back->value != rule->value ||
        back->description != rule->description || back->negated != rule->negated ||
        back->duplicatesOnly != rule->duplicatesOnly) {
      abort();
    }
  }
  sheet.gameSystem = nullptr;
  zv::clearGameSystems();
  return 0;
}
