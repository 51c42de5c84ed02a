#pragma once
// Opening a character sheet or template for a command: recognised, read with the expression
// engine, the data sheets it names loaded (a missing one warns and stays listed), its options
// applied and its levels settled by the item rules.

#include <memory>
#include <string>

#include "core/fileinfo.h"

namespace zv::cli {

/// The sheet or template at `path`, or null after its message was shown.
std::unique_ptr<FileInfo> openSheet(const std::string& path);

/// Whether the file is a data sheet (compiled, text or macro form) by its content.
bool isDataSheetFile(const std::string& path);

}  // namespace zv::cli
