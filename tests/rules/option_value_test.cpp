// The option value language, the fraction language, the normal forms of modifiers, and what
// options do to an item's multiplier, addition and side cost.

#include <cmath>

#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"
#include "rules/value/option_value.h"
#include "rules_test_support.h"

namespace zv::testing {
namespace {

class OptionValueTest : public RulesTest {};

TEST_F(OptionValueTest, ValueLanguage) {
  struct Case {
    const char* text;
    const char* value;
    const char* label;
    int index;
    int count;
  };
  const Case cases[] = {
      {"?:2; a; b,5; c;", "5", "b", 2, 3},
      {"?:1; 1,000,5;", "5", "1,000", 1, 1},
      {"?:3; a; b; c;", "c", "c", 3, 3},
      {"?+0;text", "text", "text", 1, 1},
      {"?+1;", "1", "1", 1, 1},
      {"?+0;", "0", "0", 1, 1},
      {"??abc;;", "abc", "abc", 1, 1},
      {"??abc;def;", "def", "abc", 1, 1},
      {"plain text", "plain text", "plain text", 1, 1},
  };
  for (const Case& c : cases) {
    std::optional<OptValue> read = getOptValue(nullptr, kOptionText, "", c.text);
    ASSERT_TRUE(read.has_value()) << c.text << " " << messages();
    EXPECT_EQ(read->value, c.value) << c.text;
    EXPECT_EQ(read->label, c.label) << c.text;
    EXPECT_EQ(read->index, c.index) << c.text;
    EXPECT_EQ(read->count, c.count) << c.text;
  }
  EXPECT_EQ(messages(), "");
}

TEST_F(OptionValueTest, MalformedValuesShowTheirMessage) {
  Item& foo = addItem("Foo");
  struct Case {
    Item* item;
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {nullptr, "?:3; a;", "[Error] Not enough parameters for ?: option"},
      {&foo, "?:3; a;", "[Error] Not enough parameters for ?: option (Foo)"},
      {&foo, "?:x; a;", "[Error] Missing or bad count in ?: option (Foo)"},
      {&foo, "?:0; a;", "[Error] Missing or bad count in ?: option (Foo)"},
      {&foo, "?:1 a;", "[Error] Missing ';' after number in ?: option"},
      {&foo, "?:2; a; b,5", "[Error] Missing , in ?: option"},
      {&foo, "?+1", "[Error] Missing parameter for ?+ option."},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    EXPECT_FALSE(getOptValue(c.item, kOptionText, "", c.text).has_value()) << c.text;
    EXPECT_EQ(messages(), c.message) << c.text;
  }
}

TEST_F(OptionValueTest, ComputedValueReadsTheRelatedItem) {
  Item& sword = addItem("Sword");
  sword.value = Value(3);
  Item& user = addItem("Fighter");
  std::optional<OptValue> read = getOptValue(&user, kOptionAdjustment, "Sword", "?!@level@*2");
  ASSERT_TRUE(read.has_value()) << messages();
  EXPECT_EQ(read->value, "6");
  EXPECT_EQ(read->label, "Sword");
  read = getOptValue(&user, kOptionAdjustment, "", "?!@level@*2");
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->value, "0");
  user.value = Value(5);
  read = getOptValue(&user, kOptionAdjustment, "Sword", "?!@*level@+@!level@");
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->value, "8");
  read = getOptValue(&user, kOptionAdjustment, "Sword", "?!1+@level");
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->value, "0");
}

TEST_F(OptionValueTest, FractionLanguage) {
  struct Case {
    const char* text;
    double value;
  };
  const Case cases[] = {
      {"1\xBD", 1.5}, {"-1/2", -0.5}, {"1 3/4", 1.75},  {"\xBC", 0.25}, {"-\xBE", -0.75},
      {"+2", 2.0},    {"3/0", 3.0},   {"  +1/4", 0.25}, {"1.25", 1.25}, {"2 1/0", 2.0},
  };
  for (const Case& c : cases) {
    std::optional<double> parsed = parseFraction(c.text);
    ASSERT_TRUE(parsed.has_value()) << c.text;
    EXPECT_DOUBLE_EQ(*parsed, c.value) << c.text;
  }
  EXPECT_FALSE(parseFraction("abc").has_value());
  EXPECT_FALSE(parseFraction("").has_value());
  EXPECT_DOUBLE_EQ(*parseMultiplier("\xD7"
                                    "2"),
                   2.0);
  EXPECT_DOUBLE_EQ(*parseMultiplier("*1\xBD"), 1.5);
}

TEST_F(OptionValueTest, NormalForms) {
  struct Case {
    std::int32_t kind;
    const char* text;
    const char* normal;
  };
  const Case cases[] = {
      {kOptionAddition, "5", "+5"},
      {kOptionAddition, "-3", "-3"},
      {kOptionPercentage, "50", "+50%"},
      {kOptionFraction, "1/2", "+\xBD"},
      {kOptionFraction, "-3/4", "-\xBE"},
      {kOptionFraction, "2/4", "+2/4"},
      {kOptionFraction, "1 2/4", "+1 2/4"},
      {kOptionFraction, "-1 1/2", "-1\xBD"},
      {kOptionFraction, "2 1/4", "+2\xBC"},
      {kOptionFraction, "1 2/3", "+1 2/3"},
      {kOptionMultiplier, "*2",
       "\xD7"
       "2"},
      {kOptionMultiplier,
       "\xD7"
       "1 1/2",
       "\xD7"
       "1\xBD"},
      {kOptionFraction, "?:1; a;", "?:1; a;"},
      {kOptionAddition, "?+1;5", "?+1;5"},
  };
  for (const Case& c : cases) {
    Option option;
    option.kind = c.kind;
    std::optional<std::string> normal = reformatModifier(nullptr, option, c.text);
    ASSERT_TRUE(normal.has_value()) << c.text << " " << messages();
    EXPECT_EQ(*normal, c.normal) << c.text;
  }
  Option addition;
  addition.kind = kOptionAddition;
  EXPECT_FALSE(reformatModifier(nullptr, addition, "many").has_value());
  Option aux;
  aux.kind = kOptionAuxCost;
  aux.auxExpression = "\"x\"";
  EXPECT_FALSE(reformatModifier(nullptr, aux, "2").has_value());
  Option odd;
  odd.kind = 7;
  EXPECT_FALSE(reformatModifier(nullptr, odd, "2").has_value());
  EXPECT_EQ(messages(),
            "[Error] Value required|[Error] Bad value type|[Error] Case missing in "
            "reformatModifier");
}

struct MultiplierCase {
  const char* name;
  std::vector<std::pair<std::int32_t, const char*>> options;
  double mult;
  double add;
};

TEST_F(OptionValueTest, MultiplierOrder) {
  const MultiplierCase cases[] = {
      {"two halves up add before multiplying",
       {{kOptionFraction, "+1/2"}, {kOptionFraction, "+1/2"}},
       2.0,
       0},
      {"percent then product",
       {{kOptionPercentage, "+50"},
        {kOptionMultiplier,
         "\xD7"
         "2"}},
       3.0,
       0},
      {"up and down cancel", {{kOptionFraction, "+1/2"}, {kOptionFraction, "-1/2"}}, 1.0, 0},
      {"down divides once", {{kOptionFraction, "-1/2"}, {kOptionFraction, "-1/2"}}, 0.5, 0},
      {"toggle off counts for nothing",
       {{kOptionMultiplier, "?+0;3"}, {kOptionAddition, "?+1;4"}},
       1.0,
       4},
      {"count list choice", {{kOptionAddition, "?:2; Small,1; Large,3;"}}, 1.0, 3},
      {"additions sum", {{kOptionAddition, "+5"}, {kOptionAddition, "-2"}}, 1.0, 3},
      {"unreadable multiplier is 1", {{kOptionMultiplier, "lots"}}, 1.0, 0},
      {"adjustments and text do nothing", {{kOptionAdjustment, "7"}, {kOptionText, "9"}}, 1.0, 0},
  };
  for (const MultiplierCase& c : cases) {
    Item item(ItemKind::Item, "Thing");
    for (const auto& [kind, value] : c.options)
      addOption(item, kind, "o", value);
    computeMultipliers(item);
    EXPECT_DOUBLE_EQ(item.mult, c.mult) << c.name;
    EXPECT_DOUBLE_EQ(item.add, c.add) << c.name;
  }
}

TEST_F(OptionValueTest, AuxCostAndAuxiliaryExpressions) {
  Item item(ItemKind::Item, "Thing");
  addOption(item, kOptionAuxCost, "Extra", "2", "x*3");
  addOption(item, kOptionAuxCost, "More", "?+0;5", "x*3");
  addOption(item, kOptionAddition, "Scaled", "4", "x/2");
  MultiplierSums sums = computeMultipliers(item);
  EXPECT_DOUBLE_EQ(item.aux, 6.0);
  EXPECT_DOUBLE_EQ(item.add, 2.0);
  EXPECT_DOUBLE_EQ(sums.aux, 6.0);

  Item bad(ItemKind::Item, "Bad");
  addOption(bad, kOptionAuxCost, "Word", "2", "\"x\"");
  addOption(bad, kOptionAddition, "Later", "4");
  computeMultipliers(bad);
  EXPECT_EQ(messages(), "[Error] Bad value type");
  EXPECT_DOUBLE_EQ(bad.add, 0.0);
}

TEST_F(OptionValueTest, InheritedOptionsOfSublists) {
  auto group = std::make_unique<Item>(ItemKind::Sublist, "Group");
  group->setInheritOpts(true);
  addOption(*group, kOptionFraction, "Half", "+1/2");
  Option& secret = addOption(*group, kOptionMultiplier, "Secret",
                             "\xD7"
                             "3");
  secret.setNoInherit(true);
  Item& sublist = list_->appendItem(std::move(group));
  Item& child = sublist.appendChild(std::make_unique<Item>(ItemKind::Item, "Child"));
  computeMultipliers(child);
  EXPECT_DOUBLE_EQ(child.mult, 1.5);
  ASSERT_EQ(effectiveOptions(child).size(), 1u);
  sublist.setInheritOpts(false);
  computeMultipliers(child);
  EXPECT_DOUBLE_EQ(child.mult, 1.0);
}

TEST_F(OptionValueTest, DisplayTexts) {
  Item item(ItemKind::Item, "Thing");
  Option& note = addOption(item, kOptionText, "Note", "hello");
  note.qualifier = "Q";
  Option& size = addOption(item, kOptionAddition, "Size", "?:2; Small,1; Large,3;");
  Option& extra = addOption(item, kOptionAuxCost, "Extra", "2", "x*3");
  Option& calc = addOption(item, kOptionExpression, "Calc", "1+");
  Option& sum = addOption(item, kOptionExpression, "Sum", "2+3");
  Option& plain = addOption(item, kOptionAddition, "Plain", "+2");
  EXPECT_EQ(formatOption(item, note), "Note (Q): hello");
  EXPECT_EQ(formatOption(item, size), "Size: Large, 3");
  EXPECT_EQ(formatOption(item, extra), "Extra: 2 (cost 6)");
  EXPECT_EQ(formatOption(item, calc), "Calc: (Error!)");
  EXPECT_EQ(formatOption(item, sum), "Sum: 5");
  EXPECT_EQ(formatOption(item, plain), "Plain: +2");

  // Display templates: x is the option's value, c, a and m the item's figures.
  Item& held = addItem("Held");
  held.cost = 4;
  Option& grade = addOption(held, kOptionAddition, "Grade", "?:2; Small,1; Large,3;");
  Option& remark = addOption(held, kOptionText, "Remark", "hello");
  const std::tuple<Option*, const char*, const char*> templates[] = {
      {&grade, "concat(\"Grade \", x)", "Grade 3"},
      {&grade, "x*c", "12"},
      {&remark, "concat(\"Remark: \", x)", "Remark: hello"},
      {&grade, "x+", "Grade: Large, 3"},
  };
  for (const auto& [target, format, shown] : templates) {
    target->format = format;
    EXPECT_EQ(formatOption(held, *target), shown) << format;
    target->format.clear();
  }
  EXPECT_EQ(messages(), "");

  std::optional<OptString> text = getOptString(item, size);
  ASSERT_TRUE(text.has_value());
  EXPECT_EQ(text->text, "Large, 3");
  EXPECT_EQ(text->value, Value(3));
  text = getOptString(item, note);
  ASSERT_TRUE(text.has_value());
  EXPECT_EQ(text->value, Value("hello"));
  Option odd;
  odd.kind = 7;
  host_.clearTranscript();
  EXPECT_FALSE(getOptString(item, odd).has_value());
  EXPECT_EQ(messages(), "[Error] Internal Error in getOptString");
}

TEST_F(OptionValueTest, OptionReferencesInFormulas) {
  Item& item = addItem("Thing");
  addOption(item, kOptionAdjustment, "Qual", "2+1");
  addOption(item, kOptionAdjustment, "Level", "4");
  Item& other = addItem("Other");
  addOption(other, kOptionAdjustment, "Qual", "7");
  struct Case {
    const char* text;
    bool wrap;
    const char* expanded;
  };
  const Case cases[] = {
      {"x*`Qual`", true, "x*(2+1)"},
      {"x*`~Qual`", true, "x*2+1"},
      {"x*`Qual`", false, "x*2+1"},
      {"x*`Missing`", true, "x*0"},
      {"x+`!Qual`", true, "x+7"},
      {"`$2*3`+`Level`", true, "6+4"},
      {"`qual` unclosed `Qual", true, "(2+1) unclosed `Qual"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(expandOptionRefs(item, c.text, &other, c.wrap), c.expanded) << c.text;
  }
}

TEST_F(OptionValueTest, FindingOptionsByName) {
  auto group = std::make_unique<Item>(ItemKind::Sublist, "Group");
  group->setInheritOpts(true);
  addOption(*group, kOptionAdjustment, "Range", "10");
  Item& sublist = list_->appendItem(std::move(group));
  Item& child = sublist.appendChild(std::make_unique<Item>(ItemKind::Item, "Child"));
  addOption(child, kOptionAdjustment, "Ranged", "5").alias = "Reach";
  std::optional<EffectiveOption> found = findOptionByName(child, "Range", true);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->holder, &sublist);
  found = findOptionByName(child, "Range", false);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->option->value, "5");
  found = findOptionByName(child, "reach", true);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->option->name, "Ranged");
  EXPECT_FALSE(findOptionByName(child, "Nothing", false).has_value());

  // By index: the nth match counting up through the parents; an empty name matches all.
  addOption(child, kOptionAdjustment, "Range", "7");
  const std::tuple<const char*, int, const char*> indexed[] = {
      {"Range", 1, "7"}, {"Range", 2, "10"}, {"", 1, "5"}, {"", 3, "10"}, {"reach", 1, "5"},
  };
  for (const auto& [name, n, value] : indexed) {
    found = findOptionByIndex(child, name, n);
    ASSERT_TRUE(found.has_value()) << name << n;
    EXPECT_EQ(found->option->value, value) << name << n;
  }
  EXPECT_FALSE(findOptionByIndex(child, "Range", 3).has_value());
}

}  // namespace
}  // namespace zv::testing
