// Editing an item's options: each edit takes the value's normal form and the item's cost, its
// list total and the sheet follow; refused edits leave the options as they were.

#include "rules/value/option_edit.h"

#include "sheet_fixture.h"

namespace zv::testing {
namespace {

class OptionEditTest : public SheetRulesTest {
 protected:
  OptionEditTest()
      : skills_(sheetList("Skills", "SkillPoints")),
        climb_(levelled(skills_, "Climb", "x*2", "3")) {}

  Option made(std::int32_t kind, const char* name, const char* value) {
    Option option;
    option.kind = kind;
    option.name = name;
    option.value = value;
    return option;
  }

  ListInfo& skills_;
  Item& climb_;
};

TEST_F(OptionEditTest, EachEditReachesTheCostAndTotal) {
  settle();
  struct Step {
    const char* what;
    std::function<EditResult()> edit;
    const char* values;  // the option values after the edit, joined by "|"
    double cost;
  };
  const Step steps[] = {
      {"add a fraction",
       [&] { return addItemOption(sheet_, climb_, made(kOptionFraction, "Hard", "1/2")); }, "+\xBD",
       9},
      {"change it", [&] { return changeItemOption(sheet_, climb_, 0, "1"); }, "+1", 12},
      {"step it", [&] { return stepItemOption(sheet_, climb_, 0, 1); }, "+2", 18},
      {"add a count list",
       [&] {
         return addItemOption(sheet_, climb_,
                              made(kOptionAddition, "Size", "?:1; Small,1; Large,3;"));
       },
       "+2|?:1; Small,1; Large,3;", 21},
      {"step the choice", [&] { return stepItemOption(sheet_, climb_, 1, 1); },
       "+2|?:2; Small,1; Large,3;", 27},
      {"step past the last", [&] { return stepItemOption(sheet_, climb_, 1, 1); },
       "+2|?:2; Small,1; Large,3;", 27},
      {"add a toggle",
       [&] { return addItemOption(sheet_, climb_, made(kOptionAddition, "Kit", "?+1;5")); },
       "+2|?:2; Small,1; Large,3;|?+1;5", 42},
      {"turn it off", [&] { return stepItemOption(sheet_, climb_, 2, -1); },
       "+2|?:2; Small,1; Large,3;|?+0;5", 27},
      {"remove the fraction", [&] { return removeItemOption(sheet_, climb_, 0); },
       "?:2; Small,1; Large,3;|?+0;5", 9},
  };
  for (const Step& step : steps) {
    sheet_.setChangedFlag(false);
    ASSERT_EQ(step.edit(), EditResult::Changed) << step.what << " " << messages();
    std::string values;
    for (const auto& option : climb_.options)
      values += (values.empty() ? "" : "|") + option->value;
    EXPECT_EQ(values, step.values) << step.what;
    EXPECT_DOUBLE_EQ(climb_.totalCost, step.cost) << step.what;
    EXPECT_DOUBLE_EQ(skills_.total, step.cost) << step.what;
    EXPECT_EQ(variable("SkillPoints"), formatFloat(step.cost, false)) << step.what;
    EXPECT_TRUE(sheet_.changed()) << step.what;
  }
  EXPECT_EQ(messages(), "");
}

TEST_F(OptionEditTest, RefusedAndImpossibleEdits) {
  Option& grip = addOption(climb_, kOptionAddition, "Grip", "+1");
  grip.checkExpression = "v<=2;Grip can't pass 2";
  climb_.checkExp = "1";
  addOption(climb_, kOptionText, "Note", "hand holds");
  Option& fixed = addOption(climb_, kOptionMultiplier, "Fixed",
                            "\xD7"
                            "2");
  fixed.setNoEdit(true);
  settle();
  EXPECT_DOUBLE_EQ(climb_.totalCost, 14);

  host_.addAnswer("Cancel");
  EXPECT_EQ(changeItemOption(sheet_, climb_, 0, "5"), EditResult::Refused);
  EXPECT_EQ(grip.value, "+1");
  EXPECT_DOUBLE_EQ(climb_.totalCost, 14);
  EXPECT_EQ(changeItemOption(sheet_, climb_, 2, "3"), EditResult::Refused);
  EXPECT_EQ(stepItemOption(sheet_, climb_, 1, 1), EditResult::Failed);
  EXPECT_EQ(changeItemOption(sheet_, climb_, 0, "plenty"), EditResult::Failed);
  Option odd = made(7, "Odd", "1");
  EXPECT_EQ(addItemOption(sheet_, climb_, odd), EditResult::Failed);
  climb_.options[1]->kind = 7;
  EXPECT_EQ(changeItemOption(sheet_, climb_, 1, "x"), EditResult::Failed);
  EXPECT_EQ(removeItemOption(sheet_, climb_, 1), EditResult::Failed);
  EXPECT_EQ(climb_.options.size(), 3u);
  EXPECT_FALSE(sheet_.changed());
  const char* expected[] = {
      "[Skills] Grip can't pass 2",
      "[Error] Can't change value: Fixed",
      "[Cannot Increment Value] The value is empty or contains no number, so you cannot "
      "increment or decrement it.",
      "[Error] Value required",
      "[Error] Error: missing case adding options",
      "[Error] Missing case (7) in updateOptions",
      "[Error] Missing case in delOpt",
  };
  ASSERT_EQ(host_.transcript().size(), std::size(expected)) << messages();
  for (std::size_t i = 0; i < std::size(expected); ++i)
    EXPECT_EQ(host_.transcript()[i], expected[i]);
}

}  // namespace
}  // namespace zv::testing
