// Opening and settling a generated 1,000-item sheet, and one level change with everything that
// follows from it through the edit entry point.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "formats/engine_wiring.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/tokens/tokenstream.h"
#include "rules/value/edit.h"
#include "rules/value/level.h"

namespace {

constexpr int kLists = 4;
constexpr int kItemsPerList = 250;

/// A sheet of four lists of 250 items each: cost functions of the level, options on every fifth
/// item, levels that follow the first skill on every tenth, a sublist of ten members in each
/// list, and dialog fields over the list totals.
std::string generatedSheet() {
  std::string text =
      "\"Character Sheet file v. 1\"\ngamesystem Benchmark\nsheettype Hero help \"\"\n"
      "version 253 level 1 maxAttempts 0 rounding 0\ninfo end\ndatafile end\n"
      "define var Might 12 end\n";
  for (int l = 0; l < kLists; ++l) {
    const std::string list = "L" + std::to_string(l);
    text += "list " + list + " var " + list + "Total 0\n";
    for (int i = 0; i < kItemsPerList - 11; ++i) {
      const std::string name = list + "S" + std::to_string(i);
      std::string level = std::to_string(1 + i % 7);
      if (i % 10 == 5) level = "L0S0+" + std::to_string(i % 3);
      text += "item " + name + " formula \"x*2+1\" varname " + name;
      if (i % 5 == 0) text += " opt frac Hard \"+1/2\" add Extra \"+1\" end";
      text += " level \"" + level + "\"\n";
    }
    text += "sublist Pack" + list + " memlist\n";
    for (int i = 0; i < 10; ++i)
      text +=
          "item Thing" + list + "_" + std::to_string(i) + " cost " + std::to_string(i + 1) + "\n";
    text += "end childcostsseparate cost 2\nend\n";
  }
  text += "dialog Main 300 200\n";
  text += "formula \"L0Total+L1Total+L2Total+L3Total\" 10 10 80 20 right Spent\n";
  text += "editvar \"100\" 10 40 80 20 Budget\n";
  text += "formula \"Budget-Spent\" 10 70 80 20 right Left\nend\nend\n";
  return text;
}

struct Environment {
  Environment() : installed(host) {
    static const bool once = (zv::wireEngineServices(zv::engine()), true);
    (void)once;
  }
  zv::HeadlessHost host{nullptr};
  zv::HostInstallation installed;
};

std::unique_ptr<zv::FileInfo> openGenerated(const std::string& text) {
  auto sheet = std::make_unique<zv::FileInfo>();
  sheet->fileType = 1;
  sheet->name = "bench.chr";
  zv::MemoryByteStream input(text);
  zv::SheetReadOptions options;
  options.symbols = &zv::exprSheetSymbols();
  options.loadData = false;
  options.settle = zv::settleSheetLevels;
  options.applyOptions = zv::applyItemOptions;
  if (!zv::readCharsheet(*sheet, input, options)) return nullptr;
  return sheet;
}

void BM_OpenAndSettleSheet(benchmark::State& state) {
  Environment environment;
  const std::string text = generatedSheet();
  for (auto _ : state) {
    std::unique_ptr<zv::FileInfo> sheet = openGenerated(text);
    if (!sheet) {
      state.SkipWithError("the generated sheet didn't read");
      break;
    }
    benchmark::DoNotOptimize(sheet->lists.front()->total);
  }
  state.SetItemsProcessed(state.iterations() * kLists * kItemsPerList);
}
BENCHMARK(BM_OpenAndSettleSheet)->Unit(benchmark::kMillisecond);

void BM_LevelChangeThroughEdit(benchmark::State& state) {
  Environment environment;
  std::unique_ptr<zv::FileInfo> sheet = openGenerated(generatedSheet());
  if (!sheet) {
    state.SkipWithError("the generated sheet didn't read");
    return;
  }
  // The first skill: 100 items in four lists follow it, and every list total with them.
  zv::Item& first = *sheet->lists.front()->items.front();
  int level = 0;
  for (auto _ : state) {
    const std::string text = std::to_string(1 + level++ % 9);
    if (zv::changeItemLevel(*sheet, first, text) != zv::EditResult::Changed) {
      state.SkipWithError("the level change was refused");
      break;
    }
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LevelChangeThroughEdit)->Unit(benchmark::kMicrosecond);

}  // namespace
