// The Sort command: each key and the name that breaks ties, the place of sublists, the reverse
// order (which leaves a missing class or category first), members of sublists sorted only with
// Recursive, and the chain of the caret's sublist.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "rules/lists/list_sort.h"

namespace zv {
namespace {

struct Row {
  std::string name;
  std::string className;
  double cost = 0;
  int level = 0;
  std::string cat;
  bool sublist = false;
};

// Bow, a sublist "Kit", axe, Club, dagger: names differ in case on purpose.
const std::vector<Row> kRows = {
    {"Bow", "Ranged", 5, 2, "Weapons"}, {"Kit", "", 3, 0, "", true},
    {"axe", "melee", 5, 3, "Weapons"},  {"Club", "Melee", 1, 1, ""},
    {"dagger", "", 2, 3, "Knives"},
};

std::unique_ptr<Item> makeItem(const Row& row) {
  auto item = std::make_unique<Item>(row.sublist ? ItemKind::Sublist : ItemKind::Item, row.name);
  item->className = row.className;
  item->totalCost = row.cost;
  item->value = Value(row.level);
  item->cat = row.cat;
  return item;
}

std::vector<std::string> names(const ItemChain& chain) {
  std::vector<std::string> out;
  for (const auto& item : chain)
    out.push_back(item->name);
  return out;
}

TEST(ListSort, KeysSublistPlacesAndDirection) {
  using enum SortKey;
  using enum SublistPosition;
  struct Case {
    const char* what;
    SortSettings settings;
    std::vector<std::string> order;
  };
  const Case cases[] = {
      {"by name, ignoring case",
       {false, Name, false, Intersperse},
       {"axe", "Bow", "Club", "dagger", "Kit"}},
      {"by cost, ties by name",
       {false, Cost, false, Intersperse},
       {"Club", "dagger", "Kit", "axe", "Bow"}},
      {"by level", {false, Level, false, Intersperse}, {"Kit", "Club", "Bow", "axe", "dagger"}},
      {"by class: none first",
       {false, Class, false, Intersperse},
       {"dagger", "Kit", "axe", "Club", "Bow"}},
      {"by class reversed: none still first, ties by name reversed",
       {true, Class, false, Intersperse},
       {"Kit", "dagger", "Bow", "Club", "axe"}},
      {"by category",
       {false, Category, false, Intersperse},
       {"Club", "Kit", "dagger", "axe", "Bow"}},
      {"by name reversed",
       {true, Name, false, Intersperse},
       {"Kit", "dagger", "Club", "Bow", "axe"}},
      {"sublists at the beginning",
       {false, Name, false, Beginning},
       {"Kit", "axe", "Bow", "Club", "dagger"}},
      {"sublists at the end", {false, Cost, false, End}, {"Club", "dagger", "axe", "Bow", "Kit"}},
      {"at the end, reversed: first",
       {true, Name, false, End},
       {"Kit", "dagger", "Club", "Bow", "axe"}},
  };
  for (const Case& c : cases) {
    FileInfo sheet;
    ListInfo list;
    for (const Row& row : kRows)
      list.items.push_back(makeItem(row));
    sortChain(sheet, list, nullptr, c.settings);
    EXPECT_EQ(names(list.items), c.order) << c.what;
    for (std::size_t i = 0; i < list.items.size(); ++i)
      EXPECT_EQ(list.items[i]->position, static_cast<std::int32_t>(i)) << c.what;
    EXPECT_TRUE(sheet.changed()) << c.what;
  }
}

class SortWithMembers : public ::testing::Test {
 protected:
  SortWithMembers() {
    for (const Row& row : kRows)
      list_.items.push_back(makeItem(row));
    kit_ = list_.items[1].get();
    kit_->setOpen(true);
    for (const char* name : {"Twine", "flint", "Awl"}) {
      auto member = std::make_unique<Item>(ItemKind::Item, name);
      member->parent = kit_;
      kit_->children.push_back(std::move(member));
    }
  }
  FileInfo sheet_;
  ListInfo list_;
  Item* kit_ = nullptr;
};

TEST_F(SortWithMembers, MembersAreSortedOnlyWithRecursive) {
  sortChain(sheet_, list_, nullptr, {});
  EXPECT_EQ(names(kit_->children), (std::vector<std::string>{"Twine", "flint", "Awl"}));
  EXPECT_FALSE(kit_->open());  // the chain's open sublists close
  SortSettings recursive;
  recursive.recursive = true;
  sortChain(sheet_, list_, nullptr, recursive);
  EXPECT_EQ(names(kit_->children), (std::vector<std::string>{"Awl", "flint", "Twine"}));
}

TEST_F(SortWithMembers, TheCaretsOwnChainIsSorted) {
  const std::vector<std::string> top = names(list_.items);
  sortChain(sheet_, list_, kit_->children[0].get(), {});
  EXPECT_EQ(names(kit_->children), (std::vector<std::string>{"Awl", "flint", "Twine"}));
  EXPECT_EQ(names(list_.items), top);
  // A chain of one item is left alone, and so is the sheet.
  ListInfo single;
  single.items.push_back(makeItem(kRows[0]));
  FileInfo untouched;
  sortChain(untouched, single, nullptr, {});
  EXPECT_FALSE(untouched.changed());
}

}  // namespace
}  // namespace zv
