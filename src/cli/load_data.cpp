#include <iostream>

#include "cli/commands.h"
#include "cli/game_system_json.h"
#include "core/game_systems.h"
#include "core/paths.h"
#include "formats/datasheet/data_sheet_loader.h"

namespace zv::cli {

namespace {

/// A name on the command line: a file that exists as given, or a short name in the data
/// directory (found ignoring case).
std::filesystem::path dataSheetPath(const Context& context, const std::string& name) {
  std::error_code error;
  if (std::filesystem::is_regular_file(name, error)) return name;
  return findDataFile(context.dataDir(), name);
}

}  // namespace

// load-data NAME...: loads data sheets into their game systems, as the program does, and prints
// the game systems with their master data.
int runLoadData(Context& context, const std::vector<std::string>& args) {
  if (args.empty()) return usageError("load-data takes one or more data sheets");
  bool allLoaded = true;
  for (const std::string& name : args) {
    const std::string shortName = dataSheetShortName(name);
    if (!loadDataSheet(dataSheetPath(context, name), shortName)) allLoaded = false;
  }

  JsonWriter json;
  json.beginObject();
  json.key("gameSystems");
  json.beginArray();
  for (const GameSystem* system : gameSystems()) {
    if (system->dataSheets.empty()) continue;
    json.beginObject();
    json.key("name");
    json.string(system->name.str());
    json.key("level");
    json.integer(system->level);
    json.key("dataSheets");
    json.beginArray();
    for (const OpenDataSheet& sheet : system->dataSheets) {
      json.beginObject();
      json.key("name");
      json.string(sheet.name);
      json.key("id");
      json.integer(sheet.id);
      json.key("level");
      json.integer(sheet.level);
      json.endObject();
    }
    json.endArray();
    writeMasterData(json, *system, system->defines, false);
    json.endObject();
  }
  json.endArray();
  json.endObject();
  std::cout << json.text() << '\n';
  return allLoaded ? 0 : 1;
}

}  // namespace zv::cli
