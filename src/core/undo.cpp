#include "core/undo.h"

#include <algorithm>

namespace zv {

namespace {

// The number of Undo commands under way; an undo can cause another store that asks.
int undoingCount = 0;

class UndoingScope {
 public:
  UndoingScope() { ++undoingCount; }
  ~UndoingScope() { --undoingCount; }
  UndoingScope(const UndoingScope&) = delete;
  UndoingScope& operator=(const UndoingScope&) = delete;
};

}  // namespace

void undoPush(FileInfo& fileInfo, int kind, WindowHandle window, std::unique_ptr<UndoAction> action,
              long maxUndo, std::optional<bool> wasChanged) {
  if (!action) return;
  UndoEntry entry;
  entry.kind = kind;
  entry.window = window;
  entry.action = std::move(action);
  entry.wasChanged = wasChanged.value_or(fileInfo.changed());
  fileInfo.undoStack.push(std::move(entry), static_cast<std::size_t>(std::max(0L, maxUndo)));
}

bool undoPop(FileInfo& fileInfo) {
  if (fileInfo.undoStack.empty()) return false;
  UndoingScope scope;
  UndoEntry entry = fileInfo.undoStack.pop();
  bool applied = entry.action && entry.action->apply(fileInfo);
  fileInfo.setChangedFlag(entry.wasChanged);
  return applied;
}

bool undoCanUndo(const FileInfo& fileInfo) {
  return !fileInfo.undoStack.empty();
}

const UndoEntry* undoPeek(const FileInfo& fileInfo) {
  return fileInfo.undoStack.newest();
}

void undoClear(FileInfo& fileInfo) {
  fileInfo.undoStack.clear();
}

bool undoing() {
  return undoingCount > 0;
}

bool UndoGroup::apply(FileInfo& fileInfo) {
  bool all = true;
  for (auto it = actions_.rbegin(); it != actions_.rend(); ++it)
    all = (*it)->apply(fileInfo) && all;
  actions_.clear();
  return all;
}

void UndoGroup::discard() {
  for (auto& action : actions_)
    action->discard();
  actions_.clear();
}

}  // namespace zv
