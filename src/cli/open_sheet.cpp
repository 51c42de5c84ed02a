#include "cli/open_sheet.h"

#include "formats/file_recognition.h"
#include "formats/sheet_document.h"

namespace zv::cli {

std::unique_ptr<FileInfo> openSheet(const std::string& path) {
  DocumentContext context;
  return openSheetFile(path, context);
}

bool isDataSheetFile(const std::string& path) {
  const int code = recogniseFile(path).code;
  return code == kFileDataSheet || code == kFileMacroDataSheet;
}

}  // namespace zv::cli
