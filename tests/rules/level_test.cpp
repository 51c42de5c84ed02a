// Level assignment through the level and cost variables, checks, the reverse search from a cost
// to a level, stepping to an acceptable level, and the settling of a sheet.

#include "rules/value/level.h"
#include "core/list_total.h"
#include "expr/symbols.h"
#include "rules_test_support.h"

namespace zv::testing {
namespace {

class LevelTest : public RulesTest {
 protected:
  Item& skill(const std::string& name, const std::string& formula) {
    Item& item = addItem(name);
    item.varName = name;
    item.formula = formula;
    return item;
  }
};

TEST_F(LevelTest, LevelAndCostVariables) {
  Item& climb = skill("Climb", "x*2");
  ASSERT_TRUE(defineItemVariable(climb, "3")) << messages();
  ASSERT_NE(climb.levelSymbol, nullptr);
  ASSERT_NE(climb.costSymbol, nullptr);
  EXPECT_EQ(climb.levelSymbol->name, "Climb");
  EXPECT_EQ(climb.costSymbol->name, "c_Climb");
  EXPECT_EQ(climb.value, Value(3));
  EXPECT_DOUBLE_EQ(climb.cost, 6);
  EXPECT_DOUBLE_EQ(climb.totalCost, 6);

  ASSERT_TRUE(defineItemVariable(climb, ""));
  EXPECT_EQ(climb.value, Value(0));
  EXPECT_DOUBLE_EQ(climb.totalCost, 0);

  Item& swim = skill("Climb", "x");
  ASSERT_TRUE(defineItemVariable(swim, "4"));
  EXPECT_EQ(swim.levelSymbol->name, "Climb1");
  EXPECT_EQ(swim.costSymbol->name, "c_Climb1");
}

TEST_F(LevelTest, OptionsChangeTheCostOfALevel) {
  struct Case {
    std::int32_t kind;
    const char* value;
    const char* aux;
    double cost;
  };
  const Case cases[] = {
      {kOptionFraction, "+1/2", "", 9},
      {kOptionAuxCost, "2", "x*2", 10},
      {kOptionAddition, "?+0;5", "", 6},
  };
  for (const Case& c : cases) {
    Item& climb = skill("Climb", "x*2");
    addOption(climb, c.kind, "o", c.value, c.aux);
    ASSERT_TRUE(setItemLevel(climb, "3", true, true)) << messages();
    EXPECT_DOUBLE_EQ(climb.totalCost, c.cost) << c.value;
  }
}

TEST_F(LevelTest, ItemsWithoutAVariableAndBadLevels) {
  Item& plain = addItem("Plain");
  plain.cost = 4;
  ASSERT_TRUE(setItemLevel(plain, "2+3", true, true));
  EXPECT_EQ(plain.value, Value(5));
  EXPECT_DOUBLE_EQ(plain.totalCost, 4);

  Item& climb = skill("Climb", "x*2");
  ASSERT_TRUE(setItemLevel(climb, "3", true, true));
  EXPECT_FALSE(setItemLevel(climb, "abc+", true, true));
  EXPECT_EQ(messages(), "[Error] Illegal value: abc+");
  EXPECT_EQ(climb.level, "3");
  EXPECT_DOUBLE_EQ(climb.totalCost, 6);
}

TEST_F(LevelTest, ChecksRefuseLevels) {
  Item& climb = skill("Climb", "x*2");
  climb.checkExp = "x<=5";
  ASSERT_TRUE(setItemLevel(climb, "3", true, true));
  std::string message;
  EXPECT_EQ(checkLevel(climb, "7", message), 0);
  EXPECT_FALSE(setItemLevel(climb, "7", true, true));
  EXPECT_EQ(messages(), "[Error] Climb: The value '7' is not allowed.");
  EXPECT_EQ(climb.value, Value(3));
  EXPECT_TRUE(setItemLevel(climb, "7", true, false));
  EXPECT_EQ(checkLevel(climb, "-1", message), 1);

  climb.checkMsg = "At most 5, not x";
  EXPECT_EQ(levelRefusalText(climb, "9", ""), "At most 5, not 9");

  Option& rank = addOption(climb, kOptionAdjustment, "Rank", "4");
  rank.checkExpression = "x<=v;Too high for rank";
  EXPECT_EQ(checkLevel(climb, "5", message), 0);
  EXPECT_EQ(message, "Too high for rank");
  EXPECT_EQ(checkLevel(climb, "4", message), 1);

  climb.checkExp = "x<=";
  host_.clearTranscript();
  EXPECT_EQ(checkLevel(climb, "4", message), -1);
  EXPECT_EQ(messages().rfind("[Error] Expression error: ", 0), 0u) << messages();
}

TEST_F(LevelTest, ReverseSearch) {
  struct Case {
    const char* formula;
    const char* check;
    double target;
    bool ok;
    const char* level;
    const char* message;
  };
  const Case cases[] = {
      {"x*2", "", 6, true, "3", ""},
      {"x*2", "", 5, false, "", "[Error] Can't find level for Climb at cost 5. Try 2 or 3."},
      {"10", "", 7, true, "0", ""},
      {"x*2", "x<>3", 6, false, "", "[Error] Can't find level for Climb at cost 6. Try 2 or 4."},
      {"x*2", "", -4, true, "-2", ""},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    Item& climb = skill("Climb", c.formula);
    ASSERT_TRUE(setItemLevel(climb, "0", false, false));
    climb.checkExp = c.check;
    climb.cost = c.target;
    std::string level;
    EXPECT_EQ(findLevelForCost(climb, level), c.ok) << c.formula << " " << c.target;
    EXPECT_EQ(level, c.level) << c.formula << " " << c.target;
    EXPECT_EQ(messages(), c.message) << c.formula << " " << c.target;
  }
}

TEST_F(LevelTest, ReverseSearchLimitsAndMissingFunctions) {
  Item& plain = addItem("Plain");
  std::string level = "unchanged";
  EXPECT_TRUE(findLevelForCost(plain, level));
  EXPECT_EQ(level, "unchanged");

  sheet_.maxAttempts = 3;
  // Three steps up do not reach cost 20; the last pass tries the cost itself as the level.
  Item& linear = skill("Linear", "x");
  ASSERT_TRUE(setItemLevel(linear, "0", false, false));
  linear.cost = 20;
  EXPECT_TRUE(findLevelForCost(linear, level)) << messages();
  EXPECT_EQ(level, "20");

  Item& climb = skill("Climb", "x*2");
  ASSERT_TRUE(setItemLevel(climb, "0", false, false));
  climb.cost = 20;
  EXPECT_FALSE(findLevelForCost(climb, level));
  EXPECT_EQ(messages(), "[Error] Can't find level for Climb at cost 20. Try 0 or 0.");
}

TEST_F(LevelTest, NextAcceptableLevel) {
  Item& climb = skill("Climb", "x");
  climb.checkExp = "x mod 2 = 0";
  EXPECT_DOUBLE_EQ(nextAcceptableLevel(climb, 3, 1), 4);
  EXPECT_DOUBLE_EQ(nextAcceptableLevel(climb, 4, -1), 2);
  climb.checkExp = "x>100";
  EXPECT_DOUBLE_EQ(nextAcceptableLevel(climb, 0, 1), 0);
  EXPECT_DOUBLE_EQ(nextAcceptableLevel(climb, 0, 5), 105);
  sheet_.maxAttempts = 10;
  EXPECT_DOUBLE_EQ(nextAcceptableLevel(climb, 0, 5), 0);
}

TEST_F(LevelTest, CostFollowsAChangedDependency) {
  Symbol* factor = defineVariable(*sheet_.symbols, "Mult", "2");
  ASSERT_NE(factor, nullptr);
  Item& climb = skill("Climb", "x*Mult");
  ASSERT_TRUE(setItemLevel(climb, "3", true, false));
  EXPECT_DOUBLE_EQ(climb.totalCost, 6);
  ASSERT_EQ(setExpression(*sheet_.symbols, *factor, "3"), 0);
  EXPECT_DOUBLE_EQ(climb.totalCost, 9);
  EXPECT_EQ(climb.value, Value(3));
}

TEST_F(LevelTest, SettlingASheet) {
  auto list = std::make_unique<ListInfo>();
  list->owner = &sheet_;
  list->name = "Skills";
  ListInfo& skills = *list;
  sheet_.lists.push_back(std::move(list));
  auto climb = std::make_unique<Item>(ItemKind::Item, "Climb");
  climb->varName = "Climb";
  climb->formula = "x*2";
  climb->level = "4";
  skills.appendItem(std::move(climb));
  auto swim = std::make_unique<Item>(ItemKind::Item, "Swim");
  swim->varName = "Swim";
  swim->formula = "x";
  swim->level = "Climb+1";
  skills.appendItem(std::move(swim));
  EXPECT_TRUE(settleSheetLevels(sheet_)) << messages();
  EXPECT_DOUBLE_EQ(skills.items[0]->totalCost, 8);
  EXPECT_DOUBLE_EQ(skills.items[1]->levelValue, 5);
  EXPECT_DOUBLE_EQ(skills.total, 13);
  EXPECT_FALSE(skills.items[0]->settling());

  skills.items[1]->level = "Climb+";
  EXPECT_FALSE(settleSheetLevels(sheet_));
  EXPECT_EQ(messages(),
            "[Error] Illegal value: Climb+|[Error] Unable to set list item 'Swim' "
            "for list 'Skills'");
}

}  // namespace
}  // namespace zv::testing

namespace zv::testing {
namespace {

class LevelTotalsTest : public RulesTest {};

TEST_F(LevelTotalsTest, ChangesReachSublistsAndTheList) {
  auto group = std::make_unique<Item>(ItemKind::Sublist, "Gear");
  Item& gear = list_->appendItem(std::move(group));
  auto rope = std::make_unique<Item>(ItemKind::Item, "Rope");
  rope->varName = "Rope";
  rope->formula = "x*3";
  Item& ropeItem = gear.appendChild(std::move(rope));
  ASSERT_TRUE(setItemLevel(ropeItem, "2", true, false)) << messages();
  EXPECT_DOUBLE_EQ(gear.childCost, 6);
  EXPECT_DOUBLE_EQ(gear.totalCost, 6);
  EXPECT_DOUBLE_EQ(list_->total, 6);
}

TEST_F(LevelTotalsTest, ADistributedLevelThatFailsItsCheckIsUndone) {
  Item& magic = addItem("Magic");
  magic.varName = "Magic";
  magic.formula = "x";
  for (const char* name : {"Fire", "Water"}) {
    Option& option = addOption(magic, kOptionAdjDistLevel, name, "1");
    option.checkExpression = "v<=3;Too much in one school";
  }
  magic.checkExp = "1";
  ASSERT_TRUE(setItemLevel(magic, "2", true, true)) << messages();
  EXPECT_FALSE(setItemLevel(magic, "8", true, true));
  EXPECT_EQ(messages(), "[Error] Too much in one school");
  EXPECT_EQ(magic.level, "2");
  EXPECT_EQ(magic.value, Value(2));
  EXPECT_EQ(magic.options[0]->value, "1");
  EXPECT_EQ(magic.options[1]->value, "1");
  EXPECT_DOUBLE_EQ(list_->total, 2);
}

}  // namespace
}  // namespace zv::testing
