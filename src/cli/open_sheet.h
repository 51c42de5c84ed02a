#pragma once
// Opening a character sheet or template for a command: recognised, read with the expression
// engine, the data sheets it names loaded (a missing one warns and stays listed), its options
// applied and its levels settled by the item rules.

#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "core/fileinfo.h"

namespace zv::cli {

/// The sheet or template at `path`, or null after its message was shown.
std::unique_ptr<FileInfo> openSheet(const std::string& path);

/// Writes a sheet or template opened by a command to `target` as `fileType` (1 sheet, 2
/// template), in the form it was read in, through a temporary file and the backup rule (the
/// MakeBackups preference decides the ".bak"). False after the reason was shown.
bool saveOpenedSheet(const Context& context, FileInfo& sheet, const std::string& target,
                     int fileType);

/// Splits a command's arguments into its words and the file named by "-o"/"--output". False
/// after the usage message when "-o" has no file name.
bool splitOutputOption(const std::vector<std::string>& args, std::vector<std::string>& words,
                       std::string& output);

/// The file type that an output name asks for: 1 for ".chr", 2 for ".cst" (ignoring case),
/// otherwise `fallback`.
int fileTypeForOutput(const std::string& target, int fallback);

/// Whether the file is a data sheet (compiled, text or macro form) by its content.
bool isDataSheetFile(const std::string& path);

}  // namespace zv::cli
