// The requirement test of an item over a list of a few hundred items, and the die roller on a
// specification with keeps and repeats.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "core/random.h"
#include "expr/symbols.h"
#include "rules/install.h"
#include "rules/requirements/requirements.h"
#include "utilities/die_roller.h"

namespace {

void BM_PrereqSatisfied(benchmark::State& state) {
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::wireItemRules(zv::engine());
  zv::FileInfo sheet;
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  sheet.lists.push_back(std::make_unique<zv::ListInfo>());
  zv::ListInfo& skills = *sheet.lists.back();
  skills.owner = &sheet;
  skills.name = "Skills";
  for (int i = 0; i < state.range(0); ++i) {
    auto item = std::make_unique<zv::Item>(zv::ItemKind::Item, "Skill" + std::to_string(i));
    item->value = zv::Value(i % 20);
    item->cat = i % 3 == 0 ? "Combat" : "Knowledge;Lore";
    skills.appendItem(std::move(item));
  }
  zv::Item& tested = skills.appendItem(std::make_unique<zv::Item>(zv::ItemKind::Item, "Feat"));
  const std::string text = "#5,Skills:Combat>=12;Skills:Skill7>=7|Skills:Nothing~#2,2,Skills";
  for (auto _ : state) {
    bool held = zv::prereqSatisfied(sheet, &skills, tested, zv::PrereqMode{true, false}, text);
    benchmark::DoNotOptimize(held);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PrereqSatisfied)->Arg(300);

void BM_RollDiceText(benchmark::State& state) {
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::seedRandom(1);
  std::string result;
  for (auto _ : state) {
    bool rolled = zv::evaluateDiceText("3:4d6+2;6*3d6;5p52", result, nullptr);
    benchmark::DoNotOptimize(rolled);
    benchmark::DoNotOptimize(result);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RollDiceText);

}  // namespace
