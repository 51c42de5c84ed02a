// Feeds the input to the $ preprocessor of script expressions, with a current item and option,
// a few variables (one with a base value, one holding a double quote) and a list for the $+
// functions, at the full buffer size and at a small one. Nothing may crash or overrun.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "expr/symbols.h"
#include "script/expand/expand.h"
#include "script/state/script_run.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 12000) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);

  zv::FileInfo sheet(1, "fuzz.chr", "");
  sheet.gameSystemName = "Fuzzia";
  sheet.symbols = std::make_shared<zv::SymbolTable>();
  sheet.symbols->owner = &sheet;
  zv::ListInfo& list = *sheet.addList();
  list.name = "Skills";
  zv::Item& item = list.appendItem(std::make_unique<zv::Item>(zv::ItemKind::Item, "Cl\"imb"));
  item.level = "3";
  item.value = zv::Value(3);
  auto option = std::make_unique<zv::Option>();
  option->name = "Edge";
  option->value = "?:2;Dull,1;Keen,2;";
  item.options.push_back(std::move(option));
  if (zv::Symbol* stipend = zv::defineVariable(*sheet.symbols, "Stipend", "0")) {
    zv::setBaseValue(*sheet.symbols, *stipend, 10.0);
  }
  zv::SymbolTable context;
  context.owner = &sheet;
  context.nestedTable = sheet.symbols.get();
  zv::defineVariable(context, "quote", "'say \"hi\"'");
  zv::defineVariable(context, "long", "\"" + std::string(900, 'x') + "\"");

  zv::script::ScriptEnvironment environment;
  zv::script::SubroutineList subroutines;
  zv::script::ScriptRun run(environment, sheet, sheet, context, subroutines);
  run.setCurrentItem(&item, item.options.front().get());
  std::string expanded = text;
  zv::script::expandExpression(run, expanded);
  expanded = text;
  zv::script::expandExpression(run, expanded, 40);
  run.setCurrentItem(nullptr);
  expanded = text;
  zv::script::expandExpression(run, expanded);
  return 0;
}
