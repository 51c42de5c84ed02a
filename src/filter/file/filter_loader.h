#pragma once
// Loading a filter file: its header commands into the document, every other line into the body.

#include <filesystem>
#include <string_view>

#include "core/record_types.h"
#include "filter/file/filter_document.h"

namespace zv {

/// Whether a load keeps the body or stops where the header ends (Page Setup reads only the
/// header).
enum class FilterLoadMode { Whole, HeaderOnly };

/// The longest line the loader reads at once; a longer line is read in pieces of this length.
inline constexpr std::size_t kFilterLoadLineLength = 1023;

/// Loads a filter from its text. `name` is the file name that messages show. With a sheet,
/// @gamesystem and @sheettype must match it. On failure the reason has been shown and the
/// document is left empty.
bool loadFilterText(const FileInfo* sheet, std::string_view text, std::string_view name,
                    FilterDocument& document, FilterLoadMode mode);

/// Loads the filter file at `path`; a file that can't be read gives "The file '%s' does not
/// exist." titled "File Not Found".
bool loadFilter(const FileInfo* sheet, const std::filesystem::path& path, FilterDocument& document,
                FilterLoadMode mode);

/// Reads a whole file; false when it can't be opened.
bool readWholeFile(const std::filesystem::path& path, std::string& bytes);

}  // namespace zv
