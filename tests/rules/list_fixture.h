#pragma once
// A sheet with the lists Skills and Gear, fed by the categories of the same names of a small game
// system of its own, for the tests of list operations and automatic items.

#include <memory>
#include <string>

#include "core/game_system.h"
#include "expr/compiler.h"
#include "rules/install.h"
#include "rules/lists/list_ops.h"
#include "sheet_fixture.h"

namespace zv::testing {

class ListOpsTest : public SheetRulesTest {
 protected:
  ListOpsTest() : system_("Testland") {
    wireItemRules(engineContext_.context());
    sheet_.gameSystem = &system_;
    sheet_.gameSystemName = "Testland";
    skills_ = &sheetList("Skills", "SkillPts");
    skills_->catName = "Skills";
    gear_ = &sheetList("Gear", "GearPts");
    gear_->catName = "Gear";
  }

  /// A master item of a category: a level variable of its name (without blanks) when it has a
  /// cost function.
  Item& master(const std::string& category, const std::string& name,
               const std::string& formula = {}, const std::string& level = {}, double cost = 0.0) {
    auto item = std::make_unique<Item>(ItemKind::Item, name);
    item->cat = category;
    item->formula = formula;
    item->level = level;
    item->cost = cost;
    item->totalCost = cost;
    if (!formula.empty()) {
      for (char c : name)
        if (c != ' ') item->varName += c;
    }
    Category& found = system_.findOrAddCategory(category);
    Item& added = found.appendItem(std::move(item));
    found.rebuildIndex();
    return added;
  }

  /// A master sublist of a category with plain members of the given costs.
  Item& masterGroup(const std::string& category, const std::string& name,
                    const std::vector<std::pair<std::string, double>>& members = {}) {
    auto group = std::make_unique<Item>(ItemKind::Sublist, name);
    group->cat = category;
    for (const auto& [member, cost] : members) {
      auto child = std::make_unique<Item>(ItemKind::Item, member);
      child->cat = category;
      child->cost = cost;
      child->totalCost = cost;
      child->parent = group.get();
      child->depth = 1;
      group->children.push_back(std::move(child));
    }
    renumberPositions(group->children);
    Category& found = system_.findOrAddCategory(category);
    Item& added = found.appendItem(std::move(group));
    found.rebuildIndex();
    return added;
  }

  /// A copy of a master item, as the selection hands it over.
  std::unique_ptr<Item> copyOf(const std::string& category, const std::string& name) {
    Category* found = system_.findCategory(category);
    Item* item = found != nullptr ? found->findItem(name) : nullptr;
    if (item == nullptr) {
      ADD_FAILURE() << "no master item " << category << ":" << name;
      return std::make_unique<Item>(ItemKind::Item, name);
    }
    return item->clone();
  }

  /// Adds a copy of the master item of the list's category.
  AddResult add(ListInfo& list, const std::string& name, Placement where = Placement::appendTo(),
                bool runAutomatics = true) {
    AddChain chain;
    return zv::addItem(sheet_, list, copyOf(list.catName.str(), name), where, chain, runAutomatics);
  }

  /// Deletes the list's elements behind the first `keep`, last first, as the user would.
  void clear(ListInfo& list, std::size_t keep = 0) {
    while (list.items.size() > keep)
      deleteElement(sheet_, list, *list.items.back());
  }

  /// What an expression reads in the sheet, as text ("error" when it can't be evaluated).
  std::string reads(const std::string& expression) {
    Value value;
    if (parseExp(sheet_.symbols.get(), expression, value) != 0) return "error";
    return valueToText(value);
  }

  /// The list's elements as "a,b[c,d],e": sublists show their members in brackets.
  static std::string layout(const ItemChain& chain) {
    std::string text;
    for (const auto& item : chain) {
      if (!text.empty()) text += ",";
      text += item->name;
      if (item->isSublist()) text += "[" + layout(item->children) + "]";
    }
    return text;
  }
  static std::string layout(const ListInfo& list) { return layout(list.items); }

  /// True when every chain of the list is numbered 0, 1, 2, ... with depths that follow nesting.
  static bool numbered(const ItemChain& chain, std::int32_t depth = 0) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
      if (chain[i]->position != static_cast<std::int32_t>(i) || chain[i]->depth != depth) {
        return false;
      }
      if (!numbered(chain[i]->children, depth + 1)) return false;
    }
    return true;
  }

  GameSystem system_;
  ListInfo* skills_ = nullptr;
  ListInfo* gear_ = nullptr;
};

}  // namespace zv::testing
