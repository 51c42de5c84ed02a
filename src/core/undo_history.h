#pragma once
// The undo history of a document: a linear list of entries, oldest first, without redo. The
// actions that can be undone and the Undo command itself are built on top of this record.

#include <cstddef>
#include <memory>
#include <vector>

#include "core/record_types.h"

namespace zv {

/// An action that can be reversed.
class UndoAction {
 public:
  virtual ~UndoAction() = default;
  /// Reverses the action on the document; false if that failed.
  virtual bool apply(FileInfo& fileInfo) = 0;
  /// Releases what the entry holds when it is dropped without being applied.
  virtual void discard() {}
};

struct UndoEntry {
  int kind = 0;  ///< the edit kind (2, 4 to 8)
  WindowHandle window = nullptr;
  std::unique_ptr<UndoAction> action;
  bool wasChanged = false;  ///< the document's changed flag before the action
};

class UndoHistory {
 public:
  UndoHistory() = default;
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;
  ~UndoHistory() { clear(); }

  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }

  /// Appends an entry. If more than `limit` entries are held already, the oldest is discarded
  /// first.
  void push(UndoEntry entry, std::size_t limit);
  /// The newest entry, or null.
  const UndoEntry* newest() const { return entries_.empty() ? nullptr : &entries_.back(); }
  /// Takes the newest entry out; the history must not be empty.
  UndoEntry pop();
  /// Discards every entry.
  void clear();

 private:
  std::vector<UndoEntry> entries_;
};

}  // namespace zv
