// The edit entry points: a level change with its propagation to dependants, sublists, list totals
// and views; the flow of a refused value through the preferences; costs, steps, dialog values
// and variables.

#include "rules/value/edit.h"

#include "rules/requirements/requirements_check.h"

#include "sheet_fixture.h"

namespace zv::testing {
namespace {

class EditTest : public SheetRulesTest {
 protected:
  EditTest() : skills_(sheetList("Skills", "SkillPoints")) {
    // A diamond: Agile and Wary follow Might, Grace follows both.
    levelled(skills_, "Might", "x*2", "3");
    levelled(skills_, "Agile", "x*3", "Might+1");
    levelled(skills_, "Wary", "x", "Might*2");
    levelled(skills_, "Grace", "x", "Agile+Wary");
    defineVariable(*sheet_.symbols, "Spent", "SkillPoints+10");
  }
  Item& item(std::size_t i) { return *skills_.items[i]; }

  ListInfo& skills_;
};

TEST_F(EditTest, ALevelChangeReachesEveryDependantOnce) {
  settle();
  EXPECT_EQ(variable("SkillPoints"), "34");  // 6 + 12 + 6 + 10
  ASSERT_EQ(changeItemLevel(sheet_, item(0), "5"), EditResult::Changed) << messages();
  struct Expect {
    const char* name;
    double value;
    double cost;
  };
  const Expect expected[] = {
      {"Might", 5, 10}, {"Agile", 6, 18}, {"Wary", 10, 10}, {"Grace", 16, 16}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(item(i).name, expected[i].name);
    EXPECT_DOUBLE_EQ(item(i).levelValue, expected[i].value) << expected[i].name;
    EXPECT_DOUBLE_EQ(item(i).totalCost, expected[i].cost) << expected[i].name;
    EXPECT_EQ(itemsRepainted[expected[i].name], 1) << expected[i].name;
  }
  EXPECT_EQ(item(0).level, "5");
  EXPECT_EQ(item(1).level, "Might+1");
  EXPECT_DOUBLE_EQ(skills_.total, 54);
  EXPECT_EQ(variable("Spent"), "64");
  EXPECT_EQ(totalsAdded["Skills"], 1);
  EXPECT_EQ(listsRepainted["Skills"], 1);
  EXPECT_EQ(sheetsRefreshed, 1);
  EXPECT_TRUE(sheet_.changed());
  EXPECT_EQ(messages(), "");
}

TEST_F(EditTest, ChangesInsideSublistsAddUpTheirParents) {
  auto pack = std::make_unique<Item>(ItemKind::Sublist, "Pack");
  Item& packItem = skills_.appendItem(std::move(pack));
  auto pouch = std::make_unique<Item>(ItemKind::Sublist, "Pouch");
  Item& pouchItem = packItem.appendChild(std::move(pouch));
  auto rope = std::make_unique<Item>(ItemKind::Item, "Rope");
  rope->varName = "Rope";
  rope->formula = "x*4";
  rope->level = "1";
  Item& ropeItem = pouchItem.appendChild(std::move(rope));
  settle();
  EXPECT_DOUBLE_EQ(packItem.totalCost, 4);
  ASSERT_EQ(changeItemLevel(sheet_, ropeItem, "3"), EditResult::Changed) << messages();
  EXPECT_DOUBLE_EQ(pouchItem.totalCost, 12);
  EXPECT_DOUBLE_EQ(packItem.totalCost, 12);
  EXPECT_DOUBLE_EQ(skills_.total, 34 + 12);
  EXPECT_EQ(itemsRepainted["Pouch"], 1);
  EXPECT_EQ(itemsRepainted["Pack"], 1);
}

TEST_F(EditTest, ACostThatFeedsItsOwnTotalEndsAfterAFewRounds) {
  ListInfo& loop = sheetList("Loop", "LoopTotal");
  Item& echo = levelled(loop, "Echo", "x+LoopTotal", "0");
  settle();
  ASSERT_EQ(changeItemLevel(sheet_, echo, "1"), EditResult::Changed) << messages();
  // The item follows the total three times; each round raised the total by one.
  EXPECT_DOUBLE_EQ(echo.totalCost, 4);
  EXPECT_DOUBLE_EQ(loop.total, 4);
}

TEST_F(EditTest, RefusedLevelsPassThePreferences) {
  item(0).checkExp = "x<=5";
  settle();
  struct Choices {
    bool checkReq, disallowIfNotSatisfied, noBadValueDlg;
  };
  struct Case {
    Choices preferences;
    const char* answer;
    EditResult result;
    const char* level;
    const char* shown;
  };
  const char* box = "[Skills] Might: The value '7' is not allowed.";
  const Case cases[] = {
      {{true, false, false}, "Cancel", EditResult::Refused, "3", box},
      {{true, false, false}, "OK", EditResult::Changed, "7", box},
      {{true, true, false}, "OK", EditResult::Refused, "3", box},
      {{true, false, true}, "OK", EditResult::Refused, "3", ""},
      {{false, false, false}, "Cancel", EditResult::Changed, "7", ""},
  };
  for (const Case& c : cases) {
    EnginePreferences& preferences = engineContext_->preferences;
    preferences.checkReq = c.preferences.checkReq;
    preferences.disallowIfNotSatisfied = c.preferences.disallowIfNotSatisfied;
    preferences.noBadValueDlg = c.preferences.noBadValueDlg;
    ASSERT_EQ(changeItemLevel(sheet_, item(0), "3"), EditResult::Changed);
    sheet_.setChangedFlag(false);
    host_.clearTranscript();
    host_.addAnswer(c.answer);
    EXPECT_EQ(changeItemLevel(sheet_, item(0), "7"), c.result) << c.answer;
    EXPECT_EQ(item(0).level, c.level) << c.answer;
    EXPECT_EQ(sheet_.changed(), c.result == EditResult::Changed);
    EXPECT_EQ(messages(), c.shown) << c.answer;
  }
}

TEST_F(EditTest, ADependantThatFailsItsCheckUndoesTheChange) {
  item(1).checkExp = "x<=5";
  item(1).checkMsg = "Agility can't pass x";
  settle();
  host_.addAnswer("Cancel");
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "6"), EditResult::Refused);
  EXPECT_EQ(messages(), "[Skills] Agility can't pass 7");
  EXPECT_EQ(item(0).level, "3");
  EXPECT_DOUBLE_EQ(item(1).levelValue, 4);
  EXPECT_DOUBLE_EQ(skills_.total, 34);
  EXPECT_FALSE(sheet_.changed());
}

TEST_F(EditTest, UnmetRequirementsComeThroughTheContextsCheck) {
  settle();
  engineContext_->services.checkRequirements = [](FileInfo&, Item& changed) {
    return changed.levelValue > 4 ? std::optional<BadValue>({"Requirements", "Needs a mentor"})
                                  : std::nullopt;
  };
  host_.addAnswer("Cancel");
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "5"), EditResult::Refused);
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "4"), EditResult::Changed);
  EXPECT_EQ(messages(), "[Requirements] Needs a mentor");
  EXPECT_EQ(item(0).level, "4");
}

TEST_F(EditTest, TheSheetsRequirementsJoinALevelChange) {
  item(3).prereq = "Might>=4";
  settle();
  engineContext_->services.checkRequirements = unmetRequirementsAfterChange;
  host_.addAnswer("Cancel");
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "5"), EditResult::Changed);
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "2"), EditResult::Refused);
  EXPECT_EQ(messages(), "[Skills] 1 item with unsatisfied requirements\\n\\nSkills: Grace");
  EXPECT_EQ(item(0).level, "5");
}

TEST_F(EditTest, AnItemIsNotChangedAgainWhileItChanges) {
  settle();
  std::vector<EditResult> inner;
  engineContext_->views.itemChanged = [&](Item& changed) {
    if (&changed == &item(0)) inner.push_back(changeItemLevel(sheet_, item(0), "9"));
  };
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "4"), EditResult::Changed);
  engineContext_->views.itemChanged = nullptr;
  EXPECT_EQ(inner, std::vector<EditResult>{EditResult::Busy});
  EXPECT_EQ(item(0).level, "4");
}

TEST_F(EditTest, CostsStepsAndBadTexts) {
  Item& rope = levelled(skills_, "Rope", "", "");
  settle();
  EXPECT_EQ(changeItemCost(sheet_, rope, "2.5"), EditResult::Changed) << messages();
  EXPECT_DOUBLE_EQ(rope.totalCost, 2.5);
  EXPECT_EQ(changeItemCost(sheet_, item(0), "8"), EditResult::Changed) << messages();
  EXPECT_EQ(item(0).level, "4");
  EXPECT_DOUBLE_EQ(skills_.total, 8 + 15 + 8 + 13 + 2.5);
  EXPECT_EQ(changeItemCost(sheet_, item(0), "Might+"), EditResult::Failed);
  EXPECT_EQ(changeItemLevel(sheet_, item(0), "Might+"), EditResult::Failed);
  EXPECT_EQ(messages(), "[Error] Illegal cost value: 'Might+'|[Error] Illegal value: Might+");
  EXPECT_EQ(item(0).level, "4");

  host_.clearTranscript();
  item(0).checkExp = "x mod 2 = 0";
  EXPECT_EQ(stepItemLevel(sheet_, item(0), 1), EditResult::Changed);
  EXPECT_EQ(item(0).level, "6");
  EXPECT_EQ(stepItemLevel(sheet_, item(0), -1), EditResult::Changed);
  EXPECT_EQ(item(0).level, "4");
  item(0).checkExp = "x < 5";
  host_.addAnswer("Cancel");
  EXPECT_EQ(stepItemLevel(sheet_, item(0), 1), EditResult::Refused);
  EXPECT_EQ(messages(), "[Skills] Might: The value '5' is not allowed.");

  auto pack = std::make_unique<Item>(ItemKind::Sublist, "Pack");
  pack->setSetListCost(true);
  pack->level = "1";
  pack->cost = 4;
  Item& packItem = skills_.appendItem(std::move(pack));
  EXPECT_EQ(stepItemLevel(sheet_, packItem, -1), EditResult::Changed);
  EXPECT_DOUBLE_EQ(packItem.totalCost, 3);
}

TEST_F(EditTest, VariablesOfDialogsAndScripts) {
  defineVariable(*sheet_.symbols, "Bonus", "0");
  item(0).level = "Bonus+3";
  settle();
  ASSERT_EQ(setVariableExpression(sheet_, *sheet_.symbols->find("Bonus"), "2"), 0);
  EXPECT_DOUBLE_EQ(item(0).levelValue, 5);
  EXPECT_DOUBLE_EQ(item(3).totalCost, 6 + 10);
  EXPECT_EQ(variable("Spent"), "64");
  EXPECT_EQ(totalsAdded["Skills"], 1);
  EXPECT_EQ(itemsRepainted["Grace"], 1);
  EXPECT_FALSE(sheet_.changed());  // the field code marks the sheet
  ASSERT_EQ(setVariableValue(sheet_, *sheet_.symbols->find("Bonus"), Value(0)), 0);
  EXPECT_EQ(variable("Spent"), "44");
  EXPECT_EQ(setVariableExpression(sheet_, *sheet_.symbols->find("Bonus"), "2+"), -1);
  EXPECT_EQ(messages(), "");

  EXPECT_EQ(changeVariable(sheet_, "Bonus", "1"), EditResult::Changed);
  EXPECT_DOUBLE_EQ(item(0).levelValue, 4);
  EXPECT_TRUE(sheet_.changed());
  EXPECT_EQ(changeVariable(sheet_, "Luck", "7"), EditResult::Changed);
  EXPECT_EQ(variable("Luck"), "7");
  EXPECT_EQ(changeVariable(sheet_, "Luck", "7+"), EditResult::Failed);
  EXPECT_EQ(variable("Luck"), "7");
  EXPECT_EQ(messages(), "[Error] Expression error: Stack underflow or missing argument (7+)");
}

}  // namespace
}  // namespace zv::testing
