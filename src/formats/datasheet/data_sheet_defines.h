#pragma once
// What the loader does with the definitions of a data sheet, and how it takes away everything a
// data sheet brought.

#include <cstdint>
#include <vector>

#include "core/basic_records.h"
#include "core/game_system.h"

namespace zv {

/// The definitions of a data sheet that has just loaded: each is defined in the game system's
/// table (one whose key an earlier data sheet defined stays without a symbol there), offered to
/// every open sheet of the game system (a sheet's own definition wins), and appended to the game
/// system's defines.
void addDataSheetDefinitions(GameSystem& system, std::vector<DefineRec> definitions);

/// Removes every trace of data sheet `id`: its items from every category (a sublist stays unless
/// it adds its whole list), its option leaves (groups stay), its definitions with their symbols.
/// The lookup indexes are rebuilt.
void removeDataSheetTraces(GameSystem& system, std::int32_t id);

/// Frees the game system's table of definitions.
void freeDataSheetSymbols(GameSystem& system);

}  // namespace zv
