#pragma once
// The quick scan of filter files, for the lists of available filters and the file recogniser:
// only the @gamesystem and @description lines are looked at.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct FilterSummary {
  bool isFilter = false;   ///< at least one of @gamesystem and @description was seen
  std::string gameSystem;  ///< kept in 24 characters
  std::string description;
};

/// The longest line the scan reads at once.
inline constexpr std::size_t kFilterScanLineLength = 511;

/// Scans a filter's text until both lines have been seen.
FilterSummary scanFilterText(std::string_view text);
/// Scans a file; a file that can't be read is no filter.
FilterSummary scanFilterFile(const std::filesystem::path& path);

/// The recogniser's check of a ".flt" file: the quick scan finds @gamesystem or @description.
inline bool filterHeaderReads(const std::filesystem::path& path) {
  return scanFilterFile(path).isFilter;
}

/// A filter offered to the user: its file name (in the data directory) and what its scan says.
struct AvailableFilter {
  std::string fileName;
  FilterSummary summary;
};

/// The "*.flt" files of the data directory (the extension ignoring case) that are filters for
/// the game system: those whose @gamesystem names it (ignoring case) and those that name none.
/// Sorted by file name, ignoring case.
std::vector<AvailableFilter> filtersForGameSystem(const std::filesystem::path& dataDir,
                                                  std::string_view gameSystem);

}  // namespace zv
