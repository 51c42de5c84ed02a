// The data sheet document: the read into game systems of its own, the categories made sublists
// of the root, and Save with its question, temporary file, backup rule and reload.

#include "formats/data_sheet_document.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "core/install_file.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/record_limits.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/datasheet/data_sheet_writer.h"
#include "formats/sheet/sheet_writer.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kRootListName = "Categories";

bool readWholeFile(const fs::path& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

/// Moves the categories of `system` to the root as sublists; a category whose name a sublist
/// of the root has already (from another game system of the chain) joins it.
void moveCategoriesToRoot(GameSystem& system, DataSheetDocument& document) {
  ListInfo& root = document.root();
  for (auto& category : system.categories) {
    Item* sublist = document.findCategory(category->name.str());
    if (sublist == nullptr) {
      auto made = std::make_unique<Item>(ItemKind::Sublist, category->name.str());
      made->setSort(static_cast<unsigned>(category->sort));
      sublist = &root.appendItem(std::move(made));
    }
    for (auto& item : category->items)
      sublist->appendChild(std::move(item));
  }
  system.categories.clear();
}

/// True when `path` is a file whose first four bytes aren't those of the binary form.
bool isTextFile(const fs::path& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return false;
  std::ifstream in(path, std::ios::binary);
  char head[4] = {};
  in.read(head, sizeof head);
  const auto magic = static_cast<std::uint32_t>(static_cast<unsigned char>(head[0])) |
                     static_cast<std::uint32_t>(static_cast<unsigned char>(head[1])) << 8 |
                     static_cast<std::uint32_t>(static_cast<unsigned char>(head[2])) << 16 |
                     static_cast<std::uint32_t>(static_cast<unsigned char>(head[3])) << 24;
  return in.gcount() < 4 || magic != kTokenFileMagic;
}

/// The header of the file as the writer takes it, from the document's record.
DataSheetFile headerOf(const FileInfo& record) {
  DataSheetFile header;
  header.name = record.name.str();
  header.path = record.path.str();
  header.binary = record.binary();
  header.title = record.title;
  header.copyright = record.copyright;
  header.level = record.level;
  header.pageInfo = record.page;
  header.dataFiles = record.dataFiles;
  header.logo = record.logo.str();
  header.helpFile = record.helpFile.str();
  header.defines = record.defines;
  return header;
}

void removeQuietly(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
}

}  // namespace

GameSystem& GameSystemChain::findOrCreate(std::string_view name) {
  if (GameSystem* found = find(name)) return *found;
  systems_.push_back(std::make_unique<GameSystem>(name));
  return *systems_.back();
}

GameSystem* GameSystemChain::find(std::string_view name) const {
  FixedString<kGameSystemNameCapacity> key(name);
  for (const auto& system : systems_)
    if (equalsIgnoringCase(system->name, key)) return system.get();
  return nullptr;
}

DataSheetDocument::DataSheetDocument() : record_(std::make_unique<FileInfo>()) {
  record_->fileType = 6;
  record_->lists.push_back(std::make_unique<ListInfo>());
  ListInfo& list = *record_->lists.front();
  list.owner = record_.get();
  list.name = kRootListName;
}

Item* DataSheetDocument::findCategory(std::string_view name) const {
  for (const auto& item : root().items)
    if (item->isSublist() && equalsIgnoringCase(item->name, name)) return item.get();
  return nullptr;
}

bool readDataSheetDocument(DataSheetDocument& document, std::string bytes, std::string_view name,
                           const fs::path& path, const fs::path& dataDir) {
  DataSheetFile file;
  file.name = name;
  file.path = path;
  DataSheetReadOptions options;
  options.dataDir = dataDir;
  options.buildIndex = false;
  options.gameSystemFor = [&document](std::string_view systemName) -> GameSystem& {
    return document.systems().findOrCreate(systemName);
  };
  if (!readDataSheet(std::move(bytes), file, options)) return false;

  FileInfo& record = document.record();
  record.name = file.name;
  record.path = file.path.string();
  record.setBinary(file.binary);
  record.title = file.title;
  record.copyright = file.copyright;
  record.level = file.level;
  record.page = file.pageInfo;
  record.dataFiles = file.dataFiles;
  record.logo = file.logo;
  record.helpFile = file.helpFile;
  record.defines = std::move(file.defines);
  record.gameSystem = file.gameSystem;
  record.gameSystemName = file.gameSystem->name.str();
  for (const auto& system : document.systems().systems())
    moveCategoriesToRoot(*system, document);
  record.setChangedFlag(false);
  record.setIsNew(false);
  return true;
}

std::unique_ptr<DataSheetDocument> openDataSheetDocument(const fs::path& path,
                                                         const fs::path& dataDir) {
  const std::string name = shortFileName(path);
  std::string bytes;
  if (!readWholeFile(path, bytes)) {
    showError(strprintf("Cannot open data sheet '%s'.", name));
    return nullptr;
  }
  auto document = std::make_unique<DataSheetDocument>();
  if (!readDataSheetDocument(*document, std::move(bytes), name, path, dataDir)) return nullptr;
  return document;
}

DataSheetBody dataSheetBodyOf(const DataSheetDocument& document) {
  DataSheetBody body;
  body.gameSystem = document.record().gameSystemName.str();
  for (const auto& item : document.root().items) {
    if (item->isSublist())
      body.categories.push_back(
          {item->name, static_cast<std::int16_t>(item->sort()), &item->children});
  }
  if (const GameSystem* system = document.gameSystem()) {
    body.strings = &system->strings;
    body.options = &system->options;
  }
  return body;
}

int writeDataSheetDocument(const DataSheetDocument& document, ByteStream& output, bool binary) {
  // Everything at the root is a category; anything else would be lost on the way to the file.
  for (const auto& item : document.root().items) {
    if (!item->isSublist()) {
      ZV_INTERNAL_ERROR();
      return kWriteError;
    }
  }
  return writeDataSheet(headerOf(document.record()), dataSheetBodyOf(document), output, binary);
}

bool writeDataSheetDocumentFile(DataSheetDocument& document, const std::string& target,
                                const DocumentContext& context) {
  if (target.size() >= kPathCapacity) {
    showError("Illegal file name.");
    return false;
  }
  const fs::path targetPath(target);
  if (context.binary && isTextFile(targetPath)) {
    const Button answer = askQuestion(
        "Overwriting Text Data Sheet",
        "You are about to overwrite a text data sheet. You will be unable to update this data "
        "sheet if you overwrite it.\r\n\r\nAre you sure you want to overwrite the data sheet?",
        ButtonSet::YesNo);
    if (answer != Button::Yes) return false;
  }
  fs::path directory = targetPath.parent_path();
  if (directory.empty()) directory = ".";
  std::optional<fs::path> temporary = createTemporaryFile(directory, "ds");
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
    showError(strprintf("Unable to create data sheet %s.", target));
    return false;
  }

  // The file is written under its new name, so that messages name the file the user chose.
  FileInfo& record = document.record();
  const std::string oldPath(record.path.str());
  const std::string oldName(record.name.str());
  record.path = target;
  record.name = shortFileName(targetPath);
  int result = writeDataSheetDocument(document, *output, context.binary);
  if (result == kWriteOk) {
    if (auto* file = dynamic_cast<FileByteStream*>(output.get()); file && !file->close()) {
      result = kWriteError;
      reportSheetWriteResult(result, record.name.str());
    }
  }
  output.reset();
  if (result != kWriteOk ||
      !installFile(*temporary, targetPath, context.makeBackups, *context.fileOperations)) {
    removeQuietly(*temporary);
    record.path = oldPath;
    record.name = oldName;
    return false;
  }
  record.setBinary(context.binary);
  record.setChangedFlag(false);
  record.setIsNew(false);
  if (context.noteRecentFile) context.noteRecentFile(target);
  // The master data follow the file that was saved.
  const std::string name(record.name.str());
  if (findLoadedDataSheet(name) != nullptr) loadDataSheet(targetPath, name);
  return true;
}

bool saveDataSheetDocument(DataSheetDocument& document, bool askName,
                           const DocumentContext& context) {
  FileInfo& record = document.record();
  if (!askName && !record.isNew() && !record.path.empty())
    return writeDataSheetDocumentFile(document, std::string(record.path.str()), context);

  FileRequest request;
  request.mode = FileRequest::Mode::Save;
  request.title = "Save As";
  const std::string currentPath(record.path.str());
  if (currentPath.empty()) {
    request.directory = context.dataDir.string();
    request.fileName = fs::path(std::string(record.name.str())).stem().string() + ".cds";
  } else {
    request.directory = fs::path(currentPath).parent_path().string();
    request.fileName = fs::path(currentPath).filename().string();
  }
  request.filters = {{"Data Sheet", "*.cds"}};
  std::vector<std::string> chosen = host().chooseFiles(request);
  if (chosen.empty()) return false;
  std::string target = chosen.front();
  if (!fs::path(target).has_extension()) target += ".cds";
  return writeDataSheetDocumentFile(document, target, context);
}

bool dataSheetCloseQuery(DataSheetDocument& document, const DocumentContext& context) {
  if (!document.record().changed()) return true;
  const Button answer = askToSaveChanges(document.record());
  if (answer == Button::Yes) return saveDataSheetDocument(document, false, context);
  return answer == Button::No;
}

}  // namespace zv
