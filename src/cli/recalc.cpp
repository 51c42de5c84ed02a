#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "rules/value/recalculate.h"

namespace zv::cli {

// recalc FILE [-o OUT]: opens a sheet or template, runs Recalculate over it and saves it, in
// place or to OUT, through a temporary file and the backup rule. The file keeps the form it was
// read in (templates are always text).
int runRecalc(Context& context, const std::vector<std::string>& args) {
  std::vector<std::string> files;
  std::string output;
  if (!splitOutputOption(args, files, output)) return 2;
  if (files.size() != 1) return usageError("recalc takes one file");

  std::unique_ptr<FileInfo> sheet = openSheet(files[0]);
  if (!sheet) return 1;
  recalculateSheet(*sheet);

  const std::string target = output.empty() ? files[0] : output;
  return saveOpenedSheet(context, *sheet, target, sheet->fileType) ? 0 : 1;
}

}  // namespace zv::cli
