#pragma once
// What one data sheet file is besides the master data it brings, and what its reader is told.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/basic_records.h"
#include "core/game_system.h"
#include "core/option_tree.h"

namespace zv {

/// The first word of a data sheet; the macro form is read as the same.
inline constexpr std::string_view kDataSheetFirstWord = "Data Sheet file v. 1";
inline constexpr std::string_view kMacroDataSheetFirstWord = "Macro Data Sheet file v. 1";

/// What one data sheet file holds besides the master data it merges into its game system.
struct DataSheetFile {
  std::string name;  ///< the short name, used in messages
  std::filesystem::path path;
  bool binary = false;
  std::int32_t id = 0;  ///< from nextDataSheetId() when read
  GameSystem* gameSystem = nullptr;
  std::string title;
  std::string copyright;
  std::int16_t level = 0;
  PageInfo pageInfo;
  std::vector<std::string> dataFiles;
  std::string logo;
  std::string helpFile;
  std::vector<DefineRec> defines;  ///< read with the sheet's id as sourceId
  std::int32_t cdelay = -1;        ///< `cdelay` from the file; -1 when absent
  /// Names of the strings this file added to its game system (a failed load takes them away).
  std::vector<std::string> stringsAdded;
};

struct DataSheetReadOptions {
  /// Where includes of the macro processor are looked for second.
  std::filesystem::path dataDir;
  /// Finds or creates the game system named by `gamesystem`; empty: the process-wide chain.
  std::function<GameSystem&(std::string_view)> gameSystemFor;
  /// The master data's lookup index is wanted: duplicates of lower priority are removed when
  /// the categories are sorted at the end. Off for a data sheet read as a document.
  bool buildIndex = true;
  /// Called once, at the first block that takes time (`cat`, `options`, `strings`), when the
  /// title and copyright have been read: the loader shows its progress there.
  std::function<void(const DataSheetFile&)> onLongBlock;
  /// Called at each top-level keyword once the progress shows: the loader pumps messages there.
  std::function<void()> pump;
};

}  // namespace zv
