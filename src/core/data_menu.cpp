#include "core/data_menu.h"

#include <algorithm>

#include "core/messages.h"

namespace zv {

int DataMenuEntry::command() const {
  switch (kind) {
    case DataMenuKind::Dialog:
      return kDialogCommandBase + index;
    case DataMenuKind::List:
      return kListCommandBase + index;
    default:
      return 0;
  }
}

int DataMenu::separatorCount() const {
  return static_cast<int>(std::count_if(entries_.begin(), entries_.end(), [](const auto& entry) {
    return entry.kind == DataMenuKind::Separator;
  }));
}

bool DataMenu::add(DataMenuEntry entry) {
  bool full = entries_.size() >= kMaxDataMenuEntries;
  if (entry.kind == DataMenuKind::Separator) {
    full = full || separatorCount() >= static_cast<int>(kMaxDataMenuSeparators);
    entry.index = 0;
  }
  if (full) {
    showError("Too many items in data menu");
    return false;
  }
  entries_.push_back(entry);
  return true;
}

void DataMenu::setDefaultOrder(int dialogCount, int listCount) {
  // At most 12 dialogs and 12 lists with one separator always fit in the table.
  entries_.clear();
  for (int i = 0; i < dialogCount; ++i)
    addDialog(i);
  addSeparator();
  for (int i = 0; i < listCount; ++i)
    addList(i);
}

void DataMenu::removeIndexed(DataMenuKind kind, int index) {
  std::erase_if(entries_, [&](const DataMenuEntry& entry) {
    return entry.kind == kind && entry.index == index;
  });
  for (auto& entry : entries_) {
    if (entry.kind == kind && entry.index > index) --entry.index;
  }
}

}  // namespace zv
