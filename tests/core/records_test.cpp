#include "core/records.h"

#include <gtest/gtest.h>

#include <string>

#include "core/game_systems.h"
#include "core/headless_host.h"

namespace zv {
namespace {

TEST(Item, NewItemDefaults) {
  Item item;
  EXPECT_EQ(item.kind, ItemKind::Item);
  EXPECT_DOUBLE_EQ(item.mult, 1.0);
  EXPECT_TRUE(item.inTotal());
  EXPECT_EQ(item.flagsA, 0u);
  EXPECT_EQ(item.value, Value(0));
  EXPECT_TRUE(Item(ItemKind::Sublist, "Weapons").isSublist());
}

TEST(Item, InTotalIsStoredInverted) {
  Item item;
  item.setInTotal(false);
  EXPECT_EQ(item.flagsA, 0x2u);
  EXPECT_FALSE(item.inTotal());
  item.setInTotal(true);
  EXPECT_EQ(item.flagsA, 0u);
}

TEST(Item, BitFieldsKeepTheirWidth) {
  struct Case {
    const char* field;
    void (Item::*set)(unsigned);
    unsigned (Item::*get)() const;
    unsigned stored;
    unsigned expected;
    std::uint32_t Item::*word;
    std::uint32_t mask;
  };
  const Case cases[] = {
      {"rand", &Item::setRand, &Item::rand, 600, 88, &Item::flagsA, 0x1FFu << 16},
      {"sort", &Item::setSort, &Item::sort, 17, 1, &Item::flagsA, 0xFu << 26},
      {"editdlg", &Item::setEditDlg, &Item::editDlg, 9, 1, &Item::flagsA, 0x7u << 9},
      {"priority", &Item::setPriority, &Item::priority, 20, 4, &Item::flagsB, 0xFu << 12},
  };
  for (const auto& c : cases) {
    Item item;
    // Neighbouring bits must survive the store.
    item.*c.word = ~c.mask;
    (item.*c.set)(c.stored);
    EXPECT_EQ((item.*c.get)(), c.expected) << c.field;
    EXPECT_EQ(item.*c.word & ~c.mask, ~c.mask) << c.field;
    (item.*c.set)(0);
    EXPECT_EQ(item.*c.word, ~c.mask) << c.field;
  }
}

TEST(Item, SingleFlagsUseTheirBits) {
  struct Case {
    const char* flag;
    void (Item::*set)(bool);
    std::uint32_t Item::*word;
    std::uint32_t bit;
  };
  const Case cases[] = {
      {"usedefault", &Item::setUseDefault, &Item::flagsA, 0},
      {"open", &Item::setOpen, &Item::flagsA, 2},
      {"settling", &Item::setSettling, &Item::flagsA, 3},
      {"autoadded", &Item::setAutoAdded, &Item::flagsA, 6},
      {"generic", &Item::setGeneric, &Item::flagsA, 8},
      {"keepcost", &Item::setKeepCost, &Item::flagsA, 15},
      {"inheritopts", &Item::setInheritOpts, &Item::flagsA, 25},
      {"setlistcost", &Item::setSetListCost, &Item::flagsA, 30},
      {"childcostsseparate", &Item::setChildCostsSeparate, &Item::flagsA, 31},
      {"calculated", &Item::setCalculated, &Item::flagsB, 1},
      {"usedefvarname", &Item::setUseDefVarName, &Item::flagsB, 5},
      {"defbased", &Item::setDefBased, &Item::flagsB, 7},
      {"see", &Item::setSee, &Item::flagsB, 11},
      {"checkoninsert", &Item::setCheckOnInsert, &Item::flagsB, 16},
      {"disallowsat", &Item::setDisallowSat, &Item::flagsB, 20},
  };
  for (const auto& c : cases) {
    Item item;
    (item.*c.set)(true);
    EXPECT_EQ(item.*c.word, 1u << c.bit) << c.flag;
    (item.*c.set)(false);
    EXPECT_EQ(item.*c.word, 0u) << c.flag;
  }
}

TEST(Item, CloneIsDeepAndUnlinked) {
  FileInfo sheet;
  ListInfo* list = sheet.addList();
  auto sublist = std::make_unique<Item>(ItemKind::Sublist, "Weapons");
  sublist->mult = 2.0;
  sublist->options.push_back(std::make_unique<Option>());
  sublist->appendChild(std::make_unique<Item>(ItemKind::Item, "Sword"));
  sublist->appendChild(std::make_unique<Item>(ItemKind::Item, "Axe"));
  Item& original = list->appendItem(std::move(sublist));
  ASSERT_EQ(original.children[1]->owner, &sheet);
  EXPECT_EQ(original.children[1]->position, 1);
  EXPECT_EQ(original.children[1]->depth, 1);

  auto copy = original.clone();
  EXPECT_EQ(copy->name, "Weapons");
  EXPECT_DOUBLE_EQ(copy->mult, 2.0);
  EXPECT_EQ(copy->options.size(), 1u);
  EXPECT_NE(copy->options[0].get(), original.options[0].get());
  EXPECT_EQ(copy->owner, nullptr);
  EXPECT_EQ(copy->list, nullptr);
  ASSERT_EQ(copy->children.size(), 2u);
  EXPECT_EQ(copy->children[1]->name, "Axe");
  EXPECT_EQ(copy->children[1]->parent, copy.get());
  EXPECT_EQ(copy->children[1]->owner, nullptr);
  EXPECT_NE(copy->children[0].get(), original.children[0].get());
}

TEST(Records, FixedFieldsTruncateSilently) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  const std::string longText(300, 'x');
  ListInfo list;
  list.name = longText;
  list.listPrompt = longText;
  list.menuChar = "Sk";
  FileInfo sheet;
  sheet.gameSystemName = longText;
  sheet.path = longText;
  Item item;
  item.dsid = "ABCDEF";
  EXPECT_EQ(list.name.size(), 31u);
  EXPECT_EQ(list.listPrompt.size(), 199u);
  EXPECT_EQ(list.menuChar, "S");
  EXPECT_EQ(sheet.gameSystemName.size(), 23u);
  EXPECT_EQ(sheet.path.size(), 259u);
  EXPECT_EQ(item.dsid, "ABCD");
  EXPECT_TRUE(hostObject.transcript().empty());
}

TEST(Records, NewListDefaults) {
  ListInfo list;
  EXPECT_EQ(list.name, "(Unknown)");
  EXPECT_EQ(list.listPrompt, "Total");
  EXPECT_DOUBLE_EQ(list.total, 0.0);
}

TEST(Records, NewDataSheetPage) {
  PageInfo page = PageInfo::forNewDataSheet();
  EXPECT_EQ(page.lm, 1080);
  EXPECT_EQ(page.rm, 1080);
  EXPECT_EQ(page.tm, 1080);
  EXPECT_EQ(page.bm, 1080);
  EXPECT_EQ(page.facename, "Times New Roman");
  EXPECT_EQ(page.pointsize, 220);
  EXPECT_EQ(page.pitch, 18);
  EXPECT_EQ(page.tabs, (std::vector<TabStop>{{360, 0}}));
  EXPECT_EQ(page.deftab, 720);
  EXPECT_EQ(page.columnSpacing, 720);
  EXPECT_EQ(PageInfo().lm, 0);
}

TEST(FileInfo, FlagWords) {
  FileInfo sheet;
  sheet.setChangedFlag(true);
  sheet.setNoWrap(true);
  sheet.setRealSize(8);
  sheet.setIntSize(0x12);
  EXPECT_EQ(sheet.flags, 0x1u | 0x80u | (8u << 8) | (2u << 12));
  EXPECT_EQ(sheet.intSize(), 2u);
  sheet.setConstCost(true);
  sheet.setLoaded(true);
  EXPECT_EQ(sheet.flags2, 0x6u);
  EXPECT_EQ(sheet.magic, 0x4649494Eu);
}

TEST(FileInfo, ThirteenthListAndDialogAreRefused) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  FileInfo sheet;
  for (int i = 0; i < 12; ++i) {
    ASSERT_NE(sheet.addList(), nullptr);
    ASSERT_NE(sheet.addDialog(), nullptr);
  }
  EXPECT_TRUE(hostObject.transcript().empty());
  EXPECT_EQ(sheet.addList(), nullptr);
  EXPECT_EQ(sheet.addDialog(), nullptr);
  EXPECT_EQ(sheet.lists.size(), 12u);
  EXPECT_EQ(sheet.dlgs.size(), 12u);
  EXPECT_EQ(hostObject.transcript(),
            (std::vector<std::string>{"[Error] Too many lists.", "[Error] Too many dialogs!"}));
  EXPECT_EQ(sheet.lists[11]->owner, &sheet);
}

TEST(FileInfo, NullFileInfo) {
  HeadlessHost hostObject(nullptr);
  HostInstallation installed(hostObject);
  FileInfo sheet;
  EXPECT_TRUE(checkFileInfo(&sheet));
  sheet.magic = 0;
  EXPECT_FALSE(checkFileInfo(&sheet));
  EXPECT_FALSE(checkFileInfo(nullptr));
  EXPECT_EQ(hostObject.transcript(),
            (std::vector<std::string>{"[Error] Null file info!", "[Error] Null file info!"}));
}

TEST(FileInfo, AutoIdsStayAboveEveryIdRead) {
  FileInfo sheet;
  sheet.noteAutoID(100);
  sheet.noteAutoID(7);
  EXPECT_EQ(sheet.nextAutoID, 101);
}

std::unique_ptr<DlgItem> listField(const char* listName, const char* itemName) {
  auto field = std::make_unique<DlgItem>();
  field->listField = std::make_unique<ListInfo>();
  field->listField->name = listName;
  field->listField->appendItem(std::make_unique<Item>(ItemKind::Item, itemName));
  return field;
}

TEST(FileInfo, AllListsVisitsTopLevelListsThenListFields) {
  FileInfo sheet;
  sheet.addList()->name = "Skills";
  DlgInfo* first = sheet.addDialog();
  first->appendItem(std::make_unique<DlgItem>());
  first->appendItem(listField("Languages", "Common"));
  sheet.addDialog()->appendItem(listField("Wounds", "Scratch"));
  sheet.addList()->name = "Gear";

  std::vector<std::string> names;
  for (ListInfo* list : sheet.allLists())
    names.push_back(list->name);
  EXPECT_EQ(names, (std::vector<std::string>{"Skills", "Gear", "Languages", "Wounds"}));
  EXPECT_EQ(sheet.dlgs[1]->items[0]->listField->owner, &sheet);
  EXPECT_EQ(sheet.dlgs[1]->items[0]->listField->items[0]->owner, &sheet);
}

TEST(FileInfo, CloneTiesEverythingToTheCopy) {
  FileInfo sheet(1, "hero.chr", "/data/hero.chr");
  sheet.sheetId = registerSheet(sheet);
  ListInfo* skills = sheet.addList();
  skills->name = "Skills";
  auto sublist = std::make_unique<Item>(ItemKind::Sublist, "Lore");
  sublist->appendChild(std::make_unique<Item>(ItemKind::Item, "History"));
  skills->appendItem(std::move(sublist));
  sheet.addDialog()->appendItem(listField("Wounds", "Scratch"));
  sheet.dataMenu.setDefaultOrder(1, 1);
  sheet.defines.push_back(DefineRec{25, 0, 0, "Str", "10", nullptr});

  {
    auto copy = sheet.clone();
    EXPECT_EQ(copy->name, "hero.chr");
    EXPECT_EQ(copy->fileType, 1);
    ASSERT_EQ(copy->lists.size(), 1u);
    const ListInfo& list = *copy->lists[0];
    EXPECT_EQ(list.owner, copy.get());
    const Item& lore = *list.items[0];
    EXPECT_EQ(lore.owner, copy.get());
    EXPECT_EQ(lore.list, &list);
    EXPECT_EQ(lore.children[0]->owner, copy.get());
    EXPECT_EQ(lore.children[0]->parent, &lore);
    EXPECT_EQ(lore.children[0]->depth, 1);
    const ListInfo& wounds = *copy->dlgs[0]->items[0]->listField;
    EXPECT_EQ(wounds.owner, copy.get());
    EXPECT_EQ(wounds.items[0]->list, &wounds);
    EXPECT_EQ(copy->dlgs[0]->items[0]->owner, copy->dlgs[0].get());
    EXPECT_EQ(copy->dataMenu.entries(), sheet.dataMenu.entries());
    EXPECT_EQ(copy->defines.size(), 1u);
    EXPECT_EQ(copy->symbols, nullptr);
  }
  // The copy shared the id but never stood in the registry, so its end leaves the sheet there.
  EXPECT_EQ(findSheet(sheet.sheetId), &sheet);
}

}  // namespace
}  // namespace zv
