// Built-in functions on maps: named stores of values under text keys, kept by the symbol table
// the code runs in and created on the first putmap. Names and keys ignore case.

#include <string>

#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// The map of that name in the call's table, or null when there is none.
SymbolTable::ValueMap* findMap(BuiltinCall& call, const std::string& name) {
  SymbolTable::Maps* maps = call.table.maps();
  if (!maps) return nullptr;
  auto found = maps->find(name);
  return found == maps->end() ? nullptr : &found->second;
}

}  // namespace

int builtinPutmap(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  std::string map, key;
  if (!textArgument(call, 0, map) || !textArgument(call, 1, key)) return fail(kExprBadIndexing);
  call.table.ensureMaps()[map][key] = call.args[2];
  call.result = Value(0);
  return 0;
}

int builtinGetmap(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string map, key;
  if (!textArgument(call, 0, map) || !textArgument(call, 1, key)) return fail(kExprBadIndexing);
  call.result = Value(0);
  if (SymbolTable::ValueMap* values = findMap(call, map)) {
    if (auto found = values->find(key); found != values->end()) call.result = found->second;
  }
  return 0;
}

int builtinListmap(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string map, separator;
  if (!textArgument(call, 0, map) || !textArgument(call, 1, separator)) {
    return fail(kExprBadIndexing);
  }
  std::string keys;
  if (SymbolTable::ValueMap* values = findMap(call, map)) {
    bool first = true;
    for (const auto& entry : *values) {
      if (!first) keys += separator;
      keys += entry.first;
      first = false;
    }
  }
  call.result = Value(std::move(keys));
  return 0;
}

int builtinClearmap(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  std::string map;
  if (!textArgument(call, 0, map)) return fail(kExprBadIndexing);
  if (SymbolTable::Maps* maps = call.table.maps()) maps->erase(map);
  call.result = Value(0);
  return 0;
}

}  // namespace zv
