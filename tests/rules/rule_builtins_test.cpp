// The built-ins that stand on the item rules, evaluated as formulas of a current item: options,
// level and cost at a level, categories and their bonuses, requirements.

#include "core/game_system.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"
#include "rules/value/categories.h"
#include "rules/value/level.h"
#include "sheet_lists_support.h"

namespace zv::testing {
namespace {

class RuleBuiltinsTest : public SheetListsTest {
 protected:
  RuleBuiltinsTest() {
    ListInfo& skills = addList("Skills");
    auto blades = std::make_unique<Item>(ItemKind::Sublist, "Blades");
    blades->setInheritOpts(true);
    addOption(*blades, kOptionText, "Guild", "Smiths");
    Item& group = skills.appendItem(std::move(blades));
    sword_ = &group.appendChild(std::make_unique<Item>(ItemKind::Item, "Sword"));
    sword_->value = Value(12);
    sword_->cat = "Combat;Melee";
    sword_->totalCost = 10;
    addOption(*sword_, kOptionAddition, "Edge", "+2");
    addOption(*sword_, kOptionAddition, "Edge", "+1");
    addOption(*sword_, kOptionText, "Style", "?:2; Thrust; Slash,5; Chop;");
    addOption(*sword_, kOptionExpression, "Boost", "1+2");
    Item& axe = addTo(skills, "Axe", Value(9), "Combat");
    axe.totalCost = 4;
    Item& lore = addTo(skills, "Lore", Value(4), "Knowledge");
    lore.totalCost = 2.5;
  }

  /// The value of a formula of `item`, described by kind, or "error".
  std::string eval(std::string_view text, Item* item = nullptr) {
    Value value;
    if (parseExpInContext(sheet_.symbols.get(), item != nullptr ? item : sword_, nullptr, text,
                          value) != 0) {
      return "error " + std::to_string(lastErrorCode());
    }
    if (value.isInteger()) return "int " + std::to_string(value.integer());
    if (value.isFloat()) return "float " + valueToText(value);
    if (value.isString()) return "text " + value.text();
    return "other";
  }

  Item* sword_ = nullptr;
};

TEST_F(RuleBuiltinsTest, Options) {
  GameSystem system("Testland");
  OptionTreeEntry weapons;
  weapons.groupKind = 123;  // a `ulist` group
  weapons.name = "Weapon Options";
  OptionTreeEntry edge;
  edge.name = "Edge";
  edge.option = std::make_unique<Option>();
  edge.option->name = "Edge";
  weapons.entries.push_back(std::move(edge));
  system.options.push_back(std::move(weapons));
  sheet_.gameSystem = &system;
  struct Case {
    const char* formula;
    const char* value;
  };
  const Case cases[] = {
      {"optavailable(\"edge\")", "int 1"},
      {"optavailable(\"Zest\")", "int 0"},
      {"optavailable(\"weapon options\")", "int 1"},
      {"optpresent(\"Edge\")", "int 1"},
      {"optpresent(\"Ed\")", "int 0"},
      {"optpresent(\"Guild\")", "int 1"},  // inherited from the group
      {"optcount(\"edge\")", "int 2"},
      {"optcount(\"\")", "int 5"},
      {"optvalue(\"Edge\")", "int 2"},
      {"optvalue(\"Bo\")", "int 3"},  // a name that starts one, evaluated
      {"optvalue(\"Edge\", 2)", "int 1"},
      {"optvalue(\"\", 4)", "int 3"},
      {"optvalue(\"Edge\", 3)", "int 0"},
      {"optvalue(\"Skills\", \"Sword\", \"Edge\")", "int 2"},
      {"optvalue(\"Skills\", 1, \"Edge\")", "int 2"},
      {"optvalue(\"Skills\", \"Axe\", \"Edge\")", "int 0"},
      {"optvalue(\"Nothing\")", "int 0"},
      {"opttextvalue(\"Style\")", "text Slash, 5"},
      {"opttextvalue(\"Nothing\")", "int 0"},
      {"optnumbervalue(\"Style\")", "int 5"},
      {"optnumbervalue(\"Boost\")", "int 3"},
      {"optnumbervalue(\"Guild\")", "int 0"},
      {"listoptions(\"optname\", \"\", \",\")", "text Edge,Edge,Style,Boost,Guild"},
      {"listoptions(\"optrawvalue\", \"edge\", \"/\")", "text +2/+1"},
      {"listoptions(\"optactive\", \"Boost\", \"\")", "text 1"},
      {"listoptions(\"optorigname\", \"Guild\", \"\")", "text Guild"},
      {"listoptions(\"name\", \"Edge\", \" \")", "text Sword Sword"},
      {"listoptions(\"optdisplay\", \"Style\", \"\")", "text Style: 5"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.formula), c.value) << c.formula << messages();

  ASSERT_NE(defineArray(*sheet_.symbols, "names[0]", ""), nullptr);
  EXPECT_EQ(eval("listoptions(\"optname\", \"Edge\", names)"), "int 2");
  EXPECT_EQ(eval("names[2]"), "text Edge");

  engineContext_->preferences.printInheritedOptions = false;
  EXPECT_EQ(eval("listoptions(\"optname\", \"\", \",\")"), "text Edge,Edge,Style,Boost");
  sheet_.gameSystem = nullptr;
}

TEST_F(RuleBuiltinsTest, AnOptionThatAsksForItselfStops) {
  addOption(*sword_, kOptionExpression, "Loop", "optvalue(\"Loop\", 1)");
  EXPECT_EQ(eval("optvalue(\"Loop\", 1)"), "int 0");
  EXPECT_NE(messages().find("Recursive optValue reference"), std::string::npos) << messages();
}

TEST_F(RuleBuiltinsTest, LevelAndCostAtALevel) {
  sword_->formula = "x*2+1";
  sword_->checkExp = "x>2";
  Item& plain = addTo(*sheet_.lists[0], "Plain");
  plain.cost = 7.5;
  plain.defaultText = "2+3";
  struct Case {
    const char* formula;
    Item* item;
    const char* value;
  };
  const Case cases[] = {
      {"itemcostfunction(5)", sword_, "int 11"},    {"itemcostfunction(2.5)", sword_, "float 6"},
      {"itemcheckexpression(1)", sword_, "int 0"},  {"itemcheckexpression(-3+6)", sword_, "int 1"},
      {"itemcostfunction(3)", &plain, "float 7.5"}, {"itemcheckexpression(3)", &plain, "int 1"},
      {"evaluatedefault(0)", &plain, "int 5"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.formula, c.item), c.value) << c.formula;
  sword_->formula = "x*";
  EXPECT_EQ(eval("itemcostfunction(5)"), "error -5");
}

TEST_F(RuleBuiltinsTest, Categories) {
  struct Case {
    const char* formula;
    const char* value;
  };
  const Case cases[] = {
      {"incategory(\"Combat\")", "int 1"},  {"incategory(\" melee \")", "int 1"},
      {"incategory(\"Magic\")", "int 0"},   {"incategory(\"@Edge=2\")", "int 1"},
      {"incategory(\"@Edge:7\")", "int 0"}, {"countitems(\"Skills:Combat\", 0, 0, 0)", "int 2"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.formula), c.value) << c.formula;
  Item& loner = addTo(*sheet_.lists[0], "Loner");
  EXPECT_EQ(eval("incategory(\"Combat\")", &loner), "int 0");

  for (const char* header : {"names[0]", "costs[0]", "counts[0]"}) {
    ASSERT_NE(defineArray(*sheet_.symbols, header, ""), nullptr) << header;
  }
  EXPECT_EQ(eval("getcategorylist(\"Skills\", names, costs, counts)"), "int 3");
  EXPECT_EQ(eval("concat(names[1], names[2], names[3])"), "text CombatMeleeKnowledge");
  EXPECT_EQ(eval("costs[1]"), "float 14");
  EXPECT_EQ(eval("counts[1] + counts[2] * 10"), "int 12");
  EXPECT_EQ(eval("getcategorylist(\"Skills\", names)"), "int 3");
  EXPECT_EQ(eval("getcategorylist(\"Skills\", \"names\")"), "error -6");
  EXPECT_EQ(eval("getcategorylist(\"Skills\")"), "error -5");
  EXPECT_EQ(eval("getcategorylist(\"Nowhere\", names)"), "int 0");
}

TEST_F(RuleBuiltinsTest, CategoryBonuses) {
  sword_->varName = "Sword";
  sword_->level = "12";
  ASSERT_TRUE(setItemLevel(*sword_, "12", false, false)) << messages();
  ListInfo& skills = *sheet_.lists[0];
  addCategoryBonus(skills, "combat", 2);
  addCategoryBonus(skills, "Knowledge", 1);
  addCategoryBonus(skills, "Combat", 0.5);
  ASSERT_EQ(skills.categoryBonuses.size(), 2u);
  EXPECT_DOUBLE_EQ(getBaseValue(sword_->levelSymbol), 2.5);
  EXPECT_EQ(eval("categorybonus(\"Skills\", \"Sword\")"), "float 2.5");
  EXPECT_EQ(eval("categorybonus(\"Skills\", \"Lore\")"), "float 1");
  EXPECT_EQ(eval("categorybonus(\"Skills\", \"Combat;Knowledge\")"), "float 3.5");
  EXPECT_EQ(eval("categorybonus(\"Nowhere\", \"Sword\")"), "float 0");

  Item& late = addTo(skills, "Spear", Value(0), "Melee;Combat");
  late.varName = "Spear";
  ASSERT_TRUE(setItemLevel(late, "3", false, false));
  applyCategoryBonuses(skills, late);
  EXPECT_DOUBLE_EQ(getBaseValue(late.levelSymbol), 2.5);
}

TEST_F(RuleBuiltinsTest, CheckRequirements) {
  sword_->prereq = "Skills:Lore>=4";
  EXPECT_EQ(eval("checkrequirements(\"Skills\", 0, 0)"), "int 1");
  sword_->prereq = "Skills:Lore>4";
  EXPECT_EQ(eval("checkrequirements(\"Skills\", 0, 0)"), "int 0");
  EXPECT_EQ(eval("checkrequirements(\"Nowhere\", 0, 0)"), "int 0");
}

}  // namespace
}  // namespace zv::testing
