// Compiled expression evaluation: a typical cost formula over variables, and the compile-and-run
// path that item formulas take.

#include <benchmark/benchmark.h>

#include "core/headless_host.h"
#include "expr/compiler.h"
#include "expr/evaluator.h"
#include "expr/symbols.h"

namespace {

struct Sheet {
  Sheet() : installed(host) {
    zv::defineVariable(table, "level", "3");
    zv::defineVariable(table, "strength", "12");
    zv::defineVariable(table, "dexterity", "10.5");
    formula = zv::defineVariable(table, "cost", "(level * 5 + strength / 2) * 1.5 - &level");
  }
  zv::HeadlessHost host{nullptr};
  zv::HostInstallation installed;
  zv::SymbolTable table;
  zv::Symbol* formula = nullptr;
};

void BM_EvaluateCostFormula(benchmark::State& state) {
  Sheet sheet;
  zv::Value result;
  for (auto _ : state) {
    int error = zv::evaluate(&sheet.table, sheet.formula->name, sheet.formula->code, result);
    benchmark::DoNotOptimize(error);
    benchmark::DoNotOptimize(result);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EvaluateCostFormula);

void BM_EvaluateConditional(benchmark::State& state) {
  Sheet sheet;
  zv::Code code;
  bool isConstant = false;
  zv::compileExpression(&sheet.table, "level > 2 ? strength * 2 : dexterity + 1", code, {},
                        isConstant);
  zv::Value result;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zv::evaluate(&sheet.table, "Expression", code, result));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EvaluateConditional);

void BM_ParseExp(benchmark::State& state) {
  Sheet sheet;
  zv::Value result;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        zv::parseExp(&sheet.table, "(level * 5 + strength / 2) * 1.5 - &level", result));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ParseExp);

void BM_LevelChangePropagation(benchmark::State& state) {
  Sheet sheet;
  for (int i = 0; i < 50; ++i) {
    zv::defineVariable(sheet.table, "skill" + std::to_string(i), "level * 2 + strength");
  }
  zv::Symbol* level = sheet.table.find("level");
  std::int32_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zv::setValue(sheet.table, *level, zv::Value(++next % 20)));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LevelChangePropagation);

}  // namespace

namespace {

// A chain v0 <- v1 <- ... <- vN: a change of v0 travels through every link, depth first.
void BM_PropagationChain(benchmark::State& state) {
  Sheet sheet;
  const int links = static_cast<int>(state.range(0));
  zv::defineVariable(sheet.table, "v0", "1");
  for (int i = 1; i <= links; ++i) {
    zv::defineVariable(sheet.table, "v" + std::to_string(i), "v" + std::to_string(i - 1) + " + 1");
  }
  zv::Symbol* head = sheet.table.find("v0");
  zv::Symbol* tail = sheet.table.find("v" + std::to_string(links));
  std::int32_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zv::setValue(sheet.table, *head, zv::Value(++next % 20)));
  }
  if (zv::valueToInteger(tail->value) != next % 20 + links) state.SkipWithError("wrong result");
  state.SetItemsProcessed(state.iterations() * links);
}
BENCHMARK(BM_PropagationChain)->Arg(10000)->Unit(benchmark::kMillisecond);

// A wide fan-out: one variable read by N others.
void BM_PropagationFanOut(benchmark::State& state) {
  Sheet sheet;
  const int readers = static_cast<int>(state.range(0));
  for (int i = 0; i < readers; ++i) {
    zv::defineVariable(sheet.table, "r" + std::to_string(i), "level * 2 + " + std::to_string(i));
  }
  zv::Symbol* level = sheet.table.find("level");
  std::int32_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zv::setValue(sheet.table, *level, zv::Value(++next % 20)));
  }
  state.SetItemsProcessed(state.iterations() * readers);
}
BENCHMARK(BM_PropagationFanOut)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
