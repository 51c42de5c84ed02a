#include "cli/open_sheet.h"

#include "core/messages.h"
#include "core/paths.h"
#include "formats/data_sheet_loader.h"
#include "formats/dispatch.h"
#include "formats/expr_sheet_symbols.h"
#include "formats/file_recognition.h"
#include "formats/sheet_reader.h"
#include "formats/tokenstream.h"
#include "rules/install.h"
#include "rules/level.h"

namespace zv::cli {

std::unique_ptr<FileInfo> openSheet(const std::string& path) {
  Recognition recognition = recogniseFile(path);
  if (recognition.code == kFileCannotOpen) {
    showTitled(Severity::Error, "File Not Found", strprintf("The file '%s' does not exist.", path));
    return nullptr;
  }
  if (recognition.code == kFileReportedAlready) return nullptr;
  if (recognition.code != kFileCharacterSheet && recognition.code != kFileCharacterTemplate) {
    showError(strprintf("File %s is not a character sheet file.", path));
    return nullptr;
  }
  FileByteStream input(path, FileByteStream::Mode::Read);
  if (!input.isOpen()) {
    showError(strprintf("Can't open character sheet %s.", path));
    return nullptr;
  }
  // List totals reach their variables, and item fields read options by the item rules, for as
  // long as the program runs; installed once.
  static const bool rulesInstalled = (installListTotalVariables(), installItemRules(), true);
  (void)rulesInstalled;

  auto sheet = std::make_unique<FileInfo>();
  sheet->fileType = recognition.code;
  sheet->name = shortFileName(path);
  sheet->path = path;
  SheetReadOptions options;
  options.symbols = &exprSheetSymbols();
  options.settle = settleSheetLevels;
  options.applyOptions = applyItemOptions;
  enableDataSheetLoading(options);
  if (!readCharsheet(*sheet, input, options)) return nullptr;
  return sheet;
}

bool isDataSheetFile(const std::string& path) {
  const int code = recogniseFile(path).code;
  return code == kFileDataSheet || code == kFileMacroDataSheet;
}

}  // namespace zv::cli
