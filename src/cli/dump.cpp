#include <iostream>

#include "cli/commands.h"
#include "cli/json_writer.h"
#include "cli/open_sheet.h"
#include "core/item.h"
#include "core/list_info.h"
#include "expr/symbols.h"

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

}  // namespace

// dump FILE: the sheet as the engine computed it, as JSON.
int runDump(Context&, const std::vector<std::string>& args) {
  if (args.size() != 1) return usageError("dump takes one file");
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
  json.endObject();
  std::cout << json.text() << '\n';
  return 0;
}

}  // namespace zv::cli
