// The Recalculate command over the lists of a sheet and of its dialogs' list fields.

#include "rules/value/recalculate.h"

#include "core/dialog.h"
#include "sheet_fixture.h"

namespace zv::testing {
namespace {

class RecalculateTest : public SheetRulesTest {
 protected:
  RecalculateTest()
      : skills_(sheetList("Skills", "SkillPoints")), gear_(sheetList("Gear", "GearCost")) {
    Item& climb = levelled(skills_, "Climb", "x*2", "3");
    addOption(climb, kOptionFraction, "Hard", "+1/2");
    levelled(skills_, "Lore", "x*x", "Climb+1");
    auto pack = std::make_unique<Item>(ItemKind::Sublist, "Pack");
    pack->setChildCostsSeparate(true);
    pack->cost = 2;
    Item& packItem = gear_.appendItem(std::move(pack));
    auto rope = std::make_unique<Item>(ItemKind::Item, "Rope");
    rope->cost = 1;
    packItem.appendChild(std::move(rope));
    auto pouch = std::make_unique<Item>(ItemKind::Sublist, "Pouch");
    Item& pouchItem = packItem.appendChild(std::move(pouch));
    auto flint = std::make_unique<Item>(ItemKind::Item, "Flint");
    flint->varName = "Flint";
    flint->formula = "x/2";
    flint->level = "3";
    pouchItem.appendChild(std::move(flint));

    DlgInfo& dialog = *sheet_.addDialog();
    dialog.name = "Rites";
    auto field = std::make_unique<DlgItem>();
    field->listField = std::make_unique<ListInfo>();
    DlgItem& fieldItem = dialog.appendItem(std::move(field));
    rites_ = fieldItem.listField.get();
    rites_->name = "Rites";
    rites_->totalSymbol = defineVariable(*sheet_.symbols, "RitePoints", "0");
    levelled(*rites_, "Ward", "x*5", "Climb-1");
  }

  /// Spoils what the rules compute, as a file written by an older program may have it.
  void spoil() {
    for (ListInfo* list : sheet_.allLists()) {
      list->total = -1;
      for (auto& item : list->items) {
        item->totalCost = -1;
        item->childCost = -1;
      }
    }
  }

  ListInfo& skills_;
  ListInfo& gear_;
  ListInfo* rites_ = nullptr;
};

TEST_F(RecalculateTest, EveryListAndDialogListIsComputedAgain) {
  settle();
  for (bool changed : {false, true}) {
    spoil();
    sheet_.setChangedFlag(changed);
    resetCounts();
    recalculateSheet(sheet_);
    // Climb 3 costs 6, ×1.5 for the fraction: 9; Lore 4 costs 16.
    EXPECT_DOUBLE_EQ(skills_.items[0]->totalCost, 9);
    EXPECT_DOUBLE_EQ(skills_.items[1]->totalCost, 16);
    EXPECT_DOUBLE_EQ(skills_.total, 25);
    // Pack 2 with members Rope 1 and Pouch (Flint 3/2) counted apart: 2 + 2.5.
    Item& pack = *gear_.items[0];
    EXPECT_DOUBLE_EQ(pack.children[1]->totalCost, 1.5);
    EXPECT_DOUBLE_EQ(pack.childCost, 2.5);
    EXPECT_DOUBLE_EQ(pack.totalCost, 2);
    EXPECT_DOUBLE_EQ(gear_.total, 4.5);
    EXPECT_DOUBLE_EQ(rites_->total, 10);
    EXPECT_EQ(variable("SkillPoints"), "25");
    EXPECT_EQ(variable("GearCost"), "4.5");
    EXPECT_EQ(variable("RitePoints"), "10");
    EXPECT_EQ(sheet_.changed(), changed);
    EXPECT_EQ(listsRepainted,
              (std::map<std::string, int>{{"Gear", 1}, {"Rites", 1}, {"Skills", 1}}));
    EXPECT_EQ(sheetsRefreshed, 1);
  }
  EXPECT_EQ(messages(), "");
}

TEST_F(RecalculateTest, OneListLeavesTheOthers) {
  settle();
  spoil();
  recalculateList(sheet_, gear_);
  EXPECT_DOUBLE_EQ(gear_.total, 4.5);
  EXPECT_DOUBLE_EQ(skills_.total, -1);
  EXPECT_DOUBLE_EQ(rites_->total, -1);
}

TEST_F(RecalculateTest, OptionsEditedWithoutTheRulesCountAgain) {
  settle();
  // An option changed without the item rules: the item's own figures lag behind.
  skills_.items[0]->options[0]->value = "+1";
  recalculateSheet(sheet_);
  EXPECT_DOUBLE_EQ(skills_.items[0]->totalCost, 12);
  EXPECT_DOUBLE_EQ(skills_.total, 28);
}

}  // namespace
}  // namespace zv::testing
