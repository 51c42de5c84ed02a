// The offer of the item selection over a large category: every master item tested against the
// sheet's rule sets (a category, a name prefix and an expression of the item's cost), and the
// same offer with no rules, as Select Item makes it when it opens or changes category.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "rules/install.h"
#include "rules/selection/rule_library.h"
#include "rules/selection/select_item.h"

namespace {

constexpr const char* kRules =
    "[Rulesets]\nCampaign=NoDark;NoCursed;Cheap\n"
    "[NoDark]\nType=Suppress Category\nValue=Dark\nDescription=d\n"
    "[NoCursed]\nType=Suppress Item Prefix\nValue=Cursed\nDescription=d\n"
    "[Cheap]\nType=Expression\nValue=@cost<=15\nDescription=d\n";

/// A category of `count` master items, every 25th a group of four members.
void fillCategory(zv::Category& category, int count) {
  for (int made = 0; made < count;) {
    if (made % 25 == 24) {
      zv::Item& group = category.appendItem(
          std::make_unique<zv::Item>(zv::ItemKind::Sublist, "Pack " + std::to_string(made++)));
      for (int m = 0; m < 4; ++m, ++made) {
        group.appendChild(
            std::make_unique<zv::Item>(zv::ItemKind::Item, "Member " + std::to_string(made)));
      }
      continue;
    }
    auto item = std::make_unique<zv::Item>(
        zv::ItemKind::Item, (made % 7 == 0 ? "Cursed " : "Item ") + std::to_string(made));
    item->cat = made % 5 == 0 ? "Gear;Dark" : "Gear";
    item->cost = made % 20;
    category.appendItem(std::move(item));
    ++made;
  }
  category.rebuildIndex();
}

void offer(benchmark::State& state, bool withRules) {
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::ScopedEngineContext context;
  zv::wireItemRules(context.context());
  context->preferences.applyRules = withRules;
  zv::clearGameSystems();
  zv::GameSystem& system = zv::findOrCreateGameSystem("Benchland");
  fillCategory(system.findOrAddCategory("Gear"), static_cast<int>(state.range(0)));

  zv::FileInfo sheet;
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  sheet.gameSystem = &system;
  sheet.gameSystemName = "Benchland";
  sheet.ruleSet = "Campaign";
  zv::ListInfo& list = *sheet.addList();
  list.name = "Gear";
  list.catName = "Gear";

  zv::RuleLibrary library;
  library.readRuleText("Benchland", "/bench/Campaign.rules", kRules);
  zv::ItemSelection selection;
  if (!selection.open(zv::SelectionRequest{&sheet, &list, nullptr, false, false, &library})) {
    state.SkipWithError("the selection didn't open");
  }
  for (auto _ : state) {
    selection.refresh();
    benchmark::DoNotOptimize(selection.rows().size());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  sheet.gameSystem = nullptr;
  zv::clearGameSystems();
}

void BM_OfferWithRules(benchmark::State& state) {
  offer(state, true);
}
BENCHMARK(BM_OfferWithRules)->Arg(5000)->Unit(benchmark::kMillisecond);

void BM_OfferWithoutRules(benchmark::State& state) {
  offer(state, false);
}
BENCHMARK(BM_OfferWithoutRules)->Arg(5000)->Unit(benchmark::kMillisecond);

}  // namespace
