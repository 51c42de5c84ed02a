#include <iostream>

#include "cli/commands.h"
#include "cli/game_system_json.h"
#include "cli/json_writer.h"
#include "cli/open_sheet.h"
#include "core/item.h"
#include "core/list_info.h"
#include "expr/symbols.h"
#include "formats/data_sheet_document.h"

namespace zv::cli {

namespace {

void writeItems(JsonWriter& json, const ItemChain& items) {
  json.beginArray();
  for (const auto& item : items) {
    json.beginObject();
    json.key("name");
    json.string(item->name);
    json.key("level");
    json.string(item->level);
    json.key("value");
    json.value(item->value);
    json.key("cost");
    json.number(item->cost);
    json.key("totalCost");
    json.number(item->totalCost);
    if (!item->inTotal()) {
      json.key("inTotal");
      json.integer(0);
    }
    if (item->autoID != 0) {
      json.key("autoID");
      json.integer(item->autoID);
    }
    if (item->autoParent != 0) {
      json.key("autoParent");
      json.integer(item->autoParent);
    }
    if (item->isSublist()) {
      json.key("childCost");
      json.number(item->childCost);
      json.key("children");
      writeItems(json, item->children);
    }
    json.endObject();
  }
  json.endArray();
}

/// A data sheet on its own (its game system private, nothing loaded), with all its items.
int dumpDataSheet(Context& context, const std::string& path) {
  std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(path, context.dataDir());
  if (!document) return 1;
  const FileInfo& file = document->record();
  JsonWriter json;
  json.beginObject();
  json.key("gameSystem");
  json.string(file.gameSystemName.str());
  json.key("fileType");
  json.integer(6);
  json.key("title");
  json.string(file.title);
  json.key("copyright");
  json.string(file.copyright);
  json.key("level");
  json.integer(file.level);
  json.key("binary");
  json.integer(file.binary() ? 1 : 0);
  json.key("dataFiles");
  json.beginArray();
  for (const std::string& name : file.dataFiles)
    json.string(name);
  json.endArray();
  json.key("help");
  json.string(file.helpFile.str());
  writeMasterData(json, dataSheetBodyOf(*document), file.defines, true);
  json.endObject();
  std::cout << json.text() << '\n';
  return 0;
}

}  // namespace

// dump FILE: the sheet (its data sheets loaded) as the engine computed it, or a data sheet, as
// JSON.
int runDump(Context& context, const std::vector<std::string>& args) {
  if (args.size() != 1) return usageError("dump takes one file");
  if (isDataSheetFile(args[0])) return dumpDataSheet(context, args[0]);
  std::unique_ptr<FileInfo> sheet = openSheet(args[0]);
  if (!sheet) return 1;

  JsonWriter json;
  json.beginObject();
  json.key("gameSystem");
  json.string(sheet->gameSystemName.str());
  json.key("fileType");
  json.integer(sheet->fileType);
  json.key("level");
  json.integer(sheet->level);
  json.key("lists");
  json.beginArray();
  for (ListInfo* list : sheet->allLists()) {
    json.beginObject();
    json.key("name");
    json.string(list->name.str());
    json.key("total");
    json.number(list->total);
    json.key("items");
    writeItems(json, list->items);
    json.endObject();
  }
  json.endArray();
  json.key("variables");
  json.beginObject();
  if (sheet->symbols) {
    for (std::size_t i = 0; i < sheet->symbols->size(); ++i) {
      const Symbol& symbol = sheet->symbols->at(i);
      if (!symbol.isVariable()) continue;
      json.key(symbol.name);
      json.value(symbol.value);
    }
  }
  json.endObject();
  json.key("dataFiles");
  json.beginArray();
  for (const std::string& name : sheet->dataFiles)
    json.string(name);
  json.endArray();
  json.endObject();
  std::cout << json.text() << '\n';
  return 0;
}

}  // namespace zv::cli
