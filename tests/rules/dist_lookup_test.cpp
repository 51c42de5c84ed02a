// Distributed adjustments, lookup strings, the Constant Cost box, and the option rules as the
// expression engine's item fields see them.

#include "expr/item_fields.h"
#include "rules/install.h"
#include "rules/value/dist_adj.h"
#include "rules/value/level.h"
#include "rules/value/lookup.h"
#include "rules/value/option_value.h"
#include "rules_test_support.h"

namespace zv::testing {
namespace {

class DistLookupTest : public RulesTest {};

TEST_F(DistLookupTest, DistributedTotals) {
  struct Case {
    std::vector<int> values;
    int excluded;
    double oldTotal;
    double newTotal;
    std::vector<int> spread;
  };
  const Case cases[] = {
      {{1, 1, 1}, -1, 3, 10, {4, 3, 3}},    {{0, 0, 0}, -1, 0, 10, {4, 3, 3}},
      {{2, 1, 1}, -1, 4, -8, {-4, -2, -2}}, {{2, 2}, -1, 4, 6, {3, 3}},
      {{5, 1, 1}, 0, 7, 4, {5, 2, 2}},      {{1, 1}, -1, 10, 4, {2, 2}},
  };
  for (const Case& c : cases) {
    std::optional<std::vector<int>> spread =
        distributeTotal(c.values, c.excluded, c.oldTotal, c.newTotal);
    ASSERT_TRUE(spread.has_value());
    EXPECT_EQ(*spread, c.spread) << c.newTotal;
  }
  EXPECT_FALSE(distributeTotal(std::vector<int>(21, 1), -1, 21, 42).has_value());
  EXPECT_EQ(messages(), "[Error] distAdj: error -- too many distributed adjustments");
}

TEST_F(DistLookupTest, LevelChangesRedistribute) {
  Item& item = addItem("Magic");
  item.varName = "Magic";
  item.formula = "x";
  for (const char* name : {"Fire", "Water", "Air"})
    addOption(item, kOptionAdjDistLevel, name, "1");
  ASSERT_TRUE(setItemLevel(item, "3", false, false));
  ASSERT_TRUE(setItemLevel(item, "10", false, false));
  int sum = 0;
  for (const auto& option : item.options)
    sum += std::stoi(option->value);
  EXPECT_EQ(sum, 10);
  EXPECT_EQ(item.options[0]->value, "4");
}

TEST_F(DistLookupTest, LookupStrings) {
  Item& item = addItem("Rank");
  auto entries = parseLookupString(item, "$Novice=1;Expert=3;$1+1=5;");
  ASSERT_TRUE(entries.has_value()) << messages();
  EXPECT_EQ(lookupExpression(*entries, "expert"), std::optional<std::string>("3"));
  EXPECT_EQ(lookupExpression(*entries, "2"), std::optional<std::string>("5"));
  EXPECT_EQ(lookupExpression(*entries, "Master"), std::nullopt);
  struct Case {
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {"", "[Error] No lookup array specified."},
      {"Novice=1", "[Error] Poorly formatted lookup string: Novice=1."},
      {"$Novice", "[Error] Poorly formatted lookup string: $Novice."},
      {"$Novice=;", "[Error] Empty expression for lookup entry: Novice"},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    EXPECT_FALSE(parseLookupString(item, c.text).has_value()) << c.text;
    EXPECT_EQ(messages(), c.message) << c.text;
  }
}

TEST_F(DistLookupTest, ConstantCostKeepsTheCost) {
  Symbol* factor = defineVariable(*sheet_.symbols, "Mult", "2");
  ASSERT_NE(factor, nullptr);
  Item& climb = addItem("Climb");
  climb.varName = "Climb";
  climb.formula = "x*Mult";
  ASSERT_TRUE(setItemLevel(climb, "3", true, false));
  sheet_.setConstCost(true);
  ASSERT_EQ(setExpression(*sheet_.symbols, *factor, "3"), 0);
  EXPECT_DOUBLE_EQ(climb.totalCost, 6) << messages();
  EXPECT_EQ(climb.level, "2");
  EXPECT_EQ(climb.value, Value(2));
}

TEST_F(DistLookupTest, EngineSeesTheOptionRules) {
  wireItemRules(engineContext_.context());
  const OptionRules& rules = engine().services.optionRules;
  Item& item = addItem("Thing");
  Option& size = addOption(item, kOptionAddition, "Size", "?:2; Small,1; Large,3;");
  std::string text;
  Value value;
  ASSERT_TRUE(rules.optionString(item, size, text, value));
  EXPECT_EQ(text, "Large, 3");
  EXPECT_EQ(rules.optionDisplay(item, size), "Size: Large, 3");
  EXPECT_EQ(rules.expandOptionRefs(item, "`Size`*2"), "3*2");
}

}  // namespace
}  // namespace zv::testing

namespace zv::testing {
namespace {

class LookupArrayTest : public RulesTest {};

TEST_F(LookupArrayTest, ArraysOfPairs) {
  ASSERT_NE(defineArray(*sheet_.symbols, "Ranks[4]", "\"Novice\", 1, \"Expert\", 3"), nullptr);
  ASSERT_NE(defineArray(*sheet_.symbols, "Odd[3]", "\"a\", 1, \"b\""), nullptr);
  ASSERT_NE(defineArray(*sheet_.symbols, "Numbers[2]", "1, 2"), nullptr);
  ASSERT_NE(defineVariable(*sheet_.symbols, "Plain", "1"), nullptr);
  Item& item = addItem("Rank");
  item.lookupArray = "Ranks";
  auto entries = lookupEntries(item);
  ASSERT_TRUE(entries.has_value()) << messages();
  ASSERT_EQ(entries->size(), 2u);
  EXPECT_EQ((*entries)[1].first, "Expert");
  EXPECT_EQ((*entries)[1].second, "3");
  struct Case {
    const char* name;
    const char* message;
  };
  const Case cases[] = {
      {"", "[Error] No lookup array specified."},
      {"Missing", "[Error] Cannot find lookup array 'Missing'"},
      {"Plain", "[Error] Lookup array 'Plain' is not an array"},
      {"Odd", "[Error] Must have even number of elements in lookup array"},
      {"Numbers", "[Error] Element 1 is not a string in combo box"},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    item.lookupArray = c.name;
    EXPECT_FALSE(lookupEntries(item).has_value()) << c.name;
    EXPECT_EQ(messages(), c.message) << c.name;
  }
}

TEST_F(LookupArrayTest, AttributesOfTheOptionSums) {
  Item& item = addItem("Thing");
  addOption(item, kOptionFraction, "Up", "+1/2");
  addOption(item, kOptionFraction, "Down", "-1/4");
  addOption(item, kOptionAddition, "Plus", "+3");
  addOption(item, kOptionAddition, "Minus", "-1");
  addOption(item, kOptionPercentage, "Pct", "20");
  Option& self = addOption(item, kOptionAdjustment, "Self", "?!@*fracup@+@*fracdown@");
  item.mult = 7;
  struct Case {
    const char* name;
    const char* text;
  };
  const Case cases[] = {
      {"fracup", "0.5"}, {"fracdown", "0.25"}, {"product", "1"},
      {"percent", "20"}, {"posadd", "3"},      {"negadd", "-1"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(itemAttributeText(item, c.name), std::optional<std::string>(c.text)) << c.name;
  }
  EXPECT_DOUBLE_EQ(item.mult, 7);
  std::optional<OptValue> value = getOptValue(&item, self.kind, "", self.value);
  ASSERT_TRUE(value.has_value()) << messages();
  EXPECT_EQ(value->value, "0.75");
}

}  // namespace
}  // namespace zv::testing
