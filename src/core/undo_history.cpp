#include "core/undo_history.h"

namespace zv {

namespace {

void discardEntry(UndoEntry& entry) {
  if (entry.action) entry.action->discard();
}

}  // namespace

void UndoHistory::push(UndoEntry entry, std::size_t limit) {
  if (entries_.size() > limit) {
    discardEntry(entries_.front());
    entries_.erase(entries_.begin());
  }
  entries_.push_back(std::move(entry));
}

UndoEntry UndoHistory::pop() {
  UndoEntry entry = std::move(entries_.back());
  entries_.pop_back();
  return entry;
}

void UndoHistory::clear() {
  for (auto& entry : entries_)
    discardEntry(entry);
  entries_.clear();
}

}  // namespace zv
