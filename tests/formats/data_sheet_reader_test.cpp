// The data sheet reader: the header, page layout, categories with their sublists, strings and the
// messages of bad files.

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/tokens/keywords.h"

namespace zv::testing {
namespace {

std::string fileText(const std::string& name) {
  std::ifstream in(std::string(ZV_TEST_DATA_DIR) + "/datasheets/" + name, std::ios::binary);
  std::stringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

class DataSheetReaderTest : public ::testing::Test {
 protected:
  void SetUp() override { clearGameSystems(); }
  void TearDown() override { clearGameSystems(); }

  bool read(std::string text, DataSheetFile& file) {
    if (file.name.empty()) file.name = "test.cds";
    MemoryByteStream input(std::move(text));
    return readDataSheet(input, file);
  }
  std::string lastMessage() const {
    return host.transcript().empty() ? std::string() : host.transcript().back();
  }

  HeadlessHost host{nullptr};
  HostInstallation installed{host};
};

constexpr const char* kHead = "\"Data Sheet file v. 1\" gamesystem Fenwick version 253 level 1\n";

TEST_F(DataSheetReaderTest, ReadsTheSampleIntoItsGameSystem) {
  DataSheetFile file;
  file.name = "marsh.cds";
  ASSERT_TRUE(read(fileText("marsh.cds"), file)) << lastMessage();
  EXPECT_TRUE(host.transcript().empty()) << lastMessage();
  ASSERT_NE(file.gameSystem, nullptr);
  GameSystem& system = *file.gameSystem;
  EXPECT_EQ(system.name.str(), "Fenwick");
  EXPECT_EQ(file.title, "Fenwick marsh lore");
  EXPECT_EQ(file.copyright, "Made up for tests");
  EXPECT_EQ(file.level, 2);
  EXPECT_EQ(system.level, 2);
  EXPECT_EQ(file.pageInfo, PageInfo::forNewDataSheet());
  EXPECT_EQ(file.dataFiles, std::vector<std::string>{"reeds.cds"});
  EXPECT_EQ(file.helpFile, "marsh.hlp");
  EXPECT_EQ(file.cdelay, 1);
  ASSERT_EQ(file.defines.size(), 1u);
  EXPECT_EQ(file.defines[0].sourceId, file.id);
  ASSERT_EQ(system.categories.size(), 2u);
  const Category& crafts = *system.categories[0];
  EXPECT_EQ(crafts.name.str(), "Crafts");
  ASSERT_EQ(crafts.items.size(), 2u);
  EXPECT_EQ(crafts.items[0]->name, "Netting");  // sorted by name
  EXPECT_EQ(crafts.items[1]->sourceId, file.id);
  const Category& kit = *system.categories[1];
  ASSERT_EQ(kit.items.size(), 2u);
  EXPECT_EQ(kit.items[0]->name, "Lantern");
  ASSERT_TRUE(kit.items[1]->isSublist());
  EXPECT_EQ(kit.items[1]->children.size(), 1u);
  ASSERT_EQ(system.strings.size(), 2u);
  EXPECT_EQ(system.strings[1].value, "Fare thee well");
  ASSERT_EQ(system.dataSheets.size(), 1u);
  EXPECT_EQ(system.dataSheets[0].id, file.id);
  EXPECT_EQ(system.dataSheets[0].name, "marsh.cds");
  EXPECT_EQ(system.dataSheets[0].helpFile.str(), "marsh.hlp");
}

TEST_F(DataSheetReaderTest, OptionGroupsMergeByNameAndEntriesStaySorted) {
  DataSheetFile file;
  file.name = "marsh.cds";
  ASSERT_TRUE(read(fileText("marsh.cds"), file)) << lastMessage();
  ASSERT_EQ(file.gameSystem->options.size(), 1u);
  const OptionTreeEntry& mods = file.gameSystem->options[0];
  EXPECT_EQ(mods.name, "Mods");
  EXPECT_EQ(mods.groupKind, kList);
  std::vector<std::string> names;
  for (const OptionTreeEntry& entry : mods.entries)
    names.push_back(entry.name + "/" + std::to_string(entry.depth));
  EXPECT_EQ(names, (std::vector<std::string>{"Bright/1", "Damp/1", "Heavy/1", "Tints/1"}));
  EXPECT_EQ(mods.entries[1].option->kind, kOptionPercentage);
  EXPECT_EQ(mods.entries[1].sourceId, file.id);
  EXPECT_EQ(mods.entries[3].groupKind, kUlist);
  ASSERT_EQ(mods.entries[3].entries.size(), 1u);
  EXPECT_EQ(mods.entries[3].entries[0].option->value, "amber");

  OptionTree level;
  for (const char* name : {"b", "A", "a"}) {
    OptionTreeEntry entry;
    entry.name = name;
    insertOptionEntry(level, std::move(entry));
  }
  EXPECT_EQ(level[0].name + level[1].name + level[2].name, "Aab");
}

TEST_F(DataSheetReaderTest, SublistsOfOneNameMergeAcrossSheets) {
  const std::string body = "cat Kit sublist Satchels memlist item Twine end end end";
  DataSheetFile first;
  ASSERT_TRUE(read(std::string(kHead) + body, first)) << lastMessage();
  DataSheetFile second;
  ASSERT_TRUE(
      read(std::string(kHead) + "cat kit sublist SATCHELS memlist item Rope item Hook end end end",
           second))
      << lastMessage();
  ASSERT_EQ(first.gameSystem, second.gameSystem);
  ASSERT_EQ(first.gameSystem->categories.size(), 1u);
  const Category& kit = *first.gameSystem->categories[0];
  ASSERT_EQ(kit.items.size(), 1u);
  EXPECT_EQ(kit.items[0]->children.size(), 3u);
  EXPECT_EQ(kit.items[0]->sourceId, first.id);
  EXPECT_GT(second.id, first.id);
}

TEST_F(DataSheetReaderTest, MacroFormAndMacrosInText) {
  DataSheetFile file;
  ASSERT_TRUE(
      read("\"Macro Data Sheet file v. 1\" gamesystem Fenwick\n"
           "$$define Tool Lantern\n"
           "cat Kit item $(Tool) end end",
           file))
      << lastMessage();
  ASSERT_EQ(file.gameSystem->categories.size(), 1u);
  EXPECT_EQ(file.gameSystem->categories[0]->items[0]->name, "Lantern");
}

struct MessageCase {
  const char* label;
  std::string text;
  bool ok;
  std::string message;  ///< the last box, "[Title] text"
};

TEST_F(DataSheetReaderTest, MessagesOfBadFiles) {
  const std::vector<MessageCase> cases = {
      {"empty", "", false, "[Empty File] The data sheet test.cds is empty."},
      {"wrong word", "\"Character Sheet file v. 2\" end", false,
       "[Error] File test.cds is not a data sheet file."},
      {"no end", std::string(kHead) + "cat Kit item Rope end", false, "[Error] End missing"},
      {"stray word", std::string(kHead) + "\n\nbogus end", false,
       "[Error] Improper data sheet format: test.cds (line 4, token: bogus)"},
      {"stray keyword", std::string(kHead) + "item Rope end", false,
       "[Error] Improper data sheet format: test.cds (line 2, token: item)"},
      {"cat first", "\"Data Sheet file v. 1\" cat Kit end end", false,
       "[Error] Game system not specified for data sheet file test.cds"},
      {"strings first", "\"Data Sheet file v. 1\" strings A b end end", false,
       "[Error] Game system not specified for data sheet file test.cds"},
      {"define first", "\"Data Sheet file v. 1\" define var X 1 end end", false,
       "[Error] Game system not specified for data sheet file test.cds"},
      {"no game system", "\"Data Sheet file v. 1\" level 1 end", false,
       "[Error] Game system not specified for data sheet file test.cds"},
      {"version", "\"Data Sheet file v. 1\" gamesystem Fenwick version 254 end", false,
       "[Error] This datasheet (version 254) cannot be read by this version of the application "
       "(253)"},
      {"pageinfo stray", std::string(kHead) + "pageinfo lm 5 wobble rm 6 end end", true,
       "[Error] Unexpected token in pageInfo: wobble"},
      {"bad option", std::string(kHead) + "options list Mods\nitem Rope end end end", false,
       "[Error] Bad option type: item (line 3)"},
      {"options open", std::string(kHead) + "options list Mods mult Heavy 2 end", false,
       "[Error] End missing"},
      {"value missing", std::string(kHead) + "level", false,
       "[Error] Read error on data sheet test.cds"},
      {"string value missing", std::string(kHead) + "strings A", false,
       "[Error] Error reading string def in file test.cds"},
      {"strings agree", std::string(kHead) + "strings A one A one end end", true, ""},
      {"strings clash", std::string(kHead) + "strings A one A two A one end end", true,
       "[Error] String def A inconsistent in file test.cds"},
  };
  for (const MessageCase& c : cases) {
    SCOPED_TRACE(c.label);
    clearGameSystems();
    host.clearTranscript();
    DataSheetFile file;
    EXPECT_EQ(read(c.text, file), c.ok);
    EXPECT_EQ(lastMessage(), c.message);
  }
}

TEST_F(DataSheetReaderTest, PageInfoGoesOnAfterAStrayWord) {
  DataSheetFile file;
  ASSERT_TRUE(
      read(std::string(kHead) + "pageinfo lm 5 wobble rm 6 tabs 2 10 1 20 2 end end", file));
  EXPECT_EQ(file.pageInfo.lm, 5);
  EXPECT_EQ(file.pageInfo.rm, 6);
  ASSERT_EQ(file.pageInfo.tabs.size(), 2u);
  EXPECT_EQ(file.pageInfo.tabs[1].position, 20);
  EXPECT_EQ(file.pageInfo.tabs[1].type, 2);
}

TEST_F(DataSheetReaderTest, LevelMismatchWarnings) {
  struct LevelCase {
    int first;
    int second;
    std::string message;
  };
  const std::vector<LevelCase> cases = {
      {1, 2,
       "[Level Mismatch] The level of this data sheet (2) is greater than the level of the data "
       "sheets already loaded (1).\\n\\nItems may not be compatible with the character sheets."},
      {3, 2,
       "[Level Mismatch] The level of this data sheet (2) is less than the level of the data "
       "sheets already loaded (3).\\n\\nItems may not be compatible with the character sheets."},
      {2, 2, ""},
  };
  for (const LevelCase& c : cases) {
    clearGameSystems();
    host.clearTranscript();
    auto sheet = [](int level) {
      return "\"Data Sheet file v. 1\" gamesystem Fenwick level " + std::to_string(level) + " end";
    };
    DataSheetFile a, b;
    ASSERT_TRUE(read(sheet(c.first), a));
    ASSERT_TRUE(read(sheet(c.second), b));
    EXPECT_EQ(lastMessage(), c.message);
    EXPECT_EQ(b.gameSystem->level, c.first);
  }
  clearGameSystems();
  host.clearTranscript();
  ScopedEngineContext off;
  off->preferences.levelWarnings = false;
  DataSheetFile a, b;
  ASSERT_TRUE(read(std::string(kHead) + "end", a));
  ASSERT_TRUE(read("\"Data Sheet file v. 1\" gamesystem Fenwick level 5 end", b));
  EXPECT_TRUE(host.transcript().empty());
}

}  // namespace
}  // namespace zv::testing
