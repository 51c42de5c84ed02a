#include "core/list_total.h"
#include "core/engine_context.h"

#include <gtest/gtest.h>

#include <vector>

namespace zv {
namespace {

struct ItemRow {
  ItemKind kind;
  double totalCost;
  bool inTotal;
  bool childCostsSeparate;
  double childCost;
};

TEST(ListTotal, AddsUpItemsInTheTotal) {
  struct Case {
    const char* label;
    std::vector<ItemRow> items;
    double expected;
  };
  const Case cases[] = {
      {"empty list", {}, 0.0},
      {"intotal 0 is left out",
       {{ItemKind::Item, 6, true, false, 0}, {ItemKind::Item, 2, false, false, 0}},
       6.0},
      {"sublist with childcostsseparate adds its children",
       {{ItemKind::Sublist, 3, true, true, 4}},
       7.0},
      {"sublist without it counts only its own cost",
       {{ItemKind::Sublist, 3, true, false, 4}},
       3.0},
      {"an item never adds a child cost", {{ItemKind::Item, 5, true, true, 4}}, 5.0},
      {"a sublist out of the total adds nothing", {{ItemKind::Sublist, 3, false, true, 4}}, 0.0},
      {"fractions and negatives",
       {{ItemKind::Item, 2.5, true, false, 0}, {ItemKind::Item, -1.25, true, false, 0}},
       1.25},
  };
  for (const auto& c : cases) {
    ListInfo list;
    list.total = 99.0;
    for (const auto& row : c.items) {
      auto item = std::make_unique<Item>(row.kind);
      item->totalCost = row.totalCost;
      item->setInTotal(row.inTotal);
      item->setChildCostsSeparate(row.childCostsSeparate);
      item->childCost = row.childCost;
      list.appendItem(std::move(item));
    }
    EXPECT_DOUBLE_EQ(addUpList(list), c.expected) << c.label;
    EXPECT_DOUBLE_EQ(list.total, c.expected) << c.label;
  }
}

TEST(ListTotal, CostFiveItemCountsFive) {
  ListInfo list;
  auto item = std::make_unique<Item>(ItemKind::Item, "Climb");
  item->cost = 5.0;
  item->totalCost = 5.0;
  list.appendItem(std::move(item));
  EXPECT_DOUBLE_EQ(addUpList(list), 5.0);
}

TEST(ListTotal, StoreReceivesTheTotalOnlyForAListWithAVariable) {
  std::vector<std::pair<ListInfo*, double>> calls;
  ScopedEngineContext context;
  context->services.storeListTotal = [&](ListInfo& list, double total) {
    calls.emplace_back(&list, total);
  };

  ListInfo withVariable;
  ListInfo without;
  // The symbol belongs to the expression engine; here only its presence matters.
  alignas(std::max_align_t) unsigned char symbolStorage[64] = {};
  withVariable.totalSymbol = reinterpret_cast<Symbol*>(symbolStorage);
  for (ListInfo* list : {&withVariable, &without}) {
    auto item = std::make_unique<Item>();
    item->totalCost = 6.0;
    list->appendItem(std::move(item));
  }
  addUpList(without);
  addUpList(withVariable);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].first, &withVariable);
  EXPECT_DOUBLE_EQ(calls[0].second, 6.0);
}

class CountingAction : public UndoAction {
 public:
  explicit CountingAction(int& discarded) : discarded_(discarded) {}
  bool apply(FileInfo&) override { return true; }
  void discard() override { ++discarded_; }

 private:
  int& discarded_;
};

TEST(SetChanged, OnlyUndoableKindsKeepTheHistory) {
  const struct {
    int kind;
    bool keeps;
  } cases[] = {{0, false}, {1, false}, {2, true}, {3, false}, {4, true},
               {5, true},  {6, true},  {7, true}, {8, true},  {9, false}};
  for (const auto& c : cases) {
    for (bool changed : {true, false}) {
      FileInfo sheet;
      int discarded = 0;
      sheet.setChangedFlag(!changed);
      sheet.undoStack.push({7, nullptr, std::make_unique<CountingAction>(discarded), false}, 50);
      sheet.undoStack.push({5, nullptr, std::make_unique<CountingAction>(discarded), true}, 50);
      setChanged(sheet, changed, c.kind);
      EXPECT_EQ(sheet.changed(), changed) << "kind " << c.kind;
      EXPECT_EQ(sheet.undoStack.size(), c.keeps ? 2u : 0u) << "kind " << c.kind;
      EXPECT_EQ(discarded, c.keeps ? 0 : 2) << "kind " << c.kind;
    }
  }
}

TEST(SetChanged, ShortFormIsKindOne) {
  FileInfo sheet;
  int discarded = 0;
  sheet.undoStack.push({7, nullptr, std::make_unique<CountingAction>(discarded), false}, 50);
  setChanged(sheet, true);
  EXPECT_TRUE(sheet.changed());
  EXPECT_TRUE(sheet.undoStack.empty());
}

TEST(UndoHistory, OldestEntryGoesWhenTheLimitIsPassed) {
  UndoHistory history;
  int discarded = 0;
  for (int edit = 1; edit <= 52; ++edit) {
    history.push({edit, nullptr, std::make_unique<CountingAction>(discarded), false}, 50);
  }
  EXPECT_EQ(history.size(), 51u);
  EXPECT_EQ(discarded, 1);
  EXPECT_EQ(history.newest()->kind, 52);
  UndoEntry newest = history.pop();
  EXPECT_EQ(newest.kind, 52);
  EXPECT_EQ(history.size(), 50u);
  // The first edit was dropped; the second is now the oldest.
  UndoEntry oldest;
  while (!history.empty())
    oldest = history.pop();
  EXPECT_EQ(oldest.kind, 2);
}

}  // namespace
}  // namespace zv
