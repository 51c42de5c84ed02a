#include "core/undo.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/list_total.h"

namespace zv {
namespace {

// Records the order in which actions are applied or discarded, and whether Undo was running.
struct Journal {
  std::vector<std::string> events;
};

class RecordingAction : public UndoAction {
 public:
  RecordingAction(Journal& journal, std::string name, bool succeeds = true)
      : journal_(journal), name_(std::move(name)), succeeds_(succeeds) {}
  bool apply(FileInfo&) override {
    journal_.events.push_back("apply " + name_ + (undoing() ? " (undoing)" : ""));
    return succeeds_;
  }
  void discard() override { journal_.events.push_back("discard " + name_); }

 private:
  Journal& journal_;
  std::string name_;
  bool succeeds_;
};

std::unique_ptr<UndoAction> action(Journal& journal, const std::string& name) {
  return std::make_unique<RecordingAction>(journal, name);
}

TEST(Undo, DepthLimitDropsTheOldest) {
  // MaxUndo 50: the 52nd edit has dropped the first.
  Journal journal;  // outlives the history, which discards into it
  FileInfo sheet(1, "a.chr", "/a.chr");
  for (int i = 1; i <= 52; ++i)
    undoPush(sheet, kUndoFieldValue, nullptr, action(journal, std::to_string(i)), 50);
  EXPECT_EQ(sheet.undoStack.size(), 51u);
  EXPECT_EQ(journal.events, std::vector<std::string>{"discard 1"});
  while (undoCanUndo(sheet))
    undoPop(sheet);
  EXPECT_EQ(journal.events.back(), "apply 2 (undoing)");
  EXPECT_FALSE(undoing());
}

TEST(Undo, ChangedFlagComesBackAsItWasBeforeTheEdit) {
  const struct { bool changedBeforeEdit; } cases[] = {{false}, {true}};
  for (const auto& c : cases) {
    Journal journal;  // outlives the history, which discards into it
    FileInfo sheet(1, "a.chr", "/a.chr");
    sheet.setChangedFlag(c.changedBeforeEdit);
    undoPush(sheet, kUndoFieldValue, nullptr, action(journal, "edit"), 50);
    setChanged(sheet, true, kUndoFieldValue);
    ASSERT_TRUE(undoCanUndo(sheet));
    EXPECT_EQ(undoPeek(sheet)->kind, kUndoFieldValue);
    EXPECT_TRUE(undoPop(sheet));
    EXPECT_EQ(sheet.changed(), c.changedBeforeEdit);
    EXPECT_FALSE(undoCanUndo(sheet));
    EXPECT_FALSE(undoPop(sheet));
  }
}

TEST(Undo, EditKindsThatCannotBeUndoneClearTheHistory) {
  const struct {
    int kind;
    bool keeps;
  } cases[] = {{1, false}, {2, true}, {3, false}, {4, true}, {5, true},
               {6, true},  {7, true}, {8, true},  {9, false}};
  for (const auto& c : cases) {
    Journal journal;  // outlives the history, which discards into it
    FileInfo sheet(1, "a.chr", "/a.chr");
    undoPush(sheet, kUndoFieldValue, nullptr, action(journal, "edit"), 50);
    setChanged(sheet, true, c.kind);
    EXPECT_EQ(undoCanUndo(sheet), c.keeps) << "kind " << c.kind;
    EXPECT_EQ(journal.events.empty(), c.keeps) << "kind " << c.kind;
  }
}

TEST(Undo, GroupAppliesLastFirstAndDiscardsAll) {
  Journal journal;  // outlives the history, which discards into it
  FileInfo sheet(1, "a.chr", "/a.chr");
  auto group = std::make_unique<UndoGroup>();
  group->add(action(journal, "a"));
  group->add(action(journal, "b"));
  group->add(action(journal, "c"));
  undoPush(sheet, kUndoGroup, nullptr, std::move(group), 50);
  auto second = std::make_unique<UndoGroup>();
  second->add(action(journal, "x"));
  second->add(action(journal, "y"));
  undoPush(sheet, kUndoGroup, nullptr, std::move(second), 50);

  ASSERT_TRUE(undoPop(sheet));
  undoClear(sheet);
  EXPECT_EQ(journal.events, (std::vector<std::string>{"apply y (undoing)", "apply x (undoing)",
                                                      "discard a", "discard b", "discard c"}));
}

TEST(Undo, FailedActionStillRestoresTheFlag) {
  Journal journal;  // outlives the history, which discards into it
  FileInfo sheet(1, "a.chr", "/a.chr");
  undoPush(sheet, kUndoItemsDeleted, nullptr,
           std::make_unique<RecordingAction>(journal, "gone", false), 50);
  sheet.setChangedFlag(true);
  EXPECT_FALSE(undoPop(sheet));
  EXPECT_FALSE(sheet.changed());
  EXPECT_FALSE(undoCanUndo(sheet));
}

}  // namespace
}  // namespace zv
