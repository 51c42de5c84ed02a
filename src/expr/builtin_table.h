#pragma once
// The names of the built-in functions, their ids and the token that tells the compiler how their
// arguments reach them: 6 one, 5 two, 33 three, 55 four, 37 any number (counted at run time).
// The names are reserved: no variable, array, function, local or parameter may take them.

#include <cstdint>
#include <span>
#include <string_view>

namespace zv {

struct BuiltinInfo {
  std::string_view name;
  std::uint8_t id;
  std::uint8_t token;
};

/// The table, sorted by name ignoring case.
std::span<const BuiltinInfo> builtinTable();

/// The built-in of that name, ignoring case; null if there is none.
const BuiltinInfo* findBuiltin(std::string_view name);

/// The number of values a built-in takes off the stack, for the fixed-size tokens; -1 for token 37.
int builtinArity(std::uint8_t token);

}  // namespace zv
