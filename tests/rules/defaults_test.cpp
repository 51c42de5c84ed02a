// Default levels: plain defaults, the list form with its sources, the guard against items that
// default from each other, and child totals of sublists.

#include "rules/value/defaults.h"
#include "expr/symbols.h"
#include "rules/value/level.h"
#include "rules_test_support.h"

namespace zv::testing {
namespace {

class DefaultsTest : public RulesTest {
 protected:
  Item& skill(const std::string& name, const std::string& level) {
    Item& item = addItem(name);
    item.varName = name;
    item.formula = "x";
    EXPECT_TRUE(setItemLevel(item, level, false, false)) << messages();
    return item;
  }
};

TEST_F(DefaultsTest, PlainDefaultFollowsItsSource) {
  Item& dx = skill("DX", "12");
  Item& sword = addItem("Sword");
  sword.varName = "Sword";
  sword.formula = "x*2";
  sword.defaultText = "DX-5";
  sword.defFormula = "0";
  sword.setUseDefault(true);
  ASSERT_TRUE(setItemLevel(sword, "", false, false)) << messages();
  ASSERT_NE(sword.levelSymbol, nullptr);
  EXPECT_EQ(sword.levelSymbol->name, "_default_Sword");
  EXPECT_EQ(sword.value, Value(7));
  EXPECT_DOUBLE_EQ(sword.cost, 0);
  ASSERT_TRUE(setItemLevel(dx, "14", false, false));
  EXPECT_EQ(sword.value, Value(9));

  sword.setUseDefault(false);
  ASSERT_TRUE(setItemLevel(sword, "3", false, false));
  EXPECT_EQ(sword.levelSymbol->name, "Sword");
  EXPECT_DOUBLE_EQ(sword.totalCost, 6);
}

TEST_F(DefaultsTest, ListFormPicksTheBestSource) {
  sheet_.nextAutoID = 5;
  Item& sword = skill("Sword", "12");
  skill("Axe", "9");
  Item& parry = addItem("Parry");
  parry.varName = "Parry";
  parry.defaultText = "x-4;Sword;Axe;Nothing;";
  parry.setDefBased(true);
  parry.setUseDefault(true);
  Value best;
  ASSERT_EQ(evaluateDefault(parry, best), 0) << messages();
  EXPECT_EQ(best, Value(8));
  EXPECT_EQ(sword.autoID, 5);
  EXPECT_EQ(parry.defaultSource, 5);
  ASSERT_TRUE(setItemLevel(parry, "", false, false)) << messages();
  EXPECT_EQ(parry.value, Value(8));

  parry.defaultText = "x+v;Axe,10";
  ASSERT_EQ(evaluateDefault(parry, best), 0);
  EXPECT_EQ(best, Value(19));

  parry.defaultText = "x;cat:'Weapons'1";
  EXPECT_EQ(evaluateDefault(parry, best), 0);
  EXPECT_EQ(best, Value(0));
  EXPECT_EQ(parry.defaultSource, 0);
}

TEST_F(DefaultsTest, CategorySourcesAndMalformedLists) {
  Item& sword = skill("Sword", "12");
  sword.cat = "Weapons";
  Item& axe = skill("Axe", "14");
  axe.cat = "Skills;Weapons";  // one of several categories counts
  skill("Climb", "20");
  Item& parry = addItem("Parry");
  parry.varName = "Parry";
  parry.setDefBased(true);
  parry.defaultText = "x-v;cat:'weapons'2";
  Value best;
  ASSERT_EQ(evaluateDefault(parry, best), 0) << messages();
  EXPECT_EQ(best, Value(12));
  parry.defaultText = "x;cat:'Weapons";
  EXPECT_EQ(evaluateDefault(parry, best), -36);
  parry.defaultText = "x;cat:";
  EXPECT_EQ(evaluateDefault(parry, best), -36);
}

TEST_F(DefaultsTest, ItemsDefaultingFromEachOtherDoNotLoop) {
  Item& a = skill("A", "10");
  Item& b = skill("B", "6");
  a.autoID = 1;
  b.autoID = 2;
  b.defaultSource = 1;
  a.defaultText = "x;B;";
  a.setDefBased(true);
  Value best;
  ASSERT_EQ(evaluateDefault(a, best), 0);
  EXPECT_EQ(best, Value(0));
  EXPECT_EQ(a.defaultSource, 0);
}

TEST_F(DefaultsTest, ChildTotals) {
  auto group = std::make_unique<Item>(ItemKind::Sublist, "Gear");
  Item& gear = list_->appendItem(std::move(group));
  for (double cost : {3.0, 4.5}) {
    Item& child = gear.appendChild(std::make_unique<Item>(ItemKind::Item, "Piece"));
    child.totalCost = cost;
  }
  auto inner = std::make_unique<Item>(ItemKind::Sublist, "Pouch");
  inner->setChildCostsSeparate(true);
  inner->totalCost = 1;
  inner->childCost = 2;
  gear.appendChild(std::move(inner));
  Item& outside = gear.appendChild(std::make_unique<Item>(ItemKind::Item, "Loose"));
  outside.totalCost = 100;
  outside.setInTotal(false);
  EXPECT_DOUBLE_EQ(computeChildCost(gear), 10.5);
  EXPECT_DOUBLE_EQ(gear.cost, 10.5);
  EXPECT_DOUBLE_EQ(gear.totalCost, 10.5);
}

}  // namespace
}  // namespace zv::testing
