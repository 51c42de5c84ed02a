#pragma once
// Loading data sheets into the process-wide game systems and taking them out again. Everything a
// data sheet brings (items, options, definitions) is tagged with the id of its OpenDataSheet, so
// that one data sheet can be unloaded alone. Loading a name that is loaded reloads it.
//
// The desktop program and the CLI call these; scripts and sheets reach them through
// ensureDataSheet. Messages are shown through the host; callers stay silent.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/settings.h"
#include "formats/sheet/sheet_reader.h"

namespace zv {

/// The short form of a data sheet name: its last component, "/", "\" and ":" all separating.
std::string dataSheetShortName(std::string_view name);

/// Loads the data sheet at `fullPath` under `shortName`: a loaded sheet of that name is unloaded
/// first, the file is read (text through the macro processor), the sheets it names in its
/// `datafile` block are ensured, and its definitions merge into the open sheets of its game system.
/// False after the reason was shown; a failed load leaves no item, option or definition behind.
bool loadDataSheet(const std::filesystem::path& fullPath, std::string_view shortName);

/// Makes sure the data sheet `name` is loaded, for a sheet or script. A name equal to the sheet's
/// own is skipped. With `addToFileInfo` the name joins fileInfo->dataFiles. A file missing from
/// `dataDir` shows "Data Sheet Not Found" and gives false; the caller goes on. `fileInfo` may be
/// null (dependencies of a data sheet).
bool ensureDataSheet(FileInfo* fileInfo, std::string_view name, bool addToFileInfo);

/// Unloads the data sheet of that short name from the game system; false when it isn't loaded.
/// Its items go from every category (items of other data sheets in a shared sublist stay), its
/// options from the option tree (groups stay), its definitions from the game system.
bool unloadDataSheet(std::string_view gameSystemName, std::string_view shortName);
/// The same by the data sheet's id.
bool unloadDataSheetById(GameSystem& system, std::int32_t id);

/// Unloads every data sheet of every game system and loads them again from `dataDir`.
void reloadAllDataSheets();
/// Frees every game system and its contents, points the open sheets at fresh records of their
/// game systems, and loads the default data sheets again.
void clearAllDataSheets(const Settings& settings);

/// The names of the default data sheets: "datasheet%d" of section "Data Sheets" from 0, up to the
/// first empty or missing entry.
std::vector<std::string> defaultDataSheetNames(const Settings& settings);
/// Writes the defaults as "datasheet%d" in order, then an empty entry behind the last one.
bool writeDefaultDataSheetNames(Settings& settings, const std::vector<std::string>& names);
/// Loads each default data sheet from `dataDir` (the start-up step). One that can't be opened
/// shows "Cannot open data sheet '%s'." and the next is tried. Returns how many loaded.
int loadDefaultDataSheets(const Settings& settings);

/// The loaded data sheet of that name (compared by short form, ignoring case) in any game system,
/// with its game system in `gameSystem` when given; null when none is loaded. An empty name
/// shows "%s is a bad data sheet name".
OpenDataSheet* findLoadedDataSheet(std::string_view name, GameSystem** gameSystem = nullptr);

/// Sets up a sheet read so that the data sheets named in its `datafile` block are ensured as they
/// are read (a missing one warns once per name and stays listed in the sheet). Use one options
/// record per read.
void enableDataSheetLoading(SheetReadOptions& options);

/// How many loads are under way (nested loads count each); 0 when none.
int dataSheetLoadDepth();

}  // namespace zv
