// Sorting the master items after a load, and the removal of duplicates of lower priority.

#include <gtest/gtest.h>

#include "core/game_system.h"
#include "formats/datasheet/data_sheet_sort.h"

namespace zv::testing {
namespace {

struct Entry {
  const char* name;
  unsigned priority;
  int source;
};

std::vector<std::string> sorted(const std::vector<Entry>& entries, int sortMode, bool index) {
  GameSystem system("Fenwick");
  Category& category = system.findOrAddCategory("Kit");
  category.sort = static_cast<std::int16_t>(sortMode);
  for (const Entry& entry : entries) {
    auto item = std::make_unique<Item>(ItemKind::Item, entry.name);
    item->setPriority(entry.priority);
    item->sourceId = entry.source;
    category.appendItem(std::move(item));
  }
  sortDataSheetItems(system, index);
  std::vector<std::string> result;
  for (const auto& item : category.items)
    result.push_back(std::string(item->name) + ":" + std::to_string(item->priority()) + ":" +
                     std::to_string(item->sourceId) + "@" + std::to_string(item->position));
  return result;
}

TEST(DataSheetSort, OrdersAndRemovesDuplicates) {
  struct Case {
    const char* label;
    std::vector<Entry> entries;
    int sortMode;
    bool index;
    std::vector<std::string> expected;
  };
  const std::vector<Case> cases = {
      {"by name, stable",
       {{"b", 0, 1}, {"A", 0, 1}, {"a", 0, 2}},
       0,
       true,
       {"A:0:1@0", "a:0:2@1", "b:0:1@2"}},
      {"lower priority later goes", {{"Sword", 3, 1}, {"Sword", 1, 2}}, 0, true, {"Sword:3:1@0"}},
      {"lower priority earlier goes", {{"Sword", 1, 1}, {"sword", 3, 2}}, 0, true, {"sword:3:2@0"}},
      {"equal priorities stay",
       {{"Sword", 2, 1}, {"Sword", 2, 2}},
       0,
       true,
       {"Sword:2:1@0", "Sword:2:2@1"}},
      {"run of three", {{"Axe", 1, 1}, {"Axe", 2, 2}, {"Axe", 3, 3}}, 0, true, {"Axe:3:3@0"}},
      {"no index keeps all",
       {{"Sword", 1, 1}, {"Sword", 3, 2}},
       0,
       false,
       {"Sword:1:1@0", "Sword:3:2@1"}},
      {"other mode keeps order",
       {{"b", 1, 1}, {"a", 1, 1}, {"a", 3, 2}},
       1,
       true,
       {"b:1:1@0", "a:1:1@1", "a:3:2@2"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(sorted(c.entries, c.sortMode, c.index), c.expected);
  }
}

}  // namespace
}  // namespace zv::testing
