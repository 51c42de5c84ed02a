// The character sheet path of the data sheet reader.

#include "formats/datasheet/data_sheet_charsheet.h"

#include "core/dialog.h"
#include "core/game_systems.h"
#include "core/list_info.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/sheet/sheet_reader.h"

namespace zv {

namespace {

/// Makes a copy of a sheet item stand as a master item of data sheet `id`, members too.
void makeMaster(Item& item, std::int32_t id) {
  item.sourceId = id;
  item.setOpen(false);
  item.autoID = 0;
  item.autoParent = 0;
  for (auto& member : item.children)
    makeMaster(*member, id);
}

Item* findSublist(ItemChain& chain, const std::string& name) {
  for (auto& existing : chain)
    if (existing->isSublist() && equalsIgnoringCase(existing->name, name)) return existing.get();
  return nullptr;
}

/// Copies `items` into `chain` (a category's items, or the members of `parent`).
void copyItems(const ItemChain& items, ItemChain& chain, Item* parent, std::int32_t id) {
  for (const auto& item : items) {
    if (item->isSublist() && !item->addWholeList()) {
      if (Item* existing = findSublist(chain, item->name)) {
        copyItems(item->children, existing->children, existing, id);
        continue;
      }
    }
    std::unique_ptr<Item> copy = item->clone();
    makeMaster(*copy, id);
    if (parent != nullptr) {
      parent->appendChild(std::move(copy));
    } else {
      copy->bindTo(nullptr, nullptr, nullptr, 0);
      copy->position = static_cast<std::int32_t>(chain.size());
      chain.push_back(std::move(copy));
    }
  }
}

}  // namespace

bool readCharsheetAsDataSheet(ByteStream& input, DataSheetFile& file,
                              const DataSheetReadOptions& options) {
  if (!input.rewind()) {
    showError(strprintf("Read error on data sheet %s", file.name));
    return false;
  }
  FileInfo sheet(1, file.name, file.path.string());
  SheetReadOptions sheetOptions;
  sheetOptions.sourceId = file.id;
  sheetOptions.loadData = false;
  sheetOptions.settle = [](FileInfo&) { return true; };
  if (!readCharsheet(sheet, input, sheetOptions)) return false;
  unregisterSheet(sheet);

  const std::string systemName = sheet.gameSystemName.str();
  GameSystem& system = options.gameSystemFor ? options.gameSystemFor(systemName)
                                             : findOrCreateGameSystem(systemName);
  file.gameSystem = &system;
  file.level = sheet.level;
  file.helpFile = sheet.helpFile.str();
  file.dataFiles = sheet.dataFiles;
  for (ListInfo* list : sheet.allLists()) {
    Category& category = system.findOrAddCategory(list->catName.str());
    copyItems(list->items, category.items, nullptr, file.id);
  }
  return true;
}

}  // namespace zv
