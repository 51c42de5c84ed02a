#include "core/game_systems.h"

#include <gtest/gtest.h>

#include <string>

namespace zv {
namespace {

class GameSystems : public ::testing::Test {
 protected:
  void SetUp() override { clearGameSystems(); }
  void TearDown() override { clearGameSystems(); }
};

std::vector<std::string> chainNames() {
  std::vector<std::string> names;
  for (GameSystem* system : gameSystems())
    names.push_back(system->name);
  return names;
}

TEST_F(GameSystems, NewSystemsGoToTheFrontAndAreFoundIgnoringCase) {
  GameSystem& fantasy = findOrCreateGameSystem("Fantasy");
  findOrCreateGameSystem("SciFi");
  findOrCreateGameSystem("Horror");
  EXPECT_EQ(chainNames(), (std::vector<std::string>{"Horror", "SciFi", "Fantasy"}));

  EXPECT_EQ(findGameSystem("FANTASY"), &fantasy);
  EXPECT_EQ(&findOrCreateGameSystem("fantasy"), &fantasy);
  EXPECT_EQ(gameSystems().size(), 3u);
  EXPECT_EQ(findGameSystem("Western"), nullptr);

  EXPECT_EQ(fantasy.level, -1);
  EXPECT_EQ(fantasy.master.gameSystem, &fantasy);
}

TEST_F(GameSystems, LongNamesAreKeptToTheirCapacity) {
  const std::string longName = "A Very Long Game System Name Indeed";
  GameSystem& system = findOrCreateGameSystem(longName);
  EXPECT_EQ(system.name, longName.substr(0, 23));
  EXPECT_EQ(findGameSystem(longName), &system);
  EXPECT_EQ(findGameSystem(longName.substr(0, 23)), &system);
}

TEST_F(GameSystems, EmptyNameIsTheBuiltInRecord) {
  findOrCreateGameSystem("Fantasy");
  GameSystem& builtin = builtinGameSystem();
  EXPECT_EQ(findGameSystem(""), &builtin);
  EXPECT_EQ(&findOrCreateGameSystem(""), &builtin);
  EXPECT_EQ(chainNames(), (std::vector<std::string>{"Fantasy"}));
  EXPECT_EQ(builtin.master.gameSystem, &builtin);
}

TEST_F(GameSystems, CategoriesInFirstSeenOrder) {
  GameSystem& system = findOrCreateGameSystem("Fantasy");
  Category& skills = system.findOrAddCategory("Skills");
  system.findOrAddCategory("Spells");
  EXPECT_EQ(&system.findOrAddCategory("SKILLS"), &skills);
  system.findOrAddCategory("Gear");
  ASSERT_EQ(system.categories.size(), 3u);
  EXPECT_EQ(system.categories[0]->name, "Skills");
  EXPECT_EQ(system.categories[1]->name, "Spells");
  EXPECT_EQ(system.categories[2]->name, "Gear");

  FileInfo sheet;
  EXPECT_EQ(categoryFind(sheet, "Skills"), nullptr);
  sheet.gameSystem = &system;
  EXPECT_EQ(categoryFind(sheet, "spells"), system.categories[1].get());
  EXPECT_EQ(categoryFind(sheet, "Feats"), nullptr);

  Item& master = skills.appendItem(std::make_unique<Item>(ItemKind::Item, "Climb"));
  skills.appendItem(std::make_unique<Item>(ItemKind::Item, "Swim"));
  EXPECT_EQ(master.owner, nullptr);
  EXPECT_EQ(skills.items[1]->position, 1);
}

TEST_F(GameSystems, DataSheetIdsGrowAcrossSystems) {
  GameSystem& fantasy = findOrCreateGameSystem("Fantasy");
  GameSystem& scifi = findOrCreateGameSystem("SciFi");
  std::int32_t first = fantasy.addDataSheet("core.cds").id;
  std::int32_t second = scifi.addDataSheet("ships.cds").id;
  std::int32_t third = fantasy.addDataSheet("magic.cds").id;
  EXPECT_GE(first, 1);
  EXPECT_EQ(second, first + 1);
  EXPECT_EQ(third, first + 2);
  ASSERT_NE(fantasy.findDataSheet(third), nullptr);
  EXPECT_EQ(fantasy.findDataSheet(third)->name, "magic.cds");
  EXPECT_EQ(fantasy.findDataSheet(second), nullptr);
  // Clearing the game systems doesn't reuse ids.
  clearGameSystems();
  EXPECT_GT(findOrCreateGameSystem("Fantasy").addDataSheet("core.cds").id, third);
}

TEST(SheetRegistry, RegisterFindAndUnregister) {
  FileInfo first;
  FileInfo second;
  std::int32_t firstId = registerSheet(first);
  std::int32_t secondId = registerSheet(second);
  EXPECT_GE(firstId, 1);
  EXPECT_GT(secondId, firstId);
  EXPECT_EQ(first.sheetId, firstId);
  EXPECT_EQ(findSheet(firstId), &first);
  EXPECT_EQ(findSheet(secondId), &second);

  // A sheet that already has an id keeps it.
  FileInfo given;
  given.sheetId = nextSheetId();
  std::int32_t givenId = given.sheetId;
  EXPECT_EQ(registerSheet(given), givenId);
  EXPECT_EQ(findSheet(givenId), &given);

  unregisterSheet(first);
  EXPECT_EQ(findSheet(firstId), nullptr);
  EXPECT_EQ(findSheet(secondId), &second);

  // Another record with the same id doesn't take the registered one out.
  FileInfo impostor;
  impostor.sheetId = secondId;
  unregisterSheet(impostor);
  EXPECT_EQ(findSheet(secondId), &second);
}

TEST(SheetRegistry, ClosedSheetLeavesTheRegistry) {
  std::int32_t id = 0;
  {
    FileInfo sheet;
    id = registerSheet(sheet);
    EXPECT_EQ(findSheet(id), &sheet);
  }
  EXPECT_EQ(findSheet(id), nullptr);
  EXPECT_EQ(findSheet(0), nullptr);
}

}  // namespace
}  // namespace zv
