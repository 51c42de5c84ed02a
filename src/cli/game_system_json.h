#pragma once
// The master data of a game system as JSON, for load-data and for dump of a data sheet.

#include <vector>

#include "cli/json_writer.h"
#include "core/game_system.h"
#include "formats/datasheet/data_sheet_writer.h"

namespace zv::cli {

/// Writes the members "categories", "options", "strings" and "defines" (those given) into the
/// open object.
/// Categories carry their item counts ("items": top level, "allItems": with the members of
/// sublists); with `withItems` also the items themselves ("entries").
void writeMasterData(JsonWriter& json, const DataSheetBody& body,
                     const std::vector<DefineRec>& defines, bool withItems);
void writeMasterData(JsonWriter& json, const GameSystem& system,
                     const std::vector<DefineRec>& defines, bool withItems);

}  // namespace zv::cli
