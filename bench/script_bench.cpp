// Scripts: a foreach that reads and sets the level of every element of a 1,000-item sheet,
// 10,000 passes of a for loop with an assignment, and the expansion of a 1 KB statement with 50
// $$ references.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "formats/engine_wiring.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/tokens/tokenstream.h"
#include "rules/value/level.h"
#include "script/entry/runs.h"
#include "script/expand/expand.h"
#include "script/state/script_run.h"

namespace {

constexpr int kItems = 1000;

/// A sheet of one list of 1,000 items, each with a cost function of its level.
std::string generatedSheet() {
  std::string text =
      "\"Character Sheet file v. 1\"\ngamesystem Benchmark\nsheettype Hero help \"\"\n"
      "version 253 level 1 maxAttempts 0 rounding 0\ninfo end\ndatafile end\n"
      "define var Might 12 end\nlist Items var ItemsTotal 0\n";
  for (int i = 0; i < kItems; ++i) {
    const std::string name = "Item" + std::to_string(i);
    text += "item " + name + " formula \"x*2+1\" varname " + name + " level \"" +
            std::to_string(1 + i % 7) + "\"\n";
  }
  text += "end\ndialog Main 300 200\nformula \"ItemsTotal\" 10 10 80 20 right Spent\nend\nend\n";
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

std::unique_ptr<zv::FileInfo> openGenerated() {
  auto sheet = std::make_unique<zv::FileInfo>();
  sheet->fileType = 1;
  sheet->name = "bench.chr";
  zv::MemoryByteStream input(generatedSheet());
  zv::SheetReadOptions options;
  options.symbols = &zv::exprSheetSymbols();
  options.loadData = false;
  options.settle = zv::settleSheetLevels;
  options.applyOptions = zv::applyItemOptions;
  if (!zv::readCharsheet(*sheet, input, options)) return nullptr;
  return sheet;
}

/// Runs statements as a menu script on the sheet; false when they didn't reach the end.
bool runStatements(zv::script::ScriptEnvironment& environment, zv::FileInfo& sheet,
                   const std::string& text, std::unique_ptr<zv::SymbolTable>& context) {
  zv::script::SubroutineList subroutines;
  return zv::script::runMenuScript(environment, sheet, "bench.scp", text, 0, 1, subroutines,
                                   context)
      .completed;
}

void BM_ForeachReadsAndSetsEveryLevel(benchmark::State& state) {
  Environment environment;
  std::unique_ptr<zv::FileInfo> sheet = openGenerated();
  if (!sheet) {
    state.SkipWithError("the generated sheet didn't read");
    return;
  }
  zv::script::ScriptEnvironment scripts;
  std::unique_ptr<zv::SymbolTable> context;
  const std::string text = "foreach (Items) set level = mod($l, 7) + 1; endforeach";
  for (auto _ : state) {
    if (!runStatements(scripts, *sheet, text, context)) {
      state.SkipWithError("the script stopped");
      break;
    }
  }
  state.SetItemsProcessed(state.iterations() * kItems);
}
BENCHMARK(BM_ForeachReadsAndSetsEveryLevel)->Unit(benchmark::kMillisecond);

void BM_ForLoopWithAnAssignment(benchmark::State& state) {
  Environment environment;
  zv::FileInfo sheet(1, "blank", "");
  sheet.gameSystemName = "Benchmark";
  sheet.gameSystem = &zv::findOrCreateGameSystem("Benchmark");
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  zv::script::ScriptEnvironment scripts;
  std::unique_ptr<zv::SymbolTable> context;
  const std::string text = "s = 0;\nfor (i = 0; i < 10000; i = i + 1)\n  s = s + i * 2;\nendfor";
  for (auto _ : state) {
    if (!runStatements(scripts, sheet, text, context)) {
      state.SkipWithError("the script stopped");
      break;
    }
  }
  state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_ForLoopWithAnAssignment)->Unit(benchmark::kMillisecond);

void BM_ExpandAStatementWithFiftyReferences(benchmark::State& state) {
  Environment environment;
  zv::FileInfo sheet(1, "blank", "");
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  zv::SymbolTable context;
  context.owner = &sheet;
  context.nestedTable = sheet.symbols.get();
  for (int i = 0; i < 50; ++i) {
    zv::defineVariable(context, "value" + std::to_string(i), std::to_string(i * 37));
  }
  zv::script::ScriptEnvironment scripts;
  zv::script::SubroutineList subroutines;
  zv::script::ScriptRun run(scripts, sheet, sheet, context, subroutines);
  std::string statement;
  for (int i = 0; i < 50; ++i) {
    statement += "$$value" + std::to_string(i) + " + ";
  }
  while (statement.size() < 1000)
    statement += "1 + ";
  statement += "0";
  std::string text;
  for (auto _ : state) {
    text = statement;
    if (!zv::script::expandExpression(run, text)) {
      state.SkipWithError("the expansion failed");
      break;
    }
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(statement.size()));
}
BENCHMARK(BM_ExpandAStatementWithFiftyReferences)->Unit(benchmark::kMicrosecond);

}  // namespace
