#include "script/copy/unconverted.h"

#include "core/list_total.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "rules/lists/list_ops.h"

namespace zv::script {

namespace {

void clearChain(ItemChain& chain, bool items, bool options) {
  for (const auto& item : chain) {
    if (items) item->setConverted(false);
    if (options) {
      for (const auto& option : item->options)
        option->setConverted(false);
    }
    clearChain(item->children, items, options);
  }
}

int countChain(const ItemChain& chain) {
  int count = 0;
  for (const auto& item : chain) {
    if (!item->isSublist() && !item->converted()) ++count;
    count += countChain(item->children);
  }
  return count;
}

void collectUnmarked(ItemChain& chain, std::vector<Item*>& out) {
  for (const auto& item : chain) {
    if (!item->isSublist() && !item->converted()) out.push_back(item.get());
    collectUnmarked(item->children, out);
  }
}

}  // namespace

void clearConversionMarks(FileInfo& sheet, bool items, bool options) {
  for (ListInfo* list : sheet.allLists())
    clearChain(list->items, items, options);
}

int countUnconverted(const std::vector<ListInfo*>& lists) {
  int count = 0;
  for (const ListInfo* list : lists)
    count += countChain(list->items);
  return count;
}

int addUnconvertedItems(FileInfo& destination, ListInfo& target,
                        const std::vector<ListInfo*>& lists) {
  std::vector<Item*> unmarked;
  for (ListInfo* list : lists)
    collectUnmarked(list->items, unmarked);
  int added = 0;
  for (Item* element : unmarked) {
    const std::string name = element->level.empty()
                                 ? strprintf("Unconverted: %s", element->name)
                                 : strprintf("Unconverted: %s-%s", element->name, element->level);
    element->setConverted(true);
    AddChain chain;
    const AddResult result =
        addItem(destination, target, std::make_unique<Item>(ItemKind::Item, name),
                Placement::appendTo(), chain, false);
    if (result.status == AddStatus::Added) ++added;
  }
  if (added > 0) setChanged(destination, true);
  return added;
}

void reportUnconvertedItems(FileInfo& source, FileInfo& destination) {
  const std::vector<ListInfo*> lists = source.allLists();
  const int count = countUnconverted(lists);
  if (count <= 0) return;
  const std::vector<ListInfo*> targets = destination.allLists();
  if (targets.empty()) {
    showMessage(Severity::Message, strprintf("%d item(s) not converted.", count));
    return;
  }
  ListInfo& first = *targets.front();
  addUnconvertedItems(destination, first, lists);
  showMessage(Severity::Message, strprintf("%d item(s) not converted. Added to %s list.", count,
                                           std::string_view(first.name)));
}

}  // namespace zv::script
