#include "filter/format/item_format.h"

#include <gtest/gtest.h>

#include "filter/format/item_text.h"
#include "filter_test_support.h"

namespace zv {
namespace {

class ItemFormatTest : public test::SheetFixture {};

TEST_F(ItemFormatTest, FilterTexts) {
  open();
  Item& climbing = item("Skills", 0);
  Item& riding = item("Gear", 0);
  Item& swords = item("Skills", 1);
  Item& broadsword = *swords.children.at(0);
  const ItemFormatSpace space = filterFormatSpace(false);
  struct Case {
    const char* format;
    Item* item;
    const char* text;
  };
  const Case cases[] = {
      // Columns sorted by their left edges: 0, then 32683 (v), then 32723 (c).
      {"%0ln%-5rc%-10rv", &climbing, "Climbing\t12\t4"},
      {"%-5rc%0ln", &climbing, "Climbing\t4"},
      {"%0ln%-5rc", &riding, "Riding\t4\xBD"},
      {"%0ln%-5rb", &riding, "Riding\t3"},
      // Text before any column stands in one column at the left edge.
      {"^n (^c)", &climbing, "Climbing (4)"},
      {"%0ln 100%%", &climbing, "Climbing 100%"},
      {"%0lo/D/", &riding, "Heavy, 3"},
      {"%0lo/e/", &riding, "Red"},
      {"%0lo/A/", &riding, "1.5"},
      {"%0lo/Nope/", &riding, "??"},
      {"%0lx/1+1/", &climbing, "2"},
      {"%0lx/@level*2/", &climbing, "24"},
      {"%0lx/1+/", &climbing, "???"},
      {"%0lq", &climbing, ""},
      {"%0ln%10l!", &climbing, "Climbing\t"},
      {"%0ll", &riding, "Mount"},
      {"%0le|%0lf", &climbing, "12|\tx/3"},
      {"%0lp", &broadsword, "Broadsword"},
      {"%0lp", &climbing, ""},
      {"%0lt", &climbing, "Outdoor"},
      {"^^n", &climbing, "^Climbing"},
      // The text of an item that has none: literal text only.
      {"%0lnName%-5rcCost", nullptr, "Name\tCost"},
      {"%0ln", nullptr, ""},
      {"%0lo/D/x", nullptr, "x"},
      {"%0lx/2*3/", nullptr, "???"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(itemFormatText(c.format, c.item, space), c.text) << c.format;
  }
}

TEST_F(ItemFormatTest, ColumnGeometry) {
  open();
  ItemFormatSpace space{7, 400, false, nullptr};
  auto columns = layoutItemFormat("%0ln%-5rc", &item("Skills", 0), space);
  ASSERT_EQ(columns.size(), 2u);
  EXPECT_EQ(columns[0].left, 0);
  EXPECT_EQ(columns[0].right, 354);
  EXPECT_EQ(columns[0].alignment, ColumnAlignment::Left);
  EXPECT_EQ(columns[1].left, 361);
  EXPECT_EQ(columns[1].right, 396);
  EXPECT_EQ(columns[1].alignment, ColumnAlignment::Right);
  columns = layoutItemFormat("%10cn%2xn", &item("Skills", 0), space);
  ASSERT_EQ(columns.size(), 2u);
  EXPECT_EQ(columns[0].left, 14);
  EXPECT_EQ(columns[0].alignment, ColumnAlignment::Left);  // any other letter is left
  EXPECT_EQ(columns[1].alignment, ColumnAlignment::Centre);
}

TEST_F(ItemFormatTest, LimitsOfColumnsAndText) {
  open();
  const ItemFormatSpace space = filterFormatSpace(false);
  std::string format;
  for (int i = 0; i < 12; ++i)
    format += "%" + std::to_string(i) + "lx/" + std::to_string(i) + "/";
  auto columns = layoutItemFormat(format, &item("Skills", 0), space);
  ASSERT_EQ(columns.size(), kMaxItemFormatColumns);
  EXPECT_EQ(columns.back().text, "91011");
  std::string longText(2000, 'a');
  EXPECT_EQ(itemFormatText(longText, nullptr, space).size(), kMaxItemFormatText);
}

TEST_F(ItemFormatTest, FormatChoiceAndNames) {
  open();
  Item& climbing = item("Skills", 0);
  Item& riding = item("Gear", 0);
  EXPECT_EQ(filterFormatOf(climbing), "%0ln%-5rc%-10rv");
  EXPECT_EQ(filterFormatOf(riding), "%0ln%-5rc");
  sheet->lists[1]->format = "%0ln";
  EXPECT_EQ(filterFormatOf(*item("Skills", 1).children[0]), "%0ln");
  climbing.format = "^n!";
  EXPECT_EQ(filterFormatOf(climbing), "^n!");

  struct Case {
    const char* name;
    const char* original;
    const char* alias;
    bool useAliases;
    const char* shown;
  };
  const Case cases[] = {
      {"Sword (Broad)", "Sword", "Blade", true, "Blade (Broad)"},
      {"Sword", "", "Blade", true, "Blade"},
      {"Sword", "SWORD", "Blade", true, "Blade"},
      {"Axe", "Sword", "Blade", true, "Axe"},
      {"Sword (Broad)", "Sword", "Blade", false, "Sword (Broad)"},
      {"Sword", "", "", true, "Sword"},
  };
  for (const Case& c : cases) {
    Item it(ItemKind::Item, c.name);
    it.original = c.original;
    it.alias = c.alias;
    EXPECT_EQ(displayName(it, c.useAliases), c.shown) << c.name;
  }
}

TEST_F(ItemFormatTest, LookedUpLevel) {
  open();
  Item& climbing = item("Skills", 0);
  EXPECT_EQ(lookedUpLevel(climbing), "12");
  climbing.lookupArray = "$Novice=6;Expert=12;Master=18";
  EXPECT_EQ(lookedUpLevel(climbing), "Expert");
  climbing.lookupArray = "$Novice=6";
  EXPECT_EQ(lookedUpLevel(climbing), "--");
  EXPECT_EQ(itemFormatText("%0lv", &climbing, filterFormatSpace(false)), "--");
}

}  // namespace
}  // namespace zv
