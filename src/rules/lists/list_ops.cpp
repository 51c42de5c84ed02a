#include "rules/lists/list_ops.h"

#include <algorithm>
#include <unordered_map>

#include "core/engine_context.h"
#include "core/list_total.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "rules/auto/auto_items.h"
#include "rules/lists/list_undo.h"
#include "rules/lists/visible_rows.h"
#include "rules/value/adjustment.h"
#include "rules/value/categories.h"
#include "rules/value/change_batch.h"
#include "rules/value/cost.h"
#include "rules/value/defaults.h"
#include "rules/value/level.h"
#include "rules/value/multipliers.h"

namespace zv {

namespace {

/// Where an element stands: the chain that owns it and its index there.
struct Slot {
  ItemChain* chain = nullptr;
  std::size_t index = 0;
};

bool findSlotIn(ItemChain& chain, const Item* item, Slot& slot) {
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (chain[i].get() == item) {
      slot = {&chain, i};
      return true;
    }
    if (findSlotIn(chain[i]->children, item, slot)) return true;
  }
  return false;
}

/// The slot of an element, found by its address alone, so a record that already left the list
/// is never read.
bool findSlot(ListInfo& list, const Item* item, Slot& slot) {
  return findSlotIn(list.items, item, slot);
}

std::size_t countChain(const ItemChain& chain) {
  std::size_t count = chain.size();
  for (const auto& item : chain)
    count += countChain(item->children);
  return count;
}

template <typename Visit>
void forEachElement(ItemChain& chain, Visit& visit) {
  for (auto& item : chain) {
    visit(*item);
    forEachElement(item->children, visit);
  }
}

/// Calls `visit(list, item)` for every element of every list of the sheet, depth first.
template <typename Visit>
void forEachSheetElement(FileInfo& sheet, Visit visit) {
  for (ListInfo* list : sheet.allLists()) {
    auto bound = [&](Item& item) { visit(*list, item); };
    forEachElement(list->items, bound);
  }
}

/// The members of an element, deepest first, then the element.
template <typename Visit>
void forEachInSubtree(Item& item, Visit& visit) {
  for (auto& child : item.children)
    forEachInSubtree(*child, visit);
  visit(item);
}

bool isWithin(const Item* item, const Item& ancestor) {
  for (const Item* at = item; at != nullptr; at = at->parent) {
    if (at == &ancestor) return true;
  }
  return false;
}

bool listFull(const ListInfo& list) {
  if (list.maxItems <= 0 || elementCount(list) < static_cast<std::size_t>(list.maxItems)) {
    return false;
  }
  showError("No space to add item");
  return true;
}

Item* linkAt(FileInfo& sheet, ListInfo& list, Item* parent, std::size_t index,
             std::unique_ptr<Item> item) {
  ItemChain& chain = parent != nullptr ? parent->children : list.items;
  index = std::min(index, chain.size());
  item->bindTo(&sheet, &list, parent, parent != nullptr ? parent->depth + 1 : 0);
  Item* linked = item.get();
  chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
  renumberPositions(chain);
  return linked;
}

/// Assigns an element that has just joined a list, and its members first: levels and costs with
/// no checks, as the "in list" assignment, with the item's own listeners held quiet.
bool assignJoined(Item& item) {
  for (auto& child : item.children) {
    if (!assignJoined(*child)) return false;
  }
  item.levelSymbol = nullptr;
  item.costSymbol = nullptr;
  if (item.isSublist()) computeChildCost(item);
  computeMultipliers(item);
  item.totalCost = computeCost(item);
  const bool wasSettling = item.settling();
  item.setSettling(true);
  const bool ok = setItemLevel(item, item.level, true, false);
  item.setSettling(wasSettling);
  return ok;
}

bool adjustmentRuns(const Item& item) {
  return !item.adj.empty() && !item.noAdj();
}

/// The list's category bonuses on the level of each member, then the adjustments as they come.
bool joinEffects(FileInfo& sheet, ListInfo& list, Item& item, bool runAdjustments) {
  bool ok = true;
  auto visit = [&](Item& member) {
    if (!member.isSublist()) applyCategoryBonuses(list, member);
  };
  forEachInSubtree(item, visit);
  if (!runAdjustments) return true;
  auto adjust = [&](Item& member) {
    if (ok && adjustmentRuns(member)) ok = runAdjustment(sheet, member, true, member.adj);
  };
  forEachInSubtree(item, adjust);
  return ok;
}

/// The cost of an element again with its members, and the totals above it.
void recomputeWithChildren(Item& item) {
  if (item.isSublist()) computeChildCost(item);
  computeMultipliers(item);
  item.totalCost = computeCost(item);
  updateTotals(item);
  if (ChangeBatch* batch = ChangeBatch::current()) batch->noteValueChange(item);
}

/// Takes the element's variables away so that items depending on them see 0. The list's category
/// bonus comes off the level's base first, so a later item of the same name doesn't inherit it.
void removeListeners(FileInfo& sheet, ListInfo& list, Item& item) {
  if (!sheet.symbols) {
    item.levelSymbol = nullptr;
    item.costSymbol = nullptr;
    return;
  }
  SymbolTable& table = *sheet.symbols;
  if (item.costSymbol != nullptr) {
    item.costSymbol->changeCallback = nullptr;
    item.costSymbol->userData = nullptr;
    deleteSymbol(table, *item.costSymbol);
    item.costSymbol = nullptr;
  }
  if (item.levelSymbol != nullptr) {
    const double bonus = item.isSublist() ? 0.0 : categoryBonusFor(list, item);
    if (bonus != 0.0) {
      setBaseValue(table, *item.levelSymbol, getBaseValue(item.levelSymbol) - bonus);
    }
    item.levelSymbol->changeCallback = nullptr;
    item.levelSymbol->userData = nullptr;
    deleteSymbol(table, *item.levelSymbol);
    item.levelSymbol = nullptr;
  }
}

using Marks = std::unordered_map<const Item*, std::int32_t>;

void markChildren(FileInfo& sheet, std::int32_t autoID, Marks& marks) {
  if (autoID == 0 || autoID == -1) return;
  std::vector<Item*> marked;
  forEachSheetElement(sheet, [&](ListInfo&, Item& element) {
    if (element.autoParent != autoID) return;
    marks.emplace(&element, element.autoParent);
    element.autoParent = -1;
    marked.push_back(&element);
  });
  for (Item* element : marked)
    markChildren(sheet, element->autoID, marks);
}

DeleteOutcome removeElement(FileInfo& sheet, ListInfo& list, Item& item,
                            const DeleteOptions& options, const Marks* marks);

/// Deletes every element marked -1, apart from `spared` and its members.
void sweepMarked(FileInfo& sheet, const DeleteOptions& options, const Marks* marks,
                 const Item* spared) {
  std::vector<std::pair<ListInfo*, Item*>> marked;
  forEachSheetElement(sheet, [&](ListInfo& list, Item& element) {
    if (element.autoParent == -1) marked.emplace_back(&list, &element);
  });
  DeleteOptions sweep = options;
  sweep.keepAutomaticChildren = true;
  for (auto [list, element] : marked) {
    Slot slot;
    // An element swept with the sublist that held it is gone already.
    if (!findSlot(*list, element, slot)) continue;
    if (spared != nullptr && isWithin(element, *spared)) continue;
    removeElement(sheet, *list, *element, sweep, marks);
  }
}

DeleteOutcome removeElement(FileInfo& sheet, ListInfo& list, Item& item,
                            const DeleteOptions& options, const Marks* marks) {
  Slot slot;
  if (!findSlot(list, &item, slot)) {
    showError("Can't delete item in list");
    return {};
  }
  ChangeBatch batch(sheet);
  if (item.isSublist() && item.open()) item.setOpen(false);
  if (!options.keepAutomaticChildren) {
    // The items that the element, or any member of it, added.
    Marks own;
    auto mark = [&](Item& member) { markChildren(sheet, member.autoID, own); };
    forEachInSubtree(item, mark);
    if (!own.empty()) sweepMarked(sheet, options, &own, &item);
    // Members that the element itself added go with it, tied to it as before.
    auto unmark = [&](Item& member) {
      auto found = own.find(&member);
      if (found != own.end()) member.autoParent = found->second;
    };
    forEachInSubtree(item, unmark);
    if (!findSlot(list, &item, slot)) {
      showError("Can't delete item in list");
      return {};
    }
  }
  const int oldRow = rowOfItem(list, &item);
  bool adjusted = false;
  if (options.runAdjustments) {
    auto adjust = [&](Item& member) {
      if (!adjustmentRuns(member)) return;
      runAdjustment(sheet, member, false, member.adj);
      adjusted = true;
    };
    forEachInSubtree(item, adjust);
  }
  auto quiet = [&](Item& member) {
    removeListeners(sheet, list, member);
    batch.forgetItem(member);
  };
  forEachInSubtree(item, quiet);

  const std::vector<std::int32_t> path = elementPath(item);
  Item* parent = item.parent;
  std::unique_ptr<Item> owned = std::move((*slot.chain)[slot.index]);
  slot.chain->erase(slot.chain->begin() + static_cast<std::ptrdiff_t>(slot.index));
  renumberPositions(*slot.chain);
  owned->parent = nullptr;
  owned->list = nullptr;

  for (Item* above = parent; above != nullptr; above = above->parent) {
    computeChildCost(*above);
    batch.noteValueChange(*above);
  }
  if (parent != nullptr) updateTotals(*parent);
  batch.noteList(list);

  if (options.undo != nullptr) {
    if (marks != nullptr) {
      auto found = marks->find(owned.get());
      if (found != marks->end()) owned->autoParent = found->second;
    }
    options.undo->recordRemoval(list, std::move(owned), path, adjusted);
  }
  DeleteOutcome outcome;
  outcome.deleted = true;
  const int rows = static_cast<int>(visibleRows(list).size());
  outcome.row = oldRow < 0 ? -1 : std::min(oldRow, rows - 1);
  return outcome;
}

}  // namespace

bool isRecursiveAdd(const AddChain& chain, const ListInfo& list, std::string_view name) {
  for (const AddChainEntry& entry : chain) {
    if (entry.list == &list && equalsIgnoringCase(entry.name, name)) {
      showError(strprintf("Item '%s' recursively added", name));
      return true;
    }
  }
  return false;
}

std::size_t elementCount(const ListInfo& list) {
  return countChain(list.items);
}

Item* insertElement(FileInfo& sheet, ListInfo& list, int& row, std::unique_ptr<Item> item) {
  if (!item) return nullptr;
  const std::vector<Item*> rows = visibleRows(list);
  if (rows.empty() || row < 0) {
    if (listFull(list)) return nullptr;
    Item* linked = linkAt(sheet, list, nullptr, 0, std::move(item));
    row = 0;
    return linked;
  }
  if (static_cast<std::size_t>(row) >= rows.size()) {
    showError(strprintf("Internal error in insert element: %s", item->name));
    return nullptr;
  }
  Item* at = rows[static_cast<std::size_t>(row)];
  Slot slot;
  if (!findSlot(list, at, slot)) {
    showError(strprintf("List Inconsistency: %s", at->name));
    return nullptr;
  }
  if (listFull(list)) return nullptr;
  Item* linked = at->isSublist() && at->open()
                     ? linkAt(sheet, list, at, 0, std::move(item))
                     : linkAt(sheet, list, at->parent, slot.index + 1, std::move(item));
  row = rowOfItem(list, linked);
  return linked;
}

AddResult addItem(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                  const Placement& where, AddChain& chain, bool runAutomatics) {
  AddResult result;
  if (!item || !checkFileInfo(&sheet)) return result;
  if (item->addAsList()) item->kind = ItemKind::Sublist;
  if (isRecursiveAdd(chain, list, item->name)) return result;
  ChangeBatch batch(sheet);
  Item* linked = nullptr;
  if (where.append) {
    if (where.parent != nullptr && where.parent->list != &list) {
      showError("List inconsistency: list window null");
      return result;
    }
    if (listFull(list)) return result;
    const std::size_t end =
        where.parent != nullptr ? where.parent->children.size() : list.items.size();
    linked = linkAt(sheet, list, where.parent, end, std::move(item));
  } else {
    int row = where.row;
    linked = insertElement(sheet, list, row, std::move(item));
  }
  if (linked == nullptr) return result;
  result.item = linked;

  if (!assignJoined(*linked)) {
    // The level couldn't be assigned (its message was shown): the element goes again.
    DeleteOptions quietly;
    quietly.runAdjustments = false;
    quietly.keepAutomaticChildren = true;
    removeElement(sheet, list, *linked, quietly, nullptr);
    result.item = nullptr;
    return result;
  }
  if (!joinEffects(sheet, list, *linked, !isReading())) {
    result.row = rowOfItem(list, linked);
    return result;
  }
  if (linked->isSublist()) linked->setOpen(true);

  result.status = AddStatus::Added;
  if (runAutomatics && !linked->autoitems.empty() && !isReading()) {
    chain.push_back({&list, linked->name});
    bool cancelled = false;
    Item* container = linked->isSublist() ? linked : linked->parent;
    const int added =
        runAutoItems(sheet, list, *linked, container, linked->autoitems, chain, cancelled);
    chain.pop_back();
    if (cancelled) {
      result.status = AddStatus::Cancelled;
    } else if (added < 0) {
      result.status = AddStatus::Failed;
    }
  }
  recomputeWithChildren(*linked);
  batch.noteList(list);
  result.row = rowOfItem(list, linked);
  return result;
}

DeleteOutcome deleteElement(FileInfo& sheet, ListInfo& list, Item& item,
                            const DeleteOptions& options) {
  if (!checkFileInfo(&sheet)) return {};
  return removeElement(sheet, list, item, options, nullptr);
}

bool deleteAutomaticItems(FileInfo& sheet, Item* parent, int action) {
  switch (action) {
    case 0: {
      if (parent == nullptr) return false;
      Marks marks;
      markChildren(sheet, parent->autoID, marks);
      return true;
    }
    case 1: {
      ChangeBatch batch(sheet);
      sweepMarked(sheet, {}, nullptr, nullptr);
      return true;
    }
    default:
      showError(strprintf("Unknown action deleting automatic items: %d", action));
      return false;
  }
}

std::int32_t autoIDFor(FileInfo& sheet, Item& parent) {
  if (parent.autoID != 0) return parent.autoID;
  if (sheet.nextAutoID < 1) sheet.nextAutoID = 1;
  parent.autoID = sheet.nextAutoID++;
  return parent.autoID;
}

std::vector<Item*> automaticChildren(FileInfo& sheet, const Item& parent) {
  std::vector<Item*> children;
  if (parent.autoID == 0) return children;
  forEachSheetElement(sheet, [&](ListInfo&, Item& element) {
    if (element.autoParent == parent.autoID) children.push_back(&element);
  });
  return children;
}

bool asksAboutAutomaticChildren(FileInfo& sheet, const Item& item) {
  return !item.deleteAuto() && !automaticChildren(sheet, item).empty();
}

Item* findItemInList(ListInfo& list, std::string_view name) {
  for (auto& item : list.items) {
    if (equalsIgnoringCase(item->name, name)) return item.get();
  }
  return nullptr;
}

namespace {

Item* findInChain(ItemChain& chain, std::string_view name) {
  for (auto& item : chain) {
    if (equalsIgnoringCase(item->name, name)) return item.get();
    if (Item* found = findInChain(item->children, name)) return found;
  }
  return nullptr;
}

}  // namespace

Item* findItemInSublists(ListInfo& list, std::string_view name) {
  return findInChain(list.items, name);
}

Item* findItemByName(FileInfo& sheet, std::string_view name, ListInfo** listFound) {
  for (ListInfo* list : sheet.allLists()) {
    if (Item* found = findInChain(list->items, name)) {
      if (listFound != nullptr) *listFound = list;
      return found;
    }
  }
  return nullptr;
}

ListInfo* findListByName(FileInfo& sheet, std::string_view name) {
  const std::string wanted = trim(name);
  for (ListInfo* list : sheet.allLists()) {
    if (equalsIgnoringCase(list->name.str(), wanted)) return list;
  }
  return nullptr;
}

int moveElement(FileInfo& sheet, ListInfo& list, Item& item, int direction) {
  Slot slot;
  if (direction == 0 || !findSlot(list, &item, slot)) return -1;
  const std::size_t index = slot.index;
  if (direction < 0 && index == 0) return -1;
  if (direction > 0 && index + 1 >= slot.chain->size()) return -1;
  const std::size_t other = direction < 0 ? index - 1 : index + 1;
  std::swap((*slot.chain)[index], (*slot.chain)[other]);
  renumberPositions(*slot.chain);
  setChanged(sheet, true);
  if (engine().views.listChanged) engine().views.listChanged(list);
  return rowOfItem(list, &item);
}

std::vector<std::int32_t> elementPath(const Item& item) {
  std::vector<std::int32_t> path(static_cast<std::size_t>(std::max(item.depth, 0)) + 1, 0);
  for (const Item* at = &item; at != nullptr; at = at->parent) {
    const auto depth = static_cast<std::size_t>(std::max(at->depth, 0));
    if (depth < path.size()) path[depth] = at->position;
  }
  return path;
}

Item* reinsertElement(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                      const std::vector<std::int32_t>& path, bool runAdjustments) {
  if (!item || path.empty()) return nullptr;
  ChangeBatch batch(sheet);
  Item* parent = nullptr;
  ItemChain* chain = &list.items;
  for (std::size_t depth = 0; depth + 1 < path.size(); ++depth) {
    const auto index = static_cast<std::size_t>(std::max(path[depth], 0));
    if (index >= chain->size() || !(*chain)[index]->isSublist()) return nullptr;
    parent = (*chain)[index].get();
    chain = &parent->children;
  }
  const auto index = static_cast<std::size_t>(std::max(path.back(), 0));
  Item* linked = linkAt(sheet, list, parent, index, std::move(item));
  assignJoined(*linked);
  joinEffects(sheet, list, *linked, runAdjustments);
  recomputeWithChildren(*linked);
  batch.noteList(list);
  return linked;
}

void applySheetAdjustments(FileInfo& sheet) {
  if (!sheet.symbols) return;
  ChangeBatch batch(sheet);
  forEachSheetElement(sheet, [&](ListInfo&, Item& element) {
    if (adjustmentRuns(element)) runAdjustment(sheet, element, true, element.adj);
  });
}

}  // namespace zv
