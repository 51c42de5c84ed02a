// Undo of deletions: one record (kind 5) and several (kind 6) go back where they stood, with their
// levels, costs and totals, and the views are told which rows to select.

#include <gtest/gtest.h>

#include "core/undo.h"
#include "list_fixture.h"
#include "rules/lists/list_undo.h"
#include "rules/lists/visible_rows.h"

namespace zv::testing {
namespace {

class ListUndo : public ListOpsTest {
 protected:
  ListUndo() {
    for (const char* name : {"A", "B", "C", "D", "E"})
      master("Skills", name, "x*2", "1");
    masterGroup("Skills", "G", {{"g1", 2.0}, {"g2", 3.0}});
    for (const char* name : {"A", "B", "G", "C", "D", "E"}) {
      Item* item = add(*skills_, name).item;
      if (item->isSublist()) item->setOpen(true);
    }
    // A B G g1 g2 C D E: rows 0 to 7; costs 2 each for the five items and 5 for the group.
    SheetViews& views = engineContext_->views;
    views.showList = [this](ListInfo& list) { shown += list.name.str() + ";"; };
    views.selectRows = [this](ListInfo& list, int first, int last) {
      selected += list.name.str() + ":" + std::to_string(first) + "-" + std::to_string(last) + ";";
    };
    sheet_.setChangedFlag(false);
  }

  std::vector<Item*> rows(std::initializer_list<int> indices) {
    std::vector<Item*> items;
    for (int row : indices)
      items.push_back(itemAtRow(*skills_, row));
    return items;
  }

  std::string shown;
  std::string selected;
};

constexpr const char* kWhole = "A,B,G[g1,g2],C,D,E";

TEST_F(ListUndo, OneDeletionComesBackInPlace) {
  Item* c = itemAtRow(*skills_, 5);
  DeleteOutcome outcome = deleteItems(sheet_, *skills_, {c});
  ASSERT_TRUE(outcome.deleted);
  EXPECT_EQ(outcome.row, 5);
  EXPECT_EQ(layout(*skills_), "A,B,G[g1,g2],D,E");
  EXPECT_EQ(variable("SkillPts"), "13");
  ASSERT_NE(undoPeek(sheet_), nullptr);
  EXPECT_EQ(undoPeek(sheet_)->kind, kUndoItemDeleted);
  EXPECT_TRUE(sheet_.changed());

  ASSERT_TRUE(undoPop(sheet_));
  EXPECT_EQ(layout(*skills_), kWhole);
  EXPECT_EQ(itemAtRow(*skills_, 5), c);  // the same record
  EXPECT_EQ(c->totalCost, 2.0);
  EXPECT_EQ(reads("C"), "1");
  EXPECT_EQ(variable("SkillPts"), "15");
  EXPECT_TRUE(numbered(skills_->items));
  EXPECT_EQ(shown, "Skills;");
  EXPECT_EQ(selected, "Skills:5-5;");
  EXPECT_FALSE(sheet_.changed());
}

TEST_F(ListUndo, ThreeDeletionsComeBackInPlaceAndSelected) {
  DeleteOutcome outcome = deleteItems(sheet_, *skills_, rows({1, 3, 6}));
  ASSERT_TRUE(outcome.deleted);
  EXPECT_EQ(outcome.row, 1);
  EXPECT_EQ(layout(*skills_), "A,G[g2],C,E");
  EXPECT_EQ(undoPeek(sheet_)->kind, kUndoItemsDeleted);
  ASSERT_TRUE(undoPop(sheet_));
  EXPECT_EQ(layout(*skills_), kWhole);
  EXPECT_TRUE(numbered(skills_->items));
  EXPECT_EQ(variable("SkillPts"), "15");
  EXPECT_EQ(selected, "Skills:1-6;");
}

TEST_F(ListUndo, ARowInsideADeletedGroupGoesWithIt) {
  ASSERT_TRUE(deleteItems(sheet_, *skills_, rows({2, 3})).deleted);
  EXPECT_EQ(layout(*skills_), "A,B,C,D,E");
  EXPECT_EQ(undoPeek(sheet_)->kind, kUndoItemDeleted);
  ASSERT_TRUE(undoPop(sheet_));
  EXPECT_EQ(layout(*skills_), kWhole);
  EXPECT_EQ(variable("SkillPts"), "15");
}

TEST_F(ListUndo, AParentComesBackWithTheItemsItAddedInOtherLists) {
  Item* a = itemAtRow(*skills_, 0);
  const std::int32_t id = autoIDFor(sheet_, *a);
  itemAtRow(*skills_, 7)->autoParent = id;  // E
  master("Gear", "Rope", {}, {}, 1.0);
  master("Gear", "Torch", {}, {}, 1.0);
  add(*gear_, "Rope").item->autoParent = id;
  add(*gear_, "Torch");
  ASSERT_TRUE(deleteItems(sheet_, *skills_, {a}).deleted);
  EXPECT_EQ(layout(*skills_), "B,G[g1,g2],C,D");
  EXPECT_EQ(layout(*gear_), "Torch");
  EXPECT_EQ(undoPeek(sheet_)->kind, kUndoItemsDeleted);

  ASSERT_TRUE(undoPop(sheet_));
  EXPECT_EQ(layout(*skills_), kWhole);
  EXPECT_EQ(layout(*gear_), "Rope,Torch");
  // The links are as before, so deleting the parent again takes the children again.
  EXPECT_EQ(gear_->items.front()->autoParent, id);
  EXPECT_EQ(shown, "Skills;Gear;Skills;");
  EXPECT_EQ(selected, "Skills:0-0;Gear:0-0;Skills:7-7;");
  ASSERT_TRUE(deleteItems(sheet_, *skills_, {itemAtRow(*skills_, 0)}).deleted);
  EXPECT_EQ(layout(*gear_), "Torch");
}

TEST_F(ListUndo, AListThatIsGoneStopsTheUndo) {
  master("Gear", "Rope", {}, {}, 1.0);
  Item* rope = add(*gear_, "Rope").item;
  ASSERT_TRUE(deleteItems(sheet_, *gear_, {rope}).deleted);
  gear_->name = "Packs";
  EXPECT_FALSE(undoPop(sheet_));
  EXPECT_EQ(messages(), "[Error] Unable to find list Gear to perform undo.");
}

}  // namespace
}  // namespace zv::testing
