#include "formats/sheet/sheet_settle.h"

#include "core/game_system.h"
#include "core/game_systems.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/tokens/keywords.h"

namespace zv {

bool settleFromStoredCosts(FileInfo& sheet) {
  for (ListInfo* list : sheet.allLists()) {
    const bool constCost = sheet.constCost();
    sheet.setConstCost(false);
    renumberPositions(list->items);
    addUpList(*list);
    sheet.setConstCost(constCost);
  }
  return true;
}

void finishSettling(FileInfo& sheet, SheetSymbolBinder* symbols) {
  if (sheet.gameSystem != nullptr) mergeDefinitions(sheet, sheet.gameSystem->defines, symbols);
  sheet.setLoaded(true);
  sheet.setChangedFlag(false);
  registerSheet(sheet);
}

std::string_view definitionKey(std::string_view name) {
  std::size_t cut = name.find_first_of("[(");
  return cut == std::string_view::npos ? name : name.substr(0, cut);
}

void mergeDefinitions(FileInfo& sheet, const std::vector<DefineRec>& definitions,
                      SheetSymbolBinder* symbols) {
  for (const DefineRec& definition : definitions) {
    const std::string key = trim(definitionKey(definition.name));
    bool known = false;
    for (const DefineRec& own : sheet.defines) {
      if (equalsIgnoringCase(trim(definitionKey(own.name)), key)) {
        known = true;
        break;
      }
    }
    if (known) continue;
    DefineRec copy = definition;
    copy.symbol = nullptr;
    if (symbols != nullptr) {
      SheetSymbolBinder::Result result;
      if (copy.kind == kFunc) {
        result = symbols->defineFunction(sheet, copy.name, copy.body);
      } else if (copy.kind == kArray) {
        result = symbols->defineArray(sheet, copy.name, copy.body);
      } else {
        result = symbols->defineVariable(sheet, copy.name, copy.body);
      }
      if (result.ok) {
        copy.symbol = result.symbol;
      } else {
        showError(strprintf("Error defining data sheet value in character sheet: '%s': '%s': %s",
                            result.error, copy.name, copy.body));
      }
    }
    sheet.defines.push_back(std::move(copy));
  }
}

}  // namespace zv
