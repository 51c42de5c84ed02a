#include "cli/open_sheet.h"

#include "formats/sheet_document.h"

namespace zv::cli {

std::unique_ptr<FileInfo> openSheet(const std::string& path) {
  DocumentContext context;
  return openSheetFile(path, context);
}

}  // namespace zv::cli
