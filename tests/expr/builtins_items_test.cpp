#include "expr/builtins_items.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/option.h"
#include "expr/item_fields.h"
#include "expr/symbols.h"
#include "expr_test_support.h"

namespace zv {
namespace {

using testing::describe;

struct Case {
  std::string_view text;
  std::string expected;
};

/// A sheet of two lists and a dialog list:
///   Skills: Sword (10, level 3, Combat), Magic { Fireball (5, 2, Spell), Heal (3, 4, Spell) },
///           Stealth (4, 1, Stealthy)
///   Equipment: Rope (1), added by the sword
///   the dialog's "Spells known": Light (2)
class ItemBuiltinsTest : public testing::ExprTest {
 protected:
  ItemBuiltinsTest() {
    sheet_.name = "hero.zvs";
    table_.owner = &sheet_;
    ListInfo* skills = sheet_.addList();
    skills->name = "Skills";
    sword_ = &skills->appendItem(makeItem("Sword", 10.0, 3, "Combat"));
    sword_->autoID = 7;
    sword_->level = "3";
    auto magic = std::make_unique<Item>(ItemKind::Sublist, "Magic");
    magic_ = &skills->appendItem(std::move(magic));
    Item& fireball = magic_->appendChild(makeItem("Fireball", 5.0, 2, "Spell"));
    fireball.options.push_back(makeOption("Rank", "2"));
    Item& heal = magic_->appendChild(makeItem("Heal", 3.0, 4, "Spell"));
    heal.options.push_back(makeOption("Rank", "1"));
    skills->appendItem(makeItem("Stealth", 4.0, 1, "Stealthy"));

    ListInfo* equipment = sheet_.addList();
    equipment->name = "Equipment";
    rope_ = &equipment->appendItem(makeItem("Rope", 1.0, 0, "Gear"));
    rope_->autoParent = 7;

    DlgInfo* dialog = sheet_.addDialog();
    auto field = std::make_unique<DlgItem>();
    field->listField = std::make_unique<ListInfo>();
    field->listField->name = "Spells known";
    DlgItem& added = dialog->appendItem(std::move(field));
    added.listField->appendItem(makeItem("Light", 2.0, 1, "Spell"));
  }

  static std::unique_ptr<Item> makeItem(std::string name, double cost, std::int32_t level,
                                        std::string category) {
    auto item = std::make_unique<Item>(ItemKind::Item, std::move(name));
    item->totalCost = cost;
    item->cost = cost;
    item->value = Value(level);
    item->cat = std::move(category);
    return item;
  }

  static std::unique_ptr<Option> makeOption(std::string name, std::string value) {
    auto option = std::make_unique<Option>();
    option->kind = kOptionAdjustment;
    option->name = std::move(name);
    option->value = std::move(value);
    return option;
  }

  /// Evaluates with `item` as the current item: the described value or "error N".
  std::string evalOn(Item* item, std::string_view text) {
    Value out;
    if (parseExpInContext(&table_, item, nullptr, text, out) != 0) {
      return "error " + std::to_string(lastErrorCode());
    }
    return describe(out);
  }

  void check(Item* item, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      EXPECT_EQ(evalOn(item, c.text), c.expected) << c.text;
    }
  }

  FileInfo sheet_;
  Item* sword_ = nullptr;
  Item* magic_ = nullptr;
  Item* rope_ = nullptr;
};

TEST_F(ItemBuiltinsTest, ListentriesFindsListsByPrefixAndSelector) {
  check(nullptr, {
                     {"listentries(\"Skills\")", "int 4"},
                     {"listentries(\"sk\")", "int 4"},
                     {"listentries(\"EQUIP\")", "int 1"},
                     {"listentries(\"Spells\")", "int 1"},
                     {"listentries(\"Skillset\")", "int 0"},
                     {"listentries(\"Nope\")", "int 0"},
                     {"listentries(\"*Magic\")", "int 2"},
                     {"listentries(\"*magic\")", "int 2"},
                     {"listentries(\"*Sword\")", "int 0"},
                     {"listentries(\"Skills:Spell\")", "int 2"},
                     {"listentries(\"Skills:spell\")", "int 2"},
                     {"listentries(\"Skills:Stealthy\")", "int 1"},
                     {"listentries(\"Skills:@Rank\")", "int 2"},
                     {"listentries(\"Skills:@Rank=2\")", "int 1"},
                     {"listentries(\"Skills:@Rank:1\")", "int 1"},
                     {"listentries(\"Skills:@Rank=3\")", "int 0"},
                 });
}

TEST_F(ItemBuiltinsTest, CountAndTotalSelectByFieldComparison) {
  check(nullptr, {
                     {"countitems(\"Skills\", 0, 0, 0)", "int 4"},
                     {"countitems(\"Skills\", 4, 1, \"cost\")", "int 2"},
                     {"countitems(\"Skills\", 4, 0, \"cost\")", "int 1"},
                     {"countitems(\"Skills\", 4, -1, \"cost\")", "int 1"},
                     {"countitems(\"Skills\", \"spell\", 0, \"category\")", "int 2"},
                     {"countitems(\"Skills\", 2, 5, \"level\")", "int 2"},
                     {"countitems(\"Nope\", 0, 0, 0)", "int 0"},
                     {"totalitems(\"Skills\", 0, 0, 0)", "float 22"},
                     {"totalitems(\"Skills\", \"Spell\", 0, \"category\")", "float 8"},
                     {"totalitems(\"Skills\", 3, 1, \"level\")", "float 3"},
                     {"totalitems(\"Nope\", 0, 0, 0)", "float 0"},
                     {"totalitemvalues(\"Skills\", \"level\")", "float 10"},
                     {"totalitemvalues(\"Skills\", \"Rank\")", "float 3"},
                     {"totalitemvalues(\"Spells known\", \"cost\")", "float 2"},
                 });
}

TEST_F(ItemBuiltinsTest, FinditemvalueTakesGreatestLeastOrFirst) {
  check(nullptr, {
                     {"finditemvalue(\"Skills\", \"max\", \"cost\")", "float 10"},
                     {"finditemvalue(\"Skills\", \"MIN\", \"level\")", "int 1"},
                     {"finditemvalue(\"Skills\", \"first\", \"name\")", "string \"Sword\""},
                     {"finditemvalue(\"Skills\", \"max\", \"name\")", "string \"Sword\""},
                     {"finditemvalue(\"Skills\", \"min\", \"name\")", "string \"Fireball\""},
                     {"finditemvalue(\"Skills\", \"max\", \"Rank\")", "int 2"},
                     {"finditemvalue(\"Nope\", \"max\", \"cost\")", "int 0"},
                 });
}

TEST_F(ItemBuiltinsTest, ListiteminfoByNumberOrName) {
  check(nullptr, {
                     {"listiteminfo(\"Skills\", 1, \"name\")", "string \"Sword\""},
                     {"listiteminfo(\"Skills\", 2, \"name\")", "string \"Fireball\""},
                     {"listiteminfo(\"Skills\", \"3\", \"name\")", "string \"Heal\""},
                     {"listiteminfo(\"Skills\", 4, \"indent\")", "int 0"},
                     {"listiteminfo(\"Skills\", \"heal\", \"cost\")", "float 3"},
                     {"listiteminfo(\"Skills\", \"Magic\", \"nchildren\")", "int 2"},
                     {"listiteminfo(\"Skills\", 9, \"name\")", "int 0"},
                     {"listiteminfo(\"Skills\", \"Axe\", \"name\")", "int 0"},
                     {"listiteminfo(\"*Magic\", 2, \"name\")", "string \"Heal\""},
                     {"listiteminfo(\"Equipment\", 1, \"autoParent\")", "int 7"},
                     {"listiteminfo(\"Nope\", 1, \"name\")", "int 0"},
                 });
}

TEST_F(ItemBuiltinsTest, IteminfoEvaluatesFieldsThatLookLikeExpressions) {
  sword_->formula = "(2+3)*2";
  sword_->notes = "(unclosed";
  sword_->alias = "Blade";
  check(sword_, {
                    {"iteminfo(\"name\")", "string \"Sword\""},
                    {"iteminfo(\"cost\")", "float 10"},
                    {"iteminfo(\"exp\")", "int 3"},
                    {"iteminfo(\"formula\")", "int 10"},
                    {"iteminfo(\"notes\")", "string \"(unclosed\""},
                    {"iteminfo(\"alias\")", "string \"Blade\""},
                    {"iteminfo(\"nothing\")", "int 0"},
                    {"iteminfo(\"noautodup\")", "int 0"},
                });
  check(nullptr, {{"iteminfo(\"name\")", "int 0"}});
}

TEST_F(ItemBuiltinsTest, ChildParentAndVariableOwnerItems) {
  check(magic_, {
                    {"childiteminfo(1, \"name\")", "string \"Fireball\""},
                    {"childiteminfo(0, \"name\")", "string \"Fireball\""},
                    {"childiteminfo(-4, \"name\")", "string \"Fireball\""},
                    {"childiteminfo(2, \"name\")", "string \"Heal\""},
                    {"childiteminfo(3, \"name\")", "int 0"},
                    {"childiteminfo(2, \"listindex\")", "int 2"},
                });
  check(sword_, {{"childiteminfo(1, \"name\")", "int 0"}, {"parentiteminfo(\"name\")", "int 0"}});
  check(rope_, {{"parentiteminfo(\"name\")", "string \"Sword\""},
                {"parentiteminfo(\"autoID\")", "int 7"}});
  Symbol* variable = defineVariable(table_, "ropeLength", "50", nullptr, nullptr, rope_);
  ASSERT_NE(variable, nullptr);
  check(nullptr, {
                     {"variteminfo(\"ropeLength\", \"name\")", "string \"Rope\""},
                     {"variteminfo(\"ROPELENGTH\", \"cost\")", "float 1"},
                     {"variteminfo(\"missing\", \"name\")", "int 0"},
                 });
}

TEST_F(ItemBuiltinsTest, WithoutAnEvaluationItemTheContextsCurrentItemIsRead) {
  {
    ItemContextScope context(&sheet_, table_);
    setCurrentItem(rope_, nullptr);
    check(nullptr, {{"iteminfo(\"name\")", "string \"Rope\""},
                    {"parentiteminfo(\"name\")", "string \"Sword\""}});
    // An item given for one evaluation comes first.
    check(sword_, {{"iteminfo(\"name\")", "string \"Sword\""}, {"@name", "string \"Sword\""}});
  }
  check(nullptr, {{"iteminfo(\"name\")", "int 0"}});
}

/// Option rules that mark what they give, to show where the fields use them.
bool markedOptionString(const Item&, const Option& option, std::string& text, Value& value) {
  if (option.value == "broken") return false;
  text = "T:" + option.name;
  value = Value(std::int32_t{99});
  return true;
}
std::string markedDisplay(const Item&, const Option& option) {
  return "D:" + option.name;
}
std::string expandBackquotedF(const Item&, std::string_view text) {
  return text == "`f`" ? std::string("cost") : std::string(text);
}

TEST_F(ItemBuiltinsTest, OptionRulesOfTheContextServeTheFieldsAndIteminfo) {
  Item* fireball = magic_->children[0].get();
  engineContext_->services.optionRules = {&markedOptionString, &markedDisplay, &expandBackquotedF};
  const Option& rank = *fireball->options[0];
  Value out;
  ASSERT_TRUE(itemField(*fireball, &rank, "optvalue", out));
  EXPECT_EQ(describe(out), "int 99");
  ASSERT_TRUE(itemField(*fireball, &rank, "opttextvalue", out));
  EXPECT_EQ(describe(out), "string \"T:Rank\"");
  ASSERT_TRUE(itemField(*fireball, &rank, "optnumbervalue", out));
  EXPECT_EQ(describe(out), "string \"99\"");
  ASSERT_TRUE(itemField(*fireball, &rank, "option", out));
  EXPECT_EQ(describe(out), "string \"D:Rank\"");
  check(fireball, {{"iteminfo(\"`f`\")", "float 5"}, {"iteminfo(\"Rank\")", "int 99"}});
  check(nullptr, {{"listentries(\"Skills:@Rank=99\")", "int 2"}});
  fireball->options[0]->value = "broken";
  EXPECT_FALSE(itemField(*fireball, &rank, "optvalue", out));
  EXPECT_FALSE(compareItemvalue(*fireball, table_, "@Rank=2"));
  ASSERT_FALSE(host_.transcript().empty());
  EXPECT_EQ(host_.transcript().back(), "[Error] Unable to get option value: Rank");
}

TEST_F(ItemBuiltinsTest, EvalParsesTextsAndPassesOtherKinds) {
  check(nullptr, {
                     {"eval(\"1+2\")", "int 3"},
                     {"eval(5)", "int 5"},
                     {"eval(2.5)", "float 2.5"},
                     {"eval(\"'ab'\")", "string \"ab\""},
                     {"eval(\"eval('4*4')\")", "int 16"},
                     {"eval(\"listentries('sk')\")", "int 4"},
                 });
  EXPECT_LT(errorOf("eval(\"1+\")"), 0);
}

TEST_F(ItemBuiltinsTest, EvalThatEvaluatesItselfEndsWithTooComplicated) {
  define("selfText", "\"eval(selfText)\"");
  EXPECT_EQ(errorOf("eval(selfText)"), kExprTooComplicated);
  // The depth counter is back at zero afterwards.
  EXPECT_EQ(eval("eval(\"7\")"), "int 7");
}

TEST_F(ItemBuiltinsTest, FunctionCallingEvalOnItselfEndsWithAnError) {
  ASSERT_NE(defineFunction(table_, "loop(x)", "eval('loop(1)')"), nullptr);
  EXPECT_LT(errorOf("loop(1)"), 0);
  EXPECT_EQ(eval("eval(\"2*3\")"), "int 6");
}

TEST_F(ItemBuiltinsTest, AggregateTestNeedsASheet) {
  Item loose(ItemKind::Item, "Loose");
  EXPECT_FALSE(compareItemvalue(loose, table_, "@Rank=1"));
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Error] Unable to make aggregate comparison: item has no file information.");
  loose.cat = "Gear";
  EXPECT_TRUE(compareItemvalue(loose, table_, "gear"));
  EXPECT_FALSE(compareItemvalue(loose, table_, "Gea"));
}

}  // namespace
}  // namespace zv
