#pragma once
// The interface between the evaluator and the built-in functions. The evaluator takes a call's
// arguments off its stack, first argument first, and hands them to the function registered for
// the built-in's id; the function leaves its result in `result` and returns 0 or a negative error
// code (storing a name in the error record where its text needs one, see expr_error.h).

#include <vector>

#include "core/record_types.h"
#include "core/value.h"

namespace zv {

struct BuiltinCall {
  SymbolTable& table;  ///< the table the code runs in
  Item* item;          ///< the current item, else the table's current item; may be null
  std::vector<Value>&
      args;       ///< the arguments in source order; the function may change or move them
  Value& result;  ///< integer 0 on entry
};

/// A built-in function: 0 on success, or a negative error code of expr_error.h.
using BuiltinFunction = int (*)(BuiltinCall&);

/// Makes `fn` the function called for the built-in `id` (0 to 74), in place of the standard one
/// of builtins.h (null puts the standard one back). A built-in whose id has no function gives
/// integer 0.
void registerBuiltin(int id, BuiltinFunction fn);
/// The function called for `id`: the registered one, else the standard one, else null.
BuiltinFunction registeredBuiltin(int id);

}  // namespace zv
