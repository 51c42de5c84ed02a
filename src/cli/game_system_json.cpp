#include "cli/game_system_json.h"

#include "formats/tokens/keywords.h"

namespace zv::cli {

namespace {

long countItems(const ItemChain& chain) {
  long count = 0;
  for (const auto& item : chain)
    count += 1 + (item->isSublist() ? countItems(item->children) : 0);
  return count;
}

void writeItems(JsonWriter& json, const ItemChain& chain) {
  json.beginArray();
  for (const auto& item : chain) {
    json.beginObject();
    json.key("name");
    json.string(item->name);
    json.key("source");
    json.integer(item->sourceId);
    json.key("priority");
    json.integer(static_cast<long>(item->priority()));
    if (!item->level.empty()) {
      json.key("level");
      json.string(item->level);
    }
    if (!item->formula.empty()) {
      json.key("formula");
      json.string(item->formula);
    }
    if (item->isSublist()) {
      json.key("children");
      writeItems(json, item->children);
    }
    json.endObject();
  }
  json.endArray();
}

void writeOptions(JsonWriter& json, const OptionTree& level) {
  json.beginArray();
  for (const OptionTreeEntry& entry : level) {
    json.beginObject();
    if (entry.isGroup()) {
      json.key("group");
      json.string(keywordName(entry.groupKind));
      json.key("name");
      json.string(entry.name);
      json.key("entries");
      writeOptions(json, entry.entries);
    } else {
      json.key("kind");
      json.string(keywordName(entry.option->kind));
      json.key("name");
      json.string(entry.name);
      json.key("value");
      json.string(entry.option->value);
      json.key("source");
      json.integer(entry.sourceId);
    }
    json.endObject();
  }
  json.endArray();
}

}  // namespace

void writeMasterData(JsonWriter& json, const GameSystem& system,
                     const std::vector<DefineRec>& defines, bool withItems) {
  writeMasterData(json, dataSheetBodyOf(system), defines, withItems);
}

void writeMasterData(JsonWriter& json, const DataSheetBody& body,
                     const std::vector<DefineRec>& defines, bool withItems) {
  json.key("categories");
  json.beginArray();
  for (const DataSheetCategory& category : body.categories) {
    json.beginObject();
    json.key("name");
    json.string(category.name);
    json.key("sort");
    json.integer(category.sort);
    json.key("items");
    json.integer(static_cast<long>(category.items->size()));
    json.key("allItems");
    json.integer(countItems(*category.items));
    if (withItems) {
      json.key("entries");
      writeItems(json, *category.items);
    }
    json.endObject();
  }
  json.endArray();
  json.key("options");
  static const OptionTree noOptions;
  writeOptions(json, body.options != nullptr ? *body.options : noOptions);
  json.key("strings");
  json.beginObject();
  if (body.strings != nullptr) {
    for (const StringDef& def : *body.strings) {
      json.key(def.name);
      json.string(def.value);
    }
  }
  json.endObject();
  json.key("defines");
  json.beginArray();
  for (const DefineRec& define : defines) {
    json.beginObject();
    json.key("kind");
    json.string(keywordName(define.kind));
    json.key("name");
    json.string(define.name);
    json.key("body");
    json.string(define.body);
    json.key("source");
    json.integer(define.sourceId);
    json.endObject();
  }
  json.endArray();
}

}  // namespace zv::cli
