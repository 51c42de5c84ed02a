// Feeds the input to the expression compiler and evaluator: as a text evaluated in a table that
// holds a few variables, an array and a function, then as the definition of a variable that is
// evaluated again when its inputs change, then deleted. Nothing may crash, leak or hang: loops
// are stopped by the interrupt poll, which the headless host answers with its default, Yes.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/headless_host.h"
#include "expr/compiler.h"
#include "expr/symbols.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  host.setInterruptAfterPolls(2000);
  zv::HostInstallation installed(host);

  zv::SymbolTable table;
  zv::Symbol* level = zv::defineVariable(table, "level", "3");
  zv::defineVariable(table, "name", "\"Sword\"");
  zv::defineArray(table, "costs[]", "1, 2.5, 'three'");
  zv::defineFunction(table, "twice(x)", "x * 2");

  zv::Value out;
  zv::parseExp(&table, text, out);

  if (zv::Symbol* defined = zv::defineVariable(table, "fuzzed", text)) {
    if (level != nullptr) zv::setValue(table, *level, zv::Value(7));
    zv::deleteSymbol(table, *defined);
  }
  return 0;
}
