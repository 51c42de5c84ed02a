#pragma once
// A sheet of the item rules tests whose lists belong to the sheet, with list totals that reach
// their variables and view hooks that count what they are told.

#include <map>
#include <string>

#include "core/list_total.h"
#include "expr/symbols.h"
#include "rules/value/level.h"
#include "rules/value/preferences.h"
#include "rules/value/sheet_view.h"
#include "rules_test_support.h"

namespace zv::testing {

class SheetRulesTest : public RulesTest {
 protected:
  SheetRulesTest() {
    savedTotalHook_ = setListTotalHook([this](ListInfo& list, double total) {
      ++totalsAdded[list.name.str()];
      setValue(*sheet_.symbols, *list.totalSymbol, Value(total));
    });
    SheetViewHooks hooks;
    hooks.itemChanged = [this](Item& item) { ++itemsRepainted[item.name]; };
    hooks.listChanged = [this](ListInfo& list) { ++listsRepainted[list.name.str()]; };
    hooks.sheetChanged = [this](FileInfo&) { ++sheetsRefreshed; };
    savedHooks_ = installSheetViewHooks(std::move(hooks));
    savedPreferences_ = setRulePreferences({});
  }
  ~SheetRulesTest() override {
    setListTotalHook(std::move(savedTotalHook_));
    installSheetViewHooks(std::move(savedHooks_));
    setRulePreferences(savedPreferences_);
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

 private:
  ListTotalHook savedTotalHook_;
  SheetViewHooks savedHooks_;
  RulePreferences savedPreferences_;
};

}  // namespace zv::testing
