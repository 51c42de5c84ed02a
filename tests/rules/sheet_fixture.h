#pragma once
// A sheet of the item rules tests whose lists belong to the sheet, with list totals that reach
// their variables and sheet views that count what they are told.

#include <map>
#include <string>

#include "core/engine_context.h"
#include "core/list_total.h"
#include "expr/symbols.h"
#include "rules/value/level.h"
#include "rules_test_support.h"

namespace zv::testing {

class SheetRulesTest : public RulesTest {
 protected:
  SheetRulesTest() {
    EngineContext& context = engineContext_.context();
    context.services.storeListTotal = [this](ListInfo& list, double total) {
      ++totalsAdded[list.name.str()];
      setValue(*sheet_.symbols, *list.totalSymbol, Value(total));
    };
    SheetViews& views = context.views;
    views.itemChanged = [this](Item& item) { ++itemsRepainted[item.name]; };
    views.listChanged = [this](ListInfo& list) { ++listsRepainted[list.name.str()]; };
    views.sheetChanged = [this](FileInfo&) { ++sheetsRefreshed; };
    // The preferences of a fresh installation.
    const EnginePreferences fresh;
    context.preferences.checkReq = fresh.checkReq;
    context.preferences.disallowIfNotSatisfied = fresh.disallowIfNotSatisfied;
    context.preferences.noBadValueDlg = fresh.noBadValueDlg;
    context.preferences.applyRules = fresh.applyRules;
  }

  /// A list of the sheet with a total variable of that name.
  ListInfo& sheetList(const std::string& name, const std::string& totalVar) {
    ListInfo& list = *sheet_.addList();
    list.name = name;
    list.totalVarName = totalVar;
    list.totalSymbol = defineVariable(*sheet_.symbols, totalVar, "0");
    return list;
  }

  /// An item with a level variable of its own name, a cost function and a level text.
  static Item& levelled(ListInfo& list, const std::string& name, const std::string& formula,
                        const std::string& level) {
    auto item = std::make_unique<Item>(ItemKind::Item, name);
    item->varName = name;
    item->formula = formula;
    item->level = level;
    return list.appendItem(std::move(item));
  }

  /// The value of a sheet variable as text.
  std::string variable(const std::string& name) {
    Symbol* symbol = sheet_.symbols->find(name);
    return symbol != nullptr ? valueToText(symbol->value) : "(none)";
  }

  /// Settles the sheet as reading does, then forgets what the hooks were told.
  void settle() {
    setReading(true);
    const bool ok = settleSheetLevels(sheet_);
    setReading(false);
    ASSERT_TRUE(ok) << messages();
    resetCounts();
  }

  void resetCounts() {
    totalsAdded.clear();
    itemsRepainted.clear();
    listsRepainted.clear();
    sheetsRefreshed = 0;
  }

  std::map<std::string, int> totalsAdded;
  std::map<std::string, int> itemsRepainted;
  std::map<std::string, int> listsRepainted;
  int sheetsRefreshed = 0;
};

}  // namespace zv::testing
