// A Hollowmark character built from the template through the item selection, as the desktop
// program does it: items taken from what a list offers and placed at the cursor, the
// requirements dialog answered (Satisfy adds what is missing), a level raised, three items
// deleted and brought back by Undo, and the sheet saved and read again; the totals and the
// requirement verdicts are checked at every step against values worked out by hand.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/undo.h"
#include "expr/compiler.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/engine_wiring.h"
#include "formats/file_recognition.h"
#include "formats/sheet_document.h"
#include "rules/lists/list_ops.h"
#include "rules/lists/list_undo.h"
#include "rules/lists/place_item.h"
#include "rules/lists/visible_rows.h"
#include "rules/requirements/requirements.h"
#include "rules/selection/take_item.h"
#include "rules/value/edit.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class SelectBuild : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-select-build-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    engine().dataSheets.dataDir = kData;
    context_.dataDir = kData;
    wireEngineServices(engine());
    UntitledNames names;
    sheet_ = newSheetFromTemplate((kData / "hollowmark.cst").string(), kFileCharacterSheet,
                                  context_, names);
    ASSERT_TRUE(sheet_);
  }
  void TearDown() override {
    sheet_.reset();
    clearGameSystems();
    fs::remove_all(dir_);
  }

  ListInfo& list(std::string_view name) {
    ListInfo* found = findListByName(*sheet_, name);
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }

  /// Takes an item from what the list offers, placed behind `cursor` (the end when null).
  Item* take(std::string_view listName, std::string_view itemName, Item* cursor = nullptr) {
    ItemSelection selection;
    if (!selection.open({sheet_.get(), &list(listName), cursor})) return nullptr;
    std::optional<std::size_t> row;
    for (std::size_t i = 0; i < selection.rows().size() && !row; ++i)
      if (selection.rows()[i].item->name == itemName) row = i;
    if (!row) {
      ADD_FAILURE() << itemName << " not offered in " << listName;
      return nullptr;
    }
    const TakeOutcome taken = takeItem(selection, *row, placeBehindCursor());
    return taken.result == TakeResult::Taken ? taken.placed : nullptr;
  }

  double value(std::string_view expression) {
    Value out;
    EXPECT_EQ(parseExp(sheet_->symbols.get(), expression, out), 0) << expression;
    if (out.isInteger()) return out.integer();
    return out.isFloat() ? out.real() : -1.0;
  }

  bool holds(std::string_view listName, std::string_view itemName) {
    ListInfo& owner = list(listName);
    Item* item = findItemInSublists(owner, itemName);
    EXPECT_NE(item, nullptr) << itemName;
    return item != nullptr && prereqSatisfied(*sheet_, &owner, *item, {true, false}, item->prereq);
  }

  std::vector<std::string> rowNames(std::string_view listName) {
    std::vector<std::string> names;
    for (Item* item : visibleRows(list(listName)))
      names.push_back(item->name);
    return names;
  }

  inline static const fs::path kData = ZV_SAMPLE_DATA_DIR;
  HeadlessHost host_{nullptr};
  HostInstallation installed_{host_};
  DocumentContext context_;
  fs::path dir_;
  std::unique_ptr<FileInfo> sheet_;
};

TEST_F(SelectBuild, AWardenFromTheTemplate) {
  // A deep skill whose requirement (Bell-ringing 2) isn't met: the requirements dialog asks;
  // Satisfy puts Bell-ringing at 2 on the list, and OK takes the lore.
  host_.addAnswer("Satisfy");
  host_.addAnswer("OK");
  Item* lore = take("Skills", "Bell Lore");
  ASSERT_NE(lore, nullptr);
  EXPECT_EQ(rowNames("Skills"), (std::vector<std::string>{"Bell-ringing", "Bell Lore"}));
  EXPECT_TRUE(holds("Skills", "Bell Lore"));
  const double skillsAfterLore = list("Skills").total;

  // The spear goes behind the cursor, between the two.
  Item* ringing = findItemInList(list("Skills"), "Bell-ringing");
  ASSERT_NE(take("Skills", "Spear", ringing), nullptr);
  EXPECT_EQ(rowNames("Skills"), (std::vector<std::string>{"Bell-ringing", "Spear", "Bell Lore"}));

  // The drowned bell needs Bell-ringing 3: taken with OK, it stands unsatisfied until the
  // level is raised.
  host_.addAnswer("OK");
  ASSERT_NE(take("Rites", "Call the Drowned Bell"), nullptr);
  EXPECT_FALSE(holds("Rites", "Call the Drowned Bell"));
  EXPECT_EQ(checkAllPrereq(*sheet_).size(), 1u);
  EXPECT_EQ(changeItemLevel(*sheet_, *ringing, "3"), EditResult::Changed);
  EXPECT_TRUE(holds("Rites", "Call the Drowned Bell"));
  EXPECT_TRUE(checkAllPrereq(*sheet_).empty());

  // Skills: Bell-ringing 3 at 2 Marks a rank 6, Spear 1 at 3, Bell Lore 1 (rank squared) 1;
  // Rites: the drowned bell in circle 1, 1*1+2 = 3. Spent 13 of 100 (the attributes at the
  // template's base cost nothing).
  EXPECT_EQ(skillsAfterLore, 5.0);  // Bell-ringing 2 at 2 a rank, Bell Lore 1
  EXPECT_EQ(list("Skills").total, 10.0);
  EXPECT_EQ(list("Rites").total, 3.0);
  EXPECT_EQ(value("Spent"), 13.0);
  EXPECT_EQ(value("Left"), 87.0);

  // Three skills deleted as one edit: the totals fall and the rite's verdict fails again; Undo
  // brings all three back in their places with the totals and verdicts they had.
  ListInfo& skills = list("Skills");
  const std::vector<Item*> rows = visibleRows(skills);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_TRUE(deleteItems(*sheet_, skills, rows).deleted);
  EXPECT_TRUE(rowNames("Skills").empty());
  EXPECT_EQ(skills.total, 0.0);
  EXPECT_EQ(value("Spent"), 3.0);
  EXPECT_FALSE(holds("Rites", "Call the Drowned Bell"));
  ASSERT_NE(undoPeek(*sheet_), nullptr);
  EXPECT_EQ(undoPeek(*sheet_)->kind, kUndoItemsDeleted);
  ASSERT_TRUE(undoPop(*sheet_));
  EXPECT_EQ(rowNames("Skills"), (std::vector<std::string>{"Bell-ringing", "Spear", "Bell Lore"}));
  EXPECT_EQ(skills.total, 10.0);
  EXPECT_EQ(value("Spent"), 13.0);
  EXPECT_TRUE(holds("Rites", "Call the Drowned Bell"));
  EXPECT_FALSE(undoCanUndo(*sheet_));

  // Saved and read again, the character is the same.
  const std::string path = (dir_ / "Tamsin Reed.chr").string();
  ASSERT_TRUE(writeSheetDocument(*sheet_, path, kFileCharacterSheet, context_));
  sheet_ = openSheetFile(path, context_);
  ASSERT_TRUE(sheet_);
  EXPECT_EQ(rowNames("Skills"), (std::vector<std::string>{"Bell-ringing", "Spear", "Bell Lore"}));
  EXPECT_EQ(list("Skills").total, 10.0);
  EXPECT_EQ(value("Spent"), 13.0);
  EXPECT_TRUE(checkAllPrereq(*sheet_).empty());
  EXPECT_EQ(host_.transcript(), (std::vector<std::string>{
                                    "[Bell Lore] [ ] Bell-ringing>=2",
                                    "[Bell Lore] [x] Bell-ringing>=2",
                                    "[Call the Drowned Bell] [ ] Skills: Bell-ringing>=3",
                                }));
}

TEST_F(SelectBuild, AStepOrATypedLevelTakesAnItemOffItsDefault) {
  sheet_ = openSheetFile((kData / "characters" / "Maren Vell.chr").string(), context_);
  ASSERT_TRUE(sheet_);
  ASSERT_NE(take("Skills", "Hiding"), nullptr);
  Item* hiding = findItemInList(list("Skills"), "Hiding");
  ASSERT_NE(hiding, nullptr);
  // Hiding defaults to Wits - 10 (Wits 12) for 1 Mark; off its default it costs 2 a rank.
  struct Step {
    const char* what;
    std::function<EditResult()> edit;
    int level;
    double cost;
    bool atDefault;
  };
  const Step steps[] = {
      {"taken", [] { return EditResult::Changed; }, 2, 1, true},
      {"Add 1", [&] { return stepItemLevel(*sheet_, *hiding, 1); }, 3, 6, false},
      {"Add 1", [&] { return stepItemLevel(*sheet_, *hiding, 1); }, 4, 8, false},
      {"typed 7, past MaxRank", [&] { return changeItemLevel(*sheet_, *hiding, "7"); }, 4, 8,
       false},
      {"Subtract 1", [&] { return stepItemLevel(*sheet_, *hiding, -1); }, 3, 6, false},
  };
  host_.addAnswer("Cancel");  // the refusal of rank 7
  const double othersTotal = list("Skills").total - 1;
  for (const Step& step : steps) {
    step.edit();
    EXPECT_EQ(hiding->value.isInteger() ? hiding->value.integer() : -1, step.level) << step.what;
    EXPECT_EQ(hiding->totalCost, step.cost) << step.what;
    EXPECT_EQ(hiding->useDefault(), step.atDefault) << step.what;
    EXPECT_EQ(list("Skills").total, othersTotal + step.cost) << step.what;
  }
}

}  // namespace
}  // namespace zv
