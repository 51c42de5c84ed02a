#pragma once
// Writing a filter back (Page Setup): the header lines in a fixed order, then the body.

#include <filesystem>
#include <string>

#include "filter/file/filter_document.h"

namespace zv {

/// The bytes saveFilter writes: "@gamesystem %s\r\n", "@description %s\r\n" if any,
/// "@sheettype %s\r\n" if any, "@margins %d %d %d %d\r\n", "@tabwidth %d\r\n",
/// "@columns %d %d\r\n", "@face %s\r\n", "@fontinfo %d %x %x %x\r\n", "@parinfo %d %d\r\n",
/// "@leftindent %d\r\n", "@deftab %d\r\n", "@clipformat %s\r\n" if any, "@landscape 1\n" if set,
/// "@extension %s\r\n" if any, "@sortexp %s\r\n" and "@sortorder %d\r\n" with a sort
/// expression, "@tabs" with " %d %d" per stop (alignment, position) if any, one "@trans " line
/// per entry ending in a bare LF, and the body. Every measure is written as bare twips.
std::string filterFileText(const FilterDocument& document);

/// Writes the filter to a temporary file beside `path` and puts it in the file's place. On
/// failure ("Error writing file %s" or "Error renaming filter file %s") the old file is intact
/// and no temporary remains.
bool saveFilter(const std::filesystem::path& path, const FilterDocument& document);

}  // namespace zv
