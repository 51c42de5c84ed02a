#include "formats/sheet_document.h"

#include <system_error>

#include "core/messages.h"
#include "core/paths.h"
#include "core/record_limits.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/engine_wiring.h"
#include "formats/file_recognition.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/sheet/sheet_writer.h"
#include "rules/lists/list_ops.h"
#include "rules/value/level.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kNotAllowedInFileNames = "\\/:*?<>|\"";

std::string_view extensionOf(int fileType) {
  return fileType == 2 ? ".cst" : ".chr";
}

void removeQuietly(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
}

}  // namespace

std::string UntitledNames::next() {
  int number = count_++;
  return number == 0 ? std::string("Untitled") : strprintf("Untitled %d", number);
}

UntitledNames& UntitledNames::process() {
  static UntitledNames names;
  return names;
}

std::unique_ptr<FileInfo> openSheetDocument(const std::string& path, std::string_view displayName,
                                            bool isNew, int fileType,
                                            const DocumentContext& context) {
  if (path.size() >= kPathCapacity || displayName.size() >= kPathCapacity) {
    showError("Names too long");
    return nullptr;
  }
  FileByteStream input(path, FileByteStream::Mode::Read);
  if (!input.isOpen()) {
    showError(strprintf("Can't open character sheet %s.", path));
    return nullptr;
  }
  ensureEngineServices();
  auto sheet = std::make_unique<FileInfo>();
  sheet->fileType = fileType;
  sheet->name = displayName;
  sheet->path = path;
  SheetReadOptions options;
  options.symbols = &exprSheetSymbols();
  if (context.loadDataSheets)
    enableDataSheetLoading(options);
  else
    options.loadData = false;
  options.settle = settleSheetLevels;
  options.applyOptions = applyItemOptions;
  if (!readCharsheet(*sheet, input, options)) return nullptr;
  // Bases of variables and category bonuses aren't kept in the file: the items' adjustments
  // give them again, as when the items came.
  applySheetAdjustments(*sheet);
  if (sheet->dlgs.empty()) {
    showError("There are no dialogs in this file; it cannot be opened as a character sheet");
    return nullptr;
  }
  if (context.rememberGameSystem) context.rememberGameSystem(sheet->gameSystemName.str());
  sheet->setChangedFlag(false);
  sheet->setIsNew(isNew);
  return sheet;
}

std::unique_ptr<FileInfo> openSheetFile(const std::string& path, const DocumentContext& context) {
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
  return openSheetDocument(path, shortFileName(path), false, recognition.code, context);
}

std::unique_ptr<FileInfo> newSheetFromTemplate(std::string_view templateName, int fileType,
                                               const DocumentContext& context,
                                               UntitledNames& names) {
  const std::string path = findDataFile(context.dataDir, templateName).string();
  if (!FileByteStream(path, FileByteStream::Mode::Read).isOpen()) {
    showError(strprintf("Can't open character sheet %s.", path));
    return nullptr;
  }
  auto sheet = openSheetDocument(path, names.next(), true, fileType, context);
  // The document has a name but no file until it is saved.
  if (sheet) sheet->path = "";
  return sheet;
}

std::string defaultSaveName(const FileInfo& sheet) {
  std::string value;
  if (!sheet.dlgs.empty()) {
    for (const auto& field : sheet.dlgs.front()->items) {
      if (!equalsIgnoringCase(field->varName, "Name")) continue;
      value = field->symbol ? valueToText(field->symbol->value) : field->text;
      break;
    }
  }
  std::string cleaned;
  for (char c : value)
    if (kNotAllowedInFileNames.find(c) == std::string_view::npos) cleaned += c;
  cleaned = trim(cleaned);
  if (cleaned.empty()) {
    cleaned = fs::path(std::string(sheet.name.str())).stem().string();
    if (cleaned.empty()) cleaned = "Untitled";
  }
  return cleaned + std::string(extensionOf(sheet.fileType));
}

bool writeSheetDocument(FileInfo& sheet, const std::string& target, int fileType,
                        const DocumentContext& context) {
  if (target.size() >= kPathCapacity) {
    showError("Illegal file name.");
    return false;
  }
  fs::path targetPath(target);
  fs::path directory = targetPath.parent_path();
  if (directory.empty()) directory = ".";
  std::optional<fs::path> temporary = createTemporaryFile(directory, "cc");
  if (!temporary) return false;

  std::unique_ptr<ByteStream> output;
  if (context.openOutput) {
    output = context.openOutput(temporary->string());
  } else {
    auto file = std::make_unique<FileByteStream>(temporary->string(), FileByteStream::Mode::Write);
    if (file->isOpen()) output = std::move(file);
  }
  if (!output) {
    removeQuietly(*temporary);
    showError(strprintf("Unable to create character sheet %s.", target));
    return false;
  }

  // The record takes the new names before it is written (the file names its own template and
  // data), and gets the old ones back if anything fails.
  const std::string oldPath(sheet.path.str());
  const std::string oldName(sheet.name.str());
  const int oldType = sheet.fileType;
  auto restore = [&] {
    sheet.path = oldPath;
    sheet.name = oldName;
    sheet.fileType = oldType;
  };
  sheet.path = target;
  sheet.name = shortFileName(targetPath);
  sheet.fileType = fileType;

  SheetWriteOptions writeOptions;
  writeOptions.binary = context.binary;
  int result = writeCharsheet(sheet, *output, writeOptions);
  if (result == kWriteOk) {
    if (auto* file = dynamic_cast<FileByteStream*>(output.get()); file && !file->close()) {
      result = kWriteError;
      reportSheetWriteResult(result, sheet.name.str());
    }
  }
  output.reset();
  if (result != kWriteOk ||
      !installFile(*temporary, targetPath, context.makeBackups, *context.fileOperations)) {
    removeQuietly(*temporary);
    restore();
    return false;
  }
  if (context.noteRecentFile) context.noteRecentFile(target);
  sheet.undoStack.clear();
  sheet.setChangedFlag(false);
  sheet.setIsNew(false);
  return true;
}

bool saveSheet(FileInfo& sheet, bool askName, const DocumentContext& context) {
  if (!askName && !sheet.isNew())
    return writeSheetDocument(sheet, std::string(sheet.path.str()), sheet.fileType, context);

  FileRequest request;
  request.mode = FileRequest::Mode::Save;
  request.title = "Save As";
  const std::string currentPath(sheet.path.str());
  if (sheet.isNew() || currentPath.empty()) {
    request.directory = context.dataDir.string();
    request.fileName = defaultSaveName(sheet);
  } else {
    request.directory = fs::path(currentPath).parent_path().string();
    request.fileName = fs::path(currentPath).filename().string();
  }
  request.filters = {{"Character Sheet", "*.chr"}, {"Character Template", "*.cst"}};
  request.filterIndex = sheet.fileType == 2 ? 1 : 0;
  std::vector<std::string> chosen = host().chooseFiles(request);
  if (chosen.empty()) return false;
  std::string target = chosen.front();
  // The type follows the extension chosen; a name without one keeps the document's type.
  fs::path targetPath(target);
  int fileType = sheet.fileType == 2 ? 2 : 1;
  if (equalsIgnoringCase(targetPath.extension().string(), ".cst"))
    fileType = 2;
  else if (equalsIgnoringCase(targetPath.extension().string(), ".chr"))
    fileType = 1;
  else if (!targetPath.has_extension())
    target += std::string(extensionOf(fileType));
  return writeSheetDocument(sheet, target, fileType, context);
}

Button askToSaveChanges(const FileInfo& document) {
  return askQuestion(
      severityTitle(Severity::Message),
      strprintf("File '%s' has been changed.\n\nSave Changes?", std::string(document.name.str())),
      ButtonSet::YesNoCancel);
}

bool closeQuery(FileInfo& sheet, const DocumentContext& context) {
  if (!sheet.changed()) return true;
  Button answer = askToSaveChanges(sheet);
  if (answer == Button::Yes) return saveSheet(sheet, false, context);
  return answer == Button::No;
}

bool saveForSaveAll(FileInfo& sheet, const DocumentContext& context) {
  if (sheet.changed() || sheet.isNew()) return saveSheet(sheet, sheet.isNew(), context);
  return true;
}

}  // namespace zv
