#include "core/data_menu.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/fileinfo.h"
#include "core/headless_host.h"

namespace zv {
namespace {

constexpr DataMenuEntry L(int index) {
  return {DataMenuKind::List, static_cast<std::int16_t>(index)};
}
constexpr DataMenuEntry D(int index) {
  return {DataMenuKind::Dialog, static_cast<std::int16_t>(index)};
}
constexpr DataMenuEntry S() {
  return {DataMenuKind::Separator, 0};
}

std::vector<int> commandsOf(const DataMenu& menu) {
  std::vector<int> commands;
  for (const auto& entry : menu.entries())
    commands.push_back(entry.command());
  return commands;
}

TEST(DataMenu, DefaultOrderIsDialogsSeparatorLists) {
  struct Case {
    int dialogs;
    int lists;
    std::vector<DataMenuEntry> expected;
  };
  const Case cases[] = {
      {2, 3, {D(0), D(1), S(), L(0), L(1), L(2)}},
      {1, 0, {D(0), S()}},
      {0, 0, {S()}},
  };
  for (const auto& c : cases) {
    DataMenu menu;
    menu.addList(7);  // replaced by the default order
    menu.setDefaultOrder(c.dialogs, c.lists);
    EXPECT_EQ(menu.entries(), c.expected) << c.dialogs << " dialogs, " << c.lists << " lists";
  }

  DataMenu menu;
  menu.setDefaultOrder(2, 3);
  EXPECT_EQ(commandsOf(menu), (std::vector<int>{1700, 1701, 0, 1800, 1801, 1802}));
}

TEST(DataMenu, ThirtyFirstEntryIsRefused) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  DataMenu menu;
  for (int i = 0; i < 30; ++i)
    ASSERT_TRUE(menu.addList(i % 12)) << i;
  EXPECT_TRUE(hostObject.transcript().empty());

  EXPECT_FALSE(menu.addDialog(0));
  EXPECT_FALSE(menu.addSeparator());
  EXPECT_EQ(menu.size(), 30u);
  EXPECT_EQ(hostObject.transcript(),
            (std::vector<std::string>{"[Error] Too many items in data menu",
                                      "[Error] Too many items in data menu"}));
}

TEST(DataMenu, SeventhSeparatorIsRefused) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  DataMenu menu;
  for (int i = 0; i < 6; ++i)
    ASSERT_TRUE(menu.addSeparator());
  EXPECT_FALSE(menu.addSeparator());
  EXPECT_EQ(menu.separatorCount(), 6);
  // Lists and dialogs still fit.
  EXPECT_TRUE(menu.addList(0));
  EXPECT_EQ(hostObject.transcript(),
            (std::vector<std::string>{"[Error] Too many items in data menu"}));
}

TEST(DataMenu, DeletingAnEntryRenumbersLaterOnesOfItsKind) {
  struct Case {
    const char* label;
    std::vector<DataMenuEntry> before;
    bool list;
    int deleted;
    std::vector<DataMenuEntry> after;
  };
  const Case cases[] = {
      {"list 2 of 0-4",
       {D(0), D(1), D(2), D(3), S(), L(0), L(1), L(2), L(3), L(4)},
       true,
       2,
       {D(0), D(1), D(2), D(3), S(), L(0), L(1), L(2), L(3)}},
      // By index, not by place in the table: a reordered menu stays right.
      {"reordered", {L(4), L(2), S(), L(0), L(3), D(2)}, true, 2, {L(3), S(), L(0), L(2), D(2)}},
      {"dialog 1", {D(0), D(1), D(2), S(), L(1), L(2)}, false, 1, {D(0), D(1), S(), L(1), L(2)}},
      {"last list", {D(0), S(), L(0), L(1)}, true, 1, {D(0), S(), L(0)}},
  };
  for (const auto& c : cases) {
    DataMenu menu;
    for (const auto& entry : c.before)
      ASSERT_TRUE(menu.add(entry));
    if (c.list) {
      menu.removeList(c.deleted);
    } else {
      menu.removeDialog(c.deleted);
    }
    EXPECT_EQ(menu.entries(), c.after) << c.label;
  }
}

TEST(DataMenu, RemovingAListFromTheSheetKeepsTheMenuOnTheSameLists) {
  FileInfo sheet;
  for (const char* name : {"Attributes", "Skills", "Spells", "Gear", "Notes"}) {
    sheet.addList()->name = name;
  }
  sheet.addDialog()->name = "Main";
  sheet.dataMenu.setDefaultOrder(1, 5);

  sheet.removeList(2);
  ASSERT_EQ(sheet.lists.size(), 4u);
  std::vector<std::string> shown;
  for (const auto& entry : sheet.dataMenu.entries()) {
    if (entry.kind == DataMenuKind::List) shown.push_back(sheet.lists[entry.index]->name);
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"Attributes", "Skills", "Gear", "Notes"}));
  EXPECT_EQ(sheet.dataMenu.entries().front(), D(0));
}

}  // namespace
}  // namespace zv
