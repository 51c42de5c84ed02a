#include "core/fileinfo.h"

#include "core/game_systems.h"
#include "core/messages.h"

namespace zv {

FileInfo::FileInfo(std::int32_t type, std::string_view shortName, std::string_view fullPath)
    : fileType(type), name(shortName), path(fullPath) {}

FileInfo::~FileInfo() {
  unregisterSheet(*this);
}

ListInfo* FileInfo::addList() {
  if (lists.size() >= kMaxLists) {
    showError("Too many lists.");
    return nullptr;
  }
  auto list = std::make_unique<ListInfo>();
  list->owner = this;
  lists.push_back(std::move(list));
  return lists.back().get();
}

DlgInfo* FileInfo::addDialog() {
  if (dlgs.size() >= kMaxDialogs) {
    showError("Too many dialogs!");
    return nullptr;
  }
  auto dialog = std::make_unique<DlgInfo>();
  dialog->owner = this;
  dlgs.push_back(std::move(dialog));
  return dlgs.back().get();
}

void FileInfo::removeList(std::size_t index) {
  if (index >= lists.size()) return;
  lists.erase(lists.begin() + static_cast<std::ptrdiff_t>(index));
  dataMenu.removeList(static_cast<int>(index));
}

void FileInfo::removeDialog(std::size_t index) {
  if (index >= dlgs.size()) return;
  dlgs.erase(dlgs.begin() + static_cast<std::ptrdiff_t>(index));
  dataMenu.removeDialog(static_cast<int>(index));
}

std::vector<ListInfo*> FileInfo::allLists() const {
  std::vector<ListInfo*> result;
  for (const auto& list : lists)
    result.push_back(list.get());
  for (const auto& dialog : dlgs) {
    for (const auto& field : dialog->items) {
      if (field->listField) result.push_back(field->listField.get());
    }
  }
  return result;
}

std::unique_ptr<FileInfo> FileInfo::clone() const {
  auto copy = std::make_unique<FileInfo>();
  copy->title = title;
  copy->magic = magic;
  copy->flags = flags;
  copy->fileType = fileType;
  copy->level = level;
  copy->sheetId = sheetId;
  copy->name = name;
  copy->copyright = copyright;
  copy->totalCostFormula = totalCostFormula;
  copy->path = path;
  copy->gameSystemName = gameSystemName;
  copy->sheetType = sheetType;
  copy->filter = filter;
  copy->printTemplate = printTemplate;
  copy->templateName = templateName;
  copy->helpFile = helpFile;
  copy->chargenScript = chargenScript;
  copy->chargenTemplate = chargenTemplate;
  copy->logo = logo;
  copy->page = page;
  copy->maxAttempts = maxAttempts;
  copy->dataFiles = dataFiles;
  copy->gameSystem = gameSystem;
  copy->defines = defines;
  for (auto& define : copy->defines)
    define.symbol = nullptr;
  copy->script = script;
  copy->flags2 = flags2;
  copy->rounding = rounding;
  copy->notes = notes;
  copy->richText = richText;
  copy->created = created;
  for (const auto& list : lists) {
    auto listCopy = list->clone();
    listCopy->owner = copy.get();
    for (auto& item : listCopy->items)
      item->bindTo(copy.get(), listCopy.get(), nullptr, 0);
    copy->lists.push_back(std::move(listCopy));
  }
  for (const auto& dialog : dlgs) {
    auto dialogCopy = dialog->clone();
    dialogCopy->owner = copy.get();
    for (auto& field : dialogCopy->items) {
      if (!field->listField) continue;
      ListInfo& fieldList = *field->listField;
      fieldList.owner = copy.get();
      for (auto& item : fieldList.items)
        item->bindTo(copy.get(), &fieldList, nullptr, 0);
    }
    copy->dlgs.push_back(std::move(dialogCopy));
  }
  copy->pixInX = pixInX;
  copy->pixInY = pixInY;
  copy->dataMenu = dataMenu;
  copy->notesLoc = notesLoc;
  copy->richTextLoc = richTextLoc;
  copy->richTextSelStart = richTextSelStart;
  copy->richTextSelEnd = richTextSelEnd;
  copy->description = description;
  copy->nextAutoID = nextAutoID;
  copy->assocFiles = assocFiles;
  copy->shortcuts = shortcuts;
  copy->ruleSet = ruleSet;
  return copy;
}

bool checkFileInfo(const FileInfo* fileInfo) {
  if (fileInfo == nullptr || !fileInfo->hasMagic()) {
    showError("Null file info!");
    return false;
  }
  return true;
}

}  // namespace zv
