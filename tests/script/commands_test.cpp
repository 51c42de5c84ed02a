// The sheet commands on a sample character of Hollowmark (Maren Vell), run on the sheet itself:
// items added, optioned, set, assigned, walked, deleted, and the messages where a condition picks
// them. Costs follow the data: Swimming costs 2 a rank, Spear 3 a rank plus its barbed head (2),
// Lorekeeping its rank squared; Loud is a flaw of -2 and Grave multiplies by 1½.

#include "core/numbers.h"
#include "rules/lists/list_ops.h"
#include "rules/selection/rule_library.h"
#include "script_support.h"

namespace zv::script {
namespace {

using testing::ScriptTest;

class ScriptCommands : public ScriptTest {
 protected:
  void SetUp() override { maren_ = &character("Maren Vell"); }

  Item* item(const std::string& list, const std::string& name) {
    ListInfo* found = findListByName(*maren_, list);
    return found != nullptr ? findItemInSublists(*found, name) : nullptr;
  }
  std::string sheetVariable(const std::string& name) {
    const Symbol* symbol = maren_->symbols->find(name);
    if (symbol == nullptr) return "(none)";
    if (symbol->value.isNumber()) return formatFloat(valueToDouble(symbol->value), false);
    return valueToText(symbol->value);
  }
  std::vector<std::string> names(const std::string& list) {
    std::vector<std::string> out;
    for (const auto& element : findListByName(*maren_, list)->items)
      out.push_back(element->name);
    return out;
  }
  /// Runs and expects the one box `box` (or none) and the outcome.
  void expectRun(const std::string& body, bool completed, const std::string& box = "") {
    SCOPED_TRACE(body);
    host().clearTranscript();
    EXPECT_EQ(run(*maren_, body), completed);
    EXPECT_EQ(lines(), box.empty() ? "" : box + "\n");
  }

  FileInfo* maren_ = nullptr;
};

TEST_F(ScriptCommands, AddTakesTheMasterItemAndAValueAsItsLevel) {
  expectRun("add Skills.Swimming = 1 + 1;", true);
  Item* swimming = item("Skills", "Swimming");
  ASSERT_NE(swimming, nullptr);
  EXPECT_EQ(swimming->level, "2");
  EXPECT_EQ(swimming->totalCost, 4);
  EXPECT_EQ(sheetVariable("SkillPoints"), "29");
  EXPECT_EQ(sheetVariable("Spent"), "81");
  EXPECT_TRUE(maren_->changed());
}

TEST_F(ScriptCommands, AddUnderANewName) {
  expectRun("add \"Skills.Swimming[Swimming (sea)]\" = 3;", true);
  EXPECT_EQ(item("Skills", "Swimming"), nullptr);
  Item* sea = item("Skills", "Swimming (sea)");
  ASSERT_NE(sea, nullptr);
  EXPECT_EQ(sea->level, "3");
  EXPECT_EQ(sea->totalCost, 6);
  EXPECT_EQ(sea->formula, "x*2");
}

TEST_F(ScriptCommands, AValueOfAnItemWithoutCostFormulaOrVariableIsItsFixedValue) {
  expectRun("add \"Traits.Marsh-born\" = 3;", true);
  Item* marsh = findListByName(*maren_, "Traits")->items.back().get();
  EXPECT_EQ(marsh->level, "");
  EXPECT_EQ(valueToText(marsh->value), "3");
  EXPECT_EQ(marsh->totalCost, 4);
}

TEST_F(ScriptCommands, AnUnknownItemAsksAndOkMakesAnEmptyItem) {
  answer("OK");
  expectRun("add Skills.Jump;\nx = 1;", true,
            "[Script Error] Can't find 'Jump' in list Skills.\\n\\nFile: t.scp, line: 1");
  Item* jump = item("Skills", "Jump");
  ASSERT_NE(jump, nullptr);
  EXPECT_TRUE(jump->formula.empty());
  EXPECT_EQ(variable("x"), "1");
}

TEST_F(ScriptCommands, AnUnknownItemAndCancelStopsTheRun) {
  answer("Cancel");
  expectRun("add Skills.Jump;\nx = 1;", false,
            "[Script Error] Can't find 'Jump' in list Skills.\\n\\nFile: t.scp, line: 1");
  EXPECT_EQ(item("Skills", "Jump"), nullptr);
  EXPECT_EQ(variable("x"), "(none)");
}

TEST_F(ScriptCommands, AddMessages) {
  expectRun("add Climbing;", false,
            "[Script Error] Period missing between list and item names\\n\\nFile: t.scp, line: 1");
  expectRun("add Nope.Climbing;", false,
            "[Script Error] 'Nope' is not a list name.\\n\\nFile: t.scp, line: 1");
  expectRun(
      "add Bonds.Innkeeper; add Bonds.Smuggler; add Bonds.Midwife; add Bonds.Ratcatcher;\n"
      "add Bonds.Apprentice;",
      false,
      "[Script Error] The script attempted to add too many items to the list 'Bonds'. The "
      "limit is 6.\\n\\nFile: t.scp, line: 2\\nLast Item Added: Ratcatcher");
}

TEST_F(ScriptCommands, AnOptionFollowsTheItemItBelongsTo) {
  expectRun("add Flaws.Loud; option Grave;", true);
  Item* loud = item("Flaws", "Loud");
  ASSERT_NE(loud, nullptr);
  ASSERT_EQ(loud->options.size(), 1u);
  EXPECT_EQ(loud->options[0]->name, "Grave");
  EXPECT_TRUE(loud->options[0]->converted());
  EXPECT_EQ(loud->totalCost, -3);
  EXPECT_EQ(sheetVariable("FlawPoints"), "-15");
}

TEST_F(ScriptCommands, AnOptionWithAValueAndAQualifier) {
  expectRun("add \"Traits.Marsh-born\"; option \"Marsh training\" = 50; optqualifier \"river\";",
            true);
  Item* marsh = findListByName(*maren_, "Traits")->items.back().get();
  ASSERT_EQ(marsh->options.size(), 1u);
  EXPECT_EQ(marsh->options[0]->value, "+50%");
  EXPECT_EQ(marsh->options[0]->qualifier, "river");
  EXPECT_EQ(marsh->totalCost, 6);
}

TEST_F(ScriptCommands, OptionMessages) {
  expectRun("option Grave;", false,
            "[Script Error] No current item for option\\n\\nFile: t.scp, line: 1");
  expectRun("add Flaws.Loud; option Nonesuch;", false,
            "[Script Error] Cannot find option Nonesuch in data sheet\\n\\nFile: t.scp, line: "
            "1\\nLast Item Added: Loud");
}

TEST_F(ScriptCommands, SetChangesTheCurrentItem) {
  expectRun("foreach (Skills) set level = 2; endforeach", true);
  EXPECT_EQ(item("Skills", "Fenwalking")->level, "2");
  EXPECT_EQ(item("Skills", "Fenwalking")->totalCost, 4);
  EXPECT_EQ(item("Skills", "Lorekeeping")->totalCost, 4);
  EXPECT_EQ(item("Skills", "Spear")->totalCost, 8);
}

TEST_F(ScriptCommands, SetOnTheLastItemAddedAndItsMessages) {
  expectRun("add Skills.Swimming; set $@level = 3; set $@notes = \"Sea-raised\";", true);
  EXPECT_EQ(item("Skills", "Swimming")->totalCost, 6);
  EXPECT_EQ(item("Skills", "Swimming")->notes, "Sea-raised");
  expectRun("set $*level = 2;", false,
            "[Script Error] Set may be used only within list or foreach\\n\\nFile: t.scp, line: 1");
  expectRun("set level;", false, "[Script Error] Missing '=' in set\\n\\nFile: t.scp, line: 1");
  expectRun("foreach (Skills) set bogus = 1; endforeach", false,
            "[Script Error] Unknown value in set: bogus\\n\\nFile: t.scp, line: 1\\nCurrent "
            "Item: Fenwalking");
  expectRun("set constcost = 1;", true);
  EXPECT_TRUE(maren_->constCost());
}

TEST_F(ScriptCommands, SetOnTheLastItemAddedBeforeAnyAdd) {
  expectRun("set $@level = 2;", false,
            "[Script Error] Set $@ may be used only after adding item.\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, SheetVariablesThatAScriptAdds) {
  expectRun("$@SkillPoints = 1;", false,
            "[Script Error] The variable 'SkillPoints' cannot be assigned because the list "
            "'Skills' defines it.\\n\\nFile: t.scp, line: 1");
  expectRun("$@Name = 1;", false,
            "[Script Error] The variable 'Name' cannot be assigned because the dialog 'Identity' "
            "already defines a variable by that name\\n\\nFile: t.scp, line: 1");
  expectRun(
      "$@Motto = \"Keep the lights\";\n$@Creed = 'say \"no\"';\n$@Count = 5;\n"
      "$@Both = concat(\"it's \", '\"x\"');",
      true);
  std::map<std::string, std::string> stored;
  for (const DefineRec& define : maren_->defines) {
    if (define.scriptAdded()) stored[define.name] = define.body;
  }
  EXPECT_EQ(stored["Motto"], "\"Keep the lights\"");
  EXPECT_EQ(stored["Creed"], "'say \"no\"'");
  EXPECT_EQ(stored["Both"], "\"it's 'x'\"");
  EXPECT_EQ(stored["Count"], "5");
  EXPECT_EQ(sheetVariable("Count"), "5");
}

TEST_F(ScriptCommands, AssigningAnItemsLevelByListAndName) {
  expectRun("Skills.Spear = 4;", true);
  EXPECT_EQ(item("Skills", "Spear")->level, "4");
  EXPECT_EQ(item("Skills", "Spear")->totalCost, 14);
  expectRun("Skills.Jump = 1;", false,
            "[Script Error] Cannot find Jump in list Skills\\n\\nFile: t.scp, line: 1");
  expectRun("Foo.Bar = 1;", false,
            "[Script Error] Foo.Bar is not a field in a dialog\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, AssigningDialogFields) {
  expectRun(
      "Identity.Budget = 120;\nBackground.Calling = \"Lamplighter\";\n"
      "Identity.Name = \"Maren of the Reeds\";\nBackground.Sworn = 1;\n"
      "copy = $$Identity.Name;",
      true);
  EXPECT_EQ(sheetVariable("Left"), "43");
  EXPECT_EQ(sheetVariable("Calling"), "5");
  EXPECT_EQ(sheetVariable("Sworn"), "1");
  EXPECT_EQ(variable("copy"), "\"Maren of the Reeds\"");
  expectRun("Identity.Nothing = 1;", false,
            "[Script Error] Identity.Nothing is not a field in a dialog\\n\\nFile: t.scp, line: 1");
  expectRun("Background.Calling = \"Juggler\";", false,
            "[Script Error] Error setting dialog field Background.Calling\\n\\nFile: t.scp, line: "
            "1");
}

TEST_F(ScriptCommands, AListWalkRunsTheFirstMatchingGroup) {
  expectRun("x = 0;\nlist \"Ski\"\nSpear ~ set level = 3; end\ndefault ~ x = x + 1; end\nendlist",
            true);
  EXPECT_EQ(item("Skills", "Spear")->level, "3");
  EXPECT_EQ(variable("x"), "4");
  expectRun("list \"Nope\" endlist", false,
            "[Script Error] Can't find list window Nope\\n\\nFile: t.scp, line: 1");
  expectRun("list \"Skills\" default ~ list \"Traits\" endlist end endlist", false,
            "[Script Error] List nested inside list\\n\\nFile: t.scp, line: 1\\nCurrent Item: "
            "Fenwalking");
  expectRun("list Skills Spear; ~ end endlist", false,
            "[Script Error] '~' expected after list member\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, UnconvertedListsWhatNoGroupHandled) {
  expectRun("list \"Traits\" \"Marsh-born\" ~ end unconverted \"Traits\"; endlist", true);
  EXPECT_EQ(names("Traits"),
            (std::vector<std::string>{"Marsh-born", "Lantern Eye", "Iron Stomach", "Keen Ears",
                                      "Unconverted: Lantern Eye", "Unconverted: Iron Stomach",
                                      "Unconverted: Keen Ears-2"}));
}

TEST_F(ScriptCommands, DeleteitemInAWalkMovesTheWalkOn) {
  expectRun(
      "n = 0;\nforeach (Gear) n = n + 1; if (\"$n\" = \"Pack\") deleteitem; endif "
      "endforeach",
      true);
  EXPECT_EQ(names("Gear"), (std::vector<std::string>{"Warden's Spear", "Oilskin Cloak"}));
  EXPECT_EQ(variable("n"), "3");
  expectRun("foreach (Gear) if (\"$n\" = \"Oilskin Cloak\") deleteitem; endif endforeach", true);
  EXPECT_EQ(names("Gear"), (std::vector<std::string>{"Warden's Spear"}));
  expectRun("deleteitem;", false, "[Script Error] No item to delete\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, ItemVisitsOneElementByNameOrRow) {
  expectRun(
      "item (Skills, \"Spear\") set level = 5; enditem\nitem (Skills, 2) set level = 4; "
      "enditem",
      true);
  EXPECT_EQ(item("Skills", "Spear")->level, "5");
  EXPECT_EQ(item("Skills", "Lorekeeping")->totalCost, 16);
  expectRun("item (Traits, 1) enditem", false,
            "[Script Error] List Traits is not open and list index specified for item.\\n\\nFile: "
            "t.scp, line: 1");
  expectRun("item (Skills, \"Jump\") enditem", false,
            "[Script Error] Found no item Jump in list Skills\\n\\nFile: t.scp, line: 1");
  expectRun("item (Skills) enditem", false,
            "[Script Error] Missing comma after list name in item\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, OptionsVisitsTheOptionsOfTheCurrentItem) {
  expectRun(
      "n = 0; m = 0;\nforeach (Traits) options \"Only at dusk\" ~ n = n + 1; end default ~ "
      "m = m + 1; end endoptions endforeach",
      true);
  EXPECT_EQ(variable("n"), "1");
  EXPECT_EQ(variable("m"), "2");
  expectRun("options default ~ end endoptions", false,
            "[Script Error] No current item for options\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, NotesExcludeAndCopyCommandsOnOneSheet) {
  expectRun("notes \"A warden of the $$w road\";", true);
  EXPECT_EQ(maren_->notes, "A warden of the  road");
  expectRun("add \"Gear.Rope, 30 ft\"; exclude;", true);
  EXPECT_FALSE(findListByName(*maren_, "Gear")->items.back()->inTotal());
  EXPECT_EQ(sheetVariable("GearCost"), "28.5");
  expectRun("copydefines;", false,
            "[Script Error] Copydefines can be used only when converting from one character "
            "sheet to another.\\n\\nFile: t.scp, line: 1");
  expectRun("copyoption;", false,
            "[Script Error] copyoption found outside options command\\n\\nFile: t.scp, line: 1");
  expectRun("copylist Skills Nowhere;", false,
            "[Script Error] copyList: can't find new list 'Nowhere'\\n\\nFile: t.scp, line: 1");
  expectRun("copydialog Identity;", false,
            "[Script Error] String expected for copyDialog\\n\\nFile: t.scp, line: 1");
}

TEST_F(ScriptCommands, AWalkOfADataListPassesOverWhatTheSelectionRulesRefuse) {
  // "Lowland Wardens only" suppresses Horsemanship, Tongue (Hill) and Tongue (Drowned) among the
  // 74 skills.
  const std::string count =
      "n = 0; h = 0;\nforeach (*Skills) n = n + 1; if (\"$n\" = \"Horsemanship\") h = 1; endif "
      "endforeach";
  expectRun(count, true);
  EXPECT_EQ(variable("n"), "74");
  EXPECT_EQ(variable("h"), "1");
  selectionRules().scanRuleFiles(testing::kSampleData);
  maren_->ruleSet = "Lowland Wardens only";
  engineContext().preferences.applyRules = true;
  expectRun(count, true);
  EXPECT_EQ(variable("n"), "71");
  EXPECT_EQ(variable("h"), "0");
}

}  // namespace
}  // namespace zv::script
