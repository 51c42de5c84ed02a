// Definitions of data sheets in the game system's table and in the open sheets.

#include "formats/datasheet/data_sheet_defines.h"

#include <algorithm>

#include "core/game_systems.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/tokens/keywords.h"
#include "formats/sheet/sheet_settle.h"

namespace zv {

namespace {

bool keyDefinedBy(const std::vector<DefineRec>& defines, std::string_view name) {
  const std::string key = trim(definitionKey(name));
  return std::any_of(defines.begin(), defines.end(), [&](const DefineRec& define) {
    return equalsIgnoringCase(trim(definitionKey(define.name)), key);
  });
}

/// Defines one definition in the game system's table; the symbol, or null when that failed.
Symbol* defineInGameSystem(GameSystem& system, const DefineRec& define) {
  ExprSheetSymbols& symbols = exprSheetSymbols();
  SheetSymbolBinder::Result result;
  if (define.kind == kFunc) {
    result = symbols.defineFunction(system.master, define.name, define.body);
  } else if (define.kind == kArray) {
    result = symbols.defineArray(system.master, define.name, define.body);
  } else {
    result = symbols.defineVariable(system.master, define.name, define.body);
  }
  return result.symbol;
}

}  // namespace

void addDataSheetDefinitions(GameSystem& system, std::vector<DefineRec> definitions) {
  if (definitions.empty()) return;
  for (DefineRec& define : definitions) {
    define.symbol = nullptr;
    if (!keyDefinedBy(system.defines, define.name))
      define.symbol = defineInGameSystem(system, define);
  }
  system.symbols = system.master.symbols;
  for (FileInfo* sheet : openSheets()) {
    if (sheet->gameSystem == &system) mergeDefinitions(*sheet, definitions, &exprSheetSymbols());
  }
  for (DefineRec& define : definitions)
    system.defines.push_back(std::move(define));
}

void freeDataSheetSymbols(GameSystem& system) {
  for (DefineRec& define : system.defines)
    define.symbol = nullptr;
  exprSheetSymbols().freeTable(system.master);
  system.symbols.reset();
}

namespace {

/// Takes the items of data sheet `id` out of a chain; a sublist of the id stays (with the members
/// of other data sheets) unless it adds its whole list.
void removeItems(ItemChain& chain, std::int32_t id) {
  std::erase_if(chain, [id](const std::unique_ptr<Item>& item) {
    return item->sourceId == id && (!item->isSublist() || item->addWholeList());
  });
  for (auto& item : chain)
    if (item->isSublist()) removeItems(item->children, id);
  renumberPositions(chain);
}

void removeOptions(OptionTree& level, std::int32_t id) {
  std::erase_if(level, [id](const OptionTreeEntry& entry) {
    return !entry.isGroup() && entry.sourceId == id;
  });
  for (OptionTreeEntry& entry : level)
    if (entry.isGroup()) removeOptions(entry.entries, id);
}

}  // namespace

void removeDataSheetTraces(GameSystem& system, std::int32_t id) {
  for (auto& category : system.categories) {
    removeItems(category->items, id);
    category->rebuildIndex();
  }
  removeOptions(system.options, id);
  SymbolTable* table = system.master.symbols.get();
  std::erase_if(system.defines, [id, table](DefineRec& define) {
    if (define.sourceId != id) return false;
    if (table != nullptr && define.symbol != nullptr) deleteSymbol(*table, *define.symbol);
    return true;
  });
}

bool unloadDataSheetById(GameSystem& system, std::int32_t id) {
  auto found = std::find_if(system.dataSheets.begin(), system.dataSheets.end(),
                            [id](const OpenDataSheet& sheet) { return sheet.id == id; });
  if (found == system.dataSheets.end()) return false;
  removeDataSheetTraces(system, id);
  system.dataSheets.erase(found);
  return true;
}

}  // namespace zv
