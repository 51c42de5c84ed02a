#pragma once
// The order of a sheet's Data menu: its lists and dialogs, with separators between groups.

#include <cstdint>
#include <vector>

#include "core/record_limits.h"

namespace zv {

enum class DataMenuKind : std::int16_t { List = 1, Dialog = 2, Separator = 3 };

inline constexpr int kDialogCommandBase = 1700;
inline constexpr int kListCommandBase = 1800;

struct DataMenuEntry {
  DataMenuKind kind = DataMenuKind::Separator;
  std::int16_t index = 0;  ///< into the sheet's lists or dialogs; 0 for a separator

  /// 1700 + index for a dialog, 1800 + index for a list, 0 for a separator.
  int command() const;

  friend bool operator==(const DataMenuEntry&, const DataMenuEntry&) = default;
};

class DataMenu {
 public:
  const std::vector<DataMenuEntry>& entries() const { return entries_; }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  int separatorCount() const;
  void clear() { entries_.clear(); }

  /// Appends an entry. A full table (30 entries, or a 7th separator) shows "Too many items in
  /// data menu" and fails.
  bool add(DataMenuEntry entry);
  bool addList(int index) { return add({DataMenuKind::List, static_cast<std::int16_t>(index)}); }
  bool addDialog(int index) {
    return add({DataMenuKind::Dialog, static_cast<std::int16_t>(index)});
  }
  bool addSeparator() { return add({DataMenuKind::Separator, 0}); }

  /// The order of a file without a table: every dialog in turn, one separator, every list in turn.
  void setDefaultOrder(int dialogCount, int listCount);

  /// After list `index` is deleted from the sheet: its entry goes, and entries of later lists
  /// move down by one so that they still name the same lists.
  void removeList(int index) { removeIndexed(DataMenuKind::List, index); }
  /// The same for dialog `index`.
  void removeDialog(int index) { removeIndexed(DataMenuKind::Dialog, index); }

 private:
  void removeIndexed(DataMenuKind kind, int index);

  std::vector<DataMenuEntry> entries_;
};

}  // namespace zv
