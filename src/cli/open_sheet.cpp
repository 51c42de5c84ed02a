#include "cli/open_sheet.h"

#include "core/text.h"
#include "formats/file_recognition.h"
#include "formats/sheet_document.h"

namespace zv::cli {

std::unique_ptr<FileInfo> openSheet(const std::string& path) {
  DocumentContext context;
  return openSheetFile(path, context);
}

bool saveOpenedSheet(const Context& context, FileInfo& sheet, const std::string& target,
                     int fileType) {
  DocumentContext document;
  document.dataDir = context.dataDir();
  document.binary = sheet.binary();
  document.makeBackups = context.appSettings().makeBackups;
  return writeSheetDocument(sheet, target, fileType, document);
}

bool splitOutputOption(const std::vector<std::string>& args, std::vector<std::string>& words,
                       std::string& output) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "-o" || args[i] == "--output") {
      if (i + 1 >= args.size()) {
        usageError("-o needs a file name");
        return false;
      }
      output = args[++i];
    } else {
      words.push_back(args[i]);
    }
  }
  return true;
}

int fileTypeForOutput(const std::string& target, int fallback) {
  if (endsWithIgnoringCase(target, ".chr")) return kFileCharacterSheet;
  if (endsWithIgnoringCase(target, ".cst")) return kFileCharacterTemplate;
  return fallback;
}

bool isDataSheetFile(const std::string& path) {
  const int code = recogniseFile(path).code;
  return code == kFileDataSheet || code == kFileMacroDataSheet;
}

}  // namespace zv::cli
