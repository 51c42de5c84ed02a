#pragma once
// The plain text a data sheet prints as: its heading, then a line for each item with the fields
// it has.

#include <string>
#include <string_view>

#include "core/fileinfo.h"

namespace zv {

/// "Datasheet: %s\r\n", "Title: %s\r\n", "Copyright: %s\r\n", "Game System: %s\r\n",
/// "Help File: %s\r\n", then for each item of each category its name and, where present, each of
/// Category, Class, Format, Selection Format, Variable Name, Check Expression, Default Value,
/// Default Formula, Total Cost Formula, Cost, Total Cost, Adjustments, Requirements and
/// Automatic Items as "; %s: %s", then "; Options: " with each option as "%s: " and its value,
/// and " (%s)" with its qualifier, options apart by ", "; each item ends with "\r\n". A data
/// sheet document's categories (the sublists at its root) are walked, not printed.
std::string dataSheetPrintText(const FileInfo& dataSheet);

}  // namespace zv
