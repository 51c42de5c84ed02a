#pragma once
// The Undo command of a document and the entries it takes back. The history itself is
// UndoHistory (undo_history.h); this adds the rules of pushing, the Undo command with its
// process-wide `undoing` counter, and the action that groups several others.

#include <memory>
#include <optional>
#include <vector>

#include "core/fileinfo.h"
#include "core/undo_history.h"

namespace zv {

/// Edit kinds of the undo history.
inline constexpr int kUndoLayoutEdit = 2;
inline constexpr int kUndoFieldMoved = 4;
inline constexpr int kUndoItemDeleted = 5;
inline constexpr int kUndoItemsDeleted = 6;
inline constexpr int kUndoFieldValue = 7;
inline constexpr int kUndoGroup = 8;

/// Appends an entry to the document's history, recording the document's changed flag as it is
/// now (so call it before the edit marks the document changed), or as `wasChanged` gives it for
/// an edit recorded after it succeeded. When the history already holds more than `maxUndo`
/// entries the oldest is discarded first.
void undoPush(FileInfo& fileInfo, int kind, WindowHandle window, std::unique_ptr<UndoAction> action,
              long maxUndo, std::optional<bool> wasChanged = std::nullopt);

/// The Undo command: takes the newest entry back and restores the document's changed flag as
/// it was before that edit. False when there was nothing to undo or the action failed.
bool undoPop(FileInfo& fileInfo);

/// Whether the document has something to undo (drives the menu entry).
bool undoCanUndo(const FileInfo& fileInfo);
/// The newest entry, for the command's name; null when there is none.
const UndoEntry* undoPeek(const FileInfo& fileInfo);
/// Discards every entry.
void undoClear(FileInfo& fileInfo);

/// True while an Undo command runs: a field store it causes must not make an entry of its own.
bool undoing();

/// Several actions taken back as one, the last first (kind 8).
class UndoGroup : public UndoAction {
 public:
  void add(std::unique_ptr<UndoAction> action) { actions_.push_back(std::move(action)); }
  bool empty() const { return actions_.empty(); }
  std::size_t size() const { return actions_.size(); }
  bool apply(FileInfo& fileInfo) override;
  void discard() override;

 private:
  std::vector<std::unique_ptr<UndoAction>> actions_;
};

}  // namespace zv
