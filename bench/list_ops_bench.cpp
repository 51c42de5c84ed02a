// Adding 1,000 items to a sheet one by one, as a user picks them: each copy placed at the end of
// its list with its level and cost, its automatic items where it has some, and the propagation
// to the list totals and the formulas that read them.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "formats/engine_wiring.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "rules/lists/place_item.h"

namespace {

constexpr int kMasters = 50;
constexpr int kAdds = 1000;

struct Environment {
  Environment() : installed(host), system("Benchmark") {
    static const bool once = (zv::wireEngineServices(zv::engine()), true);
    (void)once;
    // Skills with cost functions, one in ten following the first; every tenth brings a piece of
    // gear with it.
    zv::Category& skills = system.findOrAddCategory("Skills");
    for (int i = 0; i < kMasters; ++i) {
      auto item = std::make_unique<zv::Item>(zv::ItemKind::Item, "S" + std::to_string(i));
      item->cat = "Skills";
      item->formula = "x*2+1";
      item->varName = item->name;
      item->level = i % 10 == 5 ? "S0+1" : std::to_string(1 + i % 5);
      if (i % 10 == 0) item->autoitems = "?list:Gear;?cat:Gear;?charge;Rope;";
      skills.appendItem(std::move(item));
    }
    auto rope = std::make_unique<zv::Item>(zv::ItemKind::Item, "Rope");
    rope->cost = 1;
    rope->totalCost = 1;
    system.findOrAddCategory("Gear").appendItem(std::move(rope));
    for (auto& category : system.categories)
      category->rebuildIndex();
  }

  /// A sheet with the lists Skills and Gear, whose totals a formula adds up.
  std::unique_ptr<zv::FileInfo> freshSheet() {
    auto sheet = std::make_unique<zv::FileInfo>();
    sheet->fileType = 1;
    sheet->gameSystem = &system;
    sheet->symbols = std::make_shared<zv::SymbolTable>();
    sheet->symbols->owner = sheet.get();
    for (const char* name : {"Skills", "Gear"}) {
      zv::ListInfo& list = *sheet->addList();
      list.name = name;
      list.catName = name;
      list.totalVarName = std::string(name) + "Total";
      list.totalSymbol = zv::defineVariable(*sheet->symbols, list.totalVarName.str(), "0");
    }
    zv::defineVariable(*sheet->symbols, "Spent", "SkillsTotal+GearTotal");
    zv::defineVariable(*sheet->symbols, "Left", "500-Spent");
    return sheet;
  }

  zv::HeadlessHost host{nullptr};
  zv::HostInstallation installed;
  zv::GameSystem system;
};

void BM_AddThousandItems(benchmark::State& state) {
  Environment environment;
  zv::Category& skills = *environment.system.findCategory("Skills");
  for (auto _ : state) {
    state.PauseTiming();
    std::unique_ptr<zv::FileInfo> sheet = environment.freshSheet();
    zv::ListInfo& list = *sheet->lists.front();
    state.ResumeTiming();
    for (int i = 0; i < kAdds; ++i) {
      const zv::PlaceResult placed =
          zv::placeItem(*sheet, list, skills.items[static_cast<std::size_t>(i % kMasters)]->clone(),
                        zv::Placement::appendTo());
      if (placed.status != zv::PlaceStatus::Placed) {
        state.SkipWithError("an add failed");
        return;
      }
    }
    benchmark::DoNotOptimize(sheet->symbols->find("Left")->value);
    state.PauseTiming();
    sheet.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kAdds);
}
BENCHMARK(BM_AddThousandItems)->Unit(benchmark::kMillisecond);

}  // namespace
