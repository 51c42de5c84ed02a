// Built-in functions on the variables of a game system: values that every sheet of the game
// system shares, kept in the game system's own table.

#include <memory>
#include <string>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// The game system's table of the sheet the code runs for, created on first use; null when the
/// code runs for no sheet or the sheet has no game system.
SymbolTable* gameSystemTable(const BuiltinCall& call) {
  FileInfo* sheet = call.table.owner;
  if (!sheet || !sheet->gameSystem) return nullptr;
  GameSystem& system = *sheet->gameSystem;
  if (!system.symbols) {
    system.symbols = std::make_shared<SymbolTable>();
    system.symbols->owner = &system.master;
    system.master.symbols = system.symbols;
  }
  return system.symbols.get();
}

/// The global variable of that name, defined as "0" when it doesn't exist yet.
Symbol* globalVariable(SymbolTable& globals, const std::string& name) {
  if (Symbol* existing = globals.findHere(name)) return existing;
  return defineVariable(globals, name, "0");
}

}  // namespace

int builtinGetglobal(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  std::string name;
  if (!textArgument(call, 0, name)) return fail(kExprBadIndexing);
  call.result = Value(0);
  SymbolTable* globals = gameSystemTable(call);
  if (!globals) return 0;
  Symbol* variable = globalVariable(*globals, name);
  if (variable) getValue(*variable, call.result);
  return 0;
}

int builtinSetglobal(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string name;
  if (!textArgument(call, 0, name)) return fail(kExprBadIndexing);
  call.result = Value(0);
  SymbolTable* globals = gameSystemTable(call);
  if (!globals) return 0;
  Symbol* variable = globalVariable(*globals, name);
  if (variable && setValue(*globals, *variable, call.args[1]) == 0) call.result = Value(1);
  return 0;
}

}  // namespace zv
