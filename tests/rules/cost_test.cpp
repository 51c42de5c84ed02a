// Rounding modes and the total cost from basecost, addition, multiplier and side cost.

#include "rules/value/cost.h"
#include "rules/value/multipliers.h"
#include "rules/value/tokens.h"
#include "rules_test_support.h"

namespace zv::testing {
namespace {

class CostTest : public RulesTest {};

TEST_F(CostTest, RoundingModes) {
  struct Case {
    double value;
    int mode;
    double rounded;
  };
  const Case cases[] = {
      {22.5, 0, 23},   {22.5, 1, 22},   {22.5, 2, 22},   {22.5, 3, 23},  {-22.5, 0, -23},
      {-22.5, 1, -22}, {-22.5, 2, -22}, {-22.5, 3, -23}, {2.0005, 3, 2}, {2.002, 3, 3},
      {2.51, 1, 3},    {2.49, 0, 2},    {2.99, 2, 2},    {2.5, 9, 2},    {0.0, 0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(roundCost(c.value, c.mode), c.rounded) << c.value << " mode " << c.mode;
  }
}

TEST_F(CostTest, CostPaths) {
  struct Case {
    const char* name;
    double c, a, m, aux;
    int mode;
    double cost;
  };
  const Case cases[] = {
      {"mode 0 rounds half up", 10, 5, 1.5, 0, 0, 23},
      {"mode 1 rounds halves down", 10, 5, 1.5, 0, 1, 22},
      {"mode 2 floors", 10, 5, 1.5, 0, 2, 22},
      {"mode 3 ceils", 10, 5, 1.5, 0, 3, 23},
      {"side cost keeps basecost outside", 10, 1, 2, 4, 0, 20},
      {"no options: unrounded", 2.5, 0, 1.0, 0, 0, 2.5},
      {"an addition rounds", 2.5, 0.5, 1.0, 0, 0, 3},
      {"a fraction down", 10, 0, 1 / 1.5, 0, 2, 6},
      {"negative", -10, -5, 1.5, 0, 0, -23},
  };
  for (const Case& c : cases) {
    Item& item = addItem("Thing");
    sheet_.rounding = static_cast<std::int16_t>(c.mode);
    item.cost = c.c;
    item.add = c.a;
    item.mult = c.m;
    item.aux = c.aux;
    EXPECT_DOUBLE_EQ(computeCost(item), c.cost) << c.name;
  }
}

TEST_F(CostTest, WithoutASheetHalvesRoundDown) {
  Item master(ItemKind::Item, "Master");
  master.cost = 2.0;
  master.add = 0.5;
  EXPECT_DOUBLE_EQ(computeCost(master), 2.0);
}

TEST_F(CostTest, TotalCostFormulas) {
  Item& item = addItem("Thing");
  item.cost = 10;
  item.mult = 1.25;
  sheet_.totalCostFormula = "c*m";
  EXPECT_DOUBLE_EQ(computeCost(item), 12.5);
  item.totalCostFormula = "c+a+aux+`Bonus`";
  item.add = 2;
  item.aux = 3;
  auto bonus = std::make_unique<Option>();
  bonus->kind = kOptionAdjustment;
  bonus->name = "Bonus";
  bonus->value = "4";
  item.options.push_back(std::move(bonus));
  EXPECT_DOUBLE_EQ(computeCost(item), 19);
  item.totalCostFormula = "c+";
  EXPECT_DOUBLE_EQ(computeCost(item), 10);
  EXPECT_NE(messages().find("Expression error: "), std::string::npos) << messages();
}

TEST_F(CostTest, OptionsThroughToCost) {
  Item& item = addItem("Thing");
  sheet_.rounding = 0;
  item.cost = 6;
  auto half = std::make_unique<Option>();
  half->kind = kOptionFraction;
  half->name = "Half";
  half->value = "+1/2";
  item.options.push_back(std::move(half));
  computeMultipliers(item);
  EXPECT_DOUBLE_EQ(computeCost(item), 9);
  item.options.front()->kind = kOptionAuxCost;
  item.options.front()->value = "2";
  item.options.front()->auxExpression = "x*2";
  computeMultipliers(item);
  EXPECT_DOUBLE_EQ(computeCost(item), 10);
}

TEST_F(CostTest, WholeWordTokens) {
  struct Case {
    const char* text;
    const char* word;
    const char* replacement;
    const char* result;
  };
  const Case cases[] = {
      {"max(x,1)+xp", "x", "3", "max(3,1)+xp"}, {"X*2", "x", "3", "3*2"},
      {"&x+~x+x", "&x", "1", "1+~x+x"},         {"&x+~x+x", "x", "5", "&x+~x+5"},
      {"c*m+aux", "a", "2", "c*m+aux"},         {"c*m+aux", "aux", "2", "c*m+2"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(replaceWord(c.text, c.word, c.replacement), c.result) << c.text;
  }
  EXPECT_TRUE(containsWord("10+x", "x"));
  EXPECT_FALSE(containsWord("10+xp", "x"));
}

}  // namespace
}  // namespace zv::testing
