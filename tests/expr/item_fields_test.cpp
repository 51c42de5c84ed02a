#include "expr/item_fields.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/option.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "expr_test_support.h"

namespace zv {
namespace {

using testing::describe;

std::unique_ptr<Option> makeOption(std::int32_t kind, std::string name, std::string value) {
  auto option = std::make_unique<Option>();
  option->kind = kind;
  option->name = std::move(name);
  option->value = std::move(value);
  return option;
}

class ItemFieldsTest : public testing::ExprTest {
 protected:
  ItemFieldsTest() {
    sheet_.name = "hero.zvs";
    ListInfo* list = sheet_.addList();
    list->name = "Skills";
    auto group = std::make_unique<Item>(ItemKind::Sublist, "Weapons");
    group->setInheritOpts(true);
    auto inherited = makeOption(kOptionAddition, "Quality", "+2");
    group->options.push_back(std::move(inherited));
    auto privateOne = makeOption(kOptionText, "Secret", "x");
    privateOne->setNoInherit(true);
    group->options.push_back(std::move(privateOne));
    sublist_ = &list->appendItem(std::move(group));
    sublist_->appendChild(std::make_unique<Item>(ItemKind::Item, "Dagger"));

    auto sword = std::make_unique<Item>(ItemKind::Item, "Sword");
    sword->original = "Broadsword";
    sword->origCat = "Melee";
    sword->cat = "Combat";
    sword->className = "Martial";
    sword->level = "3";
    sword->value = Value(std::int32_t{3});
    sword->cost = 10.0;
    sword->totalCost = 12.5;
    sword->childCost = 1.5;
    sword->formula = "x*2";
    sword->defaultText = "DX-4";
    sword->checkExp = "x > 0";
    sword->adj = "+1 sharp";
    sword->alias = "Blade";
    sword->autoitems = "Scabbard";
    sword->autoID = 7;
    sword->autoParent = 3;
    sword->lookupArray = "tbl";
    sword->notes = "rusty";
    sword->format = "%n";
    sword->sformat = "%s";
    sword->varName = "swordLevel";
    sword->dsid = "Qabc";
    sword->setAutoAdded(true);
    sword->setGeneric(true);
    sword->setEditDlg(5);
    sword->setInTotal(false);
    sword->setRand(300);
    sword->setSee(true);
    sword->setNoAutoDup(true);
    sword->options.push_back(makeOption(kOptionFraction, "Fine", "1/2"));
    sword->options.push_back(makeOption(kOptionText, "Off", "?+0;switched off"));
    auto hidden = makeOption(kOptionText, "Hidden", "h");
    hidden->setHidden(true);
    sword->options.push_back(std::move(hidden));
    sword->options.push_back(makeOption(kOptionAddition, "cost", "99"));
    sword->options.push_back(makeOption(kOptionAdjustment, "Strength", "14"));
    sword_ = &sublist_->appendChild(std::move(sword));
  }

  std::string field(const Item& item, std::string_view name, const Option* option = nullptr) {
    Value out;
    if (!itemField(item, option, name, out)) return "fails";
    return describe(out);
  }

  FileInfo sheet_;
  Item* sublist_ = nullptr;
  Item* sword_ = nullptr;
};

TEST(ItemFieldTable, SixtyOneSortedNamesForSixtyFields) {
  auto names = itemFieldNames();
  ASSERT_EQ(names.size(), 61u);
  std::set<int> fields;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) {
      EXPECT_LT(compareIgnoringCase(names[i - 1], names[i]), 0) << names[i];
    }
    const int field = findItemField(names[i]);
    ASSERT_GE(field, 0) << names[i];
    fields.insert(field);
  }
  EXPECT_EQ(fields.size(), 60u);
  EXPECT_EQ(findItemField("default"), findItemField("defaultValue"));
  EXPECT_EQ(findItemField("COST"), findItemField("cost"));
  EXPECT_EQ(findItemField("AUTOid"), findItemField("autoID"));
  EXPECT_EQ(findItemField("costs"), -1);
  EXPECT_EQ(findItemField(""), -1);
  EXPECT_EQ(findItemField("zzz"), -1);
}

TEST_F(ItemFieldsTest, FieldsOfAnItem) {
  struct Case {
    std::string_view name;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"addaslist", "int 0"},
      {"adj", "string \"+1 sharp\""},
      {"alias", "string \"Blade\""},
      {"atdefault", "int 0"},
      {"autoAdded", "int 1"},
      {"autochargecost", "int 0"},
      {"autoID", "int 7"},
      {"autoitems", "string \"Scabbard\""},
      {"autoParent", "int 3"},
      {"basecost", "float 10"},
      {"basevalue", "int 0"},
      {"bonus", "int 0"},
      {"category", "string \"Combat\""},
      {"checkexp", "string \"x > 0\""},
      {"childcost", "float 1.5"},
      {"class", "string \"Martial\""},
      {"cost", "float 12.5"},
      {"default", "string \"DX-4\""},
      {"DefaultValue", "string \"DX-4\""},
      {"deleteAuto", "int 0"},
      {"dsid", "string \"Q\""},
      {"editdlg", "int 5"},
      {"excluded", "int 1"},
      {"exp", "string \"3\""},
      {"filename", "string \"hero.zvs\""},
      {"format", "string \"%n\""},
      {"formula", "string \"x*2\""},
      {"generic", "int 1"},
      {"indent", "int 1"},
      {"item", "string \"Sword\t12.5\t3\""},
      {"level", "int 3"},
      {"listindex", "int 2"},
      {"lookuparray", "string \"tbl\""},
      {"name", "string \"Sword\""},
      {"nchildren", "int 0"},
      {"noautodup", "fails"},
      {"notes", "string \"rusty\""},
      {"options", "int 4"},
      {"origlist", "string \"Melee\""},
      {"origname", "string \"Broadsword\""},
      {"parent", "string \"Weapons\""},
      {"prereq", "int 0"},
      {"rand", "int 300"},
      {"see", "int 1"},
      {"sformat", "string \"%s\""},
      {"sublist", "int 0"},
      {"varname", "string \"swordLevel\""},
      {"optname", "fails"},
      {"option", "fails"},
      {"nonsense", "fails"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(field(*sword_, c.name), c.expected) << c.name;
  }
}

TEST_F(ItemFieldsTest, FieldsOfASublistAndItsPlainChild) {
  EXPECT_EQ(field(*sublist_, "sublist"), "int 1");
  EXPECT_EQ(field(*sublist_, "nchildren"), "int 2");
  EXPECT_EQ(field(*sublist_, "indent"), "int 0");
  EXPECT_EQ(field(*sublist_, "listindex"), "int 1");
  EXPECT_EQ(field(*sublist_, "parent"), "fails");
  EXPECT_EQ(field(*sublist_, "origname"), "string \"Weapons\"");
  EXPECT_EQ(field(*sublist_, "item"), "string \"Weapons\t0\"");
  // The sublist counts its own two options; the dagger inherits only the one not kept private.
  EXPECT_EQ(field(*sublist_, "options"), "int 2");
  const Item& dagger = *sublist_->children[0];
  EXPECT_EQ(field(dagger, "options"), "int 1");
  EnginePreferences& preferences = engineContext_->preferences;
  preferences.printInheritedOptions = false;
  EXPECT_EQ(field(dagger, "options"), "int 0");
  EXPECT_EQ(field(*sword_, "options"), "int 3");
  preferences.printInheritedOptions = true;
  preferences.checkReq = false;
  EXPECT_EQ(field(dagger, "checkrequirements"), "int 0");
  preferences.checkReq = true;
  EXPECT_EQ(field(dagger, "checkrequirements"), "int 1");
}

std::string bracketedName(const Item& item) {
  return "[" + item.name + "]";
}

TEST_F(ItemFieldsTest, ARowFormatterOfTheContextLaysOutTheItemField) {
  engineContext_->services.itemRow = bracketedName;
  EXPECT_EQ(field(*sword_, "item"), "string \"[Sword]\"");
  engineContext_->services.itemRow = nullptr;
  EXPECT_EQ(field(*sword_, "item"), "string \"Sword\t12.5\t3\"");
}

TEST_F(ItemFieldsTest, LevelVariableGivesBonusAndBaseValue) {
  Symbol* level = defineVariable(table_, "swordLevel", "9");
  ASSERT_NE(level, nullptr);
  ASSERT_EQ(setBaseValue(table_, *level, 3.0), 0);
  sword_->levelSymbol = level;
  sword_->value = Value(std::int32_t{9});
  EXPECT_EQ(field(*sword_, "bonus"), "float 3");
  EXPECT_EQ(field(*sword_, "basevalue"), "int 6");
  sword_->value = Value(7.5);
  EXPECT_EQ(field(*sword_, "basevalue"), "float 4.5");
  sword_->levelSymbol = nullptr;
}

TEST_F(ItemFieldsTest, OptionFieldsReadTheCurrentOption) {
  auto option = makeOption(kOptionFraction, "Fine", "?:2; poor,-1; good,3;");
  option->qualifier = "edge";
  option->format = "%v";
  option->setKeepValue(true);
  struct Case {
    std::string_view name;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"optname", "string \"Fine\""},
      {"optexp", "string \"%v\""},
      {"optkeepvalue", "int 1"},
      {"optqualifier", "string \"edge\""},
      {"optrawtype", "string \"frac\""},
      {"opttype", "string \"Fraction\""},
      {"optrawvalue", "string \"?:2; poor,-1; good,3;\""},
      {"optvalue", "int 3"},
      {"optnumbervalue", "string \"3\""},
      {"option", "string \"Fine (edge): 3\""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(field(*sword_, c.name, option.get()), c.expected) << c.name;
  }
  option->qualifier.clear();
  EXPECT_EQ(field(*sword_, "optqualifier", option.get()), "int 0");
}

TEST(OptionWords, KindWordsLongAndShort) {
  struct Case {
    std::int32_t kind;
    std::string_view word;
    std::string_view shortWord;
  };
  const std::vector<Case> cases = {
      {kOptionAdjustment, "Adjustment", "adj"},
      {kOptionText, "Text", "text"},
      {kOptionExpression, "Expression", "exp"},
      {kOptionFraction, "Fraction", "frac"},
      {kOptionMultiplier, "Multiplier", "mult"},
      {kOptionAddition, "Addition", "add"},
      {kOptionPercentage, "Percentage", "percent"},
      {kOptionAuxCost, "AuxCost", "auxcost"},
      {kOptionAdjDistLevel, "Adjustment", "adjdistlevel"},
      {kOptionAdjDistCost, "Adjustment", "adjdistcost"},
      {7, "Option", "Option"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(optionKindWord(c.kind), c.word) << c.kind;
    EXPECT_EQ(optionKindShortWord(c.kind), c.shortWord) << c.kind;
  }
}

TEST(OptionValues, TheValueLanguageForms) {
  struct Case {
    std::string value;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"14", "int 14"},
      {"-2.5", "float -2.5"},
      {"+2", "int 2"},
      {"sharp", "string \"sharp\""},
      {"?+1;keen", "string \"keen\""},
      {"?+0;keen", "string \"keen\""},
      {"?+1;", "int 1"},
      {"?+0;", "int 0"},
      {"??Bonus;4;", "int 4"},
      {"??Bonus;;", "string \"Bonus\""},
      {"?:1; low,1; high,5;", "int 1"},
      {"?:2; low,1; high,5;", "int 5"},
      {"?:2;a;b;", "string \"b\""},
  };
  for (const Case& c : cases) {
    Option option;
    option.value = c.value;
    EXPECT_EQ(describe(optionValue(option)), c.expected) << c.value;
  }
}

TEST_F(ItemFieldsTest, AtNamesInAFormulaReadTheItem) {
  ItemContextScope context(&sheet_, table_);
  struct Case {
    std::string_view text;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {"@cost", "float 12.5"},
      {"@COST * 2", "float 25"},
      {"@Cost", "float 12.5"},
      {"@name", "string \"Sword\""},
      {"@autoID + @autoParent", "int 10"},
      {"@default", "string \"DX-4\""},
      {"@Str + 1", "int 15"},   // an option, found by a prefix of its name
      {"@strength", "int 14"},  // an option by its full name
      {"@listindex", "int 2"},
  };
  for (const Case& c : cases) {
    Value out;
    ASSERT_EQ(parseExpInContext(&table_, sword_, nullptr, c.text, out), 0)
        << c.text << ": " << expressionErrorText();
    EXPECT_EQ(describe(out), c.expected) << c.text;
  }
}

TEST_F(ItemFieldsTest, AFieldNameHidesAnOptionOfTheSameName) {
  ItemContextScope context(&sheet_, table_);
  Value out;
  ASSERT_EQ(parseExpInContext(&table_, sword_, nullptr, "@cost", out), 0);
  EXPECT_EQ(describe(out), "float 12.5");
  Value byName;
  ASSERT_TRUE(itemValueByName(*sword_, nullptr, "cost", byName));
  EXPECT_EQ(describe(byName), "float 12.5");
}

TEST_F(ItemFieldsTest, AtNameCompilesToALiteral) {
  ItemContextScope context(&sheet_, table_);
  sword_->totalCost = 4.0;
  Value first;
  ASSERT_EQ(parseExpInContext(&table_, sword_, nullptr, "@cost", first), 0);
  EXPECT_EQ(describe(first), "float 4");
  // Compiled under the item, "@cost" needs no symbol of the table.
  EXPECT_EQ(table_.find("@cost"), nullptr);
}

TEST_F(ItemFieldsTest, WithoutACurrentOptionOptNameIsAPlainVariable) {
  ItemContextScope context(&sheet_, table_);
  Value out;
  ASSERT_EQ(parseExpInContext(&table_, sword_, nullptr, "@optname", out), 0);
  EXPECT_EQ(valueToInteger(out), 0);
  Option option;
  option.name = "Keen";
  Value named;
  ASSERT_EQ(parseExpInContext(&table_, sword_, &option, "@optname", named), 0);
  EXPECT_EQ(describe(named), "string \"Keen\"");
}

TEST_F(ItemFieldsTest, ResolverChainsToTheOneBefore) {
  table_.setResolver([](std::string_view name, Value& out) {
    if (name != "outer") return false;
    out = Value(std::int32_t{42});
    return true;
  });
  {
    ItemContextScope context(&sheet_, table_);
    Value out;
    ASSERT_EQ(parseExpInContext(&table_, sword_, nullptr, "outer + @autoID", out), 0);
    EXPECT_EQ(describe(out), "int 49");
    Value chained;
    EXPECT_TRUE(itemValueByName(*sword_, nullptr, "outer", chained));
    EXPECT_EQ(describe(chained), "int 42");
  }
  // The pop put the outer resolver back.
  Value out;
  ASSERT_TRUE(table_.resolver());
  EXPECT_TRUE(table_.resolver()("outer", out));
  EXPECT_FALSE(table_.resolver()("@cost", out));
  table_.setResolver(nullptr);
}

TEST_F(ItemFieldsTest, SetCurrentItemServesTheResolverAndAPopClearsIt) {
  pushItemContext(&sheet_, table_);
  Option option;
  option.name = "Keen";
  setCurrentItem(sword_, &option);
  EXPECT_EQ(currentContextItem(), sword_);
  Value out;
  ASSERT_EQ(parseExp(&table_, "@optname", out), 0);
  EXPECT_EQ(describe(out), "string \"Keen\"");
  ASSERT_TRUE(itemField(*sword_, "optname", out));
  EXPECT_EQ(describe(out), "string \"Keen\"");
  EXPECT_TRUE(popItemContext());
  EXPECT_EQ(currentContextItem(), nullptr);
  EXPECT_EQ(currentContextOption(), nullptr);
}

TEST_F(ItemFieldsTest, PopOnAnEmptyStackIsAnInternalError) {
  EXPECT_FALSE(popItemContext());
  ASSERT_EQ(host_.transcript().size(), 1u);
  const std::string& box = host_.transcript()[0];
  EXPECT_TRUE(
      box.starts_with("[Error] Please report the following information to customer "
                      "support with details of what you did:\\n\\nInternal error: "
                      "file Itemlook, line "))
      << box;
}

}  // namespace
}  // namespace zv
