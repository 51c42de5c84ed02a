#pragma once
// Running a filter file over a sheet: choosing the filter (a name given, the sheet's own, or the
// user's choice), loading it for the sheet and running its body.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "filter/file/filter_document.h"
#include "filter/file/filter_scan.h"
#include "filter/run/filter_context.h"

namespace zv {

/// The titles of the two choices of a filter: the one offered while "AskForFilters" is on
/// ("askForFilter"), and the one for a sheet that names no filter ("GetFiltersDlg").
inline constexpr std::string_view kAskForFilterTitle = "Select Filter";
inline constexpr std::string_view kGetFiltersTitle = "Choose a Filter";

/// The path of a filter named by `name`: a bare name is looked for in the data directory
/// (ignoring case), anything with a directory stands as it is.
std::filesystem::path filterPath(const FilterContext& context, std::string_view name);

/// The filter a run over the sheet uses: `forcedName` when given; otherwise, with
/// askForFilters, the user's choice among the game system's filters with the sheet's own chosen
/// at first; otherwise the sheet's own, or when it has none the user's choice. nullopt when the
/// user cancelled or there is no filter to offer (after "There are no filters for the %s game
/// system.").
std::optional<std::filesystem::path> chooseFilter(const FileInfo& sheet,
                                                  const FilterContext& context,
                                                  std::string_view forcedName);

/// Chooses the filter, loads it for the sheet into `document` and runs it. Before the run the
/// sheet's variable "outputFileName" is removed. nullopt when no filter was chosen, the filter
/// didn't load or its run failed (the reason has been shown).
std::optional<std::string> runFilterFile(FileInfo& sheet, FilterDocument& document,
                                         std::string_view forcedName,
                                         const FilterRunOptions& options, FilterContext& context);

}  // namespace zv
