#pragma once
// The process-wide registries of the sheet model: the chain of game systems (newest first) with
// the built-in record for the empty name, the counter of data sheet ids, and the sheet registry
// that finds an open sheet by its sheetId.

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/game_system.h"

namespace zv {

/// The game system of that name, ignoring case; the built-in record for the empty name; null if
/// none is known.
GameSystem* findGameSystem(std::string_view name);
/// The game system of that name, created at the head of the chain if it is new.
GameSystem& findOrCreateGameSystem(std::string_view name);
/// The single record of the empty name; it is never in the chain.
GameSystem& builtinGameSystem();
/// The game systems of the chain, newest first.
std::vector<GameSystem*> gameSystems();
/// Frees every game system and resets the built-in record (at exit, and between tests).
void clearGameSystems();

/// The category of the sheet's game system with that name (ignoring case), or null.
Category* categoryFind(const FileInfo& fileInfo, std::string_view name);

/// The next id of a loaded data sheet: 1, 2, 3, ... for the life of the process.
std::int32_t nextDataSheetId();

/// The next sheet id: a counter that only grows, starting at 1.
std::int32_t nextSheetId();
/// Enters the sheet in the registry, giving it the next sheet id unless it has one. Returns the id.
std::int32_t registerSheet(FileInfo& fileInfo);
/// The open sheet with that id, or null.
FileInfo* findSheet(std::int32_t sheetId);
/// Every open sheet of the registry, in the order of their ids.
std::vector<FileInfo*> openSheets();
/// Takes the sheet out of the registry (if it is the one registered under its id).
void unregisterSheet(const FileInfo& fileInfo);

}  // namespace zv
