// List element operations: where an element goes by row, capacity, what adding sets off, the
// recursion chain, deletion with the sweep of automatic items and the row to select, moves,
// finds and the automatic-item ids.

#include <gtest/gtest.h>

#include "list_fixture.h"
#include "rules/value/adjustment.h"
#include "rules/value/categories.h"
#include "rules/lists/visible_rows.h"

namespace zv::testing {
namespace {

class ListOps : public ListOpsTest {
 protected:
  ListOps() {
    for (const char* name : {"A", "B", "C", "X"})
      master("Gear", name, {}, {}, 1.0);
    masterGroup("Gear", "G", {{"g1", 2.0}, {"g2", 3.0}});
  }

  /// The gear list built from a layout of names at the top level: "G" is the group.
  void build(const std::vector<std::string>& names, bool groupOpen) {
    for (const std::string& name : names) {
      AddResult added = add(*gear_, name);
      ASSERT_EQ(added.status, AddStatus::Added) << messages();
      if (added.item->isSublist()) added.item->setOpen(groupOpen);
    }
  }
};

struct InsertCase {
  const char* what;
  std::vector<std::string> before;
  bool groupOpen;
  int row;
  const char* after;
  int newRow;
};

TEST_F(ListOps, InsertElementPlacesByRow) {
  const InsertCase cases[] = {
      {"an empty list takes it first", {}, false, 3, "X", 0},
      {"a negative row puts it first", {"A", "B"}, false, -1, "X,A,B", 0},
      {"behind a row at the same depth", {"A", "B"}, false, 0, "A,X,B", 1},
      {"behind the last row", {"A", "B"}, false, 1, "A,B,X", 2},
      {"behind an open group: its first member", {"A", "G"}, true, 1, "A,G[X,g1,g2]", 2},
      {"behind a closed group: its sibling", {"A", "G", "B"}, false, 1, "A,G[g1,g2],X,B", 2},
      {"behind a member: the next member", {"G"}, true, 1, "G[g1,X,g2]", 2},
  };
  for (const InsertCase& c : cases) {
    SCOPED_TRACE(c.what);
    gear_->items.clear();
    build(c.before, c.groupOpen);
    int row = c.row;
    Item* linked = insertElement(sheet_, *gear_, row, copyOf("Gear", "X"));
    ASSERT_NE(linked, nullptr) << messages();
    EXPECT_EQ(layout(*gear_), c.after);
    EXPECT_EQ(row, c.newRow);
    EXPECT_EQ(rowOfItem(*gear_, linked), c.newRow);
    EXPECT_TRUE(numbered(gear_->items));
  }
}

TEST_F(ListOps, MaxItemsCountsMembersAndRefusesTheNextElement) {
  gear_->maxItems = 4;
  build({"G", "A"}, true);  // G with two members and A: four elements
  AddResult refused = add(*gear_, "B", Placement::atRow(0));
  EXPECT_EQ(refused.status, AddStatus::Failed);
  EXPECT_EQ(refused.item, nullptr);
  EXPECT_EQ(messages(), "[Error] No space to add item");
  EXPECT_EQ(layout(*gear_), "G[g1,g2],A");
}

TEST_F(ListOps, AddingAssignsLevelAndCostAndAddsUpTheTotals) {
  master("Skills", "Climb", "x*2", "3");
  Item& free = master("Skills", "Gift", {}, {}, 5.0);
  free.setInTotal(false);
  master("Skills", "Lore", "x*x", "Climb-1");
  ASSERT_EQ(add(*skills_, "Climb").status, AddStatus::Added);
  ASSERT_EQ(add(*skills_, "Gift").status, AddStatus::Added);
  AddResult lore = add(*skills_, "Lore");
  ASSERT_EQ(lore.status, AddStatus::Added) << messages();
  // Climb 3 at 2 a level: 6; Lore at Climb-1 = 2, squared: 4; the gift stands outside.
  EXPECT_EQ(lore.item->levelValue, 2.0);
  EXPECT_EQ(lore.item->totalCost, 4.0);
  EXPECT_EQ(variable("SkillPts"), "10");
  EXPECT_EQ(messages(), "");
}

TEST_F(ListOps, AnItemOnTheChainOfAddsIsRefused) {
  AddChain chain{{gear_, "a"}};
  AddResult again = zv::addItem(sheet_, *gear_, copyOf("Gear", "A"), Placement::appendTo(), chain);
  EXPECT_EQ(again.status, AddStatus::Failed);
  EXPECT_EQ(messages(), "[Error] Item 'A' recursively added");
  EXPECT_TRUE(gear_->items.empty());
  // The same name in another list is no recursion.
  master("Skills", "A");
  AddResult elsewhere =
      zv::addItem(sheet_, *skills_, copyOf("Skills", "A"), Placement::appendTo(), chain);
  EXPECT_EQ(elsewhere.status, AddStatus::Added);
}

struct SelectionCase {
  const char* what;
  int deletedRow;
  int selected;
};

TEST_F(ListOps, DeletionSelectsTheSameRowOrTheLast) {
  const SelectionCase cases[] = {
      {"a middle row leaves the selection on it", 1, 1},
      {"the last row moves it to the new last", 2, 1},
      {"the first row", 0, 0},
  };
  for (const SelectionCase& c : cases) {
    SCOPED_TRACE(c.what);
    gear_->items.clear();
    build({"A", "B", "C"}, false);
    DeleteOutcome outcome = deleteElement(sheet_, *gear_, *itemAtRow(*gear_, c.deletedRow));
    EXPECT_TRUE(outcome.deleted);
    EXPECT_EQ(outcome.row, c.selected);
    EXPECT_TRUE(numbered(gear_->items));
  }
  gear_->items.clear();
  build({"A"}, false);
  EXPECT_EQ(deleteElement(sheet_, *gear_, *gear_->items.front()).row, -1);
}

TEST_F(ListOps, DeletingAMemberAddsUpTheGroupAndTheList) {
  build({"G", "A"}, true);
  Item& group = *gear_->items.front();
  ASSERT_TRUE(deleteElement(sheet_, *gear_, *group.children.front()).deleted);
  EXPECT_EQ(layout(*gear_), "G[g2],A");
  EXPECT_EQ(group.childCost, 3.0);
  EXPECT_EQ(variable("GearPts"), "4");
}

TEST_F(ListOps, ItemsThatUsedADeletedVariableSeeZero) {
  master("Skills", "Climb", "x*2", "3");
  master("Skills", "Scramble", "x", "Climb+1");
  add(*skills_, "Climb");
  Item& scramble = *add(*skills_, "Scramble").item;
  ASSERT_EQ(scramble.levelValue, 4.0);
  ASSERT_TRUE(deleteElement(sheet_, *skills_, *skills_->items.front()).deleted);
  EXPECT_EQ(scramble.levelValue, 1.0);
  EXPECT_EQ(scramble.level, "Climb+1");
  EXPECT_EQ(variable("SkillPts"), "1");
  // A new Climb takes the name back, and Scramble follows it again.
  add(*skills_, "Climb");
  EXPECT_EQ(scramble.levelValue, 4.0);
}

/// P added C1 and C2 to the skills; C2 added D to the gear; Q stands alone.
class AutomaticLinks : public ListOps {
 protected:
  AutomaticLinks() {
    for (const char* name : {"P", "C1", "C2", "D", "Q"})
      master("Skills", name, {}, {}, 1.0);
    sheet_.nextAutoID = 5;
    p_ = &link("P", 0, skills_);
    link("C1", p_->autoID, skills_);
    c2_ = &link("C2", p_->autoID, skills_);
    link("D", c2_->autoID, gear_);
    link("Q", 0, skills_);
  }

  /// Adds an item with no automatic items, tied to a parent, with an id of its own.
  Item& link(const std::string& name, std::int32_t parent, ListInfo* list) {
    AddChain chain;
    AddResult added =
        zv::addItem(sheet_, *list, copyOf("Skills", name), Placement::appendTo(), chain);
    added.item->autoParent = parent;
    autoIDFor(sheet_, *added.item);
    return *added.item;
  }

  Item* p_ = nullptr;
  Item* c2_ = nullptr;
};

TEST_F(AutomaticLinks, IdsComeFromTheSheetCounterOnce) {
  EXPECT_EQ(c2_->autoID, 7);
  EXPECT_EQ(autoIDFor(sheet_, *p_), 5);
  EXPECT_EQ(sheet_.nextAutoID, 10);
  EXPECT_TRUE(asksAboutAutomaticChildren(sheet_, *p_));
  p_->setDeleteAuto(true);  // takes them without asking
  EXPECT_FALSE(asksAboutAutomaticChildren(sheet_, *p_));
}

TEST_F(AutomaticLinks, DeletingAParentSweepsItsChildrenAndTheirChildren) {
  DeleteOutcome outcome = deleteElement(sheet_, *skills_, *p_);
  EXPECT_TRUE(outcome.deleted);
  EXPECT_EQ(layout(*skills_), "Q");
  EXPECT_EQ(layout(*gear_), "");
  EXPECT_EQ(variable("SkillPts"), "1");
  EXPECT_EQ(messages(), "");
}

TEST_F(AutomaticLinks, KeepingTheChildrenLeavesTheirLinks) {
  DeleteOptions keep;
  keep.keepAutomaticChildren = true;
  ASSERT_TRUE(deleteElement(sheet_, *skills_, *p_, keep).deleted);
  EXPECT_EQ(layout(*skills_), "C1,C2,Q");
  EXPECT_EQ(skills_->items.front()->autoParent, 5);
  // A later deletion with its sweep leaves them too.
  ASSERT_TRUE(deleteElement(sheet_, *skills_, *skills_->items[1]).deleted);
  EXPECT_EQ(layout(*skills_), "C1,Q");
}

TEST_F(AutomaticLinks, MarkingAndSweepingAreTwoActions) {
  ASSERT_TRUE(deleteAutomaticItems(sheet_, p_, 0));
  EXPECT_EQ(c2_->autoParent, -1);
  EXPECT_EQ(gear_->items.front()->autoParent, -1);
  EXPECT_EQ(layout(*skills_), "P,C1,C2,Q");
  ASSERT_TRUE(deleteAutomaticItems(sheet_, nullptr, 1));
  EXPECT_EQ(layout(*skills_), "P,Q");
  EXPECT_EQ(layout(*gear_), "");
  EXPECT_FALSE(deleteAutomaticItems(sheet_, p_, 2));
  EXPECT_EQ(messages(), "[Error] Unknown action deleting automatic items: 2");
}

TEST_F(ListOps, AdjustmentsRunAsItemsComeAndGo) {
  Item& amulet = master("Gear", "Amulet", {}, {}, 2.0);
  amulet.adj = "HP+2;Skills:Combat+1";
  master("Skills", "Sword", "x*2", "3").cat = "Skills;Combat";
  add(*skills_, "Sword");
  Item& sword = *skills_->items.front();
  add(*gear_, "Amulet");
  EXPECT_EQ(reads("HP"), "2");
  EXPECT_EQ(categoryBonus(*skills_, "Combat"), 1.0);
  EXPECT_EQ(sword.levelValue, 3.0);  // the bonus stands in the base: its level is not 0
  EXPECT_EQ(getBaseValue(sword.levelSymbol), 1.0);
  // A combat skill that joins later takes the list's bonus.
  master("Skills", "Axe", "x", "0").cat = "Combat";
  Item& axe = *add(*skills_, "Axe").item;
  EXPECT_EQ(getBaseValue(axe.levelSymbol), 1.0);
  EXPECT_EQ(reads("Axe"), "1");
  ASSERT_TRUE(deleteElement(sheet_, *gear_, *gear_->items.front()).deleted);
  EXPECT_EQ(reads("HP"), "0");
  EXPECT_EQ(categoryBonus(*skills_, "Combat"), 0.0);
  EXPECT_EQ(getBaseValue(sword.levelSymbol), 0.0);
  // The axe leaves with its bonus taken off, so the next axe starts clean.
  ASSERT_TRUE(deleteElement(sheet_, *skills_, axe).deleted);
  EXPECT_EQ(getBaseValue(add(*skills_, "Axe").item->levelSymbol), 0.0);
  EXPECT_EQ(messages(), "");
}

TEST_F(ListOps, ASheetThatWasReadRunsItsAdjustmentsOnce) {
  master("Gear", "Amulet", {}, {}, 2.0).adj = "HP+2";
  add(*gear_, "Amulet");
  setBaseValue(*sheet_.symbols, *sheet_.symbols->find("HP"), 0.0);  // as a file leaves it
  applySheetAdjustments(sheet_);
  EXPECT_EQ(reads("HP"), "2");
}

struct MoveCase {
  const char* what;
  std::string item;
  int direction;
  const char* after;
  int row;
};

TEST_F(ListOps, MoveUpAndDownAmongSiblings) {
  const MoveCase cases[] = {
      {"up", "B", -1, "B,A,G[g1,g2]", 0},
      {"down", "A", 1, "B,A,G[g1,g2]", 1},
      {"the first can't go up", "A", -1, "A,B,G[g1,g2]", -1},
      {"the last can't go down", "G", 1, "A,B,G[g1,g2]", -1},
      {"a member moves within its group", "g1", 1, "A,B,G[g2,g1]", 4},
  };
  for (const MoveCase& c : cases) {
    SCOPED_TRACE(c.what);
    gear_->items.clear();
    build({"A", "B", "G"}, true);
    sheet_.setChangedFlag(false);
    Item* item = findItemInSublists(*gear_, c.item);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(moveElement(sheet_, *gear_, *item, c.direction), c.row);
    EXPECT_EQ(layout(*gear_), c.after);
    EXPECT_EQ(sheet_.changed(), c.row >= 0);
    EXPECT_TRUE(numbered(gear_->items));
  }
}

}  // namespace
}  // namespace zv::testing
