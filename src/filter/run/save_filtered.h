#pragma once
// Save As with filtered text: besides the character sheet and template, each filter of the
// sheet's game system is a type of file that the sheet can be saved as, written through that
// filter. The sheet itself stays unsaved then.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/host.h"
#include "filter/run/filter_context.h"
#include "formats/sheet_document.h"

namespace zv {

/// The types of the Save As dialog: "Character Sheet" (*.chr), "Character Template" (*.cst),
/// then one per filter of the game system, "<description>" with the filter's @extension ("txt"
/// when it names none). `filterFiles[i]` is the filter of type i + 2.
struct SaveAsTypes {
  std::vector<FileFilter> types;
  std::vector<std::string> filterFiles;
};
SaveAsTypes saveAsTypes(const FileInfo& sheet, const FilterContext& context);

/// The @extension of a filter file, read from its header; "" when it names none.
std::string filterExtension(const std::filesystem::path& path);

/// Writes filter output to `target` under its own name: through a temporary file beside it, so
/// that a failed write leaves the old file as it was, and with no backup. "Unable to create
/// character sheet %s." when the file can't be made, "No disk space to write file %s" when the
/// bytes don't all reach it.
bool writeFilteredFile(const std::filesystem::path& target, std::string_view bytes);

/// Runs the filter over the sheet and writes its output to `target`; the sheet stays unsaved.
bool saveFilteredText(FileInfo& sheet, std::string_view filterFile,
                      const std::filesystem::path& target, const FilterRunOptions& options,
                      FilterContext& context);

/// Save As of a sheet or template through the host's Save dialog with the filtered text types:
/// a document type writes the document (formats' rules: temporary file and backup), a filter type
/// writes the filter's output. False when cancelled or failed.
bool saveSheetAs(FileInfo& sheet, const DocumentContext& document, const FilterRunOptions& options,
                 FilterContext& context);

}  // namespace zv
