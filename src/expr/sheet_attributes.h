#pragma once
// The sheet attributes that "@name" reads at compile time in a table that belongs to a sheet:
// the sheet's file name, game system, notes, creation date, today's date and the like.

#include <string_view>

#include "core/record_types.h"
#include "core/value.h"

namespace zv {

/// The version of the data format that this system writes, as "@currentversion" reads it.
inline constexpr int kCurrentDataVersion = 253;

/// The attributes the sheet record itself can answer. Those that belong to a print run
/// (blankcharsheet, pagenumber), to the preferences (checkrequirements) or to the rich text
/// converter (detailshtml, detailsrtf, detailstext) read as 0 or "" until their owners lend a
/// provider of their own through the engine context's `sheetAttribute`. Returns false for an
/// unknown name.
bool basicSheetAttribute(const FileInfo& sheet, std::string_view name, Value& out);

}  // namespace zv
