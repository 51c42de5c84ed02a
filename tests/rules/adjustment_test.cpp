// The adjustment language: what an item's `adj` text does to variables and category bonuses as
// the item comes and goes, and its faults.

#include "rules/value/adjustment.h"
#include "rules/value/categories.h"

#include "expr/compiler.h"
#include "sheet_fixture.h"

namespace zv::testing {
namespace {

class AdjustmentTest : public SheetRulesTest {
 protected:
  AdjustmentTest() : skills_(sheetList("Skills", "SkillPoints")), amulet_(addItem("Amulet")) {
    Item& sword = levelled(skills_, "Sword", "x*2", "3");
    sword.cat = "Weapons;Combat";
    levelled(skills_, "Lore", "x", "2").cat = "Study";
    defineVariable(*sheet_.symbols, "Gold", "10");
    defineFunction(*sheet_.symbols, "Twice(n)", "n*2");
  }
  double base(const char* name) { return getBaseValue(sheet_.symbols->find(name)); }
  /// A variable as an expression reads it.
  std::string reading(const char* name) {
    Value value;
    if (parseExp(sheet_.symbols.get(), name, value) != 0) return "(error)";
    return valueToText(value);
  }

  ListInfo& skills_;
  Item& amulet_;
};

TEST_F(AdjustmentTest, ComingAndGoing) {
  settle();
  // "+" and "-" work on the base, which a variable at zero reads as its value.
  struct Case {
    const char* text;
    int count;
    const char* variable;
    const char* afterAdding;
    const char* afterRemoving;
  };
  const Case cases[] = {
      {"HP+2", 1, "HP", "2", "0"},
      {"HP-1; Mana + $adding$*2", 3, "Mana", "6", "0"},
      {"Gold*2", 1, "Gold", "20", "10"},
      {"Str=10", 1, "Str", "10", "0"},
      {"Seen=$add$+4!Seen=$add$", 1, "Seen", "5", "0"},
      {"Luck+5!", 1, "Luck", "5", "5"},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(runAdjustment(sheet_, amulet_, true, c.text, c.count)) << c.text << messages();
    EXPECT_EQ(reading(c.variable), c.afterAdding) << c.text;
    ASSERT_TRUE(runAdjustment(sheet_, amulet_, false, c.text, c.count)) << c.text << messages();
    EXPECT_EQ(reading(c.variable), c.afterRemoving) << c.text;
  }
  EXPECT_DOUBLE_EQ(base("HP"), 0);
  EXPECT_DOUBLE_EQ(base("Luck"), 5);
  EXPECT_EQ(messages(), "");
}

TEST_F(AdjustmentTest, CategoryBonusesRaiseTheItemsOfTheCategory) {
  Item& dagger = levelled(skills_, "Dagger", "x*2", "0");
  dagger.cat = "Combat";
  settle();
  Item& sword = *skills_.items[0];
  ASSERT_TRUE(runAdjustment(sheet_, amulet_, true, "skills:combat+2", 1)) << messages();
  EXPECT_DOUBLE_EQ(categoryBonus(skills_, "Combat"), 2);
  EXPECT_DOUBLE_EQ(getBaseValue(sword.levelSymbol), 2);
  EXPECT_DOUBLE_EQ(getBaseValue(skills_.items[1]->levelSymbol), 0);
  // The dagger at level 0 reads as its base: its cost function gives 4.
  EXPECT_EQ(reading("Dagger"), "2");
  EXPECT_DOUBLE_EQ(dagger.totalCost, 4);
  EXPECT_DOUBLE_EQ(skills_.total, 6 + 2 + 4);

  // An item that comes later takes the bonus of its category.
  Item& axe = levelled(skills_, "Axe", "x", "0");
  axe.cat = "Combat";
  ASSERT_TRUE(setItemLevel(axe, "0", true, false));
  applyCategoryBonuses(skills_, axe);
  EXPECT_DOUBLE_EQ(getBaseValue(axe.levelSymbol), 2);

  ASSERT_TRUE(runAdjustment(sheet_, amulet_, false, "skills:combat+2", 1));
  EXPECT_DOUBLE_EQ(categoryBonus(skills_, "Combat"), 0);
  EXPECT_DOUBLE_EQ(getBaseValue(sword.levelSymbol), 0);
  EXPECT_DOUBLE_EQ(dagger.totalCost, 0);
  EXPECT_DOUBLE_EQ(getBaseValue(axe.levelSymbol), 0);
  EXPECT_EQ(messages(), "");
}

TEST_F(AdjustmentTest, FaultsStopTheRun) {
  settle();
  const std::pair<const char*, const char*> cases[] = {
      {"Nolist:Combat+1", "[Error] Non-existent list window name: Nolist"},
      {"Skills:+1", "[Error] Skills: is bad category bonus"},
      {"\"HP+1", "[Error] Missing \" in adjustment"},
      {"HP?1", "[Error] Error in adjustment list (item: Amulet)."},
      {"HP+(", "[Error] Error in adjustment expression (()"},
      {"  ", "[Empty Adjustment] Empty adjustments for Amulet."},
      {"=3", "[Empty Adjustment] Empty adjustments for Amulet."},
      {"Twice=1", "[Error] Can't define variable Twice"},
      {"Twice+1", "[Error] Can't define variable Twice"},
  };
  for (const auto& [text, message] : cases) {
    host_.clearTranscript();
    EXPECT_FALSE(runAdjustment(sheet_, amulet_, true, text, 1)) << text;
    EXPECT_EQ(messages(), message) << text;
  }
}

}  // namespace
}  // namespace zv::testing
